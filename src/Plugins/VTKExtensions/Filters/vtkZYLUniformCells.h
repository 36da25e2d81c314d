/**
 * @class vtkZYLUniformCells
 * @brief Makes polyhedra of all 3D cells of the blocks that have some already.
 *
 * The toolkit's clip filters give broken cells where polyhedra stand beside other cells in a grid,
 * and right ones where there are polyhedra only. All other blocks are passed as they are. Points
 * and all arrays stay.
 */
#ifndef vtkZYLUniformCells_h
#define vtkZYLUniformCells_h

#include "zylExport.h"

#include <vtkPassInputTypeAlgorithm.h>

class ZYL_EXPORT vtkZYLUniformCells : public vtkPassInputTypeAlgorithm
{
public:
  static vtkZYLUniformCells* New();
  vtkTypeMacro(vtkZYLUniformCells, vtkPassInputTypeAlgorithm);

protected:
  vtkZYLUniformCells() = default;
  ~vtkZYLUniformCells() override = default;

  int RequestData(vtkInformation*, vtkInformationVector**, vtkInformationVector*) override;
  int FillInputPortInformation(int port, vtkInformation* info) override;

private:
  vtkZYLUniformCells(const vtkZYLUniformCells&) = delete;
  void operator=(const vtkZYLUniformCells&) = delete;
};

#endif
