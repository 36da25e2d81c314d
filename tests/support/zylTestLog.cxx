#include "zylTestLog.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include <unistd.h>

#include <vtkLogger.h>

namespace {
int SavedDescriptors[2] = { -1, -1 };

void Collect(void* user, const vtkLogger::Message& message)
{
  static_cast<zylTestLog*>(user)->Add(
    message.verbosity, std::string(message.prefix) + message.message);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylTestLog::zylTestLog(int verbosity)
{
  static std::atomic<int> counter{ 0 };
  this->Id = "zylTestLog" + std::to_string(counter++);
  vtkLogger::AddCallback(
    this->Id.c_str(), &Collect, this, static_cast<vtkLogger::Verbosity>(verbosity));
}

//--------------------------------------------------------------------------------------------------
zylTestLog::~zylTestLog()
{
  vtkLogger::RemoveCallback(this->Id.c_str());
}

//--------------------------------------------------------------------------------------------------
void zylTestLog::Add(int verbosity, std::string text)
{
  this->Messages.emplace_back(verbosity, std::move(text));
}

//--------------------------------------------------------------------------------------------------
int zylTestLog::Count(int verbosity, const std::string& text) const
{
  int count = 0;
  for (const auto& message : this->Messages)
  {
    count += message.first == verbosity && message.second.find(text) != std::string::npos;
  }
  return count;
}

//--------------------------------------------------------------------------------------------------
bool zylTestLog::Has(int verbosity, const std::string& text) const
{
  return this->Count(verbosity, text) > 0;
}

//--------------------------------------------------------------------------------------------------
testing::AssertionResult zylTestLog::HasError(const std::string& text) const
{
  return testing::AssertionResult(this->CountErrors(text) > 0) << this->Dump();
}

//--------------------------------------------------------------------------------------------------
testing::AssertionResult zylTestLog::HasWarning(const std::string& text) const
{
  return testing::AssertionResult(this->CountWarnings(text) > 0) << this->Dump();
}

//--------------------------------------------------------------------------------------------------
int zylTestLog::CountErrors(const std::string& text) const
{
  return this->Count(vtkLogger::VERBOSITY_ERROR, text);
}

//--------------------------------------------------------------------------------------------------
int zylTestLog::CountWarnings(const std::string& text) const
{
  return this->Count(vtkLogger::VERBOSITY_WARNING, text);
}

//--------------------------------------------------------------------------------------------------
std::string zylTestLog::Dump() const
{
  std::ostringstream out;
  for (const auto& message : this->Messages)
  {
    out << message.first << ": " << message.second << '\n';
  }
  return out.str();
}

//--------------------------------------------------------------------------------------------------
std::string zylConsoleBegin()
{
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  std::string name = "/tmp/zylConsoleXXXXXX";
  const int file = mkstemp(name.data());
  for (int stream = 1; stream <= 2; ++stream)
  {
    SavedDescriptors[stream - 1] = dup(stream);
    dup2(file, stream);
  }
  close(file);
  return name;
}

//--------------------------------------------------------------------------------------------------
std::string zylConsoleEnd(const std::string& name)
{
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  for (int stream = 1; stream <= 2; ++stream)
  {
    dup2(SavedDescriptors[stream - 1], stream);
    close(SavedDescriptors[stream - 1]);
  }
  std::ostringstream text;
  text << std::ifstream(name).rdbuf();
  std::remove(name.c_str());
  return text.str();
}
