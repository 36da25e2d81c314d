#include "vtkZYLClip.h"

#include <vtkDataSet.h>
#include <vtkDemandDrivenPipeline.h>
#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkObjectFactory.h>
#include <vtkPVClipDataSet.h>

vtkStandardNewMacro(vtkZYLClip);

namespace {
//--------------------------------------------------------------------------------------------------
bool HasArray(vtkDataSet* data, vtkInformation* wanted)
{
  if (!wanted || !wanted->Has(vtkDataObject::FIELD_NAME()))
  {
    return true; // the active one
  }
  const char* name = wanted->Get(vtkDataObject::FIELD_NAME());
  for (const int association : { vtkDataObject::POINT, vtkDataObject::CELL })
  {
    const int asked = wanted->Get(vtkDataObject::FIELD_ASSOCIATION());
    const bool fits = asked == association || asked == vtkDataObject::POINT_THEN_CELL;
    if (fits && name && data->GetAttributesAsFieldData(association)->HasArray(name))
    {
      return true;
    }
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLClip::ProcessRequest(
  vtkInformation* request, vtkInformationVector** inputVector, vtkInformationVector* outputVector)
{
  auto* clip = vtkPVClipDataSet::SafeDownCast(this->GetActiveFilter());
  vtkDataSet* data = vtkDataSet::GetData(inputVector[0]);
  if (request->Has(vtkDemandDrivenPipeline::REQUEST_DATA()) && clip && data &&
    !clip->GetClipFunction() && !HasArray(data, clip->GetInputArrayInformation(0)))
  {
    vtkErrorMacro("no input scalars.");
    vtkDataObject* output = vtkDataObject::GetData(outputVector);
    if (output)
    {
      output->Initialize();
    }
    return 1;
  }
  return this->Superclass::ProcessRequest(request, inputVector, outputVector);
}
