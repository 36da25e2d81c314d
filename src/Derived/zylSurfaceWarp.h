/// @file zylSurfaceWarp.h
/// The stage that displaces a derived surface by a vector variable. Private to the library.
#ifndef zylSurfaceWarp_h
#define zylSurfaceWarp_h

#include "zylExport.h"

#include <string>

class vtkSMSourceProxy;
class zylPropertyCollection;

/// Push the settings "WarpByVector", "WarpVectorVariable" and "WarpVectorScale" to `warp`, whose
/// input is `surface`, and connect `output` to the one of the two that they ask for. Arrays of
/// other than three components, which the toolkit's filter would read beyond their end, leave the
/// surface where it is: what is wrong with them is returned, else "". For that `surface` is
/// executed at `time` unless it has been (see zylUpdatePipeline() for `executed`).
ZYL_PRIVATE std::string zylConnectWarp(zylPropertyCollection* settings, vtkSMSourceProxy* surface,
  vtkSMSourceProxy* warp, vtkSMSourceProxy* output, double time, double& executed);

#endif
