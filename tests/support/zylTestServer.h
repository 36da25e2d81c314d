/// @file zylTestServer.h
/// A pvserver on the loopback interface that ends with its client, and at the latest with this
/// object.
///
///     zylTestServer server(2, ZYL_PLUGIN_DIRECTORY); // two ranks under mpirun
///     zylCore::GetInstance()->Connect(server.GetUrl().c_str(), 60);
#ifndef zylTestServer_h
#define zylTestServer_h

#include <string>

#include <sys/types.h>

class zylTestServer
{
public:
  /// Whether pvserver (and mpirun, for more than one rank) is installed.
  static bool IsAvailable(int ranks);

  /// Starts the server. It loads the library's plugin from `pluginDirectory` unless that is empty.
  zylTestServer(int ranks, const char* pluginDirectory);
  ~zylTestServer();
  zylTestServer(const zylTestServer&) = delete;
  zylTestServer& operator=(const zylTestServer&) = delete;

  /// For zylCore::Connect().
  std::string GetUrl() const;

  /// End all its processes at once, as if the machine had gone.
  void Kill();

private:
  int Port;
  pid_t Process;
};

#endif
