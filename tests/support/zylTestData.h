/// @file zylTestData.h
/// Small grids made in code.
#ifndef zylTestData_h
#define zylTestData_h

#include <array>
#include <functional>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkDataSet;
class vtkDoubleArray;
class vtkFieldData;
class vtkMultiBlockDataSet;
class vtkPointSet;
class vtkUnstructuredGrid;

namespace zylTestData {

/// An array added to `data`, of this value everywhere (borrowed).
vtkDoubleArray* AddArray(
  vtkFieldData* data, const char* name, int components, vtkIdType tuples, double value = 0.0);

///@{
/// n x n x n hexahedra filling the unit cube, every point moved by `map`; its point array `name`.
using Point = std::array<double, 3>;
vtkSmartPointer<vtkUnstructuredGrid> MakeLattice(int n, const std::function<Point(Point)>& map);
void AddPointArray(
  vtkPointSet* grid, const char* name, const std::function<std::vector<double>(Point)>& values);
///@}

/// n x n x n hexahedra filling the unit cube at (x, y, z), with point arrays "pressure" (the x
/// coordinate) and "velocity" (3: y, 1 - x, z) and the cell array "quality" (the cell id).
vtkSmartPointer<vtkUnstructuredGrid> MakeCube(double x, double y, double z, int n = 2);

/// Flat tree: root 0 and `count` cubes side by side along x, 1 ... count, named "block_1" ...
vtkSmartPointer<vtkMultiBlockDataSet> MakeRow(int count, int n = 2);

/// root 0 { "A" 1, "G" 2 { "B" 3, multi-piece "P" 4 { 5, 6 } }, null block 7, "A" 8 }
vtkSmartPointer<vtkMultiBlockDataSet> MakeTree();

/// Write as .vtm (inline binary) at `path`; the path again.
std::string Write(vtkMultiBlockDataSet* data, const std::string& path);
/// Write as .vtu (inline binary).
std::string Write(vtkUnstructuredGrid* data, const std::string& path);

///@{
/// A file, written or read as it is.
void WriteFile(const std::string& name, const std::string& text);
std::string ReadFile(const std::string& name);
///@}

/// A new empty folder that is removed at process exit.
std::string MakeFolder();

/// A .pvd in `folder` naming one row of cubes per time; "pressure" is shifted by the time.
std::string WriteSeries(const std::string& folder, const double* times, int count);

} // namespace zylTestData

#endif
