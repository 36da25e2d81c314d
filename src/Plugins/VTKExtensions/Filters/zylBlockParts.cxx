#include "zylBlockParts.h"

#include <algorithm>

#include <vtkCellType.h>

namespace {
constexpr int WordBits = 64;

int LowestBit(std::uint64_t word)
{
  return __builtin_ctzll(word);
}

// Visits runs of equal labels: neighbors are mostly of one part. Labels below 0 are passed over.
template <class Visit>
void ForEachRun(const std::vector<int>& labels, Visit visit)
{
  const int size = static_cast<int>(labels.size());
  for (int begin = 0, end; begin < size; begin = end)
  {
    const int label = labels[begin];
    for (end = begin + 1; end < size && labels[end] == label;)
    {
      ++end;
    }
    if (label >= 0)
    {
      visit(label, begin, end);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylBlockShape::zylBlockShape(int nx, int ny, int nz)
  : Points{ nx, ny, nz }
{
  if (nx < 1 || ny < 1 || nz < 1)
  {
    std::fill(this->Points, this->Points + 3, 0);
    this->CellsPerRow = this->RowsPerPlane = this->Rows = 0;
    return;
  }
  const int strides[3] = { 1, nx, nx * ny };
  for (int axis = 0; axis < 3; ++axis)
  {
    if (this->Points[axis] > 1)
    {
      for (int c = 0; c < this->Corners; ++c)
      {
        this->Offsets[this->Corners + c] = this->Offsets[c] + strides[axis];
      }
      this->Corners *= 2;
    }
  }
  this->CellsPerRow = std::max(nx - 1, 1);
  this->RowsPerPlane = std::max(ny - 1, 1);
  this->Rows = this->RowsPerPlane * std::max(nz - 1, 1);
}

//--------------------------------------------------------------------------------------------------
int zylBlockShape::CellType() const
{
  switch (this->Corners)
  {
    case 1:
      return VTK_VERTEX;
    case 2:
      return VTK_LINE;
    case 4:
      return VTK_PIXEL;
    default:
      return VTK_VOXEL;
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockSplitter::Split(
  const zylBlockShape& shape, const std::vector<int>& labels, zylBlockParts& parts)
{
  parts = zylBlockParts();
  this->CountCells(labels);
  int total = 0;
  for (int label : this->Touched)
  {
    zylBlockParts::Part part;
    part.Id = label;
    part.FirstCell = total;
    part.CellCount = this->Counts[label];
    parts.Parts.push_back(part);
    total += part.CellCount;
  }
  parts.Whole = parts.Parts.size() == 1 && total == static_cast<int>(labels.size());
  if (parts.Whole)
  {
    parts.Parts[0].PointCount = shape.NumberOfPoints();
  }
  else
  {
    parts.Cells.resize(total);
    this->GroupCells(labels, parts);
    for (auto& part : parts.Parts)
    {
      this->Mark(shape, &parts.Cells[part.FirstCell], part.CellCount);
      this->TakeMarked([&part](int) { ++part.PointCount; });
    }
  }
  for (int label : this->Touched)
  {
    this->Counts[label] = 0;
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockSplitter::CountCells(const std::vector<int>& labels)
{
  this->Touched.clear();
  ForEachRun(labels, [this](int label, int begin, int end) {
    if (label >= static_cast<int>(this->Counts.size()))
    {
      this->Counts.resize(label + 1, 0);
    }
    if (this->Counts[label] == 0)
    {
      this->Touched.push_back(label);
    }
    this->Counts[label] += end - begin;
  });
  std::sort(this->Touched.begin(), this->Touched.end());
}

//--------------------------------------------------------------------------------------------------
void zylBlockSplitter::GroupCells(const std::vector<int>& labels, zylBlockParts& parts)
{
  for (const auto& part : parts.Parts)
  {
    this->Counts[part.Id] = part.FirstCell; // from here on: where the part's next cell goes
  }
  ForEachRun(labels, [this, &parts](int label, int begin, int end) {
    int& next = this->Counts[label];
    for (int cell = begin; cell < end; ++cell)
    {
      parts.Cells[next++] = cell;
    }
  });
}

//--------------------------------------------------------------------------------------------------
void zylBlockSplitter::Mark(const zylBlockShape& shape, const int* cells, int count)
{
  const std::size_t words = (shape.NumberOfPoints() + WordBits - 1) / WordBits;
  if (this->Bits.size() < words)
  {
    this->Bits.resize(words, 0);
    this->Words.resize((words + WordBits - 1) / WordBits, 0);
  }
  zylBlockShape::Walker walker(shape);
  const int corners = shape.CornerCount();
  for (int i = 0; i < count; ++i)
  {
    const int first = walker.FirstCorner(cells[i]);
    for (int c = 0; c < corners; ++c)
    {
      const unsigned int point = first + shape.CornerOffset(c);
      const unsigned int word = point / WordBits;
      this->Bits[word] |= std::uint64_t(1) << (point % WordBits);
      this->Words[word / WordBits] |= std::uint64_t(1) << (word % WordBits);
    }
  }
}

//--------------------------------------------------------------------------------------------------
template <class Visit>
void zylBlockSplitter::TakeMarked(Visit visit)
{
  for (std::size_t w = 0; w < this->Words.size(); ++w)
  {
    for (std::uint64_t words = this->Words[w]; words != 0; words &= words - 1)
    {
      const std::size_t word = w * WordBits + LowestBit(words);
      for (std::uint64_t bits = this->Bits[word]; bits != 0; bits &= bits - 1)
      {
        visit(static_cast<int>(word * WordBits + LowestBit(bits)));
      }
      this->Bits[word] = 0;
    }
    this->Words[w] = 0;
  }
}

//--------------------------------------------------------------------------------------------------
template <class Id>
void zylBlockSplitter::Connect(const zylBlockShape& shape, const zylBlockParts& parts,
  const zylBlockParts::Part& part, Id firstPoint, std::vector<int>& points, Id* connectivity)
{
  const int* cells = &parts.Cells[part.FirstCell];
  this->Mark(shape, cells, part.CellCount);
  if (this->LocalIds.size() < static_cast<std::size_t>(shape.NumberOfPoints()))
  {
    this->LocalIds.resize(shape.NumberOfPoints());
  }
  points.clear();
  this->TakeMarked([this, &points](int point) {
    this->LocalIds[point] = static_cast<int>(points.size());
    points.push_back(point);
  });
  zylBlockShape::Walker walker(shape);
  const int corners = shape.CornerCount();
  for (int i = 0; i < part.CellCount; ++i)
  {
    const int first = walker.FirstCorner(cells[i]);
    for (int c = 0; c < corners; ++c)
    {
      *connectivity++ = firstPoint + this->LocalIds[first + shape.CornerOffset(c)];
    }
  }
}

//--------------------------------------------------------------------------------------------------
template <class Id>
void zylConnectWhole(const zylBlockShape& shape, Id firstPoint, Id* connectivity)
{
  zylBlockShape::Walker walker(shape);
  const int corners = shape.CornerCount();
  const int cells = shape.NumberOfCells();
  if (corners == 8)
  {
    Id offsets[8];
    for (int c = 0; c < 8; ++c)
    {
      offsets[c] = firstPoint + shape.CornerOffset(c);
    }
    for (int cell = 0; cell < cells; ++cell, connectivity += 8)
    {
      const Id first = walker.FirstCorner(cell);
      for (int c = 0; c < 8; ++c)
      {
        connectivity[c] = first + offsets[c];
      }
    }
    return;
  }
  for (int cell = 0; cell < cells; ++cell)
  {
    const Id first = firstPoint + walker.FirstCorner(cell);
    for (int c = 0; c < corners; ++c)
    {
      *connectivity++ = first + shape.CornerOffset(c);
    }
  }
}

// The value types that the toolkit's 32 and 64 bit arrays may have.
template void zylBlockSplitter::Connect(const zylBlockShape&, const zylBlockParts&,
  const zylBlockParts::Part&, int, std::vector<int>&, int*);
template void zylBlockSplitter::Connect(const zylBlockShape&, const zylBlockParts&,
  const zylBlockParts::Part&, long, std::vector<int>&, long*);
template void zylBlockSplitter::Connect(const zylBlockShape&, const zylBlockParts&,
  const zylBlockParts::Part&, long long, std::vector<int>&, long long*);
template void zylConnectWhole(const zylBlockShape&, int, int*);
template void zylConnectWhole(const zylBlockShape&, long, long*);
template void zylConnectWhole(const zylBlockShape&, long long, long long*);
