#include "zylFlowData.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylDerivedSurfaceRepresentation.h"
#include "zylTest.h"

#include <vtkCallbackCommand.h>
#include <vtkCellArray.h>
#include <vtkIdList.h>
#include <vtkMath.h>

namespace zylFlowData {

//--------------------------------------------------------------------------------------------------
zylPoint Uniform(const zylPoint&)
{
  return { 2.0, 0.0, 0.0 };
}

//--------------------------------------------------------------------------------------------------
zylPoint Rotation(const zylPoint& p)
{
  return { -p[1], p[0], 0.0 };
}

//--------------------------------------------------------------------------------------------------
zylPoint Burgers(const zylPoint& p)
{
  constexpr double strain = 0.5;
  constexpr double core = 0.3; // radius
  const double r2 = p[0] * p[0] + p[1] * p[1];
  const double swirl = r2 > 0.0 ? (1.0 - std::exp(-r2 / (core * core))) / r2 : 1.0 / (core * core);
  return { -strain * p[0] - swirl * p[1], -strain * p[1] + swirl * p[0], 2.0 * strain * p[2] };
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(const zylVelocity& flow, int n, double low)
{
  auto grid = zylTestData::MakeLattice(n, [low](zylPoint p) {
    return zylPoint{ low + 2.0 * p[0], 2.0 * p[1] - 1.0, 2.0 * p[2] - 1.0 };
  });
  zylTestData::AddArray(grid->GetPointData(), "stress", 9, grid->GetNumberOfPoints(), 1.0);
  zylTestData::AddPointArray(grid, "pressure", [](zylPoint p) { return zylValues{ p[0] }; });
  zylTestData::AddPointArray(grid, "velocity", [&flow](zylPoint p) {
    const zylPoint v = flow(p);
    return zylValues(v.begin(), v.end());
  });
  grid->GetPointData()->SetActiveScalars("pressure");
  return grid;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkMultiBlockDataSet> Make(const zylVelocity& flow, int n)
{
  auto data = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  data->SetBlock(0, MakeGrid(flow, n));
  return data;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> Trace(
  zylDerivedSurfaceRepresentation* surface, zylDataSet* data, const std::vector<double>& seeds)
{
  zylSet(surface->GetProperties(), "Blocks", zylValues{ 0 }, "VectorVariable", "velocity");
  SetSeeds(surface, seeds);
  surface->SetDataSet(data);
  surface->Update();
  return surface->GetDerivedSurface();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> TraceDirectly(zylDataSet* data, const std::vector<double>& seeds)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  const auto source = zylProxyBuilder(manager, "sources", "PolyLineSource").Make();
  vtkSMPropertyHelper(source, "Points").Set(seeds.data(), static_cast<unsigned int>(seeds.size()));
  source->UpdateVTKObjects();
  const auto tracer = zylProxyBuilder(manager, "filters", "ArbitrarySourceStreamTracer")
                        .Input(data->GetOutput())
                        .Input(source, "Source")
                        .Set("MaximumPropagation", 1e299)
                        .Make();
  vtkSMPropertyHelper(tracer, "SelectInputVectors").SetInputArrayToProcess(0, "velocity");
  tracer->UpdateVTKObjects();
  tracer->UpdatePipeline();
  const auto lines = FetchLines(tracer);
  zylUnregister(tracer);
  zylUnregister(source);
  return lines;
}

//--------------------------------------------------------------------------------------------------
void SetSeeds(zylDerivedSurfaceRepresentation* surface, const std::vector<double>& seeds)
{
  if (surface->GetProperties()->Has("SeedPoints"))
  {
    zylSet(surface->GetProperties(), "SeedPoints", seeds);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPolyData> FetchLines(vtkSMSourceProxy* proxy)
{
  return vtkPolyData::SafeDownCast(zylCore::Fetch(proxy, "vtkAppendPolyData"));
}

//--------------------------------------------------------------------------------------------------
int CountExecutions(vtkSMSourceProxy* proxy, const std::function<void()>& action)
{
  int count = 0;
  vtkNew<vtkCallbackCommand> counter;
  counter->SetClientData(&count);
  counter->SetCallback(
    [](vtkObject*, unsigned long, void* data, void*) { ++*static_cast<int*>(data); });
  vtkObject* filter = vtkObject::SafeDownCast(proxy->GetClientSideObject());
  const unsigned long tag = filter->AddObserver(vtkCommand::StartEvent, counter);
  action();
  filter->RemoveObserver(tag);
  return count;
}

//--------------------------------------------------------------------------------------------------
double GetLength(vtkPolyData* lines)
{
  double length = 0.0;
  vtkNew<vtkIdList> ids;
  vtkCellArray* cells = lines->GetLines();
  for (cells->InitTraversal(); cells->GetNextCell(ids);)
  {
    for (vtkIdType i = 1; i < ids->GetNumberOfIds(); ++i)
    {
      double a[3];
      double b[3];
      lines->GetPoint(ids->GetId(i - 1), a);
      lines->GetPoint(ids->GetId(i), b);
      length += std::sqrt(vtkMath::Distance2BetweenPoints(a, b));
    }
  }
  return length;
}

//--------------------------------------------------------------------------------------------------
double GetMaximum(vtkPolyData* lines, const std::function<double(const zylPoint&)>& distance)
{
  double largest = -1e299;
  for (vtkIdType i = 0; i < lines->GetNumberOfPoints(); ++i)
  {
    zylPoint p;
    lines->GetPoint(i, p.data());
    largest = std::max(largest, distance(p));
  }
  return largest;
}

} // namespace zylFlowData
