#include "zylViewOverlay.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double Paper[3] = { 0.13, 0.15, 0.19 };
constexpr double Track[3] = { 0.30, 0.34, 0.40 };
constexpr double Button[3] = { 0.38, 0.42, 0.50 };
constexpr double Ink[3] = { 0.95, 0.96, 0.98 };
constexpr double Accent[3] = { 1.0, 0.70, 0.15 };
constexpr double LineWidth = 1.5;
constexpr int Gap = 8; // around a text
constexpr int TipAside = 16;
constexpr int BoxWidth = 320, BoxHeight = 96, BarHeight = 8;
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewOverlay::SetSize(int width, int height, int pixelRatio)
{
  this->Width = width;
  this->Height = height;
  this->PixelRatio = pixelRatio;
  this->Brush.SetSize(width, height, pixelRatio);
}

//--------------------------------------------------------------------------------------------------
void zylViewOverlay::DrawRectangle(const double corners[4]) const
{
  const auto [left, right] = std::minmax(corners[0], corners[2]);
  const auto [top, bottom] = std::minmax(corners[1], corners[3]);
  this->Brush.Frame(left, this->Height - bottom, right - left, bottom - top, Accent);
}

//--------------------------------------------------------------------------------------------------
void zylViewOverlay::DrawLines(const std::vector<std::array<double, 4>>& lines) const
{
  for (const auto& line : lines)
  {
    const double from[2] = { line[0], this->Height - line[1] };
    const double to[2] = { line[2], this->Height - line[3] };
    this->Brush.Line(from, to, LineWidth * this->PixelRatio, Accent);
  }
}

//--------------------------------------------------------------------------------------------------
// Beside the pointer, where there is space.
void zylViewOverlay::DrawTip(double x, double y, const std::string& text) const
{
  int size[2];
  this->Brush.Measure(text, size);
  const double gap = Gap * this->PixelRatio, aside = TipAside * this->PixelRatio;
  const double width = size[0] + 2.0 * gap, height = size[1] + 2.0 * gap;
  const double left = std::min(x + aside, this->Width - width);
  const double top = y + aside + height <= this->Height ? y + aside : y - aside - height;
  const double corner[2] = { std::max(left, 0.0),
    std::max(this->Height - std::max(top, 0.0) - height, 0.0) };
  this->Brush.Fill(corner[0], corner[1], width, height, Paper);
  this->Brush.Text(corner[0] + gap, corner[1] + gap, text, Ink);
}

//--------------------------------------------------------------------------------------------------
void zylViewOverlay::DrawProgress(const std::string& work, double fraction)
{
  const double unit = this->PixelRatio, width = BoxWidth * unit, height = BoxHeight * unit;
  const double left = std::round((this->Width - width) / 2.0);
  const double bottom = std::round((this->Height - height) / 2.0);
  const double gap = 2.0 * Gap * unit, bar = width - 2.0 * gap;
  const auto write = [this](double x, double y, const std::string& text) {
    this->Brush.Text(x, y, text, Ink);
  };
  this->Brush.Fill(left, bottom, width, height, Paper);
  write(left + gap, bottom + height - 28 * unit, work);
  this->Brush.Fill(left + gap, bottom + 48 * unit, bar, BarHeight * unit, Track);
  if (fraction > 0.0)
  {
    this->Brush.Fill(
      left + gap, bottom + 48 * unit, bar * std::min(fraction, 1.0), BarHeight * unit, Accent);
  }
  const std::string cancel = "Cancel (c)";
  int size[2];
  this->Brush.Measure(cancel, size);
  const double right = left + width - gap, low = bottom + Gap * unit;
  const double wide = size[0] + 2.0 * Gap * unit, high = 30 * unit;
  this->Brush.Fill(right - wide, low, wide, high, Button);
  write(right - wide + Gap * unit, low + (high - size[1]) / 2.0, cancel);
  this->Cancel[0] = right - wide;
  this->Cancel[1] = this->Height - low - high;
  this->Cancel[2] = right;
  this->Cancel[3] = this->Height - low;
}

//--------------------------------------------------------------------------------------------------
bool zylViewOverlay::IsOnCancel(double x, double y) const
{
  return x >= this->Cancel[0] && x < this->Cancel[2] && y >= this->Cancel[1] && y < this->Cancel[3];
}
