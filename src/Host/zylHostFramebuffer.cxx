#include "Host/zylHostFramebuffer.h"

#include <vtk_glew.h>

namespace {
int AttachmentValue(GLenum target, GLenum attachment, GLenum name)
{
  GLint value = 0;
  glGetFramebufferAttachmentParameteriv(target, attachment, name, &value);
  return value;
}
} // namespace

//--------------------------------------------------------------------------------------------------
unsigned int zylHostFramebuffer::DepthFormat(unsigned int target)
{
  const GLenum binding =
    target == GL_READ_FRAMEBUFFER ? GL_READ_FRAMEBUFFER_BINDING : GL_DRAW_FRAMEBUFFER_BINDING;
  GLint name = 0;
  glGetIntegerv(binding, &name);
  const GLenum depth = name ? GL_DEPTH_ATTACHMENT : GL_DEPTH;
  const GLenum stencil = name ? GL_DEPTH_ATTACHMENT : GL_STENCIL;
  if (AttachmentValue(target, depth, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE) == GL_NONE)
  {
    return 0;
  }
  const int bits = AttachmentValue(target, depth, GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE);
  const bool real =
    AttachmentValue(target, depth, GL_FRAMEBUFFER_ATTACHMENT_COMPONENT_TYPE) == GL_FLOAT;
  const bool packed =
    AttachmentValue(target, stencil, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE) != GL_NONE &&
    AttachmentValue(target, stencil, GL_FRAMEBUFFER_ATTACHMENT_STENCIL_SIZE) > 0;
  switch (bits)
  {
    case 0:
      return 0;
    case 16:
      return GL_DEPTH_COMPONENT16;
    case 32:
      return !real ? GL_DEPTH_COMPONENT32 : packed ? GL_DEPTH32F_STENCIL8 : GL_DEPTH_COMPONENT32F;
    default:
      return packed ? GL_DEPTH24_STENCIL8 : GL_DEPTH_COMPONENT24;
  }
}

//--------------------------------------------------------------------------------------------------
zylHostFramebuffer::SingleDrawBuffer::SingleDrawBuffer()
{
  GLint count = 0;
  glGetIntegerv(GL_MAX_DRAW_BUFFERS, &count);
  int used = 0;
  GLenum first = GL_NONE;
  for (GLint i = 0; i < count; ++i)
  {
    GLint buffer = GL_NONE;
    glGetIntegerv(GL_DRAW_BUFFER0 + i, &buffer);
    this->Saved.push_back(buffer);
    used += buffer != GL_NONE;
    first = first == GL_NONE ? buffer : first;
  }
  if (used < 2)
  {
    this->Saved.clear();
    return;
  }
  glDrawBuffer(first);
}

//--------------------------------------------------------------------------------------------------
zylHostFramebuffer::SingleDrawBuffer::~SingleDrawBuffer()
{
  if (!this->Saved.empty())
  {
    glDrawBuffers(static_cast<GLsizei>(this->Saved.size()), this->Saved.data());
  }
}
