/// @file zylViewLook.h
/// What an unknown case looks like unless the user says otherwise: colored by the first array that
/// means something, images in their own colors, lines and points that can be seen.
#ifndef zylViewLook_h
#define zylViewLook_h

#include <array>
#include <string>

class zylDataSet;
class zylViewBlocks;
struct zylViewOptions;

inline constexpr double zylInk[3] = { 0.10, 0.11, 0.14 }; ///< lines and texts on light ground
inline constexpr double zylPaper[3] = { 0.95, 0.95, 0.95 };

/// The array to color by: the first point scalar that varies, else the first vector, else the same
/// of cell arrays, else one that does not vary. Ids, ghosts, normals and texture coordinates say
/// nothing about a result and are left out. Empty when nothing is left.
std::string zylChooseArray(const zylViewBlocks& blocks);

/// Fill in what the user left open.
void zylFillLook(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options);

/// The ink that can be read on the background at that height of the window, 0 at the bottom.
const double* zylGetInk(const zylViewOptions& options, double height);

/// The axis in which a box is thinner than `share` of its width, or -1.
int zylGetFlatAxis(const double* bounds, double share);

#endif
