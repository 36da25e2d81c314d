#include "zylViewKeys.h"

#include "zylViewCamera.h"
#include "zylViewCommands.h"
#include "zylViewError.h"
#include "zylViewMessages.h"
#include "zylViewScene.h"

#include <cstdio>
#include <filesystem>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

namespace {
// "zylview-1.png", "zylview-2.png": the first that is not there.
std::string GetFreeName(const std::string& extension)
{
  int number = 1;
  while (std::filesystem::exists("zylview-" + std::to_string(number) + extension))
  {
    ++number;
  }
  return "zylview-" + std::to_string(number) + extension;
}

// With a member function of the scene that takes a file.
void Save(
  zylViewScene& scene, void (zylViewScene::*save)(const std::string&), const std::string& extension)
{
  const std::string file = GetFreeName(extension);
  try
  {
    (scene.*save)(file);
    std::puts(file.c_str());
    std::fflush(stdout);
  }
  catch (const zylViewError& error)
  {
    zylSay(error.what());
  }
}

// What changes displays and takes effect with an update. Whether the key does.
bool ChangeDisplays(const zylViewCaseList& cases, int key, bool shift)
{
  switch (key)
  {
    case GLFW_KEY_N:
      zylColorByNextArray(cases, shift ? -1 : 1);
      return true;
    case GLFW_KEY_M:
      zylUseNextColorMap(cases);
      return true;
    case GLFW_KEY_L:
      zylToggleLegend(cases);
      return true;
    case GLFW_KEY_E:
      zylToggleMesh(cases);
      return true;
    default:
      return false;
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylDoKey(zylViewScene& scene, int key, int modifiers)
{
  const bool shift = (modifiers & GLFW_MOD_SHIFT) != 0;
  if (key >= GLFW_KEY_1 && key <= GLFW_KEY_6)
  {
    scene.GetCamera().SetStandard(key - GLFW_KEY_0, shift);
    return;
  }
  if (ChangeDisplays(scene.GetCases(), key, shift))
  {
    scene.Update();
    return;
  }
  switch (key)
  {
    case GLFW_KEY_R:
      scene.GetCamera().Reset();
      break;
    case GLFW_KEY_0:
      scene.OpenCamera();
      break;
    case GLFW_KEY_T:
      scene.GetCamera().SetFree(!scene.GetCamera().IsFree());
      break;
    case GLFW_KEY_H:
      scene.SetHelpVisible(!scene.GetHelpVisible());
      break;
    case GLFW_KEY_RIGHT:
    case GLFW_KEY_LEFT:
      scene.Step(key == GLFW_KEY_RIGHT ? 1 : -1);
      break;
    case GLFW_KEY_V:
      scene.RescaleColors(shift);
      break;
    case GLFW_KEY_B:
      scene.UseNextBackground();
      break;
    case GLFW_KEY_P:
      Save(scene, &zylViewScene::SavePicture, ".png");
      break;
    case GLFW_KEY_S:
      Save(scene, &zylViewScene::SaveState, ".json");
      break;
    case GLFW_KEY_F5:
      scene.Reload();
      break;
    default:
      break;
  }
}
