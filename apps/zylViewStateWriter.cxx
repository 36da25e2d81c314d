#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewOptions.h"
#include "zylViewSettings.h"
#include "zylViewState.h"

#include <filesystem>
#include <fstream>
#include <map>

#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylJSONSerializer.h>
#include <zylPropertyCollection.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkCamera.h>

namespace {
// As the library has it: numbers come back bit for bit.
Json::Value ToJson(zylPropertyCollection* settings)
{
  Json::Value json;
  const std::string text = zylJSONSerializer::Serialize(settings);
  const Json::CharReaderBuilder builder;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  reader->parse(text.data(), text.data() + text.size(), &json, nullptr);
  return json;
}

template <class Values>
Json::Value List(const Values& values)
{
  Json::Value list(Json::arrayValue);
  for (const auto& value : values)
  {
    list.append(value);
  }
  return list;
}

//--------------------------------------------------------------------------------------------------
// Blocks with the same settings, visibility included, are written once.
Json::Value GetBlockSettings(zylViewCase& one, const zylBlockKind& kind)
{
  std::map<std::string, std::vector<unsigned int>> groups;
  for (const unsigned int block : one.GetBlocks().GetLeaves())
  {
    zylPropertyCollection* settings = (one.GetBoundary()->*kind.Get)(static_cast<int>(block));
    groups[zylJSONSerializer::Serialize(settings)].push_back(block);
  }
  Json::Value list(Json::arrayValue);
  for (const auto& group : groups)
  {
    Json::Value entry;
    entry["blocks"] = List(group.second);
    entry["settings"] =
      ToJson((one.GetBoundary()->*kind.Get)(static_cast<int>(group.second.front())));
    list.append(entry);
  }
  return list;
}

Json::Value GetClips(zylRepresentation* representation)
{
  Json::Value list(Json::arrayValue);
  for (int i = 0; i < representation->GetNumberOfClips(); ++i)
  {
    list.append(ToJson(representation->GetClipProperties(i)));
  }
  return list;
}

Json::Value GetDataSetState(zylViewCase& one)
{
  const zylViewOptions& options = one.GetOptions();
  Json::Value json;
  json["files"] = Json::Value(Json::arrayValue);
  for (const std::string& file : options.Files)
  {
    // A server has files of its own; the built-in sample is found anywhere.
    const bool here = options.Connect.empty();
    if (!options.Sample)
    {
      json["files"].append(here ? std::filesystem::absolute(file).string() : file);
    }
  }
  json["reader"] = options.ReaderName.empty() ? "" : options.ReaderGroup + "/" + options.ReaderName;
  for (const std::string& name : one.GetDataSet()->GetDerivedPointVariableNames())
  {
    json["expressions"][name] = one.GetDataSet()->GetDerivedPointVariableExpression(name);
  }
  json["settings"] = ToJson(one.GetDataSet()->GetProperties());
  json["colors"]["array"] = options.Array;
  json["colors"]["range"] = List(one.GetColorRange());
  json["colors"]["fixed"] = options.Range.has_value();
  json["colors"]["direct"] = options.DirectColors;
  for (const zylBlockKind& kind : zylGetBlockKinds())
  {
    json["blocks"][kind.Name] = GetBlockSettings(one, kind);
  }
  json["selected"] = List(one.GetMarks().GetBlocks());
  json["clips"] = GetClips(one.GetBoundary());
  json["derived"] = Json::Value(Json::arrayValue);
  for (const auto& entry : one.GetDerived().GetEntries())
  {
    Json::Value derived;
    derived["kind"] = entry.Kind;
    derived["settings"] = ToJson(entry.Representation->GetProperties());
    for (const zylDerivedDisplay& display : zylGetDerivedDisplays())
    {
      derived["displays"][display.Name] = ToJson((entry.Representation->*display.Get)());
    }
    derived["selected"] = one.GetMarks().IsSelected(entry.Representation);
    derived["clips"] = GetClips(entry.Representation);
    json["derived"].append(derived);
  }
  return json;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylViewState::ToText(const Json::Value& json)
{
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  return Json::writeString(builder, json);
}

//--------------------------------------------------------------------------------------------------
bool zylViewState::Write(const std::string& file,
  const std::vector<std::unique_ptr<zylViewCase>>& cases, zylView* view, zylViewCamera& camera,
  const zylViewOptions& options)
{
  Json::Value root;
  root["zylview"] = Layout;
  root["connect"] = options.Connect;
  root["time"] = zylTimeController::GetInstance()->GetActiveTime();
  Json::Value& window = root["window"];
  window["size"].append(options.Width);
  window["size"].append(options.Height);
  window["samples"] = options.Samples;
  window["background"].append(List(options.BackgroundTop));
  window["background"].append(List(options.BackgroundBottom));
  window["view"] = ToJson(view->GetProperties());
  window["lights"] = ToJson(view->GetLightKitProperties());
  vtkCamera* eye = camera.Get();
  Json::Value& place = root["camera"];
  const auto triple = [](const double* v) { return List(std::vector<double>(v, v + 3)); };
  place["position"] = triple(eye->GetPosition());
  place["focus"] = triple(eye->GetFocalPoint());
  place["up"] = triple(eye->GetViewUp());
  place["upright"] = List(cases.front()->GetOptions().Up);
  place["angle"] = eye->GetViewAngle();
  place["parallel"] = eye->GetParallelProjection() != 0;
  place["scale"] = eye->GetParallelScale();
  if (camera.GetCenter())
  {
    place["center"] = List(*camera.GetCenter());
  }
  for (const auto& one : cases)
  {
    root["datasets"].append(GetDataSetState(*one));
  }
  std::ofstream stream(file);
  stream << zylViewState::ToText(root) << '\n';
  stream.close();
  return stream.good();
}
