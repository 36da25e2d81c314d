#include "zylPluginTestData.h"

#include "zylAMReXWriter.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkIntArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkOverlappingAMR.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUniformGrid.h>
#include <vtkXMLMultiBlockDataWriter.h>

namespace {
// FNV-1a over bytes.
class Hash
{
public:
  template <class Value>
  void Add(const Value& value)
  {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
    for (std::size_t i = 0; i < sizeof(Value); ++i)
    {
      this->State = (this->State ^ bytes[i]) * 1099511628211u;
    }
  }

  std::uint64_t Get() const { return this->State; }

private:
  std::uint64_t State = 14695981039346656037u;
};

void AddAttributes(Hash& hash, vtkDataSetAttributes* attributes)
{
  for (int a = 0; a < attributes->GetNumberOfArrays(); ++a)
  {
    if (vtkDataArray* array = attributes->GetArray(a))
    {
      for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i)
      {
        for (int c = 0; c < array->GetNumberOfComponents(); ++c)
        {
          hash.Add(array->GetComponent(i, c));
        }
      }
    }
  }
}

void AddDataSet(Hash& hash, vtkDataSet* data)
{
  double x[3];
  for (vtkIdType i = 0; i < data->GetNumberOfPoints(); ++i)
  {
    data->GetPoint(i, x);
    hash.Add(x);
  }
  vtkNew<vtkIdList> ids;
  for (vtkIdType i = 0; i < data->GetNumberOfCells(); ++i)
  {
    hash.Add(data->GetCellType(i));
    data->GetCellPoints(i, ids);
    for (vtkIdType k = 0; k < ids->GetNumberOfIds(); ++k)
    {
      hash.Add(ids->GetId(k));
    }
  }
  AddAttributes(hash, data->GetPointData());
  AddAttributes(hash, data->GetCellData());
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUniformGrid> zylMakeGrid(
  int nx, int ny, int nz, double x0, double y0, double z0, double spacing)
{
  auto grid = vtkSmartPointer<vtkUniformGrid>::New();
  grid->SetOrigin(x0, y0, z0);
  grid->SetSpacing(spacing, spacing, spacing);
  grid->SetDimensions(nx + 1, ny + 1, nz + 1);
  return grid;
}

//--------------------------------------------------------------------------------------------------
template <class Array>
void zylAddCells(vtkUniformGrid* grid, const char* name, const std::function<double(int)>& value)
{
  vtkNew<Array> array;
  array->SetName(name);
  array->SetNumberOfTuples(grid->GetNumberOfCells());
  for (vtkIdType i = 0; i < grid->GetNumberOfCells(); ++i)
  {
    array->SetComponent(i, 0, value(static_cast<int>(i)));
  }
  grid->GetCellData()->AddArray(array);
}

template void zylAddCells<vtkDoubleArray>(
  vtkUniformGrid*, const char*, const std::function<double(int)>&);
template void zylAddCells<vtkFloatArray>(
  vtkUniformGrid*, const char*, const std::function<double(int)>&);
template void zylAddCells<vtkIntArray>(
  vtkUniformGrid*, const char*, const std::function<double(int)>&);

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkOverlappingAMR> zylMakeAMR(
  const std::vector<std::vector<vtkSmartPointer<vtkUniformGrid>>>& levels)
{
  std::vector<int> counts;
  for (const auto& level : levels)
  {
    counts.push_back(static_cast<int>(level.size()));
  }
  auto amr = vtkSmartPointer<vtkOverlappingAMR>::New();
  amr->Initialize(static_cast<int>(levels.size()), counts.data());
  for (unsigned int l = 0; l < levels.size(); ++l)
  {
    for (unsigned int i = 0; i < levels[l].size(); ++i)
    {
      amr->SetDataSet(l, i, levels[l][i]);
    }
  }
  return amr;
}

//--------------------------------------------------------------------------------------------------
zylTemporaryDirectory::zylTemporaryDirectory()
{
  std::string name = (std::filesystem::temp_directory_path() / "zylPluginXXXXXX").string();
  this->Path = mkdtemp(&name[0]);
}

//--------------------------------------------------------------------------------------------------
zylTemporaryDirectory::~zylTemporaryDirectory()
{
  std::error_code code;
  std::filesystem::remove_all(this->Path, code);
}

//--------------------------------------------------------------------------------------------------
void zylWriteFile(const std::string& name, const std::string& text)
{
  std::ofstream(name, std::ios::binary) << text;
}

//--------------------------------------------------------------------------------------------------
std::string zylReadFile(const std::string& name)
{
  std::ostringstream text;
  text << std::ifstream(name, std::ios::binary).rdbuf();
  return text.str();
}

//--------------------------------------------------------------------------------------------------
void zylWriteSmallPlotfile(const std::string& path, double value)
{
  zylAMReXPlotfile plot;
  plot.Variables = { "value", "part_id", "level_mask" };
  plot.DomainCells = { { 8, 8, 8 } };
  plot.Levels = { { zylAMReXBox{ { { 0, 0, 0 } }, { { 7, 7, 3 } } },
                    zylAMReXBox{ { { 0, 0, 4 } }, { { 7, 7, 7 } } } },
    { zylAMReXBox{ { { 0, 0, 0 } }, { { 7, 7, 7 } } } } };
  plot.Values = [value](const zylAMReXCell& cell, double* values) {
    values[0] = value;
    values[1] = cell.Center[0] < 0.5 ? 0.0 : 1.0;
    values[2] = cell.Covered ? 0.0 : 1.0;
  };
  std::string error;
  ASSERT_TRUE(zylWriteAMReX(path, plot, error)) << error;
}

//--------------------------------------------------------------------------------------------------
void zylWriteSurface(const std::string& name, double radius)
{
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(-radius, 0.0, 0.0);
  points->InsertNextPoint(radius, 0.0, 0.0);
  points->InsertNextPoint(0.0, radius, 0.0);
  vtkNew<vtkPolyData> triangle;
  triangle->SetPoints(points);
  triangle->Allocate(1);
  const vtkIdType ids[3] = { 0, 1, 2 };
  triangle->InsertNextCell(VTK_TRIANGLE, 3, ids);
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, triangle);
  blocks->GetMetaData(0u)->Set(vtkCompositeDataSet::NAME(), "ball");
  vtkNew<vtkXMLMultiBlockDataWriter> writer;
  writer->SetInputDataObject(blocks);
  writer->SetFileName(name.c_str());
  writer->SetDataModeToAscii();
  ASSERT_TRUE(writer->Write());
}

//--------------------------------------------------------------------------------------------------
std::string zylDigest(vtkDataObject* data)
{
  Hash hash;
  if (auto* composite = vtkCompositeDataSet::SafeDownCast(data))
  {
    auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
    {
      hash.Add(iterator->GetCurrentFlatIndex());
      AddDataSet(hash, vtkDataSet::SafeDownCast(iterator->GetCurrentDataObject()));
    }
  }
  else if (auto* single = vtkDataSet::SafeDownCast(data))
  {
    AddDataSet(hash, single);
  }
  return std::to_string(hash.Get());
}
