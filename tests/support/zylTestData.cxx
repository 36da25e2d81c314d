#include "zylTestData.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
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

void SetBlock(vtkMultiBlockDataSet* parent, unsigned int i, vtkDataObject* block, const char* name)
{
  parent->SetBlock(i, block);
  parent->GetMetaData(i)->Set(vtkCompositeDataSet::NAME(), name);
}

template <class Writer>
std::string WriteXML(vtkDataObject* data, const std::string& path)
{
  vtkNew<Writer> writer;
  writer->SetInputData(data);
  writer->SetFileName(path.c_str());
  writer->SetDataModeToBinary();
  writer->Write();
  return path;
}
} // namespace

namespace zylTestData {

//--------------------------------------------------------------------------------------------------
vtkDoubleArray* AddArray(
  vtkFieldData* data, const char* name, int components, vtkIdType tuples, double value)
{
  vtkNew<vtkDoubleArray> array;
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(tuples);
  array->FillValue(value);
  data->AddArray(array);
  return array;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeLattice(int n, const std::function<Point(Point)>& map)
{
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  const int row = n + 1;
  for (int i = 0; i < row * row * row; ++i)
  {
    points->InsertNextPoint(
      map({ double(i % row) / n, double(i / row % row) / n, double(i / row / row) / n }).data());
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  for (int i = 0; i < n * n * n; ++i)
  {
    const vtkIdType layer = row * row;
    const vtkIdType a = i % n + row * (i / n % n) + layer * (i / n / n);
    const vtkIdType ids[8] = { a, a + 1, a + 1 + row, a + row, a + layer, a + 1 + layer,
      a + 1 + row + layer, a + row + layer };
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, ids);
  }
  return grid;
}

//--------------------------------------------------------------------------------------------------
void AddPointArray(
  vtkPointSet* grid, const char* name, const std::function<std::vector<double>(Point)>& values)
{
  vtkNew<vtkDoubleArray> array;
  array->SetName(name);
  array->SetNumberOfComponents(static_cast<int>(values({ 0.0, 0.0, 0.0 }).size()));
  for (vtkIdType i = 0; i < grid->GetNumberOfPoints(); ++i)
  {
    Point p;
    grid->GetPoint(i, p.data());
    array->InsertNextTuple(values(p).data());
  }
  grid->GetPointData()->AddArray(array);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeCube(double x, double y, double z, int n)
{
  auto grid = MakeLattice(n, [=](Point p) { return Point{ x + p[0], y + p[1], z + p[2] }; });
  AddPointArray(grid, "pressure", [](Point p) { return std::vector<double>{ p[0] }; });
  AddPointArray(grid, "velocity", [](Point p) {
    return std::vector<double>{ p[1], 1.0 - p[0], p[2] };
  });
  vtkDoubleArray* quality = AddArray(grid->GetCellData(), "quality", 1, grid->GetNumberOfCells());
  for (vtkIdType i = 0; i < grid->GetNumberOfCells(); ++i)
  {
    quality->SetValue(i, double(i));
  }
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
  return WriteXML<vtkXMLMultiBlockDataWriter>(data, path);
}

//--------------------------------------------------------------------------------------------------
std::string Write(vtkUnstructuredGrid* data, const std::string& path)
{
  return WriteXML<vtkXMLUnstructuredGridWriter>(data, path);
}

//--------------------------------------------------------------------------------------------------
void WriteFile(const std::string& name, const std::string& text)
{
  std::ofstream(name, std::ios::binary) << text;
}

//--------------------------------------------------------------------------------------------------
std::string ReadFile(const std::string& name)
{
  std::ostringstream text;
  text << std::ifstream(name, std::ios::binary).rdbuf();
  return text.str();
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
