// The smallest host with a window: the surfaces of a result file.   window FILE
#define GLFW_INCLUDE_NONE
#include <GL/gl.h>
#include <GLFW/glfw3.h>
#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

int main(int argc, char** argv)
{
  auto data = vtkSmartPointer<zylDataSet>::New();
  if (argc < 2 || !glfwInit() || !data->LoadFromFile({ argv[1] }))
    return 1;
  glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
  glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
  GLFWwindow* window = glfwCreateWindow(800, 600, "zyl", nullptr, nullptr);
  glfwMakeContextCurrent(window);

  auto surfaces = vtkSmartPointer<zylBoundaryRepresentation>::New();
  surfaces->SetDataSet(data);
  for (const auto& blocks : data->GetBlockNameToIDsMap()) // leaf blocks by name
    for (unsigned int id : blocks.second)
      surfaces->GetSurfaceProperties(id)->Set("Visibility", true);
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0); // the window's own framebuffer
  view->SetWindowSize(800, 600);
  view->AddRepresentation(surfaces);
  view->SetViewDir(3, false);
  while (!glfwWindowShouldClose(window))
  {
    glClearColor(0.8f, 0.85f, 0.9f, 1.0f); // the host's own picture comes first
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    view->Render();
    glfwSwapBuffers(window);
    glfwWaitEvents();
  }
}
