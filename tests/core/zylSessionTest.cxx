// What every public call does when its session is gone: no crash, a line that says why, a failed
// result. The table names all calls that need a session; a new class adds its rows.
#include "zylAnnotation.h"
#include "zylArrayInformation.h"
#include "zylBoundaryRepresentation.h"
#include "zylClipPipelineHelper.h"
#include "zylContourPipeline.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylMeshLinePipeline.h"
#include "zylMultiBlockTree.h"
#include "zylMultiClip.h"
#include "zylPropertyCollection.h"
#include "zylSelection.h"
#include "zylSessionScene.h"
#include "zylSurfacePipeline.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTimeController.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

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
  vtkSmartPointer<zylAnnotation> Annotation = vtkSmartPointer<zylAnnotation>::New();
  vtkSmartPointer<zylClipPipelineHelper> Clip = vtkSmartPointer<zylClipPipelineHelper>::New();
  vtkSmartPointer<zylMultiClip> Clips = vtkSmartPointer<zylMultiClip>::New();
  vtkSmartPointer<zylSelection> Selected;
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
    this->Annotation->SetDataSet(this->Data);
    this->Annotation->GetProperties()->Set("Expression", "time_value");
    this->Annotation->GetProperties()->Set("Visibility", true);
    this->View->AddRepresentation(this->Annotation);
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
    this->Selected = zylSelection::CreateSelectionForBlock(this->Boundary, 2);
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

using Call = zylSessionCall<Objects>;
using Kind = zylCallKind;

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
  const auto says = [](auto call) {
    return [call](Objects& o) {
      call(o);
      return true;
    };
  };
  static const std::vector<Call> calls = {
    { "zylCore::Fetch", Kind::Uses,
      [](Objects& o) { return !zylCore::Fetch(o.Data->GetOutput(), nullptr); } },
    { "zylCore::GetArrayAssociation", Kind::Uses,
      [](Objects& o) {
        return zylCore::GetArrayAssociation("pressure", o.Data->GetOutput()) == -1;
      } },
    { "zylCore::LoadRemotePlugin", Kind::Makes,
      [](Objects&) { return !zylCore::LoadRemotePlugin("nowhere.so"); } },
    { "zylCore::GetSupportedFileTypes", Kind::Makes,
      [](Objects&) { return zylCore::GetSupportedFileTypes().empty(); } },
    { "zylDataSet::LoadFromFile", Kind::Makes,
      [](Objects&) { return !vtkNew<zylDataSet>()->LoadFromFile({ File() }); } },
    { "zylDataSet::LoadFromFile, reader named", Kind::Makes,
      [](Objects&) {
        return !vtkNew<zylDataSet>()->LoadFromFile({ File() }, "sources", "PVDReader");
      } },
    { "zylDataSet::InitializeFromVTKDataSet", Kind::Makes,
      [](Objects&) {
        return !vtkNew<zylDataSet>()->InitializeFromVTKDataSet(zylTestData::MakeRow(1));
      } },
    { "zylDataSet::Update", Kind::Speaks, says([](Objects& o) {
       o.Data->GetProperties()->Set("FreezeTime", !o.Data->GetProperties()->GetBool("FreezeTime"));
       o.Data->Update();
     }) },
    { "zylDataSet::GetTimestepValues", Kind::Uses,
      [](Objects& o) { return o.Data->GetTimestepValues().empty(); } },
    { "zylDataSet::GetCellType", Kind::Uses,
      [](Objects& o) { return o.Data->GetCellType(1) == -1; } },
    { "zylDataSet::GetCellTypes", Kind::Uses,
      [](Objects& o) { return o.Data->GetCellTypes().empty(); } },
    { "zylBoundaryRepresentation::Update", Kind::Speaks, says([](Objects& o) {
       if (zylPropertyCollection* settings = o.Surface())
       {
         settings->Set("Transparency", 0.5);
       }
       o.Boundary->Update();
     }) },
    { "zylBoundaryRepresentation::GetBounds", Kind::Uses,
      [](Objects& o) { return !o.Boundary->GetBounds(Box) && Inverted(); } },
    { "zylBoundaryRepresentation::GetBlockSurfaces", Kind::Uses,
      [](Objects& o) { return !o.Boundary->GetBlockSurfaces({ 1 }); } },
    { "zylBoundaryRepresentation::GetSurfaceColorVariableInformation", Kind::Uses,
      [](Objects& o) {
        return !o.Boundary->GetSurfaceColorVariableInformation(int(o.Data->GetBlockIDs().back()));
      } },
    { "zylAnnotation::Update", Kind::Speaks, says([](Objects& o) {
       o.Annotation->GetProperties()->Set("Bold", true);
       o.Annotation->Update();
     }) },
    { "zylAnnotation::GetScreenBounds", Kind::Speaks,
      [](Objects& o) {
        int bounds[4] = { 1, 2, 3, 4 };
        o.Annotation->GetScreenBounds(bounds);
        return bounds[0] == 1 && bounds[3] == 4;
      } },
    { "zylPipeline::Update", Kind::Speaks, each([](Objects& o, zylPipeline* pipeline) {
       pipeline->Update(o.View);
       return true;
     }) },
    { "zylPipeline::GetBounds", Kind::Uses, each([](Objects&, zylPipeline* pipeline) {
       pipeline->GetBounds(Box);
       return Inverted();
     }) },
    { "zylPipeline::GetVisibleBounds", Kind::Uses, each([](Objects&, zylPipeline* pipeline) {
       pipeline->GetVisibleBounds(Box);
       return Inverted();
     }) },
    { "zylPipeline::GetColorVariableInformation", Kind::Uses,
      each(
        [](Objects&, zylPipeline* pipeline) { return !pipeline->GetColorVariableInformation(); }) },
    { "zylClipPipelineHelper::Update", Kind::Speaks, says([](Objects& o) { o.Clip->Update(); }) },
    { "zylClipPipelineHelper::GetOutput", Kind::Uses,
      [](Objects& o) { return !o.Clip->GetOutput(); } },
    { "zylMultiClip::Update", Kind::Speaks, says([](Objects& o) {
       o.Clips->SetNumberOfClips(2);
       o.Clips->Update();
     }) },
    { "zylView::Update", Kind::Speaks, says([](Objects& o) { o.View->Update(); }) },
    { "zylView::Render", Kind::Speaks, says([](Objects& o) { o.View->Render(); }) },
    { "zylView::ResetCamera", Kind::Speaks, says([](Objects& o) {
       o.View->ResetCamera();
       o.View->ResetCamera(0, 1, 0, 1, 0, 1);
     }) },
    { "zylView::SetViewDir", Kind::Speaks, says([](Objects& o) { o.View->SetViewDir(2, true); }) },
    { "zylView::ResetCameraToNormal", Kind::Speaks,
      says([](Objects& o) { o.View->ResetCameraToNormal(0, 0, 0, 1, 0, 0); }) },
    { "zylView::SetWindowSize", Kind::Speaks,
      says([](Objects& o) { o.View->SetWindowSize(200, 200); }) },
    { "zylView::SetOrientationAxis", Kind::Speaks,
      says([](Objects& o) { o.View->SetOrientationAxis(true); }) },
    { "zylView::CaptureImage", Kind::Uses, [](Objects& o) { return !o.View->CaptureImage(); } },
    { "zylView::SaveScreenshot", Kind::Uses,
      [](Objects& o) {
        return !o.View->SaveScreenshot((zylTestData::MakeFolder() + "/picture.png").c_str());
      } },
    { "zylView::SelectBlocks", Kind::Uses,
      [](Objects& o) {
        return o.View->SelectBlocks(0, 0, 300, 300)->GetRepresentations(o.View).empty();
      } },
    { "zylView::SelectCells", Kind::Uses,
      [](Objects& o) {
        return o.View->SelectCells(0, 0, 300, 300)->GetRepresentations(o.View).empty();
      } },
    { "zylView::SelectPoints", Kind::Uses,
      [](Objects& o) {
        return o.View->SelectPoints(0, 0, 300, 300)->GetRepresentations(o.View).empty();
      } },
    { "zylView::PickPointOnSurface", Kind::Uses,
      [](Objects& o) { return !o.View->PickPointOnSurface(150, 150, Box); } },
    { "zylView::HighlightSelection", Kind::Speaks, says([](Objects& o) {
       o.View->HighlightSelection(o.Selected);
       o.View->HighlightSelection(o.Boundary, o.Selected);
     }) },
    { "zylView::ClearHighlight", Kind::Speaks, says([](Objects& o) { o.View->ClearHighlight(); }) },
    { "zylSelection::GetBlocks", Kind::Uses,
      [](Objects& o) { return o.Selected->GetBlocks(o.Boundary).empty(); } },
    { "zylSelection::GetCells", Kind::Uses,
      [](Objects& o) { return o.Selected->GetCells(o.Boundary).empty(); } },
    { "zylSelection::CreateSelectionForBlock", Kind::Uses,
      [](Objects& o) {
        return zylSelection::CreateSelectionForBlock(o.Boundary, 2)->GetBlocks(o.Boundary).empty();
      } },
    { "zylView::GetBounds", Kind::Uses, [](Objects& o) { return !o.View->GetBounds(Box); } },
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
  o.Selected->GetRepresentations(o.View);
  zylBoundaryRepresentation::Highlight(o.Selected, o.View, 1);
  zylBoundaryRepresentation::UnHighlight(o.Selected, o.View);
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
  o.Annotation->Hide();
  o.Annotation->Show();
  o.Annotation->IsVisible();
  o.Annotation->GetBounds(Box);
  o.Annotation->FreeResources();
  o.Annotation->Update();
  o.Annotation->SetDataSet(nullptr);
  o.Annotation->SetDataSet(o.Data);
  o.Annotation->Update();
  o.View->SetBackground(0, 0, 1);
  o.View->SetViewport(0, 0, 50, 50);
  o.View->SetParallelProjection(true);
  o.View->ResetCameraClippingRange();
  o.View->Pitch(1);
  o.View->Yaw(1);
  o.View->SetZoom(1.1);
  o.View->Azimuth(1.1);
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

// Names the tests.
class zylSession : public zylSessionTest
{
};

class zylSessionCalls
  : public zylSession
  , public testing::WithParamInterface<zylSessionScene>
{
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylSessionCalls, FailWithAWord)
{
  if (!this->Begin(GetParam()))
  {
    return;
  }
  const zylSituation situation = GetParam().What;
  {
    Objects objects;
    if (situation != zylSituation::NoSession)
    {
      ASSERT_EQ(objects.Data->GetNumberOfCells(), 16);
      EXPECT_TRUE(objects.View->GetBounds(Box));
    }
    this->Bring(situation);
    zylExpectFailures(Calls(), objects, situation);
    // What is kept in this process is still there.
    EXPECT_EQ(objects.Data->GetNumberOfCells(), situation == zylSituation::NoSession ? 0 : 16);
    EXPECT_EQ(objects.Data->GetFileNames().empty(), situation == zylSituation::NoSession);
    CallTheRest(objects);
  }
  // And life goes on.
  Core()->Connect(BuiltIn, 0);
  Objects next;
  EXPECT_EQ(next.Data->GetNumberOfCells(), 16);
  EXPECT_TRUE(next.View->GetBounds(Box));
  EXPECT_NE(zylCore::Fetch(next.Data->GetOutput(), nullptr), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Situations, zylSessionCalls, zylSessionScenes(), zylSessionSceneName);

//--------------------------------------------------------------------------------------------------
TEST_F(zylSession, AFailedConnectKeepsTheBuiltInOne)
{
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
