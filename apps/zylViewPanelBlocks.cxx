#include "zylViewPanelBlocks.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"
#include "zylViewPanelDerived.h"
#include "zylViewPanelSettings.h"
#include "zylViewSettings.h"

#include <algorithm>

#include <zylBoundaryRepresentation.h>
#include <zylPropertyCollection.h>

#include <imgui.h>

namespace {
constexpr float TreeHeight = 200.0f;

zylPropertyCollection* Surface(zylViewCase& one, unsigned int block)
{
  return one.GetBoundary()->GetSurfaceProperties(static_cast<int>(block));
}
// To the first selected block.
void ScrollTo(const std::vector<const zylViewBlock*>& shown, const zylViewMarks& marks)
{
  const auto selected = [&marks](const zylViewBlock* block) {
    return block->Leaf && marks.GetBlocks().count(block->Id) > 0;
  };
  const auto place = std::find_if(shown.begin(), shown.end(), selected);
  if (place != shown.end())
  {
    const auto row = static_cast<float>(place - shown.begin());
    ImGui::SetScrollY(row * ImGui::GetFrameHeightWithSpacing() - TreeHeight / 2.0f);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylViewPanelBlocks::DrawTree(zylViewCase& one, bool reveal)
{
  bool changed = false;
  ImGui::InputTextWithHint("##search", "search", this->Search, sizeof this->Search);
  std::vector<const zylViewBlock*> shown;
  for (const zylViewBlock& block : one.GetBlocks().GetBlocks())
  {
    if (block.Name.find(this->Search) != std::string::npos)
    {
      shown.push_back(&block);
    }
  }
  ImGui::BeginChild("tree", ImVec2(0.0f, TreeHeight), true);
  zylViewMarks& marks = one.GetMarks();
  if (reveal)
  {
    ScrollTo(shown, marks);
  }
  ImGuiListClipper clipper; // of thousands of blocks those that are in sight
  clipper.Begin(static_cast<int>(shown.size()));
  while (clipper.Step())
  {
    for (int i = clipper.DisplayStart; i < clipper.DisplayEnd; ++i)
    {
      const zylViewBlock& block = *shown[i];
      const auto isVisible = [&one](unsigned int leaf) {
        return Surface(one, leaf)->GetBool("Visibility");
      };
      bool visible =
        !block.Leaves.empty() && std::all_of(block.Leaves.begin(), block.Leaves.end(), isVisible);
      ImGui::PushID(static_cast<int>(block.Id));
      ImGui::SetCursorPosX(ImGui::GetCursorPosX() + 12.0f * block.Depth + 1.0f);
      if (ImGui::Checkbox("##visible", &visible))
      {
        for (const unsigned int leaf : block.Leaves)
        {
          Surface(one, leaf)->Set("Visibility", visible);
        }
        changed = true;
      }
      ImGui::SameLine();
      const bool selected = !block.Leaves.empty() &&
        std::all_of(block.Leaves.begin(), block.Leaves.end(),
          [&marks](unsigned int leaf) { return marks.GetBlocks().count(leaf) > 0; });
      if (ImGui::Selectable(block.Name.c_str(), selected))
      {
        if (!ImGui::GetIO().KeyCtrl)
        {
          marks.Clear();
        }
        for (const unsigned int leaf : block.Leaves)
        {
          marks.Select(leaf);
        }
        marks.Apply(one);
        changed = true;
      }
      ImGui::PopID();
    }
  }
  ImGui::EndChild();
  return changed;
}

//--------------------------------------------------------------------------------------------------
bool zylViewPanelBlocks::DrawSettings(zylViewCase& one)
{
  const auto& selected = one.GetMarks().GetBlocks();
  if (selected.empty())
  {
    ImGui::TextUnformatted("Select a block, here or in the picture.");
    return false;
  }
  bool changed = false;
  const auto arrays = zylViewPanelDerived::GetChoices(one);
  const std::string what = selected.size() == 1 ? "block " + std::to_string(*selected.begin())
                                                : std::to_string(selected.size()) + " blocks";
  ImGui::TextUnformatted(("Settings of " + what).c_str());
  for (const zylBlockKind& kind : zylGetBlockKinds())
  {
    if (ImGui::TreeNode(kind.Name))
    {
      std::vector<zylPropertyCollection*> all;
      for (const unsigned int block : selected)
      {
        all.push_back((one.GetBoundary()->*kind.Get)(static_cast<int>(block)));
      }
      all.erase(std::remove(all.begin(), all.end(), nullptr), all.end());
      changed = (!all.empty() && zylEditSettings(all, arrays)) || changed;
      ImGui::TreePop();
    }
  }
  return changed;
}
