#include "zylClipRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylHostTest.h"
#include "zylIntersectionCurveRepresentation.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylView.h"

#include <cmath>

#include <vtkCollection.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMRenderViewProxy.h>

// A view from above on three cubes in a row: cube b (1 ...) covers pixels 100 (b - 1) ... 100 b in
// x. "pressure" is the x coordinate.
class zylDerivedSurface : public zylHostTest
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
  }

  void Show(zylDerivedSurfaceRepresentation* surface)
  {
    const int all[] = { 0 };
    surface->GetProperties()->MakeInt("Blocks", all, 1);
    surface->SetDataSet(this->Data);
    surface->GetSurfaceProperties()->Set("Visibility", true);
    this->View->AddRepresentation(surface);
    this->View->SetViewDir(1, false);
    this->View->ResetCamera(0.0, 3.0, -1.0, 2.0, 0.0, 1.0);
    this->View->SetZoom(std::sqrt(19.0) / 3.0);
  }

  void Draw()
  {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [this] { this->View->Render(); });
  }

  bool Shows(int x) { return !this->Host->PixelIs(x, 150, 0, 0, 255, 10); }

  vtkNew<zylDataSet> Data;
  vtkSmartPointer<zylView> View;
};

TEST_F(zylDerivedSurface, ClipsByScalar)
{
  vtkNew<zylClipRepresentation> clip;
  clip->GetProperties()->Set("ScalarVariable", "pressure");
  clip->GetProperties()->Set("ScalarThreshold", 1.5);
  this->Show(clip);
  this->Draw();
  EXPECT_TRUE(this->Shows(140));
  EXPECT_FALSE(this->Shows(160));
}

TEST_F(zylDerivedSurface, ShowsAgainWhatItsFreedResourcesShowed)
{
  vtkNew<zylClipRepresentation> clip;
  clip->GetProperties()->Set("ScalarVariable", "pressure");
  clip->GetProperties()->Set("ScalarThreshold", 1.5);
  vtkNew<zylCutPlaneRepresentation> cut;
  const double up[] = { 0.0, 0.0, 1.0 };
  cut->GetProperties()->Set("Normal", up, 3);
  cut->GetProperties()->Set("Center", 2, 0.3);
  vtkNew<zylIsosurfaceRepresentation> iso;
  iso->GetProperties()->Set("Variable", "velocity_z");
  iso->GetProperties()->Set("Isovalue", 0.4);
  this->Data->DefineDerivedPointVariable("velocity_z", "velocity[:, 2]");
  vtkNew<zylIntersectionCurveRepresentation> curves;
  curves->GetProperties()->Set("Center", 2, 0.3);
  zylDerivedSurfaceRepresentation* const all[] = { clip, cut, iso, curves };
  for (zylDerivedSurfaceRepresentation* derived : all)
  {
    this->Show(derived);
    double bounds[6];
    ASSERT_TRUE(derived->GetBounds(bounds)) << derived->GetClassName();
    EXPECT_NEAR(bounds[1], derived == clip ? 1.5 : 3.0, 1e-6) << derived->GetClassName();
    const int count = this->View->GetProxy()->GetProperty("Representations")
      ? static_cast<int>(
          vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements())
      : 0;
    for (int i = 0; i < 3; ++i)
    {
      this->Draw();
      EXPECT_TRUE(this->Shows(140)) << derived->GetClassName() << i;
      derived->FreeResources();
      EXPECT_EQ(derived->GetPVRepresentations()->GetNumberOfItems(), 0);
      this->Draw();
      EXPECT_FALSE(this->Shows(140)) << derived->GetClassName() << i;
      derived->Update();
    }
    ASSERT_TRUE(derived->GetBounds(bounds)) << derived->GetClassName();
    EXPECT_NEAR(bounds[1], derived == clip ? 1.5 : 3.0, 1e-6) << derived->GetClassName();
    EXPECT_EQ(count,
      static_cast<int>(
        vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements()));
    this->View->RemoveRepresentation(derived);
  }
}

TEST_F(zylDerivedSurface, DisplaySettingsExecuteNoFilter)
{
  vtkNew<zylCutPlaneRepresentation> cut;
  const double up[] = { 0.0, 0.0, 1.0 };
  cut->GetProperties()->Set("Normal", up, 3);
  cut->GetProperties()->Set("Center", 2, 0.3);
  this->Show(cut);
  this->Draw();
  ASSERT_TRUE(this->Shows(150));
  const double red[] = { 1.0, 0.0, 0.0 };
  cut->GetSurfaceProperties()->Set("Color", red, 3);
  cut->GetSurfaceProperties()->Set("Transparency", 0.0);
  zylTestLog log;
  cut->Update();
  this->Draw();
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 255, 0, 0));
  cut->GetSurfaceProperties()->Set("ColorMode", 1);
  cut->GetSurfaceProperties()->Set("ColorVariableName", "pressure");
  const double range[] = { 0.0, 3.0 };
  cut->GetSurfaceProperties()->Set("ColorMapRange", range, 2);
  cut->Update();
  this->Draw();
  EXPECT_GT(this->Host->Pixel(250, 150)[0], this->Host->Pixel(250, 150)[2]); // cool to warm
  EXPECT_LT(this->Host->Pixel(20, 150)[0], this->Host->Pixel(20, 150)[2]);
  cut->Hide();
  EXPECT_FALSE(cut->IsVisible());
  cut->Update();
  this->Draw();
  EXPECT_FALSE(this->Shows(150));
  cut->Show();
  cut->Update();
  this->Draw();
  EXPECT_TRUE(this->Shows(150));
  for (const char* stage : { "LinearCellPlaneCutter", "MergeBlocks", "ExtractBlock" })
  {
    EXPECT_EQ(log.Count(9, std::string(stage) + ": execute"), 0) << log.Dump();
  }
}

TEST_F(zylDerivedSurface, HighlightsUntilItLeavesTheView)
{
  vtkNew<zylClipRepresentation> clip;
  clip->GetProperties()->Set("ScalarVariable", "pressure");
  clip->GetProperties()->Set("ScalarThreshold", 1.5);
  this->Show(clip);
  clip->Hide();
  clip->Highlight(1);
  clip->Update();
  EXPECT_FALSE(clip->IsVisible());
  EXPECT_EQ(clip->GetPVRepresentations()->GetNumberOfItems(), 2);
  this->Draw();
  EXPECT_TRUE(this->Host->PixelIs(50, 150, 255, 179, 38, 3));
  clip->FreeResources();
  clip->Update();
  this->Draw();
  EXPECT_TRUE(this->Host->PixelIs(50, 150, 255, 179, 38, 3));
  clip->UnHighlight();
  clip->Update();
  this->Draw();
  EXPECT_FALSE(this->Shows(50));
  clip->Highlight(1);
  clip->Update();
  this->View->RemoveRepresentation(clip);
  this->Draw();
  EXPECT_FALSE(this->Shows(50));
  this->View->AddRepresentation(clip);
  this->Draw();
  EXPECT_TRUE(this->Shows(50));
}

// Feature lines are drawn after mesh lines, also where these are shown later.
TEST_F(zylDerivedSurface, DrawsLinesAtOneDepthInTheirOrder)
{
  vtkNew<zylCutPlaneRepresentation> cut;
  const double up[] = { 0.0, 0.0, 1.0 };
  const double green[] = { 0.0, 1.0, 0.0 };
  cut->GetProperties()->Set("Normal", up, 3);
  cut->GetProperties()->Set("Center", 2, 0.3);
  cut->GetFeatureLineProperties()->Set("Color", green, 3);
  cut->GetFeatureLineProperties()->Set("Visibility", true);
  this->Show(cut);
  cut->GetSurfaceProperties()->Set("Visibility", false);
  const auto countGreen = [this, &cut] {
    cut->Update();
    this->Draw();
    int count = 0;
    for (int y = 0; y < 300; ++y)
    {
      count += this->Host->PixelIs(130, y, 0, 255, 0, 10) ? 1 : 0;
    }
    return count;
  };
  const int alone = countGreen();
  EXPECT_GT(alone, 0);
  cut->GetMeshLineProperties()->Set("Visibility", true);
  EXPECT_EQ(countGreen(), alone);
}

TEST_F(zylDerivedSurface, WarpsAndClipsWhatItShows)
{
  vtkNew<zylCutPlaneRepresentation> cut;
  const double up[] = { 0.0, 0.0, 1.0 };
  cut->GetProperties()->Set("Normal", up, 3);
  cut->GetProperties()->Set("Center", 2, 0.5);
  this->Show(cut);
  double bounds[6];
  cut->GetProperties()->Set("WarpByVector", true);
  cut->GetProperties()->Set("WarpVectorVariable", "velocity"); // y, 1 - x, z
  cut->GetProperties()->Set("WarpVectorScale", 2.0);
  cut->Update();
  ASSERT_TRUE(cut->GetBounds(bounds));
  EXPECT_NEAR(bounds[4], 1.5, 1e-6);
  EXPECT_NEAR(bounds[1], 5.0, 1e-6);
  EXPECT_NEAR(cut->GetDerivedSurface()->GetBounds()[5], 0.5, 1e-6);
  cut->GetProperties()->Set("WarpByVector", false);
  cut->SetNumberOfClips(1);
  cut->GetClipProperties(0)->Set("ClipMode", 2);
  cut->GetClipProperties(0)->Set("PlaneCenter", 0, 1.2);
  cut->Update();
  ASSERT_TRUE(cut->GetBounds(bounds));
  EXPECT_NEAR(bounds[1], 1.2, 1e-6);
  EXPECT_NEAR(bounds[5], 0.5, 1e-6);
  EXPECT_NEAR(cut->GetDerivedSurface()->GetBounds()[1], 1.2, 1e-6);
}

TEST_F(zylDerivedSurface, ListsItsRepresentationsInItsOrder)
{
  vtkNew<zylCutPlaneRepresentation> cut;
  const double up[] = { 0.0, 0.0, 1.0 };
  cut->GetProperties()->Set("Normal", up, 3);
  cut->GetProperties()->Set("Center", 2, 0.3);
  cut->GetContourProperties()->Set("Visibility", true);
  cut->GetContourProperties()->Set("ContourVariableName", "pressure");
  cut->GetMeshLineProperties()->Set("Visibility", true);
  cut->GetFeatureLineProperties()->Set("Visibility", true);
  cut->GetVectorGlyphProperties()->Set("Visibility", true);
  cut->GetVectorGlyphProperties()->Set("VectorVariable", "velocity");
  this->Show(cut);
  cut->Highlight(2);
  cut->Update();
  this->Draw();
  auto shown = cut->GetPVRepresentations();
  ASSERT_EQ(shown->GetNumberOfItems(), 6);
  const char* const types[] = { "Surface", "Outline", "Surface", "Feature Edges", "Wireframe",
    "3D Glyphs" };
  for (int i = 0; i < 6; ++i)
  {
    auto* proxy = vtkSMProxy::SafeDownCast(shown->GetItemAsObject(i));
    EXPECT_TRUE(cut->HasRepresentation(proxy));
    EXPECT_STREQ(vtkSMPropertyHelper(proxy, "Representation").GetAsString(), types[i]);
  }
  EXPECT_FALSE(cut->HasRepresentation(nullptr));
}

TEST_F(zylDerivedSurface, ContoursThroughBlocks)
{
  vtkNew<zylIsosurfaceRepresentation> iso;
  iso->GetProperties()->Set("Variable", "pressure");
  iso->GetProperties()->Set("Isovalue", 1.25);
  this->Show(iso);
  double bounds[6];
  ASSERT_TRUE(iso->GetBounds(bounds));
  EXPECT_NEAR(bounds[0], 1.25, 1e-6);
  EXPECT_NEAR(bounds[1], 1.25, 1e-6);
  EXPECT_NEAR(bounds[3] - bounds[2], 1.0, 1e-6);
  auto surface = iso->GetDerivedSurface();
  ASSERT_TRUE(surface);
  EXPECT_GT(surface->GetNumberOfCells(), 0);
}
