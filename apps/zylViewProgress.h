/// @file zylViewProgress.h
/// A progress line in the terminal while ParaView works. What it does not know it does not show: a
/// filter that reports nothing gets a moving sign and the time that has passed, so that long work
/// never looks frozen. When stderr is no terminal there is a plain line every ten seconds.
#ifndef zylViewProgress_h
#define zylViewProgress_h

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

class vtkObject;

class zylViewProgress
{
public:
  /// Called at the start and now and then while ParaView works, with what it does and which part of
  /// that is done (negative: unknown); returns whether the user still waits.
  using Alive = std::function<bool(const std::string& work, double fraction)>;

  /// Shows progress of the work named `title` until destroyed. When `alive` says that nobody waits,
  /// the process ends: there is no way to stop a reader, and nothing that could be lost.
  explicit zylViewProgress(const std::string& title, const Alive& alive = {});
  ~zylViewProgress();
  zylViewProgress(const zylViewProgress&) = delete;
  zylViewProgress& operator=(const zylViewProgress&) = delete;

  /// Work that counts itself: `fraction` in [0, 1] of the step named `text`.
  void Set(double fraction, const std::string& text);

private:
  void Ask();
  void OnProgress(vtkObject* caller, unsigned long event, void* data);
  void Beat();
  void Draw(double seconds);
  void Clear();

  const std::string Title;
  const Alive StillWaiting;
  std::FILE* const Out; ///< the terminal, whatever happens to stderr meanwhile
  const bool Terminal;
  const std::chrono::steady_clock::time_point Start;
  unsigned long Observer = 0;
  std::chrono::steady_clock::time_point Asked; ///< whether the user still waits

  std::mutex Mutex; // the members below
  std::condition_variable Stop;
  bool Stopping = false;
  bool Drawn = false;
  double Fraction = -1.0; ///< negative: unknown
  std::string Text;
  unsigned int Beats = 0;

  std::thread Thread; // draws only; never touches ParaView
};

#endif
