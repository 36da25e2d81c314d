#include "zylView.h"

#include "Display/zylShownRepresentations.h"
#include "Host/zylHostCamera.h"
#include "Host/zylHostRenderWindow.h"
#include "Host/zylHostSelector.h"
#include "Host/zylHostView.h"
#include "Host/zylScreenshot.h"
#include "ParaView/zylSelectionSource.h"
#include "ParaView/zylViewSettings.h"
#include "zylCore.h"
#include "zylPropertyCollection.h"
#include "zylRepresentation.h"
#include "zylSelection.h"
#include "zylTimeController.h"

#include <string>

#include <vtkBoundingBox.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCollection.h>
#include <vtkGraphicsFactory.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtksys/SystemInformation.hxx>

vtkStandardNewMacro(zylView);

//--------------------------------------------------------------------------------------------------
zylView::zylView()
  : Shown(std::make_unique<zylShownRepresentations>(this))
  , Properties(vtkSmartPointer<zylPropertyCollection>::New())
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
  while (const vtkSmartPointer<zylRepresentation> rep = this->Shown->GetFirst())
  {
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
  if (rep && !this->Shown->Has(rep))
  {
    rep->SetView(this);
    this->Shown->Add(rep);
    rep->Update();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::RemoveRepresentation(zylRepresentation* rep)
{
  if (this->Shown->Has(rep))
  {
    rep->SetView(nullptr);
    this->Shown->Remove(rep);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylRepresentation> zylView::FindRepresentationForFileName(std::string& fileName)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylView()"); // kept: the constructor's label
  return this->Shown->FindForFile(fileName);
}

//--------------------------------------------------------------------------------------------------
void zylView::Render()
{
  if (!this->Host->IsUsable("Render()"))
  {
    return;
  }
  zylHostView::Mark("begin ZYL render");
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
  zylHostView::Mark("finish ZYL render");
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
template <class Action>
void zylView::WithCamera(Action action)
{
  if (vtkCamera* camera = this->Host->GetCamera())
  {
    action(camera);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ResetCameraClippingRange()
{
  this->WithCamera([=](vtkCamera*) { this->Host->GetRenderer()->ResetCameraClippingRange(); });
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
  this->WithCamera([=](vtkCamera* camera) {
    if (!zylHostCamera::SetMatrices(camera, first, second, projection))
    {
      vtkLogF(ERROR, "SetCameraMatrices: the matrices describe no camera");
    }
  });
}

//--------------------------------------------------------------------------------------------------
void zylView::SetParallelProjection(bool on)
{
  this->WithCamera([=](vtkCamera* camera) { camera->SetParallelProjection(on); });
}

//--------------------------------------------------------------------------------------------------
void zylView::Pitch(double angle)
{
  this->WithCamera([=](vtkCamera* camera) { camera->Pitch(angle); });
}

//--------------------------------------------------------------------------------------------------
void zylView::Yaw(double angle)
{
  this->WithCamera([=](vtkCamera* camera) { camera->Yaw(angle); });
}

//--------------------------------------------------------------------------------------------------
void zylView::SetZoom(double factor)
{
  this->WithCamera([=](vtkCamera* camera) { camera->Zoom(factor); });
}

//--------------------------------------------------------------------------------------------------
void zylView::Azimuth(double factor)
{
  // Kept: zooms, as SetZoom() does. See zylViewCamera.AzimuthZooms.
  this->SetZoom(factor);
}

//--------------------------------------------------------------------------------------------------
void zylView::SetBackground(double r, double g, double b)
{
  this->WithCamera([=](vtkCamera*) { this->Host->SetBackground(r, g, b); });
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
  if (!this->Host->SetViewport(x, y, w, h))
  {
    vtkLogF(ERROR, "SetViewport: the window has no area");
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetOffScreenRendering(bool on)
{
  this->Host->SetOffScreenRendering(on);
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
  this->Shown->GetBounds(bounds);
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "GetBounds(): [%f, %f, %f, %f, %f, %f]", bounds[0],
    bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
  return bounds[0] <= bounds[1];
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkImageData> zylView::CaptureImage()
{
  if (!this->CanDraw("CaptureImage()"))
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
  if (!zylScreenshot::IsWritable(fileName) || !this->CanDraw("SaveScreenshot()"))
  {
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
  return written;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylView::Select(int kind, const Rectangle& rectangle)
{
  constexpr const char* Operations[] = { "SelectCells", "SelectPoints", "SelectBlocks" };
  const std::string operation = Operations[kind];
  auto selection = vtkSmartPointer<zylSelection>::New();
  vtkNew<vtkCollection> representations;
  vtkNew<vtkCollection> sources;
  selection->SetPVSelectedRepresentations(representations);
  selection->SetPVSelectionSources(sources);
  if (!this->CanDraw((operation + "()").c_str()))
  {
    return selection;
  }
  zylHostView::Mark("begin zylView::" + operation);
  this->PreSelectSetup();
  zylHostSelector(*this->Host, this->GetOccluder())
    .Select(kind, rectangle.data(), /*multiple*/ true, representations, sources);
  this->PostSelectCleanup();
  zylHostView::Mark("end zylView::" + operation);
  return selection;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylView::SelectBlocks(int x0, int y0, int x1, int y1)
{
  return this->Select(zylHostSelector::Blocks, { x0, y0, x1, y1 });
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylView::SelectCells(int x0, int y0, int x1, int y1)
{
  return this->Select(zylHostSelector::Cells, { x0, y0, x1, y1 });
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylView::SelectPoints(int x0, int y0, int x1, int y1)
{
  return this->Select(zylHostSelector::Points, { x0, y0, x1, y1 });
}

//--------------------------------------------------------------------------------------------------
bool zylView::PickPointOnSurface(int x, int y, double point[3])
{
  if (!this->CanDraw("PickPointOnSurface()"))
  {
    return false;
  }
  zylHostView::Mark("begin zylView::PickPointOnSurface");
  this->PreSelectSetup();
  const bool picked = zylHostSelector(*this->Host, this->GetOccluder()).PickPoint(x, y, point);
  this->PostSelectCleanup();
  zylHostView::Mark("end zylView::PickPointOnSurface");
  return picked;
}

//--------------------------------------------------------------------------------------------------
void zylView::HighlightSelection(zylRepresentation* rep, zylSelection* sel)
{
  if (rep)
  {
    this->ShowSelection(sel, rep->GetPVRepresentations(), "zylView::HighlightSelection");
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::HighlightSelection(zylSelection* sel)
{
  this->ShowSelection(sel, sel ? sel->GetPVSelectedRepresentations() : nullptr,
    "zylView::HighlightSelection(zylSelection *)");
}

//--------------------------------------------------------------------------------------------------
void zylView::ShowSelection(zylSelection* sel, vtkCollection* among, const std::string& mark)
{
  if (sel && this->Host->IsUsable("HighlightSelection()"))
  {
    zylHostView::Mark("begin " + mark);
    this->PreRenderSetup();
    zylSelectionSource::Show(
      sel->GetPVSelectedRepresentations(), sel->GetPVSelectionSources(), among);
    this->PostRenderCleanup();
    zylHostView::Mark("end " + mark);
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::ClearHighlight()
{
  if (!this->Host->IsUsable("ClearHighlight()"))
  {
    return;
  }
  zylHostView::Mark("begin zylView::ClearHighlight");
  this->PreSelectSetup();
  zylSelectionSource::HideAll(this->GetProxy());
  this->PostSelectCleanup();
  zylHostView::Mark("end zylView::ClearHighlight");
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
bool zylView::CanDraw(const char* operation)
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
  return this->Shown->FindOwner(proxy);
}
