#include "zylStreamlineRepresentation.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylFlowData.h"
#include "zylSurfacePipeline.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <vtkDataArray.h>
#include <vtkLogger.h>

namespace {
using testing::HasSubstr;

// A seed line along x and one more.
const std::vector<double> Seeds = { 0.2, 0.0, 0.1, 0.5, 0.0, 0.1, 0.8, 0.0, -0.1, 0.0, -0.6, 0.3 };
} // namespace

using zylStreamline = zylFlowData::zylFlowTest<zylStreamlineRepresentation>;

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, GoStraightBothWaysAsFarAsAsked)
{
  this->Use(zylFlowData::Uniform);
  const struct
  {
    int Direction;
    double Limit;
    double From;
    double To;
  } cases[] = { { 0, 1e299, 0.1, 1.0 }, { 1, 1e299, -1.0, 0.1 }, { 2, 1e299, -1.0, 1.0 },
    { 0, 0.3, 0.1, 0.4 }, { 2, 0.3, -0.2, 0.4 } };
  for (const auto& c : cases)
  {
    this->Set("IntegrationDirection", c.Direction, "MaximumStreamlineLength", c.Limit);
    for (const bool locator : { false, true })
    {
      this->Set("UseCellLocator", locator);
      const auto lines = this->Trace({ 0.1, 0.2, 0.3 });
      ASSERT_NE(lines, nullptr);
      EXPECT_EQ(lines->GetNumberOfLines(), c.Direction == 2 ? 2 : 1);
      double bounds[6];
      lines->GetBounds(bounds);
      // A line ends within the last step, half a cell, of where the data end.
      const double end = c.Limit == 1e299 ? 0.07 : 1e-6;
      EXPECT_NEAR(bounds[0], c.From, c.Direction == 0 ? 1e-6 : end);
      EXPECT_NEAR(bounds[1], c.To, c.Direction == 1 ? 1e-6 : end);
      EXPECT_NEAR(bounds[2], 0.2, 1e-7);
      EXPECT_NEAR(bounds[3], 0.2, 1e-7);
      EXPECT_NEAR(bounds[4], 0.3, 1e-7);
      EXPECT_NEAR(bounds[5], 0.3, 1e-7);
      EXPECT_NEAR(zylFlowData::GetLength(lines), bounds[1] - bounds[0], 1e-5);
    }
  }
}

//--------------------------------------------------------------------------------------------------
// The points lie on the circles; the chords between them come the nearer, the finer the grid.
TEST_F(zylStreamline, StayOnCirclesTheBetterTheFinerTheGrid)
{
  double last = 2.0;
  for (const int n : { 4, 8, 16, 32 })
  {
    this->Use(zylFlowData::Rotation, n);
    this->Set("MaximumStreamlineLength", 1.0);
    const auto lines = this->Trace({ 0.6, 0.0, 0.1 });
    EXPECT_LT(zylFlowData::GetMaximum(
                lines, [](const zylPoint& p) { return std::abs(std::hypot(p[0], p[1]) - 0.6); }),
      2e-7);
    const double error = 2.0 - zylFlowData::GetLength(lines);
    EXPECT_LT(error, last / 3.0) << n;
    last = error;
  }
}

//--------------------------------------------------------------------------------------------------
// Every target exists, and what did not change is not sent again: not the seeds, nor anything else.
TEST_F(zylStreamline, SendsWhatChanged)
{
  this->Use(zylFlowData::Burgers);
  zylTestLog log;
  this->Set("Threshold", true, "Ribbon", true, "GlyphSpaceEvenly", true, "GlyphSpacing", 0.2,
    "GlyphOrientationArray", "velocity");
  this->Flow->GetSurfaceProperties()->Set("GlyphVisibility", true);
  this->Trace(Seeds);
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0) << log.Dump();
  EXPECT_FALSE(log.HasWarning());
  EXPECT_FALSE(log.HasError());
  EXPECT_EQ(zylTraffic([this] { this->Flow->Update(); }), "");
  zylFlowData::SetSeeds(this->Flow, Seeds); // the same
  EXPECT_EQ(zylTraffic([this] { this->Flow->Update(); }), "");
  this->Set("GlyphScaleFactor", 0.5);
  const std::string traffic = zylTraffic([this] { this->Flow->Update(); });
  EXPECT_NE(traffic, "");
  EXPECT_EQ(traffic.find("SetPoint"), std::string::npos);
  zylFlowData::SetSeeds(this->Flow, { 0.2, 0.0, 0.1 });
  EXPECT_NE(
    zylTraffic([this] { this->Flow->Update(); }).find("SetNumberOfPoints"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, HowLinesAreShownTracesNothing)
{
  this->Use(zylFlowData::Burgers);
  zylPropertyCollection* shown = this->Flow->GetSurfaceProperties();
  shown->Set("GlyphVisibility", true);
  this->Trace(Seeds);
  vtkSMSourceProxy* tracer = zylFindSource("ArbitrarySourceStreamTracer");
  ASSERT_NE(tracer, nullptr);
  EXPECT_EQ(zylFlowData::CountExecutions(tracer,
              [&] {
                for (const bool on : { true, false })
                {
                  this->Update("Ribbon", on);
                  this->Update("RibbonWidth", on ? 0.3 : 0.2);
                  this->Update("GlyphSpaceEvenly", on, "GlyphSpacing", 0.2);
                  for (const char* type : { "Arrow", "Cone", "Cube", "Cylinder", "Line", "Sphere" })
                  {
                    this->Update("GlyphType", type);
                  }
                  this->Set("GlyphScaleFactor", on ? 0.3 : 0.2, "GlyphOrientationArray",
                    on ? "velocity" : "", "Threshold", on);
                  shown->Set("ColorMode", on ? 1 : 0);
                  shown->Set("ColorVariableName", on ? "pressure" : "velocity_X");
                  shown->Set("GlyphColorMode", on ? 1 : 0);
                  this->Flow->Update();
                }
              }),
    0);
  this->Set("MaximumStreamlineLength", 0.5);
  EXPECT_EQ(zylFlowData::CountExecutions(tracer, [this] { this->Flow->Update(); }), 1);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, ThresholdCutsLinesOff)
{
  this->Use(zylFlowData::Uniform); // 2 m/s
  this->Set("Threshold", true, "ThresholdValue", 0.25);
  const auto lines = this->Trace({ -0.1, 0.2, 0.3 });
  EXPECT_NEAR(lines->GetBounds()[1], 0.4, 1e-5);
  EXPECT_LT(lines->GetBounds()[0], -0.9);
  EXPECT_EQ(this->Flow->GetThresholdArrayInformation(), nullptr);
  this->Set("ThresholdArray", "pressure"); // the x coordinate
  EXPECT_NEAR(this->Fetch()->GetBounds()[1], 0.25, 1e-5);
  ASSERT_NE(this->Flow->GetThresholdArrayInformation(), nullptr);
  EXPECT_EQ(this->Flow->GetThresholdArrayInformation()->GetName(), "pressure");
  EXPECT_GT(this->Fetch("Threshold", false)->GetBounds()[1], 0.9);
  EXPECT_EQ(vtkSMPropertyHelper(zylFindSource("RibbonFilter"), "Input").GetAsProxy()->GetXMLName(),
    std::string("SurfaceGeometryFilter"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, RibbonsLieAcrossTheVorticity)
{
  this->Use(zylFlowData::Rotation); // vorticity along z, so the ribbon lies in a plane of z
  this->Set("Ribbon", true, "RibbonWidth", 0.2, "MaximumStreamlineLength", 1.0);
  const auto ribbon = this->Trace({ 0.6, 0.0, 0.1 });
  EXPECT_EQ(ribbon->GetNumberOfStrips(), 2);
  EXPECT_EQ(ribbon->GetNumberOfLines(), 0);
  EXPECT_NEAR(ribbon->GetBounds()[4], 0.1, 1e-6);
  EXPECT_NEAR(ribbon->GetBounds()[5], 0.1, 1e-6);
  EXPECT_NEAR(zylFlowData::GetMaximum(
                ribbon, [](const zylPoint& p) { return std::abs(std::hypot(p[0], p[1]) - 0.6); }),
    0.1, 0.002);
  EXPECT_EQ(zylNumber(zylFindSource("RibbonFilter"), "Width"), 0.1);
}

//--------------------------------------------------------------------------------------------------
// Of the glyphs, their points: what the contour delivers.
TEST_F(zylStreamline, GlyphsAreEvenlySpacedAlongTheLines)
{
  this->Use(zylFlowData::Rotation, 64);
  this->Set("GlyphSpaceEvenly", true);
  this->Flow->GetSurfaceProperties()->Set("GlyphVisibility", true);
  this->Set("MaximumStreamlineLength", 1.5);
  for (const bool threshold : { false, true })
  {
    this->Set("Threshold", threshold);
    for (const double spacing : { 0.3, 0.1 })
    {
      this->Set("GlyphSpacing", spacing);
      this->Trace({ 0.6, 0.0, 0.1 });
      const auto points = zylFlowData::FetchLines(zylFindSource("Contour"));
      // Across the seed too: half the spacing on either side.
      const int count = static_cast<int>(std::round(3.0 / spacing));
      ASSERT_EQ(points->GetNumberOfPoints(), count) << spacing << threshold;
      std::vector<double> angles;
      for (vtkIdType i = 0; i < count; ++i)
      {
        angles.push_back(std::atan2(points->GetPoint(i)[1], points->GetPoint(i)[0]));
      }
      std::sort(angles.begin(), angles.end());
      for (int i = 1; i < count; ++i)
      {
        EXPECT_NEAR(0.6 * (angles[i] - angles[i - 1]), spacing, 2e-3 * spacing);
      }
    }
  }
  this->Set("GlyphSpaceEvenly", false);
  this->Set("GlyphType", "Cube"); // of 24 points
  const auto lines = this->Fetch();
  EXPECT_EQ(zylFlowData::FetchLines(zylFindSource("Glyph"))->GetNumberOfPoints(),
    24 * lines->GetNumberOfPoints());
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, GlyphsHaveTheirShapeSizeAndDirection)
{
  this->Use(zylFlowData::Rotation);
  this->Flow->GetSurfaceProperties()->Set("GlyphVisibility", true);
  this->Set("GlyphSpaceEvenly", true, "GlyphSpacing", 0.1, "MaximumStreamlineLength", 0.1,
    "IntegrationDirection", 0, "GlyphScaleFactor", 0.4);
  const auto glyph = [this](const char* type, const char* orientation) {
    this->Set("GlyphType", type, "GlyphOrientationArray", orientation);
    this->Trace({ 0.5, 0.0, 0.1 }); // one glyph half way, the flow along +y
    return zylFlowData::FetchLines(zylFindSource("Glyph"));
  };
  const struct
  {
    const char* Type;
    double X;
    double Y;
    double Z;
  } cases[] = { { "Sphere", 0.4, 0.4, 0.4 }, { "Cube", 0.4, 0.4, 0.4 },
    { "Arrow", 0.4, 0.08, 0.08 }, { "Cone", 0.4, 0.4, 0.4 }, { "Cylinder", 0.4, 0.4, 0.4 },
    { "Line", 0.4, 0.0, 0.0 } };
  for (const auto& c : cases)
  {
    double b[6];
    glyph(c.Type, "")->GetBounds(b);
    EXPECT_NEAR(b[1] - b[0], c.X, 0.06) << c.Type;
    EXPECT_NEAR(b[3] - b[2], c.Y, 0.06) << c.Type;
    EXPECT_NEAR(b[5] - b[4], c.Z, 0.06) << c.Type;
  }
  double b[6];
  glyph("Arrow", "velocity")->GetBounds(b);
  EXPECT_NEAR(b[2], 0.05, 0.01); // from its point on the line ...
  EXPECT_NEAR(b[3], 0.45, 0.01); // ... along the flow
  const auto count = [&](const char* type, const char* resolution, int value) {
    this->Set(resolution, value);
    return glyph(type, "")->GetNumberOfCells();
  };
  for (const auto& r : { std::make_pair("Sphere", "SphereGlyphThetaResolution"),
         std::make_pair("Sphere", "SphereGlyphPhiResolution"),
         std::make_pair("Cone", "ConeGlyphResolution"),
         std::make_pair("Arrow", "ArrowGlyphTipResolution"),
         std::make_pair("Arrow", "ArrowGlyphShaftResolution") })
  {
    EXPECT_LT(count(r.first, r.second, 5), count(r.first, r.second, 20)) << r.second;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, GlyphsMirrorTheirSettings)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* lines = this->Flow->GetSurfaceProperties();
  for (const std::string& name : pipeline->GetProperties()->GetPropertyNames())
  {
    zylProperty* original = pipeline->GetProperties()->GetProperty(name);
    zylProperty* mirror = lines->GetProperty("Glyph" + name);
    ASSERT_NE(mirror, nullptr) << name;
    EXPECT_EQ(mirror->GetPropertyType(), original->GetPropertyType()) << name;
    if (name != "BlockVisibility") // which shows the glyphs' one block from the start
    {
      EXPECT_EQ(mirror->GetHashValue(), original->GetHashValue()) << name;
    }
    EXPECT_EQ(mirror->GetIncludeInHash(), original->GetIncludeInHash()) << name;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, SayWhatIsWrongWithTheVectors)
{
  this->Use(zylFlowData::Rotation);
  this->Set("MaximumStreamlineLength", 0.5);
  const auto say = [this](const char* vectors) {
    return zylConsole([&] {
      this->Trace(Seeds);
      this->Update("VectorVariable", vectors);
    });
  };
  EXPECT_THAT(say("pressure"),
    HasSubstr("Array 'pressure' has 1 components, but should have 3 components.\n"));
  EXPECT_EQ(
    zylText(zylFindSource("ArbitrarySourceStreamTracer"), "SelectInputVectors", 4), "pressure");
  EXPECT_THAT(say("nowhere"),
    HasSubstr("No point nor cell array named 'nowhere' is in the zylDataSet set "
              "on this zylStreamlineRepresentation\n"));
  // A tracer would read beyond the end of its vectors.
  this->Data->DefineDerivedPointVariable("slope", "gradient(velocity)");
  for (const char* name : { "pressure", "stress", "slope" })
  {
    EXPECT_THAT(say(name), HasSubstr("components, but should have 3 components.\n"));
    EXPECT_EQ(this->Fetch()->GetNumberOfLines(), 0);
  }
  EXPECT_EQ(say("").find("array"), std::string::npos);
  EXPECT_EQ(say("velocity"), "");
  EXPECT_GT(this->Fetch()->GetNumberOfLines(), 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, FollowDerivedVectors)
{
  this->Use(zylFlowData::Uniform);
  this->Data->DefineDerivedPointVariable("back", "-velocity");
  this->Set("IntegrationDirection", 0);
  this->Trace({ 0.1, 0.2, 0.3 });
  this->Set("VectorVariable", "back");
  EXPECT_EQ(zylConsole([this] { this->Flow->Update(); }), "");
  const auto lines = this->Flow->GetDerivedSurface();
  ASSERT_EQ(lines->GetNumberOfLines(), 1);
  EXPECT_NEAR(lines->GetBounds()[0], -0.95, 0.06);
  EXPECT_NEAR(lines->GetBounds()[1], 0.1, 1e-6);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, SurviveOddSeedsAndSettings)
{
  this->Use(zylFlowData::Rotation);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const struct
  {
    std::vector<double> Seeds;
    int Lines;
  } cases[] = { { {}, 0 }, { { 0.5 }, 0 }, { { 0.5, 0.0 }, 0 }, { { 0.5, 0.0, 0.1, 7.0 }, 2 },
    { { 9.0, 9.0, 9.0 }, 0 }, { { nan, nan, nan, 0.5, 0.0, 0.1 }, 2 }, { { inf, -inf, 1e300 }, 0 },
    { std::vector<double>(30000, 0.5), 20000 }, { { 0.5, 0.0, 0.1 }, 2 } };
  this->Set("MaximumStreamlineLength", 0.1);
  for (const auto& c : cases)
  {
    const auto lines = this->Trace(c.Seeds);
    EXPECT_EQ(lines ? lines->GetNumberOfLines() : 0, c.Lines) << c.Seeds.size();
  }
  this->Flow->GetSurfaceProperties()->Set("GlyphVisibility", true);
  this->Set("GlyphSpaceEvenly", true);
  for (const double value : { nan, inf, -inf, 0.0, -1.0, 1e-300, 1e300, 0.02 })
  {
    for (const char* name : { "ThresholdValue", "RibbonWidth", "GlyphScaleFactor", "GlyphSpacing",
           "MaximumStreamlineLength" })
    {
      const double before = this->Flow->GetProperties()->GetDouble(name);
      this->Update("Threshold", name == std::string("ThresholdValue"), "Ribbon",
        name == std::string("RibbonWidth"), name, value);
      this->Set(name, before);
    }
  }
  this->Set("Threshold", true);
  for (const char* name :
    { "GlyphType", "GlyphOrientationArray", "ThresholdArray", "VectorVariable" })
  {
    const std::string before = this->Flow->GetProperties()->GetString(name);
    for (const char* value : { "", "nowhere", "\"'\\;" })
    {
      this->Update(name, value);
    }
    this->Set(name, before.c_str());
  }
  for (const int value : { -7, 99, 2 })
  {
    for (const char* name : { "SphereGlyphThetaResolution", "IntegrationDirection" })
    {
      this->Update(name, value);
    }
  }
  EXPECT_EQ(this->Fetch("Threshold", false, "Ribbon", false)->GetNumberOfLines(), 2);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylStreamline, FollowDataAndTimeAndCanBeFreed)
{
  using zylFlowData::Trace;
  this->Use(zylFlowData::Uniform);
  const std::string before = zylRegisteredProxies();
  {
    vtkNew<zylStreamlineRepresentation> lines;
    lines->Update(); // no dataset
    lines->FreeResources();
    EXPECT_EQ(zylRegisteredProxies(), before);
    const std::vector<double> seed = { 0.1, 0.2, 0.3 };
    const double first = zylFlowData::GetLength(Trace(lines, this->Data, seed));
    EXPECT_FALSE(lines->GetIntegratedValues().PointValues.empty());
    EXPECT_NE(zylRegisteredProxies(), before);
    for (int i = 0; i < 2; ++i)
    {
      lines->FreeResources();
      lines->Update();
      EXPECT_EQ(zylFlowData::GetLength(lines->GetDerivedSurface()), first);
    }
    // The data change, are gone, come back.
    this->Use(zylFlowData::Rotation, 12);
    EXPECT_NEAR(zylFlowData::GetMaximum(Trace(lines, this->Data, seed),
                  [](const zylPoint& p) { return std::hypot(p[0], p[1]); }),
      std::hypot(0.1, 0.2), 1e-6);
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(vtkNew<vtkMultiBlockDataSet>()));
    lines->Update();
    const auto other = zylLoad(zylFlowData::Make(zylFlowData::Uniform));
    EXPECT_NEAR(zylFlowData::GetLength(Trace(lines, other, seed)), first, 1e-12);
    this->Use(zylFlowData::Uniform);
  }
  EXPECT_EQ(zylRegisteredProxies(), before);
}

//--------------------------------------------------------------------------------------------------
// "pressure" is x plus the time.
TEST_F(zylStreamline, FollowTheTime)
{
  const double steps[] = { 0.0, 0.5 };
  ASSERT_TRUE(
    this->Data->LoadFromFile({ zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 2) }));
  this->Set("Threshold", true, "ThresholdArray", "pressure", "ThresholdValue", 0.7);
  const auto end = [this](double time) {
    zylTimeController::GetInstance()->GoToTime(time);
    return this->Trace({ 0.2, 0.4, 0.01 })->GetBounds()[1];
  };
  EXPECT_NEAR(end(0.0), 0.7, 1e-5);
  EXPECT_NEAR(end(0.5), 0.2, 1e-5);
  EXPECT_NEAR(end(0.0), 0.7, 1e-5);
}
