/// @file zylHostTest.h
/// Base of the tests that play a host with an OpenGL context. Each starts with a host of 300 x 300
/// pixels (ZYL_TEST_PLATFORM says GLX or EGL) and is skipped where there is none, unless the
/// environment variable ZYL_REQUIRE_GL is set.
///
///     TEST_F(zylViewRender, KeepsTheState)
///     {
///       this->Unchanged("Render", [&] { view->Render(); });
///     }
#ifndef zylHostTest_h
#define zylHostTest_h

#include "zylGLState.h"
#include "zylTestHost.h"
#include "zylView.h"

#include <memory>

#include <gtest/gtest.h>

#include <vtkSmartPointer.h>

/// A view of a host that draws in its window.
vtkSmartPointer<zylView> zylMakeView(int width = 300, int height = 300);
/// The same in parallel projection and without light: colors are those of the settings.
vtkSmartPointer<zylView> zylMakeFlatView();

class zylHostTest : public ::testing::Test
{
protected:
  void SetUp() override;
  /// What a fixture needs besides, where there is a host.
  virtual void Prepare() {}
  /// Checks that nothing left an OpenGL error behind.
  void TearDown() override;

  /// Runs `action` and expects that the host's context is still current, that the whole state is
  /// what it was, and that there is no OpenGL error.
  template <class Action>
  void Unchanged(const char* what, Action action)
  {
    const zylGLState before = zylGLState::Read();
    action();
    this->Compare(what, before);
  }

  std::unique_ptr<zylTestHost> Host;

private:
  void Compare(const char* what, const zylGLState& before);
};

#endif
