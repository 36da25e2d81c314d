#include "ParaView/zylProxyBuilder.h"

#include "Host/zylHostRenderWindow.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylSession.h"

#include <deque>

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkPVRepresentedArrayListSettings.h>
#include <vtkPVView.h>
#include <vtkSMParaViewPipelineController.h>
#include <vtkSMProperty.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMPropertyIterator.h>
#include <vtkSMProxy.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMProxyListDomain.h>
#include <vtkSMRepresentationProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSettingsProxy.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMViewProxy.h>

namespace {
// The parts of a compound proxy can be asked for by position from within proxy classes only, and so
// can what says that a proxy, or one that it depends on, was changed after its last execution.
struct Internals : public vtkSMProxy
{
  static unsigned int Count(vtkSMProxy* proxy)
  {
    return (proxy->*&Internals::GetNumberOfSubProxies)();
  }
  static vtkSMProxy* Get(vtkSMProxy* proxy, unsigned int i)
  {
    constexpr vtkSMProxy* (vtkSMProxy::*get)(unsigned int) = &Internals::GetSubProxy;
    return (proxy->*get)(i);
  }
  static bool IsOutdated(vtkSMProxy* proxy) { return proxy->*&Internals::NeedsUpdate; }
};

//--------------------------------------------------------------------------------------------------
void RemoveObserver(vtkObject* object, unsigned long tag, unsigned long event)
{
  vtkCommand* command = object->GetCommand(tag);
  if (command && object->HasObserver(event, command))
  {
    object->RemoveObserver(tag);
  }
}

//--------------------------------------------------------------------------------------------------
// The choices that ParaView offers for the properties (their domains: lists of arrays, ranges,
// bounds) must not follow the inputs. They would be worked out anew, by a gather of everything
// about the data that takes seconds with thousands of blocks, whenever the inputs execute; nothing
// in the library reads them. A property updates the domains that depend on it through two
// observers: of its own changes, and of the producers it is connected to, when they have executed.
// Others may watch the same events, so these are told by their tags, which an object hands out in
// ascending order.
//
// Take away the observer of its own changes, which a property adds when it is made.
void MuteChanges(vtkSMProxy* proxy)
{
  vtkSmartPointer<vtkSMPropertyIterator> iterator;
  iterator.TakeReference(proxy->NewPropertyIterator());
  for (iterator->Begin(); !iterator->IsAtEnd(); iterator->Next())
  {
    constexpr unsigned long first = 1;
    RemoveObserver(iterator->GetProperty(), first, vtkCommand::UncheckedPropertyModifiedEvent);
  }
  for (unsigned int i = 0; i < Internals::Count(proxy); ++i)
  {
    MuteChanges(Internals::Get(proxy, i));
  }
}

//--------------------------------------------------------------------------------------------------
// The window of the view that shows the proxy; null when none does.
zylHostRenderWindow* WindowOf(vtkSMProxy* proxy)
{
  for (unsigned int i = 0; proxy && i < proxy->GetNumberOfConsumers(); ++i)
  {
    auto* view = vtkSMViewProxy::SafeDownCast(proxy->GetConsumerProxy(i));
    auto* client = view ? vtkPVView::SafeDownCast(view->GetClientSideObject()) : nullptr;
    if (client)
    {
      return zylHostRenderWindow::SafeDownCast(client->GetRenderWindow());
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
// Takes away what comes to observe an event of `subject` while this lives.
class MutedSubject
{
public:
  MutedSubject(vtkObject* subject, unsigned long event)
    : Subject(subject)
    , Event(event)
    , FirstTag(NextTag(subject))
  {
  }
  ~MutedSubject()
  {
    const unsigned long end = NextTag(this->Subject);
    for (unsigned long tag = this->FirstTag; tag < end; ++tag)
    {
      RemoveObserver(this->Subject, tag, this->Event);
    }
  }
  MutedSubject(const MutedSubject&) = delete;
  void operator=(const MutedSubject&) = delete;

private:
  static unsigned long NextTag(vtkObject* subject)
  {
    vtkNew<vtkCallbackCommand> probe;
    const unsigned long tag = subject->AddObserver(vtkCommand::NoEvent, probe);
    subject->RemoveObserver(tag);
    return tag;
  }

  vtkSmartPointer<vtkObject> Subject;
  unsigned long Event;
  unsigned long FirstTag;
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylProxyBuilder::zylProxyBuilder(
  vtkSMSessionProxyManager* manager, const char* group, const char* name)
  : Manager(manager)
  , Group(group)
  , Name(name)
{
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Input(vtkSMProxy* source, const char* property)
{
  if (source)
  {
    this->Producers.push_back(source);
    this->Steps.emplace_back([name = std::string(property), source](vtkSMProxy* proxy) {
      vtkSMPropertyHelper(proxy, name.c_str()).Set(source, 0);
    });
  }
  return *this;
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Set(const char* property, int value)
{
  return this->Set(property, std::vector<int>{ value });
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Set(const char* property, double value)
{
  this->Steps.emplace_back([name = std::string(property), value](vtkSMProxy* proxy) {
    vtkSMPropertyHelper(proxy, name.c_str()).Set(value);
  });
  return *this;
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Set(const char* property, const char* value)
{
  this->Steps.emplace_back(
    [name = std::string(property), text = std::string(value)](
      vtkSMProxy* proxy) { vtkSMPropertyHelper(proxy, name.c_str()).Set(text.c_str()); });
  return *this;
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Set(const char* property, const std::vector<int>& values)
{
  this->Steps.emplace_back([name = std::string(property), values](vtkSMProxy* proxy) {
    vtkSMPropertyHelper(proxy, name.c_str())
      .Set(values.data(), static_cast<unsigned int>(values.size()));
  });
  return *this;
}

//--------------------------------------------------------------------------------------------------
zylProxyBuilder& zylProxyBuilder::Then(std::function<void(vtkSMProxy*)> step)
{
  this->Steps.push_back(std::move(step));
  return *this;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMProxy> zylProxyBuilder::New() const
{
  vtkSmartPointer<vtkSMProxy> proxy;
  if (this->Manager && zylIsAlive(this->Manager->GetSession()))
  {
    proxy.TakeReference(this->Manager->NewProxy(this->Group.c_str(),
      zylParaView::GetDefinition(
        this->Manager->GetSession(), this->Group.c_str(), this->Name.c_str())));
  }
  if (!proxy)
  {
    vtkVLogF(vtkLogger::VERBOSITY_TRACE, "no proxy '%s' in group '%s'", this->Name.c_str(),
      this->Group.c_str());
  }
  return proxy;
}

//--------------------------------------------------------------------------------------------------
void zylProxyBuilder::Configure(vtkSMProxy* proxy) const
{
  MuteChanges(proxy);
  std::deque<MutedSubject> muted;
  for (vtkSMProxy* producer : this->Producers)
  {
    muted.emplace_back(producer, vtkCommand::UpdateDataEvent);
  }
  for (const auto& step : this->Steps)
  {
    step(proxy);
  }
  proxy->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylProxyBuilder::Make()
{
  return this->MakeSource(true);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylProxyBuilder::MakeInitialized()
{
  return this->MakeSource(false);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylProxyBuilder::MakeSource(bool registered)
{
  vtkSmartPointer<vtkSMSourceProxy> source = vtkSMSourceProxy::SafeDownCast(this->New());
  if (source)
  {
    // One controller for all steps: it remembers what it has begun to initialize.
    vtkNew<vtkSMParaViewPipelineController> controller;
    controller->PreInitializeProxy(source);
    this->Configure(source);
    controller->PostInitializeProxy(source);
    if (registered)
    {
      controller->RegisterPipelineProxy(source);
    }
  }
  return source;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylProxyBuilder::MakeUnregistered()
{
  return vtkSMSourceProxy::SafeDownCast(this->MakeProxy());
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMProxy> zylProxyBuilder::MakeProxy()
{
  auto proxy = this->New();
  if (proxy)
  {
    this->Configure(proxy);
  }
  return proxy;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMProxy> zylProxyBuilder::MakeRepresentation(vtkSMProxy* view)
{
  // The choice of an array follows settings that no host of the library has, by observers that
  // stay when the representation goes.
  const MutedSubject arraySettings(
    vtkPVRepresentedArrayListSettings::GetInstance(), vtkCommand::ModifiedEvent);
  auto proxy = this->New();
  if (!proxy || !zylIsAlive(view))
  {
    return nullptr;
  }
  zylDropDeadLinks(proxy->GetSessionProxyManager());
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->PreInitializeProxy(proxy);
  this->Configure(proxy);
  // The one default that is worked out from the data on demand. What was modified has none.
  if (vtkSMProperty* type = proxy->GetProperty("Representation"))
  {
    type->Modified();
  }
  controller->PostInitializeProxy(proxy);
  controller->RegisterRepresentationProxy(proxy);
  vtkSMPropertyHelper(view, "Representations").Add(proxy);
  view->UpdateVTKObjects();
  return proxy;
}

//--------------------------------------------------------------------------------------------------
vtkSMProxy* zylFindOffered(vtkSMProxy* proxy, const char* property, const std::string& name)
{
  vtkSMProperty* choice = proxy ? proxy->GetProperty(property) : nullptr;
  auto* domain = choice ? choice->FindDomain<vtkSMProxyListDomain>() : nullptr;
  for (unsigned int i = 0; domain && i < domain->GetNumberOfProxies(); ++i)
  {
    vtkSMProxy* offered = domain->GetProxy(i);
    if (offered && name == offered->GetXMLName())
    {
      return offered;
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylConnect(vtkSMProxy* proxy, vtkSMProxy* source, const char* property)
{
  if (!zylIsAlive(proxy) || !zylIsAlive(source))
  {
    return;
  }
  vtkSMPropertyHelper helper(proxy, property);
  if (helper.GetNumberOfElements() != 1 || helper.GetAsProxy(0) != source ||
    helper.GetOutputPort(0) != 0)
  {
    const MutedSubject muted(source, vtkCommand::UpdateDataEvent);
    helper.Set(source, 0);
  }
  proxy->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylUpdatePipeline(vtkSMSourceProxy* source, double time)
{
  if (zylIsAlive(source))
  {
    source->UpdatePipeline(time == 1e299 ? 0.0 : time);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylUpdatePipeline(vtkSMSourceProxy* source, double time, double& executed)
{
  if (!zylIsAlive(source) || (time == executed && !Internals::IsOutdated(source)))
  {
    return false;
  }
  zylUpdatePipeline(source, time);
  executed = time;
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylUnregister(vtkSMProxy* proxy)
{
  if (!proxy || !proxy->GetSession())
  {
    return;
  }
  const vtkSmartPointer<vtkSMProxy> kept = proxy;
  const auto unregister = [kept] {
    if (kept->GetSession())
    {
      vtkNew<vtkSMParaViewPipelineController> controller;
      controller->UnRegisterProxy(kept);
    }
  };
  zylHostRenderWindow* window = WindowOf(proxy);
  if (!window)
  {
    unregister();
    return;
  }
  // It may have to wait; meanwhile it counts for nothing, and what it shows may go.
  if (window->IsElsewhere() && vtkSMRepresentationProxy::SafeDownCast(proxy))
  {
    vtkSMPropertyHelper(proxy, "Visibility").Set(0);
    vtkSMPropertyHelper(proxy, "Input").RemoveAllValues();
    proxy->UpdateVTKObjects();
  }
  window->WhenCurrent(unregister);
}

//--------------------------------------------------------------------------------------------------
void zylDropDeadLinks(vtkSMSessionProxyManager* manager)
{
  vtkNew<vtkSMProxyIterator> settings;
  settings->SetSessionProxyManager(manager);
  settings->SetModeToOneGroup();
  for (settings->Begin("settings"); !settings->IsAtEnd(); settings->Next())
  {
    if (auto* shared = vtkSMSettingsProxy::SafeDownCast(settings->GetProxy()))
    {
      // Whatever link it is to remove, this removes the dead ones as well.
      shared->RemoveLink("", nullptr, "");
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylPushShown(vtkSMProxy* proxy)
{
  if (zylHostRenderWindow* window = WindowOf(proxy))
  {
    const vtkSmartPointer<vtkSMProxy> kept = proxy;
    window->WhenCurrent([kept] {
      if (kept->GetSession())
      {
        kept->UpdateVTKObjects();
      }
    });
  }
  else if (proxy && proxy->GetSession())
  {
    proxy->UpdateVTKObjects();
  }
}
