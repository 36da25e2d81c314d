/// @file zylSolids.h
/// Bodies whose integrals are known.
#ifndef zylSolids_h
#define zylSolids_h

#include <array>
#include <functional>

#include <vtkSmartPointer.h>

class vtkMultiBlockDataSet;
class vtkPolyData;
class vtkUnstructuredGrid;

namespace zylSolids {

using Vector = std::array<double, 3>;

/// The cube [-1, 1]^3 of 6 n^3 tetrahedra, every point moved by `map`. Point arrays: "one", "x",
/// "xx" (x squared), "position" (3); cell array "two" (2 everywhere).
vtkSmartPointer<vtkUnstructuredGrid> MakeBody(int n, const std::function<Vector(Vector)>& map);

/// The box [x, x + 1] * [0, 1]^2.
vtkSmartPointer<vtkUnstructuredGrid> MakeBox(int n, double x = 0.0);

/// The ball of radius 1 around the origin.
vtkSmartPointer<vtkUnstructuredGrid> MakeBall(int n);

/// The rectangle [0, 2] * [0, 1] of triangles, and the line from the origin to (0, 0, 5), with the
/// same arrays.
vtkSmartPointer<vtkPolyData> MakeRectangle();
vtkSmartPointer<vtkPolyData> MakeLine();

/// Boxes side by side along x as blocks 1 ... count.
vtkSmartPointer<vtkMultiBlockDataSet> MakeBoxes(int count, int n);

} // namespace zylSolids

#endif
