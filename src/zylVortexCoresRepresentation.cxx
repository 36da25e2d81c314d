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
  const std::string vectors = this->Properties->GetString("VectorVariable");
  zylFlowTracing::SelectPointArray(this->FirstSurfaceFilter, "SelectInputArray", vectors);
  zylFlowTracing::CheckVectors(
    this->DataSet, this->VolumeScript, this->VolumeTime, vectors, "zylVortexCoresRepresentation");
  zylPush(this->Properties, Rows, this->FirstSurfaceFilter);
  this->FirstSurfaceFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylVortexCoresRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  zylFlowTracing::InsertIfDerived(
    this->DataSet, this->Properties->GetString("VectorVariable"), names);
}
