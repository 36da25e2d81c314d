#include "zylCurvedGlyphRepresentation.h"

#include "zylFlowData.h"
#include "zylTest.h"

#include <vtkLogger.h>

class zylCurvedGlyph : public zylFlowData::zylFlowTest<zylCurvedGlyphRepresentation>
{
protected:
  // Slender arrows.
  void SetUp() override
  {
    this->Set("GlyphSpacing", 0.4, "GlyphConeRadius", 0.05, "GlyphConeHeight", 0.1,
      "GlyphBodyRadius", 0.02, "GlyphBodyLength", 0.2);
  }
};

//--------------------------------------------------------------------------------------------------
// One arrow along +x whose foot is 0.2, half the spacing, downstream of the seed.
TEST_F(zylCurvedGlyph, HasItsDimensions)
{
  this->Use(zylFlowData::Uniform);
  this->Set("IntegrationDirection", 0, "MaximumStreamlineLength", 0.4);
  const std::vector<double> seed = { 0.1, 0.2, 0.3 };
  const auto expect = [&](double back, double tip, double head, double body) {
    const auto arrow = this->Trace(seed);
    double b[6];
    arrow->GetBounds(b);
    EXPECT_NEAR(b[0], back, 1e-5);
    EXPECT_NEAR(b[1], tip, 1e-5);
    EXPECT_NEAR(b[5] - 0.3, head, 0.03 * head);
    const double behind = zylFlowData::GetMaximum(arrow,
      [](const zylPoint& p) { return p[0] < 0.28 ? std::hypot(p[1] - 0.2, p[2] - 0.3) : 0.0; });
    EXPECT_NEAR(behind, body, 1e-5);
  };
  expect(0.1, 0.4, 0.05, 0.02);
  this->Set("GlyphBodyLength", 0.35);
  expect(-0.05, 0.4, 0.05, 0.02);
  this->Set("GlyphBodyRadius", 0.01);
  expect(-0.05, 0.4, 0.05, 0.01);
  this->Set("GlyphConeHeight", 0.3);
  expect(-0.05, 0.6, 0.05, 0.01);
  this->Set("GlyphConeRadius", 0.1);
  expect(-0.05, 0.6, 0.1, 0.01);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylCurvedGlyph, CountsWithSpacingAndTessellation)
{
  this->Use(zylFlowData::Uniform);
  const std::vector<double> seed = { 0.0, 0.2, 0.3 };
  const auto heads = [&](double spacing) {
    this->Set("GlyphSpacing", spacing);
    this->Trace(seed);
    return zylFlowData::FetchLines(zylFindSource("Contour"))->GetNumberOfPoints();
  };
  EXPECT_EQ(heads(0.4), 4);  // at -0.6, -0.2, 0.2 and 0.6
  EXPECT_EQ(heads(0.2), 10); // at -0.9 ... 0.9
  const auto cells = [&](int sides) {
    this->Set("GlyphTessellation", sides);
    const auto arrows = this->Trace(seed);
    return zylFlowData::FetchLines(zylFindSource("Glyph"))->GetNumberOfCells();
  };
  EXPECT_EQ(cells(16), 10 * 17);
  EXPECT_EQ(cells(5), 10 * 6);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylCurvedGlyph, BodiesFollowTheFlow)
{
  this->Use(zylFlowData::Rotation, 32);
  this->Set("MaximumStreamlineLength", 1.5, "GlyphBodyLength", 0.35, "GlyphConeRadius", 0.02,
    "GlyphConeHeight", 0.01);
  const auto arrows = this->Trace({ 0.5, 0.0, 0.1 });
  // A straight body would leave the circle by 0.1.
  EXPECT_LT(zylFlowData::GetMaximum(
              arrows, [](const zylPoint& p) { return std::abs(std::hypot(p[0], p[1]) - 0.5); }),
    0.022);
  for (const char* name : { "velocity", "pressure" })
  {
    EXPECT_TRUE(arrows->GetPointData()->HasArray(name)) << name;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylCurvedGlyph, SendsWhatChangedAndCanBeFreed)
{
  this->Use(zylFlowData::Burgers);
  zylTestLog log;
  const std::vector<double> seeds = { 0.5, 0.0, 0.1, -0.3, 0.2, -0.2 };
  const auto first = this->Trace(seeds)->GetNumberOfPoints();
  EXPECT_GT(first, 0);
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0) << log.Dump();
  EXPECT_FALSE(log.HasWarning());
  EXPECT_FALSE(log.HasError());
  EXPECT_EQ(zylTraffic([this] { this->Flow->Update(); }), "");
  this->Flow->FreeResources();
  EXPECT_EQ(this->Fetch()->GetNumberOfPoints(), first);
  this->Data->DefineDerivedPointVariable("half", "velocity * 0.5");
  this->Set("VectorVariable", "half");
  EXPECT_EQ(zylConsole([this] { this->Flow->Update(); }), "");
  EXPECT_NEAR(
    double(this->Flow->GetDerivedSurface()->GetNumberOfPoints()) / double(first), 1.0, 0.05);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylCurvedGlyph, SurvivesOddSettings)
{
  this->Use(zylFlowData::Uniform);
  const std::vector<double> seed = { 0.1, 0.2, 0.3 };
  const auto first = this->Trace(seed)->GetNumberOfPoints();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (const double value : { nan, inf, -inf, 0.0, -1.0, 1e-300, 1e300 })
  {
    for (const char* name : { "GlyphConeRadius", "GlyphConeHeight", "GlyphBodyRadius",
           "GlyphBodyLength", "GlyphSpacing", "MaximumStreamlineLength" })
    {
      const double before = this->Flow->GetProperties()->GetDouble(name);
      this->Update(name, value);
      this->Set(name, before);
    }
  }
  for (const int value : { -3, 0, 2, 16 })
  {
    this->Update("GlyphTessellation", value);
  }
  for (const char* vectors : { "pressure", "stress", "", "nowhere", "velocity" })
  {
    this->Update("VectorVariable", vectors);
  }
  zylFlowData::SetSeeds(this->Flow, {});
  this->Flow->Update();
  EXPECT_EQ(this->Trace(seed)->GetNumberOfPoints(), first);
}
