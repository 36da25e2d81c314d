/// @file zylTestServer.h
/// A pvserver on the loopback interface that ends with its client, and at the latest with this
/// object.
///
///     zylTestServer server(2, ZYL_PLUGIN_DIRECTORY); // two ranks under mpirun
///     zylCore::GetInstance()->Connect(server.GetUrl().c_str(), 60);
#ifndef zylTestServer_h
#define zylTestServer_h

#include <atomic>
#include <memory>
#include <string>

#include <sys/types.h>

class zylTestServer
{
public:
  /// Whether pvserver (and mpirun, for more than one rank) is installed.
  static bool IsAvailable(int ranks);

  /// Starts one and connects to it; null where there is none. A test whose connection fails fails.
  static std::unique_ptr<zylTestServer> Connect(int ranks, const char* pluginDirectory);

  /// Starts the server. It loads the library's plugin from `pluginDirectory` unless that is empty.
  zylTestServer(int ranks, const char* pluginDirectory);
  ~zylTestServer();
  zylTestServer(const zylTestServer&) = delete;
  zylTestServer& operator=(const zylTestServer&) = delete;

  /// For zylCore::Connect().
  std::string GetUrl() const;

  int GetPort() const { return this->Port; }

  /// End all its processes at once, as if the machine had gone. From any thread, any number of
  /// times.
  void Kill();

  /// Let all its processes stand still: it hangs. Kill() ends them all the same.
  void Stop();

private:
  int Port;
  std::atomic<pid_t> Process; // -1 when it was killed
};

#endif
