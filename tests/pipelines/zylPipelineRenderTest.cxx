// What the pipelines draw.
#include "zylContourPipeline.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylHostTest.h"
#include "zylMeshLinePipeline.h"
#include "zylPipelineFixture.h"
#include "zylSurfacePipeline.h"
#include "zylTest.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

#include <cstdlib>

#include <vtkLogger.h>

// Three cubes side by side in front of the host's blue, seen from the front. The view's x runs to
// the right; block 2 is in the middle.
class zylPipelineRender : public zylHostTest
{
protected:
  void Prepare() override
  {
    this->View = zylMakeView();
    this->Surfaces = std::make_unique<zylSurfaces>(zylTestData::MakeRow(3, 4));
    this->View->SetParallelProjection(true);
    this->View->SetViewDir(1, false);
    this->View->ResetCamera(0, 3, -1, 2, 0, 1);
  }

  void TearDown() override
  {
    this->View = nullptr;
    zylHostTest::TearDown();
  }

  void Draw(zylPipeline* pipeline, const char* name)
  {
    pipeline->Update(this->View);
    this->Host->Clear(0.0f, 0.0f, 1.0f);
    this->View->Render();
    if (const char* folder = std::getenv("ZYL_TEST_PICTURES"))
    {
      this->Host->WritePicture(std::string(folder) + "/" + name + ".png");
    }
  }

  // Pixels between two columns that are not the host's blue.
  int Drawn(int left, int right)
  {
    int count = 0;
    for (int y = 0; y < 300; y += 2)
    {
      for (int x = left; x < right; x += 2)
      {
        count += !this->Host->PixelIs(x, y, 0, 0, 255);
      }
    }
    return count;
  }

  std::unique_ptr<zylSurfaces> Surfaces;
  vtkSmartPointer<zylView> View;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineRender, SurfaceByBlockAndColor)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  zylSet(settings, "Color", zylValues{ 1, 0, 0 });
  zylShow(pipeline, *this->Surfaces, { 1, 3 });
  this->Draw(pipeline, "surface_blocks_1_3");
  const auto left = this->Host->Pixel(80, 150);
  EXPECT_GT(left[0], 180);
  EXPECT_LT(left[1], 20);
  EXPECT_TRUE(this->Host->PixelIs(150, 150, 0, 0, 255)); // block 2 is hidden

  zylSetBlocks(pipeline, { 1, 0, 2, 1, 3, 0 });
  this->Draw(pipeline, "surface_block_2");
  EXPECT_TRUE(this->Host->PixelIs(80, 150, 0, 0, 255));
  EXPECT_GT(this->Host->Pixel(150, 150)[0], 180);

  zylSet(settings, "ColorMode", 1, "ColorVariableName", "pressure", "ColorMapName", "Grayscale",
    "ColorMapRange", zylValues{ 0, 3 }, "ColorLegendVisibility", true);
  zylSetBlocks(pipeline, { 1, 1, 2, 1, 3, 1 });
  this->Draw(pipeline, "surface_pressure");
  EXPECT_LT(this->Host->Pixel(60, 150)[0], 70);
  EXPECT_NEAR(this->Host->Pixel(150, 150)[0], 128, 30);
  EXPECT_GT(this->Host->Pixel(235, 150)[0], 160);

  settings->Set("ForceHidden", true);
  this->Draw(pipeline, "surface_hidden");
  EXPECT_EQ(this->Drawn(0, 300), 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineRender, StylesAndTransparency)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  zylShow(pipeline, *this->Surfaces, { 1, 2, 3 });
  settings->Set("Transparency", 0.75);
  this->Draw(pipeline, "surface_transparent");
  const auto seen = this->Host->Pixel(150, 150);
  EXPECT_GT(seen[2], 200);
  EXPECT_GT(seen[0], 30);
  EXPECT_LT(seen[0], 200);
  const int solid = this->Drawn(0, 300);
  zylSet(settings, "Transparency", 0.0, "DisplayStyle", 1, "PointRadius", 4.0);
  this->Draw(pipeline, "surface_points");
  const int points = this->Drawn(0, 300);
  EXPECT_GT(points, 20);
  EXPECT_LT(points, solid / 2);
  zylSet(settings, "DisplayStyle", 2, "PointGaussianRadius", 0.1);
  zylSetBlocks(pipeline, { 1, 1, 2, 0, 3, 1 });
  this->Draw(pipeline, "surface_gaussians_1_3");
  EXPECT_EQ(this->Drawn(130, 170), 0);
  zylSetBlocks(pipeline, { 1, 1, 2, 1, 3, 1 });
  this->Draw(pipeline, "surface_gaussians");
  EXPECT_GT(this->Drawn(0, 300), points);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineRender, ContoursOfTheVisibleBlocks)
{
  vtkNew<zylContourPipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  // At 0.5, 1.5, 2.5: one line in each cube.
  zylSet(settings, "ContourVariableName", "pressure", "ContourRange", zylValues{ 0.5, 2.5 },
    "NumberOfContours", 3, "TubeRadius", 2.0);
  zylShow(pipeline, *this->Surfaces, { 1, 2, 3 });
  this->Draw(pipeline, "contours");
  EXPECT_GT(this->Drawn(0, 100), 10);
  EXPECT_GT(this->Drawn(110, 190), 10);
  EXPECT_GT(this->Drawn(200, 300), 10);
  EXPECT_LT(this->Drawn(0, 300), 2000); // lines, not surfaces

  zylSetBlocks(pipeline, { 1, 1, 2, 0, 3, 1 });
  this->Draw(pipeline, "contours_blocks_1_3");
  EXPECT_GT(this->Drawn(0, 100), 10);
  EXPECT_EQ(this->Drawn(110, 190), 0);

  zylTestLog log;
  settings->Set("NumberOfContours", 0);
  this->Draw(pipeline, "contours_none");
  EXPECT_EQ(this->Drawn(0, 300), 0);
  zylSet(settings, "NumberOfContours", 1, "ContourVariableName", "");
  this->Draw(pipeline, "contours_no_variable");
  EXPECT_FALSE(log.HasError());
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineRender, LinesGlyphsAndHighlight)
{
  vtkNew<zylMeshLinePipeline> mesh;
  vtkNew<zylFeatureLinePipeline> feature;
  vtkNew<zylVectorGlyphPipeline> glyphs;
  vtkNew<zylHighlightPipeline> highlight;
  zylSet(glyphs->GetProperties(), "VectorVariable", "velocity", "ScaleFactor", 0.2);
  const struct
  {
    zylPipeline* Pipeline;
    const char* Name;
  } cases[] = { { mesh, "mesh_lines" }, { feature, "feature_lines" }, { glyphs, "glyphs" },
    { highlight, "highlight" } };
  for (const auto& c : cases)
  {
    zylShow(c.Pipeline, *this->Surfaces, { 1, 3 });
    this->Draw(c.Pipeline, c.Name);
    EXPECT_GT(this->Drawn(0, 105), 50) << c.Name;
    EXPECT_LT(this->Drawn(0, 105), 3500) << c.Name;
    EXPECT_EQ(this->Drawn(135, 165), 0) << c.Name; // block 2 is hidden
    EXPECT_GT(this->Drawn(195, 300), 50) << c.Name;
    c.Pipeline->FreeResources(this->View);
    this->Draw(highlight, "nothing");
    c.Pipeline->GetProperties()->Set("Visibility", false);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineRender, HighlightStylesHeedTheBlocks)
{
  vtkNew<zylHighlightPipeline> pipeline;
  zylShow(pipeline, *this->Surfaces, { 1, 3 });
  for (const int style : { 0, 1, 2, 3, 4 })
  {
    pipeline->GetProperties()->Set("Style", style);
    this->Draw(pipeline, ("highlight_style_" + std::to_string(style)).c_str());
    EXPECT_GT(this->Drawn(40, 110), 20) << style;
    EXPECT_EQ(this->Drawn(125, 175), 0) << style;
    EXPECT_GT(this->Drawn(190, 260), 20) << style;
  }
}

//--------------------------------------------------------------------------------------------------
// Drawing must not bring back the questions about the data that the making avoids. (A legend asks
// one when the data has changed: ParaView looks up the range of the array.)
TEST_F(zylPipelineRender, DrawingAsksNothingAboutTheData)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylSet(pipeline->GetProperties(), "ColorMode", 1, "ColorVariableName", "pressure");
  zylShow(pipeline, *this->Surfaces, { 1, 2 });
  zylTestLog log;
  this->Draw(pipeline, "first");
  zylSetBlocks(pipeline, { 1, 1, 2, 1, 3, 1 });
  this->Draw(pipeline, "second");
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "gather information vtkPVDataInformation"), 0);
}
