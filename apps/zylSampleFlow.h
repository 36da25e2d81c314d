/// @file zylSampleFlow.h
/// Writes the built-in sample: a multi-block flow past a hot chimney over one shedding period.
///
/// Blocks: volume blocks (structured and unstructured hexahedra, wedges, tetrahedra), boundaries
/// (inlet, outlet, walls, symmetry planes) and extracts (a cutting plane, the vortex cores, a rake
/// of measuring points), in nested groups. Point arrays Pressure, Velocity, Temperature, Vorticity;
/// cell array Quality on all blocks, WallShear on the walls. The flow is that of zylSampleField.
#ifndef zylSampleFlow_h
#define zylSampleFlow_h

#include <functional>
#include <string>

struct zylSampleResult
{
  std::string File;  ///< the file to open (.pvd), empty on failure
  std::string Error; ///< one line, empty on success
};

/// Write the sample into `directory` (made when missing; an older sample there is replaced only
/// when the new one is complete). `steps` time steps, at least 1. `progress` (may be empty) is told
/// the number of steps written after each one. Nothing throws.
zylSampleResult zylWriteSampleFlow(
  const std::string& directory, int steps = 8, const std::function<void(int)>& progress = {});

#endif
