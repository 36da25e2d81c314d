#include "vtkZYLBlockInformation.h"

#include "zylPluginTestData.h"
#include "zylTest.h"

#include <vtkClientServerStream.h>
#include <vtkCompositeDataSet.h>
#include <vtkInformation.h>
#include <vtkIntArray.h>
#include <vtkMultiPieceDataSet.h>
#include <vtkMultiProcessStream.h>
#include <vtkOverlappingAMR.h>
#include <vtkStringArray.h>
#include <vtkTrivialProducer.h>
#include <vtkUniformGrid.h>

namespace {
using testing::_;
using testing::ElementsAre;
using testing::Field;
using Node = vtkZYLBlockInformation::Node;
using Array = vtkZYLBlockInformation::Array;

void AddArray(
  vtkFieldData* fields, const char* name, const std::vector<std::vector<double>>& tuples)
{
  vtkNew<vtkDoubleArray> array;
  array->SetName(name);
  array->SetNumberOfComponents(static_cast<int>(tuples[0].size()));
  for (const auto& tuple : tuples)
  {
    array->InsertNextTuple(tuple.data());
  }
  fields->AddArray(array);
}

// A line of one cell from x to x + 1 with the point array "s" = { low, high }.
vtkSmartPointer<vtkUniformGrid> Line(double x, double low, double high)
{
  auto grid = zylMakeGrid(1, 0, 0, x);
  AddArray(grid->GetPointData(), "s", { { low }, { high } });
  return grid;
}

void Name(vtkMultiBlockDataSet* blocks, unsigned int i, const char* name)
{
  blocks->GetMetaData(i)->Set(vtkCompositeDataSet::NAME(), name);
}

// 0 root { 1 "A", 2 "G" { 3 nameless, 4 "pieces" { 5, 6 null }, 7 null "N" }, 8 "A" }
vtkSmartPointer<vtkMultiBlockDataSet> Tree(double shift)
{
  vtkNew<vtkMultiPieceDataSet> pieces;
  pieces->SetNumberOfPieces(2);
  pieces->SetPiece(0, Line(20 + shift, 2 + shift, 3));
  vtkNew<vtkMultiBlockDataSet> group;
  group->SetBlock(0, Line(10 + shift, -1, 1 + shift));
  group->SetBlock(1, pieces);
  Name(group, 1, "pieces");
  group->SetBlock(2, nullptr);
  Name(group, 2, "N");
  auto root = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  root->SetBlock(0, Line(shift, 0, 0.5));
  Name(root, 0, "A");
  root->SetBlock(1, group);
  Name(root, 1, "G");
  root->SetBlock(2, Line(30 + shift, 7, 8));
  Name(root, 2, "A");
  return root;
}

vtkSmartPointer<vtkZYLBlockInformation> Gather(vtkDataObject* data)
{
  vtkNew<vtkTrivialProducer> producer;
  producer->SetOutput(data);
  producer->Update();
  auto info = vtkSmartPointer<vtkZYLBlockInformation>::New();
  info->CopyFromObject(producer);
  return info;
}

// Through a stream, as between processes.
vtkSmartPointer<vtkZYLBlockInformation> Send(vtkZYLBlockInformation* info)
{
  vtkClientServerStream stream;
  info->CopyToStream(&stream);
  const unsigned char* data = nullptr;
  std::size_t length = 0;
  stream.GetData(&data, &length);
  vtkClientServerStream received;
  received.SetData(data, length);
  auto copy = vtkSmartPointer<vtkZYLBlockInformation>::New();
  copy->CopyFromStream(&received);
  return copy;
}

std::string Describe(const std::vector<Node>& nodes)
{
  std::string text;
  for (const Node& node : nodes)
  {
    text += node.Name + ":" + std::to_string(node.Parent) + ":" +
      std::to_string(node.NumberOfChildren) + (node.IsPiece ? "p" : "") +
      (node.HasData ? " " : "- ");
  }
  return text;
}

const char* const TreeText = ":-1:3 A:0:0 G:0:3 :2:0 pieces:2:2 :4:0p :4:0p- N:2:0- A:0:0 ";
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, NodesAreInFlatIndexOrder)
{
  const auto sent = Gather(Tree(0.0));
  const auto info = Send(sent);
  const auto& nodes = info->GetNodes();
  EXPECT_EQ(Describe(nodes), TreeText);
  EXPECT_EQ(Describe(sent->GetNodes()), TreeText);
  EXPECT_TRUE(info->GetIsComposite());
  ASSERT_EQ(nodes.size(), 9u);
  EXPECT_EQ(nodes[0].NumberOfPoints, 8);
  EXPECT_EQ(nodes[0].NumberOfCells, 4);
  EXPECT_EQ(nodes[2].NumberOfPoints, 4);
  EXPECT_THAT(nodes[2].Bounds, ElementsAre(10, 21, 0, 0, 0, 0));
  EXPECT_GT(nodes[7].Bounds[0], nodes[7].Bounds[1]);
  EXPECT_EQ(nodes[4].PointArrays.at(0).Ranges, (std::vector<double>{ 2, 3 }));
  EXPECT_EQ(nodes[2].PointArrays.at(0).Ranges, (std::vector<double>{ -1, 3 }));
  EXPECT_EQ(nodes[0].PointArrays.at(0).Ranges, (std::vector<double>{ -1, 8 }));
  EXPECT_TRUE(nodes[6].PointArrays.empty());
}

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, ArraysAreListedAsParaViewDoes)
{
  const double nan = std::numeric_limits<double>::quiet_NaN();
  auto grid = zylMakeGrid(1, 1, 0);
  vtkPointData* points = grid->GetPointData();
  AddArray(points, "beta", { { 1 }, { 2 }, { 3 }, { 4 } });
  AddArray(points, "vtkOriginalPointIds", { { 1 }, { 2 }, { 3 }, { 4 } });
  AddArray(points, "Velocity", { { 3, 4 }, { -6, 8 }, { 0, 0 }, { 1, nan } });
  AddArray(points, "alpha", { { 5 }, { 6 }, { 7 }, { 8 } });
  AddArray(points, "Beta", { { 0 }, { 0 }, { 0 }, { 0 } });
  vtkNew<vtkStringArray> text;
  text->SetName("text");
  text->SetNumberOfValues(4);
  points->AddArray(text);
  vtkNew<vtkIntArray> nameless;
  nameless->SetNumberOfValues(4);
  points->AddArray(nameless);
  zylAddCells<vtkIntArray>(grid, "cell", [](int) { return 9; });

  const auto info = Send(Gather(grid));
  ASSERT_EQ(info->GetNodes().size(), 1u);
  EXPECT_FALSE(info->GetIsComposite());
  const Node& root = info->GetNodes()[0];
  EXPECT_THAT(root.PointArrays,
    ElementsAre(Field(&Array::Name, "alpha"), Field(&Array::Name, "Beta"),
      Field(&Array::Name, "beta"), Field(&Array::Name, "text"), Field(&Array::Name, "Velocity")));
  const Array& velocity = root.PointArrays[4];
  ASSERT_EQ(velocity.NumberOfComponents, 2);
  EXPECT_THAT(velocity.Ranges, ElementsAre(-6, 3, 0, 8, 0, 10)); // the last two of the magnitude
  EXPECT_GT(root.PointArrays[3].Ranges[0], root.PointArrays[3].Ranges[1]); // text has no range
  ASSERT_EQ(root.CellArrays.size(), 1u);
  EXPECT_EQ(root.CellArrays[0].Ranges, (std::vector<double>{ 9, 9 }));
}

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, RanksAreUnited)
{
  auto first = Tree(0.0);
  auto second = Tree(0.25);
  // On the first rank block "A" is null and the pieces are missing; on the second one "N" is there.
  first->SetBlock(0, nullptr);
  vtkMultiBlockDataSet::SafeDownCast(first->GetBlock(1))->SetBlock(1, nullptr);
  auto* group = vtkMultiBlockDataSet::SafeDownCast(second->GetBlock(1));
  auto extra = Line(40, 5, 6);
  AddArray(extra->GetPointData(), "Extra", { { 1, 1, 1 }, { 2, 2, 2 } });
  group->SetBlock(2, extra);

  for (const bool firstIsRoot : { true, false })
  {
    const auto info = Gather(firstIsRoot ? first : second);
    info->AddInformation(Send(Gather(firstIsRoot ? second : first)));
    const auto& nodes = info->GetNodes();
    EXPECT_EQ(Describe(nodes), ":-1:3 A:0:0 G:0:3 :2:0 pieces:2:2 :4:0p :4:0p- N:2:0 A:0:0 ");
    ASSERT_EQ(nodes.size(), 9u);
    EXPECT_EQ(nodes[3].PointArrays[0].Ranges, (std::vector<double>{ -1, 1.25 }));
    EXPECT_EQ(nodes[3].NumberOfPoints, 4);
    EXPECT_THAT(nodes[3].Bounds, ElementsAre(10, 11.25, 0, 0, 0, 0));
    EXPECT_EQ(nodes[1].NumberOfPoints, 2);
    EXPECT_EQ(nodes[0].NumberOfPoints, 4 + 10);
    ASSERT_EQ(nodes[0].PointArrays.size(), 2u);
    EXPECT_EQ(nodes[0].PointArrays[0].Name, "Extra");
    EXPECT_EQ(nodes[0].Bounds[1], 41.0);
  }

  const auto empty = vtkSmartPointer<vtkZYLBlockInformation>::New();
  empty->AddInformation(Gather(first)); // a rank without output
  EXPECT_EQ(empty->GetNodes().size(), 7u);
}

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, ComponentCountsThatDiffer)
{
  auto one = Line(0, 0, 1);
  auto two = zylMakeGrid(1, 0, 0);
  AddArray(two->GetPointData(), "s", { { 5, 1 }, { 6, 2 } });
  const auto info = Gather(one);
  info->AddInformation(Gather(two));
  const Array& array = info->GetNodes()[0].PointArrays[0];
  EXPECT_EQ(array.NumberOfComponents, 2);
  EXPECT_THAT(array.Ranges, ElementsAre(0, 6, _, _, _, _));
}

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, LevelsOfAMRHavePieces)
{
  const auto amr = zylMakeAMR({ { zylMakeGrid(1, 1, 1) }, { zylMakeGrid(2, 1, 1), nullptr } });
  EXPECT_EQ(
    Describe(Send(Gather(amr))->GetNodes()), ":-1:2 Level 0:0:1 :1:0p Level 1:0:2 :3:0p :3:0p- ");
}

//--------------------------------------------------------------------------------------------------
TEST(BlockInformation, NothingToLookAt)
{
  vtkNew<vtkZYLBlockInformation> info;
  info->CopyFromObject(nullptr);
  EXPECT_TRUE(Send(info)->GetNodes().empty());
  vtkNew<vtkTrivialProducer> producer;
  info->CopyFromObject(producer);
  EXPECT_TRUE(info->GetNodes().empty());
  info->SetPortNumber(3);
  info->CopyFromObject(producer);
  EXPECT_TRUE(info->GetNodes().empty());

  vtkMultiProcessStream parameters;
  info->CopyParametersToStream(parameters);
  vtkNew<vtkZYLBlockInformation> satellite;
  satellite->CopyParametersFromStream(parameters);
  EXPECT_EQ(satellite->GetPortNumber(), 3);
}

//--------------------------------------------------------------------------------------------------
// Whatever comes over the wire is either understood or refused.
TEST(BlockInformation, DamagedStreams)
{
  const auto info = Gather(Tree(0.0));
  vtkClientServerStream stream;
  info->CopyToStream(&stream);
  std::vector<vtkTypeInt64> ints;
  vtkTypeUInt32 length = 0;
  ASSERT_TRUE(stream.GetArgumentLength(0, 2, &length));
  ints.resize(length);
  ASSERT_TRUE(stream.GetArgument(0, 2, ints.data(), length));
  std::vector<double> doubles;
  ASSERT_TRUE(stream.GetArgumentLength(0, 3, &length));
  doubles.resize(length);
  ASSERT_TRUE(stream.GetArgument(0, 3, doubles.data(), length));

  zylTestLog log;
  int refused = 0;
  for (std::size_t i = 0; i < ints.size(); ++i)
  {
    for (vtkTypeInt64 value : { vtkTypeInt64(-2), vtkTypeInt64(1) << 40, ints[i] + 1 })
    {
      std::vector<vtkTypeInt64> damaged = ints;
      damaged[i] = value;
      vtkClientServerStream other;
      other << vtkClientServerStream::Reply << 1 << 9
            << vtkClientServerStream::InsertArray(damaged.data(), static_cast<int>(damaged.size()))
            << vtkClientServerStream::InsertArray(doubles.data(), static_cast<int>(doubles.size()))
            << 5 << ""
            << "A"
            << "G"
            << "pieces"
            << "N" << vtkClientServerStream::End;
      vtkNew<vtkZYLBlockInformation> received;
      received->CopyFromStream(&other);
      refused += received->GetNodes().empty();
    }
  }
  EXPECT_EQ(log.CountErrors("Error parsing the block information"), refused);
  EXPECT_GT(refused, static_cast<int>(ints.size()));
  vtkClientServerStream none;
  vtkNew<vtkZYLBlockInformation> received;
  received->CopyFromStream(&none);
  EXPECT_TRUE(received->GetNodes().empty());
}
