// A host that is C++ only, names no ParaView module and has no autoinit line: 0 when the library
// works.
#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <zylDataSet.h>

#include <cstdio>

int main(int argc, char** argv)
{
  vtkNew<vtkRenderer> renderer;
  if (!renderer->IsA("vtkOpenGLRenderer"))
  {
    std::puts("the rendering backend is not registered");
    return 1;
  }
  vtkNew<zylDataSet> data;
  if (argc < 2 || !data->LoadFromFile({ argv[1] }))
  {
    return 1;
  }
  data->Update();
  std::printf("%lld points\n", static_cast<long long>(data->GetNumberOfPoints()));
  return data->GetNumberOfPoints() == 4 ? 0 : 1;
}
