/// @file zylScriptError.h
/// Why derived variables are not there. Private to the library.
#ifndef zylScriptError_h
#define zylScriptError_h

#include "zylExport.h"

#include <set>
#include <string>

class vtkSMSourceProxy;

/// What the script of `stage` (see zylScriptFilter.h) raised when it last failed, in Python's own
/// words and with the line, as in: NameError: name 'a' is not defined, in "b = a + 1". Empty if it
/// did not. The answer comes from the process that ran it, of several the first.
ZYL_PRIVATE std::string zylGetScriptError(vtkSMSourceProxy* stage);

/// What the script of `stage` raised, with the names of those of its derived variables `names` that
/// `output`, which was executed, does not have. Empty when it has all or the script did not fail.
ZYL_PRIVATE std::string zylDescribeFailure(
  const std::set<std::string>& names, vtkSMSourceProxy* stage, vtkSMSourceProxy* output);

/// The names, each in quotes, with what is wrong with the derived variables.
ZYL_PRIVATE std::string zylDescribeMissing(
  const std::set<std::string>& names, const std::string& reason);

#endif
