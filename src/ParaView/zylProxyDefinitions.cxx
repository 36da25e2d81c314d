#include "ParaView/zylProxyDefinitions.h"

namespace {
const char* const Definitions = R"xml(<ServerManagerConfiguration>
  <ProxyGroup name="filters">

    <SourceProxy name="LinearCellUnstructuredGridContour" class="vtkContour3DLinearGrid"
                 label="Linear Cell Unstructured Grid Contour">
      <Documentation short_help="Isosurfaces of linear cells."
                     long_help="Generates isosurfaces of unstructured grids of linear cells.">
        Generates isosurfaces from a point scalar on unstructured grids of linear 3D cells. Faster
        than the general contour filter. Other cells are left out.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <DataTypeDomain name="input_type" composite_data_supported="1">
          <DataType value="vtkUnstructuredGrid"/>
          <DataType value="vtkCompositeDataSet"/>
        </DataTypeDomain>
        <InputArrayDomain name="input_array" attribute_type="point" number_of_components="1"/>
        <Documentation>The dataset to contour.</Documentation>
      </InputProperty>
      <StringVectorProperty name="SelectInputScalars" label="Contour By"
                            command="SetInputArrayToProcess" number_of_elements="5"
                            element_types="0 0 0 0 2" animateable="0">
        <ArrayListDomain name="array_list" attribute_type="Scalars"
                         input_domain_name="input_array">
          <RequiredProperties>
            <Property name="Input" function="Input"/>
          </RequiredProperties>
        </ArrayListDomain>
        <Documentation>Name of the point scalar whose values are contoured.</Documentation>
      </StringVectorProperty>
      <IntVectorProperty name="ComputeNormals" command="SetComputeNormals" number_of_elements="1"
                         default_values="1">
        <BooleanDomain name="bool"/>
        <Documentation>Compute point normals. They need merged points.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="MergePoints" command="SetMergePoints" number_of_elements="1"
                         default_values="0">
        <BooleanDomain name="bool"/>
        <Documentation>Merge coincident points of the surface.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="InterpolateAttributes" command="SetInterpolateAttributes"
                         number_of_elements="1" default_values="0">
        <BooleanDomain name="bool"/>
        <Documentation>Interpolate the point arrays onto the surface.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="UseScalarTree" command="SetUseScalarTree" number_of_elements="1"
                         default_values="0" panel_visibility="advanced">
        <BooleanDomain name="bool"/>
        <Documentation>Build a search tree that speeds up further contour values.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="OutputPointsPrecision" command="SetOutputPointsPrecision"
                         number_of_elements="1" default_values="2" panel_visibility="advanced">
        <EnumerationDomain name="enum">
          <Entry text="Single" value="0"/>
          <Entry text="Double" value="1"/>
          <Entry text="Same as input" value="2"/>
        </EnumerationDomain>
        <Documentation>Precision of the points of the surface.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="ForceSequentialProcessing" command="SetSequentialProcessing"
                         number_of_elements="1" default_values="0" panel_visibility="advanced">
        <BooleanDomain name="bool"/>
        <Documentation>Run in one thread.</Documentation>
      </IntVectorProperty>
      <DoubleVectorProperty name="ContourValues" label="Isosurfaces" command="SetValue"
                            set_number_command="SetNumberOfContours" number_of_elements="0"
                            number_of_elements_per_command="1" repeat_command="1" use_index="1"
                            animateable="1">
        <ArrayRangeDomain name="scalar_range">
          <RequiredProperties>
            <Property name="Input" function="Input"/>
            <Property name="SelectInputScalars" function="ArraySelection"/>
          </RequiredProperties>
        </ArrayRangeDomain>
        <Documentation>The values at which surfaces are made.</Documentation>
      </DoubleVectorProperty>
      <PropertyGroup label="Isosurfaces" panel_widget="ContinuousRange">
        <Property name="ContourValues" function="Values"/>
      </PropertyGroup>
    </SourceProxy>

    <SourceProxy name="LinearCellPlaneCutter" class="vtk3DLinearGridPlaneCutter"
                 label="Linear Cell Plane Cutter">
      <Documentation short_help="Plane cuts of linear cells."
                     long_help="Cuts unstructured grids of linear cells with a plane.">
        Cuts unstructured grids of linear 3D cells with a plane. Faster than the general slice
        filter. Other cells are left out.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <DataTypeDomain name="input_type" composite_data_supported="1">
          <DataType value="vtkUnstructuredGrid"/>
          <DataType value="vtkCompositeDataSet"/>
        </DataTypeDomain>
        <Documentation>The dataset to cut.</Documentation>
      </InputProperty>
      <ProxyProperty name="CutFunction" label="Cut Type" command="SetPlane">
        <ProxyGroupDomain name="groups">
          <Group name="implicit_functions"/>
        </ProxyGroupDomain>
        <ProxyListDomain name="proxy_list">
          <Proxy group="implicit_functions" name="Plane"/>
        </ProxyListDomain>
        <Documentation>The plane.</Documentation>
      </ProxyProperty>
      <IntVectorProperty name="InterpolateAttributes" command="SetInterpolateAttributes"
                         number_of_elements="1" default_values="0">
        <BooleanDomain name="bool"/>
        <Documentation>Interpolate the point arrays onto the cut.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="MergePoints" command="SetMergePoints" number_of_elements="1"
                         default_values="1">
        <BooleanDomain name="bool"/>
        <Documentation>Merge coincident points of the cut.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="ForceSequentialProcessing" command="SetSequentialProcessing"
                         number_of_elements="1" default_values="0" panel_visibility="advanced">
        <BooleanDomain name="bool"/>
        <Documentation>Run in one thread.</Documentation>
      </IntVectorProperty>
    </SourceProxy>

    <SourceProxy name="LinearCellCrinkleCutter" class="vtk3DLinearGridCrinkleExtractor"
                 label="Linear Cell Crinkle Cutter">
      <Documentation short_help="The linear cells that a function cuts."
                     long_help="Extracts the linear cells that an implicit function cuts.">
        Extracts from unstructured grids the linear 3D cells that an implicit function cuts, whole.
        Other cells are left out.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <DataTypeDomain name="input_type" composite_data_supported="1">
          <DataType value="vtkUnstructuredGrid"/>
          <DataType value="vtkCompositeDataSet"/>
        </DataTypeDomain>
        <Documentation>The dataset to take cells from.</Documentation>
      </InputProperty>
      <ProxyProperty name="CutFunction" label="Cut Type" command="SetImplicitFunction">
        <ProxyGroupDomain name="groups">
          <Group name="implicit_functions"/>
        </ProxyGroupDomain>
        <ProxyListDomain name="proxy_list">
          <Proxy group="implicit_functions" name="Plane"/>
          <Proxy group="implicit_functions" name="Box"/>
          <Proxy group="implicit_functions" name="Sphere"/>
          <Proxy group="implicit_functions" name="Cylinder"/>
        </ProxyListDomain>
        <Documentation>The function whose zero surface cuts.</Documentation>
      </ProxyProperty>
      <IntVectorProperty name="CopyPointData" command="SetCopyPointData" number_of_elements="1"
                         default_values="1">
        <BooleanDomain name="bool"/>
        <Documentation>Pass the point arrays.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="CopyCellData" command="SetCopyCellData" number_of_elements="1"
                         default_values="1">
        <BooleanDomain name="bool"/>
        <Documentation>Pass the cell arrays.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="RemoveUnusedPoints" command="SetRemoveUnusedPoints"
                         number_of_elements="1" default_values="0">
        <BooleanDomain name="bool"/>
        <Documentation>Leave out points that no extracted cell uses.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="ForceSequentialProcessing" command="SetSequentialProcessing"
                         number_of_elements="1" default_values="0" panel_visibility="advanced">
        <BooleanDomain name="bool"/>
        <Documentation>Run in one thread.</Documentation>
      </IntVectorProperty>
    </SourceProxy>

    <SourceProxy name="SurfaceGeometryFilter" class="vtkGeometryFilter"
                 label="Surface Geometry Filter">
      <Documentation short_help="The boundary surface of a dataset."
                     long_help="Extracts the boundary surface of a dataset.">
        Extracts the boundary surface of a dataset.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <Documentation>The dataset whose surface is wanted.</Documentation>
      </InputProperty>
    </SourceProxy>

    <SourceProxy name="ExtractBlock" class="vtkExtractBlock" label="Extract Block">
      <Documentation short_help="Blocks of a multiblock dataset, chosen by flat index."
                     long_help="Extracts blocks of a multiblock dataset, chosen by flat index.">
        Extracts the blocks with the given flat indices, with everything below them.
      </Documentation>
      <InputProperty name="Input" command="SetInputConnection">
        <ProxyGroupDomain name="groups">
          <Group name="sources"/>
          <Group name="filters"/>
        </ProxyGroupDomain>
        <DataTypeDomain name="input_type">
          <DataType value="vtkMultiBlockDataSet"/>
        </DataTypeDomain>
        <Documentation>The multiblock dataset.</Documentation>
      </InputProperty>
      <IntVectorProperty name="BlockIndices" command="AddIndex" clean_command="RemoveAllIndices"
                         number_of_elements="0" number_of_elements_per_command="1"
                         repeat_command="1" animateable="0">
        <Documentation>Flat indices of the blocks, the root being 0.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="PruneOutput" command="SetPruneOutput" number_of_elements="1"
                         default_values="1">
        <BooleanDomain name="bool"/>
        <Documentation>Remove empty branches from the output.</Documentation>
      </IntVectorProperty>
      <IntVectorProperty name="MaintainStructure" command="SetMaintainStructure"
                         number_of_elements="1" default_values="0">
        <BooleanDomain name="bool"/>
        <Documentation>Keep the tree as it is when pruning.</Documentation>
      </IntVectorProperty>
    </SourceProxy>

  </ProxyGroup>
</ServerManagerConfiguration>
)xml";
} // namespace

//--------------------------------------------------------------------------------------------------
const char* zylCoreProxyDefinitions()
{
  return Definitions;
}
