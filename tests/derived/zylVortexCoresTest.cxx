#include "zylVortexCoresRepresentation.h"

#include "zylDataSet.h"
#include "zylFlowData.h"
#include "zylPipelineFixture.h"
#include "zylPropertyCollection.h"
#include "zylTestLog.h"

#include <cmath>

#include <gtest/gtest.h>
#include <vtkCompositeDataIterator.h>
#include <vtkDataSet.h>
#include <vtkFloatArray.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSMSourceProxy.h>

namespace {
using zylFlowData::Trace;

// A Burgers vortex whose axis is not on the grid's lines.
constexpr double AxisX = 0.13;
constexpr double AxisY = -0.07;
zylPoint Vortex(const zylPoint& p)
{
  return zylFlowData::Burgers({ p[0] - AxisX, p[1] - AxisY, p[2] });
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylVortexCores, LieOnTheAxisWithinACell)
{
  const auto off = [](const zylPoint& p) { return std::hypot(p[0] - AxisX, p[1] - AxisY); };
  for (const int n : { 12, 24 })
  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(data->InitializeFromVTKDataSet(zylFlowData::Make(Vortex, n)));
    vtkNew<zylVortexCoresRepresentation> cores;
    auto lines = Trace(cores, data, {});
    ASSERT_NE(lines, nullptr);
    EXPECT_LT(zylFlowData::GetMaximum(lines, off), 2.0 / n);
    // From end to end, but for a cell or so at the ends.
    EXPECT_GT(zylFlowData::GetLength(lines), 2.0 - 5.0 / n);
    EXPECT_LT(zylFlowData::GetLength(lines), 2.01);
    // The higher order finds further lines off the axis, where the flow bends likewise.
    cores->GetProperties()->Set("UseHigherOrderMethod", true);
    cores->Update();
    lines = cores->GetDerivedSurface();
    EXPECT_GT(zylFlowData::GetMaximum(
                lines, [&](const zylPoint& p) { return off(p) < 2.0 / n ? p[2] : -1.0; }),
      0.5);
  }
}

//--------------------------------------------------------------------------------------------------
// The toolkit's method of higher order crashes with vectors in single precision.
TEST(zylVortexCores, RefuseTheHigherOrderInSinglePrecision)
{
  const auto blocks = zylFlowData::Make(Vortex, 12);
  vtkNew<vtkMultiBlockDataSet> copy;
  copy->DeepCopy(blocks);
  const auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(copy->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    auto* points = vtkDataSet::SafeDownCast(iterator->GetCurrentDataObject())->GetPointData();
    vtkNew<vtkFloatArray> single;
    single->DeepCopy(points->GetArray("velocity"));
    points->AddArray(single);
  }
  vtkNew<zylDataSet> singles;
  ASSERT_TRUE(singles->InitializeFromVTKDataSet(copy));
  vtkNew<zylVortexCoresRepresentation> cores;
  cores->GetProperties()->Set("UseHigherOrderMethod", true);
  zylTestLog log;
  const double length = zylFlowData::GetLength(Trace(cores, singles, {}));
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "double precision")) << log.Dump();
  cores->GetProperties()->Set("UseHigherOrderMethod", false);
  cores->Update();
  EXPECT_GT(length, 1.0);
  EXPECT_EQ(length, zylFlowData::GetLength(cores->GetDerivedSurface()));
}

//--------------------------------------------------------------------------------------------------
TEST(zylVortexCores, SayWhatIsWrongWithTheVectors)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylFlowData::Make(Vortex)));
  vtkNew<zylVortexCoresRepresentation> cores;
  Trace(cores, data, {});
  const auto say = [&](const char* vectors) {
    cores->GetProperties()->Set("VectorVariable", vectors);
    return zylConsole([&] { cores->Update(); });
  };
  EXPECT_NE(say("stress").find("Array 'stress' has 9 components, but should have 3 components.\n"),
    std::string::npos);
  EXPECT_NE(
    say("pressure").find("Array 'pressure' has 1 components, but should have 3 components.\n"),
    std::string::npos);
  EXPECT_EQ(zylText(zylFlowData::FindProxy("VortexCores"), "SelectInputArray", 4), "pressure");
  EXPECT_NE(say("nowhere").find("No point nor cell array named 'nowhere' is in the zylDataSet set "
                                "on this zylVortexCoresRepresentation\n"),
    std::string::npos);
  say("");
  data->DefineDerivedPointVariable("half", "velocity * 0.5");
  EXPECT_EQ(say("half"), "");
  EXPECT_GT(cores->GetDerivedSurface()->GetNumberOfLines(), 0);
}
