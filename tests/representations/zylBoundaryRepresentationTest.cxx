#include "zylBoundaryRepresentation.h"

#include "ParaView/zylBlockMapper.h"
#include "zylArrayInformation.h"
#include "zylDataSet.h"
#include "zylHostTest.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <functional>

#include <vtkCollection.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>

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
  void SetUp() override
  {
    zylHostTest::SetUp();
    if (!this->Host)
    {
      return;
    }
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(3)));
    this->View = vtkSmartPointer<zylView>::New();
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(300, 300);
    this->View->GetLightKitProperties()->Set("UseLight", false);
    this->View->Update();
    this->View->SetParallelProjection(true);
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
    const double color[3] = { r, g, b };
    this->Surface(id)->Set("Color", color, 3);
  }

  void Draw()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [this] { this->View->Render(); });
  }

  // What is drawn where cube `b` is: 'b'ackground, 'w'hite, 'r'ed, 'g'reen or '?'.
  char At(int b)
  {
    const auto p = this->Host->Pixel(100 * b - 50, 150);
    const auto is = [&p](int r, int g, int bl) {
      return std::abs(p[0] - r) < 30 && std::abs(p[1] - g) < 30 && std::abs(p[2] - bl) < 30;
    };
    return is(0, 0, 255)  ? 'b'
      : is(255, 255, 255) ? 'w'
      : is(255, 0, 0)     ? 'r'
      : is(0, 255, 0)     ? 'g'
                          : '?';
  }
  std::string Row() { return { this->At(1), this->At(2), this->At(3) }; }

  vtkNew<zylDataSet> Data;
  vtkNew<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
};

TEST_F(zylBoundary, DrawsBlocksBySettings)
{
  this->ShowLeaves();
  this->Draw();
  EXPECT_EQ(this->Row(), "www");
  EXPECT_EQ(ShownGroups(this->Boundary), std::vector<Ints>({ { 0, 1, 2, 3 } }));

  this->SetColor(2, 1, 0, 0);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wrw");
  EXPECT_EQ(this->Boundary->GetPVRepresentations()->GetNumberOfItems(), 2);

  this->SetColor(2, 1, 1, 1); // back into the group of the others
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "www");
  EXPECT_EQ(this->Boundary->GetPVRepresentations()->GetNumberOfItems(), 1);

  for (int id = 1; id <= 3; ++id)
  {
    this->SetColor(id, 0, 1, 0);
  }
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "ggg");
}

TEST_F(zylBoundary, RecolorsOneBlockAfterAnother)
{
  this->ShowLeaves();
  const char* expected[] = { "rww", "rrw", "rrr" };
  for (int id = 1; id <= 3; ++id)
  {
    this->SetColor(id, 1, 0, 0);
    this->Boundary->Update();
    this->Draw();
    EXPECT_EQ(this->Row(), expected[id - 1]);
  }
}

TEST_F(zylBoundary, HidesAndShowsBlocks)
{
  this->ShowLeaves();
  double bounds[6];
  EXPECT_TRUE(this->Boundary->GetBounds(bounds));
  EXPECT_EQ(bounds[1], 3.0);

  this->Boundary->Hide(3);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wwb");
  EXPECT_TRUE(this->Boundary->GetBounds(bounds));
  EXPECT_EQ(bounds[1], 2.0);
  EXPECT_TRUE(this->Surface(3)->GetBool("Visibility"));

  this->Boundary->Hide();
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "bbb");
  EXPECT_FALSE(this->Boundary->IsVisible());
  EXPECT_FALSE(this->Boundary->GetBounds(bounds));
  EXPECT_FALSE(this->View->GetBounds(bounds));
  EXPECT_EQ(bounds[0], 1.0);

  this->Boundary->Show();
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "www");
}

TEST_F(zylBoundary, OwnSettingsWinOverThoseOfTheRoot)
{
  this->ShowLeaves();
  this->Surface(0)->Set("Visibility", true); // the root's data are all blocks
  this->SetColor(2, 1, 0, 0);
  this->Surface(3)->Set("Visibility", false);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wrb");
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
  EXPECT_EQ(hashes([] {}), 0);
  EXPECT_EQ(hashes([this] { this->SetColor(2, 1, 0, 0); }), 1);
  this->Draw();
  EXPECT_EQ(this->Row(), "wrw");
  EXPECT_EQ(hashes([this] { this->Boundary->Hide(1); }), 1);
  this->Draw();
  EXPECT_EQ(this->Row(), "brw");
  EXPECT_EQ(hashes([this] { this->Surface(3)->GetProperty("Color")->SetElement(1, 0.0); }), 1);
  EXPECT_EQ(hashes([this] { this->Surface(3)->GetProperty("Color")->SetElement(2, 0.0); }), 1);
  this->Draw();
  EXPECT_EQ(this->Row(), "brr");
  EXPECT_EQ(hashes([this] { this->Surface(1)->DeepCopy(this->Surface(2)); }), 1);
  this->Draw();
  EXPECT_EQ(this->Row(), "rrr");
  EXPECT_EQ(hashes([this] {
    this->Boundary->FreeResources();
    this->Boundary->Hide(2);
  }),
    1);
  this->Draw();
  EXPECT_EQ(this->Row(), "rbr");
  EXPECT_EQ(hashes([this] { this->View->Update(); }), 0);
}

TEST_F(zylBoundary, HighlightsBlocks)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 3, 1 }, 1);
  zylPropertyCollection* highlight = this->Boundary->GetHighlightProperties();
  const double red[3] = { 1, 0, 0 };
  highlight->Set("Color", red, 3);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->At(2), 'w');
  EXPECT_EQ(this->Boundary->GetPVRepresentations()->GetNumberOfItems(), 2);

  this->Boundary->UnHighlight({ 7 });
  EXPECT_EQ(highlight->GetProperty("BlockVisibility")->GetIntElement(0), 1); // ascending now
  this->Boundary->Highlight({}, 2);
  EXPECT_TRUE(highlight->GetBool("Visibility"));
  EXPECT_EQ(highlight->GetProperty("BlockVisibility")->GetNumberOfElements(), 0u);
  this->Boundary->Highlight({ 1 }, 1);
  this->Boundary->UnHighlight({ 1 });
  EXPECT_FALSE(highlight->GetBool("Visibility"));
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "www");

  // Alone: only the highlighted block is drawn, and the root stands for all.
  this->Boundary->Hide();
  this->Boundary->Highlight({ 2 }, 1);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "brb");
  this->Boundary->Highlight({ 0 }, 1);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "rrr");
  this->Boundary->ClearHighlights();
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "bbb");
}

TEST_F(zylBoundary, ClipsWhatIsDrawn)
{
  this->ShowLeaves();
  this->Boundary->SetNumberOfClips(1);
  zylPropertyCollection* clip = this->Boundary->GetClipProperties(0);
  const double center[3] = { 2, 0, 0 };
  clip->Set("ClipMode", 2);
  clip->Set("PlaneCenter", center, 3);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wwb");
  clip->Set("Invert", false);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "bbw");
  this->Boundary->SetNumberOfClips(0);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "www");
  EXPECT_EQ(this->Boundary->GetClipProperties(0), nullptr);
}

TEST_F(zylBoundary, ColorsByAVariable)
{
  this->ShowLeaves();
  const double range[2] = { 0, 3 };
  for (int id = 1; id <= 3; ++id)
  {
    this->Surface(id)->Set("ColorMode", 1);
    this->Surface(id)->Set("ColorVariableName", "pressure");
    this->Surface(id)->Set("ColorMapRange", range, 2);
  }
  this->Boundary->Update();
  this->Draw();
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
    this->Boundary->Update();
    this->Draw();
    return zylBlockMapper::GetNumberOfSearches() - before;
  };
  for (int id = 1; id <= 3; ++id)
  {
    this->Surface(id)->Set("ColorMode", 1);
    this->Surface(id)->Set("ColorVariableName", "pressure");
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
  for (int id = 1; id <= 3; ++id)
  {
    zylPropertyCollection* glyphs = this->Boundary->GetVectorGlyphProperties(id);
    glyphs->Set("ForceHidden", false);
    glyphs->Set("Visibility", id != 2);
    glyphs->Set("VectorVariable", "velocity");
    glyphs->Set("ScaleFactor", 0.5);
  }
  this->Boundary->Update();
  this->Draw();
  const auto drawn = [this](int b) {
    int pixels = 0;
    for (int x = 100 * b - 90; x < 100 * b - 10; x += 4)
    {
      for (int y = 110; y < 190; y += 4)
      {
        pixels += !this->Host->PixelIs(x, y, 0, 0, 255);
      }
    }
    return pixels > 0;
  };
  EXPECT_TRUE(drawn(1));
  EXPECT_TRUE(drawn(3));
  // Arrows of the neighbors reach less than half a block into the middle one.
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 0, 0, 255));
  this->Boundary->GetVectorGlyphProperties(2)->Set("Visibility", true);
  this->Boundary->GetVectorGlyphProperties(1)->Set("Visibility", false);
  this->Boundary->GetVectorGlyphProperties(3)->Set("Visibility", false);
  this->Boundary->Update();
  this->Draw();
  EXPECT_TRUE(drawn(2));
  EXPECT_TRUE(this->Host->PixelIs(50, 150, 0, 0, 255));
  EXPECT_TRUE(this->Host->PixelIs(250, 150, 0, 0, 255));
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
  this->Boundary->Update();
  this->Draw();
  double bounds[6];
  EXPECT_TRUE(this->Boundary->GetBounds(bounds));
  EXPECT_EQ(bounds[1], 5.0);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(1)));
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wbb");
}

TEST_F(zylBoundary, LeavesNothingBehind)
{
  this->ShowLeaves();
  this->Draw();
  auto* manager = this->View->GetProxy()->GetSessionProxyManager();
  const auto count = [manager] {
    unsigned int total = 0;
    for (const char* group : { "representations", "sources", "filters", "lookup_tables",
           "scalar_bars", "piecewise_functions" })
    {
      total += manager->GetNumberOfProxies(group);
    }
    return total;
  };
  this->View->RemoveRepresentation(this->Boundary);
  this->Draw();
  EXPECT_EQ(this->Row(), "bbb");
  const unsigned int before = count();
  for (int i = 0; i < 5; ++i)
  {
    vtkNew<zylBoundaryRepresentation> other;
    other->SetDataSet(this->Data);
    other->GetSurfaceProperties(1)->Set("Visibility", true);
    other->GetMeshLineProperties(2)->Set("Visibility", true);
    other->GetContourProperties(2)->Set("Visibility", true);
    other->GetContourProperties(2)->Set("ContourVariableName", "pressure");
    other->SetNumberOfClips(2);
    other->GetClipProperties(1)->Set("ClipMode", 5);
    this->View->AddRepresentation(other);
    this->View->Render();
    other->FreeResources();
    other->Update();
    this->View->Render();
    this->View->RemoveRepresentation(other);
  }
  EXPECT_EQ(count(), before);
  this->View->AddRepresentation(this->Boundary); // the settings are still there
  this->Draw();
  EXPECT_EQ(this->Row(), "www");
}

TEST_F(zylBoundary, DrawsNothingWithoutADataset)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 1 }, 1);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->At(2), 'w');
  this->Boundary->SetDataSet(nullptr);
  this->Draw();
  EXPECT_EQ(this->Row(), "bbb");
  double bounds[6];
  EXPECT_FALSE(this->Boundary->GetBounds(bounds));
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "bbb");

  // The tree of a dataset that is gone is no longer looked at.
  this->Boundary->SetDataSet(this->Data);
  this->ShowLeaves();
  {
    vtkNew<zylDataSet> other;
    ASSERT_TRUE(other->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
    this->Boundary->SetDataSet(other);
    this->Surface(2)->Set("Visibility", true);
    this->Boundary->Update();
    this->Boundary->SetDataSet(this->Data);
  }
  this->Boundary->GetBounds(bounds);
  this->Surface(3)->Set("Visibility", true);
  this->Boundary->Update();
  this->Boundary->ClearHighlights();
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "bbw");
}

TEST_F(zylBoundary, SurvivesClearedSettings)
{
  this->ShowLeaves();
  this->Surface(2)->Clear();
  this->Boundary->GetHighlightProperties()->Clear();
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "wbw");
  this->Surface(2)->MakeBool("Visibility", true);
  this->Boundary->Highlight({ 1 }, 1);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "?ww"); // orange
}

TEST_F(zylBoundary, InnerNodesCostNothing)
{
  this->Surface(0)->Set("Visibility", true);
  this->View->AddRepresentation(this->Boundary);
  EXPECT_FALSE(this->Boundary->IsVisible());
  EXPECT_EQ(this->Boundary->GetPVRepresentations()->GetNumberOfItems(), 0);
}

// A new group of blocks is made after the highlight, and would be seen in its place.
TEST_F(zylBoundary, TheHighlightIsOnTop)
{
  this->ShowLeaves();
  this->Boundary->Highlight({ 2 }, 1);
  this->Boundary->Update();
  this->SetColor(2, 0, 1, 0);
  this->Boundary->Update();
  this->Draw();
  EXPECT_EQ(this->Row(), "w?w");
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
