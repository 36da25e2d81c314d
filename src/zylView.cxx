#include "zylView.h"

#include "Host/zylHostContext.h"
#include "Host/zylHostRenderWindow.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylRepresentation.h"
#include "zylTimeController.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include <vtkBoundingBox.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkGraphicsFactory.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderUtilities.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtkOutputWindow.h>
#include <vtkPVRenderView.h>
#include <vtkPVRenderViewSettings.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSMParaViewPipelineController.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSaveScreenshotProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkTransform.h>
#include <vtk_glew.h>
#include <vtksys/SystemInformation.hxx>
#include <vtksys/SystemTools.hxx>

namespace {
constexpr zylPropertyRow GeneralRows[] = {
  zylPropertyRow::Bool("RenderAnnotations", false).To("ShowAnnotation"),
  zylPropertyRow::Int("RemoteRenderThreshold", 20).To("RemoteRenderThreshold"),
  zylPropertyRow::Int("NetworkPreset", 2), // see Compressors
};

constexpr zylPropertyRow LightKitRows[] = {
  zylPropertyRow::Bool("UseLight", true),
  zylPropertyRow::Double("KeyLightWarmth", 0.6),
  zylPropertyRow::Double("KeyLightIntensity", 0.75),
  zylPropertyRow::Double("KeyLightElevation", 50),
  zylPropertyRow::Double("KeyLightAzimuth", 10),
  zylPropertyRow::Double("FillLightWarmth", 0.4),
  zylPropertyRow::Double("FillLightK:F Ratio", 3),
  zylPropertyRow::Double("FillLightElevation", -75),
  zylPropertyRow::Double("FillLightAzimuth", -10),
  zylPropertyRow::Double("BackLightWarmth", 0.5),
  zylPropertyRow::Double("BackLightK:B Ratio", 3.5),
  zylPropertyRow::Double("BackLightElevation", 0),
  zylPropertyRow::Double("BackLightAzimuth", 110),
  zylPropertyRow::Double("HeadLightWarmth", 0.5),
  zylPropertyRow::Double("HeadLightK:H Ratio", 3),
  zylPropertyRow::Bool("MaintainLuminance", false),
};

// "CompressorConfig" for the network presets 1 to 5.
constexpr const char* Compressors[] = { "vtkZlibImageCompressor 0 9 3 1",
  "vtkZlibImageCompressor 0 6 2 0", "vtkLZ4Compressor 0 5", "vtkLZ4Compressor 0 3", "" };
constexpr int CompressorCount = sizeof(Compressors) / sizeof(Compressors[0]);

struct Direction
{
  double ViewUp[3];
  double Offset[3];
};

// For directions 1 to 5; the first row is for any other.
constexpr Direction Directions[] = {
  { { 0, 1, 0 }, { -1, 0, 0 } },
  { { 0, 1, 0 }, { 0, 0, 1 } },
  { { 1, 0, 0 }, { 0, 0, -1 } },
  { { 0, 0, 1 }, { 0, -1, 0 } },
  { { 1, 0, 0 }, { 0, 1, 0 } },
  { { 0, 0, 1 }, { 1, 0, 0 } },
};

// The OpenGL objects of what is dropped meanwhile are deleted in the adopted context or not at all.
class ResourceScope
{
public:
  explicit ResourceScope(vtkOpenGLRenderWindow* window)
    : Window(window)
  {
    if (window)
    {
      window->PushContext();
    }
  }
  ~ResourceScope()
  {
    if (this->Window)
    {
      this->Window->PopContext();
    }
  }
  ResourceScope(const ResourceScope&) = delete;
  ResourceScope& operator=(const ResourceScope&) = delete;

private:
  vtkWeakPointer<vtkOpenGLRenderWindow> Window;
};

constexpr const char* NoContext = "No OpenGL context is current";
constexpr const char* NoRenderer = "No Renderer is available in the view";

void Mark(const char* text)
{
  vtkOpenGLRenderUtilities::MarkDebugEvent(text);
}

// Whether the file can be opened for writing; a file that does not exist is not left behind.
bool IsWritable(const char* fileName)
{
  const bool existed = vtksys::SystemTools::FileExists(fileName);
  const bool opened = std::ofstream(fileName, std::ios::app).is_open();
  if (opened && !existed)
  {
    vtksys::SystemTools::RemoveFile(fileName);
  }
  return opened;
}

bool IsWritten(const char* fileName)
{
  return vtksys::SystemTools::FileExists(fileName, true) &&
    vtksys::SystemTools::FileLength(fileName) > 0;
}

// A camera read from matrices, before it is known to be one.
struct CameraValues
{
  double Position[3], FocalPoint[3], ViewUp[3];
  double Near, Far;
  double WindowCenter[2];
  bool Parallel;
  double Scale; // parallel scale, or view angle in degrees

  bool IsFinite() const
  {
    double sum =
      this->Near + this->Far + this->WindowCenter[0] + this->WindowCenter[1] + this->Scale;
    for (int i = 0; i < 3; ++i)
    {
      sum += this->Position[i] + this->FocalPoint[i] + this->ViewUp[i];
    }
    return std::isfinite(sum);
  }
};

void SetWindowCenter(CameraValues& camera, double left, double right, double bottom, double top)
{
  camera.WindowCenter[0] = (right + left) / (right - left);
  camera.WindowCenter[1] = (top + bottom) / (top - bottom);
}

// Position, focal point and view-up from the host's model-view matrices; column 2 of the rotation,
// which points at the viewer, goes to `backward`.
void ReadPlacement(
  const double* first, const double* second, CameraValues& camera, double backward[3])
{
  vtkNew<vtkTransform> placement;
  for (const double* matrix : { first, second })
  {
    if (matrix)
    {
      placement->Concatenate(matrix);
    }
  }
  placement->Inverse();
  const double origin[3] = { 0.0, 0.0, 0.0 };
  placement->TransformPoint(origin, camera.Position);

  double orientation[4];
  placement->GetOrientationWXYZ(orientation);
  vtkNew<vtkTransform> rotation;
  rotation->RotateWXYZ(orientation[0], orientation[1], orientation[2], orientation[3]);
  for (int i = 0; i < 3; ++i)
  {
    camera.ViewUp[i] = rotation->GetMatrix()->GetElement(i, 1);
    backward[i] = rotation->GetMatrix()->GetElement(i, 2);
    camera.FocalPoint[i] = camera.Position[i] - backward[i];
  }
}

void ReadOrthographic(const double* p, const double backward[3], CameraValues& camera)
{
  camera.Far = (p[11] - 1.0) / p[10];
  camera.Near = camera.Far + 2.0 / p[10];
  const double top = -(p[7] - 1.0) / p[5];
  const double bottom = top - 2.0 / p[5];
  const double right = -(p[3] - 1.0) / p[0];
  const double left = right - 2.0 / p[0];
  camera.Scale = (top - bottom) / 2.0;
  SetWindowCenter(camera, left, right, bottom, top);
  if (camera.Near < 1.0)
  {
    // The renderer wants its near plane in front of the camera: step back.
    const double step = 1.0 - camera.Near;
    const double position[3] = { camera.Position[0], camera.Position[1], camera.Position[2] };
    for (int i = 0; i < 3; ++i)
    {
      camera.Position[i] = position[i] + step * backward[i];
      camera.FocalPoint[i] = position[i] + (step - 1.0) * backward[i];
    }
    camera.Far += step;
    camera.Near = 1.0;
  }
}

void ReadPerspective(const double* p, CameraValues& camera)
{
  const double k = (p[10] - 1.0) / (p[10] + 1.0);
  camera.Near = -0.5 * p[11] * (k - 1.0) / k;
  camera.Far = camera.Near * k;
  const double bottom = (p[6] - 1.0) * camera.Near / p[5];
  const double top = (p[6] + 1.0) * camera.Near / p[5];
  const double left = (p[2] - 1.0) * camera.Near / p[0];
  const double right = (p[2] + 1.0) * camera.Near / p[0];
  camera.Scale = 2.0 * std::atan((top - bottom) / 2.0 / camera.Near) * 57.29577951308232;
  SetWindowCenter(camera, left, right, bottom, top);
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
  this->CreateProxy();
  zylDeclare(this->Properties, GeneralRows);
  zylDeclare(this->LightKitProperties, LightKitRows);
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
  // Mappers that are destroyed with OpenGL objects delete them in whatever context is current.
  zylHostContextKeeper context;
  if (zylHostRenderWindow* window = this->GetHostWindow())
  {
    window->ReleaseGraphicsResources(window);
    if (window->IsElsewhere())
    {
      zylHostContext::Current().Release();
    }
  }
  if (this->Proxy)
  {
    this->Proxy->RemoveObserver(this->StartRenderCommand);
    if (this->Proxy->GetSession())
    {
      vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
      controller->UnRegisterProxy(this->Proxy);
    }
    this->Proxy = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::CreateProxy()
{
  // The window comes with the proxy. ParaView looks at the display before the first one.
  zylHostContextKeeper context;
  zylHostRenderWindowScope window;
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  if (manager)
  {
    auto proxy = vtkSmartPointer<vtkSMProxy>::Take(manager->NewProxy("views", "RenderView"));
    this->Proxy = vtkSMRenderViewProxy::SafeDownCast(proxy);
  }
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "No session: the view is without a proxy and will show nothing");
    return;
  }
  this->Proxy->AddObserver(vtkCommand::StartEvent, this->StartRenderCommand);
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
  controller->InitializeProxy(this->Proxy);
  controller->RegisterViewProxy(this->Proxy);

  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(1);
  if (auto* view = vtkPVRenderView::SafeDownCast(this->Proxy->GetClientSideObject()))
  {
    this->Renderer = view->GetRenderer(vtkPVRenderView::DEFAULT_RENDERER);
    this->RenderWindow = zylHostRenderWindow::SafeDownCast(view->GetRenderWindow());
  }
  vtkSMPropertyHelper(this->Proxy, "SuppressRendering").Set(1);
  this->Proxy->UpdateVTKObjects();

  auto* settings = vtkPVRenderViewSettings::GetInstance();
  settings->SetResolveCoincidentTopology(vtkPVRenderViewSettings::OFFSET_FACES);
  settings->SetPolygonOffsetParameters(0, 0);
  settings->SetLineOffsetParameters(0, -4);
  settings->SetPointOffsetParameter(-8);

  vtkSMPropertyHelper(this->Proxy, "DepthPeeling").Set(0);
  vtkSMPropertyHelper(this->Proxy, "UseFXAA").Set(0);
  vtkSMPropertyHelper(this->Proxy, "OrientationAxesVisibility").Set(0);
  zylParaView::UseOwnBackground(this->Proxy);
  this->Proxy->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
bool zylView::HasSession(const char* operation)
{
  if (this->Proxy && this->Proxy->GetSession())
  {
    return true;
  }
  vtkLogF(ERROR, "%s: the view has no session", operation);
  return false;
}

//--------------------------------------------------------------------------------------------------
void zylView::UpdateProxy()
{
  if (this->Proxy && this->Proxy->GetSession())
  {
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
    ResourceScope resources(this->RenderWindow);
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
    ResourceScope resources(this->RenderWindow);
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
  if (this->IgnoreHostContext)
  {
    this->ContextInitialized = true;
  }
  else if (!this->AdoptHostContext())
  {
    return;
  }
  this->PreRenderSetup();
  zylHostRenderWindow* window = this->GetHostWindow();
  if (!window || window->HasArea())
  {
    this->Proxy->StillRender();
  }
  this->PostRenderCleanup();
  Mark("finish ZYL render");
}

//--------------------------------------------------------------------------------------------------
zylHostRenderWindow* zylView::GetHostWindow()
{
  return zylHostRenderWindow::SafeDownCast(this->RenderWindow);
}

//--------------------------------------------------------------------------------------------------
bool zylView::AdoptHostContext()
{
  zylHostRenderWindow* window = this->GetHostWindow();
  if (!window || (this->ContextInitialized && window->IsAdopted()))
  {
    return window != nullptr;
  }
  this->ContextInitialized = false;
  if (!window->BeginAdoption())
  {
    vtkLogF(ERROR, "%s: the view cannot draw", NoContext);
    return false;
  }
  const bool frame = window->SupportsFrames();
  if (frame)
  {
    window->BeginFrame();
  }
  window->GetState()->Reset();
  window->GetState()->Push();
  this->OpenGLStatePushed = true;
  window->InitializeFromCurrentContext();
  int major = 2;
  int minor = 0;
  window->GetOpenGLVersion(major, minor);
  if (major < 4 && !(major == 3 && minor >= 2))
  {
    // Kept: the pushed state stays pushed, and the next render tries again.
    vtkErrorMacro(<< "The openGL version is not sufficient for ZYL");
    vtkErrorMacro(<< window->ReportCapabilities());
    window->EndFrame();
    return false;
  }
  window->FinishAdoption();
  window->SetFrameBlitModeToNoBlit();
  window->GetState()->Pop();
  window->EndFrame();
  this->OpenGLStatePushed = false;
  this->ContextInitialized = true;
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylView::BeginHostFrame()
{
  if (!this->RenderWindow || !this->AdoptHostContext())
  {
    return false;
  }
  this->GetHostWindow()->BeginFrame();
  this->GetHostWindow()->GetState()->Reset();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylView::FindHostFrame()
{
  zylHostRenderWindow* window = this->GetHostWindow();
  if (window && window->InFrame())
  {
    return true;
  }
  // Called out of order. Popping needs a level on the toolkit's stack, which ends the process
  // without.
  if (this->BeginHostFrame())
  {
    window->GetState()->Push();
    return true;
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
void zylView::BindSourceFramebuffer()
{
  if (this->SourceFBO < 0)
  {
    return;
  }
  zylHostRenderWindow* window = this->GetHostWindow();
  if (window->IsHostFramebuffer(this->SourceFBO))
  {
    window->GetState()->vtkglBindFramebuffer(GL_READ_FRAMEBUFFER, this->SourceFBO);
    this->BadSourceFBO = -1;
  }
  else if (this->BadSourceFBO != this->SourceFBO)
  {
    this->BadSourceFBO = this->SourceFBO;
    vtkLogF(ERROR,
      "The context has no framebuffer object %d to copy the host's image from; the bound one is "
      "taken. SetSourceFBO() names it, 0 is the window",
      this->SourceFBO);
  }
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
    this->BindSourceFramebuffer();
    this->GetHostWindow()->CopyFromHost();
    Mark("ZYL - push OpenGL state");
    this->RenderWindow->GetState()->Push();
    this->OpenGLStatePushed = true;
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
    this->GetHostWindow()->CopyToHost();
    Mark("ZYL - end BlitDisplayFramebuffer()");
    Mark("ZYL - begin pop OpenGL state");
    this->RenderWindow->GetState()->Pop();
    this->OpenGLStatePushed = false;
    Mark("ZYL - end pop OpenGL state pop");
    this->GetHostWindow()->EndFrame();
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
    this->RenderWindow->GetState()->Push();
    Mark("ZYL - selection end push OpenGL state");
    this->OpenGLStatePushed = true;
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
    this->RenderWindow->GetState()->Pop();
    this->OpenGLStatePushed = false;
    Mark("ZYL - selection end pop OpenGL state pop");
    this->GetHostWindow()->EndFrame();
  }
  this->InSelectSetup = false;
  this->UpdateProxy();
}

//--------------------------------------------------------------------------------------------------
void zylView::Update()
{
  if (!this->HasSession("Update()"))
  {
    return;
  }
  zylPush(this->Properties, GeneralRows, this->Proxy);
  if (this->Properties->Has("NetworkPreset"))
  {
    const int preset = this->Properties->GetInt("NetworkPreset");
    if (preset >= 1 && preset <= CompressorCount)
    {
      vtkSMPropertyHelper(this->Proxy, "CompressorConfig").Set(Compressors[preset - 1]);
    }
  }
  for (const std::string& name : this->LightKitProperties->GetPropertyNames())
  {
    zylPushProperty(this->LightKitProperties->GetProperty(name), this->Proxy, name.c_str());
  }
  this->Proxy->UpdateVTKObjects();
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
  this->Proxy->UpdateVTKObjects();
  zylParaView::ResetCamera(this->Proxy, bounds);
  vtkSMPropertyHelper(this->Proxy, "LockBounds").Set(lock);
  this->Proxy->UpdateVTKObjects();
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
  double normal[3] = { nx, ny, nz };
  const double length = vtkMath::Normalize(normal);
  if (!(length > 0.0) || !std::isfinite(length))
  {
    vtkLogF(ERROR, "ResetCameraToNormal: (%f, %f, %f) is not a direction", nx, ny, nz);
    return;
  }
  if (vtkCamera* camera = this->GetCamera())
  {
    camera->SetPosition(cx + length * normal[0], cy + length * normal[1], cz + length * normal[2]);
    camera->SetFocalPoint(cx, cy, cz);
    camera->OrthogonalizeViewUp();
    this->ResetCamera();
    this->Render();
  }
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
  const Direction& row = Directions[direction >= 1 && direction <= 5 ? direction : 0];
  const double sign = flip ? -1.0 : 1.0;
  camera->SetViewUp(row.ViewUp[0], row.ViewUp[1], row.ViewUp[2]);
  camera->SetFocalPoint(center);
  camera->SetPosition(center[0] + sign * row.Offset[0], center[1] + sign * row.Offset[1],
    center[2] + sign * row.Offset[2]);
  this->ResetCamera();
}

//--------------------------------------------------------------------------------------------------
void zylView::SetCameraMatrices(const double* first, const double* second, const double* projection)
{
  vtkCamera* camera = this->GetCamera();
  if (!camera)
  {
    return;
  }
  CameraValues values;
  double backward[3];
  bool valid = projection != nullptr;
  if (valid)
  {
    ReadPlacement(first, second, values, backward);
    values.Parallel = projection[15] != 0.0;
    values.Parallel ? ReadOrthographic(projection, backward, values)
                    : ReadPerspective(projection, values);
    valid = values.IsFinite();
  }
  if (!valid)
  {
    vtkLogF(ERROR, "SetCameraMatrices: the matrices describe no camera");
    return;
  }
  camera->SetPosition(values.Position);
  camera->SetViewUp(values.ViewUp);
  camera->SetFocalPoint(values.FocalPoint);
  camera->SetParallelProjection(values.Parallel);
  values.Parallel ? camera->SetParallelScale(values.Scale) : camera->SetViewAngle(values.Scale);
  camera->SetWindowCenter(values.WindowCenter[0], values.WindowCenter[1]);
  camera->SetClippingRange(values.Near, values.Far);
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
  this->Proxy->UpdateVTKObjects();
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
  if (vtkSMProxy* settings = this->GetRenderViewSettings())
  {
    const double values[2] = { factor, units };
    vtkSMPropertyHelper(settings, "PolygonOffsetParameters").Set(values, 2);
    settings->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetLineOffset(double factor, double units)
{
  if (vtkSMProxy* settings = this->GetRenderViewSettings())
  {
    const double values[2] = { factor, units };
    vtkSMPropertyHelper(settings, "LineOffsetParameters").Set(values, 2);
    settings->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
void zylView::SetPointOffset(double units)
{
  if (vtkSMProxy* settings = this->GetRenderViewSettings())
  {
    vtkSMPropertyHelper(settings, "PointOffsetParameter").Set(units);
    settings->UpdateVTKObjects();
  }
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
  vtkSmartPointer<vtkSMProxy> proxy = this->NewScreenshotProxy(nullptr);
  auto* screenshot = vtkSMSaveScreenshotProxy::SafeDownCast(proxy);
  if (!screenshot)
  {
    return nullptr;
  }
  this->PreRenderSetup();
  vtkSmartPointer<vtkImageData> image = screenshot->CaptureImage();
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
  if (!IsWritable(fileName))
  {
    vtkLogF(ERROR, "SaveScreenshot: '%s' cannot be written to", fileName);
    return false;
  }
  vtkSmartPointer<vtkSMProxy> proxy = this->NewScreenshotProxy(fileName);
  auto* screenshot = vtkSMSaveScreenshotProxy::SafeDownCast(proxy);
  if (!screenshot)
  {
    return false;
  }
  this->PreRenderSetup();
  bool written = screenshot->WriteImage(fileName);
  this->PostRenderCleanup();
  written = IsWritten(fileName) && written; // ParaView does not see all failures
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
  if (!suppressed && !self->OpenGLStatePushed && !self->IgnoreHostContext)
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
vtkSMProxy* zylView::GetRenderViewSettings()
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  vtkSMProxy* settings = manager ? manager->GetProxy("settings", "RenderViewSettings") : nullptr;
  if (!settings)
  {
    vtkLogF(ERROR, "No RenderViewSettings found");
  }
  return settings;
}

//--------------------------------------------------------------------------------------------------
bool zylView::BeginCapture(const char* operation)
{
  if (!this->HasSession(operation))
  {
    return false;
  }
  zylHostRenderWindow* window = this->GetHostWindow();
  if (window && !window->HasArea())
  {
    vtkLogF(ERROR, "%s: the window has no area", operation);
    return false;
  }
  return this->IgnoreHostContext || this->AdoptHostContext();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMProxy> zylView::NewScreenshotProxy(const char* fileName)
{
  vtkSMSessionProxyManager* manager = this->Proxy->GetSessionProxyManager();
  auto proxy = vtkSmartPointer<vtkSMProxy>::Take(manager->NewProxy("misc", "SaveScreenshot"));
  auto* screenshot = vtkSMSaveScreenshotProxy::SafeDownCast(proxy);
  if (!screenshot)
  {
    vtkLogF(ERROR, "The session knows no screenshots");
    return nullptr;
  }
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->PreInitializeProxy(screenshot);
  vtkSMPropertyHelper(screenshot, "View").Set(this->Proxy);
  vtkSMPropertyHelper(screenshot, "SaveAllViews").Set(0);
  if (fileName)
  {
    screenshot->UpdateDefaultsAndVisibilities(fileName);
  }
  controller->PostInitializeProxy(screenshot);
  return proxy;
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
