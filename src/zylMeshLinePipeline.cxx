#include "zylMeshLinePipeline.h"

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylMeshLinePipeline);
