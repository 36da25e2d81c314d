// How a drag turns the view, without a window.
#include "zylViewCamera.h"
#include "zylViewInteraction.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <zylView.h>

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>

#include <gtest/gtest.h>

namespace {
constexpr double Bounds[6] = { 0.0, 4.0, 0.0, 2.0, 0.0, 1.0 };

// How far the horizon is from level: the share of what is up that points aside.
double GetRoll(zylViewCamera& camera, const std::array<double, 3>& up)
{
  double along[3], aside[3], in[3];
  std::copy_n(up.data(), 3, in);
  camera.Get()->GetDirectionOfProjection(along);
  vtkMath::Cross(along, camera.Get()->GetViewUp(), aside);
  return std::abs(vtkMath::Dot(aside, in));
}

double GetHeight(zylViewCamera& camera, const std::array<double, 3>& up)
{
  double along[3];
  camera.Get()->GetDirectionOfProjection(along);
  return -(along[0] * up[0] + along[1] * up[1] + along[2] * up[2]);
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylViewCamera, TurnsUpright)
{
  vtkNew<zylView> view;
  zylViewOptions options;
  zylViewCamera camera(options, view);
  zylViewInteraction interaction(camera);
  interaction.SetSize(600, 400);
  camera.SetBounds(Bounds);
  for (const std::array<double, 3>& up :
    { std::array<double, 3>{ 0, 0, 1 }, { 0, 1, 0 }, { -1, 0, 0 }, { 0.6, 0, 0.8 } })
  {
    options.Up = up;
    camera.Open(600, 400);
    EXPECT_NEAR(GetRoll(camera, up), 0.0, 1e-9);
    EXPECT_GT(GetHeight(camera, up), 0.3); // from above
    // In circles, over both poles.
    interaction.Press(zylViewInteraction::Mode::Orbit, 300, 200);
    for (int i = 1; i < 200; ++i)
    {
      interaction.Move(300 + 7 * i, 200 + 300 * std::sin(0.1 * i));
      EXPECT_LT(GetRoll(camera, up), 0.02) << i; // near a pole nothing is quite upright
    }
    interaction.Move(1700, 5000); // a drag down raises the eye
    EXPECT_GT(GetHeight(camera, up), 0.999);
    interaction.Move(1700, -5000);
    EXPECT_LT(GetHeight(camera, up), -0.999);
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewCamera, TurnsFreelyAndComesBack)
{
  vtkNew<zylView> view;
  zylViewOptions options;
  zylViewCamera camera(options, view);
  camera.SetBounds(Bounds);
  camera.Open(600, 400);
  const auto matrix = [&camera] {
    const double* elements = camera.Get()->GetModelViewTransformMatrix()->GetData();
    return std::vector<double>(elements, elements + 16);
  };
  const auto opening = matrix();
  camera.SetFree(true);
  for (int i = 0; i < 9; ++i)
  {
    camera.Orbit(40.0, 30.0);
  }
  EXPECT_GT(GetRoll(camera, options.Up), 0.1);
  camera.SetFree(false);
  EXPECT_NEAR(GetRoll(camera, options.Up), 0.0, 1e-9);
  camera.Open(600, 400);
  EXPECT_EQ(matrix(), opening);
}

//--------------------------------------------------------------------------------------------------
// Looking along what is up, the drag begins at the pole: from a map to the view from the south.
TEST(zylViewCamera, LeavesThePole)
{
  vtkNew<zylView> view;
  zylViewOptions options;
  zylViewCamera camera(options, view);
  const double flat[6] = { 0.0, 4.0, 0.0, 2.0, 0.0, 0.0 };
  camera.SetBounds(flat);
  camera.Open(600, 400);
  EXPECT_NEAR(GetHeight(camera, options.Up), 1.0, 1e-12);
  camera.Orbit(0.0, -40.0);
  double along[3];
  camera.Get()->GetDirectionOfProjection(along);
  EXPECT_NEAR(along[0], 0.0, 1e-9);
  EXPECT_GT(along[1], 0.5);
  EXPECT_NEAR(GetRoll(camera, options.Up), 0.0, 1e-9);
}
