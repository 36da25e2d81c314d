#include "vtkZYLPlaneCutter.h"

#include "zylAnyCells.h"

#include <vtkCutter.h>
#include <vtkDataSet.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>

vtkStandardNewMacro(vtkZYLPlaneCutter);

//--------------------------------------------------------------------------------------------------
int vtkZYLPlaneCutter::RequestData(
  vtkInformation* request, vtkInformationVector** input, vtkInformationVector* output)
{
  const auto fast = [this, request, output](vtkInformationVector** in) {
    return this->Superclass::RequestData(request, in, output);
  };
  const auto general = [this](vtkDataSet* block) -> vtkSmartPointer<vtkDataObject> {
    if (!this->GetPlane() || block->GetNumberOfCells() == 0)
    {
      return nullptr;
    }
    vtkNew<vtkCutter> cutter;
    cutter->SetInputData(block);
    cutter->SetCutFunction(this->GetPlane());
    cutter->GenerateTrianglesOn();
    cutter->Update();
    return cutter->GetOutput();
  };
  return zylAnyCells::RequestData(input, output, zylAnyCells::IsLinear, fast, general);
}
