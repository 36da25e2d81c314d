#include "zylViewScene.h"

#include "zylViewBlocks.h"
#include "zylViewDemo.h"
#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewLoader.h"
#include "zylViewMessages.h"
#include "zylViewNumbers.h"
#include "zylViewOptions.h"
#include "zylViewProgress.h"
#include "zylViewSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkBoundingBox.h>
#include <vtkCamera.h>
#include <vtkCollection.h>
#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMTransferFunctionProxy.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {
constexpr double Flat = 0.02; // height over width of data that are seen from above

constexpr const char* HelpText = "left drag        orbit\n"
                                 "middle drag      pan (also Shift + left)\n"
                                 "wheel            zoom to the cursor\n"
                                 "r                reset the camera\n"
                                 "1 ... 6          standard views (Shift: opposite)\n"
                                 "right, left      next, previous time step\n"
                                 "space            play, pause\n"
                                 "h                this help\n"
                                 "q, Escape        quit";

// Readers differ in what they give between two time steps.
double Nearest(const std::vector<double>& steps, double time)
{
  const auto nearer = [time](
                        double a, double b) { return std::abs(a - time) < std::abs(b - time); };
  const auto best = std::min_element(steps.begin(), steps.end(), nearer);
  return best == steps.end() ? time : *best;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewScene::zylViewScene(
  zylViewOptions& options, zylViewMessages& messages, zylViewProgress::Alive alive)
  : Options(options)
  , Messages(messages)
  , Alive(std::move(alive))
{
  zylViewProgress progress("starting");
  zylViewTimes::Watch watch(this->Times, "start");
  if (!options.Log.empty())
  {
    zylCore::SetLogFile(options.Log.c_str(), options.Verbose);
  }
  zylCore::GetInstance();
  messages.ApplyVerbosity();
}

//--------------------------------------------------------------------------------------------------
zylViewScene::~zylViewScene()
{
  if (this->View)
  {
    this->Derived->RemoveFrom(this->View);
    this->View->RemoveRepresentation(this->Representation);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Load()
{
  this->DataSet = zylViewLoader(this->Options, this->Messages, this->Times, this->Alive).Load();
  zylViewProgress progress("loading the time step", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  this->GoToTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::GoToTime()
{
  if (this->Options.Time)
  {
    const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
    zylTimeController::GetInstance()->GoToTime(Nearest(steps, *this->Options.Time));
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Derive()
{
  for (const auto& [name, expression] : this->Options.Definitions)
  {
    this->DataSet->DefineDerivedPointVariable(name, expression);
  }
  if (this->Messages.GetNumberOfErrors() > 0)
  {
    throw zylViewError(zylViewFailed, "--define is refused"); // with the library's reason
  }
  this->Blocks = std::make_unique<zylViewBlocks>(this->DataSet);
  if (this->Options.Demo)
  {
    zylFillDemoOptions(*this->Blocks, this->DataSet, this->Options);
    this->GoToTime(); // the demonstration has a time of its own
    this->Blocks = std::make_unique<zylViewBlocks>(this->DataSet);
  }
  this->Derived =
    std::make_unique<zylViewDerivedSurfaces>(this->Options, *this->Blocks, this->DataSet);
  this->Derived->Make();
  this->Messages.Clear(); // choosing blocks asks for what not every kind of data can tell
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::PrintNumbers()
{
  if (this->Options.Measures())
  {
    zylPrintNumbers(this->Options, *this->Blocks, this->DataSet, *this->Derived);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Show(int width, int height, int pixelRatio)
{
  zylViewProgress progress("preparing the view", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  zylViewTimes::Watch watch(this->Times, "update");
  this->View = vtkSmartPointer<zylView>::New();
  this->View->SetWindowSize(width, height);
  this->View->GetProxy()->GetRenderWindow()->SetDPI(72 * pixelRatio); // the size of text

  this->Representation = vtkSmartPointer<zylBoundaryRepresentation>::New();
  this->Representation->SetDataSet(this->DataSet);
  zylViewSettings settings(this->Options, *this->Blocks, this->Representation);
  settings.Apply();
  this->View->AddRepresentation(this->Representation); // updates it
  if (settings.ApplyDerivedRange())
  {
    this->Representation->Update();
  }
  this->Derived->AddTo(this->View);
  this->View->Update();
  this->UpdateBounds();
  this->FormatLegends();
  this->SetInitialView();
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::GetEmptyReason() const
{
  const double* b = this->Bounds;
  if (b[0] <= b[1] || (!this->Representation->IsVisible() && this->Options.Derived.empty()))
  {
    return ""; // there is something, or the user wants nothing
  }
  const auto& errors = this->DataSet->GetReadErrors();
  if (this->DataSet->GetNumberOfPoints() == 0)
  {
    const std::string reason = errors.empty() ? "the data have no points" : errors.front();
    const auto colon = reason.find("drawn: "); // "Nothing can be drawn: ..."
    return zylOneLine(colon == std::string::npos ? reason : reason.substr(colon + 7));
  }
  return !this->Options.Derived.empty() ? "what is derived is empty"
    : !this->Options.Clips.empty()      ? "the clips cut everything away"
                                        : "the blocks hold nothing that has a surface";
}

//--------------------------------------------------------------------------------------------------
// Arrows and tubes reach a little beyond the data.
void zylViewScene::UpdateBounds()
{
  if (!this->View->GetBounds(this->Bounds))
  {
    return; // nothing is visible; the camera stays
  }
  vtkBoundingBox box(this->Bounds);
  box.Inflate(0.05 * box.GetDiagonalLength());
  box.GetBounds(this->Reach);
}

//--------------------------------------------------------------------------------------------------
// Plain numbers at the ends of the legend, as at its ticks.
void zylViewScene::FormatLegends()
{
  this->FormatLegend(this->Representation);
  for (const auto& entry : this->Derived->GetEntries())
  {
    this->FormatLegend(entry.Representation);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::FormatLegend(zylRepresentation* representation)
{
  const auto proxies = representation->GetPVRepresentations();
  for (int i = 0; i < proxies->GetNumberOfItems(); ++i)
  {
    auto proxy = vtkSMProxy::SafeDownCast(proxies->GetItemAsObject(i));
    vtkSMProxy* colors = vtkSMPropertyHelper(proxy, "LookupTable", true).GetAsProxy();
    vtkSMProxy* legend = colors == nullptr
      ? nullptr
      : vtkSMTransferFunctionProxy::FindScalarBarRepresentation(colors, this->View->GetProxy());
    if (legend != nullptr)
    {
      vtkSMPropertyHelper(legend, "RangeLabelFormat").Set("%.4g");
      legend->UpdateVTKObjects();
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::SetInitialView()
{
  if (this->Options.View != 0)
  {
    this->SetStandardView(this->Options.View, false);
  }
  else
  {
    const double* b = this->Bounds;
    const bool flat = b[0] <= b[1] && b[5] - b[4] <= Flat * std::max(b[1] - b[0], b[3] - b[2]);
    std::array<double, 3> from{ -0.9, -1.5, 1.0 };
    from = flat ? std::array<double, 3>{ 0.0, 0.0, 1.0 } : from;
    from = this->Options.From.value_or(from);
    const bool alongZ = std::hypot(from[0], from[1]) < 1e-9;
    vtkCamera* camera = this->GetCamera();
    camera->SetFocalPoint(0.0, 0.0, 0.0);
    camera->SetPosition(from.data());
    camera->SetViewUp(0.0, alongZ ? 1.0 : 0.0, alongZ ? 0.0 : 1.0);
    this->ResetCamera();
  }
  this->GetCamera()->Dolly(this->Options.Zoom);
  this->CameraChanged();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Render(int framebuffer)
{
  zylViewTimes::Watch watch(this->Times, this->FirstFrame ? "first frame" : "frame");
  this->FirstFrame = false;
  this->View->SetSourceFBO(framebuffer);
  this->View->Render();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Resize(int width, int height)
{
  this->View->SetWindowSize(width, height);
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::ResetCamera()
{
  this->View->ResetCamera();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::SetStandardView(int view, bool flip)
{
  this->View->SetViewDir(view, flip);
}

//--------------------------------------------------------------------------------------------------
vtkCamera* zylViewScene::GetCamera()
{
  return this->View->GetProxy()->GetActiveCamera();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::CameraChanged()
{
  // By the representation's bounds: the renderer knows none before the first frame.
  auto view = vtkPVRenderView::SafeDownCast(this->View->GetProxy()->GetClientSideView());
  double bounds[6];
  std::copy(std::begin(this->Reach), std::end(this->Reach), bounds);
  if (bounds[0] <= bounds[1])
  {
    view->GetRenderer()->ResetCameraClippingRange(bounds);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Step(int direction)
{
  zylTimeController* time = zylTimeController::GetInstance();
  const auto steps = time->GetTimestepValues();
  if (steps.size() < 2)
  {
    return;
  }
  const double now = time->GetActiveTime();
  zylViewProgress progress("loading the time step", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  if (direction > 0)
  {
    now >= steps.back() ? time->GoToFirstTimeStep() : time->GoToNextTimeStep();
  }
  else
  {
    now <= steps.front() ? time->GoToLastTimeStep() : time->GoToPreviousTimeStep();
  }
  this->Representation->Update();
  this->Derived->Update();
  this->UpdateBounds();
  this->CameraChanged();
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::GetTimeLabel() const
{
  const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
  const double now = zylTimeController::GetInstance()->GetActiveTime();
  const auto place = std::upper_bound(steps.begin(), steps.end(), now) - steps.begin();
  char text[80] = "";
  if (!steps.empty())
  {
    std::snprintf(text, sizeof text, "step %d of %zu, time %g",
      std::max(static_cast<int>(place), 1), steps.size(), now);
  }
  return text;
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::SetHelpVisible(bool visible)
{
  if (!this->Help)
  {
    this->Help = vtkSmartPointer<vtkTextActor>::New();
    this->Help->SetInput(HelpText);
    this->Help->SetPosition(16, 16);
    vtkTextProperty* text = this->Help->GetTextProperty();
    text->SetFontFamilyToCourier();
    text->SetFontSize(16);
    text->SetColor(1.0, 1.0, 1.0);
    text->SetBackgroundColor(0.1, 0.12, 0.16);
    text->SetBackgroundOpacity(0.75);
    auto view = vtkPVRenderView::SafeDownCast(this->View->GetProxy()->GetClientSideView());
    view->GetNonCompositedRenderer()->AddActor2D(this->Help);
  }
  this->Help->SetVisibility(visible);
}

//--------------------------------------------------------------------------------------------------
bool zylViewScene::GetHelpVisible() const
{
  return this->Help && this->Help->GetVisibility() != 0;
}

//--------------------------------------------------------------------------------------------------
zylDataSet* zylViewScene::GetDataSet()
{
  return this->DataSet;
}
