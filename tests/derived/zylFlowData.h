/// @file zylFlowData.h
/// Flows whose lines are known, and questions about lines.
#ifndef zylFlowData_h
#define zylFlowData_h

#include <array>
#include <functional>
#include <vector>

#include <vtkSmartPointer.h>

class vtkMultiBlockDataSet;
class vtkPolyData;
class vtkSMSourceProxy;
class vtkUnstructuredGrid;
class zylDataSet;
class zylDerivedSurfaceRepresentation;

using zylPoint = std::array<double, 3>;
using zylVelocity = std::function<zylPoint(const zylPoint&)>;

namespace zylFlowData {

///@{
/// Flows: everywhere the same; about z at 1 rad/s; a Burgers vortex about z, drawn out along it.
zylPoint Uniform(const zylPoint& p);
zylPoint Rotation(const zylPoint& p);
zylPoint Burgers(const zylPoint& p);
///@}

/// n x n x n hexahedra filling [low, low + 2] x [-1, 1] x [-1, 1] with the point arrays "velocity",
/// "pressure" (the x coordinate, the active scalars) and "stress" (9 components).
vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(const zylVelocity& flow, int n, double low = -1.0);
/// One block of that.
vtkSmartPointer<vtkMultiBlockDataSet> Make(const zylVelocity& flow, int n = 16);

/// Shows what `surface` makes of all of `data` with these seeds. What it delivers.
vtkSmartPointer<vtkPolyData> Trace(
  zylDerivedSurfaceRepresentation* surface, zylDataSet* data, const std::vector<double>& seeds);
void SetSeeds(zylDerivedSurfaceRepresentation* surface, const std::vector<double>& seeds);

/// The registered proxy of that XML name (borrowed), null if there is none. Of several the last.
vtkSMSourceProxy* FindProxy(const char* name);
/// What `proxy` delivers, in this process.
vtkSmartPointer<vtkPolyData> FetchLines(vtkSMSourceProxy* proxy);
/// How often the filter of a proxy of the built-in session executes during `action`.
int CountExecutions(vtkSMSourceProxy* proxy, const std::function<void()>& action);

/// Sum over all lines.
double GetLength(vtkPolyData* lines);
/// Largest value of `distance` over all points of the cells.
double GetMaximum(vtkPolyData* lines, const std::function<double(const zylPoint&)>& distance);

} // namespace zylFlowData

#endif
