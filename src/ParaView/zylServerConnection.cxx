#include "ParaView/zylServerConnection.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <regex>
#include <vector>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <vtkAbstractArray.h>
#include <vtkClientSocket.h>
#include <vtkLogger.h>
#include <vtkMultiProcessStream.h>
#include <vtkObjectFactory.h>
#include <vtkPVSessionServer.h>
#include <vtkSocketController.h>

vtkStandardNewMacro(zylServerConnection);

namespace {
std::atomic<int> TimeLimit{ 300 };

constexpr std::chrono::milliseconds LookEvery(200);

long Now()
{
  return std::chrono::duration_cast<std::chrono::milliseconds>(
    std::chrono::steady_clock::now().time_since_epoch())
    .count();
}

// A machine that has gone answers no probes, one whose server is busy does.
void ProbeTheMachine(int descriptor)
{
  const auto set = [descriptor](int level, int option, int value) {
    setsockopt(descriptor, level, option, &value, sizeof(value));
  };
  set(SOL_SOCKET, SO_KEEPALIVE, 1);
  set(IPPROTO_TCP, TCP_KEEPIDLE, 10);
  set(IPPROTO_TCP, TCP_KEEPINTVL, 5);
  set(IPPROTO_TCP, TCP_KEEPCNT, 4);
  set(IPPROTO_TCP, TCP_USER_TIMEOUT, 30000);
}

// The state of an object, which ParaView reads whether it has come or not: an empty one, in two
// messages, length and content. Zero for anything else.
int AnswerPull(void* data, vtkIdType length, int type, int tag)
{
  if (tag != vtkPVSessionServer::REPLY_PULL)
  {
    return 0;
  }
  vtkMultiProcessStream answer;
  answer << std::string();
  std::vector<unsigned char> raw;
  answer.GetRawData(raw);
  if (length == 1 && vtkAbstractArray::GetDataTypeSize(type) == sizeof(unsigned int))
  {
    const auto size = static_cast<unsigned int>(raw.size());
    std::memcpy(data, &size, sizeof(size));
  }
  else
  {
    std::memcpy(data, raw.data(), std::min(raw.size(), static_cast<std::size_t>(length)));
  }
  return 1;
}

tcp_info Look(int descriptor)
{
  tcp_info info = {};
  socklen_t size = sizeof(info);
  getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size);
  return info;
}

// Milliseconds since a byte came or went.
long Silence(int descriptor)
{
  const tcp_info info = Look(descriptor);
  return std::min(info.tcpi_last_data_recv, info.tcpi_last_data_sent);
}

// The connections of this process to one of these ports of another.
std::set<int> FindConnections(const std::set<int>& ports)
{
  std::set<int> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error))
  {
    const int descriptor = std::atoi(entry.path().filename().c_str());
    sockaddr_in peer = {};
    socklen_t size = sizeof(peer);
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
      peer.sin_family == AF_INET && ports.count(ntohs(peer.sin_port)) > 0)
    {
      found.insert(descriptor);
    }
  }
  return found;
}
} // namespace

//--------------------------------------------------------------------------------------------------
// A call that waits for the other side.
class zylServerConnection::WaitScope
{
public:
  explicit WaitScope(zylServerConnection* connection)
    : Connection(connection)
  {
    const std::lock_guard<std::mutex> lock(connection->Mutex);
    if (connection->Waiting++ == 0)
    {
      connection->WaitingSince = Now();
    }
  }
  ~WaitScope()
  {
    const std::lock_guard<std::mutex> lock(this->Connection->Mutex);
    --this->Connection->Waiting;
  }
  WaitScope(const WaitScope&) = delete;
  WaitScope& operator=(const WaitScope&) = delete;

private:
  zylServerConnection* Connection;
};

//--------------------------------------------------------------------------------------------------
zylServerConnection::~zylServerConnection()
{
  this->StopWatching();
}

//--------------------------------------------------------------------------------------------------
bool zylServerConnection::TakeOver(vtkMultiProcessController* controller)
{
  auto* sockets = vtkSocketController::SafeDownCast(controller);
  auto* before =
    sockets ? vtkSocketCommunicator::SafeDownCast(sockets->GetCommunicator()) : nullptr;
  vtkClientSocket* socket = before ? before->GetSocket() : nullptr;
  if (!socket || !socket->GetConnected())
  {
    return false;
  }
  this->SetSocket(socket);
  this->PerformHandshake = before->GetPerformHandshake();
  this->IsServer = before->GetIsServer();
  // What the handshake has found out.
  this->SwapBytesInReceivedData = before->GetSwapBytesInReceivedData();
  this->RemoteHas64BitIds = before->*(&zylServerConnection::RemoteHas64BitIds);
  sockets->SetCommunicator(this);

  this->Descriptor = socket->GetSocketDescriptor();
  ProbeTheMachine(this->Descriptor);
  this->Watcher = std::thread(&zylServerConnection::Watch, this);
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylServerConnection::IsAlive()
{
  if (this->Lost || this->Descriptor < 0)
  {
    return false;
  }
  // The end of the stream stands in front of us once the other side has gone.
  char byte;
  const auto count = recv(this->Descriptor, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  if (count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
  {
    this->Break();
  }
  return !this->Lost;
}

//--------------------------------------------------------------------------------------------------
void zylServerConnection::Break()
{
  this->Lost = true;
  if (this->Descriptor >= 0)
  {
    shutdown(this->Descriptor, SHUT_RDWR);
  }
}

//--------------------------------------------------------------------------------------------------
void zylServerConnection::SetTimeLimit(int seconds)
{
  TimeLimit = std::max(seconds, 0);
}

//--------------------------------------------------------------------------------------------------
int zylServerConnection::GetTimeLimit()
{
  return TimeLimit;
}

//--------------------------------------------------------------------------------------------------
int zylServerConnection::SendVoidArray(
  const void* data, vtkIdType length, int type, int remoteHandle, int tag)
{
  if (this->Lost)
  {
    return 0;
  }
  const WaitScope waiting(this);
  const int sent = this->Superclass::SendVoidArray(data, length, type, remoteHandle, tag);
  if (!sent)
  {
    this->Break();
  }
  return sent;
}

//--------------------------------------------------------------------------------------------------
int zylServerConnection::ReceiveVoidArray(
  void* data, vtkIdType length, int type, int remoteHandle, int tag)
{
  int received = 0;
  if (!this->Lost)
  {
    const WaitScope waiting(this);
    received = this->Superclass::ReceiveVoidArray(data, length, type, remoteHandle, tag);
  }
  if (!received)
  {
    // Nobody upstream looks at the result: lengths and counts must not be what was in memory.
    this->Break();
    this->Count = 0;
    const int size = vtkAbstractArray::GetDataTypeSize(type);
    std::memset(data, 0, static_cast<std::size_t>(length) * static_cast<std::size_t>(size));
    received = AnswerPull(data, length, type, tag);
  }
  return received;
}

//--------------------------------------------------------------------------------------------------
void zylServerConnection::CloseConnection()
{
  this->StopWatching();
  this->Lost = true;
  this->Descriptor = -1;
  this->Superclass::CloseConnection();
}

//--------------------------------------------------------------------------------------------------
void zylServerConnection::Watch()
{
  std::unique_lock<std::mutex> lock(this->Mutex);
  while (!this->Changed.wait_for(lock, LookEvery, [this] { return this->Ending; }))
  {
    const long limit = 1000L * TimeLimit;
    if (limit > 0 && this->Waiting > 0 && Now() - this->WaitingSince > limit &&
      Silence(this->Descriptor) > limit)
    {
      vtkLogF(ERROR, "The server has not answered for %ld seconds", limit / 1000);
      shutdown(this->Descriptor, SHUT_RDWR);
      return;
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylServerConnection::StopWatching()
{
  {
    const std::lock_guard<std::mutex> lock(this->Mutex);
    this->Ending = true;
  }
  this->Changed.notify_all();
  if (this->Watcher.joinable())
  {
    this->Watcher.join();
  }
}

//--------------------------------------------------------------------------------------------------
zylConnectWatch::zylConnectWatch(const char* url, int seconds)
{
  const std::string text = url;
  static const std::regex number(":([0-9]+)");
  for (auto i = std::sregex_iterator(text.begin(), text.end(), number); i != std::sregex_iterator();
       ++i)
  {
    this->Ports.insert(std::atoi((*i)[1].str().c_str()));
  }
  this->Ports.insert({ 11111, 22221 }); // where nothing else is said
  this->Known = FindConnections(this->Ports);
  if (seconds > 0)
  {
    this->Watcher = std::thread(&zylConnectWatch::Watch, this, 1000L * seconds);
  }
}

//--------------------------------------------------------------------------------------------------
zylConnectWatch::~zylConnectWatch()
{
  {
    const std::lock_guard<std::mutex> lock(this->Mutex);
    this->Ending = true;
  }
  this->Changed.notify_all();
  if (this->Watcher.joinable())
  {
    this->Watcher.join();
  }
}

//--------------------------------------------------------------------------------------------------
void zylConnectWatch::Watch(long limit)
{
  std::unique_lock<std::mutex> lock(this->Mutex);
  while (!this->Changed.wait_for(lock, LookEvery, [this] { return this->Ending; }))
  {
    for (const int descriptor : FindConnections(this->Ports))
    {
      if (this->Known.count(descriptor) == 0 && Look(descriptor).tcpi_last_data_recv > limit)
      {
        vtkLogF(ERROR, "The server has not answered for %ld seconds", limit / 1000);
        shutdown(descriptor, SHUT_RDWR);
        this->Known.insert(descriptor);
      }
    }
  }
}
