#include "vtkZYLBlockInformation.h"

#include "zylBlockPacking.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <strings.h>

#include <vtkAlgorithm.h>
#include <vtkClientServerStream.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkDataObjectTree.h>
#include <vtkDataObjectTreeIterator.h>
#include <vtkDataSet.h>
#include <vtkExecutive.h>
#include <vtkFieldData.h>
#include <vtkHyperTreeGrid.h>
#include <vtkInformation.h>
#include <vtkMultiProcessStream.h>
#include <vtkObjectFactory.h>
#include <vtkPartitionedDataSet.h>
#include <vtkSmartPointer.h>
#include <vtkTable.h>
#include <vtkUniformGrid.h>
#include <vtkUniformGridAMR.h>

namespace {
using Array = vtkZYLBlockInformation::Array;
using Node = vtkZYLBlockInformation::Node;
using NodeList = std::vector<Node>;

constexpr int Magic = 828793;

// The order in which ParaView lists arrays.
bool NameLess(const std::string& a, const std::string& b)
{
  const int compared = strcasecmp(a.c_str(), b.c_str());
  return compared != 0 ? compared < 0 : a < b;
}

bool IsListed(const char* name)
{
  return name && std::strcmp(name, "vtkOriginalCellIds") != 0 &&
    std::strcmp(name, "vtkOriginalPointIds") != 0;
}

void UniteRange(double* range, const double* other)
{
  if (!(other[0] <= other[1]))
  {
    return;
  }
  const bool empty = !(range[0] <= range[1]);
  range[0] = empty ? other[0] : std::min(range[0], other[0]);
  range[1] = empty ? other[1] : std::max(range[1], other[1]);
}

std::vector<double> EmptyRanges(int components)
{
  std::vector<double> ranges(2 * static_cast<std::size_t>(zylCountRanges(components)));
  for (std::size_t i = 0; i < ranges.size(); i += 2)
  {
    ranges[i] = std::numeric_limits<double>::max();
    ranges[i + 1] = std::numeric_limits<double>::lowest();
  }
  return ranges;
}

Array Describe(vtkAbstractArray* source)
{
  Array array;
  array.Name = source->GetName() ? source->GetName() : "";
  array.NumberOfComponents = source->GetNumberOfComponents();
  array.Ranges = EmptyRanges(array.NumberOfComponents);
  auto* numbers = vtkDataArray::SafeDownCast(source);
  if (!numbers || !numbers->IsNumeric())
  {
    return array;
  }
  for (int c = 0; c < array.NumberOfComponents; ++c)
  {
    numbers->GetRange(&array.Ranges[2 * c], c);
  }
  if (array.NumberOfComponents >= 2)
  {
    numbers->GetFiniteRange(&array.Ranges[2 * array.NumberOfComponents], -1);
  }
  return array;
}

std::vector<Array> DescribeAttributes(vtkDataObject* data, int association)
{
  std::vector<Array> arrays;
  vtkFieldData* fields = data->GetAttributesAsFieldData(association);
  if (!fields || data->GetNumberOfElements(association) == 0)
  {
    return arrays;
  }
  for (int i = 0; i < fields->GetNumberOfArrays(); ++i)
  {
    vtkAbstractArray* array = fields->GetAbstractArray(i);
    if (array && IsListed(array->GetName()))
    {
      arrays.push_back(Describe(array));
    }
  }
  std::stable_sort(arrays.begin(), arrays.end(),
    [](const Array& a, const Array& b) { return NameLess(a.Name, b.Name); });
  // Of arrays with equal names the last one counts.
  auto end = std::unique(arrays.rbegin(), arrays.rend(),
    [](const Array& a, const Array& b) { return a.Name == b.Name; });
  arrays.erase(arrays.begin(), end.base());
  return arrays;
}

std::vector<Array> DescribeColumns(vtkTable* table)
{
  std::vector<Array> columns;
  for (vtkIdType i = 0; i < table->GetNumberOfColumns(); ++i)
  {
    vtkAbstractArray* column = table->GetColumn(i);
    columns.push_back(Describe(column));
  }
  return columns;
}

void DescribeLeaf(vtkDataObject* data, bool arrays, Node& node)
{
  node.NumberOfPoints = data->GetNumberOfElements(vtkDataObject::POINT);
  node.NumberOfCells = data->GetNumberOfElements(vtkDataObject::CELL);
  if (arrays)
  {
    node.PointArrays = DescribeAttributes(data, vtkDataObject::POINT);
    node.CellArrays = DescribeAttributes(data, vtkDataObject::CELL);
  }
  if (auto* table = vtkTable::SafeDownCast(data))
  {
    node.NumberOfRows = table->GetNumberOfRows();
    node.RowArrays = DescribeColumns(table);
  }
  double bounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };
  if (auto* dataSet = vtkDataSet::SafeDownCast(data))
  {
    dataSet->GetBounds(bounds);
  }
  else if (auto* trees = vtkHyperTreeGrid::SafeDownCast(data))
  {
    trees->GetBounds(bounds);
  }
  if (bounds[0] <= bounds[1])
  {
    std::copy(bounds, bounds + 6, node.Bounds);
  }
}

// With different numbers of components the larger one stays, and with it its magnitude.
void UniteArray(Array& array, const Array& other)
{
  const int common = std::min(array.NumberOfComponents, other.NumberOfComponents);
  Array result = array.NumberOfComponents >= other.NumberOfComponents ? array : other;
  const Array& smaller = array.NumberOfComponents >= other.NumberOfComponents ? other : array;
  for (int c = 0; c < common; ++c)
  {
    UniteRange(&result.Ranges[2 * c], &smaller.Ranges[2 * c]);
  }
  if (array.NumberOfComponents == other.NumberOfComponents && common >= 2)
  {
    UniteRange(&result.Ranges[2 * common], &smaller.Ranges[2 * common]);
  }
  array = std::move(result);
}

void UniteArrays(std::vector<Array>& arrays, const std::vector<Array>& others)
{
  if (others.empty())
  {
    return;
  }
  if (arrays.empty())
  {
    arrays = others;
    return;
  }
  std::size_t at = 0;
  for (const Array& other : others)
  {
    while (at < arrays.size() && NameLess(arrays[at].Name, other.Name))
    {
      ++at;
    }
    if (at < arrays.size() && arrays[at].Name == other.Name)
    {
      UniteArray(arrays[at], other);
    }
    else
    {
      arrays.insert(arrays.begin() + at, other);
    }
  }
}

// Everything but the place in the tree.
void UniteContent(Node& node, const Node& other)
{
  node.HasData = node.HasData || other.HasData;
  node.DataType = node.DataType < 0 ? other.DataType : node.DataType;
  node.NumberOfRows += other.NumberOfRows;
  node.NumberOfPoints += other.NumberOfPoints;
  node.NumberOfCells += other.NumberOfCells;
  for (int i = 0; i < 6; i += 2)
  {
    UniteRange(&node.Bounds[i], &other.Bounds[i]);
  }
  UniteArrays(node.PointArrays, other.PointArrays);
  UniteArrays(node.CellArrays, other.CellArrays);
  if (node.RowArrays.empty())
  {
    node.RowArrays = other.RowArrays;
  }
}

// What is collected, and whether with the arrays.
struct Collected
{
  NodeList& Nodes;
  bool Arrays;
};

int AddNode(const Collected& all, int parent, vtkDataObject* data, const char* name, bool isPiece);

void AddTreeChildren(const Collected& all, int index, vtkDataObjectTree* tree)
{
  const bool pieces = vtkPartitionedDataSet::SafeDownCast(tree) != nullptr;
  auto iterator = vtkSmartPointer<vtkDataObjectTreeIterator>::Take(tree->NewTreeIterator());
  iterator->TraverseSubTreeOff();
  iterator->VisitOnlyLeavesOff();
  iterator->SkipEmptyNodesOff();
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    vtkInformation* meta =
      iterator->HasCurrentMetaData() ? iterator->GetCurrentMetaData() : nullptr;
    const char* name = meta && meta->Has(vtkCompositeDataSet::NAME())
      ? meta->Get(vtkCompositeDataSet::NAME())
      : nullptr;
    AddNode(all, index, iterator->GetCurrentDataObject(), name, pieces);
  }
}

void AddLevels(const Collected& all, int index, vtkUniformGridAMR* amr)
{
  for (unsigned int level = 0; level < amr->GetNumberOfLevels(); ++level)
  {
    const std::string name = "Level " + std::to_string(level);
    const int at = AddNode(all, index, nullptr, name.c_str(), false);
    all.Nodes[at].HasData = true;
    all.Nodes[at].DataType = VTK_MULTIPIECE_DATA_SET;
    for (unsigned int i = 0; i < amr->GetNumberOfDataSets(level); ++i)
    {
      AddNode(all, at, amr->GetDataSet(level, i), nullptr, true);
    }
  }
}

// Appends the node and all below it; the returned flat index is that of the node.
int AddNode(const Collected& all, int parent, vtkDataObject* data, const char* name, bool isPiece)
{
  NodeList& nodes = all.Nodes;
  const int index = static_cast<int>(nodes.size());
  nodes.emplace_back();
  nodes[index].Name = name ? name : "";
  nodes[index].Parent = parent;
  nodes[index].IsPiece = isPiece;
  nodes[index].HasData = data != nullptr;
  nodes[index].DataType = data ? data->GetDataObjectType() : -1;
  if (parent >= 0)
  {
    ++nodes[parent].NumberOfChildren;
  }
  if (auto* tree = vtkDataObjectTree::SafeDownCast(data))
  {
    AddTreeChildren(all, index, tree);
  }
  else if (auto* amr = vtkUniformGridAMR::SafeDownCast(data))
  {
    AddLevels(all, index, amr);
  }
  else if (data)
  {
    DescribeLeaf(data, all.Arrays, nodes[index]);
  }
  return index;
}

// Inner nodes get the union of their children: children come after their parent.
void UniteUpwards(NodeList& nodes)
{
  for (std::size_t i = nodes.size(); i-- > 1;)
  {
    const Node& node = nodes[i];
    Node& parent = nodes[node.Parent];
    const bool hadData = parent.HasData;
    const int type = parent.DataType;
    UniteContent(parent, node);
    parent.HasData = hadData;
    parent.DataType = type;
    parent.NumberOfRows = 0;
    parent.RowArrays.clear();
  }
}

std::size_t SubtreeEnd(const NodeList& nodes, std::size_t index)
{
  std::size_t end = index + 1;
  for (int i = 0; i < nodes[index].NumberOfChildren; ++i)
  {
    end = SubtreeEnd(nodes, end);
  }
  return end;
}

// Unite the subtree at `a` of `first` with that at `b` of `second`, child by child; one of them may
// be null. Advances the indices past the subtrees.
void UniteSubtrees(NodeList& out, int parent, const NodeList* first, std::size_t& a,
  const NodeList* second, std::size_t& b)
{
  const int index = static_cast<int>(out.size());
  const Node* one = first ? &(*first)[a++] : nullptr;
  const Node* two = second ? &(*second)[b++] : nullptr;
  out.push_back(one ? *one : *two);
  if (one && two)
  {
    UniteContent(out[index], *two);
    out[index].Name = one->Name.empty() ? two->Name : one->Name;
    out[index].IsPiece = one->IsPiece || two->IsPiece;
  }
  const int counts[2] = { one ? one->NumberOfChildren : 0, two ? two->NumberOfChildren : 0 };
  out[index].Parent = parent;
  out[index].NumberOfChildren = std::max(counts[0], counts[1]);
  for (int i = 0; i < out[index].NumberOfChildren; ++i)
  {
    UniteSubtrees(
      out, index, i < counts[0] ? first : nullptr, a, i < counts[1] ? second : nullptr, b);
  }
}

// The tree that the child counts describe must be the one that the parents describe.
bool IsTree(const NodeList& nodes)
{
  std::vector<int> counts(nodes.size(), 0);
  for (std::size_t i = 0; i < nodes.size(); ++i)
  {
    if ((nodes[i].Parent < 0) != (i == 0))
    {
      return false;
    }
    if (i > 0)
    {
      ++counts[nodes[i].Parent];
    }
  }
  for (std::size_t i = 0; i < nodes.size(); ++i)
  {
    if (counts[i] != nodes[i].NumberOfChildren)
    {
      return false;
    }
  }
  return nodes.empty() || SubtreeEnd(nodes, 0) == nodes.size();
}
} // namespace

vtkStandardNewMacro(vtkZYLBlockInformation);

//--------------------------------------------------------------------------------------------------
vtkZYLBlockInformation::vtkZYLBlockInformation() = default;

//--------------------------------------------------------------------------------------------------
vtkZYLBlockInformation::~vtkZYLBlockInformation() = default;

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "PortNumber: " << this->PortNumber << "\n";
  os << indent << "DescribeArrays: " << this->DescribeArrays << "\n";
  os << indent << "IsComposite: " << this->IsComposite << "\n";
  os << indent << "Nodes: " << this->Nodes.size() << "\n";
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyFromObject(vtkObject* object)
{
  this->Nodes.clear();
  this->IsComposite = false;
  if (auto* data = vtkDataObject::SafeDownCast(object))
  {
    this->CopyFromDataObject(data);
    return;
  }
  auto* algorithm = vtkAlgorithm::SafeDownCast(object);
  if (!algorithm || this->PortNumber < 0 || this->PortNumber >= algorithm->GetNumberOfOutputPorts())
  {
    return;
  }
  // Asking the algorithm itself would start a pass that may report errors while it is not set up.
  vtkInformation* output = algorithm->GetExecutive()->GetOutputInformation(this->PortNumber);
  if (auto* data = output ? vtkDataObject::GetData(output) : nullptr)
  {
    this->CopyFromDataObject(data);
  }
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyFromDataObject(vtkDataObject* data)
{
  this->IsComposite = vtkCompositeDataSet::SafeDownCast(data) != nullptr;
  AddNode({ this->Nodes, this->DescribeArrays }, -1, data, nullptr, false);
  UniteUpwards(this->Nodes);
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::AddInformation(vtkPVInformation* information)
{
  auto* other = vtkZYLBlockInformation::SafeDownCast(information);
  if (!other || other->Nodes.empty())
  {
    return;
  }
  this->IsComposite = this->IsComposite || other->IsComposite;
  if (this->Nodes.empty())
  {
    this->Nodes = other->Nodes;
    return;
  }
  NodeList united;
  united.reserve(std::max(this->Nodes.size(), other->Nodes.size()));
  std::size_t a = 0;
  std::size_t b = 0;
  UniteSubtrees(united, -1, &this->Nodes, a, &other->Nodes, b);
  this->Nodes = std::move(united);
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyToStream(vtkClientServerStream* stream)
{
  stream->Reset();
  *stream << vtkClientServerStream::Reply << static_cast<int>(this->IsComposite);
  zylPackBlocks(this->Nodes, *stream);
  *stream << vtkClientServerStream::End;
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyFromStream(const vtkClientServerStream* stream)
{
  int composite = 0;
  const bool good =
    stream->GetArgument(0, 0, &composite) && zylUnpackBlocks(*stream, 1, this->Nodes);
  if (!good || !IsTree(this->Nodes))
  {
    vtkErrorMacro("Error parsing the block information of the server.");
    this->Nodes.clear();
    return;
  }
  this->IsComposite = composite != 0;
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyParametersToStream(vtkMultiProcessStream& stream)
{
  stream << Magic << this->PortNumber << static_cast<int>(this->DescribeArrays);
}

//--------------------------------------------------------------------------------------------------
void vtkZYLBlockInformation::CopyParametersFromStream(vtkMultiProcessStream& stream)
{
  int magic = 0;
  stream >> magic;
  if (magic != Magic) // a client of another build: what follows may be shorter, and reading aborts
  {
    vtkErrorMacro("Magic number mismatch.");
    return;
  }
  int arrays = 1;
  stream >> this->PortNumber >> arrays;
  this->DescribeArrays = arrays != 0;
}
