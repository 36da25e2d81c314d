/// @file zylFileTypes.h
/// Splits the reader factory's list of file types. Private to the library.
#ifndef zylFileTypes_h
#define zylFileTypes_h

#include "zylExport.h"

#include <string>
#include <vector>

/// The descriptions in `types`, "All (*.a *.b);;A (*.a);;B (*.b)", without the head and without the
/// last one, which no separator ends: here "A (*.a)".
ZYL_PRIVATE std::vector<std::string> zylSplitFileTypes(const std::string& types);

#endif
