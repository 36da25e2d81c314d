#include "zylViewSettings.h"

#include "zylViewError.h"
#include "zylViewLook.h"
#include "zylViewOptions.h"
#include "zylViewProperties.h"

#include <algorithm>

#include <zylArrayInformation.h>
#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylPropertyCollection.h>

//--------------------------------------------------------------------------------------------------
const std::vector<zylBlockKind>& zylGetBlockKinds()
{
  static const std::vector<zylBlockKind> kinds{
    { "Surface", &zylBoundaryRepresentation::GetSurfaceProperties },
    { "Contour", &zylBoundaryRepresentation::GetContourProperties },
    { "FeatureLine", &zylBoundaryRepresentation::GetFeatureLineProperties },
    { "MeshLine", &zylBoundaryRepresentation::GetMeshLineProperties },
    { "VectorGlyph", &zylBoundaryRepresentation::GetVectorGlyphProperties }
  };
  return kinds;
}

//--------------------------------------------------------------------------------------------------
zylViewSettings::zylViewSettings(const zylViewOptions& options, const zylViewBlocks& blocks,
  zylBoundaryRepresentation* representation)
  : Options(options)
  , Blocks(blocks)
  , Representation(representation)
{
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::Apply()
{
  this->ShowSurfaces();
  this->ApplyBlockSettings(); // says which blocks are shown, and so what the ranges are
  this->ApplyColors();
  this->ApplyLines();
  this->ApplyContours();
  this->ApplyGlyphs();
  this->ApplyBlockSettings(); // single blocks have the last word
  this->ApplyLegend();
  zylSetClips(this->Representation, this->Options.Clips, this->Blocks);
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ShowSurfaces()
{
  const bool shown = this->Options.Derived.empty() || this->Options.Opacity;
  // Only leaf blocks: a group's id stands for everything below it.
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    zylPropertyCollection* surface = this->Representation->GetSurfaceProperties(block);
    surface->Set("Visibility", shown);
    surface->Set("Transparency", 1.0 - this->Options.Opacity.value_or(1.0));
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyBlockSettings()
{
  for (const zylViewSetting& setting : this->Options.BlockSettings)
  {
    for (unsigned int block : this->Blocks.Find(setting.Owner))
    {
      zylSetProperty(this->GetCollection(setting.Kind, block), setting,
        "--block " + setting.Owner + ":" + setting.Name);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyColors()
{
  if (!this->Options.ColorMap.empty())
  {
    const auto names = zylCore::GetAvailableColorMapNames();
    if (std::find(names.begin(), names.end(), this->Options.ColorMap) == names.end())
    {
      throw zylUnknownName("color map", this->Options.ColorMap, names);
    }
  }
  if (this->Options.Array.empty())
  {
    return;
  }
  const auto array = this->Blocks.NeedArray(this->Options.Array, this->Blocks.GetLeaves());
  const auto shown = this->Blocks.GetArray(this->Options.Array, this->GetRangeBlocks());
  const auto range = this->Options.Range ? *this->Options.Range : zylUsableRange(shown.Range);
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    if (!this->Blocks.GetArray(array.Name, block).Found && !this->Blocks.IsDerived(array.Name))
    {
      continue;
    }
    zylPropertyCollection* surface = this->Representation->GetSurfaceProperties(block);
    zylColorBy(surface, array.Name, range, this->Options.ColorMap);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyLines()
{
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    zylPropertyCollection* mesh = this->Representation->GetMeshLineProperties(block);
    mesh->Set("Visibility", this->Options.MeshLines);
    zylSetTriple(mesh, "Color", zylInk);
    zylPropertyCollection* feature = this->Representation->GetFeatureLineProperties(block);
    feature->Set("Visibility", this->Options.FeatureLines);
    zylSetTriple(feature, "Color", zylInk);
    mesh->Set("TubeRadius", zylLineWidth(this->Options));
    feature->Set("TubeRadius", zylLineWidth(this->Options));
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyContours()
{
  const auto leaves = this->Blocks.GetLeaves();
  for (unsigned int block : leaves)
  {
    zylPropertyCollection* contour = this->Representation->GetContourProperties(block);
    zylSetTriple(contour, "Color", zylInk);
    contour->Set("TubeRadius", zylLineWidth(this->Options));
  }
  if (this->Options.ContourArray.empty())
  {
    return;
  }
  const std::string& name = this->Options.ContourArray;
  const auto array = this->Blocks.NeedArray(name, leaves, true, 1);
  const auto range = zylUsableRange(this->Blocks.GetArray(name, this->GetRangeBlocks()).Range);
  for (unsigned int block : leaves)
  {
    zylPropertyCollection* contour = this->Representation->GetContourProperties(block);
    contour->Set("Visibility", this->Blocks.GetArray(name, block).PointData);
    contour->Set("ContourVariableName", name);
    contour->Set("NumberOfContours", this->Options.NumberOfContours);
    contour->Set("ContourRange", range.data(), 2);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyGlyphs()
{
  if (this->Options.GlyphArray.empty())
  {
    return;
  }
  const std::string& name = this->Options.GlyphArray;
  const auto leaves = this->Blocks.GetLeaves();
  this->Blocks.NeedArray(name, leaves, true, 3);
  for (unsigned int block : leaves)
  {
    zylPropertyCollection* glyph = this->Representation->GetVectorGlyphProperties(block);
    glyph->Set("Visibility", this->Blocks.GetArray(name, block).PointData);
    glyph->Set("VectorVariable", name);
    glyph->Set("ScaleFactor", this->Options.GlyphScale);
    zylSetTriple(glyph, "Color", zylInk);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyLegend()
{
  if (!this->Options.Legend.value_or(false) || !this->Options.Derived.empty())
  {
    return; // what is derived has its own
  }
  // Every group of blocks with settings of its own would draw a legend. One is enough: that of the
  // blocks which look like the first colored one.
  bool found = false;
  std::uint64_t first = 0;
  for (unsigned int block : this->GetShownBlocks())
  {
    zylPropertyCollection* surface = this->Representation->GetSurfaceProperties(block);
    if (surface->GetInt("ColorMode") != 1 || (found && surface->GetHashValue() != first))
    {
      continue;
    }
    first = surface->GetHashValue();
    found = true;
    zylShowLegend(
      surface, this->Options, this->Blocks.IsWholeVector(surface->GetString("ColorVariableName")));
  }
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylViewSettings::GetCollection(
  const std::string& kind, unsigned int block) const
{
  std::vector<std::string> names;
  for (const zylBlockKind& k : zylGetBlockKinds())
  {
    if (kind == k.Name)
    {
      return (this->Representation->*k.Get)(static_cast<int>(block));
    }
    names.emplace_back(k.Name);
  }
  throw zylUnknownName("kind of display", kind, names);
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylViewSettings::GetShownBlocks() const
{
  auto shown = this->Blocks.GetLeaves();
  const auto hidden = [this](unsigned int block) {
    return !this->Representation->GetSurfaceProperties(block)->GetBool("Visibility");
  };
  shown.erase(std::remove_if(shown.begin(), shown.end(), hidden), shown.end());
  return shown;
}

//--------------------------------------------------------------------------------------------------
// What is derived may come from any block.
std::vector<unsigned int> zylViewSettings::GetRangeBlocks() const
{
  return this->Options.Derived.empty() ? this->GetShownBlocks() : this->Blocks.GetLeaves();
}

//--------------------------------------------------------------------------------------------------
bool zylViewSettings::ApplyDerivedRange()
{
  const std::string& variable = this->Options.Array;
  const auto shown = this->GetShownBlocks();
  if (this->Options.Range || shown.empty() || !this->Blocks.IsDerived(variable))
  {
    return false;
  }
  std::array<double, 2> range{ 1.0, -1.0 };
  for (const unsigned int block : shown)
  {
    const auto array =
      this->Representation->GetSurfaceColorVariableInformation(static_cast<int>(block));
    zylExtend(range, zylGetRange(array, variable));
  }
  if (range[0] > range[1])
  {
    throw zylViewError(zylViewFailed, "the variable '" + variable + "' cannot be computed");
  }
  range = zylUsableRange(range);
  for (const unsigned int block : shown)
  {
    this->Representation->GetSurfaceProperties(static_cast<int>(block))
      ->Set("ColorMapRange", range.data(), 2);
  }
  return true;
}
