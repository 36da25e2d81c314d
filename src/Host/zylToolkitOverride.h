/// @file zylToolkitOverride.h
/// Has the toolkit make a class of ours in place of one of its own. Private to the library.
#ifndef zylToolkitOverride_h
#define zylToolkitOverride_h

#include "zylExport.h"

#include <string>
#include <utility>
#include <vector>

#include <vtkSmartPointer.h>

class vtkObject;
class vtkObjectFactory;

/// While it lives, New() of the toolkit's class `name` gives what `create` makes; afterwards
/// everything is as it was.
class ZYL_PRIVATE zylToolkitOverride
{
public:
  zylToolkitOverride(const char* name, vtkObject* (*create)());
  ~zylToolkitOverride();
  zylToolkitOverride(const zylToolkitOverride&) = delete;
  zylToolkitOverride& operator=(const zylToolkitOverride&) = delete;

private:
  std::string Name;
  vtkSmartPointer<vtkObjectFactory> Factory;
  std::vector<std::pair<vtkObjectFactory*, std::string>> Disabled;
};

#endif
