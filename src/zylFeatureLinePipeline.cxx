#include "zylFeatureLinePipeline.h"

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylFeatureLinePipeline);

//--------------------------------------------------------------------------------------------------
const char* zylFeatureLinePipeline::GetRepresentationType()
{
  return "Feature Edges";
}
