#include "ParaView/zylBlockExtractor.h"

#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
zylProxyBuilder zylBlockExtractor(vtkSMSourceProxy* input)
{
  return zylProxyBuilder(input->GetSessionProxyManager(), "filters", "ExtractBlock")
    .Input(input)
    .Set("PruneOutput", 0)
    .Set("MaintainStructure", 1)
    .Set("BlockIndices", std::vector<int>());
}

//--------------------------------------------------------------------------------------------------
void zylExtractBlocks(vtkSMSourceProxy* stage, const std::vector<int>& blocks)
{
  vtkSMPropertyHelper indices(stage, "BlockIndices");
  if (indices.GetIntArray() != blocks)
  {
    indices.SetNumberOfElements(static_cast<unsigned int>(blocks.size()));
    indices.Set(blocks.data(), static_cast<unsigned int>(blocks.size()));
  }
  stage->UpdateVTKObjects();
}
