/**
 * @class zylSessionClient
 * @brief A session on a server that outlives the server.
 *
 * ParaView's own session goes on talking into a broken connection and takes the process down when
 * it reads an answer that never came, and waits for ever for a server that hangs. Here the messages
 * go through zylServerConnection, and every one first looks at the connection: once it is gone one
 * error is logged, nothing is sent any more, and questions are answered with nothing. The session
 * is then ended with zylCore::Disconnect(). Private to the library.
 */
#ifndef zylSessionClient_h
#define zylSessionClient_h

#include <vtkSMSessionClient.h>
#include <vtkSmartPointer.h>

class zylServerConnection;

class zylSessionClient : public vtkSMSessionClient
{
public:
  static zylSessionClient* New();
  vtkTypeMacro(zylSessionClient, vtkSMSessionClient);

  /// Connect to the server at `url`, trying for at most `timeout` seconds to reach it.
  bool Connect(const char* url, int timeout) override;

  /// Whether the server is there. The first time that it is not an error is logged.
  bool IsConnected();

  void PullState(vtkSMMessage* message) override;
  bool GatherInformation(
    vtkTypeUInt32 location, vtkPVInformation* information, vtkTypeUInt32 globalId) override;

protected:
  zylSessionClient();
  ~zylSessionClient() override;

  void Initialize() override;
  bool OnWrongTagEvent(vtkObject* caller, unsigned long event, void* data) override;

private:
  zylSessionClient(const zylSessionClient&) = delete;
  void operator=(const zylSessionClient&) = delete;

  vtkSmartPointer<zylServerConnection> Adopt(vtkMultiProcessController* controller);

  /// Zero for every number that the server was to tell and never has: ParaView reads it unasked.
  void AnswerQuestions();

  vtkSmartPointer<zylServerConnection> DataServer;
  vtkSmartPointer<zylServerConnection> RenderServer; // null when it is the same
  bool Lost = false;
};

#endif
