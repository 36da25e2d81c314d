// Two windows, and no public call touches a context that is not its view's: whichever is current,
// state and objects of the host stay, and both windows draw afterwards.
#include "zylBoundaryRepresentation.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylGLObjects.h"
#include "zylHostTest.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <functional>
#include <string>
#include <vector>

#include <vtkMultiBlockDataSet.h>
#include <vtkSmartPointer.h>
#include <vtk_glew.h>

namespace {
// A view with a row of blocks that shows something of every kind.
struct Scene
{
  Scene() { this->Make(); }

  void Make()
  {
    this->View = vtkSmartPointer<zylView>::New();
    this->View->SetSourceFBO(0);
    this->View->SetWindowSize(300, 300);
    this->Data = vtkSmartPointer<zylDataSet>::New();
    this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(3));
    this->Boundary = vtkSmartPointer<zylBoundaryRepresentation>::New();
    this->Boundary->SetDataSet(this->Data);
    this->ShowBlocks();
    this->View->AddRepresentation(this->Boundary);
    this->View->ResetCamera(0.0, 3.0, 0.0, 1.0, 0.0, 1.0);
  }
  void ShowBlocks()
  {
    for (int id = 1; id <= 3; ++id)
    {
      this->Boundary->GetSurfaceProperties(id)->Set("Visibility", true);
      this->Boundary->GetMeshLineProperties(id)->Set("Visibility", true);
    }
  }
  void Color(bool on, bool legend)
  {
    zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(1);
    surface->Set("ColorMode", on ? 1 : 0);
    surface->Set("ColorVariableName", "pressure");
    surface->Set("ColorLegendVisibility", legend);
    this->Boundary->Update();
  }

  void Style(int style, double transparency)
  {
    zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(3);
    surface->Set("DisplayStyle", style);
    surface->Set("Transparency", transparency);
    this->Boundary->Update();
  }

  vtkSmartPointer<zylDataSet> Data;
  vtkSmartPointer<zylBoundaryRepresentation> Boundary;
  vtkSmartPointer<zylView> View;
};

struct Call
{
  const char* Name;
  std::function<void(Scene&)> Run;
};

// Every public call that may drop or make OpenGL objects, in an order in which each has some.
std::vector<Call> Calls()
{
  return {
    { "Update of nothing", [](Scene& s) { s.Boundary->Update(); } },
    { "one block recolored",
      [](Scene& s) {
        s.Boundary->GetSurfaceProperties(2)->Set("Diffuse", 0.5);
        s.Boundary->Update();
      } },
    { "and back",
      [](Scene& s) {
        s.Boundary->GetSurfaceProperties(2)->Set("Diffuse", 1.0);
        s.Boundary->Update();
      } },
    { "color by variable with legend", [](Scene& s) { s.Color(true, true); } },
    { "legend hidden", [](Scene& s) { s.Color(true, false); } },
    { "legend shown again", [](Scene& s) { s.Color(true, true); } },
    { "solid color", [](Scene& s) { s.Color(false, false); } },
    { "mesh lines hidden",
      [](Scene& s) {
        s.Boundary->GetMeshLineProperties(1)->Set("Visibility", false);
        s.Boundary->Update();
      } },
    { "contour",
      [](Scene& s) {
        zylPropertyCollection* contour = s.Boundary->GetContourProperties(1);
        contour->Set("Visibility", true);
        contour->Set("ContourVariableName", "pressure");
        s.Boundary->Update();
      } },
    { "arrows",
      [](Scene& s) {
        zylPropertyCollection* glyphs = s.Boundary->GetVectorGlyphProperties(1);
        glyphs->Set("Visibility", true);
        glyphs->Set("VectorVariable", "velocity");
        glyphs->Set("ColorMode", 1);
        glyphs->Set("ColorVariableName", "pressure");
        glyphs->Set("ColorLegendVisibility", true);
        s.Boundary->Update();
      } },
    { "no arrows",
      [](Scene& s) {
        s.Boundary->GetVectorGlyphProperties(1)->Set("Visibility", false);
        s.Boundary->Update();
      } },
    { "point Gaussians", [](Scene& s) { s.Style(2, 0.0); } },
    { "points", [](Scene& s) { s.Style(1, 0.0); } },
    { "a transparent surface", [](Scene& s) { s.Style(0, 0.5); } },
    { "an opaque one", [](Scene& s) { s.Style(0, 0.0); } },
    { "feature lines",
      [](Scene& s) {
        s.Boundary->GetFeatureLineProperties(1)->Set("Visibility", true);
        s.Boundary->Update();
      } },
    { "highlight",
      [](Scene& s) {
        s.Boundary->Highlight({ 1, 2 }, 0);
        s.Boundary->Update();
      } },
    { "highlight cleared",
      [](Scene& s) {
        s.Boundary->ClearHighlights();
        s.Boundary->Update();
      } },
    { "Hide",
      [](Scene& s) {
        s.Boundary->Hide();
        s.Boundary->Update();
      } },
    { "Show",
      [](Scene& s) {
        s.Boundary->Show();
        s.Boundary->Update();
      } },
    { "a clip",
      [](Scene& s) {
        s.Boundary->SetNumberOfClips(1);
        s.Boundary->Update();
      } },
    { "no clip",
      [](Scene& s) {
        s.Boundary->SetNumberOfClips(0);
        s.Boundary->Update();
      } },
    { "FreeResources", [](Scene& s) { s.Boundary->FreeResources(); } },
    { "Update after it", [](Scene& s) { s.Boundary->Update(); } },
    { "SetView(nullptr)", [](Scene& s) { s.Boundary->SetView(nullptr); } },
    { "SetView",
      [](Scene& s) {
        s.Boundary->SetView(s.View);
        s.Boundary->Update();
      } },
    { "SetDataSet(nullptr)", [](Scene& s) { s.Boundary->SetDataSet(nullptr); } },
    { "Update without a dataset", [](Scene& s) { s.Boundary->Update(); } },
    { "SetDataSet",
      [](Scene& s) {
        s.Boundary->SetDataSet(s.Data);
        s.ShowBlocks();
        s.Boundary->Update();
      } },
    { "other data",
      [](Scene& s) {
        s.Data->InitializeFromVTKDataSet(zylTestData::MakeRow(3, 4));
        s.Boundary->SetDataSet(s.Data);
        s.ShowBlocks();
        s.Boundary->Update();
      } },
    { "RemoveRepresentation", [](Scene& s) { s.View->RemoveRepresentation(s.Boundary); } },
    { "AddRepresentation", [](Scene& s) { s.View->AddRepresentation(s.Boundary); } },
    { "axes on",
      [](Scene& s) {
        s.View->SetOrientationAxis(true);
        s.View->Update();
      } },
    { "axes off",
      [](Scene& s) {
        s.View->SetOrientationAxis(false);
        s.View->Update();
      } },
    { "SetWindowSize",
      [](Scene& s) {
        s.View->SetWindowSize(200, 200);
        s.View->SetWindowSize(300, 300);
      } },
    { "camera",
      [](Scene& s) {
        s.View->ResetCamera();
        s.View->SetViewDir(1, false);
        s.View->SetParallelProjection(true);
        s.View->ResetCamera(0.0, 3.0, 0.0, 1.0, 0.0, 1.0);
      } },
    { "lights",
      [](Scene& s) {
        s.View->GetLightKitProperties()->Set("UseLight", false);
        s.View->Update();
      } },
    { "dataset updated", [](Scene& s) { s.Data->Update(); } },
    { "time", [](Scene&) { zylTimeController::GetInstance()->Update(); } },
    { "representation deleted",
      [](Scene& s) {
        s.View->RemoveRepresentation(s.Boundary);
        s.Boundary = nullptr;
      } },
    { "and made", [](Scene& s) { s.Make(); } },
    { "view deleted", [](Scene& s) { s.View = nullptr; } },
    { "view made", [](Scene& s) { s.Make(); } },
    { "all deleted",
      [](Scene& s) {
        s.View = nullptr;
        s.Boundary = nullptr;
        s.Data = nullptr;
      } },
    { "all made", [](Scene& s) { s.Make(); } },
  };
}

// Binds what deleting and making objects may unbind.
void BindObjects(const zylGLObjects& objects)
{
  glBindVertexArray(objects.Name("vertex array", 0));
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, objects.Name("buffer", 0));
  glBindBuffer(GL_ARRAY_BUFFER, objects.Name("buffer", 1));
  glBindRenderbuffer(GL_RENDERBUFFER, objects.Name("renderbuffer", 0));
  for (GLuint unit = 0; unit < 8; ++unit)
  {
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, objects.Name("texture", unit));
  }
  glActiveTexture(GL_TEXTURE3);
}

enum Situation
{
  Own,
  Other,
  None
};
} // namespace

class zylViewContexts
  : public zylHostTest
  , public ::testing::WithParamInterface<Situation>
{
protected:
  // Whether the picture shows something but the clear color in the middle.
  void ExpectDrawn(zylTestHost& host, zylView* view, const std::string& what, bool drawn = true)
  {
    host.MakeCurrent();
    host.Clear(0.0f, 0.0f, 1.0f);
    view->Render();
    EXPECT_EQ(!host.PixelIs(150, 150, 0, 0, 255), drawn) << what;
    EXPECT_TRUE(host.PixelIs(2, 2, 0, 0, 255)) << what;
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << what;
  }
};

TEST_P(zylViewContexts, AreLeftAlone)
{
  const Situation situation = this->GetParam();
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  Scene otherScene;
  this->ExpectDrawn(*other, otherScene.View, "first");
  // The other host makes its objects first, and many: nearly every name of ours is one of theirs.
  const zylGLObjects otherObjects(600);
  this->Host->MakeCurrent();
  Scene scene;
  this->ExpectDrawn(*this->Host, scene.View, "first");
  const zylGLObjects objects(30);
  BindObjects(objects);
  other->MakeCurrent();
  BindObjects(otherObjects);

  for (const Call& call : Calls())
  {
    this->Host->MakeCurrent();
    const zylGLState before = zylGLState::Read();
    other->MakeCurrent();
    const zylGLState otherBefore = zylGLState::Read();
    zylTestHost* current = situation == Own ? this->Host.get() : other.get();
    current->MakeCurrent();
    if (situation == None)
    {
      current->Release();
    }
    call.Run(scene);
    EXPECT_EQ(this->Host->IsCurrent(), situation == Own) << call.Name;
    EXPECT_EQ(other->IsCurrent(), situation == Other) << call.Name;
    other->MakeCurrent();
    EXPECT_EQ(zylGLState::Read().Difference(otherBefore), "") << call.Name << ", other window";
    EXPECT_EQ(otherObjects.Missing(), "") << call.Name << ", other window";
    this->Host->MakeCurrent();
    EXPECT_EQ(zylGLState::Read().Difference(before), "") << call.Name;
    EXPECT_EQ(objects.Missing(), "") << call.Name;
    if (scene.View)
    {
      this->ExpectDrawn(*other, otherScene.View, call.Name);
      double bounds[6];
      this->ExpectDrawn(*this->Host, scene.View, call.Name, scene.View->GetBounds(bounds));
      EXPECT_EQ(zylGLState::Read().Difference(before), "") << call.Name << ", frame after it";
      EXPECT_EQ(objects.Missing(), "") << call.Name << ", frame after it";
    }
    ASSERT_FALSE(this->HasFailure()) << call.Name;
  }
}

// What is dropped while the context is not current is not lost: it goes at the next frame.
TEST_P(zylViewContexts, HoldNothingThatWasDropped)
{
  const Situation situation = this->GetParam();
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  this->Host->MakeCurrent();
  Scene scene;
  const auto round = [&] {
    for (int i = 0; i < 6; ++i)
    {
      this->Host->MakeCurrent();
      scene.View->Render();
      if (situation != Own)
      {
        other->MakeCurrent();
      }
      if (situation == None)
      {
        other->Release();
      }
      scene.Color(i % 2 == 0, i % 2 == 0);
      scene.Style(i % 3, i % 2 ? 0.5 : 0.0);
    }
    this->Host->MakeCurrent();
    scene.View->Render();
    return zylGLObjects::Count();
  };
  round();
  const int count = round();
  EXPECT_EQ(round(), count);
}

INSTANTIATE_TEST_SUITE_P(
  Current, zylViewContexts, ::testing::Values(Own, Other, None), [](const auto& info) {
    return std::string(info.param == Own ? "Own" : info.param == Other ? "Other" : "None");
  });

// Last: the session of this process ends here, with both windows.
class zylViewContextsEnd : public zylViewContexts
{
};

TEST_P(zylViewContextsEnd, LeaveTheContextsAlone)
{
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  Scene otherScene;
  otherScene.View->Render();
  const zylGLObjects otherObjects(30);
  this->Host->MakeCurrent();
  Scene scene;
  scene.View->Render();
  const zylGLObjects objects(600);
  BindObjects(objects);
  this->Unchanged("Disconnect", [] { zylCore::GetInstance()->Disconnect(); });
  EXPECT_EQ(objects.Missing(), "");
  other->MakeCurrent();
  EXPECT_EQ(otherObjects.Missing(), "");
  this->Host->MakeCurrent();
}

INSTANTIATE_TEST_SUITE_P(Current, zylViewContextsEnd, ::testing::Values(Own));
