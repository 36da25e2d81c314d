#include "zylTimeStepIndex.h"

#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <sstream>

#include <vtk_jsoncpp.h>

namespace {
constexpr std::size_t MaximumNumberOfErrors = 100;

std::string Message(const std::string& text, double time)
{
  std::ostringstream out;
  out << text << time;
  return out.str();
}

// The parsed text, null when it is no JSON.
Json::Value Parse(const std::string& text)
{
  Json::Value root;
  try
  {
    const Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    if (reader->parse(text.data(), text.data() + text.size(), &root, nullptr))
    {
      return root;
    }
  }
  catch (const std::exception&) // nested too deeply
  {
  }
  return Json::Value();
}

// The value of a key of an object, null when it is absent.
const Json::Value& Member(const Json::Value& object, const char* key)
{
  return object.isObject() ? object[key] : Json::Value::nullSingleton();
}

// Type and name of the files of a "surface" or "volume" node. Returns the message of what is wrong,
// empty when nothing is. `nameNode` is the node that the message for a missing name speaks of.
std::string ReadFiles(const Json::Value& element, const char* node, const char* nameNode,
  double time, std::string& type, std::string& name)
{
  const Json::Value& files = Member(element, node);
  if (files.isNull())
  {
    return "";
  }
  const std::string quoted = std::string("'") + node + "' node";
  if (!files.isObject())
  {
    return Message("The " + quoted + " is not an object for time ", time);
  }
  const Json::Value& fileType = files["fileType"];
  if (fileType.isNull())
  {
    return Message("No 'fileType' node found in " + quoted + " for time ", time);
  }
  const Json::Value& fileName = files["fileName"];
  if (fileName.isNull())
  {
    return Message(
      std::string("No 'fileName' node found in '") + nameNode + "' node for time ", time);
  }
  if (!fileType.isString() || !fileName.isString())
  {
    return Message("'fileType' and 'fileName' must be strings in " + quoted + " for time ", time);
  }
  type = fileType.asString();
  name = fileName.asString();
  return "";
}

// Returns the message of what is wrong with the element, empty when nothing is.
std::string ReadElement(const Json::Value& element, std::size_t position, zylTimeStep& step)
{
  const std::string which = "Element " + std::to_string(position) + " of 'timesteps'";
  if (!element.isObject())
  {
    return which + " is not an object.";
  }
  const Json::Value& time = element["time"];
  if (!time.isConvertibleTo(Json::realValue))
  {
    return "'time' is not a number in element " + std::to_string(position) + " of 'timesteps'.";
  }
  step.Time = time.asDouble();
  if (!std::isfinite(step.Time))
  {
    return "'time' is not finite in element " + std::to_string(position) + " of 'timesteps'.";
  }
  // Kept: a surface without a file name is reported as a volume.
  std::string error =
    ReadFiles(element, "surface", "volume", step.Time, step.SurfaceFileType, step.SurfaceFileName);
  if (error.empty())
  {
    error =
      ReadFiles(element, "volume", "volume", step.Time, step.VolumeFileType, step.VolumeFileName);
  }
  return error;
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylParseTimeStepIndex(
  const std::string& text, std::vector<zylTimeStep>& steps, std::vector<std::string>& errors)
{
  steps.clear();
  errors.clear();
  const Json::Value root = Parse(text);
  const Json::Value& elements = Member(root, "timesteps");
  if (!elements.isArray())
  {
    errors.emplace_back("No 'timesteps' array found in file.");
    return false;
  }
  std::size_t dropped = 0;
  std::size_t position = 0;
  for (const Json::Value& element : elements)
  {
    zylTimeStep step;
    std::string error = ReadElement(element, position++, step);
    if (error.empty())
    {
      steps.push_back(std::move(step));
    }
    else if (++dropped <= MaximumNumberOfErrors)
    {
      errors.push_back(std::move(error));
    }
  }
  if (dropped > MaximumNumberOfErrors)
  {
    errors.push_back(std::to_string(dropped - MaximumNumberOfErrors) +
      " more elements of 'timesteps' cannot be used.");
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
std::size_t zylNearestTimeStep(const std::vector<zylTimeStep>& steps, double time)
{
  std::size_t nearest = 0;
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < steps.size(); ++i)
  {
    const double distance = std::abs(steps[i].Time - time);
    if (distance < least)
    {
      least = distance;
      nearest = i;
    }
  }
  return nearest;
}
