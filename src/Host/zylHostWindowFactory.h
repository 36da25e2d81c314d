/// @file zylHostWindowFactory.h
/// Has the toolkit make windows that draw in a host's context. Private to the library.
#ifndef zylHostWindowFactory_h
#define zylHostWindowFactory_h

#include "Host/zylToolkitOverride.h"
#include "zylExport.h"

/// While it lives, a new vtkRenderWindow is a zylHostRenderWindow; afterwards everything is as it
/// was.
class ZYL_PRIVATE zylHostRenderWindowScope
{
public:
  zylHostRenderWindowScope();
  ~zylHostRenderWindowScope();
  zylHostRenderWindowScope(const zylHostRenderWindowScope&) = delete;
  zylHostRenderWindowScope& operator=(const zylHostRenderWindowScope&) = delete;

private:
  zylToolkitOverride Override;
  bool Generic;
};

#endif
