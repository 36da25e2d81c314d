/// @file zylAnimation.h
/// The session's animation scene, which holds the time of everything shown. Private to the library.
#ifndef zylAnimation_h
#define zylAnimation_h

#include "zylExport.h"

class vtkSMAnimationSceneProxy;
class vtkSMProxy;
class vtkSMSession;

/// The animation scene of `session` (borrowed); null without a session or before it has one.
ZYL_PRIVATE vtkSMAnimationSceneProxy* zylFindAnimationScene(vtkSMSession* session);

/// The time that the scene is at; `fallback` without a scene.
ZYL_PRIVATE double zylGetAnimationTime(vtkSMProxy* scene, double fallback);

#endif
