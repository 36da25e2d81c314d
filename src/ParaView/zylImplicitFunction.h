/// @file zylImplicitFunction.h
/// The implicit functions (planes, spheres, ...) by which filters cut and clip. Private to the
/// library.
#ifndef zylImplicitFunction_h
#define zylImplicitFunction_h

#include "ParaView/zylPropertyTable.h"
#include "zylExport.h"

#include <cstddef>
#include <string>

class vtkSMProxy;
class zylPropertyCollection;

/// Let `property` of `filter` hold the function of XML name `name` that it offers. The function
/// (borrowed); null if there is none.
ZYL_PRIVATE vtkSMProxy* zylUseFunction(
  vtkSMProxy* filter, const char* property, const std::string& name);

/// zylPush() to a function, then to the server. The setting `direction` (null: none) is one that
/// must point somewhere: if it has length zero or is not a number, that is logged as a warning and
/// the last good one is kept. Null functions do nothing.
ZYL_PRIVATE void zylPushFunction(zylPropertyCollection* settings, const zylPropertyRow* rows,
  std::size_t count, const char* direction, vtkSMProxy* function);

#endif
