/// @file zylHostWindowFactory.h
/// Has the toolkit make windows that draw in a host's context. Private to the library.
#ifndef zylHostWindowFactory_h
#define zylHostWindowFactory_h

#include "zylExport.h"

#include <string>
#include <utility>
#include <vector>

#include <vtkSmartPointer.h>

class vtkObjectFactory;

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
  vtkSmartPointer<vtkObjectFactory> Factory;
  std::vector<std::pair<vtkObjectFactory*, std::string>> Disabled;
  bool Generic;
};

#endif
