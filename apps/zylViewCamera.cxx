#include "zylViewCamera.h"

#include "zylViewLook.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cmath>

#include <zylView.h>

#include <vtkBoundingBox.h>
#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkPVRenderView.h>
#include <vtkRenderer.h>
#include <vtkSMRenderViewProxy.h>

namespace {
constexpr double Flat = 0.02;        // height over width of data that are seen from above
constexpr double Border = 0.08;      // of the window, around what is fitted
constexpr double LegendStrip = 0.13; // of the width, at the right
constexpr double Near = 0.001;       // of the distance: what is nearer is behind the eye
constexpr double Pole = 0.5;         // degrees from the axis that is up

// The axes of a frame whose third one is `up`, the others as near to x and y as that allows.
void MakeFrame(const double* up, double frame[3][3])
{
  const int away = std::abs(up[0]) < 0.9 * vtkMath::Norm(up) ? 0 : 1;
  double first[3] = { away == 0 ? 1.0 : 0.0, away == 1 ? 1.0 : 0.0, 0.0 };
  std::copy_n(up, 3, frame[2]);
  vtkMath::Normalize(frame[2]);
  vtkMath::Cross(frame[2], first, frame[1]);
  vtkMath::Normalize(frame[1]);
  vtkMath::Cross(frame[1], frame[2], frame[0]);
}

void Rotate(double vector[3], const double axis[3], double degrees)
{
  const double angle = vtkMath::RadiansFromDegrees(degrees);
  double cross[3];
  vtkMath::Cross(axis, vector, cross);
  const double along = vtkMath::Dot(axis, vector) * (1.0 - std::cos(angle));
  for (int i = 0; i < 3; ++i)
  {
    vector[i] = vector[i] * std::cos(angle) + cross[i] * std::sin(angle) + axis[i] * along;
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkCamera* zylViewCamera::Get()
{
  return this->View->GetProxy()->GetActiveCamera();
}

//--------------------------------------------------------------------------------------------------
// By the bounds of what is visible: the renderer knows none before the first frame.
void zylViewCamera::Changed()
{
  auto view = vtkPVRenderView::SafeDownCast(this->View->GetProxy()->GetClientSideView());
  double bounds[6];
  std::copy_n(this->Reach, 6, bounds);
  if (bounds[0] <= bounds[1])
  {
    view->GetRenderer()->ResetCameraClippingRange(bounds);
  }
}

//--------------------------------------------------------------------------------------------------
// Arrows and tubes reach a little beyond the data.
void zylViewCamera::SetBounds(const double* bounds)
{
  std::copy_n(bounds, 6, this->Bounds);
  vtkBoundingBox box(bounds);
  if (box.IsValid())
  {
    box.Inflate(0.05 * box.GetDiagonalLength());
    box.GetBounds(this->Reach);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::SetSize(int width, int height)
{
  this->Width = std::max(width, 1);
  this->Height = std::max(height, 1);
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::Open()
{
  this->Center.reset();
  const double* b = this->Bounds;
  const int flat = b[0] <= b[1] ? zylGetFlatAxis(b, Flat) : -1;
  double frame[3][3];
  MakeFrame(this->Options->Up.data(), frame);
  const Vector up{ frame[2][0], frame[2][1], frame[2][2] };
  if (this->Options->View != 0)
  {
    this->SetStandard(this->Options->View, false);
  }
  else if (this->Options->From || flat < 0)
  {
    Vector from{};
    for (int i = 0; i < 3; ++i)
    {
      from[i] = -0.9 * frame[0][i] - 1.5 * frame[1][i] + frame[2][i];
    }
    this->LookFrom(this->Options->From.value_or(from), up);
  }
  else
  {
    Vector from{};
    from[flat] = flat == 1 ? -1.0 : 1.0; // from above, from the front, from the right
    this->LookFrom(from, up);
    if (this->Options->Fit)
    {
      this->Fit();
    }
  }
  this->Get()->Dolly(this->Options->Zoom);
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::LookFrom(const Vector& from, const Vector& up)
{
  double across[3];
  vtkMath::Cross(from.data(), up.data(), across);
  const bool along = vtkMath::Norm(across) < 1e-9 * vtkMath::Norm(from.data());
  double frame[3][3];
  MakeFrame(up.data(), frame);
  vtkCamera* camera = this->Get();
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetPosition(from.data());
  camera->SetViewUp(along ? frame[1] : frame[2]);
  this->Reset();
}

//--------------------------------------------------------------------------------------------------
// As near as the window allows, beside the legend.
void zylViewCamera::Fit()
{
  vtkCamera* camera = this->Get();
  double normal[3], up[3], right[3], focus[3], position[3];
  camera->GetDirectionOfProjection(normal);
  camera->GetViewUp(up);
  vtkMath::Cross(normal, up, right);
  double across = 0.0, upwards = 0.0;
  for (int i = 0; i < 3; ++i)
  {
    const double half = (this->Bounds[2 * i + 1] - this->Bounds[2 * i]) / 2.0;
    focus[i] = this->Bounds[2 * i] + half;
    across += half * std::abs(right[i]);
    upwards += half * std::abs(up[i]);
  }
  const double strip = this->Options->Legend.value_or(false) ? LegendStrip : 0.0;
  const double slope = std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2.0);
  const double aspect = double(this->Width) / this->Height;
  const double distance = std::max(
    across / (slope * aspect * (1.0 - Border - strip)), upwards / (slope * (1.0 - Border)));
  for (int i = 0; i < 3; ++i)
  {
    focus[i] += strip * slope * aspect * distance * right[i];
    position[i] = focus[i] - distance * normal[i];
  }
  camera->SetFocalPoint(focus);
  camera->SetPosition(position);
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::Reset()
{
  this->Center.reset();
  this->View->ResetCamera();
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::SetStandard(int direction, bool flip)
{
  this->View->SetViewDir(direction, flip);
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::Orbit(double azimuth, double elevation)
{
  vtkCamera* camera = this->Get();
  if (!this->Free)
  {
    this->KeepUpright();
  }
  double axis[3], out[3], up[3], right[3], focus[3], position[3];
  camera->GetFocalPoint(focus);
  camera->GetPosition(position);
  camera->GetViewUp(up);
  std::copy_n(this->Free ? up : this->Options->Up.data(), 3, axis);
  vtkMath::Normalize(axis);
  vtkMath::Subtract(position, focus, out);
  vtkMath::Cross(up, out, right);
  vtkMath::Normalize(right);
  double tilt = -elevation;
  if (!this->Free)
  {
    const double before =
      vtkMath::DegreesFromRadians(vtkMath::AngleBetweenVectors(out, axis)); // 0: from above
    tilt = std::clamp(before - elevation, std::min(before, Pole), std::max(before, 180.0 - Pole)) -
      before;
  }
  const Vector center = this->Center.value_or(Vector{ focus[0], focus[1], focus[2] });
  double aside[3]; // from the center to what is looked at
  vtkMath::Subtract(focus, center.data(), aside);
  for (double* vector : { out, aside, up })
  {
    Rotate(vector, right, tilt);
    Rotate(vector, axis, azimuth);
  }
  vtkMath::Add(center.data(), aside, focus);
  vtkMath::Add(focus, out, position);
  camera->SetFocalPoint(focus);
  camera->SetPosition(position);
  camera->SetViewUp(up);
  camera->OrthogonalizeViewUp();
  if (!this->Free)
  {
    this->KeepUpright();
  }
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::SetFree(bool free)
{
  this->Free = free;
  if (!free)
  {
    this->KeepUpright();
  }
}

//--------------------------------------------------------------------------------------------------
// What is up in the data is up in the window, but where one looks along it.
void zylViewCamera::KeepUpright()
{
  vtkCamera* camera = this->Get();
  double along[3], across[3];
  camera->GetDirectionOfProjection(along);
  double up[3];
  std::copy_n(this->Options->Up.data(), 3, up);
  vtkMath::Normalize(up);
  vtkMath::Cross(along, up, across);
  if (vtkMath::Norm(across) > std::sin(vtkMath::RadiansFromDegrees(Pole)) / 2.0)
  {
    camera->SetViewUp(up);
    camera->OrthogonalizeViewUp();
  }
}

//--------------------------------------------------------------------------------------------------
// Of the window, in the plane through the focal point.
double zylViewCamera::GetHalfHeight()
{
  vtkCamera* camera = this->Get();
  return camera->GetParallelProjection()
    ? camera->GetParallelScale()
    : camera->GetDistance() * std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2.0);
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::PointAt(double x, double y, double point[3])
{
  vtkCamera* camera = this->Get();
  double forward[3], up[3], right[3];
  camera->GetDirectionOfProjection(forward);
  camera->GetViewUp(up);
  vtkMath::Cross(forward, up, right);
  vtkMath::Normalize(right);
  vtkMath::Cross(right, forward, up);
  const double half = this->GetHalfHeight();
  const double across = half * (2.0 * x - this->Width) / this->Height;
  const double upwards = half * (1.0 - 2.0 * y / this->Height);
  camera->GetFocalPoint(point);
  for (int i = 0; i < 3; ++i)
  {
    point[i] += across * right[i] + upwards * up[i];
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCamera::GetRay(double x, double y, double from[3], double to[3])
{
  vtkCamera* camera = this->Get();
  double point[3], along[3];
  this->PointAt(x, y, point);
  camera->GetPosition(from);
  camera->GetDirectionOfProjection(along);
  const double range = camera->GetClippingRange()[1] / camera->GetDistance();
  for (int i = 0; i < 3; ++i)
  {
    if (camera->GetParallelProjection())
    {
      from[i] = point[i] - camera->GetDistance() * along[i];
    }
    to[i] = from[i] + 1.01 * range * (point[i] - from[i]);
  }
}

//--------------------------------------------------------------------------------------------------
double zylViewCamera::GetPixelsPerUnit(const double point[3])
{
  vtkCamera* camera = this->Get();
  double out[3], along[3];
  vtkMath::Subtract(point, camera->GetPosition(), out);
  camera->GetDirectionOfProjection(along);
  const double nearer = camera->GetParallelProjection()
    ? 1.0
    : camera->GetDistance() / std::max(vtkMath::Dot(out, along), 1e-9 * camera->GetDistance());
  return this->Height / (2.0 * this->GetHalfHeight()) * nearer;
}

//--------------------------------------------------------------------------------------------------
bool zylViewCamera::Project(const double from[3], const double to[3], double line[4])
{
  vtkCamera* camera = this->Get();
  double frame[3][3]; // right, up, forward
  camera->GetDirectionOfProjection(frame[2]);
  vtkMath::Cross(frame[2], camera->GetViewUp(), frame[0]);
  vtkMath::Normalize(frame[0]);
  vtkMath::Cross(frame[0], frame[2], frame[1]);
  const bool parallel = camera->GetParallelProjection() != 0;
  const double near = parallel ? -VTK_DOUBLE_MAX : Near * camera->GetDistance();
  double ends[2][3];
  for (int end = 0; end < 2; ++end)
  {
    double out[3];
    vtkMath::Subtract(end == 0 ? from : to, camera->GetPosition(), out);
    for (int i = 0; i < 3; ++i)
    {
      ends[end][i] = vtkMath::Dot(out, frame[i]);
    }
  }
  if (ends[0][2] <= near && ends[1][2] <= near)
  {
    return false;
  }
  for (int end = 0; end < 2; ++end)
  {
    double* own = ends[end];
    const double* other = ends[1 - end];
    if (own[2] < near) // cut it off there
    {
      const double share = (near - own[2]) / (other[2] - own[2]);
      for (int i = 0; i < 3; ++i)
      {
        own[i] += share * (other[i] - own[i]);
      }
    }
    const double scale = this->Height / (2.0 * this->GetHalfHeight()) *
      (parallel ? 1.0 : camera->GetDistance() / own[2]);
    line[2 * end] = this->Width / 2.0 + scale * own[0];
    line[2 * end + 1] = this->Height / 2.0 - scale * own[1];
  }
  return true;
}
