/// @file zylAMReXPlotfile.h
/// Checks an AMReX plotfile before it is given to the toolkit's reader, which trusts what it reads:
/// with a truncated header or data file it can crash, hang or return memory it never filled.
#ifndef zylAMReXPlotfile_h
#define zylAMReXPlotfile_h

#include "zylExport.h"

#include <cstdint>
#include <string>
#include <vector>

/// Where the values of one box are: those of all its cells for the first variable, then for the
/// second, and so on.
struct zylAMReXFab
{
  std::uint32_t File = 0; ///< index into zylAMReXLayout::Files
  std::uint64_t Offset = 0;
  std::int64_t NumberOfCells = 0;
  int BytesOfValue = 8;
  bool IsNative = false; ///< values in the byte order of this machine
};

/// Where the values of a plotfile are.
struct zylAMReXLayout
{
  std::vector<std::string> Variables;
  std::vector<std::string> Files;
  std::vector<zylAMReXFab> Boxes; ///< of the levels that are read, level by level
};

/// What is wrong with the plotfile in the directory `path`, in one sentence; empty when the
/// toolkit's reader can read its levels 0 to `maximumLevel`. Reads the headers and the first bytes
/// of each box, and tells in `layout` (null allowed) where their values are. Does not throw.
ZYL_PRIVATE std::string zylCheckAMReXPlotfile(
  const std::string& path, int maximumLevel, zylAMReXLayout* layout = nullptr);

#endif
