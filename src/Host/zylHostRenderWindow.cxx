#include "Host/zylHostRenderWindow.h"

#include "Host/zylHostErrors.h"
#include "Host/zylHostFramebuffer.h"
#include "Host/zylHostObstacle.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <sstream>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLFramebufferObject.h>
#include <vtkOpenGLState.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkTextureObject.h>
#include <vtkTextureUnitManager.h>
#include <vtk_glew.h>

namespace {
std::set<zylHostRenderWindow*> LiveWindows;

// Tells the window which texture units the renderer uses, before it does.
class TextureUnits : public vtkTextureUnitManager
{
public:
  static TextureUnits* New();
  vtkTypeMacro(TextureUnits, vtkTextureUnitManager);

  int Allocate() override { return this->Touch(this->Superclass::Allocate()); }
  int Allocate(int unit) override { return this->Touch(this->Superclass::Allocate(unit)); }

  zylHostRenderWindow* Window = nullptr; // borrowed; lives longer than its state's unit manager

private:
  int Touch(int unit)
  {
    if (unit >= 0)
    {
      this->Window->TouchTextureUnit(unit);
    }
    return unit;
  }
};
vtkStandardNewMacro(TextureUnits);

// 10 * major + minor of the current context, also of one too old to answer by number.
int ContextVersion()
{
  const char* text = reinterpret_cast<const char*>(glGetString(GL_VERSION));
  int major = 0;
  int minor = 0;
  if (text)
  {
    std::sscanf(text, "%d.%d", &major, &minor);
  }
  return 10 * major + minor;
}

std::string Hexadecimal(unsigned int value)
{
  std::ostringstream text;
  text << "0x" << std::hex << value;
  return text.str();
}

} // namespace

vtkStandardNewMacro(zylHostRenderWindow);

//--------------------------------------------------------------------------------------------------
zylHostRenderWindow::zylHostRenderWindow()
{
  this->SetReadyForRendering(true); // whether there is a context is asked for each frame
  this->SetMapped(true);
  this->SetOwnContext(0);
  LiveWindows.insert(this);
}

//--------------------------------------------------------------------------------------------------
zylHostRenderWindow::~zylHostRenderWindow()
{
  LiveWindows.erase(this);
  while (this->InFrame())
  {
    this->EndFrame();
  }
  this->Finalize(); // here, while PushContext() is still this class's
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::BeginAdoption()
{
  const zylHostContext current = zylHostContext::Current();
  if (!current)
  {
    return false;
  }
  if (this->Adopted && !this->IsAdopted())
  {
    this->Lost = current.SameContext(this->Adopted);
    this->ReleaseGraphicsResources(this);
    this->Lost = false;
  }
  this->Adopted = current;
  this->Frames.clear();
  this->Initialized = false;
  this->DepthFormat = 0;
  this->ForgetPicture();
  // Debian's GLEW is built for GLX: under EGL it loads every function and then says that there is
  // no GLX display.
  zylHostErrors errors;
  const GLboolean experimental = glewExperimental;
  glewExperimental = GL_TRUE;
  const GLenum result = glewInit();
  glewExperimental = experimental;
  this->GlewInitValid = result == GLEW_OK || result == GLEW_ERROR_NO_GLX_DISPLAY;
  if (!this->SupportsFrames())
  {
    errors.Forget();
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::FinishAdoption()
{
  vtkSmartPointer<TextureUnits> units = vtkSmartPointer<TextureUnits>::New();
  units->Window = this;
  units->Initialize();
  this->GetState()->SetTextureUnitManager(units);
  this->Mark.Make();
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::SupportsFrames() const
{
  // On an older context the functions that frames and initializing need do not exist.
  return this->GlewInitValid && ContextVersion() >= 32;
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::IsAdopted()
{
  if (!this->Initialized || !this->IsCurrent())
  {
    return false;
  }
  // A new context may have the address of a deleted one, but not what was made in that.
  return this->Mark.IsThere();
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::IsElsewhere()
{
  return this->Adopted && !this->IsCurrent();
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::IsReady()
{
  return this->IsAdopted() && zylFindHostObstacle().empty();
}

//--------------------------------------------------------------------------------------------------
std::string zylHostRenderWindow::FindObstacle() const
{
  GLint largest = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
  if (this->Size[0] > largest || this->Size[1] > largest)
  {
    return "a view of " + std::to_string(this->Size[0]) + " x " + std::to_string(this->Size[1]) +
      " pixels is larger than this OpenGL can hold (" + std::to_string(largest) + ")";
  }
  return zylFindHostObstacle();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::BeginFrame()
{
  this->Frames.push_back(std::make_unique<zylHostGLState>());
  this->Frames.back()->Save();
  vtkTextureUnitManager* units = this->GetState()->GetTextureUnitManager();
  for (int i = 0; i < units->GetNumberOfTextureUnits(); ++i)
  {
    if (units->IsAllocated(i))
    {
      this->Frames.back()->SaveTextureUnit(i);
    }
  }
  this->GetState()->Reset();
  if (this->Initialized)
  {
    this->RunPending();
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::EndFrame()
{
  if (!this->Frames.empty())
  {
    this->Frames.back()->Restore();
    this->Frames.pop_back();
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::CopyFromHost()
{
  if (!this->HasArea())
  {
    return;
  }
  std::string problem;
  GLint colorBuffer = GL_NONE;
  GLenum depthFormat = 0;
  const GLenum status = glCheckFramebufferStatus(GL_READ_FRAMEBUFFER);
  if (status == GL_FRAMEBUFFER_COMPLETE)
  {
    glGetIntegerv(GL_READ_BUFFER, &colorBuffer);
    depthFormat = zylHostFramebuffer::DepthFormat(GL_READ_FRAMEBUFFER);
  }
  else
  {
    problem = "the framebuffer to read from is not complete (" + Hexadecimal(status) + ")";
  }
  this->MatchFramebuffers(depthFormat);
  // What the host does not have, the renderer clears as it does in a window of its own.
  vtkCollectionSimpleIterator iterator;
  this->Renderers->InitTraversal(iterator);
  while (vtkRenderer* renderer = this->Renderers->GetNextRenderer(iterator))
  {
    if (renderer->GetLayer() == 0)
    {
      renderer->SetPreserveColorBuffer(colorBuffer != GL_NONE);
      renderer->SetPreserveDepthBuffer(depthFormat != 0);
    }
  }
  if (status == GL_FRAMEBUFFER_COMPLETE)
  {
    zylHostErrors::Clear();
    this->BlitToRenderFramebuffer(true);
    const GLenum error = glGetError();
    if (error != GL_NO_ERROR)
    {
      problem = "OpenGL error " + Hexadecimal(error);
    }
  }
  this->Report(this->CopyInProblem,
    problem.empty() ? problem : "The host's image cannot be copied in: " + problem);
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::HasPicture() const
{
  return this->HasArea() && this->PictureSize[0] == this->Size[0] &&
    this->PictureSize[1] == this->Size[1];
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::ForgetPicture()
{
  this->PictureSize[0] = this->PictureSize[1] = 0;
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::CopyToHost()
{
  if (!this->HasPicture())
  {
    return;
  }
  const GLenum status = glCheckFramebufferStatus(GL_DRAW_FRAMEBUFFER);
  if (status != GL_FRAMEBUFFER_COMPLETE)
  {
    this->Report(this->CopyOutProblem,
      "The picture cannot be copied out: the framebuffer to draw to is not complete (" +
        Hexadecimal(status) + ")");
    return;
  }
  std::string problem;
  const GLenum depthFormat = zylHostFramebuffer::DepthFormat(GL_DRAW_FRAMEBUFFER);
  GLbitfield mask = GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT;
  if (depthFormat != 0 && depthFormat != this->DepthFormat && this->MultiSamples <= 1)
  {
    mask = GL_COLOR_BUFFER_BIT;
    problem = "The depths cannot be copied out: the framebuffers to read from and to draw to have "
              "different depth formats (" +
      Hexadecimal(this->DepthFormat) + ", " + Hexadecimal(depthFormat) + ")";
  }
  zylHostErrors::Clear();
  zylHostFramebuffer::SingleDrawBuffer single;
  const int* size = this->Size;
  this->BlitDisplayFramebuffer(0, 0, 0, size[0], size[1], 0, 0, size[0], size[1], mask, GL_NEAREST);
  const GLenum error = glGetError();
  if (error != GL_NO_ERROR)
  {
    problem = "The picture cannot be copied out: OpenGL error " + Hexadecimal(error);
  }
  this->Report(this->CopyOutProblem, problem);
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::IsHostFramebuffer(unsigned int name) const
{
  if (name == 0)
  {
    return true;
  }
  for (const zylHostRenderWindow* window : LiveWindows)
  {
    if (window->Adopted.SameContext(this->Adopted) && window->HasFramebuffer(name))
    {
      return false;
    }
  }
  return glIsFramebuffer(name) == GL_TRUE;
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::HasFramebuffer(unsigned int name) const
{
  const auto hasName = [name](vtkOpenGLFramebufferObject* framebuffer) {
    return framebuffer && framebuffer->GetFBOIndex() == name;
  };
  return hasName(this->RenderFramebuffer) || hasName(this->DisplayFramebuffer) ||
    hasName(this->ResolveFramebuffer) || hasName(FindDepthFramebuffer(this, 0)) ||
    std::any_of(this->PassFramebuffers.begin(), this->PassFramebuffers.end(), hasName);
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::NotePassFramebuffer(vtkOpenGLFramebufferObject* framebuffer)
{
  auto& known = this->PassFramebuffers;
  if (std::find(known.begin(), known.end(), framebuffer) == known.end())
  {
    known.erase(std::remove(known.begin(), known.end(), nullptr), known.end());
    known.emplace_back(framebuffer);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostRenderWindow::IsCurrent()
{
  return !this->Lost && this->Adopted && this->Adopted.SameContext(zylHostContext::Current());
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::Render()
{
  this->Superclass::Render();
  this->PictureSize[0] = this->Size[0];
  this->PictureSize[1] = this->Size[1];
}

//--------------------------------------------------------------------------------------------------
const char* zylHostRenderWindow::ReportCapabilities()
{
  std::ostringstream report;
  const std::pair<const char*, GLenum> rows[] = { { "vendor", GL_VENDOR },
    { "renderer", GL_RENDERER }, { "version", GL_VERSION } };
  for (const auto& row : rows)
  {
    if (const GLubyte* text = glGetString(row.second))
    {
      report << "OpenGL " << row.first << " string:  " << text << '\n';
    }
  }
  if (ContextVersion() >= 30 && glGetStringi)
  {
    report << "OpenGL extensions:  \n";
    GLint count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    for (GLint i = 0; i < count; ++i)
    {
      report << "  " << glGetStringi(GL_EXTENSIONS, i) << '\n';
    }
  }
  this->CapabilityReport = report.str();
  return this->CapabilityReport.c_str();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::PushContext()
{
  if (this->PushDepth++ > 0 || !this->Adopted || this->InFrame())
  {
    return;
  }
  this->Suspended = zylHostContext::Current();
  const bool there = this->IsCurrent() ||
    (!this->Lost && this->Suspended && this->Adopted.TryMakeCurrent(this->Suspended));
  if (there && this->IsReady())
  {
    this->BeginFrame();
    this->PushedFrame = true;
    return;
  }
  // Names of the adopted context mean something else in another one. Without any context the
  // releasing calls do nothing.
  zylHostContext::Current().Release();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::PopContext()
{
  if (--this->PushDepth > 0)
  {
    return;
  }
  if (this->PushedFrame)
  {
    this->PushedFrame = false;
    this->EndFrame();
  }
  if (!this->Suspended.SameContext(zylHostContext::Current()))
  {
    this->Suspended.MakeCurrent();
  }
  this->Suspended = zylHostContext();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::WhenCurrent(std::function<void()> work)
{
  if (this->Adopted && !this->InFrame() && !this->IsReady())
  {
    this->Pending.push_back(std::move(work));
    return;
  }
  this->PushContext();
  work();
  this->PopContext();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::RunPending()
{
  std::vector<std::function<void()>> pending;
  pending.swap(this->Pending);
  for (const std::function<void()>& work : pending)
  {
    work();
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::ReleaseAll()
{
  const std::set<zylHostRenderWindow*> windows = LiveWindows;
  for (zylHostRenderWindow* window : windows)
  {
    window->ReleaseGraphicsResources(window);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::ReleaseGraphicsResources(vtkWindow* window)
{
  this->PushContext();
  this->RunPending();
  this->Superclass::ReleaseGraphicsResources(window);
  this->PushedFrame || this->InFrame() ? this->Mark.Delete() : this->Mark.Forget();
  this->PopContext();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::TouchTextureUnit(int unit)
{
  if (!this->Frames.empty())
  {
    this->Frames.back()->SaveTextureUnit(unit);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::OpenGLInit()
{
  if (this->SupportsFrames())
  {
    this->Superclass::OpenGLInit();
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::OpenGLInitContext()
{
  this->ContextCreationTime.Modified();
  if (!this->Initialized)
  {
    this->Initialized = true;
    GLfloat range[2] = { 1.0f, 1.0f };
    glGetFloatv(GL_ALIASED_LINE_WIDTH_RANGE, range);
    this->MaximumHardwareLineWidth = range[1];
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::MatchFramebuffers(unsigned int depthFormat)
{
  // Depths can be copied between buffers of one format only. Multisampled rendering needs the
  // toolkit's own set of framebuffers.
  if (this->MultiSamples > 1)
  {
    return;
  }
  const unsigned int wanted = depthFormat ? depthFormat
    : this->DepthFormat                   ? this->DepthFormat
                                          : GL_DEPTH24_STENCIL8;
  if (this->DepthFormat == wanted && this->RenderFramebuffer->GetFBOIndex())
  {
    return;
  }
  this->DepthFormat = wanted;
  this->ForgetPicture();
  this->Populate(this->RenderFramebuffer, 1);
  this->Populate(this->DisplayFramebuffer, 2);
  this->LastMultiSamples = this->MultiSamples; // or the render framebuffer is made anew
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::Populate(vtkOpenGLFramebufferObject* framebuffer, int colors)
{
  vtkOpenGLState* state = this->GetState();
  framebuffer->ReleaseGraphicsResources(this);
  state->PushFramebufferBindings();
  framebuffer->PopulateFramebuffer(
    this->Size[0], this->Size[1], true, colors, VTK_UNSIGNED_CHAR, false, 0, 0);
  vtkNew<vtkTextureObject> depth;
  this->AllocateDepth(depth, this->Size[0], this->Size[1]);
  framebuffer->AddDepthAttachment(depth);
  state->PopFramebufferBindings();
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::AllocateDepth(vtkTextureObject* depth, int width, int height)
{
  depth->SetContext(this);
  depth->SetWrapS(vtkTextureObject::ClampToEdge);
  depth->SetWrapT(vtkTextureObject::ClampToEdge);
  depth->SetMinificationFilter(vtkTextureObject::Nearest);
  depth->SetMagnificationFilter(vtkTextureObject::Nearest);
  if (this->DepthFormat == GL_DEPTH24_STENCIL8)
  {
    depth->AllocateDepthStencil(width, height);
  }
  else
  {
    const bool real =
      this->DepthFormat == GL_DEPTH_COMPONENT32F || this->DepthFormat == GL_DEPTH32F_STENCIL8;
    depth->SetInternalFormat(this->DepthFormat);
    depth->SetDataType(real ? GL_FLOAT : GL_UNSIGNED_INT);
    depth->AllocateDepth(width, height, vtkTextureObject::Native);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostRenderWindow::Report(std::string& last, const std::string& problem)
{
  if (problem != last)
  {
    last = problem;
    if (!problem.empty())
    {
      vtkLogF(ERROR, "%s", problem.c_str());
    }
  }
}

//--------------------------------------------------------------------------------------------------
zylHostResourceScope::zylHostResourceScope(vtkOpenGLRenderWindow* window)
  : Window(window)
{
  if (window)
  {
    window->PushContext();
  }
}

//--------------------------------------------------------------------------------------------------
zylHostResourceScope::~zylHostResourceScope()
{
  if (this->Window)
  {
    this->Window->PopContext();
  }
}
