#include "zylViewBackdrop.h"
#include "zylViewError.h"
#include "zylViewHost.h"
#include "zylViewOptions.h"
#include "zylViewScene.h"

#include <string>
#include <vector>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>

namespace {
constexpr int FramesForStatistics = 10;

[[noreturn]] void NoContext(const char* what)
{
  throw zylViewError(zylViewFailed, std::string("cannot draw without a window: ") + what);
}

//--------------------------------------------------------------------------------------------------
// The first display that starts: Mesa without any window system, a graphics device, the default.
EGLDisplay OpenDisplay()
{
  const char* listed = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  const std::string extensions = listed != nullptr ? listed : "";
  const auto has = [&](const char* name) { return extensions.find(name) != std::string::npos; };
  const auto platformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
    eglGetProcAddress("eglGetPlatformDisplayEXT"));
  const auto queryDevices =
    reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));

  const auto started = [](EGLDisplay display) {
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE;
  };
  EGLDeviceEXT devices[8];
  EGLint count = 0;
  if (platformDisplay != nullptr && has("EGL_EXT_platform_device") && queryDevices != nullptr &&
    queryDevices(8, devices, &count) == EGL_TRUE)
  {
    for (EGLint i = 0; i < count; ++i)
    {
      EGLDisplay display = platformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
      if (started(display))
      {
        return display;
      }
    }
  }
  if (platformDisplay != nullptr && has("EGL_MESA_platform_surfaceless"))
  {
    EGLDisplay display =
      platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (started(display))
    {
      return display;
    }
  }
  EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  if (!started(display))
  {
    NoContext("EGL finds neither a graphics device nor a software renderer");
  }
  return display;
}

//--------------------------------------------------------------------------------------------------
class OffscreenHost : public zylViewHost
{
public:
  explicit OffscreenHost(const zylViewOptions& options)
    : Options(options)
  {
    this->MakeContext();
    this->MakeCurrent();
    this->MakeFramebuffer();
  }

  ~OffscreenHost() override
  {
    // The process ends here; the display is left to it, as drivers keep references of their own.
    eglMakeCurrent(this->Display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(this->Display, this->Context);
  }

  void MakeCurrent() override
  {
    if (eglMakeCurrent(this->Display, this->Surface, this->Surface, this->Context) != EGL_TRUE)
    {
      NoContext("the OpenGL context cannot be made current");
    }
  }

  int GetWidth() const override { return this->Options.Width * this->Options.Samples; }
  int GetHeight() const override { return this->Options.Height * this->Options.Samples; }
  int GetPixelRatio() const override { return this->Options.Samples; }

  void Run(zylViewScene& scene) override
  {
    zylViewBackdrop backdrop;
    const int frames = this->Options.Stats ? 1 + FramesForStatistics : 1;
    for (int frame = 0; frame < frames; ++frame)
    {
      glBindFramebuffer(GL_FRAMEBUFFER, this->Framebuffer);
      backdrop.Paint(this->GetWidth(), this->GetHeight(), this->Options.BackgroundTop,
        this->Options.BackgroundBottom);
      scene.Render(static_cast<int>(this->Framebuffer));
      glFinish();
    }
    this->Write();
  }

private:
  void MakeContext()
  {
    this->Display = OpenDisplay();
    const EGLint wanted[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
      EGL_OPENGL_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_NONE };
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE ||
      eglChooseConfig(this->Display, wanted, &config, 1, &found) != EGL_TRUE || found == 0)
    {
      NoContext("EGL offers no OpenGL");
    }
    const EGLint size[] = { EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE };
    this->Surface = eglCreatePbufferSurface(this->Display, config, size);
    const EGLint version[] = { EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2,
      EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE };
    this->Context = eglCreateContext(this->Display, config, EGL_NO_CONTEXT, version);
    if (this->Context == EGL_NO_CONTEXT)
    {
      NoContext("OpenGL 3.2 is not available");
    }
  }

  // 24-bit depth: only equal depth formats can be copied between framebuffers.
  void MakeFramebuffer()
  {
    unsigned int buffers[2];
    glGenRenderbuffers(2, buffers);
    glGenFramebuffers(1, &this->Framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, this->Framebuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, buffers[0]);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, this->GetWidth(), this->GetHeight());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, buffers[0]);
    glBindRenderbuffer(GL_RENDERBUFFER, buffers[1]);
    glRenderbufferStorage(
      GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, this->GetWidth(), this->GetHeight());
    glFramebufferRenderbuffer(
      GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, buffers[1]);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
      NoContext("there is no framebuffer of this size");
    }
  }

  void Write() const
  {
    const int width = this->GetWidth(), height = this->GetHeight(), n = this->Options.Samples;
    std::vector<unsigned char> pixels(3 * static_cast<std::size_t>(width) * height);
    glBindFramebuffer(GL_FRAMEBUFFER, this->Framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());

    vtkNew<vtkImageData> image;
    image->SetDimensions(this->Options.Width, this->Options.Height, 1);
    image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
    auto out = static_cast<unsigned char*>(image->GetScalarPointer());
    for (int i = 0; i < 3 * this->Options.Width * this->Options.Height; ++i)
    {
      const int x = i / 3 % this->Options.Width, y = i / 3 / this->Options.Width;
      int sum = n * n / 2;
      for (int s = 0; s < n * n; ++s)
      {
        sum +=
          pixels[3 * (static_cast<std::size_t>(y * n + s / n) * width + x * n + s % n) + i % 3];
      }
      out[i] = static_cast<unsigned char>(sum / (n * n));
    }
    vtkNew<vtkPNGWriter> writer;
    writer->SetFileName(this->Options.Output.c_str());
    writer->SetInputData(image);
    writer->Write();
    if (writer->GetErrorCode() != 0)
    {
      throw zylViewError(zylViewFailed, "cannot write '" + this->Options.Output + "'");
    }
  }

  const zylViewOptions& Options;
  EGLDisplay Display = EGL_NO_DISPLAY;
  EGLSurface Surface = EGL_NO_SURFACE;
  EGLContext Context = EGL_NO_CONTEXT;
  unsigned int Framebuffer = 0;
};
} // namespace

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewHost> zylNewOffscreenHost(const zylViewOptions& options)
{
  return std::make_unique<OffscreenHost>(options);
}
