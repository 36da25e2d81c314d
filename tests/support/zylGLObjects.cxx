#include "zylGLObjects.h"

#include <sstream>

#include <vtk_glew.h>

namespace {
// A kind of object: how to make one that exists, and whether a name is one.
struct Kind
{
  const char* Name;
  void (*Make)(GLuint* name);
  GLboolean (*Exists)(GLuint name);
};

int Bound(GLenum binding)
{
  GLint name = 0;
  glGetIntegerv(binding, &name);
  return name;
}

// Objects but programs and shaders exist from their first binding on.
const Kind Kinds[] = {
  { "buffer",
    [](GLuint* name) {
      const int bound = Bound(GL_COPY_WRITE_BUFFER);
      glGenBuffers(1, name);
      glBindBuffer(GL_COPY_WRITE_BUFFER, *name);
      glBufferData(GL_COPY_WRITE_BUFFER, sizeof(GLuint), name, GL_STATIC_DRAW);
      glBindBuffer(GL_COPY_WRITE_BUFFER, bound);
    },
    [](GLuint name) {
      if (!glIsBuffer(name))
      {
        return static_cast<GLboolean>(GL_FALSE);
      }
      const int bound = Bound(GL_COPY_READ_BUFFER);
      GLint size = 0;
      GLuint content = name;
      glBindBuffer(GL_COPY_READ_BUFFER, name);
      glGetBufferParameteriv(GL_COPY_READ_BUFFER, GL_BUFFER_SIZE, &size);
      if (size == sizeof(content))
      {
        glGetBufferSubData(GL_COPY_READ_BUFFER, 0, sizeof(content), &content);
      }
      glBindBuffer(GL_COPY_READ_BUFFER, bound);
      return static_cast<GLboolean>(content == name);
    } },
  { "vertex array",
    [](GLuint* name) {
      const int bound = Bound(GL_VERTEX_ARRAY_BINDING);
      glGenVertexArrays(1, name);
      glBindVertexArray(*name);
      glBindVertexArray(bound);
    },
    [](GLuint name) { return glIsVertexArray(name); } },
  { "texture",
    [](GLuint* name) {
      const int bound = Bound(GL_TEXTURE_BINDING_2D);
      glGenTextures(1, name);
      glBindTexture(GL_TEXTURE_2D, *name);
      glBindTexture(GL_TEXTURE_2D, bound);
    },
    [](GLuint name) { return glIsTexture(name); } },
  { "renderbuffer",
    [](GLuint* name) {
      const int bound = Bound(GL_RENDERBUFFER_BINDING);
      glGenRenderbuffers(1, name);
      glBindRenderbuffer(GL_RENDERBUFFER, *name);
      glBindRenderbuffer(GL_RENDERBUFFER, bound);
    },
    [](GLuint name) { return glIsRenderbuffer(name); } },
  { "framebuffer",
    [](GLuint* name) {
      const int bound = Bound(GL_READ_FRAMEBUFFER_BINDING);
      glGenFramebuffers(1, name);
      glBindFramebuffer(GL_READ_FRAMEBUFFER, *name);
      glBindFramebuffer(GL_READ_FRAMEBUFFER, bound);
    },
    [](GLuint name) { return glIsFramebuffer(name); } },
  { "program", [](GLuint* name) { *name = glCreateProgram(); },
    [](GLuint name) { return glIsProgram(name); } },
  { "query",
    [](GLuint* name) {
      glGenQueries(1, name);
      glBeginQuery(GL_PRIMITIVES_GENERATED, *name);
      glEndQuery(GL_PRIMITIVES_GENERATED);
    },
    [](GLuint name) { return glIsQuery(name); } },
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylGLObjects::zylGLObjects(int count)
{
  for (const Kind& kind : Kinds)
  {
    this->Names.emplace_back(count);
    for (GLuint& name : this->Names.back())
    {
      kind.Make(&name);
    }
  }
}

//--------------------------------------------------------------------------------------------------
zylGLObjects::~zylGLObjects() = default;

//--------------------------------------------------------------------------------------------------
std::string zylGLObjects::Missing() const
{
  std::ostringstream text;
  auto names = this->Names.begin();
  for (const Kind& kind : Kinds)
  {
    for (const GLuint name : *names)
    {
      if (!kind.Exists(name))
      {
        text << kind.Name << ' ' << name << '\n';
      }
    }
    ++names;
  }
  return text.str();
}

//--------------------------------------------------------------------------------------------------
unsigned int zylGLObjects::Name(const std::string& kind, std::size_t index) const
{
  auto names = this->Names.begin();
  for (const Kind& one : Kinds)
  {
    if (one.Name == kind)
    {
      return names->at(index);
    }
    ++names;
  }
  return 0;
}

//--------------------------------------------------------------------------------------------------
int zylGLObjects::Count(unsigned int limit)
{
  GLboolean (*const exists[])(GLuint) = { [](GLuint name) { return glIsBuffer(name); },
    [](GLuint name) { return glIsShader(name); } };
  int count = 0;
  for (GLuint name = 1; name < limit; ++name)
  {
    for (const Kind& kind : Kinds)
    {
      count += kind.Name != Kinds[0].Name && kind.Exists(name);
    }
    for (const auto& one : exists)
    {
      count += one(name) != GL_FALSE;
    }
  }
  return count;
}
