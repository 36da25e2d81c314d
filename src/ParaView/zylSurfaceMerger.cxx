#include "ParaView/zylSurfaceMerger.h"

#include <vtkSMSourceProxy.h>
#include <vtkType.h>

namespace {
// The same point, computed in two blocks, differs by the rounding of the contour filter, which
// works with float fractions of an edge. As part of the size of the surface.
constexpr double Coincident = 1e-7;
} // namespace

//--------------------------------------------------------------------------------------------------
zylProxyBuilder zylSurfaceMerger(vtkSMSourceProxy* input)
{
  return zylProxyBuilder(
    input ? input->GetSessionProxyManager() : nullptr, "filters", "MergeBlocks")
    .Input(input)
    .Set("MergePoints", 0)
    .Set("OutputDataSetType", VTK_POLY_DATA)
    .Set("Tolerance", Coincident);
}
