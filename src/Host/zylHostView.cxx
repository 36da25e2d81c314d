#include "Host/zylHostView.h"

#include "Host/zylHostContext.h"
#include "Host/zylHostRenderWindow.h"
#include "Host/zylHostViewProxy.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylSession.h"
#include "zylCore.h"

#include <algorithm>

#include <vtkClientServerStream.h>
#include <vtkCommand.h>
#include <vtkGraphicsFactory.h>
#include <vtkLogger.h>
#include <vtkOpenGLRenderUtilities.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOutputWindow.h>
#include <vtkPVRenderView.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSMProperty.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtk_glew.h>

//--------------------------------------------------------------------------------------------------
zylHostView::zylHostView(vtkObject* owner, vtkCommand* startRender)
  : Owner(owner)
  , StartRender(startRender)
  , Proxy(
      zylHostViewProxy::New(zylCore::GetInstance()->GetSessionProxyManager(), this->StartRender))
{
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "No session: the view is without a proxy and will show nothing");
    return;
  }
  this->Observer = this->Proxy->AddObserver(
    vtkCommand::PropertyModifiedEvent, this, &zylHostView::OnPropertyModified);
  if (auto* view = vtkPVRenderView::SafeDownCast(this->Proxy->GetClientSideObject()))
  {
    this->Renderer = view->GetRenderer(vtkPVRenderView::DEFAULT_RENDERER);
    this->Window = zylHostRenderWindow::SafeDownCast(view->GetRenderWindow());
    this->Frame.SetWindow(this->Window);
  }
}

//--------------------------------------------------------------------------------------------------
zylHostView::~zylHostView()
{
  if (!this->Proxy)
  {
    return;
  }
  this->Proxy->RemoveObserver(this->Observer);
  // The window goes here: what is left of OpenGL objects must not be looked for elsewhere.
  const zylHostContextKeeper context;
  const zylHostResourceScope resources(this->Window);
  if (zylHostRenderWindow* window = this->Frame.GetWindow())
  {
    window->ReleaseGraphicsResources(window);
  }
  zylHostViewProxy::Release(this->Proxy, this->StartRender);
  this->Proxy = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylHostView::Mark(const std::string& text)
{
  vtkOpenGLRenderUtilities::MarkDebugEvent(text);
}

//--------------------------------------------------------------------------------------------------
vtkSMRenderViewProxy* zylHostView::GetProxy() const
{
  return this->Proxy;
}

//--------------------------------------------------------------------------------------------------
vtkRenderer* zylHostView::GetRenderer() const
{
  return this->Renderer;
}

//--------------------------------------------------------------------------------------------------
vtkOpenGLRenderWindow* zylHostView::GetWindow() const
{
  return this->Window;
}

//--------------------------------------------------------------------------------------------------
vtkCamera* zylHostView::GetCamera() const
{
  if (!this->Renderer)
  {
    vtkLogF(ERROR, "No Renderer is available in the view");
    return nullptr;
  }
  return this->Renderer->GetActiveCamera();
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::IsUsable(const char* operation) const
{
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "%s: the view has no session", operation);
    return false;
  }
  return zylIsUsable(this->Proxy, operation);
}

//--------------------------------------------------------------------------------------------------
void zylHostView::Push()
{
  if (zylIsAlive(this->Proxy))
  {
    const zylHostResourceScope resources(this->Window);
    this->HasChanges = false;
    this->Proxy->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::Adopt()
{
  switch (this->Frame.Adopt())
  {
    case zylHostFrame::Adopted:
      return true;
    case zylHostFrame::NoContext:
      vtkLogF(ERROR, "No OpenGL context is current: the view cannot draw");
      return false;
    case zylHostFrame::TooOld:
      vtkErrorWithObjectMacro(this->Owner, << "The openGL version is not sufficient for ZYL");
      vtkErrorWithObjectMacro(this->Owner, << this->Window->ReportCapabilities());
      return false;
    default:
      return false;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::Begin()
{
  if (!this->Adopt())
  {
    return false;
  }
  this->Frame.Begin();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::Find()
{
  // Called out of order: a frame without a beginning gets one.
  if (!this->Frame.IsOpen() && this->Begin())
  {
    this->Frame.PushState();
  }
  return this->Frame.IsOpen();
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::BeginRender(int source)
{
  if (!this->Begin())
  {
    return false;
  }
  this->Source = source;
  if (source < 0)
  {
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &this->Source);
  }
  this->Frame.CopyIn(source);
  this->Frame.GetWindow()->ForgetPicture();
  Mark("ZYL - push OpenGL state");
  this->Frame.PushState();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::EndRender()
{
  if (!this->Find())
  {
    return false;
  }
  Mark("ZYL - begin BlitDisplayFramebuffer()");
  this->Frame.CopyOut();
  Mark("ZYL - end BlitDisplayFramebuffer()");
  Mark("ZYL - begin pop OpenGL state");
  this->Frame.PopState();
  Mark("ZYL - end pop OpenGL state pop");
  this->Frame.End();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::BeginSelection()
{
  const bool inRender = this->Frame.IsOpen();
  if (!this->Begin())
  {
    return false;
  }
  this->InterruptsRender = inRender && this->Frame.GetWindow()->HasPicture();
  Mark("ZYL - selection begin push OpenGL state");
  this->Frame.PushState();
  Mark("ZYL - selection end push OpenGL state");
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::EndSelection()
{
  if (!this->Find())
  {
    return false;
  }
  this->Frame.GetWindow()->ForgetPicture();
  if (this->InterruptsRender)
  {
    this->InterruptsRender = false;
    this->Frame.CopyIn(this->Source);
    this->Proxy->StillRender();
  }
  Mark("ZYL - selection begin pop OpenGL state");
  this->Frame.PopState();
  Mark("ZYL - selection end pop OpenGL state pop");
  this->Frame.End();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::HasArea() const
{
  zylHostRenderWindow* window = this->Frame.GetWindow();
  return !window || window->HasArea();
}

//--------------------------------------------------------------------------------------------------
void zylHostView::SetRendering(bool on)
{
  if (!this->Proxy)
  {
    return;
  }
  this->IsSwitching = true;
  vtkSMPropertyHelper(this->Proxy, "SuppressRendering").Set(on ? 0 : 1);
  this->IsSwitching = false;
  if (this->HasChanges)
  {
    this->Push();
  }
  else if (zylIsAlive(this->Proxy))
  {
    vtkClientServerStream stream;
    stream << vtkClientServerStream::Invoke << VTKOBJECT(this->Proxy) << "SetSuppressRendering"
           << (on ? 0 : 1) << vtkClientServerStream::End;
    this->Proxy->GetSession()->ExecuteStream(this->Proxy->GetLocation(), stream);
    this->ForgetSelection();
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostView::OnPropertyModified()
{
  this->HasChanges = this->HasChanges || !this->IsSwitching;
}

//--------------------------------------------------------------------------------------------------
// What a selection has drawn to look up cells is kept until something changes. Hosts move the
// camera itself, which no proxy notices.
void zylHostView::ForgetSelection()
{
  vtkSMProxy* view = this->Proxy;
  if (vtkSMProperty* position = view->GetProperty("CameraPosition"))
  {
    view->MarkDirty(position->GetParent());
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostView::ResetCamera(const double* bounds)
{
  const int lock = vtkSMPropertyHelper(this->Proxy, "LockBounds").GetAsInt();
  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(0);
  this->Push();
  zylParaView::ResetCamera(this->Proxy, bounds);
  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(lock);
  this->Push();
}

//--------------------------------------------------------------------------------------------------
void zylHostView::SetBackground(double r, double g, double b)
{
  this->Renderer->SetBackground(r, g, b);
  // Some ParaViews set the renderer from this at every render.
  const double color[3] = { r, g, b };
  vtkSMPropertyHelper(this->Proxy, "Background").Set(color, 3);
  this->Push();
}

//--------------------------------------------------------------------------------------------------
void zylHostView::SetSize(int w, int h)
{
  if (this->Window)
  {
    this->Window->SetSize(w, h);
  }
  const int size[2] = { w, h };
  vtkSMPropertyHelper(this->Proxy, "ViewSize").Set(size, 2);
  this->Push();
}

//--------------------------------------------------------------------------------------------------
void zylHostView::GetSize(int size[2]) const
{
  size[0] = size[1] = 0;
  if (this->Window)
  {
    std::copy_n(this->Window->GetSize(), 2, size);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostView::SetViewport(int x, int y, int w, int h)
{
  int size[2];
  this->GetSize(size);
  if (size[0] <= 0 || size[1] <= 0)
  {
    return false;
  }
  const double width = size[0];
  const double height = size[1];
  vtkCollectionSimpleIterator iterator;
  this->Window->GetRenderers()->InitTraversal(iterator);
  while (vtkRenderer* renderer = this->Window->GetRenderers()->GetNextRenderer(iterator))
  {
    renderer->SetViewport(x / width, y / height, (x + w) / width, (y + h) / height);
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylHostView::SetOffScreenRendering(bool on)
{
  if (this->Window)
  {
    this->Window->SetOffScreenRendering(on);
  }
  vtkGraphicsFactory::SetOffScreenOnlyMode(on);
  vtkGraphicsFactory::SetUseMesaClasses(on);
  vtkOutputWindow::GetInstance()->SetDisplayMode(on - 1);
  if (on)
  {
    vtkObject::SetGlobalWarningDisplay(0);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostView::SetOrientationAxis(bool on)
{
  vtkSMPropertyHelper(this->Proxy, "OrientationAxesVisibility").Set(on);
  vtkSMPropertyHelper(this->Proxy, "OrientationAxesInteractivity").Set(on);
  for (unsigned int i = 0; i < 3; ++i)
  {
    vtkSMPropertyHelper(this->Proxy, "OrientationAxesLabelColor").Set(i, on ? 0.0 : 1.0);
  }
}
