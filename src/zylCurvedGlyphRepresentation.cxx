#include "zylCurvedGlyphRepresentation.h"

#include "Derived/zylFlowTracing.h"
#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylCurvedGlyphRepresentation);

namespace {
constexpr zylPropertyRow SpacingRows[] = {
  zylPropertyRow::Double("GlyphSpacing", 1.0),
  zylPropertyRow::Int("GlyphTessellation", 16),
};
constexpr zylPropertyRow ConeRows[] = {
  zylPropertyRow::Double("GlyphConeRadius", 1.0).To("Radius"),
  zylPropertyRow::Double("GlyphConeHeight", 1.0).To("Height"),
};
constexpr zylPropertyRow TubeRows[] = {
  zylPropertyRow::Double("GlyphBodyRadius", 0.5).To("Radius"),
};
constexpr zylPropertyRow BodyRows[] = {
  zylPropertyRow::Double("GlyphBodyLength", 0.5).To("MaximumPropagation"),
};

constexpr int Upstream = 1;          // of "IntegrationDirection"
constexpr double Everything = 1e150; // a radius whose square is a number
} // namespace

//--------------------------------------------------------------------------------------------------
zylCurvedGlyphRepresentation::zylCurvedGlyphRepresentation()
{
  zylDeclare(this->Properties, zylFlowTracing::Rows);
  zylDeclare(this->Properties, SpacingRows);
  zylDeclare(this->Properties, ConeRows);
  zylDeclare(this->Properties, TubeRows);
  zylDeclare(this->Properties, BodyRows);
}

//--------------------------------------------------------------------------------------------------
zylCurvedGlyphRepresentation::~zylCurvedGlyphRepresentation()
{
  this->ReleaseFilters();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::FreeResources()
{
  this->Superclass::FreeResources();
  this->ReleaseFilters();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::ReleaseFilters()
{
  for (auto* filter :
    { &this->Grouper, &this->Appender, &this->Tubes, &this->Stripper, &this->LineSurface,
      &this->BodyClip, &this->BodyTracer, &this->Heads, &this->SpacingContour, &this->ArcLength,
      &this->SharedLines, &this->Tracer, &this->SeedSource })
  {
    zylUnregister(*filter);
    *filter = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::CreateSurfacePipeline()
{
  this->ReleaseFilters();
  this->SeedSource =
    zylFlowTracing::MakeSeeds(this->DataSet->GetOutput()->GetSessionProxyManager());
  this->SeedsTime = 0; // the new source has none
  this->Tracer = this->MakeFilter("ArbitrarySourceStreamTracer", this->BlockExtractor);
  zylConnect(this->Tracer, this->SeedSource, "Source");
  this->SpacingContour = this->MakeFilter("Contour", this->Tracer);
  this->Heads = this->MakeFilter("Glyph", this->SpacingContour);
  this->BodyTracer = this->MakeFilter("ArbitrarySourceStreamTracer", this->DataSet->GetOutput());
  zylConnect(this->BodyTracer, this->SpacingContour, "Source");
  this->BodyClip = this->MakeFilter("Clip", this->BodyTracer);
  this->LineSurface = this->MakeFilter("SurfaceGeometryFilter", this->BodyClip);
  this->Stripper = this->MakeFilter("Stripper", this->LineSurface);
  this->Tubes = this->MakeFilter("TubeFilter", this->Stripper);
  this->Appender = this->MakeFilter("AppendPolyData", this->Tubes);
  if (!this->Appender)
  {
    return; // the session ends just now
  }
  vtkSMPropertyHelper(this->Appender, "Input").Add(this->Heads);
  this->Appender->UpdateVTKObjects();
  this->Grouper = this->MakeFilter("GroupDataSets", this->Appender);
  this->SetFirstSurfaceFilter(this->Tracer);
  this->SetLastSurfaceFilter(this->Grouper);

  // Heads are measured along the lines that the tracer makes, and bodies start at them: the second
  // tracer needs all seeds on every process.
  if (zylParaView::HasServerPlugin(this->BlockExtractor->GetSession()))
  {
    this->SharedLines = this->MakeFilter("ZYLShareLines", this->Tracer);
  }
  this->ArcLength =
    this->MakeFilter("AppendArcLength", this->SharedLines ? this->SharedLines : this->Tracer);
  // The bodies have their length from their tracer. Nothing is left for the clip, which would lose
  // the active scalars if it clipped by an array.
  vtkSMProxy* sphere = zylUseFunction(this->BodyClip, "ClipFunction", "Sphere");
  vtkSMPropertyHelper(sphere, "Radius").Set(Everything);
  sphere->UpdateVTKObjects();
  this->BodyClip->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  zylFlowTracing::PushSeeds(this->Properties, this->SeedSource, this->SeedsTime);
  const bool possible = zylParaView::CanTraceFromTraces(this->Tracer->GetSession());
  if (!possible)
  {
    vtkErrorMacro("No curved glyphs from several server processes of this version of ParaView");
  }
  if (!zylFlowTracing::CheckVectors(this->DataSet, this->VolumeScript, this->VolumeTime,
        this->Properties->GetString("VectorVariable"), "zylCurvedGlyphRepresentation") ||
    !possible)
  {
    zylFlowTracing::DropSeeds(this->SeedSource, this->SeedsTime);
  }
  zylFlowTracing::PushTracer(this->Properties, this->Tracer);
  this->UpdateHeads();
  this->UpdateBodies();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::UpdateHeads()
{
  // The lines are measured here, so that their tracer must have all variables already.
  zylConnect(this->Tracer, this->VolumeScript);
  zylConnect(this->SpacingContour, this->ArcLength);
  zylUpdatePipeline(
    this->ArcLength, zylTimeController::GetInstance()->GetActiveTime(), this->ArcLengthTime);
  this->Warn(zylFlowTracing::SpaceEvenly(
    this->ArcLength, this->SpacingContour, this->Properties->GetDouble("GlyphSpacing")));

  zylFlowTracing::SelectPointArray(
    this->Heads, "OrientationArray", this->Properties->GetString("VectorVariable"));
  zylFlowTracing::SelectPointArray(this->Heads, "ScaleArray", zylFlowTracing::NoScale);
  vtkSMPropertyHelper(this->Heads, "GlyphMode").Set(zylFlowTracing::AllPoints);
  vtkSMProxy* cone = zylUseFunction(this->Heads, "Source", "ConeSource");
  zylPush(this->Properties, ConeRows, cone);
  zylPushProperty(this->Properties->GetProperty("GlyphTessellation"), cone, "Resolution");
  const double foot[] = { 0.5 * this->Properties->GetDouble("GlyphConeHeight"), 0.0, 0.0 };
  vtkSMPropertyHelper(cone, "Center").Set(foot, 3);
  cone->UpdateVTKObjects();
  this->Heads->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::UpdateBodies()
{
  // Derived variables are in the selected blocks only.
  const std::string vectors = this->Properties->GetString("VectorVariable");
  const bool derived = this->DataSet->IsDerivedPointVariable(vectors);
  zylConnect(this->BodyTracer, derived ? this->VolumeScript.Get() : this->DataSet->GetOutput());
  zylFlowTracing::SelectPointArray(this->BodyTracer, "SelectInputVectors", vectors);
  vtkSMPropertyHelper(this->BodyTracer, "IntegrationDirection").Set(Upstream);
  zylPush(this->Properties, BodyRows, this->BodyTracer);
  zylPushProperty(
    this->Properties->GetProperty("UseCellLocator"), this->BodyTracer, "InterpolatorType");
  this->BodyTracer->UpdateVTKObjects();

  zylPush(this->Properties, TubeRows, this->Tubes);
  zylPushProperty(this->Properties->GetProperty("GlyphTessellation"), this->Tubes, "NumberOfSides");
  this->Tubes->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylCurvedGlyphRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  this->AddDerivedVariable(this->Properties->GetString("VectorVariable"), names);
}
