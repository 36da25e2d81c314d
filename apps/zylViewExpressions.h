/// @file zylViewExpressions.h
/// Which expressions of a scene file may run. They become Python where the data are; a file that
/// somebody sent is data, not a program.
#ifndef zylViewExpressions_h
#define zylViewExpressions_h

#include <string>

/// Empty when `expression` is made of names, numbers, arithmetic, comparison, indexing and calls of
/// the functions that ParaView documents for its programmable filter; else what it has beyond that.
std::string zylFindBeyondArithmetic(const std::string& expression);

#endif
