// The view in a context that is too old. The driver is told to report OpenGL 3.1, which it reads
// once per process.
#include "zylHostTest.h"
#include "zylTestLog.h"
#include "zylView.h"

#include <cstdlib>

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtk_glew.h>

TEST(zylViewOldContext, IsRefusedAtEveryRender)
{
  setenv("MESA_GL_VERSION_OVERRIDE", "3.1", 1);
  auto host = zylTestHost::New(zylTestHost::DefaultPlatform(), 100, 100, false);
  if (!host)
  {
    ASSERT_EQ(std::getenv("ZYL_REQUIRE_GL"), nullptr) << "no OpenGL context";
    GTEST_SKIP() << "no OpenGL context";
  }
  const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
  if (version.substr(0, 3) != "3.1")
  {
    GTEST_SKIP() << "this driver cannot pretend: " << version;
  }
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0);
  view->SetWindowSize(100, 100);
  host->Clear(0.0f, 0.0f, 1.0f);
  const zylGLState before = zylGLState::Read();
  for (int render = 1; render <= 2; ++render)
  {
    zylTestLog log;
    view->Render();
    const int error = vtkLogger::VERBOSITY_ERROR;
    EXPECT_EQ(log.Count(error, "The openGL version is not sufficient for ZYL"), 1) << log.Dump();
    EXPECT_EQ(log.Count(error, "OpenGL version string:  3.1"), 1) << log.Dump();
    EXPECT_EQ(zylGLState::Read().Difference(before), "");
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(host->PixelIs(50, 50, 0, 0, 255));
    EXPECT_EQ(view->CaptureImage(), nullptr);
  }
  view = nullptr;
  EXPECT_EQ(zylGLState::Read().Difference(before), "");
}
