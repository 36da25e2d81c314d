#include "zylViewScene.h"

#include "zylHostTest.h"
#include "zylTest.h"
#include "zylTimeController.h"

//--------------------------------------------------------------------------------------------------
void zylViewScene::Make()
{
  this->View = zylMakeView();
  this->Data = zylLoad(zylTestData::MakeRow(3));
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
  zylSet(this->Boundary->GetSurfaceProperties(1), "ColorMode", on ? 1 : 0, "ColorVariableName",
    "pressure", "ColorLegendVisibility", legend);
  this->Boundary->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Style(int style, double transparency)
{
  zylSet(
    this->Boundary->GetSurfaceProperties(3), "DisplayStyle", style, "Transparency", transparency);
  this->Boundary->Update();
}

//--------------------------------------------------------------------------------------------------
std::vector<zylViewCall> zylViewCalls()
{
  const auto update = [](auto change) {
    return [change](zylViewScene& s) {
      change(*s.Boundary);
      s.Boundary->Update();
    };
  };
  return {
    { "Update of nothing", [](zylViewScene& s) { s.Boundary->Update(); } },
    { "one block recolored",
      update([](auto& b) { b.GetSurfaceProperties(2)->Set("Diffuse", 0.5); }) },
    { "and back", update([](auto& b) { b.GetSurfaceProperties(2)->Set("Diffuse", 1.0); }) },
    { "color by variable with legend", [](zylViewScene& s) { s.Color(true, true); } },
    { "legend hidden", [](zylViewScene& s) { s.Color(true, false); } },
    { "legend shown again", [](zylViewScene& s) { s.Color(true, true); } },
    { "solid color", [](zylViewScene& s) { s.Color(false, false); } },
    { "mesh lines hidden",
      update([](auto& b) { b.GetMeshLineProperties(1)->Set("Visibility", false); }) },
    { "contour", update([](auto& b) {
       zylSet(b.GetContourProperties(1), "Visibility", true, "ContourVariableName", "pressure");
     }) },
    { "arrows", update([](auto& b) {
       zylSet(b.GetVectorGlyphProperties(1), "Visibility", true, "VectorVariable", "velocity",
         "ColorMode", 1, "ColorVariableName", "pressure", "ColorLegendVisibility", true);
     }) },
    { "no arrows",
      update([](auto& b) { b.GetVectorGlyphProperties(1)->Set("Visibility", false); }) },
    { "point Gaussians", [](zylViewScene& s) { s.Style(2, 0.0); } },
    { "points", [](zylViewScene& s) { s.Style(1, 0.0); } },
    { "a transparent surface", [](zylViewScene& s) { s.Style(0, 0.5); } },
    { "an opaque one", [](zylViewScene& s) { s.Style(0, 0.0); } },
    { "feature lines",
      update([](auto& b) { b.GetFeatureLineProperties(1)->Set("Visibility", true); }) },
    { "highlight", update([](auto& b) {
       b.Highlight({ 1, 2 }, 0);
     }) },
    { "highlight cleared", update([](auto& b) { b.ClearHighlights(); }) },
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
    { "Hide", update([](auto& b) { b.Hide(); }) },
    { "Show", update([](auto& b) { b.Show(); }) },
    { "a clip", update([](auto& b) { b.SetNumberOfClips(1); }) },
    { "no clip", update([](auto& b) { b.SetNumberOfClips(0); }) },
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
