#include "zylHighlightPipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
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

//--------------------------------------------------------------------------------------------------
const char* RepresentationOf(int style)
{
  return style >= 0 && style < static_cast<int>(std::size(Styles)) ? Styles[style]
                                                                   : "Surface With Edges";
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylHighlightPipeline::zylHighlightPipeline()
{
  this->InnerNodesMeanLeaves = true;
  this->zylHighlightPipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylHighlightPipeline::InitializeProperties()
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
void zylHighlightPipeline::Update(zylView* view)
{
  if (!this->EnsureFilter("PassThrough") || !this->EnsureRepresentation(view, this->Filter))
  {
    return;
  }
  this->UpdateLighting();
  this->SetRepresentationType(RepresentationOf(this->Properties->GetInt("Style")));
  this->SetSolidColor();
  this->UpdateColoring();
  this->UpdateVisibility();
  zylPush(this->Properties, Rows, this->Representation);
  this->Representation->UpdateVTKObjects();
}
