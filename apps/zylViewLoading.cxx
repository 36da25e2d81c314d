#include "zylViewLoading.h"

#include "zylViewLook.h"
#include "zylViewOptions.h"

#include <algorithm>

namespace {
constexpr double BarWidth = 0.5, BarHeight = 0.012;
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewLoading::Paint(
  int width, int height, int pixelRatio, const std::string& work, double fraction)
{
  this->Backdrop.Paint(width, height, this->Options.BackgroundTop, this->Options.BackgroundBottom);
  this->Brush.SetSize(width, height, pixelRatio);
  const double* ink = zylGetInk(this->Options, 0.5);
  int size[2];
  this->Brush.Measure(work, size);
  this->Brush.Text((width - size[0]) / 2.0, height / 2.0 + height / 20.0, work, ink);
  double track[3];
  for (int i = 0; i < 3; ++i)
  {
    const double ground =
      (this->Options.BackgroundTop[i] + this->Options.BackgroundBottom[i]) / 2.0;
    track[i] = 0.75 * ground + 0.25 * ink[i];
  }
  const double x = width * (1.0 - BarWidth) / 2.0, y = height / 2.0;
  this->Brush.Fill(x, y, width * BarWidth, height * BarHeight, track);
  if (fraction > 0.0)
  {
    this->Brush.Fill(x, y, width * BarWidth * std::min(fraction, 1.0), height * BarHeight, ink);
  }
}
