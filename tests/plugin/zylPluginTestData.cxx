#include "zylPluginTestData.h"

#include "zylAMReXWriter.h"

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
// The bytes of all values.
template <class Value>
void Add(std::string& bytes, const Value& value)
{
  bytes.append(reinterpret_cast<const char*>(&value), sizeof(Value));
}

void AddAttributes(std::string& bytes, vtkDataSetAttributes* attributes)
{
  for (int a = 0; a < attributes->GetNumberOfArrays(); ++a)
  {
    if (vtkDataArray* array = attributes->GetArray(a))
    {
      for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i)
      {
        for (int c = 0; c < array->GetNumberOfComponents(); ++c)
        {
          Add(bytes, array->GetComponent(i, c));
        }
      }
    }
  }
}

void AddDataSet(std::string& bytes, vtkDataSet* data)
{
  double x[3];
  for (vtkIdType i = 0; i < data->GetNumberOfPoints(); ++i)
  {
    data->GetPoint(i, x);
    Add(bytes, x);
  }
  vtkNew<vtkIdList> ids;
  for (vtkIdType i = 0; i < data->GetNumberOfCells(); ++i)
  {
    Add(bytes, data->GetCellType(i));
    data->GetCellPoints(i, ids);
    for (vtkIdType k = 0; k < ids->GetNumberOfIds(); ++k)
    {
      Add(bytes, ids->GetId(k));
    }
  }
  AddAttributes(bytes, data->GetPointData());
  AddAttributes(bytes, data->GetCellData());
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
  std::string bytes;
  if (auto* composite = vtkCompositeDataSet::SafeDownCast(data))
  {
    auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
    {
      Add(bytes, iterator->GetCurrentFlatIndex());
      AddDataSet(bytes, vtkDataSet::SafeDownCast(iterator->GetCurrentDataObject()));
    }
  }
  else if (auto* single = vtkDataSet::SafeDownCast(data))
  {
    AddDataSet(bytes, single);
  }
  return std::to_string(std::hash<std::string>()(bytes));
}
