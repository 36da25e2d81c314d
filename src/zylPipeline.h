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
 * Settings that every pipeline declares (the highlight pipeline has a set of its own):
 *
 * | name                                    | type, default |
 * |-----------------------------------------|------------------------------------------------------|
 * | "Visibility", "ForceHidden"             | bool, false; not in the hash | | "BlockVisibility" |
 * ints, none; pairs of flat index, flag; not in hash   | | "ColorMode" | int, 0: solid "Color"; 1:
 * by "ColorVariableName"     | | "Color"                                 | 3 doubles (RGB in [0,
 * 1]), white                     | | "ColorVariableName"                     | string, ""; see
 * SplitVariableName()                  | | "ColorMapName", "ColorMapRange"         | string, "Cool
 * to Warm"; 2 doubles, 0 and 1           | | "Ambient", "Diffuse", "Specular"        | double, 0, 1
 * and 0                                   | | "SpecularColor", "SpecularPower"        | 3 doubles,
 * white; double, 100                        | | "ColorLegendVisibility"                 | bool,
 * false                                          | | "ColorLegendLocation", "...Orientation" | int,
 * 2 and 1, as of ParaView's scalar bar            | | "ColorLegendTitle", "...ComponentTitle" |
 * string, "": the array's name and component           | | "ColorLegendTitle...",
 * "ColorLegendLabel..." | "Color" (3 doubles, black), "FontSize" (int, 16), | | | "Bold", "Italic",
 * "Shadow" (bool, false)             |
 */
#ifndef zylPipeline_h
#define zylPipeline_h

#include "zylExport.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkSMPVRepresentationProxy;
class vtkSMProxy;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylMultiBlockTree;
class zylPropertyCollection;
class zylView;

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

  /// The block tree of the data that the data source delivers (borrowed, null allowed). It must be
  /// alive at every Update(); with it arrays are found without asking the server.
  void SetBlockTree(const zylMultiBlockTree* tree);

  /// Push the settings to `view` (borrowed; null does nothing). Derived classes order the steps.
  virtual void Update(zylView* view);

  /// Remove what is shown from `view` (may be null) and release all proxies but the data source.
  /// The next Update() makes them again.
  virtual void FreeResources(zylView* view);

  /// The array named by "ColorVariableName" in the data source with its ranges, or null. Asks the
  /// server.
  virtual vtkSmartPointer<zylArrayInformation> GetColorVariableInformation();

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

  /// Declare the settings above.
  virtual void InitializeProperties();
  /// Whether there is such a setting. Never logged.
  bool PropertyExists(const std::string& name);

  ///@{
  /// Steps of Update(). All but the first three need a representation.
  ///
  /// Put the filter of that name between the data source and the representation if that has not
  /// been done and a block is visible. Whether there is a filter.
  bool EnsureFilter(const char* name);
  /// Let the filter be one that takes out the hidden blocks, for displays that do not heed the
  /// visibility of blocks; what to show then (borrowed).
  vtkSMSourceProxy* ExtractVisibleBlocks();
  /// Show `source` in the view if that has not been done and a block is visible. Whether there is a
  /// representation.
  bool EnsureRepresentation(zylView* view, vtkSMSourceProxy* source);
  /// Lighting, pushed at once.
  void UpdateLighting();
  void SetRepresentationType(const char* type);
  void SetSolidColor();
  /// Switch coloring by a variable off or on, by "ColorMode".
  void UpdateColoring();
  /// Color by "ColorVariableName". An unknown array is logged and leaves the coloring as it is.
  void SetColorVariableAndComponent();
  /// Rebuild the lookup table if one of the settings of the color map has changed.
  void UpdateColorMap();
  void UpdateVisibility();
  void HideColorLegendIfNeeded(zylView* view);
  /// Show the scalar bar if the settings ask for it.
  void UpdateColorLegend(zylView* view);
  /// Give the scalar bar of the representation's lookup table in the view its settings.
  void SetupColorLegend(vtkSMProxy* representation, vtkSMProxy* view);
  /// UpdateColoring() and UpdateColorMap(), in the order of all pipelines, with the solid color.
  void UpdateColors(zylView* view);
  ///@}

  /// The latest modification time of the settings of the color map.
  vtkMTimeType GetColorMapMTime();

  /// Where the blocks shown have an array: association 0 (points) or 1 (cells) and number of
  /// components; false if nowhere. Asks the server only if the block tree does not know it.
  bool FindArray(const std::string& name, int& association, int& components);

  /// A flag on an inner node of the block tree is for all leaves below it; otherwise it draws
  /// nothing.
  bool InnerNodesMeanLeaves = false;

  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<vtkSMSourceProxy> DataSource;
  vtkSmartPointer<vtkSMPVRepresentationProxy> Representation;
  vtkSmartPointer<vtkSMSourceProxy> Filter; ///< between source and representation, in some classes
  vtkSmartPointer<vtkSMProxy> LookupTable;

private:
  zylPipeline(const zylPipeline&) = delete;
  void operator=(const zylPipeline&) = delete;

  struct ColorArray
  {
    std::string Name;
    int Association;
    int Component;
  };
  void SetScalarColoring(const ColorArray& array);
  void ReleaseLookupTable();
  vtkSMProxy* ShowScalarBar(zylView* view);
  bool FindArrayInTree(const std::string& name, int& association, int& components);
  std::uint64_t GetColorMapHash();
  std::vector<int> GetBlockPairs();
  std::vector<int> GetVisibleLeaves();
  void GatherBounds(bool visibleOnly, double bounds[6]);

  const zylMultiBlockTree* BlockTree = nullptr;
  vtkSmartPointer<vtkSMProxy> ScalarBar;

  // What the server has: to tell changes from repetitions.
  std::string ShownArray;
  int ShownAssociation = -1;
  vtkMTimeType ColorMapTime = 0;
  std::uint64_t ColorMapHash = 0;
  std::vector<int> ShownBlocks;
  vtkMTimeType ShownTreeTime = 0;
};

#endif
