/// @file zylCoordinateColumns.h
/// Which columns of a table say where its rows lie in space.
#ifndef zylCoordinateColumns_h
#define zylCoordinateColumns_h

#include "zylExport.h"

#include <string>
#include <vector>

/// Find the columns that hold the coordinates among those called `names` (empty: not a candidate):
/// the first ones called x, y and z, or Points:0 to Points:2 or Points_0 to Points_2 as ParaView
/// writes them. Case does not matter, nor does what follows the name after a blank or in brackets,
/// such as a unit. False, and `columns` unspecified, when one is missing.
ZYL_PRIVATE bool zylFindCoordinateColumns(const std::vector<std::string>& names, int columns[3]);

#endif
