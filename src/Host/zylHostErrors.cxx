#include "Host/zylHostErrors.h"

#include <limits>

#include <vtk_glew.h>

namespace {
constexpr int MostErrors = 16; // a lost context repeats its error for ever

int Bound(GLenum binding)
{
  GLint name = 0;
  glGetIntegerv(binding, &name);
  return name;
}

// There is no call that sets an error, so make the mistake that leads to it.
void Raise(GLenum error)
{
  switch (error)
  {
    case GL_INVALID_ENUM:
      glEnable(GL_NONE);
      break;
    case GL_INVALID_VALUE:
      glLineWidth(0.0f);
      break;
    case GL_INVALID_OPERATION: {
      const int buffer = Bound(GL_COPY_READ_BUFFER);
      glBindBuffer(GL_COPY_READ_BUFFER, 0);
      glUnmapBuffer(GL_COPY_READ_BUFFER);
      glBindBuffer(GL_COPY_READ_BUFFER, buffer);
      break;
    }
    case GL_INVALID_FRAMEBUFFER_OPERATION: {
      const int bound = Bound(GL_DRAW_FRAMEBUFFER_BINDING);
      GLuint empty = 0;
      glGenFramebuffers(1, &empty);
      glBindFramebuffer(GL_DRAW_FRAMEBUFFER, empty);
      glClear(GL_COLOR_BUFFER_BIT);
      glBindFramebuffer(GL_DRAW_FRAMEBUFFER, bound);
      glDeleteFramebuffers(1, &empty);
      break;
    }
    case GL_OUT_OF_MEMORY: {
      const int bound = Bound(GL_COPY_WRITE_BUFFER);
      GLuint buffer = 0;
      glGenBuffers(1, &buffer);
      glBindBuffer(GL_COPY_WRITE_BUFFER, buffer);
      glBufferData(
        GL_COPY_WRITE_BUFFER, std::numeric_limits<GLsizeiptr>::max(), nullptr, GL_STATIC_DRAW);
      glBindBuffer(GL_COPY_WRITE_BUFFER, bound);
      glDeleteBuffers(1, &buffer);
      break;
    }
    default: // of the stacks of compatibility contexts
      break;
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylHostErrors::zylHostErrors()
{
  for (int i = 0; i < MostErrors; ++i)
  {
    const GLenum error = glGetError();
    if (error == GL_NO_ERROR)
    {
      break;
    }
    this->Pending.push_back(error);
  }
}

//--------------------------------------------------------------------------------------------------
zylHostErrors::~zylHostErrors()
{
  zylHostErrors::Clear();
  for (const unsigned int error : this->Pending)
  {
    Raise(error);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostErrors::Clear()
{
  for (int i = 0; i < MostErrors && glGetError() != GL_NO_ERROR; ++i)
  {
  }
}
