// The view without any OpenGL context: proxy, settings, camera, bounds, messages.
#include "zylView.h"
#include "zylRepresentation.h"
#include "zylTest.h"

#include <array>

#include <vtkCamera.h>
#include <vtkMapper.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkTransform.h>

namespace {
using testing::DoubleEq;
using testing::ElementsAre;

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

vtkPVRenderView* ClientOf(zylView* view)
{
  return vtkPVRenderView::SafeDownCast(view->GetProxy()->GetClientSideObject());
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
  zylValues Numbers(std::initializer_list<const char*> properties)
  {
    return zylNumbers(this->View->GetProxy(), properties);
  }

  vtkNew<zylView> View;
  vtkCamera* const Camera = ClientOf(this->View)->GetRenderer()->GetActiveCamera();
};

class zylViewCamera : public zylViewTest
{
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewTest, IsMadeWithItsDefaults)
{
  EXPECT_EQ(zylCore::GetInstance()->GetRegisteredViews().count(this->View), 1u);
  EXPECT_EQ(this->View->GetSourceFBO(), 1);
  EXPECT_EQ(this->Numbers({ "LockBounds", "SuppressRendering" }), (zylValues{ 1, 1 }));
  EXPECT_EQ(this->Numbers({ "DepthPeeling", "UseFXAA", "OrientationAxesVisibility" }),
    (zylValues{ 0, 0, 0 }));

  double lines[2], surfaces[2], points;
  vtkMapper::GetResolveCoincidentTopologyLineOffsetParameters(lines[0], lines[1]);
  vtkMapper::GetResolveCoincidentTopologyPolygonOffsetParameters(surfaces[0], surfaces[1]);
  vtkMapper::GetResolveCoincidentTopologyPointOffsetParameter(points);
  EXPECT_EQ((zylValues{ lines[0], lines[1], surfaces[0], surfaces[1], points }),
    (zylValues{ 0, -4, 0, 0, -8 }));

  EXPECT_THAT(this->View->GetProperties()->GetPropertyNames(),
    ElementsAre("NetworkPreset", "RemoteRenderThreshold", "RenderAnnotations"));
  // Every light setting has its place on this ParaView's view proxy, with the default of the kit.
  zylPropertyCollection* lights = this->View->GetLightKitProperties();
  EXPECT_EQ(lights->GetPropertyNames().size(), 16u);
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
  zylSet(this->View->GetProperties(), "RenderAnnotations", true, "RemoteRenderThreshold", 77);
  zylSet(this->View->GetLightKitProperties(), "UseLight", false, "KeyLightIntensity", 0.25,
    "FillLightK:F Ratio", 7.5, "MaintainLuminance", true);
  const auto applied = [this] {
    return this->Numbers({ "ShowAnnotation", "RemoteRenderThreshold", "UseLight",
      "KeyLightIntensity", "FillLightK:F Ratio", "MaintainLuminance" });
  };
  EXPECT_EQ(applied()[1], 20) << "nothing is pushed before Update()";
  this->View->Update();
  EXPECT_EQ(applied(), (zylValues{ 1, 77, 0, 0.25, 7.5, 1 }));
}

TEST_F(zylViewTest, NetworkPresetsChooseTheCompressor)
{
  const std::pair<int, const char*> presets[] = { { 1, "vtkZlibImageCompressor 0 9 3 1" },
    { 2, "vtkZlibImageCompressor 0 6 2 0" }, { 3, "vtkLZ4Compressor 0 5" },
    { 4, "vtkLZ4Compressor 0 3" }, { 5, "" }, { 0, "kept" }, { 6, "kept" }, { -1, "kept" } };
  for (const auto& [preset, compressor] : presets)
  {
    vtkSMPropertyHelper(this->View->GetProxy(), "CompressorConfig").Set("kept");
    this->View->GetProperties()->Set("NetworkPreset", preset);
    this->View->Update();
    EXPECT_EQ(zylText(this->View->GetProxy(), "CompressorConfig"), compressor) << preset;
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
  EXPECT_THAT(bounds, ElementsAre(1, -1, 1, -1, 1, -1));
  auto box = MakeBox(2, 1);
  auto hidden = MakeBox(50, 1);
  hidden->Hide();
  this->View->AddRepresentation(box);
  this->View->AddRepresentation(MakeBox(-1, 0.5));
  this->View->AddRepresentation(hidden);
  zylTestLog log;
  EXPECT_EQ(zylBounds(this->View), (zylValues{ -1.5, 3, -1.5, 3, -1.5, 3 }));
  EXPECT_TRUE(log.Has(9, "GetBounds(): [-1.500000, 3.000000, -1.500000"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewTest, SizesReachWindowAndProxy)
{
  int size[2];
  this->View->SetWindowSize(640, 480);
  EXPECT_EQ(zylNumbers(this->View->GetProxy(), "ViewSize"), (zylValues{ 640, 480 }));
  this->View->SetViewport(64, 48, 320, 240);
  const double* viewport = ClientOf(this->View)->GetRenderer()->GetViewport();
  EXPECT_THAT(std::vector<double>(viewport, viewport + 4),
    ElementsAre(DoubleEq(0.1), DoubleEq(0.1), DoubleEq(0.6), DoubleEq(0.6)));

  zylTestLog log;
  this->View->SetWindowSize(-3, 10);
  EXPECT_TRUE(log.HasError("-3 x 10"));
  this->View->GetWindowSize(size);
  EXPECT_THAT(size, ElementsAre(640, 480));
  this->View->SetWindowSize(0, 0);
  this->View->SetViewport(0, 0, 10, 10);
  EXPECT_TRUE(log.HasError("the window has no area"));
}

TEST_F(zylViewTest, ShowsOrientationAxes)
{
  for (const bool on : { true, false })
  {
    this->View->SetOrientationAxis(on);
    EXPECT_EQ(this->Numbers({ "OrientationAxesVisibility" })[0], on);
    EXPECT_TRUE(!on || this->Numbers({ "OrientationAxesInteractivity" })[0] == 1);
    EXPECT_EQ(zylNumber(this->View->GetProxy(), "OrientationAxesLabelColor", 2), on ? 0.0 : 1.0);
  }
}

TEST_F(zylViewTest, OffsetsGoToTheSessionsSettings)
{
  this->View->SetPolygonalOffset(2, 3);
  this->View->SetLineOffset(4, 5);
  this->View->SetPointOffset(6);
  vtkSMProxy* settings =
    zylCore::GetInstance()->GetSessionProxyManager()->GetProxy("settings", "RenderViewSettings");
  ASSERT_NE(settings, nullptr);
  EXPECT_EQ(zylNumbers(settings, "PolygonOffsetParameters"), (zylValues{ 2, 3 }));
  EXPECT_EQ(zylNumbers(settings, "LineOffsetParameters"), (zylValues{ 4, 5 }));
  EXPECT_EQ(zylNumber(settings, "PointOffsetParameter"), 6);
}

// Without a context nothing is drawn, and it says so.
TEST_F(zylViewTest, ReportsAMissingContext)
{
  zylTestLog log;
  this->View->Render();
  EXPECT_EQ(log.CountErrors("No OpenGL context is current"), 1) << log.Dump();
  EXPECT_EQ(this->View->CaptureImage(), nullptr);
  EXPECT_FALSE(this->View->SaveScreenshot("/tmp/zylNever.png"));
  EXPECT_FALSE(this->View->SaveScreenshot(nullptr));
  EXPECT_TRUE(log.HasError("SaveScreenshot: no file name"));
  this->View->PreRenderSetup();
  this->View->PostRenderCleanup();
  this->View->PreSelectSetup();
  this->View->PostSelectCleanup();
  EXPECT_EQ(this->Numbers({ "SuppressRendering" })[0], 1);
}

TEST_F(zylViewTest, ReportsARenderOutsideTheFrame)
{
  zylTestLog quiet;
  this->View->GetProxy()->StillRender();
  EXPECT_FALSE(quiet.HasError("without the OpenGL state")) << "suppressed renders are fine";

  vtkSMPropertyHelper(this->View->GetProxy(), "SuppressRendering").Set(0);
  zylTestLog log;
  this->View->GetProxy()->InvokeEvent(vtkCommand::StartEvent);
  EXPECT_TRUE(
    log.HasError("ParaView RenderView is being called without the OpenGL state being recorded"));
  EXPECT_EQ(log.CountErrors(""), 2) << "and the call stack:\n" << log.Dump();
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
  this->Camera->SetViewAngle(40);
  this->View->Azimuth(2);
  EXPECT_DOUBLE_EQ(this->Camera->GetViewAngle(), 20);
  this->View->SetZoom(2);
  EXPECT_DOUBLE_EQ(this->Camera->GetViewAngle(), 10);
}

TEST_F(zylViewCamera, PitchAndYawTurnTheFocalPoint)
{
  this->Camera->SetPosition(0, 0, 0);
  this->Camera->SetFocalPoint(0, 0, -2);
  this->Camera->SetViewUp(0, 1, 0);
  this->View->Pitch(90);
  ExpectPoint(this->Camera->GetFocalPoint(), 0, 2, 0);
  this->Camera->SetFocalPoint(0, 0, -2);
  this->View->Yaw(90);
  ExpectPoint(this->Camera->GetFocalPoint(), -2, 0, 0);
  this->View->SetParallelProjection(true);
  EXPECT_TRUE(this->Camera->GetParallelProjection());
}

TEST_F(zylViewCamera, LooksAlongTheAxes)
{
  const struct
  {
    int Direction;
    double Up[3];
    double From[3];
  } rows[] = {
    { 1, { 0, 1, 0 }, { 0, 0, 1 } }, { 2, { 1, 0, 0 }, { 0, 0, -1 } },
    { 3, { 0, 0, 1 }, { 0, -1, 0 } }, { 4, { 1, 0, 0 }, { 0, 1, 0 } },
    { 5, { 0, 0, 1 }, { 1, 0, 0 } }, { 6, { 0, 1, 0 }, { -1, 0, 0 } },
    { -7, { 0, 1, 0 }, { -1, 0, 0 } }, // as the last one
  };
  this->View->AddRepresentation(MakeBox(3, 1));
  for (const auto& row : rows)
  {
    for (bool flip : { false, true })
    {
      this->View->SetViewDir(row.Direction, flip);
      const double sign = flip ? 1 : -1;
      const double* look = this->Camera->GetDirectionOfProjection();
      ExpectPoint(look, sign * row.From[0], sign * row.From[1], sign * row.From[2]);
      ExpectPoint(this->Camera->GetViewUp(), row.Up[0], row.Up[1], row.Up[2]);
    }
  }
}

TEST_F(zylViewCamera, FitsABoxAndKeepsTheBoundsLocked)
{
  this->Camera->SetViewAngle(30);
  this->Camera->SetPosition(0, 0, 10);
  this->Camera->SetFocalPoint(0, 0, 0);
  zylTestLog log;
  this->View->ResetCamera(1, 3, 1, 3, 1, 3);
  ExpectPoint(this->Camera->GetFocalPoint(), 2, 2, 2);
  // A sphere around the box just fits the view angle.
  const double radius = std::sqrt(3.0);
  EXPECT_NEAR(
    this->Camera->GetDistance(), radius / std::sin(vtkMath::RadiansFromDegrees(15.0)), 1e-6);
  EXPECT_EQ(this->Numbers({ "LockBounds" })[0], 1);
  EXPECT_TRUE(
    log.Has(9, "ResetCamera(1.000000, 3.000000, 1.000000, 3.000000, 1.000000, 3.000000)"));
}

TEST_F(zylViewCamera, LooksAgainstANormal)
{
  this->Camera->SetViewUp(0, 0, 1);
  zylTestLog log;
  this->View->ResetCameraToNormal(1, 2, 3, 0, -4, 0);
  const double* look = this->Camera->GetDirectionOfProjection();
  ExpectPoint(look, 0, 1, 0);
  // Along the view-up direction, either way: the picture gets another one.
  for (const double z : { 5.0, -5.0 })
  {
    this->Camera->SetViewUp(0, 0, 1);
    this->View->ResetCameraToNormal(1, 2, 3, 0, 0, z);
    ExpectPoint(this->Camera->GetDirectionOfProjection(), 0, 0, z > 0 ? -1 : 1);
    EXPECT_NEAR(this->Camera->GetViewUp()[2], 0.0, 1e-9);
    EXPECT_NEAR(vtkMath::Norm(this->Camera->GetViewUp()), 1.0, 1e-9);
  }
  this->View->ResetCameraToNormal(0, 0, 0, 0, 0, 0);
  EXPECT_TRUE(log.HasError("is not a direction"));
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

TEST_F(zylViewCamera, TakesMatrices)
{
  const double range[2] = { 2, 40 };
  for (const bool parallel : { true, false })
  {
    auto known = KnownCamera(parallel);
    this->View->SetCameraMatrices(
      known->GetModelViewTransformMatrix()->GetData(), nullptr, ProjectionOf(known).data());
    ExpectPoint(this->Camera->GetPosition(), 3, -4, 12);
    EXPECT_EQ(this->Camera->GetParallelProjection(), parallel);
    ExpectSameProjection(known, this->Camera, range);
  }
  EXPECT_NEAR(this->Camera->GetParallelScale(), 5, 1e-9);
  EXPECT_NEAR(this->Camera->GetViewAngle(), 37, 1e-9);
  EXPECT_NEAR(this->Camera->GetWindowCenter()[0], 0.25, 1e-9);
  EXPECT_NEAR(this->Camera->GetWindowCenter()[1], -0.125, 1e-9);

  auto known = KnownCamera(false);
  const auto projection = ProjectionOf(known);
  const double* modelView = known->GetModelViewTransformMatrix()->GetData();
  this->View->SetCameraMatrices(nullptr, modelView, projection.data());
  ExpectSameProjection(known, this->Camera, range);

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
  ExpectSameProjection(known, this->Camera, range);
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
  ExpectPoint(this->Camera->GetPosition(), 0, 0, 4);
  ExpectPoint(this->Camera->GetFocalPoint(), 0, 0, 3);
  EXPECT_NEAR(this->Camera->GetClippingRange()[0], 1, 1e-9);
  EXPECT_NEAR(this->Camera->GetClippingRange()[1], 11, 1e-9);
  EXPECT_NEAR(this->Camera->GetParallelScale(), 4, 1e-9);
}

TEST_F(zylViewCamera, RefusesWhatIsNoCamera)
{
  this->Camera->SetPosition(1, 2, 3);
  const double nothing[16] = {};
  zylTestLog log;
  this->View->SetCameraMatrices(nullptr, nullptr, nullptr);
  this->View->SetCameraMatrices(nullptr, nullptr, nothing);
  EXPECT_EQ(log.CountErrors("the matrices describe no camera"), 2);
  ExpectPoint(this->Camera->GetPosition(), 1, 2, 3);
}
