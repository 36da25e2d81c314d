// What the derived surfaces are, measured: areas, closedness, cells, whatever cells the data have.
#include "zylClipRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylIntersectionCurveData.h"
#include "zylIntersectionCurveRepresentation.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylTest.h"
#include "zylTimeController.h"
#include "zylVolumeData.h"

#include <vtkCell.h>
#include <vtkDataArray.h>
#include <vtkExtractCells.h>
#include <vtkGeometryFilter.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkTriangle.h>

namespace {
constexpr double Pi = 3.14159265358979323846;

//--------------------------------------------------------------------------------------------------
// Of polygons and triangle strips; the length of lines.
double SizeOf(vtkPolyData* surface)
{
  double sum = 0.0;
  for (vtkIdType i = 0; surface && i < surface->GetNumberOfCells(); ++i)
  {
    vtkNew<vtkIdList> ids;
    vtkNew<vtkPoints> corners;
    surface->GetCell(i)->Triangulate(0, ids, corners);
    const int step = surface->GetCell(i)->GetCellDimension() + 1;
    for (vtkIdType k = 0; k + step <= corners->GetNumberOfPoints(); k += step)
    {
      double p[3][3];
      for (int c = 0; c < step; ++c)
      {
        corners->GetPoint(k + c, p[c]);
      }
      sum += step == 3 ? vtkTriangle::TriangleArea(p[0], p[1], p[2])
                       : std::sqrt(vtkMath::Distance2BetweenPoints(p[0], p[1]));
    }
  }
  return sum;
}

//--------------------------------------------------------------------------------------------------
// How many edges do not belong to exactly two cells.
int OpenEdges(vtkPolyData* surface)
{
  std::map<std::pair<vtkIdType, vtkIdType>, int> uses;
  for (vtkIdType i = 0; i < surface->GetNumberOfCells(); ++i)
  {
    vtkIdList* ids = surface->GetCell(i)->GetPointIds();
    for (vtkIdType k = 0; k < ids->GetNumberOfIds(); ++k)
    {
      ++uses[std::minmax(ids->GetId(k), ids->GetId((k + 1) % ids->GetNumberOfIds()))];
    }
  }
  int open = 0;
  for (const auto& edge : uses)
  {
    open += edge.second != 2;
  }
  return open;
}

// The faces of a surface, by the cell that each belongs to.
std::multiset<double> CellIds(vtkPolyData* surface)
{
  std::multiset<double> ids;
  vtkDataArray* array = surface->GetCellData()->GetArray("id");
  for (vtkIdType i = 0; array && i < array->GetNumberOfTuples(); ++i)
  {
    ids.insert(array->GetComponent(i, 0));
  }
  return ids;
}

template <class Representation>
vtkSmartPointer<Representation> Derive(zylDataSet* data)
{
  auto derived = vtkSmartPointer<Representation>::New();
  zylSet(derived->GetProperties(), "Blocks", zylValues{ 0 });
  derived->SetDataSet(data);
  return derived;
}

double AreaAfterUpdate(zylDerivedSurfaceRepresentation* derived)
{
  derived->Update();
  return SizeOf(derived->GetDerivedSurface());
}

vtkSmartPointer<zylIsosurfaceRepresentation> Sphere(zylDataSet* data, double radius)
{
  auto sphere = Derive<zylIsosurfaceRepresentation>(data);
  zylSet(sphere->GetProperties(), "Variable", "r", "Isovalue", radius);
  return sphere;
}
} // namespace

//--------------------------------------------------------------------------------------------------
class zylAnyCellsTest : public testing::TestWithParam<std::string>
{
};

TEST_P(zylAnyCellsTest, SphereHasItsAreaAndNoHoles)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks(GetParam(), 16));
  const auto sphere = Sphere(data, 0.7);
  sphere->GetProperties()->Set("MergePoints", true);
  EXPECT_NEAR(AreaAfterUpdate(sphere), 4.0 * Pi * 0.49, 0.02 * 4.0 * Pi * 0.49);
  const auto surface = sphere->GetDerivedSurface();
  EXPECT_EQ(OpenEdges(surface), 0);
  double range[2] = { 0.0, 0.0 };
  ASSERT_TRUE(surface->GetPointData()->HasArray("r")); // to color by
  surface->GetPointData()->GetArray("r")->GetRange(range);
  EXPECT_NEAR(range[0], 0.7, 1e-6);
  EXPECT_NEAR(range[1], 0.7, 1e-6);
}

TEST_P(zylAnyCellsTest, CutHasItsAreaAndTheArraysOfThePoints)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks(GetParam(), 5));
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  zylSet(cut->GetProperties(), "Center", zylValues{ 0.13, 0.0, 0.0 }, "Normal",
    zylValues{ 3.0, 0.0, 3.0 });
  EXPECT_NEAR(AreaAfterUpdate(cut), 2.0 * std::sqrt(2.0) * (2.0 - 0.13), 1e-6);
  auto surface = cut->GetDerivedSurface();
  ASSERT_TRUE(surface->GetPointData()->HasArray("x"));
  vtkDataArray* x = surface->GetPointData()->GetArray("x");
  for (vtkIdType i = 0; i < surface->GetNumberOfPoints(); ++i)
  {
    EXPECT_NEAR(x->GetComponent(i, 0), surface->GetPoint(i)[0], 1e-6);
  }
  EXPECT_TRUE(surface->GetCellData()->HasArray("id"));

  zylSet(cut->GetProperties(), "Center", zylValues{ 5.0, 0.0, 0.0 });
  EXPECT_EQ(AreaAfterUpdate(cut), 0.0);
}

TEST_P(zylAnyCellsTest, CrinkleCutTakesTheCellsThatThePlaneMeets)
{
  const auto blocks = zylVolumeData::MakeBlocks(GetParam(), 5);
  const auto data = zylLoad(blocks);
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  cut->GetProperties()->Set("CrinkleCut", true);
  zylSet(cut->GetProperties(), "Center", zylValues{ 0.31, 0.0, 0.0 }, "Normal",
    zylValues{ 1.0, 0.3, 0.2 });
  cut->GetProperties()->Set("Blocks", 2);
  cut->Update();
  auto surface = cut->GetDerivedSurface();
  ASSERT_TRUE(surface);

  auto* block = vtkDataSet::SafeDownCast(blocks->GetBlock(1));
  vtkNew<vtkIdList> met;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell)
  {
    int sides = 0;
    vtkPoints* corners = block->GetCell(cell)->GetPoints();
    for (vtkIdType k = 0; k < corners->GetNumberOfPoints(); ++k)
    {
      double p[3];
      corners->GetPoint(k, p);
      const double side = (p[0] - 0.31) + 0.3 * p[1] + 0.2 * p[2];
      sides |= side > 0.0 ? 1 : side < 0.0 ? 2 : 3;
    }
    if (sides == 3)
    {
      met->InsertNextId(cell);
    }
  }
  ASSERT_GT(met->GetNumberOfIds(), 0);
  vtkNew<vtkExtractCells> cells;
  cells->SetInputData(block);
  cells->SetCellList(met);
  vtkNew<vtkGeometryFilter> geometry;
  geometry->SetInputConnection(cells->GetOutputPort());
  geometry->Update();
  EXPECT_EQ(CellIds(surface), CellIds(geometry->GetOutput()));
  EXPECT_NEAR(SizeOf(surface), SizeOf(geometry->GetOutput()), 1e-9);
}

TEST_P(zylAnyCellsTest, ClippedVolumeIsClosed)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks(GetParam(), 6));
  const auto clip = Derive<zylClipRepresentation>(data);
  zylSet(clip->GetProperties(), "Blocks", 2, "ClipMode", 1);
  zylSet(clip->GetProperties(), "PlaneCenter", zylValues{ 0.3, 0.0, 0.0 }, "PlaneNormal",
    zylValues{ 1.0, 0.0, 0.0 });
  EXPECT_NEAR(AreaAfterUpdate(clip), 2.0 * 4.0 + 8.0 * 0.3, 1e-6);
  // A plane through corners of cells.
  clip->GetProperties()->Set("Blocks", 0);
  zylSet(clip->GetProperties(), "PlaneCenter", zylValues{ 0.0, 0.0, 0.0 }, "PlaneNormal",
    zylValues{ 0.3, 1.0, 0.2 });
  EXPECT_GT(AreaAfterUpdate(clip), 15.0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, zylAnyCellsTest, testing::ValuesIn(zylVolumeData::Kinds()),
  [](const auto& info) { return info.param; });

//--------------------------------------------------------------------------------------------------
TEST(zylDerivedNumbers, AreasConvergeWithTheSquareOfTheCellSize)
{
  for (const char* kind : { "tetrahedra", "hexahedra", "wedges", "polyhedra" })
  {
    double error[3];
    for (int i = 0; i < 3; ++i)
    {
      const auto data = zylLoad(zylVolumeData::MakeBlocks(kind, 6 << i));
      const double area = AreaAfterUpdate(Sphere(data, 0.7));
      error[i] = std::abs(area - 4.0 * Pi * 0.49);
    }
    EXPECT_GT(error[0] / error[1], 3.3) << kind;
    EXPECT_GT(error[1] / error[2], 3.3) << kind;
  }
}

TEST(zylDerivedNumbers, PlaneThroughFacesCutsThemOnce)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("hexahedra", 4));
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  zylSet(cut->GetProperties(), "Center", zylValues{ 0.25, 0.0, 0.0 }); // between cells
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-9);
  zylSet(cut->GetProperties(), "Center", zylValues{ 1.0, 0.0, 0.0 }); // the boundary
  EXPECT_LE(AreaAfterUpdate(cut), 4.0 + 1e-9);
}

TEST(zylDerivedNumbers, IntersectionCurvesAreShownTogetherOrOneByOne)
{
  const auto data = zylLoad(zylVolumeData::MakeSurfaces(4));
  const auto curves = Derive<zylIntersectionCurveRepresentation>(data);
  zylSet(curves->GetProperties(), "Center", zylValues{ 0.0, 0.0, 0.1 });
  EXPECT_NEAR(AreaAfterUpdate(curves), 12.0, 1e-6);
  EXPECT_EQ(curves->GetDerivedSurface()->GetNumberOfCells(), 2);
  EXPECT_EQ(curves->GetIntersectionCurve(0, true), nullptr);

  for (int i = 0; i < 2; ++i)
  {
    zylSet(curves->GetProperties(), "CurveToDisplay", zylValues{ 0, double(i) });
    EXPECT_NEAR(AreaAfterUpdate(curves), 6.0, 1e-6);
    const auto curve =
      vtkSmartPointer<zylIntersectionCurveData>::Take(curves->GetIntersectionCurve(3, false));
    ASSERT_TRUE(curve);
    const std::vector<double> points = curve->GetPoints();
    const std::vector<double> x = curve->GetPointData("x");
    const std::vector<double> velocity = curve->GetPointData("velocity");
    ASSERT_EQ(points.size(), 3 * x.size());
    ASSERT_EQ(points.size(), velocity.size());
    ASSERT_GT(x.size(), 4u);
    for (std::size_t k = 0; k < x.size(); ++k)
    {
      EXPECT_GE(points[3 * k], i - 1.0 - 1e-6);
      EXPECT_LE(points[3 * k], i + 1e-6);
      EXPECT_NEAR(points[3 * k + 2], 0.1, 1e-6);
      EXPECT_NEAR(x[k], points[3 * k], 1e-6);
      EXPECT_NEAR(velocity[3 * k], -points[3 * k + 1], 1e-6);
    }
    EXPECT_TRUE(curve->GetPointData("none").empty());
    EXPECT_TRUE(curve->GetCellData("none").empty());
  }
  zylSet(curves->GetProperties(), "CurveToDisplay", zylValues{ -1, 1 });
  EXPECT_NEAR(AreaAfterUpdate(curves), 12.0, 1e-6);
  EXPECT_EQ(curves->GetIntersectionCurve(0, true), nullptr);

  vtkNew<zylIntersectionCurveData> none;
  EXPECT_TRUE(none->GetPoints().empty());
  EXPECT_TRUE(none->GetPointData("x").empty());
}

TEST(zylDerivedNumbers, ClipsInEachModeWhateverTheModeBefore)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("hexahedra", 12));
  const auto clip = Derive<zylClipRepresentation>(data);
  zylPropertyCollection* settings = clip->GetProperties();
  zylSet(settings, "ScalarVariable", "x", "ScalarThreshold", 0.5, "SphereRadius", 0.7);
  zylSet(clip->GetProperties(), "PlaneCenter", zylValues{ -0.5, 0.0, 0.0 });
  // Both blocks are closed surfaces; "Invert" keeps what is below, behind and inside.
  const double area[] = { 16.0 + (8.0 + 4.0), 8.0 + 4.0, 4.0 * Pi * 0.49 + 2.0 * Pi * 0.49 };
  for (const int mode : { 0, 1, 0, 2, 1, 2, 0 })
  {
    settings->Set("ClipMode", mode);
    EXPECT_NEAR(AreaAfterUpdate(clip), area[mode], mode == 2 ? 0.2 : 1e-6) << mode;
  }
  const double before = SizeOf(clip->GetDerivedSurface());
  settings->Set("ClipMode", 3);
  double after = 0.0;
  const std::string said = zylConsole([&] { after = AreaAfterUpdate(clip); });
  EXPECT_NE(said.find("Unknown clip mode 3\n"), std::string::npos) << said;
  EXPECT_EQ(after, before);
}

TEST(zylDerivedNumbers, DerivedVariablesReachTheFiltersAndTheIntegrals)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("tetrahedra", 12));
  data->DefineDerivedPointVariable("double", "2 * r");
  data->DefineDerivedPointVariable("shifted", "double + 1");
  data->DefineDerivedPointVariable("flow", "velocity * shifted");
  const auto sphere = Sphere(data, 2.4);
  sphere->GetProperties()->Set("Variable", "shifted");
  const double area = 4.0 * Pi * 0.49;
  EXPECT_NEAR(AreaAfterUpdate(sphere), area, 0.02 * area);

  auto integrals = sphere->GetIntegratedValues();
  ASSERT_EQ(integrals.CellValues.count("Area"), 1u);
  EXPECT_NEAR(integrals.CellValues["Area"].at(0), SizeOf(sphere->GetDerivedSurface()), 1e-6);
  ASSERT_EQ(integrals.PointValues.count("shifted"), 1u);
  EXPECT_NEAR(integrals.PointValues["shifted"].at(0), 2.4 * area, 0.05 * area);
  ASSERT_EQ(integrals.PointValues["flow"].size(), 3u);

  // Neither clips nor warps nor later definitions count.
  data->DefineDerivedPointVariable("later", "r");
  sphere->SetNumberOfClips(1);
  sphere->GetClipProperties(0)->Set("ClipMode", 2);
  zylSet(sphere->GetProperties(), "WarpByVector", true, "WarpVectorVariable", "velocity");
  const auto again = sphere->GetIntegratedValues();
  EXPECT_NEAR(SizeOf(sphere->GetDerivedSurface()), area / 2.0, 0.02 * area);
  EXPECT_EQ(again.CellValues.at("Area").at(0), integrals.CellValues["Area"].at(0));
  EXPECT_EQ(again.PointValues.count("later"), 0u);

  // Cut by a plane, clipped by the variable.
  const auto clip = Derive<zylClipRepresentation>(data);
  zylSet(clip->GetProperties(), "ScalarVariable", "shifted", "ScalarThreshold", 2.4);
  EXPECT_NEAR(AreaAfterUpdate(clip), 1.5 * area, 0.05 * area);
}

TEST(zylDerivedNumbers, FollowTheTimeAndTheDataSet)
{
  const double steps[] = { 0.0, 0.5, 1.0 };
  const std::string series = zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 3);
  const auto data = zylLoad(series);
  const auto iso = Derive<zylIsosurfaceRepresentation>(data);
  // The variable is x, shifted by the time.
  zylSet(iso->GetProperties(), "Variable", "pressure", "Isovalue", 1.2);
  for (const double time : { 0.0, 1.0, 0.5, 0.0 })
  {
    zylTimeController::GetInstance()->GoToTime(time);
    EXPECT_NEAR(AreaAfterUpdate(iso), 1.0, 1e-9) << time;
    double bounds[6];
    iso->GetDerivedSurface()->GetBounds(bounds);
    EXPECT_NEAR(bounds[0], 1.2 - time, 1e-6);
  }

  // Other data in the same dataset, none, and another dataset.
  auto memory = zylLoad(zylVolumeData::MakeBlocks("wedges", 4));
  const auto cut = Derive<zylCutPlaneRepresentation>(memory);
  zylSet(cut->GetProperties(), "Center", zylValues{ 0.3, 0.0, 0.0 });
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-9);
  ASSERT_TRUE(memory->InitializeFromVTKDataSet(zylTestData::MakeRow(3)));
  EXPECT_NEAR(AreaAfterUpdate(cut), 1.0, 1e-9);
  memory->InitializeFromVTKDataSet(vtkNew<vtkMultiBlockDataSet>());
  EXPECT_EQ(AreaAfterUpdate(cut), 0.0);
  EXPECT_TRUE(cut->GetIntegratedValues().PointValues.empty());
  auto other = zylLoad(zylVolumeData::MakeBlocks("image", 4));
  cut->SetDataSet(other);
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-9);
}

TEST(zylDerivedNumbers, UpdateWithNothingChangedAsksAndRunsNothing)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("tetrahedra", 6));
  data->DefineDerivedPointVariable("double", "2 * r");
  const auto sphere = Sphere(data, 0.7);
  zylSet(sphere->GetSurfaceProperties(), "ColorMode", 1, "ColorVariableName", "double");
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  const auto clip = Derive<zylClipRepresentation>(data);
  const auto curves = Derive<zylIntersectionCurveRepresentation>(data);
  zylDerivedSurfaceRepresentation* const all[] = { sphere, cut, clip, curves };
  for (zylDerivedSurfaceRepresentation* derived : all)
  {
    derived->Update();
    zylTestLog log;
    derived->Update();
    EXPECT_EQ(log.Count(9, ": execute"), 0) << derived->GetClassName();
    EXPECT_EQ(log.Count(9, "gather information"), 0) << derived->GetClassName();
  }
  sphere->GetProperties()->Set("Isovalue", 0.6);
  zylTestLog log;
  sphere->Update();
  EXPECT_GT(log.Count(9, ": execute"), 0) << log.Dump();
  EXPECT_EQ(log.Count(9, "ExtractBlock: execute"), 0) << log.Dump();
}

TEST(zylDerivedNumbers, BadSettingsGiveAMessageAndNoSurface)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("tetrahedra", 6));
  const double nan = std::nan("");
  const double infinite = HUGE_VAL;

  const auto sphere = Sphere(data, 0.7);
  data->DefineDerivedPointVariable("nosuch", "r + unknown");
  for (const char* variable : { "", "unknown", "velocity", "id", "nosuch" })
  {
    sphere->GetProperties()->Set("Variable", variable);
    zylTestLog log;
    EXPECT_EQ(AreaAfterUpdate(sphere), 0.0) << variable;
    sphere->GetProperties()->Set("Isovalue", 0.6);
    sphere->Update();
    EXPECT_EQ(log.CountWarnings(*variable ? variable : "array"), *variable ? 1 : 0) << log.Dump();
  }
  sphere->GetProperties()->Set("Variable", "r");
  for (const double value : { nan, infinite, -infinite, 1e30, -1.0 })
  {
    sphere->GetProperties()->Set("Isovalue", value);
    EXPECT_EQ(AreaAfterUpdate(sphere), 0.0) << value;
  }
  sphere->GetProperties()->Set("Isovalue", 0.7);
  zylSet(sphere->GetProperties(), "Blocks", zylValues{ 99, -5 });
  zylTestLog log;
  EXPECT_EQ(AreaAfterUpdate(sphere), 0.0);
  EXPECT_TRUE(log.HasWarning("No block at index 99"));
  zylSet(sphere->GetProperties(), "Blocks", zylValues{});
  EXPECT_EQ(AreaAfterUpdate(sphere), 0.0);
  zylSet(sphere->GetProperties(), "Blocks", zylValues{ 0 });
  EXPECT_GT(AreaAfterUpdate(sphere), 5.5);

  // The last plane that is one stays.
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  const auto clip = Derive<zylClipRepresentation>(data);
  clip->GetProperties()->Set("ClipMode", 1);
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-6);
  const double half = AreaAfterUpdate(clip);
  for (const double bad : { 0.0, nan, infinite })
  {
    zylSet(cut->GetProperties(), "Normal", zylValues{ bad, 0.0, 0.0 });
    zylSet(clip->GetProperties(), "PlaneNormal", zylValues{ bad, 0.0, 0.0 });
    EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-6) << bad;
    EXPECT_NEAR(AreaAfterUpdate(clip), half, 1e-6) << bad;
  }
  zylSet(cut->GetProperties(), "Center", zylValues{ nan, infinite, 0.0 });
  cut->Update();
  zylSet(clip->GetProperties(), "ClipMode", 2, "SphereRadius", nan);
  clip->Update();
  clip->GetProperties()->Set("ClipMode", 0);
  for (const char* variable : { "", "unknown", "velocity" })
  {
    clip->GetProperties()->Set("ScalarVariable", variable);
    clip->Update();
  }
  // Everything again as it was.
  zylSet(cut->GetProperties(), "Normal", zylValues{ 1.0, 0.0, 0.0 }, "Center",
    zylValues{ 0.0, 0.0, 0.0 });
  zylSet(clip->GetProperties(), "PlaneNormal", zylValues{ 1.0, 0.0, 0.0 });
  clip->GetProperties()->Set("ClipMode", 1);
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-6);
  EXPECT_NEAR(AreaAfterUpdate(clip), half, 1e-6);

  // A warp along nothing leaves the surface where it is, be it as large as any; what is wrong is
  // said when it becomes so.
  data->DefineDerivedPointVariable("double", "2 * r");
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylVolumeData::MakeBlocks("tetrahedra", 40)));
  clip->GetProperties()->Set("WarpByVector", true);
  const struct
  {
    const char* Variable;
    int Warnings;
  } warps[] = { { "", 0 }, { "unknown", 0 }, { "r", 1 }, { "double", 1 }, { "velocity", 0 } };
  for (const auto& warp : warps)
  {
    clip->GetProperties()->Set("WarpVectorVariable", warp.Variable);
    zylTestLog said;
    EXPECT_NEAR(AreaAfterUpdate(clip), half, 1e-6) << warp.Variable;
    clip->GetProperties()->Set("PlaneCenter", 0, 0.0);
    clip->Update();
    EXPECT_EQ(said.CountWarnings("1 components, but should have 3"), warp.Warnings) << said.Dump();
  }
}

TEST(zylDerivedNumbers, WithoutDataThereIsNothing)
{
  vtkNew<zylIsosurfaceRepresentation> sphere;
  sphere->Update();
  EXPECT_EQ(sphere->GetDerivedSurface(), nullptr);
  EXPECT_TRUE(sphere->GetIntegratedValues().CellValues.empty());
  EXPECT_EQ(sphere->GetVariableInformation(), nullptr);
  sphere->SetHighlightTransparency(0.5);
  EXPECT_EQ(sphere->GetHighlightProperties()->GetDouble("Transparency"), 0.0);
  vtkNew<zylDataSet> empty;
  sphere->SetDataSet(empty);
  sphere->Update();
  sphere->FreeResources();
  EXPECT_EQ(sphere->GetDerivedSurface(), nullptr);
}

TEST(zylDerivedNumbers, BrokenValuesMakeHolesOnly)
{
  auto blocks = zylVolumeData::MakeBlocks("tetrahedra", 8);
  for (const double broken : { std::nan(""), HUGE_VAL, -HUGE_VAL })
  {
    auto* r = vtkDataSet::SafeDownCast(blocks->GetBlock(1))->GetPointData()->GetArray("r");
    for (vtkIdType i = 0; i < r->GetNumberOfTuples(); i += 50)
    {
      r->SetComponent(i, 0, broken);
    }
    const auto data = zylLoad(blocks);
    const auto sphere = Sphere(data, 0.7);
    const double area = AreaAfterUpdate(sphere);
    EXPECT_TRUE(std::isfinite(area)) << broken;
    EXPECT_GT(area, 3.0) << broken;
    double bounds[6];
    sphere->GetDerivedSurface()->GetBounds(bounds);
    EXPECT_LE(bounds[1], 1.0) << broken;
  }
}

TEST(zylDerivedNumbers, DescribesItsVariables)
{
  const auto data = zylLoad(zylVolumeData::MakeBlocks("tetrahedra", 4));
  const auto sphere = Sphere(data, 0.7);
  ASSERT_NE(sphere->GetVariableInformation(), nullptr);
  EXPECT_EQ(sphere->GetVariableInformation()->GetName(), "r");
  const auto clip = Derive<zylClipRepresentation>(data);
  EXPECT_EQ(clip->GetScalarInformation(), nullptr);
  clip->GetProperties()->Set("ScalarVariable", "x");
  ASSERT_NE(clip->GetScalarInformation(), nullptr);
  EXPECT_EQ(clip->GetScalarInformation()->GetName(), "x");
}
