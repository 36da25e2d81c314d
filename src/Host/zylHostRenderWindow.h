/**
 * @class zylHostRenderWindow
 * @brief A render window that draws in an OpenGL context of the host.
 *
 * Layer: view, below zylView. It adopts the context that is current, GLX or EGL, without owning or
 * swapping it; keeps the host's OpenGL state apart from the renderer's; gives its framebuffers the
 * host's depth format, so that colors and depths can be copied both ways; and never touches another
 * context than the one it adopted: what is to be released while that one is not current waits for
 * the next frame in WhenCurrent(). What cannot wait is released between PushContext() and
 * PopContext(), which make the adopted context current; where they cannot, it is forgotten and goes
 * with the context.
 *
 * Private to the library. zylHostWindowFactory has it made by the view proxy.
 */
#ifndef zylHostRenderWindow_h
#define zylHostRenderWindow_h

#include "Host/zylHostContext.h"
#include "Host/zylHostGLState.h"
#include "Host/zylHostMark.h"
#include "zylExport.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkWeakPointer.h>

class vtkOpenGLFramebufferObject;
class vtkTextureObject;
class vtkTextureUnitManager;

class ZYL_PRIVATE zylHostRenderWindow : public vtkGenericOpenGLRenderWindow
{
public:
  static zylHostRenderWindow* New();
  vtkTypeMacro(zylHostRenderWindow, vtkGenericOpenGLRenderWindow);

  ///@{
  /// Take the current context as the one to draw in, forgetting what was made in another. Several
  /// steps, so that the caller can check the version between them: BeginAdoption() is false without
  /// a current context; the window then initializes itself and knows its version.
  bool BeginAdoption();
  void FinishAdoption();
  ///@}

  /// Whether the current context is new enough for frames.
  bool SupportsFrames() const;

  /// Whether the adopted context is current and still holds what was made in it.
  bool IsAdopted();

  /// Whether there is an adopted context and it is not current.
  bool IsElsewhere();

  /// What stands in the way of a frame in the current context, which is new enough for one: a state
  /// of the host that cannot be put aside, or a size that OpenGL does not know. Empty when nothing.
  std::string FindObstacle() const;

  ///@{
  /// The internal format of the depth buffers that are rendered to; 0 when the toolkit has chosen.
  unsigned int GetDepthFormat() const { return this->MultiSamples > 1 ? 0 : this->DepthFormat; }
  void AllocateDepth(vtkTextureObject* depth, int width, int height);
  ///@}

  ///@{
  /// Between these two the host's state is put aside and the OpenGL state is neutral. They nest.
  /// The adopted context must be current.
  void BeginFrame();
  void EndFrame();
  bool InFrame() const { return !this->Frames.empty(); }
  ///@}

  ///@{
  /// Inside a frame: copy color and depth from the framebuffer bound for reading into the one that
  /// is rendered to, or the finished picture into the one bound for drawing. What cannot be copied
  /// is reported, once until it works again.
  void CopyFromHost();
  void CopyToHost();
  ///@}

  ///@{
  /// Whether there is a finished picture. A selection draws over it and forgets it: nothing is
  /// copied out then.
  bool HasPicture() const;
  void ForgetPicture();
  ///@}

  /// Whether the window has pixels.
  bool HasArea() const { return this->Size[0] > 0 && this->Size[1] > 0; }

  /// Whether a framebuffer of this name is the host's: it exists and no window of the library made
  /// it. The adopted context must be current.
  bool IsHostFramebuffer(unsigned int name) const;

  /// A framebuffer (not kept alive) that a render pass has made in this window.
  void NotePassFramebuffer(vtkOpenGLFramebufferObject* framebuffer);

  void Render() override;
  bool IsCurrent() override;
  int SupportsOpenGL() override { return 1; }
  const char* ReportCapabilities() override;

  /// Run `work`, which makes or drops what this window draws, with the adopted context current:
  /// now, or at the beginning of the next frame. It runs at the latest when the window gives up its
  /// resources. Before anything was adopted there is nothing to wait for.
  void WhenCurrent(std::function<void()> work);

  /// Have all windows give up their resources, each in its context or not at all.
  static void ReleaseAll();

  void ReleaseGraphicsResources(vtkWindow* window) override;

  ///@{
  /// Frame the release of graphics resources outside a frame.
  void PushContext() override;
  void PopContext() override;
  ///@}

  /// The texture unit is about to be used.
  void TouchTextureUnit(int unit);

protected:
  zylHostRenderWindow();
  ~zylHostRenderWindow() override;

  void OpenGLInit() override;
  void OpenGLInitContext() override;

private:
  zylHostRenderWindow(const zylHostRenderWindow&) = delete;
  void operator=(const zylHostRenderWindow&) = delete;

  bool HasFramebuffer(unsigned int name) const;

  ///@{
  /// The framebuffer for picking depths, where the toolkit's window has one.
  template <class Window>
  static auto FindDepthFramebuffer(const Window* window, int) -> decltype(window->DepthFramebuffer)
  {
    return window->DepthFramebuffer;
  }
  template <class Window>
  static vtkOpenGLFramebufferObject* FindDepthFramebuffer(const Window*, long)
  {
    return nullptr;
  }
  ///@}

  void MatchFramebuffers(unsigned int depthFormat);
  void Populate(vtkOpenGLFramebufferObject* framebuffer, int colors);
  bool IsReady();
  void RunPending();
  void Report(std::string& last, const std::string& problem);

  zylHostContext Adopted;
  bool Lost = false; // the adopted context is gone although its handle may look alive
  std::vector<std::unique_ptr<zylHostGLState>> Frames;
  std::vector<std::function<void()>> Pending;
  std::vector<vtkWeakPointer<vtkOpenGLFramebufferObject>> PassFramebuffers;
  zylHostMark Mark;         // in the adopted context
  zylHostContext Suspended; // current before PushContext()
  int PushDepth = 0;
  bool PushedFrame = false;
  int PictureSize[2] = { 0, 0 }; // of the last picture; 0 without one
  unsigned int DepthFormat = 0;  // of our framebuffers; 0 when not made yet
  std::string CopyInProblem;
  std::string CopyOutProblem;
  std::string CapabilityReport;
};

/// While it lives, OpenGL objects that are dropped are deleted in the adopted context or not at
/// all.
class ZYL_PRIVATE zylHostResourceScope
{
public:
  explicit zylHostResourceScope(vtkOpenGLRenderWindow* window);
  ~zylHostResourceScope();
  zylHostResourceScope(const zylHostResourceScope&) = delete;
  zylHostResourceScope& operator=(const zylHostResourceScope&) = delete;

private:
  vtkWeakPointer<vtkOpenGLRenderWindow> Window;
};

#endif
