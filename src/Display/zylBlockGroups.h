/// @file zylBlockGroups.h
/// One kind of display of a dataset's blocks: a collection of settings for every block, and one
/// display pipeline for all blocks with equal settings. Private to the library.
#ifndef zylBlockGroups_h
#define zylBlockGroups_h

#include "zylExport.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkSMSourceProxy;
class zylArrayInformation;
class zylChangeList;
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

  /// Take over what has changed in the settings since the last call. Looks at those blocks only.
  void FollowSettings();

  /// The blocks that are to be drawn, ascending, as of the last FollowSettings(): leaves only,
  /// since every one has its own settings.
  const std::vector<int>& GetShown() const { return this->Shown; }

  /// Let the pipelines follow the settings, as of the last FollowSettings(). They show `source`,
  /// whose blocks `tree` describes, in `view` (null: the pipelines get their sources only). False
  /// if the session cannot make the stages that feed them.
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
    // As of the last FollowSettings().
    bool HasGroup = false;
    bool IsShown = false;
    vtkTypeUInt64 Hash = 0;
  };

  // The blocks that share one set of settings, and the chain that draws them:
  // source -> ExtractBlock -> ProgrammableFilter -> pipeline.
  struct Group
  {
    vtkSmartPointer<vtkSMSourceProxy> Extract;
    vtkSmartPointer<vtkSMSourceProxy> Script;
    vtkSmartPointer<zylPipeline> Pipeline;
    vtkTypeUInt64 Hash = 0;     // of the settings that the pipeline has
    bool IsStale = true;        // blocks, flags or settings are not what the pipeline has
    std::vector<int> Blocks;    // that the pipeline has, ascending
    std::vector<int> Extracted; // what Extract delivers, ascending: Blocks, or more
  };

  void AddBlocks(const zylMultiBlockTree* node, zylPropertyCollection* defaults);
  void Regroup(zylView* view);
  bool CreateGroup(Group& group, vtkSMSourceProxy* source);
  void DropGroup(Group& group, zylView* view);
  void UpdateSettings(Group& group, vtkTypeUInt64 hash, const std::vector<int>& blocks);

  PipelineFactory NewPipeline;
  std::shared_ptr<zylChangeList> Changes; // the blocks whose settings have changed
  std::map<int, Block> Blocks;
  std::vector<int> Shown;                             // ascending
  std::map<vtkTypeUInt64, std::vector<int>> BlocksOf; // by the hash of their settings, ascending
  std::map<vtkTypeUInt64, Group> Groups;              // follow BlocksOf in Update()
};

#endif
