// clang-format off
/**
 * @class zylPipeline
 * @brief Base of the display pipelines: shows one data source in a view with one set of settings.
 *
 * Layer: display pipelines. Owned by a representation, which gives it a data source and copies a
 * group's settings into GetProperties(); Update() brings them to the server. Nothing is made before
 * the first Update() with a visible block. Then a pipeline owns its view representation proxy, the
 * lookup table that the representation colors by, the table's scalar bar and, in some classes, a
 * filter; all are kept until FreeResources() or destruction. What did not change since the last
 * Update() is not sent again.
 *
 * Settings that every pipeline declares (the highlight pipeline has a set of its own). The first
 * three only steer what is visible and are not in the hash.
 *
 * | name                             | type      | default        | meaning                            |
 * |----------------------------------|-----------|----------------|------------------------------------|
 * | "Visibility"                     | bool      | false          | whether to draw at all             |
 * | "ForceHidden"                    | bool      | false          | hide whatever "Visibility" says    |
 * | "BlockVisibility"                | ints      | none           | pairs of flat index and flag       |
 * | "ColorMode"                      | int       | 0              | 0: "Color";                        |
 * |                                  |           |                | 1: by "ColorVariableName"          |
 * | "Color"                          | 3 doubles | 1, 1, 1        | RGB in [0, 1]                      |
 * | "ColorVariableName"              | string    | ""             | an array, or one with a suffix:    |
 * |                                  |           |                | see SplitVariableName()            |
 * | "ColorMapName"                   | string    | "Cool to Warm" | one of zylCore's color maps        |
 * | "ColorMapRange"                  | 2 doubles | 0, 1           | values of the map's ends           |
 * | "Ambient", "Diffuse", "Specular" | double    | 0, 1, 0        | lighting coefficients              |
 * | "SpecularColor"                  | 3 doubles | 1, 1, 1        | RGB in [0, 1]                      |
 * | "SpecularPower"                  | double    | 100            |                                    |
 * | "ColorLegendVisibility"          | bool      | false          | show the legend of the map         |
 * | "ColorLegendLocation"            | int       | 2              | "WindowLocation" of a scalar bar   |
 * | "ColorLegendOrientation"         | int       | 1              | 0: horizontal; 1: vertical         |
 * | "ColorLegendTitle"               | string    | ""             | "": name of array and component    |
 * | "ColorLegendComponentTitle"      | string    | ""             | with "ColorLegendTitle" only       |
 * | "ColorLegendTitleColor"          | 3 doubles | 0, 0, 0        | RGB in [0, 1]                      |
 * | "ColorLegendTitleFontSize"       | int       | 16             | points                             |
 * | "ColorLegendTitleBold"           | bool      | false          |                                    |
 * | "ColorLegendTitleItalic"         | bool      | false          |                                    |
 * | "ColorLegendTitleShadow"         | bool      | false          |                                    |
 * | "ColorLegendLabelColor"          | 3 doubles | 0, 0, 0        | RGB in [0, 1]                      |
 * | "ColorLegendLabelFontSize"       | int       | 16             | points                             |
 * | "ColorLegendLabelBold"           | bool      | false          |                                    |
 * | "ColorLegendLabelItalic"         | bool      | false          |                                    |
 * | "ColorLegendLabelShadow"         | bool      | false          |                                    |
 *
 * In "BlockVisibility" a leaf block without a pair follows the nearest node above it that has one.
 */
// clang-format on
#ifndef zylPipeline_h
#define zylPipeline_h

#include "zylExport.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkSMPVRepresentationProxy;
class vtkSMProxy;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylColoring;
class zylMultiBlockTree;
class zylPropertyCollection;
class zylView;
enum class zylVariableName;
struct zylVariable;

class ZYL_EXPORT zylPipeline : public vtkObject
{
public:
  vtkTypeMacro(zylPipeline, vtkObject);

  ///@{
  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();
  void PrintProperties(std::ostream& os);
  ///@}

  ///@{
  /// What to show (shared; null: Update() does nothing).
  void SetDataSource(vtkSMSourceProxy* source);
  vtkSMSourceProxy* GetDataSource();
  ///@}

  /// The block tree of the data that the data source delivers (shared; null: not known). With it
  /// arrays are found without asking the server. Without it the ids in "BlockVisibility" are taken
  /// as they are, so that { 0, 1 } shows everything.
  void SetBlockTree(zylMultiBlockTree* tree);

  /// Whether a variable that cannot be shown (it does not exist, or is no vector) leaves what was
  /// shown as it was (the default), or what is shown is what a new pipeline with these settings
  /// would show. A message comes in either case.
  void SetKeepsLastVariable(bool keeps) { this->KeepsLastVariable = keeps; }

  /// Declare settings that have been removed again, with their defaults.
  void RestoreProperties();

  /// Push the settings to `view` (borrowed; null does nothing). A missing setting means its
  /// default.
  virtual void Update(zylView* view);

  /// Remove what is shown from `view` (may be null) and release all proxies but the data source.
  /// The next Update() makes them again.
  virtual void FreeResources(zylView* view);

  /// The array named by "ColorVariableName" in the data source, with its ranges over the blocks of
  /// "BlockVisibility", or null. Asks the server.
  virtual vtkSmartPointer<zylArrayInformation> GetColorVariableInformation();
  /// The same over these blocks (flat indices; none: null).
  vtkSmartPointer<zylArrayInformation> GetColorVariableInformation(const std::vector<int>& blocks);

  /// The view representation proxy (borrowed), null while nothing has been shown.
  vtkSMPVRepresentationProxy* GetRepresentation();

  ///@{
  /// Whether "Visibility" is on and "ForceHidden" is off; whether there is a block to show besides.
  bool IsVisible();
  bool AnyBlocksVisible();
  ///@}

  ///@{
  /// Bounds (xmin, xmax, ymin, ymax, zmin, zmax) of the whole data source, and of the visible
  /// blocks only; minima above maxima when there is nothing. Executes the data source; one question
  /// to the server whatever the number of blocks.
  void GetBounds(double bounds[6]);
  void GetVisibleBounds(double bounds[6]);
  ///@}

  ///@{
  /// Split "Velocity_X" into "Velocity" and "X". The suffixes are "X", "Y", "Z" (components 0, 1,
  /// 2) and "Magnitude" (-1); any other name stays whole, with component "" (-1).
  static void SplitVariableName(const std::string& full, std::string& name, std::string& component);
  static void SplitVariableName(const std::string& full, std::string& name, int& component);
  ///@}

protected:
  /// Makes the collection, empty. Derived constructors call their InitializeProperties().
  zylPipeline();
  ~zylPipeline() override;

  /// Declare those of the settings above that are missing.
  virtual void InitializeProperties();

  ///@{
  /// In what kinds of display differ within Update(), in the order of the calls.
  ///
  /// What to show in the view (borrowed); null to leave everything as it is.
  virtual vtkSMSourceProxy* PrepareSource();
  virtual const char* GetRepresentationType() = 0;
  virtual void UpdateColors();
  virtual void PushSettings() = 0;
  ///@}

  /// Put the filter of that name between the data source and the representation if that has not
  /// been done and a block is visible. Whether there is a filter.
  bool EnsureFilter(const char* name);
  /// Let the filter be one that takes out the hidden blocks, for displays that do not heed the
  /// visibility of blocks; what to show then (borrowed).
  vtkSMSourceProxy* ExtractVisibleBlocks();

  void SetSolidColor();
  /// Color by "ColorVariableName". An unknown array is logged.
  void SetColorVariableAndComponent();
  /// The latest modification time of the settings of the color map.
  vtkMTimeType GetColorMapMTime();
  void HideColorLegendIfNeeded();
  /// Give the scalar bar of the representation's lookup table in the view its settings.
  void SetupColorLegend(vtkSMProxy* representation, vtkSMProxy* view);

  /// A variable in the blocks shown. Asks the server only if the block tree does not know it.
  zylVariable FindVariable(const std::string& name, zylVariableName form);

  bool KeepsLastVariable = true;
  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<vtkSMSourceProxy> DataSource;
  vtkSmartPointer<vtkSMPVRepresentationProxy> Representation;
  vtkSmartPointer<vtkSMSourceProxy> Filter; ///< between source and representation, in some classes

private:
  zylPipeline(const zylPipeline&) = delete;
  void operator=(const zylPipeline&) = delete;

  bool EnsureRepresentation(zylView* view, vtkSMSourceProxy* source);
  void UpdateVisibility();
  void GatherBounds(bool visibleOnly, double bounds[6]);
  vtkMTimeType GetTreeMTime();

  vtkSmartPointer<zylMultiBlockTree> BlockTree;
  std::unique_ptr<zylColoring> Coloring;

  // What the server has: to tell changes from repetitions.
  std::string ShownVariable;
  std::vector<int> ColoredBlocks;
  vtkMTimeType ColoredTreeTime = 0;
  std::vector<int> ShownBlocks;
  vtkMTimeType ShownTreeTime = 0;
};

#endif
