// clang-format off
/**
 * @class zylDataSet
 * @brief One loaded dataset: a source on the server, its processing chain and its tree of blocks.
 *
 *     source -> ForceTime -> [GroupDataSets] -> [Threshold] -> [RedistributeDataSet]
 *            -> [CellDataToPointData] -> PassThrough
 *
 * The stages in brackets are connected only while their condition holds. Everything that shows or
 * measures the dataset takes GetOutput() and addresses blocks by flat index (see
 * zylMultiBlockTree).
 *
 * Settings (GetProperties()), all taking effect at the next Update():
 *
 * | name                             | type, default        | effect                                         |
 * |----------------------------------|----------------------|------------------------------------------------|
 * | "DistributeDataSet"              | bool, false          | spread the data evenly over the ranks, of      |
 * |                                  |                      | which 2, 4, 8, ... can take part               |
 * | "FreezeTime"                     | bool, false          | ignore the animation time                      |
 * | "FrozenTime"                     | double, 0            | the time shown while frozen, snapped           |
 * | "ThresholdDataSet"               | bool, false          | keep the cells within a range of values        |
 * | "ThresholdVariable"              | string, ""           | point array to threshold by                    |
 * | "ThresholdRange"                 | 2 doubles, 0, 1      | lower and upper value, both included           |
 * | "InterpolateCellDataToPointData" | bool, false          | add point arrays made from the cell arrays     |
 * | "PartIdArrayName"                | string, "part_id"    | given to the reader at load                    |
 * | "LevelMaskArrayName"             | string, "level_mask" | given to the reader at load                    |
 *
 * The dataset follows zylTimeController: every change of time runs Update(), which shows the time
 * step nearest to the active time.
 */
// clang-format on
#ifndef zylDataSet_h
#define zylDataSet_h

#include "zylExport.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkMultiBlockDataSet;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylCore;
class zylDerivedVariables;
class zylErrorCapture;
class zylMultiBlockTree;
class zylProcessingChain;
class zylPropertyCollection;
class zylWatchedSource;
struct zylBlocks;
struct zylReaderChoice;

class ZYL_EXPORT zylDataSet : public vtkObject
{
public:
  static zylDataSet* New();
  vtkTypeMacro(zylDataSet, vtkObject);

  ///@{
  /// Load result files. The reader is chosen for the first name by ParaView's reader factory, or is
  /// the proxy `name` of the proxy group `group`; all names are given to it in order. Where several
  /// readers claim a kind of file, the first that succeeds is taken. Files of different kinds are
  /// refused.
  ///
  /// False, with an error message, when a file cannot be read; what was loaded before then stays.
  /// True with a non-empty GetReadErrors() when only some pieces of the data could be read.
  bool LoadFromFile(const std::vector<std::string>& fileNames);
  bool LoadFromFile(
    const std::vector<std::string>& fileNames, const std::string& group, const std::string& name);
  ///@}

  ///@{
  /// Show data of this process (shared; not copied) as the data of `time`. Call again with new data
  /// any time. False in a session on a server.
  bool InitializeFromVTKDataSet(vtkMultiBlockDataSet* data, double time);
  bool InitializeFromVTKDataSet(vtkMultiBlockDataSet* data)
  {
    return this->InitializeFromVTKDataSet(data, 0.0);
  }
  ///@}

  /// Connect the chain as the settings say, execute it at the current time and rebuild the block
  /// tree if the settings, the time or the data changed: a property of the source's proxy was
  /// pushed, its files were reloaded, or data of this process were marked as modified. Otherwise
  /// nothing is asked or told of a server.
  void Update();

  /// What readers and filters complained about in the last load or update, or why nothing of the
  /// data can be drawn (a table without coordinates, no points, ...); empty if all is well. Errors
  /// of a server are printed by the server.
  const std::vector<std::string>& GetReadErrors() const { return this->ReadErrors; }

  /// The settings (borrowed).
  zylPropertyCollection* GetProperties();

  /// The source: a reader or a trivial producer (borrowed); null before anything was loaded.
  vtkSMSourceProxy* GetProxy();

  /// The end of the chain, which everything downstream connects to (borrowed); null before the
  /// first update.
  vtkSMSourceProxy* GetOutput();

  /// The root of the block tree (borrowed, never null). Rebuilt by Update().
  zylMultiBlockTree* GetMultiBlockTree();

  /// Bounds of the output (xmin, xmax, ymin, ymax, zmin, zmax). False, and inverted bounds, when
  /// there is nothing.
  bool GetBounds(double bounds[6]);

  ///@{
  /// Totals of the output, 0 before anything was loaded.
  vtkIdType GetNumberOfPoints();
  vtkIdType GetNumberOfCells();
  ///@}

  ///@{
  /// What the source says about itself; empty when it does not.
  std::vector<double> GetTimestepValues();
  std::vector<std::string> GetFileNames();
  /// Three values a block.
  std::vector<double> GetBlockCentroids();
  std::string GetDataGroupingString();
  ///@}

  ///@{
  /// Blocks by name. Of several blocks of one name the map holds the one met last in breadth-first
  /// order; the second map lists all leaf blocks of a name. Pieces are no blocks.
  const std::map<std::string, unsigned int>& GetBlockMap() const;
  const std::map<std::string, std::vector<unsigned int>>& GetBlockNameToIDsMap() const;
  unsigned int GetNumberOfBlocks();
  ///@}

  /// Flat indices of all blocks (no pieces) in pre-order; the first is the root, 0.
  std::vector<unsigned int> GetBlockIDs();
  /// Flat index of the parent; 0xFFFFFFFF for the root and for unknown blocks.
  unsigned int GetParent(unsigned int blockIndex);
  /// Flat indices of the children in order; empty for leaves and unknown blocks.
  std::vector<unsigned int> GetChildren(unsigned int blockIndex);

  ///@{
  /// Arrays of a block; without argument of the root, which has the arrays of all blocks. Zero or
  /// empty for unknown blocks. The description is borrowed and valid until the tree is rebuilt; for
  /// a bad block or array index a warning is given and null returned.
  unsigned int GetNumberOfPointArrays() { return this->GetNumberOfPointArrays(0); }
  unsigned int GetNumberOfPointArrays(unsigned int block);
  std::vector<std::string> GetPointArrayNames() { return this->GetPointArrayNames(0); }
  std::vector<std::string> GetPointArrayNames(unsigned int block);
  zylArrayInformation* GetPointArrayInformation(unsigned int arrayIndex)
  {
    return this->GetPointArrayInformation(arrayIndex, 0);
  }
  zylArrayInformation* GetPointArrayInformation(unsigned int arrayIndex, unsigned int block);
  unsigned int GetNumberOfCellArrays() { return this->GetNumberOfCellArrays(0); }
  unsigned int GetNumberOfCellArrays(unsigned int block);
  std::vector<std::string> GetCellArrayNames() { return this->GetCellArrayNames(0); }
  std::vector<std::string> GetCellArrayNames(unsigned int block);
  zylArrayInformation* GetCellArrayInformation(unsigned int arrayIndex)
  {
    return this->GetCellArrayInformation(arrayIndex, 0);
  }
  zylArrayInformation* GetCellArrayInformation(unsigned int arrayIndex, unsigned int block);
  ///@}

  /// VTK cell type of the first cell of a block of the source's data; -1 if it has none. One cell
  /// is fetched.
  int GetCellType(unsigned int block);
  /// The same for all blocks with one request: element i is for flat index i of the fetched data,
  /// which is that of the tree with one process; with several a level per process comes above it.
  std::vector<int> GetCellTypes();

  ///@{
  /// Derived variables: new point variables as expressions over the point arrays and over each
  /// other, in Python with the names of numpy and of ParaView's numpy_interface.algorithms:
  ///
  ///     dataset->DefineDerivedPointVariable("speed", "mag(velocity)");
  ///     dataset->DefineDerivedPointVariable("dynamic", "0.5 * density * speed**2");
  ///
  /// A name that is no Python identifier, of an array or of a variable, is spelled in expressions
  /// with '_' for every character that an identifier cannot hold, '_' in front when it begins with
  /// a digit and as many '_' behind as set it apart from the other names: "Wall Distance" is
  /// Wall_Distance, "p/rho" is p_rho (and p_rho_ beside an array "p_rho"), "lambda" is lambda_,
  /// "inputs" and "output" are inputs_ and output_. A warning tells the spelling when an
  /// expression holds such a name as it is.
  ///
  /// They are evaluated on what is shown or measured: on the blocks for integrals, histograms and
  /// the filters of derived surfaces, on a surface for its colors (where gradient() has no
  /// component normal to it), on the values found at probed points. A block without an array that
  /// an expression needs is without the variable.
  ///
  /// Expressions are programs of the host's user: they run as they are, where the data are, and
  /// nothing bounds their time.

  /// Define or replace a variable; both texts are UTF-8, the expression has 10 000 bytes at most.
  /// An empty name is an error; an empty expression removes the variable (and leaves the dataset's
  /// modification time as it is).
  void DefineDerivedPointVariable(const std::string& name, const std::string& expression);
  /// Remove all.
  void ClearDerivedPointVariables();
  /// In ascending order, byte by byte.
  std::vector<std::string> GetDerivedPointVariableNames();
  bool IsDerivedPointVariable(const std::string& name);
  /// Empty for an unknown name.
  std::string GetDerivedPointVariableExpression(const std::string& name);
  /// The script of a "ProgrammableFilter" ("CopyArrays" 1) that adds the variables `toSave`, those
  /// that others need first. Empty, with an error message in Python's words, when an expression
  /// (any of them) is none; the message is not repeated until a definition changes. Variables that
  /// need each other in a circle are warned about: their script fails where the data are.
  std::string GetDerivedPointVariableScript(const std::set<std::string>& toSave);
  ///@}

  ///@{
  /// @deprecated Use GetProperties() and the property "DistributeDataSet".
  void SetDistributeDataSet(bool distribute);
  bool GetDistributeDataSet();
  ///@}

protected:
  zylDataSet();
  ~zylDataSet() override;

private:
  zylDataSet(const zylDataSet&) = delete;
  void operator=(const zylDataSet&) = delete;

  using ArrayList = std::vector<vtkSmartPointer<zylArrayInformation>>;

  void UpdateCallback(vtkObject*, unsigned long, void*);
  /// Load with one reader. Empty, or why it failed; then everything is as before.
  bool Load(const std::vector<std::string>& fileNames, const zylReaderChoice& choice);
  std::string ReadWith(const std::vector<std::string>& fileNames, const std::string& group,
    const std::string& name, bool mayBeEmpty);
  bool Adopt(vtkSMSourceProxy* source, const zylErrorCapture& capture, bool mayBeEmpty);
  void DropChain();
  bool TakeCancelRequest();
  void CheckDrawable(const std::vector<std::string>& errors);
  void SetReadErrors(const std::vector<std::string>& errors);
  void RebuildTree();
  zylArrayInformation* GetArray(ArrayList zylMultiBlockTree::*list, const char* kind,
    unsigned int arrayIndex, unsigned int block);

  vtkSmartPointer<zylCore> Core;
  std::unique_ptr<zylWatchedSource> Source;  // never null
  std::unique_ptr<zylProcessingChain> Chain; // never null
  vtkSmartPointer<zylPropertyCollection> Properties;
  std::unique_ptr<zylBlocks> Blocks; // never null; what the tree holds
  vtkSmartPointer<zylMultiBlockTree> MultiBlockTree;
  vtkTypeUInt64 LastPropertiesHash = 0;
  double LastUpdateTime = -1e299;
  bool BetweenSteps = false;
  bool Canceled = false; ///< the last update, on request
  unsigned long TimeObserverTag = 0;
  std::string NothingToDraw; // why
  std::vector<std::string> ReadErrors;
  std::unique_ptr<zylDerivedVariables> DerivedPointVariables;
};

#endif
