/// @file zylAnyCells.h
/// What the cutters and the contour filter share: the toolkit's fast filters, which know the linear
/// 3D cells only, for the blocks that have nothing else, and general ones for all other blocks.
/// Private to the plugin.
#ifndef zylAnyCells_h
#define zylAnyCells_h

#include "zylExport.h"

#include <functional>

#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

class vtkInformationVector;
class vtkPolyData;

namespace zylAnyCells {

/// Call `action(block, place)` for the data sets of a composite.
template <class Action>
void ForEachBlock(vtkCompositeDataSet* data, Action action)
{
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(data->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    if (auto* block = vtkDataSet::SafeDownCast(iterator->GetCurrentDataObject()))
    {
      action(block, iterator);
    }
  }
}

/// Whether `block` is an unstructured grid with no cells but tetrahedra, hexahedra, voxels, wedges
/// and pyramids, and coordinates of type float or double.
ZYL_PRIVATE bool IsLinear(vtkDataSet* block);

/// RequestData() of a filter of data sets, alone or in a composite. `fast` is the superclass's; it
/// gets an input in which the blocks that are not `isFast` are missing. `general` makes the output
/// of one of those (null: none).
ZYL_PRIVATE int RequestData(vtkInformationVector** input, vtkInformationVector* output,
  const std::function<bool(vtkDataSet*)>& isFast,
  const std::function<int(vtkInformationVector** input)>& fast,
  const std::function<vtkSmartPointer<vtkDataObject>(vtkDataSet*)>& general);

/// Take out the cells that have a point that is not a number or infinite.
ZYL_PRIVATE void DropBrokenCells(vtkPolyData* surface);

/// The same for an output of RequestData(), composite or not.
ZYL_PRIVATE void DropBrokenCells(vtkInformationVector* output);

} // namespace zylAnyCells

#endif
