#include "zylView.h"

#include "Host/zylHostCamera.h"
#include "Host/zylHostRenderWindow.h"
#include "Host/zylHostView.h"
#include "Host/zylScreenshot.h"
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
#include <vtkGraphicsFactory.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderUtilities.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOutputWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtksys/SystemInformation.hxx>

namespace {
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
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylView()");
  this->StartRenderCommand->SetClientData(this);
  this->StartRenderCommand->SetCallback(&zylView::StartRenderCallback);
  this->Host = std::make_unique<zylHostView>(this, this->StartRenderCommand);
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
  this->Host.reset();
}

//--------------------------------------------------------------------------------------------------
vtkSMRenderViewProxy* zylView::GetProxy()
{
  return this->Host->GetProxy();
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
  if (!this->Host->IsUsable("Render()"))
  {
    return;
  }
  Mark("begin ZYL render");
  if (!this->IgnoreHostContext && !this->Host->Adopt())
  {
    return;
  }
  this->PreRenderSetup();
  if (this->Host->HasArea())
  {
    this->GetProxy()->StillRender();
  }
  this->PostRenderCleanup();
  Mark("finish ZYL render");
}

//--------------------------------------------------------------------------------------------------
void zylView::PreRenderSetup()
{
  if (this->InRenderSetup)
  {
    vtkLogF(
      ERROR, "PreRenderSetup was called a second time without PostRenderCleanup() being called");
  }
  if (!this->IgnoreHostContext && this->Host->BeginRender(this->SourceFBO))
  {
    zylTimeController::GetInstance()->Update();
  }
  this->InRenderSetup = true;
  this->Host->SetRendering(true);
}

//--------------------------------------------------------------------------------------------------
void zylView::PostRenderCleanup()
{
  if (!this->InRenderSetup)
  {
    vtkLogF(ERROR, "PostRenderCleanup() called without PreRenderSetup() being invoked");
  }
  if (!this->IgnoreHostContext)
  {
    this->Host->EndRender();
  }
  this->InRenderSetup = false;
  this->Host->SetRendering(false);
}

//--------------------------------------------------------------------------------------------------
void zylView::PreSelectSetup()
{
  if (this->InSelectSetup)
  {
    vtkLogF(
      ERROR, "PreSelectSetup was called a second time without PostSelectCleanup() being called");
  }
  if (this->Host->BeginSelection())
  {
    zylTimeController::GetInstance()->Update();
  }
  this->InSelectSetup = true;
  this->Host->Push();
}

//--------------------------------------------------------------------------------------------------
void zylView::PostSelectCleanup()
{
  if (!this->InSelectSetup)
  {
    vtkLogF(ERROR, "PostSelectCleanup() called without PreSelectSetup() being invoked");
  }
  this->Host->EndSelection();
  this->InSelectSetup = false;
  this->Host->Push();
}

//--------------------------------------------------------------------------------------------------
void zylView::Update()
{
  if (this->Host->IsUsable("Update()"))
  {
    const zylHostResourceScope resources(this->Host->GetWindow());
    zylViewSettings::Push(this->Properties, this->LightKitProperties, this->GetProxy());
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
  if (this->Host->IsUsable("ResetCamera()"))
  {
    this->Host->ResetCamera(nullptr);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCamera(
  double xmin, double xmax, double ymin, double ymax, double zmin, double zmax)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "ResetCamera(%f, %f, %f, %f, %f, %f)", xmin, xmax, ymin,
    ymax, zmin, zmax);
  const double bounds[6] = { xmin, xmax, ymin, ymax, zmin, zmax };
  if (this->Host->IsUsable("ResetCamera()"))
  {
    this->Host->ResetCamera(bounds);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraClippingRange()
{
  if (this->Host->GetCamera())
  {
    this->Host->GetRenderer()->ResetCameraClippingRange();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraToNormal(double cx, double cy, double cz, double nx, double ny, double nz)
{
  vtkCamera* camera = this->Host->GetCamera();
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
  vtkCamera* camera = this->Host->GetCamera();
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
  vtkCamera* camera = this->Host->GetCamera();
  if (camera && !zylHostCamera::SetMatrices(camera, first, second, projection))
  {
    vtkLogF(ERROR, "SetCameraMatrices: the matrices describe no camera");
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetParallelProjection(bool on)
{
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    camera->SetParallelProjection(on);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Pitch(double angle)
{
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    camera->Pitch(angle);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Yaw(double angle)
{
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    camera->Yaw(angle);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetZoom(double factor)
{
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    camera->Zoom(factor);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::Azimuth(double factor)
{
  // Kept: zooms, as SetZoom() does. See zylViewCamera.AzimuthZooms.
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    camera->Zoom(factor);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetBackground(double r, double g, double b)
{
  if (this->Host->GetCamera())
  {
    this->Host->SetBackground(r, g, b);
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
  if (this->Host->IsUsable("SetWindowSize()"))
  {
    this->Host->SetSize(w, h);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::GetWindowSize(int size[2])
{
  this->Host->GetSize(size);
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
  this->Host->SetViewport(x, y, w, h);
}

//--------------------------------------------------------------------------------------------------
void zylView::SetOffScreenRendering(bool on)
{
  if (vtkOpenGLRenderWindow* window = this->Host->GetWindow())
  {
    window->SetOffScreenRendering(on);
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
  if (this->Host->IsUsable("SetOrientationAxis()"))
  {
    this->Host->SetOrientationAxis(on);
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
  if (!this->Host->GetCamera())
  {
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
  zylScreenshot screenshot(this->GetProxy());
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
  zylScreenshot screenshot(this->GetProxy(), fileName);
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
  if (!suppressed && !self->Host->IsStatePushed() && !self->IgnoreHostContext)
  {
    vtkLogF(ERROR, "ParaView RenderView is being called without the OpenGL state being recorded");
    vtkLogF(ERROR, "%s", vtksys::SystemInformation::GetProgramStack(5, 1).c_str());
  }
}

//--------------------------------------------------------------------------------------------------
bool zylView::BeginCapture(const char* operation)
{
  if (!this->Host->IsUsable(operation))
  {
    return false;
  }
  if (!this->Host->HasArea())
  {
    vtkLogF(ERROR, "%s: the window has no area", operation);
    return false;
  }
  return this->IgnoreHostContext || this->Host->Adopt();
}

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
