// What the derived surfaces are, measured: areas, closedness, cells, whatever cells the data have.
#include "zylClipRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylIntersectionCurveData.h"
#include "zylIntersectionCurveRepresentation.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTimeController.h"
#include "zylVolumeData.h"

#include <cmath>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkExtractCells.h>
#include <vtkGeometryFilter.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
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
  const int all[] = { 0 };
  derived->GetProperties()->MakeInt("Blocks", all, 1);
  derived->SetDataSet(data);
  return derived;
}

void SetVector(
  zylDerivedSurfaceRepresentation* derived, const char* name, double a, double b, double c)
{
  const double values[] = { a, b, c };
  derived->GetProperties()->Set(name, values, 3);
}

double AreaAfterUpdate(zylDerivedSurfaceRepresentation* derived)
{
  derived->Update();
  return SizeOf(derived->GetDerivedSurface());
}

vtkSmartPointer<zylDataSet> Load(vtkMultiBlockDataSet* blocks)
{
  auto data = vtkSmartPointer<zylDataSet>::New();
  EXPECT_TRUE(data->InitializeFromVTKDataSet(blocks));
  return data;
}

vtkSmartPointer<zylIsosurfaceRepresentation> Sphere(zylDataSet* data, double radius)
{
  auto sphere = Derive<zylIsosurfaceRepresentation>(data);
  sphere->GetProperties()->Set("Variable", "r");
  sphere->GetProperties()->Set("Isovalue", radius);
  return sphere;
}
} // namespace

//--------------------------------------------------------------------------------------------------
class zylAnyCellsTest : public testing::TestWithParam<std::string>
{
};

TEST_P(zylAnyCellsTest, SphereHasItsAreaAndNoHoles)
{
  const auto data = Load(zylVolumeData::MakeBlocks(GetParam(), 16));
  const auto sphere = Sphere(data, 0.7);
  sphere->GetProperties()->Set("MergePoints", true);
  EXPECT_NEAR(AreaAfterUpdate(sphere), 4.0 * Pi * 0.49, 0.02 * 4.0 * Pi * 0.49);
  EXPECT_EQ(OpenEdges(sphere->GetDerivedSurface()), 0);
}

TEST_P(zylAnyCellsTest, CutHasItsAreaAndTheArraysOfThePoints)
{
  const auto data = Load(zylVolumeData::MakeBlocks(GetParam(), 5));
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  SetVector(cut, "Center", 0.13, 0.0, 0.0);
  SetVector(cut, "Normal", 3.0, 0.0, 3.0);
  EXPECT_NEAR(AreaAfterUpdate(cut), 2.0 * std::sqrt(2.0) * (2.0 - 0.13), 1e-6);
  auto surface = cut->GetDerivedSurface();
  ASSERT_TRUE(surface->GetPointData()->HasArray("x"));
  vtkDataArray* x = surface->GetPointData()->GetArray("x");
  for (vtkIdType i = 0; i < surface->GetNumberOfPoints(); ++i)
  {
    EXPECT_NEAR(x->GetComponent(i, 0), surface->GetPoint(i)[0], 1e-6);
  }
  EXPECT_TRUE(surface->GetCellData()->HasArray("id"));

  SetVector(cut, "Center", 5.0, 0.0, 0.0);
  EXPECT_EQ(AreaAfterUpdate(cut), 0.0);
}

TEST_P(zylAnyCellsTest, CrinkleCutTakesTheCellsThatThePlaneMeets)
{
  const auto blocks = zylVolumeData::MakeBlocks(GetParam(), 5);
  const auto data = Load(blocks);
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  cut->GetProperties()->Set("CrinkleCut", true);
  SetVector(cut, "Center", 0.31, 0.0, 0.0);
  SetVector(cut, "Normal", 1.0, 0.3, 0.2);
  const int second[] = { 2 };
  cut->GetProperties()->MakeInt("Blocks", second, 1);
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
      const auto data = Load(zylVolumeData::MakeBlocks(kind, 6 << i));
      const double area = AreaAfterUpdate(Sphere(data, 0.7));
      error[i] = std::abs(area - 4.0 * Pi * 0.49);
    }
    EXPECT_GT(error[0] / error[1], 3.3) << kind;
    EXPECT_GT(error[1] / error[2], 3.3) << kind;
  }
}

TEST(zylDerivedNumbers, PlaneThroughFacesCutsThemOnce)
{
  const auto data = Load(zylVolumeData::MakeBlocks("hexahedra", 4));
  const auto cut = Derive<zylCutPlaneRepresentation>(data);
  SetVector(cut, "Center", 0.25, 0.0, 0.0); // between cells
  EXPECT_NEAR(AreaAfterUpdate(cut), 4.0, 1e-9);
  SetVector(cut, "Center", 1.0, 0.0, 0.0); // the boundary
  EXPECT_LE(AreaAfterUpdate(cut), 4.0 + 1e-9);
}
