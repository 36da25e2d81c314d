#include "zylBlockPacking.h"

#include <algorithm>
#include <limits>
#include <string>
#include <unordered_map>

#include <vtkClientServerStream.h>

namespace {
using Array = vtkZYLBlockInformation::Array;
using Node = vtkZYLBlockInformation::Node;
using NodeList = std::vector<Node>;

// The form in which nodes travel: whole numbers, real numbers and the texts, each text once.
struct Packed
{
  std::vector<vtkTypeInt64> Ints;
  std::vector<double> Doubles;
  std::vector<std::string> Texts;
};

class Packer
{
public:
  explicit Packer(Packed& packed)
    : Out(packed)
  {
  }

  void Add(const Node& node)
  {
    this->Out.Ints.insert(this->Out.Ints.end(),
      { this->Text(node.Name), node.Parent, node.NumberOfChildren, node.IsPiece, node.HasData,
        node.NumberOfPoints, node.NumberOfCells, node.DataType, node.NumberOfRows });
    this->Out.Doubles.insert(this->Out.Doubles.end(), node.Bounds, node.Bounds + 6);
    for (const auto* arrays : { &node.PointArrays, &node.CellArrays, &node.RowArrays })
    {
      this->Out.Ints.push_back(static_cast<vtkTypeInt64>(arrays->size()));
      for (const Array& array : *arrays)
      {
        this->Out.Ints.insert(
          this->Out.Ints.end(), { this->Text(array.Name), array.NumberOfComponents });
        this->Out.Doubles.insert(this->Out.Doubles.end(), array.Ranges.begin(), array.Ranges.end());
      }
    }
  }

private:
  vtkTypeInt64 Text(const std::string& text)
  {
    const auto found = this->Known.emplace(text, static_cast<vtkTypeInt64>(this->Out.Texts.size()));
    if (found.second)
    {
      this->Out.Texts.push_back(text);
    }
    return found.first->second;
  }

  Packed& Out;
  std::unordered_map<std::string, vtkTypeInt64> Known;
};

// Reads what Packer wrote; Good() turns false, and stays so, at the first value out of bounds.
class Unpacker
{
public:
  explicit Unpacker(const Packed& packed)
    : In(packed)
  {
  }

  bool Good() const { return this->Fine; }

  void Take(NodeList& nodes)
  {
    Node node;
    node.Name = this->Text();
    node.Parent = static_cast<int>(this->Int(-1, static_cast<vtkTypeInt64>(nodes.size()) - 1));
    node.NumberOfChildren = static_cast<int>(this->Int(0, std::numeric_limits<int>::max()));
    node.IsPiece = this->Int(0, 1) != 0;
    node.HasData = this->Int(0, 1) != 0;
    node.NumberOfPoints = this->Int(0, std::numeric_limits<vtkTypeInt64>::max());
    node.NumberOfCells = this->Int(0, std::numeric_limits<vtkTypeInt64>::max());
    node.DataType = static_cast<int>(this->Int(-1, std::numeric_limits<int>::max()));
    node.NumberOfRows = this->Int(0, std::numeric_limits<vtkTypeInt64>::max());
    this->Reals(node.Bounds, 6);
    for (auto* arrays : { &node.PointArrays, &node.CellArrays, &node.RowArrays })
    {
      vtkTypeInt64 count = this->Int(0, std::numeric_limits<int>::max());
      for (; count > 0 && this->Fine; --count)
      {
        arrays->emplace_back();
        arrays->back().Name = this->Text();
        const vtkTypeInt64 left = static_cast<vtkTypeInt64>(this->In.Doubles.size() - this->Real);
        const int components = static_cast<int>(this->Int(0, left / 2));
        arrays->back().NumberOfComponents = components;
        arrays->back().Ranges.resize(2 * static_cast<std::size_t>(zylCountRanges(components)));
        this->Reals(arrays->back().Ranges.data(), arrays->back().Ranges.size());
      }
    }
    nodes.push_back(std::move(node));
  }

private:
  vtkTypeInt64 Int(vtkTypeInt64 lowest, vtkTypeInt64 highest)
  {
    if (this->Whole < this->In.Ints.size())
    {
      const vtkTypeInt64 value = this->In.Ints[this->Whole++];
      if (value >= lowest && value <= highest)
      {
        return value;
      }
    }
    this->Fine = false;
    return 0;
  }

  std::string Text()
  {
    const auto at = this->Int(0, static_cast<vtkTypeInt64>(this->In.Texts.size()) - 1);
    return this->Fine ? this->In.Texts[at] : std::string();
  }

  void Reals(double* values, std::size_t count)
  {
    if (this->In.Doubles.size() - this->Real < count)
    {
      this->Fine = false;
      return;
    }
    std::copy_n(this->In.Doubles.begin() + this->Real, count, values);
    this->Real += count;
  }

  const Packed& In;
  std::size_t Whole = 0;
  std::size_t Real = 0;
  bool Fine = true;
};

template <class Value>
bool GetVector(const vtkClientServerStream& stream, int argument, std::vector<Value>& values)
{
  vtkTypeUInt32 length = 0;
  if (!stream.GetArgumentLength(0, argument, &length))
  {
    return false;
  }
  values.resize(length);
  return length == 0 || stream.GetArgument(0, argument, values.data(), length);
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylPackBlocks(const NodeList& nodes, vtkClientServerStream& stream)
{
  Packed packed;
  Packer packer(packed);
  for (const Node& node : nodes)
  {
    packer.Add(node);
  }
  stream << static_cast<int>(nodes.size())
         << vtkClientServerStream::InsertArray(
              packed.Ints.data(), static_cast<int>(packed.Ints.size()))
         << vtkClientServerStream::InsertArray(
              packed.Doubles.data(), static_cast<int>(packed.Doubles.size()))
         << static_cast<int>(packed.Texts.size());
  for (const std::string& text : packed.Texts)
  {
    stream << text;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylUnpackBlocks(const vtkClientServerStream& stream, int argument, NodeList& nodes)
{
  nodes.clear();
  Packed packed;
  int count = 0;
  int texts = 0;
  bool good = stream.GetArgument(0, argument, &count) &&
    GetVector(stream, argument + 1, packed.Ints) &&
    GetVector(stream, argument + 2, packed.Doubles) && stream.GetArgument(0, argument + 3, &texts);
  for (int i = 0; i < texts && good; ++i)
  {
    packed.Texts.emplace_back();
    good = stream.GetArgument(0, argument + 4 + i, &packed.Texts.back());
  }
  Unpacker unpacker(packed);
  for (int i = 0; i < count && good; ++i)
  {
    unpacker.Take(nodes);
    good = unpacker.Good();
  }
  return good;
}
