/// @file zylPipelineList.h
/// What a representation answers for all its display pipelines together. Private to the library.
#ifndef zylPipelineList_h
#define zylPipelineList_h

#include "zylExport.h"

#include <vector>

#include <vtkSmartPointer.h>

class vtkCollection;
class vtkSMProxy;
class zylPipeline;

/// The pipelines of a representation, in some order (borrowed).
using zylPipelineList = std::vector<zylPipeline*>;

/// Whether any has a block to show.
ZYL_PRIVATE bool zylAnyBlocksVisible(const zylPipelineList& pipelines);

/// Unite the bounds of what is visible (xmin, xmax, ymin, ymax, zmin, zmax; minima above maxima
/// when there is nothing). Whether there is anything.
ZYL_PRIVATE bool zylGetVisibleBounds(const zylPipelineList& pipelines, double bounds[6]);

/// The view representation proxies in use, in the order of the pipelines: a new collection.
ZYL_PRIVATE vtkSmartPointer<vtkCollection> zylGetPVRepresentations(
  const zylPipelineList& pipelines);

/// Whether `representation` (null: no) is that of one of the pipelines.
ZYL_PRIVATE bool zylHasRepresentation(
  const zylPipelineList& pipelines, const vtkSMProxy* representation);

#endif
