// The smallest host: its own window and OpenGL context, a result file shown by zyl.
//     host FILE [PICTURE.png]    with a picture: one frame, then exit
#include <GLFW/glfw3.h>
#include <vtkNew.h>
#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

int main(int argc, char** argv)
{
  if (argc < 2 || !glfwInit())
  {
    return 1;
  }
  glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
  glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
  GLFWwindow* window = glfwCreateWindow(800, 600, "host", nullptr, nullptr);
  glfwMakeContextCurrent(window);

  vtkNew<zylDataSet> data; // the first object of the library starts ParaView
  if (!data->LoadFromFile({ argv[1] }))
  {
    return 1;
  }
  data->Update();

  vtkNew<zylBoundaryRepresentation> boundary;
  boundary->SetDataSet(data);
  for (unsigned int block : data->GetBlockIDs())
  {
    boundary->GetSurfaceProperties(block)->Set("Visibility", true);
  }

  vtkNew<zylView> view;
  view->SetSourceFBO(0); // this host draws into its window
  view->SetWindowSize(800, 600);
  view->AddRepresentation(boundary);
  view->ResetCamera();

  while (!glfwWindowShouldClose(window))
  {
    glClearColor(0.2f, 0.3f, 0.4f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); // the host's own drawing comes here
    view->Render();
    if (argc > 2)
    {
      return view->SaveScreenshot(argv[2]) ? 0 : 1;
    }
    glfwSwapBuffers(window);
    glfwWaitEvents();
  }
}
