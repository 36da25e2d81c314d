#include "zylViewInteraction.h"

#include "zylViewCamera.h"

#include <algorithm>
#include <cmath>

#include <vtkCamera.h>
#include <vtkMath.h>

namespace {
constexpr double DegreesPerWindow = 240.0; // orbit by a drag across the window
constexpr double ZoomPerWindow = 20.0;     // magnification by a drag over its height
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
  this->Pressed[0] = this->Last[0] = x;
  this->Pressed[1] = this->Last[1] = y;
}

//--------------------------------------------------------------------------------------------------
bool zylViewInteraction::Move(double x, double y)
{
  const double dx = x - this->Last[0], dy = y - this->Last[1];
  this->Last[0] = x;
  this->Last[1] = y;
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
      this->ZoomAt(this->Pressed[0], this->Pressed[1], std::pow(ZoomPerWindow, -dy / this->Height));
      break;
  }
  this->Camera.Changed();
  return true;
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
  this->PointAt(this->Last[0] - dx, this->Last[1] - dy, from);
  this->PointAt(this->Last[0], this->Last[1], to);
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
  this->PointAt(x, y, fixed);
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

//--------------------------------------------------------------------------------------------------
// The point under a pixel in the plane through the focal point that faces the eye.
void zylViewInteraction::PointAt(double x, double y, double point[3]) const
{
  vtkCamera* camera = this->Camera.Get();
  double forward[3], up[3], right[3];
  camera->GetDirectionOfProjection(forward);
  camera->GetViewUp(up);
  vtkMath::Cross(forward, up, right);
  vtkMath::Normalize(right);
  vtkMath::Cross(right, forward, up);
  const double half = camera->GetParallelProjection()
    ? camera->GetParallelScale()
    : camera->GetDistance() * std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2.0);
  const double across = half * (2.0 * x - this->Width) / this->Height;
  const double upwards = half * (1.0 - 2.0 * y / this->Height);
  camera->GetFocalPoint(point);
  for (int i = 0; i < 3; ++i)
  {
    point[i] += across * right[i] + upwards * up[i];
  }
}
