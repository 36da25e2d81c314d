#include "zylViewProperties.h"

#include "zylViewBlocks.h"
#include "zylViewError.h"
#include "zylViewLook.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <zylArrayInformation.h>
#include <zylPipeline.h>
#include <zylProperty.h>
#include <zylPropertyCollection.h>
#include <zylRepresentation.h>

#include <CLI/StringTools.hpp>

namespace {
[[noreturn]] void BadValue(
  const zylViewSetting& setting, const std::string& option, const std::string& expected)
{
  throw zylViewError(zylViewBadArguments, option + ": '" + setting.Value + "' is not " + expected);
}

bool ParseBool(const std::string& text, const zylViewSetting& setting, const std::string& option)
{
  const std::string word = CLI::detail::to_lower(text);
  const bool yes = word == "true" || word == "1" || word == "on" || word == "yes";
  if (!yes && word != "false" && word != "0" && word != "off" && word != "no")
  {
    BadValue(setting, option, "true or false");
  }
  return yes;
}

int ParseInt(const std::string& text, const zylViewSetting& setting, const std::string& option)
{
  const double number = zylParseNumber(text, option);
  if (number != std::floor(number) || std::abs(number) > INT32_MAX)
  {
    BadValue(setting, option, "a whole number");
  }
  return static_cast<int>(number);
}

template <class T>
void SetAny(zylPropertyCollection* properties, const char* name, const std::vector<T>& values)
{
  zylProperty* property = properties->GetProperty(name);
  property->SetNumberOfElements(static_cast<unsigned int>(values.size()));
  property->SetElements(values.data(), static_cast<unsigned int>(values.size()));
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylSetProperty(
  zylPropertyCollection* properties, const zylViewSetting& setting, const std::string& option)
{
  zylProperty* property = properties->GetProperty(setting.Name);
  if (property == nullptr)
  {
    throw zylUnknownName(setting.Kind + (setting.Kind.empty() ? "setting" : " setting"),
      setting.Name, properties->GetPropertyNames());
  }
  const bool text = property->GetPropertyType() == zylProperty::String;
  const auto values =
    text ? std::vector<std::string>{ setting.Value } : CLI::detail::split(setting.Value, ',');
  if (property->GetNumberOfElements() == 0)
  {
    property->SetNumberOfElements(static_cast<unsigned int>(values.size()));
  }
  if (values.size() != property->GetNumberOfElements())
  {
    BadValue(setting, option, std::to_string(property->GetNumberOfElements()) + " values");
  }
  for (unsigned int i = 0; i < values.size(); ++i)
  {
    switch (property->GetPropertyType())
    {
      case zylProperty::Bool:
        properties->Set(setting.Name, i, ParseBool(values[i], setting, option));
        break;
      case zylProperty::Int:
        properties->Set(setting.Name, i, ParseInt(values[i], setting, option));
        break;
      case zylProperty::Double:
        properties->Set(setting.Name, i, zylParseNumber(values[i], option));
        break;
      case zylProperty::String:
        properties->Set(setting.Name, i, values[i]);
        break;
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylSetTriple(zylPropertyCollection* properties, const char* name, const double* values)
{
  properties->Set(name, values, 3);
}

//--------------------------------------------------------------------------------------------------
void zylSetAny(
  zylPropertyCollection* properties, const char* name, const std::vector<double>& values)
{
  SetAny(properties, name, values);
}

//--------------------------------------------------------------------------------------------------
void zylSetAny(zylPropertyCollection* properties, const char* name, const std::vector<int>& values)
{
  SetAny(properties, name, values);
}

//--------------------------------------------------------------------------------------------------
std::array<double, 2> zylUsableRange(std::array<double, 2> range)
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

//--------------------------------------------------------------------------------------------------
std::array<double, 2> zylGetRange(zylArrayInformation* array, const std::string& variable)
{
  std::array<double, 2> range{ 1.0, -1.0 };
  if (array != nullptr)
  {
    std::string name;
    int component = -1;
    zylPipeline::SplitVariableName(variable, name, component);
    const bool whole = component < 0 || array->GetName() == variable;
    const unsigned int count = array->GetNumberOfComponents();
    array->GetComponentRange(!whole ? component : (count > 1 ? count : 0), range.data());
  }
  return range;
}

//--------------------------------------------------------------------------------------------------
void zylColorBy(zylPropertyCollection* properties, const std::string& variable,
  const std::array<double, 2>& range, const std::string& colorMap)
{
  properties->Set("ColorMode", 1);
  properties->Set("ColorVariableName", variable);
  properties->Set("ColorMapRange", range.data(), 2);
  if (!colorMap.empty())
  {
    properties->Set("ColorMapName", colorMap);
  }
}

//--------------------------------------------------------------------------------------------------
void zylShowLegend(zylPropertyCollection* properties, const zylViewOptions& options, bool magnitude)
{
  if (options.LegendPlace != zylViewOptions().LegendPlace)
  {
    properties->Set("ColorLegendLocation", options.LegendPlace);
  }
  const bool high = properties->GetInt("ColorLegendLocation") > 3; // the library's upper places
  const double* ink = zylGetInk(options, high ? 0.8 : 0.2);
  properties->Set("ColorLegendVisibility", true);
  zylSetTriple(properties, "ColorLegendTitleColor", ink);
  zylSetTriple(properties, "ColorLegendLabelColor", ink);
  if (magnitude && properties->GetString("ColorLegendTitle").empty())
  {
    properties->Set("ColorLegendTitle", properties->GetString("ColorVariableName"));
    properties->Set("ColorLegendComponentTitle", "Magnitude");
  }
}

//--------------------------------------------------------------------------------------------------
void zylSetClips(zylRepresentation* representation, const std::vector<zylViewClip>& clips,
  const zylViewBlocks& blocks)
{
  representation->SetNumberOfClips(static_cast<int>(clips.size()));
  for (std::size_t i = 0; i < clips.size(); ++i)
  {
    const zylViewClip& clip = clips[i];
    const double* v = clip.Values.data();
    zylPropertyCollection* p = representation->GetClipProperties(static_cast<int>(i));
    p->Set("Invert", !clip.Outside);
    switch (clip.Kind)
    {
      case zylViewClip::Shape::Scalar:
        blocks.NeedArray(clip.Variable, blocks.GetLeaves(), true, 1);
        p->Set("ClipMode", 1);
        p->Set("ScalarVariable", clip.Variable);
        p->Set("ScalarLowerThreshold", v[0]);
        p->Set("ScalarUpperThreshold", v[1]);
        break;
      case zylViewClip::Shape::Plane:
        p->Set("ClipMode", 2);
        zylSetTriple(p, "PlaneCenter", v);
        zylSetTriple(p, "PlaneNormal", v + 3);
        break;
      case zylViewClip::Shape::Box: {
        const double corner[3] = { v[0], v[2], v[4] };
        const double length[3] = { v[1] - v[0], v[3] - v[2], v[5] - v[4] };
        p->Set("ClipMode", 3);
        zylSetTriple(p, "BoxPosition", corner);
        zylSetTriple(p, "BoxLength", length);
        break;
      }
      case zylViewClip::Shape::Cylinder:
        p->Set("ClipMode", 4);
        zylSetTriple(p, "CylinderCenter", v);
        zylSetTriple(p, "CylinderAxis", v + 3);
        p->Set("CylinderRadius", v[6]);
        break;
      case zylViewClip::Shape::Sphere:
        p->Set("ClipMode", 5);
        zylSetTriple(p, "SphereCenter", v);
        p->Set("SphereRadius", v[3]);
        break;
    }
  }
}

//--------------------------------------------------------------------------------------------------
double zylLineWidth(const zylViewOptions& options)
{
  return options.Output.empty() ? 1.0 : options.Samples;
}
