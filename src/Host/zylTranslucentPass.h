/// @file zylTranslucentPass.h
/// Blends translucent surfaces over depths of any format. Private to the library.
#ifndef zylTranslucentPass_h
#define zylTranslucentPass_h

#include "zylExport.h"

class vtkRenderWindow;

/// Have the renderers of a zylHostRenderWindow copy the window's depths in their own format before
/// they blend. The toolkit's own pass knows three formats, and OpenGL copies depths between buffers
/// of one format only. Before the first render.
ZYL_PRIVATE void zylUseTranslucentPass(vtkRenderWindow* window);

#endif
