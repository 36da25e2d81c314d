#include "zylTestServer.h"

#include "zylCore.h"

#include <csignal>
#include <cstdlib>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <vtkPVSession.h>
#include <vtkSMSession.h>

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
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylTestServer::IsAvailable(int ranks)
{
  return *ZYL_PVSERVER && (ranks < 2 || *ZYL_MPIRUN);
}

//--------------------------------------------------------------------------------------------------
zylTestServer::zylTestServer(int ranks, const char* pluginDirectory)
  : Port(FreePort())
  , Process(fork())
{
  if (this->Process != 0)
  {
    return;
  }
  setpgid(0, 0);
  CleanEnvironment();
  setenv("PV_PLUGIN_PATH", pluginDirectory, 1);
  setenv("OMPI_ALLOW_RUN_AS_ROOT", "1", 1);
  setenv("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1", 1);
  std::string command = "exec ";
  if (ranks > 1)
  {
    command += std::string(ZYL_MPIRUN) + " --oversubscribe " ZYL_MPIRUN_LOOPBACK " -np " +
      std::to_string(ranks) + " ";
  }
  command += std::string(ZYL_PVSERVER) + " --server-port=" + std::to_string(this->Port);
  execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
  _exit(127);
}

//--------------------------------------------------------------------------------------------------
zylTestServer::~zylTestServer()
{
  for (int i = 0; i < 100; ++i)
  {
    if (this->Process <= 0 || waitpid(this->Process, nullptr, WNOHANG) != 0)
    {
      return;
    }
    usleep(50000);
  }
  this->Kill();
}

//--------------------------------------------------------------------------------------------------
std::string zylTestServer::GetUrl() const
{
  return "cs://127.0.0.1:" + std::to_string(this->Port);
}

//--------------------------------------------------------------------------------------------------
void zylTestServer::Stop()
{
  if (this->Process > 0)
  {
    kill(-this->Process, SIGSTOP);
  }
}

//--------------------------------------------------------------------------------------------------
void zylTestServer::Kill()
{
  const pid_t process = this->Process.exchange(-1);
  if (process > 0)
  {
    kill(-process, SIGKILL);
    waitpid(process, nullptr, 0);
  }
}

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylTestServer> zylTestServer::Connect(int ranks, const char* pluginDirectory)
{
  if (!IsAvailable(ranks))
  {
    return nullptr;
  }
  auto server = std::make_unique<zylTestServer>(ranks, pluginDirectory);
  zylCore::GetInstance()->Connect(server->GetUrl().c_str(), 60);
  vtkSMSession* session = zylCore::GetInstance()->GetSession();
  const bool connected = session && session->GetProcessRoles() == vtkPVSession::CLIENT;
  EXPECT_TRUE(connected);
  return connected ? std::move(server) : nullptr;
}
