#include "zylTest.h"

#include "ParaView/zylProxyBuilder.h"

#include <vtkClientServerInterpreter.h>
#include <vtkPVDataInformation.h>
#include <vtkPVSessionCore.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMSession.h>

namespace {
std::ostringstream* Traffic = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylSetElements(zylPropertyCollection* settings, const char* name, const zylValues& values)
{
  zylProperty* property = settings->GetProperty(name);
  ASSERT_NE(property, nullptr) << name;
  const auto count = static_cast<unsigned int>(values.size());
  property->SetNumberOfElements(count);
  if (property->GetPropertyType() == zylProperty::Int)
  {
    const std::vector<int> integers(values.begin(), values.end());
    settings->Set(name, integers.data(), count);
    return;
  }
  settings->Set(name, values.data(), count);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylDataSet> zylLoad(vtkMultiBlockDataSet* data)
{
  auto set = vtkSmartPointer<zylDataSet>::New();
  EXPECT_TRUE(set->InitializeFromVTKDataSet(data));
  return set;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylDataSet> zylLoad(const std::string& file)
{
  auto set = vtkSmartPointer<zylDataSet>::New();
  EXPECT_TRUE(set->LoadFromFile({ file })) << file;
  return set;
}

//--------------------------------------------------------------------------------------------------
zylValues zylRange(zylArrayInformation* array, unsigned int component)
{
  if (!array)
  {
    return {};
  }
  double range[2];
  array->GetComponentRange(component, range);
  return { range[0], range[1] };
}

//--------------------------------------------------------------------------------------------------
double zylNumber(vtkSMProxy* proxy, const char* property, unsigned int index)
{
  return vtkSMPropertyHelper(proxy, property).GetAsDouble(index);
}

//--------------------------------------------------------------------------------------------------
zylValues zylNumbers(vtkSMProxy* proxy, const char* property)
{
  return vtkSMPropertyHelper(proxy, property).GetDoubleArray();
}

//--------------------------------------------------------------------------------------------------
zylValues zylNumbers(vtkSMProxy* proxy, std::initializer_list<const char*> properties)
{
  zylValues values;
  for (const char* property : properties)
  {
    values.push_back(zylNumber(proxy, property));
  }
  return values;
}

//--------------------------------------------------------------------------------------------------
std::string zylText(vtkSMProxy* proxy, const char* property, unsigned int index)
{
  const char* text = vtkSMPropertyHelper(proxy, property).GetAsString(index);
  return text ? text : "";
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylFindSource(const std::string& name)
{
  vtkSMSourceProxy* found = nullptr;
  vtkNew<vtkSMProxyIterator> iterator;
  iterator->SetSessionProxyManager(zylCore::GetInstance()->GetSessionProxyManager());
  iterator->SetModeToOneGroup();
  for (iterator->Begin("sources"); !iterator->IsAtEnd(); iterator->Next())
  {
    if (iterator->GetProxy()->GetXMLName() == name)
    {
      found = vtkSMSourceProxy::SafeDownCast(iterator->GetProxy());
    }
  }
  return found;
}

//--------------------------------------------------------------------------------------------------
vtkIdType zylCountSurfaceCells(zylDataSet* data)
{
  auto surface = zylProxyBuilder(
    zylCore::GetInstance()->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
                   .Input(data->GetOutput())
                   .MakeUnregistered();
  surface->UpdatePipeline();
  return surface->GetDataInformation(0)->GetNumberOfCells();
}

//--------------------------------------------------------------------------------------------------
std::string zylRegisteredProxies()
{
  std::map<std::string, int> counts;
  vtkNew<vtkSMProxyIterator> iterator;
  iterator->SetSessionProxyManager(zylCore::GetInstance()->GetSessionProxyManager());
  for (iterator->Begin(); !iterator->IsAtEnd(); iterator->Next())
  {
    std::string group = iterator->GetGroup();
    // Groups of helper proxies are named after their owner.
    group = group.rfind("pq_helper_proxies", 0) == 0 ? "pq_helper_proxies" : group;
    ++counts[group];
  }
  std::ostringstream text;
  for (const auto& count : counts)
  {
    text << count.first << ' ' << count.second << '\n';
  }
  return text.str();
}

//--------------------------------------------------------------------------------------------------
std::string zylTrafficBegin()
{
  Traffic = new std::ostringstream;
  zylCore::GetInstance()->GetSession()->GetSessionCore()->GetInterpreter()->SetLogStream(Traffic);
  return "";
}

//--------------------------------------------------------------------------------------------------
std::string zylTrafficEnd()
{
  zylCore::GetInstance()->GetSession()->GetSessionCore()->GetInterpreter()->SetLogStream(nullptr);
  const std::string text = Traffic->str();
  delete Traffic;
  Traffic = nullptr;
  return text;
}
