/// @file zylPython.h
/// The library's calls into the embedded Python interpreter. Each holds the interpreter's lock.
/// Private to the library.
#ifndef zylPython_h
#define zylPython_h

#include "zylExport.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace zylPython {

using Expressions = std::map<std::string, std::string>; ///< of derived variables, by name

struct Script
{
  std::string Text;  ///< empty when it could not be made
  std::string Error; ///< why not, in Python's own words, with the name of the variable
  std::vector<std::string> Circle; ///< variables that need each other, if any, each once
};

/// Start the interpreter and run the module of derived variables in its __main__ namespace. A
/// Python error is printed to the interpreter's error stream.
ZYL_PRIVATE void RunDerivedVariableModule();

/// The script of a programmable filter that computes the derived variables `toSave` of data with
/// the point arrays `arrays` and appends them to the output.
ZYL_PRIVATE Script CreateScript(const std::vector<std::string>& arrays,
  const Expressions& expressions, const std::set<std::string>& toSave);

/// How expressions spell those of the names (of arrays, then of derived variables) that are no
/// Python identifiers. Empty on failure.
ZYL_PRIVATE std::map<std::string, std::string> SpellOtherNames(
  const std::vector<std::string>& names);

} // namespace zylPython

#endif
