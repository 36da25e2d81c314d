/// @file zylSelectionSource.h
/// Selections as the server manager keeps them: source proxies that say which blocks, cells or
/// points of a source's output are meant. Private to the library.
#ifndef zylSelectionSource_h
#define zylSelectionSource_h

#include "zylExport.h"

#include <vector>

#include <vtkSmartPointer.h>

class vtkCollection;
class vtkSMProxy;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;

namespace zylSelectionSource {
/// What a representation shows (borrowed), and the output port of it; null when nothing.
ZYL_PRIVATE vtkSMSourceProxy* GetInput(vtkSMProxy* representation, unsigned int* port = nullptr);

/// A selection of exactly these blocks, by flat index; null when the session cannot make one.
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> MakeForBlocks(
  vtkSMSessionProxyManager* manager, const std::vector<int>& blocks);

///@{
/// The selection of the blocks, or of the cells (points for a selection of points), that
/// `selection` means in what `representation` shows; `selection` itself if it is one already. Null
/// when there is nothing to convert.
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> ConvertToBlocks(
  vtkSMProxy* selection, vtkSMProxy* representation);
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> ConvertToIndices(
  vtkSMProxy* selection, vtkSMProxy* representation);
///@}

/// Draw what is selected in the selection color: of each of the representation proxies that is
/// among others what the source proxy in step with it selects. Anything may be null, and what
/// cannot be used any more has no effect.
ZYL_PRIVATE void Show(
  vtkCollection* representations, vtkCollection* selections, vtkCollection* among);

/// Draw no selection of anything that `view` shows.
ZYL_PRIVATE void HideAll(vtkSMProxy* view);

/// The integers of a property ("Blocks", "IDs"), none when there is no such property.
ZYL_PRIVATE std::vector<int> Read(vtkSMProxy* selection, const char* property);
} // namespace zylSelectionSource

#endif
