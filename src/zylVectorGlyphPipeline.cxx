#include "zylVectorGlyphPipeline.h"

#include "Display/zylVariable.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylArrayInformation.h"
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
vtkSMSourceProxy* zylVectorGlyphPipeline::PrepareSource()
{
  const bool visible = this->AnyBlocksVisible();
  this->HasVector = visible && this->CheckVectorVariable();
  if (visible && !this->HasVector && !this->KeepsLastVariable)
  {
    this->FreeResources(nullptr);
  }
  if (!this->Representation && !this->HasVector)
  {
    return nullptr;
  }
  return this->ExtractVisibleBlocks(); // glyphs do not heed the visibility of blocks
}

//--------------------------------------------------------------------------------------------------
bool zylVectorGlyphPipeline::CheckVectorVariable()
{
  const std::string name = this->Properties->GetString("VectorVariable");
  const zylVariable variable = this->FindVariable(name, zylVariableName::Array);
  if (!variable.IsFound())
  {
    vtkLogF(WARNING, "No array named '%s' is in the zylDataSet set on this zylVectorGlyphPipeline",
      name.c_str());
    return false;
  }
  if (variable.Association != 0)
  {
    vtkLogF(
      WARNING, "Array '%s' belongs to the cells, but should belong to the points.", name.c_str());
    return false;
  }
  const unsigned int components = variable.Information->GetNumberOfComponents();
  if (components != 3)
  {
    vtkLogF(WARNING, "Array '%s' has %u components, but should have 3 components.", name.c_str(),
      components);
    return false;
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
const char* zylVectorGlyphPipeline::GetRepresentationType()
{
  return "3D Glyphs";
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::UpdateColors()
{
  if (this->HasVector)
  {
    this->Superclass::UpdateColors();
  }
  else
  {
    this->HideColorLegendIfNeeded();
  }
}

//--------------------------------------------------------------------------------------------------
void zylVectorGlyphPipeline::PushSettings()
{
  if (!this->HasVector)
  {
    return;
  }
  zylPush(this->Properties, Rows, this->Representation);
  const bool byArray = this->Properties->GetInt("GlyphSizeMode") != 0;
  vtkSMPropertyHelper(this->Representation, "Orient").Set(1);
  vtkSMPropertyHelper(this->Representation, "Scaling").Set(1);
  vtkSMPropertyHelper(this->Representation, "ScaleMode").Set(byArray ? ScaleByMagnitude : ScaleOff);
  if (byArray)
  {
    vtkSMPropertyHelper(this->Representation, "SelectScaleArray")
      .Set(this->Properties->GetString("ScaleVariable").c_str());
  }
  this->UpdateArrow();
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
