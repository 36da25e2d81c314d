/// @file zylFlowData.h
/// Flows whose lines are known, and questions about lines.
#ifndef zylFlowData_h
#define zylFlowData_h

#include "zylTest.h"

#include <array>

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
/// The lines of ParaView's own tracer alone, through "velocity" of all of `data`.
vtkSmartPointer<vtkPolyData> TraceDirectly(zylDataSet* data, const std::vector<double>& seeds);
void SetSeeds(zylDerivedSurfaceRepresentation* surface, const std::vector<double>& seeds);

/// Such representations with a dataset of a flow.
template <class Representation>
class zylFlowTest : public ::testing::Test
{
protected:
  void Use(const zylVelocity& flow, int n = 16)
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(Make(flow, n)));
  }
  template <class... Settings>
  void Set(const Settings&... settings)
  {
    zylSet(this->Flow->GetProperties(), settings...);
  }
  template <class... Settings>
  void Update(const Settings&... settings)
  {
    this->Set(settings...);
    this->Flow->Update();
  }
  /// What it makes with these settings besides.
  template <class... Settings>
  vtkSmartPointer<vtkPolyData> Fetch(const Settings&... settings)
  {
    this->Update(settings...);
    return this->Flow->GetDerivedSurface();
  }
  vtkSmartPointer<vtkPolyData> Trace(const std::vector<double>& seeds)
  {
    return zylFlowData::Trace(this->Flow, this->Data, seeds);
  }

  vtkNew<zylDataSet> Data;
  vtkNew<Representation> Flow;
};

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
