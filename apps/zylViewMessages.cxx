#include "zylViewMessages.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <regex>
#include <sstream>

#include <vtkLogger.h>

namespace {
constexpr std::size_t Enough = 200; // lines that a window shows
constexpr std::size_t LongMessage = 4000;
constexpr std::size_t LongLine = 200;

// The viewer's own.
std::vector<zylViewMessages::Line>& GetNotes()
{
  static std::vector<zylViewMessages::Line> notes;
  return notes;
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
void zylSay(const std::string& text)
{
  std::fprintf(stderr, "zylview: %s\n", text.c_str());
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  GetNotes().push_back(
    { zylViewMessages::Level::Note, text, std::chrono::duration<double>(now).count() });
}

//--------------------------------------------------------------------------------------------------
zylViewMessages::zylViewMessages(bool verbose)
  : Verbose(verbose)
{
  this->ApplyVerbosity();
  this->Clear(); // from now on they are kept
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
  this->Cleared = zylMessages::GetInstance()->GetCount();
}

//--------------------------------------------------------------------------------------------------
std::vector<zylMessages::Message> zylViewMessages::GetErrors() const
{
  auto messages = zylMessages::GetInstance()->GetMessages(this->Cleared);
  const auto other = [](const auto& message) {
    return message.Level != zylMessages::Severity::Error;
  };
  messages.erase(std::remove_if(messages.begin(), messages.end(), other), messages.end());
  return messages;
}

//--------------------------------------------------------------------------------------------------
std::string zylViewMessages::GetFirstError() const
{
  const auto errors = this->GetErrors();
  return errors.empty() ? "" : zylOneLine(errors.front().Text);
}

//--------------------------------------------------------------------------------------------------
std::size_t zylViewMessages::GetNumberOfErrors() const
{
  return this->GetErrors().size();
}

//--------------------------------------------------------------------------------------------------
auto zylViewMessages::GetList() -> std::vector<Line>
{
  std::vector<Line> lines = GetNotes();
  for (const auto& message : zylMessages::GetInstance()->GetMessages())
  {
    const bool error = message.Level == zylMessages::Severity::Error;
    lines.push_back(
      { error ? Level::Error : Level::Warning, zylOneLine(message.Text), message.Time });
  }
  std::stable_sort(
    lines.begin(), lines.end(), [](const Line& a, const Line& b) { return a.Time < b.Time; });
  if (lines.size() > Enough)
  {
    lines.erase(lines.begin(), lines.end() - Enough);
  }
  return lines;
}

//--------------------------------------------------------------------------------------------------
std::size_t zylViewMessages::GetCount()
{
  return GetNotes().size() + zylMessages::GetInstance()->GetCount();
}
