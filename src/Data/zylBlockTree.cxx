#include "Data/zylBlockTree.h"

#include "ParaView/zylParaViewCompat.h"
#include "Plugins/VTKExtensions/Core/zylCoordinateColumns.h"
#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"

#include <algorithm>
#include <cctype>
#include <deque>

#include <vtkDataObjectTypes.h>
#include <vtkType.h>

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

void Fill(zylMultiBlockTree* node, const Node& info)
{
  node->SetIsPiece(info.IsPiece);
  node->SetKind(zylGetKind(info));
  node->SetNumberOfRows(info.NumberOfRows);
  node->SetOwnBounds(info.Bounds);
  node->PointArrays = MakeArrays(info.PointArrays);
  node->CellArrays = MakeArrays(info.CellArrays);
  node->RowArrays = MakeArrays(info.RowArrays);
}

void Build(zylMultiBlockTree* node, const std::vector<Node>& nodes, unsigned int& counter)
{
  const Node& info = nodes[counter];
  node->SetBlockIndex(counter);
  node->SetBlockName(counter == 0 ? "root"
      : info.Name.empty()         ? "Block" + std::to_string(counter)
                                  : info.Name);
  Fill(node, info);
  ++counter;
  for (int i = 0; i < info.NumberOfChildren && counter < nodes.size(); ++i)
  {
    auto child = vtkSmartPointer<zylMultiBlockTree>::New();
    child->SetParent(node);
    node->AddChild(child);
    Build(child, nodes, counter);
  }
}

void Index(zylMultiBlockTree* root, zylBlocks& blocks)
{
  std::deque<zylMultiBlockTree*> queue = { root };
  while (!queue.empty())
  {
    zylMultiBlockTree* node = queue.front();
    queue.pop_front();
    blocks.ByIndex[node->GetBlockIndex()] = node;
    if (!node->GetIsPiece())
    {
      const std::string name = node->GetBlockName();
      blocks.ByName[name] = node->GetBlockIndex();
      if (node->IsLeaf())
      {
        blocks.LeavesByName[name].push_back(node->GetBlockIndex());
      }
    }
    for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
    {
      queue.push_back(node->GetChild(i));
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylSuitsFilters(const Node& node)
{
  return node.DataType < 0 || node.DataType == VTK_MULTIBLOCK_DATA_SET ||
    node.DataType == VTK_MULTIPIECE_DATA_SET || zylParaView::IsDataSetType(node.DataType);
}

//--------------------------------------------------------------------------------------------------
void zylTakeKinds(
  std::vector<Node>& nodes, const std::vector<Node>& source, unsigned int levelsAdded)
{
  if (nodes.size() != source.size() + levelsAdded)
  {
    return;
  }
  for (std::size_t i = 0; i < source.size(); ++i)
  {
    Node& node = nodes[i + levelsAdded];
    node.DataType = source[i].DataType;
    node.NumberOfRows = source[i].NumberOfRows;
    node.RowArrays = source[i].RowArrays;
    if (levelsAdded > 0)
    {
      node.Name = source[i].Name;
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylFindCoordinates(const Node& node, std::string names[3])
{
  std::vector<std::string> candidates;
  for (const auto& column : node.RowArrays)
  {
    const bool numbers = column.NumberOfComponents == 1 && column.Ranges[0] <= column.Ranges[1];
    candidates.push_back(numbers ? column.Name : "");
  }
  int columns[3];
  if (node.DataType != VTK_TABLE || !zylFindCoordinateColumns(candidates, columns))
  {
    return false;
  }
  for (int axis = 0; axis < 3; ++axis)
  {
    names[axis] = candidates[columns[axis]];
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
std::string zylWhyNothingToDraw(const std::vector<Node>& source)
{
  std::string reason;
  for (const Node& node : source)
  {
    std::string ignored[3];
    if (node.NumberOfPoints > 0 || zylFindCoordinates(node, ignored))
    {
      return "";
    }
    if (reason.empty() && node.DataType == VTK_TABLE)
    {
      reason = "a table without coordinate columns (x, y, z) is no geometry";
    }
    else if (reason.empty() && node.NumberOfChildren == 0 && node.DataType != VTK_DATA_OBJECT &&
      !zylSuitsFilters(node))
    {
      reason = "there is no geometry in a " + zylGetKind(node);
    }
  }
  return reason.empty() ? "there are no points" : reason;
}

//--------------------------------------------------------------------------------------------------
std::string zylGetKind(const Node& node)
{
  const char* name =
    node.DataType < 0 ? nullptr : vtkDataObjectTypes::GetClassNameFromTypeId(node.DataType);
  if (!name || std::string(name).compare(0, 3, "vtk") != 0)
  {
    return "";
  }
  const auto upper = [](char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; };
  std::string kind;
  for (const char* c = name + 3; *c; ++c)
  {
    const bool starts = upper(c[0]) && (!upper(c[-1]) || (c[1] && !upper(c[1])));
    kind += starts && !kind.empty() ? " " : "";
    // Abbreviations keep their capitals.
    kind += starts && !upper(c[1]) ? static_cast<char>(std::tolower(*c)) : *c;
  }
  return kind;
}

//--------------------------------------------------------------------------------------------------
zylBlocks zylFillBlockTree(zylMultiBlockTree* root, const std::vector<Node>& nodes)
{
  zylBlocks blocks;
  root->ClearChildren();
  root->SetParent(nullptr);
  if (nodes.empty())
  {
    Fill(root, Node());
    root->SetBlockIndex(0xFFFFFFFF);
    root->SetBlockName("");
  }
  else
  {
    unsigned int counter = 0;
    Build(root, nodes, counter);
    Index(root, blocks);
    blocks.NumberOfPoints = nodes[0].NumberOfPoints;
    blocks.NumberOfCells = nodes[0].NumberOfCells;
    std::copy(nodes[0].Bounds, nodes[0].Bounds + 6, blocks.Bounds);
  }
  root->Modified();
  return blocks;
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylBlocks::Find(unsigned int block) const
{
  const auto found = this->ByIndex.find(block);
  return found == this->ByIndex.end() ? nullptr : found->second;
}

//--------------------------------------------------------------------------------------------------
unsigned int zylBlocks::GetParent(unsigned int block) const
{
  zylMultiBlockTree* node = this->Find(block);
  return node && node->GetParent() ? node->GetParent()->GetBlockIndex() : 0xFFFFFFFF;
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylBlocks::GetChildren(unsigned int block) const
{
  std::vector<unsigned int> children;
  zylMultiBlockTree* node = this->Find(block);
  for (unsigned int i = 0; node && i < node->GetNumberOfChildren(); ++i)
  {
    children.push_back(node->GetChild(i)->GetBlockIndex());
  }
  return children;
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylBlocks::GetBlockAndPieces(unsigned int block) const
{
  std::vector<unsigned int> indices = { block };
  zylMultiBlockTree* node = this->Find(block);
  if (node && node->IsLeaf())
  {
    const auto pieces = this->GetChildren(block);
    indices.insert(indices.end(), pieces.begin(), pieces.end());
  }
  return indices;
}

//--------------------------------------------------------------------------------------------------
const zylBlocks::ArrayList& zylBlocks::GetArrays(
  ArrayList zylMultiBlockTree::*list, unsigned int block) const
{
  static const ArrayList none;
  zylMultiBlockTree* node = this->Find(block);
  return node ? node->*list : none;
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylGetNames(const zylBlocks::ArrayList& arrays)
{
  std::vector<std::string> names;
  for (const auto& array : arrays)
  {
    names.push_back(array->GetName());
  }
  return names;
}
