#include "zylStreamlineRepresentation.h"

#include "Analysis/zylFieldValues.h"
#include "Derived/zylFlowTracing.h"
#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylTimeController.h"

#include <cstddef>
#include <iterator>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylStreamlineRepresentation);

namespace {
constexpr zylPropertyRow LineRows[] = {
  zylPropertyRow::Bool("Threshold", false),
  zylPropertyRow::String("ThresholdArray", "IntegrationTime"),
  zylPropertyRow::Double("ThresholdValue", 1e299).To("Value"),
  zylPropertyRow::Bool("Ribbon", false),
};
constexpr zylPropertyRow RibbonRows[] = {
  // The filter takes the half width.
  zylPropertyRow::Double("RibbonWidth", 0.1).To("Width").Mapped(0.0, 0.5),
};
constexpr zylPropertyRow GlyphRows[] = {
  zylPropertyRow::String("GlyphType", "Sphere"),
  zylPropertyRow::Double("GlyphScaleFactor", 1.0).To("ScaleFactor"),
  zylPropertyRow::String("GlyphOrientationArray", ""),
  zylPropertyRow::Bool("GlyphSpaceEvenly", false),
  zylPropertyRow::Double("GlyphSpacing", 1.0),
};
// One table for each shape that can be refined, pushed to its source.
constexpr zylPropertyRow SphereRows[] = {
  zylPropertyRow::Int("SphereGlyphThetaResolution", 8).To("ThetaResolution"),
  zylPropertyRow::Int("SphereGlyphPhiResolution", 8).To("PhiResolution"),
};
constexpr zylPropertyRow ConeRows[] = {
  zylPropertyRow::Int("ConeGlyphResolution", 6).To("Resolution"),
};
constexpr zylPropertyRow ArrowRows[] = {
  zylPropertyRow::Int("ArrowGlyphTipResolution", 6).To("TipResolution"),
  zylPropertyRow::Int("ArrowGlyphShaftResolution", 6).To("ShaftResolution"),
};

struct Shape
{
  const char* Type;
  const zylPropertyRow* Rows;
  std::size_t Count;
};
constexpr Shape Shapes[] = {
  { "Sphere", SphereRows, std::size(SphereRows) },
  { "Cone", ConeRows, std::size(ConeRows) },
  { "Arrow", ArrowRows, std::size(ArrowRows) },
};

// Before the names of the glyphs' settings among those of the lines.
const std::string Mirrored = "Glyph";
constexpr int TheBlock[] = { 0, 1 }; // the glyphs are one block
} // namespace

//--------------------------------------------------------------------------------------------------
zylStreamlineRepresentation::zylStreamlineRepresentation()
  : GlyphPipeline(vtkSmartPointer<zylSurfacePipeline>::New())
{
  zylDeclare(this->Properties, zylFlowTracing::Rows);
  zylDeclare(this->Properties, LineRows);
  zylDeclare(this->Properties, RibbonRows);
  zylDeclare(this->Properties, GlyphRows);
  zylDeclare(this->Properties, SphereRows);
  zylDeclare(this->Properties, ConeRows);
  zylDeclare(this->Properties, ArrowRows);

  zylPropertyCollection* glyphs = this->GlyphPipeline->GetProperties();
  glyphs->MakeInt("BlockVisibility", TheBlock, 2)->SetIncludeInHash(false);
  for (const std::string& name : glyphs->GetPropertyNames())
  {
    zylProperty* original = glyphs->GetProperty(name);
    this->GetSurfaceProperties()
      ->MakeProperty(Mirrored + name, original->GetPropertyType(), original->GetNumberOfElements())
      ->DeepCopy(original);
  }
}

//--------------------------------------------------------------------------------------------------
zylStreamlineRepresentation::~zylStreamlineRepresentation()
{
  this->zylStreamlineRepresentation::FreeResources();
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylStreamlineRepresentation::GetThresholdArrayInformation()
{
  return zylFindPointArray(this->DataSet, this->Properties->GetString("ThresholdArray"));
}

//--------------------------------------------------------------------------------------------------
bool zylStreamlineRepresentation::HasRepresentation(vtkSMProxy* representation)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "HasRepresentation()");
  return (representation && representation == this->GlyphPipeline->GetRepresentation()) ||
    this->Superclass::HasRepresentation(representation);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::FreeResources()
{
  this->Superclass::FreeResources();
  this->GlyphPipeline->FreeResources(this->View);
  this->ReleaseFilters();
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::ReleaseFilters()
{
  for (auto* filter : { &this->Grouper, &this->GlyphFilter, &this->SpacingContour, &this->Joiner,
         &this->ArcLength, &this->RibbonFilter, &this->LineSurface, &this->ThresholdClip,
         &this->Tracer, &this->SeedSource })
  {
    zylUnregister(*filter);
    *filter = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::CreateSurfacePipeline()
{
  this->CreateSeeds();
  this->CreateTracedLines(this->BlockExtractor);
  this->SetFirstSurfaceFilter(this->Tracer);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::CreateSeeds()
{
  this->ReleaseFilters();
  this->SeedSource =
    zylFlowTracing::MakeSeeds(this->DataSet->GetOutput()->GetSessionProxyManager());
  this->SeedsTime = 0; // the new source has none
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::CreateTracedLines(vtkSMSourceProxy* input)
{
  this->Tracer = this->MakeFilter("ArbitrarySourceStreamTracer", input);
  zylConnect(this->Tracer, this->SeedSource, "Source");
  this->ThresholdClip = this->MakeFilter("Clip", this->Tracer);
  zylUseFunction(this->ThresholdClip, "ClipFunction", "Scalar");
  this->LineSurface = this->MakeFilter("SurfaceGeometryFilter", this->ThresholdClip);
  this->RibbonFilter = this->MakeFilter("RibbonFilter", this->LineSurface);
  this->ArcLength = this->MakeFilter("AppendArcLength", this->LineSurface);
  this->SpacingContour = this->MakeFilter("Contour", this->ArcLength);
  this->CreateGlyphPipeline(this->LineSurface);
  this->Grouper = this->MakeFilter("GroupDataSets", this->LineSurface);
  this->SetLastSurfaceFilter(this->Grouper);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::CreateGlyphPipeline(vtkSMSourceProxy* input)
{
  this->GlyphFilter = this->MakeFilter("Glyph", input);
  if (!this->GlyphFilter)
  {
    return;
  }
  zylFlowTracing::SelectPointArray(
    this->GlyphFilter, "OrientationArray", zylFlowTracing::NoOrientation);
  zylFlowTracing::SelectPointArray(this->GlyphFilter, "ScaleArray", zylFlowTracing::NoScale);
  vtkSMPropertyHelper(this->GlyphFilter, "GlyphMode").Set(zylFlowTracing::AllPoints);
  this->GlyphFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  zylFlowTracing::PushSeeds(this->Properties, this->SeedSource, this->SeedsTime);
  if (!zylFlowTracing::CheckVectors(this->DataSet, this->VolumeScript, this->VolumeTime,
        this->Properties->GetString("VectorVariable"), "zylStreamlineRepresentation"))
  {
    zylFlowTracing::DropSeeds(this->SeedSource, this->SeedsTime);
  }
  zylFlowTracing::PushTracer(this->Properties, this->Tracer);
  this->UpdateThreshold();
  this->UpdateRibbon();
  this->UpdateGlyphPipeline(this->LineSurface);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateThreshold()
{
  const bool threshold = this->Properties->GetBool("Threshold");
  if (threshold)
  {
    zylFlowTracing::SelectPointArray(
      this->ThresholdClip, "SelectInputScalars", this->Properties->GetString("ThresholdArray"));
    zylPush(this->Properties, LineRows, this->ThresholdClip);
    zylConnect(this->ThresholdClip, this->Tracer);
  }
  zylConnect(this->LineSurface, threshold ? this->ThresholdClip : this->Tracer);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateRibbon()
{
  const bool ribbon = this->Properties->GetBool("Ribbon");
  if (ribbon)
  {
    // The tracer computes it where the data have none.
    zylFlowTracing::SelectPointArray(this->RibbonFilter, "SelectInputVectors", "Vorticity");
    vtkSMPropertyHelper(this->RibbonFilter, "VaryWidth").Set(0);
    zylPush(this->Properties, RibbonRows, this->RibbonFilter);
    zylConnect(this->RibbonFilter, this->LineSurface);
  }
  zylConnect(this->Grouper, ribbon ? this->RibbonFilter : this->LineSurface);
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateGlyphPipeline(vtkSMSourceProxy* input)
{
  this->UpdateGlyphSettings();
  const bool evenly = this->Properties->GetBool("GlyphSpaceEvenly");
  this->UpdateGlyphShape();
  zylConnect(this->GlyphFilter, evenly ? this->SpacingContour.Get() : input);
  if (this->GlyphPipeline->AnyBlocksVisible())
  {
    // The glyphs take part in the first execution, which must have all variables.
    zylConnect(this->FirstSurfaceFilter, this->VolumeScript);
    if (evenly)
    {
      this->SpaceGlyphs();
    }
    zylUpdatePipeline(
      this->GlyphFilter, zylTimeController::GetInstance()->GetActiveTime(), this->GlyphTime);
  }
  this->GlyphPipeline->SetDataSource(this->GlyphFilter);
  if (this->View)
  {
    this->GlyphPipeline->Update(this->View);
  }
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateGlyphSettings()
{
  zylPropertyCollection* settings = this->GetSurfaceProperties();
  zylPropertyCollection* glyphs = this->GlyphPipeline->GetProperties();
  for (const std::string& name : glyphs->GetPropertyNames())
  {
    zylProperty* mirror = settings->GetProperty(Mirrored + name);
    zylProperty* original = glyphs->GetProperty(name);
    if (mirror && original->GetMTime() < mirror->GetMTime())
    {
      original->DeepCopy(mirror);
    }
  }
  glyphs->Set(
    "ForceHidden", settings->GetBool("ForceHidden") || settings->GetBool(Mirrored + "ForceHidden"));
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::UpdateGlyphShape()
{
  const std::string type = this->Properties->GetString("GlyphType");
  vtkSMProxy* shape = zylUseFunction(this->GlyphFilter, "Source", type + "Source");
  if (!shape)
  {
    this->Warn("There is no glyph of type '" + type + "'");
  }
  else
  {
    for (const Shape& refined : Shapes)
    {
      if (type == refined.Type)
      {
        zylPush(this->Properties, refined.Rows, refined.Count, shape);
      }
    }
    shape->UpdateVTKObjects();
  }
  const std::string orientation = this->Properties->GetString("GlyphOrientationArray");
  zylFlowTracing::SelectPointArray(this->GlyphFilter, "OrientationArray",
    orientation.empty() ? zylFlowTracing::NoOrientation : orientation);
  zylPush(this->Properties, GlyphRows, this->GlyphFilter);
  this->GlyphFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::SpaceGlyphs()
{
  vtkSMSourceProxy* lines = this->LineSurface;
  if (this->Properties->GetBool("Threshold"))
  {
    // The clip leaves the lines in pieces of two points; the length along them is that of the
    // whole.
    if (!this->Joiner)
    {
      this->Joiner = this->MakeFilter("Stripper", lines);
    }
    lines = this->Joiner;
  }
  zylConnect(this->ArcLength, lines);
  zylUpdatePipeline(
    this->ArcLength, zylTimeController::GetInstance()->GetActiveTime(), this->ArcLengthTime);
  this->Warn(zylFlowTracing::SpaceEvenly(
    this->ArcLength, this->SpacingContour, this->Properties->GetDouble("GlyphSpacing")));
}

//--------------------------------------------------------------------------------------------------
void zylStreamlineRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  this->AddDerivedVariable(this->Properties->GetString("VectorVariable"), names);
}
