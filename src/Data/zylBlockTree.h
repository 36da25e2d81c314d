/// @file zylBlockTree.h
/// What is known of blocks from the plain nodes that the server sends, and the tree made of them.
/// Private to the library.
#ifndef zylBlockTree_h
#define zylBlockTree_h

#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <vtkSmartPointer.h>

class zylArrayInformation;
class zylMultiBlockTree;

/// Whether filters can take the node: null, a multiblock dataset, a block of pieces or a dataset.
ZYL_PRIVATE bool zylSuitsFilters(const vtkZYLBlockInformation::Node& node);

/// Give the nodes of a chain's output what the source's nodes say about their kind (type, rows and
/// columns). `levelsAdded` levels were put on top of the source's; the names made up for them go.
/// Without effect where the two do not have the same blocks.
ZYL_PRIVATE void zylTakeKinds(std::vector<vtkZYLBlockInformation::Node>& nodes,
  const std::vector<vtkZYLBlockInformation::Node>& source, unsigned int levelsAdded);

/// Whether `node` is a table whose rows are points in space; then the names of the columns with
/// their x, y and z.
ZYL_PRIVATE bool zylFindCoordinates(const vtkZYLBlockInformation::Node& node, std::string names[3]);

/// Why nothing of the source's nodes can be drawn; empty when something can.
ZYL_PRIVATE std::string zylWhyNothingToDraw(
  const std::vector<vtkZYLBlockInformation::Node>& source);

/// The kind of data of a node in words: "unstructured grid", "table", ...; empty for null.
ZYL_PRIVATE std::string zylGetKind(const vtkZYLBlockInformation::Node& node);

/// What a tree holds, by name and by flat index, and in all.
struct ZYL_PRIVATE zylBlocks
{
  std::map<std::string, unsigned int> ByName; ///< of equal names the last in breadth-first order
  std::map<std::string, std::vector<unsigned int>> LeavesByName; ///< all, in breadth-first order
  std::unordered_map<unsigned int, zylMultiBlockTree*> ByIndex;  ///< pieces included; borrowed
  vtkTypeInt64 NumberOfPoints = 0;
  vtkTypeInt64 NumberOfCells = 0;
  double Bounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };

  using ArrayList = std::vector<vtkSmartPointer<zylArrayInformation>>;

  /// The node of that flat index (borrowed), or null.
  zylMultiBlockTree* Find(unsigned int block) const;
  /// 0xFFFFFFFF for the root and for unknown blocks.
  unsigned int GetParent(unsigned int block) const;
  std::vector<unsigned int> GetChildren(unsigned int block) const;
  /// The index itself and, behind it, those of its pieces if it is a block of pieces.
  std::vector<unsigned int> GetBlockAndPieces(unsigned int block) const;
  /// The point or cell arrays of a block; empty for unknown blocks.
  const ArrayList& GetArrays(ArrayList zylMultiBlockTree::*list, unsigned int block) const;
};

ZYL_PRIVATE std::vector<std::string> zylGetNames(const zylBlocks::ArrayList& arrays);

/// Fill `root` with `nodes`, which stand in pre-order; what hung below it before goes. Without
/// nodes it becomes what a new node is.
ZYL_PRIVATE zylBlocks zylFillBlockTree(
  zylMultiBlockTree* root, const std::vector<vtkZYLBlockInformation::Node>& nodes);

#endif
