#include "zylViewDerived.h"

#include "zylViewError.h"
#include "zylViewLook.h"
#include "zylViewOptions.h"
#include "zylViewProperties.h"
#include "zylViewSeeds.h"

#include <algorithm>
#include <cmath>

#include <zylArrayInformation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

namespace {
using Representation = zylDerivedSurfaceRepresentation;
using Shape = zylViewDerived::Shape;

// Solid colors of what stands beside each other, in the order of the kinds.
constexpr double Palette[][3] = { { 0.80, 0.82, 0.86 }, { 0.93, 0.93, 0.90 }, { 0.75, 0.85, 0.70 },
  { 0.95, 0.70, 0.25 }, { 0.10, 0.11, 0.14 }, { 0.15, 0.35, 0.70 }, { 0.30, 0.60, 0.75 },
  { 0.20, 0.20, 0.25 }, { 0.80, 0.25, 0.20 }, { 0.75, 0.10, 0.45 } };

bool IsLines(Shape shape)
{
  return shape == Shape::Curve || shape == Shape::Streamlines ||
    shape == Shape::SurfaceStreamlines || shape == Shape::VortexCores;
}

void SetVolumeClip(zylPropertyCollection* properties, const zylViewClip& clip)
{
  const double* v = clip.Values.data();
  properties->Set("Invert", !clip.Outside);
  switch (clip.Kind)
  {
    case zylViewClip::Shape::Scalar:
      properties->Set("ClipMode", 0);
      properties->Set("ScalarVariable", clip.Variable);
      properties->Set("ScalarThreshold", v[0]);
      break;
    case zylViewClip::Shape::Sphere:
      properties->Set("ClipMode", 2);
      zylSetTriple(properties, "SphereCenter", v);
      properties->Set("SphereRadius", v[3]);
      break;
    default:
      properties->Set("ClipMode", 1);
      zylSetTriple(properties, "PlaneCenter", v);
      zylSetTriple(properties, "PlaneNormal", v + 3);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewDerivedSurfaces::zylViewDerivedSurfaces(
  const zylViewOptions& options, const zylViewBlocks& blocks, zylDataSet* dataset)
  : Options(options)
  , Blocks(blocks)
  , DataSet(dataset)
{
  double b[6];
  if (dataset->GetBounds(b))
  {
    this->Size = std::hypot(b[1] - b[0], b[3] - b[2], b[5] - b[4]);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::Make()
{
  for (const zylViewDerived& wish : this->Options.Derived)
  {
    this->AddEntry(wish);
  }
  for (const zylViewSetting& setting : this->Options.KindSettings)
  {
    const auto meant = [&](const Entry& entry) { return this->IsFor(setting, entry); };
    if (std::none_of(this->Entries.begin(), this->Entries.end(), meant) &&
      !zylIsMeasure(setting.Owner))
    {
      std::vector<std::string> kinds;
      std::transform(this->Entries.begin(), this->Entries.end(), std::back_inserter(kinds),
        [](const Entry& entry) { return entry.Kind; });
      throw zylUnknownName("derived kind in this picture", setting.Owner, kinds);
    }
  }
  for (const Entry& entry : this->Entries)
  {
    if (!this->Options.Restored)
    {
      this->SetUp(entry);
    }
  }
  if (this->Options.Legend.value_or(false))
  {
    this->ShowLegend();
  }
}

//--------------------------------------------------------------------------------------------------
const zylViewDerivedSurfaces::Entry& zylViewDerivedSurfaces::AddEntry(const zylViewDerived& wish)
{
  const std::string kind = zylGetDerivedForm(wish.Kind).Kind;
  int last = 0;
  for (const Entry& entry : this->Entries)
  {
    last = entry.Kind == kind ? std::max(last, entry.Number) : last;
  }
  this->Entries.push_back({ wish, kind, last + 1, zylNewDerived(wish.Kind) });
  this->Entries.back().Representation->SetDataSet(this->DataSet);
  return this->Entries.back();
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::SetUp(const Entry& entry)
{
  zylSetAny(entry.Representation->GetProperties(), "Blocks", this->ChooseBlocks(entry));
  this->SetShape(entry);
  this->SetDisplay(entry);
  this->SetSizes(entry);
  this->ApplySettings(entry);
  this->SetSeeds(entry); // the settings say in which blocks
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::Add(const zylViewDerived& wish, zylView* view)
{
  const Entry& entry = this->AddEntry(wish);
  try
  {
    this->SetUp(entry);
  }
  catch (const zylViewError&)
  {
    this->Entries.pop_back();
    throw;
  }
  view->AddRepresentation(entry.Representation);
  this->ColorByOwnRange(entry);
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::Remove(const zylDerivedSurfaceRepresentation* derived, zylView* view)
{
  const auto meant = [derived](const Entry& entry) { return entry.Representation == derived; };
  const auto place = std::find_if(this->Entries.begin(), this->Entries.end(), meant);
  if (place != this->Entries.end())
  {
    view->RemoveRepresentation(place->Representation);
    this->Entries.erase(place);
  }
}

//--------------------------------------------------------------------------------------------------
// Without a wish: those of the highest dimension, as far as that is known, or for what lies on
// surfaces those that are surfaces.
std::vector<int> zylViewDerivedSurfaces::ChooseBlocks(const Entry& entry) const
{
  const bool surfaces = entry.Wish.Kind == Shape::Curve;
  const auto blocks = this->Blocks.GetBlocksOfDimension(surfaces ? 2 : 3);
  return blocks.empty() ? std::vector<int>{ 0 } : blocks; // 0: the whole data
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::SetShape(const Entry& entry)
{
  const zylViewDerived& wish = entry.Wish;
  const auto leaves = this->Blocks.GetLeaves();
  zylPropertyCollection* own = entry.Representation->GetProperties();
  switch (wish.Kind)
  {
    case Shape::ClipVolume:
      if (!wish.Clip.Variable.empty())
      {
        this->Blocks.NeedArray(wish.Clip.Variable, leaves, true);
      }
      SetVolumeClip(own, wish.Clip);
      break;
    case Shape::Cut:
    case Shape::Crinkle:
      own->Set("CrinkleCut", wish.Kind == Shape::Crinkle);
      [[fallthrough]];
    case Shape::Curve:
      zylSetTriple(own, "Center", wish.Values.data());
      zylSetTriple(own, "Normal", wish.Values.data() + 3);
      break;
    case Shape::Isosurface:
      this->Blocks.NeedArray(wish.Variable, leaves, true, 1);
      own->Set("Variable", wish.Variable);
      own->Set("Isovalue", wish.Values.front());
      break;
    default:
      this->Blocks.NeedArray(wish.Variable, leaves, true, 3);
      own->Set("VectorVariable", wish.Variable);
  }
}

//--------------------------------------------------------------------------------------------------
// What has a size by default is a unit large: here it suits the data.
void zylViewDerivedSurfaces::SetSizes(const Entry& entry)
{
  zylPropertyCollection* own = entry.Representation->GetProperties();
  const std::pair<const char*, double> sizes[] = { { "RibbonWidth", 0.012 },
    { "GlyphScaleFactor", 0.01 }, { "GlyphSpacing", 0.05 }, { "GlyphConeRadius", 0.006 },
    { "GlyphConeHeight", 0.015 }, { "GlyphBodyRadius", 0.0025 }, { "GlyphBodyLength", 0.025 },
    { "SurfaceOffset", 0.002 } };
  for (const auto& [name, size] : sizes)
  {
    if (own->Has(name))
    {
      own->Set(name, size * this->Size);
    }
  }
  if (entry.Wish.Kind == Shape::Ribbons)
  {
    own->Set("Ribbon", true);
  }
  if (own->Has("MaximumStreamlineLength"))
  {
    own->Set("MaximumStreamlineLength", 4.0 * this->Size); // a line in a vortex has no end
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::SetSeeds(const Entry& entry)
{
  zylPropertyCollection* own = entry.Representation->GetProperties();
  if (!own->Has("SeedPoints") || own->GetProperty("SeedPoints")->GetNumberOfElements() > 0)
  {
    return;
  }
  const int* first = own->GetIntElements("Blocks");
  const std::vector<int> blocks(first, first + own->GetProperty("Blocks")->GetNumberOfElements());
  const bool onSurface = entry.Wish.Kind == Shape::SurfaceStreamlines;
  zylSetAny(
    own, "SeedPoints", zylGetSeedPoints(entry.Wish.Seeds, this->DataSet, blocks, onSurface));
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::SetDisplay(const Entry& entry)
{
  zylPropertyCollection* surface = entry.Representation->GetSurfaceProperties();
  surface->Set("Visibility", true);
  zylSetTriple(surface, "Color", Palette[static_cast<int>(entry.Wish.Kind)]);
  if (IsLines(entry.Wish.Kind))
  {
    surface->Set("TubeRadius", 2.0 * zylLineWidth(this->Options));
  }
  for (zylPropertyCollection* lines : { entry.Representation->GetMeshLineProperties(),
         entry.Representation->GetFeatureLineProperties(),
         entry.Representation->GetContourProperties() })
  {
    zylSetTriple(lines, "Color", zylInk);
    lines->Set("TubeRadius", zylLineWidth(this->Options));
  }
  if (entry.Wish.Kind == Shape::Curve && this->Blocks.GetBlocksOfDimension(2).empty())
  {
    // Volumes only: the curve is the border of the plane in which they are met.
    surface->Set("Visibility", false);
    entry.Representation->GetFeatureLineProperties()->Set("Visibility", true);
  }
  if (!this->Options.Array.empty())
  {
    const auto leaves = this->Blocks.GetLeaves();
    const auto array = this->Blocks.NeedArray(this->Options.Array, leaves);
    zylColorBy(surface, array.Name, this->Options.Range.value_or(zylUsableRange(array.Range)),
      this->Options.ColorMap);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::ApplySettings(const Entry& entry)
{
  std::vector<zylViewClip> clips;
  for (const zylViewSetting& setting : this->Options.KindSettings)
  {
    const std::string option = "--set " + setting.Owner + "." + setting.Name;
    if (!this->IsFor(setting, entry))
    {
      continue;
    }
    if (setting.Kind.empty() && setting.Name == "Clip")
    {
      clips.push_back(zylParseClip(setting.Value, option));
    }
    else if (setting.Kind.empty() && setting.Name == "Blocks")
    {
      zylSetAny(
        entry.Representation->GetProperties(), "Blocks", this->Blocks.FindIndices(setting.Value));
    }
    else
    {
      zylSetProperty(this->FindCollection(entry, setting), setting, option);
    }
  }
  zylSetClips(entry.Representation, clips, this->Blocks);
}

//--------------------------------------------------------------------------------------------------
// "Cut" is every cut, "Cut2" the second one.
bool zylViewDerivedSurfaces::IsFor(const zylViewSetting& setting, const Entry& entry) const
{
  return setting.Owner == entry.Kind || setting.Owner == entry.Kind + std::to_string(entry.Number);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylViewDerivedSurfaces::FindCollection(
  const Entry& entry, const zylViewSetting& setting) const
{
  Representation* representation = entry.Representation;
  if (setting.Kind.empty())
  {
    zylPropertyCollection* surface = representation->GetSurfaceProperties();
    return surface->Has(setting.Name) && !representation->GetProperties()->Has(setting.Name)
      ? surface
      : representation->GetProperties();
  }
  std::vector<std::string> names;
  for (const zylDerivedDisplay& display : zylGetDerivedDisplays())
  {
    if (setting.Kind == display.Name)
    {
      return (representation->*display.Get)();
    }
    names.emplace_back(display.Name);
  }
  throw zylUnknownName("kind of display", setting.Kind, names);
}

//--------------------------------------------------------------------------------------------------
bool zylViewDerivedSurfaces::IsSet(const Entry& entry, const std::string& name) const
{
  const auto& settings = this->Options.KindSettings;
  return std::any_of(settings.begin(), settings.end(), [&](const zylViewSetting& setting) {
    return setting.Name == name && this->IsFor(setting, entry);
  });
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::ShowLegend()
{
  for (const Entry& entry : this->Entries)
  {
    zylPropertyCollection* surface = entry.Representation->GetSurfaceProperties();
    if (surface->GetBool("Visibility") && surface->GetInt("ColorMode") == 1)
    {
      zylShowLegend(surface, this->Options,
        this->Blocks.IsWholeVector(surface->GetString("ColorVariableName")));
      return;
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::AddTo(zylView* view)
{
  for (const Entry& entry : this->Entries)
  {
    view->AddRepresentation(entry.Representation); // updates it
    if (!this->Options.Restored)
    {
      this->ColorByOwnRange(entry);
    }
  }
}

//--------------------------------------------------------------------------------------------------
// What a filter or an expression makes has its range only now.
void zylViewDerivedSurfaces::ColorByOwnRange(const Entry& entry)
{
  zylPropertyCollection* surface = entry.Representation->GetSurfaceProperties();
  const std::string variable = surface->GetString("ColorVariableName");
  const bool chosen =
    this->IsSet(entry, "ColorMapRange") || (this->Options.Range && variable == this->Options.Array);
  const auto known = this->Blocks.GetArray(variable, this->Blocks.GetLeaves());
  if (surface->GetInt("ColorMode") != 1 || chosen || known.Range[0] <= known.Range[1])
  {
    return;
  }
  const auto array = entry.Representation->GetSurfaceColorVariableInformation();
  double bounds[6];
  if (!array && entry.Representation->GetBounds(bounds))
  {
    throw zylViewError(zylViewFailed, "the variable '" + variable + "' cannot be computed");
  }
  const auto range = zylUsableRange(zylGetRange(array, variable));
  surface->Set("ColorMapRange", range.data(), 2);
  entry.Representation->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::RemoveFrom(zylView* view)
{
  for (const Entry& entry : this->Entries)
  {
    view->RemoveRepresentation(entry.Representation);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewDerivedSurfaces::Update()
{
  for (const Entry& entry : this->Entries)
  {
    entry.Representation->Update();
  }
}
