#include "zylDerivedSurfaceRepresentation.h"

#include "Analysis/zylFieldValues.h"
#include "Analysis/zylScriptError.h"
#include "Derived/zylSurfaceWarp.h"
#include "Display/zylBlockFlags.h"
#include "Display/zylPipelineList.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylScriptFilter.h"
#include "ParaView/zylSession.h"
#include "ParaView/zylSurfaceMerger.h"
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
#include "zylTimeController.h"
#include "zylVectorGlyphPipeline.h"

#include <algorithm>

#include <vtkLogger.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>
#include <vtkUnstructuredGrid.h>

#define zylScope(name) vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, name)

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Ints("Blocks"),
  zylPropertyRow::Bool("MergePoints", false),
  zylPropertyRow::Bool("WarpByVector", false),
  zylPropertyRow::String("WarpVectorVariable", ""),
  zylPropertyRow::Double("WarpVectorScale", 1.0),
};

// The result is the one block 0.
const std::vector<int> ShowTheBlock = { 0, 1 };
} // namespace

//--------------------------------------------------------------------------------------------------
zylDerivedSurfaceRepresentation::zylDerivedSurfaceRepresentation()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , SurfacePipeline(vtkSmartPointer<zylSurfacePipeline>::New())
  , HighlightPipeline(vtkSmartPointer<zylHighlightPipeline>::New())
  , ContourPipeline(vtkSmartPointer<zylContourPipeline>::New())
  , MeshLinePipeline(vtkSmartPointer<zylMeshLinePipeline>::New())
  , FeatureLinePipeline(vtkSmartPointer<zylFeatureLinePipeline>::New())
  , VectorGlyphPipeline(vtkSmartPointer<zylVectorGlyphPipeline>::New())
{
  zylDeclare(this->Properties, Rows);
  for (zylPipeline* pipeline : this->GetDisplays())
  {
    pipeline->SetKeepsLastVariable(false);
    zylBlockFlags::Write(pipeline->GetProperties(), ShowTheBlock);
  }
}

//--------------------------------------------------------------------------------------------------
zylDerivedSurfaceRepresentation::~zylDerivedSurfaceRepresentation()
{
  this->zylDerivedSurfaceRepresentation::FreeResources();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylDerivedSurfaceRepresentation::MakeFilter(
  const char* name, vtkSMSourceProxy* input)
{
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  auto* manager = source ? source->GetSessionProxyManager() : nullptr;
  return this->Made(name, zylProxyBuilder(manager, "filters", name).Input(input).Make());
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylDerivedSurfaceRepresentation::Made(
  const char* name, vtkSmartPointer<vtkSMSourceProxy> filter)
{
  if (!filter)
  {
    vtkErrorMacro("The session cannot make the filter '" << name << "'");
  }
  return filter;
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Update()
{
  zylScope("Update");
  this->SurfaceChanged = false;
  this->WarnedBefore.swap(this->Warned);
  this->Warned.clear();
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (!zylIsUsable(source, "Update()") || !this->BuildChain(source))
  {
    return;
  }
  this->UpdateLocalPipeline();

  zylPushProperty(this->Properties->GetProperty("MergePoints"), this->BlockMerger, "MergePoints");
  // Filters that were dropped and made anew are not those that the merger knows.
  zylConnect(this->BlockMerger, this->LastSurfaceFilter);
  this->MultiClip->Update();
  zylConnect(this->FirstSurfaceFilter, this->VolumeScript);

  const double time = zylTimeController::GetInstance()->GetActiveTime();
  this->LastSurfaceFilter->UpdateVTKObjects();
  zylUpdatePipeline(this->LastSurfaceFilter, time, this->FilterTime);
  this->UpdateSurfaceScript();
  this->Warn(zylConnectWarp(this->Properties, this->SurfaceScript, this->WarpFilter, this->Output,
    time, this->SurfaceTime));
  // The data may have changed and been processed for a frame since the last update.
  const vtkMTimeType treeTime = this->DataSet->GetMultiBlockTree()->GetMTime();
  this->SurfaceChanged =
    zylUpdatePipeline(this->Output, time, this->OutputTime) || treeTime != this->TreeTime;
  this->TreeTime = treeTime;
  if (this->SurfaceChanged)
  {
    this->Warn(zylDescribeFailure(this->VolumeVariables, this->VolumeScript, this->Output));
    this->Warn(zylDescribeFailure(this->SurfaceVariables, this->SurfaceScript, this->Output));
  }

  for (zylPipeline* pipeline : this->GetAllPipelines())
  {
    pipeline->SetDataSource(this->Output);
    if (this->View)
    {
      pipeline->Update(this->View);
    }
  }
  zylOrderDrawing(this->GetAllPipelines(), this->View, this->DrawOrder);
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::BuildChain(vtkSMSourceProxy* source)
{
  if (this->BlockExtractor && !zylIsAlive(this->BlockExtractor))
  {
    this->ForgetChain(); // of a session that has ended, while the source is there
  }
  if (!this->BlockExtractor)
  {
    this->BlockExtractor = this->MakeFilter("ExtractBlock", source);
    this->VolumeScript =
      this->Made("ProgrammableFilter", zylScriptFilter(this->BlockExtractor).Make());
  }
  if (!zylIsUsable(this->BlockExtractor, "Update()") || !this->VolumeScript)
  {
    return false;
  }
  zylConnect(this->BlockExtractor, source); // which may be another dataset's by now
  if (!this->FirstSurfaceFilter)
  {
    this->CreateSurfacePipeline();
  }
  this->UpdateBlocks();
  zylPushScript(this->GetVolumeDerivedVariableScript(), this->VolumeScript);
  if (!this->FirstSurfaceFilter || !this->LastSurfaceFilter)
  {
    return false;
  }
  if (!this->BlockMerger)
  {
    this->BlockMerger = this->Made("MergeBlocks", zylSurfaceMerger(this->LastSurfaceFilter).Make());
    this->MultiClip->SetInput(this->BlockMerger);
    this->SurfaceScript =
      this->Made("ProgrammableFilter", zylScriptFilter(this->MultiClip->GetOutput()).Make());
    this->WarpFilter = this->MakeFilter("WarpVector", this->SurfaceScript);
    this->Output = this->MakeFilter("PassThrough", this->SurfaceScript);
  }
  return this->BlockMerger && this->SurfaceScript && this->WarpFilter && this->Output;
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::ForgetChain()
{
  const bool leaving = this->LeavingView;
  this->LeavingView = true; // the highlight goes too
  this->FreeResources();
  this->LeavingView = leaving;
  for (auto* proxy : this->GetOwnFilters())
  {
    *proxy = nullptr;
  }
  this->SurfaceScriptTime = 0; // the new script is empty
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::HasFilters(const char* operation)
{
  return this->DataSet && this->LastSurfaceFilter &&
    zylIsUsable(this->FirstSurfaceFilter, operation) &&
    zylIsUsable(this->DataSet->GetOutput(), operation);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UpdateBlocks()
{
  const std::vector<int> wanted = zylGetInts(this->Properties->GetProperty("Blocks"));
  if (wanted != vtkSMPropertyHelper(this->BlockExtractor, "BlockIndices").GetIntArray())
  {
    for (const int block : zylFindUnknownBlock(this->DataSet, wanted))
    {
      vtkLogF(WARNING, "No block at index %d found.", block);
    }
    zylExtractBlocks(this->BlockExtractor, wanted);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Warn(const std::string& text)
{
  if (!text.empty() && this->Warned.insert(text).second && this->WarnedBefore.count(text) == 0)
  {
    vtkLogF(WARNING, "%s", text.c_str());
  }
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::CheckScalar(const std::string& name)
{
  const std::string mistake = zylDescribeScalar(this->DataSet, name);
  this->Warn(mistake);
  return mistake.empty() && !name.empty();
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UpdateSurfaceScript()
{
  // Kept: the contour pipeline is asked twice, the highlight not at all.
  zylPipeline* const asked[] = { this->SurfacePipeline, this->ContourPipeline,
    this->ContourPipeline, this->MeshLinePipeline, this->FeatureLinePipeline,
    this->VectorGlyphPipeline };
  vtkMTimeType latest = 0;
  for (zylPipeline* pipeline : asked)
  {
    latest =
      std::max(latest, pipeline->GetProperties()->GetProperty("ColorVariableName")->GetMTime());
  }
  const vtkMTimeType dataTime = this->DataSet->GetMTime();
  std::set<std::string> variables = this->GetSurfaceDerivedVariables();
  if (this->SurfaceScriptTime < dataTime || this->SurfaceScriptTime < latest ||
    variables != this->SurfaceVariables)
  {
    zylPushScript(this->GetSurfaceDerivedVariableScript(), this->SurfaceScript);
    this->SurfaceScriptTime = dataTime;
    this->SurfaceVariables = std::move(variables);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::AddDerivedVariable(
  const std::string& setting, std::set<std::string>& names)
{
  std::string base, component;
  zylPipeline::SplitVariableName(setting, base, component);
  for (const std::string& name : { setting, base })
  {
    if (this->DataSet && this->DataSet->IsDerivedPointVariable(name))
    {
      names.insert(name);
      return;
    }
  }
}

//--------------------------------------------------------------------------------------------------
std::set<std::string> zylDerivedSurfaceRepresentation::GetSurfaceDerivedVariables()
{
  std::set<std::string> names;
  for (zylPipeline* pipeline : this->GetDisplays())
  {
    zylPropertyCollection* settings = pipeline->GetProperties();
    if (settings->GetInt("ColorMode") == 1)
    {
      this->AddDerivedVariable(settings->GetString("ColorVariableName"), names);
      // Kept: the contour variable counts only where the contours are colored by a variable.
      if (pipeline == this->ContourPipeline)
      {
        this->AddDerivedVariable(settings->GetString("ContourVariableName"), names);
      }
    }
  }
  this->AddDerivedVariable(this->GetVectorGlyphProperties()->GetString("VectorVariable"), names);
  if (this->Properties->GetBool("WarpByVector"))
  {
    this->AddDerivedVariable(this->Properties->GetString("WarpVectorVariable"), names);
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
std::string zylDerivedSurfaceRepresentation::GetSurfaceDerivedVariableScript()
{
  zylScope("GetSurfaceDerivedVariableScript()");
  return this->DataSet
    ? this->DataSet->GetDerivedPointVariableScript(this->GetSurfaceDerivedVariables())
    : std::string();
}

//--------------------------------------------------------------------------------------------------
std::string zylDerivedSurfaceRepresentation::GetVolumeDerivedVariableScript()
{
  zylScope("GetVolumeDerivedVariableScript()");
  if (!this->DataSet)
  {
    return std::string();
  }
  this->GetVolumeDerivedPointVariables(this->VolumeVariables);
  return this->DataSet->GetDerivedPointVariableScript(this->VolumeVariables);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::FreeResources()
{
  zylScope("FreeResources()");
  for (zylPipeline* pipeline : this->GetDisplays())
  {
    pipeline->FreeResources(this->View);
  }
  if (this->LeavingView)
  {
    this->HighlightPipeline->FreeResources(this->View);
  }
  // The other proxies are kept for the next update.
  zylUnregister(this->FirstSurfaceFilter);
  this->FirstSurfaceFilter = nullptr;
  zylUnregister(this->LastSurfaceFilter);
  this->LastSurfaceFilter = nullptr;
  for (auto* proxy : this->GetOwnFilters())
  {
    zylUnregister(*proxy);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::SetFirstSurfaceFilter(vtkSMSourceProxy* filter)
{
  if (filter != this->FirstSurfaceFilter)
  {
    zylUnregister(filter ? nullptr : this->FirstSurfaceFilter.Get());
    this->FirstSurfaceFilter = filter;
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::SetLastSurfaceFilter(vtkSMSourceProxy* filter)
{
  if (filter != this->LastSurfaceFilter)
  {
    this->LastSurfaceFilter = filter;
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  names.clear();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetSurfaceProperties()
{
  return this->SurfacePipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetHighlightProperties()
{
  return this->HighlightPipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetContourProperties()
{
  return this->ContourPipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetMeshLineProperties()
{
  return this->MeshLinePipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetFeatureLineProperties()
{
  return this->FeatureLinePipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDerivedSurfaceRepresentation::GetVectorGlyphProperties()
{
  return this->VectorGlyphPipeline->GetProperties();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylDerivedSurfaceRepresentation::GetSurfaceColorVariableInformation()
{
  return this->SurfacePipeline->GetColorVariableInformation();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylDerivedSurfaceRepresentation::GetContourColorVariableInformation()
{
  return this->ContourPipeline->GetColorVariableInformation();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylDerivedSurfaceRepresentation::GetMeshLineColorVariableInformation()
{
  return this->MeshLinePipeline->GetColorVariableInformation();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylDerivedSurfaceRepresentation::GetFeatureLineColorVariableInformation()
{
  return this->FeatureLinePipeline->GetColorVariableInformation();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation>
zylDerivedSurfaceRepresentation::GetVectorGlyphColorVariableInformation()
{
  return this->VectorGlyphPipeline->GetColorVariableInformation();
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Hide()
{
  zylScope("Hide()");
  zylForceHidden(this->GetDisplays(), true);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Show()
{
  zylScope("Show()");
  zylForceHidden(this->GetDisplays(), false);
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::IsVisible()
{
  zylScope("IsVisible()");
  return zylAnyBlocksVisible(this->GetDisplays());
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::GetBounds(double bounds[6])
{
  zylScope("GetBounds()");
  return zylGetVisibleBounds(this->GetAllPipelines(), bounds);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkCollection> zylDerivedSurfaceRepresentation::GetPVRepresentations()
{
  zylScope("GetPVRepresentations()");
  // Kept: feature lines come before mesh lines here, unlike everywhere else.
  return zylGetPVRepresentations(
    { this->SurfacePipeline, this->HighlightPipeline, this->ContourPipeline,
      this->FeatureLinePipeline, this->MeshLinePipeline, this->VectorGlyphPipeline });
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::HasRepresentation(vtkSMProxy* representation)
{
  zylScope("HasRepresentation()");
  return zylHasRepresentation(this->GetAllPipelines(), representation);
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPipeline*> zylDerivedSurfaceRepresentation::GetDisplays()
{
  return { this->SurfacePipeline, this->ContourPipeline, this->MeshLinePipeline,
    this->FeatureLinePipeline, this->VectorGlyphPipeline };
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPipeline*> zylDerivedSurfaceRepresentation::GetAllPipelines()
{
  return { this->SurfacePipeline, this->HighlightPipeline, this->ContourPipeline,
    this->MeshLinePipeline, this->FeatureLinePipeline, this->VectorGlyphPipeline };
}

//--------------------------------------------------------------------------------------------------
std::vector<vtkSmartPointer<vtkSMSourceProxy>*> zylDerivedSurfaceRepresentation::GetOwnFilters()
{
  return { &this->BlockMerger, &this->IntegrationScript, &this->Integrator, &this->SurfaceScript,
    &this->WarpFilter, &this->BlockExtractor, &this->VolumeScript, &this->Output };
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Highlight(int style)
{
  zylScope("Highlight()");
  zylPropertyCollection* settings = this->GetHighlightProperties();
  settings->Set("Visibility", true);
  zylBlockFlags::Write(settings, ShowTheBlock);
  settings->Set("Style", style);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UnHighlight()
{
  zylScope("UnHighlight()");
  zylBlockFlags::Write(this->GetHighlightProperties(), {});
  this->GetHighlightProperties()->Set("Visibility", false);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::SetHighlightTransparency(double transparency)
{
  zylScope("SetHighlightTransparency()");
  if (this->DataSet)
  {
    this->GetHighlightProperties()->Set("Transparency", transparency);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> zylDerivedSurfaceRepresentation::GetDerivedSurface()
{
  zylScope("GetDerivedSurface()");
  return this->FetchSurface("vtkAppendPolyData");
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> zylDerivedSurfaceRepresentation::FetchSurface(
  const char* postGatherHelperName)
{
  if (!zylIsUsable(this->SurfaceScript, "GetDerivedSurface()"))
  {
    return nullptr;
  }
  // What a clip leaves of a surface is no poly data.
  vtkSmartPointer<vtkSMSourceProxy> source = this->SurfaceScript;
  if (this->GetNumberOfClips() > 0)
  {
    source = zylProxyBuilder(source->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
               .Input(source)
               .MakeUnregistered();
  }
  return vtkPolyData::SafeDownCast(zylCore::Fetch(source, postGatherHelperName));
}

//--------------------------------------------------------------------------------------------------
zylIntegrateFields::IntegratedValues_ zylDerivedSurfaceRepresentation::GetIntegratedValues()
{
  zylScope("GetIntegratedValues()");
  zylIntegrateFields::IntegratedValues_ values;
  this->Update();
  if (!zylGetLiveOutput(this->DataSet) || !zylIsAlive(this->BlockMerger))
  {
    return values;
  }
  if (!this->IntegrationScript)
  {
    // Kept: set here only, so that later definitions do not change what is integrated.
    this->IntegrationScript =
      this->Made("ProgrammableFilter", zylScriptFilter(this->BlockMerger).Make());
    zylPushScript(zylGetDerivedVariablesScript(this->DataSet), this->IntegrationScript);
  }
  if (!this->Integrator)
  {
    this->Integrator = this->MakeFilter("IntegrateAttributes", this->IntegrationScript);
  }
  if (!this->IntegrationScript || !this->Integrator)
  {
    return values;
  }
  this->Integrator->UpdateVTKObjects();
  zylUpdatePipeline(this->Integrator, zylTimeController::GetInstance()->GetActiveTime());
  const auto fetched = zylCore::Fetch(this->Integrator, "vtkAppendDataSets");
  zylReadTuples(
    vtkUnstructuredGrid::SafeDownCast(fetched), 0, values.PointValues, values.CellValues);
  return values;
}
