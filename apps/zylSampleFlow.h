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

/// Write the walls alone (chimney and floor) for one time, as a .vtm.
bool zylWriteSampleWalls(const std::string& file, double time);

/// Replaces a sample in a folder: new data are written beside the old ones, which give way only
/// when the new ones are complete.
class zylSampleFolder
{
public:
  /// The sample is the folder `data` and the file `index` in `directory`.
  zylSampleFolder(const std::string& directory, const std::string& data, const std::string& index);

  /// Make the folders; the error, or nothing.
  std::string Begin() const;
  /// Where to write a file of the new data.
  std::string GetFresh(const std::string& name) const;
  /// Put the new data in place, with an index written by `writeIndex`; after an `error` drop them.
  zylSampleResult Finish(
    std::string error, const std::function<bool(const std::string&)>& writeIndex) const;

private:
  std::string Directory, Data, Index;
};

#endif
