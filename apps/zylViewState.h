/// @file zylViewState.h
/// A whole scene in a file: datasets, what is shown of them and how, camera, time. JSON; data, not
/// a program: what a file names is shown before it is used, and what cannot be restored is said and
/// skipped.
///
///     { "zylview": 1, "connect": url, "time": t,
///       "window": { "size", "samples", "background", "view", "lights" },
///       "camera": { "position", "focus", "up", "upright", "angle", "parallel", "scale",
///                   "center" },
///       "datasets": [ { "files", "reader", "expressions", "settings", "colors",
///                       "blocks": { kind: [ { "blocks", "settings" } ] }, "clips",
///                       "selected": [ block ],
///                       "derived": [ { "kind", "settings", "displays", "selected", "clips" } ]
///                     } ] }
#ifndef zylViewState_h
#define zylViewState_h

#include <memory>
#include <string>
#include <vector>

#include <vtk_jsoncpp.h>

class zylView;
class zylViewCamera;
class zylViewCase;
struct zylViewOptions;

class zylViewState
{
public:
  /// Throws zylViewError when the file cannot be read or is no scene.
  explicit zylViewState(const std::string& file);

  /// Server, size and background, where the user has not said otherwise.
  void GetWindow(zylViewOptions& options) const;
  std::string GetServer() const; ///< empty: none
  std::size_t GetNumberOfDataSets() const;
  /// What to load for a dataset and how, shown to the user first. Expressions that go beyond
  /// arithmetic are left out unless the user trusts the file.
  zylViewOptions GetDataSet(std::size_t index, const zylViewOptions& options) const;

  ///@{
  /// Give what has been loaded, and the view, its settings; an update is left to the caller.
  void RestoreDataSet(std::size_t index, zylViewCase& target) const;
  void RestoreDisplays(std::size_t index, zylViewCase& target) const;
  void RestoreView(zylView* view, zylViewCamera& camera) const;
  ///@}

  /// Write a scene. `options` are those of the window. False when the file cannot be written.
  static bool Write(const std::string& file, const std::vector<std::unique_ptr<zylViewCase>>& cases,
    zylView* view, zylViewCamera& camera, const zylViewOptions& options);

  static std::string ToText(const Json::Value& json); ///< numbers come back bit for bit

private:
  static constexpr int Layout = 1; ///< what this program writes, and the newest that it reads
  void Skip(const std::string& what) const;

  std::string File;
  Json::Value Root;
};

#endif
