#include "zylViewState.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewExpressions.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewSettings.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylJSONSerializer.h>
#include <zylPropertyCollection.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkCamera.h>

namespace {
bool FromJson(const Json::Value& json, zylPropertyCollection* settings)
{
  return settings != nullptr &&
    zylJSONSerializer::Deserialize(zylViewState::ToText(json), settings);
}

// The member of that name, or null; never throws, whatever the file holds.
const Json::Value& Member(const Json::Value& json, const char* name)
{
  return json.isObject() ? json[name] : Json::Value::nullSingleton();
}

template <std::size_t N>
bool Read(const Json::Value& json, std::array<double, N>& values)
{
  if (!json.isArray() || json.size() != N ||
    !std::all_of(json.begin(), json.end(), [](const Json::Value& v) { return v.isNumeric(); }))
  {
    return false;
  }
  std::transform(
    json.begin(), json.end(), values.begin(), [](const Json::Value& v) { return v.asDouble(); });
  return true;
}

std::string ReadText(const Json::Value& json)
{
  return json.isString() ? json.asString() : "";
}

int ReadCount(const Json::Value& json, int usual, int least, int most)
{
  return json.isInt() && json.asInt() >= least && json.asInt() <= most ? json.asInt() : usual;
}

bool PutClips(const Json::Value& list, zylRepresentation* representation)
{
  const auto count = list.isArray() ? static_cast<int>(list.size()) : 0;
  representation->SetNumberOfClips(count);
  bool good = true;
  for (int i = 0; i < count; ++i)
  {
    good = FromJson(list[i], representation->GetClipProperties(i)) && good;
  }
  return good;
}

} // namespace

//--------------------------------------------------------------------------------------------------
zylViewState::zylViewState(const std::string& file)
  : File(file)
{
  std::ifstream stream(file);
  Json::CharReaderBuilder builder;
  std::string errors;
  bool read = false;
  try
  {
    read = stream.good() && Json::parseFromStream(builder, stream, &this->Root, &errors);
  }
  catch (const Json::Exception&)
  {
    read = false; // nested too deeply
  }
  const Json::Value& layout = Member(this->Root, "zylview");
  if (!read || !layout.isInt() || this->GetNumberOfDataSets() == 0)
  {
    throw zylViewError(zylViewBadFile,
      "cannot read '" + file + "': " + (stream.is_open() ? "it is no scene" : "No such file"));
  }
  if (layout.asInt() > Layout)
  {
    this->Skip("what a later version has written there");
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewState::Skip(const std::string& what) const
{
  zylSay(this->File + ": " + what + " is skipped");
}

//--------------------------------------------------------------------------------------------------
void zylViewState::GetWindow(zylViewOptions& options) const
{
  const Json::Value& window = Member(this->Root, "window");
  std::array<double, 2> size{};
  std::array<double, 3> top{}, bottom{};
  const Json::Value& background = Member(window, "background");
  if (options.Given.count("--size") == 0 && Read(Member(window, "size"), size))
  {
    options.Width = static_cast<int>(std::clamp(size[0], 1.0, 16384.0));
    options.Height = static_cast<int>(std::clamp(size[1], 1.0, 16384.0));
  }
  if (options.Given.count("--samples") == 0)
  {
    options.Samples = ReadCount(Member(window, "samples"), options.Samples, 1, 8);
  }
  if (options.Given.count("--background") == 0 && background.isArray() && background.size() == 2 &&
    Read(background[0], top) && Read(background[1], bottom))
  {
    options.BackgroundTop = top;
    options.BackgroundBottom = bottom;
  }
  if (options.Given.count("--connect") == 0)
  {
    options.Connect = ReadText(Member(this->Root, "connect"));
    if (!options.Connect.empty())
    {
      zylSay(this->File + ": connects to " + options.Connect);
    }
  }
  const Json::Value& time = Member(this->Root, "time");
  if (time.isNumeric() && !options.Time)
  {
    options.Time = time.asDouble();
  }
  Read(Member(Member(this->Root, "camera"), "upright"), options.Up);
}

//--------------------------------------------------------------------------------------------------
std::string zylViewState::GetServer() const
{
  return ReadText(Member(this->Root, "connect"));
}

//--------------------------------------------------------------------------------------------------
std::size_t zylViewState::GetNumberOfDataSets() const
{
  const Json::Value& list = Member(this->Root, "datasets");
  return list.isArray() ? list.size() : 0;
}

//--------------------------------------------------------------------------------------------------
zylViewOptions zylViewState::GetDataSet(std::size_t index, const zylViewOptions& options) const
{
  const Json::Value& json = Member(this->Root, "datasets")[static_cast<int>(index)];
  zylViewOptions own = options;
  own.Restored = own.Plain = true;
  for (const Json::Value& file : Member(json, "files"))
  {
    if (options.Files.empty() && file.isString())
    {
      own.Files.push_back(file.asString());
      zylSay(this->File + ": reads " + file.asString());
    }
  }
  const std::string reader = ReadText(Member(json, "reader"));
  const auto slash = reader.find('/');
  if (slash != std::string::npos)
  {
    own.ReaderGroup = reader.substr(0, slash);
    own.ReaderName = reader.substr(slash + 1);
    zylSay(this->File + ": with " + reader);
  }
  const Json::Value& expressions = Member(json, "expressions");
  for (const std::string& name :
    expressions.isObject() ? expressions.getMemberNames() : std::vector<std::string>())
  {
    const std::string expression = ReadText(expressions[name]);
    const std::string beyond = options.Trust ? "" : zylFindBeyondArithmetic(expression);
    if (beyond.empty())
    {
      own.Definitions.emplace_back(name, expression);
      continue;
    }
    this->Skip("the variable '" + name + "', which has " + beyond + " (--trust runs it),");
  }
  const Json::Value& colors = Member(json, "colors");
  std::array<double, 2> range{};
  own.Array = ReadText(Member(colors, "array"));
  own.DirectColors = Member(colors, "direct").isBool() && Member(colors, "direct").asBool();
  if (Member(colors, "fixed").isBool() && Member(colors, "fixed").asBool() &&
    Read(Member(colors, "range"), range))
  {
    own.Range = range;
  }
  for (const Json::Value& derived : Member(json, "derived"))
  {
    const std::string kind = ReadText(Member(derived, "kind"));
    const auto& forms = zylGetDerivedForms();
    const auto form = std::find_if(
      forms.begin(), forms.end(), [&kind](const auto& known) { return kind == known.Kind; });
    zylViewDerived wish;
    wish.Kind = form == forms.end() ? wish.Kind : form->Shape;
    own.Derived.push_back(wish);
    if (form == forms.end())
    {
      own.Derived.pop_back();
      this->Skip("something derived, of the kind '" + kind + "',");
    }
  }
  return own;
}

//--------------------------------------------------------------------------------------------------
void zylViewState::RestoreDataSet(std::size_t index, zylViewCase& target) const
{
  const Json::Value& json = Member(this->Root, "datasets")[static_cast<int>(index)];
  if (!FromJson(Member(json, "settings"), target.GetDataSet()->GetProperties()))
  {
    this->Skip("a part of a dataset's settings");
  }
  target.GetDataSet()->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewState::RestoreDisplays(std::size_t index, zylViewCase& target) const
{
  const Json::Value& json = Member(this->Root, "datasets")[static_cast<int>(index)];
  bool complete = true;
  std::set<unsigned int> known;
  for (const zylBlockKind& kind : zylGetBlockKinds())
  {
    for (const Json::Value& group : Member(Member(json, "blocks"), kind.Name))
    {
      const std::string text = zylViewState::ToText(Member(group, "settings"));
      for (const Json::Value& block : Member(group, "blocks"))
      {
        zylPropertyCollection* settings =
          block.isInt() ? (target.GetBoundary()->*kind.Get)(block.asInt()) : nullptr;
        complete =
          settings != nullptr && zylJSONSerializer::Deserialize(text, settings) && complete;
        if (settings != nullptr)
        {
          known.insert(static_cast<unsigned int>(block.asInt()));
        }
      }
    }
  }
  target.SetKnownBlocks(known);
  complete = PutClips(Member(json, "clips"), target.GetBoundary()) && complete;
  // What is of an unknown kind has no entry.
  auto entry = target.GetDerived().GetEntries().begin();
  const auto end = target.GetDerived().GetEntries().end();
  for (const Json::Value& derived : Member(json, "derived"))
  {
    if (entry == end || entry->Kind != ReadText(Member(derived, "kind")))
    {
      continue;
    }
    zylDerivedSurfaceRepresentation* representation = (entry++)->Representation;
    complete = FromJson(Member(derived, "settings"), representation->GetProperties()) && complete;
    for (const zylDerivedDisplay& display : zylGetDerivedDisplays())
    {
      complete = FromJson(Member(Member(derived, "displays"), display.Name),
                   (representation->*display.Get)()) &&
        complete;
    }
    complete = PutClips(Member(derived, "clips"), representation) && complete;
    if (Member(derived, "selected").isBool() && Member(derived, "selected").asBool())
    {
      target.GetMarks().Select(representation);
    }
  }
  for (const Json::Value& block : Member(json, "selected"))
  {
    if (block.isInt() && target.GetBoundary()->GetSurfaceProperties(block.asInt()) != nullptr)
    {
      target.GetMarks().Select(static_cast<unsigned int>(block.asInt()));
    }
  }
  target.GetMarks().Apply(target);
  std::array<double, 2> range{};
  if (Read(Member(Member(json, "colors"), "range"), range))
  {
    target.TakeColorRange(range);
  }
  if (!complete)
  {
    this->Skip("a part of the settings of '" + target.GetOptions().Files.front() + "'");
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewState::RestoreView(zylView* view, zylViewCamera& camera) const
{
  const Json::Value& window = Member(this->Root, "window");
  const bool complete = FromJson(Member(window, "view"), view->GetProperties()) &&
    FromJson(Member(window, "lights"), view->GetLightKitProperties());
  view->Update();
  const Json::Value& place = Member(this->Root, "camera");
  std::array<double, 3> position{}, focus{}, up{};
  const Json::Value &angle = Member(place, "angle"), &scale = Member(place, "scale"),
                    &parallel = Member(place, "parallel");
  if (!Read(Member(place, "position"), position) || !Read(Member(place, "focus"), focus) ||
    !Read(Member(place, "up"), up) || !angle.isNumeric() || !scale.isNumeric() ||
    !parallel.isBool())
  {
    this->Skip("the camera");
    return;
  }
  vtkCamera* eye = camera.Get();
  eye->SetPosition(position.data());
  eye->SetFocalPoint(focus.data());
  eye->SetViewUp(up.data());
  eye->SetViewAngle(angle.asDouble());
  eye->SetParallelProjection(parallel.asBool());
  eye->SetParallelScale(scale.asDouble());
  if (Read(Member(place, "center"), position))
  {
    camera.SetCenter(position);
  }
  camera.Changed();
  if (!complete)
  {
    this->Skip("a part of the view's settings");
  }
}
