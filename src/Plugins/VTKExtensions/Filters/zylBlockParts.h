/// @file zylBlockParts.h
/// The index arithmetic of splitting one block of a regular grid into parts: which cells and points
/// each part gets, and how its cells connect them. Knows no data objects. All sizes are those of
/// one block, below 2^31.
#ifndef zylBlockParts_h
#define zylBlockParts_h

#include "zylExport.h"

#include <cstdint>
#include <vector>

/// A block of regular cells: its numbers of points along x, y, z, x running fastest.
class ZYL_PRIVATE zylBlockShape
{
public:
  /// Axes with one point have no extent: their cells are flat. Any size below 1: no cells, no
  /// points.
  zylBlockShape(int nx, int ny, int nz);

  int NumberOfCells() const { return this->Rows * this->CellsPerRow; }
  int NumberOfPoints() const { return this->Points[0] * this->Points[1] * this->Points[2]; }
  int PointsAlong(int axis) const { return this->Points[axis]; }

  /// Points of a cell (1, 2, 4 or 8) and its VTK cell type (vertex, line, pixel or voxel).
  int CornerCount() const { return this->Corners; }
  int CellType() const;

  /// Point id of corner c of a cell = FirstCorner(cell) + CornerOffset(c); x running fastest.
  int CornerOffset(int c) const { return this->Offsets[c]; }

  /// Walks ascending cell ids to the point id of their first corner, dividing once per row only.
  class Walker
  {
  public:
    explicit Walker(const zylBlockShape& shape)
      : Shape(shape)
    {
    }
    int FirstCorner(int cell)
    {
      if (cell >= this->RowEnd || cell < this->RowBegin)
      {
        this->Enter(cell / this->Shape.CellsPerRow);
      }
      return cell + this->Shift;
    }

  private:
    void Enter(int row)
    {
      const int plane = row / this->Shape.RowsPerPlane;
      this->RowBegin = row * this->Shape.CellsPerRow;
      this->RowEnd = this->RowBegin + this->Shape.CellsPerRow;
      this->Shift = this->Shape.Points[0] *
          ((row - plane * this->Shape.RowsPerPlane) + this->Shape.Points[1] * plane) -
        this->RowBegin;
    }

    const zylBlockShape& Shape;
    int RowBegin = 0;
    int RowEnd = 0;
    int Shift = 0;
  };

private:
  friend class Walker;

  int Points[3];
  int CellsPerRow;
  int RowsPerPlane;
  int Rows;
  int Corners = 1;
  int Offsets[8] = { 0 };
};

/// What a block contributes to the parts.
struct zylBlockParts
{
  struct Part
  {
    int Id = 0;        ///< part number
    int FirstCell = 0; ///< position of its first cell in Cells
    int CellCount = 0; ///< at least 1
    int PointCount = 0;
  };

  std::vector<Part> Parts; ///< the parts that have cells here, by ascending id
  /// Cell ids grouped by part, ascending within it. Empty when the block is Whole.
  std::vector<int> Cells;
  bool Whole = false; ///< all cells are of the one part: cell and point ids are those of the block
};

/// Does the splitting; holds the tables it needs, so one serves many blocks, in one thread.
class ZYL_PRIVATE zylBlockSplitter
{
public:
  /// `labels`: the part of each cell, below 0 for none; their number is that of the cells.
  void Split(const zylBlockShape& shape, const std::vector<int>& labels, zylBlockParts& parts);

  /// The block's point ids that `part` uses, ascending, into `points`; `connectivity` gets the
  /// local ids (positions in `points`) plus `firstPoint` of each cell's corners. Not for Whole
  /// blocks.
  template <class Id>
  ZYL_PRIVATE void Connect(const zylBlockShape& shape, const zylBlockParts& parts,
    const zylBlockParts::Part& part, Id firstPoint, std::vector<int>& points, Id* connectivity);

private:
  void CountCells(const std::vector<int>& labels); // fills Counts and Touched
  void GroupCells(const std::vector<int>& labels, zylBlockParts& parts);
  void Mark(const zylBlockShape& shape, const int* cells, int count);
  template <class Visit>
  void TakeMarked(Visit visit);

  std::vector<int> Counts;  // per part number; all 0 between calls
  std::vector<int> Touched; // part numbers met
  // Points in use: a bit each, and a bit for each word of bits that is not 0. All 0 between calls.
  std::vector<std::uint64_t> Bits;
  std::vector<std::uint64_t> Words;
  std::vector<int> LocalIds;
};

/// Connectivity of a Whole block, the cells' corners in order, with `firstPoint` added to each id.
template <class Id>
ZYL_PRIVATE void zylConnectWhole(const zylBlockShape& shape, Id firstPoint, Id* connectivity);

#endif
