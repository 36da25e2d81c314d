// Data that are no multiblock dataset of datasets: tables, graphs, AMR, partitioned collections.
#include "zylMultiBlockTree.h"
#include "zylTest.h"

#include <vtkAMRBox.h>
#include <vtkCellType.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSetAttributes.h>
#include <vtkInformation.h>
#include <vtkMolecule.h>
#include <vtkMutableUndirectedGraph.h>
#include <vtkNonOverlappingAMR.h>
#include <vtkOverlappingAMR.h>
#include <vtkPVTrivialProducer.h>
#include <vtkPartitionedDataSet.h>
#include <vtkPartitionedDataSetCollection.h>
#include <vtkStringArray.h>
#include <vtkStructuredData.h>
#include <vtkTable.h>
#include <vtkUniformGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkXMLUniformGridAMRWriter.h>

namespace {
using Ids = std::vector<unsigned int>;

// Load any data object of this process.
bool Load(zylDataSet* data, vtkDataObject* object)
{
  if (!data->GetProxy() && !data->LoadFromFile({}, "sources", "PVTrivialProducer"))
  {
    return false;
  }
  auto* producer = vtkPVTrivialProducer::SafeDownCast(data->GetProxy()->GetClientSideObject());
  producer->SetOutput(object, 0.0);
  data->GetProxy()->MarkModified(data->GetProxy());
  data->Update();
  return true;
}

std::string KindOf(zylDataSet* data, unsigned int block)
{
  return data->GetMultiBlockTree()->FindChildWithBlockIndex(block)->GetKind();
}

vtkSmartPointer<vtkTable> MakeTable(std::vector<std::string> columns, int rows)
{
  auto table = vtkSmartPointer<vtkTable>::New();
  for (const std::string& name : columns)
  {
    auto* column = zylTestData::AddArray(table->GetRowData(), name.c_str(), 1, rows);
    for (int i = 0; i < rows; ++i)
    {
      column->SetValue(i, i + 10.0 * table->GetNumberOfColumns());
    }
  }
  return table;
}

vtkSmartPointer<vtkUniformGrid> MakeBox(double spacing, const int cells[3], const double origin[3])
{
  auto box = vtkSmartPointer<vtkUniformGrid>::New();
  box->SetOrigin(origin);
  box->SetSpacing(spacing, spacing, spacing);
  box->SetDimensions(cells[0] + 1, cells[1] + 1, cells[2] + 1);
  zylTestData::AddArray(box->GetCellData(), "value", 1, box->GetNumberOfCells(), 1.0 / spacing);
  return box;
}

// A coarse box of 4 x 4 x 1 cells whose left half, 2 x 4 cells, is covered by a fine box of 4 x 8 x
// 2, marked as the readers mark it.
template <class AMR>
vtkSmartPointer<AMR> MakeLevels()
{
  const double origin[3] = { 0.0, 0.0, 0.0 };
  const int coarse[3] = { 4, 4, 1 };
  const int fine[3] = { 4, 8, 2 };
  auto box = MakeBox(1.0, coarse, origin);
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  for (int i = 0; i < 16; ++i)
  {
    ghosts->InsertNextValue(i % 4 < 2 ? vtkDataSetAttributes::REFINEDCELL : 0);
  }
  box->GetCellData()->AddArray(ghosts);
  auto amr = vtkSmartPointer<AMR>::New();
  const int counts[2] = { 1, 1 };
  amr->Initialize(2, counts);
  amr->SetDataSet(0, 0, box);
  amr->SetDataSet(1, 0, MakeBox(0.5, fine, origin));
  return amr;
}
} // namespace

TEST(zylDataKinds, TablesWithCoordinatesArePoints)
{
  const std::vector<std::vector<std::string>> spatial = { { "x", "y", "z", "p" },
    { "p", "Z [m]", "Y [m]", "X [m]" }, { "Points:0", "Points:1", "p", "Points:2" } };
  for (const auto& columns : spatial)
  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(Load(data, MakeTable(columns, 5)));
    EXPECT_EQ(data->GetNumberOfPoints(), 5);
    EXPECT_EQ(zylCountSurfaceCells(data), 5);
    EXPECT_EQ(data->GetPointArrayNames(1), std::vector<std::string>({ "p" }));
    EXPECT_EQ(KindOf(data, 1), "table");
    EXPECT_TRUE(data->GetReadErrors().empty());
  }
}

TEST(zylDataKinds, OtherTablesAreDescribed)
{
  const std::string file = zylTestData::MakeFolder() + "/probe.csv";
  std::ofstream(file) << "time,force,remark\n0,1.5,a\n1,2.5,b\n2,3.5,c\n";
  vtkNew<zylDataSet> data;
  zylTestLog log;
  ASSERT_TRUE(data->LoadFromFile({ file }));
  zylMultiBlockTree* table = data->GetMultiBlockTree()->GetChild(0);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->GetBlockName(), "Block1");
  EXPECT_EQ(table->GetKind(), "table");
  EXPECT_EQ(table->GetNumberOfRows(), 3);
  ASSERT_EQ(table->RowArrays.size(), 3u);
  EXPECT_EQ(table->RowArrays[1]->GetName(), "force");
  EXPECT_EQ(zylRange(table->RowArrays[1])[1], 3.5);
  EXPECT_EQ(data->GetNumberOfPoints(), 0);
  EXPECT_EQ(zylCountSurfaceCells(data), 0);
  EXPECT_EQ(data->GetCellType(1), -1);
  const std::string message =
    "Nothing can be drawn: a table without coordinate columns (x, y, z) is no geometry";
  EXPECT_EQ(data->GetReadErrors(), std::vector<std::string>({ message }));
  EXPECT_EQ(log.CountWarnings(message), 1) << log.Dump();
}

TEST(zylDataKinds, WhatIsNoDataSetLeavesTheOthersAlone)
{
  auto row = zylTestData::MakeRow(4);
  row->SetBlock(1, MakeTable({ "time", "force" }, 7));
  vtkNew<vtkMutableUndirectedGraph> graph;
  graph->AddVertex();
  row->SetBlock(2, graph);
  vtkNew<vtkMultiBlockDataSet> group;
  group->SetBlock(0, vtkNew<vtkMolecule>());
  group->SetBlock(1, MakeTable({ "x", "y", "z", "load" }, 3));
  row->SetBlock(4, group);
  const auto data = zylLoad(row);
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0, 1, 2, 3, 4, 5, 6, 7 }));
  EXPECT_EQ(data->GetMultiBlockTree()->GetChild(1)->GetBlockName(), "block_2");
  EXPECT_EQ(data->GetMultiBlockTree()->GetChild(1)->GetNumberOfRows(), 7);
  const char* const kinds[] = { "multi block data set", "unstructured grid", "table",
    "undirected graph", "unstructured grid", "multi block data set", "molecule", "table" };
  for (unsigned int i = 0; i < 8; ++i)
  {
    EXPECT_EQ(KindOf(data, i), kinds[i]) << i;
  }
  EXPECT_EQ(data->GetNumberOfCells(), 2 * 8 + 3);
  EXPECT_EQ(zylCountSurfaceCells(data), 2 * 24 + 3);
  EXPECT_EQ(data->GetCellType(4), VTK_HEXAHEDRON);
  EXPECT_EQ(data->GetCellType(2), -1);
  EXPECT_TRUE(data->GetReadErrors().empty());
  // Every stage can take what is left.
  zylSet(data->GetProperties(), "ThresholdDataSet", true, "ThresholdVariable", "pressure",
    "ThresholdRange", zylValues{ 0, 10 }, "InterpolateCellDataToPointData", true,
    "DistributeDataSet", true);
  data->Update();
  EXPECT_EQ(data->GetNumberOfCells(), 2 * 8);
}

template <class AMR>
class zylDataKindsAMR : public ::testing::Test
{
};
using AMRTypes = ::testing::Types<vtkOverlappingAMR, vtkNonOverlappingAMR>;
TYPED_TEST_SUITE(zylDataKindsAMR, AMRTypes);

TYPED_TEST(zylDataKindsAMR, IsDrawnWithoutWhatFinerLevelsCover)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(Load(data, MakeLevels<TypeParam>()));
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0, 1, 3 }));
  EXPECT_EQ(data->GetBlockMap().at("Level 1"), 3u);
  EXPECT_EQ(data->GetCellArrayNames(3), std::vector<std::string>({ "value" }));
  EXPECT_EQ(KindOf(data, 2), "uniform grid");
  EXPECT_EQ(data->GetNumberOfCells(), 16 + 64);
  // The right half of the coarse box, closed or not where the fine one begins, and the fine box.
  const vtkIdType coarse = 2 * 8 + 2 * 2 + 4;
  const vtkIdType fine = 2 * (4 * 8 + 4 * 2 + 8 * 2);
  EXPECT_GE(zylCountSurfaceCells(data), coarse + fine);
  EXPECT_LE(zylCountSurfaceCells(data), coarse + 4 + fine);
  for (const unsigned int block : { 1u, 2u, 3u, 4u }) // the first cell of 2 is covered
  {
    EXPECT_EQ(data->GetCellType(block), VTK_VOXEL) << block;
  }
  EXPECT_EQ(data->GetCellTypes()[2], VTK_VOXEL);
  EXPECT_TRUE(data->GetReadErrors().empty());
}

// Readers offer less than the file has; users expect what is in it.
TEST(zylDataKinds, FilesHaveAllTheirLevelsAndParts)
{
  const std::string folder = zylTestData::MakeFolder();
  const double origin[3] = { 0.0, 0.0, 0.0 };
  const int cells[3] = { 4, 4, 4 };
  vtkNew<vtkOverlappingAMR> amr;
  const int counts[3] = { 1, 1, 1 };
  amr->Initialize(3, counts);
  amr->SetOrigin(origin);
  amr->SetGridDescription(VTK_XYZ_GRID);
  for (unsigned int level = 0; level < 3; ++level)
  {
    const double size = 1.0 / (1 << level);
    const double spacing[3] = { size, size, size };
    const int last[3] = { 3, 3, 3 }, first[3] = { 0, 0, 0 };
    amr->SetSpacing(level, spacing);
    amr->SetAMRBox(level, 0, vtkAMRBox(first, last));
    amr->SetDataSet(level, 0, MakeBox(size, cells, origin));
  }
  vtkNew<vtkXMLUniformGridAMRWriter> writer;
  writer->SetFileName((folder + "/levels.vthb").c_str());
  writer->SetInputData(amr);
  writer->Write();
  zylTestData::Write(zylTestData::MakeCube(0, 0, 0), folder + "/a.vtu");
  zylTestData::Write(zylTestData::MakeCube(2, 0, 0), folder + "/b.vtu");
  std::ofstream(folder + "/parts.vtpc")
    << "<VTKFile type='vtkPartitionedDataSetCollection'><vtkPartitionedDataSetCollection>"
       "<Partitions index='0'><DataSet index='0' file='a.vtu'/><DataSet index='1' file='b.vtu'/>"
       "</Partitions><Partitions index='1'><DataSet index='0' file='b.vtu'/></Partitions>"
       "</vtkPartitionedDataSetCollection></VTKFile>";
  const struct
  {
    const char* File;
    Ids Blocks;
    vtkIdType Cells, LeastSurface;
  } rows[] = {
    { "levels.vthb", { 0, 1, 3, 5 }, 3 * 64, 96 },
    { "parts.vtpc", { 0, 1, 4 }, 3 * 8, 3 * 24 },
  };
  for (const auto& row : rows)
  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(data->LoadFromFile({ folder + "/" + row.File })) << row.File;
    EXPECT_EQ(data->GetBlockIDs(), row.Blocks) << row.File;
    EXPECT_EQ(data->GetNumberOfCells(), row.Cells) << row.File;
    EXPECT_GE(zylCountSurfaceCells(data), row.LeastSurface) << row.File;
    EXPECT_TRUE(data->GetReadErrors().empty()) << row.File;
  }
  for (const char* name : { "/bad.vthb", "/bad.vtpc" })
  {
    std::ofstream(folder + name) << "rubbish";
    zylTestLog log;
    vtkNew<zylDataSet> data;
    EXPECT_FALSE(data->LoadFromFile({ folder + name })) << name;
    EXPECT_EQ(log.CountErrors(name), 1) << log.Dump();
  }
}

TEST(zylDataKinds, PartitionedCollectionsKeepTheirIndices)
{
  vtkNew<vtkPartitionedDataSetCollection> collection;
  for (unsigned int i = 0; i < 3; ++i)
  {
    vtkNew<vtkPartitionedDataSet> part;
    for (unsigned int p = 0; p <= i % 2; ++p)
    {
      part->SetPartition(p, zylTestData::MakeCube(2.0 * i + p, 0, 0));
    }
    collection->SetPartitionedDataSet(i, part);
    collection->GetMetaData(i)->Set(
      vtkCompositeDataSet::NAME(), ("part " + std::to_string(i)).c_str());
  }
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(Load(data, collection));
  EXPECT_EQ(data->GetBlockIDs(), Ids({ 0, 1, 3, 6 }));
  EXPECT_EQ(data->GetBlockMap().at("part 2"), 6u);
  EXPECT_EQ(data->GetBlockNameToIDsMap().at("part 1"), Ids({ 3 }));
  EXPECT_EQ(data->GetPointArrayNames(3), std::vector<std::string>({ "pressure", "velocity" }));
  EXPECT_EQ(data->GetNumberOfCells(), 4 * 8);
  EXPECT_EQ(zylCountSurfaceCells(data), 4 * 24);
  zylTestLog log;
  for (const unsigned int block : { 1u, 2u, 3u, 5u, 6u, 7u })
  {
    EXPECT_EQ(data->GetCellType(block), VTK_HEXAHEDRON) << block;
  }
  const auto types = data->GetCellTypes();
  ASSERT_EQ(types.size(), 8u);
  EXPECT_EQ(types[5], VTK_HEXAHEDRON);
  EXPECT_EQ(types[7], VTK_HEXAHEDRON);
  EXPECT_FALSE(log.HasError());
}

// One dataset, any kind of data after any other: nothing stays of what was there before.
TEST(zylDataKinds, FollowOneAnother)
{
  vtkNew<vtkPartitionedDataSet> pieces;
  pieces->SetPartition(0, zylTestData::MakeCube(0, 0, 0));
  vtkNew<vtkMolecule> molecule;
  const vtkSmartPointer<vtkDataObject> kinds[] = { zylTestData::MakeCube(0, 0, 0),
    MakeTable({ "a" }, 2), MakeLevels<vtkOverlappingAMR>(), zylTestData::MakeRow(2),
    MakeTable({ "x", "y", "z" }, 4), pieces.Get(), molecule.Get(), vtkNew<vtkTable>().Get() };
  const vtkIdType cells[] = { 8, 0, 80, 16, 4, 8, 0, 0 };
  vtkNew<zylDataSet> data;
  for (int step = 0; step < 24; ++step)
  {
    const int i = step * 5 % 8;
    ASSERT_TRUE(Load(data, kinds[i]));
    EXPECT_EQ(data->GetNumberOfCells(), cells[i]) << i;
    EXPECT_EQ(zylCountSurfaceCells(data) > 0, cells[i] > 0) << i;
    EXPECT_EQ(data->GetReadErrors().empty(), cells[i] > 0) << i;
  }
}
