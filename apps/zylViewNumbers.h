/// @file zylViewNumbers.h
/// Integrals, histograms and probes of the command line, as tables to read or as JSON.
#ifndef zylViewNumbers_h
#define zylViewNumbers_h

#include "zylViewBlocks.h"

class zylDataSet;
class zylViewDerivedSurfaces;
struct zylViewOptions;

/// Measure what is asked for and print it. Throws zylViewError for arrays, blocks and settings that
/// do not exist.
void zylPrintNumbers(const zylViewOptions& options, const zylViewBlocks& blocks,
  zylDataSet* dataset, const zylViewDerivedSurfaces& derived);

#endif
