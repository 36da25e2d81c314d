#include "Display/zylBlockGroups.h"

#include "Display/zylBlockFlags.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylScriptFilter.h"
#include "Settings/zylChangeList.h"
#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"
#include "zylPipeline.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <iterator>
#include <set>

#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

namespace {
constexpr unsigned int NoBlock = 0xFFFFFFFF; // of an empty tree

//--------------------------------------------------------------------------------------------------
bool IsOn(zylPropertyCollection* settings, const char* name)
{
  return settings->Has(name) && settings->GetBool(name);
}

//--------------------------------------------------------------------------------------------------
// What is taken out of a list of ids and what is put in; all ascending.
struct Exchange
{
  std::vector<int> Out, In;

  void Apply(std::vector<int>& ids) const
  {
    std::vector<int> rest;
    std::set_difference(
      ids.begin(), ids.end(), this->Out.begin(), this->Out.end(), std::back_inserter(rest));
    ids.clear();
    std::set_union(
      rest.begin(), rest.end(), this->In.begin(), this->In.end(), std::back_inserter(ids));
  }
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylBlockGroups::zylBlockGroups(PipelineFactory newPipeline)
  : NewPipeline(newPipeline)
  , Changes(std::make_shared<zylChangeList>())
{
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::SetBlocks(const zylMultiBlockTree* tree)
{
  for (auto& [id, block] : this->Blocks)
  {
    block.IsLeaf = false;
    this->Changes->Add(id);
  }
  if (tree && tree->GetBlockIndex() != NoBlock)
  {
    const auto prototype = this->NewPipeline();
    this->AddBlocks(tree, prototype->GetProperties());
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::AddBlocks(const zylMultiBlockTree* node, zylPropertyCollection* defaults)
{
  if (node->GetIsPiece())
  {
    return;
  }
  const int id = static_cast<int>(node->GetBlockIndex());
  Block& block = this->Blocks[id];
  block.IsLeaf = node->IsLeaf();
  if (!block.Settings)
  {
    block.Settings = vtkSmartPointer<zylPropertyCollection>::New();
    block.Settings->DeepCopy(defaults);
    block.Settings->ReportChangesTo(this->Changes, id);
    this->Changes->Add(id);
  }
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    this->AddBlocks(node->GetChild(i), defaults);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::ClearBlocks()
{
  this->Blocks.clear();
  this->BlocksOf.clear();
  this->Shown.clear();
  this->Changes = std::make_shared<zylChangeList>(); // callers may keep the old settings
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBlockGroups::GetSettings(int id) const
{
  const auto found = this->Blocks.find(id);
  return found != this->Blocks.end() ? found->second.Settings.Get() : nullptr;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBlockGroups::GetBlocks() const
{
  std::vector<int> ids;
  for (const auto& block : this->Blocks)
  {
    ids.push_back(block.first);
  }
  return ids;
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::FollowSettings()
{
  std::map<vtkTypeUInt64, Exchange> moves;
  Exchange shown;
  std::set<vtkTypeUInt64> stale;
  for (const int id : this->Changes->Take())
  {
    Block& block = this->Blocks[id];
    const vtkTypeUInt64 hash = block.Settings->GetHashValue();
    const bool isShown =
      block.IsLeaf && IsOn(block.Settings, "Visibility") && !IsOn(block.Settings, "ForceHidden");
    if (!block.HasGroup || hash != block.Hash)
    {
      if (block.HasGroup)
      {
        moves[block.Hash].Out.push_back(id);
      }
      moves[hash].In.push_back(id);
    }
    if (isShown != block.IsShown)
    {
      (isShown ? shown.In : shown.Out).push_back(id);
      stale.insert(hash);
    }
    block.HasGroup = true;
    block.IsShown = isShown;
    block.Hash = hash;
  }
  shown.Apply(this->Shown);
  for (const auto& [hash, move] : moves)
  {
    move.Apply(this->BlocksOf[hash]);
    stale.insert(hash);
    if (this->BlocksOf[hash].empty())
    {
      this->BlocksOf.erase(hash);
    }
  }
  for (const vtkTypeUInt64 hash : stale)
  {
    const auto group = this->Groups.find(hash);
    if (group != this->Groups.end())
    {
      group->second.IsStale = true;
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylBlockGroups::Update(
  vtkSMSourceProxy* source, zylMultiBlockTree* tree, zylView* view, const ScriptFactory& makeScript)
{
  this->Regroup(view);
  for (const auto& [hash, blocks] : this->BlocksOf)
  {
    Group& group = this->Groups[hash];
    if (!group.Pipeline && !this->CreateGroup(group, source))
    {
      this->Groups.erase(hash); // every group has a pipeline
      return false;
    }
    if (group.IsStale)
    {
      this->UpdateSettings(group, hash, blocks);
    }
    zylPushScript(makeScript(group.Pipeline->GetProperties()), group.Script);
    group.Pipeline->SetBlockTree(tree);
    if (view)
    {
      group.Pipeline->Update(view);
    }
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::Regroup(zylView* view)
{
  std::map<vtkTypeUInt64, Group> unused;
  for (auto group = this->Groups.begin(); group != this->Groups.end();)
  {
    const auto next = std::next(group);
    if (this->BlocksOf.count(group->first) == 0)
    {
      unused.insert(this->Groups.extract(group));
    }
    group = next;
  }
  for (const auto& [hash, blocks] : this->BlocksOf)
  {
    if (unused.empty() || this->Groups.count(hash) > 0)
    {
      continue;
    }
    // Blocks that changed together keep their pipeline: only its settings change.
    const auto& sought = blocks;
    const auto same = std::find_if(unused.begin(), unused.end(),
      [&sought](const auto& candidate) { return candidate.second.Blocks == sought; });
    if (same != unused.end())
    {
      same->second.IsStale = true;
      this->Groups[hash] = std::move(same->second);
      unused.erase(same);
    }
  }
  for (auto& group : unused)
  {
    this->DropGroup(group.second, view);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylBlockGroups::CreateGroup(Group& group, vtkSMSourceProxy* source)
{
  group.Extract = zylBlockExtractor(source).Make();
  group.Script = zylScriptFilter(group.Extract).Make();
  if (!group.Extract || !group.Script)
  {
    zylUnregister(group.Script);
    zylUnregister(group.Extract);
    return false;
  }
  group.Pipeline = this->NewPipeline();
  group.Pipeline->SetDataSource(group.Script);
  group.Pipeline->SetKeepsLastVariable(false);
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::DropGroup(Group& group, zylView* view)
{
  if (group.Pipeline)
  {
    group.Pipeline->FreeResources(view);
    group.Pipeline->SetDataSource(nullptr);
  }
  zylUnregister(group.Script);
  zylUnregister(group.Extract);
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::UpdateSettings(
  Group& group, vtkTypeUInt64 hash, const std::vector<int>& blocks)
{
  // A block that has left the group is not drawn anyway. Taking it out of the stage as well would
  // process and upload every other block again, so that waits until it pays.
  const auto& extracted = group.Extracted;
  const bool covered =
    std::includes(extracted.begin(), extracted.end(), blocks.begin(), blocks.end());
  if (!covered || 2 * blocks.size() < extracted.size())
  {
    zylExtractBlocks(group.Extract, blocks);
    group.Extracted = blocks;
  }

  std::vector<int> pairs;
  pairs.reserve(2 * blocks.size());
  bool anyShown = false;
  for (const int id : blocks)
  {
    const bool shown = this->Blocks[id].IsShown;
    pairs.insert(pairs.end(), { id, shown ? 1 : 0 });
    anyShown = anyShown || shown;
  }
  zylPropertyCollection* target = group.Pipeline->GetProperties();
  if (group.Blocks.empty() || group.Hash != hash)
  {
    target->DeepCopy(this->Blocks[blocks.front()].Settings);
    group.Pipeline->RestoreProperties();
    group.Hash = hash;
  }
  target->Set("Visibility", anyShown);
  target->Set("ForceHidden", false);
  zylBlockFlags::Write(target, pairs);
  group.Blocks = blocks;
  group.IsStale = false;
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::FreeResources(zylView* view)
{
  for (auto& group : this->Groups)
  {
    this->DropGroup(group.second, view);
  }
  this->Groups.clear();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBlockGroups::GetColorVariableInformation(
  int id, const std::vector<int>& delivered) const
{
  zylPropertyCollection* settings = this->GetSettings(id);
  const auto group = settings ? this->Groups.find(settings->GetHashValue()) : this->Groups.end();
  if (group == this->Groups.end())
  {
    return nullptr;
  }
  std::vector<int> blocks;
  const std::vector<int>& members = group->second.Blocks;
  std::set_intersection(
    members.begin(), members.end(), delivered.begin(), delivered.end(), std::back_inserter(blocks));
  return group->second.Pipeline->GetColorVariableInformation(blocks);
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::AppendPipelines(std::vector<zylPipeline*>& pipelines) const
{
  for (const auto& group : this->Groups)
  {
    pipelines.push_back(group.second.Pipeline);
  }
}
