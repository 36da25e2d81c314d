#include "zylTestHost.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtk_glew.h>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/glx.h>

namespace {
class GlxHost : public zylTestHost
{
public:
  bool Open(int width, int height, bool core)
  {
    static ::Display* connection = XOpenDisplay(nullptr); // one for all, kept to the end
    this->Connection = connection;
    if (!this->Connection)
    {
      return false;
    }
    const int wanted[] = { GLX_DOUBLEBUFFER, True, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8,
      GLX_BLUE_SIZE, 8, GLX_DEPTH_SIZE, 24, GLX_STENCIL_SIZE, 8, None };
    int count = 0;
    GLXFBConfig* configs =
      glXChooseFBConfig(this->Connection, DefaultScreen(this->Connection), wanted, &count);
    if (!configs || count == 0)
    {
      return false;
    }
    GLXFBConfig config = configs[0];
    XFree(configs);
    XVisualInfo* visual = glXGetVisualFromFBConfig(this->Connection, config);
    const ::Window root = RootWindow(this->Connection, visual->screen);
    XSetWindowAttributes attributes;
    attributes.colormap = XCreateColormap(this->Connection, root, visual->visual, AllocNone);
    attributes.border_pixel = 0;
    this->Drawable = XCreateWindow(this->Connection, root, 0, 0, width, height, 0, visual->depth,
      InputOutput, visual->visual, CWColormap | CWBorderPixel, &attributes);
    XFree(visual);
    auto create = reinterpret_cast<PFNGLXCREATECONTEXTATTRIBSARBPROC>(
      glXGetProcAddress(reinterpret_cast<const GLubyte*>("glXCreateContextAttribsARB")));
    const int version[] = { GLX_CONTEXT_MAJOR_VERSION_ARB, 3, GLX_CONTEXT_MINOR_VERSION_ARB, 2,
      GLX_CONTEXT_PROFILE_MASK_ARB, GLX_CONTEXT_CORE_PROFILE_BIT_ARB, None };
    const int any[] = { None };
    this->Context = create(this->Connection, config, nullptr, True, core ? version : any);
    this->MakeCurrent();
    return this->IsCurrent() && this->LoadFunctions(width, height);
  }
  ~GlxHost() override
  {
    if (this->Context)
    {
      if (this->IsCurrent())
      {
        this->Release();
      }
      glXDestroyContext(this->Connection, this->Context);
    }
    if (this->Drawable)
    {
      XDestroyWindow(this->Connection, this->Drawable);
      XSync(this->Connection, False);
    }
  }
  void MakeCurrent() override { glXMakeCurrent(this->Connection, this->Drawable, this->Context); }
  void Release() override { glXMakeCurrent(this->Connection, 0, nullptr); }
  bool IsCurrent() override { return this->Context && glXGetCurrentContext() == this->Context; }
  void ResizeWindow(int width, int height) override
  {
    XResizeWindow(this->Connection, this->Drawable, width, height);
    XSync(this->Connection, False);
    glXSwapBuffers(this->Connection, this->Drawable); // takes up the new size
    this->WindowSize[0] = width;
    this->WindowSize[1] = height;
    this->UseWindow();
  }

private:
  ::Display* Connection = nullptr;
  ::Window Drawable = 0;
  GLXContext Context = nullptr;
};

class EglHost : public zylTestHost
{
public:
  bool Open(int width, int height, bool core)
  {
    this->Connection =
      eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!this->Connection || !eglInitialize(this->Connection, nullptr, nullptr))
    {
      return false;
    }
    eglBindAPI(EGL_OPENGL_API);
    const EGLint wanted[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
      EGL_OPENGL_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_DEPTH_SIZE, 24,
      EGL_STENCIL_SIZE, 8, EGL_NONE };
    EGLint count = 0;
    if (!eglChooseConfig(this->Connection, wanted, &this->Config, 1, &count) || count == 0)
    {
      return false;
    }
    const EGLint version[] = { EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2,
      EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE };
    const EGLint any[] = { EGL_NONE };
    this->Context =
      eglCreateContext(this->Connection, this->Config, EGL_NO_CONTEXT, core ? version : any);
    this->MakeSurface(width, height);
    return this->IsCurrent() && this->LoadFunctions(width, height);
  }
  ~EglHost() override
  {
    if (this->Context)
    {
      if (this->IsCurrent())
      {
        this->Release();
      }
      eglDestroySurface(this->Connection, this->Surface);
      eglDestroyContext(this->Connection, this->Context);
    }
  }
  void MakeCurrent() override
  {
    eglMakeCurrent(this->Connection, this->Surface, this->Surface, this->Context);
  }
  void Release() override
  {
    eglMakeCurrent(this->Connection, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  }
  bool IsCurrent() override { return this->Context && eglGetCurrentContext() == this->Context; }
  void ResizeWindow(int width, int height) override
  {
    this->Release();
    eglDestroySurface(this->Connection, this->Surface);
    this->MakeSurface(width, height);
    this->WindowSize[0] = width;
    this->WindowSize[1] = height;
    this->UseWindow();
  }

private:
  void MakeSurface(int width, int height)
  {
    const EGLint size[] = { EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE };
    this->Surface = eglCreatePbufferSurface(this->Connection, this->Config, size);
    this->MakeCurrent();
  }

  EGLDisplay Connection = nullptr;
  EGLConfig Config = nullptr;
  EGLSurface Surface = nullptr;
  EGLContext Context = nullptr;
};

// Puts aside what would spoil reading pixels.
class PlainReading
{
public:
  PlainReading()
    : Scissor(glIsEnabled(GL_SCISSOR_TEST) == GL_TRUE)
    , Srgb(glIsEnabled(GL_FRAMEBUFFER_SRGB) == GL_TRUE)
  {
    glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &this->Buffer);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &this->Draw);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &this->Read);
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &this->Renderbuffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    for (int i = 0; i < 4; ++i)
    {
      glGetIntegerv(Packing[i], &this->Values[i]);
      glPixelStorei(Packing[i], 0);
    }
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_FRAMEBUFFER_SRGB);
  }
  ~PlainReading()
  {
    for (int i = 0; i < 4; ++i)
    {
      glPixelStorei(Packing[i], this->Values[i]);
    }
    glBindBuffer(GL_PIXEL_PACK_BUFFER, this->Buffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, this->Draw);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Read);
    glBindRenderbuffer(GL_RENDERBUFFER, this->Renderbuffer);
    this->Scissor ? glEnable(GL_SCISSOR_TEST) : glDisable(GL_SCISSOR_TEST);
    this->Srgb ? glEnable(GL_FRAMEBUFFER_SRGB) : glDisable(GL_FRAMEBUFFER_SRGB);
  }

private:
  static constexpr GLenum Packing[4] = { GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS,
    GL_PACK_SWAP_BYTES };
  GLint Buffer = 0, Draw = 0, Read = 0, Renderbuffer = 0;
  GLint Values[4] = { 0, 0, 0, 0 };
  bool Scissor, Srgb;
};

template <class Host>
std::unique_ptr<zylTestHost> OpenHost(int width, int height, bool core)
{
  auto host = std::make_unique<Host>();
  if (host->Open(width, height, core))
  {
    return host;
  }
  return nullptr;
}
} // namespace

//--------------------------------------------------------------------------------------------------
unsigned int zylMakeProgram(const char* vertex, const char* fragment)
{
  const GLuint program = glCreateProgram();
  for (const auto& [type, source] :
    { std::make_pair(GL_VERTEX_SHADER, vertex), std::make_pair(GL_FRAGMENT_SHADER, fragment) })
  {
    const GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    glAttachShader(program, shader);
    glDeleteShader(shader);
  }
  glBindAttribLocation(program, 0, "p");
  glLinkProgram(program);
  return program;
}

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylTestHost> zylTestHost::New(Platform platform, int width, int height, bool core)
{
  return platform == Glx ? OpenHost<GlxHost>(width, height, core)
                         : OpenHost<EglHost>(width, height, core);
}

//--------------------------------------------------------------------------------------------------
zylTestHost::Platform zylTestHost::DefaultPlatform()
{
  const char* name = std::getenv("ZYL_TEST_PLATFORM");
  return name && std::strcmp(name, "EGL") == 0 ? Egl : Glx;
}

//--------------------------------------------------------------------------------------------------
zylTestHost::~zylTestHost() = default;

//--------------------------------------------------------------------------------------------------
bool zylTestHost::LoadFunctions(int width, int height)
{
  glewExperimental = GL_TRUE;
  const GLenum result = glewInit();
  while (glGetError() != GL_NO_ERROR)
  {
  }
  if (result != GLEW_OK && result != GLEW_ERROR_NO_GLX_DISPLAY)
  {
    return false;
  }
  this->Width = this->WindowSize[0] = width;
  this->Height = this->WindowSize[1] = height;
  this->Program =
    zylMakeProgram("#version 130\nin vec3 p; void main() { gl_Position = vec4(p, 1.0); }",
      "#version 130\nuniform vec3 c; out vec4 o; void main() { o = vec4(c, 1.0); }");
  glGenVertexArrays(1, &this->VertexArray);
  glGenBuffers(1, &this->VertexBuffer);
  glGenRenderbuffers(2, this->Copies);
  glBindVertexArray(this->VertexArray);
  glBindBuffer(GL_ARRAY_BUFFER, this->VertexBuffer);
  glBufferData(GL_ARRAY_BUFFER, 12 * sizeof(float), nullptr, GL_STREAM_DRAW);
  glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
  glEnableVertexAttribArray(0);
  glBindVertexArray(0);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glEnable(GL_DEPTH_TEST);
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::UseFramebuffer(int width, int height, const FramebufferOptions& options)
{
  this->DeleteFramebuffer();
  this->Options = options;
  this->Width = width;
  this->Height = height;
  glGenFramebuffers(1, &this->Framebuffer);
  glBindFramebuffer(GL_FRAMEBUFFER, this->Framebuffer);
  const GLenum points[5] = { GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2,
    GL_COLOR_ATTACHMENT3, GL_DEPTH_ATTACHMENT };
  glGenRenderbuffers(5, this->Attachments);
  for (int i = 0; i < 5; ++i)
  {
    const unsigned int format = i < options.ColorBuffers ? options.ColorFormat
      : i == 4                                           ? options.DepthFormat
                                                         : 0;
    if (format)
    {
      glBindRenderbuffer(GL_RENDERBUFFER, this->Attachments[i]);
      glRenderbufferStorageMultisample(GL_RENDERBUFFER, options.Samples, format, width, height);
      glFramebufferRenderbuffer(GL_FRAMEBUFFER, points[i], GL_RENDERBUFFER, this->Attachments[i]);
    }
  }
  glBindRenderbuffer(GL_RENDERBUFFER, 0);
  glDrawBuffers(options.ColorBuffers, points);
  glViewport(0, 0, width, height);
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::UseWindow()
{
  this->DeleteFramebuffer();
  this->Width = this->WindowSize[0];
  this->Height = this->WindowSize[1];
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  glViewport(0, 0, this->Width, this->Height);
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::DeleteFramebuffer()
{
  if (this->Framebuffer)
  {
    glDeleteFramebuffers(1, &this->Framebuffer);
    glDeleteRenderbuffers(5, this->Attachments);
    this->Framebuffer = 0;
    this->Options = FramebufferOptions();
  }
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::Clear(float red, float green, float blue, double depth)
{
  GLfloat color[4];
  GLdouble oldDepth = 0.0;
  glGetFloatv(GL_COLOR_CLEAR_VALUE, color);
  glGetDoublev(GL_DEPTH_CLEAR_VALUE, &oldDepth);
  glClearColor(red, green, blue, 1.0f);
  glClearDepth(depth);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  glClearColor(color[0], color[1], color[2], color[3]);
  glClearDepth(oldDepth);
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::DrawQuad(const Box& box, float depth, const Color& color)
{
  const float z = 2.0f * depth - 1.0f;
  const float corners[12] = { box[0], box[1], z, box[2], box[1], z, box[0], box[3], z, box[2],
    box[3], z };
  GLint program = 0;
  GLint array = 0;
  GLint buffer = 0;
  glGetIntegerv(GL_CURRENT_PROGRAM, &program);
  glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &array);
  glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &buffer);
  glUseProgram(this->Program);
  glUniform3fv(glGetUniformLocation(this->Program, "c"), 1, color.data());
  glBindVertexArray(this->VertexArray);
  glBindBuffer(GL_ARRAY_BUFFER, this->VertexBuffer);
  glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(corners), corners);
  glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
  glUseProgram(program);
  glBindVertexArray(array);
  glBindBuffer(GL_ARRAY_BUFFER, buffer);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylTestHost::Resolve(unsigned int mask)
{
  // Leaves a single-sampled copy of the framebuffer bound for reading; the caller deletes it.
  GLuint copy = 0;
  glGenFramebuffers(1, &copy);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, copy);
  const GLenum formats[2] = { this->Options.ColorFormat,
    this->Options.DepthFormat ? this->Options.DepthFormat : GL_DEPTH24_STENCIL8 };
  const GLenum points[2] = { GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT };
  for (int i = 0; i < 2; ++i)
  {
    glBindRenderbuffer(GL_RENDERBUFFER, this->Copies[i]);
    glRenderbufferStorage(GL_RENDERBUFFER, formats[i], this->Width, this->Height);
    glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER, points[i], GL_RENDERBUFFER, this->Copies[i]);
  }
  glBlitFramebuffer(
    0, 0, this->Width, this->Height, 0, 0, this->Width, this->Height, mask, GL_NEAREST);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, copy);
  return copy;
}

//--------------------------------------------------------------------------------------------------
std::array<int, 3> zylTestHost::Pixel(int x, int y, int attachment)
{
  PlainReading plain;
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Framebuffer);
  GLint readBuffer = 0;
  glGetIntegerv(GL_READ_BUFFER, &readBuffer);
  glReadBuffer(this->Framebuffer ? GL_COLOR_ATTACHMENT0 + attachment : GL_BACK);
  GLuint copy = 0;
  if (this->Options.Samples > 0)
  {
    copy = this->Resolve(GL_COLOR_BUFFER_BIT);
  }
  unsigned char pixel[4] = { 0, 0, 0, 0 };
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Framebuffer);
  glReadBuffer(readBuffer);
  glDeleteFramebuffers(1, &copy);
  return { pixel[0], pixel[1], pixel[2] };
}

//--------------------------------------------------------------------------------------------------
float zylTestHost::Depth(int x, int y)
{
  PlainReading plain;
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Framebuffer);
  GLuint copy = 0;
  if (this->Options.Samples > 0)
  {
    copy = this->Resolve(GL_DEPTH_BUFFER_BIT);
  }
  float depth = -1.0f;
  glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
  glDeleteFramebuffers(1, &copy);
  return depth;
}

//--------------------------------------------------------------------------------------------------
bool zylTestHost::PixelIs(int x, int y, int red, int green, int blue, int tolerance)
{
  const std::array<int, 3> pixel = this->Pixel(x, y);
  return std::abs(pixel[0] - red) <= tolerance && std::abs(pixel[1] - green) <= tolerance &&
    std::abs(pixel[2] - blue) <= tolerance;
}

//--------------------------------------------------------------------------------------------------
void zylTestHost::WritePicture(const std::string& fileName)
{
  vtkNew<vtkImageData> image;
  image->SetDimensions(this->Width, this->Height, 1);
  image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
  for (int y = 0; y < this->Height; ++y)
  {
    for (int x = 0; x < this->Width; ++x)
    {
      const std::array<int, 3> pixel = this->Pixel(x, y);
      std::copy(
        pixel.begin(), pixel.end(), static_cast<unsigned char*>(image->GetScalarPointer(x, y, 0)));
    }
  }
  vtkNew<vtkPNGWriter> writer;
  writer->SetFileName(fileName.c_str());
  writer->SetInputData(image);
  writer->Write();
}
