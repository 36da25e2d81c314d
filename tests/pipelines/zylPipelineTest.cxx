#include "zylArrayInformation.h"
#include "zylContourPipeline.h"
#include "zylDataSet.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylMeshLinePipeline.h"
#include "zylPipelineFixture.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

#include <functional>
#include <memory>
#include <set>

#include <gtest/gtest.h>
#include <vtkCallbackCommand.h>
#include <vtkCellData.h>
#include <vtkColorTransferFunction.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMPropertyIterator.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMTransferFunctionProxy.h>
#include <vtkSMVectorProperty.h>
#include <vtkVariant.h>

namespace {
using Values = std::vector<double>;

const std::vector<std::function<vtkSmartPointer<zylPipeline>()>> Kinds = {
  [] { return vtkSmartPointer<zylSurfacePipeline>::New(); },
  [] { return vtkSmartPointer<zylContourPipeline>::New(); },
  [] { return vtkSmartPointer<zylLinePipeline>::New(); },
  [] { return vtkSmartPointer<zylFeatureLinePipeline>::New(); },
  [] { return vtkSmartPointer<zylMeshLinePipeline>::New(); },
  [] { return vtkSmartPointer<zylVectorGlyphPipeline>::New(); },
  [] { return vtkSmartPointer<zylHighlightPipeline>::New(); },
};

//--------------------------------------------------------------------------------------------------
// Settings under which every kind has something to draw, a color map and a legend.
void UseVariables(zylPipeline* pipeline)
{
  zylPropertyCollection* settings = pipeline->GetProperties();
  if (settings->Has("ColorMode"))
  {
    settings->Set("ColorMode", 1);
    settings->Set("ColorVariableName", "velocity_X");
    settings->Set("ColorLegendVisibility", true);
  }
  if (settings->Has("ContourVariableName"))
  {
    settings->Set("ContourVariableName", "pressure");
  }
  if (settings->Has("VectorVariable"))
  {
    settings->Set("VectorVariable", "velocity");
  }
}
} // namespace

class zylPipelineTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    this->Surfaces = std::make_unique<zylSurfaces>(zylTestData::MakeRow(3));
    this->View = vtkSmartPointer<zylView>::New();
  }

  void Show(zylPipeline* pipeline, const std::vector<int>& visible = { 1, 2, 3 })
  {
    zylShow(pipeline, *this->Surfaces, visible);
    pipeline->Update(this->View);
  }

  vtkSMProxy* ScalarBar(zylPipeline* pipeline)
  {
    return vtkSMTransferFunctionProxy::FindScalarBarRepresentation(
      vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy(),
      this->View->GetProxy());
  }

  std::unique_ptr<zylSurfaces> Surfaces;
  vtkSmartPointer<zylView> View;
};

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
// Renamed properties of another ParaView show up here.
TEST_F(zylPipelineTest, EveryTargetExists)
{
  for (const auto& make : Kinds)
  {
    const auto pipeline = make();
    UseVariables(pipeline);
    zylTestLog log;
    this->Show(pipeline);
    ASSERT_NE(pipeline->GetRepresentation(), nullptr) << pipeline->GetClassName();
    EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0);
    EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_WARNING, ""), 0);
    EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_ERROR, ""), 0);
    // It takes seconds with thousands of blocks.
    EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "gather information vtkPVDataInformation"), 0)
      << pipeline->GetClassName();
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, VisibilityIsNotInTheHash)
{
  for (const auto& make : Kinds)
  {
    const auto one = make();
    const auto other = make();
    other->GetProperties()->Set("Visibility", true);
    other->GetProperties()->Set("ForceHidden", true);
    zylSetBlocks(other, { 1, 1, 2, 0 });
    EXPECT_EQ(one->GetProperties()->GetHashValue(), other->GetProperties()->GetHashValue());
    other->GetProperties()->Set("TubeRadius", 2.0);
    other->GetProperties()->Set("ScaleFactor", 2.0);
    EXPECT_NE(one->GetProperties()->GetHashValue(), other->GetProperties()->GetHashValue());
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, NothingIsMadeWithoutNeed)
{
  for (const auto& make : Kinds)
  {
    const auto pipeline = make();
    const std::string before = zylRegisteredProxies();
    pipeline->Update(this->View); // no source
    this->Show(pipeline, {});
    zylSetBlocks(pipeline, { 1, 0, 2, 0 });
    pipeline->Update(this->View);
    pipeline->GetProperties()->Set("ForceHidden", true);
    zylSetBlocks(pipeline, { 1, 1 });
    pipeline->Update(this->View);
    pipeline->Update(nullptr);
    EXPECT_EQ(pipeline->GetRepresentation(), nullptr);
    EXPECT_EQ(zylRegisteredProxies(), before);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, AnUpdateWithoutChangesSendsNothing)
{
  for (const auto& make : Kinds)
  {
    const auto pipeline = make();
    UseVariables(pipeline);
    this->Show(pipeline);
    EXPECT_EQ(zylTraffic([&] { pipeline->Update(this->View); }), "") << pipeline->GetClassName();
    // What an owner does: the same settings again.
    auto copy = vtkSmartPointer<zylPropertyCollection>::New();
    copy->DeepCopy(pipeline->GetProperties());
    pipeline->GetProperties()->DeepCopy(copy);
    EXPECT_EQ(zylTraffic([&] { pipeline->Update(this->View); }), "") << pipeline->GetClassName();
    zylSetBlocks(pipeline, { 1, 1, 2, 1, 3, 0 });
    EXPECT_NE(zylTraffic([&] { pipeline->Update(this->View); }), "") << pipeline->GetClassName();
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, NothingIsLeftBehind)
{
  const std::string before = zylRegisteredProxies();
  const auto representations =
    vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements();
  for (const auto& make : Kinds)
  {
    for (int i = 0; i < 3; ++i)
    {
      const auto pipeline = make();
      UseVariables(pipeline);
      this->Show(pipeline);
      if (pipeline->GetProperties()->Has("ColorMode"))
      {
        pipeline->GetProperties()->Set("ColorVariableName", "pressure");
        pipeline->Update(this->View);
        pipeline->GetProperties()->Set("ColorMode", 0);
        pipeline->Update(this->View);
        pipeline->GetProperties()->Set("ColorMode", 1);
        pipeline->Update(this->View);
      }
      if (i % 2)
      {
        pipeline->FreeResources(this->View);
        EXPECT_EQ(zylRegisteredProxies(), before) << pipeline->GetClassName();
        pipeline->Update(this->View); // makes everything again
        EXPECT_NE(pipeline->GetRepresentation(), nullptr);
      }
    }
    EXPECT_EQ(zylRegisteredProxies(), before);
    EXPECT_EQ(vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements(),
      representations);
  }
}

//--------------------------------------------------------------------------------------------------
// The representation is what ParaView's controller makes, but for what follows from the data.
TEST_F(zylPipelineTest, TheRepresentationIsParaViews)
{
  vtkNew<zylSurfacePipeline> pipeline;
  this->Show(pipeline);
  vtkNew<zylView> other;
  vtkNew<vtkSMParaViewPipelineControllerWithRendering> controller;
  auto* expected = vtkSMPVRepresentationProxy::SafeDownCast(
    controller->Show(this->Surfaces->Source, 0, other->GetProxy()));
  ASSERT_NE(expected, nullptr);
  expected->SetScalarColoring(nullptr, 0);
  vtkSMProxy* made = pipeline->GetRepresentation();
  EXPECT_STREQ(made->GetXMLName(), expected->GetXMLName());
  // Set by the pipeline, or chosen by the data for displays that are off.
  const std::set<std::string> allowed = { "UseSeparateColorMap", "BlockVisibility", "PointSize",
    "GaussianRadius", "ScaleFactor", "SelectInputVectors", "SelectOrientationVectors",
    "SelectScaleArray", "SelectNormalArray", "SelectTCoordArray", "SelectTangentArray",
    "SetScaleArray", "OpacityArray", "GlyphTableIndexArray", "OSPRayScaleArray",
    "SelectionCellFieldDataArrayName", "SelectionPointFieldDataArrayName" };
  std::string differing;
  vtkSmartPointer<vtkSMPropertyIterator> iterator;
  iterator.TakeReference(expected->NewPropertyIterator());
  for (iterator->Begin(); !iterator->IsAtEnd(); iterator->Next())
  {
    auto* mine = vtkSMVectorProperty::SafeDownCast(made->GetProperty(iterator->GetKey()));
    auto* theirs = vtkSMVectorProperty::SafeDownCast(iterator->GetProperty());
    const auto values = [](vtkSMVectorProperty* property) {
      const vtkSMPropertyHelper helper(property, true);
      std::string text;
      for (unsigned int i = 0; i < helper.GetNumberOfElements(); ++i)
      {
        text += helper.GetAsVariant(i).ToString() + " ";
      }
      return text;
    };
    if (mine && theirs && allowed.count(iterator->GetKey()) == 0 && !mine->GetInformationOnly() &&
      values(mine) != values(theirs))
    {
      differing +=
        std::string(iterator->GetKey()) + ": " + values(mine) + " | " + values(theirs) + "\n";
    }
  }
  EXPECT_EQ(differing, "");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, SurfaceSettings)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  const double color[] = { 0.25, 0.5, 1.0 };
  settings->Set("Color", color, 3);
  settings->Set("Transparency", 0.25);
  settings->Set("Specular", 0.5);
  settings->Set("TubeRadius", 3.0);
  settings->Set("RenderPointsAsSpheres", true);
  this->Show(pipeline);
  vtkSMProxy* made = pipeline->GetRepresentation();
  EXPECT_EQ(zylNumbers(made, "AmbientColor"), Values(color, color + 3));
  EXPECT_EQ(zylNumbers(made, "DiffuseColor"), Values(color, color + 3));
  EXPECT_EQ(zylNumber(made, "Opacity"), 0.75);
  EXPECT_EQ(zylNumber(made, "Specular"), 0.5);
  EXPECT_EQ(zylNumber(made, "LineWidth"), 3.0);
  EXPECT_EQ(zylNumber(made, "RenderPointsAsSpheres"), 1.0);
  EXPECT_EQ(zylNumber(made, "UseSeparateColorMap"), 1.0);
  EXPECT_EQ(zylNumber(made, "Visibility"), 1.0);
  const struct
  {
    int Style;
    const char* Type;
  } styles[] = { { 1, "Points" }, { 2, "Point Gaussian" }, { 7, "Surface" }, { 1, "Points" },
    { 0, "Surface" } };
  for (const auto& style : styles)
  {
    settings->Set("DisplayStyle", style.Style);
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(made, "Representation"), style.Type);
  }
  settings->Set("ForceHidden", true);
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(made, "Visibility"), 0.0);
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
  EXPECT_TRUE(
    log.Has(vtkLogger::VERBOSITY_WARNING, "point or cell data named 'nothing' could not be found"));
  EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "pressure");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, AnArrayMayBeNamedLikeAComponent)
{
  auto data = zylTestData::MakeRow(2);
  for (unsigned int i = 0; i < 2; ++i)
  {
    vtkNew<vtkDoubleArray> array;
    array->SetName("velocity_X");
    array->SetNumberOfTuples(vtkDataSet::SafeDownCast(data->GetBlock(i))->GetNumberOfCells());
    array->Fill(7.0 + i);
    vtkDataSet::SafeDownCast(data->GetBlock(i))->GetCellData()->AddArray(array);
  }
  const zylSurfaces surfaces(data);
  for (const bool tree : { true, false })
  {
    vtkNew<zylSurfacePipeline> pipeline;
    pipeline->GetProperties()->Set("ColorMode", 1);
    pipeline->GetProperties()->Set("ColorVariableName", "velocity_X");
    pipeline->GetProperties()->Set("ColorLegendVisibility", true);
    zylShow(pipeline, surfaces, { 1, 2 });
    pipeline->SetBlockTree(tree ? surfaces.DataSet->GetMultiBlockTree() : nullptr);
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "velocity_X");
    EXPECT_EQ(zylNumber(pipeline->GetRepresentation(), "ColorArrayName", 3), 1.0); // of cells
    EXPECT_EQ(zylText(this->ScalarBar(pipeline), "Title"), "velocity_X");
    EXPECT_EQ(zylText(this->ScalarBar(pipeline), "ComponentTitle"), "");
    double range[2];
    pipeline->GetColorVariableInformation()->GetComponentRange(0, range);
    EXPECT_EQ(range[1], 8.0);
    pipeline->GetProperties()->Set("ColorVariableName", "velocity_Y"); // the others as ever
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(pipeline->GetRepresentation(), "ColorArrayName", 4), "velocity");
  }
}

//--------------------------------------------------------------------------------------------------
// With the same settings as a new one, a pipeline that shows nothing from before has nothing left.
TEST_F(zylPipelineTest, WhatCannotBeShownLeavesNothingIfAsked)
{
  vtkNew<zylSurfacePipeline> surface;
  surface->SetKeepsLastVariable(false);
  UseVariables(surface);
  this->Show(surface);
  surface->GetProperties()->Set("ColorVariableName", "nothing");
  surface->Update(this->View);
  EXPECT_EQ(zylText(surface->GetRepresentation(), "ColorArrayName", 4), "");
  EXPECT_EQ(vtkSMPropertyHelper(surface->GetRepresentation(), "LookupTable").GetAsProxy(), nullptr);

  vtkNew<zylVectorGlyphPipeline> glyphs;
  glyphs->SetKeepsLastVariable(false);
  UseVariables(glyphs);
  this->Show(glyphs);
  ASSERT_NE(glyphs->GetRepresentation(), nullptr);
  glyphs->GetProperties()->Set("VectorVariable", "pressure");
  glyphs->Update(this->View);
  EXPECT_EQ(glyphs->GetRepresentation(), nullptr);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, MissingSettingsMeanTheirDefaults)
{
  for (const auto& make : Kinds)
  {
    const auto pipeline = make();
    UseVariables(pipeline);
    this->Show(pipeline);
    pipeline->GetProperties()->Clear();
    EXPECT_FALSE(pipeline->IsVisible());
    pipeline->Update(this->View);
    EXPECT_EQ(zylNumber(pipeline->GetRepresentation(), "Visibility"), 0.0);
    const auto other = make();
    EXPECT_EQ(pipeline->GetProperties()->PrintPropertiesToString(),
      other->GetProperties()->PrintPropertiesToString());
    pipeline->GetProperties()->MakeDouble("ColorMapRange", 1.0); // one element, not two
    pipeline->GetProperties()->MakeString("Visibility", "yes");
    this->Show(pipeline);
  }
}

//--------------------------------------------------------------------------------------------------
// Data that are no blocks, and groups of such data, are shown by the flag of the root.
TEST_F(zylPipelineTest, TheRootStandsForAll)
{
  for (const auto& make : Kinds)
  {
    const auto pipeline = make();
    UseVariables(pipeline);
    for (const bool tree : { true, false })
    {
      zylShow(pipeline, *this->Surfaces, { 0 });
      pipeline->SetBlockTree(tree ? this->Surfaces->DataSet->GetMultiBlockTree() : nullptr);
      pipeline->Update(this->View);
      double bounds[6];
      pipeline->GetVisibleBounds(bounds);
      EXPECT_EQ(Values(bounds, bounds + 2), (Values{ 0, 3 })) << pipeline->GetClassName();
    }
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, TheHostsObserversStay)
{
  int seen = 0;
  vtkNew<vtkCallbackCommand> observer;
  observer->SetClientData(&seen);
  observer->SetCallback(
    [](vtkObject*, unsigned long, void* count, void*) { ++*static_cast<int*>(count); });
  this->Surfaces->Source->AddObserver(vtkCommand::UpdateDataEvent, observer);
  vtkNew<zylSurfacePipeline> pipeline;
  this->Show(pipeline);
  vtkNew<zylHighlightPipeline> highlight;
  this->Show(highlight);
  EXPECT_TRUE(this->Surfaces->Source->HasObserver(vtkCommand::UpdateDataEvent, observer));
  this->Surfaces->Source->InvokeEvent(vtkCommand::UpdateDataEvent);
  EXPECT_EQ(seen, 1);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ColorMap)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  settings->Set("ColorMode", 1);
  settings->Set("ColorVariableName", "pressure");
  const double range[] = { 0.5, 2.5 };
  settings->Set("ColorMapRange", range, 2);
  this->Show(pipeline);
  vtkSMProxy* lut = vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy();
  Values points = zylNumbers(lut, "RGBPoints");
  EXPECT_EQ(points.front(), 0.5);
  EXPECT_EQ(points[points.size() - 4], 2.5);
  EXPECT_EQ(zylNumber(lut, "Discretize"), 0.0);
  EXPECT_EQ(zylNumber(lut, "NumberOfTableValues"), 256.0);

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

  settings->Set("ColorMapStyle", 0);
  settings->Set("ColorMapName", "Grayscale");
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(lut, "Discretize"), 1.0);
  EXPECT_EQ(zylNumber(lut, "NumberOfTableValues"), 5.0);
  EXPECT_NE(zylNumbers(lut, "RGBPoints"), points);

  // Not touched again before one of its own settings changes.
  points[0] = 0.0;
  vtkSMPropertyHelper(lut, "RGBPoints").Set(points.data(), points.size());
  settings->Set("Transparency", 0.5);
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumbers(lut, "RGBPoints"), points);

  zylTestLog log;
  const double inverted[] = { 2.0, 1.0 };
  settings->Set("ColorMapRange", inverted, 2);
  settings->Set("ColorMapName", "No such map");
  pipeline->Update(this->View);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "No color map named 'No such map' exists"));
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "range [2, 1] is not valid"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ColorLegend)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  settings->Set("ColorMode", 1);
  settings->Set("ColorVariableName", "velocity_X");
  this->Show(pipeline);
  EXPECT_EQ(this->ScalarBar(pipeline), nullptr);

  const double red[] = { 1, 0, 0 };
  settings->Set("ColorLegendVisibility", true);
  settings->Set("ColorLegendLocation", 5);
  settings->Set("ColorLegendOrientation", 0);
  settings->Set("ColorLegendLabelColor", red, 3);
  settings->Set("ColorLegendTitleBold", true);
  pipeline->Update(this->View);
  vtkSMProxy* bar = this->ScalarBar(pipeline);
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(zylText(bar, "Title"), "velocity");
  EXPECT_EQ(zylText(bar, "ComponentTitle"), "X");
  EXPECT_EQ(zylNumber(bar, "WindowLocation"), 5.0);
  EXPECT_EQ(zylNumber(bar, "Orientation"), 0.0);
  EXPECT_EQ(zylNumber(bar, "TitleBold"), 1.0);
  EXPECT_EQ(zylNumber(bar, "TitleFontSize"), 16.0);
  EXPECT_EQ(zylNumbers(bar, "LabelColor"), Values(red, red + 3));
  EXPECT_EQ(zylNumber(bar, "Visibility"), 1.0);

  settings->Set("ColorLegendTitle", "Speed");
  settings->Set("ColorLegendComponentTitle", "m/s");
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

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, ContourValues)
{
  vtkNew<zylContourPipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  settings->Set("ContourVariableName", "pressure");
  this->Show(pipeline);
  vtkSMProxy* filter = vtkSMPropertyHelper(pipeline->GetRepresentation(), "Input").GetAsProxy();
  ASSERT_NE(filter, nullptr);
  EXPECT_EQ(zylNumbers(filter, "ContourValues"), (Values{ 0, 0.25, 0.5, 0.75, 1 }));
  EXPECT_EQ(zylText(filter, "SelectInputScalars", 4), "pressure");
  const double range[] = { 1.0, 2.0 };
  settings->Set("ContourRange", range, 2);
  const std::pair<int, Values> cases[] = { { 2, { 1, 2 } }, { 1, { 1.5 } }, { 0, {} }, { -3, {} } };
  for (const auto& c : cases)
  {
    settings->Set("NumberOfContours", c.first);
    pipeline->Update(this->View);
    EXPECT_EQ(zylNumbers(filter, "ContourValues"), c.second);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, LinesDifferInTypeOnly)
{
  vtkNew<zylFeatureLinePipeline> feature;
  vtkNew<zylMeshLinePipeline> mesh;
  EXPECT_EQ(feature->GetProperties()->PrintPropertiesToString(),
    mesh->GetProperties()->PrintPropertiesToString());
  for (zylPipeline* pipeline :
    { static_cast<zylPipeline*>(feature), static_cast<zylPipeline*>(mesh) })
  {
    pipeline->GetProperties()->Set("RenderAsTubes", true);
    this->Show(pipeline);
    EXPECT_EQ(zylNumber(pipeline->GetRepresentation(), "RenderLinesAsTubes"), 1.0);
  }
  EXPECT_EQ(zylText(feature->GetRepresentation(), "Representation"), "Feature Edges");
  EXPECT_EQ(zylText(mesh->GetRepresentation(), "Representation"), "Wireframe");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, GlyphsNeedAVector)
{
  vtkNew<zylVectorGlyphPipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  {
    zylTestLog log;
    settings->Set("VectorVariable", "speed");
    this->Show(pipeline);
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING,
      "No array named 'speed' is in the zylDataSet set on this zylVectorGlyphPipeline"));
    settings->Set("VectorVariable", "pressure");
    pipeline->Update(this->View);
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING,
      "Array 'pressure' has 1 components, but should have 3 components."));
    settings->Set("VectorVariable", "quality");
    pipeline->Update(this->View);
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_WARNING, "'quality' belongs to the cells"));
  }
  EXPECT_EQ(pipeline->GetRepresentation(), nullptr);

  settings->Set("VectorVariable", "velocity");
  settings->Set("ScaleFactor", 0.5);
  settings->Set("ArrowTipResolution", 12);
  pipeline->Update(this->View);
  vtkSMProxy* made = pipeline->GetRepresentation();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(zylText(made, "Representation"), "3D Glyphs");
  EXPECT_EQ(zylText(made, "SelectOrientationVectors"), "velocity");
  EXPECT_EQ(zylNumber(made, "Orient"), 1.0);
  EXPECT_EQ(zylNumber(made, "Scaling"), 1.0);
  EXPECT_EQ(zylNumber(made, "ScaleFactor"), 0.5);
  EXPECT_EQ(zylNumber(made, "ScaleMode"), 0.0);
  vtkSMProxy* arrow = vtkSMPropertyHelper(made, "GlyphType").GetAsProxy();
  ASSERT_STREQ(arrow->GetXMLName(), "ArrowSource");
  EXPECT_EQ(zylNumber(arrow, "TipResolution"), 12.0);
  EXPECT_EQ(zylNumber(arrow, "ShaftResolution"), 8.0);

  settings->Set("GlyphSizeMode", 3);
  settings->Set("ScaleVariable", "pressure");
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(made, "ScaleMode"), 1.0);
  EXPECT_EQ(zylText(made, "SelectScaleArray"), "pressure");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, Highlight)
{
  vtkNew<zylHighlightPipeline> pipeline;
  zylPropertyCollection* settings = pipeline->GetProperties();
  EXPECT_EQ(settings->GetPropertyNames().size(), 10u);
  settings->Set("Transparency", 0.5);
  this->Show(pipeline, { 2 });
  vtkSMProxy* made = pipeline->GetRepresentation();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(
    zylNumbers(made, "DiffuseColor"), (Values{ 1, 0.7019607843137254, 0.14838709677419354 }));
  EXPECT_EQ(zylNumber(made, "Opacity"), 0.5);
  EXPECT_STREQ(vtkSMPropertyHelper(made, "Input").GetAsProxy()->GetXMLName(), "PassThrough");
  const std::pair<int, const char*> styles[] = { { 0, "Feature Edges" }, { 1, "Surface" },
    { 2, "Outline" }, { 3, "Wireframe" }, { 9, "Surface With Edges" },
    { -1, "Surface With Edges" } };
  for (const auto& style : styles)
  {
    settings->Set("Style", style.first);
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(made, "Representation"), style.second);
  }
  zylSetBlocks(pipeline, { 2, 0 });
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(made, "Visibility"), 0.0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPipelineTest, Bounds)
{
  vtkNew<zylSurfacePipeline> pipeline;
  zylShow(pipeline, *this->Surfaces, { 2 });
  double all[6];
  double visible[6];
  pipeline->GetBounds(all);
  pipeline->GetVisibleBounds(visible);
  EXPECT_EQ(Values(all, all + 2), (Values{ 0, 3 }));
  EXPECT_EQ(Values(visible, visible + 6), (Values{ 1, 2, 0, 1, 0, 1 }));
  zylSetBlocks(pipeline, { 1, 0, 2, 0 });
  EXPECT_FALSE(pipeline->AnyBlocksVisible());
  pipeline->GetVisibleBounds(visible);
  EXPECT_GT(visible[0], visible[1]);

  pipeline->GetProperties()->Set("ColorVariableName", "velocity_Y");
  const auto array = pipeline->GetColorVariableInformation();
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->GetName(), "velocity");
  EXPECT_EQ(array->GetNumberOfComponents(), 3u);
  double range[2];
  array->GetComponentRange(0, range);
  EXPECT_EQ(Values(range, range + 2), (Values{ 0, 1 }));
}
