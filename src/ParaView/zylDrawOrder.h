/// @file zylDrawOrder.h
/// What is seen of surfaces and lines at the same depth. Private to the library.
#ifndef zylDrawOrder_h
#define zylDrawOrder_h

#include "zylExport.h"

#include <vector>

class vtkSMProxy;

/// Have what this process draws in `view` of these "GeometryRepresentation" proxies drawn in their
/// order, whatever the order in which they were made. What else the view draws keeps its place.
/// Nulls and other proxies are left out.
ZYL_PRIVATE void zylSetDrawOrder(vtkSMProxy* view, const std::vector<vtkSMProxy*>& representations);

#endif
