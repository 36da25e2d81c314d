#include "Data/zylBlockTree.h"

#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"

#include <deque>

namespace {
using Node = vtkZYLBlockInformation::Node;

std::vector<vtkSmartPointer<zylArrayInformation>> MakeArrays(
  const std::vector<vtkZYLBlockInformation::Array>& arrays)
{
  std::vector<vtkSmartPointer<zylArrayInformation>> result;
  for (const auto& array : arrays)
  {
    auto description = vtkSmartPointer<zylArrayInformation>::New();
    description->SetName(array.Name);
    description->SetNumberOfComponents(static_cast<unsigned int>(array.NumberOfComponents));
    for (unsigned int c = 0; 2 * c + 1 < array.Ranges.size(); ++c)
    {
      double range[2] = { array.Ranges[2 * c], array.Ranges[2 * c + 1] };
      description->SetComponentRange(c, range);
    }
    result.push_back(description);
  }
  return result;
}

void Build(zylMultiBlockTree* node, const std::vector<Node>& nodes, unsigned int& counter)
{
  const Node& info = nodes[counter];
  node->SetBlockIndex(counter);
  node->SetBlockName(counter == 0 ? "root"
      : info.Name.empty()         ? "Block" + std::to_string(counter)
                                  : info.Name);
  node->SetIsPiece(info.IsPiece);
  node->PointArrays = MakeArrays(info.PointArrays);
  node->CellArrays = MakeArrays(info.CellArrays);
  ++counter;
  for (int i = 0; i < info.NumberOfChildren && counter < nodes.size(); ++i)
  {
    auto child = vtkSmartPointer<zylMultiBlockTree>::New();
    child->SetParent(node);
    node->AddChild(child);
    Build(child, nodes, counter);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylBuildBlockTree(zylMultiBlockTree* root, const std::vector<Node>& nodes)
{
  root->ClearChildren();
  root->SetParent(nullptr);
  if (!nodes.empty())
  {
    unsigned int counter = 0;
    Build(root, nodes, counter);
  }
  root->Modified();
}

//--------------------------------------------------------------------------------------------------
zylBlockMaps zylMapBlocks(zylMultiBlockTree* root)
{
  zylBlockMaps maps;
  std::deque<zylMultiBlockTree*> queue = { root };
  while (!queue.empty())
  {
    zylMultiBlockTree* node = queue.front();
    queue.pop_front();
    maps.ByIndex[node->GetBlockIndex()] = node;
    if (!node->GetIsPiece())
    {
      const std::string name = node->GetBlockName();
      maps.ByName[name] = node->GetBlockIndex();
      if (node->IsLeaf())
      {
        maps.LeavesByName[name].push_back(node->GetBlockIndex());
      }
    }
    for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
    {
      queue.push_back(node->GetChild(i));
    }
  }
  return maps;
}
