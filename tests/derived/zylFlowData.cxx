#include "zylFlowData.h"

#include "zylCore.h"
#include "zylDataSet.h"
#include "zylDerivedSurfaceRepresentation.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <vtkCallbackCommand.h>
#include <vtkCellArray.h>
#include <vtkDoubleArray.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkUnstructuredGrid.h>

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
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  vtkNew<vtkDoubleArray> velocity;
  velocity->SetName("velocity");
  velocity->SetNumberOfComponents(3);
  vtkNew<vtkDoubleArray> pressure;
  pressure->SetName("pressure");
  const auto at = [n](int i) { return 2.0 * i / n; };
  for (int i = 0; i < (n + 1) * (n + 1) * (n + 1); ++i)
  {
    const zylPoint p = { low + at(i % (n + 1)), at(i / (n + 1) % (n + 1)) - 1.0,
      at(i / (n + 1) / (n + 1)) - 1.0 };
    points->InsertNextPoint(p.data());
    velocity->InsertNextTuple(flow(p).data());
    pressure->InsertNextValue(p[0]);
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  for (int i = 0; i < n * n * n; ++i)
  {
    const vtkIdType row = n + 1;
    const vtkIdType layer = row * row;
    const vtkIdType a = i % n + row * (i / n % n) + layer * (i / n / n);
    const vtkIdType ids[8] = { a, a + 1, a + 1 + row, a + row, a + layer, a + 1 + layer,
      a + 1 + row + layer, a + row + layer };
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, ids);
  }
  vtkNew<vtkDoubleArray> stress;
  stress->SetName("stress");
  stress->SetNumberOfComponents(9);
  stress->SetNumberOfTuples(points->GetNumberOfPoints());
  stress->Fill(1.0);
  grid->GetPointData()->AddArray(stress);
  grid->GetPointData()->SetScalars(pressure);
  grid->GetPointData()->AddArray(velocity);
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
  const int all[] = { 0 };
  surface->GetProperties()->MakeInt("Blocks", all, 1);
  surface->GetProperties()->Set("VectorVariable", "velocity");
  SetSeeds(surface, seeds);
  surface->SetDataSet(data);
  surface->Update();
  return surface->GetDerivedSurface();
}

//--------------------------------------------------------------------------------------------------
void SetSeeds(zylDerivedSurfaceRepresentation* surface, const std::vector<double>& seeds)
{
  const auto count = static_cast<unsigned int>(seeds.size());
  if (zylProperty* points = surface->GetProperties()->GetProperty("SeedPoints"))
  {
    points->SetNumberOfElements(count);
    points->SetElements(seeds.data(), count);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* FindProxy(const char* name)
{
  vtkSMSourceProxy* found = nullptr;
  vtkNew<vtkSMProxyIterator> iterator;
  iterator->SetSessionProxyManager(zylCore::GetInstance()->GetSessionProxyManager());
  for (iterator->Begin("sources"); !iterator->IsAtEnd(); iterator->Next())
  {
    if (iterator->GetProxy()->GetXMLName() == std::string(name))
    {
      found = vtkSMSourceProxy::SafeDownCast(iterator->GetProxy());
    }
  }
  return found;
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
