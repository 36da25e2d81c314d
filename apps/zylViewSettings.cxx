#include "zylViewSettings.h"

#include "zylViewError.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cstdlib>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylProperty.h>
#include <zylPropertyCollection.h>

#include <CLI/StringTools.hpp>

namespace {
struct Kind
{
  const char* Name;
  zylPropertyCollection* (zylBoundaryRepresentation::*Get)(int);
};
constexpr Kind Kinds[] = { { "Surface", &zylBoundaryRepresentation::GetSurfaceProperties },
  { "Contour", &zylBoundaryRepresentation::GetContourProperties },
  { "FeatureLine", &zylBoundaryRepresentation::GetFeatureLineProperties },
  { "MeshLine", &zylBoundaryRepresentation::GetMeshLineProperties },
  { "VectorGlyph", &zylBoundaryRepresentation::GetVectorGlyphProperties } };

constexpr double Ink[3] = { 0.10, 0.11, 0.14 }; // lines
constexpr double Paper[3] = { 0.95, 0.95, 0.95 };

//--------------------------------------------------------------------------------------------------
void SetTriple(zylPropertyCollection* properties, const char* name, const double* values)
{
  properties->Set(name, values, 3);
}

[[noreturn]] void BadValue(const zylViewSetting& setting, const std::string& expected)
{
  throw zylViewError(zylViewBadArguments,
    "--block '" + setting.Owner + ":" + setting.Name + "': '" + setting.Value + "' is not " +
      expected);
}

bool ParseBool(const std::string& text, const zylViewSetting& setting)
{
  const std::string word = CLI::detail::to_lower(text);
  const bool yes = word == "true" || word == "1" || word == "on" || word == "yes";
  if (!yes && word != "false" && word != "0" && word != "off" && word != "no")
  {
    BadValue(setting, "true or false");
  }
  return yes;
}

double ParseNumber(const std::string& text, const zylViewSetting& setting)
{
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0')
  {
    BadValue(setting, "a number");
  }
  return value;
}

//--------------------------------------------------------------------------------------------------
void SetProperty(zylPropertyCollection* properties, const zylViewSetting& setting)
{
  zylProperty* property = properties->GetProperty(setting.Name);
  if (property == nullptr)
  {
    throw zylUnknownName(setting.Kind + " setting", setting.Name, properties->GetPropertyNames());
  }
  const bool text = property->GetPropertyType() == zylProperty::String;
  const auto values =
    text ? std::vector<std::string>{ setting.Value } : CLI::detail::split(setting.Value, ',');
  if (values.size() != property->GetNumberOfElements())
  {
    BadValue(setting, std::to_string(property->GetNumberOfElements()) + " values");
  }
  for (unsigned int i = 0; i < values.size(); ++i)
  {
    switch (property->GetPropertyType())
    {
      case zylProperty::Bool:
        properties->Set(setting.Name, i, ParseBool(values[i], setting));
        break;
      case zylProperty::Int:
        properties->Set(setting.Name, i, static_cast<int>(ParseNumber(values[i], setting)));
        break;
      case zylProperty::Double:
        properties->Set(setting.Name, i, ParseNumber(values[i], setting));
        break;
      case zylProperty::String:
        properties->Set(setting.Name, i, values[i]);
        break;
    }
  }
}

// A usable range: what is unknown becomes 0..1, what is empty grows a little.
std::array<double, 2> Usable(std::array<double, 2> range)
{
  if (!(range[0] <= range[1]))
  {
    return { 0.0, 1.0 };
  }
  if (range[0] == range[1])
  {
    range[1] += std::max(1e-6, 1e-6 * std::abs(range[1]));
  }
  return range;
}
} // namespace

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
  this->ApplyClips();
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ShowSurfaces()
{
  // Only leaf blocks: a group's id stands for everything below it.
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    zylPropertyCollection* surface = this->Representation->GetSurfaceProperties(block);
    surface->Set("Visibility", true);
    surface->Set("Transparency", 1.0 - this->Options.Opacity);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyBlockSettings()
{
  for (const zylViewSetting& setting : this->Options.BlockSettings)
  {
    for (unsigned int block : this->Blocks.Find(setting.Owner))
    {
      SetProperty(this->GetCollection(setting.Kind, block), setting);
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
  const auto shown = this->Blocks.GetArray(this->Options.Array, this->GetShownBlocks());
  const auto range = this->Options.Range ? *this->Options.Range : Usable(shown.Range);
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    if (!this->Blocks.GetArray(array.Name, block).Found)
    {
      continue;
    }
    zylPropertyCollection* surface = this->Representation->GetSurfaceProperties(block);
    surface->Set("ColorMode", 1);
    surface->Set("ColorVariableName", array.Name);
    surface->Set("ColorMapRange", range.data(), 2);
    if (!this->Options.ColorMap.empty())
    {
      surface->Set("ColorMapName", this->Options.ColorMap);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyLines()
{
  for (unsigned int block : this->Blocks.GetLeaves())
  {
    zylPropertyCollection* mesh = this->Representation->GetMeshLineProperties(block);
    mesh->Set("Visibility", this->Options.MeshLines);
    SetTriple(mesh, "Color", Ink);
    zylPropertyCollection* feature = this->Representation->GetFeatureLineProperties(block);
    feature->Set("Visibility", this->Options.FeatureLines);
    SetTriple(feature, "Color", Ink);
    mesh->Set("TubeRadius", this->GetLineWidth());
    feature->Set("TubeRadius", this->GetLineWidth());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyContours()
{
  const auto leaves = this->Blocks.GetLeaves();
  for (unsigned int block : leaves)
  {
    zylPropertyCollection* contour = this->Representation->GetContourProperties(block);
    SetTriple(contour, "Color", Ink);
    contour->Set("TubeRadius", this->GetLineWidth());
  }
  if (this->Options.ContourArray.empty())
  {
    return;
  }
  const std::string& name = this->Options.ContourArray;
  const auto array = this->Blocks.NeedArray(name, leaves, true, 1);
  const auto range = Usable(this->Blocks.GetArray(name, this->GetShownBlocks()).Range);
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
    SetTriple(glyph, "Color", Ink);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyLegend()
{
  if (!this->Options.Legend)
  {
    return;
  }
  // Every group of blocks with settings of its own would draw a legend. One is enough: that of the
  // blocks which look like the first colored one.
  const auto& b = this->Options.BackgroundTop;
  const bool dark = 0.3 * b[0] + 0.6 * b[1] + 0.1 * b[2] < 0.45;
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
    surface->Set("ColorLegendVisibility", true);
    SetTriple(surface, "ColorLegendTitleColor", dark ? Paper : Ink);
    SetTriple(surface, "ColorLegendLabelColor", dark ? Paper : Ink);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewSettings::ApplyClips()
{
  this->Representation->SetNumberOfClips(static_cast<int>(this->Options.Clips.size()));
  for (std::size_t i = 0; i < this->Options.Clips.size(); ++i)
  {
    const zylViewClip& clip = this->Options.Clips[i];
    const double* v = clip.Values.data();
    zylPropertyCollection* p = this->Representation->GetClipProperties(static_cast<int>(i));
    p->Set("Invert", !clip.Outside);
    switch (clip.Kind)
    {
      case zylViewClip::Shape::Scalar:
        this->Blocks.NeedArray(clip.Variable, this->Blocks.GetLeaves(), true, 1);
        p->Set("ClipMode", 1);
        p->Set("ScalarVariable", clip.Variable);
        p->Set("ScalarLowerThreshold", v[0]);
        p->Set("ScalarUpperThreshold", v[1]);
        break;
      case zylViewClip::Shape::Plane:
        p->Set("ClipMode", 2);
        SetTriple(p, "PlaneCenter", v);
        SetTriple(p, "PlaneNormal", v + 3);
        break;
      case zylViewClip::Shape::Box: {
        const double corner[3] = { v[0], v[2], v[4] };
        const double length[3] = { v[1] - v[0], v[3] - v[2], v[5] - v[4] };
        p->Set("ClipMode", 3);
        SetTriple(p, "BoxPosition", corner);
        SetTriple(p, "BoxLength", length);
        break;
      }
      case zylViewClip::Shape::Cylinder:
        p->Set("ClipMode", 4);
        SetTriple(p, "CylinderCenter", v);
        SetTriple(p, "CylinderAxis", v + 3);
        p->Set("CylinderRadius", v[6]);
        break;
      case zylViewClip::Shape::Sphere:
        p->Set("ClipMode", 5);
        SetTriple(p, "SphereCenter", v);
        p->Set("SphereRadius", v[3]);
        break;
    }
  }
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylViewSettings::GetCollection(
  const std::string& kind, unsigned int block) const
{
  std::vector<std::string> names;
  for (const Kind& k : Kinds)
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
double zylViewSettings::GetLineWidth() const
{
  // A picture with more samples than pixels wants lines of as many samples.
  return this->Options.Output.empty() ? 1.0 : this->Options.Samples;
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
