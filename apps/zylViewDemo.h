/// @file zylViewDemo.h
/// Display options that suit the data, for `zylview --demo`.
#ifndef zylViewDemo_h
#define zylViewDemo_h

class zylDataSet;
class zylViewBlocks;
struct zylViewOptions;

/// Fill in what the user has not chosen: a color array with legend, contour lines, mesh lines and
/// own colors on one block, arrows and a clip. The built-in sample has a composition of its own.
void zylFillDemoOptions(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options);

#endif
