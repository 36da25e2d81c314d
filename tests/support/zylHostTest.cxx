#include "zylHostTest.h"

#include "zylPropertyCollection.h"

#include <cstdlib>

#include <vtk_glew.h>

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylView> zylMakeView(int width, int height)
{
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0);
  view->SetWindowSize(width, height);
  return view;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylView> zylMakeFlatView()
{
  auto view = zylMakeView();
  view->GetLightKitProperties()->Set("UseLight", false);
  view->Update();
  view->SetParallelProjection(true);
  return view;
}

//--------------------------------------------------------------------------------------------------
void zylHostTest::SetUp()
{
  this->Host = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  if (!this->Host)
  {
    if (std::getenv("ZYL_REQUIRE_GL"))
    {
      FAIL() << "no OpenGL context, and ZYL_REQUIRE_GL is set";
    }
    GTEST_SKIP() << "no OpenGL context of version 3.2";
  }
  this->Prepare();
}

//--------------------------------------------------------------------------------------------------
void zylHostTest::TearDown()
{
  if (this->Host && this->Host->IsCurrent())
  {
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostTest::Compare(const char* what, const zylGLState& before)
{
  EXPECT_TRUE(this->Host->IsCurrent()) << what << " took the context away";
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << what;
  EXPECT_EQ(zylGLState::Read().Difference(before), "") << what;
}
