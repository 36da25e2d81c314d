/// @file zylBlockTree.h
/// The tree of blocks and its look-up tables, from the plain nodes that the server sends. Private
/// to the library.
#ifndef zylBlockTree_h
#define zylBlockTree_h

#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

class zylMultiBlockTree;

/// Fill `root` with `nodes`, which stand in pre-order; what hung below it before goes. Without
/// nodes the root stays as it is, without children.
ZYL_PRIVATE void zylBuildBlockTree(
  zylMultiBlockTree* root, const std::vector<vtkZYLBlockInformation::Node>& nodes);

/// The nodes of a tree by name and by flat index.
struct zylBlockMaps
{
  std::map<std::string, unsigned int> ByName; ///< of equal names the last in breadth-first order
  std::map<std::string, std::vector<unsigned int>> LeavesByName; ///< all, in breadth-first order
  std::unordered_map<unsigned int, zylMultiBlockTree*> ByIndex;  ///< pieces included; borrowed
};
ZYL_PRIVATE zylBlockMaps zylMapBlocks(zylMultiBlockTree* root);

#endif
