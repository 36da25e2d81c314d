#include "zylIntersectionCurveRepresentation.h"

#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSurfaceMerger.h"
#include "zylIntersectionCurveData.h"
#include "zylPropertyCollection.h"

#include <iterator>

#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylIntersectionCurveRepresentation);

namespace {
constexpr zylPropertyRow PlaneRows[] = {
  zylPropertyRow::Double3("Center", 0.0, 0.0, 0.0).To("Origin"),
  zylPropertyRow::Double3("Normal", 0.0, 0.0, 1.0).To("Normal"),
};
constexpr int AllCurves[] = { -1, -1 };
} // namespace

//--------------------------------------------------------------------------------------------------
zylIntersectionCurveRepresentation::zylIntersectionCurveRepresentation()
{
  zylDeclare(this->Properties, PlaneRows);
  this->Properties->Set("MergePoints", true);
  this->Properties->MakeInt("CurveToDisplay", AllCurves, 2);
}

//--------------------------------------------------------------------------------------------------
zylIntersectionCurveRepresentation::~zylIntersectionCurveRepresentation()
{
  this->zylIntersectionCurveRepresentation::FreeResources();
}

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveRepresentation::CreateSurfacePipeline()
{
  const auto cut = this->MakeFilter("Cut", this->BlockExtractor);
  this->CutMerger = this->Made("MergeBlocks", zylSurfaceMerger(cut).Make());
  this->Stripper = this->MakeFilter("Stripper", this->CutMerger);
  this->SelectionSource =
    zylProxyBuilder(this->BlockExtractor->GetSessionProxyManager(), "sources", "IDSelectionSource")
      .Make();
  this->SelectionExtractor = this->MakeFilter("ExtractSelection", this->Stripper);
  zylConnect(this->SelectionExtractor, this->SelectionSource, "Selection");
  // What a selection leaves of poly data is none, and the merger takes nothing else.
  this->SelectionSurface = this->MakeFilter("SurfaceGeometryFilter", this->SelectionExtractor);
  this->Grouper = this->MakeFilter("GroupDataSets", this->Stripper);
  this->SetFirstSurfaceFilter(cut);
  this->SetLastSurfaceFilter(this->Grouper);
}

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  zylPushFunction(this->Properties, PlaneRows, std::size(PlaneRows), "Normal",
    zylUseFunction(this->FirstSurfaceFilter, "CutFunction", "Plane"));
  const bool all = this->Properties->GetInt("CurveToDisplay", 0) == -1;
  if (!all)
  {
    zylPushProperty(this->Properties->GetProperty("CurveToDisplay"), this->SelectionSource, "IDs");
    this->SelectionSource->UpdateVTKObjects();
  }
  zylConnect(this->Grouper, all ? this->Stripper : this->SelectionSurface);
  this->FirstSurfaceFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveRepresentation::Update()
{
  this->Superclass::Update();
  if (this->SurfaceChanged)
  {
    this->CurveData = this->FetchSurface("");
  }
}

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveRepresentation::FreeResources()
{
  this->Superclass::FreeResources();
  for (auto* proxy : { &this->Stripper, &this->SelectionSource, &this->SelectionExtractor,
         &this->SelectionSurface, &this->Grouper, &this->CutMerger })
  {
    zylUnregister(*proxy);
    *proxy = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
zylIntersectionCurveData* zylIntersectionCurveRepresentation::GetIntersectionCurve(
  int startingPointId, bool flag)
{
  if (this->Properties->GetInt("CurveToDisplay", 0) == -1)
  {
    return nullptr;
  }
  zylIntersectionCurveData* curve = zylIntersectionCurveData::New();
  curve->SetCurveData(this->CurveData);
  curve->SetStartingPointId(startingPointId, flag);
  return curve;
}
