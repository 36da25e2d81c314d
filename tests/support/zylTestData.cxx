#include "zylTestData.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkMultiPieceDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

namespace {
struct Folders
{
  std::vector<std::string> Paths;
  ~Folders()
  {
    for (const auto& path : this->Paths)
    {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
  }
};

vtkSmartPointer<vtkDoubleArray> MakeArray(const char* name, int components)
{
  auto array = vtkSmartPointer<vtkDoubleArray>::New();
  array->SetName(name);
  array->SetNumberOfComponents(components);
  return array;
}

void SetBlock(vtkMultiBlockDataSet* parent, unsigned int i, vtkDataObject* block, const char* name)
{
  parent->SetBlock(i, block);
  parent->GetMetaData(i)->Set(vtkCompositeDataSet::NAME(), name);
}
} // namespace

namespace zylTestData {

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeCube(double x, double y, double z, int n)
{
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  auto pressure = MakeArray("pressure", 1);
  auto velocity = MakeArray("velocity", 3);
  auto quality = MakeArray("quality", 1);
  for (int k = 0; k <= n; ++k)
  {
    for (int j = 0; j <= n; ++j)
    {
      for (int i = 0; i <= n; ++i)
      {
        const double p[3] = { x + double(i) / n, y + double(j) / n, z + double(k) / n };
        points->InsertNextPoint(p);
        pressure->InsertNextValue(p[0]);
        velocity->InsertNextTuple3(p[1], 1.0 - p[0], p[2]);
      }
    }
  }
  grid->SetPoints(points);
  const auto id = [n](int i, int j, int k) { return vtkIdType(i + (n + 1) * (j + (n + 1) * k)); };
  for (int k = 0; k < n; ++k)
  {
    for (int j = 0; j < n; ++j)
    {
      for (int i = 0; i < n; ++i)
      {
        const vtkIdType ids[8] = { id(i, j, k), id(i + 1, j, k), id(i + 1, j + 1, k),
          id(i, j + 1, k), id(i, j, k + 1), id(i + 1, j, k + 1), id(i + 1, j + 1, k + 1),
          id(i, j + 1, k + 1) };
        quality->InsertNextValue(double(grid->InsertNextCell(VTK_HEXAHEDRON, 8, ids)));
      }
    }
  }
  grid->GetPointData()->AddArray(pressure);
  grid->GetPointData()->AddArray(velocity);
  grid->GetCellData()->AddArray(quality);
  return grid;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> MakeRow(int count, int n)
{
  auto root = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  for (int i = 0; i < count; ++i)
  {
    SetBlock(root, unsigned(i), MakeCube(i, 0, 0, n), ("block_" + std::to_string(i + 1)).c_str());
  }
  return root;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> MakeTree()
{
  vtkNew<vtkMultiPieceDataSet> pieces;
  pieces->SetNumberOfPieces(2);
  pieces->SetPiece(0, MakeCube(2, 0, 0));
  pieces->SetPiece(1, MakeCube(3, 0, 0));
  vtkNew<vtkMultiBlockDataSet> group;
  SetBlock(group, 0, MakeCube(1, 0, 0), "B");
  SetBlock(group, 1, pieces, "P");
  auto root = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  root->SetNumberOfBlocks(4);
  SetBlock(root, 0, MakeCube(0, 0, 0), "A");
  SetBlock(root, 1, group, "G");
  SetBlock(root, 3, MakeCube(5, 0, 0), "A");
  return root;
}

//--------------------------------------------------------------------------------------------------
std::string Write(vtkMultiBlockDataSet* data, const std::string& path)
{
  vtkNew<vtkXMLMultiBlockDataWriter> writer;
  writer->SetInputData(data);
  writer->SetFileName(path.c_str());
  writer->SetDataModeToBinary();
  writer->Write();
  return path;
}

//--------------------------------------------------------------------------------------------------
std::string Write(vtkUnstructuredGrid* data, const std::string& path)
{
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetInputData(data);
  writer->SetFileName(path.c_str());
  writer->SetDataModeToBinary();
  writer->Write();
  return path;
}

//--------------------------------------------------------------------------------------------------
std::string MakeFolder()
{
  static Folders folders;
  std::string name = (std::filesystem::temp_directory_path() / "zyltest.XXXXXX").string();
  folders.Paths.emplace_back(mkdtemp(name.data()));
  return folders.Paths.back();
}

//--------------------------------------------------------------------------------------------------
std::string WriteSeries(const std::string& folder, const double* times, int count)
{
  const std::string path = folder + "/series.pvd";
  std::ofstream pvd(path);
  pvd << "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n";
  for (int t = 0; t < count; ++t)
  {
    auto row = MakeRow(2);
    for (unsigned int b = 0; b < 2; ++b)
    {
      auto* array = vtkDoubleArray::SafeDownCast(
        vtkUnstructuredGrid::SafeDownCast(row->GetBlock(b))->GetPointData()->GetArray("pressure"));
      for (vtkIdType i = 0; i < array->GetNumberOfValues(); ++i)
      {
        array->SetValue(i, array->GetValue(i) + times[t]);
      }
    }
    const std::string name = "step_" + std::to_string(t) + ".vtm";
    Write(row, folder + "/" + name);
    pvd << "<DataSet timestep=\"" << times[t] << "\" part=\"0\" file=\"" << name << "\"/>\n";
  }
  pvd << "</Collection>\n</VTKFile>\n";
  return path;
}

} // namespace zylTestData
