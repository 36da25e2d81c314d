/// @file zylViewCases.h
/// What concerns all datasets of a scene: which files make one, who gets which of the user's
/// wishes, and colors that mean the same in all of them.
#ifndef zylViewCases_h
#define zylViewCases_h

#include <memory>
#include <string>
#include <vector>

class zylViewCase;
struct zylViewOptions;

using zylViewCaseList = std::vector<std::unique_ptr<zylViewCase>>;

/// Files of one kind, that is of one extension, are a series; each kind is a dataset of its own, in
/// the order in which the first of each is named. With a reader of the user's all are one series.
std::vector<std::vector<std::string>> zylGroupFiles(const zylViewOptions& options);

/// Take from each dataset the wishes for arrays and blocks that it lacks and another one has. What
/// none has stays with all, and is complained about when it is looked for.
void zylShareOptions(const zylViewCaseList& cases);

/// The color range of each variable in all datasets that are colored by it.
enum class zylViewRange
{
  Grow, ///< what has been seen and the step shown; not where the user gives a range
  Join, ///< the same everywhere
  Step, ///< the step shown
};
/// Whether anything has changed; takes effect with the update of the cases.
bool zylSetColorRanges(const zylViewCaseList& cases, zylViewRange how);

/// Legends of datasets that are colored by the same variable are one; the others stand beside it.
void zylPlaceLegends(const zylViewCaseList& cases);

#endif
