// What the command line says about derived surfaces, lines and numbers, without starting ParaView.
#include "zylViewError.h"
#include "zylViewOptions.h"

#include "zylTestLog.h"

#include <gtest/gtest.h>

namespace {
using Shape = zylViewDerived::Shape;
using Seeds = zylViewSeeds::Shape;
using Doubles = std::vector<double>;

zylViewOptions Parse(std::vector<const char*> arguments)
{
  arguments.insert(arguments.begin(), "zylview");
  zylViewOptions options;
  int code = -1;
  EXPECT_TRUE(
    zylParseViewOptions(static_cast<int>(arguments.size()), arguments.data(), options, code));
  return options;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerivedForms, OneForEachOption)
{
  const struct
  {
    const char* Option;
    const char* Text;
    Shape Kind;
    const char* Variable;
    Doubles Values;
  } cases[] = {
    { "--cut", "0,1,2,0,0,-1", Shape::Cut, "", { 0, 1, 2, 0, 0, -1 } },
    { "--crinkle", "0,0,0,1e-3,0,0", Shape::Crinkle, "", { 0, 0, 0, 1e-3, 0, 0 } },
    { "--curve", "0,0,0,1,1,1", Shape::Curve, "", { 0, 0, 0, 1, 1, 1 } },
    { "--isosurface", "rho:mean:-0.5", Shape::Isosurface, "rho:mean", { -0.5 } },
    { "--clip-volume", "plane:0,0,0,1,0,0", Shape::ClipVolume, "", {} },
    { "--streamlines", "U:mean:10", Shape::Streamlines, "U:mean", {} },
    { "--ribbons", "U:points:0,0,0", Shape::Ribbons, "U", {} },
    { "--surface-streamlines", "U:10", Shape::SurfaceStreamlines, "U", {} },
    { "--curved-glyphs", "U:10", Shape::CurvedGlyphs, "U", {} },
    { "--vortex-cores", "U", Shape::VortexCores, "U", {} },
  };
  for (const auto& c : cases)
  {
    const auto options = Parse({ c.Option, c.Text, "file.vtu" });
    ASSERT_EQ(options.Derived.size(), 1u) << c.Option;
    EXPECT_EQ(options.Derived[0].Kind, c.Kind) << c.Option;
    EXPECT_EQ(options.Derived[0].Variable, c.Variable) << c.Option;
    EXPECT_EQ(options.Derived[0].Values, c.Values) << c.Option;
    EXPECT_EQ(options.Files, std::vector<std::string>{ "file.vtu" }) << c.Option;
  }
  const auto several =
    Parse({ "--isosurface", "p:1,2,3", "--cut", "0,0,0,1,0,0", "--isosurface", "q:4" });
  EXPECT_EQ(several.Derived.size(), 5u);
  EXPECT_EQ(several.Derived.back().Variable, "q"); // kind by kind, in order
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerivedForms, Seeds)
{
  const struct
  {
    const char* Text;
    Seeds Kind;
    int Count;
    Doubles Values;
    const char* File;
  } cases[] = {
    { "100", Seeds::Spread, 100, {}, "" },
    { "1e3", Seeds::Spread, 1000, {}, "" },
    { "line:0,0,0,1,2,3,20", Seeds::Line, 20, { 0, 0, 0, 1, 2, 3 }, "" },
    { "sphere:0,0,0,0.5,7", Seeds::Sphere, 7, { 0, 0, 0, 0.5 }, "" },
    { "points:1,2,3,4,5,6", Seeds::Points, 0, { 1, 2, 3, 4, 5, 6 }, "" },
    { "file:/a/b:c.txt", Seeds::File, 0, {}, "/a/b:c.txt" },
  };
  for (const auto& c : cases)
  {
    const zylViewSeeds seeds = zylParseSeeds(c.Text, "--streamlines");
    EXPECT_EQ(seeds.Kind, c.Kind) << c.Text;
    EXPECT_EQ(seeds.Count, c.Count) << c.Text;
    EXPECT_EQ(seeds.Values, c.Values) << c.Text;
    EXPECT_EQ(seeds.File, c.File) << c.Text;
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerivedForms, SettingsDefinitionsAndMeasures)
{
  const auto options = Parse({ "--set", "Cut2.Center=1,2,3", "--set",
    "Isosurface.MeshLine.Color=1,0,0", "--set", "Cut.ColorLegendTitle=a.b=c", "--define",
    "speed=mag(U)", "--define", "hot=T == 300", "--histogram", "rho:mean:20", "--probe", "1,2,3",
    "--probe", "4,5,6", "--integrate", "--json" });
  const std::vector<zylViewSetting> wanted = { { "Cut2", "", "Center", "1,2,3" },
    { "Isosurface", "MeshLine", "Color", "1,0,0" }, { "Cut", "", "ColorLegendTitle", "a.b=c" } };
  ASSERT_EQ(options.KindSettings.size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i)
  {
    EXPECT_EQ(options.KindSettings[i].Owner, wanted[i].Owner);
    EXPECT_EQ(options.KindSettings[i].Kind, wanted[i].Kind);
    EXPECT_EQ(options.KindSettings[i].Name, wanted[i].Name);
    EXPECT_EQ(options.KindSettings[i].Value, wanted[i].Value);
  }
  using Definitions = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(options.Definitions, (Definitions{ { "speed", "mag(U)" }, { "hot", "T == 300" } }));
  EXPECT_EQ(options.Histograms[0], (std::pair<std::string, int>{ "rho:mean", 20 }));
  EXPECT_EQ(options.ProbePoints, (Doubles{ 1, 2, 3, 4, 5, 6 }));
  EXPECT_TRUE(options.Integrate && options.PrintJson && options.Measures());
  EXPECT_FALSE(Parse({ "--cut", "0,0,0,1,0,0" }).Measures());
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewDerivedForms, BadOnesAreSaidInOneLine)
{
  const struct
  {
    const char* Option;
    const char* Text;
    const char* Message;
  } cases[] = {
    { "--cut", "0,0,0,1,0", "needs 6 numbers" },
    { "--cut", "0,0,0,0,0,0", "normal is zero" },
    { "--crinkle", "0,0,0,1,0,x", "'x'" },
    { "--curve", "0,0,nan,1,0,0", "'nan'" },
    { "--isosurface", "p", "NAME:VALUE" },
    { "--isosurface", ":1", "NAME:VALUE" },
    { "--isosurface", "p:1,,2", "''" },
    { "--isosurface", "p:inf", "'inf'" },
    { "--clip-volume", "box:0,1,0,1,0,1", "plane:, sphere: or scalar:" },
    { "--clip-volume", "scalar:T,1,2", "needs 1 numbers" },
    { "--streamlines", "U", "VECTOR:SEEDS" },
    { "--streamlines", "U:0", "from 1 to" },
    { "--streamlines", "U:2.5", "whole number" },
    { "--streamlines", "U:1e12", "from 1 to" },
    { "--ribbons", "U:line:0,0,0,1,1,1", "needs 7 numbers" },
    { "--curved-glyphs", "U:sphere:0,0,0,1,-5", "from 1 to" },
    { "--surface-streamlines", "U:points:1,2", "three numbers" },
    { "--streamlines", "U:file:", "'file:'" },
    { "--set", "Cut=1", "KIND.PROPERTY=VALUE" },
    { "--set", "Cut.Center", "KIND.PROPERTY=VALUE" },
    { "--set", "Cut..Center=1", "KIND.PROPERTY=VALUE" },
    { "--define", "speed", "NAME=EXPRESSION" },
    { "--define", "=1", "NAME=EXPRESSION" },
    { "--histogram", "p:0", "from 1 to" },
    { "--histogram", "p", "NAME:NUMBER" },
    { "--probe", "1,2", "needs 3 numbers" },
  };
  for (const auto& c : cases)
  {
    zylViewOptions options;
    int code = -1;
    bool good = true;
    const char* arguments[] = { "zylview", c.Option, c.Text };
    const std::string text =
      zylConsole([&] { good = zylParseViewOptions(3, arguments, options, code); });
    EXPECT_FALSE(good) << c.Option << ' ' << c.Text;
    EXPECT_EQ(code, zylViewBadArguments) << c.Option << ' ' << c.Text;
    EXPECT_NE(text.find(c.Message), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
  }
}
