#include "zylSurfaceStreamlineRepresentation.h"

#include "Derived/zylFlowTracing.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSurfaceMerger.h"
#include "zylArrayInformation.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"

#include <map>
#include <string>

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylSurfaceStreamlineRepresentation);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Double("SurfaceOffset", 0.001).To("ScaleFactor"),
};

// Whether each name stands for point arrays of one number of components in all leaves below `node`
// and in those of which `components` tells.
bool HaveOneShape(zylMultiBlockTree* node, std::map<std::string, unsigned int>& components)
{
  bool one = true;
  for (unsigned int i = 0; i < node->GetNumberOfChildren() && one; ++i)
  {
    one = HaveOneShape(node->GetChild(i), components);
  }
  if (node->GetNumberOfChildren() == 0)
  {
    for (const auto& array : node->PointArrays)
    {
      const unsigned int count = array->GetNumberOfComponents();
      one = one && components.emplace(array->GetName(), count).first->second == count;
    }
  }
  return one;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSurfaceStreamlineRepresentation::zylSurfaceStreamlineRepresentation()
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
zylSurfaceStreamlineRepresentation::~zylSurfaceStreamlineRepresentation()
{
  this->ReleaseSurface();
}

//--------------------------------------------------------------------------------------------------
void zylSurfaceStreamlineRepresentation::FreeResources()
{
  this->Superclass::FreeResources();
  this->ReleaseSurface();
}

//--------------------------------------------------------------------------------------------------
void zylSurfaceStreamlineRepresentation::ReleaseSurface()
{
  for (auto* filter : { &this->SampledSurface, &this->BareSurface, &this->Sampler,
         &this->OffsetSurface, &this->SurfaceNormals, &this->SurfaceMerger, &this->Surface })
  {
    zylUnregister(*filter);
    *filter = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
void zylSurfaceStreamlineRepresentation::CreateSurfacePipeline()
{
  this->CreateSeeds();
  this->ReleaseSurface();
  this->Surface = this->MakeFilter("SurfaceGeometryFilter", this->BlockExtractor);
  this->SurfaceMerger = this->Made("MergeBlocks", zylSurfaceMerger(this->Surface).Make());
  // The faces of cells point out of them: flipped, the normals point into the volume, there to
  // sample. Faces keep their sense, since those of two blocks that touch have opposite ones, and
  // their edges stay closed, with points that move inside from both sides.
  this->SurfaceNormals = this->MakeFilter("PolyDataNormals", this->SurfaceMerger);
  if (!this->SurfaceNormals)
  {
    return; // the session ends just now
  }
  vtkSMPropertyHelper(this->SurfaceNormals, "FlipNormals").Set(1);
  vtkSMPropertyHelper(this->SurfaceNormals, "Consistency").Set(0);
  vtkSMPropertyHelper(this->SurfaceNormals, "Splitting").Set(0);
  this->SurfaceNormals->UpdateVTKObjects();
  this->OffsetSurface = this->MakeFilter("WarpVector", this->SurfaceNormals);
  // Both inputs at once: with one of them the filter complains.
  vtkSMSourceProxy* volume = this->DataSet->GetOutput();
  this->ShapeTime = 0;
  this->Sampler =
    zylProxyBuilder(volume->GetSessionProxyManager(), "filters", "ResampleWithDataset")
      .Input(volume, "SourceDataArrays")
      .Input(this->OffsetSurface, "DestinationMesh")
      .Make();
  // The surface itself, with what was sampled off it: seeds picked on the surface lie in it.
  this->BareSurface = this->MakeFilter("PassArrays", this->SurfaceNormals);
  this->SampledSurface = this->Made("AppendAttributes",
    zylProxyBuilder(volume->GetSessionProxyManager(), "filters", "AppendAttributes")
      .Input(this->BareSurface)
      .Then([this](vtkSMProxy* filter) { // both at once, too
        vtkSMPropertyHelper(filter, "Input").Add(this->Sampler);
      })
      .Make());
  if (!this->SampledSurface)
  {
    return;
  }
  this->CreateTracedLines(this->SampledSurface);
  if (!this->Tracer)
  {
    return;
  }
  vtkSMPropertyHelper(this->Tracer, "Surface Streamlines").Set(1);
  this->Tracer->UpdateVTKObjects();
  this->SetFirstSurfaceFilter(this->Surface);
}

//--------------------------------------------------------------------------------------------------
void zylSurfaceStreamlineRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  zylPush(this->Properties, Rows, this->OffsetSurface);
  zylFlowTracing::SelectPointArray(this->OffsetSurface, "SelectInputVectors", "Normals");
  this->OffsetSurface->UpdateVTKObjects();
  // Boundary patches may have less than volumes. Where one name stands for arrays of different
  // shapes, the sampler would take the shape of one for all.
  zylMultiBlockTree* tree = this->DataSet->GetMultiBlockTree();
  if (this->ShapeTime != tree->GetMTime())
  {
    this->ShapeTime = tree->GetMTime();
    std::map<std::string, unsigned int> components;
    zylParaView::SamplePartialArrays(this->Sampler, HaveOneShape(tree, components));
  }
  // Derived variables are in the selected blocks only.
  const bool derived =
    this->DataSet->IsDerivedPointVariable(this->Properties->GetString("VectorVariable"));
  zylConnect(this->Sampler, derived ? this->VolumeScript.Get() : this->DataSet->GetOutput(),
    "SourceDataArrays");
  this->Superclass::UpdateLocalPipeline();
}
