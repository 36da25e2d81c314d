#include "zylContourPipeline.h"
#include "zylFeatureLinePipeline.h"
#include "zylHighlightPipeline.h"
#include "zylMeshLinePipeline.h"
#include "zylPipelineFixture.h"
#include "zylSurfacePipeline.h"
#include "zylTest.h"
#include "zylVectorGlyphPipeline.h"
#include "zylView.h"

#include <vtkCallbackCommand.h>
#include <vtkDataSet.h>
#include <vtkLogger.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMParaViewPipelineControllerWithRendering.h>
#include <vtkSMPropertyIterator.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMVectorProperty.h>

namespace {
using Values = zylValues;

template <class Pipeline>
vtkSmartPointer<zylPipeline> New()
{
  return vtkSmartPointer<Pipeline>::New();
}

struct Kind
{
  const char* Name;
  vtkSmartPointer<zylPipeline> (*Make)();
};

// What holds for every kind of pipeline.
class zylEveryPipeline
  : public zylPipelineTest
  , public testing::WithParamInterface<Kind>
{
protected:
  vtkSmartPointer<zylPipeline> Make() { return GetParam().Make(); }
};
INSTANTIATE_TEST_SUITE_P(Kinds, zylEveryPipeline,
  testing::Values(Kind{ "Surface", &New<zylSurfacePipeline> },
    Kind{ "Contour", &New<zylContourPipeline> }, Kind{ "Line", &New<zylLinePipeline> },
    Kind{ "FeatureLine", &New<zylFeatureLinePipeline> },
    Kind{ "MeshLine", &New<zylMeshLinePipeline> },
    Kind{ "VectorGlyph", &New<zylVectorGlyphPipeline> },
    Kind{ "Highlight", &New<zylHighlightPipeline> }),
  [](const auto& info) { return info.param.Name; });

//--------------------------------------------------------------------------------------------------
// Settings under which every kind has something to draw, a color map and a legend.
void UseVariables(zylPipeline* pipeline)
{
  zylPropertyCollection* settings = pipeline->GetProperties();
  if (settings->Has("ColorMode"))
  {
    zylSet(
      settings, "ColorMode", 1, "ColorVariableName", "velocity_X", "ColorLegendVisibility", true);
  }
  for (const auto& [name, variable] : { std::make_pair("ContourVariableName", "pressure"),
         std::make_pair("VectorVariable", "velocity") })
  {
    if (settings->Has(name))
    {
      settings->Set(name, variable);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
// Renamed properties of another ParaView show up here.
TEST_P(zylEveryPipeline, EveryTargetExists)
{
  const auto pipeline = this->Make();
  UseVariables(pipeline);
  zylTestLog log;
  this->Show(pipeline);
  ASSERT_NE(pipeline->GetRepresentation(), nullptr);
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "has no property"), 0);
  EXPECT_FALSE(log.HasWarning() || log.HasError());
  // It takes seconds with thousands of blocks.
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_TRACE, "gather information vtkPVDataInformation"), 0);
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylEveryPipeline, VisibilityIsNotInTheHash)
{
  const auto one = this->Make();
  const auto other = this->Make();
  other->GetProperties()->Set("Visibility", true);
  other->GetProperties()->Set("ForceHidden", true);
  zylSetBlocks(other, { 1, 1, 2, 0 });
  EXPECT_EQ(one->GetProperties()->GetHashValue(), other->GetProperties()->GetHashValue());
  other->GetProperties()->Set("TubeRadius", 2.0);
  other->GetProperties()->Set("ScaleFactor", 2.0);
  EXPECT_NE(one->GetProperties()->GetHashValue(), other->GetProperties()->GetHashValue());
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylEveryPipeline, NothingIsMadeWithoutNeed)
{
  const auto pipeline = this->Make();
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

//--------------------------------------------------------------------------------------------------
TEST_P(zylEveryPipeline, AnUpdateWithoutChangesSendsNothing)
{
  const auto pipeline = this->Make();
  UseVariables(pipeline);
  this->Show(pipeline);
  EXPECT_EQ(zylTraffic([&] { pipeline->Update(this->View); }), "");
  // What an owner does: the same settings again.
  auto copy = vtkSmartPointer<zylPropertyCollection>::New();
  copy->DeepCopy(pipeline->GetProperties());
  pipeline->GetProperties()->DeepCopy(copy);
  EXPECT_EQ(zylTraffic([&] { pipeline->Update(this->View); }), "");
  zylSetBlocks(pipeline, { 1, 1, 2, 1, 3, 0 });
  EXPECT_NE(zylTraffic([&] { pipeline->Update(this->View); }), "");
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylEveryPipeline, NothingIsLeftBehind)
{
  const std::string before = zylRegisteredProxies();
  const auto representations =
    vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements();
  for (int i = 0; i < 3; ++i)
  {
    const auto pipeline = this->Make();
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
      EXPECT_EQ(zylRegisteredProxies(), before);
      pipeline->Update(this->View); // makes everything again
      EXPECT_NE(pipeline->GetRepresentation(), nullptr);
    }
  }
  EXPECT_EQ(zylRegisteredProxies(), before);
  EXPECT_EQ(vtkSMPropertyHelper(this->View->GetProxy(), "Representations").GetNumberOfElements(),
    representations);
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
  const Values color = { 0.25, 0.5, 1.0 };
  zylSet(settings, "Color", color, "Transparency", 0.25, "Specular", 0.5, "TubeRadius", 3.0,
    "RenderPointsAsSpheres", true);
  this->Show(pipeline);
  vtkSMProxy* made = pipeline->GetRepresentation();
  EXPECT_EQ(zylNumbers(made, "AmbientColor"), color);
  EXPECT_EQ(zylNumbers(made, "DiffuseColor"), color);
  EXPECT_EQ(zylNumbers(made,
              { "Opacity", "Specular", "LineWidth", "RenderPointsAsSpheres", "UseSeparateColorMap",
                "Visibility" }),
    (Values{ 0.75, 0.5, 3, 1, 1, 1 }));
  const std::pair<int, const char*> styles[] = { { 1, "Points" }, { 2, "Point Gaussian" },
    { 7, "Surface" }, { 1, "Points" }, { 0, "Surface" } };
  for (const auto& [style, type] : styles)
  {
    settings->Set("DisplayStyle", style);
    pipeline->Update(this->View);
    EXPECT_EQ(zylText(made, "Representation"), type);
  }
  settings->Set("ForceHidden", true);
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(made, "Visibility"), 0.0);
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
TEST_P(zylEveryPipeline, MissingSettingsMeanTheirDefaults)
{
  const auto pipeline = this->Make();
  UseVariables(pipeline);
  this->Show(pipeline);
  pipeline->GetProperties()->Clear();
  EXPECT_FALSE(pipeline->IsVisible());
  pipeline->Update(this->View);
  EXPECT_EQ(zylNumber(pipeline->GetRepresentation(), "Visibility"), 0.0);
  const auto other = this->Make();
  EXPECT_EQ(pipeline->GetProperties()->PrintPropertiesToString(),
    other->GetProperties()->PrintPropertiesToString());
  pipeline->GetProperties()->MakeDouble("ColorMapRange", 1.0); // one element, not two
  pipeline->GetProperties()->MakeString("Visibility", "yes");
  this->Show(pipeline);
}

//--------------------------------------------------------------------------------------------------
// Data that are no blocks, and groups of such data, are shown by the flag of the root.
TEST_P(zylEveryPipeline, TheRootStandsForAll)
{
  const auto pipeline = this->Make();
  UseVariables(pipeline);
  for (const bool tree : { true, false })
  {
    zylShow(pipeline, *this->Surfaces, { 0 });
    pipeline->SetBlockTree(tree ? this->Surfaces->DataSet->GetMultiBlockTree() : nullptr);
    pipeline->Update(this->View);
    double bounds[6];
    pipeline->GetVisibleBounds(bounds);
    EXPECT_EQ(Values(bounds, bounds + 2), (Values{ 0, 3 }));
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
  this->Surfaces->Source->RemoveObserver(observer);
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
  zylSet(settings, "ContourRange", Values{ 1, 2 });
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
  const std::pair<const char*, const char*> unsuitable[] = {
    { "speed", "No array named 'speed' is in the zylDataSet set on this zylVectorGlyphPipeline" },
    { "pressure", "Array 'pressure' has 1 components, but should have 3 components." },
    { "quality", "'quality' belongs to the cells" },
  };
  for (const auto& [variable, message] : unsuitable)
  {
    zylTestLog log;
    settings->Set("VectorVariable", variable);
    this->Show(pipeline);
    EXPECT_TRUE(log.HasWarning(message));
  }
  EXPECT_EQ(pipeline->GetRepresentation(), nullptr);

  zylSet(settings, "VectorVariable", "velocity", "ScaleFactor", 0.5, "ArrowTipResolution", 12);
  pipeline->Update(this->View);
  vtkSMProxy* made = pipeline->GetRepresentation();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(zylText(made, "Representation"), "3D Glyphs");
  EXPECT_EQ(zylText(made, "SelectOrientationVectors"), "velocity");
  EXPECT_EQ(zylNumbers(made, { "Orient", "Scaling", "ScaleFactor", "ScaleMode" }),
    (Values{ 1, 1, 0.5, 0 }));
  vtkSMProxy* arrow = vtkSMPropertyHelper(made, "GlyphType").GetAsProxy();
  ASSERT_STREQ(arrow->GetXMLName(), "ArrowSource");
  EXPECT_EQ(zylNumbers(arrow, { "TipResolution", "ShaftResolution" }), (Values{ 12, 8 }));

  zylSet(settings, "GlyphSizeMode", 3, "ScaleVariable", "pressure");
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
  const auto visible = [&pipeline] {
    double bounds[6];
    pipeline->GetVisibleBounds(bounds);
    return Values(bounds, bounds + 6);
  };
  double all[6];
  pipeline->GetBounds(all);
  EXPECT_EQ(Values(all, all + 2), (Values{ 0, 3 }));
  EXPECT_EQ(visible(), (Values{ 1, 2, 0, 1, 0, 1 }));
  zylSetBlocks(pipeline, { 1, 0, 2, 0 });
  EXPECT_FALSE(pipeline->AnyBlocksVisible());
  EXPECT_GT(visible()[0], visible()[1]);

  pipeline->GetProperties()->Set("ColorVariableName", "velocity_Y");
  const auto array = pipeline->GetColorVariableInformation();
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->GetName(), "velocity");
  EXPECT_EQ(array->GetNumberOfComponents(), 3u);
  EXPECT_EQ(zylRange(array), (Values{ 0, 1 }));
}
