#include "zylBoundaryRepresentation.h"

#include "Display/zylBlockFlags.h"
#include "Display/zylBlockGroups.h"
#include "Display/zylPipelineList.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
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
#include "zylSelection.h"
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
enum Kind
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

std::vector<int> MakePairs(const std::vector<int>& ids)
{
  std::vector<int> pairs;
  for (const int id : ids)
  {
    pairs.insert(pairs.end(), { id, 1 });
  }
  return pairs;
}

std::vector<int> HighlightedBlocks(zylPropertyCollection* highlight)
{
  return zylBlockFlags(highlight->GetProperty("BlockVisibility")).GetVisibleBlocks();
}

template <class Action>
void ForSelected(zylSelection* selection, zylView* view, Action action)
{
  const bool any = selection && view;
  for (auto* rep : any ? selection->GetRepresentations(view) : std::vector<zylRepresentation*>())
  {
    if (rep->IsA("zylBoundaryRepresentation"))
    {
      action(static_cast<zylBoundaryRepresentation*>(rep), selection->GetBlocks(rep));
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylBoundaryRepresentation::zylBoundaryRepresentation()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , HighlightPipeline(vtkSmartPointer<zylHighlightPipeline>::New())
{
  this->Kinds.emplace_back(&NewPipeline<zylSurfacePipeline>);
  this->Kinds.emplace_back(&NewPipeline<zylContourPipeline>);
  this->Kinds.emplace_back(&NewPipeline<zylFeatureLinePipeline>);
  this->Kinds.emplace_back(&NewPipeline<zylMeshLinePipeline>);
  this->Kinds.emplace_back(&NewPipeline<zylVectorGlyphPipeline>);
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
  if (!dataSet)
  {
    this->FreeResources();
    this->HighlightPipeline->SetDataSource(nullptr);
  }
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
  for (zylBlockGroups& kind : this->Kinds)
  {
    kind.ClearBlocks();
  }
  this->BlocksTime = 0;
  this->TakeOverBlocks();
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::TakeOverBlocks()
{
  zylMultiBlockTree* tree = this->DataSet->GetMultiBlockTree();
  const vtkMTimeType time = tree->GetMTime();
  if (time != this->BlocksTime)
  {
    for (zylBlockGroups& kind : this->Kinds)
    {
      kind.SetBlocks(tree);
    }
    this->BlocksTime = time;
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::CreateSurfacePipeline()
{
  zylScope("CreateSurfacePipeline()");
  vtkSMSourceProxy* source = this->DataSet->GetOutput();
  this->ExtractBlockProxy = zylBlockExtractor(source).Make();
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
  if (!zylIsUsable(source, "Update()"))
  {
    return;
  }
  this->TakeOverBlocks();
  if (!this->SurfacePipelineCreated)
  {
    this->CreateSurfacePipeline();
  }
  if (!this->SurfacePipelineCreated || !zylIsUsable(this->ExtractBlockProxy, "Update()"))
  {
    return;
  }
  zylConnect(this->ExtractBlockProxy, source);
  this->MultiClip->Update();
  this->UpdateExtractBlockCache();
  this->UpdateHighlight();
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UpdateHighlight()
{
  this->HighlightPipeline->SetDataSource(this->MultiClip->GetOutput());
  this->HighlightPipeline->SetBlockTree(this->DataSet->GetMultiBlockTree());
  if (!this->View)
  {
    return;
  }
  this->HighlightPipeline->Update(this->View);
  // Above all others the highlight is seen.
  zylPipelineList order = this->GetPipelines();
  order.erase(std::remove(order.begin(), order.end(), this->HighlightPipeline), order.end());
  order.push_back(this->HighlightPipeline);
  zylOrderDrawing(order, this->View, this->DrawOrder);
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylBoundaryRepresentation::CollectNeededBlocks()
{
  std::vector<int> needed = HighlightedBlocks(this->GetHighlightProperties());
  for (const zylBlockGroups& kind : this->Kinds)
  {
    needed.insert(needed.end(), kind.GetShown().begin(), kind.GetShown().end());
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
  for (zylBlockGroups& kind : this->Kinds)
  {
    kind.FollowSettings();
  }
  this->NeededBlocks = this->CollectNeededBlocks();
  std::vector<int> present =
    vtkSMPropertyHelper(this->ExtractBlockProxy, "BlockIndices").GetIntArray();
  std::sort(present.begin(), present.end());
  const auto& needed = this->NeededBlocks;
  if (!std::includes(present.begin(), present.end(), needed.begin(), needed.end()))
  {
    zylExtractBlocks(this->ExtractBlockProxy, needed);
  }
  for (zylBlockGroups& kind : this->Kinds)
  {
    if (!kind.Update(this->MultiClip->GetOutput(), this->DataSet->GetMultiBlockTree(), this->View,
          [this](
            zylPropertyCollection* settings) { return this->GetProgrammableScript(settings); }))
    {
      vtkErrorMacro("The session cannot make the stages that feed a display pipeline");
    }
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
zylPropertyCollection* zylBoundaryRepresentation::GetSettings(int kind, int blockId)
{
  return this->DataSet ? this->Kinds[kind].GetSettings(blockId) : nullptr;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetSurfaceProperties(int blockId)
{
  zylScope("GetSurfaceProperties()");
  return this->GetSettings(Surface, blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetContourProperties(int blockId)
{
  zylScope("GetContourProperties()");
  return this->GetSettings(Contour, blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetFeatureLineProperties(int blockId)
{
  zylScope("GetFeatureLineProperties()");
  return this->GetSettings(FeatureLine, blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetMeshLineProperties(int blockId)
{
  zylScope("GetMeshLineProperties()");
  return this->GetSettings(MeshLine, blockId);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylBoundaryRepresentation::GetVectorGlyphProperties(int blockId)
{
  zylScope("GetVectorGlyphProperties()");
  return this->GetSettings(VectorGlyph, blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetColorVariableInformation(
  int kind, int blockId)
{
  const bool usable =
    this->DataSet && zylIsUsable(this->DataSet->GetOutput(), "GetColorVariableInformation()");
  return usable ? this->Kinds[kind].GetColorVariableInformation(blockId, this->NeededBlocks)
                : nullptr;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetSurfaceColorVariableInformation(
  int blockId)
{
  zylScope("GetSurfaceColorVariableInformation()");
  return this->GetColorVariableInformation(Surface, blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetContourColorVariableInformation(
  int blockId)
{
  zylScope("GetContourColorVariableInformation()");
  return this->GetColorVariableInformation(Contour, blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylBoundaryRepresentation::GetFeatureLineColorVariableInformation(int blockId)
{
  zylScope("GetFeatureLineColorVariableInformation()");
  return this->GetColorVariableInformation(FeatureLine, blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylBoundaryRepresentation::GetMeshLineColorVariableInformation(
  int blockId)
{
  zylScope("GetMeshLineColorVariableInformation()");
  return this->GetColorVariableInformation(MeshLine, blockId);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylBoundaryRepresentation::GetVectorGlyphColorVariableInformation(int blockId)
{
  zylScope("GetVectorGlyphColorVariableInformation()");
  return this->GetColorVariableInformation(VectorGlyph, blockId);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::SetForceHidden(int blockId, bool hidden)
{
  zylScope("SetForceHidden()");
  for (int kind = Surface; kind <= VectorGlyph; ++kind)
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
  for (const int id : this->Kinds[Surface].GetBlocks())
  {
    this->SetForceHidden(id, false);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Hide()
{
  zylScope("Hide()");
  for (const int id : this->Kinds[Surface].GetBlocks())
  {
    this->SetForceHidden(id, true);
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPipeline*> zylBoundaryRepresentation::GetPipelines()
{
  std::vector<zylPipeline*> pipelines;
  for (const zylBlockGroups& kind : this->Kinds)
  {
    kind.AppendPipelines(pipelines);
  }
  pipelines.push_back(this->HighlightPipeline);
  return pipelines;
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::IsVisible()
{
  zylScope("IsVisible()");
  return zylAnyBlocksVisible(this->GetPipelines());
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::GetBounds(double bounds[6])
{
  zylScope("GetBounds()");
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (source && !zylIsUsable(source, "GetBounds()"))
  {
    vtkBoundingBox().GetBounds(bounds);
    return false;
  }
  return zylGetVisibleBounds(this->GetPipelines(), bounds);
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
  this->HighlightPipeline->RestoreProperties();
  zylPropertyCollection* settings = this->GetHighlightProperties();
  zylBlockFlags::Write(settings, MakePairs(blockIds));
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
  this->HighlightPipeline->RestoreProperties();
  zylPropertyCollection* settings = this->GetHighlightProperties();
  const std::vector<int> highlighted = HighlightedBlocks(settings);
  std::set<int> remaining(highlighted.begin(), highlighted.end());
  for (const int id : blockIds)
  {
    remaining.erase(id);
  }
  zylBlockFlags::Write(settings, MakePairs({ remaining.begin(), remaining.end() }));
  if (remaining.empty())
  {
    settings->Set("Visibility", false);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::ClearHighlights()
{
  zylScope("ClearHighlights()");
  this->HighlightPipeline->RestoreProperties();
  zylBlockFlags::Write(this->GetHighlightProperties(), {});
  this->GetHighlightProperties()->Set("Visibility", false);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::SetHighlightTransparency(double transparency)
{
  zylScope("SetHighlightTransparency()");
  this->HighlightPipeline->RestoreProperties();
  this->GetHighlightProperties()->Set("Transparency", transparency);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::Highlight(zylSelection* selection, zylView* view, int style)
{
  ForSelected(selection, view, [style](auto* boundary, const std::vector<int>& blocks) {
    boundary->Highlight(blocks, style);
  });
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::UnHighlight(zylSelection* selection, zylView* view)
{
  ForSelected(selection, view,
    [](auto* boundary, const std::vector<int>& blocks) { boundary->UnHighlight(blocks); });
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> zylBoundaryRepresentation::GetBlockSurfaces(
  const std::vector<int>& blockIds)
{
  zylScope("GetBlockSurfaces()");
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (!zylIsUsable(source, "GetBlockSurfaces()"))
  {
    return nullptr;
  }
  const auto extract = zylBlockExtractor(source).Set("BlockIndices", blockIds).MakeUnregistered();
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
  return zylGetPVRepresentations(this->GetPipelines());
}

//--------------------------------------------------------------------------------------------------
bool zylBoundaryRepresentation::HasRepresentation(vtkSMProxy* representation)
{
  zylScope("HasRepresentation()");
  return zylHasRepresentation(this->GetPipelines(), representation);
}

//--------------------------------------------------------------------------------------------------
void zylBoundaryRepresentation::FreeResources()
{
  zylScope("FreeResources()");
  for (zylBlockGroups& kind : this->Kinds)
  {
    kind.FreeResources(this->View);
  }
  this->HighlightPipeline->FreeResources(this->View);
}
