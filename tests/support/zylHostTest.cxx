#include "zylHostTest.h"

#include <cstdlib>

#include <vtk_glew.h>

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
