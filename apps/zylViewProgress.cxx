#include "zylViewProgress.h"

#include "zylViewError.h"

#include <algorithm>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

#include <zylProgress.h>

#include <vtkCommand.h>

namespace {
using namespace std::chrono_literals;
constexpr auto FirstDraw = 300ms; // short work shows nothing
constexpr auto Interval = 150ms;
constexpr auto AskInterval = 50ms;
constexpr unsigned int BeatsPerLine = 66; // about ten seconds
constexpr int BarLength = 24;

std::FILE* OpenTerminal()
{
  std::FILE* terminal = fdopen(dup(STDERR_FILENO), "w");
  return terminal != nullptr ? terminal : std::fopen("/dev/null", "w");
}

int TerminalWidth(std::FILE* terminal)
{
  winsize size{};
  return ioctl(fileno(terminal), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewProgress::zylViewProgress(const std::string& title, const Alive& alive)
  : Title(title)
  , StillWaiting(alive)
  , Out(OpenTerminal())
  , Terminal(isatty(STDERR_FILENO) != 0)
  , Start(std::chrono::steady_clock::now())
  , Thread(&zylViewProgress::Beat, this)
{
  this->Observer = zylProgress::GetInstance()->AddObserver(
    vtkCommand::ProgressEvent, this, &zylViewProgress::OnProgress);
  this->Ask();
}

//--------------------------------------------------------------------------------------------------
zylViewProgress::~zylViewProgress()
{
  zylProgress::GetInstance()->RemoveObserver(this->Observer);
  {
    std::lock_guard<std::mutex> lock(this->Mutex);
    this->Stopping = true;
  }
  this->Stop.notify_all();
  this->Thread.join();
  this->Clear();
  std::fclose(this->Out);
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::Clear()
{
  if (this->Drawn && this->Terminal)
  {
    std::fputs("\r\033[K", this->Out);
    std::fflush(this->Out);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::Set(double fraction, const std::string& text)
{
  std::lock_guard<std::mutex> lock(this->Mutex);
  this->Fraction = std::clamp(fraction, 0.0, 1.0);
  this->Text = text;
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::OnProgress(vtkObject*, unsigned long, void*)
{
  const zylProgress* progress = zylProgress::GetInstance();
  this->Set(progress->GetFraction(), progress->GetText());
  this->Ask();
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::Ask()
{
  const auto now = std::chrono::steady_clock::now();
  if (!this->StillWaiting || now - this->Asked < AskInterval)
  {
    return;
  }
  this->Asked = now;
  if (!this->StillWaiting(this->Title, this->Fraction)) // which this thread alone sets
  {
    std::lock_guard<std::mutex> lock(this->Mutex);
    this->Clear();
    std::_Exit(zylViewDone);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::Beat()
{
  std::unique_lock<std::mutex> lock(this->Mutex);
  auto next = this->Start + FirstDraw;
  while (!this->Stop.wait_until(lock, next, [this] { return this->Stopping; }))
  {
    const auto now = std::chrono::steady_clock::now();
    this->Draw(std::chrono::duration<double>(now - this->Start).count());
    next = now + Interval;
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewProgress::Draw(double seconds)
{
  ++this->Beats;
  this->Drawn = true;
  if (!this->Terminal)
  {
    if (this->Beats % BeatsPerLine == 0)
    {
      std::fprintf(this->Out, "%s: %.0f s %s\n", this->Title.c_str(), seconds, this->Text.c_str());
      std::fflush(this->Out);
    }
    return;
  }
  std::string bar(BarLength, '-');
  if (this->Fraction >= 0.0)
  {
    std::fill_n(bar.begin(), static_cast<int>(this->Fraction * BarLength + 0.5), '#');
  }
  const char* const sign = "|/-\\";
  char head[64];
  std::snprintf(head, sizeof head, "] %c %.1f s ", sign[this->Beats % 4], seconds);
  std::string line = this->Title + " [" + bar + head + this->Text;
  line.resize(std::min<std::size_t>(line.size(), TerminalWidth(this->Out) - 1));
  std::fprintf(this->Out, "\r%s\033[K", line.c_str());
  std::fflush(this->Out);
}
