#include "Derived/zylSurfaceWarp.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <vtkDataObject.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
std::string zylConnectWarp(zylPropertyCollection* settings, vtkSMSourceProxy* surface,
  vtkSMSourceProxy* warp, vtkSMSourceProxy* output, double time, double& executed)
{
  if (!settings->GetBool("WarpByVector"))
  {
    zylConnect(output, surface);
    return std::string();
  }
  const std::string name = settings->GetString("WarpVectorVariable");
  vtkSMPropertyHelper(warp, "SelectInputVectors").SetInputArrayToProcess(0, name.c_str());
  zylPushProperty(settings->GetProperty("WarpVectorScale"), warp, "ScaleFactor");
  warp->UpdateVTKObjects();
  zylUpdatePipeline(surface, time, executed);
  vtkPVArrayInformation* array = name.empty() || !zylIsAlive(surface)
    ? nullptr
    : surface->GetDataInformation(0)->GetArrayInformation(name.c_str(), vtkDataObject::POINT);
  const int components = array ? array->GetNumberOfComponents() : 3;
  zylConnect(output, components == 3 ? warp : surface);
  return components == 3 ? std::string()
                         : "Array '" + name + "' has " + std::to_string(components) +
      " components, but should have 3 components.";
}
