/**
 * @class zylHostView
 * @brief The machinery below zylView: the server-manager view and its window in a host's context.
 *
 * Owns the view proxy, knows its renderer and window, and hands the host's context over and back
 * around a render or a selection. What the host has to be told about the order of its calls is
 * zylView's business:
 *
 *     if (host.IsUsable("Render()") && host.Adopt() && host.BeginRender(sourceFBO))
 *     {
 *       host.GetProxy()->StillRender();
 *       host.EndRender();
 *     }
 *
 * Private to the library.
 */
#ifndef zylHostView_h
#define zylHostView_h

#include "Host/zylHostFrame.h"
#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

class vtkCamera;
class vtkCommand;
class vtkObject;
class vtkOpenGLRenderWindow;
class vtkRenderer;
class vtkSMRenderViewProxy;

class ZYL_PRIVATE zylHostView
{
public:
  /// Made in the current session; without one, which is reported, there is no proxy. `owner`
  /// (borrowed) speaks in errors; `startRender` (shared) observes the start of every still render.
  zylHostView(vtkObject* owner, vtkCommand* startRender);
  /// OpenGL objects go in the context that they belong to, or with it.
  ~zylHostView();
  zylHostView(const zylHostView&) = delete;
  zylHostView& operator=(const zylHostView&) = delete;

  /// A mark for debuggers of OpenGL among the calls to the current context.
  static void Mark(const std::string& text);

  /// Borrowed; null without a session.
  vtkSMRenderViewProxy* GetProxy() const;

  ///@{
  /// Borrowed; they go with the session. Without a renderer there is no camera, which is reported.
  vtkRenderer* GetRenderer() const;
  vtkOpenGLRenderWindow* GetWindow() const;
  vtkCamera* GetCamera() const;
  ///@}

  /// Whether the view's session lives; a line in the log says why not.
  bool IsUsable(const char* operation) const;

  /// Send changed properties of the proxy to the server.
  void Push();

  /// Take the current context as the one to draw in; reported when that cannot be.
  bool Adopt();

  ///@{
  /// Put the host's state aside and back; a render also copies the picture of the framebuffer
  /// object `source` in, and the finished one out. False when nothing was done. An end without a
  /// beginning gets one. Where nothing was drawn in between, nothing is copied out. A selection
  /// between drawing and end of a render has the picture drawn again.
  bool BeginRender(int source);
  bool EndRender();
  bool BeginSelection();
  bool EndSelection();
  ///@}

  /// Inside a frame: the host's color and depth in this framebuffer object become the background.
  void CopyIn(int source) { this->Frame.CopyIn(source); }

  ///@{
  /// For zylHostSelector: what the pixels were drawn with that ParaView keeps of the last
  /// selection; empty when they are not to be used again.
  const std::vector<double>& GetSelectionLook() const { return this->SelectionLook; }
  void SetSelectionLook(const std::vector<double>& look) { this->SelectionLook = look; }
  ///@}

  /// Whether the state is on the toolkit's stack, so that a render may change it.
  bool IsStatePushed() const { return this->Frame.IsStatePushed(); }

  /// Whether there are pixels to draw.
  bool HasArea() const;

  /// Whether ParaView may render of its own accord. Between two pictures of the same this is all
  /// that changes on the proxy; then nothing else is sent, and the view is not updated for it.
  void SetRendering(bool on);

  ///@{
  /// See zylView. Bounds may be null: all that is visible.
  void ResetCamera(const double* bounds);
  void SetBackground(double r, double g, double b);
  void SetSize(int w, int h);
  void GetSize(int size[2]) const;
  bool SetViewport(int x, int y, int w, int h); ///< false without area
  void SetOffScreenRendering(bool on);
  void SetOrientationAxis(bool on);
  ///@}

private:
  bool Begin();
  bool Find();
  void OnPropertyModified();
  void ForgetSelection();

  vtkObject* Owner;
  vtkSmartPointer<vtkCommand> StartRender;
  vtkSmartPointer<vtkSMRenderViewProxy> Proxy;
  vtkWeakPointer<vtkRenderer> Renderer;
  vtkWeakPointer<vtkOpenGLRenderWindow> Window;
  zylHostFrame Frame;
  std::vector<double> SelectionLook;
  int Source = 0;                // of the render that has begun last
  bool InterruptsRender = false; // the selection that has begun: of a picture that is drawn already
  unsigned long Observer = 0;
  bool HasChanges = true; // on the proxy, which the server may not have
  bool IsSwitching = false;
};

#endif
