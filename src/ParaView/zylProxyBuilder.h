/// @file zylProxyBuilder.h
/// The one way in which the library makes, registers and drops server-manager proxies.
///
///     auto extract = zylProxyBuilder(pxm, "filters", "ExtractBlock")
///                      .Input(source).Set("PruneOutput", 0).Make();
///     ...
///     zylUnregister(extract);
///
/// Private to the library.
#ifndef zylProxyBuilder_h
#define zylProxyBuilder_h

#include "zylExport.h"

#include <functional>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkSMProxy;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;

class ZYL_PRIVATE zylProxyBuilder
{
public:
  /// Nothing is made before Make(). Make() returns null if `manager` is null or its session cannot
  /// be used any more (see zylSession.h).
  zylProxyBuilder(vtkSMSessionProxyManager* manager, const char* group, const char* name);

  /// Connect output port 0 of `source` (borrowed; null is skipped) to the input property.
  zylProxyBuilder& Input(vtkSMProxy* source, const char* property = "Input");

  /// Values that are in place before the proxy is post-initialised. An unknown name is warned about
  /// by ParaView.
  zylProxyBuilder& Set(const char* property, int value);
  zylProxyBuilder& Set(const char* property, double value);
  zylProxyBuilder& Set(const char* property, const char* value);
  zylProxyBuilder& Set(const char* property, const std::vector<int>& values);

  /// Anything else to do to the proxy at the same point, in the order of the calls.
  zylProxyBuilder& Then(std::function<void(vtkSMProxy*)> step);

  /// Unlike ParaView's own ways, Make() and the others ask the server nothing about the data: no
  /// property gets a default that depends on it (arrays, ranges, bounds), so set them.
  ///
  /// New, pre-initialise, inputs and values, push, post-initialise, register as a pipeline proxy.
  /// Returns null (and traces why) when the session does not know the proxy.
  vtkSmartPointer<vtkSMSourceProxy> Make();

  /// As Make(), but not registered: a stage that only its owner knows.
  vtkSmartPointer<vtkSMSourceProxy> MakeInitialized();

  /// A short-lived proxy that is neither initialised by the controller nor registered; values
  /// pushed.
  vtkSmartPointer<vtkSMSourceProxy> MakeUnregistered();

  /// As MakeUnregistered() for proxies that are no sources (settings, "misc", representations).
  vtkSmartPointer<vtkSMProxy> MakeProxy();

  /// A representation proxy, registered as such and added to `view` (borrowed). Unlike ParaView's
  /// own way this asks the server nothing about the data, which takes seconds with thousands of
  /// blocks: what ParaView would choose by the data (array to color by, glyph size) is left to the
  /// caller.
  vtkSmartPointer<vtkSMProxy> MakeRepresentation(vtkSMProxy* view);

private:
  vtkSmartPointer<vtkSMSourceProxy> MakeSource(bool registered);
  vtkSmartPointer<vtkSMProxy> New() const;
  void Configure(vtkSMProxy* proxy) const;

  vtkSMSessionProxyManager* Manager;
  std::string Group;
  std::string Name;
  std::vector<vtkSMProxy*> Producers;
  std::vector<std::function<void(vtkSMProxy*)>> Steps;
};

/// Set the single input of `proxy` to output port 0 of `source` and push it. Nothing is sent when
/// it is connected so already; null arguments, and proxies that cannot be used any more, do
/// nothing.
ZYL_PRIVATE void zylConnect(vtkSMProxy* proxy, vtkSMProxy* source, const char* property = "Input");

/// The proxy of XML name `name` among those that `property` of `proxy` offers (borrowed), or null.
ZYL_PRIVATE vtkSMProxy* zylFindOffered(
  vtkSMProxy* proxy, const char* property, const std::string& name);

/// Execute `source` and what is upstream of it at `time`; 1e299, no time known yet, means 0. Null,
/// or a source that cannot be used any more, does nothing.
ZYL_PRIVATE void zylUpdatePipeline(vtkSMSourceProxy* source, double time);

/// The same, unless nothing upstream of `source` has changed since it was executed at `executed`;
/// no call to the server then. `executed` becomes `time`. Whether it was executed.
ZYL_PRIVATE bool zylUpdatePipeline(vtkSMSourceProxy* source, double time, double& executed);

/// Counterpart of Make(): unregister a pipeline proxy. Null, or a proxy whose session has ended, is
/// fine. The caller drops its own reference. What a view shows has OpenGL objects in the host's
/// context: unless that one is current, it is hidden now and unregistered before the view's next
/// frame.
ZYL_PRIVATE void zylUnregister(vtkSMProxy* proxy);

/// Views and representations follow the settings of the session. ParaView keeps the links of those
/// that are gone, and walks through all of them with each new one: drop them before that.
ZYL_PRIVATE void zylDropDeadLinks(vtkSMSessionProxyManager* manager);

/// Push the values of a proxy that a view shows where that may drop OpenGL objects (a color legend
/// that hides): now if the view's context is current, or before its next frame.
ZYL_PRIVATE void zylPushShown(vtkSMProxy* proxy);

#endif
