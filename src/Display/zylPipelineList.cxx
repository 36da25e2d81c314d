#include "Display/zylPipelineList.h"

#include "ParaView/zylDrawOrder.h"
#include "zylPipeline.h"
#include "zylPropertyCollection.h"
#include "zylView.h"

#include <algorithm>
#include <utility>

#include <vtkBoundingBox.h>
#include <vtkCollection.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
bool zylAnyBlocksVisible(const zylPipelineList& pipelines)
{
  return std::any_of(pipelines.begin(), pipelines.end(),
    [](zylPipeline* pipeline) { return pipeline->AnyBlocksVisible(); });
}

//--------------------------------------------------------------------------------------------------
void zylForceHidden(const zylPipelineList& pipelines, bool hidden)
{
  for (zylPipeline* pipeline : pipelines)
  {
    pipeline->GetProperties()->Set("ForceHidden", hidden);
  }
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

//--------------------------------------------------------------------------------------------------
void zylOrderDrawing(
  const zylPipelineList& pipelines, zylView* view, std::vector<vtkTypeUInt32>& last)
{
  std::vector<vtkSMProxy*> order;
  std::vector<vtkTypeUInt32> ids;
  for (zylPipeline* pipeline : pipelines)
  {
    if (vtkSMProxy* representation = pipeline->GetRepresentation())
    {
      order.push_back(representation);
      ids.push_back(representation->GetGlobalID());
    }
  }
  if (view && ids != last)
  {
    zylSetDrawOrder(view->GetProxy(), order);
    last = std::move(ids);
  }
}
