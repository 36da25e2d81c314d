#include "zylViewBlocks.h"

#include "zylViewError.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include <zylArrayInformation.h>
#include <zylDataSet.h>
#include <zylMultiBlockTree.h>
#include <zylPipeline.h>
#include <zylTimeController.h>

#include <vtkCellType.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>

namespace {
// Append `node` and what is below it; returns the leaf blocks in it.
std::vector<unsigned int> Flatten(
  zylMultiBlockTree* node, int depth, std::vector<zylViewBlock>& blocks)
{
  const std::size_t place = blocks.size();
  const unsigned int count = node->GetNumberOfChildren();
  const bool leaf = node->IsLeaf();
  blocks.push_back({ node->GetBlockIndex(), node->GetBlockName(), depth, leaf, {} });
  std::vector<unsigned int> leaves;
  if (leaf)
  {
    leaves.push_back(node->GetBlockIndex());
  }
  for (unsigned int i = 0; !leaf && i < count; ++i)
  {
    const auto below = Flatten(node->GetChild(i), depth + 1, blocks);
    leaves.insert(leaves.end(), below.begin(), below.end());
  }
  blocks[place].Leaves = leaves;
  return leaves;
}

// Calls visit(pointData, information) for every array of a block.
template <class Function>
void VisitArrays(zylDataSet* dataset, unsigned int block, Function visit)
{
  for (unsigned int i = 0; i < dataset->GetNumberOfPointArrays(block); ++i)
  {
    visit(true, dataset->GetPointArrayInformation(i, block));
  }
  for (unsigned int i = 0; i < dataset->GetNumberOfCellArrays(block); ++i)
  {
    visit(false, dataset->GetCellArrayInformation(i, block));
  }
}

void PrintRange(const char* label, zylArrayInformation* array, unsigned int component)
{
  double range[2];
  array->GetComponentRange(component, range);
  if (range[0] <= range[1]) // texts and empty arrays have none
  {
    std::printf("  %s[%g, %g]", label, range[0], range[1]);
  }
}

// What marks the cells that processes share is no result.
bool IsGhost(zylArrayInformation* array)
{
  return array->GetName().compare(0, 8, "vtkGhost") == 0;
}

void PrintArray(const char* of, zylArrayInformation* array, int indent)
{
  if (IsGhost(array))
  {
    return;
  }
  const unsigned int count = array->GetNumberOfComponents();
  std::printf("%*s%s %s (%u)", indent, "", of, array->GetName().c_str(), count);
  for (unsigned int c = 0; c < std::min(count, 9u); ++c)
  {
    PrintRange("", array, c);
  }
  if (count > 1)
  {
    PrintRange("magnitude ", array, count);
  }
  std::printf("\n");
}

void PrintBlock(zylDataSet* dataset, const zylViewBlock& block)
{
  const int indent = 2 * block.Depth;
  zylMultiBlockTree* node = dataset->GetMultiBlockTree()->FindChildWithBlockIndex(block.Id);
  std::printf("%*s%u %s", indent, "", block.Id, block.Name.c_str());
  if (block.Leaf)
  {
    const std::string kind = node->GetKind();
    std::printf(" (%s", kind.empty() ? "nothing" : kind.c_str());
    std::printf(node->RowArrays.empty() ? ")" : ", %lld rows)",
      static_cast<long long>(node->GetNumberOfRows()));
  }
  std::printf("\n");
  if (block.Leaf || block.Depth == 0)
  {
    VisitArrays(dataset, block.Id, [&](bool point, zylArrayInformation* array) {
      PrintArray(point ? "point" : "cell ", array, indent + 4);
    });
    for (const auto& column : node->RowArrays)
    {
      PrintArray("row  ", column, indent + 4);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewBlocks::zylViewBlocks(zylDataSet* dataset)
  : DataSet(dataset)
{
  Flatten(dataset->GetMultiBlockTree(), 0, this->Blocks);
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylViewBlocks::GetLeaves() const
{
  return this->Blocks.front().Leaves;
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylViewBlocks::Find(const std::string& idOrName) const
{
  const bool number = idOrName.find_first_not_of("0123456789") == std::string::npos;
  std::vector<unsigned int> leaves;
  std::vector<std::string> names;
  for (const zylViewBlock& block : this->Blocks)
  {
    names.push_back(block.Name);
    if (block.Name == idOrName || (number && std::to_string(block.Id) == idOrName))
    {
      leaves.insert(leaves.end(), block.Leaves.begin(), block.Leaves.end());
    }
  }
  if (leaves.empty())
  {
    throw zylUnknownName("block", idOrName, names);
  }
  return leaves;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylViewBlocks::FindIndices(const std::string& list) const
{
  std::vector<int> indices;
  std::istringstream names(list);
  for (std::string name; std::getline(names, name, ',');)
  {
    this->Find(name); // throws when there is none
    for (const zylViewBlock& block : this->Blocks)
    {
      if (block.Name == name || std::to_string(block.Id) == name)
      {
        indices.push_back(static_cast<int>(block.Id));
      }
    }
  }
  return indices;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylViewBlocks::GetBlocksOfDimension(int dimension) const
{
  const std::vector<int> types = this->DataSet->GetCellTypes(); // by flat index
  std::vector<int> blocks;
  vtkNew<vtkGenericCell> cell;
  for (std::size_t i = 0; i < this->Blocks.size(); ++i)
  {
    // A block of several pieces has its cells in them: they are numbered after it.
    const std::size_t end =
      std::min(i + 1 < this->Blocks.size() ? this->Blocks[i + 1].Id : types.size(), types.size());
    int type = VTK_EMPTY_CELL;
    for (std::size_t index = this->Blocks[i].Id; index < end && type <= VTK_EMPTY_CELL; ++index)
    {
      type = types[index];
    }
    if (this->Blocks[i].Leaf && type > VTK_EMPTY_CELL)
    {
      cell->SetCellType(type);
      if (cell->GetCellDimension() == dimension)
      {
        blocks.push_back(static_cast<int>(this->Blocks[i].Id));
      }
    }
  }
  return blocks;
}

//--------------------------------------------------------------------------------------------------
zylViewArray zylViewBlocks::GetArray(const std::string& fullName, unsigned int block) const
{
  zylViewArray result;
  result.Name = fullName;
  const auto find = [&](const std::string& name, int component) {
    VisitArrays(this->DataSet, block, [&](bool point, zylArrayInformation* array) {
      const auto count = static_cast<int>(array->GetNumberOfComponents());
      if (array->GetName() == name && !result.Found && component < count)
      {
        result.Found = true;
        result.PointData = point;
        result.Components = count;
        const int slot = component >= 0 ? component : (count > 1 ? count : 0);
        array->GetComponentRange(slot, result.Range.data());
      }
    });
  };
  // As in the library: "U_X" is the array of that name, and only where there is none that of U.
  find(fullName, -1);
  std::string name;
  int component = -1;
  zylPipeline::SplitVariableName(fullName, name, component);
  find(name, component);
  return result;
}

//--------------------------------------------------------------------------------------------------
zylViewArray zylViewBlocks::GetArray(
  const std::string& fullName, const std::vector<unsigned int>& blocks) const
{
  zylViewArray all;
  all.Name = fullName;
  for (unsigned int block : blocks)
  {
    const zylViewArray one = this->GetArray(fullName, block);
    if (one.Found && !all.Found)
    {
      all = one;
    }
    else if (one.Found)
    {
      zylExtend(all.Range, one.Range);
    }
  }
  return all;
}

//--------------------------------------------------------------------------------------------------
zylViewArray zylViewBlocks::NeedArray(const std::string& fullName,
  const std::vector<unsigned int>& blocks, bool pointData, int components) const
{
  const zylViewArray array = this->GetArray(fullName, blocks);
  if (!array.Found && this->IsDerived(fullName))
  {
    zylViewArray derived = array;
    derived.Found = derived.PointData = true;
    return derived;
  }
  const bool suits = array.Found && (array.PointData || !pointData) &&
    (components == 0 || array.Components == components);
  if (suits)
  {
    return array;
  }
  std::vector<std::string> names;
  for (const std::string& known : this->GetArrayNames())
  {
    const zylViewArray other = this->GetArray(known, this->GetLeaves());
    if ((other.PointData || !pointData) && (components == 0 || other.Components == components))
    {
      names.push_back(known);
    }
  }
  const std::string kind = components == 3 ? "point vector array"
    : pointData                            ? "point array"
                                           : "array";
  throw zylUnknownName(kind, fullName, names);
}

//--------------------------------------------------------------------------------------------------
bool zylViewBlocks::IsWholeVector(const std::string& fullName) const
{
  const auto names = this->GetArrayNames();
  return std::find(names.begin(), names.end(), fullName) != names.end() &&
    this->GetArray(fullName, this->GetLeaves()).Components > 1;
}

//--------------------------------------------------------------------------------------------------
bool zylViewBlocks::IsDerived(const std::string& fullName) const
{
  std::string name;
  int component = -1;
  zylPipeline::SplitVariableName(fullName, name, component);
  return this->DataSet->IsDerivedPointVariable(fullName) ||
    this->DataSet->IsDerivedPointVariable(name);
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylViewBlocks::GetArrayNames() const
{
  std::vector<std::string> names, cellNames;
  for (unsigned int block : this->GetLeaves())
  {
    VisitArrays(this->DataSet, block, [&](bool point, zylArrayInformation* array) {
      auto& list = point ? names : cellNames;
      if (!IsGhost(array) && std::find(list.begin(), list.end(), array->GetName()) == list.end())
      {
        list.push_back(array->GetName());
      }
    });
  }
  names.insert(names.end(), cellNames.begin(), cellNames.end());
  return names;
}

//--------------------------------------------------------------------------------------------------
void zylPrintDataSet(zylDataSet* dataset)
{
  for (const std::string& file : dataset->GetFileNames())
  {
    std::printf("file %s\n", file.c_str());
  }
  std::printf("%lld points, %lld cells\n", static_cast<long long>(dataset->GetNumberOfPoints()),
    static_cast<long long>(dataset->GetNumberOfCells()));
  double b[6];
  if (dataset->GetBounds(b))
  {
    std::printf("x [%g, %g]  y [%g, %g]  z [%g, %g]\n", b[0], b[1], b[2], b[3], b[4], b[5]);
  }
  const auto times = dataset->GetTimestepValues();
  std::printf("%zu time steps%s", times.size(), times.empty() ? "\n" : ":");
  for (std::size_t i = 0; i < times.size(); ++i)
  {
    std::printf(" %g%s", times[i], i + 1 == times.size() ? "\n" : "");
  }
  if (times.size() > 1)
  {
    std::printf("values of time %g\n", zylTimeController::GetInstance()->GetActiveTime());
  }
  const zylViewBlocks blocks(dataset);
  for (const zylViewBlock& block : blocks.GetBlocks())
  {
    PrintBlock(dataset, block);
  }
}
