/// @file zylBlockValues.h
/// Arrays and coordinates of a block on their way into the grids of its parts.
#ifndef zylBlockValues_h
#define zylBlockValues_h

#include "zylExport.h"

#include <cstddef>
#include <vector>

#include <vtkType.h>

class vtkAbstractArray;
class vtkDataSetAttributes;
class vtkImageData;
class zylBlockShape;

/// An array of the output, the same for all parts, like one of the first block.
struct zylColumn
{
  vtkAbstractArray* Model = nullptr; ///< borrowed
  std::size_t TupleBytes = 0;        ///< 0: the values are not plain memory
};

/// An array of the output as seen from one block.
struct zylColumnSource
{
  vtkAbstractArray* Array = nullptr; ///< borrowed; null: the block has none that fits
  const char* Values = nullptr;      ///< null: to be copied through the array's own methods
  bool Deferred = false;             ///< the values come with the block
};

/// One for every array with a name that tells of no ghosts.
ZYL_PRIVATE std::vector<zylColumn> zylListColumns(vtkDataSetAttributes* attributes);

/// What a block, whose arrays need at least `tuples`, has for each column.
ZYL_PRIVATE std::vector<zylColumnSource> zylFindSources(
  const std::vector<zylColumn>& columns, vtkDataSetAttributes* attributes, vtkIdType tuples);

/// Add new arrays like the columns, `tuples` long, to `output`, with the active attributes of
/// `model` (null: none). Where their values are; null for what is not plain memory.
ZYL_PRIVATE std::vector<char*> zylAllocateColumns(const std::vector<zylColumn>& columns,
  vtkIdType tuples, vtkDataSetAttributes* model, vtkDataSetAttributes* output);

/// Copy the tuples `ids` (null: the first `count`) of a block to the values that
/// zylAllocateColumns() gave, from the tuple `first` on. Zeros where the block has none. Arrays
/// that are not plain memory, or are of another type in this block, are left to
/// zylCopyOddColumns().
ZYL_PRIVATE void zylCopyColumns(const std::vector<zylColumn>& columns,
  const std::vector<zylColumnSource>& sources, const std::vector<char*>& values, vtkIdType first,
  const int* ids, int count);

/// The same for what zylCopyColumns() leaves, to the arrays of `output`. Not for several threads.
ZYL_PRIVATE void zylCopyOddColumns(const std::vector<zylColumn>& columns,
  const std::vector<zylColumnSource>& sources, vtkDataSetAttributes* output, vtkIdType first,
  const int* ids, int count);

/// Coordinates of the points `ids` (null: of all points, in order) of a block, three of each.
ZYL_PRIVATE void zylFillCoordinates(
  vtkImageData* image, const zylBlockShape& shape, const int* ids, int count, double* to);

#endif
