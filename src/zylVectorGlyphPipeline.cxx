#include "zylVectorGlyphPipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylPropertyCollection.h"

#include <string>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylVectorGlyphPipeline);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::String("VectorVariable", "").To("SelectOrientationVectors"),
  zylPropertyRow::Int("GlyphSizeMode", 0),
  zylPropertyRow::Double("ScaleFactor", 1.0).To("ScaleFactor"),
  zylPropertyRow::String("ScaleVariable", ""),
  zylPropertyRow::Int("ArrowShaftResolution", 8),
  zylPropertyRow::Int("ArrowTipResolution", 8),
};

// Values of the representation's "ScaleMode".
constexpr int ScaleOff = 0;
constexpr int ScaleByMagnitude = 1;
} // namespace

//--------------------------------------------------------------------------------------------------
zylVectorGlyphPipeline::zylVectorGlyphPipeline()
{
  this->zylVectorGlyphPipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::InitializeProperties()
{
  this->Superclass::InitializeProperties();
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::Update(zylView* view)
{
  const std::string name = this->Properties->GetString("VectorVariable");
  const bool needed = this->Representation || this->AnyBlocksVisible();
  if (!view || !this->DataSource || !needed)
  {
    return;
  }
  const bool good = this->CheckVectorVariable(name);
  if ((!good && !this->Representation) ||
    !this->EnsureRepresentation(view, this->ExtractVisibleBlocks()))
  {
    return;
  }
  if (good)
  {
    this->UpdateLighting();
    this->SetRepresentationType("3D Glyphs");
    this->UpdateColors(view);
    this->UpdateGlyphs();
    this->UpdateArrow();
    this->UpdateColorLegend(view);
  }
  this->UpdateVisibility();
  this->Representation->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
bool zylVectorGlyphPipeline::CheckVectorVariable(const std::string& name)
{
  if (this->Representation && name == this->GoodVariable)
  {
    return true;
  }
  int association = 0;
  int components = 0;
  if (!this->FindArray(name, association, components))
  {
    vtkLogF(WARNING, "No array named '%s' is in the zylDataSet set on this zylVectorGlyphPipeline",
      name.c_str());
    return false;
  }
  if (components != 3)
  {
    vtkLogF(WARNING, "Array '%s' has %d components, but should have 3 components.", name.c_str(),
      components);
    return false;
  }
  this->GoodVariable = name;
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::UpdateGlyphs()
{

  zylPush(this->Properties, Rows, this->Representation);
  const bool byArray = this->Properties->GetInt("GlyphSizeMode") != 0;
  const std::string scaleArray = this->Properties->GetString("ScaleVariable");
  vtkSMPropertyHelper(this->Representation, "Orient").Set(1);
  vtkSMPropertyHelper(this->Representation, "Scaling").Set(1);
  vtkSMPropertyHelper(this->Representation, "ScaleMode").Set(byArray ? ScaleByMagnitude : ScaleOff);
  if (byArray)
  {
    vtkSMPropertyHelper(this->Representation, "SelectScaleArray").Set(scaleArray.c_str());
  }
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::UpdateArrow()
{
  vtkSMProxy* arrow = zylFindOffered(this->Representation, "GlyphType", "ArrowSource");
  if (!arrow)
  {
    return;
  }
  vtkSMPropertyHelper(arrow, "ShaftResolution")
    .Set(this->Properties->GetInt("ArrowShaftResolution"));
  vtkSMPropertyHelper(arrow, "TipResolution").Set(this->Properties->GetInt("ArrowTipResolution"));
  arrow->UpdateVTKObjects();
  vtkSMPropertyHelper type(this->Representation, "GlyphType");
  if (type.GetAsProxy() != arrow)
  {
    type.Set(arrow);
  }
}
