#include "Host/zylHostCamera.h"

#include <algorithm>
#include <cmath>

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkTransform.h>

namespace {
struct Direction
{
  double ViewUp[3];
  double Offset[3];
};

// For directions 1 to 5; the first row is for any other.
constexpr Direction Directions[] = {
  { { 0, 1, 0 }, { -1, 0, 0 } },
  { { 0, 1, 0 }, { 0, 0, 1 } },
  { { 1, 0, 0 }, { 0, 0, -1 } },
  { { 0, 0, 1 }, { 0, -1, 0 } },
  { { 1, 0, 0 }, { 0, 1, 0 } },
  { { 0, 0, 1 }, { 1, 0, 0 } },
};

// A camera read from matrices, before it is known to be one.
struct CameraValues
{
  double Position[3], FocalPoint[3], ViewUp[3];
  double Near, Far;
  double WindowCenter[2];
  bool Parallel;
  double Scale; // parallel scale, or view angle in degrees

  bool IsFinite() const
  {
    double sum =
      this->Near + this->Far + this->WindowCenter[0] + this->WindowCenter[1] + this->Scale;
    for (int i = 0; i < 3; ++i)
    {
      sum += this->Position[i] + this->FocalPoint[i] + this->ViewUp[i];
    }
    return std::isfinite(sum);
  }
};

void SetWindowCenter(CameraValues& camera, double left, double right, double bottom, double top)
{
  camera.WindowCenter[0] = (right + left) / (right - left);
  camera.WindowCenter[1] = (top + bottom) / (top - bottom);
}

// Position, focal point and view-up from the host's model-view matrices; column 2 of the rotation,
// which points at the viewer, goes to `backward`.
void ReadPlacement(
  const double* first, const double* second, CameraValues& camera, double backward[3])
{
  vtkNew<vtkTransform> placement;
  for (const double* matrix : { first, second })
  {
    if (matrix)
    {
      placement->Concatenate(matrix);
    }
  }
  placement->Inverse();
  const double origin[3] = { 0.0, 0.0, 0.0 };
  placement->TransformPoint(origin, camera.Position);

  double orientation[4];
  placement->GetOrientationWXYZ(orientation);
  vtkNew<vtkTransform> rotation;
  rotation->RotateWXYZ(orientation[0], orientation[1], orientation[2], orientation[3]);
  for (int i = 0; i < 3; ++i)
  {
    camera.ViewUp[i] = rotation->GetMatrix()->GetElement(i, 1);
    backward[i] = rotation->GetMatrix()->GetElement(i, 2);
    camera.FocalPoint[i] = camera.Position[i] - backward[i];
  }
}

void ReadOrthographic(const double* p, const double backward[3], CameraValues& camera)
{
  camera.Far = (p[11] - 1.0) / p[10];
  camera.Near = camera.Far + 2.0 / p[10];
  const double top = -(p[7] - 1.0) / p[5];
  const double bottom = top - 2.0 / p[5];
  const double right = -(p[3] - 1.0) / p[0];
  const double left = right - 2.0 / p[0];
  camera.Scale = (top - bottom) / 2.0;
  SetWindowCenter(camera, left, right, bottom, top);
  if (camera.Near < 1.0)
  {
    // The renderer wants its near plane in front of the camera: step back.
    const double step = 1.0 - camera.Near;
    const double position[3] = { camera.Position[0], camera.Position[1], camera.Position[2] };
    for (int i = 0; i < 3; ++i)
    {
      camera.Position[i] = position[i] + step * backward[i];
      camera.FocalPoint[i] = position[i] + (step - 1.0) * backward[i];
    }
    camera.Far += step;
    camera.Near = 1.0;
  }
}

void ReadPerspective(const double* p, CameraValues& camera)
{
  const double k = (p[10] - 1.0) / (p[10] + 1.0);
  camera.Near = -0.5 * p[11] * (k - 1.0) / k;
  camera.Far = camera.Near * k;
  const double bottom = (p[6] - 1.0) * camera.Near / p[5];
  const double top = (p[6] + 1.0) * camera.Near / p[5];
  const double left = (p[2] - 1.0) * camera.Near / p[0];
  const double right = (p[2] + 1.0) * camera.Near / p[0];
  camera.Scale = 2.0 * std::atan((top - bottom) / 2.0 / camera.Near) * 57.29577951308232;
  SetWindowCenter(camera, left, right, bottom, top);
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylHostCamera::SetMatrices(
  vtkCamera* camera, const double* first, const double* second, const double* projection)
{
  if (!projection)
  {
    return false;
  }
  CameraValues values;
  double backward[3];
  ReadPlacement(first, second, values, backward);
  values.Parallel = projection[15] != 0.0;
  values.Parallel ? ReadOrthographic(projection, backward, values)
                  : ReadPerspective(projection, values);
  if (!values.IsFinite())
  {
    return false;
  }
  camera->SetPosition(values.Position);
  camera->SetViewUp(values.ViewUp);
  camera->SetFocalPoint(values.FocalPoint);
  camera->SetParallelProjection(values.Parallel);
  values.Parallel ? camera->SetParallelScale(values.Scale) : camera->SetViewAngle(values.Scale);
  camera->SetWindowCenter(values.WindowCenter[0], values.WindowCenter[1]);
  camera->SetClippingRange(values.Near, values.Far);
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylHostCamera::LookAlongAxis(
  vtkCamera* camera, const double center[3], int direction, bool flip)
{
  const Direction& row = Directions[direction >= 1 && direction <= 5 ? direction : 0];
  const double sign = flip ? -1.0 : 1.0;
  camera->SetViewUp(row.ViewUp[0], row.ViewUp[1], row.ViewUp[2]);
  camera->SetFocalPoint(center[0], center[1], center[2]);
  camera->SetPosition(center[0] + sign * row.Offset[0], center[1] + sign * row.Offset[1],
    center[2] + sign * row.Offset[2]);
}

//--------------------------------------------------------------------------------------------------
bool zylHostCamera::LookAgainstNormal(
  vtkCamera* camera, const double center[3], const double normal[3])
{
  const double length = vtkMath::Norm(normal);
  if (!(length > 0.0) || !std::isfinite(length))
  {
    return false;
  }
  camera->SetPosition(center[0] + normal[0], center[1] + normal[1], center[2] + normal[2]);
  camera->SetFocalPoint(center[0], center[1], center[2]);
  // Up along the line of sight is no direction in the picture: take the axis that is farthest from
  // that line.
  double across[3];
  vtkMath::Cross(camera->GetViewUp(), normal, across);
  if (vtkMath::Norm(across) <= 1e-6 * length * vtkMath::Norm(camera->GetViewUp()))
  {
    const double size[3] = { std::abs(normal[0]), std::abs(normal[1]), std::abs(normal[2]) };
    const int axis = static_cast<int>(std::min_element(size, size + 3) - size);
    camera->SetViewUp(axis == 0, axis == 1, axis == 2);
  }
  camera->OrthogonalizeViewUp();
  return true;
}
