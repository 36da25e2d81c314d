/// @file zylBlockExtractor.h
/// The stage that delivers some blocks of its input, whole, without changing any flat index.
/// Private to the library.
#ifndef zylBlockExtractor_h
#define zylBlockExtractor_h

#include "ParaView/zylProxyBuilder.h"
#include "zylExport.h"

#include <vector>

/// Ready to be made; it delivers nothing before zylExtractBlocks().
ZYL_PRIVATE zylProxyBuilder zylBlockExtractor(vtkSMSourceProxy* input);

/// Let the stage, or any "ExtractBlock", deliver these blocks (flat indices; an inner node brings
/// all below it).
ZYL_PRIVATE void zylExtractBlocks(vtkSMSourceProxy* stage, const std::vector<int>& blocks);

#endif
