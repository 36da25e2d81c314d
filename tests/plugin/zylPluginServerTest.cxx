// The reader, the filter and the block information on a server that has loaded the module.
#include "vtkZYLBlockInformation.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylMultiBlockTree.h"
#include "zylPluginTestData.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylTimeController.h"

#include <vtkPVDataInformation.h>
#include <vtkSMSessionProxyManager.h>

namespace {
class PluginServer : public testing::TestWithParam<int>
{
protected:
  void TearDown() override { zylCore::GetInstance()->Disconnect(); }
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(PluginServer, ReadsSplitsAndDescribes)
{
  zylCore* core = zylCore::GetInstance();
  const auto server = zylTestServer::Connect(GetParam(), ZYL_PLUGIN_DIRECTORY);
  if (!server)
  {
    GTEST_SKIP() << "no server here";
  }
  const std::filesystem::path directory = zylTestData::MakeFolder();
  zylWriteSmallPlotfile(directory / "plt", 3.0);
  zylWriteSurface(directory / "s.vtm", 4.0);
  zylTestData::WriteFile(directory / "case.json",
    R"({"timesteps":[{"time":0},{"time":1,"surface":{"fileType":"VTM","fileName":"s.vtm"},)"
    R"("volume":{"fileType":"AMReXGrid","fileName":"plt"}}]})");

  {
    vtkNew<zylDataSet> data;
    ASSERT_TRUE(
      data->LoadFromFile({ directory / "case.json" }, "sources", "ZYLVolumeSurfaceReader"));
    EXPECT_EQ(data->GetTimestepValues(), (std::vector<double>{ 0, 1 }));
    zylTimeController::GetInstance()->GoToTime(1.0);
    data->Update();

    vtkNew<vtkZYLBlockInformation> info;
    data->GetProxy()->UpdatePipeline(1.0);
    data->GetProxy()->GatherInformation(info);
    const auto& nodes = info->GetNodes(); // root, Surfaces, ball, Volumes, parts 0 and 1
    ASSERT_EQ(nodes.size(), 6u);
    EXPECT_EQ(nodes[1].Name, "Surfaces");
    EXPECT_EQ(nodes[1].NumberOfCells, 1); // once, however many ranks there are
    EXPECT_EQ(nodes[1].Bounds[1], 4.0);
    EXPECT_EQ(nodes[3].Name, "Volumes");
    EXPECT_EQ(nodes[3].NumberOfCells, zylSmallPlotfileCells);
    EXPECT_EQ(nodes[4].NumberOfCells + nodes[5].NumberOfCells, zylSmallPlotfileCells);
    EXPECT_EQ(nodes[5].Bounds[1], 1.0);
    ASSERT_EQ(nodes[5].CellArrays.size(), 3u);
    EXPECT_EQ(nodes[5].CellArrays[2].Name, "value");
    EXPECT_EQ(nodes[5].CellArrays[2].Ranges, (std::vector<double>{ 3, 3 }));

    EXPECT_EQ(data->GetNumberOfCells(), zylSmallPlotfileCells + 1);
    EXPECT_EQ(data->GetMultiBlockTree()->GetChild(1)->GetNumberOfChildren(), 2u);
    EXPECT_EQ(
      data->GetCellArrayNames(5), (std::vector<std::string>{ "level_mask", "part_id", "value" }));
  }
  auto* manager = core->GetSessionProxyManager();
  EXPECT_NE(manager->GetPrototypeProxy("filters", "AMRPartThreshold"), nullptr);
  core->Disconnect();
}

INSTANTIATE_TEST_SUITE_P(Ranks, PluginServer, testing::Values(1, 2),
  [](const auto& info) { return std::to_string(info.param); });

//--------------------------------------------------------------------------------------------------
TEST(PluginServerMissing, ServersWithoutThePluginAreReported)
{
  zylCore* core = zylCore::GetInstance();
  zylTestLog log;
  const auto server = zylTestServer::Connect(1, "");
  if (!server)
  {
    GTEST_SKIP() << "no server here";
  }
  EXPECT_TRUE(log.HasError("Could not load required plugin VTKExtensions"));
  {
    vtkNew<zylDataSet> data;
    EXPECT_FALSE(data->LoadFromFile({ "case.json" }, "sources", "ZYLVolumeSurfaceReader"));
  }
  EXPECT_NE(zylProxyBuilder(core->GetSessionProxyManager(), "sources", "SphereSource").Make(),
    nullptr); // and the session goes on
  core->Disconnect();
}
