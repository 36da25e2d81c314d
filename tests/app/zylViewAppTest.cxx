// Runs the real programs, without a display unless a window is what is tested.
#include "zylTestData.h"
#include "zylViewRun.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkStringArray.h>
#include <vtkUnstructuredGrid.h>

#include <gtest/gtest.h>

#include <X11/Xlib.h> // last: it defines macros of common names
#include <X11/Xutil.h>
#undef None
#undef Bool
#undef Status

using namespace zylViewRun;

namespace {
// The first window below `parent` of this title, or 0.
Window FindWindow(Display* display, Window parent, const std::string& title)
{
  Window root = 0, above = 0, *children = nullptr, found = 0;
  unsigned int count = 0;
  char* name = nullptr;
  if (XFetchName(display, parent, &name) != 0 && name != nullptr)
  {
    found = title == name ? parent : 0;
    XFree(name);
  }
  if (found == 0 && XQueryTree(display, parent, &root, &above, &children, &count) != 0)
  {
    for (unsigned int i = 0; i < count && found == 0; ++i)
    {
      found = FindWindow(display, children[i], title);
    }
    XFree(children);
  }
  return found;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ListsBlocksArraysRangesAndTimes)
{
  const Outcome list = View("--list");
  EXPECT_EQ(list.ExitCode, 0);
  for (const char* text : { "0 root", "1 Volume", "Near wake", "Vortex cores",
         "point Temperature (1)  [293, ", "point Velocity (3)", "magnitude [0, ",
         "cell  WallShear (1)", "3 time steps: 0 ", "x [-4, 12]" })
  {
    EXPECT_NE(list.Text.find(text), std::string::npos) << text << " in\n" << list.Text;
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ListsTheValuesOfTheTimeAskedFor)
{
  const double times[] = { 0.0, 10.0 };
  const std::string series = zylTestData::WriteSeries(zylTestData::MakeFolder(), times, 2);
  EXPECT_NE(View("--list", series).Text.find("pressure (1)  [0, 2]"), std::string::npos);
  const Outcome later = View("--list --time 9", series);
  EXPECT_NE(later.Text.find("pressure (1)  [10, 12]"), std::string::npos) << later.Text;
  EXPECT_NE(later.Text.find("values of time 10\n"), std::string::npos) << later.Text;
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ListsTextsWithoutRangesAndNoGhosts)
{
  auto cube = zylTestData::MakeCube(0, 0, 0);
  vtkNew<vtkStringArray> names;
  names->SetName("names");
  names->SetNumberOfValues(cube->GetNumberOfPoints());
  cube->GetPointData()->AddArray(names);
  cube->AllocateCellGhostArray();
  const Outcome list = View("--list", zylTestData::Write(cube, Folder() + "/texts.vtu"));
  EXPECT_NE(list.Text.find("point names (1)\n"), std::string::npos) << list.Text;
  EXPECT_EQ(list.Text.find("vtkGhost"), std::string::npos) << list.Text;
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ListsTablesAndShowsThoseWithCoordinates)
{
  std::ofstream(Folder() + "/table.csv") << "x,y,z,p\n0,0,0,1\n1,0,0,2\n0,1,1,3\n";
  std::ofstream(Folder() + "/words.csv") << "name,value\na,1\nb,2\n";
  const Outcome list = View("--list", Folder() + "/words.csv");
  for (const char* text : { "(table, 2 rows)\n", "row   name (1)\n", "row   value (1)  [1, 2]\n" })
  {
    EXPECT_NE(list.Text.find(text), std::string::npos) << text << " in\n" << list.Text;
  }
  EXPECT_GT(
    Draw("--block root:DisplayStyle=1 --block root:PointRadius=9", Folder() + "/table.csv").Covered,
    0.001);
  const Outcome words =
    View("--size 9x9 --output " + Folder() + "/words.png", Folder() + "/words.csv");
  EXPECT_EQ(words.ExitCode, 7);
  EXPECT_NE(words.Text.find("table without coordinate columns"), std::string::npos) << words.Text;
}

//--------------------------------------------------------------------------------------------------
// The picture is written all the same: it shows the host's background.
TEST(zylViewApp, SaysWhenThereIsNothingToDraw)
{
  const std::string output = " --size 32x32 --output " + Folder() + "/nothing.png ";
  std::ofstream(Folder() + "/nothing.obj") << "# no vertices\n";
  const Outcome none = View(output, Folder() + "/nothing.obj");
  EXPECT_EQ(none.ExitCode, 7) << none.Text;
  EXPECT_EQ(none.Text.find("zylview: there is nothing to draw: there are no points\n"), 0u)
    << none.Text;
  const Outcome clipped = View(output + "--clip sphere:99,99,99,1");
  EXPECT_EQ(clipped.ExitCode, 7) << clipped.Text;
  EXPECT_NE(clipped.Text.find("the clips cut everything away"), std::string::npos) << clipped.Text;
  EXPECT_EQ(View(output + "--block root:Visibility=false").ExitCode, 0); // as the user wishes
}

//--------------------------------------------------------------------------------------------------
// Libraries below ParaView print on either stream; a user wants the one line that says what failed.
TEST(zylViewApp, SaysOnceThatAPartIsMissing)
{
  const std::string file = Folder() + "/part.xmf";
  std::ofstream(file) << R"(<Xdmf Version="2.0"><Domain><Grid Name="g" GridType="Uniform">
    <Topology TopologyType="2DCoRectMesh" Dimensions="3 3"/><Geometry GeometryType="ORIGIN_DXDY">
    <DataItem Dimensions="2" Format="XML">0 0</DataItem>
    <DataItem Dimensions="2" Format="XML">1 1</DataItem></Geometry>
    <Attribute Name="p" Center="Node"><DataItem Dimensions="3 3" Format="HDF">none.h5:/p</DataItem>
    </Attribute></Grid></Domain></Xdmf>)";
  const std::string output = Folder() + "/part.png";
  const Outcome outcome = View("--size 32x32 --output " + output, file);
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  EXPECT_EQ(outcome.Text.find("zylview: a part of '" + file + "' could not be read: "), 0u)
    << outcome.Text;
  EXPECT_EQ(std::count(outcome.Text.begin(), outcome.Text.end(), '\n'), 2) << outcome.Text;
}

//--------------------------------------------------------------------------------------------------
// Files of different kinds are datasets side by side: each takes what it has of the user's wishes.
TEST(zylViewApp, ShowsFilesOfDifferentKindsTogether)
{
  const std::string cube =
    zylTestData::Write(zylTestData::MakeCube(5, 0, 0), Folder() + "/beside.vtu");
  const std::string row = zylTestData::Write(zylTestData::MakeRow(1), Folder() + "/beside.vtm");
  std::ofstream(Folder() + "/beside.vtk") << "# vtk DataFile Version 3.0\nother\nASCII\n"
                                             "DATASET POLYDATA\nPOINTS 3 float\n"
                                             "2 0 0  4 0 0  3 1 1\nPOLYGONS 1 4\n3 0 1 2\n"
                                             "POINT_DATA 3\nSCALARS other float\n"
                                             "LOOKUP_TABLE default\n1 2 3\n";
  const std::string both = cube + " " + row;
  const Outcome list = View("--list", both);
  EXPECT_NE(list.Text.find("file " + cube), std::string::npos) << list.Text;
  EXPECT_NE(list.Text.find("file " + row), std::string::npos) << list.Text;
  const std::string look = "--view 3 --no-legend --array pressure ";
  // Two cubes with a gap of four: one range of colors for both, so that the left one is all cold.
  const Picture together = Draw(look, both);
  const auto redAt = [&together](double x) {
    return together.Pixels[3 * (80 * together.Width + static_cast<int>(x * together.Width))];
  };
  EXPECT_GT(redAt(0.8), redAt(0.2) + 60);
  // The third one has another array, and a legend of its own at the other side.
  const std::string three = both + " " + Folder() + "/beside.vtk";
  EXPECT_GT(Difference(Draw("--view 3", three), Draw("--view 3 --no-legend", three)), 0.01);
  EXPECT_GT(
    Difference(Draw("--view 3", three), Draw("--view 3 --plain --array other", three)), 0.01);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ListsColorMapsAndFileTypes)
{
  const Outcome maps = View("--list-colormaps", "");
  EXPECT_EQ(maps.ExitCode, 0);
  EXPECT_EQ(maps.Text.find("Cool to Warm\n"), 0u);
  const Outcome types = View("--list-file-types", "");
  EXPECT_EQ(types.ExitCode, 0);
  EXPECT_NE(types.Text.find("(*.vtm"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, DrawsWithoutADisplay)
{
  const Picture plain = Draw("--plain");
  EXPECT_EQ(plain.Width, 240);
  EXPECT_EQ(plain.Height, 160);
  EXPECT_GT(plain.Covered, 0.15);
  EXPECT_LT(plain.Covered, 0.95);

  const Picture colored = Draw("--array Pressure --range -60,60 --legend --colormap Jet");
  EXPECT_GT(Difference(plain, colored), 0.1);
  const Picture component = Draw("--array Velocity_Y --range -5,5 --colormap Jet");
  EXPECT_GT(Difference(component, colored), 0.05);
  EXPECT_GT(Difference(Draw("--array Quality"), plain), 0.1);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, KeepsTheHostsBackground)
{
  const std::string hidden = "--block root:Visibility=false";
  const Picture empty = Draw(hidden + " --background 0,0,1:1,0,0");
  const unsigned char* bottom = empty.Pixels.data();
  const unsigned char* top = &empty.Pixels[empty.Pixels.size() - 3];
  EXPECT_GT(bottom[0], 240);
  EXPECT_GT(top[2], 240);
  EXPECT_LT(top[0], 15);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, LinesContoursArrowsAndOpacityShow)
{
  const std::string only =
    "--view 1 --block root:Visibility=false --block Mid-plane:Visibility=true ";
  const Picture base = Draw(only);
  EXPECT_GT(Difference(base, Draw("--mesh-lines " + only)), 0.02);
  EXPECT_GT(Difference(base, Draw("--contours Pressure:12 " + only)), 0.005);
  EXPECT_GT(Difference(base, Draw("--feature-lines " + only)), 0.005);
  EXPECT_LT(Draw("--opacity 0.3 " + only).Mean[0], 0.6 * base.Mean[0]);
  const std::string rake = "--view 1 --block root:Visibility=false --glyphs Velocity:0.5 "
                           "--block root:VectorGlyph.Visibility=false --background 1,1,1 "
                           "--block Rake:VectorGlyph.Visibility=true";
  const std::string none = "--view 1 --block root:Visibility=false --background 1,1,1 "
                           "--block Rake:Visibility=true";
  EXPECT_GT(Difference(Draw(rake), Draw(none)), 0.005);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, ClipsCutAway)
{
  const double whole = Draw("--view 1").Covered;
  EXPECT_NEAR(
    Draw("--view 1 --zoom 1 --clip box:-100,4,-100,100,-100,100").Covered / whole, 1.0, 0.6);
  const std::string fixed = "--view 3 --block Top:Visibility=false ";
  const Picture base = Draw(fixed);
  EXPECT_GT(Difference(base, Draw(fixed + "--clip plane:4,0,0,1,0,0")), 0.05);
  EXPECT_GT(Difference(base, Draw(fixed + "--clip plane:4,0,0,1,0,0:outside")), 0.05);
  EXPECT_GT(Difference(base, Draw(fixed + "--clip cylinder:0,0,0,0,0,1,3")), 0.05);
  EXPECT_GT(Difference(base, Draw(fixed + "--clip sphere:0,0,2,3 --clip plane:0,0,2,0,0,1")), 0.05);
  EXPECT_GT(Difference(base, Draw(fixed + "--clip scalar:Temperature,300,400")), 0.05);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, BlockSettingsReachEveryKind)
{
  const std::string only = "--view 1 --block root:Visibility=false ";
  const Picture red = Draw(only + "--block Top:Visibility=true --block Top:Surface.Color=1,0,0");
  EXPECT_GT(red.Mean[0], 10.0 * red.Mean[1]);
  const Picture walls = Draw(only +
    "--block Walls:MeshLine.Visibility=on "
    "--block Walls:MeshLine.Color=0,1,0");
  EXPECT_GT(walls.Mean[1], 2.0);
  EXPECT_LT(walls.Mean[0], 0.2 * walls.Mean[1]);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, TimeViewAndDirectionChangeThePicture)
{
  const std::string cut = "--array Vorticity --range -20,20 --block root:Visibility=false "
                          "--block Mid-plane:Visibility=true ";
  const Picture first = Draw(cut + "--view 1 --time 0");
  EXPECT_GT(Difference(first, Draw(cut + "--view 1 --time 0.17")), 0.02);
  EXPECT_LT(Difference(first, Draw(cut + "--view 1 --time 0.01")), 0.001); // the nearest step
  EXPECT_GT(Difference(first, Draw(cut + "--view 3")), 0.05);
  EXPECT_GT(Difference(first, Draw(cut + "--from 1,-1,1 --zoom 1.4")), 0.05);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, DemoComposesAPicture)
{
  const Picture demo = Draw("--demo", Sample(), { 255, 0, 255 }); // its lines are black
  EXPECT_GT(demo.Covered, 0.2);
  EXPECT_LT(demo.Covered, 0.9);
  EXPECT_GT(demo.Colors, 300u);
  auto row = zylTestData::MakeRow(3);
  EXPECT_GT(Draw("--demo", zylTestData::Write(row, Folder() + "/row.vtm")).Colors, 50u);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, TakesReaderLogAndStatistics)
{
  const std::string log = Folder() + "/view.log";
  const Outcome outcome = View("--reader sources/PVDReader --stats --verbose --log " + log +
    " --size 64x48 --output " + Folder() + "/stats.png");
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  for (const char* name : { "load", "update", "first frame", "\nframe" })
  {
    EXPECT_NE(outcome.Text.find(name), std::string::npos) << name << " in\n" << outcome.Text;
  }
  EXPECT_TRUE(std::ifstream(log).good());
}

//--------------------------------------------------------------------------------------------------
struct Failure
{
  const char* Name;
  std::string Arguments;
  int ExitCode;
  const char* Text;
};

class zylViewAppFailure : public ::testing::TestWithParam<Failure>
{
};

TEST_P(zylViewAppFailure, SaysSoInOneLine)
{
  const Failure& f = GetParam();
  const std::string folder = Folder();
  for (const char* extension : { "vtu", "nope", "ex2", "spcth" })
  {
    std::ofstream(folder + "/garbage." + extension) << "no xml here";
  }
  std::ofstream(folder + "/garbage.dat") << "\xff\xfe\x01 \x02";
  std::ofstream(folder + "/empty.vtu").flush();
  zylTestData::Write(zylTestData::MakeCube(0, 0, 0), folder + "/good.vtu");
  zylTestData::Write(zylTestData::MakeRow(1), folder + "/good.vtm");
  std::string arguments = f.Arguments;
  for (auto at = arguments.find('@'); at != std::string::npos; at = arguments.find('@'))
  {
    arguments.replace(at, 1, folder + "/");
  }
  const bool own =
    arguments.find(folder) != std::string::npos && arguments.find("out") == std::string::npos;
  const Outcome outcome = View(arguments, own ? "" : Sample());
  EXPECT_EQ(outcome.ExitCode, f.ExitCode) << outcome.Text;
  EXPECT_EQ(outcome.Text.find("zylview: "), 0u) << outcome.Text;
  EXPECT_NE(outcome.Text.find(f.Text), std::string::npos) << outcome.Text;
  EXPECT_EQ(outcome.Text.find('\n'), outcome.Text.size() - 1) << outcome.Text;
  EXPECT_EQ(outcome.Text.find(": \n"), std::string::npos) << outcome.Text; // without a reason
}

INSTANTIATE_TEST_SUITE_P(All, zylViewAppFailure,
  ::testing::Values(Failure{ "BadOption", "--lust", 2, "--help" },
    Failure{ "MissingFile", "--list @none.vtu", 3, "No such file" },
    Failure{ "EmptyFile", "--list @empty.vtu", 3, "empty" },
    Failure{ "GarbageFile", "--list @garbage.vtu", 3, "its content is not what" },
    Failure{ "KindByPattern", "--list @garbage.spcth", 3, "its content is not what" },
    Failure{ "UnknownKind", "--list @garbage.nope", 3, "no reader for this kind" },
    Failure{ "ArrayInNoneOfTheFiles", "--output @out.png --array nope @good.vtu @good.vtm", 4,
      "no array 'nope'" },
    Failure{ "RefusedByALibrary", "--list @garbage.ex2", 3, "garbage.ex2': " },
    Failure{ "BytesInTheReason", "--list @garbage.dat", 3, "record type ??" },
    Failure{ "UnknownArray", "--output @out.png --array Presure", 4, "nearest: Pressure" },
    Failure{
      "UnknownBlock", "--output @out.png --block Inlt:Visibility=true", 4, "nearest: Inlet" },
    Failure{
      "UnknownBlockId", "--output @out.png --block 999:Visibility=true", 4, "no block '999'" },
    Failure{
      "UnknownDisplay", "--output @out.png --block Inlet:MeshLines.Visibility=1", 4, "MeshLine" },
    Failure{
      "UnknownSetting", "--output @out.png --block Inlet:Colour=1,0,0", 4, "nearest: Color" },
    Failure{ "BadValue", "--output @out.png --block Inlet:Color=1,0", 2, "3 values" },
    Failure{ "UnknownColorMap", "--output @out.png --colormap Jot --array Pressure", 4, "Jet" },
    Failure{ "CellContours", "--output @out.png --contours Quality:5", 4, "point array" },
    Failure{ "ScalarGlyphs", "--output @out.png --glyphs Pressure:1", 4, "nearest: Velocity" },
    Failure{ "UnknownReader", "--list --reader sources/Nope", 4, "sources/Nope" },
    Failure{ "BadOutput", "--output @no/out.png", 1, "cannot write" },
    Failure{ "NoServer", "--list --connect cs://127.0.0.1:1", 6, "127.0.0.1:1" },
    Failure{ "NoDisplay", "", 5, "--output" }),
  [](const auto& info) { return info.param.Name; });

//--------------------------------------------------------------------------------------------------
TEST(zylViewApp, OpensAWindow)
{
  if (std::getenv("DISPLAY") == nullptr)
  {
    GTEST_SKIP() << "no display";
  }
  const Outcome outcome = Execute(std::string(ZYL_VIEW) + " --frames 3 --stats " + Sample());
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  EXPECT_NE(outcome.Text.find("first frame"), std::string::npos) << outcome.Text;
}

//--------------------------------------------------------------------------------------------------
// What a window manager sends when the user closes the window.
TEST(zylViewApp, ClosesWhileItLoads)
{
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr)
  {
    GTEST_SKIP() << "no display";
  }
  const std::string file =
    zylTestData::Write(zylTestData::MakeRow(1500, 1), zylTestData::MakeFolder() + "/many.vtm");
  std::atomic<bool> done{ false };
  std::thread user([&] {
    while (!done)
    {
      Window window = FindWindow(display, DefaultRootWindow(display), "zylview - loading");
      if (window != 0)
      {
        XEvent event = {};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", 0);
        event.xclient.format = 32;
        event.xclient.data.l[0] = XInternAtom(display, "WM_DELETE_WINDOW", 0);
        XSendEvent(display, window, 0, NoEventMask, &event);
        XFlush(display);
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  });
  const Outcome outcome = Execute(std::string(ZYL_VIEW) + " --frames 1 --stats " + file);
  done = true;
  user.join();
  XCloseDisplay(display);
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  EXPECT_EQ(outcome.Text, ""); // not even the time of the load
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleApp, RefusesWhatItCannotDo)
{
  EXPECT_EQ(Execute(ZYL_SAMPLE).ExitCode, 2);
  EXPECT_EQ(Execute(std::string(ZYL_SAMPLE) + " --steps 0 x").ExitCode, 2);
  const Outcome outcome = Execute(std::string(ZYL_SAMPLE) + " /proc/nope");
  EXPECT_EQ(outcome.ExitCode, 1);
  EXPECT_NE(outcome.Text.find("zylsample: cannot write to '/proc/nope'"), std::string::npos);
}
