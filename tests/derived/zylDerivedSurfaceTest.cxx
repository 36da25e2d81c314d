#include "zylClipRepresentation.h"
#include "zylDataSet.h"
#include "zylHostTest.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylView.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>

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
