// Data that are no multiblock dataset of datasets, on servers with and without the plugin.
#include "zylMultiBlockTree.h"
#include "zylTest.h"
#include "zylTestServer.h"

#include <cstdlib>
#include <filesystem>

#include <vtkAMRBox.h>
#include <vtkCellType.h>
#include <vtkDataSetAttributes.h>
#include <vtkOverlappingAMR.h>
#include <vtkTable.h>
#include <vtkUniformGrid.h>
#include <vtkXMLUniformGridAMRWriter.h>

namespace {
using Ids = std::vector<unsigned int>;

struct Configuration
{
  const char* Name;
  int Ranks;
  const char* Plugins;
};

class zylDataServer : public testing::TestWithParam<Configuration>
{
protected:
  void SetUp() override
  {
    this->Server = zylTestServer::Connect(GetParam().Ranks, GetParam().Plugins);
    if (!this->Server)
    {
      GTEST_SKIP() << "no server here";
    }
    this->Data = vtkSmartPointer<zylDataSet>::New();
  }
  void TearDown() override
  {
    this->Data = nullptr;
    zylCore::GetInstance()->Disconnect();
  }

  void CheckTables();
  void CheckATableAmongGrids();
  void CheckAMR();
  void CheckACollectionOfParts();

  std::string Write(const char* name, const char* text)
  {
    std::ofstream(this->Folder + "/" + name) << text;
    return this->Folder + "/" + name;
  }

  std::unique_ptr<zylTestServer> Server;
  vtkSmartPointer<zylDataSet> Data;
  std::string Folder = zylTestData::MakeFolder();
};

// Two levels: 4 x 4 x 4 cells of which 2 x 2 x 2 are covered by 4 x 4 x 4 finer ones.
std::string WriteAMR(const std::string& path)
{
  vtkNew<vtkOverlappingAMR> amr;
  const int counts[2] = { 1, 1 };
  const double origin[3] = { 0.0, 0.0, 0.0 };
  amr->Initialize(2, counts);
  amr->SetOrigin(origin);
  amr->SetGridDescription(VTK_XYZ_GRID);
  for (unsigned int level = 0; level < 2; ++level)
  {
    const double spacing[3] = { 1.0 / (level + 1), 1.0 / (level + 1), 1.0 / (level + 1) };
    amr->SetSpacing(level, spacing);
    amr->SetRefinementRatio(level, 2);
    amr->SetAMRBox(level, 0, vtkAMRBox(0, 0, 0, 3, 3, 3));
    vtkNew<vtkUniformGrid> box;
    box->SetOrigin(origin);
    box->SetSpacing(spacing);
    box->SetDimensions(5, 5, 5);
    zylTestData::AddArray(box->GetCellData(), "value", 1, 64, level);
    amr->SetDataSet(level, 0, box);
  }
  amr->GenerateParentChildInformation();
  vtkNew<vtkXMLUniformGridAMRWriter> writer;
  writer->SetInputData(amr);
  writer->SetFileName(path.c_str());
  writer->Write();
  return path;
}
} // namespace

// In one session: servers take long to start.
TEST_P(zylDataServer, ShowsWhatCanBeShown)
{
  this->CheckTables();
  this->CheckATableAmongGrids();
  this->CheckAMR();
  this->CheckACollectionOfParts();
}

void zylDataServer::CheckTables()
{
  ASSERT_TRUE(this->Data->LoadFromFile(
    { this->Write("points.csv", "x,y,z,p\n0,0,0,1\n1,2,3,4\n5,6,7,8\n") }));
  EXPECT_EQ(this->Data->GetNumberOfPoints(), 3);
  EXPECT_GT(zylCountSurfaceCells(this->Data), 0);
  EXPECT_EQ(this->Data->GetPointArrayNames(1), std::vector<std::string>({ "p" }));
  ASSERT_TRUE(this->Data->LoadFromFile({ this->Write("force.csv", "t,f\n0,1\n1,2\n") }));
  zylMultiBlockTree* table = this->Data->GetMultiBlockTree()->GetChild(0);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->GetBlockName(), "Block1");
  EXPECT_EQ(table->GetKind(), "table");
  EXPECT_EQ(table->GetNumberOfRows(), 2);
  EXPECT_EQ(table->RowArrays.size(), 2u);
  EXPECT_EQ(zylCountSurfaceCells(this->Data), 0);
  EXPECT_EQ(this->Data->GetReadErrors().size(), 1u);
}

void zylDataServer::CheckATableAmongGrids()
{
  auto row = zylTestData::MakeRow(3);
  vtkNew<vtkTable> table;
  zylTestData::AddArray(table->GetRowData(), "force", 1, 1, 1.0);
  row->SetBlock(1, table);
  ASSERT_TRUE(this->Data->LoadFromFile({ zylTestData::Write(row, this->Folder + "/mixed.vtm") }));
  EXPECT_EQ(this->Data->GetBlockIDs(), Ids({ 0, 1, 2, 3 }));
  EXPECT_EQ(this->Data->GetMultiBlockTree()->GetChild(1)->GetKind(), "table");
  EXPECT_EQ(this->Data->GetMultiBlockTree()->GetChild(1)->GetNumberOfRows(), 1);
  EXPECT_EQ(this->Data->GetMultiBlockTree()->GetChild(2)->GetKind(), "unstructured grid");
  EXPECT_EQ(zylCountSurfaceCells(this->Data), 2 * 24);
  EXPECT_EQ(this->Data->GetCellType(3), VTK_HEXAHEDRON);
}

void zylDataServer::CheckAMR()
{
  ASSERT_TRUE(this->Data->LoadFromFile({ WriteAMR(this->Folder + "/two.vthb") }));
  vtkSMPropertyHelper(this->Data->GetProxy(), "DefaultNumberOfLevels").Set(2);
  this->Data->GetProxy()->UpdateVTKObjects();
  this->Data->Update();
  EXPECT_EQ(this->Data->GetNumberOfCells(), 2 * 64);
  // The corner that is covered shows its fine cells only, and the faces between the levels are
  // drawn once or twice.
  EXPECT_GE(zylCountSurfaceCells(this->Data), 6 * 16 - 3 * 4 + 3 * 4 + 6 * 16 - 3 * 16);
  EXPECT_LE(zylCountSurfaceCells(this->Data), 6 * 16 - 3 * 4 + 3 * 4 + 6 * 16);
  const Ids blocks = this->Data->GetBlockIDs();
  EXPECT_EQ(blocks.size(), 3u);
  EXPECT_EQ(this->Data->GetCellArrayNames(blocks[2])[0], "value");
  EXPECT_EQ(this->Data->GetCellType(blocks[2]), VTK_VOXEL);
  EXPECT_TRUE(this->Data->GetReadErrors().empty());
}

void zylDataServer::CheckACollectionOfParts()
{
  const char* folder = std::getenv("ZYL_TEST_DATA");
  const std::string file = folder ? std::string(folder) + "/disk/disk_out_ref.ex2" : "";
  if (file.empty() || !std::filesystem::exists(file))
  {
    return;
  }
  zylTestLog log;
  ASSERT_TRUE(this->Data->LoadFromFile({ file }));
  EXPECT_EQ(this->Data->GetNumberOfCells(), 7472);
  EXPECT_GT(zylCountSurfaceCells(this->Data), 1000);
  bool found = false;
  for (const unsigned int block : this->Data->GetBlockIDs())
  {
    const bool leaf = this->Data->GetChildren(block).empty() ||
      this->Data->GetMultiBlockTree()->FindChildWithBlockIndex(block)->IsLeaf();
    if (leaf && this->Data->GetNumberOfPointArrays(block) > 0)
    {
      found = true;
      EXPECT_EQ(this->Data->GetCellType(block), VTK_HEXAHEDRON) << block;
    }
  }
  EXPECT_TRUE(found);
  EXPECT_FALSE(log.HasError());
}

INSTANTIATE_TEST_SUITE_P(Servers, zylDataServer,
  testing::Values(Configuration{ "Plain", 1, "" }, Configuration{ "One", 1, ZYL_PLUGIN_DIRECTORY },
    Configuration{ "Two", 2, ZYL_PLUGIN_DIRECTORY }),
  [](const auto& info) { return info.param.Name; });
