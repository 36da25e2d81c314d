/**
 * @class zylMultiBlockTree
 * @brief One node of the client's mirror of a dataset's block structure; the root is the tree.
 *
 * Every node of the dataset has a flat index: a pre-order numbering from 0 (the root) that counts
 * inner nodes, null blocks and the pieces of multi-piece blocks. All operations that address blocks
 * use it. A node also describes the block's arrays.
 *
 * Nodes own their children; parents and pointers handed out are borrowed.
 */
#ifndef zylMultiBlockTree_h
#define zylMultiBlockTree_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class zylArrayInformation;

class ZYL_EXPORT zylMultiBlockTree : public vtkObject
{
public:
  static zylMultiBlockTree* New();
  vtkTypeMacro(zylMultiBlockTree, vtkObject);

  ///@{
  /// Flat index, 0xFFFFFFFF when not set.
  void SetBlockIndex(unsigned int index) { this->BlockIndex = index; }
  unsigned int GetBlockIndex() const { return this->BlockIndex; }
  ///@}

  ///@{
  void SetBlockName(const std::string& name) { this->BlockName = name; }
  std::string GetBlockName() const { return this->BlockName; }
  ///@}

  ///@{
  /// Whether this node is a piece of a multi-piece dataset: numbered, but no block of its own.
  void SetIsPiece(bool isPiece) { this->IsPiece = isPiece; }
  bool GetIsPiece() const { return this->IsPiece; }
  ///@}

  ///@{
  /// What the source holds here, in words: "unstructured grid", "table", "multi block data set",
  /// ...; empty for a null block. Kinds without geometry, such as a table without coordinates, have
  /// neither points nor cells in the dataset's output.
  void SetKind(const std::string& kind) { this->Kind = kind; }
  std::string GetKind() const { return this->Kind; }
  ///@}

  ///@{
  /// Rows of a table, 0 for all else. Its columns are the RowArrays below.
  void SetNumberOfRows(vtkIdType rows) { this->NumberOfRows = rows; }
  vtkIdType GetNumberOfRows() const { return this->NumberOfRows; }
  ///@}

  ///@{
  /// Bounds (xmin, xmax, ymin, ymax, zmin, zmax) of the node's own data (inverted: none), and of
  /// all that is here and below. False, and inverted bounds, when there is nothing.
  void SetOwnBounds(const double bounds[6]);
  bool GetBounds(double bounds[6]) const;
  ///@}

  ///@{
  /// The parent (borrowed), null for the root. AddChild() does not set it.
  void SetParent(zylMultiBlockTree* parent) { this->Parent = parent; }
  zylMultiBlockTree* GetParent() const { return this->Parent; }
  ///@}

  ///@{
  /// Children in the dataset's order. AddChild() takes a reference; null for an invalid position.
  void AddChild(zylMultiBlockTree* child);
  void ClearChildren();
  zylMultiBlockTree* GetChild(unsigned int position) const;
  unsigned int GetNumberOfChildren() const;
  ///@}

  /// Whether this is a block with data of its own: no children, or pieces only.
  bool IsLeaf() const { return this->Children.empty() || this->Children[0]->IsPiece; }

  ///@{
  /// First match in pre-order, this node included; null if there is none. Names compare exactly.
  zylMultiBlockTree* FindChildWithBlockIndex(unsigned int index);
  zylMultiBlockTree* FindChildWithBlockName(const std::string& name);
  ///@}

  /// The flat indices of this node and of all nodes below it that are not pieces, in pre-order.
  std::vector<unsigned int> GetBlockIDs();

  /// Write the tree with its arrays and their ranges to the standard output.
  void Print(const std::string& indent);
  using vtkObject::Print;

  ///@{
  /// Descriptions of the block's arrays, in the server's order.
  std::vector<vtkSmartPointer<zylArrayInformation>> PointArrays;
  std::vector<vtkSmartPointer<zylArrayInformation>> CellArrays;
  std::vector<vtkSmartPointer<zylArrayInformation>> RowArrays; ///< of a table, in its own order
  ///@}

protected:
  zylMultiBlockTree() = default;
  ~zylMultiBlockTree() override;

private:
  zylMultiBlockTree(const zylMultiBlockTree&) = delete;
  void operator=(const zylMultiBlockTree&) = delete;

  void ReleaseChildren();
  void CollectBlockIDs(std::vector<unsigned int>& ids) const;

  unsigned int BlockIndex = 0xFFFFFFFF;
  bool IsPiece = false;
  std::string BlockName;
  std::string Kind;
  vtkIdType NumberOfRows = 0;
  double OwnBounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };
  zylMultiBlockTree* Parent = nullptr;
  std::vector<vtkSmartPointer<zylMultiBlockTree>> Children;
};

#endif
