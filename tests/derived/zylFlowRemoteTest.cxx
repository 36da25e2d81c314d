// The same lines from a server that is another process, and from one of several processes.
#include "ParaView/zylParaViewCompat.h"
#include "zylCurvedGlyphRepresentation.h"
#include "zylFlowData.h"
#include "zylStreamlineRepresentation.h"
#include "zylSurfaceStreamlineRepresentation.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylVortexCoresRepresentation.h"

#include <vtkSMSession.h>

namespace {
using zylFlowData::Trace;

const std::vector<double> Seeds = { 0.2, 0.0, 0.1, 0.5, 0.0, 0.1, 0.8, 0.0, -0.1, 0.0, -0.6, 0.3 };

struct Numbers
{
  double Lines;
  double Tracer; ///< the same lines from ParaView's own tracer alone
  double Upstream;
  double OnSurface;
  double Cores;
  double Arrows; ///< number of cells
};

//--------------------------------------------------------------------------------------------------
// Three blocks in a row: a parallel server has one or two in a process.
Numbers Measure()
{
  auto blocks = zylFlowData::Make(zylFlowData::Burgers);
  blocks->SetBlock(1, zylFlowData::MakeGrid(zylFlowData::Burgers, 16, 1.0));
  blocks->SetBlock(2, zylFlowData::MakeGrid(zylFlowData::Burgers, 16, -3.0));
  const auto data = zylLoad(zylTestData::Write(blocks, zylTestData::MakeFolder() + "/flow.vtm"));
  Numbers numbers = {};
  numbers.Tracer = zylFlowData::GetLength(zylFlowData::TraceDirectly(data, Seeds));
  vtkNew<zylStreamlineRepresentation> lines;
  numbers.Lines = zylFlowData::GetLength(Trace(lines, data, Seeds));
  zylSet(lines->GetProperties(), "IntegrationDirection", 1, "MaximumStreamlineLength", 0.1);
  lines->Update();
  numbers.Upstream = zylFlowData::GetLength(lines->GetDerivedSurface());
  vtkNew<zylSurfaceStreamlineRepresentation> onSurface;
  onSurface->GetProperties()->Set("MaximumStreamlineLength", 0.2);
  const auto seeds = { 0.5, 0.0, 1.0, 1.5, -1.0, 0.2, -0.4, 0.3, -1.0 };
  numbers.OnSurface = zylFlowData::GetLength(Trace(onSurface, data, seeds));
  vtkNew<zylVortexCoresRepresentation> cores;
  numbers.Cores = zylFlowData::GetLength(Trace(cores, data, {}));
  vtkNew<zylCurvedGlyphRepresentation> arrows;
  zylSet(arrows->GetProperties(), "GlyphSpacing", 0.1, "GlyphBodyLength", 0.05,
    "MaximumStreamlineLength", 0.1);
  numbers.Arrows = double(Trace(arrows, data, Seeds)->GetNumberOfCells());
  return numbers;
}

class zylFlowRemote : public ::testing::TestWithParam<int>
{
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylFlowRemote, GivesTheNumbersOfABuiltInSession)
{
  // Before the first server: a session that was left is not come back to.
  zylCore::GetInstance();
  static const Numbers here = Measure();
  EXPECT_NEAR(here.Lines, here.Tracer, 1e-10);
  const auto server = zylTestServer::Connect(GetParam(), ZYL_PLUGIN_DIRECTORY);
  if (!server)
  {
    GTEST_SKIP() << "no server here";
  }
  const bool arrows = zylParaView::CanTraceFromTraces(zylCore::GetInstance()->GetSession());
  const Numbers there = Measure();
  zylCore::GetInstance()->Disconnect();
  EXPECT_NEAR(there.Lines, there.Tracer, 1e-10);
  // Where a line goes on in another process, ParaView's tracer takes another step.
  EXPECT_NEAR(there.Lines, here.Lines, GetParam() == 1 ? 1e-10 : 0.005 * here.Lines);
  // Points of lines are of single precision.
  EXPECT_NEAR(there.Upstream, here.Upstream, GetParam() == 1 ? 1e-10 : 1e-7);
  EXPECT_GT(here.OnSurface, 0.5);
  EXPECT_NEAR(there.OnSurface, here.OnSurface, GetParam() == 1 ? 1e-10 : 1e-7);
  EXPECT_NEAR(there.Cores, here.Cores, 1e-10);
  EXPECT_EQ(there.Arrows, arrows ? here.Arrows : 0.0);
}

INSTANTIATE_TEST_SUITE_P(Ranks, zylFlowRemote, testing::Values(1, 2, 3));
