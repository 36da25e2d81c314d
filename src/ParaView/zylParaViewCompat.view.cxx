// What differs in views and in what they show.
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylParaViewCompat.version.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMStringVectorProperty.h>

#if ZYL_PARAVIEW_513
#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#endif

namespace {
using zylParaView::BlockVisibility;

#if ZYL_PARAVIEW_59

// Blocks without a pair take over what the node above them has, so the root hides all others.
std::vector<int> VisibilityPairs(const BlockVisibility& blocks)
{
  std::vector<int> pairs = { 0, 0 };
  for (const auto& leaf : blocks.Leaves)
  {
    if (leaf.Visible)
    {
      pairs.insert(pairs.end(), { static_cast<int>(leaf.Id), 1 });
    }
  }
  return pairs;
}

#else

std::string Text(unsigned int id)
{
  return std::to_string(id);
}

std::vector<std::string> RangeSelectors(
  const std::vector<std::pair<unsigned int, unsigned int>>& ranges)
{
  std::vector<std::string> selectors;
  for (const auto& range : ranges)
  {
    selectors.push_back(range.first == range.second
        ? "//*[@cid=" + Text(range.first) + "]"
        : "//*[@cid>=" + Text(range.first) + " and @cid<=" + Text(range.second) + "]");
  }
  return selectors;
}

// Each selector costs a walk over all nodes, so every one names many leaves; the range in front
// spares most nodes the search in the list.
std::vector<std::string> ListSelectors(const std::vector<BlockVisibility::Leaf>& leaves)
{
  constexpr std::size_t perSelector = 128;
  std::vector<unsigned int> ids;
  for (const auto& leaf : leaves)
  {
    if (leaf.Visible)
    {
      ids.push_back(leaf.Id);
    }
  }
  std::vector<std::string> selectors;
  for (std::size_t begin = 0; begin < ids.size(); begin += perSelector)
  {
    const std::size_t end = std::min(ids.size(), begin + perSelector);
    std::string list;
    for (std::size_t i = begin; i < end; ++i)
    {
      list += " " + Text(ids[i]);
    }
    selectors.push_back("//*[@cid>=" + Text(ids[begin]) + " and @cid<=" + Text(ids[end - 1]) +
      "][contains('" + list + " ',concat(' ',@cid,' '))]");
  }
  return selectors;
}

// Selectors of the hierarchy that together name exactly the visible leaves. A selector takes whole
// subtrees, and a range of ids also catches the inner nodes in between: a run of visible leaves is
// split at every inner node whose subtree reaches beyond the run.
std::vector<std::string> VisibilitySelectors(const BlockVisibility& blocks)
{
  const auto& leaves = blocks.Leaves;
  const auto visible = [](const BlockVisibility::Leaf& leaf) { return leaf.Visible; };
  if (std::all_of(leaves.begin(), leaves.end(), visible))
  {
    return { "/" };
  }
  std::vector<std::pair<unsigned int, unsigned int>> ranges;
  const auto add = [&ranges](
                     unsigned int first, unsigned int last) { ranges.emplace_back(first, last); };
  std::size_t inner = 0;
  for (std::size_t begin = 0; begin < leaves.size();)
  {
    if (!leaves[begin].Visible)
    {
      ++begin;
      continue;
    }
    std::size_t end = begin;
    while (end < leaves.size() && leaves[end].Visible)
    {
      ++end;
    }
    unsigned int first = leaves[begin].Id;
    std::size_t from = begin;
    while (inner < blocks.InnerNodes.size() && blocks.InnerNodes[inner].Id < first)
    {
      ++inner;
    }
    for (; inner < blocks.InnerNodes.size() && blocks.InnerNodes[inner].Id < leaves[end - 1].Id;
         ++inner)
    {
      const auto& node = blocks.InnerNodes[inner];
      if (node.EndLeaf > end && node.FirstLeaf > from)
      {
        add(first, leaves[node.FirstLeaf - 1].Id);
        from = node.FirstLeaf;
        first = leaves[from].Id;
      }
    }
    add(first, leaves[end - 1].Id);
    begin = end;
  }
  return ranges.size() <= 8 ? RangeSelectors(ranges) : ListSelectors(leaves);
}

#endif
} // namespace

namespace zylParaView {

//--------------------------------------------------------------------------------------------------
void SetBlockVisibility(vtkSMProxy* representation, const BlockVisibility& blocks)
{
#if ZYL_PARAVIEW_59
  const std::vector<int> values = VisibilityPairs(blocks);
  vtkSMPropertyHelper helper(representation, "BlockVisibility");
  helper.SetNumberOfElements(static_cast<unsigned int>(values.size()));
  helper.Set(values.data(), static_cast<unsigned int>(values.size()));
#else
  const std::vector<std::string> selectors = VisibilitySelectors(blocks);
  auto* property =
    vtkSMStringVectorProperty::SafeDownCast(representation->GetProperty("BlockSelectors"));
  property->SetElements(selectors); // element by element would be quadratic
  if (vtkSMProperty* assembly = representation->GetProperty("Assembly"))
  {
    vtkSMPropertyHelper(assembly).Set("Hierarchy"); // whose paths they are
  }
#endif
}

//--------------------------------------------------------------------------------------------------
void ResetCamera(vtkSMRenderViewProxy* view, const double* bounds)
{
#if ZYL_PARAVIEW_59
  if (bounds)
  {
    view->ResetCamera(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
  }
  else
  {
    view->ResetCamera();
  }
#else
  if (bounds)
  {
    view->ResetCamera(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5], false);
  }
  else
  {
    view->ResetCamera(false);
  }
#endif
}

//--------------------------------------------------------------------------------------------------
void RemoveCameraWidget(vtkSMRenderViewProxy* view)
{
#if ZYL_PARAVIEW_513
  auto* client = vtkPVRenderView::SafeDownCast(view->GetClientSideObject());
  vtkRendererCollection* renderers = client ? client->GetRenderWindow()->GetRenderers() : nullptr;
  vtkCollectionSimpleIterator at;
  if (renderers)
  {
    renderers->InitTraversal(at);
    while (vtkRenderer* renderer = renderers->GetNextRenderer(at))
    {
      if (renderer != client->GetRenderer(vtkPVRenderView::DEFAULT_RENDERER) &&
        renderer != client->GetRenderer(vtkPVRenderView::NON_COMPOSITED_RENDERER) &&
        renderer->VisibleActorCount() == 0) // the orientation axes have some
      {
        renderer->DrawOff();
      }
    }
  }
#else
  static_cast<void>(view);
#endif
}

//--------------------------------------------------------------------------------------------------
void UseOwnBackground(vtkSMRenderViewProxy* view)
{
  if (view->GetProperty("UseColorPaletteForBackground"))
  {
    vtkSMPropertyHelper(view, "UseColorPaletteForBackground").Set(0);
  }
}

} // namespace zylParaView
