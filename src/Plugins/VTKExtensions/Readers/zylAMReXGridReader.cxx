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

// `withValues`: with memory for them.
template <class ArrayType>
vtkSmartPointer<vtkDataArray> MakeArray(
  const std::string& name, std::size_t components, vtkIdType tuples, bool withValues)
{
  auto array = vtkSmartPointer<ArrayType>::New();
  array->SetName(name.c_str());
  array->SetNumberOfComponents(static_cast<int>(components));
  if (withValues)
  {
    array->SetNumberOfTuples(tuples);
  }
  else
  {
    array->SetArray(nullptr, tuples * static_cast<vtkIdType>(components), 1);
  }
  return array;
}

std::size_t SizeOfVariable(const zylAMReXFab& fab)
{
  return static_cast<std::size_t>(fab.NumberOfCells) * static_cast<std::size_t>(fab.BytesOfValue);
}

// A file that is closed at the end.
class File
{
public:
  ~File() { this->Close(); }
  File() = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // The descriptor, negative when it cannot be opened. The same name again costs nothing.
  int Open(const std::string& name)
  {
    if (name != this->Name || this->Descriptor < 0)
    {
      this->Close();
      this->Descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
      this->Name = name;
    }
    return this->Descriptor;
  }

private:
  void Close()
  {
    if (this->Descriptor >= 0)
    {
      close(this->Descriptor);
    }
    this->Descriptor = -1;
  }

  std::string Name;
  int Descriptor = -1;
};

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
class zylAMReXGridReader::BoxBuffer : public zylDeferredValues::Buffer
{
public:
  const char* GetValues(vtkAbstractArray* array) const override
  {
    const auto found = this->Values.find(array->GetName());
    return found == this->Values.end() ? nullptr : found->second;
  }

  File Source;
  std::vector<char> Memory;
  std::unordered_map<std::string, const char*> Values; // by the name of the array
};

vtkStandardNewMacro(zylAMReXGridReader);

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
  vtkInformation* output = outputs->GetInformationObject(0);
  this->Blocks.clear();
  this->Fields = this->FindFields();
  std::vector<int> indices = this->FindIndices(output);
  if (!this->Fields.empty())
  {
    this->ReadBoxes(indices);
  }
  // Nobody looks at the blanking of grids without values, and it is left out for requested blocks.
  const bool requested = this->Deferring && !indices.empty() &&
    !output->Has(vtkCompositeDataPipeline::LOAD_REQUESTED_BLOCKS());
  if (requested)
  {
    output->Set(vtkCompositeDataPipeline::UPDATE_COMPOSITE_INDICES(), indices.data(),
      static_cast<int>(indices.size()));
    output->Set(vtkCompositeDataPipeline::LOAD_REQUESTED_BLOCKS(), 1);
  }
  const int result = this->Superclass::RequestData(request, inputs, outputs);
  if (requested)
  {
    output->Remove(vtkCompositeDataPipeline::UPDATE_COMPOSITE_INDICES());
    output->Remove(vtkCompositeDataPipeline::LOAD_REQUESTED_BLOCKS());
  }
  this->BoxArrays.clear();
  return result;
}

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::DeferValues(std::set<std::string> except)
{
  this->Deferring = true;
  this->NotDeferred = std::move(except);
  this->Modified();
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
    Field field{ name, {}, this->Deferring && this->NotDeferred.count(name) == 0 };
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
// Composite indices of the blocks that this process reads.
std::vector<int> zylAMReXGridReader::FindIndices(vtkInformation* output)
{
  std::vector<int> indices;
  this->SetupBlockRequest(output);
  const bool all = output->Has(vtkCompositeDataPipeline::LOAD_REQUESTED_BLOCKS()) != 0;
  for (std::size_t i = 0; i < this->BlockMap.size(); ++i)
  {
    if (all || this->IsBlockMine(static_cast<int>(i)))
    {
      indices.push_back(this->BlockMap[i]);
    }
  }
  return indices;
}

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::ReadBoxes(const std::vector<int>& indices)
{
  const auto& boxes = this->Layout.Boxes;
  std::vector<int> blocks;
  for (const int index : indices)
  {
    const int block = this->Metadata->GetAMRInfo()->GetAMRBlockSourceIndex(index);
    if (block >= 0 && static_cast<std::size_t>(block) < boxes.size())
    {
      blocks.push_back(block);
    }
  }
  std::sort(blocks.begin(), blocks.end(), [&boxes](int a, int b) {
    return std::make_pair(boxes[a].File, boxes[a].Offset) <
      std::make_pair(boxes[b].File, boxes[b].Offset);
  });
  this->BoxArrays.reserve(blocks.size());
  File file;
  for (const int block : blocks)
  {
    Arrays arrays;
    const zylAMReXFab& fab = boxes[block];
    const int descriptor = fab.IsNative ? file.Open(this->Layout.Files[fab.File]) : -1;
    if (descriptor >= 0 && this->ReadBox(descriptor, fab, arrays))
    {
      this->BoxArrays.emplace(block, std::move(arrays));
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylAMReXGridReader::ReadBox(int file, const zylAMReXFab& fab, Arrays& arrays) const
{
  std::vector<void*> values;
  for (const Field& field : this->Fields)
  {
    const std::size_t components = field.Variables.size();
    arrays.push_back(fab.BytesOfValue == 4
        ? MakeArray<vtkFloatArray>(field.Name, components, fab.NumberOfCells, !field.Deferred)
        : MakeArray<vtkDoubleArray>(field.Name, components, fab.NumberOfCells, !field.Deferred));
    values.push_back(field.Deferred ? nullptr : arrays.back()->GetVoidPointer(0));
  }
  return this->ReadFields(file, fab, values);
}

//--------------------------------------------------------------------------------------------------
// The fields that have memory for their values.
bool zylAMReXGridReader::ReadFields(
  int file, const zylAMReXFab& fab, const std::vector<void*>& values) const
{
  const std::size_t size = SizeOfVariable(fab);
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
    for (std::size_t v = 0; v < variables.size() && values[f]; ++v)
    {
      void* to = values[f];
      if (variables.size() > 1)
      {
        components[f].emplace_back(new char[size]);
        to = components[f].back().get();
      }
      targets.push_back({ variables[v], to });
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
      Interleave(
        components[f], static_cast<std::size_t>(fab.BytesOfValue), fab.NumberOfCells, values[f]);
    }
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylAMReXGridReader::GetAMRGridData(const int block, vtkUniformGrid* grid, const char* field)
{
  const auto read = this->BoxArrays.find(block);
  for (std::size_t f = 0; read != this->BoxArrays.end() && f < this->Fields.size(); ++f)
  {
    if (this->Fields[f].Name == field)
    {
      grid->GetCellData()->AddArray(read->second[f]);
      read->second[f] = nullptr;
      if (this->Fields[f].Deferred)
      {
        this->Blocks[grid] = block;
      }
      return;
    }
  }
  this->Superclass::GetAMRGridData(block, grid, field);
}

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylDeferredValues::Buffer> zylAMReXGridReader::MakeBuffer() const
{
  return std::unique_ptr<Buffer>(new BoxBuffer);
}

//--------------------------------------------------------------------------------------------------
bool zylAMReXGridReader::Read(vtkImageData* image, Buffer& buffer) const
{
  auto& box = static_cast<BoxBuffer&>(buffer);
  box.Values.clear();
  const auto found = this->Blocks.find(image);
  if (found == this->Blocks.end())
  {
    return false;
  }
  const zylAMReXFab& fab = this->Layout.Boxes[found->second];
  std::size_t bytes = 0;
  for (const Field& field : this->Fields)
  {
    bytes += field.Deferred ? field.Variables.size() * SizeOfVariable(fab) : 0;
  }
  box.Memory.resize(std::max(box.Memory.size(), bytes));
  std::vector<void*> values;
  char* next = box.Memory.data();
  for (const Field& field : this->Fields)
  {
    values.push_back(field.Deferred ? next : nullptr);
    if (field.Deferred)
    {
      box.Values[field.Name] = next;
      next += field.Variables.size() * SizeOfVariable(fab);
    }
  }
  const int file = box.Source.Open(this->Layout.Files[fab.File]);
  return file >= 0 && this->ReadFields(file, fab, values);
}
