#include "vtkZYLCrinkleCutter.h"

#include "zylAnyCells.h"

#include <vector>

#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkExtractCells.h>
#include <vtkIdList.h>
#include <vtkImplicitFunction.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>

vtkStandardNewMacro(vtkZYLCrinkleCutter);

namespace {
constexpr char OriginalIds[] = "vtkOriginalCellIds"; // that the toolkit adds

//--------------------------------------------------------------------------------------------------
// On the negative side 1, on the positive side 2, on the surface 0: the AND of a cell's points is
// not 0 if all are on one side.
std::vector<unsigned char> Classify(vtkDataSet* block, vtkImplicitFunction* function)
{
  std::vector<unsigned char> sides(static_cast<std::size_t>(block->GetNumberOfPoints()));
  for (std::size_t i = 0; i < sides.size(); ++i)
  {
    double x[3];
    block->GetPoint(static_cast<vtkIdType>(i), x);
    const double value = function->FunctionValue(x);
    sides[i] = value > 0.0 ? 2 : value < 0.0 ? 1 : 0;
  }
  return sides;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> Extract(vtkDataSet* block, vtkImplicitFunction* function)
{
  const std::vector<unsigned char> sides = Classify(block, function);
  vtkNew<vtkIdList> met;
  vtkNew<vtkIdList> points;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell)
  {
    block->GetCellPoints(cell, points);
    unsigned char side = 3;
    for (vtkIdType i = 0; i < points->GetNumberOfIds(); ++i)
    {
      side &= sides[static_cast<std::size_t>(points->GetId(i))];
    }
    if (side == 0 && points->GetNumberOfIds() > 0)
    {
      met->InsertNextId(cell);
    }
  }
  vtkNew<vtkExtractCells> extract;
  extract->SetInputData(block);
  extract->SetCellList(met);
  extract->Update();
  if (!block->GetCellData()->HasArray(OriginalIds))
  {
    extract->GetOutput()->GetCellData()->RemoveArray(OriginalIds);
  }
  return extract->GetOutput();
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLCrinkleCutter::RequestData(
  vtkInformation*, vtkInformationVector** input, vtkInformationVector* output)
{
  vtkImplicitFunction* function = this->GetImplicitFunction();
  if (!function)
  {
    vtkErrorMacro("No function to cut by");
    return 0;
  }
  const auto extract = [this, function](vtkDataSet* block) {
    const auto cells = Extract(block, function);
    if (!this->GetCopyPointData())
    {
      cells->GetPointData()->Initialize();
    }
    if (!this->GetCopyCellData())
    {
      cells->GetCellData()->Initialize();
    }
    return cells;
  };
  vtkDataObject* result = vtkDataObject::GetData(output);
  if (auto* block = vtkDataSet::SafeDownCast(vtkDataObject::GetData(input[0])))
  {
    result->ShallowCopy(extract(block));
    return 1;
  }
  auto* blocks = vtkCompositeDataSet::SafeDownCast(vtkDataObject::GetData(input[0]));
  auto* results = vtkMultiBlockDataSet::SafeDownCast(result);
  if (!blocks || !results)
  {
    return 0;
  }
  results->CopyStructure(blocks);
  zylAnyCells::ForEachBlock(
    blocks, [&extract, results](vtkDataSet* block, vtkCompositeDataIterator* place) {
      results->SetDataSet(place, extract(block));
    });
  return 1;
}
