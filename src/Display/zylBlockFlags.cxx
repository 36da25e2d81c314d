#include "Display/zylBlockFlags.h"

#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <utility>

namespace {
constexpr char Setting[] = "BlockVisibility";

//--------------------------------------------------------------------------------------------------
// The pairs in the order of their ids; of equal ids the last one counts.
class Lookup
{
public:
  Lookup(const int* pairs, std::size_t count)
  {
    this->Flags.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
      this->Flags.emplace_back(pairs[2 * i], pairs[2 * i + 1] != 0);
    }
    const auto byId = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(this->Flags.begin(), this->Flags.end(), byId))
    {
      std::stable_sort(this->Flags.begin(), this->Flags.end(), byId);
    }
  }

  // The flag of a node; `inherited` is that of its parent.
  bool Get(unsigned int id, bool inherited) const
  {
    const auto after = std::upper_bound(this->Flags.begin(), this->Flags.end(),
      static_cast<int>(id), [](int value, const auto& flag) { return value < flag.first; });
    const bool own = after != this->Flags.begin() && (after - 1)->first == static_cast<int>(id);
    return own ? (after - 1)->second : inherited;
  }

private:
  std::vector<std::pair<int, bool>> Flags;
};

//--------------------------------------------------------------------------------------------------
void Collect(const zylMultiBlockTree* node, const Lookup& lookup, bool inherited,
  zylParaView::BlockVisibility& result)
{
  const unsigned int id = node->GetBlockIndex();
  const bool flag = lookup.Get(id, inherited);
  if (node->IsLeaf())
  {
    result.Leaves.push_back({ id, flag });
    return;
  }
  const std::size_t slot = result.InnerNodes.size();
  result.InnerNodes.push_back({ id, result.Leaves.size(), 0 });
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    Collect(node->GetChild(i), lookup, flag, result);
  }
  result.InnerNodes[slot].EndLeaf = result.Leaves.size();
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylIsLeaf(const std::vector<vtkZYLBlockInformation::Node>& nodes, std::size_t i)
{
  return nodes[i].NumberOfChildren == 0 || nodes[i + 1].IsPiece;
}

//--------------------------------------------------------------------------------------------------
zylBlockFlags::zylBlockFlags(const zylProperty* setting)
{
  if (setting && setting->GetPropertyType() == zylProperty::Int)
  {
    this->Pairs = setting->GetIntElements();
    this->Count = setting->GetNumberOfElements() / 2;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylBlockFlags::AnyVisible() const
{
  for (std::size_t i = 0; i < this->Count; ++i)
  {
    if (this->Pairs[2 * i + 1] != 0)
    {
      return true;
    }
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBlockFlags::GetBlocks() const
{
  std::vector<int> ids(this->Count);
  for (std::size_t i = 0; i < this->Count; ++i)
  {
    ids[i] = this->Pairs[2 * i];
  }
  return ids;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBlockFlags::GetVisibleBlocks() const
{
  std::vector<int> ids;
  for (std::size_t i = 0; i < this->Count; ++i)
  {
    if (this->Pairs[2 * i + 1] != 0)
    {
      ids.push_back(this->Pairs[2 * i]);
    }
  }
  return ids;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBlockFlags::GetPairs() const
{
  return { this->Pairs, this->Pairs + 2 * this->Count };
}

//--------------------------------------------------------------------------------------------------
zylParaView::BlockVisibility zylBlockFlags::Resolve(const zylMultiBlockTree* tree) const
{
  zylParaView::BlockVisibility result;
  if (tree)
  {
    Collect(tree, Lookup(this->Pairs, this->Count), false, result);
    return result;
  }
  for (std::size_t i = 0; i < this->Count; ++i)
  {
    const auto id = static_cast<unsigned int>(this->Pairs[2 * i]);
    result.Leaves.push_back({ id, this->Pairs[2 * i + 1] != 0 });
  }
  return result;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBlockFlags::GetVisibleLeaves(const zylMultiBlockTree* tree) const
{
  std::vector<int> ids;
  for (const auto& leaf : this->Resolve(tree).Leaves)
  {
    if (leaf.Visible)
    {
      ids.push_back(static_cast<int>(leaf.Id));
    }
  }
  return ids;
}

//--------------------------------------------------------------------------------------------------
std::vector<bool> zylBlockFlags::Resolve(
  const std::vector<vtkZYLBlockInformation::Node>& nodes) const
{
  const Lookup lookup(this->Pairs, this->Count);
  std::vector<bool> flags(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) // parents stand before their children
  {
    const int parent = nodes[i].Parent;
    flags[i] = lookup.Get(static_cast<unsigned int>(i), parent >= 0 && flags[parent]);
  }
  return flags;
}

//--------------------------------------------------------------------------------------------------
void zylBlockFlags::Write(zylPropertyCollection* settings, const std::vector<int>& pairs)
{
  zylProperty* property = settings->GetProperty(Setting);
  if (!property)
  {
    property = settings->MakeInt(Setting);
    property->SetIncludeInHash(false);
  }
  const auto count = static_cast<unsigned int>(pairs.size());
  property->SetNumberOfElements(count);
  property->SetElements(pairs.data(), count);
}
