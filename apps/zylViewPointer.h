/// @file zylViewPointer.h
/// What the pointer does with the scene: hover, click, select in a rectangle, set the center of
/// rotation. All positions in pixels from the upper left corner; the context is current.
#ifndef zylViewPointer_h
#define zylViewPointer_h

#include <array>
#include <string>
#include <vector>

class zylViewScene;

class zylViewPointer
{
public:
  /// `scene` is borrowed.
  explicit zylViewPointer(zylViewScene& scene)
    : Scene(scene)
  {
  }

  ///@{
  /// Look at what the pointer rests on, or at nothing any more; the scene stays as it is. What is
  /// there, and its numbers; empty for nothing.
  void Hover(double x, double y);
  void Leave();
  const std::string& GetText() const { return this->Text; }
  /// The lines about it, from where the camera is now: two ends each.
  std::vector<std::array<double, 4>> GetOutline() const;
  ///@}
  /// All numbers, on the terminal.
  void Print(double x, double y);

  ///@{
  /// Select what is there and nothing else, or toggle it; select what is seen in a rectangle,
  /// alone or in addition.
  void Click(double x, double y, bool toggle);
  void SelectIn(const double corners[4], bool add);
  ///@}

  /// Turn about the point that is there, or again about what is looked at.
  void CenterAt(double x, double y);

private:
  void Apply();

  zylViewScene& Scene;
  std::string Text;
  std::array<double, 6> Box{ { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 } }; ///< none: inverted
};

#endif
