// Keys and mouse of the window.
#include "zylViewKeys.h"
#include "zylViewOptions.h"
#include "zylViewPointer.h"
#include "zylViewScene.h"
#include "zylViewWindowHost.h"

#include <algorithm>
#include <cmath>

#include <zylProgress.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

namespace {
constexpr double ZoomPerNotch = 1.15;
constexpr double RestPerLook = 2.0; // and longer where looking takes long
constexpr double LongestRest = 1.0;

zylViewWindowHost* HostOf(GLFWwindow* window)
{
  return static_cast<zylViewWindowHost*>(glfwGetWindowUserPointer(window));
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Observe()
{
  glfwSetKeyCallback(this->Window, [](GLFWwindow* window, int key, int, int action, int modifiers) {
    zylViewWindowHost* host = HostOf(window);
    if (action == GLFW_PRESS && host->Busy && host->Scene != nullptr)
    {
      host->KeepKey(key, modifiers);
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
  glfwSetCursorPosCallback(
    this->Window, [](GLFWwindow* window, double x, double y) { HostOf(window)->OnMove(x, y); });
  glfwSetCursorEnterCallback(this->Window, [](GLFWwindow* window, int entered) {
    zylViewWindowHost* host = HostOf(window);
    if (entered == GLFW_FALSE && !host->Busy)
    {
      host->Leave();
    }
  });
  glfwSetScrollCallback(this->Window, [](GLFWwindow* window, double, double notches) {
    double x, y;
    zylViewWindowHost* host = HostOf(window);
    host->Wake();
    if (host->Busy || host->IsForPanel())
    {
      return;
    }
    host->GetCursor(x, y);
    host->ForgetHover();
    host->Interaction->ZoomAt(x, y, std::pow(ZoomPerNotch, notches));
    host->Redraw();
  });
  glfwSetDropCallback(this->Window, [](GLFWwindow* window, int count, const char** paths) {
    zylViewWindowHost* host = HostOf(window);
    if (!host->Busy)
    {
      host->MakeCurrent();
      host->Busy = true;
      host->Scene->AddFiles({ paths, paths + count });
      host->Busy = false;
      host->UpdateTitle();
      host->Redraw();
    }
  });
  glfwSetWindowRefreshCallback(
    this->Window, [](GLFWwindow* window) { HostOf(window)->Dirty = true; });
}

//--------------------------------------------------------------------------------------------------
// The numbers go at once; the outline stays until the pointer rests elsewhere.
void zylViewWindowHost::ForgetHover()
{
  this->Looked = false;
  this->Moved = glfwGetTime();
  if (!this->Tip.empty())
  {
    this->Tip.clear();
    this->Wake();
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Leave()
{
  this->ForgetHover();
  this->Pointer->Leave();
  this->Wake();
}

//--------------------------------------------------------------------------------------------------
bool zylViewWindowHost::MayHover() const
{
  return this->Hovering && !this->Looked && !this->State.Playing && !this->Busy &&
    this->Options.Frames == 0 && !this->Interaction->IsPressed() &&
    glfwGetWindowAttrib(this->Window, GLFW_HOVERED) == GLFW_TRUE;
}

//--------------------------------------------------------------------------------------------------
// Looking costs about a frame or several: only a pointer that rests is worth it.
void zylViewWindowHost::Hover()
{
  if (!this->MayHover() || glfwGetTime() < this->Moved + this->Rest)
  {
    return;
  }
  const double start = glfwGetTime();
  this->Looked = true;
  this->MakeCurrent();
  this->GetCursor(this->TipPlace[0], this->TipPlace[1]);
  this->IsForPanel() ? this->Pointer->Leave()
                     : this->Pointer->Hover(this->TipPlace[0], this->TipPlace[1]);
  this->Tip = this->Pointer->GetText();
  this->Rest = std::clamp(RestPerLook * (glfwGetTime() - start), RestTime, LongestRest);
  this->Wake();
}

//--------------------------------------------------------------------------------------------------
bool zylViewWindowHost::IsForPanel() const
{
  double x, y;
  this->GetCursor(x, y);
  return this->Panel && this->PanelVisible && this->Panel->WantsMouse(x, y);
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::OnKey(int key, int modifiers)
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
  if (this->Busy || key >= GLFW_KEY_LEFT_SHIFT) // a modifier alone
  {
    return;
  }
  this->DoGestures(); // which came before
  this->MakeCurrent();
  if (key == GLFW_KEY_I)
  {
    this->OnInformation((modifiers & GLFW_MOD_SHIFT) != 0);
    return;
  }
  this->Leave();
  if (key == GLFW_KEY_TAB)
  {
    this->PanelVisible = this->Panel != nullptr && !this->PanelVisible;
    return;
  }
  if (key == GLFW_KEY_SPACE)
  {
    this->State.Playing = !this->State.Playing;
    return;
  }
  zylDoKey(*this->Scene, key, modifiers);
  this->Redraw();
  this->UpdateTitle();
}

//--------------------------------------------------------------------------------------------------
// Pressed while the library works: for later, or to stop it.
void zylViewWindowHost::KeepKey(int key, int modifiers)
{
  if (key == GLFW_KEY_C)
  {
    zylProgress::GetInstance()->RequestCancel();
    return;
  }
  this->Waiting.emplace_back(key, modifiers);
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::OnMove(double x, double y)
{
  if (x == this->Cursor[0] && y == this->Cursor[1])
  {
    return; // of another window, or nothing
  }
  this->Cursor[0] = x;
  this->Cursor[1] = y;
  this->GetCursor(x, y);
  this->ForgetHover();
  if (!this->Busy && this->Interaction->Move(x, y))
  {
    this->Interaction->GetRectangle() == nullptr ? this->Redraw() : this->Wake();
  }
  if (this->PanelVisible)
  {
    this->Wake(); // it shows where the mouse is
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::OnInformation(bool toggle)
{
  double x, y;
  this->GetCursor(x, y);
  if (!toggle)
  {
    this->Pointer->Print(x, y);
    return;
  }
  this->Hovering = !this->Hovering;
  this->Leave();
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::OnButton(int button, int action, int modifiers)
{
  if (this->Interaction == nullptr)
  {
    return; // nothing to turn yet
  }
  this->Leave();
  double x, y;
  this->GetCursor(x, y);
  if (this->Busy && action == GLFW_PRESS && this->Overlay->IsOnCancel(x, y))
  {
    zylProgress::GetInstance()->RequestCancel();
  }
  if (action == GLFW_RELEASE)
  {
    this->OnRelease(x, y, modifiers);
    return;
  }
  if (this->Busy || this->IsForPanel())
  {
    return;
  }
  const bool left = button == GLFW_MOUSE_BUTTON_LEFT;
  const bool shift = (modifiers & GLFW_MOD_SHIFT) != 0;
  const bool control = (modifiers & GLFW_MOD_CONTROL) != 0;
  const auto mode = button == GLFW_MOUSE_BUTTON_RIGHT ? zylViewInteraction::Mode::Zoom
    : left && control                                 ? zylViewInteraction::Mode::Rectangle
    : left && !shift                                  ? zylViewInteraction::Mode::Orbit
                                                      : zylViewInteraction::Mode::Pan;
  this->Interaction->Press(mode, x, y);
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::OnRelease(double x, double y, int modifiers)
{
  Gesture gesture{ zylViewInteraction::Gesture::None, { x, y, x, y }, modifiers };
  if (const double* rectangle = this->Interaction->GetRectangle())
  {
    std::copy_n(rectangle, 2, gesture.Corners);
  }
  gesture.Kind = this->Interaction->Release(x, y, this->Idle + glfwGetTime() - this->WaitStart);
  if (gesture.Kind != zylViewInteraction::Gesture::None)
  {
    this->Gestures.push_back(gesture);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::DoGestures()
{
  for (const Gesture& gesture : std::exchange(this->Gestures, {}))
  {
    this->Do(gesture);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewWindowHost::Do(const Gesture& gesture)
{
  const double* at = gesture.Corners + 2;
  this->MakeCurrent();
  switch (gesture.Kind)
  {
    case zylViewInteraction::Gesture::None:
      return;
    case zylViewInteraction::Gesture::Click:
      this->Pointer->Click(at[0], at[1], (gesture.Modifiers & GLFW_MOD_CONTROL) != 0);
      break;
    case zylViewInteraction::Gesture::DoubleClick:
      this->Pointer->CenterAt(at[0], at[1]);
      break;
    case zylViewInteraction::Gesture::Rectangle:
      this->Pointer->SelectIn(gesture.Corners, (gesture.Modifiers & GLFW_MOD_SHIFT) != 0);
  }
  this->Redraw();
}

//--------------------------------------------------------------------------------------------------
// Where it was at the event that is handled, not where it is by now. Window coordinates are not
// pixels on every display.
void zylViewWindowHost::GetCursor(double& x, double& y) const
{
  int width = 0, height = 0;
  glfwGetWindowSize(this->Window, &width, &height);
  x = this->Cursor[0] * (width > 0 ? double(this->Width) / width : 1.0);
  y = this->Cursor[1] * (height > 0 ? double(this->Height) / height : 1.0);
}
