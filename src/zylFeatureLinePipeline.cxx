#include "zylFeatureLinePipeline.h"

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylFeatureLinePipeline);

//--------------------------------------------------------------------------------------------------
zylFeatureLinePipeline::zylFeatureLinePipeline()
{
  this->RepresentationType = "Feature Edges";
}
