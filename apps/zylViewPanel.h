/// @file zylViewPanel.h
/// The panel beside the picture: scene, time, blocks, settings, colors, clips, what is derived,
/// variables, files, messages. Drawn by the host after the scene, in the same context and
/// framebuffer.
#ifndef zylViewPanel_h
#define zylViewPanel_h

#include <memory>

class zylViewScene;
struct GLFWwindow;

class zylViewPanel
{
public:
  /// What the panel shows of the window, and asks of it.
  struct State
  {
    bool Playing = false;
    bool Closing = false;
  };

  virtual ~zylViewPanel() = default;
  /// Draw over the bound framebuffer. Returns whether the user changed something of the scene.
  virtual bool Draw(State& state) = 0;
  ///@{
  /// Whether the mouse at a pixel, counted from the upper left corner, or keys are for the panel.
  virtual bool WantsMouse(double x, double y) const = 0;
  virtual bool WantsKeys() const = 0;
  ///@}
};

/// Null where the program is built without the toolkit of the panel. All borrowed; made after the
/// host has set its callbacks on the window, whose context is current.
std::unique_ptr<zylViewPanel> zylNewPanel(GLFWwindow* window, zylViewScene& scene);

#endif
