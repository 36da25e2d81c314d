// What it costs to find what is under the mouse, against a frame and against ParaView's own
// selection in the same view.
#include "zylBench.h"

#include <cstdio>
#include <string>

#include <unistd.h>

#include <vtkCollection.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSphereSource.h>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylSelection.h>
#include <zylView.h>

namespace {
constexpr int Side = 16; // blocks in a row and in a column
constexpr int Times = 20;

//--------------------------------------------------------------------------------------------------
template <class Action>
void Repeat(const char* name, Action action)
{
  action(0);
  const zylBenchClock clock;
  for (int i = 0; i < Times; ++i)
  {
    action(i);
  }
  clock.Print((std::to_string(Times) + " x " + name).c_str());
}
} // namespace

int main()
{
  zylCore::GetInstance();
  vtkNew<vtkMultiBlockDataSet> blocks;
  for (int i = 0; i < Side * Side; ++i)
  {
    vtkNew<vtkSphereSource> sphere;
    sphere->SetCenter(i % Side, i / Side, 0.0);
    sphere->SetThetaResolution(16);
    sphere->SetPhiResolution(16);
    sphere->Update();
    blocks->SetBlock(i, sphere->GetOutput());
  }
  vtkNew<zylDataSet> data;
  data->InitializeFromVTKDataSet(blocks);
  vtkNew<zylBoundaryRepresentation> boundary;
  boundary->SetDataSet(data);
  for (const unsigned int block : data->GetBlockIDs())
  {
    boundary->GetSurfaceProperties(static_cast<int>(block))->Set("Visibility", true);
  }
  zylBenchHost host(800, 600);
  vtkNew<zylView> view;
  view->SetSourceFBO(host.GetFramebuffer());
  view->SetWindowSize(800, 600);
  view->AddRepresentation(boundary);
  view->ResetCamera();
  view->Render();

  int hits = 0;
  const auto frame = [&] {
    host.Clear();
    view->Render();
    host.Finish();
  };
  Repeat("frame", [&](int) { frame(); });
  Repeat("SelectCells of a pixel", [&](int i) {
    const auto cells = view->SelectCells(380 + i, 310, 380 + i, 310);
    hits += !cells->GetCells(boundary).empty();
  });
  Repeat("SelectBlocks of a pixel", [&](int i) {
    const auto found = view->SelectBlocks(380 + i, 310, 380 + i, 310);
    hits += !found->GetBlocks(boundary).empty();
  });
  Repeat("SelectBlocks of all", [&](int) {
    hits += view->SelectBlocks(0, 0, 799, 599)->GetBlocks(boundary).size() == Side * Side;
  });
  Repeat("PickPointOnSurface", [&](int i) {
    double point[3];
    hits += view->PickPointOnSurface(380 + i, 310, point);
  });
  Repeat("frame and SelectBlocks of a pixel, camera moved", [&](int i) {
    view->Yaw(i % 2 ? 0.1 : -0.1);
    frame();
    view->SelectBlocks(400, 310, 400, 310);
  });
  Repeat("ParaView's selection of cells of a pixel", [&](int i) {
    vtkNew<vtkCollection> representations;
    vtkNew<vtkCollection> sources;
    const int pixel[4] = { 380 + i, 310, 380 + i, 310 };
    view->PreSelectSetup();
    view->GetProxy()->SelectSurfaceCells(pixel, representations, sources, true);
    view->PostSelectCleanup();
    hits += sources->GetNumberOfItems();
  });
  std::printf("{\"stage\": \"found\", \"hits\": %d}\n", hits);
  std::fflush(stdout);
  _exit(0);
}
