#include "zylSurfaceStreamlineRepresentation.h"

#include "zylFlowData.h"
#include "zylTest.h"

#include <vtkLogger.h>
#include <vtkPlaneSource.h>

namespace {
// A wind along x that sticks to the floor.
zylPoint AlongTheFloor(const zylPoint& p)
{
  return { 1.0 + p[2], 0.0, 0.0 };
}

double OffTheCube(const zylPoint& p)
{
  return std::abs(std::max({ std::abs(p[0]), std::abs(p[1]), std::abs(p[2]) }) - 1.0);
}
} // namespace

using zylSurfaceStreamline = zylFlowData::zylFlowTest<zylSurfaceStreamlineRepresentation>;

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, FollowTheFlowJustOffTheWall)
{
  this->Use(AlongTheFloor);
  const std::vector<double> seed = { 0.1, 0.2, -1.0 };
  for (const double offset : { 0.001, 0.05 })
  {
    this->Set("SurfaceOffset", offset);
    const auto lines = this->Trace(seed);
    ASSERT_EQ(lines->GetNumberOfLines(), 2) << offset;
    double bounds[6];
    lines->GetBounds(bounds);
    EXPECT_LT(bounds[0], -0.9);
    EXPECT_GT(bounds[1], 0.9);
    EXPECT_LT(zylFlowData::GetMaximum(lines, OffTheCube), offset);
  }
  // On the wall itself nothing moves.
  this->Set("SurfaceOffset", 0.0);
  EXPECT_EQ(this->Trace(seed)->GetNumberOfLines(), 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, StayOnCirclesAndOnTheSurface)
{
  this->Use(zylFlowData::Rotation, 32);
  this->Set("IntegrationDirection", 0, "MaximumStreamlineLength", 3.0);
  auto lines = this->Trace({ 0.5, 0.0, 1.0 }); // on the lid
  ASSERT_EQ(lines->GetNumberOfLines(), 1);
  EXPECT_LT(zylFlowData::GetMaximum(
              lines, [](const zylPoint& p) { return std::abs(std::hypot(p[0], p[1]) - 0.5); }),
    2e-3);
  EXPECT_NEAR(zylFlowData::GetLength(lines), 3.0, 0.01);
  lines = this->Trace({ 1.0, 0.0, 0.3 }); // on a side, up to its edge
  EXPECT_LT(zylFlowData::GetMaximum(lines, OffTheCube), 1e-3);
  EXPECT_GT(lines->GetBounds()[3], 0.9);
  EXPECT_LT(
    zylFlowData::GetMaximum(lines, [](const zylPoint& p) { return std::abs(p[2] - 0.3); }), 1e-3);
}

//--------------------------------------------------------------------------------------------------
// The floor is a boundary patch below two blocks.
TEST_F(zylSurfaceStreamline, FollowAPatchFromBlockToBlock)
{
  auto data = zylFlowData::Make(AlongTheFloor);
  data->SetBlock(1, zylFlowData::MakeGrid(AlongTheFloor, 16, 1.0));
  vtkNew<vtkPlaneSource> floor; // facing down, out of the volume
  floor->SetOrigin(-1.0, -1.0, -1.0);
  floor->SetPoint1(-1.0, 1.0, -1.0);
  floor->SetPoint2(3.0, -1.0, -1.0);
  floor->SetResolution(16, 32);
  floor->Update();
  vtkPolyData* patch = floor->GetOutput();
  zylTestData::AddArray(patch->GetPointData(), "velocity", 3, patch->GetNumberOfPoints());
  data->SetBlock(2, patch);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(data));
  this->Trace({ 0.1, 0.2, -1.0 });
  const auto lines = this->Fetch("Blocks", 3);
  ASSERT_EQ(lines->GetNumberOfLines(), 2);
  EXPECT_GT(lines->GetBounds()[1], 2.8);
  EXPECT_LT(lines->GetBounds()[0], -0.8);
  EXPECT_LT(
    zylFlowData::GetMaximum(lines, [](const zylPoint& p) { return std::abs(p[2] + 1.0); }), 1e-3);
}

//--------------------------------------------------------------------------------------------------
// Blocks that a solver wrote at different times: one name, arrays of different shapes.
TEST_F(zylSurfaceStreamline, ArraysOfOneNameMayDiffer)
{
  auto data = zylFlowData::Make(AlongTheFloor);
  const auto other = zylFlowData::MakeGrid(AlongTheFloor, 16, 1.0);
  other->GetPointData()->RemoveArray("pressure");
  zylTestData::AddArray(other->GetPointData(), "pressure", 6, other->GetNumberOfPoints(), 1.0);
  data->SetBlock(1, other);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(data));
  const auto lines = this->Trace({ 0.1, 0.2, -1.0 });
  EXPECT_EQ(lines->GetNumberOfLines(), 2);
  EXPECT_LT(lines->GetBounds()[0], -0.8);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, CanBeFreedAndSendWhatChanged)
{
  this->Use(AlongTheFloor);
  zylTestLog log;
  const std::vector<double> seed = { 0.1, 0.2, -1.0 };
  const double first = zylFlowData::GetLength(this->Trace(seed));
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0) << log.Dump();
  EXPECT_FALSE(log.HasWarning());
  EXPECT_FALSE(log.HasError());
  EXPECT_EQ(zylTraffic([this] { this->Flow->Update(); }), "");
  this->Flow->FreeResources();
  EXPECT_EQ(zylFlowData::GetLength(this->Fetch()), first);

  // A derived variable is sampled like any other.
  this->Data->DefineDerivedPointVariable("turned", "-velocity");
  this->Set("IntegrationDirection", 0, "VectorVariable", "turned");
  EXPECT_EQ(zylConsole([this] { this->Flow->Update(); }), "");
  const auto lines = this->Flow->GetDerivedSurface();
  ASSERT_EQ(lines->GetNumberOfLines(), 1);
  EXPECT_LT(lines->GetBounds()[0], -0.9);
}
