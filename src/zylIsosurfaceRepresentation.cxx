#include "zylIsosurfaceRepresentation.h"

#include "Analysis/zylFieldValues.h"
#include "ParaView/zylPropertyTable.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylIsosurfaceRepresentation);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::String("Variable", ""),
  zylPropertyRow::Double("Isovalue", 0.0),
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylIsosurfaceRepresentation::zylIsosurfaceRepresentation()
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
void zylIsosurfaceRepresentation::CreateSurfacePipeline()
{
  const auto contour = this->MakeFilter("LinearCellUnstructuredGridContour", this->BlockExtractor);
  if (contour)
  {
    vtkSMPropertyHelper(contour, "InterpolateAttributes").Set(1);
    vtkSMPropertyHelper(contour, "MergePoints").Set(1);
    contour->UpdateVTKObjects();
  }
  this->SetFirstSurfaceFilter(contour);
  this->SetLastSurfaceFilter(contour);
  this->IsovalueTime = 0; // the new filter has none
}

//--------------------------------------------------------------------------------------------------
void zylIsosurfaceRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  vtkSMSourceProxy* contour = this->FirstSurfaceFilter;
  const std::string variable = this->Properties->GetString("Variable");
  vtkSMPropertyHelper(contour, "SelectInputScalars")
    .SetInputArrayToProcess(0, this->CheckScalar(variable) ? variable.c_str() : "");
  const vtkMTimeType time = this->Properties->GetProperty("Isovalue")->GetMTime();
  if (time > this->IsovalueTime)
  {
    vtkSMPropertyHelper(contour, "ContourValues").Set(0, this->Properties->GetDouble("Isovalue"));
    this->IsovalueTime = time;
  }
  contour->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylIsosurfaceRepresentation::GetVariableInformation()
{
  return zylFindPointArray(this->DataSet, this->Properties->GetString("Variable"));
}

//--------------------------------------------------------------------------------------------------
void zylIsosurfaceRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  if (this->DataSet)
  {
    this->AddDerivedVariable(this->Properties->GetString("Variable"), names);
  }
}
