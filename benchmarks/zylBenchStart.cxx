// From process start to the first frame of a sphere through the library, and a second frame.
#include "zylBench.h"

#include <cstdio>
#include <memory>

#include <unistd.h>

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkSphereSource.h>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

int main()
{
  constexpr int width = 400;
  constexpr int height = 300;
  std::unique_ptr<zylBenchHost> host;
  auto draw = [&host](zylView* view) {
    host->Clear();
    view->Render();
    host->Finish();
  };
  zylBenchStage("core", [] { zylCore::GetInstance(); });
  zylBenchStage("host context", [&] { host = std::make_unique<zylBenchHost>(width, height); });
  vtkSmartPointer<zylView> view;
  zylBenchStage("view", [&] {
    view = vtkSmartPointer<zylView>::New();
    view->SetSourceFBO(host->GetFramebuffer());
    view->SetWindowSize(width, height);
    view->Update();
  });
  vtkSmartPointer<zylBoundaryRepresentation> boundary;
  zylBenchStage("sphere + first frame", [&] {
    vtkNew<vtkSphereSource> sphere;
    sphere->Update();
    vtkNew<vtkMultiBlockDataSet> blocks;
    blocks->SetBlock(0, sphere->GetOutput());
    vtkNew<zylDataSet> data;
    data->InitializeFromVTKDataSet(blocks);
    boundary = vtkSmartPointer<zylBoundaryRepresentation>::New();
    boundary->SetDataSet(data);
    boundary->GetSurfaceProperties(1)->Set("Visibility", true);
    view->AddRepresentation(boundary);
    view->ResetCamera();
    draw(view);
  });
  zylBenchStage("second frame", [&] { draw(view); });
  std::fflush(stdout);
  _exit(0);
}
