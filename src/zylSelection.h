/**
 * @class zylSelection
 * @brief What was selected of the representations that a view shows: blocks, cells or points.
 *
 * zylView::SelectBlocks(), SelectCells() and SelectPoints() make one of what is under a rectangle,
 * CreateSelectionForBlocks() one of given blocks. It is read for one representation at a time:
 *
 *     vtkSmartPointer<zylSelection> selection = view->SelectBlocks(x, y, x, y);
 *     for (zylRepresentation* representation : selection->GetRepresentations(view))
 *     {
 *       const std::vector<int> blocks = selection->GetBlocks(representation);
 *     }
 *
 * Read it before settings change which blocks are drawn together: what a representation has given
 * up since then is an error in the log and ends the answer. So is, with an empty answer, a session
 * that has ended.
 */
#ifndef zylSelection_h
#define zylSelection_h

#include "zylExport.h"

#include <functional>
#include <vector>

#include <vtkCollection.h>
#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkDataSet;
class vtkSMProxy;
class vtkSMSourceProxy;
class zylRepresentation;
class zylView;

class ZYL_EXPORT zylSelection : public vtkObject
{
public:
  static zylSelection* New();
  vtkTypeMacro(zylSelection, vtkObject);

  ///@{
  /// These blocks, by flat index, of everything that `rep` shows as of its last update. Never null;
  /// empty, with a warning where it is a failure, without a representation or a session.
  static vtkSmartPointer<zylSelection> CreateSelectionForBlocks(
    zylRepresentation* rep, std::vector<int>& blocks);
  static vtkSmartPointer<zylSelection> CreateSelectionForBlock(zylRepresentation* rep, int block);
  ///@}

  /// The flat indices of the selected blocks of `rep`, display by display: a block of which several
  /// are selected comes more than once. Empty for null, for a representation without selected
  /// blocks or view, and for data without blocks.
  std::vector<int> GetBlocks(zylRepresentation* rep);

  /// The selected cells of `rep` - points, if points were selected - display by display, as three
  /// integers each: flat index of the block or piece, process of the server, and index in what is
  /// drawn of the block. Of data without blocks as two: process and index. For surfaces without
  /// clips it is the index in zylBoundaryRepresentation::GetBlockSurfaces(). A selection of blocks
  /// has no cells.
  std::vector<int> GetCells(zylRepresentation* rep);

  /// The selected cells of `rep`, with their points and all of their values - points, if points
  /// were selected - brought to this process: a dataset for each display and block that has some,
  /// of what is drawn, so after clips and with the derived variables that color it. New objects,
  /// never null.
  std::vector<vtkSmartPointer<vtkDataSet>> FetchCells(zylRepresentation* rep);

  /// The representations (borrowed) of `view` of which something is selected; one of which several
  /// displays are selected comes that many times. Empty for null.
  std::vector<zylRepresentation*> GetRepresentations(zylView* view);

protected:
  zylSelection();
  ~zylSelection() override;

  ///@{
  /// Item i of the one belongs to item i of the other: source proxies of selections, and the
  /// representation proxies that they are of (shared; null at first).
  void SetPVSelectionSources(vtkCollection* sources);
  vtkCollection* GetPVSelectionSources() { return this->PVSelectionSources; }
  void SetPVSelectedRepresentations(vtkCollection* representations);
  vtkCollection* GetPVSelectedRepresentations() { return this->PVSelectedRepresentations; }
  ///@}

private:
  friend class zylView;
  zylSelection(const zylSelection&) = delete;
  void operator=(const zylSelection&) = delete;

  /// Calls visit(what is selected, the representation proxy that it is of) for each display of
  /// `rep`.
  void VisitDisplays(zylRepresentation* rep, const char* operation,
    const std::function<void(vtkSMProxy*, vtkSMProxy*)>& visit);

  vtkSmartPointer<vtkCollection> PVSelectionSources;
  vtkSmartPointer<vtkCollection> PVSelectedRepresentations;
};

#endif
