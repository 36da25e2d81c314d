#include "zylViewScene.h"

#include "zylSampleFlow.h"
#include "zylViewBlocks.h"
#include "zylViewDemo.h"
#include "zylViewError.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewProgress.h"
#include "zylViewSettings.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>

#include <zylBoundaryRepresentation.h>
#include <zylCore.h>
#include <zylDataSet.h>
#include <zylTimeController.h>
#include <zylView.h>

#include <vtkBoundingBox.h>
#include <vtkCamera.h>
#include <vtkCollection.h>
#include <vtkPVProxyDefinitionIterator.h>
#include <vtkPVRenderView.h>
#include <vtkProcessModule.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyDefinitionManager.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMTransferFunctionProxy.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {
constexpr int ConnectTimeout = 5; // seconds
constexpr int SampleSteps = 8;
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

using Clock = std::chrono::steady_clock;

/// Adds the time until it is destroyed to the scene's list.
class Stopwatch
{
public:
  Stopwatch(zylViewScene* scene, const char* name)
    : Scene(scene)
    , Name(name)
  {
  }
  ~Stopwatch()
  {
    const auto taken = Clock::now() - this->Start;
    this->Scene->AddTime(this->Name, std::chrono::duration<double>(taken).count());
  }
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;

private:
  zylViewScene* Scene;
  const char* Name;
  const Clock::time_point Start = Clock::now();
};

//--------------------------------------------------------------------------------------------------
vtkPVProgressHandler* ProgressOf(zylCore* core)
{
  vtkSMSession* session = core->GetSession();
  return session != nullptr ? session->GetProgressHandler() : nullptr;
}

// The sample lies in the user's cache, or in a folder of its own where there is none.
std::string SampleFile()
{
  namespace fs = std::filesystem;
  const char* cache = std::getenv("XDG_CACHE_HOME");
  const char* home = std::getenv("HOME");
  const fs::path base = cache != nullptr && *cache != '\0' ? fs::path(cache)
    : home != nullptr && *home != '\0'                     ? fs::path(home) / ".cache"
                                                           : fs::temp_directory_path();
  const fs::path folder = base / "zyl" / ("sample-" ZYL_APP_VERSION);
  if (fs::exists(folder / "chimney.pvd"))
  {
    return (folder / "chimney.pvd").string();
  }
  zylViewProgress progress("writing the sample");
  const auto report = [&progress](int done) {
    progress.Set(double(done) / SampleSteps, "to the user's cache");
  };
  auto result = zylWriteSampleFlow(folder.string(), SampleSteps, report);
  if (!result.Error.empty())
  {
    const fs::path spare = fs::temp_directory_path() / "zyl-sample";
    result = zylWriteSampleFlow(spare.string(), SampleSteps, report);
  }
  if (!result.Error.empty())
  {
    throw zylViewError(zylViewFailed, result.Error);
  }
  return result.File;
}

// Readers differ in what they give between two time steps.
double Nearest(const std::vector<double>& steps, double time)
{
  const auto nearer = [time](
                        double a, double b) { return std::abs(a - time) < std::abs(b - time); };
  const auto best = std::min_element(steps.begin(), steps.end(), nearer);
  return best == steps.end() ? time : *best;
}

// Only for files that are read here: a server has files of its own.
void CheckReadable(const std::string& file)
{
  std::error_code error;
  if (std::filesystem::is_directory(file, error))
  {
    return; // some formats are folders
  }
  std::FILE* stream = std::fopen(file.c_str(), "rb");
  if (stream == nullptr)
  {
    throw zylViewError(
      zylViewBadFile, "cannot read '" + file + "': " + std::generic_category().message(errno));
  }
  std::fclose(stream);
}
//--------------------------------------------------------------------------------------------------
void CheckReader(const zylViewOptions& options)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  const char* group = options.ReaderGroup.c_str();
  if (options.ReaderName.empty() ||
    manager->GetPrototypeProxy(group, options.ReaderName.c_str()) != nullptr)
  {
    return;
  }
  std::vector<std::string> known;
  auto proxies = vtkSmartPointer<vtkPVProxyDefinitionIterator>::Take(
    manager->GetProxyDefinitionManager()->NewSingleGroupIterator(group));
  for (proxies->InitTraversal(); !proxies->IsDoneWithTraversal(); proxies->GoToNextItem())
  {
    known.push_back(options.ReaderGroup + "/" + proxies->GetProxyName());
  }
  throw zylUnknownName("reader", options.ReaderGroup + "/" + options.ReaderName, known);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewScene::zylViewScene(zylViewOptions& options, zylViewMessages& messages)
  : Options(options)
  , Messages(messages)
{
  zylViewProgress progress("starting");
  Stopwatch watch(this, "start");
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
    this->View->RemoveRepresentation(this->Representation);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Connect()
{
  const std::string& url = this->Options.Connect;
  zylViewProgress progress("connecting to " + url);
  this->Messages.Clear();
  zylCore::GetInstance()->Connect(url.c_str(), ConnectTimeout);
  if (zylCore::GetInstance()->GetSession() == nullptr)
  {
    throw zylViewError(zylViewNoServer, "no ParaView server answers at '" + url + "'");
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Load()
{
  if (!this->Options.Connect.empty())
  {
    this->Connect();
  }
  if (this->Options.Files.empty())
  {
    this->Options.Files.push_back(SampleFile());
    this->Options.Sample = true;
  }
  if (this->Options.Connect.empty())
  {
    std::for_each(this->Options.Files.begin(), this->Options.Files.end(), &CheckReadable);
  }
  CheckReader(this->Options);
  const std::string first = this->Options.Files.front();
  zylViewProgress progress("loading " + std::filesystem::path(first).filename().string());
  progress.Observe(ProgressOf(zylCore::GetInstance()));
  Stopwatch watch(this, "load");
  this->Messages.Clear();
  this->DataSet = vtkSmartPointer<zylDataSet>::New();
  const bool loaded = this->Options.ReaderName.empty()
    ? this->DataSet->LoadFromFile(this->Options.Files)
    : this->DataSet->LoadFromFile(
        this->Options.Files, this->Options.ReaderGroup, this->Options.ReaderName);
  if (!loaded)
  {
    throw zylViewError(zylViewBadFile, "cannot read '" + first + "'" + this->Explain());
  }
  if (!this->DataSet->GetReadErrors().empty())
  {
    std::fprintf(stderr, "zylview: a part of '%s' could not be read%s\n", first.c_str(),
      this->Explain().c_str());
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylViewScene::Explain() const
{
  std::error_code error;
  const auto size = std::filesystem::file_size(this->Options.Files.front(), error);
  if (!error && size == 0)
  {
    return ": the file is empty"; // and no format in which that is right
  }
  const auto& errors = this->DataSet->GetReadErrors();
  if (!errors.empty())
  {
    return ": " + errors.front().substr(0, errors.front().find('\n'));
  }
  const bool unknown = this->Messages.GetFirstError().find("No reader found") != std::string::npos;
  return unknown ? ": no reader for this kind of file" : "";
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::Show(int width, int height, int pixelRatio)
{
  zylViewProgress progress("preparing the view");
  progress.Observe(ProgressOf(zylCore::GetInstance()));
  Stopwatch watch(this, "update");
  if (this->Options.Demo)
  {
    zylFillDemoOptions(zylViewBlocks(this->DataSet), this->DataSet, this->Options);
  }
  if (this->Options.Time)
  {
    const auto steps = zylTimeController::GetInstance()->GetTimestepValues();
    zylTimeController::GetInstance()->GoToTime(Nearest(steps, *this->Options.Time));
  }
  const zylViewBlocks blocks(this->DataSet);
  this->View = vtkSmartPointer<zylView>::New();
  this->View->SetWindowSize(width, height);
  this->View->GetProxy()->GetRenderWindow()->SetDPI(72 * pixelRatio); // the size of text

  this->Representation = vtkSmartPointer<zylBoundaryRepresentation>::New();
  this->Representation->SetDataSet(this->DataSet);
  zylViewSettings(this->Options, blocks, this->Representation).Apply();
  this->View->AddRepresentation(this->Representation); // updates it
  this->View->Update();
  this->UpdateBounds();
  this->FormatLegend();
  this->SetInitialView();
}

//--------------------------------------------------------------------------------------------------
// Arrows and tubes reach a little beyond the data.
void zylViewScene::UpdateBounds()
{
  if (!this->View->GetBounds(this->Bounds))
  {
    return; // nothing is visible
  }
  vtkBoundingBox box(this->Bounds);
  box.Inflate(0.05 * box.GetDiagonalLength());
  box.GetBounds(this->Reach);
}

//--------------------------------------------------------------------------------------------------
// Plain numbers at the ends of the legend, as at its ticks.
void zylViewScene::FormatLegend()
{
  const auto proxies = this->Representation->GetPVRepresentations();
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
  Stopwatch watch(this, this->FirstFrame ? "first frame" : "frame");
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
  zylViewProgress progress("loading the time step");
  progress.Observe(ProgressOf(zylCore::GetInstance()));
  if (direction > 0)
  {
    now >= steps.back() ? time->GoToFirstTimeStep() : time->GoToNextTimeStep();
  }
  else
  {
    now <= steps.front() ? time->GoToLastTimeStep() : time->GoToPreviousTimeStep();
  }
  this->Representation->Update();
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

//--------------------------------------------------------------------------------------------------
void zylViewScene::AddTime(const std::string& name, double seconds)
{
  const auto same = [&name](const auto& entry) { return entry.first == name; };
  auto entry = std::find_if(this->Times.begin(), this->Times.end(), same);
  if (entry == this->Times.end())
  {
    entry = this->Times.insert(entry, { name, {} });
  }
  entry->second.push_back(seconds);
}

//--------------------------------------------------------------------------------------------------
void zylViewScene::PrintTimes() const
{
  for (const auto& [name, seconds] : this->Times)
  {
    const double sum = std::accumulate(seconds.begin(), seconds.end(), 0.0);
    std::printf("%-12s %8.1f ms", name.c_str(), 1000.0 * sum / seconds.size());
    std::printf(seconds.size() > 1 ? "  (mean of %zu)\n" : "\n", seconds.size());
  }
}
