/// @file zylBlockFlags.h
/// The pairs of flat index and flag of a "BlockVisibility" setting, and what they mean for data.
///
/// A leaf block follows its own pair. Without one it follows the nearest node above it that has a
/// pair, and it is hidden where none has: a flagged inner node stands for the blocks below it.
/// Private to the library.
#ifndef zylBlockFlags_h
#define zylBlockFlags_h

#include "ParaView/zylParaViewCompat.h"
#include "zylExport.h"

#include <cstddef>
#include <vector>

class zylMultiBlockTree;
class zylProperty;
class zylPropertyCollection;

/// Whether a node is a block with data of its own: it has no children, or pieces only.
ZYL_PRIVATE bool zylIsLeaf(const std::vector<vtkZYLBlockInformation::Node>& nodes, std::size_t i);

class ZYL_PRIVATE zylBlockFlags
{
public:
  /// Looks at the setting (borrowed; null, or one that holds no ints, has no pairs).
  explicit zylBlockFlags(const zylProperty* setting);

  /// Whether any flag is set.
  bool AnyVisible() const;
  /// The ids of all pairs; those with a set flag only.
  std::vector<int> GetBlocks() const;
  std::vector<int> GetVisibleBlocks() const;
  /// All elements as they are.
  std::vector<int> GetPairs() const;

  /// The leaves of `tree` with their flags. Without a tree the ids are taken as leaves.
  zylParaView::BlockVisibility Resolve(const zylMultiBlockTree* tree) const;
  /// The visible ones of these leaves.
  std::vector<int> GetVisibleLeaves(const zylMultiBlockTree* tree) const;
  /// One flag for each node; those of pieces are the flag of their block.
  std::vector<bool> Resolve(const std::vector<vtkZYLBlockInformation::Node>& nodes) const;

  /// Give the setting "BlockVisibility" of the collection these elements. Its modification time
  /// tells whether that was news.
  static void Write(zylPropertyCollection* settings, const std::vector<int>& pairs);

private:
  const int* Pairs = nullptr;
  std::size_t Count = 0; ///< of pairs
};

#endif
