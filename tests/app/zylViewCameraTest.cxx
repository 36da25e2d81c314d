// How a drag turns the view, without a window.
#include "zylViewCamera.h"
#include "zylViewInteraction.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <zylView.h>

#include <vtkCamera.h>
#include <vtkLine.h>
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
    camera.SetSize(600, 400);
    camera.Open();
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
  camera.SetSize(600, 400);
  camera.Open();
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
  camera.Open();
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
  camera.Open();
  EXPECT_NEAR(GetHeight(camera, options.Up), 1.0, 1e-12);
  camera.Orbit(0.0, -40.0);
  double along[3];
  camera.Get()->GetDirectionOfProjection(along);
  EXPECT_NEAR(along[0], 0.0, 1e-9);
  EXPECT_GT(along[1], 0.5);
  EXPECT_NEAR(GetRoll(camera, options.Up), 0.0, 1e-9);
}

//--------------------------------------------------------------------------------------------------
// Upright and free, in perspective and in parallel: the center stays where it is seen, and pixels
// and space agree.
TEST(zylViewCamera, TurnsAboutTheCenter)
{
  vtkNew<zylView> view;
  zylViewOptions options;
  zylViewCamera camera(options, view);
  camera.SetSize(600, 400);
  camera.SetBounds(Bounds);
  for (const bool free : { false, true })
  {
    for (const bool parallel : { false, true })
    {
      camera.SetFree(free);
      camera.Get()->SetParallelProjection(parallel);
      camera.Open();
      const std::array<double, 3> center{ 3.0, 0.5, 1.0 };
      const auto seen = [&camera, &center] {
        std::array<double, 4> line{};
        EXPECT_TRUE(camera.Project(center.data(), center.data(), line.data()));
        return line;
      };
      camera.SetCenter(center);
      const auto before = seen();
      const double height = GetHeight(camera, options.Up);
      for (int i = 0; i < 3; ++i)
      {
        camera.Orbit(20.0, -10.0);
        const auto after = seen();
        EXPECT_NEAR(after[0], before[0], 1e-6);
        EXPECT_NEAR(after[1], before[1], 1e-6);
      }
      EXPECT_LT(GetHeight(camera, options.Up), height - 0.2);
      double from[3], to[3], at[3];
      camera.PointAt(123.0, 45.0, at);
      std::array<double, 4> line{};
      ASSERT_TRUE(camera.Project(at, at, line.data()));
      EXPECT_NEAR(line[0], 123.0, 1e-6);
      EXPECT_NEAR(line[1], 45.0, 1e-6);
      camera.GetRay(before[0], before[1], from, to);
      EXPECT_LT(vtkLine::DistanceToLine(center.data(), from, to), 1e-9);
      const double unit[3] = { at[0] + camera.Get()->GetViewUp()[0],
        at[1] + camera.Get()->GetViewUp()[1], at[2] + camera.Get()->GetViewUp()[2] };
      ASSERT_TRUE(camera.Project(at, unit, line.data()));
      EXPECT_NEAR(line[1] - line[3], camera.GetPixelsPerUnit(at), 1e-6);
    }
  }
  camera.Reset();
  EXPECT_FALSE(camera.GetCenter());
  const double* eye = camera.Get()->GetPosition();
  const double behind[3] = { 2.0 * eye[0], 2.0 * eye[1], 2.0 * eye[2] };
  std::array<double, 4> line{};
  camera.Get()->SetParallelProjection(false);
  EXPECT_FALSE(camera.Project(behind, behind, line.data()));
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewCamera, TellsClicksFromDrags)
{
  using Mode = zylViewInteraction::Mode;
  using Gesture = zylViewInteraction::Gesture;
  vtkNew<zylView> view;
  zylViewOptions options;
  zylViewCamera camera(options, view);
  zylViewInteraction interaction(camera);
  interaction.SetSize(600, 400);
  camera.SetBounds(Bounds);
  camera.Open();
  const struct
  {
    Mode Pressed;
    double Aside, Time; ///< how far the mouse moves before the release, and when that is
    Gesture Meant;
  } rows[] = {
    { Mode::Orbit, 0.0, 1.0, Gesture::Click },
    { Mode::Orbit, 3.0, 1.2, Gesture::DoubleClick },
    { Mode::Orbit, 0.0, 1.3, Gesture::Click }, // the third one
    { Mode::Orbit, 0.0, 2.0, Gesture::Click },
    { Mode::Orbit, 30.0, 2.1, Gesture::None },
    { Mode::Pan, 0.0, 3.0, Gesture::None },
    { Mode::Rectangle, 0.0, 4.0, Gesture::Click },
    { Mode::Rectangle, 30.0, 4.1, Gesture::Rectangle },
    { Mode::None, 0.0, 5.0, Gesture::None },
  };
  for (const auto& row : rows)
  {
    const std::array<double, 3> before{ camera.Get()->GetPosition()[0],
      camera.Get()->GetPosition()[1], camera.Get()->GetPosition()[2] };
    interaction.Press(row.Pressed, 100, 100);
    const bool moved = interaction.Move(100 + row.Aside, 100);
    EXPECT_EQ(moved, row.Aside > 4.0) << row.Time;
    EXPECT_EQ(interaction.GetRectangle() != nullptr, moved && row.Pressed == Mode::Rectangle);
    EXPECT_EQ(interaction.Release(100 + row.Aside, 100, row.Time), row.Meant) << row.Time;
    EXPECT_EQ(before[0] == camera.Get()->GetPosition()[0], !moved || row.Pressed != Mode::Orbit);
    EXPECT_FALSE(interaction.Move(400, 300)); // nothing is pressed
  }
}
