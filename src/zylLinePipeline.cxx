#include "zylLinePipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "zylPropertyCollection.h"

#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylLinePipeline);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("RenderAsTubes", false).To("RenderLinesAsTubes"),
  zylPropertyRow::Double("TubeRadius", 1.0).To("LineWidth"),
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylLinePipeline::zylLinePipeline()
{
  this->zylLinePipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylLinePipeline::InitializeProperties()
{
  this->Superclass::InitializeProperties();
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
const char* zylLinePipeline::GetRepresentationType()
{
  return "Wireframe";
}

//--------------------------------------------------------------------------------------------------
void zylLinePipeline::PushSettings()
{
  zylPush(this->Properties, Rows, this->Representation);
}
