/**
 * @class zylDerivedSurfaceRepresentation
 * @brief Base of the representations that compute a new surface, or lines, from a dataset.
 *
 *     dataset -> ExtractBlock -> ProgrammableFilter (volume variables) -> filters of the subclass
 *             -> MergeBlocks -> clips -> ProgrammableFilter (surface variables) [-> WarpVector]
 *             -> PassThrough -> six display pipelines
 *
 * Settings (GetProperties()); subclasses add theirs:
 *
 * | name                 | type, default | meaning                                                |
 * |----------------------|---------------|--------------------------------------------------------|
 * | "Blocks"             | ints, none    | flat indices of the blocks to use; 0 is the whole data |
 * | "MergePoints"        | bool, false   | merge coincident points of the surface                 |
 * | "WarpByVector"       | bool, false   | displace the surface ...                               |
 * | "WarpVectorVariable" | string, ""    | ... along this point vector ...                        |
 * | "WarpVectorScale"    | double, 1     | ... times this factor                                  |
 *
 * The result is one block, with flat index 0. Nothing is visible until a pipeline's "Visibility" is
 * set; its "BlockVisibility" shows the block from the start.
 *
 *     vtkNew<zylIsosurfaceRepresentation> surface; // a subclass
 *     surface->SetDataSet(dataset);
 *     const int all[] = { 0 };
 *     surface->GetProperties()->MakeInt("Blocks", all, 1);
 *     surface->GetSurfaceProperties()->Set("Visibility", true);
 *     view->AddRepresentation(surface); // runs Update()
 *
 * Settings reach the server at Update(), which sends and executes only what has changed.
 */
#ifndef zylDerivedSurfaceRepresentation_h
#define zylDerivedSurfaceRepresentation_h

#include "zylExport.h"
#include "zylIntegrateFields.h"
#include "zylRepresentation.h"

#include <set>
#include <string>
#include <vector>

class vtkPolyData;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylContourPipeline;
class zylFeatureLinePipeline;
class zylHighlightPipeline;
class zylMeshLinePipeline;
class zylPipeline;
class zylSurfacePipeline;
class zylVectorGlyphPipeline;

class ZYL_EXPORT zylDerivedSurfaceRepresentation : public zylRepresentation
{
public:
  vtkTypeMacro(zylDerivedSurfaceRepresentation, zylRepresentation);

  ///@{
  /// The settings of the surface, and of each way to show it (borrowed, never null).
  zylPropertyCollection* GetProperties();
  zylPropertyCollection* GetSurfaceProperties();
  zylPropertyCollection* GetHighlightProperties();
  zylPropertyCollection* GetContourProperties();
  zylPropertyCollection* GetMeshLineProperties();
  zylPropertyCollection* GetFeatureLineProperties();
  zylPropertyCollection* GetVectorGlyphProperties();
  ///@}

  ///@{
  /// The variable that colors a kind of display, as of the last update: a new object or null.
  vtkSmartPointer<zylArrayInformation> GetSurfaceColorVariableInformation();
  vtkSmartPointer<zylArrayInformation> GetContourColorVariableInformation();
  vtkSmartPointer<zylArrayInformation> GetMeshLineColorVariableInformation();
  vtkSmartPointer<zylArrayInformation> GetFeatureLineColorVariableInformation();
  vtkSmartPointer<zylArrayInformation> GetVectorGlyphColorVariableInformation();
  ///@}

  bool HasRepresentation(vtkSMProxy* representation) override;
  /// Also drops the filters of the subclass. The highlight stays, unless the view is being left.
  void FreeResources() override;
  /// Build what is missing of the chain, push the settings, execute what changed and update the
  /// pipelines. Does nothing without a dataset; without a view the chain only is updated. When the
  /// session has ended there is an error and nothing changes; once the dataset is loaded again in
  /// another session, all of the chain is built anew there.
  void Update() override;

  ///@{
  /// Set or clear "ForceHidden" of all kinds of display but the highlight, which does not count as
  /// visible either.
  void Hide() override;
  void Show() override;
  bool IsVisible() override;
  ///@}
  bool GetBounds(double bounds[6]) override;
  vtkSmartPointer<vtkCollection> GetPVRepresentations() override;

  ///@{
  /// Draw the surface highlighted in addition, from the next Update() on. Style: 0 feature edges,
  /// 1 surface, 2 outline, 3 wireframe, others surface with edges.
  void Highlight(int style);
  void UnHighlight();
  /// 0 opaque ... 1 invisible. Without a dataset this does nothing.
  void SetHighlightTransparency(double transparency);
  ///@}

  /// The surface as of the last update, clipped but not warped, fetched to this process from all
  /// ranks; null when there is none.
  vtkSmartPointer<vtkPolyData> GetDerivedSurface();

  /// Integrals of all arrays over the surface, neither clipped nor warped; updates it first. The
  /// derived variables of the dataset are those of the first call. Empty without a dataset.
  zylIntegrateFields::IntegratedValues_ GetIntegratedValues();

protected:
  zylDerivedSurfaceRepresentation();
  ~zylDerivedSurfaceRepresentation() override;

  /// Make the filters of the subclass, connect them among each other and name the first and the
  /// last one. Called by Update() whenever there is no first filter.
  virtual void CreateSurfacePipeline() = 0;

public:
  /// Push the settings of the subclass. Called by every Update(); does nothing before the first.
  virtual void UpdateLocalPipeline() = 0;

protected:
  /// Whether there are a dataset and filters of the subclass to push to. Asked first by each
  /// UpdateLocalPipeline(). Where their session has ended, a line in the log says so.
  bool HasFilters(const char* operation);

  /// Log a warning, once for as long as each update has it. Empty: nothing.
  void Warn(const std::string& text);
  /// Whether filters can take a variable for their scalar: a point array of one component, or a
  /// derived variable. If not, that is warned of unless the name is empty.
  bool CheckScalar(const std::string& name);

  /// Replace `names` by the derived variables that the filters of the subclass read. Base: none.
  virtual void GetVolumeDerivedPointVariables(std::set<std::string>& names);

  /// The surface as of the last update, clipped but not warped; the class named combines the parts
  /// of a parallel server (zylCore::Fetch()). Null when there is none.
  vtkSmartPointer<vtkPolyData> FetchSurface(const char* postGatherHelperName);

  ///@{
  /// The scripts that compute the derived variables that the filters read, and those that the
  /// displays show. Empty without a dataset.
  virtual std::string GetVolumeDerivedVariableScript();
  std::string GetSurfaceDerivedVariableScript();
  /// Add the derived variable that a setting names, alone or with the suffix of a component.
  void AddDerivedVariable(const std::string& setting, std::set<std::string>& names);
  ///@}

  ///@{
  /// The first and the last of the subclass's filters (shared). Clearing the first one unregisters
  /// it, and the next Update() makes the filters anew.
  void SetFirstSurfaceFilter(vtkSMSourceProxy* filter);
  void SetLastSurfaceFilter(vtkSMSourceProxy* filter);
  ///@}

  /// A registered filter of the dataset's session; null, with an error, if the session knows none
  /// of that name. `input` may be null.
  vtkSmartPointer<vtkSMSourceProxy> MakeFilter(const char* name, vtkSMSourceProxy* input);
  /// The filter `name` that was made elsewhere; says so if it was not.
  vtkSmartPointer<vtkSMSourceProxy> Made(
    const char* name, vtkSmartPointer<vtkSMSourceProxy> filter);

  vtkSmartPointer<vtkSMSourceProxy> BlockExtractor;
  vtkSmartPointer<vtkSMSourceProxy> FirstSurfaceFilter;
  vtkSmartPointer<vtkSMSourceProxy> LastSurfaceFilter;
  vtkSmartPointer<vtkSMSourceProxy> BlockMerger;
  vtkSmartPointer<vtkSMSourceProxy> IntegrationScript;
  vtkSmartPointer<vtkSMSourceProxy> Integrator;
  vtkSmartPointer<vtkSMSourceProxy> VolumeScript;
  vtkSmartPointer<vtkSMSourceProxy> SurfaceScript;
  vtkSmartPointer<vtkSMSourceProxy> WarpFilter;
  vtkSmartPointer<vtkSMSourceProxy> Output;
  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<zylSurfacePipeline> SurfacePipeline;
  vtkSmartPointer<zylHighlightPipeline> HighlightPipeline;
  vtkSmartPointer<zylContourPipeline> ContourPipeline;
  vtkSmartPointer<zylMeshLinePipeline> MeshLinePipeline;
  vtkSmartPointer<zylFeatureLinePipeline> FeatureLinePipeline;
  vtkSmartPointer<zylVectorGlyphPipeline> VectorGlyphPipeline;
  bool SurfaceChanged = false; ///< whether the last update may have brought another surface

private:
  zylDerivedSurfaceRepresentation(const zylDerivedSurfaceRepresentation&) = delete;
  void operator=(const zylDerivedSurfaceRepresentation&) = delete;

  std::vector<zylPipeline*> GetDisplays(); // all but the highlight
  std::vector<zylPipeline*> GetAllPipelines();
  std::vector<vtkSmartPointer<vtkSMSourceProxy>*> GetOwnFilters(); // those of no subclass
  bool BuildChain(vtkSMSourceProxy* source);
  void ForgetChain();
  void UpdateBlocks();
  std::set<std::string> GetSurfaceDerivedVariables();
  void UpdateSurfaceScript();

  vtkTypeUInt64 SurfaceScriptTime = 0;    // the dataset's, when the surface script was last set
  std::set<std::string> SurfaceVariables; // that it computes
  std::set<std::string> VolumeVariables;  // that the other script computes
  double FilterTime = 0.0;                // at which the last filter and the output were executed
  double SurfaceTime = 0.0;               // and the script of the surface, where it is displaced
  double OutputTime = 0.0;
  std::vector<vtkTypeUInt32> DrawOrder;       // see zylOrderDrawing()
  vtkMTimeType TreeTime = 0;                  // of the dataset's block tree at the last update
  std::set<std::string> Warned, WarnedBefore; // of in this update and in the last one
};

#endif
