/// @file zylVolumeData.h
/// The cube [-1, 1]^3 as a volume of cells of any kind.
#ifndef zylVolumeData_h
#define zylVolumeData_h

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkDataSet;
class vtkMultiBlockDataSet;

namespace zylVolumeData {

/// "tetrahedra", "hexahedra", "voxels", "wedges", "pyramids", and those that fast filters do not
/// know: "polyhedra", "quadratic" (hexahedra), "mixed" (hexahedra and polyhedra), "image",
/// "rectilinear", "structured".
std::vector<std::string> Kinds();

/// n x n x n cubes of cells, with the point arrays "r" (distance from the origin), "x", "velocity"
/// (3: -y, x, 0) and the cell array "id". `from` and `to` bound x.
vtkSmartPointer<vtkDataSet> Make(
  const std::string& kind, int n, double from = -1.0, double to = 1.0);

/// The same in two blocks, split at x = 0.
vtkSmartPointer<vtkMultiBlockDataSet> MakeBlocks(const std::string& kind, int n);

/// The surfaces of two such blocks of hexahedra, 1 x 2 x 2 each.
vtkSmartPointer<vtkMultiBlockDataSet> MakeSurfaces(int n);

} // namespace zylVolumeData

#endif
