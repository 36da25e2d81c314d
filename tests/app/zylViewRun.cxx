#include "zylViewRun.h"

#include "zylTestData.h"

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <set>

#include <sys/wait.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>

#include <gtest/gtest.h>

namespace zylViewRun {
Outcome Execute(const std::string& command)
{
  Outcome outcome;
  std::FILE* pipe = popen((command + " 2>&1 </dev/null").c_str(), "r");
  char buffer[4096];
  std::size_t count;
  while ((count = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
  {
    outcome.Text.append(buffer, count);
  }
  const int status = pclose(pipe);
  outcome.ExitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  // A slow machine is told every ten seconds what is going on.
  static const std::regex progress("(^|\n)[^\n]*: [0-9]+ s [^\n]*(?=\n)");
  outcome.Text = std::regex_replace(outcome.Text, progress, "");
  outcome.Text.erase(0, outcome.Text.find_first_not_of('\n'));
  return outcome;
}

const std::string& Folder()
{
  static const std::string folder = zylTestData::MakeFolder();
  return folder;
}

const std::string& Sample()
{
  static const std::string file = [] {
    const Outcome made = Execute(std::string(ZYL_SAMPLE) + " --steps 3 " + Folder() + "/sample");
    EXPECT_EQ(made.ExitCode, 0) << made.Text;
    return Folder() + "/sample/chimney.pvd";
  }();
  return file;
}

Outcome View(const std::string& arguments, const std::string& file)
{
  return Execute(
    "env -u DISPLAY -u WAYLAND_DISPLAY " + std::string(ZYL_VIEW) + " " + arguments + " " + file);
}

Picture ReadPicture(const std::string& file, const Color& host)
{
  vtkNew<vtkPNGReader> reader;
  reader->SetFileName(file.c_str());
  reader->Update();
  Picture picture;
  int size[3];
  reader->GetOutput()->GetDimensions(size);
  picture.Width = size[0];
  picture.Height = size[1];
  auto pixels = static_cast<unsigned char*>(reader->GetOutput()->GetScalarPointer());
  const int count = size[0] * size[1];
  picture.Pixels.assign(pixels, pixels + 3 * count);
  std::set<int> colors;
  for (int i = 0; i < count; ++i)
  {
    const unsigned char* p = pixels + 3 * i;
    colors.insert(p[0] << 16 | p[1] << 8 | p[2]);
    const auto differs = [p, &host](int c) { return std::abs(p[c] - host[c]) > 2; };
    picture.Covered += (differs(0) || differs(1) || differs(2)) / double(count);
    for (int c = 0; c < 3; ++c)
    {
      picture.Mean[c] += p[c] / double(count);
    }
  }
  picture.Colors = colors.size();
  return picture;
}

Picture Draw(const std::string& arguments, const std::string& file, const Color& host)
{
  const std::string output = Folder() + "/picture.png";
  std::remove(output.c_str());
  const auto part = [&host](int c) { return std::string(host[c] == 0 ? "0" : "1"); };
  const std::string background = part(0) + ',' + part(1) + ',' + part(2);
  const Outcome outcome = View("--output " + output + " --size 240x160 --samples 1 --background " +
      background + ' ' + arguments,
    file);
  EXPECT_EQ(outcome.ExitCode, 0) << arguments << '\n' << outcome.Text;
  EXPECT_EQ(outcome.Text, output + "\n") << arguments;
  return ReadPicture(output, host);
}

double Difference(const Picture& a, const Picture& b)
{
  double changed = 0.0;
  for (std::size_t i = 0; i < a.Pixels.size() && i < b.Pixels.size(); i += 3)
  {
    int distance = 0;
    for (std::size_t c = i; c < i + 3; ++c)
    {
      distance += std::abs(a.Pixels[c] - b.Pixels[c]);
    }
    changed += distance > 24;
  }
  return 3.0 * changed / a.Pixels.size();
}
} // namespace zylViewRun
