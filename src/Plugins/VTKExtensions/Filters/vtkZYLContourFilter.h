/**
 * @class vtkZYLContourFilter
 * @brief Isosurfaces of a point scalar in data of any cells.
 *
 * As its base, which knows the linear 3D cells only, and as fast on blocks of those. The blocks of
 * a composite that have other cells, or scalars of a type that the base cannot read, go through the
 * toolkit's general filter. Cells whose scalars are not numbers are left out. Where attributes are
 * interpolated the scalar is one of them, which the base leaves out, if there is one contour value.
 */
#ifndef vtkZYLContourFilter_h
#define vtkZYLContourFilter_h

#include "zylExport.h"

#include <vtkContour3DLinearGrid.h>

class ZYL_EXPORT vtkZYLContourFilter : public vtkContour3DLinearGrid
{
public:
  static vtkZYLContourFilter* New();
  vtkTypeMacro(vtkZYLContourFilter, vtkContour3DLinearGrid);

protected:
  vtkZYLContourFilter() = default;
  ~vtkZYLContourFilter() override = default;

  int RequestData(vtkInformation*, vtkInformationVector**, vtkInformationVector*) override;

private:
  vtkZYLContourFilter(const vtkZYLContourFilter&) = delete;
  void operator=(const vtkZYLContourFilter&) = delete;
};

#endif
