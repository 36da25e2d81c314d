/**
 * @class vtkZYLBlockInformation
 * @brief Names, arrays, ranges, bounds and sizes of every block of a source's output, in one
 * gather.
 *
 *     vtkNew<vtkZYLBlockInformation> info;
 *     source->GatherInformation(info); // one round trip, whatever the number of blocks
 *     for (const auto& node : info->GetNodes()) ...
 *
 * The nodes stand in pre-order: the position of a node is its flat index. The root is 0; null
 * blocks and the pieces of multi-piece (partitioned) datasets are counted. A dataset that is not
 * composite gives the root alone. The levels of an AMR dataset are nodes "Level 0", "Level 1", ...
 * whose boxes are pieces. With several server ranks the ranks' answers are united: a block that is
 * null on one rank and present on another is present, its sizes are summed and its ranges and
 * bounds united.
 *
 * What is listed follows ParaView's data information: arrays sorted by name without regard to case,
 * unnamed arrays and "vtkOriginalCellIds"/"vtkOriginalPointIds" left out, no arrays where there are
 * no points (cells); component ranges as the arrays report them (ghost and blanked elements
 * included). An inner node carries the union of what its children have; the columns of tables stay
 * with their block.
 *
 * Gather it from the source proxy, not from its output port.
 */
#ifndef vtkZYLBlockInformation_h
#define vtkZYLBlockInformation_h

#include "vtkPVInformation.h"
#include "zylExport.h"

#include <string>
#include <vector>

class vtkDataObject;

class ZYL_PRIVATE vtkZYLBlockInformation : public vtkPVInformation
{
public:
  static vtkZYLBlockInformation* New();
  vtkTypeMacro(vtkZYLBlockInformation, vtkPVInformation);
  void PrintSelf(ostream& os, vtkIndent indent) override;

#ifndef __VTK_WRAP__
  /// One point or cell array. Ranges of arrays without numbers, or of NaN alone, are inverted
  /// (minimum above maximum).
  struct Array
  {
    std::string Name;
    int NumberOfComponents = 0;
    /// (minimum, maximum) of each component; with two or more components one more pair, the finite
    /// range of the magnitude.
    std::vector<double> Ranges;
  };

  struct Node
  {
    std::string Name;         ///< block name, empty when it has none (or the root)
    int Parent = -1;          ///< flat index of the parent, -1 for the root
    int NumberOfChildren = 0; ///< direct children, pieces included
    bool IsPiece = false;     ///< a piece of a multi-piece dataset, or a box of an AMR level
    bool HasData = false;     ///< false for a null block
    int DataType = -1;        ///< the toolkit's number of its class (VTK_TABLE, ...); -1 for null
    vtkTypeInt64 NumberOfPoints = 0;
    vtkTypeInt64 NumberOfCells = 0;
    double Bounds[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 }; ///< inverted when there is nothing
    std::vector<Array> PointArrays;
    std::vector<Array> CellArrays;
    vtkTypeInt64 NumberOfRows = 0; ///< of a table, and its columns:
    std::vector<Array> RowArrays;
  };

  /// All nodes; the index is the flat index. Empty when the source has no output (not updated).
  const std::vector<Node>& GetNodes() const
  {
    return this->Nodes;
  }

  /// Whether the output is a composite dataset.
  bool GetIsComposite() const
  {
    return this->IsComposite;
  }
#endif

  /// Output port to look at, 0 by default. Set it before gathering.
  vtkSetMacro(PortNumber, int);
  vtkGetMacro(PortNumber, int);

  ///@{
  /// Whether point and cell arrays are described (default). Looking through the values of all
  /// arrays for their ranges is what takes time. Set it before gathering.
  vtkSetMacro(DescribeArrays, bool);
  vtkGetMacro(DescribeArrays, bool);
  ///@}

  ///@{
  /// Called while gathering.
  void CopyFromObject(vtkObject* object) override;
  void AddInformation(vtkPVInformation* other) override;
  void CopyToStream(vtkClientServerStream* stream) override;
  void CopyFromStream(const vtkClientServerStream* stream) override;
  void CopyParametersToStream(vtkMultiProcessStream& stream) override;
  void CopyParametersFromStream(vtkMultiProcessStream& stream) override;
  ///@}

protected:
  vtkZYLBlockInformation();
  ~vtkZYLBlockInformation() override;

private:
  vtkZYLBlockInformation(const vtkZYLBlockInformation&) = delete;
  void operator=(const vtkZYLBlockInformation&) = delete;

#ifndef __VTK_WRAP__
  void CopyFromDataObject(vtkDataObject* data);

  std::vector<Node> Nodes;
#endif
  bool IsComposite = false;
  int PortNumber = 0;
  bool DescribeArrays = true;
};

#endif
