#include "zylViewPanelSettings.h"

#include <algorithm>
#include <cmath>

#include <zylCore.h>
#include <zylProperty.h>
#include <zylPropertyCollection.h>

#include <imgui.h>

namespace {
constexpr unsigned int Few = 6; // numbers that fit in a line
constexpr std::size_t LongText = 512;

bool EndsWith(const std::string& text, const std::string& end)
{
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool EditText(const std::string& name, std::string& value, const std::vector<std::string>& arrays)
{
  if (name == "ColorMapName")
  {
    static const std::vector<std::string> maps = zylCore::GetAvailableColorMapNames();
    return zylEditChoice(name.c_str(), value, maps);
  }
  if (EndsWith(name, "Variable") || EndsWith(name, "VariableName"))
  {
    return zylEditChoice(name.c_str(), value, arrays);
  }
  char text[LongText] = "";
  value.copy(text, LongText - 1);
  const bool changed =
    ImGui::InputText(name.c_str(), text, LongText, ImGuiInputTextFlags_EnterReturnsTrue);
  value = changed ? text : value;
  return changed;
}

bool EditNumbers(const std::string& name, std::vector<double>& values)
{
  const auto count = static_cast<int>(values.size());
  if (count == 3 && EndsWith(name, "Color"))
  {
    float color[3];
    std::transform(values.begin(), values.end(), color, [](double v) { return float(v); });
    const bool changed = ImGui::ColorEdit3(name.c_str(), color);
    if (changed)
    {
      std::copy(color, color + 3, values.begin());
    }
    return changed;
  }
  double size = 0.0;
  for (const double value : values)
  {
    size = std::max(size, std::isfinite(value) ? std::abs(value) : 0.0);
  }
  const auto speed = static_cast<float>(size > 0.0 ? 0.005 * size : 0.005);
  return ImGui::DragScalarN(name.c_str(), ImGuiDataType_Double, values.data(), count, speed);
}

// Whether the user changed this property of the first collection, and so of all.
bool EditProperty(const std::vector<zylPropertyCollection*>& all, const std::string& name,
  const std::vector<std::string>& arrays)
{
  zylPropertyCollection* first = all.front();
  zylProperty* property = first->GetProperty(name);
  const unsigned int count = property->GetNumberOfElements();
  if (count == 0 || count > Few)
  {
    return false; // lists of blocks and points
  }
  const auto set = [&](const auto* values) {
    for (zylPropertyCollection* settings : all)
    {
      settings->Set(name, values, count);
    }
    return true;
  };
  switch (property->GetPropertyType())
  {
    case zylProperty::Bool: {
      bool value = first->GetBool(name);
      return count == 1 && ImGui::Checkbox(name.c_str(), &value) && set(&value);
    }
    case zylProperty::Int: {
      std::vector<int> values(first->GetIntElements(name), first->GetIntElements(name) + count);
      return ImGui::InputScalarN(
               name.c_str(), ImGuiDataType_S32, values.data(), static_cast<int>(count)) &&
        set(values.data());
    }
    case zylProperty::Double: {
      const double* own = first->GetDoubleElements(name);
      std::vector<double> values(own, own + count);
      return EditNumbers(name, values) && set(values.data());
    }
    case zylProperty::String: {
      std::string value = first->GetString(name);
      return count == 1 && EditText(name, value, arrays) && set(&value);
    }
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylEditChoice(const char* label, std::string& value, const std::vector<std::string>& choices)
{
  bool changed = false;
  if (ImGui::BeginCombo(label, value.c_str()))
  {
    for (const std::string& choice : choices)
    {
      if (ImGui::Selectable(choice.empty() ? "(none)" : choice.c_str(), choice == value))
      {
        value = choice;
        changed = true;
      }
    }
    ImGui::EndCombo();
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
bool zylEditSettings(
  const std::vector<zylPropertyCollection*>& all, const std::vector<std::string>& arrays)
{
  bool changed = false;
  for (const std::string& name : all.front()->GetPropertyNames())
  {
    changed = EditProperty(all, name, arrays) || changed;
  }
  return changed;
}
