#include "zylBoundaryRepresentation.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylArrayInformation.h"
#include "zylContourPipeline.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylMeshLinePipeline.h"
#include "zylMultiBlockTree.h"
#include "zylMultiClip.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

#include <algorithm>
#include <set>

#include <vtkBoundingBox.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylBoundaryRepresentation);

#define zylScope(name) vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, name)

namespace {
constexpr char BlockVisibility[] = "BlockVisibility";
constexpr unsigned int NoBlock = 0xFFFFFFFF;

enum KindIndex
{
  Surface,
  Contour,
  FeatureLine,
  MeshLine,
  VectorGlyph
};

template <class Pipeline>
vtkSmartPointer<zylPipeline> NewPipeline()
{
  return vtkSmartPointer<Pipeline>::New();
}

bool IsShown(zylPropertyCollection* settings)
{
  return settings->GetBool("Visibility") && !settings->GetBool("ForceHidden");
}

// Give an int property these elements; its modification time tells whether that was news.
void SetInts(zylPropertyCollection* collection, const char* name, const std::vector<int>& values)
{
  zylProperty* property = collection->GetProperty(name);
  const auto count = static_cast<unsigned int>(values.size());
  property->SetNumberOfElements(count);
  property->SetElements(values.data(), count);
}

std::vector<int> MakePairs(const std::vector<int>& ids)
{
  std::vector<int> pairs;
  for (const int id : ids)
  {
    pairs.insert(pairs.end(), { id, 1 });
  }
  return pairs;
}

std::vector<int> FlaggedBlocks(zylPropertyCollection* collection)
{
  std::vector<int> ids;
  zylProperty* pairs = collection->GetProperty(BlockVisibility);
  for (unsigned int i = 0; i < pairs->GetNumberOfElements() / 2; ++i)
  {
    if (pairs->GetIntElement(2 * i + 1) != 0)
    {
      ids.push_back(pairs->GetIntElement(2 * i));
    }
  }
  return ids;
}

// The stage that delivers whole blocks by flat index without changing any index.
zylProxyBuilder BlockExtractor(vtkSMSourceProxy* input)
{
  return zylProxyBuilder(input->GetSessionProxyManager(), "filters", "ExtractBlock")
    .Input(input)
    .Set("PruneOutput", 0)
    .Set("MaintainStructure", 1);
}

void SetBlockIndices(vtkSMSourceProxy* extract, const std::vector<int>& ids)
{
  vtkSMPropertyHelper helper(extract, "BlockIndices");
  helper.SetNumberOfElements(static_cast<unsigned int>(ids.size()));
  helper.Set(ids.data(), static_cast<unsigned int>(ids.size()));
  extract->UpdateVTKObjects();
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylBoundaryRepresentation::zylBoundaryRepresentation()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , HighlightPipeline(vtkSmartPointer<zylHighlightPipeline>::New())
{
  this->Kinds[Surface].NewPipeline = &NewPipeline<zylSurfacePipeline>;
  this->Kinds[Contour].NewPipeline = &NewPipeline<zylContourPipeline>;
  this->Kinds[FeatureLine].NewPipeline = &NewPipeline<zylFeatureLinePipeline>;
  this->Kinds[MeshLine].NewPipeline = &NewPipeline<zylMeshLinePipeline>;
  this->Kinds[VectorGlyph].NewPipeline = &NewPipeline<zylVectorGlyphPipeline>;
}

//--------------------------------------------------------------------------------------------------
zylBoundaryRepresentation::~zylBoundaryRepresentation()
{
  this->FreeResources();
  zylUnregister(this->SurfaceProxy);
  zylUnregister(this->ExtractBlockProxy);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::SetDataSet(zylDataSet* dataSet)
{
  zylScope("SetDataSet()");
  this->Superclass::SetDataSet(dataSet);
  this->InitializeBlockProperties();
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::InitializeBlockProperties()
{
  zylScope("InitializeBlockProperties()");
  if (!this->DataSet)
  {
    return;
  }
  for (Kind& kind : this->Kinds)
  {
    kind.Settings.clear();
  }
  this->AddBlocks();
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::AddBlocks()
{
  std::vector<unsigned int> ids = this->DataSet->GetBlockIDs();
  const auto& known = this->Kinds[Surface].Settings;
  ids.erase(std::remove_if(ids.begin(), ids.end(),
              [&known](unsigned int id) { return id == NoBlock || known.count(int(id)) > 0; }),
    ids.end());
  if (ids.empty())
  {
    return;
  }
  for (Kind& kind : this->Kinds)
  {
    const auto prototype = kind.NewPipeline();
    for (const unsigned int id : ids)
    {
      auto settings = vtkSmartPointer<zylPropertyCollection>::New();
      settings->DeepCopy(prototype->GetProperties());
      kind.Settings[static_cast<int>(id)] = settings;
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::CreateSurfacePipeline()
{
  zylScope("CreateSurfacePipeline()");
  vtkSMSourceProxy* source = this->DataSet->GetOutput();
  this->ExtractBlockProxy = BlockExtractor(source).Make();
  this->SurfaceProxy =
    zylProxyBuilder(source->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
      .Input(this->ExtractBlockProxy)
      .Make();
  if (!this->ExtractBlockProxy || !this->SurfaceProxy)
  {
    vtkErrorMacro("The session cannot make the stages that extract the blocks and their surfaces");
    return;
  }
  this->MultiClip->SetInput(this->SurfaceProxy);
  this->SurfacePipelineCreated = true;
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Update()
{
  zylScope("Update()");
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (!source || !source->GetSession())
  {
    return;
  }
  this->AddBlocks();
  if (!this->SurfacePipelineCreated)
  {
    this->CreateSurfacePipeline();
  }
  if (!this->SurfacePipelineCreated || !this->ExtractBlockProxy->GetSession())
  {
    return;
  }
  zylConnect(this->ExtractBlockProxy, source);
  this->MultiClip->Update();
  this->UpdateExtractBlockCache();
  this->HighlightPipeline->SetDataSource(this->MultiClip->GetOutput());
  this->HighlightPipeline->SetBlockTree(this->DataSet->GetMultiBlockTree());
  if (this->View)
  {
    this->HighlightPipeline->Update(this->View);
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBoundaryRepresentation::CollectNeededBlocks()
{
  std::vector<int> needed = FlaggedBlocks(this->GetHighlightProperties());
  for (const Kind& kind : this->Kinds)
  {
    for (const auto& block : kind.Settings)
    {
      if (IsShown(block.second))
      {
        needed.push_back(block.first);
      }
    }
  }
  std::sort(needed.begin(), needed.end());
  needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
  return needed;
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UpdateExtractBlockCache()
{
  zylScope("UpdateExtractBlockCache()");
  if (!this->DataSet)
  {
    return;
  }
  const std::vector<int> needed = this->CollectNeededBlocks();
  std::vector<int> present =
    vtkSMPropertyHelper(this->ExtractBlockProxy, "BlockIndices").GetIntArray();
  std::sort(present.begin(), present.end());
  if (!std::includes(present.begin(), present.end(), needed.begin(), needed.end()))
  {
    SetBlockIndices(this->ExtractBlockProxy, needed);
  }
  for (Kind& kind : this->Kinds)
  {
    this->UpdateKind(kind);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UpdateKind(Kind& kind)
{
  std::map<vtkTypeUInt64, std::vector<int>> blocksOf;
  for (const auto& block : kind.Settings)
  {
    blocksOf[block.second->GetHashValue()].push_back(block.first);
  }
  std::map<vtkTypeUInt64, Group> unused;
  for (auto group = kind.Groups.begin(); group != kind.Groups.end();)
  {
    auto next = std::next(group);
    if (blocksOf.count(group->first) == 0)
    {
      unused.insert(kind.Groups.extract(group));
    }
    group = next;
  }
  for (auto& [hash, blocks] : blocksOf)
  {
    if (kind.Groups.count(hash) > 0)
    {
      continue;
    }
    // Blocks that changed together keep their pipeline: only its settings change.
    const auto& sought = blocks;
    const auto same = std::find_if(unused.begin(), unused.end(),
      [&sought](const auto& candidate) { return candidate.second.Blocks == sought; });
    if (same != unused.end())
    {
      kind.Groups[hash] = std::move(same->second);
      unused.erase(same);
    }
  }
  for (auto& group : unused)
  {
    this->DropGroup(group.second);
  }
  for (auto& [hash, blocks] : blocksOf)
  {
    this->UpdateGroup(kind, kind.Groups[hash], hash, std::move(blocks));
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::CreateGroup(Kind& kind, Group& group)
{
  vtkSMSourceProxy* source = this->MultiClip->GetOutput();
  group.Extract = BlockExtractor(source).Set("BlockIndices", std::vector<int>()).Make();
  group.Script = zylProxyBuilder(source->GetSessionProxyManager(), "filters", "ProgrammableFilter")
                   .Input(group.Extract)
                   .Set("CopyArrays", 1)
                   .Make();
  group.Pipeline = kind.NewPipeline();
  group.Pipeline->SetDataSource(group.Script);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::DropGroup(Group& group)
{
  if (group.Pipeline)
  {
    group.Pipeline->FreeResources(this->View);
    group.Pipeline->SetDataSource(nullptr);
  }
  zylUnregister(group.Script);
  zylUnregister(group.Extract);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UpdateGroup(
  Kind& kind, Group& group, vtkTypeUInt64 hash, std::vector<int>&& blocks)
{
  if (!group.Pipeline)
  {
    this->CreateGroup(kind, group);
  }
  if (!group.Extract || !group.Script)
  {
    vtkErrorMacro("The session cannot make the stages that feed a display pipeline");
    return;
  }
  // A block that has left the group is not drawn anyway. Taking it out of the stage as well would
  // process and upload every other block again, so that waits until it pays.
  const auto& extracted = group.Extracted;
  const bool covered =
    std::includes(extracted.begin(), extracted.end(), blocks.begin(), blocks.end());
  if (!covered || 2 * blocks.size() < extracted.size())
  {
    SetBlockIndices(group.Extract, blocks);
    group.Extracted = blocks;
  }

  zylPropertyCollection* settings = kind.Settings[blocks.front()];
  std::vector<int> pairs;
  pairs.reserve(2 * blocks.size());
  bool shown = false;
  for (const int id : blocks)
  {
    zylPropertyCollection* own = kind.Settings[id];
    const bool flag = IsShown(own);
    if (flag && !shown)
    {
      shown = true;
      settings = own; // equal in the hash, and visible
    }
    pairs.insert(pairs.end(), { id, flag ? 1 : 0 });
  }
  vtkSMPropertyHelper(group.Script, "Script").Set(this->GetProgrammableScript(settings).c_str());
  group.Script->UpdateVTKObjects();

  zylPropertyCollection* target = group.Pipeline->GetProperties();
  if (target->GetHashValue() != hash)
  {
    target->DeepCopy(settings);
  }
  target->Set("Visibility", settings->GetBool("Visibility"));
  target->Set("ForceHidden", settings->GetBool("ForceHidden"));
  SetInts(target, BlockVisibility, pairs);
  group.Blocks = std::move(blocks);

  group.Pipeline->SetBlockTree(this->DataSet->GetMultiBlockTree());
  if (this->View)
  {
    group.Pipeline->Update(this->View);
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylBoundaryRepresentation::GetProgrammableScript(zylPropertyCollection* settings)
{
  zylScope("GetProgrammableScript()");
  if (!this->DataSet)
  {
    return std::string();
  }
  std::set<std::string> names;
  const auto add = [this, settings, &names](const char* property) {
    std::string name = settings->GetString(property);
    if (!this->DataSet->IsDerivedPointVariable(name))
    {
      std::string component; // a component or the magnitude of a vector
      zylPipeline::SplitVariableName(name, name, component);
    }
    if (this->DataSet->IsDerivedPointVariable(name))
    {
      names.insert(name);
    }
  };
  if (settings->GetInt("ColorMode") == 1)
  {
    add("ColorVariableName");
  }
  if (settings->Has("ContourVariableName"))
  {
    add("ContourVariableName");
  }
  if (settings->Has("VectorVariable"))
  {
    add("VectorVariable");
  }
  if (settings->Has("ContourLineColorVariableName") &&
    settings->GetInt("ContourLineDisplayMode") == 1)
  {
    add("ContourLineColorVariableName");
  }
  return this->DataSet->GetDerivedPointVariableScript(names);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetProperties()
{
  zylScope("GetProperties()");
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetSettings(const Kind& kind, int blockId)
{
  const auto found = kind.Settings.find(blockId);
  return this->DataSet && found != kind.Settings.end() ? found->second.Get() : nullptr;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetSurfaceProperties(int blockId)
{
  zylScope("GetSurfaceProperties()");
  return this->GetSettings(this->Kinds[Surface], blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetContourProperties(int blockId)
{
  zylScope("GetContourProperties()");
  return this->GetSettings(this->Kinds[Contour], blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetFeatureLineProperties(int blockId)
{
  zylScope("GetFeatureLineProperties()");
  return this->GetSettings(this->Kinds[FeatureLine], blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetMeshLineProperties(int blockId)
{
  zylScope("GetMeshLineProperties()");
  return this->GetSettings(this->Kinds[MeshLine], blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetVectorGlyphProperties(int blockId)
{
  zylScope("GetVectorGlyphProperties()");
  return this->GetSettings(this->Kinds[VectorGlyph], blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetColorVariableInformation(
  const Kind& kind, int blockId)
{
  zylPropertyCollection* settings = this->GetSettings(kind, blockId);
  const auto group = settings ? kind.Groups.find(settings->GetHashValue()) : kind.Groups.end();
  return group != kind.Groups.end() ? group->second.Pipeline->GetColorVariableInformation()
                                    : nullptr;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetSurfaceColorVariableInformation(
  int blockId)
{
  zylScope("GetSurfaceColorVariableInformation()");
  return this->GetColorVariableInformation(this->Kinds[Surface], blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetContourColorVariableInformation(
  int blockId)
{
  zylScope("GetContourColorVariableInformation()");
  return this->GetColorVariableInformation(this->Kinds[Contour], blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylBoundaryRepresentation::GetFeatureLineColorVariableInformation(int blockId)
{
  zylScope("GetFeatureLineColorVariableInformation()");
  return this->GetColorVariableInformation(this->Kinds[FeatureLine], blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetMeshLineColorVariableInformation(
  int blockId)
{
  zylScope("GetMeshLineColorVariableInformation()");
  return this->GetColorVariableInformation(this->Kinds[MeshLine], blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylBoundaryRepresentation::GetVectorGlyphColorVariableInformation(int blockId)
{
  zylScope("GetVectorGlyphColorVariableInformation()");
  return this->GetColorVariableInformation(this->Kinds[VectorGlyph], blockId);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::SetForceHidden(int blockId, bool hidden)
{
  zylScope("SetForceHidden()");
  for (Kind& kind : this->Kinds)
  {
    if (zylPropertyCollection* settings = this->GetSettings(kind, blockId))
    {
      settings->Set("ForceHidden", hidden);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Show(int blockId)
{
  zylScope("Show()");
  this->SetForceHidden(blockId, false);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Hide(int blockId)
{
  zylScope("Hide()");
  this->SetForceHidden(blockId, true);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Show()
{
  zylScope("Show()");
  for (const auto& block : this->Kinds[Surface].Settings)
  {
    this->SetForceHidden(block.first, false);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Hide()
{
  zylScope("Hide()");
  for (const auto& block : this->Kinds[Surface].Settings)
  {
    this->SetForceHidden(block.first, true);
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPipeline*> zylBoundaryRepresentation::GetPipelines()
{
  std::vector<zylPipeline*> pipelines;
  for (const Kind& kind : this->Kinds)
  {
    for (const auto& group : kind.Groups)
    {
      pipelines.push_back(group.second.Pipeline);
    }
  }
  pipelines.push_back(this->HighlightPipeline);
  return pipelines;
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::IsVisible()
{
  zylScope("IsVisible()");
  const auto pipelines = this->GetPipelines();
  return std::any_of(pipelines.begin(), pipelines.end(),
    [](zylPipeline* pipeline) { return pipeline->AnyBlocksVisible(); });
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::GetBounds(double bounds[6])
{
  zylScope("GetBounds()");
  vtkBoundingBox box;
  for (zylPipeline* pipeline : this->GetPipelines())
  {
    if (pipeline->GetDataSource() && pipeline->AnyBlocksVisible())
    {
      double visible[6];
      pipeline->GetVisibleBounds(visible);
      box.AddBounds(visible);
    }
  }
  box.GetBounds(bounds);
  return box.IsValid() != 0;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetHighlightProperties()
{
  zylScope("GetHighlightProperties()");
  return this->HighlightPipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Highlight(const std::vector<int>& blockIds, int style)
{
  zylScope("Highlight()");
  if (!this->DataSet)
  {
    return;
  }
  zylPropertyCollection* settings = this->GetHighlightProperties();
  SetInts(settings, BlockVisibility, MakePairs(blockIds));
  if (!blockIds.empty())
  {
    settings->Set("Visibility", true);
  }
  settings->Set("Style", style);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UnHighlight(const std::vector<int>& blockIds)
{
  zylScope("UnHighlight()");
  zylPropertyCollection* settings = this->GetHighlightProperties();
  const std::vector<int> highlighted = FlaggedBlocks(settings);
  std::set<int> remaining(highlighted.begin(), highlighted.end());
  for (const int id : blockIds)
  {
    remaining.erase(id);
  }
  SetInts(settings, BlockVisibility, MakePairs({ remaining.begin(), remaining.end() }));
  if (remaining.empty())
  {
    settings->Set("Visibility", false);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::ClearHighlights()
{
  zylScope("ClearHighlights()");
  SetInts(this->GetHighlightProperties(), BlockVisibility, {});
  this->GetHighlightProperties()->Set("Visibility", false);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::SetHighlightTransparency(double transparency)
{
  zylScope("SetHighlightTransparency()");
  this->GetHighlightProperties()->Set("Transparency", transparency);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> zylBoundaryRepresentation::GetBlockSurfaces(
  const std::vector<int>& blockIds)
{
  zylScope("GetBlockSurfaces()");
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (!source || !source->GetSession())
  {
    return nullptr;
  }
  const auto extract = BlockExtractor(source).Set("BlockIndices", blockIds).MakeUnregistered();
  const auto surface =
    zylProxyBuilder(source->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
      .Input(extract)
      .MakeUnregistered();
  const auto data = zylCore::Fetch(surface, "vtkMultiBlockDataGroupFilter");
  return vtkMultiBlockDataSet::SafeDownCast(data);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkCollection> zylBoundaryRepresentation::GetPVRepresentations()
{
  zylScope("GetPVRepresentations()");
  auto collection = vtkSmartPointer<vtkCollection>::New();
  for (zylPipeline* pipeline : this->GetPipelines())
  {
    if (pipeline->GetRepresentation())
    {
      collection->AddItem(pipeline->GetRepresentation());
    }
  }
  return collection;
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::HasRepresentation(vtkSMProxy* representation)
{
  zylScope("HasRepresentation()");
  const auto pipelines = this->GetPipelines();
  return representation &&
    std::any_of(pipelines.begin(), pipelines.end(), [representation](zylPipeline* pipeline) {
      return pipeline->GetRepresentation() == representation;
    });
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::FreeResources()
{
  zylScope("FreeResources()");
  for (Kind& kind : this->Kinds)
  {
    for (auto& group : kind.Groups)
    {
      this->DropGroup(group.second);
    }
    kind.Groups.clear();
  }
  this->HighlightPipeline->FreeResources(this->View);
}
