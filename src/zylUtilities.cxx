#include "zylUtilities.h"

#include "zylArrayInformation.h"

#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylUtilities::GetArrayInformation(
  vtkPVDataInformation* info, const char* arrayName, int association)
{
  if (!info || !arrayName)
  {
    return nullptr;
  }
  vtkPVDataSetAttributesInformation* attributes = info->GetAttributeInformation(association);
  vtkPVArrayInformation* array = attributes ? attributes->GetArrayInformation(arrayName) : nullptr;
  if (!array)
  {
    return nullptr;
  }
  const int components = array->GetNumberOfComponents();
  zylArrayInformation* result = zylArrayInformation::New();
  result->SetName(array->GetName());
  result->SetNumberOfComponents(static_cast<unsigned int>(components));
  double range[2];
  for (int c = 0; c < components; ++c)
  {
    array->GetComponentRange(c, range);
    result->SetComponentRange(static_cast<unsigned int>(c), range);
  }
  if (components >= 2)
  {
    array->GetComponentFiniteRange(-1, range);
    result->SetComponentRange(static_cast<unsigned int>(components), range);
  }
  return result;
}
