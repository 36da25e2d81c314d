#include "Display/zylBlockGroups.h"

#include "Display/zylBlockFlags.h"
#include "ParaView/zylBlockExtractor.h"
#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"
#include "zylPipeline.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <iterator>

#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

namespace {
constexpr unsigned int NoBlock = 0xFFFFFFFF; // of an empty tree
}

//--------------------------------------------------------------------------------------------------
bool zylBlockGroups::Block::IsShown() const
{
  const zylProperty* visible = this->Settings->GetProperty("Visibility");
  const zylProperty* hidden = this->Settings->GetProperty("ForceHidden");
  return this->IsLeaf && visible && visible->GetBool() && !(hidden && hidden->GetBool());
}

//--------------------------------------------------------------------------------------------------
zylBlockGroups::zylBlockGroups(PipelineFactory newPipeline)
  : NewPipeline(newPipeline)
{
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::SetBlocks(const zylMultiBlockTree* tree)
{
  for (auto& block : this->Blocks)
  {
    block.second.IsLeaf = false;
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
  Block& block = this->Blocks[static_cast<int>(node->GetBlockIndex())];
  block.IsLeaf = node->IsLeaf();
  if (!block.Settings)
  {
    block.Settings = vtkSmartPointer<zylPropertyCollection>::New();
    block.Settings->DeepCopy(defaults);
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
void zylBlockGroups::AppendShown(std::vector<int>& ids) const
{
  for (const auto& [id, block] : this->Blocks)
  {
    if (block.IsShown())
    {
      ids.push_back(id);
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylBlockGroups::Update(
  vtkSMSourceProxy* source, zylMultiBlockTree* tree, zylView* view, const ScriptFactory& makeScript)
{
  std::map<vtkTypeUInt64, std::vector<int>> blocksOf;
  for (const auto& [id, block] : this->Blocks)
  {
    blocksOf[block.Settings->GetHashValue()].push_back(id);
  }
  this->Regroup(blocksOf, view);
  for (const auto& [hash, blocks] : blocksOf)
  {
    Group& group = this->Groups[hash];
    if (!group.Pipeline && !this->CreateGroup(group, source))
    {
      this->Groups.erase(hash); // every group has a pipeline
      return false;
    }
    this->UpdateSettings(group, hash, blocks, makeScript);
    group.Pipeline->SetBlockTree(tree);
    if (view)
    {
      group.Pipeline->Update(view);
    }
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylBlockGroups::Regroup(
  const std::map<vtkTypeUInt64, std::vector<int>>& blocksOf, zylView* view)
{
  std::map<vtkTypeUInt64, Group> unused;
  for (auto group = this->Groups.begin(); group != this->Groups.end();)
  {
    const auto next = std::next(group);
    if (blocksOf.count(group->first) == 0)
    {
      unused.insert(this->Groups.extract(group));
    }
    group = next;
  }
  for (const auto& [hash, blocks] : blocksOf)
  {
    if (this->Groups.count(hash) > 0)
    {
      continue;
    }
    // Blocks that changed together keep their pipeline: only its settings change.
    const auto& sought = blocks;
    const auto same = std::find_if(unused.begin(), unused.end(),
      [&sought](const auto& candidate) { return candidate.second.Blocks == sought; });
    if (same != unused.end())
    {
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
  group.Script = zylProxyBuilder(source->GetSessionProxyManager(), "filters", "ProgrammableFilter")
                   .Input(group.Extract)
                   .Set("CopyArrays", 1)
                   .Make();
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
  Group& group, vtkTypeUInt64 hash, const std::vector<int>& blocks, const ScriptFactory& makeScript)
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
    const bool shown = this->Blocks[id].IsShown();
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

  vtkSMPropertyHelper(group.Script, "Script").Set(makeScript(target).c_str());
  group.Script->UpdateVTKObjects();
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
