#define PARAVIEW_BUILDING_PLUGIN
#include "VTKExtensionsPlugin.h"

#include "zylFilterDefinitions.h"
#include "zylReaderDefinitions.h"

#include <string>
#include <vector>

#include <vtkClientServerInterpreter.h>
#include <vtkPVPlugin.h>
#include <vtkPVServerManagerPluginInterface.h>

// Made by the client-server wrapping generator.
extern void vtkAMRExtractLabeledBlocks_Init(vtkClientServerInterpreter*);
extern void vtkZYLBlockInformation_Init(vtkClientServerInterpreter*);
extern void vtkZYLContourFilter_Init(vtkClientServerInterpreter*);
extern void vtkZYLConvertToMultiBlock_Init(vtkClientServerInterpreter*);
extern void vtkZYLCrinkleCutter_Init(vtkClientServerInterpreter*);
extern void vtkZYLPlaneCutter_Init(vtkClientServerInterpreter*);
extern void vtkZYLShareLines_Init(vtkClientServerInterpreter*);
extern void vtkZYLClip_Init(vtkClientServerInterpreter*);
extern void vtkZYLUniformCells_Init(vtkClientServerInterpreter*);
extern void vtkZYLVolumeSurfaceReader_Init(vtkClientServerInterpreter*);

namespace {
void InitializeInterpreter(vtkClientServerInterpreter* interpreter)
{
  ZYLFiltersCS_Initialize(interpreter);
  ZYLReadersCS_Initialize(interpreter);
}

class VTKExtensionsPlugin
  : public vtkPVPlugin
  , public vtkPVServerManagerPluginInterface
{
public:
  const char* GetPluginName() override { return "VTKExtensions"; }
  const char* GetPluginVersionString() override { return "1.0"; }
  bool GetRequiredOnServer() override { return true; }
  bool GetRequiredOnClient() override { return false; }
  const char* GetRequiredPlugins() override { return ""; }
  const char* GetDescription() override { return "ZYL custom VTK filters"; }
  const char* GetEULA() override { return nullptr; }

  void GetXMLs(std::vector<std::string>& xmls) override
  {
    xmls.emplace_back(zylFilterDefinitions);
    xmls.emplace_back(zylReaderDefinitions);
  }

  vtkClientServerInterpreterInitializer::InterpreterInitializationCallback
  GetInitializeInterpreterCallback() override
  {
    return &InitializeInterpreter;
  }
};
} // namespace

//--------------------------------------------------------------------------------------------------
extern "C" void ZYLFiltersCS_Initialize(vtkClientServerInterpreter* interpreter)
{
  vtkAMRExtractLabeledBlocks_Init(interpreter);
  vtkZYLBlockInformation_Init(interpreter);
  vtkZYLContourFilter_Init(interpreter);
  vtkZYLConvertToMultiBlock_Init(interpreter);
  vtkZYLCrinkleCutter_Init(interpreter);
  vtkZYLPlaneCutter_Init(interpreter);
  vtkZYLShareLines_Init(interpreter);
  vtkZYLClip_Init(interpreter);
  vtkZYLUniformCells_Init(interpreter);
}

//--------------------------------------------------------------------------------------------------
extern "C" void ZYLReadersCS_Initialize(vtkClientServerInterpreter* interpreter)
{
  vtkZYLVolumeSurfaceReader_Init(interpreter);
}

//--------------------------------------------------------------------------------------------------
PV_PLUGIN_EXPORT(VTKExtensions, VTKExtensionsPlugin)
