#include "zylViewDerivedForms.h"

#include "zylViewError.h"

#include <algorithm>

namespace {
using Shape = zylViewDerived::Shape;
constexpr int ManySeeds = 1000000;

[[noreturn]] void Bad(const std::string& message)
{
  throw zylViewError(zylViewBadArguments, message);
}

bool StartsWith(const std::string& text, const std::string& start)
{
  return text.compare(0, start.size(), start) == 0;
}

// Take the number of points off the end of the values.
void SplitCount(zylViewSeeds& seeds, const std::string& context)
{
  seeds.Count = zylParseCount(seeds.Values.back(), context, 1, ManySeeds, "the number of points");
  seeds.Values.pop_back();
}

// "VECTOR:SEEDS"; the vector's name may hold colons, and so may a file's.
void SplitSeeds(const std::string& text, const std::string& option, zylViewDerived& derived)
{
  std::size_t colon = std::string::npos;
  for (const char* form : { ":line:", ":sphere:", ":points:", ":file:" })
  {
    colon = std::min(colon, text.find(form));
  }
  colon = colon == std::string::npos ? text.rfind(':') : colon;
  if (colon == std::string::npos || colon == 0)
  {
    Bad(option + " '" + text + "' is not of the form VECTOR:SEEDS");
  }
  derived.Variable = text.substr(0, colon);
  derived.Seeds = zylParseSeeds(text.substr(colon + 1), option + " " + text);
}

std::vector<double> Plane(const std::string& text, const std::string& context)
{
  auto values = zylParseNumbers(text, 6, context);
  if (values[3] == 0.0 && values[4] == 0.0 && values[5] == 0.0)
  {
    Bad("'" + context + "': the normal is zero");
  }
  return values;
}

// A surface for each value.
std::vector<zylViewDerived> Isosurfaces(const std::string& text, const std::string& option)
{
  const auto colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0)
  {
    Bad(option + " '" + text + "' is not of the form NAME:VALUE[,VALUE...]");
  }
  std::vector<zylViewDerived> surfaces;
  for (const double value : zylParseNumbers(text.substr(colon + 1), option + " " + text))
  {
    zylViewDerived surface;
    surface.Kind = Shape::Isosurface;
    surface.Variable = text.substr(0, colon);
    surface.Values = { value };
    surfaces.push_back(surface);
  }
  return surfaces;
}

zylViewClip VolumeClip(const std::string& text)
{
  const std::string option = "--clip-volume";
  zylViewClip clip = zylParseClip(text, option, 1);
  if (clip.Kind == zylViewClip::Shape::Box || clip.Kind == zylViewClip::Shape::Cylinder)
  {
    Bad(option + " '" + text + "' does not begin with plane:, sphere: or scalar:");
  }
  return clip;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::pair<std::string, std::string> zylParseDefinition(const std::string& text)
{
  const auto equals = text.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
  {
    Bad("--define '" + text + "' is not of the form NAME=EXPRESSION");
  }
  return { text.substr(0, equals), text.substr(equals + 1) };
}

//--------------------------------------------------------------------------------------------------
zylViewSetting zylParseKindSetting(const std::string& text)
{
  const auto equals = text.find('=');
  const auto first = text.find('.');
  const auto second = std::min(equals, text.find('.', first + 1));
  zylViewSetting setting;
  if (equals != std::string::npos && first < equals)
  {
    setting.Owner = text.substr(0, first);
    setting.Kind = second < equals ? text.substr(first + 1, second - first - 1) : "";
    const auto name = second < equals ? second + 1 : first + 1;
    setting.Name = text.substr(name, equals - name);
    setting.Value = text.substr(equals + 1);
  }
  if (setting.Owner.empty() || setting.Name.empty() || (second < equals && setting.Kind.empty()))
  {
    Bad("--set '" + text + "' is not of the form KIND.PROPERTY=VALUE");
  }
  return setting;
}

//--------------------------------------------------------------------------------------------------
zylViewSeeds zylParseSeeds(const std::string& text, const std::string& context)
{
  zylViewSeeds seeds;
  const std::string rest = text.substr(std::min(text.size(), text.find(':') + 1));
  if (StartsWith(text, "line:"))
  {
    seeds.Kind = zylViewSeeds::Shape::Line;
    seeds.Values = zylParseNumbers(rest, 7, context);
    SplitCount(seeds, context);
  }
  else if (StartsWith(text, "sphere:"))
  {
    seeds.Kind = zylViewSeeds::Shape::Sphere;
    seeds.Values = zylParseNumbers(rest, 5, context);
    SplitCount(seeds, context);
  }
  else if (StartsWith(text, "points:"))
  {
    seeds.Kind = zylViewSeeds::Shape::Points;
    seeds.Values = zylParseNumbers(rest, context);
    if (seeds.Values.size() % 3 != 0)
    {
      Bad("'" + context + "' needs three numbers for each point");
    }
  }
  else if (StartsWith(text, "file:") && !rest.empty())
  {
    seeds.Kind = zylViewSeeds::Shape::File;
    seeds.File = rest;
  }
  else
  {
    seeds.Count =
      zylParseCount(zylParseNumber(text, context), context, 1, ManySeeds, "the number of points");
  }
  return seeds;
}

//--------------------------------------------------------------------------------------------------
const std::vector<zylViewDerivedForm>& zylGetDerivedForms()
{
  // clang-format off
  static const std::vector<zylViewDerivedForm> forms = {
    { Shape::ClipVolume, "--clip-volume", "ClipVolume", "SHAPE",
      "Clip the volume and close it: plane:, sphere:, scalar:NAME,limit as for --clip" },
    { Shape::Cut, "--cut", "Cut", "PLANE", "Cut by the plane OX,OY,OZ,NX,NY,NZ" },
    { Shape::Crinkle, "--crinkle", "Crinkle", "PLANE", "The whole cells that a plane meets" },
    { Shape::Isosurface, "--isosurface", "Isosurface", "NAME:VALUE[,...]",
      "Where a point array has the value" },
    { Shape::Curve, "--curve", "Curve", "PLANE",
      "The lines in which a plane meets the blocks' surfaces" },
    { Shape::Streamlines, "--streamlines", "Streamlines", "VECTOR:SEEDS",
      "Lines along a point vector array" },
    { Shape::Ribbons, "--ribbons", "Ribbons", "VECTOR:SEEDS",
      "Streamlines as bands that turn with the vorticity" },
    { Shape::SurfaceStreamlines, "--surface-streamlines", "SurfaceStreamlines", "VECTOR:SEEDS",
      "Streamlines on the blocks' surfaces" },
    { Shape::CurvedGlyphs, "--curved-glyphs", "CurvedGlyphs", "VECTOR:SEEDS",
      "Arrows that follow the flow" },
    { Shape::VortexCores, "--vortex-cores", "VortexCores", "VECTOR",
      "The axes of the vortices of a point vector array" },
  };
  // clang-format on
  return forms;
}

//--------------------------------------------------------------------------------------------------
const zylViewDerivedForm& zylGetDerivedForm(Shape shape)
{
  const auto& forms = zylGetDerivedForms();
  return *std::find_if(
    forms.begin(), forms.end(), [shape](const auto& form) { return form.Shape == shape; });
}

//--------------------------------------------------------------------------------------------------
bool zylIsMeasure(const std::string& owner)
{
  return owner == "Integrate" || owner == "Histogram" || owner == "Probe";
}

//--------------------------------------------------------------------------------------------------
std::vector<zylViewDerived> zylParseDerived(Shape shape, const std::string& text)
{
  const std::string option = zylGetDerivedForm(shape).Option;
  zylViewDerived derived;
  derived.Kind = shape;
  switch (shape)
  {
    case Shape::ClipVolume:
      derived.Clip = VolumeClip(text);
      break;
    case Shape::Cut:
    case Shape::Crinkle:
    case Shape::Curve:
      derived.Values = Plane(text, option + " " + text);
      break;
    case Shape::Isosurface:
      return Isosurfaces(text, option);
    case Shape::VortexCores:
      derived.Variable = text;
      break;
    default:
      SplitSeeds(text, option, derived);
  }
  return { derived };
}
