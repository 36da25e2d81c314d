// Display of many blocks through the library: load, first frame, changes of one block, memory.
//
//     zylBenchBlocks FILE [--connect URL] [--count] [--picture PREFIX]
//
// FILE has a point array "pressure" (see gen_blocks.py of the baselines). Surfaces of all leaf
// blocks are visible and colored by it; the other four kinds are at their defaults. Each stage is
// one JSON line: seconds of wall time, user and system CPU, peak resident size so far. The stages
// "load", "settings", "update", "camera" and "frame" are parts of "load + first frame".
//
// --connect uses a server; the bytes sent to it in each stage are printed too.
// --count adds how often each stage asked the server for information and executed pipelines. It
// reads the toolkit's trace, which takes time: no times are printed.
// --picture writes PREFIX_STAGE.ppm, to look at.
#include "zylBench.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <malloc.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vtkCamera.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSmartPointer.h>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

namespace {
constexpr int Width = 800;
constexpr int Height = 600;
using Getter = zylPropertyCollection* (zylBoundaryRepresentation::*)(int);
constexpr Getter Kinds[] = { &zylBoundaryRepresentation::GetSurfaceProperties,
  &zylBoundaryRepresentation::GetContourProperties,
  &zylBoundaryRepresentation::GetFeatureLineProperties,
  &zylBoundaryRepresentation::GetMeshLineProperties,
  &zylBoundaryRepresentation::GetVectorGlyphProperties };

std::size_t BytesSent = 0;

struct Counts
{
  int DataInformation = 0; // ParaView's own gathering, which costs time for every block
  int Information = 0;     // anything else that was asked for
  int Executions = 0;      // filters that ran
} Count;

//--------------------------------------------------------------------------------------------------
void CountMessage(void*, const vtkLogger::Message& message)
{
  const auto has = [&message](const char* text) { return std::strstr(message.message, text); };
  if (has("gather information"))
  {
    ++(has("vtkPVDataInformation") ? Count.DataInformation : Count.Information);
  }
  else if (has(": execute"))
  {
    ++Count.Executions;
  }
}

//--------------------------------------------------------------------------------------------------
std::size_t UsedMemory()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
  const struct mallinfo2 info = mallinfo2();
#else
  const struct mallinfo info = mallinfo();
#endif
  return static_cast<std::size_t>(info.uordblks) + static_cast<std::size_t>(info.hblkhd);
}

//--------------------------------------------------------------------------------------------------
class Driver
{
public:
  Driver(int argc, char** argv)
  {
    for (int i = 1; i < argc; ++i)
    {
      const std::string argument = argv[i];
      const bool more = i + 1 < argc;
      if (argument == "--count")
      {
        this->Counting = true;
      }
      else if (argument == "--connect" && more)
      {
        this->Url = argv[++i];
      }
      else if (argument == "--picture" && more)
      {
        this->Picture = argv[++i];
      }
      else
      {
        this->File = argument;
      }
    }
  }

  bool HasFile() const { return !this->File.empty(); }
  bool Start();
  bool Load();
  void Frames();
  void Changes();
  void Unchanged();
  void Updates();
  void Hash();

private:
  template <class Action>
  void Stage(const char* name, Action action)
  {
    BytesSent = 0;
    Count = Counts();
    const zylBenchClock clock;
    action();
    if (this->Counting)
    {
      std::printf("{\"stage\": \"%s\", \"data_information\": %d, \"information\": %d, "
                  "\"executions\": %d}\n",
        name, Count.DataInformation, Count.Information, Count.Executions);
      return;
    }
    clock.Print(name, this->Url.empty() ? std::string() : "\"sent\": " + std::to_string(BytesSent));
  }
  void Draw()
  {
    this->Host.Clear();
    this->View->Render();
    this->Host.Finish();
  }
  void Shoot(const char* stage)
  {
    if (!this->Picture.empty())
    {
      this->Host.WritePicture((this->Picture + "_" + stage + ".ppm").c_str());
    }
  }

  std::string File, Url, Picture;
  bool Counting = false;
  zylBenchHost Host{ Width, Height };
  vtkSmartPointer<zylView> View;
  vtkSmartPointer<zylDataSet> Data;
  vtkSmartPointer<zylBoundaryRepresentation> Boundary;
  std::vector<int> Leaves;
};

//--------------------------------------------------------------------------------------------------
bool Driver::Start()
{
  zylCore* core = zylCore::GetInstance();
  if (!this->Url.empty())
  {
    core->Connect(this->Url.c_str(), 60);
  }
  if (!core->GetSession())
  {
    return false;
  }
  this->View = vtkSmartPointer<zylView>::New();
  this->View->SetSourceFBO(this->Host.GetFramebuffer());
  this->View->SetWindowSize(Width, Height);
  this->View->Update();
  this->Draw(); // shaders and buffers exist before the clock starts
  if (this->Counting)
  {
    vtkLogger::AddCallback("count", CountMessage, nullptr, vtkLogger::VERBOSITY_TRACE);
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
bool Driver::Load()
{
  const zylBenchClock clock;
  this->Data = vtkSmartPointer<zylDataSet>::New();
  bool loaded = false;
  this->Stage("load", [&] { loaded = this->Data->LoadFromFile({ this->File }); });
  if (!loaded || !this->Data->GetReadErrors().empty())
  {
    return false;
  }
  const std::size_t before = UsedMemory();
  std::size_t after = 0;
  const double range[2] = { -1.0, 2.0 };
  this->Boundary = vtkSmartPointer<zylBoundaryRepresentation>::New();
  this->Stage("settings", [&] {
    this->Boundary->SetDataSet(this->Data);
    after = UsedMemory();
    for (const unsigned int id : this->Data->GetBlockIDs())
    {
      if (this->Data->GetChildren(id).empty())
      {
        zylPropertyCollection* settings = this->Boundary->GetSurfaceProperties(int(id));
        settings->Set("Visibility", true);
        settings->Set("ColorMode", 1);
        settings->Set("ColorVariableName", "pressure");
        settings->Set("ColorMapRange", range, 2);
        this->Leaves.push_back(int(id));
      }
    }
  });
  this->Stage("update", [&] { this->View->AddRepresentation(this->Boundary); });
  this->Stage("camera", [&] { this->View->ResetCamera(); });
  this->Stage("frame", [&] { this->Draw(); });
  if (!this->Counting)
  {
    clock.Print("load + first frame", "\"blocks\": " + std::to_string(this->Leaves.size()));
    std::printf("{\"stage\": \"settings memory\", \"bytes_per_block\": %zu}\n",
      (after - before) / this->Leaves.size());
  }
  this->Shoot("first");
  return true;
}

//--------------------------------------------------------------------------------------------------
void Driver::Frames()
{
  for (int i = 0; i < 5; ++i)
  {
    this->Stage("frame, camera moved", [&] {
      this->View->GetProxy()->GetActiveCamera()->Azimuth(1.0);
      this->Draw();
    });
  }
}

//--------------------------------------------------------------------------------------------------
void Driver::Changes()
{
  const int one = this->Leaves[this->Leaves.size() / 2];
  const int other = this->Leaves[this->Leaves.size() / 3];
  const double magenta[3] = { 1.0, 0.0, 1.0 };
  const auto show = [&](bool visible) {
    this->Boundary->GetSurfaceProperties(other)->Set("Visibility", visible);
    this->Boundary->Update();
    this->Draw();
  };
  this->Stage("hide a block", [&] { show(false); });
  this->Shoot("hidden");
  this->Stage("show a block", [&] { show(true); });
  this->Stage("recolor a block", [&] {
    zylPropertyCollection* settings = this->Boundary->GetSurfaceProperties(one);
    settings->Set("ColorMode", 0);
    settings->Set("Color", magenta, 3);
    this->Boundary->Update();
    this->Draw();
  });
  this->Shoot("recolored");
  this->Stage("recolor it again", [&] {
    this->Boundary->GetSurfaceProperties(one)->Set("Color", 1u, 0.5);
    this->Boundary->Update();
    this->Draw();
  });
  this->Stage("frame, one block recolored", [&] { this->Draw(); });
  this->Stage("hide a block of many colors", [&] { show(false); });
  this->Stage("color it as the others", [&] {
    this->Boundary->GetSurfaceProperties(one)->Set("ColorMode", 1);
    this->Boundary->GetSurfaceProperties(one)->DeepCopy(
      this->Boundary->GetSurfaceProperties(this->Leaves.front()));
    this->Boundary->Update();
    this->Draw();
  });
  this->Shoot("last");
}

//--------------------------------------------------------------------------------------------------
void Driver::Unchanged()
{
  this->Boundary->Update();
  for (int i = 0; i < 5; ++i)
  {
    this->Stage("Update, nothing changed", [&] { this->Boundary->Update(); });
  }
  this->Stage("view Update, nothing changed", [&] { this->View->Update(); });
  this->Stage("dataset Update, nothing changed", [&] { this->Data->Update(); });
}

//--------------------------------------------------------------------------------------------------
// What a change costs in Update(), and what it adds to the frame after it.
void Driver::Updates()
{
  const int one = this->Leaves[this->Leaves.size() / 2];
  zylPropertyCollection* settings = this->Boundary->GetSurfaceProperties(one);
  const auto measure = [this](const std::string& what) {
    this->Stage(("Update, " + what).c_str(), [this] { this->Boundary->Update(); });
    this->Stage(("frame, " + what).c_str(), [this] { this->Draw(); });
  };
  settings->Set("Ambient", 0.1); // a group of its own
  this->Boundary->Update();
  this->Draw();
  for (int i = 0; i < 5; ++i)
  {
    this->Boundary->GetSurfaceProperties(this->Leaves.front())->Set("Visibility", i % 2 == 1);
    measure("one block hidden or shown");
    settings->Set("Ambient", 0.2 + 0.1 * i);
    measure("one block lit otherwise");
    measure("no block changed");
  }
}

//--------------------------------------------------------------------------------------------------
void Driver::Hash()
{
  vtkTypeUInt64 all = 0; // printed, so that nothing is left out
  this->Stage("hash of all settings", [&] {
    for (const Getter kind : Kinds)
    {
      for (const int id : this->Leaves)
      {
        all += (this->Boundary->*kind)(id)->GetHashValue();
      }
    }
  });
  std::fprintf(stderr, "hash %llx\n", static_cast<unsigned long long>(all));
}
} // namespace

// What is sent to a server passes here: the executable's symbol stands before the C library's.
extern "C" __attribute__((visibility("default"))) ssize_t send(
  int socket, const void* data, size_t length, int flags)
{
  using Function = ssize_t (*)(int, const void*, size_t, int);
  static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "send"));
  BytesSent += length;
  return next(socket, data, length, flags);
}

int main(int argc, char** argv)
{
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_WARNING);
  Driver driver(argc, argv);
  if (!driver.HasFile())
  {
    std::fprintf(stderr, "usage: %s FILE [--connect URL] [--count] [--picture PREFIX]\n", argv[0]);
    return 2;
  }
  if (!driver.Start() || !driver.Load())
  {
    std::fprintf(stderr, "the data could not be loaded\n");
    return 1;
  }
  driver.Frames();
  driver.Unchanged();
  driver.Changes();
  driver.Updates();
  driver.Hash();
  std::fflush(stdout);
  _exit(0); // without the time that taking everything down costs, as the baselines do
}
