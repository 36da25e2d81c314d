/**
 * @class vtkZYLShareLines
 * @brief Poly data that several processes have parts of, whole where they are asked for as one
 * piece.
 *
 * A stream tracer asks for its seeds as one piece and takes it that every process has all of them.
 * What makes lines with several processes would read all data on each to fulfil that, and still
 * leave every line on one process only. This filter has each process make its own part always, and
 * hands every process the parts of all when it is asked for one piece.
 */
#ifndef vtkZYLShareLines_h
#define vtkZYLShareLines_h

#include "zylExport.h"

#include <vtkPolyDataAlgorithm.h>

class ZYL_PRIVATE vtkZYLShareLines : public vtkPolyDataAlgorithm
{
public:
  static vtkZYLShareLines* New();
  vtkTypeMacro(vtkZYLShareLines, vtkPolyDataAlgorithm);

protected:
  vtkZYLShareLines() = default;
  ~vtkZYLShareLines() override = default;

  int RequestUpdateExtent(
    vtkInformation*, vtkInformationVector** input, vtkInformationVector*) override;
  int RequestData(
    vtkInformation*, vtkInformationVector** input, vtkInformationVector* output) override;

private:
  vtkZYLShareLines(const vtkZYLShareLines&) = delete;
  void operator=(const vtkZYLShareLines&) = delete;
};

#endif
