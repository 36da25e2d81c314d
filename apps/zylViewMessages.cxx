#include "zylViewMessages.h"

#include <regex>

#include <vtkLogger.h>

namespace {
constexpr const char* CallbackId = "zylview";
constexpr std::size_t Enough = 100; // a failing read can repeat itself without end

void Collect(void* messages, const vtkLogger::Message& message)
{
  static_cast<zylViewMessages*>(messages)->Add(message.verbosity, message.message);
}

// "ERROR: In file.cxx, line 7\nzylDataSet (0x1234): text\n\n" becomes "text".
std::string OneLine(const std::string& text)
{
  static const std::regex place("(ERROR|Warning|Generic Warning): In [^\n]*, line [0-9]+\\s*");
  static const std::regex object("[A-Za-z0-9_]+ \\((0x)?[0-9a-f]+\\): ");
  static const std::regex space("\\s+");
  std::string line = std::regex_replace(text, place, "");
  line = std::regex_replace(line, object, "");
  line = std::regex_replace(line, space, " ");
  line.erase(0, line.find_first_not_of(' '));
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}
} // namespace

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
    list.push_back(OneLine(text));
  }
}
