/// @file zylPipelineList.h
/// What a representation answers for all its display pipelines together. Private to the library.
#ifndef zylPipelineList_h
#define zylPipelineList_h

#include "zylExport.h"

#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkCollection;
class vtkSMProxy;
class zylPipeline;
class zylView;

/// The pipelines of a representation, in some order (borrowed).
using zylPipelineList = std::vector<zylPipeline*>;

/// Whether any has a block to show.
ZYL_PRIVATE bool zylAnyBlocksVisible(const zylPipelineList& pipelines);

/// Set "ForceHidden" of all.
ZYL_PRIVATE void zylForceHidden(const zylPipelineList& pipelines, bool hidden);

/// Unite the bounds of what is visible (xmin, xmax, ymin, ymax, zmin, zmax; minima above maxima
/// when there is nothing). Whether there is anything.
ZYL_PRIVATE bool zylGetVisibleBounds(const zylPipelineList& pipelines, double bounds[6]);

/// The view representation proxies in use, in the order of the pipelines: a new collection.
ZYL_PRIVATE vtkSmartPointer<vtkCollection> zylGetPVRepresentations(
  const zylPipelineList& pipelines);

/// Have them drawn in this order, whatever the order in which they were made: of surfaces and lines
/// at the same depth the last one may be seen, and the picture follows from the settings alone.
/// Null `view` does nothing. `last` is kept for the caller: what was in order already costs little.
ZYL_PRIVATE void zylOrderDrawing(
  const zylPipelineList& pipelines, zylView* view, std::vector<vtkTypeUInt32>& last);

/// Whether `representation` (null: no) is that of one of the pipelines.
ZYL_PRIVATE bool zylHasRepresentation(
  const zylPipelineList& pipelines, const vtkSMProxy* representation);

#endif
