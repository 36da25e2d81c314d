/// @file zylViewSeeds.h
/// The points that "line:...", "sphere:..." and so on stand for.
#ifndef zylViewSeeds_h
#define zylViewSeeds_h

#include <vector>

class zylDataSet;
struct zylViewSeeds;

/// x, y, z of each point. Points spread over the data lie in `blocks` (flat indices), in their
/// volume or, if `onSurface` or where there is none, on their surface; the same points each time.
/// Throws zylViewError for a file that holds no points.
std::vector<double> zylGetSeedPoints(
  const zylViewSeeds& seeds, zylDataSet* dataset, const std::vector<int>& blocks, bool onSurface);

#endif
