/**
 * @class zylHostFrame
 * @brief The hand-over between a host's context and the toolkit's window, step by step.
 *
 * A frame adopts the context that is current (once), puts the host's state aside, copies the host's
 * picture in and the finished one out, and puts the state back:
 *
 *     if (frame.Adopt() == zylHostFrame::Adopted && frame.Begin())
 *     {
 *       frame.CopyIn(sourceFBO);
 *       frame.PushState();
 *       ...                      // render
 *       frame.CopyOut();
 *       frame.PopState();
 *       frame.End();
 *     }
 *
 * Private to the library.
 */
#ifndef zylHostFrame_h
#define zylHostFrame_h

#include "zylExport.h"

#include <string>

#include <vtkWeakPointer.h>

class vtkRenderWindow;
class zylHostRenderWindow;

class ZYL_PRIVATE zylHostFrame
{
public:
  enum Adoption
  {
    Adopted,
    NoWindow,
    NoContext,
    TooOld,    // OpenGL below 3.2
    Obstructed // by the host's state; reported, once until it works again
  };

  zylHostFrame();
  ~zylHostFrame();
  zylHostFrame(const zylHostFrame&) = delete;
  zylHostFrame& operator=(const zylHostFrame&) = delete;

  ///@{
  /// The toolkit's window; it goes with the session. Null unless it draws in a host's context.
  void SetWindow(vtkRenderWindow* window);
  zylHostRenderWindow* GetWindow() const;
  ///@}

  /// Take the current context as the one to draw in, unless it is already.
  Adoption Adopt();

  /// Put the host's state aside. The adopted context is current.
  void Begin();

  /// Whether a frame has begun.
  bool IsOpen() const;

  /// The host's color and depth become the background. `source` names the framebuffer object, 0 is
  /// the window, a negative value the one that is bound for reading; one that is not the host's is
  /// reported once and the bound one taken.
  void CopyIn(int source);

  /// The picture goes into the framebuffer that the host has bound for drawing.
  void CopyOut();

  ///@{
  /// A level on the stack of the toolkit's state, which ends the process when popped without.
  void PushState();
  void PopState();
  bool IsStatePushed() const { return this->StatePushed; }
  ///@}

  /// Put the host's state back.
  void End();

private:
  bool IsObstructed();

  vtkWeakPointer<zylHostRenderWindow> Window;
  bool ContextInitialized = false;
  bool StatePushed = false;
  int BadSource = -1; // reported already
  std::string Obstacle;
};

#endif
