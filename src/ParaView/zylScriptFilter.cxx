#include "ParaView/zylScriptFilter.h"

#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

namespace {
// Runs ahead of every script, where the data are. Toolkits up to 9.3 leave the signs out.
const char* const Signs = R"(
import numpy
from paraview.vtk.numpy_interface import algorithms, dataset_adapter

def sign(function):
    return lambda array: algorithms.apply_ufunc(function, array)

for kind in dataset_adapter.VTKCompositeDataArray, dataset_adapter.VTKNoneArray:
    for name, function in (("__neg__", numpy.negative), ("__pos__", numpy.positive),
                           ("__invert__", numpy.invert)):
        if not hasattr(kind, name):
            setattr(kind, name, sign(function))
)";

// So that the script of a stage can be told from others once it has failed.
std::string Introduce(vtkSMSourceProxy* stage)
{
  return std::string("\nglobals().setdefault('zylStages', {})[self.__this__] = ") +
    stage->GetGlobalIDAsString();
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylProxyBuilder zylScriptFilter(vtkSMSourceProxy* input)
{
  return zylProxyBuilder(
    input ? input->GetSessionProxyManager() : nullptr, "filters", "ProgrammableFilter")
    .Input(input)
    .Set("CopyArrays", 1);
}

//--------------------------------------------------------------------------------------------------
void zylPushScript(const std::string& script, vtkSMSourceProxy* stage)
{
  if (stage)
  {
    const std::string ahead = script.empty() ? std::string() : Signs + Introduce(stage);
    vtkSMPropertyHelper(stage, "InformationScript").Set(ahead.c_str());
    vtkSMPropertyHelper(stage, "Script").Set(script.c_str());
    stage->UpdateVTKObjects();
  }
}
