// What every public call does when its session is gone: no crash, a line that says why, a failed
// result. The table names all calls that need a session; a new class adds its rows.
#include "zylArrayInformation.h"
#include "zylBoundaryRepresentation.h"
#include "zylClipPipelineHelper.h"
#include "zylContourPipeline.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylHostTest.h"
#include "zylMeshLinePipeline.h"
#include "zylMultiBlockTree.h"
#include "zylMultiClip.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

#include <functional>

#include <vtkCollection.h>
#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSourceProxy.h>

namespace {
const double Steps[] = { 1.0, 3.0 };
constexpr char BuiltIn[] = "builtin:";
constexpr char NoServer[] = "cs://127.0.0.1:1";

zylCore* Core()
{
  return zylCore::GetInstance();
}

// A file that every session can read.
const std::string& File()
{
  static const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), Steps, 2);
  return file;
}

template <class Pipeline>
vtkSmartPointer<zylPipeline> NewPipeline()
{
  return vtkSmartPointer<Pipeline>::New();
}

// One of everything, in use.
struct Objects
{
  vtkSmartPointer<zylDataSet> Data = vtkSmartPointer<zylDataSet>::New();
  vtkSmartPointer<zylView> View = vtkSmartPointer<zylView>::New();
  vtkSmartPointer<zylBoundaryRepresentation> Boundary =
    vtkSmartPointer<zylBoundaryRepresentation>::New();
  vtkSmartPointer<zylClipPipelineHelper> Clip = vtkSmartPointer<zylClipPipelineHelper>::New();
  vtkSmartPointer<zylMultiClip> Clips = vtkSmartPointer<zylMultiClip>::New();
  std::vector<vtkSmartPointer<zylPipeline>> Pipelines = { NewPipeline<zylSurfacePipeline>(),
    NewPipeline<zylContourPipeline>(), NewPipeline<zylFeatureLinePipeline>(),
    NewPipeline<zylMeshLinePipeline>(), NewPipeline<zylVectorGlyphPipeline>(),
    NewPipeline<zylHighlightPipeline>() };

  Objects()
  {
    this->Data->LoadFromFile({ File() });
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(300, 300);
    this->Boundary->SetDataSet(this->Data);
    this->Show();
    this->View->AddRepresentation(this->Boundary);
    vtkSMSourceProxy* source = this->Data->GetOutput();
    this->Clip->SetInput(source);
    this->Clip->GetProperties()->Set("ClipMode", 2);
    this->Clips->SetInput(source);
    this->Clips->SetNumberOfClips(1);
    this->Clips->GetProperties(0)->Set("ClipMode", 5);
    if (source)
    {
      this->Clip->GetOutput();
      this->Clip->Update();
      this->Clips->Update();
    }
    for (zylPipeline* pipeline : this->Pipelines)
    {
      zylPropertyCollection* settings = pipeline->GetProperties();
      settings->Set("Visibility", true);
      settings->GetProperty("BlockVisibility")->SetNumberOfElements(2);
      settings->GetProperty("BlockVisibility")->SetElement(0, 2);
      settings->GetProperty("BlockVisibility")->SetElement(1, 1);
      pipeline->SetDataSource(source);
      pipeline->SetBlockTree(this->Data->GetMultiBlockTree());
      pipeline->Update(this->View);
    }
    this->View->Render();
  }
  ~Objects()
  {
    for (zylPipeline* pipeline : this->Pipelines)
    {
      pipeline->FreeResources(this->View);
    }
  }

  // The first block, however many levels lie above it.
  zylPropertyCollection* Surface()
  {
    const auto ids = this->Data->GetBlockIDs();
    return this->Boundary->GetSurfaceProperties(static_cast<int>(ids.back()));
  }
  void Show()
  {
    if (zylPropertyCollection* settings = this->Surface())
    {
      settings->Set("Visibility", true);
      settings->Set("ColorMode", 1);
      settings->Set("ColorVariableName", "pressure");
    }
  }
};

enum Kind
{
  Uses,  ///< something made in the session: fails once that has ended or its server is gone
  Makes, ///< something new: fails without a session
  Speaks ///< as Uses, but of nothing to return, and silent while there is nothing
};

struct Call
{
  const char* Name;
  Kind What;
  std::function<bool(Objects&)> Fails; ///< runs the call; whether its result says that it failed
};

double Box[6];

bool Inverted()
{
  return Box[0] > Box[1];
}

const std::vector<Call>& Calls()
{
  const auto each = [](auto call) {
    return [call](Objects& o) {
      bool failed = true;
      for (zylPipeline* pipeline : o.Pipelines)
      {
        failed = call(o, pipeline) && failed;
      }
      return failed;
    };
  };
  static const std::vector<Call> calls = {
    { "zylCore::Fetch", Uses,
      [](Objects& o) { return !zylCore::Fetch(o.Data->GetOutput(), nullptr); } },
    { "zylCore::GetArrayAssociation", Uses,
      [](Objects& o) {
        return zylCore::GetArrayAssociation("pressure", o.Data->GetOutput()) == -1;
      } },
    { "zylCore::LoadRemotePlugin", Makes,
      [](Objects&) { return !zylCore::LoadRemotePlugin("nowhere.so"); } },
    { "zylCore::GetSupportedFileTypes", Makes,
      [](Objects&) { return zylCore::GetSupportedFileTypes().empty(); } },
    { "zylDataSet::LoadFromFile", Makes,
      [](Objects&) { return !vtkNew<zylDataSet>()->LoadFromFile({ File() }); } },
    { "zylDataSet::LoadFromFile, reader named", Makes,
      [](Objects&) {
        return !vtkNew<zylDataSet>()->LoadFromFile({ File() }, "sources", "PVDReader");
      } },
    { "zylDataSet::InitializeFromVTKDataSet", Makes,
      [](Objects&) {
        return !vtkNew<zylDataSet>()->InitializeFromVTKDataSet(zylTestData::MakeRow(1));
      } },
    { "zylDataSet::Update", Speaks,
      [](Objects& o) {
        o.Data->GetProperties()->Set("FreezeTime", !o.Data->GetProperties()->GetBool("FreezeTime"));
        o.Data->Update();
        return true;
      } },
    { "zylDataSet::GetTimestepValues", Uses,
      [](Objects& o) { return o.Data->GetTimestepValues().empty(); } },
    { "zylDataSet::GetCellType", Uses, [](Objects& o) { return o.Data->GetCellType(1) == -1; } },
    { "zylDataSet::GetCellTypes", Uses, [](Objects& o) { return o.Data->GetCellTypes().empty(); } },
    { "zylBoundaryRepresentation::Update", Speaks,
      [](Objects& o) {
        if (zylPropertyCollection* settings = o.Surface())
        {
          settings->Set("Transparency", 0.5);
        }
        o.Boundary->Update();
        return true;
      } },
    { "zylBoundaryRepresentation::GetBounds", Uses,
      [](Objects& o) { return !o.Boundary->GetBounds(Box) && Inverted(); } },
    { "zylBoundaryRepresentation::GetBlockSurfaces", Uses,
      [](Objects& o) { return !o.Boundary->GetBlockSurfaces({ 1 }); } },
    { "zylBoundaryRepresentation::GetSurfaceColorVariableInformation", Uses,
      [](Objects& o) {
        return !o.Boundary->GetSurfaceColorVariableInformation(int(o.Data->GetBlockIDs().back()));
      } },
    { "zylPipeline::Update", Speaks, each([](Objects& o, zylPipeline* pipeline) {
       pipeline->Update(o.View);
       return true;
     }) },
    { "zylPipeline::GetBounds", Uses, each([](Objects&, zylPipeline* pipeline) {
       pipeline->GetBounds(Box);
       return Inverted();
     }) },
    { "zylPipeline::GetVisibleBounds", Uses, each([](Objects&, zylPipeline* pipeline) {
       pipeline->GetVisibleBounds(Box);
       return Inverted();
     }) },
    { "zylPipeline::GetColorVariableInformation", Uses, each([](Objects&, zylPipeline* pipeline) {
       return !pipeline->GetColorVariableInformation();
     }) },
    { "zylClipPipelineHelper::Update", Speaks,
      [](Objects& o) {
        o.Clip->Update();
        return true;
      } },
    { "zylClipPipelineHelper::GetOutput", Uses, [](Objects& o) { return !o.Clip->GetOutput(); } },
    { "zylMultiClip::Update", Speaks,
      [](Objects& o) {
        o.Clips->SetNumberOfClips(2);
        o.Clips->Update();
        return true;
      } },
    { "zylView::Update", Speaks,
      [](Objects& o) {
        o.View->Update();
        return true;
      } },
    { "zylView::Render", Speaks,
      [](Objects& o) {
        o.View->Render();
        return true;
      } },
    { "zylView::ResetCamera", Speaks,
      [](Objects& o) {
        o.View->ResetCamera();
        o.View->ResetCamera(0, 1, 0, 1, 0, 1);
        return true;
      } },
    { "zylView::SetViewDir", Speaks,
      [](Objects& o) {
        o.View->SetViewDir(2, true);
        return true;
      } },
    { "zylView::ResetCameraToNormal", Speaks,
      [](Objects& o) {
        o.View->ResetCameraToNormal(0, 0, 0, 1, 0, 0);
        return true;
      } },
    { "zylView::SetWindowSize", Speaks,
      [](Objects& o) {
        o.View->SetWindowSize(200, 200);
        return true;
      } },
    { "zylView::SetOrientationAxis", Speaks,
      [](Objects& o) {
        o.View->SetOrientationAxis(true);
        return true;
      } },
    { "zylView::CaptureImage", Uses, [](Objects& o) { return !o.View->CaptureImage(); } },
    { "zylView::SaveScreenshot", Uses,
      [](Objects& o) {
        return !o.View->SaveScreenshot((zylTestData::MakeFolder() + "/picture.png").c_str());
      } },
    { "zylView::GetBounds", Uses, [](Objects& o) { return !o.View->GetBounds(Box); } },
  };
  return calls;
}

// Calls that are answered from this process, or that change what is kept here, and those of others
// that need a session of their own: they need not fail, and must not crash.
void CallTheRest(Objects& o)
{
  zylCore::PrintObjects();
  zylCore::PrintPipeline(o.Data->GetOutput());
  zylCore::GetAvailableColorMapNames();
  o.Data->GetFileNames();
  o.Data->GetBlockCentroids();
  o.Data->GetDataGroupingString();
  o.Data->GetPointArrayInformation(0);
  o.Boundary->Highlight({ 1 }, 1);
  o.Boundary->Update();
  o.Boundary->UnHighlight({ 1 });
  o.Boundary->ClearHighlights();
  o.Boundary->SetHighlightTransparency(0.5);
  o.Boundary->Hide();
  o.Boundary->Show();
  o.Boundary->IsVisible();
  o.Boundary->GetPVRepresentations();
  o.Boundary->HasRepresentation(o.Pipelines[0]->GetRepresentation());
  o.Boundary->SetNumberOfClips(1);
  o.Boundary->GetClipProperties(0)->Set("ClipMode", 3);
  o.Boundary->Update();
  o.Boundary->FreeResources();
  o.Boundary->Update();
  o.Boundary->SetDataSet(nullptr);
  o.Boundary->SetDataSet(o.Data);
  o.View->SetBackground(0, 0, 1);
  o.View->SetViewport(0, 0, 50, 50);
  o.View->SetParallelProjection(true);
  o.View->ResetCameraClippingRange();
  o.View->Pitch(1);
  o.View->Yaw(1);
  o.View->SetZoom(1.1);
  const double identity[16] = { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1 };
  o.View->SetCameraMatrices(identity, nullptr, identity);
  o.View->SetPolygonalOffset(1, 1);
  o.View->SetLineOffset(1, 1);
  o.View->SetPointOffset(1);
  o.View->PreRenderSetup();
  o.View->PostRenderCleanup();
  o.View->PreSelectSetup();
  o.View->PostSelectCleanup();
  o.View->RemoveRepresentation(o.Boundary);
  o.View->AddRepresentation(o.Boundary);
  o.Clip->SetInput(nullptr);
  o.Clip->SetInput(o.Data->GetOutput());
  o.Clips->SetInput(o.Data->GetOutput());
  o.Clips->GetOutput();
  for (zylPipeline* pipeline : o.Pipelines)
  {
    pipeline->FreeResources(o.View);
    pipeline->Update(o.View);
    pipeline->SetDataSource(nullptr);
    pipeline->Update(o.View);
    pipeline->SetDataSource(o.Data->GetOutput());
  }
  zylTimeController* time = zylTimeController::GetInstance();
  time->GoToFirstTimeStep();
  time->GoToNextTimeStep();
  time->GoToPreviousTimeStep();
  time->GoToLastTimeStep();
  time->GoToTime(time->GetActiveTime() + 1.0);
  time->GetTimestepValues();
  time->Update();
  time->UpdateTimeInformation();
  time->UseDataTimeSteps();
}

enum Situation
{
  NoSession,
  Ended,
  Another,
  Killed
};

struct Scene
{
  const char* Name;
  Situation What;
  bool OnServer; ///< where the objects are made
};

class zylSession : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    Core()->Connect(BuiltIn, 0);
  }
  void TearDown() override
  {
    Core()->Connect(BuiltIn, 0);
    zylHostTest::TearDown();
  }

  bool ConnectToServer()
  {
    if (!zylTestServer::IsAvailable(1))
    {
      return false;
    }
    this->Servers.push_back(std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY));
    Core()->Connect(this->Servers.back()->GetUrl().c_str(), 60);
    return Core()->GetSession() && Core()->GetSession()->GetProcessRoles() == 0x10u;
  }

  std::vector<std::unique_ptr<zylTestServer>> Servers;
};

class zylSessionCalls
  : public zylSession
  , public testing::WithParamInterface<Scene>
{
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylSessionCalls, FailWithAWord)
{
  if (!this->Host)
  {
    return;
  }
  const Situation situation = GetParam().What;
  if (GetParam().OnServer && !this->ConnectToServer())
  {
    GTEST_SKIP() << "no server here";
  }
  if (situation == NoSession)
  {
    Core()->Disconnect();
  }
  {
    Objects objects;
    if (situation != NoSession)
    {
      ASSERT_EQ(objects.Data->GetNumberOfCells(), 16);
      EXPECT_TRUE(objects.View->GetBounds(Box));
    }
    switch (situation)
    {
      case NoSession:
        break;
      case Ended:
        Core()->Disconnect();
        break;
      case Another:
        Core()->Connect(BuiltIn, 0);
        break;
      case Killed:
        this->Servers.back()->Kill();
        break;
    }
    for (const Call& call : Calls())
    {
      SCOPED_TRACE(call.Name);
      zylTestLog log(vtkLogger::VERBOSITY_WARNING);
      const bool failed = call.Fails(objects);
      if (call.What == Makes && situation == Another)
      {
        continue;
      }
      EXPECT_TRUE(failed);
      if (situation != NoSession || call.What == Makes)
      {
        EXPECT_TRUE(
          log.Has(vtkLogger::VERBOSITY_ERROR, "") || log.Has(vtkLogger::VERBOSITY_WARNING, ""));
      }
    }
    // What is kept in this process is still there.
    EXPECT_EQ(objects.Data->GetNumberOfCells(), situation == NoSession ? 0 : 16);
    EXPECT_EQ(objects.Data->GetFileNames().empty(), situation == NoSession);
    CallTheRest(objects);
  }
  // And life goes on.
  Core()->Connect(BuiltIn, 0);
  Objects next;
  EXPECT_EQ(next.Data->GetNumberOfCells(), 16);
  EXPECT_TRUE(next.View->GetBounds(Box));
  EXPECT_NE(zylCore::Fetch(next.Data->GetOutput(), nullptr), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Situations, zylSessionCalls,
  testing::Values(Scene{ "NoSession", NoSession, false }, Scene{ "Ended", Ended, false },
    Scene{ "EndedOnServer", Ended, true }, Scene{ "Another", Another, false },
    Scene{ "AnotherAfterServer", Another, true }, Scene{ "ServerKilled", Killed, true }),
  [](const auto& info) { return info.param.Name; });

//--------------------------------------------------------------------------------------------------
TEST_F(zylSession, AFailedConnectKeepsTheBuiltInOne)
{
  if (!this->Host)
  {
    return;
  }
  Objects objects;
  vtkSMSession* before = Core()->GetSession();
  for (const char* url : { NoServer, "nonsense", "", static_cast<const char*>(nullptr) })
  {
    zylTestLog log;
    Core()->Connect(url, 0);
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "Could not connect to '")) << url;
    EXPECT_EQ(Core()->GetSession(), before);
  }
  zylTimeController::GetInstance()->GoToTime(3.0);
  EXPECT_EQ(objects.Data->GetTimestepValues().size(), 2u);
  EXPECT_NE(zylCore::Fetch(objects.Data->GetOutput(), nullptr), nullptr);
  EXPECT_NE(objects.View->CaptureImage(), nullptr);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSession, ServersFollowEachOther)
{
  if (!this->Host)
  {
    return;
  }
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->LoadFromFile({ File() }));
  if (!this->ConnectToServer())
  {
    GTEST_SKIP() << "no server here";
  }
  // The same dataset, loaded again in the new session; what was there before is no longer asked
  // for.
  EXPECT_TRUE(data->LoadFromFile({ File() }));
  EXPECT_NE(zylCore::Fetch(data->GetOutput(), nullptr), nullptr);
  ASSERT_TRUE(this->ConnectToServer());
  EXPECT_EQ(zylCore::Fetch(data->GetOutput(), nullptr), nullptr);
  EXPECT_TRUE(data->LoadFromFile({ File() }));
  EXPECT_EQ(data->GetTimestepValues().size(), 2u);

  // From one server to another the first session ends first.
  Core()->Connect(NoServer, 0);
  EXPECT_EQ(Core()->GetSession(), nullptr);
  EXPECT_FALSE(data->LoadFromFile({ File() }));
  Core()->Connect(BuiltIn, 0);
  ASSERT_NE(Core()->GetSession(), nullptr);
  EXPECT_TRUE(data->LoadFromFile({ File() }));
  EXPECT_NE(zylCore::Fetch(data->GetOutput(), nullptr), nullptr);
}
