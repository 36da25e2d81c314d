#include "zylDerivedSurfaceRepresentation.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylArrayInformation.h"
#include "zylContourPipeline.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylMeshLinePipeline.h"
#include "zylMultiClip.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylTimeController.h"
#include "zylVectorGlyphPipeline.h"

#include <algorithm>

#include <vtkBoundingBox.h>
#include <vtkLogger.h>
#include <vtkPolyData.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

#define zylScope(name) vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, name)

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Ints("Blocks"),
  zylPropertyRow::Bool("MergePoints", false),
  zylPropertyRow::Bool("WarpByVector", false),
  zylPropertyRow::String("WarpVectorVariable", ""),
  zylPropertyRow::Double("WarpVectorScale", 1.0),
};

// The blocks to show, as pairs of flat index and flag: the result is the one block 0.
constexpr int TheBlock[] = { 0, 1 };

void SetShownBlocks(zylPropertyCollection* settings, unsigned int count)
{
  zylProperty* blocks = settings->GetProperty("BlockVisibility");
  blocks->SetNumberOfElements(count);
  blocks->SetElements(TheBlock, count);
}
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
    SetShownBlocks(pipeline->GetProperties(), 2);
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
  auto filter =
    zylProxyBuilder(source ? source->GetSessionProxyManager() : nullptr, "filters", name)
      .Input(input)
      .Make();
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
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetOutput() : nullptr;
  if (!source || !source->GetSession() || !this->BuildChain(source))
  {
    return;
  }
  this->UpdateWarp();
  this->Output->UpdateVTKObjects();
  this->UpdateLocalPipeline();

  zylPushProperty(this->Properties->GetProperty("MergePoints"), this->BlockMerger, "MergePoints");
  // Filters that were dropped and made anew are not those that the merger knows.
  zylConnect(this->BlockMerger, this->LastSurfaceFilter);
  this->MultiClip->Update();
  zylConnect(this->FirstSurfaceFilter, this->VolumeScript);

  const double time = zylTimeController::GetInstance()->GetActiveTime();
  this->LastSurfaceFilter->UpdateVTKObjects();
  zylUpdatePipeline(this->LastSurfaceFilter, time, this->FilterTime);
  this->Output->UpdateVTKObjects();
  zylUpdatePipeline(this->Output, time, this->OutputTime);

  for (zylPipeline* pipeline : this->GetAllPipelines())
  {
    pipeline->SetDataSource(this->Output);
    if (this->View)
    {
      pipeline->Update(this->View);
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::BuildChain(vtkSMSourceProxy* source)
{
  if (!this->BlockExtractor)
  {
    this->BlockExtractor = this->MakeFilter("ExtractBlock", source);
    this->VolumeScript = this->MakeFilter("ProgrammableFilter", this->BlockExtractor);
  }
  if (!this->BlockExtractor || !this->BlockExtractor->GetSession() || !this->VolumeScript)
  {
    return false;
  }
  zylConnect(this->BlockExtractor, source); // which may be another dataset's by now
  if (!this->FirstSurfaceFilter)
  {
    this->CreateSurfacePipeline();
  }
  this->UpdateBlocks();
  vtkSMPropertyHelper(this->VolumeScript, "CopyArrays").Set(1);
  this->VolumeScript->UpdateVTKObjects();
  if (!this->FirstSurfaceFilter || !this->LastSurfaceFilter)
  {
    return false;
  }
  if (!this->BlockMerger)
  {
    this->BlockMerger = this->MakeFilter("MergeBlocks", this->LastSurfaceFilter);
    if (this->BlockMerger)
    {
      vtkSMPropertyHelper(this->BlockMerger, "MergePoints").Set(0);
      vtkSMPropertyHelper(this->BlockMerger, "OutputDataSetType").Set(VTK_POLY_DATA);
      this->BlockMerger->UpdateVTKObjects();
    }
    this->MultiClip->SetInput(this->BlockMerger);
    this->SurfaceScript = this->MakeFilter("ProgrammableFilter", this->MultiClip->GetOutput());
    this->WarpFilter = this->MakeFilter("WarpVector", this->SurfaceScript);
    this->Output = this->MakeFilter("PassThrough", this->SurfaceScript);
  }
  return this->BlockMerger && this->SurfaceScript && this->WarpFilter && this->Output;
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UpdateBlocks()
{
  const zylProperty* blocks = this->Properties->GetProperty("Blocks");
  const int* values = blocks->GetIntElements();
  const std::vector<int> wanted(values, values + blocks->GetNumberOfElements());
  vtkSMPropertyHelper indices(this->BlockExtractor, "BlockIndices");
  if (indices.GetIntArray() != wanted)
  {
    indices.SetNumberOfElements(0);
    indices.Set(wanted.data(), static_cast<unsigned int>(wanted.size()));
    this->BlockExtractor->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UpdateWarp()
{
  const bool warp = this->Properties->GetBool("WarpByVector");
  if (warp)
  {
    vtkSMPropertyHelper(this->WarpFilter, "SelectInputVectors")
      .SetInputArrayToProcess(0, this->Properties->GetString("WarpVectorVariable").c_str());
    zylPushProperty(
      this->Properties->GetProperty("WarpVectorScale"), this->WarpFilter, "ScaleFactor");
    this->WarpFilter->UpdateVTKObjects();
  }
  zylConnect(this->Output, warp ? this->WarpFilter : this->SurfaceScript);
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
  for (vtkSMSourceProxy* proxy :
    { this->BlockMerger.Get(), this->SurfaceScript.Get(), this->WarpFilter.Get(),
      this->BlockExtractor.Get(), this->VolumeScript.Get(), this->Output.Get() })
  {
    zylUnregister(proxy);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::SetFirstSurfaceFilter(vtkSMSourceProxy* filter)
{
  if (filter == this->FirstSurfaceFilter)
  {
    return;
  }
  if (!filter)
  {
    zylUnregister(this->FirstSurfaceFilter);
  }
  this->FirstSurfaceFilter = filter;
  this->Modified();
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
  for (zylPipeline* pipeline : this->GetDisplays())
  {
    pipeline->GetProperties()->Set("ForceHidden", true);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Show()
{
  zylScope("Show()");
  for (zylPipeline* pipeline : this->GetDisplays())
  {
    pipeline->GetProperties()->Set("ForceHidden", false);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::IsVisible()
{
  zylScope("IsVisible()");
  const auto displays = this->GetDisplays();
  return std::any_of(displays.begin(), displays.end(),
    [](zylPipeline* pipeline) { return pipeline->AnyBlocksVisible(); });
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::GetBounds(double bounds[6])
{
  zylScope("GetBounds()");
  vtkBoundingBox box;
  for (zylPipeline* pipeline : this->GetAllPipelines())
  {
    if (pipeline->GetDataSource() && pipeline->AnyBlocksVisible())
    {
      double visible[6];
      pipeline->GetVisibleBounds(visible);
      box.AddBounds(visible);
    }
  }
  box.GetBounds(bounds);
  return bounds[1] - bounds[0] >= 0.0;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkCollection> zylDerivedSurfaceRepresentation::GetPVRepresentations()
{
  zylScope("GetPVRepresentations()");
  // Kept: feature lines come before mesh lines here, unlike everywhere else.
  zylPipeline* const pipelines[] = { this->SurfacePipeline, this->HighlightPipeline,
    this->ContourPipeline, this->FeatureLinePipeline, this->MeshLinePipeline,
    this->VectorGlyphPipeline };
  auto collection = vtkSmartPointer<vtkCollection>::New();
  for (zylPipeline* pipeline : pipelines)
  {
    if (pipeline->GetRepresentation())
    {
      collection->AddItem(pipeline->GetRepresentation());
    }
  }
  return collection;
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedSurfaceRepresentation::HasRepresentation(vtkSMProxy* representation)
{
  zylScope("HasRepresentation()");
  const auto pipelines = this->GetAllPipelines();
  return representation &&
    std::any_of(pipelines.begin(), pipelines.end(), [representation](zylPipeline* pipeline) {
      return pipeline->GetRepresentation() == representation;
    });
}

//--------------------------------------------------------------------------------------------------
std::array<zylPipeline*, 5> zylDerivedSurfaceRepresentation::GetDisplays()
{
  return { this->SurfacePipeline, this->ContourPipeline, this->MeshLinePipeline,
    this->FeatureLinePipeline, this->VectorGlyphPipeline };
}

//--------------------------------------------------------------------------------------------------
std::array<zylPipeline*, 6> zylDerivedSurfaceRepresentation::GetAllPipelines()
{
  return { this->SurfacePipeline, this->HighlightPipeline, this->ContourPipeline,
    this->MeshLinePipeline, this->FeatureLinePipeline, this->VectorGlyphPipeline };
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::Highlight(int style)
{
  zylScope("Highlight()");
  zylPropertyCollection* settings = this->GetHighlightProperties();
  settings->Set("Visibility", true);
  SetShownBlocks(settings, 2);
  settings->Set("Style", style);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedSurfaceRepresentation::UnHighlight()
{
  zylScope("UnHighlight()");
  SetShownBlocks(this->GetHighlightProperties(), 0);
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
  if (!this->SurfaceScript || !this->SurfaceScript->GetSession())
  {
    return nullptr;
  }
  return vtkPolyData::SafeDownCast(zylCore::Fetch(this->SurfaceScript, "vtkAppendPolyData"));
}
