#include "zylBoundaryRepresentation.h"

#include "ParaView/zylBlockMapper.h"
#include "zylHostTest.h"
#include "zylTest.h"
#include "zylTestMemory.h"
#include "zylView.h"

#include <vtkCallbackCommand.h>
#include <vtkCellData.h>
#include <vtkCollection.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkPVRepresentedArrayListSettings.h>

namespace {
using Ints = std::vector<int>;

vtkSMProxy* InputOf(vtkSMProxy* proxy)
{
  return vtkSMPropertyHelper(proxy, "Input").GetAsProxy(0);
}

// The ExtractBlock stages of the groups that are shown, by their block ids.
std::vector<Ints> ShownGroups(zylBoundaryRepresentation* boundary)
{
  std::vector<Ints> groups;
  auto collection = boundary->GetPVRepresentations();
  for (int i = 0; i < collection->GetNumberOfItems(); ++i)
  {
    auto* rep = vtkSMProxy::SafeDownCast(collection->GetItemAsObject(i));
    groups.push_back(vtkSMPropertyHelper(InputOf(InputOf(rep)), "BlockIndices").GetIntArray());
  }
  return groups;
}
} // namespace

// A view from above on a row of cubes: cube b (1 ...) covers pixels 100 (b - 1) ... 100 b in x.
class zylBoundary : public zylHostTest
{
protected:
  void Prepare() override
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(3)));
    this->View = zylMakeFlatView();
    this->Boundary->SetDataSet(this->Data);
  }

  void ShowLeaves()
  {
    for (int id = 1; id <= 3; ++id)
    {
      this->Surface(id)->Set("Visibility", true);
    }
    this->View->AddRepresentation(this->Boundary);
    this->View->SetViewDir(1, false);
    this->View->ResetCamera(0.0, 3.0, -1.0, 2.0, 0.0, 1.0);
    this->View->SetZoom(
      std::sqrt(19.0) / 3.0); // the sphere around the box fits; now its width does
  }

  zylPropertyCollection* Surface(int id) { return this->Boundary->GetSurfaceProperties(id); }

  void SetColor(int id, double r, double g, double b)
  {
    zylSet(this->Surface(id), "Color", zylValues{ r, g, b });
  }

  // What is drawn where each cube is: 'b'ackground, 'w'hite, 'r'ed, 'g'reen or '?'.
  std::string Draw()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [this] { this->View->Render(); });
    std::string row;
    for (const int x : { 50, 150, 250 })
    {
      const auto p = this->Host->Pixel(x, 150);
      const auto is = [&p](int r, int g, int b) {
        return std::abs(p[0] - r) < 30 && std::abs(p[1] - g) < 30 && std::abs(p[2] - b) < 30;
      };
      row += is(0, 0, 255)  ? 'b'
        : is(255, 255, 255) ? 'w'
        : is(255, 0, 0)     ? 'r'
        : is(0, 255, 0)     ? 'g'
                            : '?';
    }
    return row;
  }
  std::string Redraw()
  {
    this->Boundary->Update();
    return this->Draw();
  }
  int CountDisplays() { return this->Boundary->GetPVRepresentations()->GetNumberOfItems(); }

  vtkNew<zylDataSet> Data;
  vtkNew<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
};

TEST_F(zylBoundary, DrawsBlocksBySettings)
{
  this->ShowLeaves();
  EXPECT_EQ(this->Draw(), "www");
  EXPECT_EQ(ShownGroups(this->Boundary), std::vector<Ints>({ { 0, 1, 2, 3 } }));

  this->SetColor(2, 1, 0, 0);
  EXPECT_EQ(this->Redraw(), "wrw");
  EXPECT_EQ(this->CountDisplays(), 2);

  this->SetColor(2, 1, 1, 1); // back into the group of the others
  EXPECT_EQ(this->Redraw(), "www");
  EXPECT_EQ(this->CountDisplays(), 1);

  for (int id = 1; id <= 3; ++id)
  {
    this->SetColor(id, 0, 1, 0);
  }
  EXPECT_EQ(this->Redraw(), "ggg");
  const char* const oneAfterAnother[] = { "rgg", "rrg", "rrr" };
  for (int id = 1; id <= 3; ++id)
  {
    this->SetColor(id, 1, 0, 0);
    EXPECT_EQ(this->Redraw(), oneAfterAnother[id - 1]);
  }
}

TEST_F(zylBoundary, HidesAndShowsBlocks)
{
  this->ShowLeaves();
  EXPECT_EQ(zylBounds(this->Boundary)[1], 3.0);
  this->Boundary->Hide(3);
  EXPECT_EQ(this->Redraw(), "wwb");
  EXPECT_EQ(zylBounds(this->Boundary)[1], 2.0);
  EXPECT_TRUE(this->Surface(3)->GetBool("Visibility"));

  this->Boundary->Hide();
  EXPECT_EQ(this->Redraw(), "bbb");
  EXPECT_FALSE(this->Boundary->IsVisible());
  EXPECT_TRUE(zylBounds(this->Boundary).empty());
  EXPECT_TRUE(zylBounds(this->View).empty());

  this->Boundary->Show();
  EXPECT_EQ(this->Redraw(), "www");
}

TEST_F(zylBoundary, OwnSettingsWinOverThoseOfTheRoot)
{
  this->ShowLeaves();
  this->Surface(0)->Set("Visibility", true); // the root's data are all blocks
  this->SetColor(2, 1, 0, 0);
  this->Surface(3)->Set("Visibility", false);
  EXPECT_EQ(this->Redraw(), "wrb");
}

// How often settings are hashed is seen by a property of no known type: every hash prints a line.
TEST_F(zylBoundary, LooksAtChangedBlocksOnly)
{
  this->ShowLeaves();
  for (int id = 1; id <= 3; ++id)
  {
    zylProperty* odd = this->Surface(id)->MakeInt("Odd", 0);
    zylConsole([odd] { odd->SetPropertyType(zylProperty::PropertyType(9)); });
  }
  const auto hashes = [this](const std::function<void()>& change) {
    change();
    const std::string printed = zylConsole([this] { this->Boundary->Update(); });
    int count = 0;
    for (std::size_t at = 0; (at = printed.find("PropertyType 9", at)) != printed.npos; ++at)
    {
      ++count;
    }
    return count;
  };
  EXPECT_EQ(hashes([] {}), 3);
  const struct
  {
    std::function<void()> Change;
    int Hashes;
    const char* Row;
  } changes[] = {
    { [] {}, 0, "www" },
    { [this] { this->SetColor(2, 1, 0, 0); }, 1, "wrw" },
    { [this] { this->Boundary->Hide(1); }, 1, "brw" },
    { [this] { this->Surface(3)->GetProperty("Color")->SetElement(1, 0.0); }, 1, "br?" },
    { [this] { this->Surface(3)->GetProperty("Color")->SetElement(2, 0.0); }, 1, "brr" },
    { [this] { this->Surface(1)->DeepCopy(this->Surface(2)); }, 1, "rrr" },
    { [this] { this->Boundary->FreeResources(), this->Boundary->Hide(2); }, 1, "rbr" },
    { [this] { this->View->Update(); }, 0, "rbr" },
  };
  for (const auto& row : changes)
  {
    EXPECT_EQ(hashes(row.Change), row.Hashes) << row.Row;
    EXPECT_EQ(this->Draw(), row.Row);
  }
}

TEST_F(zylBoundary, HighlightsBlocks)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 3, 1 }, 1);
  zylPropertyCollection* highlight = this->Boundary->GetHighlightProperties();
  zylSet(highlight, "Color", zylValues{ 1, 0, 0 });
  EXPECT_EQ(this->Redraw()[1], 'w');
  EXPECT_EQ(this->CountDisplays(), 2);

  this->Boundary->UnHighlight({ 7 });
  EXPECT_EQ(highlight->GetProperty("BlockVisibility")->GetIntElement(0), 1); // ascending now
  this->Boundary->Highlight({}, 2);
  EXPECT_TRUE(highlight->GetBool("Visibility"));
  EXPECT_EQ(highlight->GetProperty("BlockVisibility")->GetNumberOfElements(), 0u);
  this->Boundary->Highlight({ 1 }, 1);
  this->Boundary->UnHighlight({ 1 });
  EXPECT_FALSE(highlight->GetBool("Visibility"));
  EXPECT_EQ(this->Redraw(), "www");

  // Alone: only the highlighted block is drawn, and the root stands for all.
  this->Boundary->Hide();
  this->Boundary->Highlight({ 2 }, 1);
  EXPECT_EQ(this->Redraw(), "brb");
  this->Boundary->Highlight({ 0 }, 1);
  EXPECT_EQ(this->Redraw(), "rrr");
  this->Boundary->ClearHighlights();
  EXPECT_EQ(this->Redraw(), "bbb");
}

TEST_F(zylBoundary, ClipsWhatIsDrawn)
{
  this->ShowLeaves();
  this->Boundary->SetNumberOfClips(1);
  zylPropertyCollection* clip = this->Boundary->GetClipProperties(0);
  zylSet(clip, "ClipMode", 2, "PlaneCenter", zylValues{ 2, 0, 0 });
  EXPECT_EQ(this->Redraw(), "wwb");
  clip->Set("Invert", false);
  EXPECT_EQ(this->Redraw(), "bbw");
  this->Boundary->SetNumberOfClips(0);
  EXPECT_EQ(this->Redraw(), "www");
  EXPECT_EQ(this->Boundary->GetClipProperties(0), nullptr);
}

TEST_F(zylBoundary, ColorsByAVariable)
{
  this->ShowLeaves();
  for (int id = 1; id <= 3; ++id)
  {
    zylSet(this->Surface(id), "ColorMode", 1, "ColorVariableName", "pressure", "ColorMapRange",
      zylValues{ 0, 3 });
  }
  this->Redraw();
  const auto left = this->Host->Pixel(20, 150);
  const auto right = this->Host->Pixel(280, 150);
  EXPECT_GT(left[2], left[0] + 50);   // blue
  EXPECT_GT(right[0], right[2] + 50); // red
  auto information = this->Boundary->GetSurfaceColorVariableInformation(1);
  ASSERT_NE(information, nullptr);
  EXPECT_EQ(information->GetName(), "pressure");
  EXPECT_EQ(this->Boundary->GetContourColorVariableInformation(1), nullptr);
}

// Filling the vertex buffers must not look through all blocks for each of them.
TEST_F(zylBoundary, FillsBuffersInOneSearch)
{
  const auto searches = [this] {
    const int before = zylBlockMapper::GetNumberOfSearches();
    this->Redraw();
    return zylBlockMapper::GetNumberOfSearches() - before;
  };
  for (int id = 1; id <= 3; ++id)
  {
    zylSet(this->Surface(id), "ColorMode", 1, "ColorVariableName", "pressure");
  }
  this->ShowLeaves();
  EXPECT_EQ(searches(), 1);
  EXPECT_EQ(searches(), 0);
  this->Boundary->Hide(2);
  EXPECT_EQ(searches(), 0);
  this->Boundary->Show(2);
  this->Surface(3)->Set("ColorMapName", "Rainbow Uniform"); // two pipelines from now on
  EXPECT_EQ(searches(), 1);
  this->Surface(3)->Set("ColorVariableName", "quality"); // of cells: never by texture
  EXPECT_EQ(searches(), 1);
}

TEST_F(zylBoundary, DrawsArrowsOfVisibleBlocksOnly)
{
  this->ShowLeaves();
  this->Boundary->Hide();
  const auto drawn = [this](int b) {
    int pixels = 0;
    for (int i = 0; i < 400; ++i)
    {
      pixels += !this->Host->PixelIs(100 * b - 90 + i % 20 * 4, 110 + i / 20 * 4, 0, 0, 255);
    }
    return pixels > 0;
  };
  for (const bool outer : { true, false })
  {
    for (int id = 1; id <= 3; ++id)
    {
      zylSet(this->Boundary->GetVectorGlyphProperties(id), "ForceHidden", false, "Visibility",
        (id != 2) == outer, "VectorVariable", "velocity", "ScaleFactor", 0.5);
    }
    const std::string row = this->Redraw();
    for (int id = 1; id <= 3; ++id)
    {
      // Arrows reach less than half a block into the neighbors.
      EXPECT_TRUE((id != 2) == outer ? drawn(id) : row[id - 1] == 'b') << id;
    }
  }
}

TEST_F(zylBoundary, FetchesSurfaces)
{
  auto surfaces = this->Boundary->GetBlockSurfaces({ 2 });
  ASSERT_NE(surfaces, nullptr);
  ASSERT_EQ(surfaces->GetNumberOfBlocks(), 3u);
  EXPECT_EQ(surfaces->GetBlock(0), nullptr);
  auto* cube = vtkPolyData::SafeDownCast(surfaces->GetBlock(1));
  ASSERT_NE(cube, nullptr);
  EXPECT_EQ(cube->GetNumberOfCells(), 24);
}

TEST_F(zylBoundary, FollowsTheDataset)
{
  this->ShowLeaves();
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(5)));
  EXPECT_EQ(this->Surface(5), nullptr);
  this->Boundary->Update();
  ASSERT_NE(this->Surface(5), nullptr);
  this->Surface(5)->Set("Visibility", true);
  this->Redraw();
  EXPECT_EQ(zylBounds(this->Boundary)[1], 5.0);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(1)));
  EXPECT_EQ(this->Redraw(), "wbb");
}

TEST_F(zylBoundary, LeavesNothingBehind)
{
  this->ShowLeaves();
  this->Draw();
  this->View->RemoveRepresentation(this->Boundary);
  EXPECT_EQ(this->Draw(), "bbb");
  const std::string before = zylRegisteredProxies();
  for (int i = 0; i < 5; ++i)
  {
    vtkNew<zylBoundaryRepresentation> other;
    other->SetDataSet(this->Data);
    other->GetSurfaceProperties(1)->Set("Visibility", true);
    other->GetMeshLineProperties(2)->Set("Visibility", true);
    zylSet(other->GetContourProperties(2), "Visibility", true, "ContourVariableName", "pressure");
    other->SetNumberOfClips(2);
    other->GetClipProperties(1)->Set("ClipMode", 5);
    this->View->AddRepresentation(other);
    this->View->Render();
    other->FreeResources();
    other->Update();
    this->View->Render();
    this->View->RemoveRepresentation(other);
  }
  EXPECT_EQ(zylRegisteredProxies(), before);
  this->View->AddRepresentation(this->Boundary); // the settings are still there
  EXPECT_EQ(this->Draw(), "www");
}

// Views and representations follow the settings of the session, which live longer.
TEST_F(zylBoundary, LeavesNothingWithTheSettings)
{
  this->ShowLeaves();
  const auto round = [this] {
    vtkNew<zylView> view;
    vtkNew<zylBoundaryRepresentation> other;
    other->SetDataSet(this->Data);
    other->GetSurfaceProperties(1)->Set("Visibility", true);
    view->AddRepresentation(other);
    view->RemoveRepresentation(other);
  };
  const auto observers = [] {
    auto* settings = vtkPVRepresentedArrayListSettings::GetInstance();
    vtkNew<vtkCallbackCommand> last;
    const unsigned long end = settings->AddObserver(vtkCommand::NoEvent, last);
    settings->RemoveObserver(end);
    int count = 0;
    for (unsigned long tag = 0; tag < end; ++tag)
    {
      count += settings->HasObserver(vtkCommand::ModifiedEvent, settings->GetCommand(tag));
    }
    return count;
  };
  round();
  const int before = observers();
  constexpr int rounds = 10;
  long kilobytes = 0;
  for (int i = 0; i < 2 * rounds; ++i)
  {
    round();
    kilobytes = i < rounds ? zylTestMemory::GetAllocated() : kilobytes;
  }
  EXPECT_EQ(observers(), before);
  // The session itself keeps some 8 kB: the numbers of all proxies that it ever had.
  EXPECT_LT((zylTestMemory::GetAllocated() - kilobytes) / rounds, 12);
}

TEST_F(zylBoundary, DrawsNothingWithoutADataset)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 1 }, 1);
  EXPECT_EQ(this->Redraw(), "?ww");
  this->Boundary->SetDataSet(nullptr);
  EXPECT_EQ(this->Draw(), "bbb");
  EXPECT_TRUE(zylBounds(this->Boundary).empty());
  EXPECT_EQ(this->Redraw(), "bbb");

  // The tree of a dataset that is gone is no longer looked at.
  this->Boundary->SetDataSet(this->Data);
  this->ShowLeaves();
  this->Boundary->SetDataSet(zylLoad(zylTestData::MakeRow(2)));
  this->Surface(2)->Set("Visibility", true);
  this->Boundary->Update();
  this->Boundary->SetDataSet(this->Data);
  zylBounds(this->Boundary);
  this->Surface(3)->Set("Visibility", true);
  this->Boundary->Update();
  this->Boundary->ClearHighlights();
  EXPECT_EQ(this->Redraw(), "bbw");
}

TEST_F(zylBoundary, SurvivesClearedSettings)
{
  this->ShowLeaves();
  this->Surface(2)->Clear();
  this->Boundary->GetHighlightProperties()->Clear();
  EXPECT_EQ(this->Redraw(), "wbw");
  this->Surface(2)->MakeBool("Visibility", true);
  this->Boundary->Highlight({ 1 }, 1);
  EXPECT_EQ(this->Redraw(), "?ww"); // orange
}

TEST_F(zylBoundary, InnerNodesCostNothing)
{
  this->Surface(0)->Set("Visibility", true);
  this->View->AddRepresentation(this->Boundary);
  EXPECT_FALSE(this->Boundary->IsVisible());
  EXPECT_EQ(this->CountDisplays(), 0);
}

// A new group of blocks is made after the highlight, and would be seen in its place.
TEST_F(zylBoundary, TheHighlightIsOnTop)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 2 }, 1);
  this->Boundary->Update();
  this->SetColor(2, 0, 1, 0);
  EXPECT_EQ(this->Redraw(), "w?w");
}

// Blocks in the same place: the last one is seen, wherever the toolkit has put its data.
TEST_F(zylBoundary, TheLastBlockIsOnTop)
{
  const int count = 16;
  const auto blocks = zylTestData::MakeRow(count, 1);
  for (int b = 0; b < count; ++b)
  {
    auto* cube = vtkDataSet::SafeDownCast(blocks->GetBlock(b));
    cube->ShallowCopy(zylTestData::MakeCube(0.0, 0.0, 0.0, 1));
    cube->GetCellData()->GetArray("quality")->Fill(b);
  }
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(blocks));
  this->Boundary->SetDataSet(this->Data);
  const double range[2] = { -1.0, count };
  for (int id = 1; id <= count; ++id)
  {
    this->Surface(id)->Set("Visibility", true);
    this->Surface(id)->Set("ColorMode", 1);
    this->Surface(id)->Set("ColorVariableName", "quality");
    this->Surface(id)->Set("ColorMapName", "Grayscale");
    this->Surface(id)->Set("ColorMapRange", range, 2);
  }
  this->ShowLeaves();
  int above = 256;
  for (int id = count; id >= 1; --id)
  {
    this->Draw();
    const int shade = this->Host->Pixel(50, 150)[1];
    EXPECT_LT(shade, above) << id;
    above = shade;
    this->Boundary->Hide(id);
    this->Boundary->Update();
  }
  EXPECT_EQ(this->Draw().front(), 'b');
}

TEST_F(zylBoundary, DoesNothingWithoutADataset)
{
  vtkNew<zylBoundaryRepresentation> empty;
  empty->Update();
  empty->Highlight({ 1 }, 1);
  empty->Show();
  empty->Hide(3);
  EXPECT_EQ(empty->GetSurfaceProperties(0), nullptr);
  EXPECT_EQ(empty->GetBlockSurfaces({ 1 }), nullptr);
  EXPECT_EQ(empty->GetSurfaceColorVariableInformation(0), nullptr);
  EXPECT_FALSE(empty->IsVisible());
  EXPECT_EQ(empty->GetPVRepresentations()->GetNumberOfItems(), 0);
  EXPECT_FALSE(empty->HasRepresentation(nullptr));
  EXPECT_EQ(this->Surface(99), nullptr);
  this->View->AddRepresentation(empty);
  this->View->AddRepresentation(empty);
  this->Draw();
}
