#include "zylViewTerminal.h"

#include <csignal>
#include <iostream>
#include <iterator>

#include <unistd.h>

namespace {
constexpr int Crashes[] = { SIGSEGV, SIGABRT, SIGBUS, SIGFPE };
struct sigaction Previous[std::size(Crashes)];
int TrueTerminal = -1;

constexpr int Streams[] = { STDOUT_FILENO, STDERR_FILENO };

// What was said before does not go where the streams go next.
void Flush()
{
  std::cout.flush();
  std::fflush(stdout);
  std::fflush(stderr);
}

// A reader crashes: what is said about it belongs on the terminal.
void OnCrash(int signal)
{
  static const char text[] = "zylview: a reader crashes on this file\n";
  dup2(TrueTerminal, STDERR_FILENO);
  [[maybe_unused]] const auto written = write(STDERR_FILENO, text, sizeof text - 1);
  for (std::size_t i = 0; i < std::size(Crashes); ++i)
  {
    sigaction(Crashes[i], &Previous[i], nullptr);
  }
  raise(signal);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewTerminal::zylViewTerminal(bool through)
{
  this->Heard = through ? nullptr : std::tmpfile();
  if (this->Heard != nullptr)
  {
    Flush();
    for (int i = 0; i < 2; ++i)
    {
      this->Terminals[i] = dup(Streams[i]);
      dup2(fileno(this->Heard), Streams[i]);
    }
    TrueTerminal = this->Terminals[1];
    struct sigaction action = {};
    action.sa_handler = &OnCrash;
    for (std::size_t i = 0; i < std::size(Crashes); ++i)
    {
      sigaction(Crashes[i], &action, &Previous[i]);
    }
  }
}

//--------------------------------------------------------------------------------------------------
zylViewTerminal::~zylViewTerminal()
{
  if (this->Heard != nullptr)
  {
    for (std::size_t i = 0; i < std::size(Crashes); ++i)
    {
      sigaction(Crashes[i], &Previous[i], nullptr);
    }
    Flush();
    for (int i = 0; i < 2; ++i)
    {
      dup2(this->Terminals[i], Streams[i]);
      close(this->Terminals[i]);
    }
    std::fclose(this->Heard);
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylViewTerminal::GetText() const
{
  std::string text;
  if (this->Heard != nullptr)
  {
    Flush();
    char buffer[4096];
    std::rewind(this->Heard);
    const std::size_t count = std::fread(buffer, 1, sizeof buffer, this->Heard);
    text.assign(buffer, count);
  }
  return text;
}
