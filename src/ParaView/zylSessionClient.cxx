#include "ParaView/zylSessionClient.h"

#include <cerrno>

#include <sys/socket.h>

#include <vtkClientServerStream.h>
#include <vtkClientSocket.h>
#include <vtkLogger.h>
#include <vtkMultiProcessController.h>
#include <vtkObjectFactory.h>
#include <vtkSocketCommunicator.h>

vtkStandardNewMacro(zylSessionClient);

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::IsConnected()
{
  if (this->Lost)
  {
    return false;
  }
  vtkMultiProcessController* controller = this->GetController(vtkPVSession::DATA_SERVER_ROOT);
  auto* communicator =
    controller ? vtkSocketCommunicator::SafeDownCast(controller->GetCommunicator()) : nullptr;
  vtkClientSocket* socket = communicator ? communicator->GetSocket() : nullptr;
  if (!socket || !socket->GetConnected())
  {
    // Nothing to look at, as while connecting.
    return true;
  }
  // The end of the stream stands in front of us once the other side has gone.
  char byte;
  const auto count = recv(socket->GetSocketDescriptor(), &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  this->Lost =
    count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
  if (this->Lost)
  {
    vtkLogF(ERROR, "The connection to the server is lost; end the session with Disconnect()");
  }
  return !this->Lost;
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
  if (this->IsConnected())
  {
    this->Superclass::PullState(message);
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
