/// @file zylViewScene.h
/// The part of the viewer that talks to the library: a session, the datasets, one view that shows
/// them. Knows nothing of windows; the host calls it with its context current.
#ifndef zylViewScene_h
#define zylViewScene_h

#include "zylViewCases.h"
#include "zylViewProgress.h"
#include "zylViewTimes.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkTextActor;
class zylView;
class zylViewCamera;
class zylViewMessages;
class zylViewState;
struct zylViewOptions;

class zylViewScene
{
public:
  /// All borrowed; `state` is a scene to open, or null; `alive` see zylViewProgress. Starts the
  /// library.
  zylViewScene(zylViewOptions& options, zylViewMessages& messages, const zylViewState* state,
    zylViewProgress::Alive alive);
  /// The host's context must be current when a view was made.
  ~zylViewScene();
  zylViewScene(const zylViewScene&) = delete;
  zylViewScene& operator=(const zylViewScene&) = delete;

  /// Connect if asked to, load the files and go to the time that is asked for. Needs no OpenGL.
  /// Throws zylViewError.
  void Load();

  /// Decide what is shown, and set up what is derived. Needs no OpenGL. Throws zylViewError.
  void Derive();

  ///@{
  /// Print blocks and arrays; integrals, histograms and probes that are asked for. Needs no view.
  /// Throws zylViewError.
  void PrintList();
  void PrintNumbers();
  ///@}

  /// Make the view and what it shows; its size in pixels, and how many pixels make up one of a
  /// usual screen. The host's context must be current; it still is afterwards. Throws zylViewError.
  void Show(int width, int height, int pixelRatio);

  /// Draw over what is in `framebuffer` (bound by the host). Context current.
  void Render(int framebuffer);

  void Resize(int width, int height);
  zylViewCamera& GetCamera() { return *this->Camera; } ///< after Show()
  void OpenCamera();                                   ///< as it was at the start

  /// Move by one time step (+1, -1); from the last to the first and back. Does nothing without
  /// steps.
  void Step(int direction);
  /// For commands that change displays; Update() shows what they changed.
  const zylViewCaseList& GetCases() const { return this->Cases; }
  zylView* GetView();
  void Update();

  /// The names of the files, for a title.
  std::string GetName() const;

  /// The ground of the window, in turn: the one at the start, white, black. Legends keep their
  /// contrast.
  void UseNextBackground();

  void Reload(); ///< read all files again
  /// Show more files beside what is there, or in place of the built-in sample. What cannot be read
  /// is said.
  void AddFiles(const std::vector<std::string>& files);

  /// Color by the range of the values of the time step shown, or of all of them.
  void RescaleColors(bool allSteps);
  void GoToStep(int step);          ///< counted from 1
  std::string GetTimeLabel() const; ///< "step 3 of 8, time 0.125"; empty without time steps

  void SetHelpVisible(bool visible);
  bool GetHelpVisible() const;

  ///@{
  /// Save the whole scene, or its picture; open another scene in place of this one, but for size
  /// and server. Throw zylViewError, and then everything is as before.
  void SaveState(const std::string& file);
  void SavePicture(const std::string& file);
  void OpenState(const std::string& file);
  ///@}

  /// Why nothing is seen although something should be; empty when something is.
  std::string GetEmptyReason() const;

  void PrintTimes() const { this->Times.Print(); } ///< for --stats

private:
  void GoToTime();
  void LoadFiles(const zylViewOptions& all);
  void LoadScene();
  void ShowTime();
  void MoveTime(double time);
  bool IsCanceled() const; ///< the last update of a dataset
  void Format();

  zylViewOptions& Options;
  zylViewMessages& Messages;
  const zylViewState* State;
  std::unique_ptr<zylViewState> Opened; ///< later
  zylViewCaseList Cases;
  vtkSmartPointer<zylView> View;
  vtkSmartPointer<vtkTextActor> Help;
  std::unique_ptr<zylViewCamera> Camera;
  std::vector<std::array<std::array<double, 3>, 2>> Grounds; ///< to come, in turn
  int Width = 0, Height = 0, PixelRatio = 1;
  bool FirstFrame = true;
  zylViewTimes Times;
  const zylViewProgress::Alive Alive;
};

#endif
