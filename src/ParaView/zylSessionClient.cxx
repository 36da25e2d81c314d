#include "ParaView/zylSessionClient.h"

#include "ParaView/zylServerConnection.h"

#include <string>
#include <vector>

#include <vtkClientServerStream.h>
#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkMultiProcessController.h>
#include <vtkMultiProcessStream.h>
#include <vtkObjectFactory.h>
#include <vtkPVSessionServer.h>
#include <vtkSMMessage.h>

vtkStandardNewMacro(zylSessionClient);

//--------------------------------------------------------------------------------------------------
zylSessionClient::zylSessionClient() = default;

//--------------------------------------------------------------------------------------------------
zylSessionClient::~zylSessionClient() = default;

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::Connect(const char* url, int timeout)
{
  const zylConnectWatch watch(url, timeout > 0 ? timeout : zylServerConnection::GetTimeLimit());
  return this->Superclass::Connect(url, timeout) && this->IsConnected();
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::Initialize()
{
  // The connection stands, and all that follows goes over it.
  this->DataServer = this->Adopt(this->DataServerController);
  this->RenderServer = this->Adopt(this->RenderServerController);
  this->Superclass::Initialize();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylServerConnection> zylSessionClient::Adopt(vtkMultiProcessController* controller)
{
  auto connection = vtkSmartPointer<zylServerConnection>::New();
  if (!connection->TakeOver(controller))
  {
    return nullptr;
  }
  connection->AddObserver(vtkCommand::WrongTagEvent, this, &zylSessionClient::OnWrongTagEvent);
  connection->AddObserver(vtkCommand::ErrorEvent, this, &zylSessionClient::OnConnectionLost);
  return connection;
}

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::IsConnected()
{
  if (this->Lost || !this->DataServer)
  {
    return !this->Lost; // nothing to look at while connecting
  }
  if (!this->DataServer->IsAlive() || (this->RenderServer && !this->RenderServer->IsAlive()))
  {
    this->Lost = true;
    vtkLogF(ERROR, "The connection to the server is lost; end the session with Disconnect()");
  }
  return !this->Lost;
}

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::OnWrongTagEvent(vtkObject* caller, unsigned long, void* data)
{
  auto* connection = zylServerConnection::SafeDownCast(caller);
  const int tag = *static_cast<const int*>(data);
  const bool forLater =
    tag == vtkMultiProcessController::RMI_TAG || tag == vtkMultiProcessController::RMI_ARG_TAG;
  if (connection && connection->IsAlive())
  {
    // ParaView ends the process when something else comes, such as the last words of a server.
    forLater ? connection->BufferCurrentMessage() : connection->Break();
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::PushState(vtkSMMessage* message)
{
  if (this->IsConnected())
  {
    this->Superclass::PushState(message);
  }
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::PullState(vtkSMMessage* message)
{
  if (!this->IsConnected())
  {
    return;
  }
  const vtkTypeUInt32 location = this->GetRealLocation(message->location());
  vtkMultiProcessController* server = nullptr;
  if ((location & vtkPVSession::CLIENT) == 0)
  {
    server = (location & (vtkPVSession::DATA_SERVER | vtkPVSession::DATA_SERVER_ROOT)) != 0
      ? this->DataServerController
      : this->RenderServerController;
  }
  if (!server)
  {
    this->Superclass::PullState(message);
    return;
  }
  // As ParaView's, which reads the answer whether there is one or not.
  message->set_location(location);
  vtkMultiProcessStream question;
  question << static_cast<int>(vtkPVSessionServer::PULL) << message->SerializeAsString();
  std::vector<unsigned char> raw;
  question.GetRawData(raw);
  server->TriggerRMIOnAllChildren(
    raw.data(), static_cast<int>(raw.size()), vtkPVSessionServer::CLIENT_SERVER_MESSAGE_RMI);
  vtkMultiProcessStream answer;
  if (server->Receive(answer, 1, vtkPVSessionServer::REPLY_PULL) && this->IsConnected())
  {
    std::string text;
    answer >> text;
    message->ParseFromString(text);
  }
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::ExecuteStream(
  vtkTypeUInt32 location, const vtkClientServerStream& stream, bool ignoreErrors)
{
  if (this->IsConnected())
  {
    this->Superclass::ExecuteStream(location, stream, ignoreErrors);
  }
}

//--------------------------------------------------------------------------------------------------
const vtkClientServerStream& zylSessionClient::GetLastResult(vtkTypeUInt32 location)
{
  static const vtkClientServerStream nothing;
  return this->IsConnected() ? this->Superclass::GetLastResult(location) : nothing;
}

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::GatherInformation(
  vtkTypeUInt32 location, vtkPVInformation* information, vtkTypeUInt32 globalId)
{
  return this->IsConnected() &&
    this->Superclass::GatherInformation(location, information, globalId);
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::UnRegisterSIObject(vtkSMMessage* message)
{
  if (this->IsConnected())
  {
    this->Superclass::UnRegisterSIObject(message);
  }
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::RegisterSIObject(vtkSMMessage* message)
{
  if (this->IsConnected())
  {
    this->Superclass::RegisterSIObject(message);
  }
}
