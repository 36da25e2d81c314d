#include "zylViewScene.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewError.h"
#include "zylViewHelp.h"
#include "zylViewLegend.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewProgress.h"
#include "zylViewState.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>

#include <zylCore.h>
#include <zylDataSet.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkTextActor.h>

namespace {
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
zylViewScene::zylViewScene(zylViewOptions& options, zylViewMessages& messages,
  const zylViewState* state, zylViewProgress::Alive alive)
  : Options(options)
  , Messages(messages)
  , State(state)
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
  for (const auto& one : this->Cases)
  {
    if (this->View)
    {
      one->RemoveFrom(this->View);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::GoToTime()
{
  const auto time = this->Cases.front()->GetOptions().Time;
  if (time)
  {
    const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
    zylTimeController::GetInstance()->GoToTime(Nearest(steps, *time));
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Derive()
{
  for (const auto& one : this->Cases)
  {
    one->Define();
    one->ReadBlocks();
  }
  if (this->Messages.GetNumberOfErrors() > 0)
  {
    throw zylViewError(zylViewFailed, "--define is refused"); // with the library's reason
  }
  if (this->State == nullptr)
  {
    zylShareOptions(this->Cases);
  }
  for (const auto& one : this->Cases)
  {
    one->ChooseLook();
  }
  this->GoToTime(); // the demonstration has a time of its own
  zylPlaceLegends(this->Cases);
  for (const auto& one : this->Cases)
  {
    one->ReadBlocks();
    one->Derive();
  }
  this->Messages.Clear(); // choosing blocks asks for what not every kind of data can tell
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Show(int width, int height, int pixelRatio)
{
  zylViewProgress progress("preparing the view", this->Alive);
  zylViewTimes::Watch watch(this->Times, "update");
  this->View = vtkSmartPointer<zylView>::New();
  this->Camera = std::make_unique<zylViewCamera>(this->Cases.front()->GetOptions(), this->View);
  this->Camera->SetSize(width, height);
  this->Width = width;
  this->Height = height;
  this->PixelRatio = pixelRatio;
  this->View->SetWindowSize(width, height);
  this->View->GetProxy()->GetRenderWindow()->SetDPI(72 * pixelRatio); // the size of text
  if (this->Options.Output.empty())
  {
    // Pictures are smoothed by samples; a window that a user drags has no time for that.
    vtkSMPropertyHelper(this->View->GetProxy(), "UseFXAA").Set(1);
    this->View->GetProxy()->UpdateVTKObjects();
  }
  for (const auto& one : this->Cases)
  {
    one->MakeBoundary();
    if (this->State != nullptr)
    {
      this->State->RestoreDisplays(*one->GetOptions().Restored, *one);
      one->ShowNewBlocks();
    }
    one->AddTo(this->View);
  }
  if (this->Cases.size() > 1 && this->State == nullptr &&
    zylSetColorRanges(this->Cases, zylViewRange::Grow))
  {
    this->Update();
  }
  this->View->Update();
  this->Format();
  this->OpenCamera();
  if (this->State != nullptr)
  {
    this->State->RestoreView(this->View, *this->Camera);
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::GetEmptyReason() const
{
  const double* b = this->Camera->GetBounds();
  std::string reason;
  for (const auto& one : this->Cases)
  {
    reason = reason.empty() && b[0] > b[1] ? one->GetEmptyReason() : reason;
  }
  return reason;
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Update()
{
  for (const auto& one : this->Cases)
  {
    one->Update();
  }
  this->Format();
  this->Camera->Changed();
}

//--------------------------------------------------------------------------------------------------
// What the library leaves to its host.
void zylViewScene::Format()
{
  for (const auto& one : this->Cases)
  {
    one->VisitLegends([this](zylRepresentation* representation, zylPropertyCollection* settings) {
      zylFitLegends(
        this->View, representation, settings, this->Width, this->Height, this->PixelRatio);
    });
    one->ApplyDirectColors();
  }
  double bounds[6];
  this->View->GetBounds(bounds);
  this->Camera->SetBounds(bounds);
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::OpenCamera()
{
  this->Camera->Open();
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
  this->Width = width;
  this->Height = height;
  this->Format();
  this->View->SetWindowSize(width, height);
  this->Camera->SetSize(width, height);
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
  const auto next = std::upper_bound(steps.begin(), steps.end(), now);
  const auto here = std::lower_bound(steps.begin(), steps.end(), now);
  this->MoveTime(direction > 0 ? (next == steps.end() ? steps.front() : *next)
                               : (here == steps.begin() ? steps.back() : *(here - 1)));
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::GoToStep(int step)
{
  const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
  if (step >= 1 && step <= static_cast<int>(steps.size()))
  {
    this->MoveTime(steps[step - 1]);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylViewScene::IsCanceled() const
{
  return std::any_of(this->Cases.begin(), this->Cases.end(), [](const auto& one) {
    const auto& errors = one->GetDataSet()->GetReadErrors();
    return errors.size() == 1 && errors.front() == "canceled";
  });
}

//--------------------------------------------------------------------------------------------------
// A time step that the user does not wait for is not shown.
void zylViewScene::MoveTime(double time)
{
  zylViewProgress progress("loading the time step", this->Alive);
  zylTimeController* controller = zylTimeController::GetInstance();
  const double before = controller->GetActiveTime();
  controller->GoToTime(time);
  if (this->IsCanceled())
  {
    zylSay("the time step is not loaded: canceled");
    controller->GoToTime(before);
  }
  this->ShowTime();
}

//--------------------------------------------------------------------------------------------------
// What is shown of the time that the datasets are at, in colors that have it in their range.
void zylViewScene::ShowTime()
{
  for (const auto& one : this->Cases)
  {
    one->ReadBlocks();
    one->Update(); // the values of expressions are known only then
    if (one->ShowNewBlocks())
    {
      one->Update();
    }
  }
  zylSetColorRanges(this->Cases, zylViewRange::Grow);
  this->Update();
}

//--------------------------------------------------------------------------------------------------
zylView* zylViewScene::GetView()
{
  return this->View;
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::UseNextBackground()
{
  using Colors = std::array<std::array<double, 3>, 2>; // top, bottom
  const Colors now{ this->Options.BackgroundTop, this->Options.BackgroundBottom };
  if (this->Grounds.empty())
  {
    this->Grounds = { Colors{ { { 1, 1, 1 }, { 1, 1, 1 } } }, Colors{}, now };
  }
  const auto [top, bottom] = this->Grounds.front();
  std::rotate(this->Grounds.begin(), this->Grounds.begin() + 1, this->Grounds.end());
  this->Options.BackgroundTop = top;
  this->Options.BackgroundBottom = bottom;
  for (const auto& one : this->Cases)
  {
    one->GetOptions().BackgroundTop = top;
    one->GetOptions().BackgroundBottom = bottom;
    one->ShowLegend(one->GetOptions().Legend.value_or(false));
  }
  this->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::RescaleColors(bool allSteps)
{
  zylViewProgress progress("looking at all time steps", this->Alive);
  zylSetColorRanges(this->Cases, zylViewRange::Step);
  zylTimeController* time = zylTimeController::GetInstance();
  const double shown = time->GetActiveTime();
  const auto steps = allSteps ? time->GetTimestepValues() : std::vector<double>();
  for (std::size_t i = 0; i < steps.size(); ++i)
  {
    progress.Set(double(i) / steps.size(), "");
    time->GoToTime(steps[i]);
    for (const auto& one : this->Cases)
    {
      one->ReadBlocks();
      one->Update();
    }
    zylSetColorRanges(this->Cases, zylViewRange::Join);
  }
  time->GoToTime(shown);
  this->Update();
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
    this->Help = zylNewHelp();
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
