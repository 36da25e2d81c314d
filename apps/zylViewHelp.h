/// @file zylViewHelp.h
/// The list of keys that the window shows.
#ifndef zylViewHelp_h
#define zylViewHelp_h

#include <vtkSmartPointer.h>

class vtkTextActor;

vtkSmartPointer<vtkTextActor> zylNewHelp();

#endif
