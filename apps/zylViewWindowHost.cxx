#include "zylViewBackdrop.h"
#include "zylViewCamera.h"
#include "zylViewError.h"
#include "zylViewHost.h"
#include "zylViewInteraction.h"
#include "zylViewKeys.h"
#include "zylViewLoading.h"
#include "zylViewOptions.h"
#include "zylViewPanel.h"
#include "zylViewScene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

namespace {
constexpr double SecondsPerTimeStep = 0.1; // while playing
constexpr double ZoomPerNotch = 1.15;
constexpr double ClickReach = 4.0; // pixels: a press that does not move is no drag
constexpr int PanelFrames = 3;

class WindowHost : public zylViewHost
{
public:
  explicit WindowHost(const zylViewOptions& options);
  ~WindowHost() override;

  void MakeCurrent() override { glfwMakeContextCurrent(this->Window); }
  int GetWidth() const override { return this->Width; }
  int GetHeight() const override { return this->Height; }
  int GetPixelRatio() const override;
  bool KeepAlive(const std::string& work, double fraction) override;
  void Run(zylViewScene& scene) override;

private:
  void Observe();
  void Draw();
  void Wake();
  bool IsForPanel() const;
  void UpdateTitle();
  void OnKey(int key, int modifiers);
  void OnButton(int button, int action, int modifiers);
  void FollowSize();
  void ApplySize();
  void GetCursor(double& x, double& y) const;

  const zylViewOptions& Options;
  GLFWwindow* Window = nullptr;
  int Width = 0;
  int Height = 0;
  std::unique_ptr<zylViewLoading> Loading; // until there is a scene
  zylViewScene* Scene = nullptr;
  zylViewBackdrop* Backdrop = nullptr;
  zylViewInteraction* Interaction = nullptr;
  std::unique_ptr<zylViewPanel> Panel; // null without
  bool PanelVisible = false;
  int Settling = 0;             // frames that the panel still needs after the last event
  double Clicked[2] = { 0, 0 }; // where a button went down
  std::vector<std::pair<int, int>> Waiting; // keys and modifiers pressed while the library works
  bool Dirty = true;                        // something to draw
  bool Playing = false;
  bool Busy = true; // the library works: it must not be called again
};

WindowHost* HostOf(GLFWwindow* window)
{
  return static_cast<WindowHost*>(glfwGetWindowUserPointer(window));
}

//--------------------------------------------------------------------------------------------------
WindowHost::WindowHost(const zylViewOptions& options)
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
WindowHost::~WindowHost()
{
  this->Panel.reset(); // while their context is there
  this->Loading.reset();
  glfwDestroyWindow(this->Window);
  glfwTerminate();
}

//--------------------------------------------------------------------------------------------------
int WindowHost::GetPixelRatio() const
{
  float x = 1.0f, y = 1.0f;
  glfwGetWindowContentScale(this->Window, &x, &y);
  return std::max(1, static_cast<int>(std::lround(x)));
}

//--------------------------------------------------------------------------------------------------
// Keys that are pressed meanwhile wait, but for those that close the window.
bool WindowHost::KeepAlive(const std::string& work, double fraction)
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
  else if (fraction >= 0.0)
  {
    char part[16];
    std::snprintf(part, sizeof part, " %.0f %%", 100.0 * fraction);
    glfwSetWindowTitle(this->Window, ("zylview - " + work + part).c_str());
  }
  return glfwWindowShouldClose(this->Window) == GLFW_FALSE;
}

//--------------------------------------------------------------------------------------------------
void WindowHost::Observe()
{
  glfwSetKeyCallback(this->Window, [](GLFWwindow* window, int key, int, int action, int modifiers) {
    WindowHost* host = HostOf(window);
    if (action == GLFW_PRESS && host->Busy && host->Scene != nullptr)
    {
      host->Waiting.emplace_back(key, modifiers);
    }
    if (action != GLFW_RELEASE)
    {
      host->OnKey(key, modifiers);
    }
  });
  glfwSetMouseButtonCallback(
    this->Window, [](GLFWwindow* window, int button, int action, int modifiers) {
      HostOf(window)->OnButton(button, action, modifiers);
    });
  glfwSetCursorPosCallback(this->Window, [](GLFWwindow* window, double, double) {
    double x, y;
    WindowHost* host = HostOf(window);
    host->GetCursor(x, y);
    host->Dirty |= !host->Busy && host->Interaction->Move(x, y);
    if (host->PanelVisible)
    {
      host->Wake(); // it shows where the mouse is
    }
  });
  glfwSetScrollCallback(this->Window, [](GLFWwindow* window, double, double notches) {
    double x, y;
    WindowHost* host = HostOf(window);
    host->Wake();
    if (host->Busy || host->IsForPanel())
    {
      return;
    }
    host->GetCursor(x, y);
    host->Interaction->ZoomAt(x, y, std::pow(ZoomPerNotch, notches));
    host->Dirty = true;
  });
  glfwSetDropCallback(this->Window, [](GLFWwindow* window, int count, const char** paths) {
    WindowHost* host = HostOf(window);
    if (!host->Busy)
    {
      host->MakeCurrent();
      host->Scene->AddFiles({ paths, paths + count });
      host->UpdateTitle();
      host->Dirty = true;
    }
  });
  glfwSetWindowRefreshCallback(
    this->Window, [](GLFWwindow* window) { HostOf(window)->Dirty = true; });
}

//--------------------------------------------------------------------------------------------------
void WindowHost::Run(zylViewScene& scene)
{
  zylViewBackdrop backdrop;
  zylViewInteraction interaction(scene.GetCamera());
  this->Loading.reset();
  this->Scene = &scene;
  this->Backdrop = &backdrop;
  this->Interaction = &interaction;
  this->Panel = zylNewPanel(this->Window, scene);
  this->ApplySize();
  this->Busy = false;
  this->UpdateTitle();
  double lastStep = glfwGetTime();
  int frames = 0;
  while (glfwWindowShouldClose(this->Window) == GLFW_FALSE)
  {
    if (this->Playing && glfwGetTime() - lastStep >= SecondsPerTimeStep)
    {
      lastStep = glfwGetTime();
      scene.Step(1);
      this->UpdateTitle();
      this->Dirty = true;
    }
    for (const auto& [key, modifiers] : std::exchange(this->Waiting, {}))
    {
      this->OnKey(key, modifiers);
    }
    this->FollowSize();
    this->Dirty |= this->Options.Frames > 0;
    if (this->Dirty && this->Width > 0 && this->Height > 0)
    {
      this->Draw();
      if (++frames == this->Options.Frames)
      {
        return;
      }
    }
    this->Playing || this->Options.Frames > 0 || !this->Waiting.empty() || this->Dirty
      ? glfwWaitEventsTimeout(0.01)
      : glfwWaitEvents();
  }
}

//--------------------------------------------------------------------------------------------------
void WindowHost::Draw()
{
  this->MakeCurrent();
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  this->Backdrop->Paint(
    this->Width, this->Height, this->Options.BackgroundTop, this->Options.BackgroundBottom);
  this->Scene->Render(0);
  this->Dirty = false;
  if (this->Panel && this->PanelVisible)
  {
    this->Busy = true; // what it changes may take long
    this->Dirty = this->Panel->Draw() || --this->Settling > 0;
    this->Busy = false;
    this->UpdateTitle();
  }
  glfwSwapBuffers(this->Window);
}

//--------------------------------------------------------------------------------------------------
// Something is to be drawn; the panel answers an event over several frames.
void WindowHost::Wake()
{
  this->Dirty = true;
  this->Settling = PanelFrames;
}

//--------------------------------------------------------------------------------------------------
bool WindowHost::IsForPanel() const
{
  double x, y;
  this->GetCursor(x, y);
  return this->Panel && this->PanelVisible && this->Panel->WantsMouse(x, y);
}

//--------------------------------------------------------------------------------------------------
void WindowHost::UpdateTitle()
{
  const std::string time = this->Scene->GetTimeLabel();
  const std::string title =
    "zylview - " + this->Scene->GetName() + (time.empty() ? "" : " - " + time) + " - h: help";
  glfwSetWindowTitle(this->Window, title.c_str());
}

//--------------------------------------------------------------------------------------------------
void WindowHost::OnKey(int key, int modifiers)
{
  this->Wake();
  if (this->PanelVisible && this->Panel->WantsKeys())
  {
    return;
  }
  if (key == GLFW_KEY_Q || key == GLFW_KEY_ESCAPE)
  {
    glfwSetWindowShouldClose(this->Window, GLFW_TRUE);
  }
  if (this->Busy)
  {
    return;
  }
  if (key == GLFW_KEY_TAB)
  {
    this->PanelVisible = this->Panel != nullptr && !this->PanelVisible;
    return;
  }
  if (key == GLFW_KEY_SPACE)
  {
    this->Playing = !this->Playing;
    return;
  }
  this->MakeCurrent();
  zylDoKey(*this->Scene, key, modifiers);
  this->UpdateTitle();
}

//--------------------------------------------------------------------------------------------------
void WindowHost::OnButton(int button, int action, int modifiers)
{
  if (this->Interaction == nullptr)
  {
    return; // nothing to turn yet
  }
  this->Wake();
  double x, y;
  this->GetCursor(x, y);
  if (action == GLFW_RELEASE || this->Busy || this->IsForPanel())
  {
    const bool still = std::hypot(x - this->Clicked[0], y - this->Clicked[1]) < ClickReach;
    this->Interaction->Release();
    if (this->Panel && this->PanelVisible && still && !this->Busy && !this->IsForPanel() &&
      button == GLFW_MOUSE_BUTTON_LEFT)
    {
      this->MakeCurrent();
      this->Panel->SelectAt(static_cast<int>(x), this->Height - 1 - static_cast<int>(y));
    }
    return;
  }
  this->Clicked[0] = x;
  this->Clicked[1] = y;
  const bool left = button == GLFW_MOUSE_BUTTON_LEFT;
  const bool shift = (modifiers & GLFW_MOD_SHIFT) != 0;
  const auto mode = button == GLFW_MOUSE_BUTTON_RIGHT ? zylViewInteraction::Mode::Zoom
    : left && !shift                                  ? zylViewInteraction::Mode::Orbit
                                                      : zylViewInteraction::Mode::Pan;
  this->Interaction->Press(mode, x, y);
}

//--------------------------------------------------------------------------------------------------
// Asked for rather than heard of: the size can change while the library works.
void WindowHost::FollowSize()
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
void WindowHost::ApplySize()
{
  this->Interaction->SetSize(this->Width, this->Height);
  if (this->Width > 0 && this->Height > 0)
  {
    this->Scene->Resize(this->Width, this->Height);
  }
  this->Dirty = true;
}

//--------------------------------------------------------------------------------------------------
// Window coordinates are not pixels on every display.
void WindowHost::GetCursor(double& x, double& y) const
{
  int width = 0, height = 0;
  glfwGetWindowSize(this->Window, &width, &height);
  glfwGetCursorPos(this->Window, &x, &y);
  x *= width > 0 ? double(this->Width) / width : 1.0;
  y *= height > 0 ? double(this->Height) / height : 1.0;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylViewHost> zylNewWindowHost(const zylViewOptions& options)
{
  return std::make_unique<WindowHost>(options);
}
