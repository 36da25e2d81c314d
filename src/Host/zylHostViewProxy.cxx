#include "Host/zylHostViewProxy.h"

#include "Host/zylHostContext.h"
#include "Host/zylHostWindowFactory.h"
#include "Host/zylTranslucentPass.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"

#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkPVRenderView.h>
#include <vtkPVRenderViewSettings.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>

namespace {
constexpr const char* Unwanted[] = { "DepthPeeling", "UseFXAA" };
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMRenderViewProxy> zylHostViewProxy::New(
  vtkSMSessionProxyManager* manager, vtkCommand* startRender)
{
  // The window comes with the proxy. ParaView looks at the display before the first one.
  zylHostContextKeeper context;
  zylHostRenderWindowScope windows;
  vtkSmartPointer<vtkSMProxy> proxy;
  if (manager && zylIsAlive(manager->GetSession()))
  {
    zylDropDeadLinks(manager);
    proxy.TakeReference(manager->NewProxy("views", "RenderView"));
  }
  vtkSmartPointer<vtkSMRenderViewProxy> view = vtkSMRenderViewProxy::SafeDownCast(proxy);
  if (!view)
  {
    return nullptr;
  }
  // ParaView links these to the session's settings: with each new view all views get the settings'.
  if (vtkSMProxy* shared = manager->GetProxy("settings", "RenderViewSettings"))
  {
    for (const char* name : Unwanted)
    {
      vtkSMPropertyHelper(shared, name, /*quiet*/ true).Set(0);
    }
    shared->UpdateVTKObjects();
  }
  view->AddObserver(vtkCommand::StartEvent, startRender);
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
  controller->InitializeProxy(view);
  controller->RegisterViewProxy(view);
  if (auto* client = vtkPVRenderView::SafeDownCast(view->GetClientSideObject()))
  {
    zylUseTranslucentPass(client->GetRenderWindow());
  }

  vtkSMPropertyHelper(view, "LockBounds").Set(1);
  vtkSMPropertyHelper(view, "SuppressRendering").Set(1);
  view->UpdateVTKObjects();

  auto* settings = vtkPVRenderViewSettings::GetInstance();
  settings->SetResolveCoincidentTopology(vtkPVRenderViewSettings::OFFSET_FACES);
  settings->SetPolygonOffsetParameters(0, 0);
  settings->SetLineOffsetParameters(0, -4);
  settings->SetPointOffsetParameter(-8);

  for (const char* name : Unwanted)
  {
    vtkSMPropertyHelper(view, name).Set(0);
  }
  vtkSMPropertyHelper(view, "OrientationAxesVisibility").Set(0);
  zylParaView::UseOwnBackground(view);
  zylParaView::RemoveCameraWidget(view);
  view->UpdateVTKObjects();
  return view;
}

//--------------------------------------------------------------------------------------------------
void zylHostViewProxy::Release(vtkSMRenderViewProxy* view, vtkCommand* startRender)
{
  view->RemoveObserver(startRender);
  if (view->GetSession())
  {
    vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
    controller->UnRegisterProxy(view);
  }
}
