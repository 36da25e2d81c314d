/// @file zylViewHit.h
/// What is seen at a pixel: of which dataset, which block or derived surface, where, and its
/// numbers.
#ifndef zylViewHit_h
#define zylViewHit_h

#include <array>
#include <optional>
#include <string>
#include <vector>

class zylDerivedSurfaceRepresentation;
class zylViewCase;
class zylViewScene;

struct zylViewHit
{
  struct Value
  {
    std::string Name;
    std::vector<double> Components;
  };

  zylViewCase* Case = nullptr;                        ///< borrowed
  zylDerivedSurfaceRepresentation* Derived = nullptr; ///< borrowed; null: it is a block
  std::optional<unsigned int> Block;                  ///< flat index, of blocks
  std::string Name;                                   ///< "Inlet, block 3", "Cut 1"
  int Cell = -1;                 ///< index in what is drawn of it; negative: unknown
  std::array<double, 3> Point{}; ///< on the cell
  std::vector<Value> Values;     ///< point arrays, there, and those of the cell

  /// For people, with as many values as fit into these lines; "" has the rest counted.
  std::string Describe(std::size_t mostLines) const;
};

/// What is at a pixel, counted from the upper left corner; none where nothing is. The context is
/// current.
std::optional<zylViewHit> zylFindHit(zylViewScene& scene, double x, double y);

#endif
