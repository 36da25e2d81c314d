// Selections and picks in the host's context: any framebuffer and size, the host's depths,
// highlights.
#include "zylOddState.h"
#include "zylSelectionScene.h"
#include "zylTestLog.h"

#include <functional>

#include <vtkCellLocator.h>
#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSphereSource.h>

namespace {
using Ids = zylIds;
using Scene = zylSelectionScene;
} // namespace

// Under a name of its own.
class zylSelectionHost : public zylSelectionRender
{
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylSelectionHost, InEveryHost)
{
  zylTestHost::FramebufferOptions plain, multisampled;
  multisampled.Samples = 4;
  Scene other(zylTestData::MakeRow(2));
  other.Show(200, 3.0, zylRowCenter);
  zylOddState odd(1);
  const struct
  {
    const char* What;
    const zylTestHost::FramebufferOptions* Framebuffer; ///< null: the window
    int Size;
    std::array<int, 2> Window;
    std::array<int, 4> Part;    ///< of the window
    double Scale, Left, Bottom; ///< pixels of a unit; where the row begins
  } rows[] = {
    { "window", nullptr, 300, { 300, 300 }, { 0, 0, 300, 300 }, 100.0, 0.0, 100.0 },
    { "object", &plain, 300, { 300, 300 }, { 0, 0, 300, 300 }, 100.0, 0.0, 100.0 },
    { "multisampled", &multisampled, 300, { 300, 300 }, { 0, 0, 300, 300 }, 100.0, 0.0, 100.0 },
    { "HiDPI", &plain, 600, { 600, 600 }, { 0, 0, 600, 600 }, 200.0, 0.0, 200.0 },
    { "a smaller view", &plain, 600, { 150, 150 }, { 0, 0, 150, 150 }, 50.0, 0.0, 50.0 },
    { "a part", &plain, 600, { 600, 600 }, { 300, 150, 300, 300 }, 100.0, 300.0, 250.0 },
  };
  for (const auto& row : rows)
  {
    SCOPED_TRACE(row.What);
    const int size = row.Size;
    row.Framebuffer ? this->Host->UseFramebuffer(size, size, *row.Framebuffer)
                    : this->Host->UseWindow();
    this->Row->View->SetWindowSize(row.Window[0], row.Window[1]);
    this->Row->View->SetViewport(row.Part[0], row.Part[1], row.Part[2], row.Part[3]);
    this->Row->View->SetSourceFBO(this->Host->GetFramebuffer());
    other.View->SetSourceFBO(this->Host->GetFramebuffer());
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Host->DrawQuad({ -1.0f, -1.0f, 0.0f, 1.0f }, 0.2f, { 1.0f, 0.0f, 0.0f });
    const auto picture = this->Picture(size);
    odd.Apply();
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
TEST_F(zylSelectionHost, HostsMayOcclude)
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
        EXPECT_EQ(points->GetBlocks(this->Row->Boundary), occluded ? seen : all);
      }
      EXPECT_EQ(this->Picture(300, row.HasDepth), picture);
    }
  }
}

// Wherever a faceted ball is hit, at its rim too, the point lies on it, below the pixel.
TEST_F(zylSelectionHost, PicksLieOnTheSurface)
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
TEST_F(zylSelectionHost, Highlights)
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
  zylTestLog log;
  view->PreRenderSetup();
  view->ClearHighlight();
  EXPECT_FALSE(log.HasError());
  view->HighlightSelection(selection);
  EXPECT_EQ(log.CountErrors("PreRenderSetup was called a second time"), 1);
  view->PostRenderCleanup();
}

// A host that draws its frame by hand may select in the middle of it.
TEST_F(zylSelectionHost, InsideARender)
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
