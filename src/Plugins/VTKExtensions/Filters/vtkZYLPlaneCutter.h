/**
 * @class vtkZYLPlaneCutter
 * @brief Cuts data of any cells with a plane.
 *
 * As its base, which knows the linear 3D cells only, and as fast on blocks of those. The blocks of
 * a composite that have other cells go through the toolkit's general filter; surfaces give curves.
 */
#ifndef vtkZYLPlaneCutter_h
#define vtkZYLPlaneCutter_h

#include "zylExport.h"

#include <vtk3DLinearGridPlaneCutter.h>

class ZYL_EXPORT vtkZYLPlaneCutter : public vtk3DLinearGridPlaneCutter
{
public:
  static vtkZYLPlaneCutter* New();
  vtkTypeMacro(vtkZYLPlaneCutter, vtk3DLinearGridPlaneCutter);

protected:
  vtkZYLPlaneCutter() = default;
  ~vtkZYLPlaneCutter() override = default;

  int RequestData(vtkInformation*, vtkInformationVector**, vtkInformationVector*) override;

private:
  vtkZYLPlaneCutter(const vtkZYLPlaneCutter&) = delete;
  void operator=(const vtkZYLPlaneCutter&) = delete;
};

#endif
