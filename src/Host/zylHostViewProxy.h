/// @file zylHostViewProxy.h
/// The server-manager view whose window draws in a host's context. Private to the library.
#ifndef zylHostViewProxy_h
#define zylHostViewProxy_h

#include "zylExport.h"

#include <vtkSmartPointer.h>

class vtkCommand;
class vtkSMRenderViewProxy;
class vtkSMSessionProxyManager;

namespace zylHostViewProxy {
/// A registered view that renders only when it is told to; null without a session. `startRender`
/// observes the start of every still render. The current context stays current.
ZYL_PRIVATE vtkSmartPointer<vtkSMRenderViewProxy> New(
  vtkSMSessionProxyManager* manager, vtkCommand* startRender);

/// Counterpart of New(): no longer observed, and unregistered while its session lives.
ZYL_PRIVATE void Release(vtkSMRenderViewProxy* view, vtkCommand* startRender);
} // namespace zylHostViewProxy

#endif
