#include "zylVortexCoresRepresentation.h"

#include "zylFlowData.h"
#include "zylTest.h"

#include <vtkFloatArray.h>

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
// Beside a block in double precision are one in single precision and one without the vectors.
TEST(zylVortexCores, TakeVectorsOfAnyPrecision)
{
  const auto blocks = zylFlowData::Make(Vortex, 12);
  const auto lacking = zylFlowData::MakeGrid(Vortex, 12, 9.0);
  const double axis = 6.0 + AxisX;
  const auto grid = zylFlowData::MakeGrid(
    [&](const zylPoint& p) {
      return Vortex({ p[0] - 6.0, p[1], p[2] });
    },
    12, 5.0);
  vtkNew<vtkFloatArray> floats;
  floats->DeepCopy(grid->GetPointData()->GetArray("velocity"));
  grid->GetPointData()->AddArray(floats);
  lacking->GetPointData()->RemoveArray("velocity");
  blocks->SetBlock(1, grid);
  blocks->SetBlock(2, lacking);
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(blocks));
  vtkNew<zylVortexCoresRepresentation> cores;
  zylTestLog log;
  for (const bool higher : { false, true })
  {
    cores->GetProperties()->Set("UseHigherOrderMethod", higher);
    const auto lines = Trace(cores, data, {});
    for (const double x : { AxisX, axis })
    {
      // From end to end, but for two cells.
      EXPECT_GT(zylFlowData::GetMaximum(lines,
                  [&](const zylPoint& p) {
                    return std::hypot(p[0] - x, p[1] - AxisY) < 2.0 / 12 ? p[2] : -1.0;
                  }),
        0.5)
        << x << higher;
    }
  }
  EXPECT_FALSE(log.HasError());
}

//--------------------------------------------------------------------------------------------------
TEST(zylVortexCores, SayWhatIsWrongWithTheVectors)
{
  vtkNew<zylDataSet> data;
  // Large enough that reading beyond the end of an array is no small matter.
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylFlowData::Make(Vortex, 80)));
  vtkNew<zylVortexCoresRepresentation> cores;
  const int all[] = { 0 };
  cores->GetProperties()->MakeInt("Blocks", all, 1);
  cores->SetDataSet(data);
  const auto say = [&](const char* vectors) {
    cores->GetProperties()->Set("VectorVariable", vectors);
    return zylConsole([&] { cores->Update(); });
  };
  EXPECT_NE(say("stress").find("Array 'stress' has 9 components, but should have 3 components.\n"),
    std::string::npos);
  EXPECT_NE(
    say("pressure").find("Array 'pressure' has 1 components, but should have 3 components.\n"),
    std::string::npos);
  EXPECT_EQ(zylText(zylFindSource("VortexCores"), "SelectInputArray", 4), "pressure");
  EXPECT_NE(say("nowhere").find("No point nor cell array named 'nowhere' is in the zylDataSet set "
                                "on this zylVortexCoresRepresentation\n"),
    std::string::npos);
  say("");
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylFlowData::Make(Vortex)));
  data->DefineDerivedPointVariable("half", "velocity * 0.5");
  EXPECT_EQ(say("half"), "");
  EXPECT_GT(cores->GetDerivedSurface()->GetNumberOfLines(), 0);
}
