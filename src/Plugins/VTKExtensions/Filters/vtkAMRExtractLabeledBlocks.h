/**
 * @class vtkAMRExtractLabeledBlocks
 * @brief Turns an AMR dataset whose cells carry a part number into one unstructured grid per part.
 *
 * Input: a vtkUniformGridAMR. Output: a multiblock of N = 1 + the largest part number found (masked
 * cells included); block p is part p, parts without cells are empty grids. A cell is kept when the
 * first component of the level mask, truncated to an integer, is 1; without such an array every
 * cell of every level is kept. Blanking and ghost flags are not looked at, and the ghost array is
 * not passed on.
 *
 * Within a part, cells stand in the order of the input blocks and of the cell ids in a block;
 * points in the order of the blocks and of the point ids in a block, each corner point of the
 * part's cells once per block (blocks that touch do not share points). Coordinates are in double
 * precision; cells are voxels (pixels, lines or vertices for blocks that are flat). Point and cell
 * arrays are those of the first block, copied by name; where a block lacks one of them, zeros
 * stand. With several server ranks each rank splits the blocks it has, and N is the same on all.
 *
 * The work is done by blocks in parallel, each writing its own range of the output, so the result
 * does not depend on the number of threads. Memory beyond the output is linear in the number of
 * cells.
 *
 * Errors go through the error macro:
 * - "PartIdArrayName not set. The filter will not produce anything" when a block has no such array;
 *   that block and those after it are left out.
 * - Cells whose part number is NaN, negative or above the largest one supported
 *   (`MaximumNumberOfParts` - 1) belong to no part: they are left out, counted and reported.
 */
#ifndef vtkAMRExtractLabeledBlocks_h
#define vtkAMRExtractLabeledBlocks_h

#include "vtkMultiBlockDataSetAlgorithm.h"
#include "zylExport.h"

class zylDeferredValues;

class ZYL_PRIVATE vtkAMRExtractLabeledBlocks : public vtkMultiBlockDataSetAlgorithm
{
public:
  static vtkAMRExtractLabeledBlocks* New();
  vtkTypeMacro(vtkAMRExtractLabeledBlocks, vtkMultiBlockDataSetAlgorithm);
  void PrintSelf(ostream& os, vtkIndent indent) override;

#ifndef __VTK_WRAP__
  /// More blocks than this are not made, whatever part number a cell claims.
  static constexpr int MaximumNumberOfParts = 65536;
#endif

  ///@{
  /// Name of the cell array with the part numbers. Null at first.
  vtkSetStringMacro(PartIdArrayName);
  vtkGetStringMacro(PartIdArrayName);
  ///@}

  ///@{
  /// Name of the cell array that is 1 where no finer level covers the cell. Null at first: no mask.
  vtkSetStringMacro(LevelMaskArrayName);
  vtkGetStringMacro(LevelMaskArrayName);
  ///@}

protected:
  vtkAMRExtractLabeledBlocks();
  ~vtkAMRExtractLabeledBlocks() override;

  int FillInputPortInformation(int port, vtkInformation* info) override;
  int RequestData(vtkInformation* request, vtkInformationVector** inputVector,
    vtkInformationVector* outputVector) override;

  /// Where the values of arrays without memory come from (borrowed); null: there are no such
  /// arrays.
  virtual const zylDeferredValues* GetDeferredValues();

private:
  vtkAMRExtractLabeledBlocks(const vtkAMRExtractLabeledBlocks&) = delete;
  void operator=(const vtkAMRExtractLabeledBlocks&) = delete;

  char* PartIdArrayName = nullptr;
  char* LevelMaskArrayName = nullptr;
};

#endif
