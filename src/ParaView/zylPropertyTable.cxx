#include "ParaView/zylPropertyTable.h"

#include "zylPropertyCollection.h"

#include <string>

#include <vtkLogger.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>

namespace {
//--------------------------------------------------------------------------------------------------
void SetDefaults(zylProperty* property, const zylPropertyRow& row)
{
  for (unsigned int i = 0; i < row.Count; ++i)
  {
    switch (row.Type)
    {
      case zylProperty::Bool:
        property->SetElement(i, row.Defaults[i] != 0.0);
        break;
      case zylProperty::Int:
        property->SetElement(i, static_cast<int>(row.Defaults[i]));
        break;
      case zylProperty::Double:
        property->SetElement(i, row.Defaults[i]);
        break;
      case zylProperty::String:
        property->SetElement(i, row.Text);
        break;
    }
  }
}

//--------------------------------------------------------------------------------------------------
// Element by element, since the array forms refuse a target of another numeric type.
void Push(zylProperty* property, vtkSMProxy* proxy, const char* name, double offset, double scale)
{
  if (!property || !proxy)
  {
    return;
  }
  if (!proxy->GetProperty(name))
  {
    vtkLogF(TRACE, "'%s' has no property '%s'", proxy->GetXMLName(), name);
    return;
  }
  vtkSMPropertyHelper target(proxy, name, true);
  const unsigned int count = property->GetNumberOfElements();
  target.SetNumberOfElements(count);
  for (unsigned int i = 0; i < count; ++i)
  {
    switch (property->GetPropertyType())
    {
      case zylProperty::Bool:
        target.Set(i, property->GetBoolElement(i) ? 1 : 0);
        break;
      case zylProperty::Int:
        target.Set(i, property->GetIntElement(i));
        break;
      case zylProperty::Double:
        target.Set(i, offset + scale * property->GetDoubleElement(i));
        break;
      case zylProperty::String:
        target.Set(i, property->GetStringElement(i).c_str());
        break;
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylDeclare(zylPropertyCollection* collection, const zylPropertyRow* rows, std::size_t count)
{
  for (const zylPropertyRow* row = rows; row != rows + count; ++row)
  {
    const zylProperty* present = collection->GetProperty(row->Name);
    if (present && present->GetPropertyType() == row->Type &&
      (present->GetNumberOfElements() == row->Count || row->Count == 0))
    {
      continue;
    }
    zylProperty* property = collection->MakeProperty(row->Name, row->Type, row->Count);
    SetDefaults(property, *row);
    property->SetIncludeInHash(row->Hashed);
  }
}

//--------------------------------------------------------------------------------------------------
void zylPush(zylPropertyCollection* collection, const zylPropertyRow* rows, std::size_t count,
  vtkSMProxy* proxy)
{
  for (const zylPropertyRow* row = rows; row != rows + count; ++row)
  {
    if (row->Target)
    {
      Push(collection->GetProperty(row->Name), proxy, row->Target, row->Offset, row->Scale);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylPushProperty(zylProperty* property, vtkSMProxy* proxy, const char* target)
{
  Push(property, proxy, target, 0.0, 1.0);
}
