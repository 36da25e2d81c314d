#include "zylViewScene.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewError.h"
#include "zylViewLegend.h"
#include "zylViewLoader.h"
#include "zylViewMessages.h"
#include "zylViewNumbers.h"
#include "zylViewOptions.h"
#include "zylViewProgress.h"
#include "zylViewState.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>

#include <zylCore.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {
constexpr const char* HelpText = "left drag        turn\n"
                                 "middle drag      pan (also Shift + left)\n"
                                 "wheel            zoom to the cursor\n"
                                 "r                show everything\n"
                                 "0                opening view\n"
                                 "1 ... 6          standard views (Shift: opposite)\n"
                                 "t                free turning, upright turning\n"
                                 "n                next array (Shift: previous)\n"
                                 "m                next color map\n"
                                 "l, e             legend, edges of the mesh\n"
                                 "b                background\n"
                                 "p                picture to a file\n"
                                 "s                save the scene to a file\n"
                                 "F5               read the files again\n"
                                 "right, left      next, previous time step\n"
                                 "space            play, pause\n"
                                 "v                color range of this step (Shift: of all)\n"
                                 "Tab              panel; click selects a block\n"
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
void zylViewScene::Load()
{
  zylViewLoader loader(this->Options, this->Messages, this->Times, this->Alive);
  loader.Connect();
  if (this->State != nullptr)
  {
    this->LoadScene();
  }
  else
  {
    loader.NameSample();
    this->LoadFiles(this->Options);
  }
  zylViewProgress progress("loading the time step", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  this->GoToTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::LoadFiles(const zylViewOptions& all)
{
  for (const auto& files : zylGroupFiles(all))
  {
    zylViewOptions options = all;
    options.Files = files;
    auto dataset = zylViewLoader(options, this->Messages, this->Times, this->Alive).Load();
    this->Cases.push_back(std::make_unique<zylViewCase>(options, dataset));
  }
}

//--------------------------------------------------------------------------------------------------
// What cannot be loaded is said; the rest of the scene is shown all the same.
void zylViewScene::LoadScene()
{
  std::optional<zylViewError> failure;
  for (std::size_t i = 0; i < this->State->GetNumberOfDataSets(); ++i)
  {
    zylViewOptions options = this->State->GetDataSet(i, this->Options);
    options.Restored = i;
    try
    {
      zylViewLoader loader(options, this->Messages, this->Times, this->Alive);
      loader.NameSample();
      auto dataset = loader.Load();
      this->Cases.push_back(std::make_unique<zylViewCase>(options, dataset));
      this->State->RestoreDataSet(i, *this->Cases.back());
    }
    catch (const zylViewError& error)
    {
      if (failure)
      {
        std::fprintf(stderr, "zylview: %s\n", failure->what());
      }
      failure.emplace(error);
    }
  }
  if (failure && this->Cases.empty())
  {
    throw zylViewError(*failure);
  }
  if (failure)
  {
    std::fprintf(stderr, "zylview: %s\n", failure->what());
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
void zylViewScene::PrintList()
{
  for (const auto& one : this->Cases)
  {
    zylPrintDataSet(one->GetDataSet());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::PrintNumbers()
{
  for (const auto& one : this->Cases)
  {
    if (one->GetOptions().Measures())
    {
      zylPrintNumbers(one->GetOptions(), one->GetBlocks(), one->GetDataSet(), one->GetDerived());
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Show(int width, int height, int pixelRatio)
{
  zylViewProgress progress("preparing the view", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  zylViewTimes::Watch watch(this->Times, "update");
  this->View = vtkSmartPointer<zylView>::New();
  this->Camera = std::make_unique<zylViewCamera>(this->Cases.front()->GetOptions(), this->View);
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
void zylViewScene::SaveState(const std::string& file)
{
  zylViewOptions options = this->Options;
  options.Samples = this->PixelRatio;
  options.Width = this->Width / this->PixelRatio;
  options.Height = this->Height / this->PixelRatio;
  if (!zylViewState::Write(file, this->Cases, this->View, *this->Camera, options))
  {
    throw zylViewError(zylViewFailed, "cannot write '" + file + "'");
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
  this->Camera->Open(this->Width, this->Height);
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
  this->ShowTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::GoToStep(int step)
{
  const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
  if (step >= 1 && step <= static_cast<int>(steps.size()))
  {
    zylViewProgress progress("loading the time step", this->Alive);
    progress.Observe(zylCore::GetInstance()->GetSession());
    zylTimeController::GetInstance()->GoToTime(steps[step - 1]);
    this->ShowTime();
  }
}

//--------------------------------------------------------------------------------------------------
// What is shown of the time that the datasets are at, in colors that have it in their range.
void zylViewScene::ShowTime()
{
  for (const auto& one : this->Cases)
  {
    one->ReadBlocks();
    one->Update(); // the values of expressions are known only then
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
std::string zylViewScene::GetName() const
{
  std::string names;
  for (const auto& one : this->Cases)
  {
    const auto& files = one->GetOptions().Files;
    names += names.empty() ? "" : ", ";
    names += std::filesystem::path(files.front()).filename().string();
    names += files.size() > 1 ? " ..." : "";
  }
  return names;
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
void zylViewScene::Reload()
{
  zylViewProgress progress("reading the files again", this->Alive);
  progress.Observe(zylCore::GetInstance()->GetSession());
  for (const auto& one : this->Cases)
  {
    one->Reload();
  }
  this->ShowTime();
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::AddFiles(const std::vector<std::string>& files)
{
  const std::size_t before = this->Cases.size();
  try
  {
    zylViewOptions options;
    options.Connect = this->Options.Connect;
    options.Files = files;
    this->LoadFiles(options);
    for (std::size_t i = before; i < this->Cases.size(); ++i)
    {
      zylViewCase& one = *this->Cases[i];
      one.ReadBlocks();
      one.ChooseLook();
      one.Derive();
      one.MakeBoundary();
      one.AddTo(this->View);
    }
    if (this->Options.Sample)
    {
      this->Options.Sample = false;
      this->Cases.front()->RemoveFrom(this->View);
      this->Cases.erase(this->Cases.begin());
      this->Camera->Follow(this->Cases.front()->GetOptions());
    }
  }
  catch (const zylViewError& error)
  {
    for (std::size_t i = before; i < this->Cases.size(); ++i)
    {
      this->Cases[i]->RemoveFrom(this->View);
    }
    this->Cases.resize(before);
    std::fprintf(stderr, "zylview: %s\n", error.what());
  }
  this->Update();
  this->OpenCamera();
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
