// The view without any OpenGL context: proxy, settings, camera, bounds, messages.
#include "zylView.h"
#include "zylCore.h"
#include "zylPropertyCollection.h"
#include "zylRepresentation.h"
#include "zylTestLog.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gtest/gtest.h>
#include <vtkCamera.h>
#include <vtkLogger.h>
#include <vtkMapper.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSmartPointer.h>
#include <vtkTransform.h>

namespace {
constexpr int Error = vtkLogger::VERBOSITY_ERROR;

// Shows a box, and counts what the view asks of it.
class BoxRepresentation : public zylRepresentation
{
public:
  static BoxRepresentation* New();
  vtkTypeMacro(BoxRepresentation, zylRepresentation);
  void Update() override { ++this->Updates; }
  void Hide() override { this->Visible = false; }
  void Show() override { this->Visible = true; }
  bool IsVisible() override { return this->Visible; }
  bool GetBounds(double bounds[6]) override
  {
    std::copy_n(this->Box, 6, bounds);
    return true;
  }

  double Box[6] = { 0, 0, 0, 0, 0, 0 };
  bool Visible = true;
  int Updates = 0;
};
vtkStandardNewMacro(BoxRepresentation);

vtkSmartPointer<BoxRepresentation> MakeBox(double center, double half)
{
  auto box = vtkSmartPointer<BoxRepresentation>::New();
  for (int i = 0; i < 3; ++i)
  {
    box->Box[2 * i] = center - half;
    box->Box[2 * i + 1] = center + half;
  }
  return box;
}

vtkCamera* CameraOf(zylView* view)
{
  auto* client = vtkPVRenderView::SafeDownCast(view->GetProxy()->GetClientSideObject());
  return client->GetRenderer()->GetActiveCamera();
}

int GetInt(zylView* view, const char* name)
{
  return vtkSMPropertyHelper(view->GetProxy(), name).GetAsInt();
}

double GetDouble(zylView* view, const char* name, unsigned int i = 0)
{
  return vtkSMPropertyHelper(view->GetProxy(), name).GetAsDouble(i);
}

void ExpectPoint(const double* value, double x, double y, double z)
{
  EXPECT_NEAR(value[0], x, 1e-9);
  EXPECT_NEAR(value[1], y, 1e-9);
  EXPECT_NEAR(value[2], z, 1e-9);
}
} // namespace

class zylViewTest : public ::testing::Test
{
protected:
  vtkNew<zylView> View;
};

class zylViewCamera : public zylViewTest
{
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewTest, IsMadeWithItsDefaults)
{
  ASSERT_NE(this->View->GetProxy(), nullptr);
  EXPECT_EQ(zylCore::GetInstance()->GetRegisteredViews().count(this->View), 1u);
  EXPECT_EQ(this->View->GetSourceFBO(), 1);
  EXPECT_EQ(GetInt(this->View, "LockBounds"), 1);
  EXPECT_EQ(GetInt(this->View, "SuppressRendering"), 1);
  EXPECT_EQ(GetInt(this->View, "DepthPeeling"), 0);
  EXPECT_EQ(GetInt(this->View, "UseFXAA"), 0);
  EXPECT_EQ(GetInt(this->View, "OrientationAxesVisibility"), 0);

  double factor = -1;
  double units = -1;
  vtkMapper::GetResolveCoincidentTopologyLineOffsetParameters(factor, units);
  EXPECT_EQ(factor, 0);
  EXPECT_EQ(units, -4);
  vtkMapper::GetResolveCoincidentTopologyPointOffsetParameter(units);
  EXPECT_EQ(units, -8);
  vtkMapper::GetResolveCoincidentTopologyPolygonOffsetParameters(factor, units);
  EXPECT_EQ(factor, 0);
  EXPECT_EQ(units, 0);

  const std::vector<std::string> general = this->View->GetProperties()->GetPropertyNames();
  EXPECT_EQ(general,
    (std::vector<std::string>{ "NetworkPreset", "RemoteRenderThreshold", "RenderAnnotations" }));
  EXPECT_EQ(this->View->GetLightKitProperties()->GetPropertyNames().size(), 16u);
}

TEST_F(zylViewTest, UnregistersWhenDestroyed)
{
  auto view = vtkSmartPointer<zylView>::New();
  zylView* address = view;
  auto box = MakeBox(0, 1);
  view->AddRepresentation(box);
  view = nullptr;
  EXPECT_EQ(zylCore::GetInstance()->GetRegisteredViews().count(address), 0u);
  EXPECT_EQ(box->GetView(), nullptr);
}

TEST_F(zylViewTest, LeavesTheHostsOwnWindowsAlone)
{
  vtkObject* made = vtkObjectFactory::CreateInstance("vtkRenderWindow");
  ASSERT_NE(made, nullptr);
  EXPECT_STRNE(made->GetClassName(), "zylHostRenderWindow");
  made->Delete();
}

TEST_F(zylViewTest, AppliesItsSettings)
{
  zylPropertyCollection* general = this->View->GetProperties();
  general->Set("RenderAnnotations", true);
  general->Set("RemoteRenderThreshold", 77);
  zylPropertyCollection* lights = this->View->GetLightKitProperties();
  lights->Set("UseLight", false);
  lights->Set("KeyLightIntensity", 0.25);
  lights->Set("FillLightK:F Ratio", 7.5);
  lights->Set("MaintainLuminance", true);
  EXPECT_EQ(GetInt(this->View, "RemoteRenderThreshold"), 20) << "nothing is pushed before Update()";

  this->View->Update();
  EXPECT_EQ(GetInt(this->View, "ShowAnnotation"), 1);
  EXPECT_EQ(GetInt(this->View, "RemoteRenderThreshold"), 77);
  EXPECT_EQ(GetInt(this->View, "UseLight"), 0);
  EXPECT_EQ(GetDouble(this->View, "KeyLightIntensity"), 0.25);
  EXPECT_EQ(GetDouble(this->View, "FillLightK:F Ratio"), 7.5);
  EXPECT_EQ(GetInt(this->View, "MaintainLuminance"), 1);
}

// Every light setting has its place on this ParaView's view proxy, with the default of the kit.
TEST_F(zylViewTest, LightSettingsExistOnTheProxy)
{
  zylPropertyCollection* lights = this->View->GetLightKitProperties();
  for (const std::string& name : lights->GetPropertyNames())
  {
    EXPECT_NE(this->View->GetProxy()->GetProperty(name.c_str()), nullptr) << name;
  }
  EXPECT_EQ(lights->GetDouble("BackLightK:B Ratio"), 3.5);
  EXPECT_EQ(lights->GetDouble("FillLightElevation"), -75);
  EXPECT_EQ(lights->GetDouble("BackLightAzimuth"), 110);
  EXPECT_TRUE(lights->GetBool("UseLight"));
  EXPECT_FALSE(lights->GetBool("MaintainLuminance"));
}

TEST_F(zylViewTest, NetworkPresetsChooseTheCompressor)
{
  const char* expected[] = { "", "vtkZlibImageCompressor 0 9 3 1", "vtkZlibImageCompressor 0 6 2 0",
    "vtkLZ4Compressor 0 5", "vtkLZ4Compressor 0 3", "" };
  const auto compressor = [this] {
    return std::string(
      vtkSMPropertyHelper(this->View->GetProxy(), "CompressorConfig").GetAsString());
  };
  for (int preset = 1; preset <= 5; ++preset)
  {
    this->View->GetProperties()->Set("NetworkPreset", preset);
    this->View->Update();
    EXPECT_EQ(compressor(), expected[preset]) << preset;
  }
  for (int preset : { 0, 6, -1 })
  {
    vtkSMPropertyHelper(this->View->GetProxy(), "CompressorConfig").Set("kept");
    this->View->GetProperties()->Set("NetworkPreset", preset);
    this->View->Update();
    EXPECT_EQ(compressor(), "kept") << preset;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewTest, HoldsEachRepresentationOnce)
{
  auto box = MakeBox(0, 1);
  this->View->AddRepresentation(nullptr);
  this->View->AddRepresentation(box);
  this->View->AddRepresentation(box);
  EXPECT_EQ(box->Updates, 1);
  EXPECT_EQ(box->GetView(), this->View.Get());

  auto other = MakeBox(0, 1);
  this->View->RemoveRepresentation(nullptr);
  this->View->RemoveRepresentation(other);
  EXPECT_EQ(box->GetView(), this->View.Get());
  this->View->RemoveRepresentation(box);
  EXPECT_EQ(box->GetView(), nullptr);
  EXPECT_EQ(box->GetReferenceCount(), 1);

  std::string name = "nothing.vtm";
  EXPECT_EQ(this->View->FindRepresentationForFileName(name), nullptr);
}

TEST_F(zylViewTest, BoundsAreOfWhatIsVisible)
{
  double bounds[6];
  EXPECT_FALSE(this->View->GetBounds(bounds));
  for (int i = 0; i < 6; ++i)
  {
    EXPECT_EQ(bounds[i], i % 2 ? -1 : 1);
  }
  auto box = MakeBox(2, 1);
  auto hidden = MakeBox(50, 1);
  hidden->Hide();
  this->View->AddRepresentation(box);
  this->View->AddRepresentation(MakeBox(-1, 0.5));
  this->View->AddRepresentation(hidden);
  zylTestLog log;
  EXPECT_TRUE(this->View->GetBounds(bounds));
  EXPECT_EQ(bounds[0], -1.5);
  EXPECT_EQ(bounds[5], 3.0);
  EXPECT_TRUE(log.Has(9, "GetBounds(): [-1.500000, 3.000000, -1.500000"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewTest, SizesReachWindowAndProxy)
{
  this->View->SetWindowSize(640, 480);
  int size[2];
  this->View->GetWindowSize(size);
  EXPECT_EQ(size[0], 640);
  EXPECT_EQ(size[1], 480);
  EXPECT_EQ(GetInt(this->View, "ViewSize"), 640);

  this->View->SetViewport(64, 48, 320, 240);
  auto* client = vtkPVRenderView::SafeDownCast(this->View->GetProxy()->GetClientSideObject());
  const double* viewport = client->GetRenderer()->GetViewport();
  EXPECT_DOUBLE_EQ(viewport[0], 0.1);
  EXPECT_DOUBLE_EQ(viewport[1], 0.1);
  EXPECT_DOUBLE_EQ(viewport[2], 0.6);
  EXPECT_DOUBLE_EQ(viewport[3], 0.6);

  zylTestLog log;
  this->View->SetWindowSize(-3, 10);
  EXPECT_TRUE(log.Has(Error, "-3 x 10"));
  this->View->GetWindowSize(size);
  EXPECT_EQ(size[0], 640);
  this->View->SetWindowSize(0, 0);
  this->View->SetViewport(0, 0, 10, 10);
  EXPECT_TRUE(log.Has(Error, "the window has no area"));
}

TEST_F(zylViewTest, OrientationAxesWaitForTheNextUpdate)
{
  this->View->SetOrientationAxis(true);
  EXPECT_EQ(GetInt(this->View, "OrientationAxesVisibility"), 1);
  EXPECT_EQ(GetInt(this->View, "OrientationAxesInteractivity"), 1);
  EXPECT_EQ(GetDouble(this->View, "OrientationAxesLabelColor", 2), 0.0);
  this->View->SetOrientationAxis(false);
  EXPECT_EQ(GetInt(this->View, "OrientationAxesVisibility"), 0);
  EXPECT_EQ(GetDouble(this->View, "OrientationAxesLabelColor", 2), 1.0);
}

TEST_F(zylViewTest, OffsetsGoToTheSessionsSettings)
{
  this->View->SetPolygonalOffset(2, 3);
  this->View->SetLineOffset(4, 5);
  this->View->SetPointOffset(6);
  vtkSMProxy* settings =
    zylCore::GetInstance()->GetSessionProxyManager()->GetProxy("settings", "RenderViewSettings");
  ASSERT_NE(settings, nullptr);
  EXPECT_EQ(vtkSMPropertyHelper(settings, "PolygonOffsetParameters").GetAsDouble(1), 3);
  EXPECT_EQ(vtkSMPropertyHelper(settings, "LineOffsetParameters").GetAsDouble(0), 4);
  EXPECT_EQ(vtkSMPropertyHelper(settings, "PointOffsetParameter").GetAsDouble(), 6);
}

// Without a context nothing is drawn, and it says so.
TEST_F(zylViewTest, ReportsAMissingContext)
{
  zylTestLog log;
  this->View->Render();
  EXPECT_EQ(log.Count(Error, "No OpenGL context is current"), 1) << log.Dump();
  EXPECT_EQ(this->View->CaptureImage(), nullptr);
  EXPECT_FALSE(this->View->SaveScreenshot("/tmp/zylNever.png"));
  EXPECT_FALSE(this->View->SaveScreenshot(nullptr));
  EXPECT_TRUE(log.Has(Error, "SaveScreenshot: no file name"));
  this->View->PreRenderSetup();
  this->View->PostRenderCleanup();
  this->View->PreSelectSetup();
  this->View->PostSelectCleanup();
  EXPECT_EQ(GetInt(this->View, "SuppressRendering"), 1);
}

TEST_F(zylViewTest, ReportsARenderOutsideTheFrame)
{
  zylTestLog quiet;
  this->View->GetProxy()->StillRender();
  EXPECT_FALSE(quiet.Has(Error, "without the OpenGL state")) << "suppressed renders are fine";

  vtkSMPropertyHelper(this->View->GetProxy(), "SuppressRendering").Set(0);
  zylTestLog log;
  this->View->GetProxy()->InvokeEvent(vtkCommand::StartEvent);
  EXPECT_TRUE(
    log.Has(Error, "ParaView RenderView is being called without the OpenGL state being recorded"));
  EXPECT_EQ(log.Count(Error, ""), 2) << "and the call stack:\n" << log.Dump();
  vtkSMPropertyHelper(this->View->GetProxy(), "SuppressRendering").Set(1);
}

TEST_F(zylViewTest, SourceFramebufferMarksTheViewModified)
{
  const vtkMTimeType time = this->View->GetMTime();
  this->View->SetSourceFBO(1);
  EXPECT_EQ(this->View->GetMTime(), time);
  this->View->SetSourceFBO(-1);
  EXPECT_GT(this->View->GetMTime(), time);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewCamera, AzimuthZooms)
{
  vtkCamera* camera = CameraOf(this->View);
  camera->SetViewAngle(40);
  this->View->Azimuth(2);
  EXPECT_DOUBLE_EQ(camera->GetViewAngle(), 20);
  this->View->SetZoom(2);
  EXPECT_DOUBLE_EQ(camera->GetViewAngle(), 10);
}

TEST_F(zylViewCamera, PitchAndYawTurnTheFocalPoint)
{
  vtkCamera* camera = CameraOf(this->View);
  camera->SetPosition(0, 0, 0);
  camera->SetFocalPoint(0, 0, -2);
  camera->SetViewUp(0, 1, 0);
  this->View->Pitch(90);
  ExpectPoint(camera->GetFocalPoint(), 0, 2, 0);
  camera->SetFocalPoint(0, 0, -2);
  this->View->Yaw(90);
  ExpectPoint(camera->GetFocalPoint(), -2, 0, 0);
  this->View->SetParallelProjection(true);
  EXPECT_TRUE(camera->GetParallelProjection());
}

TEST_F(zylViewCamera, LooksAlongTheAxes)
{
  struct
  {
    int Direction;
    double Up[3];
    double From[3];
  } const rows[] = { { 1, { 0, 1, 0 }, { 0, 0, 1 } }, { 2, { 1, 0, 0 }, { 0, 0, -1 } },
    { 3, { 0, 0, 1 }, { 0, -1, 0 } }, { 4, { 1, 0, 0 }, { 0, 1, 0 } },
    { 5, { 0, 0, 1 }, { 1, 0, 0 } }, { 6, { 0, 1, 0 }, { -1, 0, 0 } },
    { -7, { 0, 1, 0 }, { -1, 0, 0 } } };
  this->View->AddRepresentation(MakeBox(3, 1));
  vtkCamera* camera = CameraOf(this->View);
  for (const auto& row : rows)
  {
    for (bool flip : { false, true })
    {
      this->View->SetViewDir(row.Direction, flip);
      const double sign = flip ? 1 : -1;
      const double* look = camera->GetDirectionOfProjection();
      ExpectPoint(look, sign * row.From[0], sign * row.From[1], sign * row.From[2]);
      ExpectPoint(camera->GetViewUp(), row.Up[0], row.Up[1], row.Up[2]);
    }
  }
}

TEST_F(zylViewCamera, FitsABoxAndKeepsTheBoundsLocked)
{
  vtkCamera* camera = CameraOf(this->View);
  camera->SetViewAngle(30);
  camera->SetPosition(0, 0, 10);
  camera->SetFocalPoint(0, 0, 0);
  zylTestLog log;
  this->View->ResetCamera(1, 3, 1, 3, 1, 3);
  ExpectPoint(camera->GetFocalPoint(), 2, 2, 2);
  // A sphere around the box just fits the view angle.
  const double radius = std::sqrt(3.0);
  EXPECT_NEAR(camera->GetDistance(), radius / std::sin(vtkMath::RadiansFromDegrees(15.0)), 1e-6);
  EXPECT_EQ(GetInt(this->View, "LockBounds"), 1);
  EXPECT_TRUE(
    log.Has(9, "ResetCamera(1.000000, 3.000000, 1.000000, 3.000000, 1.000000, 3.000000)"));
}

TEST_F(zylViewCamera, LooksAgainstANormal)
{
  vtkCamera* camera = CameraOf(this->View);
  camera->SetViewUp(0, 0, 1);
  zylTestLog log;
  this->View->ResetCameraToNormal(1, 2, 3, 0, -4, 0);
  const double* look = camera->GetDirectionOfProjection();
  ExpectPoint(look, 0, 1, 0);
  // Along the view-up direction, either way: the picture gets another one.
  for (const double z : { 5.0, -5.0 })
  {
    camera->SetViewUp(0, 0, 1);
    this->View->ResetCameraToNormal(1, 2, 3, 0, 0, z);
    ExpectPoint(camera->GetDirectionOfProjection(), 0, 0, z > 0 ? -1 : 1);
    EXPECT_NEAR(camera->GetViewUp()[2], 0.0, 1e-9);
    EXPECT_NEAR(vtkMath::Norm(camera->GetViewUp()), 1.0, 1e-9);
  }
  this->View->ResetCameraToNormal(0, 0, 0, 0, 0, 0);
  EXPECT_TRUE(log.Has(Error, "is not a direction"));
}

//--------------------------------------------------------------------------------------------------
// The matrices of a known camera bring that camera back, and with it the same projection.
namespace {
void ExpectSameProjection(vtkCamera* expected, vtkCamera* actual, const double* clippingRange)
{
  vtkMatrix4x4* a = expected->GetCompositeProjectionTransformMatrix(1.5, -1, 1);
  vtkMatrix4x4* b = actual->GetCompositeProjectionTransformMatrix(1.5, -1, 1);
  for (int i = 0; i < 4; ++i)
  {
    for (int j = 0; j < 4; ++j)
    {
      EXPECT_NEAR(a->GetElement(i, j), b->GetElement(i, j), 1e-9) << i << ' ' << j;
    }
  }
  EXPECT_NEAR(actual->GetClippingRange()[0], clippingRange[0], 1e-6);
  EXPECT_NEAR(actual->GetClippingRange()[1], clippingRange[1], 1e-6);
}

vtkSmartPointer<vtkCamera> KnownCamera(bool parallel)
{
  auto camera = vtkSmartPointer<vtkCamera>::New();
  camera->SetPosition(3, -4, 12);
  camera->SetFocalPoint(1, 2, -1);
  camera->SetViewUp(0.2, 1, 0.1);
  camera->OrthogonalizeViewUp();
  camera->SetClippingRange(2, 40);
  camera->SetViewAngle(37);
  camera->SetParallelScale(5);
  camera->SetParallelProjection(parallel);
  camera->SetWindowCenter(0.25, -0.125);
  return camera;
}

// As OpenGL has it: depth from -1 to 1.
std::array<double, 16> ProjectionOf(vtkCamera* camera)
{
  std::array<double, 16> values;
  std::copy_n(camera->GetProjectionTransformMatrix(1.5, -1, 1)->GetData(), 16, values.begin());
  return values;
}
} // namespace

TEST_F(zylViewCamera, TakesPerspectiveMatrices)
{
  auto known = KnownCamera(false);
  const double range[2] = { 2, 40 };
  const auto projection = ProjectionOf(known);
  const double* modelView = known->GetModelViewTransformMatrix()->GetData();
  vtkCamera* camera = CameraOf(this->View);

  this->View->SetCameraMatrices(modelView, nullptr, projection.data());
  ExpectPoint(camera->GetPosition(), 3, -4, 12);
  EXPECT_FALSE(camera->GetParallelProjection());
  EXPECT_NEAR(camera->GetViewAngle(), 37, 1e-9);
  EXPECT_NEAR(camera->GetWindowCenter()[0], 0.25, 1e-9);
  EXPECT_NEAR(camera->GetWindowCenter()[1], -0.125, 1e-9);
  ExpectSameProjection(known, camera, range);

  this->View->SetCameraMatrices(nullptr, modelView, projection.data());
  ExpectSameProjection(known, camera, range);

  // The first matrix is applied after the second.
  vtkNew<vtkTransform> first;
  first->RotateY(30);
  first->Translate(1, 2, 3);
  vtkNew<vtkMatrix4x4> second;
  vtkNew<vtkMatrix4x4> inverse;
  vtkMatrix4x4::Invert(first->GetMatrix(), inverse);
  vtkMatrix4x4::Multiply4x4(inverse, known->GetModelViewTransformMatrix(), second);
  this->View->SetCameraMatrices(
    first->GetMatrix()->GetData(), second->GetData(), projection.data());
  ExpectSameProjection(known, camera, range);
}

TEST_F(zylViewCamera, TakesOrthographicMatrices)
{
  auto known = KnownCamera(true);
  const double range[2] = { 2, 40 };
  const auto projection = ProjectionOf(known);
  vtkCamera* camera = CameraOf(this->View);
  this->View->SetCameraMatrices(
    known->GetModelViewTransformMatrix()->GetData(), nullptr, projection.data());
  EXPECT_TRUE(camera->GetParallelProjection());
  EXPECT_NEAR(camera->GetParallelScale(), 5, 1e-9);
  ExpectSameProjection(known, camera, range);
}

// near = -3, far = 7 seen from the origin along -z: the camera steps back by 4, so that near is 1
// and both planes stay where they were in space.
TEST_F(zylViewCamera, StepsBackFromANearPlaneBehindIt)
{
  const double n = -3;
  const double f = 7;
  const double projection[16] = { 0.5, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, -2 / (f - n),
    -(f + n) / (f - n), 0, 0, 0, 1 };
  this->View->SetCameraMatrices(nullptr, nullptr, projection);
  vtkCamera* camera = CameraOf(this->View);
  ExpectPoint(camera->GetPosition(), 0, 0, 4);
  ExpectPoint(camera->GetFocalPoint(), 0, 0, 3);
  EXPECT_NEAR(camera->GetClippingRange()[0], 1, 1e-9);
  EXPECT_NEAR(camera->GetClippingRange()[1], 11, 1e-9);
  EXPECT_NEAR(camera->GetParallelScale(), 4, 1e-9);
}

TEST_F(zylViewCamera, RefusesWhatIsNoCamera)
{
  vtkCamera* camera = CameraOf(this->View);
  camera->SetPosition(1, 2, 3);
  const double nothing[16] = {};
  zylTestLog log;
  this->View->SetCameraMatrices(nullptr, nullptr, nullptr);
  this->View->SetCameraMatrices(nullptr, nullptr, nothing);
  EXPECT_EQ(log.Count(Error, "the matrices describe no camera"), 2);
  ExpectPoint(camera->GetPosition(), 1, 2, 3);
}

//--------------------------------------------------------------------------------------------------
// Last: the session of this process ends here.
TEST(zylViewZSession, SurvivesTheEndOfTheSession)
{
  vtkNew<zylView> view;
  auto box = MakeBox(0, 1);
  view->AddRepresentation(box);
  zylCore::GetInstance()->Disconnect();
  vtkNew<zylView> later;
  EXPECT_EQ(later->GetProxy(), nullptr);
  for (zylView* one : { view.Get(), later.Get() })
  {
    zylTestLog log;
    double bounds[6];
    int size[2];
    const double identity[16] = { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1 };
    one->Render();
    EXPECT_TRUE(log.Has(Error, "session")) << log.Dump();
    one->PreRenderSetup();
    one->PostRenderCleanup();
    one->PreSelectSetup();
    one->PostSelectCleanup();
    one->Update();
    one->ResetCamera();
    one->ResetCamera(0, 1, 0, 1, 0, 1);
    one->ResetCameraClippingRange();
    one->ResetCameraToNormal(0, 0, 0, 1, 0, 0);
    one->SetViewDir(1, true);
    one->SetCameraMatrices(identity, nullptr, identity);
    one->SetParallelProjection(true);
    one->Pitch(1);
    one->Yaw(1);
    one->SetZoom(2);
    one->Azimuth(2);
    one->SetBackground(1, 0, 0);
    one->SetWindowSize(10, 10);
    one->GetWindowSize(size);
    one->SetViewport(0, 0, 5, 5);
    one->SetOrientationAxis(true);
    one->SetPointOffset(1);
    one->GetBounds(bounds);
    EXPECT_EQ(one->CaptureImage(), nullptr);
    EXPECT_FALSE(one->SaveScreenshot("/tmp/zylNever.png"));
    one->AddRepresentation(box);
    one->RemoveRepresentation(box);
  }
}
