/// @file zylViewCamera.h
/// Where the viewer looks from: the opening view, standard views, and how a drag turns it.
#ifndef zylViewCamera_h
#define zylViewCamera_h

#include <array>

class vtkCamera;
class zylView;
struct zylViewOptions;

class zylViewCamera
{
public:
  /// Borrowed; they must outlive this object.
  zylViewCamera(const zylViewOptions& options, zylView* view)
    : Options(&options)
    , View(view)
  {
  }

  /// Other options (borrowed) from now on.
  void Follow(const zylViewOptions& options) { this->Options = &options; }

  vtkCamera* Get();
  /// Call after moving the camera by hand.
  void Changed();

  /// What is visible; minima above maxima: nothing is, and the camera stays.
  void SetBounds(const double* bounds);
  const double* GetBounds() const { return this->Bounds; }

  /// The view that the command line asks for in a window of that size, as it was at the start.
  void Open(int width, int height);
  void Reset();
  /// 1..6 as the library counts its standard views; `flip` looks from the other side.
  void SetStandard(int direction, bool flip);

  /// Go around what is looked at, in degrees: about the axis that is up, and over the poles at
  /// most. Free: about the axes of the window, so that the horizon rolls.
  void Orbit(double azimuth, double elevation);
  void SetFree(bool free);
  bool IsFree() const { return this->Free; }

private:
  using Vector = std::array<double, 3>;
  void LookFrom(const Vector& from, const Vector& up);
  void Fit(int width, int height);
  void KeepUpright();

  const zylViewOptions* Options;
  zylView* View;
  double Bounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };
  double Reach[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 }; ///< with arrows and tubes
  bool Free = false;
};

#endif
