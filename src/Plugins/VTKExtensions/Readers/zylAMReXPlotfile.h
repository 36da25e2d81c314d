/// @file zylAMReXPlotfile.h
/// Checks an AMReX plotfile before it is given to the toolkit's reader, which trusts what it reads:
/// with a truncated header or data file it can crash, hang or return memory it never filled.
#ifndef zylAMReXPlotfile_h
#define zylAMReXPlotfile_h

#include "zylExport.h"

#include <string>

/// What is wrong with the plotfile in the directory `path`, in one sentence; empty when the
/// toolkit's reader can read its levels 0 to `maximumLevel`. Reads the headers and the first bytes
/// of each box. Does not throw.
ZYL_PRIVATE std::string zylCheckAMReXPlotfile(const std::string& path, int maximumLevel);

#endif
