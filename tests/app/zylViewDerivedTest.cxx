// Derived surfaces, lines and numbers through the real program.
#include "zylTestData.h"
#include "zylViewRun.h"

#include <sstream>

#include <vtkMultiBlockDataSet.h>
#include <vtkUnstructuredGrid.h>
#include <vtk_jsoncpp.h>

#include <gtest/gtest.h>

using namespace zylViewRun;

namespace {
// Three unit cubes along x with "pressure" = x and "velocity" = (y, 1 - x, z).
const std::string& Row()
{
  static const std::string file =
    zylTestData::Write(zylTestData::MakeRow(3), Folder() + "/numbers.vtm");
  return file;
}

Json::Value Numbers(const std::string& arguments)
{
  const Outcome outcome = View("--json " + arguments, Row());
  EXPECT_EQ(outcome.ExitCode, 0) << outcome.Text;
  Json::Value document;
  std::string errors;
  std::istringstream text(outcome.Text);
  EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), text, &document, &errors))
    << errors << outcome.Text;
  return document;
}
} // namespace

//--------------------------------------------------------------------------------------------------
// Each kind shows something of its own; surfaces of blocks give way.
TEST(zylViewDerived, EveryKindShows)
{
  const std::string shown[] = { "--clip-volume plane:4,0,2,1,0,0", "--cut 4,0,2,0,0,1",
    "--crinkle 4,0,2,0,0,1", "--isosurface Pressure:-25", "--curve 4,0,2,0,0,1",
    "--streamlines Velocity:line:-3,-2,2,-3,2,2,9", "--ribbons Velocity:line:-3,-2,2,-3,2,2,9",
    "--surface-streamlines Velocity:80", "--curved-glyphs Velocity:40", "--vortex-cores Velocity" };
  const std::string view = "--from -0.5,-1,1 --zoom 1.3 --array Pressure ";
  std::vector<Picture> pictures{ Draw(view) };
  for (const std::string& kind : shown)
  {
    pictures.push_back(Draw(view + kind));
    EXPECT_GT(pictures.back().Covered, 0.0005) << kind;
    for (std::size_t i = 0; i + 1 < pictures.size(); ++i)
    {
      EXPECT_GT(Difference(pictures[i], pictures.back()), 0.0005) << kind << " and " << i;
    }
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerived, SettingsReachTheKindOneOfItAndItsDisplays)
{
  const std::string cuts = "--view 3 --cut 1,-2,2,0,1,0 --cut 1,2,2,0,1,0 --set Cut.Color=0,1,0 ";
  const Picture green = Draw(cuts);
  EXPECT_GT(green.Mean[1], 10.0 * green.Mean[0]);
  const Picture red = Draw(cuts + "--set Cut1.Surface.Color=1,0,0");
  EXPECT_GT(red.Mean[0], 10.0 * red.Mean[1]); // the first hides the second
  const Picture second = Draw(cuts + "--set Cut2.Color=1,0,0");
  EXPECT_LT(Difference(second, green), 0.001);
  EXPECT_GT(Difference(green, Draw(cuts + "--set Cut.MeshLine.Visibility=true")), 0.05);
  EXPECT_GT(Difference(green, Draw(cuts + "--set Cut.Clip=sphere:4,0,2,2.5")), 0.1);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerived, ColorsByDefinedVariables)
{
  const std::string define = "--define double=2*Pressure --view 1 ";
  const Picture twice = Draw(define + "--array double");
  EXPECT_GT(Difference(Draw("--plain --view 1"), twice), 0.1);
  // The same colors: the range that is found is twice as large.
  EXPECT_LT(Difference(Draw("--view 1 --array Pressure"), twice), 0.02);
  const std::string cut = "--cut 4,0,2,0,0,1 ";
  EXPECT_GT(
    Difference(Draw("--plain --view 1 " + cut), Draw(define + cut + "--array double")), 0.1);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewNumbers, AreThoseOfAnalysis)
{
  const Json::Value all = Numbers("--integrate --cut 1.5,0,0,1,0,0 --define square=pressure**2 "
                                  "--histogram pressure:3 --probe 1.25,0.5,0.5 --probe 9,9,9");
  const Json::Value& data = all["integrals"][0];
  EXPECT_NEAR(data["cell"]["Volume"][0].asDouble(), 3.0, 1e-6);
  EXPECT_NEAR(data["point"]["pressure"][0].asDouble(), 4.5, 1e-6); // of x over 0 ... 3
  EXPECT_TRUE(data["point"].isMember("square"));
  const Json::Value& cut = all["integrals"][1];
  EXPECT_EQ(cut["of"].asString(), "Cut");
  EXPECT_NEAR(cut["cell"]["Area"][0].asDouble(), 1.0, 1e-6);
  EXPECT_NEAR(cut["point"]["pressure"][0].asDouble(), 1.5, 1e-6);

  const Json::Value& histogram = all["histograms"][0];
  EXPECT_EQ(histogram["range"][1].asDouble(), 3.0);
  int sum = 0;
  for (const Json::Value& bin : histogram["bins"])
  {
    sum += bin.asInt();
  }
  EXPECT_EQ(histogram["bins"].size(), 3u);
  EXPECT_EQ(sum, 3 * 27); // every point of every block

  const Json::Value& probes = all["probes"];
  EXPECT_TRUE(probes[0]["valid"].asBool());
  EXPECT_NEAR(probes[0]["values"]["pressure"][0].asDouble(), 1.25, 1e-6);
  EXPECT_NEAR(probes[0]["values"]["velocity"][1].asDouble(), -0.25, 1e-6);
  EXPECT_FALSE(probes[1]["valid"].asBool());
  EXPECT_TRUE(probes[1]["values"].isNull());
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewNumbers, TakeSettings)
{
  const Json::Value all =
    Numbers("--integrate --set Integrate.Blocks=block_2 --histogram pressure:2 "
            "--set Histogram.BinRanges=1,2 --probe 0.5,0.5,0.5 --set Probe.Blocks=2,3");
  EXPECT_NEAR(all["integrals"][0]["cell"]["Volume"][0].asDouble(), 1.0, 1e-6);
  EXPECT_NEAR(all["integrals"][0]["point"]["pressure"][0].asDouble(), 1.5, 1e-6);
  EXPECT_EQ(all["histograms"][0]["range"][0].asDouble(), 1.0);
  EXPECT_FALSE(all["probes"][0]["valid"].asBool());
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewNumbers, AreATableToRead)
{
  const Outcome table =
    View("--integrate --histogram pressure:3 --probe 1.5,0.5,0.5 --probe 9,9,9", Row());
  EXPECT_EQ(table.ExitCode, 0);
  for (const char* text : { "integrals over the data\n", "  point pressure ", "  cell  Volume ",
         "histogram of pressure\n", " ... ", "####", "values at 1.5, 0.5, 0.5\n",
         "values at 9, 9, 9: outside of the data\n" })
  {
    EXPECT_NE(table.Text.find(text), std::string::npos) << text << " in\n" << table.Text;
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerived, SaysWhatIsWrong)
{
  const struct
  {
    const char* Arguments;
    int ExitCode;
    const char* Text;
  } cases[] = {
    { "--isosurface Presure:0", 4, "nearest: Pressure" },
    { "--isosurface Pressure:99999", 7, "what is derived is empty" },
    { "--streamlines Pressure:10", 4, "nearest: Velocity" },
    { "--streamlines Velocity:file:/nope", 3, "cannot read the seeds" },
    { "--streamlines Velocity:points:99,99,99", 7, "what is derived is empty" },
    { "--cut 0,0,0,1,0,0 --set Cat.Center=1,2,3", 4, "nearest: Cut" },
    { "--cut 0,0,0,1,0,0 --set Cut2.Center=1,2,3", 4, "'Cut2'" },
    { "--cut 0,0,0,1,0,0 --set Cut.Centre=1,2,3", 4, "nearest: Center" },
    { "--cut 0,0,0,1,0,0 --set Cut.Blocks=Inlt", 4, "nearest: Inlet" },
    { "--cut 0,0,0,1,0,0 --set Cut.Clip=plane:1", 2, "needs 6 numbers" },
    { "--cut 4,0,2,0,0,1 --array a --define a=Pressure*", 1, "\"a\": SyntaxError" },
    { "--cut 4,0,2,0,0,1 --array a --define a=nowhere*2", 1, "'a' cannot be computed" },
    { "--array a --define a=nowhere*2", 1, "'a' cannot be computed" },
  };
  for (const auto& c : cases)
  {
    const Outcome outcome =
      View("--size 32x32 --output " + Folder() + "/bad.png " + std::string(c.Arguments));
    EXPECT_EQ(outcome.ExitCode, c.ExitCode) << c.Arguments << '\n' << outcome.Text;
    EXPECT_NE(outcome.Text.find(c.Text), std::string::npos) << outcome.Text;
  }
}
