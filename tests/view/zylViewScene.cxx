#include "zylViewScene.h"

#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTimeController.h"

#include <vtkMultiBlockDataSet.h>

//--------------------------------------------------------------------------------------------------
void zylViewScene::Make()
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

//--------------------------------------------------------------------------------------------------
void zylViewScene::ShowBlocks()
{
  for (int id = 1; id <= 3; ++id)
  {
    this->Boundary->GetSurfaceProperties(id)->Set("Visibility", true);
    this->Boundary->GetMeshLineProperties(id)->Set("Visibility", true);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Color(bool on, bool legend)
{
  zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(1);
  surface->Set("ColorMode", on ? 1 : 0);
  surface->Set("ColorVariableName", "pressure");
  surface->Set("ColorLegendVisibility", legend);
  this->Boundary->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Style(int style, double transparency)
{
  zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(3);
  surface->Set("DisplayStyle", style);
  surface->Set("Transparency", transparency);
  this->Boundary->Update();
}

//--------------------------------------------------------------------------------------------------
std::vector<zylViewCall> zylViewCalls()
{
  return {
    { "Update of nothing", [](zylViewScene& s) { s.Boundary->Update(); } },
    { "one block recolored",
      [](zylViewScene& s) {
        s.Boundary->GetSurfaceProperties(2)->Set("Diffuse", 0.5);
        s.Boundary->Update();
      } },
    { "and back",
      [](zylViewScene& s) {
        s.Boundary->GetSurfaceProperties(2)->Set("Diffuse", 1.0);
        s.Boundary->Update();
      } },
    { "color by variable with legend", [](zylViewScene& s) { s.Color(true, true); } },
    { "legend hidden", [](zylViewScene& s) { s.Color(true, false); } },
    { "legend shown again", [](zylViewScene& s) { s.Color(true, true); } },
    { "solid color", [](zylViewScene& s) { s.Color(false, false); } },
    { "mesh lines hidden",
      [](zylViewScene& s) {
        s.Boundary->GetMeshLineProperties(1)->Set("Visibility", false);
        s.Boundary->Update();
      } },
    { "contour",
      [](zylViewScene& s) {
        zylPropertyCollection* contour = s.Boundary->GetContourProperties(1);
        contour->Set("Visibility", true);
        contour->Set("ContourVariableName", "pressure");
        s.Boundary->Update();
      } },
    { "arrows",
      [](zylViewScene& s) {
        zylPropertyCollection* glyphs = s.Boundary->GetVectorGlyphProperties(1);
        glyphs->Set("Visibility", true);
        glyphs->Set("VectorVariable", "velocity");
        glyphs->Set("ColorMode", 1);
        glyphs->Set("ColorVariableName", "pressure");
        glyphs->Set("ColorLegendVisibility", true);
        s.Boundary->Update();
      } },
    { "no arrows",
      [](zylViewScene& s) {
        s.Boundary->GetVectorGlyphProperties(1)->Set("Visibility", false);
        s.Boundary->Update();
      } },
    { "point Gaussians", [](zylViewScene& s) { s.Style(2, 0.0); } },
    { "points", [](zylViewScene& s) { s.Style(1, 0.0); } },
    { "a transparent surface", [](zylViewScene& s) { s.Style(0, 0.5); } },
    { "an opaque one", [](zylViewScene& s) { s.Style(0, 0.0); } },
    { "feature lines",
      [](zylViewScene& s) {
        s.Boundary->GetFeatureLineProperties(1)->Set("Visibility", true);
        s.Boundary->Update();
      } },
    { "highlight",
      [](zylViewScene& s) {
        s.Boundary->Highlight({ 1, 2 }, 0);
        s.Boundary->Update();
      } },
    { "highlight cleared",
      [](zylViewScene& s) {
        s.Boundary->ClearHighlights();
        s.Boundary->Update();
      } },
    { "selections",
      [](zylViewScene& s) {
        s.View->SelectBlocks(0, 0, 299, 299);
        s.View->SelectPoints(100, 100, 200, 200)->GetBlocks(s.Boundary);
        s.View->SetHostOccludesSelection(true);
        s.Selected = s.View->SelectCells(150, 150, 160, 150);
        s.Selected->GetCells(s.Boundary);
        s.View->SetHostOccludesSelection(false);
      } },
    { "pick",
      [](zylViewScene& s) {
        double point[3];
        s.View->PickPointOnSurface(150, 150, point);
      } },
    { "highlight of a selection",
      [](zylViewScene& s) {
        s.View->HighlightSelection(s.Selected);
        s.View->HighlightSelection(
          s.Boundary, zylSelection::CreateSelectionForBlock(s.Boundary, 2));
      } },
    { "highlight of a selection cleared", [](zylViewScene& s) { s.View->ClearHighlight(); } },
    { "Hide",
      [](zylViewScene& s) {
        s.Boundary->Hide();
        s.Boundary->Update();
      } },
    { "Show",
      [](zylViewScene& s) {
        s.Boundary->Show();
        s.Boundary->Update();
      } },
    { "a clip",
      [](zylViewScene& s) {
        s.Boundary->SetNumberOfClips(1);
        s.Boundary->Update();
      } },
    { "no clip",
      [](zylViewScene& s) {
        s.Boundary->SetNumberOfClips(0);
        s.Boundary->Update();
      } },
    { "FreeResources", [](zylViewScene& s) { s.Boundary->FreeResources(); } },
    { "Update after it", [](zylViewScene& s) { s.Boundary->Update(); } },
    { "SetView(nullptr)", [](zylViewScene& s) { s.Boundary->SetView(nullptr); } },
    { "SetView",
      [](zylViewScene& s) {
        s.Boundary->SetView(s.View);
        s.Boundary->Update();
      } },
    { "SetDataSet(nullptr)", [](zylViewScene& s) { s.Boundary->SetDataSet(nullptr); } },
    { "Update without a dataset", [](zylViewScene& s) { s.Boundary->Update(); } },
    { "SetDataSet",
      [](zylViewScene& s) {
        s.Boundary->SetDataSet(s.Data);
        s.ShowBlocks();
        s.Boundary->Update();
      } },
    { "other data",
      [](zylViewScene& s) {
        s.Data->InitializeFromVTKDataSet(zylTestData::MakeRow(3, 4));
        s.Boundary->SetDataSet(s.Data);
        s.ShowBlocks();
        s.Boundary->Update();
      } },
    { "RemoveRepresentation", [](zylViewScene& s) { s.View->RemoveRepresentation(s.Boundary); } },
    { "AddRepresentation", [](zylViewScene& s) { s.View->AddRepresentation(s.Boundary); } },
    { "axes on",
      [](zylViewScene& s) {
        s.View->SetOrientationAxis(true);
        s.View->Update();
      } },
    { "axes off",
      [](zylViewScene& s) {
        s.View->SetOrientationAxis(false);
        s.View->Update();
      } },
    { "SetWindowSize",
      [](zylViewScene& s) {
        s.View->SetWindowSize(200, 200);
        s.View->SetWindowSize(300, 300);
      } },
    { "camera",
      [](zylViewScene& s) {
        s.View->ResetCamera();
        s.View->SetViewDir(1, false);
        s.View->SetParallelProjection(true);
        s.View->ResetCamera(0.0, 3.0, 0.0, 1.0, 0.0, 1.0);
      } },
    { "lights",
      [](zylViewScene& s) {
        s.View->GetLightKitProperties()->Set("UseLight", false);
        s.View->Update();
      } },
    { "dataset updated", [](zylViewScene& s) { s.Data->Update(); } },
    { "time", [](zylViewScene&) { zylTimeController::GetInstance()->Update(); } },
    { "representation deleted",
      [](zylViewScene& s) {
        s.View->RemoveRepresentation(s.Boundary);
        s.Boundary = nullptr;
      } },
    { "selection deleted", [](zylViewScene& s) { s.Selected = nullptr; } },
    { "and made", [](zylViewScene& s) { s.Make(); } },
    { "view deleted", [](zylViewScene& s) { s.View = nullptr; } },
    { "view made", [](zylViewScene& s) { s.Make(); } },
    { "all deleted",
      [](zylViewScene& s) {
        s.View = nullptr;
        s.Boundary = nullptr;
        s.Data = nullptr;
      } },
    { "all made", [](zylViewScene& s) { s.Make(); } },
  };
}
