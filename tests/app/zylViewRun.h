/// @file zylViewRun.h
/// Runs the real programs and looks at their pictures.
#ifndef zylViewRun_h
#define zylViewRun_h

#include <array>
#include <string>
#include <vector>

namespace zylViewRun {

struct Outcome
{
  int ExitCode = -1;
  std::string Text; ///< stdout and stderr
};

struct Picture
{
  int Width = 0, Height = 0;
  double Covered = 0.0; ///< share of pixels that are not of the host's color
  double Mean[3] = { 0.0, 0.0, 0.0 };
  std::size_t Colors = 0;
  std::vector<unsigned char> Pixels;
};

Outcome Execute(const std::string& command);

const std::string& Folder(); ///< removed at the end
const std::string& Sample(); ///< the sample's file, of three time steps

/// Run zylview without DISPLAY.
Outcome View(const std::string& arguments, const std::string& file = Sample());

using Color = std::array<int, 3>; ///< red, green, blue: 0 or 255 each

/// A picture in a file.
Picture ReadPicture(const std::string& file, const Color& host = { 0, 0, 0 });

/// A small picture on a background of the host's color; expects that nothing is complained about.
/// What is covered can only be counted where the scene has nothing of that color.
Picture Draw(const std::string& arguments, const std::string& file = Sample(),
  const Color& host = { 0, 0, 0 });

/// Share of pixels that differ clearly.
double Difference(const Picture& a, const Picture& b);

} // namespace zylViewRun

#endif
