#include "zylHighlightPipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "zylPropertyCollection.h"

#include <iterator>

#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylHighlightPipeline);

namespace {
constexpr double Orange[3] = { 1.0, 0.7019607843137254, 0.14838709677419354 };

constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("Visibility", false).NotInHash(),
  zylPropertyRow::Bool("ForceHidden", false).NotInHash(),
  zylPropertyRow::Double3("Color", Orange[0], Orange[1], Orange[2]),
  zylPropertyRow::Ints("BlockVisibility").NotInHash(),
  zylPropertyRow::Int("Style", 3),
  zylPropertyRow::Double("Transparency", 0.0).To("Opacity").Mapped(1.0, -1.0),
  zylPropertyRow::Bool("RenderPointsAsSpheres", false).To("RenderPointsAsSpheres"),
  zylPropertyRow::Double("PointRadius", 1.0).To("PointSize"),
  zylPropertyRow::Bool("RenderLinesAsTubes", false).To("RenderLinesAsTubes"),
  zylPropertyRow::Double("TubeRadius", 1.0).To("LineWidth"),
};

constexpr const char* Styles[] = { "Feature Edges", "Surface", "Outline", "Wireframe" };
} // namespace

//--------------------------------------------------------------------------------------------------
zylHighlightPipeline::zylHighlightPipeline()
{
  this->zylHighlightPipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylHighlightPipeline::InitializeProperties()
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylHighlightPipeline::PrepareSource()
{
  return this->EnsureFilter("PassThrough") ? this->Filter.Get() : nullptr;
}

//--------------------------------------------------------------------------------------------------
const char* zylHighlightPipeline::GetRepresentationType()
{
  const int style = this->Properties->GetInt("Style");
  return style >= 0 && style < static_cast<int>(std::size(Styles)) ? Styles[style]
                                                                   : "Surface With Edges";
}

//--------------------------------------------------------------------------------------------------
void zylHighlightPipeline::UpdateColors()
{
  this->SetSolidColor();
}

//--------------------------------------------------------------------------------------------------
void zylHighlightPipeline::PushSettings()
{
  zylPush(this->Properties, Rows, this->Representation);
}
