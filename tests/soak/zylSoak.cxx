// A host's long day: frames, loads, time steps, connections and views, again and again. What the
// process holds is counted after the first tenth of each kind of work and at its end.
//
//     zylSoak [--paraview] [SECONDS] [WORK...]
//
// WORK: frames, steps, loads, views, connections; all where none is named. SECONDS (none: as long
// as it takes) are shared out among all kinds; --paraview makes and ends sessions with ParaView
// alone, to compare. Prints a line of JSON per kind; the exit code is 1 if anything grew beyond its
// bound.
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
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <vtkNew.h>
#include <vtkProcessModule.h>
#include <vtkSMParaViewPipelineController.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMSession.h>
#include <vtk_glew.h>

namespace {
constexpr long GrowthKilobytes = 2048;

struct Holdings
{
  long Kilobytes = 0;
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
  return held;
}

class Soak
{
public:
  /// Without `wanted` every kind of work.
  Soak(double seconds, std::set<std::string> wanted)
    : Seconds(seconds)
    , Wanted(std::move(wanted))
  {
  }

  // Run `work` so many times, or for `share` of the time.
  void Run(const char* name, int times, double share, const std::function<void(int)>& work)
  {
    if (!this->Wanted.empty() && this->Wanted.count(name) == 0)
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
        early = Count();
      }
    }
    const Holdings late = Count();
    const long kilobytes = late.Kilobytes - early.Kilobytes;
    const bool good = kilobytes < GrowthKilobytes && late.GLObjects <= early.GLObjects &&
      late.Proxies <= early.Proxies && late.Handles <= early.Handles;
    this->Good = this->Good && good;
    std::printf("{\"work\": \"%s\", \"times\": %d, \"seconds\": %.1f, \"kilobytes\": [%ld, %ld], "
                "\"glObjects\": [%d, %d], \"proxies\": [%d, %d], \"handles\": [%d, %d], "
                "\"grown\": %s}\n",
      name, done, elapsed(), early.Kilobytes, late.Kilobytes, early.GLObjects, late.GLObjects,
      early.Proxies, late.Proxies, early.Handles, late.Handles, good ? "false" : "true");
    std::fflush(stdout);
  }

  bool IsGood() const { return this->Good; }

private:
  double Seconds;
  std::set<std::string> Wanted;
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

void MakeParaViewSession()
{
  auto session = vtkSmartPointer<vtkSMSession>::Take(vtkSMSession::New());
  vtkProcessModule::GetProcessModule()->RegisterSession(session);
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->InitializeSession(session);
  vtkSMSession::Disconnect(session);
}

int RunSoak(double seconds, bool paraview, const std::set<std::string>& wanted)
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
  if (paraview)
  {
    Core()->Disconnect();
    soak.Run("connections", 200, 1.0, [](int) { MakeParaViewSession(); });
    return soak.IsGood() ? 0 : 1;
  }
  const double steps[] = { 0.0, 1.0, 2.0, 3.0, 4.0 };
  const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 5);
  {
    Scene scene(file);
    soak.Run("frames", 10000, 0.25, [&](int i) {
      Change(scene, i);
      first->Clear(0, 0, 1);
      scene.View->Render();
    });
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
    std::unique_ptr<zylTestServer> server;
    if (i % 2 == 0 && zylTestServer::IsAvailable(1))
    {
      server = std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY);
      Core()->Connect(server->GetUrl().c_str(), 60);
    }
    else
    {
      Core()->Connect("builtin:", 0);
    }
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
  std::set<std::string> wanted;
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
      wanted.insert(argument);
    }
  }
  return RunSoak(seconds, paraview, wanted);
}
