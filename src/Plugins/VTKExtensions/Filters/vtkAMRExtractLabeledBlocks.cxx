#include "vtkAMRExtractLabeledBlocks.h"

#include "zylBlockParts.h"
#include "zylBlockValues.h"
#include "zylDeferredValues.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <vtkArrayDispatch.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCompositeDataIterator.h>
#include <vtkDataArrayAccessor.h>
#include <vtkDoubleArray.h>
#include <vtkImageData.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkMultiProcessController.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkSMPThreadLocal.h>
#include <vtkSMPTools.h>
#include <vtkSmartPointer.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUniformGridAMR.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace {
constexpr int MaximumNumberOfParts = vtkAMRExtractLabeledBlocks::MaximumNumberOfParts;

// Blocks per task of the parallel loops: small, since blocks differ much in what they contribute.
constexpr vtkIdType Grain = 8;

// Where a block's cells, points and connectivity begin in the grid of a part.
struct Place
{
  vtkIdType Cell = 0;
  vtkIdType Point = 0;
  vtkIdType Connectivity = 0;
};

struct Block
{
  explicit Block(vtkImageData* image, const int* dimensions)
    : Image(image)
    , Shape(dimensions[0], dimensions[1], dimensions[2])
  {
  }

  vtkImageData* Image; // borrowed from the input
  zylBlockShape Shape;
  vtkDataArray* PartIds = nullptr;
  vtkDataArray* Mask = nullptr; // null: all cells are kept
  int HighestPart = -1;
  vtkIdType BadIds = 0; // kept cells whose part number cannot be one
  zylBlockParts Parts;
  std::vector<Place> Places; // one per entry of Parts.Parts
  std::vector<zylColumnSource> CellSources;
  std::vector<zylColumnSource> PointSources;
};

// The grid of a part while it is filled.
struct Grid
{
  vtkSmartPointer<vtkUnstructuredGrid> Data;
  Place Size;
  vtkNew<vtkPoints> Points;
  double* Coordinates = nullptr;
  vtkNew<vtkUnsignedCharArray> Types;
  vtkSmartPointer<vtkTypeInt32Array> Ids32, Offsets32; // which of them: see Allocate
  vtkSmartPointer<vtkTypeInt64Array> Ids64, Offsets64;
  std::vector<char*> CellValues;
  std::vector<char*> PointValues;
};

struct Scratch
{
  std::vector<unsigned char> Keep;
  std::vector<int> Labels;
  std::vector<int> Points;
  zylBlockSplitter Splitter;
  std::shared_ptr<zylDeferredValues::Buffer> Deferred;
};

//--------------------------------------------------------------------------------------------------
struct ReadMask
{
  template <class ArrayType>
  void operator()(ArrayType* array, std::vector<unsigned char>& keep) const
  {
    const vtkDataArrayAccessor<ArrayType> values(array);
    for (std::size_t i = 0; i < keep.size(); ++i)
    {
      const auto value = static_cast<double>(values.Get(static_cast<vtkIdType>(i), 0));
      keep[i] = value >= 1.0 && value < 2.0; // 1 when truncated
    }
  }
};

struct ReadLabels
{
  template <class ArrayType>
  void operator()(ArrayType* array, const std::vector<unsigned char>* keep, Block& block,
    std::vector<int>& labels) const
  {
    const vtkDataArrayAccessor<ArrayType> values(array);
    int highest = -1;
    vtkIdType bad = 0;
    for (std::size_t i = 0; i < labels.size(); ++i)
    {
      const auto value = static_cast<double>(values.Get(static_cast<vtkIdType>(i), 0));
      const bool good = value > -1.0 && value < MaximumNumberOfParts; // NaN is neither
      const bool kept = !keep || (*keep)[i];
      const int label = good ? static_cast<int>(value) : -1;
      highest = std::max(highest, label);
      bad += kept && !good;
      labels[i] = kept ? label : -1;
    }
    block.HighestPart = highest;
    block.BadIds = bad;
  }
};

template <class Worker, class... Arguments>
void Dispatch(vtkDataArray* array, const Worker& worker, Arguments&&... arguments)
{
  if (!vtkArrayDispatch::Dispatch::Execute(array, worker, arguments...))
  {
    worker(array, arguments...);
  }
}

// A cell array with a value for every cell, else null.
vtkDataArray* CellArray(vtkImageData* image, const char* name)
{
  vtkDataArray* array = name ? image->GetCellData()->GetArray(name) : nullptr;
  return array && array->GetNumberOfComponents() > 0 &&
      array->GetNumberOfTuples() >= image->GetNumberOfCells()
    ? array
    : nullptr;
}

//--------------------------------------------------------------------------------------------------
// One run of the filter: blocks are counted, the grids allocated once at their size, and filled.
class Extraction
{
public:
  explicit Extraction(const zylDeferredValues* deferred)
    : Deferred(deferred)
  {
  }

  std::vector<Block> Blocks;
  std::vector<Grid> Grids;
  std::atomic<vtkIdType> Unread{ 0 }; // blocks whose deferred values could not be read

  // Which cells of each block belong to which part.
  void Count()
  {
    auto count = [this](vtkIdType begin, vtkIdType end) {
      Scratch& scratch = this->Scratches.Local();
      for (vtkIdType b = begin; b < end; ++b)
      {
        CountBlock(this->Blocks[b], scratch);
      }
    };
    vtkSMPTools::For(0, static_cast<vtkIdType>(this->Blocks.size()), Grain, count);
  }

  // Grids 0 .. parts-1, of the size that the first `processed` blocks need.
  void Allocate(int parts, std::size_t processed, Block* model)
  {
    this->Grids = std::vector<Grid>(parts);
    this->Processed = processed;
    for (std::size_t b = 0; b < processed; ++b)
    {
      Block& block = this->Blocks[b];
      for (const auto& part : block.Parts.Parts)
      {
        Place& size = this->Grids[part.Id].Size;
        block.Places.push_back(size);
        size.Cell += part.CellCount;
        size.Point += part.PointCount;
        size.Connectivity += vtkIdType(part.CellCount) * block.Shape.CornerCount();
      }
    }
    vtkCellData* cells = model ? model->Image->GetCellData() : nullptr;
    vtkPointData* points = model ? model->Image->GetPointData() : nullptr;
    if (model)
    {
      this->CellColumns = zylListColumns(cells);
      this->PointColumns = zylListColumns(points);
    }
    for (Grid& grid : this->Grids)
    {
      grid.Data = vtkSmartPointer<vtkUnstructuredGrid>::New();
      AllocateCells(grid);
      grid.CellValues =
        zylAllocateColumns(this->CellColumns, grid.Size.Cell, cells, grid.Data->GetCellData());
      grid.PointValues =
        zylAllocateColumns(this->PointColumns, grid.Size.Point, points, grid.Data->GetPointData());
    }
  }

  void Fill()
  {
    for (std::size_t b = 0; b < this->Processed; ++b)
    {
      Block& block = this->Blocks[b];
      block.CellSources =
        zylFindSources(this->CellColumns, block.Image->GetCellData(), block.Shape.NumberOfCells());
      block.PointSources = zylFindSources(
        this->PointColumns, block.Image->GetPointData(), block.Shape.NumberOfPoints());
    }
    auto fill = [this](vtkIdType begin, vtkIdType end) {
      Scratch& scratch = this->Scratches.Local();
      for (vtkIdType b = begin; b < end; ++b)
      {
        this->FillBlock(this->Blocks[b], scratch);
      }
    };
    vtkSMPTools::For(0, static_cast<vtkIdType>(this->Processed), Grain, fill);
    this->FillOddColumns();
    for (Grid& grid : this->Grids)
    {
      Finish(grid);
    }
  }

private:
  static void CountBlock(Block& block, Scratch& scratch)
  {
    if (!block.PartIds)
    {
      return;
    }
    const std::size_t cells = block.Shape.NumberOfCells();
    scratch.Keep.resize(cells);
    scratch.Labels.resize(cells);
    if (block.Mask)
    {
      Dispatch(block.Mask, ReadMask(), scratch.Keep);
    }
    Dispatch(
      block.PartIds, ReadLabels(), block.Mask ? &scratch.Keep : nullptr, block, scratch.Labels);
    scratch.Splitter.Split(block.Shape, scratch.Labels, block.Parts);
  }

  static void AllocateCells(Grid& grid)
  {
    grid.Points->SetDataTypeToDouble();
    grid.Points->SetNumberOfPoints(grid.Size.Point);
    if (grid.Size.Point > 0)
    {
      grid.Coordinates = static_cast<double*>(grid.Points->GetVoidPointer(0));
    }
    grid.Types->SetNumberOfValues(grid.Size.Cell);
    // Half the memory wherever the ids fit.
    if (grid.Size.Connectivity < std::numeric_limits<vtkTypeInt32>::max())
    {
      AllocateIds(grid, grid.Ids32, grid.Offsets32);
    }
    else
    {
      AllocateIds(grid, grid.Ids64, grid.Offsets64);
    }
  }

  template <class ArrayType>
  static void AllocateIds(
    Grid& grid, vtkSmartPointer<ArrayType>& ids, vtkSmartPointer<ArrayType>& offsets)
  {
    ids = vtkSmartPointer<ArrayType>::New();
    ids->SetNumberOfValues(grid.Size.Connectivity);
    offsets = vtkSmartPointer<ArrayType>::New();
    offsets->SetNumberOfValues(grid.Size.Cell + 1);
    offsets->SetValue(
      grid.Size.Cell, static_cast<typename ArrayType::ValueType>(grid.Size.Connectivity));
  }

  // Zeros for what cannot be read.
  void ReadDeferred(Block& block, Scratch& scratch)
  {
    const auto deferred = [](const zylColumnSource& source) { return source.Deferred; };
    if (!this->Deferred ||
      std::none_of(block.CellSources.begin(), block.CellSources.end(), deferred))
    {
      return;
    }
    if (!scratch.Deferred)
    {
      scratch.Deferred = this->Deferred->MakeBuffer();
    }
    const bool read = this->Deferred->Read(block.Image, *scratch.Deferred);
    this->Unread += read ? 0 : 1;
    for (zylColumnSource& source : block.CellSources)
    {
      if (source.Deferred)
      {
        source.Values = read ? scratch.Deferred->GetValues(source.Array) : nullptr;
      }
    }
  }

  void FillBlock(Block& block, Scratch& scratch)
  {
    if (!block.Parts.Parts.empty())
    {
      this->ReadDeferred(block, scratch);
    }
    for (std::size_t i = 0; i < block.Parts.Parts.size(); ++i)
    {
      const zylBlockParts::Part& part = block.Parts.Parts[i];
      const Place& place = block.Places[i];
      Grid& grid = this->Grids[part.Id];
      if (grid.Ids32)
      {
        FillCells(block, part, place, *grid.Ids32, *grid.Offsets32, scratch);
      }
      else
      {
        FillCells(block, part, place, *grid.Ids64, *grid.Offsets64, scratch);
      }
      std::memset(grid.Types->GetPointer(place.Cell), block.Shape.CellType(), part.CellCount);
      const int* cells = block.Parts.Whole ? nullptr : &block.Parts.Cells[part.FirstCell];
      const int* points = block.Parts.Whole ? nullptr : scratch.Points.data();
      zylFillCoordinates(
        block.Image, block.Shape, points, part.PointCount, grid.Coordinates + 3 * place.Point);
      zylCopyColumns(
        this->CellColumns, block.CellSources, grid.CellValues, place.Cell, cells, part.CellCount);
      zylCopyColumns(this->PointColumns, block.PointSources, grid.PointValues, place.Point, points,
        part.PointCount);
    }
  }

  template <class ArrayType>
  static void FillCells(const Block& block, const zylBlockParts::Part& part, const Place& place,
    ArrayType& ids, ArrayType& offsets, Scratch& scratch)
  {
    using Id = typename ArrayType::ValueType;
    Id* to = ids.GetPointer(place.Connectivity);
    if (block.Parts.Whole)
    {
      zylConnectWhole(block.Shape, static_cast<Id>(place.Point), to);
    }
    else
    {
      scratch.Splitter.Connect(
        block.Shape, block.Parts, part, static_cast<Id>(place.Point), scratch.Points, to);
    }
    Id* offset = offsets.GetPointer(place.Cell);
    const Id corners = block.Shape.CornerCount();
    for (int i = 0; i < part.CellCount; ++i)
    {
      offset[i] = static_cast<Id>(place.Connectivity) + corners * i;
    }
  }

  // In one thread: bits share bytes, and strings are objects.
  void FillOddColumns()
  {
    const auto odd = [](const std::vector<zylColumn>& columns,
                       const std::vector<zylColumnSource>& sources) {
      for (std::size_t i = 0; i < columns.size(); ++i)
      {
        const bool plain = sources[i].Values || sources[i].Deferred || !sources[i].Array;
        if (!plain || columns[i].TupleBytes == 0)
        {
          return true;
        }
      }
      return false;
    };
    Scratch scratch;
    for (std::size_t b = 0; b < this->Processed; ++b)
    {
      Block& block = this->Blocks[b];
      const bool cellsToo = odd(this->CellColumns, block.CellSources);
      const bool pointsToo = odd(this->PointColumns, block.PointSources);
      for (std::size_t i = 0; (cellsToo || pointsToo) && i < block.Parts.Parts.size(); ++i)
      {
        const zylBlockParts::Part& part = block.Parts.Parts[i];
        const Place& place = block.Places[i];
        vtkUnstructuredGrid* grid = this->Grids[part.Id].Data;
        const int* cells = block.Parts.Whole ? nullptr : &block.Parts.Cells[part.FirstCell];
        const int* points = nullptr;
        if (pointsToo && !block.Parts.Whole)
        {
          std::vector<int> unused(static_cast<std::size_t>(part.CellCount) * 8);
          scratch.Splitter.Connect(
            block.Shape, block.Parts, part, 0, scratch.Points, unused.data());
          points = scratch.Points.data();
        }
        zylCopyOddColumns(this->CellColumns, block.CellSources, grid->GetCellData(), place.Cell,
          cells, part.CellCount);
        if (pointsToo)
        {
          zylCopyOddColumns(this->PointColumns, block.PointSources, grid->GetPointData(),
            place.Point, points, part.PointCount);
        }
      }
    }
  }

  static void Finish(Grid& grid)
  {
    vtkNew<vtkCellArray> cells;
    if (grid.Ids32)
    {
      cells->SetData(grid.Offsets32, grid.Ids32);
    }
    else
    {
      cells->SetData(grid.Offsets64, grid.Ids64);
    }
    grid.Data->SetPoints(grid.Points);
    grid.Data->SetCells(grid.Types, cells);
  }

  const zylDeferredValues* Deferred; // null: all values are in memory
  std::size_t Processed = 0;
  std::vector<zylColumn> CellColumns;
  std::vector<zylColumn> PointColumns;
  vtkSMPThreadLocal<Scratch> Scratches;
};

//--------------------------------------------------------------------------------------------------
// All image blocks in the order of the iterator. False when one is larger than can be counted.
bool CollectBlocks(vtkCompositeDataSet* input, std::vector<Block>& blocks)
{
  bool fine = true;
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(input->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    if (auto* image = vtkImageData::SafeDownCast(iterator->GetCurrentDataObject()))
    {
      int dimensions[3];
      image->GetDimensions(dimensions);
      if (image->GetNumberOfPoints() < std::numeric_limits<int>::max())
      {
        blocks.emplace_back(image, dimensions);
      }
      else
      {
        fine = false;
      }
    }
  }
  return fine;
}

// The largest value of all ranks.
int HighestOfRanks(int value)
{
  vtkMultiProcessController* controller = vtkMultiProcessController::GetGlobalController();
  if (!controller || controller->GetNumberOfProcesses() < 2)
  {
    return value;
  }
  int highest = value;
  controller->AllReduce(&value, &highest, 1, vtkCommunicator::MAX_OP);
  return highest;
}
} // namespace

vtkStandardNewMacro(vtkAMRExtractLabeledBlocks);

//--------------------------------------------------------------------------------------------------
vtkAMRExtractLabeledBlocks::vtkAMRExtractLabeledBlocks() = default;

//--------------------------------------------------------------------------------------------------
vtkAMRExtractLabeledBlocks::~vtkAMRExtractLabeledBlocks()
{
  this->SetPartIdArrayName(nullptr);
  this->SetLevelMaskArrayName(nullptr);
}

//--------------------------------------------------------------------------------------------------
void vtkAMRExtractLabeledBlocks::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "PartIdArrayName: " << (this->PartIdArrayName ? this->PartIdArrayName : "(none)")
     << "\n";
  os << indent
     << "LevelMaskArrayName: " << (this->LevelMaskArrayName ? this->LevelMaskArrayName : "(none)")
     << "\n";
}

//--------------------------------------------------------------------------------------------------
const zylDeferredValues* vtkAMRExtractLabeledBlocks::GetDeferredValues()
{
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
int vtkAMRExtractLabeledBlocks::FillInputPortInformation(int, vtkInformation* info)
{
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkUniformGridAMR");
  return 1;
}

//--------------------------------------------------------------------------------------------------
int vtkAMRExtractLabeledBlocks::RequestData(
  vtkInformation*, vtkInformationVector** inputVector, vtkInformationVector* outputVector)
{
  auto* input = vtkUniformGridAMR::GetData(inputVector[0], 0);
  vtkMultiBlockDataSet* output = vtkMultiBlockDataSet::GetData(outputVector, 0);
  Extraction extraction(this->GetDeferredValues());
  std::vector<Block>& blocks = extraction.Blocks;
  if (!input || !output)
  {
    return 0;
  }
  if (!CollectBlocks(input, blocks))
  {
    vtkErrorMacro("A block of the AMR dataset is too large to be split into parts.");
  }
  for (Block& block : blocks)
  {
    block.PartIds = CellArray(block.Image, this->PartIdArrayName);
    block.Mask = CellArray(block.Image, this->LevelMaskArrayName);
  }
  try
  {
    extraction.Count();
    int highest = 0;
    for (const Block& block : blocks)
    {
      highest = std::max(highest, block.HighestPart);
    }
    highest = HighestOfRanks(highest);

    const auto missing =
      std::find_if(blocks.begin(), blocks.end(), [](const Block& block) { return !block.PartIds; });
    if (missing != blocks.end())
    {
      vtkErrorMacro("PartIdArrayName not set. The filter will not produce anything");
    }
    vtkIdType bad = 0;
    std::for_each(blocks.begin(), missing, [&bad](const Block& block) { bad += block.BadIds; });
    if (bad > 0)
    {
      vtkErrorMacro("The array '" << this->PartIdArrayName << "' holds no part number from 0 to "
                                  << MaximumNumberOfParts - 1 << " for " << bad
                                  << " cells. They are left out.");
    }
    extraction.Allocate(
      highest + 1, missing - blocks.begin(), blocks.empty() ? nullptr : &blocks.front());
    extraction.Fill();
    if (extraction.Unread > 0)
    {
      vtkErrorMacro("The values of " << extraction.Unread << " blocks could not be read.");
    }
  }
  catch (const std::bad_alloc&)
  {
    vtkErrorMacro("Not enough memory to split the AMR dataset into parts.");
    return 0;
  }
  output->SetNumberOfBlocks(static_cast<unsigned int>(extraction.Grids.size()));
  for (std::size_t p = 0; p < extraction.Grids.size(); ++p)
  {
    output->SetBlock(static_cast<unsigned int>(p), extraction.Grids[p].Data);
  }
  return 1;
}
