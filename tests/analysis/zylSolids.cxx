#include "zylSolids.h"

#include "zylTestData.h"

#include <algorithm>
#include <cmath>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace {
using zylSolids::Vector;

void AddArrays(vtkPointSet* body)
{
  zylTestData::AddArray(body->GetPointData(), "one", 1, body->GetNumberOfPoints(), 1.0);
  zylTestData::AddArray(body->GetCellData(), "two", 1, body->GetNumberOfCells(), 2.0);
  using Values = std::vector<double>;
  zylTestData::AddPointArray(body, "x", [](Vector p) { return Values{ p[0] }; });
  zylTestData::AddPointArray(body, "xx", [](Vector p) { return Values{ p[0] * p[0] }; });
  zylTestData::AddPointArray(body, "position", [](Vector p) { return Values(p.begin(), p.end()); });
}

vtkSmartPointer<vtkPolyData> MakePolyData(std::initializer_list<Vector> corners)
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (const Vector& corner : corners)
  {
    points->InsertNextPoint(corner.data());
  }
  data->SetPoints(points);
  return data;
}
} // namespace

namespace zylSolids {

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeBody(int n, const std::function<Vector(Vector)>& map)
{
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  const auto lattice = zylTestData::MakeLattice(n, [&map](Vector p) {
    return map({ 2.0 * p[0] - 1.0, 2.0 * p[1] - 1.0, 2.0 * p[2] - 1.0 });
  });
  grid->SetPoints(lattice->GetPoints());
  const auto id = [n](int i, int j, int k) { return vtkIdType(i + (n + 1) * (j + (n + 1) * k)); };
  const int orders[6][3] = { { 0, 1, 2 }, { 1, 2, 0 }, { 2, 0, 1 }, { 0, 2, 1 }, { 2, 1, 0 },
    { 1, 0, 2 } };
  for (int cell = 0; cell < n * n * n; ++cell)
  {
    for (const auto& order : orders) // from corner to corner along the axes in each order
    {
      int corner[3] = { cell % n, cell / n % n, cell / n / n };
      vtkIdType ids[4] = { id(corner[0], corner[1], corner[2]) };
      for (int step = 0; step < 3; ++step)
      {
        ++corner[order[step]];
        ids[step + 1] = id(corner[0], corner[1], corner[2]);
      }
      if (&order >= orders + 3)
      {
        std::swap(ids[1], ids[2]); // mirrored
      }
      grid->InsertNextCell(VTK_TETRA, 4, ids);
    }
  }
  AddArrays(grid);
  return grid;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeBox(int n, double x)
{
  return MakeBody(n, [x](Vector p) {
    return Vector{ { x + 0.5 * (p[0] + 1.0), 0.5 * (p[1] + 1.0), 0.5 * (p[2] + 1.0) } };
  });
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeBall(int n)
{
  return MakeBody(n, [](Vector p) {
    const double length = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    const double largest = std::max({ std::abs(p[0]), std::abs(p[1]), std::abs(p[2]) });
    const double scale = length > 0.0 ? largest / length : 0.0;
    return Vector{ { scale * p[0], scale * p[1], scale * p[2] } };
  });
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> MakeRectangle()
{
  auto data = MakePolyData({ { { 0, 0, 0 } }, { { 2, 0, 0 } }, { { 2, 1, 0 } }, { { 0, 1, 0 } } });
  vtkNew<vtkCellArray> triangles;
  triangles->InsertNextCell({ 0, 1, 2 });
  triangles->InsertNextCell({ 0, 2, 3 });
  data->SetPolys(triangles);
  AddArrays(data);
  return data;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> MakeLine()
{
  auto data = MakePolyData({ { { 0, 0, 0 } }, { { 0, 0, 2 } }, { { 0, 0, 5 } } });
  vtkNew<vtkCellArray> lines;
  lines->InsertNextCell({ 0, 1, 2 });
  data->SetLines(lines);
  AddArrays(data);
  return data;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> MakeBoxes(int count, int n)
{
  auto boxes = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  for (int i = 0; i < count; ++i)
  {
    boxes->SetBlock(unsigned(i), MakeBox(n, i));
  }
  return boxes;
}

} // namespace zylSolids
