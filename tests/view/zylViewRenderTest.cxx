// The view in the context of a host: pictures, and the host's context and state kept.
#include "zylCore.h"
#include "zylHostTest.h"
#include "zylTestLog.h"
#include "zylView.h"

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <unistd.h>

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkPNGReader.h>
#include <vtkPVRenderView.h>
#include <vtkRenderer.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSmartPointer.h>
#include <vtk_glew.h>

namespace {
constexpr int Error = vtkLogger::VERBOSITY_ERROR;
using Framebuffer = zylTestHost::FramebufferOptions;

vtkSmartPointer<zylView> MakeView(int width = 300, int height = 300)
{
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0);
  view->SetWindowSize(width, height);
  return view;
}

// A light sphere of radius 0.5 in the middle, seen along -z; its nearest point is at depth 0.09.
vtkSmartPointer<vtkSMProxy> ShowSphere(zylView* view)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  vtkSmartPointer<vtkSMSourceProxy> sphere;
  sphere.TakeReference(
    vtkSMSourceProxy::SafeDownCast(manager->NewProxy("sources", "SphereSource")));
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
  controller->InitializeProxy(sphere);
  vtkSMPropertyHelper(sphere, "ThetaResolution").Set(64);
  vtkSMPropertyHelper(sphere, "PhiResolution").Set(64);
  sphere->UpdateVTKObjects();
  controller->RegisterPipelineProxy(sphere);
  vtkSmartPointer<vtkSMProxy> shown = controller->Show(sphere, 0, view->GetProxy());
  const double center = -2.0; // the eye is at the origin
  vtkSMPropertyHelper(sphere, "Center").Set(2, center);
  sphere->UpdateVTKObjects();
  // near 1, far 4, 45 degrees
  const double t = 1.0 / std::tan(M_PI / 8);
  const double projection[16] = { t, 0, 0, 0, 0, t, 0, 0, 0, 0, -5.0 / 3, -8.0 / 3, 0, 0, -1, 0 };
  view->SetCameraMatrices(nullptr, nullptr, projection);
  return shown;
}

// Depth in [0, 1] of a point at distance z, by the projection above.
float DepthAt(double z)
{
  return static_cast<float>(((5.0 / 3 * z - 8.0 / 3) / z + 1) / 2);
}
} // namespace

class zylViewRender : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    if (this->Host)
    {
      this->View = MakeView();
    }
  }
  void TearDown() override
  {
    this->View = nullptr;
    zylHostTest::TearDown();
  }

  // Blue background; a red quad nearer than the sphere on the left, a green one behind it on the
  // right.
  void PaintScene()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Host->DrawQuad({ -1, -0.5f, 0, 0.5f }, DepthAt(1.2), { 1, 0, 0 });
    this->Host->DrawQuad({ 0, -0.5f, 1, 0.5f }, DepthAt(3.5), { 0, 1, 0 });
  }

  // That scene with the sphere in it, in a picture of `size` pixels.
  void ExpectScene(const std::string& what, int size = 300, bool depth = true)
  {
    const int half = size / 2;
    const int tenth = size / 10;
    EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 0, 255)) << what << ": background";
    EXPECT_TRUE(this->Host->PixelIs(half - tenth, half, 255, 0, 0)) << what << ": near quad";
    EXPECT_TRUE(this->Host->PixelIs(size - 3, half, 0, 255, 0)) << what << ": far quad";
    for (const std::array<int, 2> at :
      { std::array<int, 2>{ half + tenth, half }, { half - tenth, half + size * 27 / 100 } })
    {
      const std::array<int, 3> pixel = this->Host->Pixel(at[0], at[1]);
      EXPECT_TRUE(pixel[0] > 90 && pixel[1] > 90 && pixel[2] > 90)
        << what << ": sphere, " << pixel[0] << ' ' << pixel[1] << ' ' << pixel[2];
    }
    if (depth)
    {
      EXPECT_NEAR(this->Host->Depth(half + 1, half), DepthAt(1.5), 2e-3) << what;
      EXPECT_NEAR(this->Host->Depth(half - tenth, half), DepthAt(1.2), 1e-4) << what;
      EXPECT_NEAR(this->Host->Depth(size - 3, half), DepthAt(3.5), 1e-4) << what;
      EXPECT_NEAR(this->Host->Depth(2, 2), 1.0, 1e-6) << what;
    }
  }

  void RenderScene()
  {
    this->View->SetSourceFBO(this->Host->GetFramebuffer());
    this->PaintScene();
    this->Unchanged("Render", [this] { this->View->Render(); });
  }

  std::vector<std::array<int, 3>> Picture()
  {
    std::vector<std::array<int, 3>> pixels;
    for (int y = 0; y < 300; y += 7)
    {
      for (int x = 0; x < 300; x += 7)
      {
        pixels.push_back(this->Host->Pixel(x, y));
      }
    }
    return pixels;
  }

  vtkSmartPointer<zylView> View;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, MergesWithTheWindow)
{
  ShowSphere(this->View);
  this->RenderScene();
  this->ExpectScene("window");
  if (const char* path = std::getenv("ZYL_TEST_PICTURE"))
  {
    this->Host->WritePicture(path);
  }
  // The merged picture is the host's: the next frame starts from what it paints then.
  this->RenderScene();
  this->ExpectScene("second frame");
}

struct FormatCase
{
  const char* Name;
  Framebuffer Options;
};

class zylViewFormats
  : public zylViewRender
  , public ::testing::WithParamInterface<FormatCase>
{
};

TEST_P(zylViewFormats, Merge)
{
  Framebuffer options = this->GetParam().Options;
  for (int samples : { 0, 4 })
  {
    options.Samples = samples;
    this->Host->UseFramebuffer(300, 300, options);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
      std::printf("%d samples: not supported by this driver\n", samples);
      continue;
    }
    auto sphere = ShowSphere(this->View);
    zylTestLog log(vtkLogger::VERBOSITY_WARNING);
    this->RenderScene();
    EXPECT_EQ(log.Count(Error, ""), 0) << log.Dump();
    this->ExpectScene(std::to_string(samples) + " samples");
    // What is in front hides a translucent surface too, and what is behind it shows through.
    vtkSMPropertyHelper(sphere, "Opacity").Set(0.5);
    sphere->UpdateVTKObjects();
    this->RenderScene();
    EXPECT_EQ(log.Count(Error, ""), 0) << log.Dump();
    EXPECT_TRUE(this->Host->PixelIs(120, 150, 255, 0, 0)) << samples << " samples";
    const std::array<int, 3> pixel = this->Host->Pixel(180, 150);
    EXPECT_TRUE(pixel[1] > pixel[0] + 40 && pixel[0] > 40)
      << samples << " samples: " << pixel[0] << ' ' << pixel[1] << ' ' << pixel[2];
    vtkSMPropertyHelper(sphere, "Visibility").Set(0);
    sphere->UpdateVTKObjects();
  }
}

// A frame of what was shown before sends the server one word each way, that ParaView may render,
// and updates nothing; whatever changes meanwhile is seen all the same.
TEST_F(zylViewRender, AnUnchangedFrameUpdatesNothing)
{
  const auto shown = ShowSphere(this->View);
  vtkSMRenderViewProxy* proxy = this->View->GetProxy();
  auto* client = vtkPVRenderView::SafeDownCast(proxy->GetClientSideObject());
  int updates = 0;
  vtkNew<vtkCallbackCommand> count;
  count->SetClientData(&updates);
  count->SetCallback(
    [](vtkObject*, unsigned long, void* counter, void*) { ++*static_cast<int*>(counter); });
  proxy->AddObserver(vtkCommand::UpdateEvent, count);
  proxy->AddObserver(vtkCommand::UpdateDataEvent, count);
  const auto frame = [&] {
    updates = 0;
    this->RenderScene();
    EXPECT_TRUE(client->GetSuppressRendering());
    return updates;
  };
  EXPECT_GT(frame(), 0);
  this->ExpectScene("first");
  frame(); // the camera's settings have followed the camera
  EXPECT_EQ(frame(), 0);
  this->ExpectScene("again");

  // The host moves the camera itself: back to where ParaView's copy of it never was.
  client->GetActiveCamera()->SetPosition(0.0, 0.0, 0.25);
  frame();
  frame();
  EXPECT_EQ(client->GetActiveCamera()->GetPosition()[2], 0.25);
  client->GetActiveCamera()->SetPosition(0.0, 0.0, 0.0);
  frame();
  this->ExpectScene("camera back");

  vtkSMPropertyHelper(proxy, "Background").Set(0, 0.25); // set, not sent
  frame();
  EXPECT_EQ(client->GetRenderer()->GetBackground()[0], 0.25);
  vtkSMPropertyHelper(shown, "Visibility").Set(0);
  shown->UpdateVTKObjects();
  frame();
  EXPECT_TRUE(this->Host->PixelIs(180, 150, 0, 255, 0)) << "no sphere before the far quad";
  proxy->RemoveObserver(count);
}

INSTANTIATE_TEST_SUITE_P(Framebuffers, zylViewFormats,
  ::testing::Values( //
    FormatCase{ "D24S8", { 0, GL_RGBA8, GL_DEPTH24_STENCIL8, 1 } },
    FormatCase{ "D24", { 0, GL_RGBA8, GL_DEPTH_COMPONENT24, 1 } },
    FormatCase{ "D16", { 0, GL_RGBA8, GL_DEPTH_COMPONENT16, 1 } },
    FormatCase{ "D32", { 0, GL_RGBA8, GL_DEPTH_COMPONENT32, 1 } },
    FormatCase{ "D32F", { 0, GL_RGBA8, GL_DEPTH_COMPONENT32F, 1 } },
    FormatCase{ "D32FS8", { 0, GL_RGBA8, GL_DEPTH32F_STENCIL8, 1 } },
    FormatCase{ "RGB8", { 0, GL_RGB8, GL_DEPTH24_STENCIL8, 1 } },
    FormatCase{ "Srgb", { 0, GL_SRGB8_ALPHA8, GL_DEPTH24_STENCIL8, 1 } },
    FormatCase{ "Float", { 0, GL_RGBA16F, GL_DEPTH_COMPONENT32F, 1 } }),
  [](const auto& info) { return info.param.Name; });

// Without depths of the host the sphere is drawn over everything, also after a frame that had
// depths.
TEST_F(zylViewRender, TakesAFramebufferWithoutDepth)
{
  ShowSphere(this->View);
  this->Host->UseFramebuffer(300, 300);
  this->RenderScene();
  this->Host->UseFramebuffer(300, 300, Framebuffer{ 0, GL_RGBA8, 0, 1 });
  this->RenderScene();
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 0, 255));
  const std::array<int, 3> pixel = this->Host->Pixel(120, 150);
  EXPECT_TRUE(pixel[0] > 90 && pixel[1] > 90) << "the quad has no depth to hide the sphere with";
}

TEST_F(zylViewRender, DrawsIntoTheFirstColorBufferOnly)
{
  ShowSphere(this->View);
  this->Host->UseFramebuffer(300, 300, Framebuffer{ 0, GL_RGBA8, GL_DEPTH24_STENCIL8, 2 });
  this->View->SetSourceFBO(this->Host->GetFramebuffer());
  this->PaintScene();
  const std::array<int, 3> before = this->Host->Pixel(170, 150, 1);
  this->Unchanged("Render", [this] { this->View->Render(); });
  this->ExpectScene("first buffer");
  EXPECT_EQ(this->Host->Pixel(170, 150, 1), before) << "the second buffer holds the host's data";
}

TEST_F(zylViewRender, ReportsWhatCannotBeCopied)
{
  ShowSphere(this->View);
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  // Read from a framebuffer of another depth format than the one drawn to.
  GLuint names[3];
  glGenFramebuffers(1, names);
  glGenRenderbuffers(2, names + 1);
  glBindFramebuffer(GL_FRAMEBUFFER, names[0]);
  const GLenum formats[2] = { GL_RGBA8, GL_DEPTH_COMPONENT16 };
  const GLenum points[2] = { GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT };
  for (int i = 0; i < 2; ++i)
  {
    glBindRenderbuffer(GL_RENDERBUFFER, names[1 + i]);
    glRenderbufferStorage(GL_RENDERBUFFER, formats[i], 300, 300);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, points[i], GL_RENDERBUFFER, names[1 + i]);
  }
  this->Host->Clear(1.0f, 1.0f, 0.0f);
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  this->Host->Clear(0.0f, 0.0f, 0.0f);
  this->View->SetSourceFBO(names[0]);
  for (int frame = 0; frame < 3; ++frame)
  {
    this->Unchanged("Render", [this] { this->View->Render(); });
  }
  EXPECT_EQ(log.Count(Error, "different depth formats"), 1) << log.Dump();
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 255, 255, 0)) << "colors are copied all the same";

  // An incomplete one.
  glBindFramebuffer(GL_FRAMEBUFFER, names[0]);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 0);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 0);
  this->Unchanged("Render", [this] { this->View->Render(); });
  EXPECT_EQ(log.Count(Error, "the framebuffer to read from is not complete"), 1) << log.Dump();
  EXPECT_EQ(log.Count(Error, "the framebuffer to draw to is not complete"), 1) << log.Dump();
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  glDeleteFramebuffers(1, names);
  glDeleteRenderbuffers(2, names + 1);
}

// The default source, framebuffer object 1, does not exist for a host that draws in its window; the
// view's own framebuffers must not be taken for it.
TEST_F(zylViewRender, SaysThatTheSourceFramebufferIsMissing)
{
  ShowSphere(this->View);
  this->View->SetSourceFBO(1);
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  for (int frame = 0; frame < 2; ++frame)
  {
    this->PaintScene();
    this->Unchanged("Render", [this] { this->View->Render(); });
    this->ExpectScene("window");
  }
  EXPECT_EQ(log.Count(Error, "no framebuffer object 1"), 1) << log.Dump();
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, KeepsTheStateInEveryOperation)
{
  this->View = nullptr;
  this->Host->UseFramebuffer(300, 300);
  this->PaintScene();
  this->Host->SetOddState();
  vtkSmartPointer<zylView> view;
  vtkSmartPointer<vtkSMProxy> shown;
  const std::string path = "/tmp/zylState" + std::to_string(getpid()) + ".png";
  this->Unchanged("New", [&] { view = vtkSmartPointer<zylView>::New(); });
  this->Unchanged("SetSourceFBO", [&] { view->SetSourceFBO(this->Host->GetFramebuffer()); });
  this->Unchanged("SetWindowSize", [&] { view->SetWindowSize(300, 300); });
  this->Unchanged("Show", [&] { shown = ShowSphere(view); });
  this->Unchanged("first Render", [&] { view->Render(); });
  this->Unchanged("second Render", [&] { view->Render(); });
  this->Unchanged("Update", [&] { view->Update(); });
  this->Unchanged("ResetCamera", [&] { view->ResetCamera(); });
  this->Unchanged("ResetCameraToNormal", [&] { view->ResetCameraToNormal(0, 0, 0, 1, 0, 0); });
  this->Unchanged("render pair", [&] {
    view->PreRenderSetup();
    view->PostRenderCleanup();
  });
  this->Unchanged("select pair", [&] {
    view->PreSelectSetup();
    view->PostSelectCleanup();
  });
  this->Unchanged("select pair around a render", [&] {
    view->PreSelectSetup();
    view->Render();
    view->PostSelectCleanup();
  });
  this->Unchanged("hardware selection", [&] {
    vtkNew<vtkCollection> representations;
    vtkNew<vtkCollection> sources;
    const int region[4] = { 100, 100, 200, 200 };
    view->PreSelectSetup();
    view->GetProxy()->SelectSurfaceCells(region, representations, sources, true);
    view->PostSelectCleanup();
    EXPECT_EQ(sources->GetNumberOfItems(), 1);
  });
  this->Unchanged("CaptureImage", [&] { EXPECT_NE(view->CaptureImage(), nullptr); });
  this->Unchanged("SaveScreenshot", [&] { EXPECT_TRUE(view->SaveScreenshot(path.c_str())); });
  this->Unchanged("grow", [&] { view->SetWindowSize(310, 320); });
  this->Unchanged("Render after growing", [&] { view->Render(); });
  vtkSMPropertyHelper(view->GetProxy(), "DepthPeeling").Set(1);
  vtkSMPropertyHelper(shown, "Opacity").Set(0.5);
  shown->UpdateVTKObjects();
  view->SetOrientationAxis(true);
  view->Update();
  this->Unchanged("Render of something transparent", [&] { view->Render(); });
  this->Unchanged("Hide", [&] {
    vtkSMPropertyHelper(shown, "Visibility").Set(0);
    shown->UpdateVTKObjects();
    view->Render();
  });
  this->Unchanged("Delete", [&] { view = nullptr; });
  unlink(path.c_str());
}

// The picture does not depend on what state the host leaves.
TEST_F(zylViewRender, IgnoresTheHostsOddState)
{
  this->Host->UseFramebuffer(300, 300, Framebuffer{ 0, GL_SRGB8_ALPHA8, GL_DEPTH24_STENCIL8, 1 });
  ShowSphere(this->View);
  this->RenderScene();
  const auto expected = this->Picture();
  const float depth = this->Host->Depth(155, 150);
  this->PaintScene();
  this->Host->SetOddState();
  this->Unchanged("Render", [this] { this->View->Render(); });
  EXPECT_EQ(this->Picture(), expected);
  EXPECT_EQ(this->Host->Depth(155, 150), depth);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, FollowsTheSizeOfTheWindow)
{
  ShowSphere(this->View);
  for (int size : { 300, 700, 200, 1200, 300 })
  {
    this->Host->UseFramebuffer(size, size);
    this->Unchanged("SetWindowSize", [&] { this->View->SetWindowSize(size, size); });
    this->RenderScene();
    this->ExpectScene("size " + std::to_string(size), size);
  }
  this->Host->ResizeWindow(450, 450);
  this->View->SetWindowSize(450, 450);
  this->RenderScene();
  this->ExpectScene("window", 450);
}

TEST_F(zylViewRender, DrawsNothingInAWindowWithoutArea)
{
  ShowSphere(this->View);
  this->RenderScene();
  for (int width : { 0, 100 })
  {
    this->View->SetWindowSize(width, 0);
    this->Host->Clear(1.0f, 0.5f, 0.0f);
    this->Unchanged("Render", [this] { this->View->Render(); });
    EXPECT_TRUE(this->Host->PixelIs(150, 150, 255, 128, 0));
    int size[2];
    this->View->GetWindowSize(size);
    EXPECT_EQ(size[0], width);
    EXPECT_EQ(this->View->CaptureImage(), nullptr);
  }
  this->View->SetWindowSize(300, 300);
  this->RenderScene();
  this->ExpectScene("again");
}

TEST_F(zylViewRender, DrawsInAPartOfTheWindow)
{
  ShowSphere(this->View);
  this->View->SetViewport(150, 150, 150, 150);
  this->Host->Clear(0.0f, 0.0f, 1.0f);
  this->Unchanged("Render", [this] { this->View->Render(); });
  EXPECT_TRUE(this->Host->PixelIs(100, 100, 0, 0, 255));
  EXPECT_FALSE(this->Host->PixelIs(225, 225, 0, 0, 255));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, SeveralViewsShareAContext)
{
  auto other = MakeView();
  ShowSphere(this->View);
  ShowSphere(other);
  for (int frame = 0; frame < 2; ++frame)
  {
    this->RenderScene();
    this->ExpectScene("first view");
    this->PaintScene();
    this->Unchanged("Render", [&] { other->Render(); });
    this->ExpectScene("second view");
  }
  this->Unchanged("Delete", [&] { other = nullptr; });
  this->RenderScene();
  this->ExpectScene("the view that is left");
}

TEST_F(zylViewRender, ViewsDrawInTheirOwnContexts)
{
  auto otherHost = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(otherHost, nullptr);
  auto otherView = MakeView();
  ShowSphere(this->View);
  ShowSphere(otherView);
  const auto renderOther = [&] {
    otherHost->MakeCurrent();
    otherHost->Clear(1.0f, 0.0f, 1.0f);
    otherView->Render();
    EXPECT_TRUE(otherHost->IsCurrent());
    EXPECT_TRUE(otherHost->PixelIs(2, 2, 255, 0, 255));
    EXPECT_FALSE(otherHost->PixelIs(150, 150, 255, 0, 255));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  };
  for (int frame = 0; frame < 2; ++frame)
  {
    this->Host->MakeCurrent();
    this->RenderScene();
    this->ExpectScene("first context");
    renderOther();
  }
  // Names of one context must not be deleted in the other.
  this->View = nullptr;
  EXPECT_TRUE(otherHost->IsCurrent());
  renderOther();
  otherView = nullptr;
}

TEST_F(zylViewRender, DrawsInACompatibilityContext)
{
  this->Host = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300, false);
  ASSERT_NE(this->Host, nullptr);
  GLint version[2] = { 0, 0 };
  glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
  glGetIntegerv(GL_MINOR_VERSION, &version[1]);
  if (10 * version[0] + version[1] < 32)
  {
    this->View = nullptr;
    GTEST_SKIP() << "this driver's compatibility contexts are too old";
  }
  ShowSphere(this->View);
  this->RenderScene();
  this->ExpectScene("compatibility");
  this->PaintScene();
  glEnable(GL_ALPHA_TEST);
  glAlphaFunc(GL_NEVER, 0.0f);
  this->Unchanged("Render", [this] { this->View->Render(); });
  EXPECT_TRUE(glIsEnabled(GL_ALPHA_TEST));
  glDisable(GL_ALPHA_TEST);
  this->ExpectScene("alpha test");
}

// What is made in a context that is gone is made again in the next one.
TEST_F(zylViewRender, MovesToANewContext)
{
  ShowSphere(this->View);
  this->RenderScene();
  for (int i = 0; i < 3; ++i)
  {
    this->Host = nullptr; // the next one may well get the same address
    this->Host = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
    ASSERT_NE(this->Host, nullptr);
    this->RenderScene();
    this->ExpectScene("context " + std::to_string(i));
  }
}

TEST_F(zylViewRender, SurvivesWithoutItsContext)
{
  ShowSphere(this->View);
  this->RenderScene();
  this->Host->Release();
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  this->View->Render();
  EXPECT_EQ(log.Count(Error, "No OpenGL context is current"), 1) << log.Dump();
  auto made = MakeView();
  ShowSphere(made);
  EXPECT_FALSE(this->Host->IsCurrent());
  this->Host->MakeCurrent();
  this->RenderScene();
  this->ExpectScene("current again");
  this->PaintScene();
  made->Render();
  this->ExpectScene("made without a context");
  this->Host->Release();
  this->View = nullptr;
  made = nullptr;
  this->Host->MakeCurrent();
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(zylViewRender, OutlivesTheHost)
{
  ShowSphere(this->View);
  this->RenderScene();
  this->Host = nullptr;
  this->View->Render();
  this->View = nullptr;
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, GoesOnWhenCallsAreOutOfOrder)
{
  ShowSphere(this->View);
  this->RenderScene();
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  this->Unchanged("double setup", [this] {
    this->View->PreRenderSetup();
    this->View->PreRenderSetup();
    this->View->PostRenderCleanup();
    this->View->PostRenderCleanup();
  });
  EXPECT_EQ(log.Count(Error,
              "PreRenderSetup was called a second time without PostRenderCleanup() being called"),
    1);
  EXPECT_EQ(
    log.Count(Error, "PostRenderCleanup() called without PreRenderSetup() being invoked"), 1);
  this->Unchanged("select", [this] {
    this->View->PreSelectSetup();
    this->View->PreSelectSetup();
    this->View->PostSelectCleanup();
    this->View->PostSelectCleanup();
    this->View->PostSelectCleanup();
  });
  EXPECT_EQ(log.Count(Error,
              "PreSelectSetup was called a second time without PostSelectCleanup() being called"),
    1);
  EXPECT_EQ(
    log.Count(Error, "PostSelectCleanup() called without PreSelectSetup() being invoked"), 2);
  this->Unchanged("cleanup alone", [this] { this->View->PostRenderCleanup(); });
  this->RenderScene();
  this->ExpectScene("afterwards");
}

// Without a picture of its own the view copies nothing out.
TEST_F(zylViewRender, CleansUpBeforeTheFirstRender)
{
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  this->Host->Clear(1.0f, 0.5f, 0.0f);
  this->Unchanged("cleanup", [this] { this->View->PostRenderCleanup(); });
  EXPECT_EQ(log.Count(Error, "without PreRenderSetup()"), 1);
  this->Unchanged("pair", [this] {
    this->View->PreRenderSetup();
    this->View->PostRenderCleanup();
  });
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 255, 128, 0));
  ShowSphere(this->View);
  this->RenderScene();
  this->ExpectScene("afterwards");
}

// Rendering is suppressed outside the frame: what the server manager draws by itself is not seen.
TEST_F(zylViewRender, DrawsOnlyInsideTheFrame)
{
  ShowSphere(this->View);
  this->RenderScene();
  this->Host->Clear(0.0f, 0.0f, 1.0f);
  this->Unchanged("StillRender", [this] { this->View->GetProxy()->StillRender(); });
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 0, 0, 255));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, CapturesThePicture)
{
  ShowSphere(this->View);
  this->PaintScene();
  vtkSmartPointer<vtkImageData> image;
  this->Unchanged("first of all", [&] { image = this->View->CaptureImage(); });
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->GetDimensions()[0], 300);
  EXPECT_EQ(image->GetDimensions()[1], 300);
  EXPECT_EQ(image->GetNumberOfScalarComponents(), 3);
  const auto* corner = static_cast<unsigned char*>(image->GetScalarPointer(2, 2, 0));
  EXPECT_EQ(corner[2], 255);
  const auto* nearQuad = static_cast<unsigned char*>(image->GetScalarPointer(120, 150, 0));
  EXPECT_EQ(nearQuad[0], 255);
  EXPECT_EQ(nearQuad[1], 0);

  const std::string path = "/tmp/zylCapture" + std::to_string(getpid()) + ".png";
  EXPECT_TRUE(this->View->SaveScreenshot(path.c_str()));
  vtkNew<vtkPNGReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  EXPECT_EQ(reader->GetOutput()->GetDimensions()[0], 300);
  unlink(path.c_str());
}

TEST_F(zylViewRender, RefusesBadScreenshotFiles)
{
  ShowSphere(this->View);
  for (const char* path : { "", "/nonexistent/folder/a.png", "/tmp/zylNoFormat", "/tmp/a.nope" })
  {
    zylTestLog log(vtkLogger::VERBOSITY_WARNING);
    this->Unchanged(path, [&] { EXPECT_FALSE(this->View->SaveScreenshot(path)) << path; });
    EXPECT_TRUE(log.Has(Error, "SaveScreenshot")) << path << '\n' << log.Dump();
  }
  this->RenderScene();
  this->ExpectScene("afterwards");
}

// The view's background is what fills the picture where the host has no color.
TEST_F(zylViewRender, ShowsItsOwnBackgroundWithoutAHostsColor)
{
  this->View->SetBackground(0.0, 1.0, 0.0);
  this->RenderScene();
  auto* client = vtkPVRenderView::SafeDownCast(this->View->GetProxy()->GetClientSideObject());
  EXPECT_EQ(client->GetRenderer()->GetBackground()[1], 1.0);
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 0, 255));

  GLuint empty = 0;
  GLuint depth = 0;
  glGenFramebuffers(1, &empty);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, empty);
  glGenRenderbuffers(1, &depth);
  glBindRenderbuffer(GL_RENDERBUFFER, depth);
  glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, 300, 300);
  glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
  glReadBuffer(GL_NONE);
  GLint drawn = 0;
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawn);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, empty);
  glDrawBuffer(GL_NONE);
  glClear(GL_DEPTH_BUFFER_BIT);
  glBindFramebuffer(GL_FRAMEBUFFER, drawn);
  this->View->SetSourceFBO(empty);
  this->Unchanged("Render", [this] { this->View->Render(); });
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 255, 0));
  glDeleteFramebuffers(1, &empty);
  glDeleteRenderbuffers(1, &depth);
  glBindRenderbuffer(GL_RENDERBUFFER, 0);
}
