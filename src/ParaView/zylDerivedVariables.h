/// @file zylDerivedVariables.h
/// The derived variables of a dataset: their expressions, the script that computes them, and what
/// has to be said about them. Private to the library.
#ifndef zylDerivedVariables_h
#define zylDerivedVariables_h

#include "ParaView/zylPython.h"
#include "zylExport.h"

#include <map>
#include <set>
#include <string>
#include <vector>

class vtkObject;

class ZYL_PRIVATE zylDerivedVariables
{
public:
  /// Errors and warnings are those of `owner` (borrowed), each once until a definition changes.
  explicit zylDerivedVariables(vtkObject* owner)
    : Owner(owner)
  {
  }

  const zylPython::Expressions& GetExpressions() const { return this->Expressions; }

  /// In ascending order.
  std::vector<std::string> GetNames() const;
  /// Empty for an unknown name.
  std::string GetExpression(const std::string& name) const;

  /// Change the definitions; what was said about the old ones may be said again.
  void Define(const std::string& name, const std::string& expression);
  void Remove(const std::string& name);
  void Clear();

  /// The script that adds the variables `toSave` to data with the point arrays `arrays`; empty,
  /// with an error, when it cannot be made.
  std::string MakeScript(
    const std::vector<std::string>& arrays, const std::set<std::string>& toSave);

  /// Warn of every array or variable that an expression spells as no Python program can.
  void CheckSpellings(const std::vector<std::string>& arrays);

private:
  void Forget();
  bool IsNew(const std::string& message);

  vtkObject* Owner;
  zylPython::Expressions Expressions;
  std::set<std::string> Told;
  std::vector<std::string> Arrays;                      // for which the scripts were made
  std::map<std::set<std::string>, std::string> Scripts; // by the variables to save
};

#endif
