#include "zylMeshLinePipeline.h"

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylMeshLinePipeline);

//--------------------------------------------------------------------------------------------------
zylMeshLinePipeline::zylMeshLinePipeline()
{
  this->RepresentationType = "Wireframe";
}
