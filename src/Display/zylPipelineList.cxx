#include "Display/zylPipelineList.h"

#include "zylPipeline.h"

#include <algorithm>

#include <vtkBoundingBox.h>
#include <vtkCollection.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
bool zylAnyBlocksVisible(const zylPipelineList& pipelines)
{
  return std::any_of(pipelines.begin(), pipelines.end(),
    [](zylPipeline* pipeline) { return pipeline->AnyBlocksVisible(); });
}

//--------------------------------------------------------------------------------------------------
bool zylGetVisibleBounds(const zylPipelineList& pipelines, double bounds[6])
{
  vtkBoundingBox box;
  for (zylPipeline* pipeline : pipelines)
  {
    if (pipeline->GetDataSource() && pipeline->AnyBlocksVisible())
    {
      double visible[6];
      pipeline->GetVisibleBounds(visible);
      box.AddBounds(visible);
    }
  }
  box.GetBounds(bounds);
  return box.IsValid() != 0;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkCollection> zylGetPVRepresentations(const zylPipelineList& pipelines)
{
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
bool zylHasRepresentation(const zylPipelineList& pipelines, const vtkSMProxy* representation)
{
  return representation &&
    std::any_of(pipelines.begin(), pipelines.end(), [representation](zylPipeline* pipeline) {
      return pipeline->GetRepresentation() == representation;
    });
}
