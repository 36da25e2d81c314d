/// @file zylTimeStepIndex.h
/// The JSON index of time steps:
///
///     { "version": 1,
///       "timesteps": [
///         { "time": 0.5,
///           "surface": { "fileType": "VTM", "fileName": "surface/0.vtm" },
///           "volume": { "fileType": "AMReXGrid", "fileName": "plt00000" } } ] }
///
/// "version" is not interpreted; "surface" and "volume" may be left out; file names are relative to
/// the directory of the index.
#ifndef zylTimeStepIndex_h
#define zylTimeStepIndex_h

#include "zylExport.h"

#include <string>
#include <vector>

struct zylTimeStep
{
  double Time = 0.0;
  std::string SurfaceFileName; ///< empty, as the other texts, when the node is absent
  std::string SurfaceFileType;
  std::string VolumeFileName;
  std::string VolumeFileType;
};

/// Read the index in `text` into `steps` (replaced), in the order of the array. Elements that
/// cannot be used are left out, each with a message in `errors` (beyond a hundred one message
/// counts the rest). False, with a message, when there is no array of time steps. Does not throw.
ZYL_PRIVATE bool zylParseTimeStepIndex(
  const std::string& text, std::vector<zylTimeStep>& steps, std::vector<std::string>& errors);

/// Position of the time nearest to `time`; of two equally near ones the first. 0 for an empty list.
ZYL_PRIVATE std::size_t zylNearestTimeStep(const std::vector<zylTimeStep>& steps, double time);

#endif
