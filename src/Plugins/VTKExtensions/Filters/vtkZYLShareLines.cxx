#include "vtkZYLShareLines.h"

#include <vector>

#include <vtkAppendPolyData.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkMultiProcessController.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkStreamingDemandDrivenPipeline.h>

vtkStandardNewMacro(vtkZYLShareLines);

namespace {
using Pipeline = vtkStreamingDemandDrivenPipeline;

int CountProcesses()
{
  auto* controller = vtkMultiProcessController::GetGlobalController();
  return controller ? controller->GetNumberOfProcesses() : 1;
}

// Called on every process.
vtkSmartPointer<vtkPolyData> Gather(vtkPolyData* part)
{
  auto* controller = vtkMultiProcessController::GetGlobalController();
  std::vector<vtkSmartPointer<vtkDataObject>> parts;
  controller->Gather(part, parts, 0);
  vtkNew<vtkAppendPolyData> append;
  append->AddInputData(vtkNew<vtkPolyData>()); // there may be nothing at all
  for (vtkDataObject* object : parts)
  {
    append->AddInputData(vtkPolyData::SafeDownCast(object));
  }
  append->Update();
  vtkSmartPointer<vtkPolyData> all = append->GetOutput();
  controller->Broadcast(all, 0);
  return all;
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLShareLines::RequestUpdateExtent(
  vtkInformation*, vtkInformationVector** input, vtkInformationVector*)
{
  const int count = CountProcesses();
  if (count > 1)
  {
    vtkInformation* info = input[0]->GetInformationObject(0);
    info->Set(Pipeline::UPDATE_NUMBER_OF_PIECES(), count);
    info->Set(Pipeline::UPDATE_PIECE_NUMBER(),
      vtkMultiProcessController::GetGlobalController()->GetLocalProcessId());
  }
  return 1;
}

//--------------------------------------------------------------------------------------------------
int vtkZYLShareLines::RequestData(
  vtkInformation*, vtkInformationVector** input, vtkInformationVector* output)
{
  auto* part = vtkPolyData::GetData(input[0]);
  auto* result = vtkPolyData::GetData(output);
  vtkInformation* info = output->GetInformationObject(0);
  const bool whole = info->Get(Pipeline::UPDATE_NUMBER_OF_PIECES()) <= 1;
  result->ShallowCopy(whole && CountProcesses() > 1 ? Gather(part).Get() : part);
  return 1;
}
