#include "zylTestRelay.h"

#include <algorithm>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
sockaddr_in Loopback(int port)
{
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

bool IsReadable(int handle, int milliseconds)
{
  pollfd one = { handle, POLLIN, 0 };
  return poll(&one, 1, milliseconds) > 0;
}

void SendAll(int handle, const char* data, long size)
{
  while (size > 0)
  {
    const long sent = send(handle, data, static_cast<std::size_t>(size), MSG_NOSIGNAL);
    if (sent <= 0)
    {
      return;
    }
    data += sent;
    size -= sent;
  }
}

void SendAtOnce(int handle)
{
  const int on = 1;
  setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylTestRelay::zylTestRelay(int port)
  : ServerPort(port)
  , Listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof(address);
  bind(this->Listener, reinterpret_cast<sockaddr*>(&address), size);
  listen(this->Listener, 1);
  getsockname(this->Listener, reinterpret_cast<sockaddr*>(&address), &size);
  this->Port = ntohs(address.sin_port);
  this->Thread = std::thread(&zylTestRelay::Run, this);
}

//--------------------------------------------------------------------------------------------------
zylTestRelay::~zylTestRelay()
{
  this->Ending = true;
  this->Thread.join();
  close(this->Listener);
}

//--------------------------------------------------------------------------------------------------
std::string zylTestRelay::GetUrl() const
{
  return "cs://127.0.0.1:" + std::to_string(this->Port);
}

//--------------------------------------------------------------------------------------------------
void zylTestRelay::FailAfter(long bytes, std::function<void()> failure)
{
  this->Limit = bytes;
  this->Failure = std::move(failure);
}

//--------------------------------------------------------------------------------------------------
void zylTestRelay::Run()
{
  while (!this->Ending && !IsReadable(this->Listener, 20))
  {
  }
  if (this->Ending)
  {
    return;
  }
  const int client = accept4(this->Listener, nullptr, nullptr, SOCK_CLOEXEC);
  const sockaddr_in address = Loopback(this->ServerPort);
  int server = -1;
  for (int i = 0; i < 3000 && !this->Ending; ++i)
  {
    server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
    {
      break;
    }
    close(server);
    server = -1;
    usleep(10000);
  }
  if (server >= 0)
  {
    SendAtOnce(client);
    SendAtOnce(server);
    this->Pass(client, server);
    close(server);
  }
  close(client);
}

//--------------------------------------------------------------------------------------------------
void zylTestRelay::Pass(int client, int server)
{
  static thread_local char buffer[1 << 16];
  pollfd both[2] = { { client, POLLIN, 0 }, { server, POLLIN, 0 } };
  while (!this->Ending)
  {
    poll(both, 2, 50);
    for (int i = 0; i < 2; ++i)
    {
      if (both[i].revents == 0)
      {
        continue;
      }
      const long count = recv(both[i].fd, buffer, sizeof(buffer), 0);
      if (count <= 0)
      {
        return;
      }
      long passed = count;
      if (i == 0)
      {
        const bool fails = this->Limit >= 0 && this->Bytes + count > this->Limit;
        passed = fails ? std::max(this->Limit - this->Bytes, 0L) : count;
        this->Bytes += count;
        SendAll(server, buffer, passed);
        this->Failed = this->Failed || fails;
        if (fails && !this->Failure)
        {
          return;
        }
        if (fails)
        {
          this->Failure();
          this->Limit = -1;
          SendAll(server, buffer + passed, count - passed);
        }
        continue;
      }
      SendAll(client, buffer, passed);
    }
  }
}
