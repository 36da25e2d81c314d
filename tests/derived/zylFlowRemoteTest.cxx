// The same lines from a server that is another process, and from one of several processes.
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylCore.h"
#include "zylCurvedGlyphRepresentation.h"
#include "zylDataSet.h"
#include "zylFlowData.h"
#include "zylPropertyCollection.h"
#include "zylStreamlineRepresentation.h"
#include "zylSurfaceStreamlineRepresentation.h"
#include "zylTestData.h"
#include "zylTestServer.h"
#include "zylVortexCoresRepresentation.h"

#include <memory>

#include <gtest/gtest.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkUnstructuredGrid.h>

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
double TraceDirectly(zylDataSet* data)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  const auto seeds = zylProxyBuilder(manager, "sources", "PolyLineSource").Make();
  vtkSMPropertyHelper(seeds, "Points").Set(Seeds.data(), static_cast<unsigned int>(Seeds.size()));
  seeds->UpdateVTKObjects();
  const auto tracer = zylProxyBuilder(manager, "filters", "ArbitrarySourceStreamTracer")
                        .Input(data->GetOutput())
                        .Input(seeds, "Source")
                        .Set("MaximumPropagation", 1e299)
                        .Make();
  vtkSMPropertyHelper(tracer, "SelectInputVectors").SetInputArrayToProcess(0, "velocity");
  tracer->UpdateVTKObjects();
  tracer->UpdatePipeline();
  const double length = zylFlowData::GetLength(zylFlowData::FetchLines(tracer));
  zylUnregister(tracer);
  zylUnregister(seeds);
  return length;
}

//--------------------------------------------------------------------------------------------------
// Three blocks in a row: a parallel server has one or two in a process.
Numbers Measure()
{
  auto blocks = zylFlowData::Make(zylFlowData::Burgers);
  blocks->SetBlock(1, zylFlowData::MakeGrid(zylFlowData::Burgers, 16, 1.0));
  blocks->SetBlock(2, zylFlowData::MakeGrid(zylFlowData::Burgers, 16, -3.0));
  vtkNew<zylDataSet> data;
  EXPECT_TRUE(
    data->LoadFromFile({ zylTestData::Write(blocks, zylTestData::MakeFolder() + "/flow.vtm") }));
  Numbers numbers = {};
  numbers.Tracer = TraceDirectly(data);
  vtkNew<zylStreamlineRepresentation> lines;
  numbers.Lines = zylFlowData::GetLength(Trace(lines, data, Seeds));
  lines->GetProperties()->Set("IntegrationDirection", 1);
  lines->GetProperties()->Set("MaximumStreamlineLength", 0.1);
  lines->Update();
  numbers.Upstream = zylFlowData::GetLength(lines->GetDerivedSurface());
  vtkNew<zylSurfaceStreamlineRepresentation> onSurface;
  onSurface->GetProperties()->Set("MaximumStreamlineLength", 0.2);
  const auto seeds = { 0.5, 0.0, 1.0, 1.5, -1.0, 0.2, -0.4, 0.3, -1.0 };
  numbers.OnSurface = zylFlowData::GetLength(Trace(onSurface, data, seeds));
  vtkNew<zylVortexCoresRepresentation> cores;
  numbers.Cores = zylFlowData::GetLength(Trace(cores, data, {}));
  vtkNew<zylCurvedGlyphRepresentation> arrows;
  arrows->GetProperties()->Set("GlyphSpacing", 0.1);
  arrows->GetProperties()->Set("GlyphBodyLength", 0.05);
  arrows->GetProperties()->Set("MaximumStreamlineLength", 0.1);
  numbers.Arrows = double(Trace(arrows, data, Seeds)->GetNumberOfCells());
  return numbers;
}

struct Configuration
{
  const char* Name;
  int Ranks;
  const char* Plugins;
};
class zylFlowRemote : public ::testing::TestWithParam<Configuration>
{
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylFlowRemote, GivesTheNumbersOfABuiltInSession)
{
  if (!zylTestServer::IsAvailable(GetParam().Ranks))
  {
    GTEST_SKIP() << "no server here";
  }
  // Before the first server: a session that was left is not come back to.
  zylCore::GetInstance();
  static const Numbers here = Measure();
  EXPECT_NEAR(here.Lines, here.Tracer, 1e-10);
  zylTestServer server(GetParam().Ranks, GetParam().Plugins);
  zylCore::GetInstance()->Connect(server.GetUrl().c_str(), 60);
  ASSERT_NE(zylCore::GetInstance()->GetSession(), nullptr);
  ASSERT_EQ(zylCore::GetInstance()->GetSession()->GetProcessRoles(), 0x10u);
  const bool arrows = zylParaView::CanTraceFromTraces(zylCore::GetInstance()->GetSession());
  const Numbers there = Measure();
  zylCore::GetInstance()->Disconnect();
  EXPECT_NEAR(there.Lines, there.Tracer, 1e-10);
  // Where a line goes on in another process, ParaView's tracer takes another step.
  EXPECT_NEAR(there.Lines, here.Lines, GetParam().Ranks == 1 ? 1e-10 : 0.005 * here.Lines);
  // Points of lines are of single precision.
  EXPECT_NEAR(there.Upstream, here.Upstream, GetParam().Ranks == 1 ? 1e-10 : 1e-7);
  EXPECT_GT(here.OnSurface, 0.5);
  EXPECT_NEAR(there.OnSurface, here.OnSurface, GetParam().Ranks == 1 ? 1e-10 : 1e-7);
  EXPECT_NEAR(there.Cores, here.Cores, 1e-10);
  EXPECT_EQ(there.Arrows, arrows ? here.Arrows : 0.0);
}

INSTANTIATE_TEST_SUITE_P(Servers, zylFlowRemote,
  testing::Values(Configuration{ "One", 1, ZYL_PLUGIN_DIRECTORY },
    Configuration{ "Two", 2, ZYL_PLUGIN_DIRECTORY },
    Configuration{ "Three", 3, ZYL_PLUGIN_DIRECTORY }),
  [](const auto& c) { return c.param.Name; });
