#include "zylDataSet.h"

#include "zylArrayInformation.h"
#include "zylCore.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTimeController.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include <vtkCellType.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkSMPTools.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkUnstructuredGrid.h>

namespace {
using Ids = std::vector<unsigned int>;

std::vector<std::string> ChainOf(zylDataSet* data)
{
  std::vector<std::string> names;
  for (vtkSMProxy* proxy = data->GetOutput(); proxy != data->GetProxy();
       proxy = vtkSMPropertyHelper(proxy, "Input").GetAsProxy(0))
  {
    names.insert(names.begin(), proxy->GetXMLName());
  }
  return names;
}
} // namespace

TEST(zylDataSet, NumbersAndNamesTheBlocks)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeTree()));
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0, 1, 2, 3, 4, 7, 8 }));
  EXPECT_EQ(data->GetChildren(0), Ids({ 1, 2, 7, 8 }));
  EXPECT_EQ(data->GetChildren(2), Ids({ 3, 4 }));
  EXPECT_EQ(data->GetParent(3), 2u);
  EXPECT_EQ(data->GetParent(0), 0xFFFFFFFFu);
  EXPECT_EQ(data->GetParent(99), 0xFFFFFFFFu);
  EXPECT_TRUE(data->GetChildren(99).empty());

  zylMultiBlockTree* root = data->GetMultiBlockTree();
  EXPECT_EQ(root->GetBlockName(), "root");
  EXPECT_EQ(root->FindChildWithBlockIndex(7)->GetBlockName(), "Block7");
  EXPECT_TRUE(root->FindChildWithBlockIndex(7)->PointArrays.empty());
  EXPECT_TRUE(root->FindChildWithBlockIndex(5)->GetIsPiece());
  EXPECT_FALSE(root->FindChildWithBlockIndex(4)->GetIsPiece());
  EXPECT_EQ(root->FindChildWithBlockName("A")->GetBlockIndex(), 1u);
  EXPECT_EQ(root->FindChildWithBlockName("a"), nullptr);

  EXPECT_EQ(data->GetBlockMap().at("A"), 8u);
  EXPECT_EQ(data->GetBlockNameToIDsMap().at("A"), Ids({ 1, 8 }));
  EXPECT_EQ(data->GetBlockNameToIDsMap().at("P"), Ids({ 4 }));
  EXPECT_EQ(data->GetBlockNameToIDsMap().count("G"), 0u);
  EXPECT_EQ(data->GetNumberOfBlocks(), 6u); // the two blocks named A are one entry

  double bounds[6];
  EXPECT_TRUE(data->GetBounds(bounds));
  EXPECT_EQ(bounds[1], 6.0);
  const struct
  {
    unsigned int Block;
    double Low, High;
  } extents[] = { { 0, 0.0, 6.0 }, { 1, 0.0, 1.0 }, { 2, 1.0, 4.0 }, { 4, 2.0, 4.0 },
    { 6, 3.0, 4.0 }, { 7, 1.0, -1.0 } };
  for (const auto& extent : extents)
  {
    const zylMultiBlockTree* node = root->FindChildWithBlockIndex(extent.Block);
    EXPECT_EQ(node->GetBounds(bounds), extent.Low < extent.High) << extent.Block;
    EXPECT_EQ(bounds[0], extent.Low) << extent.Block;
    EXPECT_EQ(bounds[1], extent.High) << extent.Block;
  }
  EXPECT_EQ(data->GetNumberOfCells(), 5 * 8);
  EXPECT_EQ(data->GetNumberOfPoints(), 5 * 27);
}

TEST(zylDataSet, DescribesTheArrays)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeTree()));
  EXPECT_EQ(data->GetPointArrayNames(), std::vector<std::string>({ "pressure", "velocity" }));
  EXPECT_EQ(data->GetCellArrayNames(8), std::vector<std::string>({ "quality" }));
  EXPECT_EQ(data->GetNumberOfPointArrays(7), 0u);
  double range[2];
  data->GetPointArrayInformation(0)->GetComponentRange(0, range); // the root has the union
  EXPECT_EQ(range[0], 0.0);
  EXPECT_EQ(range[1], 6.0);
  zylArrayInformation* velocity = data->GetPointArrayInformation(1, 8);
  EXPECT_EQ(velocity->GetNumberOfComponents(), 3u);
  velocity->GetComponentRange(1, range);
  EXPECT_EQ(range[0], -5.0);
  EXPECT_EQ(range[1], -4.0);
  velocity->GetComponentRange(3, range);
  EXPECT_DOUBLE_EQ(range[0], 4.0);
  EXPECT_DOUBLE_EQ(range[1], std::sqrt(27.0));

  zylTestLog log;
  velocity->GetComponentRange(4, range);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "Component 4 out of valid range [0, 4]"));
  EXPECT_EQ(data->GetPointArrayInformation(0, 99), nullptr);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "No block at index 99 found."));
  EXPECT_EQ(data->GetPointArrayInformation(2, 8), nullptr);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "Index 2 is an invalid point array index."));
  EXPECT_EQ(data->GetCellArrayInformation(1), nullptr);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "Index 1 is an invalid cell array index."));

  const std::string text =
    zylConsole([&] { data->GetMultiBlockTree()->FindChildWithBlockIndex(1)->Print("  "); });
  EXPECT_EQ(text,
    "  Block 1: A\n    Point data arrays:\n      pressure: (1) - [0, 1], \n"
    "      velocity: (3) - [0, 1], [0, 1], [0, 1], [0, 1.73205]\n"
    "    Cell data arrays:\n      quality: (1) - [0, 7], \n");
}

TEST(zylDataSet, ConnectsTheStagesThatAreOn)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
  using Names = std::vector<std::string>;
  EXPECT_EQ(ChainOf(data), Names({ "ForceTime", "PassThrough" }));
  auto* settings = data->GetProperties();
  settings->Set("ThresholdDataSet", true);
  settings->Set("ThresholdVariable", "pressure");
  settings->Set("ThresholdRange", 0, 0.4);
  settings->Set("ThresholdRange", 1, 1.1);
  settings->Set("DistributeDataSet", true);
  settings->Set("InterpolateCellDataToPointData", true);
  data->Update();
  EXPECT_EQ(ChainOf(data),
    Names(
      { "ForceTime", "Threshold", "RedistributeDataSet", "CellDataToPointData", "PassThrough" }));
  EXPECT_EQ(data->GetNumberOfCells(), 4); // x in [0.5, 1]
  EXPECT_EQ(
    data->GetPointArrayNames(), std::vector<std::string>({ "pressure", "quality", "velocity" }));
  settings->Set("ThresholdDataSet", false);
  settings->Set("DistributeDataSet", false);
  settings->Set("InterpolateCellDataToPointData", false);
  data->Update();
  EXPECT_EQ(ChainOf(data), Names({ "ForceTime", "PassThrough" }));
  EXPECT_EQ(data->GetNumberOfCells(), 16);
}

TEST(zylDataSet, GroupsSimpleData)
{
  const std::string folder = zylTestData::MakeFolder();
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(
    data->LoadFromFile({ zylTestData::Write(zylTestData::MakeCube(0, 0, 0), folder + "/a.vtu") }));
  EXPECT_EQ(ChainOf(data)[1], "GroupDataSets");
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0, 1 }));
  EXPECT_EQ(data->GetNumberOfCells(), 8);
  EXPECT_EQ(data->GetFileNames(), std::vector<std::string>({ folder + "/a.vtu" }));
  EXPECT_TRUE(data->GetTimestepValues().empty());
  EXPECT_TRUE(data->GetBlockCentroids().empty());
  EXPECT_EQ(data->GetDataGroupingString(), "");
}

TEST(zylDataSet, TellsCellTypes)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeTree()));
  EXPECT_EQ(data->GetCellType(3), VTK_HEXAHEDRON);
  EXPECT_EQ(data->GetCellType(7), -1);
  EXPECT_EQ(data->GetCellType(99), -1);
  const auto types = data->GetCellTypes();
  ASSERT_EQ(types.size(), 9u);
  EXPECT_EQ(types[0], -1);
  EXPECT_EQ(types[1], VTK_HEXAHEDRON);
  EXPECT_EQ(types[6], VTK_HEXAHEDRON);
  EXPECT_EQ(types[8], VTK_HEXAHEDRON);
}

TEST(zylDataSet, TakesNewDataAtTheSameTime)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
  vtkSMSourceProxy* producer = data->GetProxy();
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(5)));
  EXPECT_EQ(data->GetProxy(), producer);
  EXPECT_EQ(data->GetBlockIDs().size(), 6u);
  EXPECT_FALSE(data->InitializeFromVTKDataSet(nullptr));
  EXPECT_EQ(data->GetBlockIDs().size(), 6u);
  ASSERT_TRUE(data->InitializeFromVTKDataSet(vtkNew<vtkMultiBlockDataSet>())); // no blocks
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0 }));
  double bounds[6];
  EXPECT_FALSE(data->GetBounds(bounds));
  EXPECT_GT(bounds[0], bounds[1]);
}

class zylDataSetBadInput : public ::testing::Test
{
protected:
  void SetUp() override
  {
    this->Folder = zylTestData::MakeFolder();
    this->Good = zylTestData::Write(zylTestData::MakeRow(3), this->Folder + "/good.vtm");
    ASSERT_TRUE(this->Data->LoadFromFile({ this->Good }));
  }
  void TearDown() override
  {
    // Whatever failed in between, the good data are still there.
    EXPECT_EQ(this->Data->GetNumberOfCells(), 24);
    EXPECT_EQ(this->Data->GetFileNames(), std::vector<std::string>({ this->Good }));
  }
  std::string Make(const std::string& name, const std::string& content)
  {
    std::ofstream(this->Folder + "/" + name) << content;
    return this->Folder + "/" + name;
  }
  void ExpectFailure(const std::string& file, const std::string& message)
  {
    zylTestLog log;
    EXPECT_FALSE(this->Data->LoadFromFile({ file })) << file;
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, message)) << log.Dump();
  }

  vtkNew<zylDataSet> Data;
  std::string Folder;
  std::string Good;
};

TEST_F(zylDataSetBadInput, FilesThatCannotBeRead)
{
  this->ExpectFailure(
    this->Folder + "/none.vtm", "File not readable " + this->Folder + "/none.vtm");
  this->ExpectFailure(this->Make("a.unknown", "hello"), "File not readable. No reader found for ");
  this->ExpectFailure(this->Make("empty.vtm", ""), "");
  this->ExpectFailure(this->Make("garbage.vtu", "\x01\x02 not xml"), "");
  this->ExpectFailure(this->Folder, "");
  std::ostringstream good;
  good << std::ifstream(this->Folder + "/good/good_0.vtu").rdbuf();
  this->ExpectFailure(
    this->Make("cut.vtu", good.str().substr(0, good.str().size() / 2)), "Failed to read ");
  this->ExpectFailure(this->Make("throws.gltf", "42"), "Failed to read ");
  this->ExpectFailure(this->Make("throws.xmf", "no xml"), "Failed to read ");
  zylTestLog log;
  EXPECT_FALSE(this->Data->LoadFromFile({}));
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "NewDataSet called with no file names"));
}

TEST_F(zylDataSetBadInput, FilesOfDifferentKinds)
{
  zylTestLog log;
  const std::string other = this->Folder + "/good/good_0.vtu";
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good, other }));
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR,
    "Files of different kinds are no dataset: " + this->Good + " and " + other))
    << log.Dump();
  vtkNew<zylDataSet> series;
  EXPECT_TRUE(series->LoadFromFile({ other, this->Folder + "/good/good_1.vtu" }));
}

TEST_F(zylDataSetBadInput, UnknownReader)
{
  zylTestLog log;
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good }, "sources", "NoSuchReader"));
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good }, "", ""));
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_ERROR, "Failed to create new dataset"), 2);
}

// A plain netCDF grid: of the readers of its extension the last one asked reads it.
TEST(zylDataSet, TriesAllReadersOfAKindOfFile)
{
  const std::string file = zylTestData::MakeFolder() + "/grid.nc";
  std::ofstream stream(file, std::ios::binary);
  const auto number = [&stream](unsigned int value) {
    for (int shift = 24; shift >= 0; shift -= 8)
    {
      stream.put(static_cast<char>(value >> shift));
    }
  };
  const auto name = [&](char letter) {
    number(1);
    stream << letter << std::string(3, '\0');
  };
  const auto variable = [&](char letter, std::vector<unsigned int> dimensions, unsigned int bytes,
                          unsigned int offset) {
    name(letter);
    number(static_cast<unsigned int>(dimensions.size()));
    std::for_each(dimensions.begin(), dimensions.end(), number);
    number(0);
    number(0); // no attributes
    number(4); // int
    number(bytes);
    number(offset);
  };
  stream << "CDF" << '\1';
  number(0);  // records
  number(10); // dimensions
  number(2);
  name('y');
  number(3);
  name('x');
  number(4);
  number(0);
  number(0);  // no attributes
  number(11); // variables
  number(3);
  variable('y', { 0 }, 12, 168);
  variable('x', { 1 }, 16, 180);
  variable('T', { 0, 1 }, 48, 196);
  ASSERT_EQ(stream.tellp(), 168);
  for (const unsigned int count : { 3u, 4u, 12u })
  {
    for (unsigned int i = 0; i < count; ++i)
    {
      number(i);
    }
  }
  stream.close();
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->LoadFromFile({ file }));
  EXPECT_EQ(data->GetNumberOfPoints(), 12);
  EXPECT_TRUE(data->GetReadErrors().empty());
}

TEST_F(zylDataSetBadInput, PartialDataAreReported)
{
  vtkNew<zylDataSet> partial;
  const std::string folder = zylTestData::MakeFolder();
  const std::string file = zylTestData::Write(zylTestData::MakeRow(3), folder + "/part.vtm");
  std::remove((folder + "/part/part_1.vtu").c_str());
  EXPECT_TRUE(partial->LoadFromFile({ file }));
  EXPECT_GE(partial->GetNumberOfCells(), 16);
  ASSERT_FALSE(partial->GetReadErrors().empty());
  EXPECT_TRUE(this->Data->GetReadErrors().empty());
}

TEST_F(zylDataSetBadInput, UseBeforeAnythingIsLoaded)
{
  vtkNew<zylDataSet> empty;
  zylTestLog log;
  empty->Update();
  EXPECT_TRUE(
    log.Has(vtkLogger::VERBOSITY_WARNING, "Update() called when no dataset proxy was set"));
  double bounds[6];
  EXPECT_FALSE(empty->GetBounds(bounds));
  EXPECT_EQ(empty->GetNumberOfPoints(), 0);
  EXPECT_EQ(empty->GetOutput(), nullptr);
  EXPECT_EQ(empty->GetCellType(0), -1);
  EXPECT_TRUE(empty->GetCellTypes().empty());
  EXPECT_TRUE(empty->GetFileNames().empty());
  EXPECT_TRUE(empty->GetPointArrayNames().empty());
  empty->SetDistributeDataSet(true);
  EXPECT_TRUE(empty->GetDistributeDataSet());
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_INFO, "This function has been deprecated. Use "));
}

// The toolkit starts its threads anew in every loop, several of them for every block.
TEST(zylDataSet, ThreadsAreForLargeBlocks)
{
  if (std::getenv("VTK_SMP_BACKEND_IN_USE"))
  {
    GTEST_SKIP() << "the environment has chosen";
  }
  const bool fixed = vtkSMProxyManager::GetVersionMinor() < 11; // when the toolkit was built
  const std::string threaded = fixed ? vtkSMPTools::GetBackend() : "STDThread";
  const std::string alone = fixed ? threaded : "Sequential";
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(1, 40)));
  EXPECT_EQ(threaded, vtkSMPTools::GetBackend());
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(3)));
  EXPECT_EQ(alone, vtkSMPTools::GetBackend());
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(1, 40)));
  EXPECT_EQ(threaded, vtkSMPTools::GetBackend());
}

TEST(zylDataSetSeries, SurvivesAFileThatVanishes)
{
  const double steps[] = { 1.0, 3.0 };
  const std::string folder = zylTestData::MakeFolder();
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->LoadFromFile({ zylTestData::WriteSeries(folder, steps, 2) }));
  EXPECT_TRUE(data->GetReadErrors().empty());
  std::remove((folder + "/step_1.vtm").c_str());
  zylTimeController::GetInstance()->GoToTime(3.0);
  EXPECT_FALSE(data->GetReadErrors().empty());
  zylTimeController::GetInstance()->GoToTime(1.0);
  EXPECT_TRUE(data->GetReadErrors().empty());
  EXPECT_EQ(data->GetNumberOfCells(), 16);
  double range[2];
  data->GetPointArrayInformation(0)->GetComponentRange(0, range);
  EXPECT_EQ(range[0], 1.0);
}

TEST(zylDataSetOddData, EmptyBlocksMissingArraysAndNaN)
{
  auto row = zylTestData::MakeRow(3);
  auto* first = vtkUnstructuredGrid::SafeDownCast(row->GetBlock(0));
  first->GetPointData()->GetArray("pressure")->SetComponent(0, 0, std::nan(""));
  vtkUnstructuredGrid::SafeDownCast(row->GetBlock(1))->GetPointData()->Initialize();
  row->SetBlock(2, vtkNew<vtkUnstructuredGrid>());
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(row));
  EXPECT_EQ(data->GetNumberOfCells(), 16);
  EXPECT_EQ(data->GetNumberOfPointArrays(2), 0u);
  EXPECT_EQ(data->GetNumberOfPointArrays(3), 0u);
  double range[2];
  data->GetPointArrayInformation(0, 1)->GetComponentRange(0, range);
  EXPECT_EQ(range[1], 1.0); // numbers count, NaN does not
}

// Last: it ends the session.
TEST(zylDataSetEnd, SurvivesTheEndOfTheSession)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
  zylCore::GetInstance()->Disconnect();
  data->Update();
  EXPECT_FALSE(data->LoadFromFile({ "anything.vtm" }));
  EXPECT_FALSE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
  EXPECT_EQ(data->GetCellType(1), -1);
  zylTimeController::GetInstance()->GoToTime(5.0);
}
