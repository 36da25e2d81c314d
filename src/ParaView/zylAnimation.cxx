#include "ParaView/zylAnimation.h"

#include "ParaView/zylSession.h"

#include <vtkNew.h>
#include <vtkSMAnimationScene.h>
#include <vtkSMAnimationSceneProxy.h>
#include <vtkSMParaViewPipelineController.h>

//--------------------------------------------------------------------------------------------------
vtkSMAnimationSceneProxy* zylFindAnimationScene(vtkSMSession* session)
{
  vtkNew<vtkSMParaViewPipelineController> controller;
  return zylIsAlive(session)
    ? vtkSMAnimationSceneProxy::SafeDownCast(controller->GetAnimationScene(session))
    : nullptr;
}

//--------------------------------------------------------------------------------------------------
double zylGetAnimationTime(vtkSMProxy* scene, double fallback)
{
  auto* client = scene ? vtkSMAnimationScene::SafeDownCast(scene->GetClientSideObject()) : nullptr;
  return client ? client->GetSceneTime() : fallback;
}
