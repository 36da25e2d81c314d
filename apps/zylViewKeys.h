/// @file zylViewKeys.h
/// What each key of the window does with the scene.
#ifndef zylViewKeys_h
#define zylViewKeys_h

class zylViewScene;

/// `key` and `modifiers` as GLFW counts them; the window's context is current. Keys of the window
/// itself (quit, play) are not among them.
void zylDoKey(zylViewScene& scene, int key, int modifiers);

#endif
