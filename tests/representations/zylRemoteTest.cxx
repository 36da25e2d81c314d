// Everything a host does in a built-in session, with a server that is another process.
#include "zylBoundaryRepresentation.h"
#include "zylHostTest.h"
#include "zylMultiBlockTree.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <vtkDataSet.h>
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
    zylHostTest::SetUp();
    this->Server =
      this->Host ? zylTestServer::Connect(GetParam().Ranks, GetParam().Plugins) : nullptr;
    if (!this->Server)
    {
      GTEST_SKIP() << "no server here";
    }
  }
  void TearDown() override
  {
    this->View = nullptr;
    zylCore::GetInstance()->Disconnect();
    this->Server = nullptr;
    zylHostTest::TearDown();
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
    EXPECT_EQ(zylRange(data->GetPointArrayInformation(0)), (zylValues{ 1, 3 }));
    zylTimeController::GetInstance()->GoToTime(3.0);
    EXPECT_EQ(zylRange(data->GetPointArrayInformation(0))[0], 3.0);

    zylTestLog log;
    EXPECT_FALSE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(1)));
    EXPECT_TRUE(log.HasError(
      "Creating an zylDataSet from a VTK object not supported in client/server mode."));

    this->View = zylMakeView();
    vtkNew<zylBoundaryRepresentation> boundary;
    boundary->SetDataSet(data);
    for (const auto& name : data->GetBlockNameToIDsMap())
    {
      for (const unsigned int id : name.second)
      {
        zylSet(boundary->GetSurfaceProperties(int(id)), "Visibility", true, "ColorMode", 1,
          "ColorVariableName", "pressure");
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

INSTANTIATE_TEST_SUITE_P(Servers, zylRemote,
  testing::Values(Configuration{ "OneRank", 1, ZYL_PLUGIN_DIRECTORY },
    Configuration{ "TwoRanks", 2, ZYL_PLUGIN_DIRECTORY }, Configuration{ "WithoutPlugin", 1, "" }),
  [](const auto& info) { return info.param.Name; });
