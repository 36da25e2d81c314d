// What the viewer's command line means, without starting ParaView.
#include "zylViewOptions.h"
#include "zylViewError.h"

#include "zylTestLog.h"

#include <gtest/gtest.h>

namespace {
struct Parsed
{
  zylViewOptions Options;
  bool Go = false;
  int ExitCode = -1;
  std::string Printed;
};

Parsed Parse(std::vector<const char*> arguments)
{
  arguments.insert(arguments.begin(), "zylview");
  Parsed parsed;
  parsed.Printed = zylConsole([&] {
    parsed.Go = zylParseViewOptions(
      static_cast<int>(arguments.size()), arguments.data(), parsed.Options, parsed.ExitCode);
  });
  return parsed;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylViewOptions, FilesStayFilesBesideRepeatedOptions)
{
  const auto p = Parse({ "--clip", "sphere:0,0,0,1", "--block", "3:Color=1,0,0", "a.vtu", "--clip",
    "scalar:p,-1,2", "--block", "Inlet:MeshLine.Visibility=true", "b.vtu" });
  ASSERT_TRUE(p.Go) << p.Printed;
  EXPECT_EQ(p.Options.Files, (std::vector<std::string>{ "a.vtu", "b.vtu" }));
  ASSERT_EQ(p.Options.Clips.size(), 2u);
  EXPECT_EQ(p.Options.Clips[1].Variable, "p");
  EXPECT_EQ(p.Options.Clips[1].Values, (std::vector<double>{ -1.0, 2.0 }));
  ASSERT_EQ(p.Options.BlockSettings.size(), 2u);
  EXPECT_EQ(p.Options.BlockSettings[0].Kind, "Surface");
  EXPECT_EQ(p.Options.BlockSettings[1].Kind, "MeshLine");
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewOptions, NumbersMayBeNegative)
{
  const auto p = Parse({ "--range", "-2.5,-1", "--time", "-3", "--from", "-1,-2,-0.5", "--size",
    "64x48", "--background", "0,0,0:1,0.5,0" });
  ASSERT_TRUE(p.Go) << p.Printed;
  EXPECT_EQ((*p.Options.Range)[0], -2.5);
  EXPECT_EQ(*p.Options.Time, -3.0);
  EXPECT_EQ((*p.Options.From)[2], -0.5);
  EXPECT_EQ(p.Options.Width, 64);
  EXPECT_EQ(p.Options.Height, 48);
  EXPECT_EQ(p.Options.BackgroundTop[0], 0.0);
  EXPECT_EQ(p.Options.BackgroundBottom[1], 0.5);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewOptions, NamesMayHoldSeparators)
{
  const auto setting = zylParseBlockSetting("a:b=c:Surface.ColorLegendTitle=p = q:r");
  EXPECT_EQ(setting.Owner, "a"); // the first colon with an equals sign after it ends the name
  const auto plain = zylParseBlockSetting("wall:left:Color=1,2,3");
  EXPECT_EQ(plain.Owner, "wall:left");
  EXPECT_EQ(plain.Name, "Color");
  const auto contours = Parse({ "--contours", "rho:mean:12" });
  ASSERT_TRUE(contours.Go);
  EXPECT_EQ(contours.Options.ContourArray, "rho:mean");
  EXPECT_EQ(contours.Options.NumberOfContours, 12);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewOptions, ShapesOfClips)
{
  EXPECT_EQ(zylParseClip("plane:0,0,0,0,0,1").Values.size(), 6u);
  EXPECT_FALSE(zylParseClip("box:0,1,0,1,0,1").Outside);
  EXPECT_TRUE(zylParseClip("box:0,1,0,1,0,1:outside").Outside);
  EXPECT_EQ(zylParseClip("cylinder:0,0,0,0,0,1,2").Values.back(), 2.0);
}

//--------------------------------------------------------------------------------------------------
class zylViewBadOptions
  : public ::testing::TestWithParam<std::pair<std::vector<const char*>, const char*>>
{
};

TEST_P(zylViewBadOptions, GiveOneLineAndTheExitCode)
{
  const auto p = Parse(GetParam().first);
  EXPECT_FALSE(p.Go);
  EXPECT_EQ(p.ExitCode, zylViewBadArguments);
  EXPECT_NE(p.Printed.find(GetParam().second), std::string::npos) << p.Printed;
  EXPECT_EQ(p.Printed.find('\n'), p.Printed.size() - 1) << p.Printed;
}

using Arguments = std::vector<const char*>;
INSTANTIATE_TEST_SUITE_P(All, zylViewBadOptions,
  ::testing::Values(std::make_pair(Arguments{ "--nope" }, "--nope"),
    std::make_pair(Arguments{ "--size", "12" }, "WIDTHxHEIGHT"),
    std::make_pair(Arguments{ "--size", "0x5" }, "WIDTHxHEIGHT"),
    std::make_pair(Arguments{ "--range", "2,1" }, "is empty"),
    std::make_pair(Arguments{ "--range", "1" }, "needs 2 numbers"),
    std::make_pair(Arguments{ "--background", "1,x,0" }, "'x'"),
    std::make_pair(Arguments{ "--reader", "sources" }, "GROUP/NAME"),
    std::make_pair(Arguments{ "--contours", "p:1" }, "from 2 to 1000"),
    std::make_pair(Arguments{ "--glyphs", "Velocity" }, "NAME:NUMBER"),
    std::make_pair(Arguments{ "--clip", "cube:1,2" }, "does not begin with"),
    std::make_pair(Arguments{ "--clip", "sphere:1,2" }, "needs 4 numbers"),
    std::make_pair(Arguments{ "--clip", "scalar:p,0,1:outside" }, "no outside"),
    std::make_pair(Arguments{ "--block", "3=1" }, "SETTING=VALUE"),
    std::make_pair(Arguments{ "--view", "7" }, "--view"),
    std::make_pair(Arguments{ "--opacity", "1.5" }, "--opacity"),
    std::make_pair(Arguments{ "--output" }, "--output")));

//--------------------------------------------------------------------------------------------------
TEST(zylViewOptions, HelpNamesEveryExitCode)
{
  const auto help = Parse({ "--help" });
  EXPECT_FALSE(help.Go);
  EXPECT_EQ(help.ExitCode, 0);
  for (const char* text : { "Exit codes: 0 done", "1 rendering", "2 bad arguments", "3 a file",
         "4 no such", "5 no display", "6 no server" })
  {
    EXPECT_NE(help.Printed.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(Parse({ "--version" }).Printed.find("zylview "), 0u);
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewError, NamesTheNearest)
{
  const auto error =
    zylUnknownName("array", "presure", { "Velocity", "Pressure", "Temperature", "Vorticity" });
  EXPECT_STREQ(
    error.what(), "there is no array 'presure'; nearest: Pressure, Temperature, Velocity");
  EXPECT_STREQ(zylUnknownName("array", "p", {}).what(), "there is no array 'p'");
}
