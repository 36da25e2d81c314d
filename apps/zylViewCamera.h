/// @file zylViewCamera.h
/// Where the viewer looks from: the opening view, standard views, and how a drag turns it.
#ifndef zylViewCamera_h
#define zylViewCamera_h

#include <array>
#include <optional>

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

  void SetSize(int width, int height); ///< of the window, pixels

  /// The view that the command line asks for, as it was at the start.
  void Open();
  void Reset();
  /// 1..6 as the library counts its standard views; `flip` looks from the other side.
  void SetStandard(int direction, bool flip);

  /// Go around the center, in degrees: about the axis that is up, and over the poles at most. Free:
  /// about the axes of the window, so that the horizon rolls.
  void Orbit(double azimuth, double elevation);
  void SetFree(bool free);
  bool IsFree() const { return this->Free; }
  /// What to go around; none: the point that is looked at, as after Open() and Reset().
  void SetCenter(const std::optional<std::array<double, 3>>& center) { this->Center = center; }
  const std::optional<std::array<double, 3>>& GetCenter() const { return this->Center; }

  ///@{
  /// Pixels, counted from the upper left corner, and space: what is at one in the plane through the
  /// focal point that faces the eye, and a line from the eye through one and beyond all data.
  void PointAt(double x, double y, double point[3]);
  void GetRay(double x, double y, double from[3], double to[3]);
  /// Where a straight line is seen; false when all of it is behind the eye.
  bool Project(const double from[3], const double to[3], double line[4]);
  /// A unit of length there covers so many pixels.
  double GetPixelsPerUnit(const double point[3]);
  ///@}

private:
  using Vector = std::array<double, 3>;
  void LookFrom(const Vector& from, const Vector& up);
  void Fit();
  double GetHalfHeight();
  void KeepUpright();

  const zylViewOptions* Options;
  zylView* View;
  double Bounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };
  double Reach[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 }; ///< with arrows and tubes
  bool Free = false;
  std::optional<Vector> Center;
  int Width = 1, Height = 1;
};

#endif
