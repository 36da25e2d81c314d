/// @file zylCellTypes.h
/// Single cells of a source, fetched, and the types of its blocks' cells. Private to the library.
#ifndef zylCellTypes_h
#define zylCellTypes_h

#include "zylExport.h"

#include <vector>

#include <vtkSmartPointer.h>

class vtkDataSet;
class vtkSMProxy;
class vtkSMSourceProxy;

/// The cells - points, if it means points - that the source proxy `selection` means in the output
/// of `source`, with all that is known of them: a dataset for each block that has some. None for
/// null.
ZYL_PRIVATE std::vector<vtkSmartPointer<vtkDataSet>> zylFetchCells(
  vtkSMSourceProxy* source, vtkSMProxy* selection);

/// VTK cell type of the first cell found in the blocks and pieces with these flat indices; -1 if
/// there is none, and for null.
ZYL_PRIVATE int zylGetCellType(vtkSMSourceProxy* source, const std::vector<unsigned int>& blocks);

/// The same for all blocks in one request, by flat index of the fetched data.
ZYL_PRIVATE std::vector<int> zylGetCellTypes(vtkSMSourceProxy* source);

#endif
