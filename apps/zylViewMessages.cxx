#include "zylViewMessages.h"

#include <algorithm>
#include <regex>
#include <sstream>

#include <vtkLogger.h>

namespace {
constexpr const char* CallbackId = "zylview";
constexpr std::size_t Enough = 100; // a failing read can repeat itself without end
constexpr std::size_t LongMessage = 4000;
constexpr std::size_t LongLine = 200;

void Collect(void* messages, const vtkLogger::Message& message)
{
  static_cast<zylViewMessages*>(messages)->Add(message.verbosity, message.message);
}
// The bytes of a damaged file are not for a terminal.
void KeepText(std::string& line)
{
  static const std::regex text("([\x01-\x7f]|[\xc2-\xdf][\x80-\xbf]|[\xe0-\xef][\x80-\xbf]{2}|"
                               "[\xf0-\xf4][\x80-\xbf]{3})*");
  const unsigned char last = std::regex_match(line, text) ? 255 : 126; // UTF-8 or not
  const auto garbage = [last](unsigned char c) { return c < ' ' || c == 127 || c > last; };
  std::replace_if(line.begin(), line.end(), garbage, '?');
  if (line.size() > LongLine)
  {
    line = line.substr(0, LongLine) + "...";
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylOneLine(const std::string& message)
{
  static const std::regex place("(ERROR|Warning|Generic Warning): In [^\n]*, line [0-9]+\\s*");
  static const std::regex object("[A-Za-z0-9_]+ \\((0x)?[0-9a-f]+\\): ");
  static const std::regex space("\\s+");
  std::string text = std::regex_replace(message.substr(0, LongMessage), place, "");
  text = std::regex_replace(text, object, "");
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
  {
    line = std::regex_replace(line, space, " ");
    line.erase(0, line.find_first_not_of(' '));
    line.erase(line.find_last_not_of(' ') + 1);
    if (!line.empty() && line.back() != ':')
    {
      KeepText(line);
      return line;
    }
  }
  return "";
}

//--------------------------------------------------------------------------------------------------
zylViewMessages::zylViewMessages(bool verbose)
  : Verbose(verbose)
{
  this->ApplyVerbosity();
  vtkLogger::AddCallback(CallbackId, &Collect, this, vtkLogger::VERBOSITY_WARNING);
}

//--------------------------------------------------------------------------------------------------
zylViewMessages::~zylViewMessages()
{
  vtkLogger::RemoveCallback(CallbackId);
}

//--------------------------------------------------------------------------------------------------
void zylViewMessages::ApplyVerbosity() const
{
  vtkLogger::SetStderrVerbosity(
    this->Verbose ? vtkLogger::VERBOSITY_INFO : vtkLogger::VERBOSITY_OFF);
}

//--------------------------------------------------------------------------------------------------
void zylViewMessages::Clear()
{
  this->Errors.clear();
  this->Warnings.clear();
}

//--------------------------------------------------------------------------------------------------
void zylViewMessages::Add(int verbosity, const std::string& text)
{
  auto& list = verbosity <= vtkLogger::VERBOSITY_ERROR ? this->Errors : this->Warnings;
  if (list.size() < Enough)
  {
    list.push_back(zylOneLine(text));
  }
}
