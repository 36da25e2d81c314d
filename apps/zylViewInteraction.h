/// @file zylViewInteraction.h
/// Moves the camera as the mouse says. Knows pixels and the camera, no window system: a host with
/// another toolkit can use it as it is.
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
    Zoom
  };

  /// `camera` is borrowed.
  explicit zylViewInteraction(zylViewCamera& camera)
    : Camera(camera)
  {
  }

  void SetSize(int width, int height); ///< of the framebuffer, pixels

  /// Positions in framebuffer pixels from the top left corner.
  void Press(Mode mode, double x, double y);
  /// Returns whether the camera has moved.
  bool Move(double x, double y);
  void Release() { this->Active = Mode::None; }
  /// Magnify by `factor` so that what is under (x, y) stays there.
  void ZoomAt(double x, double y, double factor);

private:
  void Orbit(double dx, double dy);
  void Pan(double dx, double dy);
  void PointAt(double x, double y, double point[3]) const;

  zylViewCamera& Camera;
  int Width = 1;
  int Height = 1;
  Mode Active = Mode::None;
  double Pressed[2] = { 0.0, 0.0 };
  double Last[2] = { 0.0, 0.0 };
};

#endif
