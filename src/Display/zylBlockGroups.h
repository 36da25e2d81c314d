/// @file zylBlockGroups.h
/// One kind of display of a dataset's blocks: a collection of settings for every block, and one
/// display pipeline for all blocks with equal settings. Private to the library.
#ifndef zylBlockGroups_h
#define zylBlockGroups_h

#include "zylExport.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkSMSourceProxy;
class zylArrayInformation;
class zylMultiBlockTree;
class zylPipeline;
class zylPropertyCollection;
class zylView;

class ZYL_PRIVATE zylBlockGroups
{
public:
  using PipelineFactory = vtkSmartPointer<zylPipeline> (*)();
  /// The text that computes the derived variables that a block's settings use.
  using ScriptFactory = std::function<std::string(zylPropertyCollection*)>;

  explicit zylBlockGroups(PipelineFactory newPipeline);

  ///@{
  /// Take over the blocks of a tree: new ones get default settings, those of blocks that are gone
  /// are kept. Forget all settings.
  void SetBlocks(const zylMultiBlockTree* tree);
  void ClearBlocks();
  ///@}

  /// The settings of a block (borrowed), null for unknown blocks.
  zylPropertyCollection* GetSettings(int id) const;
  /// All blocks that have settings, ascending.
  std::vector<int> GetBlocks() const;
  /// Append the blocks that are to be drawn: leaves only, since every one has its own settings.
  void AppendShown(std::vector<int>& ids) const;

  /// Let the pipelines follow the settings. They show `source`, whose blocks `tree` describes, in
  /// `view` (null: the pipelines get their sources only). False if the session cannot make the
  /// stages that feed them.
  bool Update(vtkSMSourceProxy* source, zylMultiBlockTree* tree, zylView* view,
    const ScriptFactory& makeScript);

  /// Release the pipelines and what feeds them.
  void FreeResources(zylView* view);

  /// The variable that colors a block, over those blocks of its group that are among `delivered`
  /// (ascending): what the source delivers besides may be left from settings that are no more.
  vtkSmartPointer<zylArrayInformation> GetColorVariableInformation(
    int id, const std::vector<int>& delivered) const;

  /// Append all pipelines (borrowed).
  void AppendPipelines(std::vector<zylPipeline*>& pipelines) const;

private:
  struct Block
  {
    vtkSmartPointer<zylPropertyCollection> Settings;
    bool IsLeaf = false; // of the present tree

    bool IsShown() const;
  };

  // The blocks that share one set of settings, and the chain that draws them:
  // source -> ExtractBlock -> ProgrammableFilter -> pipeline.
  struct Group
  {
    vtkSmartPointer<vtkSMSourceProxy> Extract;
    vtkSmartPointer<vtkSMSourceProxy> Script;
    vtkSmartPointer<zylPipeline> Pipeline;
    vtkTypeUInt64 Hash = 0;     // of the settings that the pipeline has
    std::vector<int> Blocks;    // ascending
    std::vector<int> Extracted; // what Extract delivers, ascending: Blocks, or more
  };

  void AddBlocks(const zylMultiBlockTree* node, zylPropertyCollection* defaults);
  void Regroup(const std::map<vtkTypeUInt64, std::vector<int>>& blocksOf, zylView* view);
  bool CreateGroup(Group& group, vtkSMSourceProxy* source);
  void DropGroup(Group& group, zylView* view);
  void UpdateSettings(Group& group, vtkTypeUInt64 hash, const std::vector<int>& blocks,
    const ScriptFactory& makeScript);

  PipelineFactory NewPipeline;
  std::map<int, Block> Blocks;
  std::map<vtkTypeUInt64, Group> Groups;
};

#endif
