/// @file zylPlugin.h
/// The statically linked server plugin. Private to the library.
#ifndef zylPlugin_h
#define zylPlugin_h

/// Import the plugin "VTKExtensions" into this process: its classes and proxy definitions become
/// known. False when it cannot be imported.
bool zylImportPlugin();

#endif
