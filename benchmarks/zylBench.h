/// @file zylBench.h
/// What the benchmarks share: a stage clock that prints JSON lines, and a host application with an
/// OpenGL context of its own.
///
///     zylBenchHost host(800, 600);
///     zylBenchStage("first frame", [&] { host.Clear(); view->Render(); host.Finish(); });
#ifndef zylBench_h
#define zylBench_h

#include <chrono>
#include <string>

/// Wall, user and system seconds since construction, by the process and all its threads.
class zylBenchClock
{
public:
  zylBenchClock();
  /// Print a line for what ran since construction, with the peak resident size of the process so
  /// far and `extra`, which is JSON members or empty.
  void Print(const char* stage, const std::string& extra = {}) const;

private:
  std::chrono::steady_clock::time_point Start;
  double User, System;
};

/// Run `action` and print its line.
template <class Action>
void zylBenchStage(const char* stage, Action action)
{
  const zylBenchClock clock;
  action();
  clock.Print(stage);
}

/// A host that draws into a framebuffer object of an EGL context, which needs no display. Ends the
/// process with a message where there is none.
class zylBenchHost
{
public:
  zylBenchHost(int width, int height);
  ~zylBenchHost();
  zylBenchHost(const zylBenchHost&) = delete;
  zylBenchHost& operator=(const zylBenchHost&) = delete;

  int GetFramebuffer() const { return static_cast<int>(this->Framebuffer); }
  /// Bind the framebuffer and clear color and depth: what the host draws.
  void Clear();
  /// Wait until all drawing is done.
  void Finish();
  /// The pixels, RGB from the lower left corner on, as a PPM file. False when it cannot be written.
  bool WritePicture(const char* fileName);

  ///@{
  /// Copy color and depth, one after the other, to a second framebuffer of the same formats and
  /// back.
  void CopyOut();
  void CopyBack();
  ///@}

private:
  unsigned int MakeFramebuffer();
  void Copy(unsigned int from, unsigned int to);

  int Width, Height;
  void* Display;
  void* Context;
  unsigned int Framebuffer = 0;
  unsigned int Second = 0;
};

#endif
