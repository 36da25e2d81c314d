#include "Host/zylHostMark.h"

#include <chrono>

#include <vtk_glew.h>

//--------------------------------------------------------------------------------------------------
void zylHostMark::Make()
{
  static unsigned long long count = 0;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  this->Content = { ++count, static_cast<unsigned long long>(now) };
  GLint bound = 0;
  glGetIntegerv(GL_COPY_WRITE_BUFFER, &bound);
  glGenBuffers(1, &this->Buffer);
  glBindBuffer(GL_COPY_WRITE_BUFFER, this->Buffer);
  glBufferData(GL_COPY_WRITE_BUFFER, sizeof(this->Content), this->Content.data(), GL_STATIC_READ);
  glBindBuffer(GL_COPY_WRITE_BUFFER, bound);
}

//--------------------------------------------------------------------------------------------------
bool zylHostMark::IsThere() const
{
  if (!this->Buffer || !glIsBuffer(this->Buffer))
  {
    return false;
  }
  std::array<unsigned long long, 2> content{};
  GLint bound = 0;
  GLint size = 0;
  glGetIntegerv(GL_COPY_READ_BUFFER, &bound);
  glBindBuffer(GL_COPY_READ_BUFFER, this->Buffer);
  glGetBufferParameteriv(GL_COPY_READ_BUFFER, GL_BUFFER_SIZE, &size);
  if (size == sizeof(content))
  {
    glGetBufferSubData(GL_COPY_READ_BUFFER, 0, sizeof(content), content.data());
  }
  glBindBuffer(GL_COPY_READ_BUFFER, bound);
  return content == this->Content;
}

//--------------------------------------------------------------------------------------------------
void zylHostMark::Delete()
{
  glDeleteBuffers(1, &this->Buffer);
  this->Buffer = 0;
}
