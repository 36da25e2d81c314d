#include "zylVortexCoresRepresentation.h"

#include "Derived/zylFlowTracing.h"
#include "ParaView/zylPropertyTable.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylVortexCoresRepresentation);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::String("VectorVariable", ""),
  zylPropertyRow::Bool("UseHigherOrderMethod", false).To("UseHigherOrderMethod"),
};

// Runs where the data are. The toolkit's filter reads arrays of other than three components beyond
// their end, the higher order takes vectors of other than double precision for null, and neither
// does anything for a tree in which one block lacks the vectors.
const char* const FitVectors = R"(
from vtkmodules.vtkCommonCore import vtkDoubleArray
blocks = output.VTKObject.NewIterator()
while not blocks.IsDoneWithTraversal():
    points = blocks.GetCurrentDataObject().GetPointData()
    array = points.GetArray(vectors)
    if array is None or array.GetNumberOfComponents() != 3:
        output.VTKObject.SetDataSet(blocks, None)
    elif higher and array.GetDataTypeAsString() != "double":
        doubles = vtkDoubleArray()
        doubles.DeepCopy(array)
        points.AddArray(doubles)
    blocks.GoToNextItem())";

// A Python literal.
std::string Quote(const std::string& text)
{
  std::string quoted = "'";
  for (const char letter : text)
  {
    quoted += letter == '\\' || letter == '\'' ? "\\" : "";
    quoted += letter == '\n' ? "\\n" : std::string(1, letter);
  }
  return quoted + "'";
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylVortexCoresRepresentation::zylVortexCoresRepresentation()
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
void zylVortexCoresRepresentation::CreateSurfacePipeline()
{
  const auto cores = this->MakeFilter("VortexCores", this->BlockExtractor);
  if (cores && cores->GetProperty("FasterApproximation"))
  {
    vtkSMPropertyHelper(cores, "FasterApproximation").Set(1);
    cores->UpdateVTKObjects();
  }
  this->SetFirstSurfaceFilter(cores);
  this->SetLastSurfaceFilter(cores);
}

//--------------------------------------------------------------------------------------------------
void zylVortexCoresRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  const std::string vectors = this->Properties->GetString("VectorVariable");
  zylFlowTracing::SelectPointArray(this->FirstSurfaceFilter, "SelectInputArray", vectors);
  zylFlowTracing::CheckVectors(
    this->DataSet, this->VolumeScript, this->VolumeTime, vectors, "zylVortexCoresRepresentation");
  zylPush(this->Properties, Rows, this->FirstSurfaceFilter);
  this->FirstSurfaceFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
std::string zylVortexCoresRepresentation::GetVolumeDerivedVariableScript()
{
  std::string script = this->Superclass::GetVolumeDerivedVariableScript();
  const std::string vectors = this->Properties->GetString("VectorVariable");
  if (this->DataSet)
  {
    const bool higher = this->Properties->GetBool("UseHigherOrderMethod");
    script += script.empty() ? "" : "\n";
    script += std::string("higher = ") + (higher ? "True" : "False");
    script += "\nvectors = " + Quote(vectors) + FitVectors;
  }
  return script;
}

//--------------------------------------------------------------------------------------------------
void zylVortexCoresRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  this->AddDerivedVariable(this->Properties->GetString("VectorVariable"), names);
}
