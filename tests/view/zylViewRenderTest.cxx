// The view in the context of a host: pictures, and the host's context and state kept.
#include "zylOddState.h"
#include "zylViewRenderFixture.h"

#include <unistd.h>

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkImageData.h>
#include <vtkPNGReader.h>
#include <vtkPVRenderView.h>
#include <vtkRenderer.h>
#include <vtk_glew.h>

using Framebuffer = zylTestHost::FramebufferOptions;

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, MergesWithTheWindow)
{
  ShowSphere(this->View);
  this->CheckScene("window");
  if (const char* path = std::getenv("ZYL_TEST_PICTURE"))
  {
    this->Host->WritePicture(path);
  }
  // The merged picture is the host's: the next frame starts from what it paints then.
  this->CheckScene("second frame");
}

struct FormatCase
{
  const char* Name;
  unsigned int Color, Depth;
};

class zylViewFormats
  : public zylViewRender
  , public ::testing::WithParamInterface<FormatCase>
{
};

TEST_P(zylViewFormats, Merge)
{
  for (int samples : { 0, 4 })
  {
    SCOPED_TRACE(samples);
    const Framebuffer options{ samples, this->GetParam().Color, this->GetParam().Depth, 1 };
    this->Host->UseFramebuffer(300, 300, options);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
      std::printf("%d samples: not supported by this driver\n", samples);
      continue;
    }
    auto sphere = ShowSphere(this->View);
    zylTestLog log;
    this->CheckScene("opaque");
    // What is in front hides a translucent surface too, and what is behind it shows through.
    vtkSMPropertyHelper(sphere, "Opacity").Set(0.5);
    sphere->UpdateVTKObjects();
    this->RenderScene();
    EXPECT_FALSE(log.HasError());
    EXPECT_TRUE(this->Host->PixelIs(120, 150, 255, 0, 0));
    const std::array<int, 3> pixel = this->Host->Pixel(180, 150);
    EXPECT_TRUE(pixel[1] > pixel[0] + 40 && pixel[0] > 40) << pixel[0] << ' ' << pixel[1];
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
    FormatCase{ "D24S8", GL_RGBA8, GL_DEPTH24_STENCIL8 },
    FormatCase{ "D24", GL_RGBA8, GL_DEPTH_COMPONENT24 },
    FormatCase{ "D16", GL_RGBA8, GL_DEPTH_COMPONENT16 },
    FormatCase{ "D32", GL_RGBA8, GL_DEPTH_COMPONENT32 },
    FormatCase{ "D32F", GL_RGBA8, GL_DEPTH_COMPONENT32F },
    FormatCase{ "D32FS8", GL_RGBA8, GL_DEPTH32F_STENCIL8 },
    FormatCase{ "RGB8", GL_RGB8, GL_DEPTH24_STENCIL8 },
    FormatCase{ "Srgb", GL_SRGB8_ALPHA8, GL_DEPTH24_STENCIL8 },
    FormatCase{ "Float", GL_RGBA16F, GL_DEPTH_COMPONENT32F }),
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
  EXPECT_TRUE(this->IsLight(120, 150)) << "the quad has no depth to hide the sphere with";
}

TEST_F(zylViewRender, DrawsIntoTheFirstColorBufferOnly)
{
  ShowSphere(this->View);
  this->Host->UseFramebuffer(300, 300, Framebuffer{ 0, GL_RGBA8, GL_DEPTH24_STENCIL8, 2 });
  this->View->SetSourceFBO(this->Host->GetFramebuffer());
  this->PaintScene();
  const std::array<int, 3> before = this->Host->Pixel(170, 150, 1);
  this->Render();
  this->ExpectScene("first buffer");
  EXPECT_EQ(this->Host->Pixel(170, 150, 1), before) << "the second buffer holds the host's data";
}

TEST_F(zylViewRender, ReportsWhatCannotBeCopied)
{
  ShowSphere(this->View);
  zylTestLog log;
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
    this->Render();
  }
  EXPECT_EQ(log.CountErrors("different depth formats"), 1) << log.Dump();
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 255, 255, 0)) << "colors are copied all the same";

  // An incomplete one.
  glBindFramebuffer(GL_FRAMEBUFFER, names[0]);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 0);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 0);
  this->Render();
  EXPECT_EQ(log.CountErrors("the framebuffer to read from is not complete"), 1) << log.Dump();
  EXPECT_EQ(log.CountErrors("the framebuffer to draw to is not complete"), 1) << log.Dump();
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  glDeleteFramebuffers(1, names);
  glDeleteRenderbuffers(2, names + 1);
}

// The default source, framebuffer object 1, does not exist for a host that draws in its window; the
// view's own framebuffers, of whichever pass, must not be taken for it.
TEST_F(zylViewRender, SaysThatTheSourceFramebufferIsMissing)
{
  const auto sphere = ShowSphere(this->View);
  this->View->SetSourceFBO(0);
  for (const double opacity : { 0.5, 1.0 })
  {
    vtkSMPropertyHelper(sphere, "Opacity").Set(opacity);
    sphere->UpdateVTKObjects();
    this->View->Render();
  }
  std::vector<int> missing = { 1, 999 };
  for (int name = 2; name < 100; ++name)
  {
    if (glIsFramebuffer(name) == GL_TRUE)
    {
      missing.push_back(name); // the host has made none
    }
  }
  EXPECT_GT(missing.size(), 4U) << "rendered to, shown, blended";
  for (const int name : missing)
  {
    this->View->SetSourceFBO(name);
    zylTestLog log;
    for (int frame = 0; frame < 2; ++frame)
    {
      this->PaintScene();
      this->Render();
      this->ExpectScene("window, not " + std::to_string(name));
    }
    EXPECT_EQ(log.CountErrors("no framebuffer object " + std::to_string(name)), 1) << log.Dump();
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, KeepsTheStateInEveryOperation)
{
  this->View = nullptr;
  this->Host->UseFramebuffer(300, 300);
  this->PaintScene();
  zylOddState(1).Apply();
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
  zylOddState(2).Apply();
  this->Render();
  EXPECT_EQ(this->Picture(), expected);
  EXPECT_EQ(this->Host->Depth(155, 150), depth);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, GoesOnWhenCallsAreOutOfOrder)
{
  ShowSphere(this->View);
  this->RenderScene();
  zylTestLog log;
  const struct
  {
    void (zylView::*Begin)();
    void (zylView::*End)();
    std::string BeginName, EndName;
  } pairs[] = { { &zylView::PreRenderSetup, &zylView::PostRenderCleanup, "PreRenderSetup",
                  "PostRenderCleanup" },
    { &zylView::PreSelectSetup, &zylView::PostSelectCleanup, "PreSelectSetup",
      "PostSelectCleanup" } };
  for (const auto& pair : pairs)
  {
    this->Unchanged(pair.BeginName.c_str(), [&] {
      (this->View->*pair.Begin)();
      (this->View->*pair.Begin)();
      (this->View->*pair.End)();
      (this->View->*pair.End)();
    });
    this->Unchanged("cleanup alone", [&] { (this->View->*pair.End)(); });
    EXPECT_EQ(log.CountErrors(pair.BeginName + " was called a second time without " + pair.EndName +
                "() being called"),
      1);
    EXPECT_EQ(
      log.CountErrors(pair.EndName + "() called without " + pair.BeginName + "() being invoked"),
      2);
  }
  this->CheckScene("afterwards");
}

// Without a picture of its own the view copies nothing out.
TEST_F(zylViewRender, CleansUpBeforeTheFirstRender)
{
  zylTestLog log;
  this->Host->Clear(1.0f, 0.5f, 0.0f);
  this->Unchanged("cleanup", [this] { this->View->PostRenderCleanup(); });
  EXPECT_EQ(log.CountErrors("without PreRenderSetup()"), 1);
  this->Unchanged("pair", [this] {
    this->View->PreRenderSetup();
    this->View->PostRenderCleanup();
  });
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 255, 128, 0));
  ShowSphere(this->View);
  this->CheckScene("afterwards");
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
  EXPECT_EQ(image->GetScalarComponentAsFloat(2, 2, 0, 2), 255);
  EXPECT_EQ(image->GetScalarComponentAsFloat(120, 150, 0, 0), 255);
  EXPECT_EQ(image->GetScalarComponentAsFloat(120, 150, 0, 1), 0);

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
    zylTestLog log;
    this->Unchanged(path, [&] { EXPECT_FALSE(this->View->SaveScreenshot(path)) << path; });
    EXPECT_TRUE(log.HasError("SaveScreenshot")) << path << '\n' << log.Dump();
  }
  this->CheckScene("afterwards");
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
  this->Render();
  EXPECT_TRUE(this->Host->PixelIs(2, 2, 0, 255, 0));
  glDeleteFramebuffers(1, &empty);
  glDeleteRenderbuffers(1, &depth);
  glBindRenderbuffer(GL_RENDERBUFFER, 0);
}
