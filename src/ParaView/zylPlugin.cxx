#include "ParaView/zylPlugin.h"

#include "Plugins/VTKExtensions/VTKExtensionsPlugin.h"

#define PARAVIEW_BUILDING_PLUGIN 1
#define PARAVIEW_PLUGIN_BUILT_SHARED 0
#include <vtkPVPlugin.h>

//--------------------------------------------------------------------------------------------------
bool zylImportPlugin()
{
  return vtkPVPlugin::ImportPlugin(pv_plugin_instance_VTKExtensions());
}
