#include "zylTimeController.h"

#include "ParaView/zylAnimation.h"
#include "zylCore.h"

#include <string>

#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkSMAnimationSceneProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMTimeKeeperProxy.h>
#include <vtkSmartPointer.h>

vtkStandardNewMacro(zylTimeController);

namespace {
int CleanerCount = 0;

vtkSmartPointer<zylTimeController>& Singleton()
{
  static auto* instance = new vtkSmartPointer<zylTimeController>;
  return *instance;
}

vtkSMAnimationSceneProxy* FindScene()
{
  return zylFindAnimationScene(zylCore::GetInstance()->GetSession());
}

vtkSMProxy* FindTimeKeeper(vtkSMProxy* scene)
{
  return vtkSMPropertyHelper(scene, "TimeKeeper").GetAsProxy(0);
}

void MoveTo(vtkSMProxy* scene, double time)
{
  vtkSMPropertyHelper(scene, "AnimationTime").Set(time);
  scene->UpdateVTKObjects();
  if (zylGetAnimationTime(scene, time) != time)
  {
    // The step commands move the scene without its property, so an equal value is not sent.
    scene->UpdateProperty("AnimationTime", true);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylTimeControllerSingletonCleaner::zylTimeControllerSingletonCleaner()
{
  ++CleanerCount;
}

//--------------------------------------------------------------------------------------------------
zylTimeControllerSingletonCleaner::~zylTimeControllerSingletonCleaner()
{
  if (--CleanerCount == 0)
  {
    Singleton() = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
zylTimeController::zylTimeController() = default;

//--------------------------------------------------------------------------------------------------
zylTimeController::~zylTimeController() = default;

//--------------------------------------------------------------------------------------------------
zylTimeController* zylTimeController::GetInstance()
{
  if (!Singleton())
  {
    Singleton() = vtkSmartPointer<zylTimeController>::New();
  }
  return Singleton();
}

//--------------------------------------------------------------------------------------------------
double zylTimeController::GetActiveTime()
{
  if (vtkSMProxy* scene = FindScene())
  {
    this->ActiveTime = zylGetAnimationTime(scene, this->ActiveTime);
  }
  return this->ActiveTime;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylTimeController::GetTimestepValues()
{
  vtkSMProxy* scene = FindScene();
  if (!scene)
  {
    return {};
  }
  vtkSMProxy* keeper = FindTimeKeeper(scene);
  if (!keeper)
  {
    vtkGenericWarningMacro("Failed to locate TimeKeeper proxy.");
    return {};
  }
  return vtkSMPropertyHelper(keeper, "TimestepValues").GetDoubleArray();
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::Step(const char* command)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylTimeController::%s", command);
  if (vtkSMProxy* scene = FindScene())
  {
    // Stepping back from beyond the last step, or where there is none, ParaView reads past the end
    // of its list of steps.
    const std::vector<double> steps = this->GetTimestepValues();
    const bool beyond = std::string(command) == "GoToPrevious" &&
      (steps.empty() || steps.back() < zylGetAnimationTime(scene, 0.0));
    if (!beyond)
    {
      scene->UpdateProperty(command, true);
    }
    else if (!steps.empty())
    {
      MoveTo(scene, steps.back());
    }
    // Observers read the scene's time; the cached one follows.
    this->InvokeEvent(zylTimeController::TimeChangedEvent);
    this->GetActiveTime();
  }
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::GoToFirstTimeStep()
{
  this->Step("GoToFirst");
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::GoToLastTimeStep()
{
  this->Step("GoToLast");
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::GoToNextTimeStep()
{
  this->Step("GoToNext");
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::GoToPreviousTimeStep()
{
  this->Step("GoToPrevious");
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::GoToTime(double time)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylTimeController::GoToTime(%g)", time);
  if (time == this->ActiveTime)
  {
    vtkVLogF(
      vtkLogger::VERBOSITY_TRACE, "time requested is already the active time - skipping update");
    return;
  }
  this->ActiveTime = time;
  if (vtkSMProxy* scene = FindScene())
  {
    MoveTo(scene, time);
    this->InvokeEvent(zylTimeController::TimeChangedEvent);
  }
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylTimeController::Update");
  vtkSMProxy* scene = FindScene();
  if (!scene)
  {
    vtkGenericWarningMacro("No animation scene available.");
    return;
  }
  this->ActiveTime = zylGetAnimationTime(scene, this->ActiveTime);
  vtkSMProxy* keeper = FindTimeKeeper(scene);
  if (!keeper)
  {
    vtkGenericWarningMacro("No timekeeper available.");
    return;
  }
  vtkSMPropertyHelper(keeper, "Time").Set(this->ActiveTime);
  vtkSMPropertyHelper(scene, "AnimationTime").Set(this->ActiveTime);
  vtkSMPropertyHelper(scene, "PlayMode").Set("Snap To TimeSteps");
  scene->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::UpdateTimeInformation()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylTimeController::UpdateTimeInformation");
  vtkSMProxy* scene = FindScene();
  if (!scene)
  {
    vtkGenericWarningMacro("No animation scene available.");
    return;
  }
  vtkSMProxy* keeper = FindTimeKeeper(scene);
  if (!keeper)
  {
    vtkGenericWarningMacro("No timekeeper available.");
    return;
  }
  vtkSMTimeKeeperProxy::UpdateTimeInformation(keeper);
}

//--------------------------------------------------------------------------------------------------
void zylTimeController::UseDataTimeSteps()
{
  if (vtkSMAnimationSceneProxy* scene = FindScene())
  {
    scene->UpdateAnimationUsingDataTimeSteps();
  }
}
