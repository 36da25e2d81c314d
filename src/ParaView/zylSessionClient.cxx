#include "ParaView/zylSessionClient.h"

#include "ParaView/zylServerConnection.h"

#include <vtkCollection.h>
#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkMultiProcessController.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkSMIntVectorProperty.h>
#include <vtkSMPropertyIterator.h>
#include <vtkSMProxy.h>

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
void zylSessionClient::PullState(vtkSMMessage* message)
{
  this->Superclass::PullState(message);
  if (!this->IsConnected())
  {
    this->AnswerQuestions();
  }
}

//--------------------------------------------------------------------------------------------------
void zylSessionClient::AnswerQuestions()
{
  vtkNew<vtkCollection> objects;
  this->GetAllRemoteObjects(objects);
  for (int i = 0; i < objects->GetNumberOfItems(); ++i)
  {
    auto* proxy = vtkSMProxy::SafeDownCast(objects->GetItemAsObject(i));
    if (!proxy)
    {
      continue;
    }
    vtkSmartPointer<vtkSMPropertyIterator> properties;
    properties.TakeReference(proxy->NewPropertyIterator());
    for (properties->Begin(); !properties->IsAtEnd(); properties->Next())
    {
      auto* number = vtkSMIntVectorProperty::SafeDownCast(properties->GetProperty());
      if (number && number->GetInformationOnly() && !number->GetRepeatable() &&
        number->GetNumberOfElements() == 0)
      {
        number->SetElement(0, 0);
      }
    }
  }
}

//--------------------------------------------------------------------------------------------------
bool zylSessionClient::GatherInformation(
  vtkTypeUInt32 location, vtkPVInformation* information, vtkTypeUInt32 globalId)
{
  return (location == vtkPVSession::CLIENT || this->IsConnected()) &&
    this->Superclass::GatherInformation(location, information, globalId);
}
