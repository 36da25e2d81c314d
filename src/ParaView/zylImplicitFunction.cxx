#include "ParaView/zylImplicitFunction.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylPropertyCollection.h"

#include <cmath>

#include <vtkLogger.h>
#include <vtkMath.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>

namespace {
//--------------------------------------------------------------------------------------------------
bool PointsSomewhere(const zylProperty* direction)
{
  const double* v = direction ? direction->GetDoubleElements() : nullptr;
  const double length = v && direction->GetNumberOfElements() == 3 ? vtkMath::Norm(v) : 0.0;
  return length > 0.0 && std::isfinite(length);
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSMProxy* zylUseFunction(vtkSMProxy* filter, const char* property, const std::string& name)
{
  vtkSMProxy* function = zylFindOffered(filter, property, name);
  if (function)
  {
    vtkSMPropertyHelper current(filter, property);
    if (current.GetAsProxy() != function)
    {
      current.Set(function);
    }
  }
  return function;
}

//--------------------------------------------------------------------------------------------------
void zylPushFunction(zylPropertyCollection* settings, const zylPropertyRow* rows, std::size_t count,
  const char* direction, vtkSMProxy* function)
{
  if (!function)
  {
    return;
  }
  for (const zylPropertyRow* row = rows; row != rows + count; ++row)
  {
    if (direction && std::string(row->Name) == direction &&
      !PointsSomewhere(settings->GetProperty(row->Name)))
    {
      vtkLogF(WARNING, "'%s' has no direction", row->Name);
      continue;
    }
    zylPush(settings, row, 1, function);
  }
  function->UpdateVTKObjects();
}
