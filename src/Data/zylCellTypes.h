/// @file zylCellTypes.h
/// The types of the cells of a source's blocks, of which one each is fetched. Private to the
/// library.
#ifndef zylCellTypes_h
#define zylCellTypes_h

#include "zylExport.h"

#include <vector>

class vtkSMSourceProxy;

/// VTK cell type of the first cell found in the blocks and pieces with these flat indices; -1 if
/// there is none, and for null.
ZYL_PRIVATE int zylGetCellType(vtkSMSourceProxy* source, const std::vector<unsigned int>& blocks);

/// The same for all blocks in one request, by flat index of the fetched data.
ZYL_PRIVATE std::vector<int> zylGetCellTypes(vtkSMSourceProxy* source);

#endif
