// What is selected under pixels, of what kind of data, and how it is read.
#include "zylCutPlaneRepresentation.h"
#include "zylSelectionScene.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylTimeController.h"

#include <vtkBoundingBox.h>
#include <vtkCell.h>
#include <vtkCollection.h>

namespace {
using Ids = zylIds;
using Scene = zylSelectionScene;

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
} // namespace

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
  scene.Show(300, 3.0, zylRowCenter);
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
  zylTestLog log;
  EXPECT_EQ(selection->GetBlocks(boundary), nothing);
  EXPECT_EQ(
    log.CountErrors("No ZYL representation found from selected ParaView representation"), 1);
}

// The index of a cell or a point leads to its values.
TEST_F(zylSelectionRender, IndicesInSurfaces)
{
  zylBoundaryRepresentation* boundary = this->Row->Boundary;
  const auto surfaces = boundary->GetBlockSurfaces({ 2, 3 });
  for (const int x : { 120, 160, 220, 270 })
  {
    const int block = x / 100 + 1;
    auto* surface = vtkPolyData::SafeDownCast(surfaces->GetBlock(block - 1));
    ASSERT_NE(surface, nullptr);
    double picked[3];
    ASSERT_TRUE(this->Row->View->PickPointOnSurface(x, 130, picked));
    const Ids cell = this->Row->View->SelectCells(x, 130, x, 130)->GetCells(boundary);
    ASSERT_EQ(cell.size(), 3u);
    EXPECT_EQ(cell[0], block);
    vtkBoundingBox bounds(surface->GetCell(cell[2])->GetBounds());
    bounds.Inflate(1e-6);
    EXPECT_TRUE(bounds.ContainsPoint(picked)) << x;
    const auto fetched = this->Row->View->SelectCells(x, 130, x, 130)->FetchCells(boundary);
    ASSERT_EQ(fetched.size(), 1u);
    ASSERT_EQ(fetched[0]->GetNumberOfCells(), 1);
    EXPECT_TRUE(vtkBoundingBox(fetched[0]->GetBounds()) ==
      vtkBoundingBox(surface->GetCell(cell[2])->GetBounds()));
    EXPECT_EQ(fetched[0]->GetCellData()->GetArray("quality")->GetTuple1(0),
      surface->GetCellData()->GetArray("quality")->GetTuple1(cell[2]));
    const int corner = x < 200 ? 150 : 250; // where cells meet
    const Ids point =
      this->Row->View->SelectPoints(corner - 2, 148, corner + 2, 152)->GetCells(boundary);
    ASSERT_EQ(point.size(), 3u);
    EXPECT_NEAR(surface->GetPoint(point[2])[0], corner / 100.0, 1e-6);
    EXPECT_NEAR(surface->GetPoint(point[2])[1], 0.5, 1e-6);
  }
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
  scene.Show(300, 3.0, zylRowCenter);
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
  zylTestLog log;
  const Ids cell = view->SelectCells(40, 130, 40, 130)->GetCells(cut);
  ASSERT_EQ(cell.size(), 2u);
  EXPECT_EQ(cell[0], 0);
  EXPECT_EQ(both->GetBlocks(cut), Ids{});
  const auto fetched = view->SelectPoints(50, 149, 50, 151)->FetchCells(cut);
  ASSERT_EQ(fetched.size(), 1u);
  EXPECT_NEAR(fetched[0]->GetPointData()->GetArray("pressure")->GetTuple1(0), 0.5, 1e-6);
  EXPECT_EQ(view->SelectBlocks(40, 130, 40, 130)->GetRepresentations(view).size(), 1u);
  EXPECT_FALSE(log.HasError());
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
  if (ranks > 0 && !zylTestServer::IsAvailable(ranks))
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
    row.Show(300, 3.0, zylRowCenter);
    EXPECT_EQ(row.Blocks(0, 0, 299, 299), (Ids{ 1, 2, 3 }));
    const Ids cell = row.View->SelectCells(260, 160, 260, 160)->GetCells(row.Boundary);
    EXPECT_EQ(ByBlock(cell), (std::map<int, std::set<int>>{ { 3, { 23 } } }));
    const auto fetched = row.View->SelectCells(290, 190, 290, 190)->FetchCells(row.Boundary);
    ASSERT_EQ(fetched.size(), 1u);
    EXPECT_EQ(fetched[0]->GetCellData()->GetArray("quality")->GetTuple1(0), 7.0);
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