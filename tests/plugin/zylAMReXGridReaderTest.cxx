#include "zylAMReXGridReader.h"

#include "zylAMReXWriter.h"
#include "zylPluginTestData.h"
#include "zylTest.h"

#include <cstdio>

#include <vtkAMRExtractLabeledBlocks.h>
#include <vtkAMReXGridReader.h>
#include <vtkObjectFactory.h>
#include <vtkOverlappingAMR.h>

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
    values[4] = cell.Index[1] % 3;
    values[7] = cell.Covered ? 0.0 : 1.0;
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
// The parts of a plotfile, their values read box by box.
class DeferredParts : public vtkAMRExtractLabeledBlocks
{
public:
  static DeferredParts* New();
  vtkTypeMacro(DeferredParts, vtkAMRExtractLabeledBlocks);
  zylAMReXGridReader* Reader = nullptr;

protected:
  const zylDeferredValues* GetDeferredValues() override { return this->Reader; }
};
vtkStandardNewMacro(DeferredParts);

std::string Parts(vtkAMRExtractLabeledBlocks* parts, vtkAMReXGridReader* reader)
{
  parts->SetInputConnection(reader->GetOutputPort());
  parts->SetPartIdArrayName("part_id");
  parts->SetLevelMaskArrayName("level_mask");
  parts->Update();
  return zylDigest(parts->GetOutput());
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(AMReXGridReader, DeliversWhatTheToolkitDelivers)
{
  const std::filesystem::path directory = zylTestData::MakeFolder();
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
  const std::filesystem::path directory = zylTestData::MakeFolder();
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

//--------------------------------------------------------------------------------------------------
TEST(AMReXGridReader, LeavesValuesToTheFilterBehind)
{
  const std::filesystem::path directory = zylTestData::MakeFolder();
  const std::string path = directory / "plt";
  Write(path, 3);
  zylAMReXLayout layout;
  ASSERT_EQ(zylCheckAMReXPlotfile(path, MaximumLevel, &layout), "");
  vtkNew<vtkAMReXGridReader> toolkit;
  Digest(toolkit, path, 3, 1);
  vtkNew<vtkAMRExtractLabeledBlocks> plain;
  const std::string expected = Parts(plain, toolkit);

  vtkNew<zylAMReXGridReader> reader;
  reader->SetLayout(layout);
  reader->DeferValues({ "part_id", "level_mask" });
  reader->SetFileName(path.c_str());
  reader->UpdateInformation();
  for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i)
  {
    reader->SetCellArrayStatus(reader->GetCellArrayName(i), 1);
  }
  reader->SetMaxLevel(MaximumLevel);
  vtkNew<DeferredParts> parts;
  parts->Reader = reader;
  EXPECT_EQ(Parts(parts, reader), expected);

  // A file that goes before its values were asked for leaves zeros, and is said.
  const std::string finest = layout.Files.back();
  ASSERT_EQ(std::rename(finest.c_str(), (finest + ".gone").c_str()), 0);
  zylTestLog log;
  vtkNew<DeferredParts> late;
  late->Reader = reader;
  EXPECT_NE(Parts(late, reader), expected);
  EXPECT_EQ(late->GetOutput()->GetNumberOfCells(), parts->GetOutput()->GetNumberOfCells());
  EXPECT_TRUE(log.HasError("blocks could not be read"));
}
