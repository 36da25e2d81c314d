#include "Host/zylTranslucentPass.h"

#include "Host/zylHostRenderWindow.h"

#include <vtkObjectFactory.h>
#include <vtkOpenGLFramebufferObject.h>
#include <vtkOpenGLRenderer.h>
#include <vtkOrderIndependentTranslucentPass.h>
#include <vtkRenderState.h>
#include <vtkRendererCollection.h>
#include <vtkTextureObject.h>
#include <vtk_glew.h>

namespace {
class TranslucentPass : public vtkOrderIndependentTranslucentPass
{
public:
  static TranslucentPass* New();
  vtkTypeMacro(TranslucentPass, vtkOrderIndependentTranslucentPass);

  void Render(const vtkRenderState* state) override
  {
    auto* window = zylHostRenderWindow::SafeDownCast(state->GetRenderer()->GetRenderWindow());
    if (window && window->GetDepthFormat())
    {
      if (this->DepthFormat != window->GetDepthFormat())
      {
        this->DepthFormat = window->GetDepthFormat();
        this->ReleaseGraphicsResources(window);
      }
      if (this->TranslucentRGBATexture->GetHandle() == 0)
      {
        // The pass gives textures that exist their size.
        this->Allocate(this->TranslucentRGBATexture, window, GL_RGBA16F, GL_RGBA, 4);
        this->Allocate(this->TranslucentRTexture, window, GL_R16F, GL_RED, 1);
        window->AllocateDepth(this->TranslucentZTexture, 1, 1);
      }
    }
    this->Superclass::Render(state);
    if (window && this->Framebuffer)
    {
      window->NotePassFramebuffer(this->Framebuffer);
    }
  }

private:
  void Allocate(vtkTextureObject* texture, vtkOpenGLRenderWindow* window, unsigned int internal,
    unsigned int format, int components)
  {
    texture->SetInternalFormat(internal);
    texture->SetFormat(format);
    texture->SetDataType(GL_HALF_FLOAT);
    texture->SetContext(window);
    texture->Allocate2D(1, 1, components, VTK_FLOAT);
  }

  unsigned int DepthFormat = 0;
};
vtkStandardNewMacro(TranslucentPass);

// The renderer makes its pass on demand, and takes no other one from outside.
struct Renderer : public vtkOpenGLRenderer
{
  static void Use(vtkOpenGLRenderer* renderer)
  {
    auto& pass = renderer->*&Renderer::TranslucentPass;
    if (!pass)
    {
      pass = TranslucentPass::New();
    }
  }
};
} // namespace

//--------------------------------------------------------------------------------------------------
void zylUseTranslucentPass(vtkRenderWindow* window)
{
  vtkCollectionSimpleIterator iterator;
  window->GetRenderers()->InitTraversal(iterator);
  while (vtkRenderer* renderer = window->GetRenderers()->GetNextRenderer(iterator))
  {
    if (auto* open = vtkOpenGLRenderer::SafeDownCast(renderer))
    {
      Renderer::Use(open);
    }
  }
}
