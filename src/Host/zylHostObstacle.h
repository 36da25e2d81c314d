/// @file zylHostObstacle.h
/// What of a host's state cannot be put aside. Private to the library.
#ifndef zylHostObstacle_h
#define zylHostObstacle_h

#include "zylExport.h"

#include <string>

/// Why nothing may be rendered in the current context, of OpenGL 3.2 or later: a display list that
/// is being compiled, conditional rendering, a current program that is only waiting to be deleted,
/// transform feedback in a context that cannot pause it. Empty when nothing stands in the way.
ZYL_PRIVATE std::string zylFindHostObstacle();

#endif
