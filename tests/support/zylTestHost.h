/// @file zylTestHost.h
/// A host application as the tests play it: an OpenGL context of its own, GLX or EGL, a
/// framebuffer, and a painted picture with depth.
///
///     auto host = zylTestHost::New(zylTestHost::Egl, 300, 300);
///     host->Clear(0, 0, 1);
///     host->DrawQuad({ -1, -1, 0, 1 }, 0.2f, { 1, 0, 0 }); // left half, near
///     EXPECT_TRUE(host->PixelIs(10, 10, 255, 0, 0));
#ifndef zylTestHost_h
#define zylTestHost_h

#include <array>
#include <memory>
#include <string>

/// A program of the current context; the vertices' attribute "p" is at 0.
unsigned int zylMakeProgram(const char* vertex, const char* fragment);

class zylTestHost
{
public:
  enum Platform
  {
    Glx,
    Egl
  };
  using Color = std::array<float, 3>;
  using Box = std::array<float, 4>; ///< left, bottom, right, top in [-1, 1]

  struct FramebufferOptions
  {
    int Samples = 0;
    unsigned int ColorFormat = 0x8058; ///< GL_RGBA8
    unsigned int DepthFormat = 0x88F0; ///< GL_DEPTH24_STENCIL8; 0: none
    int ColorBuffers = 1;
  };

  /// A host with a current context and a (hidden) window of this size; null where the platform is
  /// not available. `core` asks for a 3.2 core context; otherwise whatever the driver gives by
  /// default.
  static std::unique_ptr<zylTestHost> New(
    Platform platform, int width, int height, bool core = true);

  /// What the environment variable ZYL_TEST_PLATFORM ("GLX" or "EGL") asks for; GLX without it.
  static Platform DefaultPlatform();

  virtual ~zylTestHost();
  zylTestHost(const zylTestHost&) = delete;
  zylTestHost& operator=(const zylTestHost&) = delete;

  virtual void MakeCurrent() = 0;
  virtual void Release() = 0; ///< no context is current
  virtual bool IsCurrent() = 0;
  virtual void ResizeWindow(int width, int height) = 0;

  /// Draw into a framebuffer object, made anew and bound, or into the window again.
  void UseFramebuffer(int width, int height, const FramebufferOptions& options);
  void UseFramebuffer(int width, int height) { this->UseFramebuffer(width, height, {}); }
  void UseWindow();
  unsigned int GetFramebuffer() const { return this->Framebuffer; }

  ///@{
  /// Paint whatever state is set; the state stays as it is.
  void Clear(float red, float green, float blue, double depth = 1.0);
  void DrawQuad(const Box& box, float depth, const Color& color);
  ///@}

  ///@{
  /// The pixel in [0, 255] and its depth in [0, 1], counted from the lower left corner.
  std::array<int, 3> Pixel(int x, int y, int attachment = 0);
  float Depth(int x, int y);
  bool PixelIs(int x, int y, int red, int green, int blue, int tolerance = 2);
  ///@}

  /// Write the picture as a PNG file, to look at. Slow.
  void WritePicture(const std::string& fileName);

protected:
  zylTestHost() = default;
  bool LoadFunctions(int width, int height);

  int Width = 0;
  int Height = 0;
  int WindowSize[2] = { 0, 0 };

private:
  unsigned int Resolve(unsigned int mask);
  void DeleteFramebuffer();

  unsigned int Framebuffer = 0;
  unsigned int Attachments[5] = { 0, 0, 0, 0, 0 }; // four colors and depth
  FramebufferOptions Options;
  unsigned int Program = 0;
  unsigned int VertexArray = 0;
  unsigned int VertexBuffer = 0;
  unsigned int Copies[2] = { 0, 0 }; // renderbuffers of resolved copies
};

#endif
