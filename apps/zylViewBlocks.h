/// @file zylViewBlocks.h
/// The blocks and arrays of a loaded dataset as the viewer's command line speaks of them.
#ifndef zylViewBlocks_h
#define zylViewBlocks_h

#include <algorithm>
#include <array>
#include <string>
#include <vector>

class zylDataSet;

struct zylViewBlock
{
  unsigned int Id; ///< flat index
  std::string Name;
  int Depth;                        ///< 0: the root
  bool Leaf;                        ///< holds data; pieces are not listed
  std::vector<unsigned int> Leaves; ///< the leaf blocks it stands for (itself for a leaf)
};

/// Where an array is and which values it has.
struct zylViewArray
{
  std::string Name; ///< with component suffix
  bool Found = false;
  bool PointData = false;
  int Components = 0;
  std::array<double, 2> Range{ 1.0, -1.0 }; ///< over the blocks asked for; inverted when unknown
};

/// Let `range` hold the other one too; one whose minimum is above its maximum holds nothing.
inline void zylExtend(std::array<double, 2>& range, const std::array<double, 2>& other)
{
  if (other[0] <= other[1])
  {
    const bool known = range[0] <= range[1];
    range = { known ? std::min(range[0], other[0]) : other[0],
      known ? std::max(range[1], other[1]) : other[1] };
  }
}

class zylViewBlocks
{
public:
  /// `dataset` is borrowed and must outlive this object.
  explicit zylViewBlocks(zylDataSet* dataset);

  const std::vector<zylViewBlock>& GetBlocks() const { return this->Blocks; }
  std::vector<unsigned int> GetLeaves() const;

  /// Leaf blocks that "7" or "Inlet" stands for; throws zylViewError with the nearest names.
  std::vector<unsigned int> Find(const std::string& idOrName) const;

  /// Flat indices of the blocks and groups that "3,Inlet" names; throws as Find().
  std::vector<int> FindIndices(const std::string& list) const;

  /// Flat indices of the leaf blocks whose cells have this dimension, as far as that is known.
  std::vector<int> GetBlocksOfDimension(int dimension) const;

  /// The array of one block; a component suffix chooses the range. Found is false when absent.
  zylViewArray GetArray(const std::string& fullName, unsigned int block) const;
  /// The array over several blocks, with the union of its ranges.
  zylViewArray GetArray(const std::string& fullName, const std::vector<unsigned int>& blocks) const;
  /// As above; throws zylViewError with the nearest names when no block has it. `pointData`: cell
  /// arrays do not count. `components` other than 0: arrays of other sizes do not count. A derived
  /// variable is a point array whose size and range nobody knows before it is computed.
  zylViewArray NeedArray(const std::string& fullName, const std::vector<unsigned int>& blocks,
    bool pointData = false, int components = 0) const;

  /// Whether that is a vector as a whole, of which colors show the magnitude.
  bool IsWholeVector(const std::string& fullName) const;

  /// Whether that is a variable that --define made, or a component of one.
  bool IsDerived(const std::string& fullName) const;

  /// All array names, point arrays first.
  std::vector<std::string> GetArrayNames() const;

private:
  zylDataSet* DataSet;
  std::vector<zylViewBlock> Blocks;
};

/// Print blocks, arrays with ranges, and time steps to stdout.
void zylPrintDataSet(zylDataSet* dataset);

#endif
