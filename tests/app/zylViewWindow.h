/// @file zylViewWindow.h
/// Plays a user of the viewer's window: real keys, real mouse, and eyes.
#ifndef zylViewWindow_h
#define zylViewWindow_h

#include "zylViewRun.h"

#include <string>
#include <thread>

#include <vtk_jsoncpp.h>

class zylViewWindow
{
public:
  /// Start zylview in a window of 600 x 400 on the display; it is there, of that title (a regular
  /// expression), and has drawn afterwards.
  explicit zylViewWindow(
    const std::string& arguments, const std::string& title = "^zylview -.*h: help");
  ~zylViewWindow(); ///< quits it

  /// Whether there is a display to open it on, and xdotool.
  static bool IsPossible();

  /// Commands of xdotool in the window: "key 0", "mousemove 300 200 mousedown 1 ...".
  void Do(const std::string& commands);
  std::string GetTitle() const;
  /// Save the scene with the key, and read it.
  Json::Value Save();
  ///@{
  /// What is seen now, and once the program has nothing to do any more.
  zylViewRun::Picture Grab() const;
  zylViewRun::Picture Look() const;
  ///@}
  /// Quit with the key and wait. The outcome of the program.
  const zylViewRun::Outcome& Quit();

private:
  long GetWork() const;
  void Settle() const;

  zylViewRun::Outcome Result;
  std::thread Program;
  std::string Id;      ///< of the window, as xdotool names it
  std::string Process; ///< its number
};

#endif
