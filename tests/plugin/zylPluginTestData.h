/// @file zylPluginTestData.h
/// Data for the plugin's tests, made in code: AMR datasets in memory, plotfiles and indexes on
/// disk.
#ifndef zylPluginTestData_h
#define zylPluginTestData_h

#include "zylTestData.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkDataObject;
class vtkOverlappingAMR;
class vtkUniformGrid;

/// A grid of `cells` unit cells a side from `origin`; an axis with 0 cells is flat.
vtkSmartPointer<vtkUniformGrid> zylMakeGrid(
  int nx, int ny, int nz, double x0 = 0.0, double y0 = 0.0, double z0 = 0.0, double spacing = 1.0);

/// Add the cell array `name` with a value for each cell id; `Array` is e.g. vtkDoubleArray.
template <class Array>
void zylAddCells(vtkUniformGrid* grid, const char* name, const std::function<double(int)>& value);

/// An AMR dataset of the given blocks (null ones too), one vector per level.
vtkSmartPointer<vtkOverlappingAMR> zylMakeAMR(
  const std::vector<std::vector<vtkSmartPointer<vtkUniformGrid>>>& levels);

/// A plotfile of two levels (8^3 cells in two boxes, one refined 8^3 box in the low corner) with
/// "value", "part_id" (0 below x = 0.5, 1 above) and "level_mask". 512 - 64 + 512 cells are finest.
void zylWriteSmallPlotfile(const std::string& path, double value = 1.0);
constexpr int zylSmallPlotfileCells = 512 - 64 + 512;

/// A .vtm with a sphere, named "ball"; radius = `radius`.
void zylWriteSurface(const std::string& name, double radius);

/// A number that depends on every point, cell and array value of a data object, in their order.
std::string zylDigest(vtkDataObject* data);

#endif
