#include "zylDataSet.h"
#include "zylFlowData.h"
#include "zylHostTest.h"
#include "zylPropertyCollection.h"
#include "zylStreamlineRepresentation.h"
#include "zylView.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>

class zylFlowRender : public zylHostTest
{
};

//--------------------------------------------------------------------------------------------------
// A green line along x through the middle of the picture, with one large red sphere on it.
TEST_F(zylFlowRender, DrawsLinesAndGlyphs)
{
  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->InitializeFromVTKDataSet(zylFlowData::Make(zylFlowData::Uniform)));
  auto view = vtkSmartPointer<zylView>::New();
  view->SetSourceFBO(0);
  view->SetWindowSize(300, 300);
  view->GetLightKitProperties()->Set("UseLight", false);
  view->Update();
  view->SetParallelProjection(true);
  vtkNew<zylStreamlineRepresentation> lines;
  zylPropertyCollection* shown = lines->GetSurfaceProperties();
  const double green[] = { 0.0, 1.0, 0.0 };
  const double red[] = { 1.0, 0.0, 0.0 };
  shown->Set("Visibility", true);
  shown->Set("Color", green, 3);
  shown->Set("TubeRadius", 5.0);
  shown->Set("GlyphVisibility", true);
  shown->Set("GlyphColor", red, 3);
  lines->GetProperties()->Set("GlyphSpaceEvenly", true);
  lines->GetProperties()->Set("GlyphSpacing", 1.2); // at -0.6 and 0.6
  lines->GetProperties()->Set("GlyphScaleFactor", 0.5);
  zylFlowData::Trace(lines, data, { 0.0, 0.0, 0.0 });
  view->AddRepresentation(lines);
  view->SetViewDir(1, false);
  view->ResetCamera(-1.0, 1.0, -1.0, 1.0, -1.0, 1.0);
  const auto draw = [&] {
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->Unchanged("Render", [&] { view->Render(); });
  };
  const auto count = [this](int red, int green) {
    int pixels = 0;
    for (int i = 0; i < 300 * 300; i += 7)
    {
      const auto p = this->Host->Pixel(i % 300, i / 300);
      pixels += p[2] < 50 && (p[0] > 100) == (red > 0) && (p[1] > 100) == (green > 0) ? 1 : 0;
    }
    return pixels;
  };
  draw();
  EXPECT_GT(count(1, 0), 50);
  EXPECT_GT(count(0, 1), 20);
  shown->Set("GlyphVisibility", false);
  lines->Update();
  draw();
  EXPECT_EQ(count(1, 0), 0);
  EXPECT_GT(count(0, 1), 20);
  shown->Set("GlyphVisibility", true);
  shown->Set("Visibility", false); // the glyphs alone
  lines->Update();
  draw();
  EXPECT_GT(count(1, 0), 50);
  EXPECT_EQ(count(0, 1), 0);
  shown->Set("Visibility", true);
  lines->Hide();
  lines->Update();
  draw();
  EXPECT_EQ(count(1, 0) + count(0, 1), 0);
  lines->Show();
  lines->Update();
  draw();
  EXPECT_GT(count(1, 0), 50);
  lines->FreeResources();
  draw();
  EXPECT_EQ(count(1, 0) + count(0, 1), 0);
  lines->Update();
  draw();
  EXPECT_GT(count(1, 0), 50);
  EXPECT_GT(count(0, 1), 20);
}
