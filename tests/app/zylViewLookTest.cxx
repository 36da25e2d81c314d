// What the viewer shows of files that it knows nothing about.
#include "zylViewRun.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include <gtest/gtest.h>

using namespace zylViewRun;

namespace {
std::string Write(const std::string& name, const std::string& dataset)
{
  const std::string file = Folder() + "/" + name + ".vtk";
  std::ofstream(file) << "# vtk DataFile Version 3.0\n" << name << "\nASCII\nDATASET " << dataset;
  return file;
}

// A plate of one by two cells in the plane of `axes` with point data.
std::string Plate(const std::string& name, const std::string& dimensions, const std::string& data)
{
  return Write(name,
    "STRUCTURED_POINTS\nDIMENSIONS " + dimensions +
      "\nORIGIN 0 0 0\nSPACING 1 1 1\nPOINT_DATA 6\n" + data);
}

const unsigned char* At(const Picture& picture, double x, double y)
{
  const int column = static_cast<int>(x * picture.Width);
  const int row = static_cast<int>(y * picture.Height);
  return &picture.Pixels[3 * (row * picture.Width + column)];
}

// Where two pictures differ, as shares of their sizes.
struct Box
{
  double Left = 1.0, Right = 0.0, Bottom = 1.0, Top = 0.0;
};

Box GetChanges(const Picture& a, const Picture& b)
{
  Box box;
  for (int y = 0; y < a.Height; ++y)
  {
    for (int x = 0; x < a.Width; ++x)
    {
      const std::size_t i = 3 * (static_cast<std::size_t>(y) * a.Width + x);
      if (!std::equal(&a.Pixels[i], &a.Pixels[i] + 3, &b.Pixels[i]))
      {
        box.Left = std::min(box.Left, double(x) / a.Width);
        box.Right = std::max(box.Right, (x + 1.0) / a.Width);
        box.Bottom = std::min(box.Bottom, double(y) / a.Height);
        box.Top = std::max(box.Top, (y + 1.0) / a.Height);
      }
    }
  }
  return box;
}
} // namespace

//--------------------------------------------------------------------------------------------------
// The same picture as that of the array that means something.
TEST(zylViewLook, ColorsByTheFirstArrayThatMeansSomething)
{
  const std::string id = "SCALARS GlobalNodeId int\nLOOKUP_TABLE default\n0 1 2 3 4 5\n";
  const std::string constant = "SCALARS one float\nLOOKUP_TABLE default\n1 1 1 1 1 1\n";
  const std::string vector = "VECTORS U float\n1 0 0 2 0 0 3 0 0 0 4 0 5 0 0 6 0 0\n";
  const std::string heat = "SCALARS heat float\nLOOKUP_TABLE default\n0 5 1 4 2 3\n";
  const struct
  {
    std::string Data, Array;
  } cases[] = { { id + heat, "heat" }, { constant + vector, "U" }, { vector + heat, "heat" },
    { id + constant, "one" } };
  for (const auto& c : cases)
  {
    const std::string file = Plate("some", "3 2 1", c.Data);
    const Picture shown = Draw("", file);
    EXPECT_EQ(Difference(shown, Draw("--array " + c.Array, file)), 0.0) << c.Array;
    EXPECT_GT(Difference(shown, Draw("--plain", file)), 0.1) << c.Array;
  }
  const std::string ids = Plate("ids", "3 2 1", id);
  EXPECT_GT(Difference(Draw("", ids), Draw("--array GlobalNodeId", ids)), 0.1);
  // Who gives a color wants to see it.
  const std::string file = Plate("some", "3 2 1", heat);
  EXPECT_GT(At(Draw("--block 0:Color=0,1,0", file), 0.4, 0.5)[1], 200);
}

//--------------------------------------------------------------------------------------------------
// "U_X" is the array of that name although there is a vector U.
TEST(zylViewLook, TakesAnArrayBeforeAComponent)
{
  const std::string vector = "VECTORS U float\n1 0 0 2 0 0 3 0 0 0 4 0 5 0 0 6 0 0\n";
  const std::string own = "SCALARS U_X float\nLOOKUP_TABLE default\n70 70 70 90 90 90\n";
  const std::string file = Plate("both", "3 2 1", vector + own);
  EXPECT_EQ(Difference(Draw("--array U_X", file), Draw("--array U_X --range 70,90", file)), 0.0);
}

//--------------------------------------------------------------------------------------------------
// Pictures have colors of their own, without light and legend, and fill the window.
TEST(zylViewLook, ShowsImagesAsTheyAre)
{
  const std::string red = "1 0 0 ", blue = "0 0 1 ";
  const Picture color = Draw("",
    Plate("color", "3 2 1", "COLOR_SCALARS rgb 3\n" + red + red + blue + red + red + blue + "\n"));
  EXPECT_EQ(At(color, 0.3, 0.5)[0], 255);
  EXPECT_EQ(At(color, 0.3, 0.5)[2], 0);
  EXPECT_GT(At(color, 0.85, 0.5)[2], 128);
  EXPECT_GT(color.Covered, 0.62); // a border of a twelfth of the width: 0.635
  const Picture gray = Draw("", Plate("gray", "3 2 1", "COLOR_SCALARS gray 1\n0 0.5 1 0 0.5 1\n"));
  for (const double x : { 0.3, 0.5, 0.7 })
  {
    const unsigned char* pixel = At(gray, x, 0.5);
    EXPECT_NEAR(pixel[0], pixel[1], 2);
    EXPECT_NEAR(pixel[0], pixel[2], 2);
  }
}

//--------------------------------------------------------------------------------------------------
// Whatever axis is the thin one, it is what one looks along; no light changes a color.
TEST(zylViewLook, FitsFlatData)
{
  const std::string heat = "SCALARS heat float\nLOOKUP_TABLE default\n1 1 1 1 1 1\n";
  for (const char* dimensions : { "3 2 1", "3 1 2", "1 3 2" })
  {
    const std::string file = Plate("flat", dimensions, heat);
    const Picture shown = Draw("--no-legend --block 0:Color=1,1,1", file);
    EXPECT_GT(shown.Covered, 0.6) << dimensions;
    EXPECT_EQ(At(shown, 0.5, 0.5)[0], 255) << dimensions;
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylViewLook, LinesAndPointsStandOutFromTheGround)
{
  const std::string files[] = { Write("line",
                                  "POLYDATA\nPOINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\n"),
    Write("dots", "POLYDATA\nPOINTS 3 float\n0 0 0 1 1 1 1 0 1\nVERTICES 1 4\n3 0 1 2\n") };
  for (const std::string& file : files)
  {
    const double plain = Draw("--plain", file).Covered;
    EXPECT_GT(Draw("", file).Covered, 1.8 * plain) << file;
    const Picture light = Draw("--background 1,1,1", file);
    EXPECT_LT(*std::min_element(light.Pixels.begin(), light.Pixels.end()), 100) << file;
  }
}

//--------------------------------------------------------------------------------------------------
// As much of every window, away from its edges, and in contrast to the ground.
TEST(zylViewLook, LegendSuitsTheWindow)
{
  const std::string file =
    Plate("vector", "3 2 1", "VECTORS velocity float\n1 0 0 2 0 0 3 0 0 0 4 0 5 0 0 6 0 0\n");
  for (const char* size : { "320x240", "1500x1000" })
  {
    for (const int ground : { 0, 1 })
    {
      const std::string color = std::to_string(ground);
      const std::string arguments = "--view 1 --zoom 0.5 --size " + std::string(size) +
        " --background " + color + "," + color + "," + color;
      const Picture legend = Draw(arguments, file);
      const Picture none = Draw(arguments + " --no-legend", file);
      const Box box = GetChanges(legend, none);
      EXPECT_GT(box.Right - box.Left, 0.04) << arguments;
      EXPECT_LT(box.Right - box.Left, 0.3) << arguments;
      EXPECT_GT(box.Bottom, 0.008) << arguments;
      EXPECT_LT(box.Right, 0.992) << arguments;
      const auto [dark, light] = std::minmax_element(legend.Pixels.begin(), legend.Pixels.end());
      EXPECT_GT(*light - *dark, 180) << arguments;
    }
  }
  // The legend of a whole vector says that it is its magnitude: as if it had been asked for.
  EXPECT_EQ(Difference(Draw("--size 600x400 --array velocity", file),
              Draw("--size 600x400 --array velocity_Magnitude", file)),
    0.0);
}
