#include "zylViewLegend.h"

#include <algorithm>
#include <cmath>

#include <zylPropertyCollection.h>
#include <zylRepresentation.h>
#include <zylView.h>

#include <vtk3DWidgetRepresentation.h>
#include <vtkCollection.h>
#include <vtkContext2DScalarBarActor.h>
#include <vtkPVRenderView.h>
#include <vtkRect.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMTransferFunctionProxy.h>
#include <vtkScalarBarRepresentation.h>

namespace {
constexpr double UsualWidth = 1200.0, UsualAspect = 1.5;
constexpr double LeastScale = 0.56; // of a text of 16 points: below, nobody reads it
constexpr double Margin = 0.02;     // of the window
constexpr int BarThickness = 16;    // points

// Where a legend of `length` stands between 0 and `size`: -1 at the start, 0 in the middle, 1 at
// the end.
double Place(int side, double length, double size, double margin)
{
  return side < 0 ? margin : side > 0 ? size - length - margin : (size - length) / 2.0;
}

//--------------------------------------------------------------------------------------------------
// The library's locations in the order of their numbers: beginning with "any", the lower row and
// the upper one.
void MoveFromEdge(vtkSMProxy* legend, vtkRenderer* renderer, int location, int width, int height)
{
  auto widget = vtk3DWidgetRepresentation::SafeDownCast(legend->GetClientSideObject());
  auto placed = vtkScalarBarRepresentation::SafeDownCast(
    widget != nullptr ? widget->GetRepresentation() : nullptr);
  auto bar = vtkContext2DScalarBarActor::SafeDownCast(
    placed != nullptr ? placed->GetScalarBarActor() : nullptr);
  if (bar == nullptr || location < 1 || location > 6)
  {
    return;
  }
  constexpr int sides[] = { -1, 1, 0 };
  bar->RenderOpaqueGeometry(renderer); // draws nothing: tells it the window that sizes refer to
  const vtkRectf box = bar->GetBoundingRect();
  const double margin = Margin * std::min(width, height);
  const double x = Place(sides[(location - 1) % 3], box.GetWidth(), width, margin);
  const double y = Place(location > 3 ? 1 : -1, box.GetHeight(), height, margin);
  const double position[2] = { (x - box.GetX()) / width, (y - box.GetY()) / height };
  vtkSMPropertyHelper(legend, "WindowLocation").Set(0);
  vtkSMPropertyHelper(legend, "Position").Set(position, 2);
  legend->UpdateVTKObjects();
  legend->UpdateProperty("Position", 1); // a location has moved it even if the number is the same
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylFitLegends(zylView* view, zylRepresentation* representation,
  zylPropertyCollection* settings, int width, int height, int pixelRatio)
{
  if (settings == nullptr || width < 1 || height < 1)
  {
    return;
  }
  const double scale =
    std::max(LeastScale, std::min<double>(width, UsualAspect * height) / (UsualWidth * pixelRatio));
  const auto scaled = [scale](int size) { return static_cast<int>(std::lround(scale * size)); };
  auto client = vtkPVRenderView::SafeDownCast(view->GetProxy()->GetClientSideView());
  const auto proxies = representation->GetPVRepresentations();
  for (int i = 0; i < proxies->GetNumberOfItems(); ++i)
  {
    auto proxy = vtkSMProxy::SafeDownCast(proxies->GetItemAsObject(i));
    vtkSMProxy* colors = vtkSMPropertyHelper(proxy, "LookupTable", true).GetAsProxy();
    vtkSMProxy* legend = colors == nullptr
      ? nullptr
      : vtkSMTransferFunctionProxy::FindScalarBarRepresentation(colors, view->GetProxy());
    if (legend == nullptr)
    {
      continue;
    }
    // Plain numbers at the ends, as at the ticks.
    vtkSMPropertyHelper(legend, "RangeLabelFormat").Set("%.4g");
    vtkSMPropertyHelper(legend, "TitleFontSize")
      .Set(scaled(settings->GetInt("ColorLegendTitleFontSize")));
    vtkSMPropertyHelper(legend, "LabelFontSize")
      .Set(scaled(settings->GetInt("ColorLegendLabelFontSize")));
    vtkSMPropertyHelper(legend, "ScalarBarThickness").Set(scaled(BarThickness));
    legend->UpdateVTKObjects();
    view->PreSelectSetup(); // the legend asks for OpenGL state to know its size
    MoveFromEdge(legend, client->GetNonCompositedRenderer(),
      settings->GetInt("ColorLegendLocation"), width, height);
    view->PostSelectCleanup();
  }
}
