/**
 * @file zylSession.h
 * @brief The one answer to the question whether something can still be used.
 *
 * A proxy lives in the session in which it was made. It can be used as long as that is the
 * library's current session and the session's server is there. Every public call that hands a proxy
 * to ParaView asks first and returns its failed result if not:
 *
 *     if (!zylIsUsable(this->Proxy, "GetTimestepValues()"))
 *     {
 *       return {};
 *     }
 *
 * Asking costs no message to the server. Private to the library.
 */
#ifndef zylSession_h
#define zylSession_h

#include "zylExport.h"

class vtkSMProxy;
class vtkSMSession;

/// Every session that is made is told here once, before the next is made. It may end before.
ZYL_PRIVATE void zylRememberSession(vtkSMSession* session);

/// Forget it, before ParaView is finalised.
ZYL_PRIVATE void zylForgetSessions();

/// zylCore tells which session is the current one (borrowed, may be null).
ZYL_PRIVATE void zylSetCurrentSession(vtkSMSession* session);

/// Whether it is the current session and its server is there. False for null.
ZYL_PRIVATE bool zylIsAlive(vtkSMSession* session);

/// Whether the proxy lives in such a session. False for null.
ZYL_PRIVATE bool zylIsAlive(vtkSMProxy* proxy);

/// As zylIsAlive(), and where a proxy cannot be used any more a line in the log says why:
/// "`operation`: the session in which it was made has ended". A null proxy is no news: nothing was
/// made yet.
ZYL_PRIVATE bool zylIsUsable(vtkSMProxy* proxy, const char* operation);

/// For calls that make something new: whether there is a current session and its server is there. A
/// line in the log says why not.
ZYL_PRIVATE bool zylHasSession(const char* operation);

#endif
