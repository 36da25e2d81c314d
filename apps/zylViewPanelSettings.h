/// @file zylViewPanelSettings.h
/// Widgets for any collection of settings: what a property is decides what edits it, so that a new
/// one appears by itself.
#ifndef zylViewPanelSettings_h
#define zylViewPanelSettings_h

#include <string>
#include <vector>

class zylPropertyCollection;

/// Edit all of these collections at once; what is shown is the first one's. `arrays` are the names
/// to choose from. Whether anything was changed.
bool zylEditSettings(
  const std::vector<zylPropertyCollection*>& all, const std::vector<std::string>& arrays);

/// A list to choose a text from. Whether another one was chosen.
bool zylEditChoice(const char* label, std::string& value, const std::vector<std::string>& choices);

#endif
