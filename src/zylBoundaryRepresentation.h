/**
 * @class zylBoundaryRepresentation
 * @brief Shows a dataset block by block: surfaces, contour lines, feature lines, mesh lines,
 * glyphs.
 *
 * Every block has its own settings for each of the five kinds of display; nothing is visible until
 * a block's "Visibility" is set. Blocks with equal settings of a kind are drawn by one shared
 * pipeline, so the cost grows with the number of different settings, not with the number of blocks.
 *
 *     vtkNew<zylBoundaryRepresentation> boundary;
 *     boundary->SetDataSet(dataset);
 *     boundary->GetSurfaceProperties(3)->Set("Visibility", true); // block with flat index 3
 *     view->AddRepresentation(boundary);                          // runs Update()
 *
 * Settings reach the server at Update(). A block is a leaf of the block tree to draw: the settings
 * of the root and of inner nodes draw nothing by themselves. Blocks that a later time step brings
 * get default settings; settings of blocks that are gone are kept until they come back.
 *
 * Where the clips are set they apply to all kinds. Operations without a dataset do nothing.
 */
#ifndef zylBoundaryRepresentation_h
#define zylBoundaryRepresentation_h

#include "zylExport.h"
#include "zylRepresentation.h"

#include <string>
#include <vector>

class vtkMultiBlockDataSet;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylBlockGroups;
class zylHighlightPipeline;
class zylPipeline;
class zylSelection;

class ZYL_EXPORT zylBoundaryRepresentation : public zylRepresentation
{
public:
  static zylBoundaryRepresentation* New();
  vtkTypeMacro(zylBoundaryRepresentation, zylRepresentation);

  /// Also gives every block default settings, replacing earlier ones.
  void SetDataSet(zylDataSet* dataSet) override;

  /// Bring the pipelines in step with the settings. Without a view only their sources are.
  void Update() override;

  /// The representation's own settings (borrowed); none are defined.
  zylPropertyCollection* GetProperties();

  ///@{
  /// The settings of a block (borrowed) by flat index; null without dataset or for unknown blocks.
  zylPropertyCollection* GetSurfaceProperties(int blockId);
  zylPropertyCollection* GetContourProperties(int blockId);
  zylPropertyCollection* GetFeatureLineProperties(int blockId);
  zylPropertyCollection* GetMeshLineProperties(int blockId);
  zylPropertyCollection* GetVectorGlyphProperties(int blockId);
  ///@}

  ///@{
  /// The variable that colors a block in a kind, as of the last update: a new object or null.
  vtkSmartPointer<zylArrayInformation> GetSurfaceColorVariableInformation(int blockId);
  vtkSmartPointer<zylArrayInformation> GetContourColorVariableInformation(int blockId);
  vtkSmartPointer<zylArrayInformation> GetFeatureLineColorVariableInformation(int blockId);
  vtkSmartPointer<zylArrayInformation> GetMeshLineColorVariableInformation(int blockId);
  vtkSmartPointer<zylArrayInformation> GetVectorGlyphColorVariableInformation(int blockId);
  ///@}

  ///@{
  /// Clear or set "ForceHidden" of one block, or of all, in all kinds. "Visibility" stays as it is,
  /// so showing a hidden block brings back what was chosen for it.
  void Show(int blockId);
  void Hide(int blockId);
  void Show() override;
  void Hide() override;
  ///@}

  /// Whether any block of any kind, or a highlight, is to be drawn, as of the last update.
  bool IsVisible() override;
  /// Bounds of what is drawn, as of the last update.
  bool GetBounds(double bounds[6]) override;

  /// Settings of the highlight (borrowed, never null).
  zylPropertyCollection* GetHighlightProperties();
  ///@{
  /// Draw these blocks highlighted in addition; a new highlight replaces the one before. Style: 0
  /// feature edges, 1 surface, 2 outline, 3 wireframe, others surface with edges. An inner node
  /// stands for the blocks below it. Takes effect at the next Update().
  void Highlight(const std::vector<int>& blockIds, int style);
  void UnHighlight(const std::vector<int>& blockIds);
  void ClearHighlights();
  /// The same for all boundary representations of a selection, made in `view`, with their selected
  /// blocks. Null does nothing.
  static void Highlight(zylSelection* selection, zylView* view, int style);
  static void UnHighlight(zylSelection* selection, zylView* view);
  /// 0 opaque ... 1 invisible.
  void SetHighlightTransparency(double transparency);
  ///@}

  /// The surfaces of these blocks, fetched to this process in the structure of the dataset; null
  /// without dataset or when they cannot be had.
  vtkSmartPointer<vtkMultiBlockDataSet> GetBlockSurfaces(const std::vector<int>& blockIds);

  vtkSmartPointer<vtkCollection> GetPVRepresentations() override;
  bool HasRepresentation(vtkSMProxy* representation) override;
  void FreeResources() override;

protected:
  zylBoundaryRepresentation();
  ~zylBoundaryRepresentation() override;

  /// Make the stages all kinds share: the blocks needed, their surfaces, the clips.
  virtual void CreateSurfacePipeline();

  void InitializeBlockProperties();
  void UpdateExtractBlockCache();
  /// The text that computes the derived variables that a block's settings use: empty when there are
  /// none.
  std::string GetProgrammableScript(zylPropertyCollection* collection);

private:
  zylBoundaryRepresentation(const zylBoundaryRepresentation&) = delete;
  void operator=(const zylBoundaryRepresentation&) = delete;

  zylPropertyCollection* GetSettings(int kind, int blockId);
  vtkSmartPointer<zylArrayInformation> GetColorVariableInformation(int kind, int blockId);
  std::vector<int> CollectNeededBlocks();
  void TakeOverBlocks();
  void UpdateHighlight();
  void SetForceHidden(int blockId, bool hidden);
  std::vector<zylPipeline*> GetPipelines();

  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<vtkSMSourceProxy> ExtractBlockProxy;
  vtkSmartPointer<vtkSMSourceProxy> SurfaceProxy;
  bool SurfacePipelineCreated = false;
  vtkMTimeType BlocksTime = 0;       ///< of the block tree that the settings are for
  std::vector<int> NeededBlocks;     ///< ascending, as of the last update
  std::vector<zylBlockGroups> Kinds; ///< surface, contour, feature line, mesh line, vector glyph
  vtkSmartPointer<zylHighlightPipeline> HighlightPipeline;
  std::vector<vtkTypeUInt32> DrawOrder; ///< global ids of what is drawn, in its order
};

#endif
