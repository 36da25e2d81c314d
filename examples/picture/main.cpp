// The smallest host without a window: an EGL context, one picture. Needs no display.
//   picture FILE PICTURE.png
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>

#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

int main(int argc, char** argv)
{
  setenv("EGL_PLATFORM", "surfaceless", 0); // Mesa: no window system
  EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  const EGLint pixels[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
    EGL_DEPTH_SIZE, 24, EGL_NONE };
  const EGLint size[] = { EGL_WIDTH, 800, EGL_HEIGHT, 600, EGL_NONE };
  const EGLint core[] = { EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2, EGL_NONE };
  EGLConfig config;
  EGLint found = 0;
  auto data = vtkSmartPointer<zylDataSet>::New();
  if (argc < 3 || !eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API) ||
    !eglChooseConfig(display, pixels, &config, 1, &found) || !data->LoadFromFile({ argv[1] }))
  {
    return 1;
  }
  EGLSurface surface = eglCreatePbufferSurface(display, config, size);
  eglMakeCurrent(display, surface, surface, eglCreateContext(display, config, nullptr, core));
  auto shown = vtkSmartPointer<zylBoundaryRepresentation>::New();
  shown->SetDataSet(data);
  for (const auto& block : data->GetBlockNameToIDsMap())
    for (unsigned int id : block.second)
      shown->GetSurfaceProperties(id)->Set("Visibility", true);
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0); // the context's own framebuffer
  view->SetWindowSize(800, 600);
  view->AddRepresentation(shown);
  view->SetViewDir(3, false);
  glClearColor(0.8f, 0.85f, 0.9f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  return view->SaveScreenshot(argv[2]) ? 0 : 1;
}
