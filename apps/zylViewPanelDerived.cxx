#include "zylViewPanelDerived.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewMessages.h"
#include "zylViewPanelSettings.h"

#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylPropertyCollection.h>

#include <imgui.h>

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylViewPanelDerived::GetChoices(zylViewCase& one)
{
  auto choices = one.GetBlocks().GetArrayNames();
  for (const std::string& name : one.GetDataSet()->GetDerivedPointVariableNames())
  {
    choices.push_back(name);
  }
  return choices;
}

//--------------------------------------------------------------------------------------------------
bool zylViewPanelDerived::DrawClips(zylRepresentation* representation, zylViewCase& one)
{
  if (!ImGui::TreeNode("Clips"))
  {
    return false;
  }
  bool changed = false;
  int removed = -1;
  for (int i = 0; i < representation->GetNumberOfClips(); ++i)
  {
    ImGui::PushID(i);
    if (ImGui::TreeNode("clip", "clip %d", i + 1))
    {
      removed = ImGui::Button("remove") ? i : removed;
      changed = zylEditSettings(
                  { representation->GetClipProperties(i) }, one.GetBlocks().GetArrayNames()) ||
        changed;
      ImGui::TreePop();
    }
    ImGui::PopID();
  }
  const int count = representation->GetNumberOfClips();
  if (removed >= 0)
  {
    for (int i = removed; i + 1 < count; ++i)
    {
      representation->GetClipProperties(i)->DeepCopy(representation->GetClipProperties(i + 1));
    }
    representation->SetNumberOfClips(count - 1);
    changed = true;
  }
  if (ImGui::Button("add a plane"))
  {
    double bounds[6];
    representation->SetNumberOfClips(count + 1);
    zylPropertyCollection* clip = representation->GetClipProperties(count);
    clip->Set("ClipMode", 2);
    if (representation->GetBounds(bounds))
    {
      const double center[3] = { (bounds[0] + bounds[1]) / 2.0, (bounds[2] + bounds[3]) / 2.0,
        (bounds[4] + bounds[5]) / 2.0 };
      clip->Set("PlaneCenter", center, 3);
    }
    changed = true;
  }
  ImGui::TreePop();
  return changed;
}

//--------------------------------------------------------------------------------------------------
bool zylViewPanelDerived::DrawDerived(zylViewCase& one, zylView* view, bool reveal)
{
  bool changed = false;
  if (ImGui::Button("add a cut"))
  {
    changed = Add(one, view, zylViewDerived::Shape::Cut);
  }
  ImGui::SameLine();
  if (ImGui::Button("add an isosurface"))
  {
    changed = Add(one, view, zylViewDerived::Shape::Isosurface) || changed;
  }
  const auto choices = zylViewPanelDerived::GetChoices(one);
  zylDerivedSurfaceRepresentation* removed = nullptr;
  for (const auto& entry : one.GetDerived().GetEntries())
  {
    zylDerivedSurfaceRepresentation* surface = entry.Representation;
    const bool selected = one.GetMarks().IsSelected(surface);
    if (selected && reveal)
    {
      ImGui::SetNextItemOpen(true);
      ImGui::SetScrollHereY();
    }
    const std::string name = entry.Kind + " " + std::to_string(entry.Number);
    if (!ImGui::TreeNodeEx(name.c_str(), selected ? ImGuiTreeNodeFlags_Selected : 0))
    {
      continue;
    }
    removed = ImGui::Button("remove") ? surface : removed;
    changed = zylEditSettings({ surface->GetProperties() }, choices) || changed;
    changed = zylViewPanelDerived::DrawClips(surface, one) || changed;
    for (const zylDerivedDisplay& display : zylGetDerivedDisplays())
    {
      if (ImGui::TreeNode(display.Name))
      {
        changed = zylEditSettings({ (surface->*display.Get)() }, choices) || changed;
        ImGui::TreePop();
      }
    }
    ImGui::TreePop();
  }
  if (removed != nullptr)
  {
    one.GetMarks().Forget(removed);
    one.GetDerived().Remove(removed, view);
    changed = true;
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
// Through the middle of the data, or of the values that color them.
bool zylViewPanelDerived::Add(zylViewCase& one, zylView* view, zylViewDerived::Shape shape)
{
  zylViewDerived wish;
  wish.Kind = shape;
  if (shape == zylViewDerived::Shape::Cut)
  {
    double b[6] = { 0, 0, 0, 0, 0, 0 };
    one.GetDataSet()->GetBounds(b);
    wish.Values = { (b[0] + b[1]) / 2.0, (b[2] + b[3]) / 2.0, (b[4] + b[5]) / 2.0, 1.0, 0.0, 0.0 };
  }
  else
  {
    const auto range = one.GetColorRange();
    wish.Variable = one.GetVariable();
    wish.Values = { (range[0] + range[1]) / 2.0 };
  }
  try
  {
    one.GetDerived().Add(wish, view);
    return true;
  }
  catch (const zylViewError& error)
  {
    zylSay(error.what());
    return false;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylViewPanelDerived::DrawVariables(zylViewCase& one)
{
  if (!ImGui::TreeNode("Variables"))
  {
    return false;
  }
  bool changed = false;
  for (const std::string& name : one.GetDataSet()->GetDerivedPointVariableNames())
  {
    ImGui::PushID(name.c_str());
    const bool remove = ImGui::SmallButton("remove");
    ImGui::SameLine();
    ImGui::TextWrapped(
      "%s = %s", name.c_str(), one.GetDataSet()->GetDerivedPointVariableExpression(name).c_str());
    if (remove)
    {
      one.RemoveVariable(name);
      changed = true;
    }
    ImGui::PopID();
  }
  ImGui::InputTextWithHint("##name", "name", this->Name, sizeof this->Name);
  const bool entered = ImGui::InputTextWithHint("##expression", "expression, as 0.5 * p + 1",
    this->Expression, sizeof this->Expression, ImGuiInputTextFlags_EnterReturnsTrue);
  if ((ImGui::Button("define and color") || entered) && this->Name[0] != '\0' &&
    this->Expression[0] != '\0')
  {
    const std::string failure = one.DefineVariable(this->Name, this->Expression);
    if (!failure.empty())
    {
      zylSay(failure);
    }
    changed = true;
  }
  ImGui::TreePop();
  return changed;
}
