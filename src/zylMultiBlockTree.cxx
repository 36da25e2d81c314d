#include "zylMultiBlockTree.h"

#include "zylArrayInformation.h"

#include <algorithm>
#include <iostream>

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylMultiBlockTree);

namespace {
void PrintArrays(const std::vector<vtkSmartPointer<zylArrayInformation>>& arrays,
  const std::string& indent, const char* title)
{
  if (arrays.empty())
  {
    return;
  }
  std::cout << indent << title << '\n';
  for (const auto& array : arrays)
  {
    const unsigned int components = array->GetNumberOfComponents();
    std::cout << indent << "  " << array->GetName() << ": (" << components << ") - ";
    double range[2];
    for (unsigned int c = 0; c < components; ++c)
    {
      array->GetComponentRange(c, range);
      std::cout << "[" << range[0] << ", " << range[1] << "], ";
    }
    if (components >= 2)
    {
      array->GetComponentRange(components, range);
      std::cout << "[" << range[0] << ", " << range[1] << "]";
    }
    std::cout << '\n';
  }
}

template <class Match>
zylMultiBlockTree* Find(zylMultiBlockTree* node, const Match& match)
{
  if (match(node))
  {
    return node;
  }
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    if (zylMultiBlockTree* found = Find(node->GetChild(i), match))
    {
      return found;
    }
  }
  return nullptr;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree::~zylMultiBlockTree()
{
  this->ReleaseChildren();
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::ReleaseChildren()
{
  // A child that somebody keeps must not point to a parent that is gone.
  for (const auto& child : this->Children)
  {
    child->Parent = child->Parent == this ? nullptr : child->Parent;
  }
  this->Children.clear();
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::SetOwnBounds(const double bounds[6])
{
  std::copy_n(bounds, 6, this->OwnBounds);
}

//--------------------------------------------------------------------------------------------------
bool zylMultiBlockTree::GetBounds(double bounds[6]) const
{
  std::copy_n(this->OwnBounds, 6, bounds);
  for (const auto& child : this->Children)
  {
    double below[6];
    if (child->GetBounds(below))
    {
      const bool first = bounds[0] > bounds[1];
      for (int i = 0; i < 6; i += 2)
      {
        bounds[i] = first ? below[i] : std::min(bounds[i], below[i]);
        bounds[i + 1] = first ? below[i + 1] : std::max(bounds[i + 1], below[i + 1]);
      }
    }
  }
  return bounds[0] <= bounds[1];
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::AddChild(zylMultiBlockTree* child)
{
  if (child)
  {
    this->Children.emplace_back(child);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::ClearChildren()
{
  this->ReleaseChildren();
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylMultiBlockTree::GetChild(unsigned int position) const
{
  return position < this->Children.size() ? this->Children[position].Get() : nullptr;
}

//--------------------------------------------------------------------------------------------------
unsigned int zylMultiBlockTree::GetNumberOfChildren() const
{
  return static_cast<unsigned int>(this->Children.size());
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylMultiBlockTree::FindChildWithBlockIndex(unsigned int index)
{
  return Find(this, [index](zylMultiBlockTree* node) { return node->BlockIndex == index; });
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylMultiBlockTree::FindChildWithBlockName(const std::string& name)
{
  return Find(this, [&name](zylMultiBlockTree* node) { return node->BlockName == name; });
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylMultiBlockTree::GetBlockIDs()
{
  std::vector<unsigned int> ids;
  this->CollectBlockIDs(ids);
  return ids;
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::CollectBlockIDs(std::vector<unsigned int>& ids) const
{
  if (!this->IsPiece)
  {
    ids.push_back(this->BlockIndex);
  }
  for (const auto& child : this->Children)
  {
    child->CollectBlockIDs(ids);
  }
}

//--------------------------------------------------------------------------------------------------
void zylMultiBlockTree::Print(const std::string& indent)
{
  std::cout << indent << "Block " << this->BlockIndex << ": " << this->BlockName << '\n';
  PrintArrays(this->PointArrays, indent + "  ", "Point data arrays:");
  PrintArrays(this->CellArrays, indent + "  ", "Cell data arrays:");
  for (const auto& child : this->Children)
  {
    child->Print(indent + "  ");
  }
  std::cout.flush();
}
