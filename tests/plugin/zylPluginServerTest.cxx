// The reader, the filter and the block information on a server that has loaded the module.
#include "vtkZYLBlockInformation.h"

#include "zylCore.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylPluginTestData.h"
#include "zylProxyBuilder.h"
#include "zylTestLog.h"
#include "zylTimeController.h"

#include <csignal>
#include <cstdlib>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkPVDataInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

namespace {
// A port that was free a moment ago.
int FreePort()
{
  const int handle = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  bind(handle, reinterpret_cast<sockaddr*>(&address), size);
  getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size);
  close(handle);
  return ntohs(address.sin_port);
}

// Only what programs need: a client that has started MPI leaves variables behind that keep mpirun
// from starting, and a display that is gone stops a server.
void CleanEnvironment()
{
  std::vector<std::pair<const char*, std::string>> kept;
  for (const char* name : { "PATH", "HOME", "TMPDIR", "LANG" })
  {
    if (const char* value = getenv(name))
    {
      kept.emplace_back(name, value);
    }
  }
  clearenv();
  for (const auto& variable : kept)
  {
    setenv(variable.first, variable.second.c_str(), 1);
  }
}

// A server on the loopback that ends with its client, or at the latest with this object.
class Server
{
public:
  Server(int ranks, const char* pluginDirectory)
    : Port(FreePort())
    , Process(fork())
  {
    if (this->Process == 0)
    {
      setpgid(0, 0);
      CleanEnvironment();
      setenv("PV_PLUGIN_PATH", pluginDirectory, 1);
      setenv("OMPI_ALLOW_RUN_AS_ROOT", "1", 1);
      setenv("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1", 1);
      std::string command = "exec ";
      if (ranks > 1)
      {
        command += std::string(ZYL_MPIRUN) +
          " --oversubscribe --mca btl self,vader,tcp --mca btl_tcp_if_include lo"
          " --mca oob_tcp_if_include lo -np " +
          std::to_string(ranks) + " ";
      }
      command += std::string(ZYL_PVSERVER) + " --server-port=" + std::to_string(this->Port);
      execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
  }

  ~Server()
  {
    for (int i = 0; i < 100; ++i)
    {
      if (waitpid(this->Process, nullptr, WNOHANG) != 0)
      {
        return;
      }
      usleep(50000);
    }
    kill(-this->Process, SIGKILL);
    waitpid(this->Process, nullptr, 0);
  }

  std::string Url() const { return "cs://127.0.0.1:" + std::to_string(this->Port); }

private:
  int Port;
  pid_t Process;
};

class PluginServer : public testing::TestWithParam<int>
{
protected:
  void TearDown() override { zylCore::GetInstance()->Disconnect(); }
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(PluginServer, ReadsSplitsAndDescribes)
{
  if (!*ZYL_PVSERVER || (GetParam() > 1 && !*ZYL_MPIRUN))
  {
    GTEST_SKIP() << "no server here";
  }
  zylTemporaryDirectory directory;
  zylWriteSmallPlotfile(directory / "plt", 3.0);
  zylWriteSurface(directory / "s.vtm", 4.0);
  zylWriteFile(directory / "case.json",
    R"({"timesteps":[{"time":0},{"time":1,"surface":{"fileType":"VTM","fileName":"s.vtm"},)"
    R"("volume":{"fileType":"AMReXGrid","fileName":"plt"}}]})");

  zylCore* core = zylCore::GetInstance();
  core->Disconnect();
  Server server(GetParam(), ZYL_PLUGIN_DIRECTORY);
  core->Connect(server.Url().c_str(), 60);
  ASSERT_NE(core->GetSession(), nullptr);
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
  if (!*ZYL_PVSERVER)
  {
    GTEST_SKIP() << "no server here";
  }
  zylCore* core = zylCore::GetInstance();
  core->Disconnect();
  Server server(1, "/nonexistent");
  zylTestLog log;
  core->Connect(server.Url().c_str(), 60);
  ASSERT_NE(core->GetSession(), nullptr);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "Could not load required plugin VTKExtensions"))
    << log.Dump();
  {
    vtkNew<zylDataSet> data;
    EXPECT_FALSE(data->LoadFromFile({ "case.json" }, "sources", "ZYLVolumeSurfaceReader"));
  }
  EXPECT_NE(zylProxyBuilder(core->GetSessionProxyManager(), "sources", "SphereSource").Make(),
    nullptr); // and the session goes on
  core->Disconnect();
}
