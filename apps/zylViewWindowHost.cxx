#include "zylViewWindowHost.h"

#include "zylViewBackdrop.h"
#include "zylViewError.h"
#include "zylViewOptions.h"
#include "zylViewPointer.h"
#include "zylViewScene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

namespace {
constexpr double SecondsPerTimeStep = 0.1; // while playing
constexpr int PanelFrames = 3;
constexpr double LongWork = 0.4; // seconds: from then on progress is shown
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewWindowHost::zylViewWindowHost(const zylViewOptions& options)
  : Options(options)
{
  const char* const none =
    "there is no display to open a window on; --output FILE.png draws without one";
  if (glfwInit() == GLFW_FALSE)
  {
    throw zylViewError(zylViewNoDisplay, none);
  }
  glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
  glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
  glfwWindowHint(GLFW_DEPTH_BITS, 24);
  glfwWindowHint(GLFW_STENCIL_BITS, 8);
  this->Window =
    glfwCreateWindow(options.Width, options.Height, "zylview - loading", nullptr, nullptr);
  if (this->Window == nullptr)
  {
    glfwTerminate();
    throw zylViewError(zylViewNoDisplay, none);
  }
  glfwSetWindowUserPointer(this->Window, this);
  glfwGetFramebufferSize(this->Window, &this->Width, &this->Height);
  this->MakeCurrent();
  this->Observe();
  glfwSwapInterval(1);
  glfwPollEvents(); // the window is there while the files are read
}

//--------------------------------------------------------------------------------------------------
zylViewWindowHost::~zylViewWindowHost()
{
  this->Panel.reset(); // while their context is there
  this->Overlay.reset();
  this->Loading.reset();
  glfwDestroyWindow(this->Window);
  glfwTerminate();
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::MakeCurrent()
{
  glfwMakeContextCurrent(this->Window);
}

//--------------------------------------------------------------------------------------------------
int zylViewWindowHost::GetPixelRatio() const
{
  float x = 1.0f, y = 1.0f;
  glfwGetWindowContentScale(this->Window, &x, &y);
  return std::max(1, static_cast<int>(std::lround(x)));
}

//--------------------------------------------------------------------------------------------------
// Keys that are pressed meanwhile wait, but for those that close the window.
bool zylViewWindowHost::KeepAlive(const std::string& work, double fraction)
{
  const bool before = this->Busy;
  this->Busy = true;
  glfwPollEvents();
  this->Busy = before;
  if (this->Scene == nullptr)
  {
    glfwGetFramebufferSize(this->Window, &this->Width, &this->Height);
    this->MakeCurrent();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (!this->Loading)
    {
      this->Loading = std::make_unique<zylViewLoading>(this->Options);
    }
    this->Loading->Paint(this->Width, this->Height, this->GetPixelRatio(), work, fraction);
    glfwSwapBuffers(this->Window);
  }
  else
  {
    this->ShowProgress(work, fraction);
  }
  return glfwWindowShouldClose(this->Window) == GLFW_FALSE;
}

//--------------------------------------------------------------------------------------------------
// Over the last picture. The library is at work, and draws nothing meanwhile.
void zylViewWindowHost::ShowProgress(const std::string& work, double fraction)
{
  if (work != this->Work)
  {
    this->Work = work;
    this->WorkStart = glfwGetTime();
  }
  if (glfwGetTime() - this->WorkStart < LongWork)
  {
    return;
  }
  this->MakeCurrent();
  if (this->Overlay->PutBack())
  {
    this->Overlay->DrawProgress(work, fraction);
    glfwSwapBuffers(this->Window);
    this->Dirty = true;
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Run(zylViewScene& scene)
{
  zylViewBackdrop backdrop;
  zylViewInteraction interaction(scene.GetCamera());
  zylViewPointer pointer(scene);
  this->Loading.reset();
  this->Overlay = std::make_unique<zylViewOverlay>();
  this->Scene = &scene;
  this->Backdrop = &backdrop;
  this->Interaction = &interaction;
  this->Pointer = &pointer;
  this->Panel = zylNewPanel(this->Window, scene);
  this->ApplySize();
  this->Busy = false;
  this->UpdateTitle();
  double lastStep = glfwGetTime();
  int frames = 0;
  while (glfwWindowShouldClose(this->Window) == GLFW_FALSE)
  {
    this->Work.clear();
    if (this->State.Playing && glfwGetTime() - lastStep >= SecondsPerTimeStep)
    {
      lastStep = glfwGetTime();
      scene.Step(1);
      this->UpdateTitle();
      this->Redraw();
    }
    for (const auto& [key, modifiers] : std::exchange(this->Waiting, {}))
    {
      this->OnKey(key, modifiers);
    }
    this->DoGestures();
    this->FollowSize();
    this->Hover();
    if (this->Options.Frames > 0)
    {
      this->Redraw();
    }
    if (this->Dirty && this->Width > 0 && this->Height > 0)
    {
      this->Draw();
      if (++frames == this->Options.Frames)
      {
        return;
      }
    }
    this->Wait();
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Wait()
{
  this->WaitStart = glfwGetTime();
  if (this->State.Playing || this->Options.Frames > 0 || !this->Waiting.empty() || this->Dirty)
  {
    glfwWaitEventsTimeout(0.01);
  }
  else if (this->MayHover())
  {
    glfwWaitEventsTimeout(std::max(this->Moved + this->Rest - glfwGetTime(), 0.001));
  }
  else
  {
    glfwWaitEvents();
  }
  this->Idle += glfwGetTime() - this->WaitStart;
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Draw()
{
  this->MakeCurrent();
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  this->Overlay->SetSize(this->Width, this->Height, this->GetPixelRatio());
  if (this->SceneDirty || !this->Overlay->PutBack())
  {
    this->Backdrop->Paint(
      this->Width, this->Height, this->Options.BackgroundTop, this->Options.BackgroundBottom);
    this->Scene->Render(0);
    this->Overlay->Keep();
  }
  this->SceneDirty = this->Dirty = false;
  if (const double* rectangle = this->Interaction->GetRectangle())
  {
    this->Overlay->DrawRectangle(rectangle);
  }
  this->Overlay->DrawLines(this->Pointer->GetOutline());
  if (this->Panel && this->PanelVisible)
  {
    this->Busy = true; // what it changes may take long
    this->SceneDirty = this->Panel->Draw(this->State);
    this->Dirty = this->SceneDirty || --this->Settling > 0;
    this->Busy = false;
    this->UpdateTitle();
    if (this->State.Closing)
    {
      glfwSetWindowShouldClose(this->Window, GLFW_TRUE);
    }
  }
  if (!this->Tip.empty())
  {
    this->Overlay->DrawTip(this->TipPlace[0], this->TipPlace[1], this->Tip);
  }
  glfwSwapBuffers(this->Window);
}

//--------------------------------------------------------------------------------------------------
// Something is to be drawn over the picture; the panel answers an event over several frames.
void zylViewWindowHost::Wake()
{
  this->Dirty = true;
  this->Settling = PanelFrames;
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Redraw()
{
  this->Wake();
  this->SceneDirty = true;
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::UpdateTitle()
{
  const std::string time = this->Scene->GetTimeLabel();
  const std::string title =
    "zylview - " + this->Scene->GetName() + (time.empty() ? "" : " - " + time) + " - h: help";
  glfwSetWindowTitle(this->Window, title.c_str());
}

//--------------------------------------------------------------------------------------------------
// Asked for rather than heard of: the size can change while the library works.
void zylViewWindowHost::FollowSize()
{
  int width = 0, height = 0;
  glfwGetFramebufferSize(this->Window, &width, &height);
  if (width != this->Width || height != this->Height)
  {
    this->Width = width;
    this->Height = height;
    this->ApplySize();
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::ApplySize()
{
  this->Interaction->SetSize(this->Width, this->Height);
  if (this->Width > 0 && this->Height > 0)
  {
    this->Scene->Resize(this->Width, this->Height);
  }
  this->Redraw();
}

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewHost> zylNewWindowHost(const zylViewOptions& options)
{
  return std::make_unique<zylViewWindowHost>(options);
}
