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
void zylViewCamera::Open(int width, int height)
{
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
      this->Fit(width, height);
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
void zylViewCamera::Fit(int width, int height)
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
  const double aspect = double(width) / std::max(height, 1);
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
  if (this->Free)
  {
    camera->Azimuth(azimuth);
    camera->Elevation(elevation);
    camera->OrthogonalizeViewUp();
    this->Changed();
    return;
  }
  this->KeepUpright();
  double axis[3], out[3], up[3], right[3], focus[3], position[3];
  std::copy_n(this->Options->Up.data(), 3, axis);
  vtkMath::Normalize(axis);
  camera->GetFocalPoint(focus);
  camera->GetPosition(position);
  camera->GetViewUp(up);
  vtkMath::Subtract(position, focus, out);
  vtkMath::Cross(up, out, right);
  vtkMath::Normalize(right);
  const double before =
    vtkMath::DegreesFromRadians(vtkMath::AngleBetweenVectors(out, axis)); // 0: from above
  const double after =
    std::clamp(before - elevation, std::min(before, Pole), std::max(before, 180.0 - Pole));
  Rotate(out, right, after - before);
  Rotate(up, right, after - before);
  for (double* vector : { out, up })
  {
    Rotate(vector, axis, azimuth);
  }
  vtkMath::Add(focus, out, position);
  camera->SetPosition(position);
  camera->SetViewUp(up);
  this->KeepUpright();
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
