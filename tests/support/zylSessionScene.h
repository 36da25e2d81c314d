/// @file zylSessionScene.h
/// What public calls do when their session is gone: the situations, and a table of calls to run in
/// each of them.
///
///     class MySession : public zylSessionTest, public testing::WithParamInterface<zylSessionScene>
///     {};
///     TEST_P(MySession, FailWithAWord)
///     {
///       ... this->Begin(GetParam()), make the objects, this->Bring(GetParam().What) ...
///       zylExpectFailures(Calls(), objects, GetParam().What);
///     }
///     INSTANTIATE_TEST_SUITE_P(Situations, MySession, zylSessionScenes(), zylSessionSceneName);
#ifndef zylSessionScene_h
#define zylSessionScene_h

#include "zylCore.h"
#include "zylHostTest.h"
#include "zylTestLog.h"
#include "zylTestServer.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <vtkLogger.h>
#include <vtkSMSession.h>

enum class zylSituation
{
  NoSession,
  Ended,
  Another,
  Killed
};

struct zylSessionScene
{
  const char* Name;
  zylSituation What;
  bool OnServer; ///< where the objects are made
};

inline auto zylSessionScenes()
{
  return testing::Values(zylSessionScene{ "NoSession", zylSituation::NoSession, false },
    zylSessionScene{ "Ended", zylSituation::Ended, false },
    zylSessionScene{ "EndedOnServer", zylSituation::Ended, true },
    zylSessionScene{ "Another", zylSituation::Another, false },
    zylSessionScene{ "AnotherAfterServer", zylSituation::Another, true },
    zylSessionScene{ "ServerKilled", zylSituation::Killed, true });
}

/// One of each situation.
inline auto zylFourSessionScenes()
{
  return testing::Values(zylSessionScene{ "NoSession", zylSituation::NoSession, false },
    zylSessionScene{ "Ended", zylSituation::Ended, false },
    zylSessionScene{ "AnotherAfterServer", zylSituation::Another, true },
    zylSessionScene{ "ServerKilled", zylSituation::Killed, true });
}

inline std::string zylSessionSceneName(const testing::TestParamInfo<zylSessionScene>& info)
{
  return info.param.Name;
}

enum class zylCallKind
{
  Uses,  ///< something made in the session: fails once that has ended or its server is gone
  Makes, ///< something new: fails without a session
  Speaks ///< as Uses, but of nothing to return, and silent while there is nothing
};

template <class Objects>
struct zylSessionCall
{
  const char* Name;
  zylCallKind Kind;
  std::function<bool(Objects&)> Fails; ///< runs the call; whether its result says that it failed
};

/// Each call fails, and a message says why.
template <class Objects>
void zylExpectFailures(
  const std::vector<zylSessionCall<Objects>>& calls, Objects& objects, zylSituation situation)
{
  for (const auto& call : calls)
  {
    SCOPED_TRACE(call.Name);
    zylTestLog log(vtkLogger::VERBOSITY_WARNING);
    const bool failed = call.Fails(objects);
    if (call.Kind == zylCallKind::Makes && situation == zylSituation::Another)
    {
      continue;
    }
    EXPECT_TRUE(failed);
    if (situation != zylSituation::NoSession || call.Kind == zylCallKind::Makes)
    {
      EXPECT_TRUE(
        log.Has(vtkLogger::VERBOSITY_ERROR, "") || log.Has(vtkLogger::VERBOSITY_WARNING, ""));
    }
  }
}

/// Starts and ends with a built-in session. The test's target defines ZYL_PLUGIN_DIRECTORY.
class zylSessionTest : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    zylCore::GetInstance()->Connect("builtin:", 0);
  }
  void TearDown() override
  {
    zylCore::GetInstance()->Connect("builtin:", 0);
    zylHostTest::TearDown();
  }

  /// Begin in the session that the scene wants. False, and the test is skipped, where there is
  /// none.
  bool Begin(const zylSessionScene& scene)
  {
    if (!this->Host)
    {
      return false;
    }
    if (scene.OnServer && !this->ConnectToServer())
    {
      [] { GTEST_SKIP() << "no server here"; }();
      return false;
    }
    if (scene.What == zylSituation::NoSession)
    {
      zylCore::GetInstance()->Disconnect();
    }
    return true;
  }

  bool ConnectToServer()
  {
    if (!zylTestServer::IsAvailable(1))
    {
      return false;
    }
    this->Servers.push_back(std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY));
    zylCore::GetInstance()->Connect(this->Servers.back()->GetUrl().c_str(), 60);
    vtkSMSession* session = zylCore::GetInstance()->GetSession();
    return session && session->GetProcessRoles() == 0x10u;
  }

  /// What happens to the session in which the objects were made.
  void Bring(zylSituation situation)
  {
    switch (situation)
    {
      case zylSituation::NoSession:
        break;
      case zylSituation::Ended:
        zylCore::GetInstance()->Disconnect();
        break;
      case zylSituation::Another:
        zylCore::GetInstance()->Connect("builtin:", 0);
        break;
      case zylSituation::Killed:
        this->Servers.back()->Kill();
        break;
    }
  }

  std::vector<std::unique_ptr<zylTestServer>> Servers;
};

#endif
