#include "zylVolumeData.h"

#include "zylTestData.h"

#include <cmath>

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkGeometryFilter.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

namespace {
using zylTestData::AddArray;
using Ids = std::vector<vtkIdType>;

// Corners of a cube in the order of VTK_HEXAHEDRON, from those in the order of VTK_VOXEL.
Ids ToHexahedron(const Ids& v)
{
  return { v[0], v[1], v[3], v[2], v[4], v[5], v[7], v[6] };
}

// The faces of VTK_HEXAHEDRON, by corner, seen from outside.
constexpr int Faces[6][4] = { { 0, 4, 7, 3 }, { 1, 2, 6, 5 }, { 0, 1, 5, 4 }, { 3, 7, 6, 2 },
  { 0, 3, 2, 1 }, { 4, 5, 6, 7 } };
constexpr int Edges[12][2] = { { 0, 1 }, { 1, 2 }, { 2, 3 }, { 3, 0 }, { 4, 5 }, { 5, 6 }, { 6, 7 },
  { 7, 4 }, { 0, 4 }, { 1, 5 }, { 2, 6 }, { 3, 7 } };

void Insert(vtkUnstructuredGrid* grid, int type, const Ids& ids)
{
  grid->InsertNextCell(type, static_cast<vtkIdType>(ids.size()), ids.data());
}

vtkIdType Middle(vtkPoints* points, const Ids& ids)
{
  double sum[3] = { 0.0, 0.0, 0.0 };
  for (const vtkIdType id : ids)
  {
    double x[3];
    points->GetPoint(id, x);
    for (int c = 0; c < 3; ++c)
    {
      sum[c] += x[c] / static_cast<double>(ids.size());
    }
  }
  return points->InsertNextPoint(sum);
}

void InsertPolyhedron(vtkUnstructuredGrid* grid, const Ids& h)
{
  Ids faces;
  for (const auto& face : Faces)
  {
    faces.insert(faces.end(), { 4, h[face[0]], h[face[1]], h[face[2]], h[face[3]] });
  }
  grid->InsertNextCell(VTK_POLYHEDRON, 8, h.data(), 6, faces.data());
}

// One cube, whose corners are in the order of VTK_VOXEL; `odd` alternates like a chessboard.
void InsertCube(vtkUnstructuredGrid* grid, const std::string& kind, const Ids& v, bool odd)
{
  const Ids h = ToHexahedron(v);
  if (kind == "voxels")
  {
    Insert(grid, VTK_VOXEL, v);
  }
  else if (kind == "tetrahedra")
  {
    const int even5[5][4] = { { 0, 1, 2, 4 }, { 1, 3, 2, 7 }, { 1, 4, 7, 5 }, { 2, 7, 4, 6 },
      { 1, 2, 4, 7 } };
    const int odd5[5][4] = { { 0, 1, 3, 5 }, { 0, 3, 2, 6 }, { 0, 5, 6, 4 }, { 3, 6, 5, 7 },
      { 0, 3, 5, 6 } };
    for (const auto& t : odd ? odd5 : even5)
    {
      Insert(grid, VTK_TETRA, { v[t[0]], v[t[1]], v[t[2]], v[t[3]] });
    }
  }
  else if (kind == "wedges")
  {
    Insert(grid, VTK_WEDGE, { h[0], h[1], h[2], h[4], h[5], h[6] });
    Insert(grid, VTK_WEDGE, { h[0], h[2], h[3], h[4], h[6], h[7] });
  }
  else if (kind == "pyramids")
  {
    const vtkIdType top = Middle(grid->GetPoints(), h);
    for (const auto& f : Faces)
    {
      Insert(grid, VTK_PYRAMID, { h[f[3]], h[f[2]], h[f[1]], h[f[0]], top });
    }
  }
  else if (kind == "quadratic")
  {
    Ids ids = h;
    for (const auto& e : Edges)
    {
      ids.push_back(Middle(grid->GetPoints(), { h[e[0]], h[e[1]] }));
    }
    Insert(grid, VTK_QUADRATIC_HEXAHEDRON, ids);
  }
  else if (kind == "polyhedra" || (kind == "mixed" && odd))
  {
    InsertPolyhedron(grid, h);
  }
  else
  {
    Insert(grid, VTK_HEXAHEDRON, h);
  }
}

vtkSmartPointer<vtkDataSet> MakeShape(const std::string& kind, vtkImageData* image, int n)
{
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (vtkIdType i = 0; i < image->GetNumberOfPoints(); ++i)
  {
    points->InsertNextPoint(image->GetPoint(i));
  }
  if (kind == "structured")
  {
    auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
    grid->SetDimensions(image->GetDimensions());
    grid->SetPoints(points);
    return grid;
  }
  if (kind == "rectilinear")
  {
    auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
    grid->SetDimensions(image->GetDimensions());
    vtkNew<vtkDoubleArray> axes[3];
    for (int c = 0; c < 3; ++c)
    {
      for (int i = 0; i <= n; ++i)
      {
        axes[c]->InsertNextValue(image->GetOrigin()[c] + i * image->GetSpacing()[c]);
      }
    }
    grid->SetXCoordinates(axes[0]);
    grid->SetYCoordinates(axes[1]);
    grid->SetZCoordinates(axes[2]);
    return grid;
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < image->GetNumberOfCells(); ++cell)
  {
    image->GetCellPoints(cell, ids);
    const vtkIdType i = cell % n, j = cell / n % n, k = cell / n / n;
    InsertCube(grid, kind, Ids(ids->GetPointer(0), ids->GetPointer(0) + 8), (i + j + k) % 2 != 0);
  }
  return grid;
}

} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylVolumeData::Kinds()
{
  return { "tetrahedra", "hexahedra", "voxels", "wedges", "pyramids", "polyhedra", "quadratic",
    "mixed", "image", "rectilinear", "structured" };
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkDataSet> zylVolumeData::Make(
  const std::string& kind, int n, double from, double to)
{
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(n + 1, n + 1, n + 1);
  image->SetOrigin(from, -1.0, -1.0);
  image->SetSpacing((to - from) / n, 2.0 / n, 2.0 / n);
  const vtkSmartPointer<vtkDataSet> data =
    kind == "image" ? vtkSmartPointer<vtkDataSet>(image) : MakeShape(kind, image, n);
  const vtkIdType points = data->GetNumberOfPoints();
  auto* r = AddArray(data->GetPointData(), "r", 1, points);
  auto* x = AddArray(data->GetPointData(), "x", 1, points);
  auto* velocity = AddArray(data->GetPointData(), "velocity", 3, points);
  for (vtkIdType i = 0; i < points; ++i)
  {
    double p[3];
    data->GetPoint(i, p);
    r->SetValue(i, std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]));
    x->SetValue(i, p[0]);
    velocity->SetTuple3(i, -p[1], p[0], 0.0);
  }
  auto* id = AddArray(data->GetCellData(), "id", 1, data->GetNumberOfCells());
  for (vtkIdType i = 0; i < data->GetNumberOfCells(); ++i)
  {
    id->SetValue(i, static_cast<double>(i));
  }
  return data;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> zylVolumeData::MakeBlocks(const std::string& kind, int n)
{
  auto blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  blocks->SetBlock(0, Make(kind, n, -1.0, 0.0));
  blocks->SetBlock(1, Make(kind, n, 0.0, 1.0));
  return blocks;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> zylVolumeData::MakeSurfaces(int n)
{
  auto surfaces = MakeBlocks("hexahedra", n);
  for (unsigned int i = 0; i < surfaces->GetNumberOfBlocks(); ++i)
  {
    vtkNew<vtkGeometryFilter> geometry;
    geometry->SetInputDataObject(surfaces->GetBlock(i));
    geometry->Update();
    surfaces->SetBlock(i, geometry->GetOutput());
  }
  return surfaces;
}
