/**
 * @class vtkZYLCrinkleCutter
 * @brief Takes the cells that the zero surface of a function meets, whole, from data of any cells.
 *
 * A cell is met unless the function has the same sign, and is not zero, at all its points. The
 * settings are those of its base, which knows the linear 3D cells only and reports every execution
 * on the standard error stream. Points that no cell uses are always left out.
 */
#ifndef vtkZYLCrinkleCutter_h
#define vtkZYLCrinkleCutter_h

#include "zylExport.h"

#include <vtk3DLinearGridCrinkleExtractor.h>

class ZYL_EXPORT vtkZYLCrinkleCutter : public vtk3DLinearGridCrinkleExtractor
{
public:
  static vtkZYLCrinkleCutter* New();
  vtkTypeMacro(vtkZYLCrinkleCutter, vtk3DLinearGridCrinkleExtractor);

protected:
  vtkZYLCrinkleCutter() = default;
  ~vtkZYLCrinkleCutter() override = default;

  int RequestData(vtkInformation*, vtkInformationVector**, vtkInformationVector*) override;

private:
  vtkZYLCrinkleCutter(const vtkZYLCrinkleCutter&) = delete;
  void operator=(const vtkZYLCrinkleCutter&) = delete;
};

#endif
