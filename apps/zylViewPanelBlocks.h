/// @file zylViewPanelBlocks.h
/// The tree of blocks with check boxes and a search, and the settings of those that are selected.
#ifndef zylViewPanelBlocks_h
#define zylViewPanelBlocks_h

class zylViewCase;

class zylViewPanelBlocks
{
public:
  /// The tree of one dataset; `reveal`: with what is selected in sight. Whether the user changed
  /// what is shown.
  bool DrawTree(zylViewCase& one, bool reveal);
  /// The settings of the selected blocks of it, for each kind of display.
  bool DrawSettings(zylViewCase& one);

private:
  char Search[64] = "";
};

#endif
