#include "vtkAMRExtractLabeledBlocks.h"

#include "zylBlockParts.h"
#include "zylPluginTestData.h"
#include "zylTest.h"

#include <cstdio>
#include <random>

#include <vtkBitArray.h>
#include <vtkCell.h>
#include <vtkCompositeDataIterator.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkIntArray.h>
#include <vtkOverlappingAMR.h>
#include <vtkSMPTools.h>
#include <vtkStringArray.h>
#include <vtkUniformGrid.h>
#include <vtkUnsignedCharArray.h>

namespace {
using testing::ElementsAre;
using Grids = std::vector<std::vector<vtkSmartPointer<vtkUniformGrid>>>;

struct Result
{
  vtkSmartPointer<vtkMultiBlockDataSet> Blocks;

  int Count() const { return static_cast<int>(this->Blocks->GetNumberOfBlocks()); }
  vtkUnstructuredGrid* Part(unsigned int p) const
  {
    return vtkUnstructuredGrid::SafeDownCast(this->Blocks->GetBlock(p));
  }
  // How many of each part.
  std::vector<vtkIdType> Cells() const
  {
    std::vector<vtkIdType> counts;
    for (int p = 0; p < this->Count(); ++p)
    {
      counts.push_back(this->Part(p)->GetNumberOfCells());
    }
    return counts;
  }
};

Result Extract(vtkOverlappingAMR* amr, const char* part = "part", const char* mask = "mask")
{
  vtkNew<vtkAMRExtractLabeledBlocks> filter;
  filter->SetInputDataObject(amr);
  filter->SetPartIdArrayName(part);
  filter->SetLevelMaskArrayName(mask);
  filter->Update();
  return { filter->GetOutput() };
}

// One block of 4 x 1 x 1 cells with these part numbers.
vtkSmartPointer<vtkUniformGrid> Row(const std::vector<double>& parts, double x0 = 0.0)
{
  auto grid = zylMakeGrid(static_cast<int>(parts.size()), 1, 1, x0);
  zylAddCells<vtkDoubleArray>(grid, "part", [&](int i) { return parts[i]; });
  return grid;
}

double CellValue(vtkUnstructuredGrid* grid, const char* name, vtkIdType cell, int component = 0)
{
  return grid->GetCellData()->GetArray(name)->GetComponent(cell, component);
}

// Blocks of several shapes and levels with random parts and masks, and values that say which cell
// and block they come from.
vtkSmartPointer<vtkOverlappingAMR> RandomAMR(unsigned int seed, int parts, int blocks)
{
  std::mt19937 random(seed);
  Grids levels(3);
  for (int b = 0; b < blocks; ++b)
  {
    auto grid = zylMakeGrid(
      1 + random() % 6, 1 + random() % 6, 1 + random() % 6, b * 1.5, b, 0.25, 1.0 / (1 + b % 3));
    const int kind = random() % 3; // one part; parts in slabs; scattered
    const int first = random() % parts;
    zylAddCells<vtkDoubleArray>(grid, "part", [&](int i) {
      return kind == 0 ? first : kind == 1 ? (first + i / 7) % parts : random() % parts;
    });
    const bool masked = random() % 2;
    zylAddCells<vtkFloatArray>(
      grid, "mask", [&](int i) { return masked ? (i % 5 == 0 ? 0.0 : 1.7) : 1.0; });
    zylAddCells<vtkIntArray>(grid, "where", [&](int i) { return 1000 * b + i; });
    levels[b % 3].push_back(grid);
  }
  return zylMakeAMR(levels);
}

// What the filter is to do, said with ordered maps and the toolkit's own cells.
void ExpectLikeReference(vtkOverlappingAMR* amr, const Result& result)
{
  std::map<int, std::vector<std::pair<vtkUniformGrid*, vtkIdType>>> cells;
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(amr->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    auto* grid = vtkUniformGrid::SafeDownCast(iterator->GetCurrentDataObject());
    for (vtkIdType i = 0; i < grid->GetNumberOfCells(); ++i)
    {
      if (static_cast<int>(grid->GetCellData()->GetArray("mask")->GetTuple1(i)) == 1)
      {
        const int part = static_cast<int>(grid->GetCellData()->GetArray("part")->GetTuple1(i));
        cells[part].emplace_back(grid, i);
      }
    }
  }
  for (int p = 0; p < result.Count(); ++p)
  {
    vtkUnstructuredGrid* part = result.Part(p);
    const auto& expected = cells[p];
    ASSERT_EQ(part->GetNumberOfCells(), static_cast<vtkIdType>(expected.size())) << "part " << p;
    std::map<std::pair<vtkUniformGrid*, vtkIdType>, vtkIdType> points;
    vtkNew<vtkIdList> ids, inputIds;
    for (std::size_t c = 0; c < expected.size(); ++c)
    {
      vtkUniformGrid* grid = expected[c].first;
      ASSERT_EQ(part->GetCellType(c), grid->GetCellType(expected[c].second));
      ASSERT_EQ(CellValue(part, "where", c),
        grid->GetCellData()->GetArray("where")->GetTuple1(expected[c].second));
      part->GetCellPoints(c, ids);
      grid->GetCellPoints(expected[c].second, inputIds);
      ASSERT_EQ(ids->GetNumberOfIds(), inputIds->GetNumberOfIds());
      for (vtkIdType k = 0; k < ids->GetNumberOfIds(); ++k)
      {
        const auto known = points.emplace(std::make_pair(grid, inputIds->GetId(k)), ids->GetId(k));
        ASSERT_EQ(known.first->second, ids->GetId(k)); // one output point per input point
        double x[3], y[3];
        part->GetPoint(ids->GetId(k), x);
        grid->GetPoint(inputIds->GetId(k), y);
        ASSERT_TRUE(x[0] == y[0] && x[1] == y[1] && x[2] == y[2]);
      }
    }
    ASSERT_EQ(part->GetNumberOfPoints(), static_cast<vtkIdType>(points.size())) << "part " << p;
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, PartsAreBlocks)
{
  const Result result = Extract(zylMakeAMR({ { Row({ 0, 2, 2, 0 }) } }));
  ASSERT_THAT(result.Cells(), ElementsAre(2, 0, 2));
  EXPECT_EQ(result.Part(2)->GetNumberOfPoints(), 12); // two cells that touch
  EXPECT_EQ(result.Part(0)->GetNumberOfPoints(), 16); // two that do not
  EXPECT_EQ(result.Part(0)->GetCellType(0), VTK_VOXEL);
  EXPECT_STREQ(result.Part(1)->GetCellData()->GetArrayName(0), "part");
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, MasksAndTruncates)
{
  auto grid = Row({ 0.9, -0.9, 1.9, 1.0 });
  const double mask[4] = { 1.0, 1.99, 0.99, 2.0 };
  zylAddCells<vtkDoubleArray>(grid, "mask", [&](int i) { return mask[i]; });
  const auto amr = zylMakeAMR({ { grid } });
  EXPECT_THAT(Extract(amr).Cells(), ElementsAre(2, 0)); // masked cells count in the number of parts
  EXPECT_THAT(Extract(amr, "part", nullptr).Cells(), ElementsAre(2, 2));
  EXPECT_THAT(Extract(amr, "part", "no such array").Cells(), ElementsAre(2, 2));
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, MaskMayBeOfAnyType)
{
  auto grid = Row({ 0, 0, 0, 0 });
  vtkNew<vtkUnsignedCharArray> mask;
  mask->SetName("mask");
  mask->SetNumberOfComponents(2); // the first component counts
  const unsigned char values[8] = { 1, 0, 0, 1, 1, 1, 255, 1 };
  mask->SetNumberOfTuples(4);
  std::copy(values, values + 8, mask->GetPointer(0));
  grid->GetCellData()->AddArray(mask);
  EXPECT_THAT(Extract(zylMakeAMR({ { grid } })).Cells(), ElementsAre(2));

  auto named = Row({ 0, 0, 0, 0 });
  vtkNew<vtkStringArray> text;
  text->SetName("mask");
  text->SetNumberOfValues(4);
  named->GetCellData()->AddArray(text);
  EXPECT_THAT(Extract(zylMakeAMR({ { named } })).Cells(), ElementsAre(4)); // not a mask: none
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, BlocksAfterOneWithoutPartsAreLeftOut)
{
  auto none = zylMakeGrid(2, 1, 1);
  const auto amr = zylMakeAMR({ { Row({ 0, 1 }), none, Row({ 3, 3 }) } });
  zylTestLog log;
  const Result result = Extract(amr);
  EXPECT_EQ(log.CountErrors("PartIdArrayName not set. The filter will not produce anything"), 1)
    << log.Dump();
  EXPECT_THAT(result.Cells(), ElementsAre(1, 1, 0, 0)); // counted over all blocks
  EXPECT_THAT(Extract(amr, nullptr).Cells(), ElementsAre(0));
  EXPECT_THAT(Extract(amr, "no such array").Cells(), ElementsAre(0));
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, EmptyInputGivesOneEmptyPart)
{
  const Result result = Extract(zylMakeAMR({ { nullptr, nullptr }, {} }));
  ASSERT_THAT(result.Cells(), ElementsAre(0));
  EXPECT_EQ(result.Part(0)->GetNumberOfPoints(), 0);
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, ImpossiblePartNumbersAreReportedAndLeftOut)
{
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const auto amr =
    zylMakeAMR({ { Row({ 1, nan, -1, 2e9, 65536, -infinity, infinity, 1 }), Row({ 0 }) } });
  zylTestLog log;
  const Result result = Extract(amr);
  EXPECT_TRUE(log.HasError("The array 'part' holds no part number from 0 to 65535 for 6 cells."));
  EXPECT_THAT(result.Cells(), ElementsAre(1, 2));

  // Behind the mask they harm nobody.
  auto masked = Row({ 0, 2e9 });
  zylAddCells<vtkIntArray>(masked, "mask", [](int i) { return i == 0; });
  zylTestLog quiet;
  EXPECT_EQ(Extract(zylMakeAMR({ { masked } })).Count(), 1);
  EXPECT_FALSE(quiet.HasError());
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, ArraysFollowTheFirstBlock)
{
  auto first = Row({ 0, 1, 0, 1 });
  zylAddCells<vtkFloatArray>(first, "density", [](int i) { return 0.5 + i; });
  vtkNew<vtkDoubleArray> velocity;
  velocity->SetName("velocity");
  velocity->SetNumberOfComponents(3);
  velocity->SetComponentName(2, "w");
  vtkNew<vtkStringArray> label;
  label->SetName("label");
  vtkNew<vtkBitArray> bit;
  bit->SetName("bit");
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  for (int i = 0; i < 4; ++i)
  {
    velocity->InsertNextTuple3(i, 10 * i, 100 * i);
    label->InsertNextValue("cell" + std::to_string(i));
    bit->InsertNextValue(i % 2);
    ghosts->InsertNextValue(i == 3 ? vtkDataSetAttributes::REFINEDCELL : 0);
  }
  for (vtkAbstractArray* array : { static_cast<vtkAbstractArray*>(velocity), //
         static_cast<vtkAbstractArray*>(label), static_cast<vtkAbstractArray*>(bit),
         static_cast<vtkAbstractArray*>(ghosts) })
  {
    first->GetCellData()->AddArray(array);
  }
  first->GetCellData()->SetActiveScalars("density");
  auto second = Row({ 1, 1 }, 4.0);                                         // lacks most arrays
  zylAddCells<vtkIntArray>(second, "density", [](int i) { return 7 + i; }); // another type
  zylAddCells<vtkIntArray>(second, "more", [](int) { return 1; });

  const Result result = Extract(zylMakeAMR({ { first, second } }));
  vtkUnstructuredGrid* part = result.Part(1);
  ASSERT_EQ(part->GetNumberOfCells(), 4);
  EXPECT_EQ(part->GetCellData()->GetNumberOfArrays(), 5);
  EXPECT_FALSE(part->GetCellData()->HasArray(vtkDataSetAttributes::GhostArrayName()));
  EXPECT_FALSE(part->GetCellData()->HasArray("more"));
  EXPECT_STREQ(part->GetCellData()->GetScalars()->GetName(), "density");
  EXPECT_EQ(part->GetCellData()->GetArray("density")->GetDataType(), VTK_FLOAT);
  EXPECT_STREQ(part->GetCellData()->GetArray("velocity")->GetComponentName(2), "w");
  const double density[4] = { 1.5, 3.5, 7, 8 };
  const double w[4] = { 100, 300, 0, 0 };
  const char* const labels[4] = { "cell1", "cell3", "", "" };
  for (int i = 0; i < 4; ++i)
  {
    EXPECT_EQ(CellValue(part, "density", i), density[i]);
    EXPECT_EQ(CellValue(part, "velocity", i, 2), w[i]);
    EXPECT_EQ(CellValue(part, "bit", i), i < 2 ? 1 : 0);
    auto* text = vtkStringArray::SafeDownCast(part->GetCellData()->GetAbstractArray("label"));
    EXPECT_EQ(text->GetValue(i), labels[i]);
  }
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, FlatBlocksAndOffsetExtents)
{
  auto flat = zylMakeGrid(2, 0, 3); // in the xz plane
  flat->SetExtent(5, 7, 2, 2, -1, 2);
  zylAddCells<vtkIntArray>(flat, "part", [](int i) { return i == 5 ? 1 : 0; });
  zylAddCells<vtkIntArray>(flat, "mask", [](int) { return 1; });
  zylAddCells<vtkIntArray>(flat, "where", [](int i) { return i; });
  vtkNew<vtkDoubleArray> height;
  height->SetName("height");
  for (vtkIdType i = 0; i < flat->GetNumberOfPoints(); ++i)
  {
    height->InsertNextValue(flat->GetPoint(i)[2]);
  }
  flat->GetPointData()->AddArray(height);
  const auto amr = zylMakeAMR({ { flat } });
  const Result result = Extract(amr);
  ExpectLikeReference(amr, result);
  EXPECT_EQ(result.Part(0)->GetCellType(0), VTK_PIXEL);
  vtkUnstructuredGrid* part = result.Part(0);
  for (vtkIdType i = 0; i < part->GetNumberOfPoints(); ++i)
  {
    EXPECT_EQ(part->GetPointData()->GetArray("height")->GetComponent(i, 0), part->GetPoint(i)[2]);
  }

  auto line = zylMakeGrid(0, 2, 0);
  for (const char* name : { "part", "mask", "where" })
  {
    zylAddCells<vtkIntArray>(line, name, [](int) { return 0; });
  }
  zylAddCells<vtkIntArray>(line, "mask", [](int) { return 1; });
  const auto lines = zylMakeAMR({ { line } });
  ExpectLikeReference(lines, Extract(lines));
}

//--------------------------------------------------------------------------------------------------
TEST(AMRExtract, AgreesWithOrderedMaps)
{
  for (unsigned int seed = 1; seed <= 20; ++seed)
  {
    const auto amr = RandomAMR(seed, 1 + seed % 7, 12);
    ExpectLikeReference(amr, Extract(amr));
    ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed;
  }
}

//--------------------------------------------------------------------------------------------------
// Run by the next test in processes of their own: the backend is chosen once per process.
TEST(AMRExtract, PrintDigest)
{
  if (!getenv("ZYL_TEST_DIGEST"))
  {
    GTEST_SKIP() << "a helper of IndependentOfThreads";
  }
  const auto amr = RandomAMR(99, 5, 400);
  std::printf("digest %s threads %d\n", zylDigest(Extract(amr).Blocks).c_str(),
    vtkSMPTools::GetEstimatedNumberOfThreads());
}

TEST(AMRExtract, IndependentOfThreads)
{
  std::vector<std::string> digests;
  for (const char* backend : { "Sequential", "STDThread" })
  {
    const std::string command = std::string("ZYL_TEST_DIGEST=1 VTK_SMP_MAX_THREADS=4 ") +
      "VTK_SMP_BACKEND_IN_USE=" + backend + " '" + testing::internal::GetArgvs()[0] +
      "' --gtest_filter=AMRExtract.PrintDigest 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    char line[512];
    while (std::fgets(line, sizeof(line), pipe))
    {
      char digest[64];
      int threads = 0;
      if (std::sscanf(line, "digest %63s threads %d", digest, &threads) == 2)
      {
        digests.emplace_back(digest);
        RecordProperty(backend, threads);
      }
    }
    EXPECT_EQ(pclose(pipe), 0);
  }
  ASSERT_EQ(digests.size(), 2u);
  EXPECT_EQ(digests[0], digests[1]);
}

//--------------------------------------------------------------------------------------------------
// The tables hold what is there, not parts x blocks.
TEST(AMRExtract, ManyPartsInManyBlocks)
{
  constexpr int parts = 1000;
  Grids levels(1);
  for (int b = 0; b < 4000; ++b)
  {
    auto grid = zylMakeGrid(4, 4, 4, 4.0 * b);
    zylAddCells<vtkIntArray>(grid, "part", [b](int i) { return (i + 64 * b) % parts; });
    levels[0].push_back(grid);
  }
  const Result result = Extract(zylMakeAMR(levels));
  ASSERT_EQ(result.Cells(), std::vector<vtkIdType>(parts, 256));
  for (int p = 0; p < parts; ++p)
  {
    ASSERT_EQ(result.Part(p)->GetNumberOfPoints(), 256 * 8);
  }
}

//--------------------------------------------------------------------------------------------------
TEST(BlockParts, WholeBlocksConnectLikeSplitOnes)
{
  for (const auto& size : { std::vector<int>{ 4, 3, 5 }, { 4, 3, 1 }, { 1, 3, 5 }, { 1, 1, 2 } })
  {
    const zylBlockShape shape(size[0], size[1], size[2]);
    const int cells = shape.NumberOfCells();
    std::vector<int> whole(cells * shape.CornerCount());
    zylConnectWhole(shape, 100, whole.data());
    zylBlockParts parts;
    parts.Parts.resize(1);
    parts.Parts[0].CellCount = cells;
    for (int i = 0; i < cells; ++i)
    {
      parts.Cells.push_back(i);
    }
    std::vector<int> points;
    std::vector<int> split(whole.size());
    zylBlockSplitter splitter;
    splitter.Connect(shape, parts, parts.Parts[0], 100, points, split.data());
    EXPECT_EQ(whole, split);
    EXPECT_EQ(static_cast<int>(points.size()), shape.NumberOfPoints());
  }
  EXPECT_EQ(zylBlockShape(0, 3, 3).NumberOfCells(), 0);
}
