#include "zylVortexCoresRepresentation.h"

#include "Derived/zylFlowTracing.h"
#include "ParaView/zylPropertyTable.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"

#include <vtkObjectFactory.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylVortexCoresRepresentation);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::String("VectorVariable", ""),
  zylPropertyRow::Bool("UseHigherOrderMethod", false).To("UseHigherOrderMethod"),
};
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
  if (this->Properties->GetBool("UseHigherOrderMethod") && !this->HasDoubles(vectors))
  {
    // The toolkit's filter would take the process with it.
    vtkWarningMacro("'UseHigherOrderMethod' needs vectors in double precision, and '"
      << vectors << "' are not: it is left out");
    vtkSMPropertyHelper(this->FirstSurfaceFilter, "UseHigherOrderMethod").Set(0);
  }
  this->FirstSurfaceFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
bool zylVortexCoresRepresentation::HasDoubles(const std::string& vectors)
{
  vtkSMSourceProxy* source = this->DataSet->IsDerivedPointVariable(vectors)
    ? this->VolumeScript.Get()
    : this->DataSet->GetOutput();
  vtkPVDataInformation* data = source->GetDataInformation(0);
  vtkPVArrayInformation* array =
    data ? data->GetPointDataInformation()->GetArrayInformation(vectors.c_str()) : nullptr;
  return array && array->GetDataType() == VTK_DOUBLE;
}

//--------------------------------------------------------------------------------------------------
void zylVortexCoresRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  this->AddDerivedVariable(this->Properties->GetString("VectorVariable"), names);
}
