#include "zylCutPlaneRepresentation.h"

#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylPropertyCollection.h"

#include <iterator>

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylCutPlaneRepresentation);

namespace {
constexpr zylPropertyRow PlaneRows[] = {
  zylPropertyRow::Double3("Center", 0.0, 0.0, 0.0).To("Origin"),
  zylPropertyRow::Double3("Normal", 1.0, 0.0, 0.0).To("Normal"),
};
constexpr zylPropertyRow CutRows[] = {
  zylPropertyRow::Bool("CrinkleCut", false),
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylCutPlaneRepresentation::zylCutPlaneRepresentation()
{
  zylDeclare(this->Properties, PlaneRows);
  zylDeclare(this->Properties, CutRows);
}

//--------------------------------------------------------------------------------------------------
void zylCutPlaneRepresentation::CreateSurfacePipeline()
{
  zylUnregister(this->FirstSurfaceFilter);
  zylUnregister(this->LastSurfaceFilter);
  const bool crinkle = this->Properties->GetBool("CrinkleCut");
  const auto cutter = this->MakeFilter(
    crinkle ? "LinearCellCrinkleCutter" : "LinearCellPlaneCutter", this->BlockExtractor);
  if (cutter && !crinkle)
  {
    vtkSMPropertyHelper(cutter, "InterpolateAttributes").Set(1);
    cutter->UpdateVTKObjects();
  }
  this->SetFirstSurfaceFilter(cutter);
  this->SetLastSurfaceFilter(crinkle ? this->MakeFilter("SurfaceGeometryFilter", cutter) : cutter);
  this->RebuildFor = !crinkle;
}

//--------------------------------------------------------------------------------------------------
void zylCutPlaneRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  if (this->Properties->GetBool("CrinkleCut") == this->RebuildFor)
  {
    this->CreateSurfacePipeline();
  }
  zylPushFunction(this->Properties, PlaneRows, std::size(PlaneRows), "Normal",
    zylUseFunction(this->FirstSurfaceFilter, "CutFunction", "Plane"));
  zylConnect(this->BlockMerger, this->LastSurfaceFilter);
  this->LastSurfaceFilter->UpdateVTKObjects();
}
