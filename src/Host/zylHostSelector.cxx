#include "Host/zylHostSelector.h"

#include "Host/zylHostView.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSelectionSource.h"
#include "ParaView/zylSession.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <vtkCamera.h>
#include <vtkCollection.h>
#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkPVRenderView.h>
#include <vtkPVRenderViewSettings.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSourceProxy.h>
#include <vtk_glew.h>

namespace {
using Point = std::array<double, 3>;

// Lets the first pass of a selection begin with the host's depths, and the others with what the one
// before left, which is the same and the nearest surfaces.
class Occluder : public vtkCommand
{
public:
  vtkTypeMacro(Occluder, vtkCommand);
  static Occluder* New() { return new Occluder; }

  void Execute(vtkObject* caller, unsigned long, void*) override
  {
    auto* renderer = static_cast<vtkRenderer*>(caller);
    if (!renderer->GetPreserveDepthBuffer())
    {
      this->Host->CopyIn(this->Framebuffer);
      renderer->SetPreserveColorBuffer(0);
    }
  }

  zylHostView* Host = nullptr; // borrowed
  int Framebuffer = 0;
};

// Where a ray hits the selected cell first.
bool Intersect(vtkSMProxy* helper, const double near[3], const double far[3], Point& point)
{
  vtkSMPropertyHelper(helper, "PointA").Set(near, 3);
  vtkSMPropertyHelper(helper, "PointB").Set(far, 3);
  helper->UpdateVTKObjects();
  helper->UpdateProperty("Update", true);
  vtkSMPropertyHelper intersection(helper, "Intersection");
  intersection.UpdateValueFromServer();
  intersection.Get(point.data(), 3);
  return zylIsAlive(helper) &&
    std::all_of(point.begin(), point.end(), [](double x) { return std::isfinite(x); });
}

bool SelectSurfaceCells(vtkSMRenderViewProxy* view, const int region[4],
  vtkCollection* representations, vtkCollection* sources, bool multiple)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "vtkSMRenderViewProxy::SelectSurfaceCells");
  return view->SelectSurfaceCells(region, representations, sources, multiple);
}

void ConvertToBlocks(vtkCollection* representations, vtkCollection* sources)
{
  for (int i = 0; i < sources->GetNumberOfItems(); ++i)
  {
    const auto blocks =
      zylSelectionSource::ConvertToBlocks(vtkSMProxy::SafeDownCast(sources->GetItemAsObject(i)),
        vtkSMProxy::SafeDownCast(representations->GetItemAsObject(i)));
    if (blocks)
    {
      sources->ReplaceItem(i, blocks);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylHostSelector::zylHostSelector(zylHostView& host, const int* occluder)
  : Host(host)
  , Occluded(occluder != nullptr)
  , Framebuffer(occluder ? *occluder : 0)
{
  if (this->Framebuffer < 0)
  {
    // The one that is bound now; another one is while passes are drawn.
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &this->Framebuffer);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostSelector::Clamp(int rectangle[4]) const
{
  int size[2];
  this->Host.GetSize(size);
  for (int i = 0; i < 2; ++i)
  {
    int& low = rectangle[i];
    int& high = rectangle[i + 2];
    if (low > high)
    {
      std::swap(low, high);
    }
    if (high < 0 || low >= size[i])
    {
      return false;
    }
    low = std::max(low, 0);
    high = std::min(high, size[i] - 1);
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylHostSelector::GetLook() const
{
  int size[2];
  this->Host.GetSize(size);
  vtkRenderer* renderer = this->Host.GetRenderer();
  const double* viewport = renderer->GetViewport();
  const auto time = [](vtkObject* object) { return static_cast<double>(object->GetMTime()); };
  return { static_cast<double>(size[0]), static_cast<double>(size[1]), viewport[0], viewport[1],
    viewport[2], viewport[3], time(renderer->GetActiveCamera()),
    time(vtkPVRenderViewSettings::GetInstance()) };
}

//--------------------------------------------------------------------------------------------------
bool zylHostSelector::Select(int kind, const int rectangle[4], bool multiple,
  vtkCollection* representations, vtkCollection* sources)
{
  int region[4];
  std::copy_n(rectangle, 4, region);
  if (!this->Clamp(region))
  {
    return false;
  }
  vtkSMRenderViewProxy* proxy = this->Host.GetProxy();
  // Draws nothing, but brings what has changed since the last frame.
  proxy->StillRender();
  // ParaView keeps the pixels of the last time until a proxy changes.
  auto* view = vtkPVRenderView::SafeDownCast(proxy->GetClientSideObject());
  if (view && (this->Occluded || this->Host.GetSelectionLook() != this->GetLook()))
  {
    view->InvalidateCachedSelection();
  }
  unsigned long observer = 0;
  if (this->Occluded)
  {
    this->Host.CopyIn(this->Framebuffer); // makes the buffers fit, before there are passes
    vtkNew<Occluder> occluder;
    occluder->Host = &this->Host;
    occluder->Framebuffer = this->Framebuffer;
    observer = this->Host.GetRenderer()->AddObserver(vtkCommand::StartEvent, occluder);
  }
  const bool found = kind == Points
    ? proxy->SelectSurfacePoints(region, representations, sources, multiple)
    : SelectSurfaceCells(proxy, region, representations, sources, multiple);
  if (observer)
  {
    this->Host.GetRenderer()->RemoveObserver(observer);
  }
  this->Host.SetSelectionLook(this->Occluded ? std::vector<double>() : this->GetLook());
  if (kind == Blocks)
  {
    ConvertToBlocks(representations, sources);
  }
  return found;
}

//--------------------------------------------------------------------------------------------------
void zylHostSelector::GetRay(double x, double y, double near[3], double far[3]) const
{
  vtkRenderer* renderer = this->Host.GetRenderer();
  for (const int z : { 0, 1 })
  {
    double* end = z ? far : near;
    renderer->SetDisplayPoint(x, y, z);
    renderer->DisplayToWorld();
    const double* world = renderer->GetWorldPoint();
    std::transform(world, world + 3, end, [world](double value) { return value / world[3]; });
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostSelector::PickPoint(int x, int y, double point[3])
{
  vtkNew<vtkCollection> representations;
  vtkNew<vtkCollection> sources;
  const int rectangle[4] = { x, y, x, y };
  if (!this->Select(Cells, rectangle, false, representations, sources))
  {
    return false;
  }
  vtkSMSourceProxy* data =
    zylSelectionSource::GetInput(vtkSMProxy::SafeDownCast(representations->GetItemAsObject(0)));
  auto* selection = vtkSMProxy::SafeDownCast(sources->GetItemAsObject(0));
  if (!data || !selection)
  {
    return false;
  }
  const auto helper = zylProxyBuilder(data->GetSessionProxyManager(), "misc", "PickingHelper")
                        .Input(data)
                        .Input(selection, "Selection")
                        .Set("SnapOnMeshPoint", 0)
                        .MakeProxy();
  if (!helper)
  {
    return false;
  }
  // The ray of a pixel is that of its corner. Along the edge of a cell it may miss what the pixel
  // shows; the ray of the center does not.
  Point cornerNear, cornerFar, centerNear, centerFar;
  this->GetRay(x, y, cornerNear.data(), cornerFar.data());
  this->GetRay(x + 0.5, y + 0.5, centerNear.data(), centerFar.data());
  Point corner, center;
  const bool hasCenter = Intersect(helper, centerNear.data(), centerFar.data(), center);
  const bool hasCorner = Intersect(helper, cornerNear.data(), cornerFar.data(), corner);
  if (!hasCorner && !hasCenter)
  {
    return false;
  }
  bool useCorner = hasCorner;
  if (hasCorner && hasCenter)
  {
    // From the center of the pixel to its corner it is half a diagonal.
    const double along =
      std::sqrt(vtkMath::Distance2BetweenPoints(center.data(), centerNear.data()) /
        vtkMath::Distance2BetweenPoints(centerFar.data(), centerNear.data()));
    Point across;
    for (int i = 0; i < 3; ++i)
    {
      across[i] = cornerNear[i] + along * (cornerFar[i] - cornerNear[i]);
    }
    useCorner = vtkMath::Distance2BetweenPoints(corner.data(), center.data()) <=
      2.0 * vtkMath::Distance2BetweenPoints(across.data(), center.data());
  }
  std::copy_n((useCorner ? corner : center).data(), 3, point);
  return true;
}
