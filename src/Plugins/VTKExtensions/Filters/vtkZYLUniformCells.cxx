#include "vtkZYLUniformCells.h"

#include "zylAnyCells.h"

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

vtkStandardNewMacro(vtkZYLUniformCells);

namespace {
//--------------------------------------------------------------------------------------------------
bool IsMixed(vtkUnstructuredGrid* grid)
{
  vtkUnsignedCharArray* types = grid->GetCellTypesArray();
  bool polyhedra = false;
  bool others = false;
  for (vtkIdType i = 0; types && i < types->GetNumberOfValues() && !(polyhedra && others); ++i)
  {
    (types->GetValue(i) == VTK_POLYHEDRON ? polyhedra : others) = true;
  }
  return polyhedra && others;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeUniform(vtkUnstructuredGrid* grid)
{
  auto result = vtkSmartPointer<vtkUnstructuredGrid>::New();
  result->SetPoints(grid->GetPoints());
  result->Allocate(grid->GetNumberOfCells());
  vtkNew<vtkIdList> faces; // number of faces, then of each the number of points and the points
  for (vtkIdType i = 0; i < grid->GetNumberOfCells(); ++i)
  {
    vtkCell* cell = grid->GetCell(i);
    if (cell->GetCellDimension() != 3)
    {
      result->InsertNextCell(cell->GetCellType(), cell->GetPointIds());
      continue;
    }
    faces->Reset();
    faces->InsertNextId(cell->GetNumberOfFaces());
    for (int f = 0; f < cell->GetNumberOfFaces(); ++f)
    {
      vtkCell* face = cell->GetFace(f);
      // The corners of a pixel go to and fro; of a quadratic face the corners come first.
      const bool pixel = face->GetCellType() == VTK_PIXEL;
      const int corners = face->IsLinear() ? face->GetNumberOfPoints() : face->GetNumberOfEdges();
      faces->InsertNextId(corners);
      for (int k = 0; k < corners; ++k)
      {
        faces->InsertNextId(face->GetPointId(pixel && k >= 2 ? 5 - k : k));
      }
    }
    result->InsertNextCell(VTK_POLYHEDRON, faces);
  }
  result->GetPointData()->ShallowCopy(grid->GetPointData());
  result->GetCellData()->ShallowCopy(grid->GetCellData());
  result->GetFieldData()->ShallowCopy(grid->GetFieldData());
  return result;
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLUniformCells::RequestData(
  vtkInformation*, vtkInformationVector** input, vtkInformationVector* output)
{
  vtkDataObject* data = vtkDataObject::GetData(input[0]);
  vtkDataObject* result = vtkDataObject::GetData(output);
  result->ShallowCopy(data);
  auto* blocks = vtkCompositeDataSet::SafeDownCast(data);
  auto* results = vtkCompositeDataSet::SafeDownCast(result);
  auto* single = vtkUnstructuredGrid::SafeDownCast(data);
  if (single && IsMixed(single))
  {
    result->ShallowCopy(MakeUniform(single));
  }
  else if (blocks && results)
  {
    const auto replace = [results](vtkDataSet* block, vtkCompositeDataIterator* place) {
      auto* grid = vtkUnstructuredGrid::SafeDownCast(block);
      if (grid && IsMixed(grid))
      {
        results->SetDataSet(place, MakeUniform(grid));
      }
    };
    zylAnyCells::ForEachBlock(blocks, replace);
  }
  return 1;
}

//--------------------------------------------------------------------------------------------------
int vtkZYLUniformCells::FillInputPortInformation(int, vtkInformation* info)
{
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataSet");
  info->Append(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkCompositeDataSet");
  return 1;
}
