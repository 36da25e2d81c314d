#include "zylView.h"

#include "Host/zylHostCamera.h"
#include "Host/zylHostContext.h"
#include "Host/zylHostFrame.h"
#include "Host/zylHostRenderWindow.h"
#include "Host/zylHostViewProxy.h"
#include "Host/zylScreenshot.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylSession.h"
#include "ParaView/zylViewSettings.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylRepresentation.h"
#include "zylTimeController.h"

#include <algorithm>
#include <vector>

#include <vtkBoundingBox.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkGraphicsFactory.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderUtilities.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOutputWindow.h>
#include <vtkPVRenderView.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtksys/SystemInformation.hxx>

namespace {
constexpr const char* NoContext = "No OpenGL context is current";
constexpr const char* NoRenderer = "No Renderer is available in the view";

void Mark(const char* text)
{
  vtkOpenGLRenderUtilities::MarkDebugEvent(text);
}

} // namespace

vtkStandardNewMacro(zylView);

//--------------------------------------------------------------------------------------------------
zylView::zylView()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , LightKitProperties(vtkSmartPointer<zylPropertyCollection>::New())
  , GraphicsFactory(vtkSmartPointer<vtkGraphicsFactory>::New())
  , StartRenderCommand(vtkSmartPointer<vtkCallbackCommand>::New())
  , Frame(new zylHostFrame)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylView()");
  this->StartRenderCommand->SetClientData(this);
  this->StartRenderCommand->SetCallback(&zylView::StartRenderCallback);
  this->CreateProxy();
  zylViewSettings::Declare(this->Properties, this->LightKitProperties);
  zylCore::GetInstance()->RegisterView(this);
}

//--------------------------------------------------------------------------------------------------
zylView::~zylView()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "~zylView()");
  zylCore::GetInstance()->UnRegisterView(this);
  while (!this->Representations.empty())
  {
    const vtkSmartPointer<zylRepresentation> rep = *this->Representations.begin();
    this->RemoveRepresentation(rep);
  }
  if (!this->Proxy)
  {
    return;
  }
  // The window goes here: what is left of OpenGL objects must not be looked for elsewhere.
  const zylHostContextKeeper context;
  const zylHostResourceScope resources(this->RenderWindow);
  if (zylHostRenderWindow* window = this->Frame->GetWindow())
  {
    window->ReleaseGraphicsResources(window);
  }
  zylHostViewProxy::Release(this->Proxy, this->StartRenderCommand);
  this->Proxy = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylView::CreateProxy()
{
  this->Proxy = zylHostViewProxy::New(
    zylCore::GetInstance()->GetSessionProxyManager(), this->StartRenderCommand);
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "No session: the view is without a proxy and will show nothing");
    return;
  }
  if (auto* view = vtkPVRenderView::SafeDownCast(this->Proxy->GetClientSideObject()))
  {
    this->Renderer = view->GetRenderer(vtkPVRenderView::DEFAULT_RENDERER);
    this->RenderWindow = zylHostRenderWindow::SafeDownCast(view->GetRenderWindow());
    this->Frame->SetWindow(this->RenderWindow);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylView::HasSession(const char* operation)
{
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "%s: the view has no session", operation);
    return false;
  }
  return zylIsUsable(this->Proxy, operation);
}

//--------------------------------------------------------------------------------------------------
void zylView::UpdateProxy()
{
  if (zylIsAlive(this->Proxy))
  {
    const zylHostResourceScope resources(this->RenderWindow);
    this->Proxy->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
vtkSMRenderViewProxy* zylView::GetProxy()
{
  return this->Proxy;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylView::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylView::GetLightKitProperties()
{
  return this->LightKitProperties;
}

//--------------------------------------------------------------------------------------------------
void zylView::AddRepresentation(zylRepresentation* rep)
{
  if (rep && this->Representations.count(rep) == 0)
  {
    rep->SetView(this);
    this->Representations.insert(rep);
    rep->Update();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::RemoveRepresentation(zylRepresentation* rep)
{
  if (rep && this->Representations.count(rep) > 0)
  {
    rep->SetView(nullptr);
    this->Representations.erase(rep);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylRepresentation> zylView::FindRepresentationForFileName(std::string& fileName)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylView()"); // kept: the constructor's label
  for (const auto& rep : this->Representations)
  {
    if (zylDataSet* dataSet = rep->GetDataSet())
    {
      const std::vector<std::string> names = dataSet->GetFileNames();
      if (std::find(names.begin(), names.end(), fileName) != names.end())
      {
        return rep;
      }
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylView::Render()
{
  if (!this->HasSession("Render()"))
  {
    return;
  }
  Mark("begin ZYL render");
  if (!this->IgnoreHostContext && !this->AdoptHostContext())
  {
    return;
  }
  this->PreRenderSetup();
  zylHostRenderWindow* window = this->Frame->GetWindow();
  if (!window || window->HasArea())
  {
    this->Proxy->StillRender();
  }
  this->PostRenderCleanup();
  Mark("finish ZYL render");
}

//--------------------------------------------------------------------------------------------------
bool zylView::AdoptHostContext()
{
  switch (this->Frame->Adopt())
  {
    case zylHostFrame::Adopted:
      return true;
    case zylHostFrame::NoContext:
      vtkLogF(ERROR, "%s: the view cannot draw", NoContext);
      return false;
    case zylHostFrame::TooOld:
      vtkErrorMacro(<< "The openGL version is not sufficient for ZYL");
      vtkErrorMacro(<< this->RenderWindow->ReportCapabilities());
      return false;
    default:
      return false;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylView::BeginHostFrame()
{
  if (!this->AdoptHostContext())
  {
    return false;
  }
  this->Frame->Begin();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylView::FindHostFrame()
{
  // Called out of order: a frame without a beginning gets one.
  if (!this->Frame->IsOpen() && this->BeginHostFrame())
  {
    this->Frame->PushState();
  }
  return this->Frame->IsOpen();
}

//--------------------------------------------------------------------------------------------------
void zylView::PreRenderSetup()
{
  if (this->InRenderSetup)
  {
    vtkLogF(
      ERROR, "PreRenderSetup was called a second time without PostRenderCleanup() being called");
  }
  if (!this->IgnoreHostContext && this->BeginHostFrame())
  {
    this->Frame->CopyIn(this->SourceFBO);
    Mark("ZYL - push OpenGL state");
    this->Frame->PushState();
    zylTimeController::GetInstance()->Update();
  }
  this->InRenderSetup = true;
  if (this->Proxy)
  {
    vtkSMPropertyHelper(this->Proxy, "SuppressRendering").Set(0);
    this->UpdateProxy();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::PostRenderCleanup()
{
  if (!this->InRenderSetup)
  {
    vtkLogF(ERROR, "PostRenderCleanup() called without PreRenderSetup() being invoked");
  }
  if (!this->IgnoreHostContext && this->FindHostFrame())
  {
    Mark("ZYL - begin BlitDisplayFramebuffer()");
    this->Frame->CopyOut();
    Mark("ZYL - end BlitDisplayFramebuffer()");
    Mark("ZYL - begin pop OpenGL state");
    this->Frame->PopState();
    Mark("ZYL - end pop OpenGL state pop");
    this->Frame->End();
  }
  this->InRenderSetup = false;
  if (this->Proxy)
  {
    vtkSMPropertyHelper(this->Proxy, "SuppressRendering").Set(1);
    this->UpdateProxy();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::PreSelectSetup()
{
  if (this->InSelectSetup)
  {
    vtkLogF(
      ERROR, "PreSelectSetup was called a second time without PostSelectCleanup() being called");
  }
  if (this->BeginHostFrame())
  {
    Mark("ZYL - selection begin push OpenGL state");
    this->Frame->PushState();
    Mark("ZYL - selection end push OpenGL state");
    zylTimeController::GetInstance()->Update();
  }
  this->InSelectSetup = true;
  this->UpdateProxy();
}

//--------------------------------------------------------------------------------------------------
void zylView::PostSelectCleanup()
{
  if (!this->InSelectSetup)
  {
    vtkLogF(ERROR, "PostSelectCleanup() called without PreSelectSetup() being invoked");
  }
  if (this->FindHostFrame())
  {
    Mark("ZYL - selection begin pop OpenGL state");
    this->Frame->PopState();
    Mark("ZYL - selection end pop OpenGL state pop");
    this->Frame->End();
  }
  this->InSelectSetup = false;
  this->UpdateProxy();
}

//--------------------------------------------------------------------------------------------------
void zylView::Update()
{
  if (this->HasSession("Update()"))
  {
    const zylHostResourceScope resources(this->RenderWindow);
    zylViewSettings::Push(this->Properties, this->LightKitProperties, this->Proxy);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetSourceFBO(int fbo)
{
  if (this->SourceFBO != fbo)
  {
    this->SourceFBO = fbo;
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCamera()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "ResetCamera()");
  this->ResetCameraInBounds(nullptr);
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCamera(
  double xmin, double xmax, double ymin, double ymax, double zmin, double zmax)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "ResetCamera(%f, %f, %f, %f, %f, %f)", xmin, xmax, ymin,
    ymax, zmin, zmax);
  const double bounds[6] = { xmin, xmax, ymin, ymax, zmin, zmax };
  this->ResetCameraInBounds(bounds);
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraInBounds(const double* bounds)
{
  if (!this->HasSession("ResetCamera()"))
  {
    return;
  }
  const int lock = vtkSMPropertyHelper(this->Proxy, "LockBounds").GetAsInt();
  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(0);
  this->UpdateProxy();
  zylParaView::ResetCamera(this->Proxy, bounds);
  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(lock);
  this->UpdateProxy();
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraClippingRange()
{
  if (this->GetCamera())
  {
    this->Renderer->ResetCameraClippingRange();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraToNormal(double cx, double cy, double cz, double nx, double ny, double nz)
{
  vtkCamera* camera = this->GetCamera();
  if (!camera)
  {
    return;
  }
  const double center[3] = { cx, cy, cz };
  const double normal[3] = { nx, ny, nz };
  if (!zylHostCamera::LookAgainstNormal(camera, center, normal))
  {
    vtkLogF(ERROR, "ResetCameraToNormal: (%f, %f, %f) is not a direction", nx, ny, nz);
    return;
  }
  this->ResetCamera();
  this->Render();
}

//--------------------------------------------------------------------------------------------------
void zylView::SetViewDir(int direction, bool flip)
{
  vtkCamera* camera = this->GetCamera();
  if (!camera)
  {
    return;
  }
  double bounds[6];
  this->GetBounds(bounds);
  double center[3];
  vtkBoundingBox(bounds).GetCenter(center);
  zylHostCamera::LookAlongAxis(camera, center, direction, flip);
  this->ResetCamera();
}

//--------------------------------------------------------------------------------------------------
void zylView::SetCameraMatrices(const double* first, const double* second, const double* projection)
{
  vtkCamera* camera = this->GetCamera();
  if (camera && !zylHostCamera::SetMatrices(camera, first, second, projection))
  {
    vtkLogF(ERROR, "SetCameraMatrices: the matrices describe no camera");
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetParallelProjection(bool on)
{
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->SetParallelProjection(on);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Pitch(double angle)
{
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->Pitch(angle);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Yaw(double angle)
{
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->Yaw(angle);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetZoom(double factor)
{
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->Zoom(factor);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Azimuth(double factor)
{
  // Kept: zooms, as SetZoom() does. See zylViewCamera.AzimuthZooms.
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->Zoom(factor);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetBackground(double r, double g, double b)
{
  if (this->GetCamera())
  {
    this->Renderer->SetBackground(r, g, b);
    // Some ParaViews set the renderer from this at every render.
    const double color[3] = { r, g, b };
    vtkSMPropertyHelper(this->Proxy, "Background").Set(color, 3);
    this->UpdateProxy();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetWindowSize(int w, int h)
{
  if (w < 0 || h < 0)
  {
    vtkLogF(ERROR, "SetWindowSize: %d x %d is not a size", w, h);
    return;
  }
  if (!this->HasSession("SetWindowSize()"))
  {
    return;
  }
  if (this->RenderWindow)
  {
    this->RenderWindow->SetSize(w, h);
  }
  const int size[2] = { w, h };
  vtkSMPropertyHelper(this->Proxy, "ViewSize").Set(size, 2);
  this->UpdateProxy();
}

//--------------------------------------------------------------------------------------------------
void zylView::GetWindowSize(int size[2])
{
  size[0] = size[1] = 0;
  if (this->RenderWindow)
  {
    std::copy_n(this->RenderWindow->GetSize(), 2, size);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetViewport(int x, int y, int w, int h)
{
  int size[2];
  this->GetWindowSize(size);
  if (size[0] <= 0 || size[1] <= 0)
  {
    vtkLogF(ERROR, "SetViewport: the window has no area");
    return;
  }
  const double width = size[0];
  const double height = size[1];
  vtkCollectionSimpleIterator iterator;
  this->RenderWindow->GetRenderers()->InitTraversal(iterator);
  while (vtkRenderer* renderer = this->RenderWindow->GetRenderers()->GetNextRenderer(iterator))
  {
    renderer->SetViewport(x / width, y / height, (x + w) / width, (y + h) / height);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetOffScreenRendering(bool on)
{
  if (this->RenderWindow)
  {
    this->RenderWindow->SetOffScreenRendering(on);
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
void zylView::SetOrientationAxis(bool on)
{
  if (!this->HasSession("SetOrientationAxis()"))
  {
    return;
  }
  vtkSMPropertyHelper(this->Proxy, "OrientationAxesVisibility").Set(on);
  vtkSMPropertyHelper(this->Proxy, "OrientationAxesInteractivity").Set(on);
  for (unsigned int i = 0; i < 3; ++i)
  {
    vtkSMPropertyHelper(this->Proxy, "OrientationAxesLabelColor").Set(i, on ? 0.0 : 1.0);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetPolygonalOffset(double factor, double units)
{
  zylViewSettings::SetOffset(
    zylCore::GetInstance()->GetSessionProxyManager(), "PolygonOffsetParameters", { factor, units });
}

//--------------------------------------------------------------------------------------------------
void zylView::SetLineOffset(double factor, double units)
{
  zylViewSettings::SetOffset(
    zylCore::GetInstance()->GetSessionProxyManager(), "LineOffsetParameters", { factor, units });
}

//--------------------------------------------------------------------------------------------------
void zylView::SetPointOffset(double units)
{
  zylViewSettings::SetOffset(
    zylCore::GetInstance()->GetSessionProxyManager(), "PointOffsetParameter", { units });
}

//--------------------------------------------------------------------------------------------------
bool zylView::GetBounds(double bounds[6])
{
  for (int i = 0; i < 6; ++i)
  {
    bounds[i] = i % 2 ? -1.0 : 1.0;
  }
  if (!this->Renderer)
  {
    vtkLogF(ERROR, "%s", NoRenderer);
    return false;
  }
  vtkBoundingBox box;
  for (const auto& rep : this->Representations)
  {
    double part[6];
    if (rep->IsVisible() && rep->GetBounds(part))
    {
      box.AddBounds(part);
    }
  }
  if (box.IsValid())
  {
    box.GetBounds(bounds);
  }
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "GetBounds(): [%f, %f, %f, %f, %f, %f]", bounds[0],
    bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
  return bounds[0] <= bounds[1];
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkImageData> zylView::CaptureImage()
{
  if (!this->BeginCapture("CaptureImage()"))
  {
    return nullptr;
  }
  zylScreenshot screenshot(this->Proxy);
  if (!screenshot)
  {
    return nullptr;
  }
  this->PreRenderSetup();
  vtkSmartPointer<vtkImageData> image = screenshot.Capture();
  this->PostRenderCleanup();
  return image;
}

//--------------------------------------------------------------------------------------------------
bool zylView::SaveScreenshot(const char* fileName)
{
  if (!fileName || !*fileName)
  {
    vtkLogF(ERROR, "SaveScreenshot: no file name");
    return false;
  }
  if (!this->BeginCapture("SaveScreenshot()"))
  {
    return false;
  }
  if (!zylScreenshot::IsWritable(fileName))
  {
    vtkLogF(ERROR, "SaveScreenshot: '%s' cannot be written to", fileName);
    return false;
  }
  zylScreenshot screenshot(this->Proxy, fileName);
  if (!screenshot)
  {
    return false;
  }
  this->PreRenderSetup();
  const bool written = screenshot.Write();
  this->PostRenderCleanup();
  if (!written)
  {
    vtkLogF(ERROR, "SaveScreenshot: '%s' could not be written", fileName);
  }
  return written;
}

//--------------------------------------------------------------------------------------------------
void zylView::StartRenderCallback(
  vtkObject* caller, unsigned long vtkNotUsed(event), void* clientData, void* vtkNotUsed(callData))
{
  auto* self = static_cast<zylView*>(clientData);
  auto* proxy = vtkSMProxy::SafeDownCast(caller);
  if (!self || !proxy)
  {
    return;
  }
  const bool suppressed = vtkSMPropertyHelper(proxy, "SuppressRendering").GetAsInt() != 0;
  if (!suppressed && !self->Frame->IsStatePushed() && !self->IgnoreHostContext)
  {
    vtkLogF(ERROR, "ParaView RenderView is being called without the OpenGL state being recorded");
    vtkLogF(ERROR, "%s", vtksys::SystemInformation::GetProgramStack(5, 1).c_str());
  }
}

//--------------------------------------------------------------------------------------------------
vtkCamera* zylView::GetCamera()
{
  if (!this->Renderer)
  {
    vtkLogF(ERROR, "%s", NoRenderer);
    return nullptr;
  }
  return this->Renderer->GetActiveCamera();
}

//--------------------------------------------------------------------------------------------------
bool zylView::BeginCapture(const char* operation)
{
  if (!this->HasSession(operation))
  {
    return false;
  }
  zylHostRenderWindow* window = this->Frame->GetWindow();
  if (window && !window->HasArea())
  {
    vtkLogF(ERROR, "%s: the window has no area", operation);
    return false;
  }
  return this->IgnoreHostContext || this->AdoptHostContext();
}

//--------------------------------------------------------------------------------------------------
//--------------------------------------------------------------------------------------------------
zylRepresentation* zylView::GetZYLRepresentation(vtkSMProxy* proxy)
{
  for (const auto& rep : this->Representations)
  {
    if (rep->HasRepresentation(proxy))
    {
      return rep;
    }
  }
  return nullptr;
}
