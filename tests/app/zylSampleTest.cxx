// The built-in sample: a plausible flow, written so that it can be read again.
#include "zylSampleField.h"
#include "zylSampleFlow.h"
#include "zylTestData.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>

#include <vtkCellData.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkXMLMultiBlockDataReader.h>

#include <gtest/gtest.h>

namespace {
using Point = zylSampleField::Point;
const Point InTheWake[] = { { 2.3, 0.4, 1.1 }, { 4.7, -0.6, 2.9 }, { 1.2, 0.7, 2.0 },
  { 8.0, 0.2, 3.3 }, { -1.0, 0.9, 0.8 } };

// Derivative of one velocity component along one axis.
double Slope(const zylSampleField& field, Point p, int component, int axis)
{
  constexpr double d = 4e-3;
  p[axis] += d;
  const double high = field.Evaluate(p).Velocity[component];
  p[axis] -= 2.0 * d;
  return (high - field.Evaluate(p).Velocity[component]) / (2.0 * d);
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylSampleField, ConservesMass)
{
  const zylSampleField field(0.2);
  for (const Point& p : InTheWake)
  {
    double divergence = 0.0, scale = 0.0;
    for (int i = 0; i < 3; ++i)
    {
      divergence += Slope(field, p, i, i);
      for (int j = 0; j < 3; ++j)
      {
        scale += std::abs(Slope(field, p, i, j));
      }
    }
    EXPECT_LT(std::abs(divergence), 0.01 * scale) << p[0] << ' ' << p[1] << ' ' << p[2];
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleField, VorticityIsTheCurlOfTheVelocity)
{
  // The lift of the vortices is small and left out of the array: hence not to the last digit.
  const zylSampleField field(0.1);
  for (const Point& p : InTheWake)
  {
    const double curl = Slope(field, p, 1, 0) - Slope(field, p, 0, 1);
    EXPECT_NEAR(field.Evaluate(p).Vorticity, curl, 0.1 * std::abs(curl) + 2.0);
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleField, HasTheBoundaryConditionsOfAWindPastAHotWall)
{
  const zylSampleField field(0.3);
  for (double angle = 0.1; angle < 6.2; angle += 0.4)
  {
    const double r = zylSampleField::Radius;
    const auto wall = field.Evaluate({ r * std::cos(angle), r * std::sin(angle), 1.7 });
    EXPECT_EQ(wall.Velocity[0], 0.0);
    EXPECT_NEAR(wall.Temperature, 353.0, 0.5);
    const auto near =
      field.Evaluate({ 1.01 * r * std::cos(angle), 1.01 * r * std::sin(angle), 1.7 });
    EXPECT_LT(std::hypot(near.Velocity[0], near.Velocity[1]), zylSampleField::Wind);
  }
  const auto upstream = field.Evaluate({ -3.9, 3.0, 2.0 });
  EXPECT_NEAR(upstream.Velocity[0], zylSampleField::Wind, 0.05 * zylSampleField::Wind);
  EXPECT_NEAR(upstream.Temperature, 293.0, 1e-6);
  const auto stagnation = field.Evaluate({ -zylSampleField::Radius, 0.0, 2.0 });
  EXPECT_NEAR(stagnation.Pressure, 60.0, 6.0); // 1/2 rho U^2
  EXPECT_NEAR(field.Evaluate({ 3.0, 0.2, 0.0 }).Velocity[0], 0.0, 1e-3);
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleField, RepeatsAfterAPeriodAndMovesInBetween)
{
  const zylSampleField now(0.05), later(0.05 + zylSampleField::Period), between(0.2);
  double moved = 0.0;
  for (const Point& p : InTheWake)
  {
    EXPECT_NEAR(now.Evaluate(p).Vorticity, later.Evaluate(p).Vorticity, 1e-3);
    moved += std::abs(now.Evaluate(p).Velocity[1] - between.Evaluate(p).Velocity[1]);
  }
  EXPECT_GT(moved, 1.0);
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleFlow, WritesNamedBlocksWithArrays)
{
  const std::string folder = zylTestData::MakeFolder();
  const auto result = zylWriteSampleFlow(folder, 2);
  ASSERT_EQ(result.Error, "");
  vtkNew<vtkXMLMultiBlockDataReader> reader;
  reader->SetFileName((folder + "/chimney/step_1.vtm").c_str());
  reader->Update();
  auto data = vtkMultiBlockDataSet::SafeDownCast(reader->GetOutputDataObject(0));
  ASSERT_NE(data, nullptr);
  auto leaves = vtkSmartPointer<vtkCompositeDataIterator>::Take(data->NewIterator());
  std::set<std::string> names;
  std::set<int> types;
  for (leaves->InitTraversal(); !leaves->IsDoneWithTraversal(); leaves->GoToNextItem())
  {
    auto block = vtkDataSet::SafeDownCast(leaves->GetCurrentDataObject());
    const char* name = leaves->GetCurrentMetaData()->Get(vtkCompositeDataSet::NAME());
    names.insert(name != nullptr ? name : "");
    types.insert(block->GetDataObjectType());
    EXPECT_GT(block->GetNumberOfCells(), 0) << name;
    for (const char* array : { "Pressure", "Velocity", "Temperature", "Vorticity" })
    {
      EXPECT_TRUE(block->GetPointData()->HasArray(array)) << name << array;
    }
    double range[2];
    block->GetCellData()->GetArray("Quality")->GetRange(range);
    EXPECT_GT(range[0], 0.0) << name;
    EXPECT_LE(range[1], 1.0) << name;
  }
  EXPECT_EQ(names.size(), 20u);
  EXPECT_EQ(types.size(), 3u); // structured, unstructured, surfaces
}

//--------------------------------------------------------------------------------------------------
TEST(zylSampleFlow, ReplacesAnOlderSampleAndNothingElse)
{
  namespace fs = std::filesystem;
  const std::string folder = zylTestData::MakeFolder();
  std::ofstream(folder + "/notes.txt") << "mine";
  ASSERT_EQ(zylWriteSampleFlow(folder, 3).Error, "");
  ASSERT_EQ(zylWriteSampleFlow(folder, 1).Error, "");
  EXPECT_FALSE(fs::exists(folder + "/chimney/step_1.vtm"));
  EXPECT_FALSE(fs::exists(folder + "/chimney.new"));
  EXPECT_TRUE(fs::exists(folder + "/notes.txt"));

  const auto blocked = zylWriteSampleFlow(folder + "/notes.txt", 1);
  EXPECT_EQ(blocked.File, "");
  EXPECT_NE(blocked.Error.find("cannot write to"), std::string::npos);
}
