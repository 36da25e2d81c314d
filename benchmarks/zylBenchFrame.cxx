// What handing the host's picture over and back costs: Render() against StillRender() between the
// same copies of color and depth, both ways, and against StillRender() and the copies alone.
#include "zylBench.h"

#include <cstdio>
#include <string>

#include <unistd.h>

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSphereSource.h>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

namespace {
constexpr int Frames = 50;

//--------------------------------------------------------------------------------------------------
template <class Action>
void Repeat(const char* name, const std::string& size, Action action)
{
  action();
  const zylBenchClock clock;
  for (int i = 0; i < Frames; ++i)
  {
    action();
  }
  clock.Print((std::to_string(Frames) + " x " + name + ", " + size).c_str());
}

//--------------------------------------------------------------------------------------------------
void Measure(zylBoundaryRepresentation* boundary, int width, int height)
{
  const std::string size = std::to_string(width) + " x " + std::to_string(height);
  zylBenchHost host(width, height);
  vtkNew<zylView> view;
  view->SetSourceFBO(host.GetFramebuffer());
  view->SetWindowSize(width, height);
  view->AddRepresentation(boundary);
  view->ResetCamera();
  Repeat("host's clear", size, [&] {
    host.Clear();
    host.Finish();
  });
  Repeat("Render", size, [&] {
    host.Clear();
    view->Render();
    host.Finish();
  });
  Repeat("hand-over without StillRender", size, [&] {
    host.Clear();
    view->PreRenderSetup();
    view->PostRenderCleanup();
    host.Finish();
  });
  host.Clear();
  view->PreRenderSetup();
  Repeat("StillRender alone", size, [&] {
    view->GetProxy()->StillRender();
    host.Finish();
  });
  Repeat("StillRender between copies", size, [&] {
    host.CopyOut();
    view->GetProxy()->StillRender();
    host.CopyBack();
    host.Finish();
  });
  view->PostRenderCleanup();
  Repeat("two copies and two back", size, [&] {
    host.Clear();
    host.CopyOut();
    host.CopyBack();
    host.Finish();
  });
  view->RemoveRepresentation(boundary);
}
} // namespace

int main()
{
  zylCore::GetInstance();
  vtkNew<vtkSphereSource> sphere;
  sphere->SetThetaResolution(64);
  sphere->SetPhiResolution(64);
  sphere->Update();
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, sphere->GetOutput());
  vtkNew<zylDataSet> data;
  data->InitializeFromVTKDataSet(blocks);
  vtkNew<zylBoundaryRepresentation> boundary;
  boundary->SetDataSet(data);
  boundary->GetSurfaceProperties(1)->Set("Visibility", true);
  Measure(boundary, 64, 48); // what does not depend on the size
  Measure(boundary, 800, 600);
  Measure(boundary, 1200, 900);
  std::fflush(stdout);
  _exit(0);
}
