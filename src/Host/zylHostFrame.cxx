#include "Host/zylHostFrame.h"

#include "Host/zylHostRenderWindow.h"

#include <vtkLogger.h>
#include <vtkOpenGLState.h>
#include <vtk_glew.h>

//--------------------------------------------------------------------------------------------------
zylHostFrame::zylHostFrame() = default;

//--------------------------------------------------------------------------------------------------
zylHostFrame::~zylHostFrame() = default;

//--------------------------------------------------------------------------------------------------
void zylHostFrame::SetWindow(vtkRenderWindow* window)
{
  this->Window = zylHostRenderWindow::SafeDownCast(window);
}

//--------------------------------------------------------------------------------------------------
zylHostRenderWindow* zylHostFrame::GetWindow() const
{
  return this->Window;
}

//--------------------------------------------------------------------------------------------------
zylHostFrame::Adoption zylHostFrame::Adopt()
{
  zylHostRenderWindow* window = this->Window;
  if (!window)
  {
    return NoWindow;
  }
  if (this->ContextInitialized && window->IsAdopted())
  {
    return this->IsObstructed() ? Obstructed : Adopted;
  }
  this->ContextInitialized = false;
  if (!window->BeginAdoption())
  {
    return NoContext;
  }
  if (window->SupportsFrames())
  {
    if (this->IsObstructed())
    {
      return Obstructed;
    }
    window->BeginFrame();
  }
  window->GetState()->Reset();
  this->PushState();
  window->InitializeFromCurrentContext();
  int major = 2;
  int minor = 0;
  window->GetOpenGLVersion(major, minor);
  if (major < 4 && !(major == 3 && minor >= 2))
  {
    // Kept: the pushed state stays pushed, and the next render tries again.
    window->EndFrame();
    return TooOld;
  }
  window->FinishAdoption();
  window->SetFrameBlitModeToNoBlit();
  this->PopState();
  window->EndFrame();
  this->ContextInitialized = true;
  return Adopted;
}

//--------------------------------------------------------------------------------------------------
bool zylHostFrame::IsObstructed()
{
  // What stands in the way stands there before a frame, or not at all.
  const std::string obstacle = this->IsOpen() ? "" : this->Window->FindObstacle();
  if (obstacle != this->Obstacle)
  {
    this->Obstacle = obstacle;
    if (!obstacle.empty())
    {
      vtkLogF(ERROR, "The view is not drawn: %s", obstacle.c_str());
    }
  }
  return !obstacle.empty();
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::Begin()
{
  this->Window->BeginFrame();
}

//--------------------------------------------------------------------------------------------------
bool zylHostFrame::IsOpen() const
{
  return this->Window && this->Window->InFrame();
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::CopyIn(int source)
{
  if (source >= 0 && this->Window->IsHostFramebuffer(source))
  {
    this->Window->GetState()->vtkglBindFramebuffer(GL_READ_FRAMEBUFFER, source);
    this->BadSource = -1;
  }
  else if (source >= 0 && this->BadSource != source)
  {
    this->BadSource = source;
    vtkLogF(ERROR,
      "The context has no framebuffer object %d to copy the host's image from; the bound one is "
      "taken. SetSourceFBO() names it, 0 is the window",
      source);
  }
  this->Window->CopyFromHost();
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::CopyOut()
{
  this->Window->CopyToHost();
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::PushState()
{
  this->Window->GetState()->Push();
  this->StatePushed = true;
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::PopState()
{
  this->Window->GetState()->Pop();
  this->StatePushed = false;
}

//--------------------------------------------------------------------------------------------------
void zylHostFrame::End()
{
  this->Window->EndFrame();
}
