/// @file zylViewHost.h
/// Who owns the OpenGL context: a window, or a framebuffer without any window.
#ifndef zylViewHost_h
#define zylViewHost_h

#include <memory>
#include <string>

class zylViewScene;
struct zylViewOptions;

class zylViewHost
{
public:
  virtual ~zylViewHost() = default;
  /// Make the host's context current for the calling thread.
  virtual void MakeCurrent() = 0;
  virtual int GetWidth() const = 0; ///< of the framebuffer, pixels
  virtual int GetHeight() const = 0;
  virtual int GetPixelRatio() const = 0; ///< pixels per pixel of a usual screen, each way
  /// Called while the library works, see zylViewProgress: shows user and system that the program
  /// lives. False when the user wants to leave.
  virtual bool KeepAlive(const std::string& /*work*/, double /*fraction*/) { return true; }
  /// Show `scene` until the user quits, or write the picture. Throws zylViewError.
  virtual void Run(zylViewScene& scene) = 0;
};

/// A GLFW window. Throws zylViewError when there is no display.
std::unique_ptr<zylViewHost> zylNewWindowHost(const zylViewOptions& options);

/// A framebuffer object in an EGL context, which needs no display; Run() writes a PNG.
std::unique_ptr<zylViewHost> zylNewOffscreenHost(const zylViewOptions& options);

#endif
