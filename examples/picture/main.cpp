// The smallest host without a window or a display.   picture FILE PICTURE.png
#include <EGL/egl.h>
#include <GL/gl.h>
#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

int main(int argc, char** argv)
{
  setenv("EGL_PLATFORM", "surfaceless", 0); // Mesa without a window system
  EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  const EGLint wanted[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
    EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_NONE };
  const EGLint size[] = { EGL_WIDTH, 800, EGL_HEIGHT, 600, EGL_NONE };
  const EGLint version[] = { EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2, EGL_NONE };
  EGLConfig config;
  EGLint found = 0;
  auto data = vtkSmartPointer<zylDataSet>::New();
  if (argc < 3 || !eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API) ||
    !eglChooseConfig(display, wanted, &config, 1, &found) || !data->LoadFromFile({ argv[1] }))
    return 1;
  EGLSurface surface = eglCreatePbufferSurface(display, config, size);
  eglMakeCurrent(display, surface, surface, eglCreateContext(display, config, nullptr, version));

  auto surfaces = vtkSmartPointer<zylBoundaryRepresentation>::New();
  surfaces->SetDataSet(data);
  for (const auto& blocks : data->GetBlockNameToIDsMap()) // leaf blocks by name
    for (unsigned int id : blocks.second)
      surfaces->GetSurfaceProperties(id)->Set("Visibility", true);
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0); // the context's own framebuffer
  view->SetWindowSize(800, 600);
  view->AddRepresentation(surfaces);
  view->SetViewDir(3, false);
  glClearColor(0.8f, 0.85f, 0.9f, 1.0f); // the host's own picture comes first
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  view->Render();
  return view->SaveScreenshot(argv[2]) ? 0 : 1;
}
