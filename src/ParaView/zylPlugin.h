/// @file zylPlugin.h
/// The statically linked server plugin. Private to the library.
#ifndef zylPlugin_h
#define zylPlugin_h

#include <string>

/// Import the plugin "VTKExtensions" into this process: its classes and proxy definitions become
/// known. False when it cannot be imported.
bool zylImportPlugin();

/// `definitions` (proxy definitions in XML) with the toolkit's classes for linear 3D cells replaced
/// by the plugin's classes, which are derived from those and do the same for all cells.
std::string zylUsePluginClasses(std::string definitions);

#endif
