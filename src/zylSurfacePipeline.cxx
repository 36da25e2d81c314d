#include "zylSurfacePipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "zylPropertyCollection.h"

#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylSurfacePipeline);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Int("ColorMapStyle", 1),
  zylPropertyRow::Int("NumberOfColors", 5),
  zylPropertyRow::Double("Transparency", 0.0).To("Opacity").Mapped(1.0, -1.0),
  zylPropertyRow::Int("DisplayStyle", 0),
  zylPropertyRow::Bool("RenderPointsAsSpheres", false).To("RenderPointsAsSpheres"),
  zylPropertyRow::Double("PointRadius", 1.0).To("PointSize"),
  zylPropertyRow::Bool("RenderLinesAsTubes", false).To("RenderLinesAsTubes"),
  zylPropertyRow::Double("TubeRadius", 1.0).To("LineWidth"),
  zylPropertyRow::Double("PointGaussianRadius", 1.0).To("GaussianRadius"),
  zylPropertyRow::Int("PointGaussianType", 1).To("ShaderPreset"),
};

constexpr int PointGaussian = 2; // of "DisplayStyle"
} // namespace

//--------------------------------------------------------------------------------------------------
zylSurfacePipeline::zylSurfacePipeline()
{
  this->zylSurfacePipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylSurfacePipeline::InitializeProperties()
{
  this->Superclass::InitializeProperties();
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylSurfacePipeline::PrepareSource()
{
  // Point Gaussians do not heed the visibility of blocks.
  return this->Properties->GetInt("DisplayStyle") == PointGaussian ? this->ExtractVisibleBlocks()
                                                                   : this->DataSource.Get();
}

//--------------------------------------------------------------------------------------------------
const char* zylSurfacePipeline::GetRepresentationType()
{
  switch (this->Properties->GetInt("DisplayStyle"))
  {
    case 1:
      return "Points";
    case PointGaussian:
      return "Point Gaussian";
    default:
      return "Surface";
  }
}

//--------------------------------------------------------------------------------------------------
void zylSurfacePipeline::PushSettings()
{
  zylPush(this->Properties, Rows, this->Representation);
}
