/// @file zylViewDerivedKinds.h
/// The library's classes behind what is derived, and their displays.
#ifndef zylViewDerivedKinds_h
#define zylViewDerivedKinds_h

#include "zylViewDerivedForms.h"

#include <vector>

#include <vtkSmartPointer.h>

class zylDerivedSurfaceRepresentation;
class zylPropertyCollection;

vtkSmartPointer<zylDerivedSurfaceRepresentation> zylNewDerived(zylViewDerived::Shape shape);

/// The displays of what is derived, and where their settings are.
struct zylDerivedDisplay
{
  const char* Name;
  zylPropertyCollection* (zylDerivedSurfaceRepresentation::*Get)();
};
const std::vector<zylDerivedDisplay>& zylGetDerivedDisplays();

#endif
