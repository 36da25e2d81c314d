#include "ParaView/zylPlugin.h"

#include "Plugins/VTKExtensions/VTKExtensionsPlugin.h"

#include <utility>

#define PARAVIEW_BUILDING_PLUGIN 1
#define PARAVIEW_PLUGIN_BUILT_SHARED 0
#include <vtkPVPlugin.h>

//--------------------------------------------------------------------------------------------------
bool zylImportPlugin()
{
  return vtkPVPlugin::ImportPlugin(pv_plugin_instance_VTKExtensions());
}

//--------------------------------------------------------------------------------------------------
std::string zylUsePluginClasses(std::string definitions)
{
  constexpr std::pair<const char*, const char*> classes[] = {
    { "\"vtkContour3DLinearGrid\"", "\"vtkZYLContourFilter\"" },
    { "\"vtk3DLinearGridPlaneCutter\"", "\"vtkZYLPlaneCutter\"" },
    { "\"vtk3DLinearGridCrinkleExtractor\"", "\"vtkZYLCrinkleCutter\"" },
  };
  for (const auto& [base, derived] : classes)
  {
    const std::size_t at = definitions.find(base);
    if (at != std::string::npos)
    {
      definitions.replace(at, std::string(base).size(), derived);
    }
  }
  return definitions;
}
