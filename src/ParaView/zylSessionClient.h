/**
 * @class zylSessionClient
 * @brief A session on a server that outlives the server.
 *
 * ParaView's own session goes on talking into a broken connection and takes the process down when
 * it reads an answer that never came. Here every message first looks at the connection: once it is
 * gone one error is logged, nothing is sent any more, and questions are answered with nothing. The
 * session is then ended with zylCore::Disconnect(). Private to the library.
 */
#ifndef zylSessionClient_h
#define zylSessionClient_h

#include <vtkSMSessionClient.h>

class zylSessionClient : public vtkSMSessionClient
{
public:
  static zylSessionClient* New();
  vtkTypeMacro(zylSessionClient, vtkSMSessionClient);

  void PushState(vtkSMMessage* message) override;
  void PullState(vtkSMMessage* message) override;
  void ExecuteStream(vtkTypeUInt32 location, const vtkClientServerStream& stream,
    bool ignoreErrors = false) override;
  const vtkClientServerStream& GetLastResult(vtkTypeUInt32 location) override;
  bool GatherInformation(
    vtkTypeUInt32 location, vtkPVInformation* information, vtkTypeUInt32 globalId) override;

protected:
  zylSessionClient() = default;
  ~zylSessionClient() override = default;

  void UnRegisterSIObject(vtkSMMessage* message) override;
  void RegisterSIObject(vtkSMMessage* message) override;

private:
  zylSessionClient(const zylSessionClient&) = delete;
  void operator=(const zylSessionClient&) = delete;

  bool IsConnected();

  bool Lost = false;
};

#endif
