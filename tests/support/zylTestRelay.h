/// @file zylTestRelay.h
/// Stands between a client and a server on the loopback interface and passes on what they say,
/// until one of them, or the network, fails at a chosen moment.
///
///     zylTestRelay relay(server.GetPort());
///     relay.FailAfter(10000, [&server] { server.Kill(); });
///     zylCore::GetInstance()->Connect(relay.GetUrl().c_str(), 60);
#ifndef zylTestRelay_h
#define zylTestRelay_h

#include <atomic>
#include <functional>
#include <string>
#include <thread>

class zylTestRelay
{
public:
  /// Listens at once; waits for the server at `port` when a client comes.
  explicit zylTestRelay(int port);
  ~zylTestRelay();
  zylTestRelay(const zylTestRelay&) = delete;
  zylTestRelay& operator=(const zylTestRelay&) = delete;

  /// For zylCore::Connect().
  std::string GetUrl() const;

  /// Once the client has sent this many bytes do `failure` (in the relay's thread), or without one
  /// drop the connection on both sides, in the middle of whatever is being said. Before a client
  /// comes.
  void FailAfter(long bytes, std::function<void()> failure = nullptr);

  /// Whether the moment has come.
  bool HasFailed() const { return this->Failed; }
  /// What the client has sent so far.
  long GetBytes() const { return this->Bytes; }

private:
  void Run();
  void Pass(int client, int server);

  int ServerPort;
  int Port;
  int Listener;
  long Limit = -1;
  std::function<void()> Failure;
  std::atomic<long> Bytes{ 0 };
  std::atomic<bool> Failed{ false };
  std::atomic<bool> Ending{ false };
  std::thread Thread;
};

#endif
