// From the name of a variable to colors and a legend.
#include "zylPipelineFixture.h"
#include "zylSurfacePipeline.h"
#include "zylTest.h"

#include <set>
#include <vector>

#include <vtkColorTransferFunction.h>
#include <vtkDataSet.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkWeakPointer.h>

using Values = zylValues;

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, SplitsVariableNames)
{
  const struct
  {
    const char* Full;
    const char* Name;
    const char* Suffix;
    int Component;
  } cases[] = { { "Velocity_Y", "Velocity", "Y", 1 }, { "Velocity_Z", "Velocity", "Z", 2 },
    { "Velocity_Magnitude", "Velocity", "Magnitude", -1 }, { "wall_shear", "wall_shear", "", -1 },
    { "wall_shear_X", "wall_shear", "X", 0 }, { "Pressure", "Pressure", "", -1 },
    { "X", "X", "", -1 }, { "_X", "", "X", 0 }, { "a_x", "a_x", "", -1 }, { "", "", "", -1 } };
  for (const auto& c : cases)
  {
    std::string name = c.Full;
    std::string suffix;
    int component = 7;
    zylPipeline::SplitVariableName(name, name, suffix); // in place
    EXPECT_EQ(name, c.Name) << c.Full;
    EXPECT_EQ(suffix, c.Suffix) << c.Full;
    zylPipeline::SplitVariableName(c.Full, name, component);
    EXPECT_EQ(component, c.Component) << c.Full;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ColoringFollowsTheVariable)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  settings->Set("ColorMode", 1);
  const struct
  {
    const char* Variable;
    const char* Array;
    int Association;
    const char* Mode;
    int Component;
  } cases[] = { { "velocity_Y", "velocity", 0, "Component", 1 },
    { "velocity_Z", "velocity", 0, "Component", 2 },
    { "velocity_Magnitude", "velocity", 0, "Magnitude", 0 },
    { "quality", "quality", 1, "Magnitude", 0 } };
  for (const bool tree : { true, false })
  {
    for (const auto& c : cases)
    {
      settings->Set("ColorVariableName", c.Variable);
      zylShow(pipeline, *this->Surfaces, { 1, 2 });
      pipeline->SetBlockTree(tree ? this->Surfaces->DataSet->GetMultiBlockTree() : nullptr);
      pipeline->Update(this->View);
      vtkSMProxy* made = pipeline->GetRepresentation();
      EXPECT_EQ(zylText(made, "ColorArrayName", 4), c.Array);
      EXPECT_EQ(zylNumber(made, "ColorArrayName", 3), c.Association) << c.Variable;
      vtkSMProxy* lut = vtkSMPropertyHelper(made, "LookupTable").GetAsProxy();
      ASSERT_NE(lut, nullptr);
      EXPECT_EQ(zylText(lut, "VectorMode"), c.Mode) << c.Variable;
      EXPECT_EQ(zylNumber(lut, "VectorComponent"), c.Component) << c.Variable;
    }
    pipeline->FreeResources(this->View);
  }
  settings->Set("ColorVariableName", "pressure");
  pipeline->Update(this->View);
  zylTestLog log;
  settings->Set("ColorVariableName", "nothing_X");
  pipeline->Update(this->View);
  EXPECT_TRUE(log.HasWarning("point or cell data named 'nothing' could not be found"));
  EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "pressure");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, AnArrayMayBeNamedLikeAComponent)
{
  auto data = zylTestData::MakeRow(2);
  for (unsigned int i = 0; i < 2; ++i)
  {
    auto* block = vtkDataSet::SafeDownCast(data->GetBlock(i));
    zylTestData::AddArray(
      block->GetCellData(), "velocity_X", 1, block->GetNumberOfCells(), 7.0 + i);
  }
  const zylSurfaces surfaces(data);
  for (const bool tree : { true, false })
  {
    vtkNew<zylSurfacePipeline> pipeline;
    zylSet(pipeline->GetProperties(), "ColorMode", 1, "ColorVariableName", "velocity_X",
      "ColorLegendVisibility", true);
    zylShow(pipeline, surfaces, { 1, 2 });
    pipeline->SetBlockTree(tree ? surfaces.DataSet->GetMultiBlockTree() : nullptr);
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "velocity_X");
    EXPECT_EQ(zylNumber(pipeline->GetRepresentation(), "ColorArrayName", 3), 1.0); // of cells
    EXPECT_EQ(zylText(this->ScalarBar(pipeline), "Title"), "velocity_X");
    EXPECT_EQ(zylText(this->ScalarBar(pipeline), "ComponentTitle"), "");
    EXPECT_EQ(zylRange(pipeline->GetColorVariableInformation())[1], 8.0);
    pipeline->GetProperties()->Set("ColorVariableName", "velocity_Y"); // the others as ever
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "velocity");
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ColorMap)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  zylSet(
    settings, "ColorMode", 1, "ColorVariableName", "pressure", "ColorMapRange", Values{ 0.5, 2.5 });
  this->Show(pipeline);
  vtkSMProxy* lut = vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy();
  Values points = zylNumbers(lut, "RGBPoints");
  EXPECT_EQ(points.front(), 0.5);
  EXPECT_EQ(points[points.size() - 4], 2.5);
  EXPECT_EQ(zylNumbers(lut, { "Discretize", "NumberOfTableValues" }), (Values{ 0, 256 }));

  // A color between two listed ones lies between them.
  settings->Set("ColorMapName", "Viridis (matplotlib)");
  pipeline->Update(this->View);
  auto* colors = vtkColorTransferFunction::SafeDownCast(lut->GetClientSideObject());
  points = zylNumbers(lut, "RGBPoints");
  ASSERT_EQ(points.size(), 4u * 256u);
  for (std::size_t i = 0; i + 4 < points.size(); i += 4)
  {
    double between[3];
    colors->GetColor(0.5 * (points[i] + points[i + 4]), between);
    for (int c = 0; c < 3; ++c)
    {
      EXPECT_NEAR(between[c], 0.5 * (points[i + 1 + c] + points[i + 5 + c]), 0.01) << i;
    }
  }

  zylSet(settings, "ColorMapStyle", 0, "ColorMapName", "Grayscale");
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumbers(lut, { "Discretize", "NumberOfTableValues" }), (Values{ 1, 5 }));
  EXPECT_NE(zylNumbers(lut, "RGBPoints"), points);

  // Not touched again before one of its own settings changes.
  points[0] = 0.0;
  vtkSMPropertyHelper(lut, "RGBPoints").Set(points.data(), points.size());
  settings->Set("Transparency", 0.5);
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumbers(lut, "RGBPoints"), points);

  zylTestLog log;
  zylSet(settings, "ColorMapRange", Values{ 2, 1 }, "ColorMapName", "No such map");
  pipeline->Update(this->View);
  EXPECT_TRUE(log.HasWarning("No color map named 'No such map' exists"));
  EXPECT_TRUE(log.HasWarning("range [2, 1] is not valid"));
}

//--------------------------------------------------------------------------------------------------
// The server's side of a representation would keep every table that it was given.
TEST_F(zylPipelineTest, TablesOfFormerVariablesGo)
{
  vtkNew<zylSurfacePipeline> pipeline;
  pipeline->GetProperties()->Set("ColorLegendVisibility", true);
  this->Show(pipeline);
  std::vector<vtkWeakPointer<vtkObjectBase>> tables;
  for (const char* variable : { "pressure", "velocity_X", "", "quality", "pressure" })
  {
    pipeline->GetProperties()->Set("ColorMode", *variable ? 1 : 0);
    pipeline->GetProperties()->Set("ColorVariableName", variable);
    pipeline->Update(this->View);
    vtkSMProxy* lut =
      vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy();
    ASSERT_EQ(lut != nullptr, *variable != 0);
    if (lut)
    {
      tables.emplace_back(lut->GetClientSideObject());
    }
  }
  std::set<vtkObjectBase*> alive(tables.begin(), tables.end());
  alive.erase(nullptr);
  EXPECT_EQ(alive.size(), 1u);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ColorLegend)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  zylSet(settings, "ColorMode", 1, "ColorVariableName", "velocity_X");
  this->Show(pipeline);
  EXPECT_EQ(this->ScalarBar(pipeline), nullptr);

  zylSet(settings, "ColorLegendVisibility", true, "ColorLegendLocation", 5,
    "ColorLegendOrientation", 0, "ColorLegendLabelColor", Values{ 1, 0, 0 }, "ColorLegendTitleBold",
    true);
  pipeline->Update(this->View);
  vtkSMProxy* bar = this->ScalarBar(pipeline);
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(zylText(bar, "Title"), "velocity");
  EXPECT_EQ(zylText(bar, "ComponentTitle"), "X");
  EXPECT_EQ(zylNumbers(
              bar, { "WindowLocation", "Orientation", "TitleBold", "TitleFontSize", "Visibility" }),
    (Values{ 5, 0, 1, 16, 1 }));
  EXPECT_EQ(zylNumbers(bar, "LabelColor"), (Values{ 1, 0, 0 }));

  zylSet(settings, "ColorLegendTitle", "Speed", "ColorLegendComponentTitle", "m/s");
  pipeline->Update(this->View);
  EXPECT_EQ(zylText(bar, "Title"), "Speed");
  EXPECT_EQ(zylText(bar, "ComponentTitle"), "m/s");

  zylSetBlocks(pipeline, { 1, 0, 2, 0 });
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(bar, "Visibility"), 0.0);
  zylSetBlocks(pipeline, { 1, 0, 2, 1 });
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(bar, "Visibility"), 1.0);
  settings->Set("ColorMode", 0);
  pipeline->Update(this->View);
  EXPECT_EQ(
    vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy(), nullptr);
}
