// Everything a host does in a built-in session, with a server that is another process.
#include "zylArrayInformation.h"
#include "zylBoundaryRepresentation.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylHostTest.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <vtkDataSet.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMSession.h>

namespace {
struct Configuration
{
  const char* Name;
  int Ranks;
  const char* Plugins;
};

class zylRemote
  : public zylHostTest
  , public testing::WithParamInterface<Configuration>
{
protected:
  void SetUp() override
  {
    if (!zylTestServer::IsAvailable(GetParam().Ranks))
    {
      GTEST_SKIP() << "no server here";
    }
    zylHostTest::SetUp();
    if (!this->Host)
    {
      return;
    }
    this->Server = std::make_unique<zylTestServer>(GetParam().Ranks, GetParam().Plugins);
    zylCore::GetInstance()->Connect(this->Server->GetUrl().c_str(), 60);
    ASSERT_NE(zylCore::GetInstance()->GetSession(), nullptr);
    EXPECT_EQ(zylCore::GetInstance()->GetSession()->GetProcessRoles(), 0x10u);
  }
  void TearDown() override
  {
    this->View = nullptr;
    zylCore::GetInstance()->Disconnect();
    this->Server = nullptr;
    zylHostTest::TearDown();
  }

  void MakeView()
  {
    this->View = vtkSmartPointer<zylView>::New();
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(300, 300);
  }

  void Draw()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [this] { this->View->Render(); });
  }

  std::unique_ptr<zylTestServer> Server;
  vtkSmartPointer<zylView> View;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylRemote, LoadsDrawsAndFetches)
{
  const double steps[] = { 1.0, 3.0 };
  const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 2);
  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(data->LoadFromFile({ file }));
    EXPECT_EQ(data->GetTimestepValues(), std::vector<double>(steps, steps + 2));
    EXPECT_EQ(data->GetBlockIDs().size(), 3u + (data->GetBlockIDs().size() > 3 ? 1 : 0));
    EXPECT_EQ(data->GetNumberOfCells(), 16);
    EXPECT_EQ(data->GetPointArrayNames(), std::vector<std::string>({ "pressure", "velocity" }));
    double range[2];
    data->GetPointArrayInformation(0)->GetComponentRange(0, range);
    EXPECT_EQ(range[0], 1.0);
    EXPECT_EQ(range[1], 3.0);
    zylTimeController::GetInstance()->GoToTime(3.0);
    data->GetPointArrayInformation(0)->GetComponentRange(0, range);
    EXPECT_EQ(range[0], 3.0);

    zylTestLog log;
    EXPECT_FALSE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(1)));
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR,
      "Creating an zylDataSet from a VTK object not supported in client/server mode."));

    this->MakeView();
    vtkNew<zylBoundaryRepresentation> boundary;
    boundary->SetDataSet(data);
    for (const auto& name : data->GetBlockNameToIDsMap())
    {
      for (const unsigned int id : name.second)
      {
        zylPropertyCollection* surface = boundary->GetSurfaceProperties(int(id));
        surface->Set("Visibility", true);
        surface->Set("ColorMode", 1);
        surface->Set("ColorVariableName", "pressure");
      }
    }
    this->View->AddRepresentation(boundary);
    this->View->SetViewDir(1, false);
    this->Draw();
    EXPECT_FALSE(this->Host->PixelIs(150, 150, 0, 0, 255));
    EXPECT_TRUE(this->Host->PixelIs(5, 5, 0, 0, 255));

    boundary->Hide();
    boundary->Update();
    this->Draw();
    EXPECT_TRUE(this->Host->PixelIs(150, 150, 0, 0, 255));
    boundary->Show();
    boundary->Update();

    auto surfaces = boundary->GetBlockSurfaces({ 1, 2 });
    ASSERT_NE(surfaces, nullptr);
    this->View->RemoveRepresentation(boundary);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylRemote, SurvivesTheDeathOfTheServer)
{
  const std::string file =
    zylTestData::Write(zylTestData::MakeRow(2), zylTestData::MakeFolder() + "/row.vtm");
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->LoadFromFile({ file }));
  this->MakeView();
  vtkNew<zylBoundaryRepresentation> boundary;
  boundary->SetDataSet(data);
  boundary->GetSurfaceProperties(1)->Set("Visibility", true);
  this->View->AddRepresentation(boundary);
  this->Draw();

  this->Server->Kill();
  boundary->GetSurfaceProperties(2)->Set("Visibility", true);
  boundary->Update();
  data->GetProperties()->Set("FrozenTime", 1.0);
  data->Update();
  this->Draw(); // whatever it shows
  zylTimeController::GetInstance()->GoToTime(0.5);
  zylCore::GetInstance()->Disconnect();
  boundary->Update();
  data->Update();
  this->Draw();
}

INSTANTIATE_TEST_SUITE_P(Servers, zylRemote,
  testing::Values(Configuration{ "OneRank", 1, ZYL_PLUGIN_DIRECTORY },
    Configuration{ "TwoRanks", 2, ZYL_PLUGIN_DIRECTORY }, Configuration{ "WithoutPlugin", 1, "" }),
  [](const auto& info) { return info.param.Name; });
