// A server that dies or hangs, and a network that goes, at any moment of a host's work: the host
// goes on.
#include "zylBoundaryRepresentation.h"
#include "zylHostTest.h"
#include "zylSelection.h"
#include "zylTest.h"
#include "zylTestMemory.h"
#include "zylTestRelay.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <vtkImageData.h>
#include <vtkSMSession.h>

namespace {
const double Steps[] = { 1.0, 3.0 };
constexpr char BuiltIn[] = "builtin:";
// What forty sessions that ended badly may leave behind: allocated (5 kB each were seen), and
// resident, which grows by the holes between.
constexpr long AllocatedGrowth = 1024;
constexpr long ResidentGrowth = 8192;

zylCore* Core()
{
  return zylCore::GetInstance();
}

const std::string& File()
{
  static const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), Steps, 2);
  return file;
}

// A host's working day, cut short by whatever happens to the server; `found` is called when the
// readers were asked for the first time who can read the file.
void Work(const std::function<void()>& found)
{
  vtkNew<zylDataSet> data;
  data->LoadFromFile({ File() });
  found();
  vtkNew<zylView> view;
  view->SetSourceFBO(0);
  view->SetWindowSize(32, 32);
  vtkNew<zylBoundaryRepresentation> boundary;
  boundary->SetDataSet(data);
  const int block = static_cast<int>(data->GetBlockIDs().back());
  const auto set = [&boundary, block](const char* name, auto value) {
    if (zylPropertyCollection* settings = boundary->GetSurfaceProperties(block))
    {
      settings->Set(name, value);
    }
  };
  set("Visibility", true);
  set("ColorMode", 1);
  set("ColorVariableName", "pressure");
  view->AddRepresentation(boundary);
  view->ResetCamera();
  view->Render();
  zylTimeController::GetInstance()->GoToNextTimeStep();
  view->Render();
  set("Transparency", 0.5);
  boundary->SetNumberOfClips(1);
  boundary->GetClipProperties(0)->Set("ClipMode", 2);
  boundary->Update();
  view->Render();
  data->GetCellTypes();
  boundary->GetBlockSurfaces({ block });
  zylCore::Fetch(data->GetOutput(), nullptr);
  double bounds[6];
  boundary->GetBounds(bounds);
  view->CaptureImage();
  double point[3];
  view->PickPointOnSurface(16, 16, point);
  view->HighlightSelection(view->SelectCells(8, 8, 24, 24));
  view->Render();
  data->LoadFromFile({ File() });
}

class zylServerFailure : public zylHostTest
{
protected:
  void TearDown() override
  {
    Core()->Connect(BuiltIn, 0);
    zylHostTest::TearDown();
  }

  static bool IsConnected()
  {
    return Core()->GetSession() && Core()->GetSession()->GetProcessRoles() == 0x10u;
  }
};
} // namespace

//--------------------------------------------------------------------------------------------------
// The server is killed, or the network goes, after the first, second ... fiftieth part of all that
// a host says to it, in the middle of whatever that is.
TEST_F(zylServerFailure, OutlivesTheServerAtAnyMoment)
{
  if (!zylTestServer::IsAvailable(1))
  {
    GTEST_SKIP() << "no server here";
  }
  constexpr int Moments = 50;
  // A server and a half ahead of us, so that nobody waits for its start.
  const auto start = [] { return std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY); };
  auto next = start();
  long connecting = 0;
  long found = 0;
  long all = 0;
  long resident = 0;
  long allocated = 0;
  // The first day teaches the process things it does not ask for again; the second is the measure.
  for (int i = -2; i < Moments; ++i)
  {
    const auto server = std::move(next);
    next = i + 1 < Moments ? start() : nullptr;
    zylTestRelay relay(server->GetPort());
    if (i >= 0)
    {
      // One moment in ten while connecting, where there is much to read and little to say; one in
      // five while a reader is looked for and the file is read.
      const long bytes = i % 10 == 0 ? connecting * (i + 5) / Moments
        : i % 5 == 3                 ? connecting + (found - connecting) * i / Moments
                                     : found + (all - found) * i / Moments;
      i % 2 == 0 ? relay.FailAfter(bytes, [&server] { server->Kill(); }) : relay.FailAfter(bytes);
    }
    Core()->Connect(relay.GetUrl().c_str(), 60);
    if (i < 0)
    {
      ASSERT_NE(Core()->GetSession(), nullptr);
      connecting = relay.GetBytes();
    }
    if (IsConnected())
    {
      Work([&] { found = i < 0 ? relay.GetBytes() : found; });
    }
    all = i < 0 ? relay.GetBytes() : all;
    EXPECT_EQ(relay.HasFailed(), i >= 0) << "moment " << i;
    server->Kill();
    if (i % 5 == 0)
    {
      Core()->Connect(BuiltIn, 0);
      vtkNew<zylDataSet> data;
      ASSERT_TRUE(data->LoadFromFile({ File() })) << "after moment " << i;
    }
    Core()->Disconnect();
    if (i == Moments / 5)
    {
      resident = zylTestMemory::GetResident();
      allocated = zylTestMemory::GetAllocated();
    }
  }
  EXPECT_LT(zylTestMemory::GetAllocated() - allocated, AllocatedGrowth);
  EXPECT_LT(zylTestMemory::GetResident() - resident, ResidentGrowth);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylServerFailure, GivesUpAServerThatHangs)
{
  if (!zylTestServer::IsAvailable(1))
  {
    GTEST_SKIP() << "no server here";
  }
  zylTestServer server(1, "");
  Core()->Connect(server.GetUrl().c_str(), 60);
  ASSERT_TRUE(IsConnected());
  const int before = zylCore::GetServerTimeLimit();
  zylCore::SetServerTimeLimit(1);
  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(data->LoadFromFile({ File() }));
    zylTestLog log;
    server.Stop();
    EXPECT_EQ(zylCore::Fetch(data->GetOutput(), nullptr), nullptr);
    EXPECT_TRUE(log.HasError("The server has not answered for 1 seconds"));
    EXPECT_TRUE(log.HasError("The connection to the server is lost"));
  }
  server.Kill();

  // One that accepts and says nothing.
  zylTestServer hanging(1, "");
  zylTestRelay relay(hanging.GetPort());
  relay.FailAfter(0, [&hanging] { hanging.Stop(); });
  zylTestLog log;
  Core()->Connect(relay.GetUrl().c_str(), 1);
  EXPECT_TRUE(log.HasError("Could not connect to '"));
  hanging.Kill();
  zylCore::SetServerTimeLimit(before);
}
