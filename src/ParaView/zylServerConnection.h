/**
 * @class zylServerConnection
 * @brief The messages between this process and a server, for a server that may die or hang.
 *
 * The toolkit's communicator waits for an answer as long as it takes, and leaves what it could not
 * receive as it was in memory. This one gives up when nothing has come or gone for a while, asks
 * the system to notice a machine that has gone, answers with zeros once the connection is lost, and
 * then neither sends nor waits any more.
 *
 * A thread of its own looks at the connection while a call waits. Private to the library.
 */
#ifndef zylServerConnection_h
#define zylServerConnection_h

#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include <vtkSocketCommunicator.h>

class vtkMultiProcessController;

class zylServerConnection : public vtkSocketCommunicator
{
public:
  static zylServerConnection* New();
  vtkTypeMacro(zylServerConnection, vtkSocketCommunicator);

  /// Take over the socket of `controller` (borrowed), which talks through this object from then on.
  /// False when it has none.
  bool TakeOver(vtkMultiProcessController* controller);

  /// Whether the other side is still there, as far as is known without asking it.
  bool IsAlive();

  /// End it: whoever waits gets nothing.
  void Break();

  /// Seconds without a byte in either direction after which a waiting call gives up; 0 for never.
  static void SetTimeLimit(int seconds);
  static int GetTimeLimit();

  int SendVoidArray(
    const void* data, vtkIdType length, int type, int remoteHandle, int tag) override;
  int ReceiveVoidArray(void* data, vtkIdType length, int type, int remoteHandle, int tag) override;
  void CloseConnection() override;

protected:
  zylServerConnection() = default;
  ~zylServerConnection() override;

private:
  zylServerConnection(const zylServerConnection&) = delete;
  void operator=(const zylServerConnection&) = delete;

  class WaitScope;
  void Watch();
  void StopWatching();

  bool Lost = false;
  int Descriptor = -1;

  std::thread Watcher;
  std::mutex Mutex; // guards what follows
  std::condition_variable Changed;
  int Waiting = 0; // calls under way, one within the other
  bool Ending = false;
  long WaitingSince = 0; // milliseconds of the steady clock
};

/// Watches over ParaView's first words with a server, which it waits for before anybody else gets
/// hold of the connection: while it lives, new connections to the ports named in `url` are ended
/// when nothing has come over them for `seconds`.
class zylConnectWatch
{
public:
  zylConnectWatch(const char* url, int seconds);
  ~zylConnectWatch();
  zylConnectWatch(const zylConnectWatch&) = delete;
  zylConnectWatch& operator=(const zylConnectWatch&) = delete;

private:
  void Watch(long limit);

  std::set<int> Ports;
  std::set<int> Known; // connections that were there before
  std::thread Watcher;
  std::mutex Mutex;
  std::condition_variable Changed;
  bool Ending = false;
};

#endif
