#include "zylCore.h"

#include "Host/zylHostRenderWindow.h"
#include "ParaView/zylAnimation.h"
#include "ParaView/zylFileTypes.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPlugin.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylPython.h"
#include "ParaView/zylServerConnection.h"
#include "ParaView/zylSession.h"
#include "ParaView/zylSessionClient.h"
#include "zylMessages.h"
#include "zylProgress.h"
#include "zylProxyDefinitions.h" // made from the XML file

#include <iostream>

#include <vtkClientServerMoveData.h>
#include <vtkFileOutputWindow.h>
#include <vtkInitializationHelper.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>
#include <vtkPVPluginLoader.h>
#include <vtkPVPluginTracker.h>
#include <vtkProcessModule.h>
#include <vtkSMAnimationSceneProxy.h>
#include <vtkSMParaViewPipelineController.h>
#include <vtkSMPluginManager.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMProxyManager.h>
#include <vtkSMReaderFactory.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMTransferFunctionPresets.h>
#include <vtksys/SystemTools.hxx>

vtkStandardNewMacro(zylCore);
vtkStandardNewMacro(vtkSuppressOutputWindow);

double zylCore::SelectionColor[3] = { 1.0, 0.7019607843137254, 0.14838709677419354 };
std::string zylCore::LogFile;
std::string zylCore::DefaultColorMapName = "Cool to Warm";

namespace {
constexpr char PluginName[] = "VTKExtensions";
constexpr char BuiltInUrl[] = "builtin:";

int CleanerCount = 0;

// Never destroyed itself: the cleaners decide when the instance goes.
vtkSmartPointer<zylCore>& Singleton()
{
  static auto* instance = new vtkSmartPointer<zylCore>;
  return *instance;
}

bool StaticPlugin(const char* name, bool load)
{
  static bool imported = false;
  if (!name || std::string(name) != PluginName)
  {
    return false;
  }
  if (load && !imported)
  {
    imported = zylImportPlugin();
  }
  return true;
}

// The loader and the tracker keep every function they are given, so they get ours once.
void RegisterStaticPlugin()
{
  static bool registered = false;
  if (registered)
  {
    return;
  }
  registered = true;
  vtkPVPluginLoader::RegisterLoadPluginCallback(
    [](const char* name) { return StaticPlugin(name, true); });
  vtkPVPluginTracker::RegisterStaticPluginSearchFunction(
    [](const char* name) { return StaticPlugin(name, false); });
  vtkPVPluginTracker::RegisterStaticPluginListFunction(
    [](const char*, std::vector<std::string>& names) { names.emplace_back(PluginName); });
}

void ApplySettings(vtkSMSessionProxyManager* manager)
{
  if (vtkSMProxy* palette = manager->GetProxy("settings", "ColorPalette"))
  {
    vtkSMPropertyHelper(palette, "SelectionColor").Set(zylCore::SelectionColor, 3);
    palette->UpdateVTKObjects();
  }
  if (vtkSMProxy* general = manager->GetProxy("settings", "GeneralSettings"))
  {
    vtkSMPropertyHelper(general, "AutoConvertProperties").Set(0, 1);
    general->UpdateVTKObjects();
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSingletonCleaner::zylSingletonCleaner()
{
  ++CleanerCount;
}

//--------------------------------------------------------------------------------------------------
zylSingletonCleaner::~zylSingletonCleaner()
{
  if (--CleanerCount == 0)
  {
    Singleton() = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
zylCore::zylCore() = default;

//--------------------------------------------------------------------------------------------------
zylCore::~zylCore()
{
  if (this->Started)
  {
    zylSetCurrentSession(nullptr);
    this->Session = nullptr;
    zylForgetSessions();
    vtkSMProxyManager::Finalize();
    vtkProcessModule::Finalize();
  }
}

//--------------------------------------------------------------------------------------------------
zylCore* zylCore::GetInstance()
{
  if (!Singleton())
  {
    auto core = vtkSmartPointer<zylCore>::New();
    // ParaView keeps the strings, so they live as long as the process.
    static std::string program = vtksys::SystemTools::GetCurrentWorkingDirectory() + "/unknown_exe";
    static char* argv[] = { program.data(), nullptr };
    core->Initialize(1, argv);
    Singleton() = core;
  }
  return Singleton();
}

//--------------------------------------------------------------------------------------------------
bool zylCore::Initialize(int argc, char** argv)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylCore::Initialize");
  zylMessages::GetInstance(); // keeps them from now on
  vtkInitializationHelper::SetApplicationName("ZYL");
  if (!zylParaView::StartClient(argc, argv))
  {
    return false;
  }
  this->Started = true;
  zylParaView::ChooseThreadedBackend();
  this->UseBuiltInSession();
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylCore::UseBuiltInSession()
{
  this->Session = vtkSmartPointer<vtkSMSession>::Take(vtkSMSession::New());
  zylRememberSession(this->Session);
  zylSetCurrentSession(this->Session);
  this->ConfigureSession(this->Session);
}

//--------------------------------------------------------------------------------------------------
void zylCore::ConfigureSession(vtkSMSession* session)
{
  vtkProcessModule::GetProcessModule()->RegisterSession(session);
  zylProgress::GetInstance()->Follow(session);
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->InitializeSession(session);
  vtkSMSessionProxyManager* manager =
    vtkSMProxyManager::GetProxyManager()->GetSessionProxyManager(session);

  RegisterStaticPlugin();
  vtkNew<vtkPVPluginLoader> loader;
  if (!loader->LoadPluginByName(PluginName))
  {
    vtkLogF(ERROR, "Could not load required plugin VTKExtensions");
  }
  const std::string definitions = zylParaView::HasServerPlugin(session)
    ? zylUsePluginClasses(zylProxyDefinitions)
    : zylProxyDefinitions;
  manager->LoadConfigurationXML(definitions.c_str());
  if (const char* missing = zylParaView::GetMissingDefinitions())
  {
    manager->LoadConfigurationXML(missing);
  }
  ApplySettings(manager);
  zylPython::RunDerivedVariableModule();
}

//--------------------------------------------------------------------------------------------------
vtkSMSession* zylCore::GetSession()
{
  return this->Session;
}

//--------------------------------------------------------------------------------------------------
vtkSMSessionProxyManager* zylCore::GetSessionProxyManager()
{
  return this->Session ? vtkSMProxyManager::GetProxyManager()->GetSessionProxyManager(this->Session)
                       : nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylCore::Connect(const char* url, int timeout)
{
  if (!this->Started)
  {
    vtkLogF(ERROR, "Connect() called before ParaView was started");
    return;
  }
  if (url && std::string(url) == BuiltInUrl)
  {
    this->Disconnect();
    this->UseBuiltInSession();
    return;
  }
  // ParaView cannot reach for a second server while it is connected to one. A built-in session,
  // with all that was loaded, is given up only when there is another.
  if (zylSessionClient::SafeDownCast(this->Session))
  {
    this->Disconnect();
  }
  auto session = vtkSmartPointer<zylSessionClient>::New();
  zylRememberSession(session);
  if (!url || !session->Connect(url, timeout))
  {
    // A session without a server would fail at every later use.
    vtkLogF(ERROR, "Could not connect to '%s'", url ? url : "");
    return;
  }
  this->Disconnect();
  this->Session = session;
  zylSetCurrentSession(session);
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->InitializeSession(session);
  this->ConfigureSession(session);
  if (!zylParaView::HasServerPlugin(session))
  {
    vtkLogF(ERROR, "Could not load required plugin VTKExtensions");
  }
}

//--------------------------------------------------------------------------------------------------
void zylCore::Disconnect()
{
  if (this->Session)
  {
    // The windows go with the session.
    zylHostRenderWindow::ReleaseAll();
    zylSetCurrentSession(nullptr);
    zylProgress::GetInstance()->Follow(nullptr);
    vtkSMSession::Disconnect(this->Session);
    this->Session = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
void zylCore::SetServerTimeLimit(int seconds)
{
  zylServerConnection::SetTimeLimit(seconds);
}

//--------------------------------------------------------------------------------------------------
int zylCore::GetServerTimeLimit()
{
  return zylServerConnection::GetTimeLimit();
}

//--------------------------------------------------------------------------------------------------
void zylCore::RegisterView(zylView* view)
{
  this->RegisteredViews.insert(view);
}

//--------------------------------------------------------------------------------------------------
void zylCore::UnRegisterView(zylView* view)
{
  this->RegisteredViews.erase(view);
}

//--------------------------------------------------------------------------------------------------
bool zylCore::LoadPlugin(const char* path)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylCore::LoadPlugin: %s", path ? path : "");
  zylCore::GetInstance();
  vtkSMPluginManager* manager = vtkSMProxyManager::GetProxyManager()->GetPluginManager();
  return path && manager->LoadLocalPlugin(path);
}

//--------------------------------------------------------------------------------------------------
bool zylCore::LoadRemotePlugin(const char* path)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylCore::LoadRemotePlugin: %s", path ? path : "");
  vtkSMSession* session = zylCore::GetInstance()->GetSession();
  if (!zylHasSession("LoadRemotePlugin()"))
  {
    return false;
  }
  vtkSMPluginManager* manager = vtkSMProxyManager::GetProxyManager()->GetPluginManager();
  return path && manager->LoadRemotePlugin(path, session);
}

//--------------------------------------------------------------------------------------------------
void zylCore::SetLogFile(const char* name, bool verbose)
{
  if (!name)
  {
    return;
  }
  zylCore::LogFile = name;
  vtkLogger::LogToFile(
    name, vtkLogger::TRUNCATE, verbose ? vtkLogger::VERBOSITY_TRACE : vtkLogger::VERBOSITY_WARNING);
  vtkNew<vtkFileOutputWindow> window;
  window->SetFileName((zylCore::LogFile + ".vtk.txt").c_str());
  window->SetFlush(1);
  vtkOutputWindow::SetInstance(window);
}

//--------------------------------------------------------------------------------------------------
void zylCore::SuppressWarnings()
{
  vtkNew<vtkSuppressOutputWindow> window;
  vtkOutputWindow::SetInstance(window);
  vtkObject::SetGlobalWarningDisplay(0);
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
  vtkLogger::EndLogToFile(zylCore::LogFile.c_str());
}

//--------------------------------------------------------------------------------------------------
void zylCore::SetEnvironmentVariable(const char* name, const char* value)
{
  if (!name)
  {
    return;
  }
  const std::string assignment = std::string(name) + "=" + (value ? value : "");
  std::cout << assignment << '\n' << std::flush;
  vtksys::SystemTools::PutEnv(assignment);
}

//--------------------------------------------------------------------------------------------------
const char* zylCore::GetZYLVersion()
{
  return "0.2.0";
}

//--------------------------------------------------------------------------------------------------
int zylCore::GetZYLMajorVersion()
{
  return 0;
}

//--------------------------------------------------------------------------------------------------
int zylCore::GetZYLMinorVersion()
{
  return 2;
}

//--------------------------------------------------------------------------------------------------
int zylCore::GetZYLBuildVersion()
{
  return 0;
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylCore::GetSupportedFileTypes()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylCore::GetSupportedFileTypes");
  vtkSMSession* session = zylCore::GetInstance()->GetSession();
  vtkSMReaderFactory* factory = zylHasSession("GetSupportedFileTypes()")
    ? vtkSMProxyManager::GetProxyManager()->GetReaderFactory()
    : nullptr;
  if (!factory)
  {
    return {};
  }
  if (factory->GetNumberOfRegisteredPrototypes() == 0)
  {
    factory->UpdateAvailableReaders();
  }
  const char* types = factory->GetSupportedFileTypes(session);
  return types ? zylSplitFileTypes(types) : std::vector<std::string>();
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylCore::GetAvailableColorMapNames()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "zylCore::GetAvailableColorMapNames");
  vtkNew<vtkSMTransferFunctionPresets> presets;
  std::vector<std::string> names;
  for (unsigned int i = 0; i < presets->GetNumberOfPresets(); ++i)
  {
    names.push_back(presets->GetPresetName(i));
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkDataObject> zylCore::Fetch(
  vtkSMSourceProxy* source, const char* postGatherHelperName)
{
  if (!zylIsUsable(source, "Fetch()"))
  {
    return nullptr;
  }
  vtkSMSessionProxyManager* manager = source->GetSessionProxyManager();
  auto reduction = zylProxyBuilder(manager, "filters", "ReductionFilter")
                     .Input(source)
                     .Set("PostGatherHelperName", postGatherHelperName ? postGatherHelperName : "")
                     .MakeUnregistered();
  if (!reduction)
  {
    return nullptr;
  }
  // A source without input, such as the reader of a dataset, is fetched as it stands: asked at a
  // time between two of its steps it would choose one for itself. All else is brought to the
  // animation's time.
  const bool stands = source->GetProperty("Input") == nullptr;
  const auto execute = [stands, source](vtkSMSourceProxy* proxy) {
    if (stands)
    {
      proxy->UpdatePipeline();
      return;
    }
    const double time = zylGetAnimationTime(zylFindAnimationScene(source->GetSession()), 0.0);
    zylUpdatePipeline(proxy, time);
  };
  execute(reduction);
  auto move = zylProxyBuilder(manager, "filters", "ClientServerMoveData")
                .Input(reduction)
                .Set("OutputDataType", zylParaView::GetOutputDataType(reduction))
                .MakeUnregistered();
  if (!move)
  {
    return nullptr;
  }
  execute(move);
  auto* mover = vtkClientServerMoveData::SafeDownCast(move->GetClientSideObject());
  return mover ? mover->GetOutputDataObject(0) : nullptr;
}

//--------------------------------------------------------------------------------------------------
int zylCore::GetArrayAssociation(const char* arrayName, vtkSMSourceProxy* source)
{
  vtkPVDataInformation* data = arrayName && zylIsUsable(source, "GetArrayAssociation()")
    ? source->GetDataInformation(0)
    : nullptr;
  if (!data)
  {
    return -1;
  }
  if (data->GetPointDataInformation()->GetArrayInformation(arrayName))
  {
    return 0;
  }
  return data->GetCellDataInformation()->GetArrayInformation(arrayName) ? 1 : -1;
}

//--------------------------------------------------------------------------------------------------
bool zylCore::PrintObjects()
{
  vtkSMSession* session = zylCore::GetInstance()->GetSession();
  if (!session)
  {
    return false;
  }
  bool any = false;
  for (const char* group : { "readers", "sources", "filters" })
  {
    vtkNew<vtkSMProxyIterator> iterator;
    iterator->SetSession(session);
    iterator->SetModeToOneGroup();
    for (iterator->Begin(group); !iterator->IsAtEnd(); iterator->Next())
    {
      vtkSMProxy* proxy = iterator->GetProxy();
      std::cout << proxy->GetXMLName() << "(" << proxy << ")\n";
      any = true;
    }
  }
  std::cout.flush();
  return any;
}

//--------------------------------------------------------------------------------------------------
void zylCore::PrintPipeline(vtkSMSourceProxy* source)
{
  if (!source)
  {
    return;
  }
  std::cout << "Pipeline:\n";
  while (source)
  {
    vtkSMProperty* input = source->GetProperty("Input");
    const bool connected = input && vtkSMPropertyHelper(input).GetNumberOfElements() > 0;
    source = connected ? vtkSMSourceProxy::SafeDownCast(vtkSMPropertyHelper(input).GetAsProxy(0))
                       : nullptr;
    if (source)
    {
      std::cout << "  " << source->GetXMLName() << '\n';
    }
  }
  std::cout.flush();
}
