#include "zylAMReXGridReader.h"

#include "zylAMReXWriter.h"
#include "zylPluginTestData.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <vtkAMReXGridReader.h>
#include <vtkNew.h>
#include <vtkOverlappingAMR.h>
#include <vtkSmartPointer.h>

namespace {
constexpr int MaximumLevel = 5;

// Three levels in several files, with names that the toolkit takes for components of vectors.
void Write(const std::string& path, int dimension)
{
  zylAMReXPlotfile plot;
  plot.Variables = { "density", "amrexvec_u_z", "x_velocity", "amrexvec_u_x", "part_id",
    "amrexvec_u_y", "flux_x", "level_mask" };
  plot.Dimension = dimension;
  plot.DomainCells = { { 8, 8, dimension == 3 ? 8 : 1 } };
  plot.BoxesPerFile = 3;
  for (int level = 0; level < 3; ++level)
  {
    const int cells = 8 << level;
    plot.Levels.push_back(zylAMReXBoxes({ { cells, cells, dimension == 3 ? cells : 1 } }, 4,
      [cells](const zylAMReXBox& box) { return box.High[0] < cells / 2; }));
  }
  plot.Values = [](const zylAMReXCell& cell, double* values) {
    for (int i = 0; i < 8; ++i)
    {
      values[i] = 1000.0 * i + 100.0 * cell.Level + cell.Center[0] + 2.0 * cell.Center[1] +
        4.0 * cell.Center[2];
    }
  };
  std::string error;
  ASSERT_TRUE(zylWriteAMReX(path, plot, error)) << error;
}

// What the reader delivers of the first `levels` levels with every `stride`th of its arrays.
std::string Digest(vtkAMReXGridReader* reader, const std::string& path, int levels, int stride)
{
  reader->SetFileName(path.c_str());
  reader->UpdateInformation();
  for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i)
  {
    reader->SetCellArrayStatus(reader->GetCellArrayName(i), i % stride == 0);
  }
  reader->SetMaxLevel(levels - 1);
  reader->Update();
  EXPECT_GT(reader->GetOutput()->GetNumberOfCells(), 0);
  return zylDigest(reader->GetOutput());
}

std::string FastDigest(
  const std::string& path, const zylAMReXLayout& layout, int levels, int stride)
{
  vtkNew<zylAMReXGridReader> reader;
  reader->SetLayout(layout);
  return Digest(reader, path, levels, stride);
}

std::string ToolkitDigest(const std::string& path, int levels, int stride)
{
  vtkNew<vtkAMReXGridReader> reader;
  return Digest(reader, path, levels, stride);
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(AMReXGridReader, DeliversWhatTheToolkitDelivers)
{
  zylTemporaryDirectory directory;
  for (const int dimension : { 2, 3 })
  {
    const std::string path = directory / std::to_string(dimension);
    Write(path, dimension);
    zylAMReXLayout layout;
    ASSERT_EQ(zylCheckAMReXPlotfile(path, MaximumLevel, &layout), "");
    for (const int levels : { 1, 3 })
    {
      for (const int stride : { 1, 2 })
      {
        SCOPED_TRACE(testing::Message() << dimension << " " << levels << " " << stride);
        EXPECT_EQ(FastDigest(path, layout, levels, stride), ToolkitDigest(path, levels, stride));
      }
    }
  }
}

//--------------------------------------------------------------------------------------------------
// The layout is what it reads by: values come from there, and what cannot be read there comes as
// the toolkit reads it.
TEST(AMReXGridReader, ReadsByTheLayout)
{
  zylTemporaryDirectory directory;
  const std::string path = directory / "plt";
  Write(path, 3);
  zylAMReXLayout layout;
  ASSERT_EQ(zylCheckAMReXPlotfile(path, MaximumLevel, &layout), "");
  ASSERT_GT(layout.Files.size(), 3u);
  const std::string expected = ToolkitDigest(path, 3, 1);

  zylAMReXLayout other = layout;
  std::swap(other.Boxes[0], other.Boxes[1]);
  EXPECT_NE(FastDigest(path, other, 3, 1), expected);

  other = layout;
  for (auto& fab : other.Boxes)
  {
    fab.IsNative = false;
  }
  EXPECT_EQ(FastDigest(path, other, 3, 1), expected);

  other = layout;
  other.Files[1] += ".gone";
  other.Boxes.back().Offset = std::uint64_t(1) << 40;
  EXPECT_EQ(FastDigest(path, other, 3, 1), expected);
  EXPECT_EQ(FastDigest(path, zylAMReXLayout(), 3, 1), expected);
}
