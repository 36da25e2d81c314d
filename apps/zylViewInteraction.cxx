#include "zylViewInteraction.h"

#include "zylViewCamera.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <vtkCamera.h>

namespace {
constexpr double DegreesPerWindow = 240.0; // orbit by a drag across the window
constexpr double ZoomPerWindow = 20.0;     // magnification by a drag over its height
constexpr double ClickReach = 4.0;         // pixels: a press that does not move is no drag
constexpr double DoubleClickTime = 0.4;    // seconds
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewInteraction::SetSize(int width, int height)
{
  this->Width = std::max(width, 1);
  this->Height = std::max(height, 1);
}

//--------------------------------------------------------------------------------------------------
void zylViewInteraction::Press(Mode mode, double x, double y)
{
  this->Active = mode;
  this->Dragging = false;
  this->Corners[0] = this->Corners[2] = x;
  this->Corners[1] = this->Corners[3] = y;
}

//--------------------------------------------------------------------------------------------------
bool zylViewInteraction::Move(double x, double y)
{
  const double dx = x - this->Corners[2], dy = y - this->Corners[3];
  this->Dragging = this->Dragging || std::hypot(dx, dy) >= ClickReach;
  if (this->Active == Mode::None || !this->Dragging)
  {
    return false;
  }
  this->Corners[2] = x;
  this->Corners[3] = y;
  switch (this->Active)
  {
    case Mode::None:
      return false;
    case Mode::Orbit:
      this->Orbit(dx, dy);
      break;
    case Mode::Pan:
      this->Pan(dx, dy);
      break;
    case Mode::Zoom:
      this->ZoomAt(this->Corners[0], this->Corners[1], std::pow(ZoomPerWindow, -dy / this->Height));
      break;
    case Mode::Rectangle:
      return true;
  }
  this->Camera.Changed();
  return true;
}

//--------------------------------------------------------------------------------------------------
auto zylViewInteraction::Release(double x, double y, double time) -> Gesture
{
  const Mode mode = std::exchange(this->Active, Mode::None);
  if (mode == Mode::None || this->Dragging)
  {
    return mode == Mode::Rectangle ? Gesture::Rectangle : Gesture::None;
  }
  if (mode != Mode::Orbit && mode != Mode::Rectangle)
  {
    return Gesture::None;
  }
  const bool again = time - this->Clicked[2] < DoubleClickTime &&
    std::hypot(x - this->Clicked[0], y - this->Clicked[1]) < ClickReach;
  this->Clicked[0] = x;
  this->Clicked[1] = y;
  this->Clicked[2] = again ? time - DoubleClickTime : time; // a third one is a first
  return again ? Gesture::DoubleClick : Gesture::Click;
}

//--------------------------------------------------------------------------------------------------
const double* zylViewInteraction::GetRectangle() const
{
  return this->Active == Mode::Rectangle && this->Dragging ? this->Corners : nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylViewInteraction::Orbit(double dx, double dy)
{
  this->Camera.Orbit(-DegreesPerWindow * dx / this->Width, DegreesPerWindow * dy / this->Height);
}

//--------------------------------------------------------------------------------------------------
void zylViewInteraction::Pan(double dx, double dy)
{
  double from[3], to[3], position[3], focus[3];
  vtkCamera* camera = this->Camera.Get();
  this->Camera.PointAt(this->Corners[2] - dx, this->Corners[3] - dy, from);
  this->Camera.PointAt(this->Corners[2], this->Corners[3], to);
  camera->GetPosition(position);
  camera->GetFocalPoint(focus);
  for (int i = 0; i < 3; ++i)
  {
    position[i] += from[i] - to[i];
    focus[i] += from[i] - to[i];
  }
  camera->SetPosition(position);
  camera->SetFocalPoint(focus);
}

//--------------------------------------------------------------------------------------------------
void zylViewInteraction::ZoomAt(double x, double y, double factor)
{
  vtkCamera* camera = this->Camera.Get();
  double fixed[3], position[3], focus[3];
  this->Camera.PointAt(x, y, fixed);
  camera->GetPosition(position);
  camera->GetFocalPoint(focus);
  // Shrinking position and focal point towards the fixed point keeps it under the cursor.
  for (int i = 0; i < 3; ++i)
  {
    position[i] = fixed[i] + (position[i] - fixed[i]) / factor;
    focus[i] = fixed[i] + (focus[i] - fixed[i]) / factor;
  }
  if (camera->GetParallelProjection())
  {
    camera->SetParallelScale(camera->GetParallelScale() / factor);
  }
  camera->SetPosition(position);
  camera->SetFocalPoint(focus);
  this->Camera.Changed();
}
