#include "zylPipelineFixture.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPipeline.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"

#include <map>
#include <sstream>

#include <vtkClientServerInterpreter.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPVSessionCore.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMProxyIterator.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMTransferFunctionProxy.h>

namespace {
std::ostringstream* Traffic = nullptr;
}

//--------------------------------------------------------------------------------------------------
zylSurfaces::zylSurfaces(vtkMultiBlockDataSet* data)
  : DataSet(vtkSmartPointer<zylDataSet>::New())
{
  zylCore::GetInstance();
  EXPECT_TRUE(this->DataSet->LoadFromFile(
    { zylTestData::Write(data, zylTestData::MakeFolder() + "/data.vtm") }));
  this->DataSet->Update();
  this->Source = zylProxyBuilder(
    zylCore::GetInstance()->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
                   .Input(this->DataSet->GetOutput())
                   .Make();
}

//--------------------------------------------------------------------------------------------------
zylSurfaces::~zylSurfaces()
{
  zylUnregister(this->Source);
}

//--------------------------------------------------------------------------------------------------
void zylShow(zylPipeline* pipeline, const zylSurfaces& surfaces, const std::vector<int>& visible)
{
  pipeline->SetDataSource(surfaces.Source);
  pipeline->SetBlockTree(surfaces.DataSet->GetMultiBlockTree());
  pipeline->GetProperties()->Set("Visibility", true);
  std::vector<int> pairs;
  for (const int id : visible)
  {
    pairs.insert(pairs.end(), { id, 1 });
  }
  zylSetBlocks(pipeline, pairs);
}

//--------------------------------------------------------------------------------------------------
void zylSetBlocks(zylPipeline* pipeline, const std::vector<int>& pairs)
{
  const auto count = static_cast<unsigned int>(pairs.size());
  pipeline->GetProperties()->GetProperty("BlockVisibility")->SetNumberOfElements(count);
  pipeline->GetProperties()->Set("BlockVisibility", pairs.data(), count);
}

//--------------------------------------------------------------------------------------------------
double zylNumber(vtkSMProxy* proxy, const char* property, unsigned int index)
{
  return vtkSMPropertyHelper(proxy, property).GetAsDouble(index);
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylNumbers(vtkSMProxy* proxy, const char* property)
{
  return vtkSMPropertyHelper(proxy, property).GetDoubleArray();
}

//--------------------------------------------------------------------------------------------------
std::string zylText(vtkSMProxy* proxy, const char* property, unsigned int index)
{
  const char* text = vtkSMPropertyHelper(proxy, property).GetAsString(index);
  return text ? text : "";
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

//--------------------------------------------------------------------------------------------------
void zylPipelineTest::SetUp()
{
  this->Surfaces = std::make_unique<zylSurfaces>(zylTestData::MakeRow(3));
  this->View = vtkSmartPointer<zylView>::New();
}

//--------------------------------------------------------------------------------------------------
void zylPipelineTest::Show(zylPipeline* pipeline, const std::vector<int>& visible)
{
  zylShow(pipeline, *this->Surfaces, visible);
  pipeline->Update(this->View);
}

//--------------------------------------------------------------------------------------------------
vtkSMProxy* zylPipelineTest::ScalarBar(zylPipeline* pipeline)
{
  return vtkSMTransferFunctionProxy::FindScalarBarRepresentation(
    vtkSMPropertyHelper(pipeline->GetRepresentation(), "LookupTable").GetAsProxy(),
    this->View->GetProxy());
}
