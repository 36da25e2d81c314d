#include "zylPipelineFixture.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylPipeline.h"
#include "zylTest.h"

#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMTransferFunctionProxy.h>

//--------------------------------------------------------------------------------------------------
zylSurfaces::zylSurfaces(vtkMultiBlockDataSet* data)
  : DataSet(zylLoad(zylTestData::Write(data, zylTestData::MakeFolder() + "/data.vtm")))
{
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
  zylSet(pipeline->GetProperties(), "BlockVisibility", zylValues(pairs.begin(), pairs.end()));
}

//--------------------------------------------------------------------------------------------------
std::unique_ptr<zylSurfaces> zylPipelineTest::Surfaces;

//--------------------------------------------------------------------------------------------------
void zylPipelineTest::SetUpTestSuite()
{
  Surfaces = std::make_unique<zylSurfaces>(zylTestData::MakeRow(3));
}

//--------------------------------------------------------------------------------------------------
void zylPipelineTest::TearDownTestSuite()
{
  Surfaces = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylPipelineTest::SetUp()
{
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
