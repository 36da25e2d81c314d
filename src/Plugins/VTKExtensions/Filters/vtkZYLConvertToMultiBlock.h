/**
 * @class vtkZYLConvertToMultiBlock
 * @brief Any data object as a multiblock dataset whose leaves are datasets.
 *
 * A multiblock dataset and a partitioned dataset collection keep their tree and so their flat
 * indices. AMR data become a block of pieces, the boxes, for each level: "Level 0", "Level 1", ...
 * A partitioned dataset becomes one block of pieces, anything else one block.
 *
 * Leaves that are datasets are shared with the input. A table with coordinate columns becomes
 * points (see zylCoordinateColumns.h). Every other leaf (tables, graphs, molecules, ...) becomes a
 * null block: the tree keeps its shape. Cells of AMR boxes that a finer level covers are hidden.
 *
 * With several processes a partitioned dataset has as many pieces on each as it has on the process
 * with most, so that a flat index means the same on all.
 */
#ifndef vtkZYLConvertToMultiBlock_h
#define vtkZYLConvertToMultiBlock_h

#include "zylExport.h"

#include <vtkMultiBlockDataSetAlgorithm.h>

class ZYL_PRIVATE vtkZYLConvertToMultiBlock : public vtkMultiBlockDataSetAlgorithm
{
public:
  static vtkZYLConvertToMultiBlock* New();
  vtkTypeMacro(vtkZYLConvertToMultiBlock, vtkMultiBlockDataSetAlgorithm);

protected:
  vtkZYLConvertToMultiBlock() = default;
  ~vtkZYLConvertToMultiBlock() override = default;

  int FillInputPortInformation(int port, vtkInformation* info) override;
  int RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector*) override;

private:
  vtkZYLConvertToMultiBlock(const vtkZYLConvertToMultiBlock&) = delete;
  void operator=(const vtkZYLConvertToMultiBlock&) = delete;
};

#endif
