#include "vtkZYLConvertToMultiBlock.h"

#include "zylCoordinateColumns.h"

#include <algorithm>
#include <string>
#include <vector>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCommunicator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkDataObjectTree.h>
#include <vtkDataObjectTreeIterator.h>
#include <vtkDataSetAttributes.h>
#include <vtkDoubleArray.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkMultiPieceDataSet.h>
#include <vtkMultiProcessController.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPartitionedDataSet.h>
#include <vtkPartitionedDataSetCollection.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkTable.h>
#include <vtkUniformGrid.h>
#include <vtkUniformGridAMR.h>
#include <vtkUnsignedCharArray.h>

vtkStandardNewMacro(vtkZYLConvertToMultiBlock);

namespace {
bool FindCoordinates(vtkTable* table, int columns[3])
{
  std::vector<std::string> names;
  for (vtkIdType i = 0; i < table->GetNumberOfColumns(); ++i)
  {
    auto* numbers = vtkDataArray::SafeDownCast(table->GetColumn(i));
    const bool candidate = numbers && numbers->GetNumberOfComponents() == 1 && numbers->GetName();
    names.emplace_back(candidate ? numbers->GetName() : "");
  }
  return zylFindCoordinateColumns(names, columns);
}

vtkSmartPointer<vtkDataObject> PointsOf(vtkTable* table)
{
  int axes[3];
  if (!FindCoordinates(table, axes))
  {
    return nullptr;
  }
  const vtkIdType count = table->GetNumberOfRows();
  vtkNew<vtkDoubleArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  coordinates->SetNumberOfTuples(count);
  for (int axis = 0; axis < 3; ++axis)
  {
    coordinates->CopyComponent(axis, vtkDataArray::SafeDownCast(table->GetColumn(axes[axis])), 0);
  }
  auto result = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  points->SetData(coordinates);
  result->SetPoints(points);
  vtkNew<vtkCellArray> vertices;
  vertices->AllocateEstimate(count, 1);
  for (vtkIdType i = 0; i < count; ++i)
  {
    vertices->InsertNextCell(1, &i);
  }
  result->SetVerts(vertices);
  for (vtkIdType i = 0; i < table->GetNumberOfColumns(); ++i)
  {
    if (std::find(axes, axes + 3, i) == axes + 3)
    {
      result->GetPointData()->AddArray(table->GetColumn(i));
    }
  }
  return result;
}

// A leaf of the output for a leaf of the input; null if it cannot be shown.
vtkSmartPointer<vtkDataObject> LeafFor(vtkDataObject* data)
{
  if (vtkDataSet::SafeDownCast(data))
  {
    return data;
  }
  auto* table = vtkTable::SafeDownCast(data);
  return table ? PointsOf(table) : nullptr;
}

// Readers mark covered cells as refined, which not every filter takes for hidden.
vtkSmartPointer<vtkDataObject> BoxWithoutCovered(vtkUniformGrid* box)
{
  auto* marks = box ? vtkUnsignedCharArray::SafeDownCast(
                        box->GetCellData()->GetArray(vtkDataSetAttributes::GhostArrayName()))
                    : nullptr;
  if (!marks)
  {
    return box;
  }
  constexpr unsigned char refined = vtkDataSetAttributes::REFINEDCELL;
  constexpr unsigned char hidden = vtkDataSetAttributes::HIDDENCELL;
  vtkNew<vtkUnsignedCharArray> hides;
  hides->DeepCopy(marks);
  unsigned char* values = hides->GetPointer(0);
  std::transform(values, values + hides->GetNumberOfValues(), values, [](unsigned char mark) {
    return static_cast<unsigned char>(mark & refined ? mark | hidden : mark);
  });
  auto result = vtkSmartPointer<vtkUniformGrid>::New();
  result->ShallowCopy(box);
  result->GetCellData()->AddArray(hides);
  return result;
}

void SetName(vtkMultiBlockDataSet* parent, unsigned int block, const std::string& name)
{
  parent->GetMetaData(block)->Set(vtkCompositeDataSet::NAME(), name.c_str());
}

void ConvertLevels(vtkUniformGridAMR* amr, vtkMultiBlockDataSet* output)
{
  output->SetNumberOfBlocks(amr->GetNumberOfLevels());
  for (unsigned int level = 0; level < amr->GetNumberOfLevels(); ++level)
  {
    vtkNew<vtkMultiPieceDataSet> boxes;
    boxes->SetNumberOfPieces(amr->GetNumberOfDataSets(level));
    for (unsigned int i = 0; i < amr->GetNumberOfDataSets(level); ++i)
    {
      boxes->SetPiece(i, BoxWithoutCovered(amr->GetDataSet(level, i)));
    }
    output->SetBlock(level, boxes);
    SetName(output, level, "Level " + std::to_string(level));
  }
}

vtkSmartPointer<vtkMultiPieceDataSet> ConvertPieces(vtkPartitionedDataSet* pieces)
{
  auto result = vtkSmartPointer<vtkMultiPieceDataSet>::New();
  result->SetNumberOfPieces(pieces->GetNumberOfPartitions());
  for (unsigned int i = 0; i < pieces->GetNumberOfPartitions(); ++i)
  {
    result->SetPiece(i, LeafFor(pieces->GetPartitionAsDataObject(i)));
  }
  return result;
}

void ConvertTree(vtkDataObjectTree* input, vtkMultiBlockDataSet* output)
{
  auto iterator = vtkSmartPointer<vtkDataObjectTreeIterator>::Take(input->NewTreeIterator());
  iterator->TraverseSubTreeOff();
  iterator->VisitOnlyLeavesOff();
  iterator->SkipEmptyNodesOff();
  unsigned int block = 0;
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    vtkDataObject* child = iterator->GetCurrentDataObject();
    output->SetNumberOfBlocks(block + 1);
    if (auto* pieces = vtkPartitionedDataSet::SafeDownCast(child))
    {
      output->SetBlock(block, ConvertPieces(pieces));
    }
    else if (auto* tree = vtkDataObjectTree::SafeDownCast(child))
    {
      vtkNew<vtkMultiBlockDataSet> group;
      ConvertTree(tree, group);
      output->SetBlock(block, group);
    }
    else if (auto* amr = vtkUniformGridAMR::SafeDownCast(child))
    {
      vtkNew<vtkMultiBlockDataSet> levels;
      ConvertLevels(amr, levels);
      output->SetBlock(block, levels);
    }
    else
    {
      output->SetBlock(block, LeafFor(child));
    }
    if (iterator->HasCurrentMetaData())
    {
      output->GetMetaData(block)->Copy(iterator->GetCurrentMetaData());
    }
    ++block;
  }
}

// Give every block of pieces as many as it has on the process with most.
void AgreeOnPieces(vtkMultiBlockDataSet* output)
{
  auto* controller = vtkMultiProcessController::GetGlobalController();
  if (!controller || controller->GetNumberOfProcesses() < 2)
  {
    return;
  }
  unsigned int own = output->GetNumberOfBlocks();
  unsigned int blocks = own;
  controller->AllReduce(&own, &blocks, 1, vtkCommunicator::MAX_OP);
  std::vector<unsigned int> pieces(blocks, 0);
  for (unsigned int i = 0; i < own; ++i)
  {
    auto* block = vtkMultiPieceDataSet::SafeDownCast(output->GetBlock(i));
    pieces[i] = block ? block->GetNumberOfPieces() : 0;
  }
  std::vector<unsigned int> most(pieces);
  controller->AllReduce(pieces.data(), most.data(), blocks, vtkCommunicator::MAX_OP);
  output->SetNumberOfBlocks(blocks);
  for (unsigned int i = 0; i < blocks; ++i)
  {
    if (most[i] > pieces[i])
    {
      vtkSmartPointer<vtkMultiPieceDataSet> block =
        vtkMultiPieceDataSet::SafeDownCast(output->GetBlock(i));
      block = block ? block : vtkSmartPointer<vtkMultiPieceDataSet>::New();
      block->SetNumberOfPieces(most[i]);
      output->SetBlock(i, block);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLConvertToMultiBlock::FillInputPortInformation(int, vtkInformation* info)
{
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
  return 1;
}

//--------------------------------------------------------------------------------------------------
int vtkZYLConvertToMultiBlock::RequestData(
  vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* outputs)
{
  vtkDataObject* input = vtkDataObject::GetData(inputs[0], 0);
  vtkMultiBlockDataSet* output = vtkMultiBlockDataSet::GetData(outputs, 0);
  if (auto* pieces = vtkPartitionedDataSet::SafeDownCast(input))
  {
    output->SetBlock(0, ConvertPieces(pieces));
  }
  else if (auto* tree = vtkDataObjectTree::SafeDownCast(input))
  {
    ConvertTree(tree, output);
  }
  else if (auto* amr = vtkUniformGridAMR::SafeDownCast(input))
  {
    ConvertLevels(amr, output);
  }
  else
  {
    output->SetNumberOfBlocks(1);
    output->SetBlock(0, LeafFor(input));
  }
  if (vtkPartitionedDataSet::SafeDownCast(input) ||
    vtkPartitionedDataSetCollection::SafeDownCast(input))
  {
    AgreeOnPieces(output);
  }
  if (input)
  {
    output->GetFieldData()->PassData(input->GetFieldData());
  }
  return 1;
}
