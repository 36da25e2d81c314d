// What derived surfaces and field analysis do when their session is gone, and that the same objects
// work on once their dataset is loaded again in another session.
#include "zylArrayInformation.h"
#include "zylClipRepresentation.h"
#include "zylCurvedGlyphRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylFieldHistogram.h"
#include "zylFile.h"
#include "zylFileInformation.h"
#include "zylFlowData.h"
#include "zylIntegrateFields.h"
#include "zylIntersectionCurveData.h"
#include "zylIntersectionCurveRepresentation.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylJSONSerializer.h"
#include "zylPointProbe.h"
#include "zylPropertyCollection.h"
#include "zylSessionScene.h"
#include "zylStreamlineRepresentation.h"
#include "zylSurfaceStreamlineRepresentation.h"
#include "zylTestData.h"
#include "zylView.h"
#include "zylVortexCoresRepresentation.h"

#include <cmath>
#include <map>

#include <vtkCollection.h>
#include <vtkImageData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSourceProxy.h>

namespace {
using Surface = zylDerivedSurfaceRepresentation;
using Answers = std::map<std::string, double>;

// A file that every session can read.
const std::string& Folder()
{
  static const std::string folder = zylTestData::MakeFolder();
  return folder;
}
const std::string& File()
{
  static const std::string file =
    zylTestData::Write(zylFlowData::Make(zylFlowData::Burgers, 8), Folder() + "/flow.vtm");
  return file;
}

// One of every class, in use and to be seen.
struct Objects
{
  vtkSmartPointer<zylDataSet> Data = vtkSmartPointer<zylDataSet>::New();
  vtkSmartPointer<zylView> View;
  vtkNew<zylClipRepresentation> Clip;
  vtkNew<zylCutPlaneRepresentation> Cut;
  vtkNew<zylIsosurfaceRepresentation> Isosurface;
  vtkNew<zylIntersectionCurveRepresentation> Curves;
  vtkNew<zylStreamlineRepresentation> Lines;
  vtkNew<zylSurfaceStreamlineRepresentation> SurfaceLines;
  vtkNew<zylCurvedGlyphRepresentation> Arrows;
  vtkNew<zylVortexCoresRepresentation> Cores;
  vtkNew<zylIntegrateFields> Integral;
  vtkNew<zylFieldHistogram> Histogram;
  vtkNew<zylPointProbe> Probe;
  vtkNew<zylFileInformation> Files;
  std::vector<Surface*> Surfaces = { Clip, Cut, Isosurface, Curves, Lines, SurfaceLines, Arrows,
    Cores };

  Objects()
  {
    this->Clip->GetProperties()->Set("ClipMode", 1);
    this->Isosurface->GetProperties()->Set("Variable", "pressure");
    this->Isosurface->GetProperties()->Set("Isovalue", 0.2);
    this->Arrows->GetProperties()->Set("GlyphSpacing", 0.2);
    this->Arrows->GetProperties()->Set("GlyphBodyLength", 0.1);
    const int all[] = { 0 };
    for (Surface* surface : this->Surfaces)
    {
      zylPropertyCollection* settings = surface->GetProperties();
      settings->MakeInt("Blocks", all, 1);
      settings->Set("MergePoints", true);
      if (settings->Has("VectorVariable"))
      {
        settings->Set("VectorVariable", "velocity");
      }
      if (settings->Has("MaximumStreamlineLength"))
      {
        settings->Set("MaximumStreamlineLength", 1.0);
      }
      const bool onSurface = surface == this->SurfaceLines;
      zylFlowData::SetSeeds(surface, { 0.4, 0.1, onSurface ? 1.0 : 0.2 });
      surface->SetDataSet(this->Data);
      surface->GetSurfaceProperties()->Set("Visibility", true);
      surface->GetSurfaceProperties()->Set("ColorMode", 1);
      surface->GetSurfaceProperties()->Set("ColorVariableName", "pressure");
      surface->Highlight(2);
    }
    this->Clip->SetNumberOfClips(1);
    this->Lines->GetSurfaceProperties()->Set("GlyphVisibility", true);
    this->Lines->GetProperties()->Set("GlyphSpaceEvenly", true);
    this->Lines->GetProperties()->Set("GlyphSpacing", 0.3);
    this->Lines->GetProperties()->Set("GlyphScaleFactor", 0.1);

    this->Integral->SetDataSet(this->Data);
    this->Histogram->SetDataSet(this->Data);
    this->Histogram->GetProperties()->Set("VariableName", "pressure");
    const double point[] = { 0.3, 0.1, 0.2 };
    this->Probe->SetDataSet(this->Data);
    this->Probe->GetProperties()->GetProperty("ProbePoints")->SetNumberOfElements(3);
    this->Probe->GetProperties()->Set("ProbePoints", point, 3);
    this->Load();
    this->Show();
  }

  void Load()
  {
    this->Data->LoadFromFile({ File() });
    this->Data->DefineDerivedPointVariable("twice", "2 * pressure");
    this->Probe->Update();
  }

  // In a view of the current session.
  void Show()
  {
    this->View = nullptr; // lets go of what it shows, first
    this->View = vtkSmartPointer<zylView>::New();
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(300, 300);
    for (Surface* surface : this->Surfaces)
    {
      this->View->AddRepresentation(surface);
    }
    this->View->SetViewDir(1, false);
  }

  // A clip of each mode is left behind, so that none finds its own stages in the next session.
  void ChangeClips()
  {
    zylPropertyCollection* clip = this->Clip->GetClipProperties(0);
    clip->Set("ScalarVariable", "pressure");
    clip->Set("ScalarLowerThreshold", -0.5);
    clip->Set("ScalarUpperThreshold", -0.1);
    clip->Set("ClipMode", 1);
    this->Clip->Update();
  }

  Answers Ask()
  {
    Answers answers;
    this->Clip->GetClipProperties(0)->Set("ClipMode", 2); // a plane
    for (Surface* surface : this->Surfaces)
    {
      const std::string name = surface->GetClassName();
      surface->Update();
      const auto integrals = surface->GetIntegratedValues();
      for (const char* measure : { "Area", "Length" })
      {
        const auto found = integrals.CellValues.find(measure);
        if (found != integrals.CellValues.end())
        {
          answers[name + " " + measure] = found->second.at(0);
        }
      }
      const auto fetched = surface->GetDerivedSurface();
      answers[name + " length"] = fetched ? fetched->GetLength() : 0.0;
    }
    answers["integral"] = this->Integral->GetIntegratedValues(0).PointValues["twice"].at(0);
    answers["bins"] = this->Histogram->GetBins().at(0);
    this->Probe->Update();
    answers["probed"] = this->Probe->GetProbedValues(0).PointValues["twice"].at(0);
    return answers;
  }
};

using Call = zylSessionCall<Objects>;
using Kind = zylCallKind;

double Box[6];

// Each object's result must be a failed one, with a word of its own.
Call Each(const char* name, Kind kind, bool (*fails)(Surface*))
{
  return { name, kind, [kind, fails](Objects& o) {
            bool failed = true;
            for (Surface* surface : o.Surfaces)
            {
              zylTestLog log(vtkLogger::VERBOSITY_WARNING);
              failed = fails(surface) && failed;
              if (surface->GetPVRepresentations()->GetNumberOfItems() > 0)
              {
                EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "")) << surface->GetClassName();
              }
            }
            return failed;
          } };
}

const std::vector<Call>& Calls()
{
  static const std::vector<Call> calls = {
    Each("Update", Kind::Speaks,
      [](Surface* surface) {
        surface->GetProperties()->Set("MergePoints", false);
        surface->Update();
        return true;
      }),
    Each("UpdateLocalPipeline", Kind::Speaks,
      [](Surface* surface) {
        surface->UpdateLocalPipeline();
        return true;
      }),
    Each("GetBounds", Kind::Uses, [](Surface* surface) { return !surface->GetBounds(Box); }),
    Each("GetSurfaceColorVariableInformation", Kind::Uses,
      [](Surface* surface) { return !surface->GetSurfaceColorVariableInformation(); }),
    Each("GetContourColorVariableInformation", Kind::Uses,
      [](Surface* surface) { return !surface->GetContourColorVariableInformation(); }),
    Each("GetMeshLineColorVariableInformation", Kind::Uses,
      [](Surface* surface) { return !surface->GetMeshLineColorVariableInformation(); }),
    Each("GetFeatureLineColorVariableInformation", Kind::Uses,
      [](Surface* surface) { return !surface->GetFeatureLineColorVariableInformation(); }),
    Each("GetVectorGlyphColorVariableInformation", Kind::Uses,
      [](Surface* surface) { return !surface->GetVectorGlyphColorVariableInformation(); }),
    Each("GetDerivedSurface", Kind::Uses,
      [](Surface* surface) { return !surface->GetDerivedSurface(); }),
    Each("GetIntegratedValues", Kind::Uses,
      [](Surface* surface) { return surface->GetIntegratedValues().PointValues.empty(); }),
    { "zylIntegrateFields::Update", Kind::Speaks,
      [](Objects& o) {
        o.Integral->Update();
        return true;
      } },
    { "zylIntegrateFields::GetIntegratedValues", Kind::Uses,
      [](Objects& o) {
        return o.Integral->GetIntegratedValues(0).PointValues.empty() &&
          o.Integral->GetIntegratedValues({ 0 }).CellValues.empty();
      } },
    { "zylFieldHistogram::Update", Kind::Speaks,
      [](Objects& o) {
        o.Histogram->Update();
        return true;
      } },
    { "zylFieldHistogram::GetBins", Kind::Uses,
      [](Objects& o) { return o.Histogram->GetBins().empty(); } },
    { "zylPointProbe::GetProbedValues", Kind::Uses,
      [](Objects& o) { return o.Probe->GetProbedValues(0).PointValues.empty(); } },
    { "zylPointProbe::Update", Kind::Speaks,
      [](Objects& o) {
        o.Probe->Update();
        return true;
      } },
    { "zylFileInformation::GetFilesInDirectory", Kind::Makes,
      [](Objects& o) { return o.Files->GetFilesInDirectory(Folder().c_str()).empty(); } },
  };
  return calls;
}

// Calls that are answered from this process, or that change what is kept here.
void CallTheRest(Objects& o)
{
  for (Surface* surface : o.Surfaces)
  {
    const std::string settings = zylJSONSerializer::Serialize(surface);
    EXPECT_TRUE(zylJSONSerializer::Deserialize(settings, surface));
    EXPECT_EQ(zylJSONSerializer::Serialize(surface), settings);
    surface->HasRepresentation(o.View->GetProxy());
    surface->GetPVRepresentations();
    surface->Hide();
    EXPECT_FALSE(surface->IsVisible());
    surface->Show();
    surface->UnHighlight();
    surface->Highlight(3);
    surface->SetHighlightTransparency(0.5);
    surface->SetNumberOfClips(2);
    surface->GetClipProperties(0)->Set("ClipMode", 1);
    surface->Update();
    surface->SetNumberOfClips(surface == o.Clip ? 1 : 0);
    surface->GetProperties()->Set("MergePoints", true);
    surface->SetDataSet(nullptr);
    surface->Update();
    surface->UpdateLocalPipeline();
    surface->SetDataSet(o.Data);
    surface->FreeResources();
    surface->Update();
    surface->UpdateLocalPipeline();
    surface->SetView(nullptr);
    surface->Update();
    surface->SetView(o.View);
  }
  o.Clip->GetScalarInformation();
  o.Isosurface->GetVariableInformation();
  o.Lines->GetThresholdArrayInformation();
  o.Curves->GetProperties()->Set("CurveToDisplay", 0, 0);
  const auto curve =
    vtkSmartPointer<zylIntersectionCurveData>::Take(o.Curves->GetIntersectionCurve(0, true));
  EXPECT_NE(curve, nullptr);
  o.Curves->GetProperties()->Set("CurveToDisplay", 0, -1);
  o.Clip->GetClipProperties(0)->Set("ClipMode", 2);
}

// How many of some of the pixels show something.
int CountDrawn(zylTestHost* host, zylView* view)
{
  host->Clear(0.0f, 0.0f, 1.0f);
  view->Render();
  int drawn = 0;
  for (int i = 0; i < 60 * 60; ++i) // each is read on its own
  {
    drawn += host->PixelIs(5 * (i % 60), 5 * (i / 60), 0, 0, 255) ? 0 : 1;
  }
  return drawn;
}

class zylDerivedSession
  : public zylSessionTest
  , public testing::WithParamInterface<zylSessionScene>
{
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylDerivedSession, FailWithAWordAndGoOnInTheNext)
{
  if (!this->Begin(GetParam()))
  {
    return;
  }
  const zylSituation situation = GetParam().What;
  Objects objects;
  Answers before;
  int drawn = 0;
  if (situation != zylSituation::NoSession)
  {
    before = objects.Ask();
    drawn = CountDrawn(this->Host.get(), objects.View);
    EXPECT_GT(drawn, 100);
    objects.ChangeClips();
  }
  this->Bring(situation);
  zylExpectFailures(Calls(), objects, situation);
  CallTheRest(objects);

  // First while the view is still that of the other session.
  zylCore::GetInstance()->Connect("builtin:", 0);
  objects.Load();
  const Answers after = objects.Ask();
  EXPECT_EQ(after.size(), 24u + 3u - 8u);
  for (const auto& [name, value] : after)
  {
    EXPECT_GT(value, 0.0) << name;
    if (situation != zylSituation::NoSession)
    {
      ASSERT_EQ(before.count(name), 1u) << name;
      EXPECT_NEAR(value, before[name], 1e-6 * value) << name;
    }
  }
  objects.Show();
  for (Surface* surface : objects.Surfaces)
  {
    surface->Highlight(2);
    surface->SetHighlightTransparency(0.0);
    EXPECT_TRUE(surface->GetBounds(Box)) << surface->GetClassName();
    EXPECT_GE(surface->GetPVRepresentations()->GetNumberOfItems(), 2) << surface->GetClassName();
    surface->Update();
  }
  const int drawnAfter = CountDrawn(this->Host.get(), objects.View);
  EXPECT_GT(drawnAfter, 100);
  if (situation != zylSituation::NoSession)
  {
    EXPECT_EQ(drawnAfter, drawn);
  }
  EXPECT_NE(objects.View->CaptureImage(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
  Situations, zylDerivedSession, zylFourSessionScenes(), zylSessionSceneName);
