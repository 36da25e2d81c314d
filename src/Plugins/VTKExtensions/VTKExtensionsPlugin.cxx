#define PARAVIEW_BUILDING_PLUGIN
#include "VTKExtensionsPlugin.h"

#include <string>
#include <vector>

#include <vtkClientServerInterpreter.h>
#include <vtkPVPlugin.h>
#include <vtkPVServerManagerPluginInterface.h>

// Made by the client-server wrapping generator.
extern void vtkAMRExtractLabeledBlocks_Init(vtkClientServerInterpreter*);
extern void vtkZYLBlockInformation_Init(vtkClientServerInterpreter*);
extern void vtkZYLVolumeSurfaceReader_Init(vtkClientServerInterpreter*);

namespace {
const char* const FilterDefinition = R"xml(<ServerManagerConfiguration>
  <ProxyGroup name="filters">
    <SourceProxy name="AMRPartThreshold" class="vtkAMRExtractLabeledBlocks"
                 label="AMR Part Threshold">
      <Documentation
        short_help="Separate parts in an AMR dataset into a multiblock dataset of separate blocks."
        long_help="Separate parts in an AMR dataset into a multiblock dataset of separate blocks.">
        Separate parts in an AMR dataset into a multiblock dataset of separate blocks.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <DataTypeDomain name="input_type">
          <DataType value="vtkDataObject"/>
        </DataTypeDomain>
        <InputArrayDomain name="input_array" attribute_type="cell" optional="1"/>
        <Documentation>The AMR dataset to split into parts.</Documentation>
      </InputProperty>
      <StringVectorProperty name="PartIdArrayName" command="SetPartIdArrayName"
                            number_of_elements="1" default_values="part_id">
        <ArrayListDomain name="array_list" attribute_type="Scalars">
          <RequiredProperties>
            <Property name="Input" function="Input"/>
          </RequiredProperties>
        </ArrayListDomain>
        <Documentation>
          Indicates the name of the array that encodes the part number.
        </Documentation>
      </StringVectorProperty>
      <StringVectorProperty name="PartLevelMaskArrayName" command="SetLevelMaskArrayName"
                            number_of_elements="1" default_values="level_mask">
        <ArrayListDomain name="array_list" attribute_type="Scalars" none_string="None">
          <RequiredProperties>
            <Property name="Input" function="Input"/>
          </RequiredProperties>
        </ArrayListDomain>
        <Documentation>
          Optional array that indicates the name of the array that encodes a level mask.
        </Documentation>
      </StringVectorProperty>
    </SourceProxy>
  </ProxyGroup>
</ServerManagerConfiguration>
)xml";

const char* const ReaderDefinition = R"xml(<ServerManagerConfiguration>
  <ProxyGroup name="sources">
    <SourceProxy name="ZYLVolumeSurfaceReader" class="vtkZYLVolumeSurfaceReader">
      <Documentation>
        Reader that reads volume and surface data produced by an AMReX simulation.
      </Documentation>
      <StringVectorProperty name="FileName" command="SetFileName" number_of_elements="1"
                            animateable="0">
        <FileListDomain name="files"/>
        <Documentation>The JSON index of the time steps.</Documentation>
      </StringVectorProperty>
      <StringVectorProperty name="PartIdArrayName" command="SetPartIdArrayName"
                            number_of_elements="1" default_values="part_id">
        <Documentation>
          Specifies array name used to identify separate parts in a dataset.
        </Documentation>
      </StringVectorProperty>
      <StringVectorProperty name="LevelMaskArrayName" command="SetLevelMaskArrayName"
                            number_of_elements="1" default_values="level_mask">
        <Documentation>
          Specifies array name used to identify a level mask in a dataset.
        </Documentation>
      </StringVectorProperty>
      <DoubleVectorProperty name="TimestepValues" information_only="1" repeatable="1">
        <TimeStepsInformationHelper/>
        <Documentation>The times listed in the index.</Documentation>
      </DoubleVectorProperty>
      <Hints>
        <DefaultFileNameProperty name="FileName"/>
      </Hints>
    </SourceProxy>
  </ProxyGroup>
</ServerManagerConfiguration>
)xml";

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
    xmls.emplace_back(FilterDefinition);
    xmls.emplace_back(ReaderDefinition);
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
}

//--------------------------------------------------------------------------------------------------
extern "C" void ZYLReadersCS_Initialize(vtkClientServerInterpreter* interpreter)
{
  vtkZYLVolumeSurfaceReader_Init(interpreter);
}

//--------------------------------------------------------------------------------------------------
PV_PLUGIN_EXPORT(VTKExtensions, VTKExtensionsPlugin)
