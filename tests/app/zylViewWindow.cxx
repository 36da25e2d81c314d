#include "zylViewWindow.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include <X11/Xlib.h> // last: it defines macros of common names
#include <X11/Xutil.h>
#undef None
#undef Bool
#undef Status

using namespace std::chrono_literals;
using namespace zylViewRun;

namespace {
constexpr int Patience = 600;       // tenths of a second
constexpr int Still = 15;           // of them: who has not worked for so long has nothing to do
const std::string Lifetime = "300"; // seconds: a window that misses its last key is a failure

std::string FirstLine(const std::string& text)
{
  return text.substr(0, text.find('\n'));
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylViewWindow::IsPossible()
{
  return std::getenv("DISPLAY") != nullptr && Execute("xdotool version").ExitCode == 0;
}

//--------------------------------------------------------------------------------------------------
zylViewWindow::zylViewWindow(const std::string& arguments, const std::string& title)
  : Program([this, arguments] {
    Execute("xdotool mousemove 1270 1010"); // beside the window, wherever it was left
    this->Result = Execute("cd " + Folder() + " && timeout " + Lifetime + " " + ZYL_VIEW +
      " --size 600x400 " + arguments);
  })
{
  for (int i = 0; i < Patience && this->Id.empty(); ++i)
  {
    std::this_thread::sleep_for(50ms);
    const Outcome found = Execute("xdotool search --name '" + title + "'");
    this->Id = found.ExitCode == 0 ? FirstLine(found.Text) : "";
  }
  EXPECT_FALSE(this->Id.empty()) << "no window";
  this->Process = FirstLine(Execute("xdotool getwindowpid " + this->Id).Text);
  for (int i = 0; i < Patience && this->Grab().Colors < 2; ++i)
  {
    std::this_thread::sleep_for(50ms);
  }
}

//--------------------------------------------------------------------------------------------------
zylViewWindow::~zylViewWindow()
{
  this->Quit();
}

//--------------------------------------------------------------------------------------------------
const Outcome& zylViewWindow::Quit()
{
  if (this->Program.joinable())
  {
    this->Do("key q");
    this->Program.join();
  }
  return this->Result;
}

//--------------------------------------------------------------------------------------------------
void zylViewWindow::Do(const std::string& commands)
{
  // Positions count from the window's corner; without a window manager it stands in the screen's.
  const Outcome done = Execute("xdotool windowmove " + this->Id + " 0 0 windowfocus --sync " +
    this->Id + " " + (commands == "windowfocus" ? "" : commands));
  EXPECT_EQ(done.ExitCode, 0) << commands << ": " << done.Text;
}

//--------------------------------------------------------------------------------------------------
Json::Value zylViewWindow::Save()
{
  this->Settle(); // the panel answers a click later than the window a key
  const std::string file = Folder() + "/zylview-1.json";
  std::filesystem::remove(file);
  this->Do("key s");
  Json::Value scene;
  bool read = false;
  for (int i = 0; i < Patience && !read; ++i)
  {
    std::this_thread::sleep_for(100ms);
    std::ifstream stream(file);
    Json::CharReaderBuilder reader;
    read = stream.good() && Json::parseFromStream(reader, stream, &scene, nullptr);
  }
  EXPECT_TRUE(read) << "no scene";
  return scene;
}

//--------------------------------------------------------------------------------------------------
std::string zylViewWindow::GetTitle() const
{
  return FirstLine(Execute("xdotool getwindowname " + this->Id).Text);
}

//--------------------------------------------------------------------------------------------------
Picture zylViewWindow::Look() const
{
  this->Settle();
  return this->Grab();
}

//--------------------------------------------------------------------------------------------------
// The time that the program has worked, in the system's ticks; -1 while it works.
long zylViewWindow::GetWork() const
{
  std::ifstream stream("/proc/" + this->Process + "/stat");
  std::string text;
  std::getline(stream, text);
  std::istringstream fields(text.substr(std::min(text.rfind(')') + 1, text.size())));
  std::string state, skipped;
  long user = 0, system = 0;
  fields >> state;
  for (int i = 0; i < 10; ++i)
  {
    fields >> skipped;
  }
  fields >> user >> system;
  return state == "S" ? user + system : -1;
}

//--------------------------------------------------------------------------------------------------
void zylViewWindow::Settle() const
{
  long before = -1;
  int same = 0;
  for (int i = 0; i < Patience && same < Still; ++i)
  {
    const long work = this->GetWork();
    same =
      work >= 0 && work <= before + 1 ? same + 1 : 0; // the system itself takes a tick now and then
    before = same > 0 ? before : work;
    std::this_thread::sleep_for(100ms);
  }
}

//--------------------------------------------------------------------------------------------------
Picture zylViewWindow::Grab() const
{
  Picture picture;
  Display* display = XOpenDisplay(nullptr);
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; }); // no window, or none on the screen
  const Window window = std::strtoul(this->Id.c_str(), nullptr, 10);
  XWindowAttributes attributes;
  XImage* image = XGetWindowAttributes(display, window, &attributes) == 0
    ? nullptr
    : XGetImage(display, window, 0, 0, attributes.width, attributes.height, AllPlanes, ZPixmap);
  if (image != nullptr)
  {
    picture.Width = attributes.width;
    picture.Height = attributes.height;
    for (int y = picture.Height - 1; y >= 0; --y) // the lowest row first
    {
      for (int x = 0; x < picture.Width; ++x)
      {
        const unsigned long pixel = XGetPixel(image, x, y);
        for (const int shift : { 16, 8, 0 })
        {
          picture.Pixels.push_back(static_cast<unsigned char>(pixel >> shift & 0xff));
        }
        picture.Colors += pixel != XGetPixel(image, 0, 0);
      }
    }
    XDestroyImage(image);
  }
  XCloseDisplay(display);
  return picture;
}
