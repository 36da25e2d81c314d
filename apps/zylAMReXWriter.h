/// @file zylAMReXWriter.h
/// Writes AMReX plotfiles (HyperCLaw-V1.1, 64 bit little-endian numbers) from a function of the
/// cell. Plain C++, for sample data, tests and benchmarks.
///
///     zylAMReXPlotfile plot;
///     plot.Variables = { "pressure", "part_id", "level_mask" };
///     plot.Levels = { { zylAMReXBox{ { 0, 0, 0 }, { 7, 7, 7 } } } };
///     plot.DomainCells = { 8, 8, 8 };
///     plot.Values = [](const zylAMReXCell& cell, double* values) {
///       values[0] = cell.Center[2];
///       values[1] = cell.Center[0] < 0.5 ? 0.0 : 1.0;
///       values[2] = cell.Covered ? 0.0 : 1.0;
///     };
///     std::string error;
///     const bool written = zylWriteAMReX("plt00000", plot, error);
#ifndef zylAMReXWriter_h
#define zylAMReXWriter_h

#include <array>
#include <functional>
#include <string>
#include <vector>

/// First and last cell of a box, in cells of its level.
struct zylAMReXBox
{
  std::array<int, 3> Low;
  std::array<int, 3> High;
};

struct zylAMReXCell
{
  int Level = 0;
  std::array<int, 3> Index = { { 0, 0, 0 } }; ///< in cells of its level
  std::array<double, 3> Center = { { 0.0, 0.0, 0.0 } };
  bool Covered = false; ///< by a box of the next finer level
};

struct zylAMReXPlotfile
{
  std::vector<std::string> Variables; ///< without blanks
  int Dimension = 3;                  ///< 2 or 3; with 2 the third index is 0 everywhere
  double Time = 0.0;
  std::array<double, 3> DomainLow = { { 0.0, 0.0, 0.0 } };
  std::array<double, 3> DomainHigh = { { 1.0, 1.0, 1.0 } };
  std::array<int, 3> DomainCells = { { 1, 1, 1 } }; ///< of the coarsest level
  int Refinement = 2;                               ///< between any two levels
  std::vector<std::vector<zylAMReXBox>> Levels;     ///< boxes of each level, coarsest first
  int BoxesPerFile = 256;
  /// Fills one value per variable.
  std::function<void(const zylAMReXCell& cell, double* values)> Values;
};

/// Write the plotfile into the directory `path`, which is made. False, with a sentence in `error`,
/// when something cannot be written.
bool zylWriteAMReX(const std::string& path, const zylAMReXPlotfile& plot, std::string& error);

/// The boxes of `size` cells a side that make up a level of `cells` cells; those for which `keep`
/// (given first and last cell) is false are left out. Null keeps all.
std::vector<zylAMReXBox> zylAMReXBoxes(const std::array<int, 3>& cells, int size,
  const std::function<bool(const zylAMReXBox&)>& keep = nullptr);

#endif
