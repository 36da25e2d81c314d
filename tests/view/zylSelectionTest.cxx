// What is selected and picked under pixels, in the host's context, and how it is highlighted.
#include "zylSelection.h"
#include "zylBoundaryRepresentation.h"
#include "zylCore.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylHostTest.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTestServer.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <vtkCellLocator.h>
#include <vtkCollection.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSourceProxy.h>
#include <vtkSphereSource.h>
#include <vtkUnstructuredGrid.h>

namespace {
constexpr int Error = vtkLogger::VERBOSITY_ERROR;
using Ids = std::vector<int>;

// A dataset, shown in a view of its own.
struct Scene
{
  vtkSmartPointer<zylDataSet> Data = vtkSmartPointer<zylDataSet>::New();
  vtkSmartPointer<zylBoundaryRepresentation> Boundary =
    vtkSmartPointer<zylBoundaryRepresentation>::New();
  vtkSmartPointer<zylView> View;

  explicit Scene(vtkMultiBlockDataSet* data) { this->Data->InitializeFromVTKDataSet(data); }
  explicit Scene(const std::string& file) { this->Data->LoadFromFile({ file }); }

  // All leaves, seen from the front; in parallel projection, `width` units fill a square view.
  void Show(int size, double width, const double center[3])
  {
    this->Boundary->SetDataSet(this->Data);
    for (const unsigned int block : this->Data->GetBlockIDs())
    {
      this->Surface(block)->Set("Visibility", true);
    }
    this->View = vtkSmartPointer<zylView>::New();
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(size, size);
    this->View->AddRepresentation(this->Boundary);
    this->View->SetViewDir(1, false);
    this->View->SetParallelProjection(true);
    this->View->ResetCamera(
      center[0] - 1, center[0] + 1, center[1] - 1, center[1] + 1, center[2] - 1, center[2] + 1);
    this->View->SetZoom(2.0 * std::sqrt(3.0) / width);
  }
  zylPropertyCollection* Surface(int block) { return this->Boundary->GetSurfaceProperties(block); }
  Ids Blocks(int x0, int y0, int x1, int y1)
  {
    return this->View->SelectBlocks(x0, y0, x1, y1)->GetBlocks(this->Boundary);
  }
  Ids Blocks(int x, int y) { return this->Blocks(x, y, x, y); }
};

// The block and the index of each cell or point; which process of a server has it does not count.
std::map<int, std::set<int>> ByBlock(const Ids& triples)
{
  EXPECT_EQ(triples.size() % 3, 0u);
  std::map<int, std::set<int>> blocks;
  for (std::size_t i = 0; i + 2 < triples.size(); i += 3)
  {
    blocks[triples[i]].insert(triples[i + 2]);
  }
  return blocks;
}

// What the selection of a representation is at the source of its first display.
vtkSMSourceProxy* SelectionInput(zylRepresentation* representation)
{
  const auto shown = representation->GetPVRepresentations();
  vtkSMPropertyHelper input(vtkSMProxy::SafeDownCast(shown->GetItemAsObject(0)), "Input");
  return vtkSMSourceProxy::SafeDownCast(input.GetAsProxy())->GetSelectionInput(0);
}

const double RowCenter[3] = { 1.5, 0.5, 0.5 };
} // namespace

// Three unit cubes of 2 x 2 x 2 cells side by side, block 1 on the left. They fill a view in width:
// in one of 300 pixels each takes 100, from 100 upwards.
class zylSelectionRender : public zylHostTest
{
protected:
  void SetUp() override
  {
    zylHostTest::SetUp();
    if (this->Host)
    {
      this->Row = std::make_unique<Scene>(zylTestData::MakeRow(3));
      this->Row->Show(300, 3.0, RowCenter);
    }
  }
  void TearDown() override
  {
    this->Row = nullptr;
    zylHostTest::TearDown();
  }

  // Colors and depths at some places.
  std::vector<float> Picture(int size = 300, bool depths = true)
  {
    std::vector<float> values;
    for (int i = 5; i < size; i += size / 10)
    {
      for (int j = 5; j < size; j += size / 10)
      {
        const auto color = this->Host->Pixel(i, j);
        values.insert(values.end(), color.begin(), color.end());
        values.push_back(depths ? this->Host->Depth(i, j) : 0.0f);
      }
    }
    return values;
  }

  std::unique_ptr<Scene> Row;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, Rectangles)
{
  const struct
  {
    const char* What;
    int Rectangle[4];
    std::map<int, std::size_t> Cells; ///< how many of each block
    Ids Points;                       ///< the blocks of which points are there
  } rows[] = {
    { "a pixel", { 50, 150, 50, 150 }, { { 1, 1 } }, { 1 } },
    { "a face", { 110, 110, 190, 190 }, { { 2, 4 } }, { 2 } },
    { "across a border", { 90, 110, 110, 120 }, { { 1, 1 }, { 2, 1 } }, {} },
    { "from the right to the left, and down", { 190, 190, 110, 110 }, { { 2, 4 } }, { 2 } },
    { "more than the view", { -50, -50, 500, 500 }, { { 1, 4 }, { 2, 4 }, { 3, 4 } }, { 1, 2, 3 } },
    { "partly outside", { 260, 130, 2000000000, 160 }, { { 3, 2 } }, { 3 } },
    { "background", { 20, 20, 280, 80 }, {}, {} },
    { "outside", { 300, 150, 400, 150 }, {}, {} },
    { "outside on the other side", { -20, 120, -10, 180 }, {}, {} },
  };
  zylView* view = this->Row->View;
  for (const auto& row : rows)
  {
    SCOPED_TRACE(row.What);
    const int* r = row.Rectangle;
    vtkSmartPointer<zylSelection> cells;
    this->Unchanged("SelectCells", [&] { cells = view->SelectCells(r[0], r[1], r[2], r[3]); });
    Ids expected;
    std::map<int, std::size_t> found;
    for (const auto& block : row.Cells)
    {
      expected.push_back(block.first);
    }
    for (const auto& block : ByBlock(cells->GetCells(this->Row->Boundary)))
    {
      found[block.first] = block.second.size();
    }
    EXPECT_EQ(found, row.Cells);
    EXPECT_EQ(cells->GetBlocks(this->Row->Boundary), expected);
    EXPECT_EQ(cells->GetRepresentations(view).size(), row.Cells.empty() ? 0u : 1u);
    Ids blocks;
    this->Unchanged("SelectBlocks", [&] { blocks = this->Row->Blocks(r[0], r[1], r[2], r[3]); });
    EXPECT_EQ(blocks, expected);
    vtkSmartPointer<zylSelection> points;
    this->Unchanged("SelectPoints", [&] { points = view->SelectPoints(r[0], r[1], r[2], r[3]); });
    EXPECT_EQ(points->GetBlocks(this->Row->Boundary), row.Points);
  }
  // A selection of blocks is one of no cells.
  EXPECT_EQ(view->SelectBlocks(150, 150, 150, 150)->GetCells(this->Row->Boundary), Ids{});
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, FindsWhatIsSeen)
{
  vtkNew<vtkMultiBlockDataSet> cubes;
  for (int i = 0; i < 2; ++i) // 1 in front of 2
  {
    cubes->SetBlock(i, zylTestData::MakeCube(1.0, 0.0, -2.0 * i));
  }
  Scene scene(cubes);
  scene.Show(300, 3.0, RowCenter);
  const auto set = [&scene](const char* name, auto value) { scene.Surface(1)->Set(name, value); };
  const auto clip = [&scene](double z) {
    scene.Boundary->SetNumberOfClips(1);
    zylPropertyCollection* plane = scene.Boundary->GetClipProperties(0);
    const double origin[3] = { 0.0, 0.0, z };
    const double normal[3] = { 0.0, 0.0, 1.0 };
    plane->Set("ClipMode", 2);
    plane->Set("PlaneCenter", origin, 3);
    plane->Set("PlaneNormal", normal, 3);
  };
  // Each step keeps what the ones before have set. Nothing is rendered in between.
  const struct
  {
    const char* What;
    std::function<void()> Change;
    Ids Expected;
  } steps[] = {
    { "two", [] {}, { 1 } },
    { "the front one hidden", [&] { scene.Boundary->Hide(1); }, { 2 } },
    { "both hidden", [&] { scene.Boundary->Hide(); }, {} },
    { "shown", [&] { scene.Boundary->Show(); }, { 1 } },
    { "transparent", [&] { set("Transparency", 0.5); }, { 1 } },
    { "hardly visible", [&] { set("Transparency", 0.99); }, { 1 } },
    { "opaque", [&] { set("Transparency", 0.0); }, { 1 } },
    { "the front one clipped", [&] { clip(-0.5); }, { 2 } },
    { "all clipped", [&] { clip(-5.0); }, {} },
    { "no clip", [&] { scene.Boundary->SetNumberOfClips(0); }, { 1 } },
    { "highlighted", [&] { scene.Boundary->Highlight({ 1 }, 1); }, { 1 } },
    { "seen from behind", [&] { scene.View->SetViewDir(2, false); }, { 2 } },
    { "looking away", [&] { scene.View->Yaw(120.0); }, {} },
    { "and back", [&] { scene.View->Yaw(-120.0); }, { 2 } },
    { "in a corner", [&] { scene.View->SetViewport(0, 0, 100, 100); }, {} },
    { "everywhere", [&] { scene.View->SetViewport(0, 0, 300, 300); }, { 2 } },
    { "far off", [&] { scene.View->ResetCamera(9, 11, 0, 1, 0, 1); }, {} },
  };
  scene.View->Render();
  for (const auto& step : steps)
  {
    SCOPED_TRACE(step.What);
    step.Change();
    scene.Boundary->Update();
    EXPECT_EQ(scene.Blocks(150, 150), step.Expected);
    double point[3];
    EXPECT_EQ(scene.View->PickPointOnSurface(150, 150, point), !step.Expected.empty());
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, InEveryHost)
{
  zylTestHost::FramebufferOptions multisampled;
  multisampled.Samples = 4;
  Scene other(zylTestData::MakeRow(2));
  other.Show(200, 3.0, RowCenter);
  const struct
  {
    const char* What;
    std::function<int()> Prepare; ///< the framebuffer's size
    double Scale, Left, Bottom;   ///< pixels of a unit; where the row begins
  } rows[] = {
    { "window", [] { return 300; }, 100.0, 0.0, 100.0 },
    { "framebuffer object",
      [&] {
        this->Host->UseFramebuffer(300, 300);
        return 300;
      },
      100.0, 0.0, 100.0 },
    { "multisampled",
      [&] {
        this->Host->UseFramebuffer(300, 300, multisampled);
        return 300;
      },
      100.0, 0.0, 100.0 },
    { "HiDPI",
      [&] {
        this->Host->UseFramebuffer(600, 600);
        this->Row->View->SetWindowSize(600, 600);
        return 600;
      },
      200.0, 0.0, 200.0 },
    { "a view smaller than the framebuffer",
      [&] {
        this->Row->View->SetWindowSize(150, 150);
        return 600;
      },
      50.0, 0.0, 50.0 },
    { "a part of a view",
      [&] {
        this->Row->View->SetWindowSize(600, 600);
        this->Row->View->SetViewport(300, 150, 300, 300);
        return 600;
      },
      100.0, 300.0, 250.0 },
  };
  for (const auto& row : rows)
  {
    SCOPED_TRACE(row.What);
    const int size = row.Prepare();
    this->Row->View->SetSourceFBO(this->Host->GetFramebuffer());
    other.View->SetSourceFBO(this->Host->GetFramebuffer());
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Host->DrawQuad({ -1.0f, -1.0f, 0.0f, 1.0f }, 0.2f, { 1.0f, 0.0f, 0.0f });
    const auto picture = this->Picture(size);
    this->Host->SetOddState();
    for (int block = 1; block <= 3; ++block)
    {
      const double middle[3] = { block - 0.33, 0.21, 1.0 };
      const int x = static_cast<int>(row.Left + row.Scale * middle[0]);
      const int y = static_cast<int>(row.Bottom + row.Scale * middle[1]);
      double point[3] = { 0.0, 0.0, 0.0 };
      Ids blocks;
      this->Unchanged("SelectBlocks", [&] { blocks = this->Row->Blocks(x, y); });
      EXPECT_EQ(blocks, Ids{ block });
      this->Unchanged(
        "Pick", [&] { EXPECT_TRUE(this->Row->View->PickPointOnSurface(x, y, point)); });
      EXPECT_NEAR(point[0], middle[0], 1.0 / row.Scale);
      EXPECT_NEAR(point[1], middle[1], 1.0 / row.Scale);
      EXPECT_NEAR(point[2], 1.0, 1e-6);
      EXPECT_EQ(other.Blocks(100, 100), Ids{ 2 });
    }
    EXPECT_EQ(this->Picture(size), picture);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, HostsMayOcclude)
{
  zylTestHost::FramebufferOptions multisampled, real, none;
  multisampled.Samples = 4;
  real.DepthFormat = 0x8CAC; // GL_DEPTH_COMPONENT32F
  none.DepthFormat = 0;
  const struct
  {
    const char* What;
    const zylTestHost::FramebufferOptions* Framebuffer; ///< null: window
    bool BoundOne, HasDepth;
  } rows[] = { { "window", nullptr, false, true }, { "float", &real, false, true },
    { "bound", &real, true, true }, { "multisampled", &multisampled, false, true },
    { "no depth", &none, false, false } };
  zylView* view = this->Row->View;
  for (const auto& row : rows)
  {
    SCOPED_TRACE(row.What);
    if (row.Framebuffer)
    {
      this->Host->UseFramebuffer(300, 300, *row.Framebuffer);
    }
    view->SetSourceFBO(row.BoundOne ? -1 : static_cast<int>(this->Host->GetFramebuffer()));
    for (const bool rendered : { false, true })
    {
      SCOPED_TRACE(rendered);
      this->Host->Clear(0.0f, 0.0f, 1.0f);
      this->Host->DrawQuad(
        { -1.0f, -1.0f, 0.0f, 1.0f }, 0.0f, { 1.0f, 0.0f, 0.0f }); // the left half
      this->Host->DrawQuad({ 0.0f, -1.0f, 1.0f, 1.0f }, 1.0f, { 0.0f, 1.0f, 0.0f });
      if (rendered)
      {
        view->Render();
      }
      const auto picture = this->Picture(300, row.HasDepth);
      const Ids all{ 1, 2, 3 };
      const Ids seen{ 2, 3 };
      double point[3];
      for (const bool on : { true, false })
      {
        view->SetHostOccludesSelection(on);
        const bool occluded = on && row.HasDepth;
        this->Unchanged("SelectBlocks",
          [&] { EXPECT_EQ(this->Row->Blocks(0, 0, 299, 299), occluded ? seen : all); });
        EXPECT_EQ(view->PickPointOnSurface(50, 150, point), !occluded);
        EXPECT_TRUE(view->PickPointOnSurface(250, 150, point));
        const auto points = view->SelectPoints(0, 0, 299, 299);
        EXPECT_EQ(ByBlock(points->GetCells(this->Row->Boundary)).count(1), occluded ? 0u : 1u);
      }
      EXPECT_EQ(this->Picture(300, row.HasDepth), picture);
    }
  }
}

// Wherever a faceted ball is hit, at its rim too, the point lies on it, below the pixel.
TEST_F(zylSelectionRender, PicksLieOnTheSurface)
{
  vtkNew<vtkSphereSource> source;
  source->SetThetaResolution(24);
  source->SetPhiResolution(16);
  source->Update();
  vtkNew<vtkMultiBlockDataSet> ball;
  ball->SetBlock(0, source->GetOutput());
  vtkNew<vtkCellLocator> locator;
  locator->SetDataSet(source->GetOutput());
  locator->BuildLocator();
  Scene scene(ball);
  const double center[3] = { 0.0, 0.0, 0.0 };
  scene.Show(60, 1.2, center);
  for (const bool parallel : { true, false })
  {
    scene.View->SetParallelProjection(parallel);
    vtkRenderer* renderer = scene.View->GetProxy()->GetRenderer();
    int hits = 0;
    for (int i = 0; i < 60 * 60; i += 13)
    {
      const int x = i % 60;
      const int y = i / 60;
      double point[3];
      if (!scene.View->PickPointOnSurface(x, y, point))
      {
        continue;
      }
      ++hits;
      renderer->SetWorldPoint(point[0], point[1], point[2], 1.0);
      renderer->WorldToDisplay();
      EXPECT_NEAR(renderer->GetDisplayPoint()[0], x + 0.25, 0.26);
      EXPECT_NEAR(renderer->GetDisplayPoint()[1], y + 0.25, 0.26);
      double closest[3];
      vtkIdType cell;
      int sub;
      double distance2;
      locator->FindClosestPoint(point, closest, cell, sub, distance2);
      EXPECT_LE(std::sqrt(distance2), 1.2 / 60) << x << ", " << y;
    }
    EXPECT_GT(hits, parallel ? 100 : 10);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, Highlights)
{
  zylView* view = this->Row->View;
  const auto draw = [&] {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    view->Render();
    std::set<int> marked;
    for (int x = 10; x < 300; x = x % 100 < 90 ? x + 1 : x + 20) // not where blocks meet
    {
      for (int y = 98; y < 203; ++y)
      {
        const auto color = this->Host->Pixel(x, y);
        if (color[0] > 230 && color[1] > 150 && color[1] < 200 && color[2] < 80) // orange
        {
          marked.insert(x / 100 + 1);
        }
      }
    }
    return marked;
  };
  const std::set<int> none;
  EXPECT_EQ(draw(), none);
  const auto plain = this->Picture();
  auto selection = view->SelectBlocks(250, 150, 250, 150);
  EXPECT_EQ(this->Picture(), plain);
  vtkNew<zylBoundaryRepresentation> another;
  const struct
  {
    const char* What;
    std::function<void()> Run;
    std::set<int> Marked;
  } rows[] = {
    { "another representation", [&] { view->HighlightSelection(another, selection); }, none },
    { "null",
      [&] { view->HighlightSelection(nullptr), view->HighlightSelection(nullptr, selection); },
      none },
    { "its own", [&] { view->HighlightSelection(this->Row->Boundary, selection); }, { 3 } },
    { "cleared", [&] { view->ClearHighlight(); }, none },
    { "all", [&] { view->HighlightSelection(selection); }, { 3 } },
    { "a cell of another block",
      [&] { view->HighlightSelection(view->SelectCells(150, 150, 150, 150)); }, { 2 } },
    { "cleared again", [&] { view->ClearHighlight(); }, none },
  };
  for (const auto& row : rows)
  {
    SCOPED_TRACE(row.What);
    this->Host->Clear(0.0f, 1.0f, 0.0f); // not what was rendered last
    const auto before = this->Picture();
    this->Unchanged("", row.Run);
    EXPECT_EQ(this->Picture(), before);
    EXPECT_EQ(draw(), row.Marked);
  }
  EXPECT_EQ(this->Picture(), plain);
  // The one is framed as a render, the other one as a selection.
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  view->PreRenderSetup();
  view->ClearHighlight();
  EXPECT_EQ(log.Count(Error, ""), 0);
  view->HighlightSelection(selection);
  EXPECT_EQ(log.Count(Error, "PreRenderSetup was called a second time"), 1);
  view->PostRenderCleanup();
}

// A host that draws its frame by hand may select in the middle of it.
TEST_F(zylSelectionRender, InsideARender)
{
  zylView* view = this->Row->View;
  std::vector<std::vector<float>> pictures;
  for (const bool select : { false, true })
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    view->PreRenderSetup();
    view->GetProxy()->StillRender();
    if (select)
    {
      EXPECT_EQ(this->Row->Blocks(50, 150), Ids{ 1 });
    }
    view->PostRenderCleanup();
    pictures.push_back(this->Picture());
  }
  EXPECT_EQ(pictures[0], pictures[1]);
  // Without drawing there is nothing to give back.
  this->Host->Clear(0.0f, 0.0f, 1.0f);
  view->PreRenderSetup();
  this->Row->Blocks(50, 150);
  view->PostRenderCleanup();
  EXPECT_TRUE(this->Host->PixelIs(50, 150, 0, 0, 255));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionRender, OfGivenBlocks)
{
  Ids blocks{ 3, 1 };
  zylBoundaryRepresentation* boundary = this->Row->Boundary;
  auto selection = zylSelection::CreateSelectionForBlocks(boundary, blocks);
  EXPECT_EQ(selection->GetBlocks(boundary), blocks);
  EXPECT_EQ(selection->GetBlocks(nullptr), Ids{});
  this->Row->View->HighlightSelection(selection);
  const auto input = [boundary] {
    return vtkSMPropertyHelper(SelectionInput(boundary), "Blocks").GetIntArray();
  };
  EXPECT_EQ(input(), blocks);
  Ids one{ 3 };
  this->Row->View->HighlightSelection(zylSelection::CreateSelectionForBlocks(boundary, one));
  EXPECT_EQ(input(), one);
  this->Row->View->HighlightSelection(zylSelection::CreateSelectionForBlock(boundary, 3));
  EXPECT_EQ(input(), one);
  Ids nothing;
  EXPECT_EQ(
    zylSelection::CreateSelectionForBlocks(boundary, nothing)->GetBlocks(boundary), nothing);
  EXPECT_EQ(zylSelection::CreateSelectionForBlocks(nullptr, one)->GetBlocks(boundary), nothing);
  EXPECT_TRUE(selection->GetRepresentations(nullptr).empty());

  // The blocks of a selection, highlighted as blocks.
  const auto highlighted = [boundary] {
    return boundary->GetHighlightProperties()
      ->GetProperty("BlockVisibility")
      ->GetNumberOfElements();
  };
  zylBoundaryRepresentation::Highlight(selection, nullptr, 1);
  zylBoundaryRepresentation::Highlight(nullptr, this->Row->View, 1);
  EXPECT_EQ(highlighted(), 0u);
  zylBoundaryRepresentation::Highlight(selection, this->Row->View, 1);
  EXPECT_EQ(highlighted(), 4u);
  EXPECT_EQ(boundary->GetHighlightProperties()->GetInt("Style"), 1);
  zylBoundaryRepresentation::UnHighlight(
    zylSelection::CreateSelectionForBlock(boundary, 3), this->Row->View);
  EXPECT_EQ(highlighted(), 2u);

  // What no representation of the view owns ends the list.
  vtkNew<zylBoundaryRepresentation> second;
  second->SetDataSet(this->Row->Data);
  this->Row->View->AddRepresentation(second);
  this->Row->View->RemoveRepresentation(boundary);
  boundary->SetView(this->Row->View);
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  EXPECT_EQ(selection->GetBlocks(boundary), nothing);
  EXPECT_EQ(
    log.Count(Error, "No ZYL representation found from selected ParaView representation"), 1);
}

// A piece is picked by itself and is no block: the block that it belongs to is.
TEST_F(zylSelectionRender, PiecesOfBlocks)
{
  Scene scene(zylTestData::MakeTree());
  const double center[3] = { 0.0, 0.0, 0.0 };
  scene.Show(300, 12.0, center);
  const auto blocks = scene.Blocks(0, 0, 299, 299);
  EXPECT_EQ(blocks, (Ids{ 1, 3, 4, 8 }));
}

// Pixels, ids and points are those of the time that is to be shown, which asking does not change.
TEST_F(zylSelectionRender, FollowsTime)
{
  const std::string folder = zylTestData::MakeFolder();
  std::ofstream series(folder + "/series.pvd");
  series << "<VTKFile type=\"Collection\"><Collection>";
  for (const int step : { 0, 1, 2 })
  {
    const std::string name = "step" + std::to_string(step) + ".vtu";
    zylTestData::Write(zylTestData::MakeCube(step, 0.0, 0.0), folder + "/" + name);
    series << "<DataSet timestep=\"" << step << "\" file=\"" << name << "\"/>";
  }
  series << "</Collection></VTKFile>";
  series.close();
  Scene scene(folder + "/series.pvd");
  scene.Show(300, 3.0, RowCenter);
  for (const int step : { 2, 0, 1 })
  {
    zylTimeController::GetInstance()->GoToTime(step);
    for (int place = 0; place < 3; ++place)
    {
      SCOPED_TRACE(std::to_string(step) + " " + std::to_string(place));
      const int x = 100 * place + 40;
      double point[3];
      EXPECT_EQ(scene.Blocks(x, 120), place == step ? Ids{ 1 } : Ids{});
      ASSERT_EQ(scene.View->PickPointOnSurface(x, 120, point), place == step);
      EXPECT_NEAR(place == step ? point[0] : x / 100.0, x / 100.0, 1e-6);
    }
  }
}

// What is derived from data is merged and has no blocks.
TEST_F(zylSelectionRender, DerivedSurfaces)
{
  vtkNew<zylCutPlaneRepresentation> cut;
  const double center[3] = { 0.0, 0.0, 0.25 };
  const double normal[3] = { 0.0, 0.0, 1.0 };
  const int all[] = { 0 };
  cut->GetProperties()->MakeInt("Blocks", all, 1);
  cut->GetProperties()->Set("Center", center, 3);
  cut->GetProperties()->Set("Normal", normal, 3);
  cut->GetSurfaceProperties()->Set("Visibility", true);
  cut->SetDataSet(this->Row->Data);
  zylView* view = this->Row->View;
  view->AddRepresentation(cut);
  this->Row->Boundary->Hide(1);
  this->Row->Boundary->Update();
  const auto both = view->SelectCells(0, 0, 299, 299);
  EXPECT_EQ(both->GetRepresentations(view).size(), 2u);
  EXPECT_EQ(both->GetBlocks(this->Row->Boundary), (Ids{ 2, 3 }));
  double point[3] = { 0.0, 0.0, 0.0 };
  EXPECT_TRUE(view->PickPointOnSurface(40, 130, point));
  EXPECT_NEAR(point[0], 0.4, 1e-6);
  EXPECT_NEAR(point[2], 0.25, 1e-6);
  zylTestLog log(vtkLogger::VERBOSITY_WARNING);
  const Ids cell = view->SelectCells(40, 130, 40, 130)->GetCells(cut);
  ASSERT_EQ(cell.size(), 2u);
  EXPECT_EQ(cell[0], 0);
  EXPECT_EQ(both->GetBlocks(cut), Ids{});
  EXPECT_EQ(view->SelectBlocks(40, 130, 40, 130)->GetRepresentations(view).size(), 1u);
  EXPECT_EQ(log.Count(Error, ""), 0) << log.Dump();
}

// Wherever the data is.
class zylSelectionServer
  : public zylHostTest
  , public testing::WithParamInterface<int>
{
};

TEST_P(zylSelectionServer, SameIds)
{
  const int ranks = GetParam();
  if (!this->Host || (ranks > 0 && !zylTestServer::IsAvailable(ranks)))
  {
    GTEST_SKIP() << "no server here";
  }
  std::unique_ptr<zylTestServer> server;
  if (ranks > 0)
  {
    server = std::make_unique<zylTestServer>(ranks, ZYL_PLUGIN_DIRECTORY);
    zylCore::GetInstance()->Connect(server->GetUrl().c_str(), 60);
  }
  {
    Scene row(zylTestData::Write(zylTestData::MakeRow(3), zylTestData::MakeFolder() + "/row.vtm"));
    row.Show(300, 3.0, RowCenter);
    EXPECT_EQ(row.Blocks(0, 0, 299, 299), (Ids{ 1, 2, 3 }));
    const Ids cell = row.View->SelectCells(260, 160, 260, 160)->GetCells(row.Boundary);
    EXPECT_EQ(ByBlock(cell), (std::map<int, std::set<int>>{ { 3, { 23 } } }));
    for (int block = 1; block <= 3; ++block)
    {
      const int x = 100 * block - 40;
      EXPECT_EQ(row.Blocks(x, 130), Ids{ block });
      double point[3];
      ASSERT_TRUE(row.View->PickPointOnSurface(x, 130, point));
      EXPECT_NEAR(point[0], x / 100.0, 1e-6);
      EXPECT_NEAR(point[1], 0.3, 1e-6);
      EXPECT_NEAR(point[2], 1.0, 1e-6);
    }
    const auto one = zylSelection::CreateSelectionForBlock(row.Boundary, 2);
    EXPECT_EQ(one->GetBlocks(row.Boundary), Ids{ 2 });
  }
  zylCore::GetInstance()->Connect("builtin:", 0);
}

INSTANTIATE_TEST_SUITE_P(Ranks, zylSelectionServer, testing::Values(0, 1, 2));
