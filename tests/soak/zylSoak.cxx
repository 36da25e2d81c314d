// A host's long day: frames, loads, time steps, connections and views, again and again. What the
// process holds is counted after the first tenth of each kind of work and at its end.
//
//     zylSoak [--paraview] [SECONDS] [WORK[=TIMES]...]
//
// WORK: frames, steps, loads, views, connections; all where none is named, each as often as a long
// day asks for. SECONDS (none: as long as it takes) are shared out among all kinds; --paraview does
// the last three with ParaView alone, to compare. Prints a line of JSON per kind; the exit code is
// 1 if anything grew beyond its bound.
#include "zylBoundaryRepresentation.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestHost.h"
#include "zylTestMemory.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <vtkNew.h>
#include <vtkProcessModule.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMSession.h>
#include <vtkSMSessionClient.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMViewProxy.h>
#include <vtkSmartPointer.h>
#include <vtk_glew.h>

namespace {
constexpr long GrowthKilobytes = 2048;

struct Holdings
{
  long Kilobytes = 0;
  long Allocated = 0;
  int GLObjects = 0;
  int Proxies = 0;
  int Handles = 0;
};

// All names below this are asked for: drivers give the lowest free one.
constexpr unsigned int GLNames = 5000;

Holdings Count()
{
  Holdings held;
  for (unsigned int name = 1; name < GLNames; ++name)
  {
    held.GLObjects += glIsBuffer(name) + glIsTexture(name) + glIsVertexArray(name) +
      glIsFramebuffer(name) + glIsRenderbuffer(name) + glIsProgram(name) + glIsShader(name) +
      glIsQuery(name);
  }
  if (vtkSMSession* session = zylCore::GetInstance()->GetSession())
  {
    vtkNew<vtkSMProxyIterator> proxies;
    proxies->SetSession(session);
    for (proxies->Begin(); !proxies->IsAtEnd(); proxies->Next())
    {
      ++held.Proxies;
    }
  }
  for (const auto& handle : std::filesystem::directory_iterator("/proc/self/fd"))
  {
    held.Handles += handle.is_symlink();
  }
  held.Kilobytes = zylTestMemory::GetResident();
  held.Allocated = zylTestMemory::GetAllocated();
  return held;
}

class Soak
{
public:
  /// Without `wanted` every kind of work.
  Soak(double seconds, std::map<std::string, int> wanted)
    : Seconds(seconds)
    , Wanted(std::move(wanted))
  {
  }

  // Run `work` so many times, or for `share` of the time. `settle` makes what is held comparable.
  void Run(
    const char* name, int times, double share, const std::function<void(int)>& work,
    const std::function<void()>& settle = [] {})
  {
    const auto wanted = this->Wanted.find(name);
    if (wanted != this->Wanted.end() && wanted->second > 0)
    {
      times = wanted->second;
    }
    else if (wanted == this->Wanted.end() && !this->Wanted.empty())
    {
      return;
    }
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [start] {
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    Holdings early;
    int done = 0;
    bool counted = false;
    while (done < times && (this->Seconds <= 0.0 || elapsed() < share * this->Seconds))
    {
      work(done++);
      // By then every kind of change has been seen once.
      const bool tenth =
        elapsed() > 0.1 * share * this->Seconds && done >= std::min(times / 10, 20);
      if (!counted && (done >= times / 10 || (this->Seconds > 0.0 && tenth)))
      {
        counted = true;
        settle();
        early = Count();
      }
    }
    settle();
    const Holdings late = Count();
    const long kilobytes = late.Kilobytes - early.Kilobytes;
    const bool good = kilobytes < GrowthKilobytes && late.GLObjects <= early.GLObjects &&
      late.Proxies <= early.Proxies && late.Handles <= early.Handles;
    this->Good = this->Good && good;
    std::printf("{\"work\": \"%s\", \"times\": %d, \"seconds\": %.1f, \"kilobytes\": [%ld, %ld], "
                "\"allocated\": [%ld, %ld], \"glObjects\": [%d, %d], \"proxies\": [%d, %d], "
                "\"handles\": [%d, %d], "
                "\"grown\": %s}\n",
      name, done, elapsed(), early.Kilobytes, late.Kilobytes, early.Allocated, late.Allocated,
      early.GLObjects, late.GLObjects, early.Proxies, late.Proxies, early.Handles, late.Handles,
      good ? "false" : "true");
    std::fflush(stdout);
  }

  bool IsGood() const { return this->Good; }

private:
  double Seconds;
  std::map<std::string, int> Wanted;
  bool Good = true;
};

zylCore* Core()
{
  return zylCore::GetInstance();
}

struct Scene
{
  vtkSmartPointer<zylDataSet> Data = vtkSmartPointer<zylDataSet>::New();
  vtkSmartPointer<zylBoundaryRepresentation> Boundary =
    vtkSmartPointer<zylBoundaryRepresentation>::New();
  vtkSmartPointer<zylView> View = vtkSmartPointer<zylView>::New();

  explicit Scene(const std::string& file)
  {
    this->Data->LoadFromFile({ file });
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(100, 100);
    this->Boundary->SetDataSet(this->Data);
    for (const unsigned int id : this->Data->GetBlockIDs())
    {
      this->Boundary->GetSurfaceProperties(static_cast<int>(id))->Set("Visibility", true);
    }
    this->View->AddRepresentation(this->Boundary);
    this->View->ResetCamera();
  }
  ~Scene() { this->View->RemoveRepresentation(this->Boundary); }

  zylPropertyCollection* Surface()
  {
    return this->Boundary->GetSurfaceProperties(static_cast<int>(this->Data->GetBlockIDs().back()));
  }
};

// The `i`-th of a row of settings that visits every kind of change.
void Change(Scene& scene, int i)
{
  zylPropertyCollection* surface = scene.Surface();
  surface->Set("ColorMode", i % 2);
  surface->Set("ColorVariableName", i % 4 < 2 ? "pressure" : "velocity_X");
  surface->Set("ColorLegendVisibility", i % 6 == 1);
  surface->Set("Transparency", i % 3 == 0 ? 0.5 : 0.0);
  surface->Set("DisplayStyle", i % 7 == 0 ? 1 : 0);
  const int block = static_cast<int>(scene.Data->GetBlockIDs().back());
  scene.Boundary->GetContourProperties(block)->Set("Visibility", i % 5 == 0);
  scene.Boundary->GetContourProperties(block)->Set("ContourVariableName", "pressure");
  scene.Boundary->GetFeatureLineProperties(block)->Set("Visibility", i % 5 == 1);
  scene.Boundary->GetMeshLineProperties(block)->Set("Visibility", i % 5 == 2);
  scene.Boundary->GetVectorGlyphProperties(block)->Set("Visibility", i % 5 == 3);
  scene.Boundary->GetVectorGlyphProperties(block)->Set("VectorVariable", "velocity");
  scene.Boundary->SetNumberOfClips(i % 11 == 0 ? 1 : 0);
  if (i % 11 == 0)
  {
    scene.Boundary->GetClipProperties(0)->Set("ClipMode", 2 + i % 4);
  }
  scene.Boundary->Update();
}

// What a scene has, with ParaView's server manager alone: as many stages, a representation, a view
// in a window of its own.
class ParaViewScene
{
public:
  explicit ParaViewScene(vtkSMSession* session, const std::string& file)
    : Manager(session->GetSessionProxyManager())
  {
    static const char* const stages[] = { "ForceTime", "CellDataToPointData", "PassThrough" };
    auto* source = this->Make("sources", "PVDReader", "FileName",
      [&file](vtkSMPropertyHelper& name) { name.Set(file.c_str()); });
    for (int i = 0; i < 15; ++i)
    {
      source = this->Make("filters", stages[i % 3], "Input",
        [source](vtkSMPropertyHelper& input) { input.Set(source, 0); });
    }
    vtkSMSourceProxy::SafeDownCast(source)->UpdatePipeline();
    this->View.TakeReference(
      vtkSMViewProxy::SafeDownCast(this->Manager->NewProxy("views", "RenderView")));
    const int size[] = { 100, 100 };
    this->Controller->InitializeProxy(this->View);
    vtkSMPropertyHelper(this->View, "ViewSize").Set(size, 2);
    this->Controller->RegisterViewProxy(this->View);
    this->Controller->Show(vtkSMSourceProxy::SafeDownCast(source), 0, this->View);
  }
  ~ParaViewScene()
  {
    this->Controller->UnRegisterProxy(this->View);
    while (!this->Sources.empty())
    {
      this->Controller->UnRegisterProxy(this->Sources.back());
      this->Sources.pop_back();
    }
  }
  ParaViewScene(const ParaViewScene&) = delete;
  void operator=(const ParaViewScene&) = delete;

  void Render() { this->View->StillRender(); }

private:
  vtkSMProxy* Make(const char* group, const char* name, const char* property,
    const std::function<void(vtkSMPropertyHelper&)>& set)
  {
    auto proxy = vtkSmartPointer<vtkSMProxy>::Take(this->Manager->NewProxy(group, name));
    this->Controller->PreInitializeProxy(proxy);
    vtkSMPropertyHelper helper(proxy, property);
    set(helper);
    this->Controller->PostInitializeProxy(proxy);
    proxy->UpdateVTKObjects();
    this->Controller->RegisterPipelineProxy(proxy);
    this->Sources.push_back(proxy);
    return proxy;
  }

  vtkSMSessionProxyManager* Manager;
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> Controller;
  std::vector<vtkSmartPointer<vtkSMProxy>> Sources;
  vtkSmartPointer<vtkSMViewProxy> View;
};

std::unique_ptr<zylTestServer> MakeServer(int i)
{
  return i % 2 == 0 && zylTestServer::IsAvailable(1)
    ? std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY)
    : nullptr;
}

// The same work as below, without the library.
void RunParaView(Soak& soak, const std::string& file)
{
  soak.Run("loads", 1000, 0.4, [&](int i) {
    ParaViewScene scene(Core()->GetSession(), file);
    if (i % 10 == 0)
    {
      scene.Render();
    }
  });
  soak.Run("views", 200, 0.3, [&](int) { ParaViewScene(Core()->GetSession(), file).Render(); });
  Core()->Disconnect();
  soak.Run("connections", 200, 0.3, [&](int i) {
    const auto server = MakeServer(i);
    vtkSmartPointer<vtkSMSession> session;
    if (server)
    {
      auto client = vtkSmartPointer<vtkSMSessionClient>::New();
      client->Connect(server->GetUrl().c_str(), 60);
      session = client;
    }
    else
    {
      session = vtkSmartPointer<vtkSMSession>::Take(vtkSMSession::New());
    }
    vtkProcessModule::GetProcessModule()->RegisterSession(session);
    vtkNew<vtkSMParaViewPipelineController> controller;
    controller->InitializeSession(session);
    ParaViewScene(session, file).Render();
    vtkSMSession::Disconnect(session);
  });
}

int RunSoak(double seconds, bool paraview, const std::map<std::string, int>& wanted)
{
  const auto first = zylTestHost::New(zylTestHost::DefaultPlatform(), 100, 100);
  const auto second = zylTestHost::New(zylTestHost::DefaultPlatform(), 100, 100);
  if (!first || !second)
  {
    std::fprintf(stderr, "zylSoak: no OpenGL context\n");
    return 2;
  }
  first->MakeCurrent();
  Soak soak(seconds, wanted);
  const double steps[] = { 0.0, 1.0, 2.0, 3.0, 4.0 };
  const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 5);
  if (paraview)
  {
    RunParaView(soak, file);
    return soak.IsGood() ? 0 : 1;
  }
  {
    Scene scene(file);
    const auto draw = [&](int i) {
      Change(scene, i);
      first->Clear(0, 0, 1);
      scene.View->Render();
    };
    soak.Run("frames", 10000, 0.25, draw, [&] { draw(0); });
    soak.Run("steps", 1000, 0.2, [&](int i) {
      i % 5 == 4 ? zylTimeController::GetInstance()->GoToFirstTimeStep()
                 : zylTimeController::GetInstance()->GoToNextTimeStep();
      scene.Boundary->Update();
      scene.View->Render();
    });
  }
  soak.Run("loads", 1000, 0.2, [&](int i) {
    Scene scene(file);
    if (i % 10 == 0)
    {
      scene.View->Render();
    }
  });
  soak.Run("views", 200, 0.15, [&](int i) {
    (i % 2 == 0 ? first : second)->MakeCurrent();
    {
      Scene scene(file);
      scene.View->Render();
    }
    first->MakeCurrent();
  });
  first->MakeCurrent();
  soak.Run("connections", 200, 0.2, [&](int i) {
    const auto server = MakeServer(i);
    Core()->Connect(server ? server->GetUrl().c_str() : "builtin:", server ? 60 : 0);
    {
      Scene scene(file);
      scene.View->Render();
    }
    Core()->Disconnect();
  });
  return soak.IsGood() ? 0 : 1;
}
} // namespace

int main(int argc, char** argv)
{
  double seconds = 0.0;
  bool paraview = false;
  std::map<std::string, int> wanted;
  for (const std::string& argument : std::vector<std::string>(argv + 1, argv + argc))
  {
    if (argument == "--paraview")
    {
      paraview = true;
    }
    else if (std::isdigit(static_cast<unsigned char>(argument.front())))
    {
      seconds = std::atof(argument.c_str());
    }
    else
    {
      const std::size_t equals = argument.find('=');
      wanted[argument.substr(0, equals)] =
        equals == std::string::npos ? 0 : std::atoi(argument.c_str() + equals + 1);
    }
  }
  return RunSoak(seconds, paraview, wanted);
}
