#include "Display/zylVariable.h"

#include "Display/zylBlockFlags.h"
#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"

#include <algorithm>
#include <unordered_set>

namespace {
using Array = vtkZYLBlockInformation::Array;

//--------------------------------------------------------------------------------------------------
// The two descriptions of an array: that of the client's tree and that of the server's answer.
const std::string& NameOf(const Array& array)
{
  return array.Name;
}

std::string NameOf(const vtkSmartPointer<zylArrayInformation>& array)
{
  return array->GetName();
}

unsigned int ComponentsOf(const Array& array)
{
  return static_cast<unsigned int>(array.NumberOfComponents);
}

unsigned int ComponentsOf(const vtkSmartPointer<zylArrayInformation>& array)
{
  return array->GetNumberOfComponents();
}

void RangeOf(const Array& array, unsigned int c, double range[2])
{
  if (2 * c + 1 < array.Ranges.size())
  {
    std::copy_n(array.Ranges.begin() + 2 * c, 2, range);
  }
}

void RangeOf(const vtkSmartPointer<zylArrayInformation>& array, unsigned int c, double range[2])
{
  array->GetComponentRange(c, range);
}

//--------------------------------------------------------------------------------------------------
// Add a block's array to what is known. The magnitude's range of a scalar stays (0, 0).
template <class ArrayType>
void Unite(vtkSmartPointer<zylArrayInformation>& known, const ArrayType& array)
{
  const bool first = !known;
  if (first)
  {
    known = vtkSmartPointer<zylArrayInformation>::New();
    known->SetName(NameOf(array));
    known->SetNumberOfComponents(ComponentsOf(array));
  }
  const unsigned int components = std::min(known->GetNumberOfComponents(), ComponentsOf(array));
  for (unsigned int c = 0; c < components + (components > 1 ? 1 : 0); ++c)
  {
    double range[2] = { 0.0, 0.0 };
    double united[2];
    RangeOf(array, c, range);
    known->GetComponentRange(c, united);
    if (!first)
    {
      range[0] = std::min(range[0], united[0]);
      range[1] = std::max(range[1], united[1]);
    }
    known->SetComponentRange(c, range);
  }
}

//--------------------------------------------------------------------------------------------------
// A node of either description, in pre-order.
template <class Node>
struct Block
{
  const Node* Data;
  int Parent; // position, -1 for the root
  bool IsLeaf;
  bool IsPiece;
  unsigned int Id;
};

using TreeBlocks = std::vector<Block<zylMultiBlockTree>>;
using NodeBlocks = std::vector<Block<vtkZYLBlockInformation::Node>>;

void Flatten(const zylMultiBlockTree* node, int parent, TreeBlocks& blocks)
{
  const int self = static_cast<int>(blocks.size());
  blocks.push_back({ node, parent, node->IsLeaf(), node->GetIsPiece(), node->GetBlockIndex() });
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    Flatten(node->GetChild(i), self, blocks);
  }
}

NodeBlocks Flatten(const std::vector<vtkZYLBlockInformation::Node>& nodes)
{
  NodeBlocks blocks;
  for (std::size_t i = 0; i < nodes.size(); ++i)
  {
    blocks.push_back({ &nodes[i], nodes[i].Parent, zylIsLeaf(nodes, i), nodes[i].IsPiece,
      static_cast<unsigned int>(i) });
  }
  return blocks;
}

//--------------------------------------------------------------------------------------------------
// The leaves that are listed; without any those below listed nodes; with an empty list all.
template <class Node>
std::vector<const Node*> SelectLeaves(
  const std::vector<Block<Node>>& blocks, const std::vector<int>& list)
{
  const std::unordered_set<int> ids(list.begin(), list.end());
  std::vector<const Node*> listed;
  std::vector<const Node*> below;
  std::vector<bool> inside(blocks.size());
  for (std::size_t i = 0; i < blocks.size(); ++i)
  {
    const auto& block = blocks[i];
    const bool own = ids.count(static_cast<int>(block.Id)) > 0;
    inside[i] = own || ids.empty() || (block.Parent >= 0 && inside[block.Parent]);
    if (block.IsLeaf && !block.IsPiece && inside[i])
    {
      below.push_back(block.Data);
      if (own)
      {
        listed.push_back(block.Data);
      }
    }
  }
  return listed.empty() ? below : listed;
}

//--------------------------------------------------------------------------------------------------
template <class Arrays>
void UniteNamed(
  const Arrays& arrays, const std::string& name, vtkSmartPointer<zylArrayInformation>& known)
{
  const auto found = std::find_if(
    arrays.begin(), arrays.end(), [&name](const auto& array) { return NameOf(array) == name; });
  if (found != arrays.end())
  {
    Unite(known, *found);
  }
}

//--------------------------------------------------------------------------------------------------
template <class Node>
bool Search(const std::vector<const Node*>& leaves, zylVariable& variable)
{
  vtkSmartPointer<zylArrayInformation> ofPoints;
  vtkSmartPointer<zylArrayInformation> ofCells;
  for (const Node* leaf : leaves)
  {
    UniteNamed(leaf->PointArrays, variable.Array, ofPoints);
    UniteNamed(leaf->CellArrays, variable.Array, ofCells);
  }
  variable.Information = ofPoints ? ofPoints : ofCells;
  variable.Association = ofPoints ? 0 : ofCells ? 1 : -1;
  return variable.IsFound();
}

template <class Node>
zylVariable Find(const std::string& full, zylVariableName form,
  const std::vector<Block<Node>>& blocks, const std::vector<int>& list)
{
  zylVariable variable;
  variable.Array = full;
  if (full.empty() || blocks.empty())
  {
    return variable;
  }
  const auto leaves = SelectLeaves(blocks, list);
  if (!Search(leaves, variable) && form == zylVariableName::Component)
  {
    variable = zylSplitVariable(full);
    Search(leaves, variable);
  }
  return variable;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylVariable zylSplitVariable(const std::string& full)
{
  const std::size_t mark = full.rfind('_');
  const std::string suffix = mark == std::string::npos ? "" : full.substr(mark + 1);
  const bool known = suffix == "X" || suffix == "Y" || suffix == "Z" || suffix == "Magnitude";
  zylVariable variable;
  variable.Array = known ? full.substr(0, mark) : full;
  variable.Suffix = known ? suffix : "";
  variable.Component = variable.Suffix.size() == 1 ? variable.Suffix[0] - 'X' : -1;
  return variable;
}

//--------------------------------------------------------------------------------------------------
zylVariable zylFindVariable(const std::string& full, zylVariableName form,
  const zylMultiBlockTree* tree, const std::vector<int>& blocks)
{
  TreeBlocks all;
  if (tree)
  {
    Flatten(tree, -1, all);
  }
  return Find(full, form, all, blocks);
}

//--------------------------------------------------------------------------------------------------
zylVariable zylFindVariable(const std::string& full, zylVariableName form,
  const std::vector<vtkZYLBlockInformation::Node>& nodes, const std::vector<int>& blocks)
{
  return Find(full, form, Flatten(nodes), blocks);
}
