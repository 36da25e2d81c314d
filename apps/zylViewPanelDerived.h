/// @file zylViewPanelDerived.h
/// The parts of the panel about what is made of a dataset: clips, cuts and isosurfaces, variables.
#ifndef zylViewPanelDerived_h
#define zylViewPanelDerived_h

#include "zylViewDerivedForms.h"

#include <string>
#include <vector>

class zylRepresentation;
class zylView;
class zylViewCase;

class zylViewPanelDerived
{
public:
  ///@{
  /// Draw the parts; whether the user changed something. What did not work is said. `reveal`: bring
  /// what is selected into sight.
  bool DrawDerived(zylViewCase& one, zylView* view, bool reveal);
  bool DrawVariables(zylViewCase& one);
  ///@}
  /// The clips of a representation of that dataset.
  static bool DrawClips(zylRepresentation* representation, zylViewCase& one);

  /// What a variable can be chosen from: arrays and variables that are defined.
  static std::vector<std::string> GetChoices(zylViewCase& one);

private:
  static bool Add(zylViewCase& one, zylView* view, zylViewDerived::Shape shape);

  char Name[64] = "";
  char Expression[256] = "";
};

#endif
