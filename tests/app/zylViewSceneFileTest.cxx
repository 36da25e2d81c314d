// Scenes in files: what is saved comes back, whatever else is in the file.
#include "zylTestData.h"
#include "zylViewExpressions.h"
#include "zylViewRun.h"

#include <fstream>
#include <sstream>

#include <vtkMultiBlockDataSet.h>
#include <vtkUnstructuredGrid.h>

#include <gtest/gtest.h>

using namespace zylViewRun;

namespace {
std::string Read(const std::string& file)
{
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

std::string Cube()
{
  static const std::string file =
    zylTestData::Write(zylTestData::MakeCube(0, 0, 0, 4), Folder() + "/cube.vtu");
  return file;
}

// Save the scene of a command line; the file and the picture.
std::string Save(const std::string& arguments, const std::string& files = Cube())
{
  const std::string scene = Folder() + "/scene.json";
  const Outcome outcome = View(
    "--size 200x150 --output " + Folder() + "/saved.png --save-state " + scene + " " + arguments,
    files);
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  return scene;
}

Outcome Open(const std::string& scene, const std::string& arguments = "")
{
  return View("--state " + scene + " --output " + Folder() + "/opened.png " + arguments, "");
}

std::string Replace(std::string text, const std::string& from, const std::string& to)
{
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylViewSceneFile, ExpressionsOfFilesCalculate)
{
  for (const char* harmless :
    { "a", "0.5 * density * speed**2", "mag(velocity)[:,0] + 1e-3", "where(p > 3, p, -p)",
      "(a - b) / max(a, axis=0)", "a if_ < .5", "sqrt (2.)", "not (a == b)", "größe * 2" })
  {
    EXPECT_EQ(zylFindBeyondArithmetic(harmless), "") << harmless;
  }
  for (const char* program : { "__import__('os')", "open(a)", "a.tofile(b)", "inputs[0].PointData",
         "1.0.real", "1..real", "a;b", "a\nb", "(lambda: 1)()", "[f for f in a]", "f'{a}'",
         "a[0](b)", "mag(a)(b)", "a = 3", "(a := 3)", "'x' * 9", "sin", "exec(a)", "a + eval (b)",
         "{a}", "@a", "`a`", "a \\ b", "(sin)(open)", "import os", "a.__class__" })
  {
    const bool name = std::string(program) == "sin"; // a name alone calls nothing
    EXPECT_EQ(zylFindBeyondArithmetic(program).empty(), name) << program;
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewSceneFile, TheReopenedPictureIsTheSaved)
{
  const double times[] = { 0.0, 10.0 };
  const std::string series = zylTestData::WriteSeries(Folder(), times, 2);
  const struct
  {
    std::string Arguments, Files;
  } scenes[] = {
    { "--array velocity --range 0.2,1 --colormap Jet --from 1,2,3 --zoom 1.3 --mesh-lines "
      "--background 0,0,0.3:0.2,0,0 --block 0:Transparency=0.25",
      Cube() },
    { "--contours pressure:7 --glyphs velocity:0.1 --clip plane:0.5,0.5,0.5,1,1,0 --up y", Cube() },
    { "--define 'speed=mag(velocity)' --array speed --cut 0.5,0.5,0.5,1,0,0 --isosurface "
      "pressure:0.4 --set Cut.MeshLine.Visibility=true --set Isosurface.Clip=plane:0,0.5,0,0,1,0",
      Cube() },
    { "--time 10", series },
    { "", Cube() + " " + series },
  };
  for (const auto& s : scenes)
  {
    const std::string scene = Save(s.Arguments, s.Files);
    const Outcome outcome = Open(scene, "--save-state " + Folder() + "/again.json");
    EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
    EXPECT_EQ(outcome.Text.find("skipped"), std::string::npos) << outcome.Text;
    const std::string saved = Folder() + "/saved.png", opened = Folder() + "/opened.png";
    EXPECT_TRUE(Read(saved) == Read(opened)) << s.Arguments;
    EXPECT_EQ(Read(scene), Read(Folder() + "/again.json")) << s.Arguments;
  }
  // What is selected is outlined, there and here.
  const std::string scene = Save("--cut 0.5,0.5,0.5,1,0,0 --opacity 0.5");
  const Picture plain = ReadPicture(Folder() + "/saved.png");
  std::string text = Replace(Read(scene), "\"selected\" : []", "\"selected\" : [ 1 ]");
  text = Replace(text, "\"selected\" : false", "\"selected\" : true");
  std::ofstream(scene) << text;
  const std::string again = Folder() + "/again.json";
  EXPECT_EQ(Open(scene, "--save-state " + again).ExitCode, 0);
  const Picture outlined = ReadPicture(Folder() + "/opened.png");
  EXPECT_GT(Difference(plain, outlined), 0.005);
  EXPECT_EQ(Open(again, "--save-state " + scene).ExitCode, 0);
  EXPECT_EQ(Difference(outlined, ReadPicture(Folder() + "/opened.png")), 0.0);
  EXPECT_EQ(Read(again), Read(scene));
}

//--------------------------------------------------------------------------------------------------
// What the file names is shown first; what cannot be had is said and the rest is there.
TEST(zylViewSceneFile, SaysWhatItReadsAndWhatItSkips)
{
  const std::string scene =
    Save("--define 'speed=mag(velocity)' --cut 0.5,0.5,0.5,1,0,0 --array pressure");
  const std::string text = Read(scene), other = Folder() + "/other.json";
  const auto open = [&](const std::string& changed, const std::string& arguments = "") {
    std::ofstream(other) << changed;
    return Open(other, arguments);
  };
  EXPECT_NE(open(text).Text.find("other.json: reads " + Cube()), std::string::npos);
  const struct
  {
    const char* From;
    std::string To;
    const char* Says;
  } parts[] = {
    { "\"mag(velocity)\"", "\"open('/tmp/x')\"", "'speed', which has a call of 'open'" },
    { "\"kind\" : \"Cut\"", "\"kind\" : \"Cat\"", "of the kind 'Cat', is skipped" },
    { "\"position\" :", "\"site\" :", "the camera is skipped" },
    { "\"type\" : \"Double\"", "\"type\" : \"Float\"", "a part of " },
    { "\"zylview\" : 1", "\"zylview\" : 2", "a later version" },
  };
  for (const auto& part : parts)
  {
    const Outcome outcome = open(Replace(text, part.From, part.To));
    EXPECT_EQ(outcome.ExitCode, 0) << part.From << '\n' << outcome.Text;
    EXPECT_NE(outcome.Text.find(part.Says), std::string::npos) << part.From << '\n' << outcome.Text;
  }
  // A trusted one runs what it likes, and the library says what is wrong with that.
  const Outcome trusted = open(Replace(text, "\"mag(velocity)\"", "\"open('/tmp/x')\""), "--trust");
  EXPECT_EQ(trusted.Text.find("skipped"), std::string::npos) << trusted.Text;
  const Outcome gone = open(Replace(text, "cube.vtu", "none.vtu"));
  EXPECT_EQ(gone.ExitCode, 3) << gone.Text;
  // The files of the command line take the place of those that have moved.
  EXPECT_EQ(open(Replace(text, "cube.vtu", "none.vtu"), Cube()).ExitCode, 0);
  for (const char* bad :
    { "", "{", "[1]", "{\"zylview\":1}", "{\"zylview\":\"x\",\"datasets\":[1]}", "nonsense" })
  {
    const Outcome outcome = open(bad);
    EXPECT_EQ(outcome.ExitCode, 3) << bad << outcome.Text;
    EXPECT_NE(outcome.Text.find("it is no scene"), std::string::npos) << bad << outcome.Text;
  }
  EXPECT_EQ(open("{\"zylview\":1,\"datasets\":[7]}", "--frames 1").ExitCode, 0); // the sample
  EXPECT_EQ(Open(scene, "--array pressure").ExitCode, 2);
}
