#include "zylAMReXGridReader.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <vtkAMRInformation.h>
#include <vtkCellData.h>
#include <vtkCompositeDataPipeline.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOverlappingAMR.h>
#include <vtkUniformGrid.h>

vtkStandardNewMacro(zylAMReXGridReader);

namespace {
// Reads all of `pieces`, which follow each other in the file.
bool ReadPieces(int file, std::vector<iovec> pieces, std::uint64_t offset)
{
  std::size_t first = 0;
  while (first < pieces.size())
  {
    const int count = static_cast<int>(std::min<std::size_t>(pieces.size() - first, IOV_MAX));
    ssize_t got = preadv(file, &pieces[first], count, static_cast<off_t>(offset));
    if (got < 0 && errno == EINTR)
    {
      continue;
    }
    if (got <= 0)
    {
      return false;
    }
    offset += static_cast<std::uint64_t>(got);
    for (; first < pieces.size() && static_cast<std::size_t>(got) >= pieces[first].iov_len; ++first)
    {
      got -= static_cast<ssize_t>(pieces[first].iov_len);
    }
    if (got > 0)
    {
      pieces[first].iov_base = static_cast<char*>(pieces[first].iov_base) + got;
      pieces[first].iov_len -= static_cast<std::size_t>(got);
    }
  }
  return true;
}

vtkSmartPointer<vtkDataArray> MakeArray(
  const std::string& name, const zylAMReXFab& fab, std::size_t components)
{
  vtkSmartPointer<vtkDataArray> array;
  if (fab.BytesOfValue == 4)
  {
    array = vtkSmartPointer<vtkFloatArray>::New();
  }
  else
  {
    array = vtkSmartPointer<vtkDoubleArray>::New();
  }
  array->SetName(name.c_str());
  array->SetNumberOfComponents(static_cast<int>(components));
  array->SetNumberOfTuples(fab.NumberOfCells);
  return array;
}

// Value by value from arrays of one component to one of several.
void Interleave(const std::vector<std::unique_ptr<char[]>>& components, std::size_t size,
  std::int64_t count, void* values)
{
  auto* out = static_cast<char*>(values);
  for (std::int64_t i = 0; i < count; ++i)
  {
    for (const auto& component : components)
    {
      std::memcpy(out, component.get() + static_cast<std::size_t>(i) * size, size);
      out += size;
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::SetLayout(zylAMReXLayout layout)
{
  this->Layout = std::move(layout);
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
int zylAMReXGridReader::RequestData(
  vtkInformation* request, vtkInformationVector** inputs, vtkInformationVector* outputs)
{
  this->Fields = this->FindFields();
  if (!this->Fields.empty())
  {
    this->ReadBoxes(this->FindBlocks(outputs->GetInformationObject(0)));
  }
  const int result = this->Superclass::RequestData(request, inputs, outputs);
  this->Read.clear();
  return result;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylAMReXGridReader::Field> zylAMReXGridReader::FindFields()
{
  const std::vector<std::string>& names = this->Layout.Variables;
  const auto find = [&names](const std::string& name) {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
  };
  std::vector<Field> fields;
  vtkNew<vtkUniformGrid> grid;
  for (int i = 0; i < this->GetNumberOfCellArrays() && !this->Layout.Boxes.empty(); ++i)
  {
    const char* name = this->GetCellArrayName(i);
    if (!this->GetCellArrayStatus(name))
    {
      continue;
    }
    // How the toolkit makes arrays of variables depends on its version, so look at one.
    this->Superclass::GetAMRGridData(0, grid, name);
    vtkDataArray* array = grid->GetCellData()->GetArray(name);
    const int components = array ? array->GetNumberOfComponents() : 0;
    Field field{ name, {} };
    if (components == 1)
    {
      field.Variables = { find(name) };
    }
    else if (components == 3)
    {
      for (const char* axis : { "_x", "_y", "_z" })
      {
        field.Variables.push_back(find(std::string("amrexvec_") + name + axis));
      }
    }
    const auto known = [&names](std::size_t variable) { return variable < names.size(); };
    if (!field.Variables.empty() &&
      std::all_of(field.Variables.begin(), field.Variables.end(), known))
    {
      fields.push_back(field);
    }
  }
  return fields;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylAMReXGridReader::FindBlocks(vtkInformation* output)
{
  std::vector<int> blocks;
  this->SetupBlockRequest(output);
  const bool all = output->Has(vtkCompositeDataPipeline::LOAD_REQUESTED_BLOCKS()) != 0;
  for (std::size_t i = 0; i < this->BlockMap.size(); ++i)
  {
    if (all || this->IsBlockMine(static_cast<int>(i)))
    {
      const int block = this->Metadata->GetAMRInfo()->GetAMRBlockSourceIndex(this->BlockMap[i]);
      if (block >= 0 && static_cast<std::size_t>(block) < this->Layout.Boxes.size())
      {
        blocks.push_back(block);
      }
    }
  }
  return blocks;
}

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::ReadBoxes(std::vector<int> blocks)
{
  const auto& boxes = this->Layout.Boxes;
  std::sort(blocks.begin(), blocks.end(), [&boxes](int a, int b) {
    return std::make_pair(boxes[a].File, boxes[a].Offset) <
      std::make_pair(boxes[b].File, boxes[b].Offset);
  });
  this->Read.reserve(blocks.size());
  for (std::size_t i = 0; i < blocks.size();)
  {
    const std::uint32_t name = boxes[blocks[i]].File;
    const int file = open(this->Layout.Files[name].c_str(), O_RDONLY | O_CLOEXEC);
    for (; i < blocks.size() && boxes[blocks[i]].File == name; ++i)
    {
      Arrays arrays;
      if (file >= 0 && boxes[blocks[i]].IsNative && this->ReadBox(file, boxes[blocks[i]], arrays))
      {
        this->Read.emplace(blocks[i], std::move(arrays));
      }
    }
    if (file >= 0)
    {
      close(file);
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylAMReXGridReader::ReadBox(int file, const zylAMReXFab& fab, Arrays& arrays) const
{
  const std::size_t size =
    static_cast<std::size_t>(fab.NumberOfCells) * static_cast<std::size_t>(fab.BytesOfValue);
  struct Target
  {
    std::size_t Variable;
    void* Values;
  };
  std::vector<Target> targets;
  std::vector<std::vector<std::unique_ptr<char[]>>> components(this->Fields.size());
  for (std::size_t f = 0; f < this->Fields.size(); ++f)
  {
    const auto& variables = this->Fields[f].Variables;
    arrays.push_back(MakeArray(this->Fields[f].Name, fab, variables.size()));
    for (const std::size_t variable : variables)
    {
      void* values = arrays.back()->GetVoidPointer(0);
      if (variables.size() > 1)
      {
        components[f].emplace_back(new char[size]);
        values = components[f].back().get();
      }
      targets.push_back({ variable, values });
    }
  }
  std::sort(targets.begin(), targets.end(),
    [](const Target& a, const Target& b) { return a.Variable < b.Variable; });
  for (std::size_t i = 0; i < targets.size();)
  {
    const std::size_t first = i;
    std::vector<iovec> pieces;
    for (; i < targets.size() && targets[i].Variable == targets[first].Variable + (i - first); ++i)
    {
      pieces.push_back({ targets[i].Values, size });
    }
    if (!ReadPieces(file, std::move(pieces), fab.Offset + targets[first].Variable * size))
    {
      return false;
    }
  }
  for (std::size_t f = 0; f < this->Fields.size(); ++f)
  {
    if (!components[f].empty())
    {
      Interleave(components[f], static_cast<std::size_t>(fab.BytesOfValue), fab.NumberOfCells,
        arrays[f]->GetVoidPointer(0));
    }
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::GetAMRGridData(const int block, vtkUniformGrid* grid, const char* field)
{
  const auto read = this->Read.find(block);
  for (std::size_t f = 0; read != this->Read.end() && f < this->Fields.size(); ++f)
  {
    if (this->Fields[f].Name == field)
    {
      grid->GetCellData()->AddArray(read->second[f]);
      read->second[f] = nullptr;
      return;
    }
  }
  this->Superclass::GetAMRGridData(block, grid, field);
}
