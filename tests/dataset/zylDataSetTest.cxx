#include "zylDataSet.h"

#include "zylMultiBlockTree.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <cstdlib>

#include <vtkCellType.h>
#include <vtkLogger.h>
#include <vtkSMPTools.h>
#include <vtkSMProxyManager.h>

namespace {
using testing::_;
using testing::DoubleEq;
using testing::ElementsAre;
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
  const auto data = zylLoad(zylTestData::MakeTree());
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

  EXPECT_EQ(zylBounds(data), (zylValues{ 0, 6, 0, 1, 0, 1 }));
  const std::pair<unsigned int, zylValues> extents[] = { { 0, { 0, 6 } }, { 1, { 0, 1 } },
    { 2, { 1, 4 } }, { 4, { 2, 4 } }, { 6, { 3, 4 } } };
  for (const auto& [block, extent] : extents)
  {
    zylValues bounds = zylBounds(root->FindChildWithBlockIndex(block));
    bounds.resize(2);
    EXPECT_EQ(bounds, extent) << block;
  }
  double bounds[6];
  EXPECT_FALSE(root->FindChildWithBlockIndex(7)->GetBounds(bounds)); // null
  EXPECT_THAT(bounds, ElementsAre(1, -1, _, _, _, _));
  EXPECT_EQ(data->GetNumberOfCells(), 5 * 8);
  EXPECT_EQ(data->GetNumberOfPoints(), 5 * 27);
}

TEST(zylDataSet, DescribesTheArrays)
{
  const auto data = zylLoad(zylTestData::MakeTree());
  EXPECT_EQ(data->GetPointArrayNames(), std::vector<std::string>({ "pressure", "velocity" }));
  EXPECT_EQ(data->GetCellArrayNames(8), std::vector<std::string>({ "quality" }));
  EXPECT_EQ(data->GetNumberOfPointArrays(7), 0u);
  // the root has the union
  EXPECT_EQ(zylRange(data->GetPointArrayInformation(0)), (zylValues{ 0, 6 }));
  zylArrayInformation* velocity = data->GetPointArrayInformation(1, 8);
  EXPECT_EQ(velocity->GetNumberOfComponents(), 3u);
  EXPECT_EQ(zylRange(velocity, 1), (zylValues{ -5, -4 }));
  EXPECT_THAT(zylRange(velocity, 3), ElementsAre(DoubleEq(4.0), DoubleEq(std::sqrt(27.0))));

  zylTestLog log;
  zylRange(velocity, 4);
  EXPECT_TRUE(log.HasError("Component 4 out of valid range [0, 4]"));
  EXPECT_EQ(data->GetPointArrayInformation(0, 99), nullptr);
  EXPECT_TRUE(log.HasWarning("No block at index 99 found."));
  EXPECT_EQ(data->GetPointArrayInformation(2, 8), nullptr);
  EXPECT_TRUE(log.HasWarning("Index 2 is an invalid point array index."));
  EXPECT_EQ(data->GetCellArrayInformation(1), nullptr);
  EXPECT_TRUE(log.HasWarning("Index 1 is an invalid cell array index."));

  const std::string text =
    zylConsole([&] { data->GetMultiBlockTree()->FindChildWithBlockIndex(1)->Print("  "); });
  EXPECT_EQ(text,
    "  Block 1: A\n    Point data arrays:\n      pressure: (1) - [0, 1], \n"
    "      velocity: (3) - [0, 1], [0, 1], [0, 1], [0, 1.73205]\n"
    "    Cell data arrays:\n      quality: (1) - [0, 7], \n");
}

TEST(zylDataSet, ConnectsTheStagesThatAreOn)
{
  const auto data = zylLoad(zylTestData::MakeRow(2));
  using Names = std::vector<std::string>;
  EXPECT_EQ(ChainOf(data), Names({ "ForceTime", "PassThrough" }));
  auto* settings = data->GetProperties();
  zylSet(settings, "ThresholdDataSet", true, "ThresholdVariable", "pressure", "ThresholdRange",
    zylValues{ 0.4, 1.1 }, "DistributeDataSet", true, "InterpolateCellDataToPointData", true);
  data->Update();
  EXPECT_EQ(ChainOf(data),
    Names(
      { "ForceTime", "Threshold", "RedistributeDataSet", "CellDataToPointData", "PassThrough" }));
  EXPECT_EQ(data->GetNumberOfCells(), 4); // x in [0.5, 1]
  EXPECT_EQ(
    data->GetPointArrayNames(), std::vector<std::string>({ "pressure", "quality", "velocity" }));
  zylSet(settings, "ThresholdDataSet", false, "DistributeDataSet", false,
    "InterpolateCellDataToPointData", false);
  data->Update();
  EXPECT_EQ(ChainOf(data), Names({ "ForceTime", "PassThrough" }));
  EXPECT_EQ(data->GetNumberOfCells(), 16);
}

TEST(zylDataSet, GroupsSimpleData)
{
  const std::string folder = zylTestData::MakeFolder();
  const auto data = zylLoad(zylTestData::Write(zylTestData::MakeCube(0, 0, 0), folder + "/a.vtu"));
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
  const auto data = zylLoad(zylTestData::MakeTree());
  const int hexahedra = VTK_HEXAHEDRON;
  EXPECT_EQ(data->GetCellType(3), hexahedra);
  EXPECT_EQ(data->GetCellType(7), -1);
  EXPECT_EQ(data->GetCellType(99), -1);
  EXPECT_THAT(data->GetCellTypes(),
    ElementsAre(-1, hexahedra, -1, hexahedra, -1, hexahedra, hexahedra, -1, hexahedra));
}

TEST(zylDataSet, TakesNewDataAtTheSameTime)
{
  const auto data = zylLoad(zylTestData::MakeRow(2));
  vtkSMSourceProxy* producer = data->GetProxy();
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(5)));
  EXPECT_EQ(data->GetProxy(), producer);
  EXPECT_EQ(data->GetBlockIDs().size(), 6u);
  EXPECT_FALSE(data->InitializeFromVTKDataSet(nullptr));
  EXPECT_EQ(data->GetBlockIDs().size(), 6u);
  ASSERT_TRUE(data->InitializeFromVTKDataSet(vtkNew<vtkMultiBlockDataSet>())); // no blocks
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0 }));
  EXPECT_TRUE(zylBounds(data).empty());
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
    EXPECT_TRUE(log.HasError(message));
  }

  vtkNew<zylDataSet> Data;
  std::string Folder;
  std::string Good;
};

TEST_F(zylDataSetBadInput, FilesThatCannotBeRead)
{
  const std::string none = this->Folder + "/none.vtm";
  this->ExpectFailure(none, "File not readable " + none);
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
  EXPECT_TRUE(log.HasError("NewDataSet called with no file names"));
}

TEST_F(zylDataSetBadInput, FilesOfDifferentKinds)
{
  zylTestLog log;
  const std::string other = this->Folder + "/good/good_0.vtu";
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good, other }));
  EXPECT_TRUE(
    log.HasError("Files of different kinds are no dataset: " + this->Good + " and " + other));
  vtkNew<zylDataSet> series;
  EXPECT_TRUE(series->LoadFromFile({ other, this->Folder + "/good/good_1.vtu" }));
}

TEST_F(zylDataSetBadInput, UnknownReader)
{
  zylTestLog log;
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good }, "sources", "NoSuchReader"));
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Good }, "", ""));
  EXPECT_EQ(log.CountErrors("Failed to create new dataset"), 2);
}

// A plain netCDF grid: of the readers of its extension the last one asked reads it.
TEST(zylDataSet, TriesAllReadersOfAKindOfFile)
{
  std::string bytes("CDF\1", 4);
  const auto put = [&bytes](std::initializer_list<unsigned int> words) {
    for (const unsigned int word : words)
    {
      for (const int shift : { 24, 16, 8, 0 })
      {
        bytes.push_back(static_cast<char>(word >> shift));
      }
    }
  };
  constexpr unsigned int x = 'x' << 24, y = 'y' << 24, T = 'T' << 24; // names of one letter
  put({ 0, 10, 2, 1, y, 3, 1, x, 4, 0, 0 }); // no records; dimensions: name, length; no attributes
  put({ 11, 3 });                            // variables of integers: name, dimensions, ...
  put({ 1, y, 1, 0, 0, 0, 4, 12, 168 });     // ... no attributes, type, bytes, place
  put({ 1, x, 1, 1, 0, 0, 4, 16, 180 });
  put({ 1, T, 2, 0, 1, 0, 0, 4, 48, 196 });
  ASSERT_EQ(bytes.size(), 168u);
  put({ 0, 1, 2, 0, 1, 2, 3, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 });
  const std::string file = zylTestData::MakeFolder() + "/grid.nc";
  std::ofstream(file, std::ios::binary) << bytes;
  const auto data = zylLoad(file);
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
  EXPECT_TRUE(log.HasWarning("Update() called when no dataset proxy was set"));
  EXPECT_TRUE(zylBounds(empty).empty());
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
  const auto data = zylLoad(zylTestData::MakeRow(1, 40));
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
  const auto data = zylLoad(zylTestData::WriteSeries(folder, steps, 2));
  EXPECT_TRUE(data->GetReadErrors().empty());
  std::remove((folder + "/step_1.vtm").c_str());
  zylTimeController::GetInstance()->GoToTime(3.0);
  EXPECT_FALSE(data->GetReadErrors().empty());
  zylTimeController::GetInstance()->GoToTime(1.0);
  EXPECT_TRUE(data->GetReadErrors().empty());
  EXPECT_EQ(data->GetNumberOfCells(), 16);
  EXPECT_EQ(zylRange(data->GetPointArrayInformation(0))[0], 1.0);
}

TEST(zylDataSetOddData, EmptyBlocksMissingArraysAndNaN)
{
  auto row = zylTestData::MakeRow(3);
  auto* first = vtkUnstructuredGrid::SafeDownCast(row->GetBlock(0));
  first->GetPointData()->GetArray("pressure")->SetComponent(0, 0, std::nan(""));
  vtkUnstructuredGrid::SafeDownCast(row->GetBlock(1))->GetPointData()->Initialize();
  row->SetBlock(2, vtkNew<vtkUnstructuredGrid>());
  const auto data = zylLoad(row);
  EXPECT_EQ(data->GetNumberOfCells(), 16);
  EXPECT_EQ(data->GetNumberOfPointArrays(2), 0u);
  EXPECT_EQ(data->GetNumberOfPointArrays(3), 0u);
  EXPECT_EQ(zylRange(data->GetPointArrayInformation(0, 1))[1], 1.0); // numbers count, NaN does not
}
