/// @file zylViewInteraction.h
/// Moves the camera as the mouse says, and tells clicks from drags. Knows pixels and the camera, no
/// window system: a host with another toolkit can use it as it is.
#ifndef zylViewInteraction_h
#define zylViewInteraction_h

class zylViewCamera;

class zylViewInteraction
{
public:
  enum class Mode
  {
    None,
    Orbit,
    Pan,
    Zoom,
    Rectangle
  };

  enum class Gesture
  {
    None, ///< a drag of the camera, or nothing
    Click,
    DoubleClick,
    Rectangle
  };

  /// `camera` is borrowed.
  explicit zylViewInteraction(zylViewCamera& camera)
    : Camera(camera)
  {
  }

  void SetSize(int width, int height); ///< of the framebuffer, pixels

  /// Positions in framebuffer pixels from the top left corner.
  void Press(Mode mode, double x, double y);
  /// Returns whether the camera or the rectangle has changed.
  bool Move(double x, double y);
  /// What the user has meant since the press, which may have been none of this object's; `time` in
  /// seconds.
  Gesture Release(double x, double y, double time);
  bool IsPressed() const { return this->Active != Mode::None; }
  /// Two opposite corners of the rectangle that is, or was last, dragged; null while none is.
  const double* GetRectangle() const;
  /// Magnify by `factor` so that what is under (x, y) stays there.
  void ZoomAt(double x, double y, double factor);

private:
  void Orbit(double dx, double dy);
  void Pan(double dx, double dy);

  zylViewCamera& Camera;
  int Width = 1;
  int Height = 1;
  Mode Active = Mode::None;
  bool Dragging = false;                      ///< it has moved since the press
  double Corners[4] = { 0.0, 0.0, 0.0, 0.0 }; ///< of the press, and where the mouse is
  double Clicked[3] = { 0.0, 0.0, -1.0 };     ///< the last time: place and time
};

#endif
