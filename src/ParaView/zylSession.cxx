#include "ParaView/zylSession.h"

#include "ParaView/zylSessionClient.h"

#include <vtkClientServerInterpreter.h>
#include <vtkLogger.h>
#include <vtkPVSessionCore.h>
#include <vtkSMProxy.h>
#include <vtkSMSession.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

namespace {
vtkWeakPointer<vtkSMSession>& Current()
{
  static auto* session = new vtkWeakPointer<vtkSMSession>;
  return *session;
}

// A session's classes are made by its interpreter. They introduce themselves to a new one, unless
// it is the one that they have met last, which they know by its address only: kept alive, no other
// gets that address.
vtkSmartPointer<vtkClientServerInterpreter>& LastInterpreter()
{
  static auto* interpreter = new vtkSmartPointer<vtkClientServerInterpreter>;
  return *interpreter;
}

bool HasServer(vtkSMSession* session)
{
  auto* client = zylSessionClient::SafeDownCast(session);
  return !client || client->IsConnected();
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylRememberSession(vtkSMSession* session)
{
  LastInterpreter() = session->GetSessionCore()->GetInterpreter();
}

//--------------------------------------------------------------------------------------------------
void zylForgetSessions()
{
  LastInterpreter() = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylSetCurrentSession(vtkSMSession* session)
{
  Current() = session;
}

//--------------------------------------------------------------------------------------------------
bool zylIsAlive(vtkSMSession* session)
{
  return session && session == Current() && HasServer(session);
}

//--------------------------------------------------------------------------------------------------
bool zylIsAlive(vtkSMProxy* proxy)
{
  return proxy && zylIsAlive(proxy->GetSession());
}

//--------------------------------------------------------------------------------------------------
bool zylIsUsable(vtkSMProxy* proxy, const char* operation)
{
  if (!proxy)
  {
    return false;
  }
  vtkSMSession* session = proxy->GetSession();
  if (!session || session != Current())
  {
    vtkLogF(ERROR, "%s: the session in which it was made has ended", operation);
    return false;
  }
  return zylHasSession(operation);
}

//--------------------------------------------------------------------------------------------------
bool zylHasSession(const char* operation)
{
  vtkSMSession* session = Current();
  if (session && HasServer(session))
  {
    return true;
  }
  vtkLogF(ERROR, "%s: %s", operation,
    session ? "the connection to the server is lost" : "there is no session");
  return false;
}
