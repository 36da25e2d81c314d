#include "zylViewScene.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewDemo.h"
#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewLegend.h"
#include "zylViewLoader.h"
#include "zylViewLook.h"
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
#include <zylPropertyCollection.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkCollection.h>
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
  else if (!this->Options.Plain)
  {
    zylFillLook(*this->Blocks, this->DataSet, this->Options);
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
  this->Camera = std::make_unique<zylViewCamera>(this->Options, this->View);
  this->Width = width;
  this->Height = height;
  this->PixelRatio = pixelRatio;
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
  this->Format();
  this->OpenCamera();
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::GetEmptyReason() const
{
  const double* b = this->Camera->GetBounds();
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
void zylViewScene::UpdateBounds()
{
  double bounds[6];
  this->View->GetBounds(bounds);
  this->Camera->SetBounds(bounds);
}

//--------------------------------------------------------------------------------------------------
// What the library leaves to its host: the sizes of legends, and colors that are in the data.
void zylViewScene::Format()
{
  const auto legends = [this](zylRepresentation* representation, zylPropertyCollection* settings) {
    zylFitLegends(
      this->View, representation, settings, this->Width, this->Height, this->PixelRatio);
  };
  legends(this->Representation, this->FindLegend());
  for (const auto& entry : this->Derived->GetEntries())
  {
    legends(entry.Representation, entry.Representation->GetSurfaceProperties());
  }
  if (this->Options.DirectColors)
  {
    const auto proxies = this->Representation->GetPVRepresentations();
    for (int i = 0; i < proxies->GetNumberOfItems(); ++i)
    {
      auto proxy = vtkSMProxy::SafeDownCast(proxies->GetItemAsObject(i));
      vtkSMPropertyHelper(proxy, "MapScalars").Set(0);
      proxy->UpdateVTKObjects();
    }
  }
}

//--------------------------------------------------------------------------------------------------
// The settings of the blocks that have the legend, or null.
zylPropertyCollection* zylViewScene::FindLegend() const
{
  for (const unsigned int block : this->Blocks->GetLeaves())
  {
    zylPropertyCollection* surface =
      this->Representation->GetSurfaceProperties(static_cast<int>(block));
    if (surface->GetBool("ColorLegendVisibility"))
    {
      return surface;
    }
  }
  return nullptr;
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
  this->Representation->Update();
  this->Derived->Update();
  this->Format();
  this->UpdateBounds();
  this->Camera->Changed();
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
