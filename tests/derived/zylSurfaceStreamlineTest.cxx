#include "zylSurfaceStreamlineRepresentation.h"

#include "zylDataSet.h"
#include "zylFlowData.h"
#include "zylPipelineFixture.h"
#include "zylPropertyCollection.h"
#include "zylTestLog.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <vtkDoubleArray.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPlaneSource.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace {
using zylFlowData::Trace;

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

class zylSurfaceStreamline : public ::testing::Test
{
protected:
  void Use(const zylVelocity& flow, int n = 16)
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylFlowData::Make(flow, n)));
  }

  vtkNew<zylDataSet> Data;
  vtkNew<zylSurfaceStreamlineRepresentation> Lines;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, FollowTheFlowJustOffTheWall)
{
  this->Use(AlongTheFloor);
  const std::vector<double> seed = { 0.1, 0.2, -1.0 };
  for (const double offset : { 0.001, 0.05 })
  {
    this->Lines->GetProperties()->Set("SurfaceOffset", offset);
    const auto lines = Trace(this->Lines, this->Data, seed);
    ASSERT_EQ(lines->GetNumberOfLines(), 2) << offset;
    double bounds[6];
    lines->GetBounds(bounds);
    EXPECT_LT(bounds[0], -0.9);
    EXPECT_GT(bounds[1], 0.9);
    EXPECT_LT(zylFlowData::GetMaximum(lines, OffTheCube), offset);
  }
  // On the wall itself nothing moves.
  this->Lines->GetProperties()->Set("SurfaceOffset", 0.0);
  EXPECT_EQ(Trace(this->Lines, this->Data, seed)->GetNumberOfLines(), 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, StayOnCirclesAndOnTheSurface)
{
  this->Use(zylFlowData::Rotation, 32);
  this->Lines->GetProperties()->Set("IntegrationDirection", 0);
  this->Lines->GetProperties()->Set("MaximumStreamlineLength", 3.0);
  auto lines = Trace(this->Lines, this->Data, { 0.5, 0.0, 1.0 }); // on the lid
  ASSERT_EQ(lines->GetNumberOfLines(), 1);
  EXPECT_LT(zylFlowData::GetMaximum(
              lines, [](const zylPoint& p) { return std::abs(std::hypot(p[0], p[1]) - 0.5); }),
    2e-3);
  EXPECT_NEAR(zylFlowData::GetLength(lines), 3.0, 0.01);
  lines = Trace(this->Lines, this->Data, { 1.0, 0.0, 0.3 }); // on a side, up to its edge
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
  vtkNew<vtkDoubleArray> rest;
  rest->SetName("velocity");
  rest->SetNumberOfComponents(3);
  rest->SetNumberOfTuples(floor->GetOutput()->GetNumberOfPoints());
  rest->Fill(0.0);
  floor->GetOutput()->GetPointData()->AddArray(rest);
  data->SetBlock(2, floor->GetOutput());
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(data));
  Trace(this->Lines, this->Data, { 0.1, 0.2, -1.0 });
  const int patch[] = { 3 };
  this->Lines->GetProperties()->Set("Blocks", patch, 1);
  this->Lines->Update();
  const auto lines = this->Lines->GetDerivedSurface();
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
  vtkNew<vtkDoubleArray> pressure;
  pressure->SetName("pressure");
  pressure->SetNumberOfComponents(6);
  pressure->SetNumberOfTuples(other->GetNumberOfPoints());
  pressure->Fill(1.0);
  other->GetPointData()->AddArray(pressure);
  data->SetBlock(1, other);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(data));
  const auto lines = Trace(this->Lines, this->Data, { 0.1, 0.2, -1.0 });
  EXPECT_EQ(lines->GetNumberOfLines(), 2);
  EXPECT_LT(lines->GetBounds()[0], -0.8);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSurfaceStreamline, CanBeFreedAndSendWhatChanged)
{
  this->Use(AlongTheFloor);
  zylTestLog log;
  const std::vector<double> seed = { 0.1, 0.2, -1.0 };
  const double first = zylFlowData::GetLength(Trace(this->Lines, this->Data, seed));
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0) << log.Dump();
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_WARNING, ""), 0) << log.Dump();
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_ERROR, ""), 0) << log.Dump();
  EXPECT_EQ(zylTraffic([this] { this->Lines->Update(); }), "");
  this->Lines->FreeResources();
  this->Lines->Update();
  EXPECT_EQ(zylFlowData::GetLength(this->Lines->GetDerivedSurface()), first);

  // A derived variable is sampled like any other.
  this->Data->DefineDerivedPointVariable("turned", "-velocity");
  this->Lines->GetProperties()->Set("IntegrationDirection", 0);
  this->Lines->GetProperties()->Set("VectorVariable", "turned");
  EXPECT_EQ(zylConsole([this] { this->Lines->Update(); }), "");
  const auto lines = this->Lines->GetDerivedSurface();
  ASSERT_EQ(lines->GetNumberOfLines(), 1);
  EXPECT_LT(lines->GetBounds()[0], -0.9);
}
