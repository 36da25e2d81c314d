/// @file zylSurfaceMerger.h
/// The stage that makes one surface of the surfaces of all blocks. Private to the library.
#ifndef zylSurfaceMerger_h
#define zylSurfaceMerger_h

#include "ParaView/zylProxyBuilder.h"
#include "zylExport.h"

/// A "MergeBlocks", ready to be made, which leaves points apart unless "MergePoints" is set.
ZYL_PRIVATE zylProxyBuilder zylSurfaceMerger(vtkSMSourceProxy* input);

#endif
