#include "zylBench.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <sys/resource.h>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

namespace {
//--------------------------------------------------------------------------------------------------
double Seconds(const timeval& time)
{
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

//--------------------------------------------------------------------------------------------------
rusage Usage()
{
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage;
}

//--------------------------------------------------------------------------------------------------
void Need(bool condition, const char* what)
{
  if (!condition)
  {
    std::fprintf(stderr, "no %s\n", what);
    std::exit(1);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylBenchClock::zylBenchClock()
  : Start(std::chrono::steady_clock::now())
{
  const rusage usage = Usage();
  this->User = Seconds(usage.ru_utime);
  this->System = Seconds(usage.ru_stime);
}

//--------------------------------------------------------------------------------------------------
void zylBenchClock::Print(const char* stage, const std::string& extra) const
{
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - this->Start;
  const rusage usage = Usage();
  std::printf(
    "{\"stage\": \"%s\", \"wall\": %.5f, \"user\": %.5f, \"sys\": %.5f, \"rss_mb\": %.1f%s%s}\n",
    stage, wall.count(), Seconds(usage.ru_utime) - this->User,
    Seconds(usage.ru_stime) - this->System, static_cast<double>(usage.ru_maxrss) * 1024 / 1e6,
    extra.empty() ? "" : ", ", extra.c_str());
  std::fflush(stdout);
}

//--------------------------------------------------------------------------------------------------
zylBenchHost::zylBenchHost(int width, int height)
  : Width(width)
  , Height(height)
{
  this->Display =
    eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  Need(this->Display && eglInitialize(this->Display, nullptr, nullptr) == EGL_TRUE, "EGL display");
  Need(eglBindAPI(EGL_OPENGL_API) == EGL_TRUE, "OpenGL from EGL");
  const EGLint wanted[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
    EGL_NONE };
  EGLConfig config = nullptr;
  EGLint found = 0;
  eglChooseConfig(this->Display, wanted, &config, 1, &found);
  const EGLint version[] = { EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2,
    EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE };
  this->Context = eglCreateContext(this->Display, config, EGL_NO_CONTEXT, version);
  Need(this->Context &&
      eglMakeCurrent(this->Display, EGL_NO_SURFACE, EGL_NO_SURFACE, this->Context) == EGL_TRUE,
    "OpenGL 3.2 context");
  this->Framebuffer = this->MakeFramebuffer();
}

//--------------------------------------------------------------------------------------------------
zylBenchHost::~zylBenchHost()
{
  eglMakeCurrent(this->Display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  eglDestroyContext(this->Display, this->Context);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylBenchHost::MakeFramebuffer()
{
  unsigned int framebuffer = 0;
  unsigned int buffers[2];
  glGenRenderbuffers(2, buffers);
  glGenFramebuffers(1, &framebuffer);
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
  glBindRenderbuffer(GL_RENDERBUFFER, buffers[0]);
  glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, this->Width, this->Height);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, buffers[0]);
  glBindRenderbuffer(GL_RENDERBUFFER, buffers[1]);
  glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, this->Width, this->Height);
  glFramebufferRenderbuffer(
    GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, buffers[1]);
  Need(glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE, "framebuffer");
  return framebuffer;
}

//--------------------------------------------------------------------------------------------------
void zylBenchHost::Clear()
{
  glBindFramebuffer(GL_FRAMEBUFFER, this->Framebuffer);
  glViewport(0, 0, this->Width, this->Height);
  glClearColor(0.2f, 0.3f, 0.4f, 1.0f);
  glClearDepth(1.0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

//--------------------------------------------------------------------------------------------------
void zylBenchHost::Finish()
{
  glFinish();
}

//--------------------------------------------------------------------------------------------------
void zylBenchHost::Copy(unsigned int from, unsigned int to)
{
  GLint read = 0;
  GLint draw = 0;
  glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &draw);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
  for (const GLbitfield buffer : { GL_COLOR_BUFFER_BIT, GL_DEPTH_BUFFER_BIT })
  {
    glBlitFramebuffer(
      0, 0, this->Width, this->Height, 0, 0, this->Width, this->Height, buffer, GL_NEAREST);
  }
  glBindFramebuffer(GL_READ_FRAMEBUFFER, read);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw);
}

//--------------------------------------------------------------------------------------------------
void zylBenchHost::CopyOut()
{
  if (!this->Second)
  {
    this->Second = this->MakeFramebuffer();
  }
  this->Copy(this->Framebuffer, this->Second);
}

//--------------------------------------------------------------------------------------------------
void zylBenchHost::CopyBack()
{
  this->Copy(this->Second, this->Framebuffer);
}

//--------------------------------------------------------------------------------------------------
bool zylBenchHost::WritePicture(const char* fileName)
{
  std::vector<unsigned char> row(3 * static_cast<std::size_t>(this->Width));
  std::FILE* file = std::fopen(fileName, "wb");
  if (!file)
  {
    return false;
  }
  std::fprintf(file, "P6\n%d %d\n255\n", this->Width, this->Height);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Framebuffer);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  for (int y = this->Height - 1; y >= 0; --y)
  {
    glReadPixels(0, y, this->Width, 1, GL_RGB, GL_UNSIGNED_BYTE, row.data());
    std::fwrite(row.data(), 1, row.size(), file);
  }
  return std::fclose(file) == 0;
}
