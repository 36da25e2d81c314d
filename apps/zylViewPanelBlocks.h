/// @file zylViewPanelBlocks.h
/// The tree of blocks with check boxes and a search, and the settings of those that are selected.
#ifndef zylViewPanelBlocks_h
#define zylViewPanelBlocks_h

#include <set>
#include <string>

class zylViewCase;

class zylViewPanelBlocks
{
public:
  /// The tree of one dataset. Whether the user changed what is shown.
  bool DrawTree(zylViewCase& one);
  /// The settings of the selected blocks of it, for each kind of display.
  bool DrawSettings(zylViewCase& one);

  /// Select a leaf block, alone or in addition.
  void Select(unsigned int block, bool add);
  void Clear() { this->Selected.clear(); }
  const std::set<unsigned int>& GetSelected() const { return this->Selected; }
  /// Have the representation draw the selected blocks highlighted.
  void Highlight(zylViewCase& one) const;

private:
  char Search[64] = "";
  std::set<unsigned int> Selected;
};

#endif
