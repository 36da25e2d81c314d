/// @file zylViewOverlay.h
/// What a window shows over the picture of the scene: the rectangle that selects, outline and
/// numbers of what the pointer rests on, and what is being done when that takes long. The picture
/// is kept, so that these cost no frame of the scene.
#ifndef zylViewOverlay_h
#define zylViewOverlay_h

#include "zylViewPaint.h"

#include <array>
#include <string>
#include <vector>

class zylViewOverlay
{
public:
  /// The bound framebuffer is the window's, here and in all calls, and its context current.
  zylViewOverlay() = default;
  void SetSize(int width, int height, int pixelRatio);

  ///@{
  /// Keep the picture that was drawn, and put it there again. Whether there is one of this size.
  void Keep() { this->Brush.Keep(); }
  bool PutBack() const { return this->Brush.PutBack(); }
  ///@}

  ///@{
  /// All in pixels from the upper left corner.
  void DrawRectangle(const double corners[4]) const;
  void DrawLines(const std::vector<std::array<double, 4>>& lines) const;
  void DrawTip(double x, double y, const std::string& text) const;
  /// `fraction` below 0 is unknown.
  void DrawProgress(const std::string& work, double fraction);
  /// Whether that is on the button that the progress was drawn with last.
  bool IsOnCancel(double x, double y) const;
  ///@}

private:
  zylViewPaint Brush;
  int Width = 0, Height = 0, PixelRatio = 1;
  double Cancel[4] = { 0.0, 0.0, -1.0, -1.0 }; ///< left, top, right, bottom
};

#endif
