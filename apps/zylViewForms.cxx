#include "zylViewForms.h"

#include "zylViewError.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {
[[noreturn]] void Bad(const std::string& message)
{
  throw zylViewError(zylViewBadArguments, message);
}

std::vector<std::string> Split(const std::string& text, char separator)
{
  std::vector<std::string> parts(1);
  for (const char c : text)
  {
    if (c == separator)
    {
      parts.emplace_back();
    }
    else
    {
      parts.back() += c;
    }
  }
  return parts;
}
} // namespace

//--------------------------------------------------------------------------------------------------
double zylParseNumber(const std::string& text, const std::string& context)
{
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(value))
  {
    Bad("'" + text + "' in '" + context + "' is not a number");
  }
  return value;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylParseNumbers(const std::string& text, const std::string& context)
{
  std::vector<double> values;
  for (const std::string& part : Split(text, ','))
  {
    values.push_back(zylParseNumber(part, context));
  }
  return values;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylParseNumbers(
  const std::string& text, std::size_t count, const std::string& context)
{
  const auto values = text.empty() ? std::vector<double>{} : zylParseNumbers(text, context);
  if (values.size() != count)
  {
    Bad("'" + context + "' needs " + std::to_string(count) + " numbers, not " +
      std::to_string(values.size()));
  }
  return values;
}

//--------------------------------------------------------------------------------------------------
int zylParseCount(
  double number, const std::string& context, int least, int most, const std::string& what)
{
  const int count = static_cast<int>(std::clamp(number, -1e9, 1e9));
  if (count != number || count < least || count > most)
  {
    Bad(context + ": " + what + " is a whole number from " + std::to_string(least) + " to " +
      std::to_string(most));
  }
  return count;
}

//--------------------------------------------------------------------------------------------------
std::pair<std::string, double> zylParseNameAndNumber(
  const std::string& text, const std::string& option)
{
  const auto colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0)
  {
    Bad(option + " '" + text + "' is not of the form NAME:NUMBER");
  }
  return { text.substr(0, colon), zylParseNumber(text.substr(colon + 1), option + " " + text) };
}

//--------------------------------------------------------------------------------------------------
std::pair<std::string, int> zylParseNameAndCount(
  const std::string& text, const std::string& option, int least, int most, const std::string& what)
{
  const auto [name, number] = zylParseNameAndNumber(text, option);
  return { name, zylParseCount(number, option + " '" + text + "'", least, most, what) };
}

//--------------------------------------------------------------------------------------------------
zylViewSetting zylParseBlockSetting(const std::string& text)
{
  // The last colon before the first equals sign that follows a colon: names may hold either.
  const auto equals = text.find('=', text.find(':') == std::string::npos ? 0 : text.find(':'));
  const auto colon = equals == std::string::npos ? equals : text.rfind(':', equals);
  if (colon == std::string::npos || colon == 0 || equals == colon + 1)
  {
    Bad("--block '" + text + "' is not of the form ID|NAME:SETTING=VALUE");
  }
  zylViewSetting setting;
  setting.Owner = text.substr(0, colon);
  setting.Kind = "Surface";
  setting.Name = text.substr(colon + 1, equals - colon - 1);
  setting.Value = text.substr(equals + 1);
  const auto dot = setting.Name.find('.');
  if (dot != std::string::npos)
  {
    setting.Kind = setting.Name.substr(0, dot);
    setting.Name = setting.Name.substr(dot + 1);
  }
  return setting;
}

//--------------------------------------------------------------------------------------------------
zylViewClip zylParseClip(const std::string& text, const std::string& option, std::size_t limits)
{
  struct Form
  {
    const char* Name;
    zylViewClip::Shape Kind;
    std::size_t Count;
  };
  const Form forms[] = { { "plane", zylViewClip::Shape::Plane, 6 },
    { "box", zylViewClip::Shape::Box, 6 }, { "cylinder", zylViewClip::Shape::Cylinder, 7 },
    { "sphere", zylViewClip::Shape::Sphere, 4 }, { "scalar", zylViewClip::Shape::Scalar, limits } };
  static const std::string outside = ":outside";

  const auto colon = text.find(':');
  std::string rest = colon == std::string::npos ? "" : text.substr(colon + 1);
  zylViewClip clip;
  clip.Outside = rest.size() > outside.size() &&
    rest.compare(rest.size() - outside.size(), outside.size(), outside) == 0;
  if (clip.Outside)
  {
    rest.resize(rest.size() - outside.size());
  }
  for (const Form& form : forms)
  {
    if (text.substr(0, colon) != form.Name)
    {
      continue;
    }
    clip.Kind = form.Kind;
    if (form.Kind == zylViewClip::Shape::Scalar)
    {
      const auto comma = rest.find(',');
      clip.Variable = rest.substr(0, comma);
      rest = comma == std::string::npos ? "" : rest.substr(comma + 1);
      if (clip.Outside && limits == 2)
      {
        Bad(option + " '" + text + "': a scalar clip keeps the range, it has no outside");
      }
    }
    clip.Values = zylParseNumbers(rest, form.Count, option + " " + text);
    return clip;
  }
  Bad(option + " '" + text + "' does not begin with plane:, box:, cylinder:, sphere: or scalar:");
}
