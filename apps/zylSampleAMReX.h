/// @file zylSampleAMReX.h
/// Writes the sample flow as an AMReX simulation would: a plotfile of three levels and a surface
/// file per time step, and the JSON index that names them. Cells carry the part they belong to
/// ("part_id", 0 ... 7) and whether a finer level covers them ("level_mask", 1 where none does).
#ifndef zylSampleAMReX_h
#define zylSampleAMReX_h

#include "zylSampleFlow.h"

/// As zylWriteSampleFlow(); the file to open is the index (.json), for reader
/// sources/ZYLVolumeSurfaceReader.
zylSampleResult zylWriteSampleAMReX(
  const std::string& directory, int steps = 4, const std::function<void(int)>& progress = {});

#endif
