#include "zylAnyCells.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <vtkCellType.h>
#include <vtkCleanPolyData.h>
#include <vtkDataArray.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace {
//--------------------------------------------------------------------------------------------------
bool IsFinite(vtkPoints* points, vtkIdType id)
{
  double x[3];
  points->GetPoint(id, x);
  return std::isfinite(x[0]) && std::isfinite(x[1]) && std::isfinite(x[2]);
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylAnyCells::IsLinear(vtkDataSet* block)
{
  auto* grid = vtkUnstructuredGrid::SafeDownCast(block);
  const int precision = grid && grid->GetPoints() ? grid->GetPoints()->GetDataType() : VTK_DOUBLE;
  if (!grid || (precision != VTK_FLOAT && precision != VTK_DOUBLE))
  {
    return false;
  }
  vtkUnsignedCharArray* types = grid->GetCellTypesArray();
  bool present[256] = {};
  for (vtkIdType i = 0; types && i < types->GetNumberOfValues(); ++i)
  {
    present[types->GetValue(i)] = true;
  }
  for (const int linear : { VTK_TETRA, VTK_HEXAHEDRON, VTK_VOXEL, VTK_WEDGE, VTK_PYRAMID })
  {
    present[linear] = false;
  }
  return std::find(present, present + 256, true) == present + 256;
}

//--------------------------------------------------------------------------------------------------
int zylAnyCells::RequestData(vtkInformationVector** input, vtkInformationVector* output,
  const std::function<bool(vtkDataSet*)>& isFast,
  const std::function<int(vtkInformationVector** input)>& fast,
  const std::function<vtkSmartPointer<vtkDataObject>(vtkDataSet*)>& general)
{
  vtkDataObject* data = vtkDataObject::GetData(input[0]);
  vtkDataObject* result = vtkDataObject::GetData(output);
  if (auto* block = vtkDataSet::SafeDownCast(data))
  {
    if (isFast(block))
    {
      return fast(input);
    }
    const auto made = general(block);
    if (made && result)
    {
      result->ShallowCopy(made);
    }
    return 1;
  }
  auto* blocks = vtkCompositeDataSet::SafeDownCast(data);
  auto* results = vtkMultiBlockDataSet::SafeDownCast(result);
  if (!blocks || !results)
  {
    return 0;
  }
  auto linear = vtkSmartPointer<vtkCompositeDataSet>::Take(blocks->NewInstance());
  linear->CopyStructure(blocks);
  std::vector<vtkDataSet*> others;
  ForEachBlock(blocks, [&](vtkDataSet* block, vtkCompositeDataIterator* place) {
    if (isFast(block))
    {
      linear->SetDataSet(place, block);
    }
    else
    {
      others.push_back(block);
    }
  });
  if (others.empty())
  {
    return fast(input);
  }
  vtkNew<vtkInformation> information;
  information->Set(vtkDataObject::DATA_OBJECT(), linear);
  vtkNew<vtkInformationVector> fastInput;
  fastInput->Append(information);
  vtkInformationVector* inputs[] = { fastInput };
  const int status = fast(inputs);
  auto next = others.begin();
  ForEachBlock(blocks, [&](vtkDataSet* block, vtkCompositeDataIterator* place) {
    if (next != others.end() && block == *next)
    {
      results->SetDataSet(place, general(block));
      ++next;
    }
  });
  return status;
}

//--------------------------------------------------------------------------------------------------
void zylAnyCells::DropBrokenCells(vtkPolyData* surface)
{
  vtkPoints* points = surface->GetPoints();
  const vtkIdType count = points ? points->GetNumberOfPoints() : 0;
  vtkIdType first = 0;
  while (first < count && IsFinite(points, first))
  {
    ++first;
  }
  if (first == count)
  {
    return;
  }
  surface->BuildCells();
  vtkNew<vtkIdList> corners;
  for (vtkIdType cell = 0; cell < surface->GetNumberOfCells(); ++cell)
  {
    surface->GetCellPoints(cell, corners);
    for (vtkIdType i = 0; i < corners->GetNumberOfIds(); ++i)
    {
      if (!IsFinite(points, corners->GetId(i)))
      {
        surface->DeleteCell(cell);
        break;
      }
    }
  }
  surface->RemoveDeletedCells();
  vtkNew<vtkCleanPolyData> clean; // of the points that no cell uses now
  clean->PointMergingOff();
  clean->SetInputData(surface);
  clean->Update();
  surface->ShallowCopy(clean->GetOutput());
}

//--------------------------------------------------------------------------------------------------
void zylAnyCells::DropBrokenCells(vtkInformationVector* output)
{
  vtkDataObject* data = vtkDataObject::GetData(output);
  if (auto* surface = vtkPolyData::SafeDownCast(data))
  {
    DropBrokenCells(surface);
  }
  else if (auto* blocks = vtkCompositeDataSet::SafeDownCast(data))
  {
    ForEachBlock(blocks, [](vtkDataSet* block, vtkCompositeDataIterator*) {
      if (auto* part = vtkPolyData::SafeDownCast(block))
      {
        DropBrokenCells(part);
      }
    });
  }
}
