/// @file zylViewSettings.h
/// The settings of a render view: general ones, its light kit, and the offsets that all views
/// share. Private to the library.
#ifndef zylViewSettings_h
#define zylViewSettings_h

#include "zylExport.h"

#include <vector>

class vtkSMProxy;
class vtkSMSessionProxyManager;
class zylPropertyCollection;

namespace zylViewSettings {
/// Make the settings with their defaults.
ZYL_PRIVATE void Declare(zylPropertyCollection* general, zylPropertyCollection* lightKit);

/// Apply them to the view.
ZYL_PRIVATE void Push(
  zylPropertyCollection* general, zylPropertyCollection* lightKit, vtkSMProxy* view);

/// Set a property of the session's "RenderViewSettings"; it is an error when there are none.
ZYL_PRIVATE void SetOffset(
  vtkSMSessionProxyManager* manager, const char* name, const std::vector<double>& values);
} // namespace zylViewSettings

#endif
