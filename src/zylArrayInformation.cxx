#include "zylArrayInformation.h"

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylArrayInformation);

//--------------------------------------------------------------------------------------------------
void zylArrayInformation::SetNumberOfComponents(unsigned int number)
{
  if (number != this->NumberOfComponents)
  {
    this->NumberOfComponents = number;
    this->Ranges.assign(2 * (number + 1), 0.0);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylArrayInformation::IsValidComponent(unsigned int c)
{
  if (c > this->NumberOfComponents)
  {
    vtkErrorMacro(
      "Component " << c << " out of valid range [0, " << (this->NumberOfComponents + 1) << "]");
    return false;
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylArrayInformation::SetComponentRange(unsigned int c, double range[2])
{
  if (this->IsValidComponent(c))
  {
    this->Ranges[2 * c] = range[0];
    this->Ranges[2 * c + 1] = range[1];
  }
}

//--------------------------------------------------------------------------------------------------
void zylArrayInformation::GetComponentRange(unsigned int c, double range[2])
{
  if (this->IsValidComponent(c))
  {
    range[0] = this->Ranges[2 * c];
    range[1] = this->Ranges[2 * c + 1];
  }
}
