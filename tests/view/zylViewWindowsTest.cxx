// The view in windows that change their size, share a context, move and end.
#include "zylViewRenderFixture.h"

#include <vtk_glew.h>

using Framebuffer = zylTestHost::FramebufferOptions;

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, FollowsTheSizeOfTheWindow)
{
  ShowSphere(this->View);
  for (int size : { 300, 700, 200, 1200, 300 })
  {
    this->Host->UseFramebuffer(size, size);
    this->Unchanged("SetWindowSize", [&] { this->View->SetWindowSize(size, size); });
    this->CheckScene("size " + std::to_string(size), size);
  }
  this->Host->ResizeWindow(450, 450);
  this->View->SetWindowSize(450, 450);
  this->CheckScene("window", 450);
}

TEST_F(zylViewRender, DrawsNothingInAWindowWithoutArea)
{
  ShowSphere(this->View);
  this->RenderScene();
  for (int width : { 0, 100 })
  {
    this->View->SetWindowSize(width, 0);
    this->Host->Clear(1.0f, 0.5f, 0.0f);
    this->Render();
    EXPECT_TRUE(this->Host->PixelIs(150, 150, 255, 128, 0));
    int size[2];
    this->View->GetWindowSize(size);
    EXPECT_EQ(size[0], width);
    EXPECT_EQ(this->View->CaptureImage(), nullptr);
  }
  this->View->SetWindowSize(300, 300);
  this->CheckScene("again");
}

TEST_F(zylViewRender, DrawsInAPartOfTheWindow)
{
  ShowSphere(this->View);
  this->View->SetViewport(150, 150, 150, 150);
  this->Host->Clear(0.0f, 0.0f, 1.0f);
  this->Render();
  EXPECT_TRUE(this->Host->PixelIs(100, 100, 0, 0, 255));
  EXPECT_FALSE(this->Host->PixelIs(225, 225, 0, 0, 255));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewRender, SeveralViewsShareAContext)
{
  auto other = zylMakeView();
  ShowSphere(this->View);
  ShowSphere(other);
  for (int frame = 0; frame < 2; ++frame)
  {
    this->CheckScene("first view");
    this->PaintScene();
    this->Unchanged("Render", [&] { other->Render(); });
    this->ExpectScene("second view");
  }
  this->Unchanged("Delete", [&] { other = nullptr; });
  this->CheckScene("the view that is left");
}

TEST_F(zylViewRender, ViewsDrawInTheirOwnContexts)
{
  auto otherHost = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(otherHost, nullptr);
  auto otherView = zylMakeView();
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
    this->CheckScene("first context");
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
  this->CheckScene("compatibility");
  this->PaintScene();
  glEnable(GL_ALPHA_TEST);
  glAlphaFunc(GL_NEVER, 0.0f);
  this->Render();
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
    this->CheckScene("context " + std::to_string(i));
  }
}

TEST_F(zylViewRender, SurvivesWithoutItsContext)
{
  ShowSphere(this->View);
  this->RenderScene();
  this->Host->Release();
  zylTestLog log;
  this->View->Render();
  EXPECT_EQ(log.CountErrors("No OpenGL context is current"), 1) << log.Dump();
  auto made = zylMakeView();
  ShowSphere(made);
  EXPECT_FALSE(this->Host->IsCurrent());
  this->Host->MakeCurrent();
  this->CheckScene("current again");
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
