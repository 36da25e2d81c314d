/// @file zylViewWindowHost.h
/// A window on the screen and its user: what is seen, and what keys and mouse mean.
#ifndef zylViewWindowHost_h
#define zylViewWindowHost_h

#include "zylViewHost.h"
#include "zylViewInteraction.h"
#include "zylViewLoading.h"
#include "zylViewOverlay.h"
#include "zylViewPanel.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class zylViewBackdrop;
class zylViewPointer;
class zylViewScene;
struct GLFWwindow;
struct zylViewOptions;

class zylViewWindowHost : public zylViewHost
{
public:
  static constexpr double RestTime = 0.3; ///< seconds until the pointer has stopped

  explicit zylViewWindowHost(const zylViewOptions& options);
  ~zylViewWindowHost() override;

  void MakeCurrent() override;
  int GetWidth() const override { return this->Width; }
  int GetHeight() const override { return this->Height; }
  int GetPixelRatio() const override;
  bool KeepAlive(const std::string& work, double fraction) override;
  void Run(zylViewScene& scene) override;

private:
  void Observe();
  void Draw();
  void Wake();
  void Redraw();
  void Wait();
  void ForgetHover();
  void Leave();
  bool MayHover() const;
  void Hover();
  bool IsForPanel() const;
  void UpdateTitle();
  void ShowProgress(const std::string& work, double fraction);
  void OnKey(int key, int modifiers);
  void KeepKey(int key, int modifiers);
  void OnMove(double x, double y);
  void OnInformation(bool toggle);
  void OnButton(int button, int action, int modifiers);
  void OnRelease(double x, double y, int modifiers);
  struct Gesture
  {
    zylViewInteraction::Gesture Kind;
    double Corners[4]; ///< where it began and ended
    int Modifiers;
  };
  void DoGestures();
  void Do(const Gesture& gesture);
  void FollowSize();
  void ApplySize();
  void GetCursor(double& x, double& y) const;

  const zylViewOptions& Options;
  GLFWwindow* Window = nullptr;
  int Width = 0;
  int Height = 0;
  std::unique_ptr<zylViewLoading> Loading; // until there is a scene
  zylViewScene* Scene = nullptr;
  zylViewBackdrop* Backdrop = nullptr;
  zylViewInteraction* Interaction = nullptr;
  zylViewPointer* Pointer = nullptr;
  std::unique_ptr<zylViewOverlay> Overlay; // from the first picture on
  std::unique_ptr<zylViewPanel> Panel;     // null without
  bool PanelVisible = false;
  int Settling = 0; // frames that the panel still needs after the last event
  std::vector<std::pair<int, int>> Waiting; // keys and modifiers pressed while the library works
  std::vector<Gesture> Gestures;            // to be done
  bool Dirty = true;                        // something to draw
  bool SceneDirty = true;                   // and not only over the picture that there is
  zylViewPanel::State State;
  bool Hovering = true;              // what the pointer rests on is shown
  double Cursor[2] = { -1.0, -1.0 }; // as the window system counts
  bool Looked = true;                // at what it rests on now
  double Moved = 0.0;                // when it has, last
  double Rest = RestTime;            // how long it must stay
  std::string Tip;                   // the numbers there
  double TipPlace[2] = { 0.0, 0.0 };
  std::string Work; // what the library does, and since when
  double WorkStart = 0.0;
  double Idle = 0.0; // seconds spent waiting: what work takes is nobody's slowness in clicking
  double WaitStart = 0.0;
  bool Busy = true; // the library works: it must not be called again
};

#endif
