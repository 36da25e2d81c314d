/// @file VTKExtensionsPlugin.h
/// The server plugin "VTKExtensions": the volume/surface reader, the AMR part filter and the block
/// information, made known to ParaView. The same sources are linked into the library, which imports
/// the plugin at session start, and built as the module VTKExtensions.so that a remote server
/// loads.
#ifndef VTKExtensionsPlugin_h
#define VTKExtensionsPlugin_h

#include "zylExport.h"

class vtkClientServerInterpreter;
class vtkPVPlugin;

/// The one plugin object of this process, made on the first call. Never null; not to be deleted.
extern "C" ZYL_EXPORT vtkPVPlugin* pv_plugin_instance_VTKExtensions();

/// Register the wrapped classes of the plugin with an interpreter (borrowed, never null).
extern "C" ZYL_EXPORT void ZYLFiltersCS_Initialize(vtkClientServerInterpreter* interpreter);
extern "C" ZYL_EXPORT void ZYLReadersCS_Initialize(vtkClientServerInterpreter* interpreter);

#endif
