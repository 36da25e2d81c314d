// Derived surfaces and numbers of a generated tetrahedral grid, in a built-in session.
//
//     zylBenchVolume [N]     N^3 cubes of 5 tetrahedra each, default 74: 2 026 120 cells
#include "zylBench.h"
#include "zylClipRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylFieldHistogram.h"
#include "zylIntegrateFields.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylPointProbe.h"
#include "zylPropertyCollection.h"
#include "zylStreamlineRepresentation.h"
#include "zylView.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

namespace {
// Point arrays "s" (1) and "v" (3), cell array "q", on the cube [-0.5, 0.5]^3.
vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(int n)
{
  constexpr int Even[5][4] = { { 0, 1, 2, 4 }, { 1, 3, 2, 7 }, { 1, 4, 7, 5 }, { 2, 7, 4, 6 },
    { 1, 2, 4, 7 } };
  constexpr int Odd[5][4] = { { 0, 1, 3, 5 }, { 0, 3, 2, 6 }, { 0, 5, 6, 4 }, { 3, 6, 5, 7 },
    { 0, 3, 5, 6 } };
  const vtkIdType m = n + 1;
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  points->SetNumberOfPoints(m * m * m);
  vtkNew<vtkDoubleArray> s, v, q;
  s->SetName("s");
  v->SetName("v");
  q->SetName("q");
  v->SetNumberOfComponents(3);
  s->SetNumberOfTuples(m * m * m);
  v->SetNumberOfTuples(m * m * m);
  for (vtkIdType p = 0; p < m * m * m; ++p)
  {
    const double x = double(p % m) / n - 0.5;
    const double y = double(p / m % m) / n - 0.5;
    const double z = double(p / m / m) / n - 0.5;
    points->SetPoint(p, x, y, z);
    s->SetValue(
      p, std::sqrt(x * x + y * y + z * z) + 0.05 * std::sin(20.0 * x) * std::sin(20.0 * y));
    v->SetTuple3(p, -y, x, 0.1);
  }
  vtkNew<vtkCellArray> cells;
  cells->AllocateExact(5 * vtkIdType(n) * n * n, 20 * vtkIdType(n) * n * n);
  for (int k = 0; k < n; ++k)
  {
    for (int j = 0; j < n; ++j)
    {
      for (int i = 0; i < n; ++i)
      {
        for (const auto& tetra : (i + j + k) % 2 ? Odd : Even)
        {
          cells->InsertNextCell(4);
          for (const int corner : tetra)
          {
            cells->InsertCellPoint(
              i + corner % 2 + m * (j + corner / 2 % 2 + m * (k + corner / 4)));
          }
          q->InsertNextValue(
            s->GetValue(i + tetra[0] % 2 + m * (j + tetra[0] / 2 % 2 + m * (k + tetra[0] / 4))));
        }
      }
    }
  }
  grid->SetPoints(points);
  grid->SetCells(VTK_TETRA, cells);
  grid->GetPointData()->AddArray(s);
  grid->GetPointData()->AddArray(v);
  grid->GetCellData()->AddArray(q);
  return grid;
}

//--------------------------------------------------------------------------------------------------
// A derived surface as a host shows it, colored by a variable. What is measured is Update(); the
// frame is drawn beside it. `move` changes the surface.
template <class Representation, class Setup, class Move>
void Derive(const char* what, zylDataSet* data, zylView* view, Setup setup, Move move)
{
  const std::string name = what;
  auto surface = vtkSmartPointer<Representation>::New();
  const int all[] = { 0 };
  surface->GetProperties()->MakeInt("Blocks", all, 1);
  surface->SetDataSet(data);
  surface->GetSurfaceProperties()->Set("Visibility", true);
  surface->GetSurfaceProperties()->Set("ColorMode", 1);
  surface->GetSurfaceProperties()->Set("ColorVariableName", "s");
  setup(surface->GetProperties());
  zylBenchStage((name + ", first").c_str(), [&] { view->AddRepresentation(surface); });
  view->Render();
  move(surface->GetProperties());
  zylBenchStage((name + " moved").c_str(), [&] { surface->Update(); });
  view->Render();
  surface->GetSurfaceProperties()->Set("Transparency", 0.5);
  surface->GetSurfaceProperties()->Set("ColorMapName", "Jet");
  zylBenchStage((name + ", display setting changed").c_str(), [&] { surface->Update(); });
  view->Render();
  constexpr int Times = 100;
  zylBenchStage((std::to_string(Times) + " x " + name + ", nothing changed").c_str(), [&] {
    for (int i = 0; i < Times; ++i)
    {
      surface->Update();
    }
  });
  view->RemoveRepresentation(surface);
}

void DeriveSurfaces(zylDataSet* data)
{
  zylBenchHost host(400, 300);
  vtkNew<zylView> view;
  view->SetSourceFBO(host.GetFramebuffer());
  view->SetWindowSize(400, 300);
  view->Update();
  const auto plane = [](const char* normal) {
    return [normal](zylPropertyCollection* settings) {
      const double direction[] = { 1.0, 0.3, 0.2 };
      settings->Set(normal, direction, 3);
    };
  };
  const auto moved = [](const char* center) {
    return [center](zylPropertyCollection* settings) { settings->Set(center, 0, 0.013); };
  };
  Derive<zylIsosurfaceRepresentation>(
    "isosurface", data, view,
    [](zylPropertyCollection* settings) {
      settings->Set("Variable", "s");
      settings->Set("Isovalue", 0.3);
    },
    [](zylPropertyCollection* settings) { settings->Set("Isovalue", 0.35); });
  Derive<zylCutPlaneRepresentation>("plane cut", data, view, plane("Normal"), moved("Center"));
  Derive<zylCutPlaneRepresentation>(
    "crinkle cut", data, view,
    [&plane](zylPropertyCollection* settings) {
      plane("Normal")(settings);
      settings->Set("CrinkleCut", true);
    },
    moved("Center"));
  Derive<zylClipRepresentation>(
    "clip", data, view,
    [&plane](zylPropertyCollection* settings) {
      plane("PlaneNormal")(settings);
      settings->Set("ClipMode", 1);
    },
    moved("PlaneCenter"));
}

//--------------------------------------------------------------------------------------------------
// Both ways from a row of 100 seeds, which is the baseline's.
void TraceLines(zylDataSet* data)
{
  vtkNew<zylStreamlineRepresentation> lines;
  const int all[] = { 0 };
  zylPropertyCollection* settings = lines->GetProperties();
  settings->MakeInt("Blocks", all, 1);
  settings->Set("VectorVariable", "v");
  settings->Set("MaximumStreamlineLength", 10.0);
  std::vector<double> seeds;
  for (int i = 0; i < 100; ++i)
  {
    seeds.insert(seeds.end(), { 0.02 + 0.43 * i / 99.0, 0.0, -0.45 });
  }
  settings->MakeDouble("SeedPoints", seeds.data(), static_cast<unsigned int>(seeds.size()));
  lines->SetDataSet(data);
  zylBenchStage("100 streamlines, first", [&] { lines->Update(); });
  settings->Set("MaximumStreamlineLength", 9.9);
  zylBenchStage("100 streamlines changed", [&] { lines->Update(); });
  settings->Set("Ribbon", true);
  settings->Set("RibbonWidth", 0.01);
  zylBenchStage("100 streamlines, as ribbons", [&] { lines->Update(); });
}

//--------------------------------------------------------------------------------------------------
void Integrate(zylDataSet* data)
{
  vtkNew<zylIntegrateFields> integral;
  integral->SetDataSet(data);
  zylBenchStage("integral", [&] { integral->GetIntegratedValues(0); });
  zylBenchStage("integral, asked again", [&] { integral->GetIntegratedValues(0); });
}

//--------------------------------------------------------------------------------------------------
void CountInBins(zylDataSet* data)
{
  vtkNew<zylFieldHistogram> histogram;
  const double range[] = { 0.0, 1.0 };
  histogram->SetDataSet(data);
  histogram->GetProperties()->Set("VariableName", "s");
  histogram->GetProperties()->Set("BinCount", 64);
  histogram->GetProperties()->Set("BinRanges", range, 2);
  zylBenchStage("histogram", [&] { histogram->GetBins(); });
  histogram->GetProperties()->Set("BinCount", 65);
  zylBenchStage("histogram, other bins", [&] { histogram->GetBins(); });
}

//--------------------------------------------------------------------------------------------------
void SetRandomPoints(zylPointProbe* probe, unsigned int seed)
{
  std::mt19937 engine(seed);
  std::uniform_real_distribution<double> inside(-0.49, 0.49);
  std::vector<double> coordinates(3000);
  for (double& coordinate : coordinates)
  {
    coordinate = inside(engine);
  }
  auto* property = probe->GetProperties()->GetProperty("ProbePoints");
  property->SetNumberOfElements(3000);
  property->SetElements(coordinates.data(), 3000);
}

void Probe(zylDataSet* data)
{
  vtkNew<zylPointProbe> probe;
  probe->SetDataSet(data);
  const auto all = [&probe] {
    probe->Update();
    for (unsigned int i = 0; i < 1000; ++i)
    {
      probe->GetProbedValues(i);
    }
  };
  SetRandomPoints(probe, 1);
  zylBenchStage("1000 probe points", all);
  SetRandomPoints(probe, 2);
  zylBenchStage("1000 probe points moved", all);
  SetRandomPoints(probe, 3);
  zylBenchStage("1000 probe points moved again", all);
  zylBenchStage("1000 probe points, nothing changed", all);
}
} // namespace

int main(int argc, char** argv)
{
  const int n = argc > 1 ? std::atoi(argv[1]) : 74;
  if (n < 1)
  {
    std::fprintf(stderr, "usage: zylBenchVolume [N]\n");
    return 1;
  }
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, MakeGrid(n));
  vtkNew<zylDataSet> data;
  zylBenchStage("load", [&] { data->InitializeFromVTKDataSet(blocks); });
  DeriveSurfaces(data);
  TraceLines(data);
  Integrate(data);
  CountInBins(data);
  Probe(data);
  return 0;
}
