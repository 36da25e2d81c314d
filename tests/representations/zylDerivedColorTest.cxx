// Blocks drawn by derived variables look as they do by arrays of the same values.
#include "zylBoundaryRepresentation.h"

#include "zylHostTest.h"
#include "zylTest.h"
#include "zylView.h"

#include <cstdlib>

#include <vtkDataSet.h>

namespace {
// A row of cubes with "given", what "three" computes, and "given vector", twice the velocity.
vtkSmartPointer<vtkMultiBlockDataSet> MakeCubes()
{
  auto row = zylTestData::MakeRow(3, 6);
  for (unsigned int block = 0; block < 3; ++block)
  {
    auto* cube = vtkUnstructuredGrid::SafeDownCast(row->GetBlock(block));
    zylTestData::AddPointArray(cube, "given",
      [](zylTestData::Point p) { return zylValues{ (2.0 * p[0] + 4.0) * std::sin(p[1]) }; });
    zylTestData::AddPointArray(cube, "given vector", [](zylTestData::Point p) {
      return zylValues{ 2.0 * p[1], 2.0 * (1.0 - p[0]), 2.0 * p[2] };
    });
  }
  return row;
}
} // namespace

class zylDerivedColor : public zylHostTest
{
protected:
  void Prepare() override
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(MakeCubes()));
    this->Data->DefineDerivedPointVariable("one", "2 * pressure");
    this->Data->DefineDerivedPointVariable("two", "one + 4");
    this->Data->DefineDerivedPointVariable("three", "two * sin(velocity[:,0])");
    this->Data->DefineDerivedPointVariable("turned", "2 * velocity");
    this->View = zylMakeFlatView();
    this->Boundary->SetDataSet(this->Data);
    this->View->AddRepresentation(this->Boundary);
    this->View->SetViewDir(1, false);
    this->View->ResetCamera(0.0, 3.0, -1.0, 2.0, 0.0, 1.0);
    this->View->SetZoom(std::sqrt(19.0) / 3.0);
  }

  template <class Change>
  void ForAllBlocks(zylPropertyCollection* (zylBoundaryRepresentation::*kind)(int), Change change)
  {
    for (int id = 1; id <= 3; ++id)
    {
      change(((*this->Boundary).*kind)(id));
    }
  }

  // The picture as text, and how many of the pixels are not background.
  std::string Draw(int& drawn)
  {
    this->Boundary->Update();
    this->Host->Clear(0.0f, 0.0f, 0.0f);
    this->View->Render();
    std::string picture;
    drawn = 0;
    for (int y = 0; y < 300; y += 3)
    {
      for (int x = 0; x < 300; x += 3)
      {
        const auto pixel = this->Host->Pixel(x, y);
        for (const int channel : pixel)
        {
          picture += char(channel);
        }
        drawn += pixel[0] + pixel[1] + pixel[2] > 0;
      }
    }
    return picture;
  }

  vtkNew<zylDataSet> Data;
  vtkNew<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
};

TEST_F(zylDerivedColor, ColorsSurfaces)
{
  const auto draw = [this](const char* variable, double high, int& drawn) {
    this->ForAllBlocks(
      &zylBoundaryRepresentation::GetSurfaceProperties, [&](zylPropertyCollection* surface) {
        zylSet(surface, "Visibility", true, "ColorMode", 1, "ColorVariableName", variable,
          "ColorMapRange", zylValues{ 0.0, high });
      });
    return this->Draw(drawn);
  };
  int drawn = 0;
  const std::string given = draw("given", 8.0, drawn);
  EXPECT_GT(drawn, 3000);
  EXPECT_EQ(draw("three", 8.0, drawn), given);
  if (const char* folder = std::getenv("ZYL_TEST_PICTURES"))
  {
    this->Host->WritePicture(std::string(folder) + "/derived-surface.png");
  }
  auto information = this->Boundary->GetSurfaceColorVariableInformation(2);
  ASSERT_NE(information, nullptr);
  EXPECT_EQ(information->GetName(), "three");
  EXPECT_NEAR(zylRange(information)[1], 10.0 * std::sin(1.0), 1e-12);

  EXPECT_NE(draw("one", 8.0, drawn), given);
  EXPECT_EQ(draw("turned_X", 2.0, drawn), draw("given vector_X", 2.0, drawn));
  EXPECT_EQ(draw("turned", 3.0, drawn), draw("given vector", 3.0, drawn));

  // A definition that changes changes the picture; the old one brings it back.
  draw("three", 8.0, drawn);
  this->Data->DefineDerivedPointVariable("one", "pressure");
  EXPECT_NE(this->Draw(drawn), given);
  this->Data->DefineDerivedPointVariable("one", "2 * pressure");
  EXPECT_EQ(this->Draw(drawn), given);
}

TEST_F(zylDerivedColor, DrawsContoursAndGlyphs)
{
  const auto contours = [this](const char* variable, int& drawn) {
    this->ForAllBlocks(
      &zylBoundaryRepresentation::GetContourProperties, [&](zylPropertyCollection* contour) {
        zylSet(contour, "Visibility", true, "ContourVariableName", variable, "ContourRange",
          zylValues{ 1, 7 });
      });
    return this->Draw(drawn);
  };
  int drawn = 0;
  const std::string given = contours("given", drawn);
  EXPECT_GT(drawn, 100);
  EXPECT_EQ(contours("three", drawn), given);
  this->ForAllBlocks(&zylBoundaryRepresentation::GetContourProperties,
    [](zylPropertyCollection* contour) { contour->Set("Visibility", false); });

  const auto glyphs = [this](const char* variable, int& drawnPixels) {
    this->ForAllBlocks(
      &zylBoundaryRepresentation::GetVectorGlyphProperties, [&](zylPropertyCollection* glyph) {
        zylSet(glyph, "Visibility", true, "VectorVariable", variable);
      });
    return this->Draw(drawnPixels);
  };
  const std::string arrows = glyphs("given vector", drawn);
  EXPECT_GT(drawn, 50);
  EXPECT_EQ(glyphs("turned", drawn), arrows);
}
