#include "zylIntegrateFields.h"

#include "Analysis/zylFieldValues.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylScriptFilter.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <vtkDataSet.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylIntegrateFields);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("DivideCellDataByVolume", false).To("DivideCellDataByVolume"),
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylIntegrateFields::zylIntegrateFields()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
zylIntegrateFields::~zylIntegrateFields()
{
  this->DropChain();
}

//--------------------------------------------------------------------------------------------------
void zylIntegrateFields::SetDataSet(zylDataSet* dataset)
{
  this->DataSet = dataset;
}

//--------------------------------------------------------------------------------------------------
zylDataSet* zylIntegrateFields::GetDataSet()
{
  return this->DataSet;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylIntegrateFields::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylIntegrateFields::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update");
  if (!this->DataSet)
  {
    vtkErrorMacro("No dataset set in zylIntegrateFields");
    return;
  }
  if (!this->BuildChain())
  {
    vtkErrorMacro("There is nothing to integrate: the dataset is empty or its session has ended");
    return;
  }
  zylExtractBlocks(this->BlockExtractor, this->Blocks);
  zylPushScript(zylGetDerivedVariablesScript(this->DataSet), this->ScriptFilter);
  zylPush(this->Properties, Rows, this->Integrator);
  this->Integrator->UpdateVTKObjects();
  zylUpdatePipeline(
    this->Integrator, zylTimeController::GetInstance()->GetActiveTime(), this->ExecutedTime);
}

//--------------------------------------------------------------------------------------------------
bool zylIntegrateFields::BuildChain()
{
  vtkSMSourceProxy* source = zylGetLiveOutput(this->DataSet);
  if (this->BlockExtractor &&
    (!source || this->BlockExtractor->GetSession() != source->GetSession()))
  {
    this->DropChain();
  }
  if (source && !this->BlockExtractor)
  {
    auto* manager = source->GetSessionProxyManager();
    this->BlockExtractor = zylProxyBuilder(manager, "filters", "ExtractBlock").Input(source).Make();
    this->ScriptFilter = zylScriptFilter(this->BlockExtractor).Make();
    this->Integrator =
      zylProxyBuilder(manager, "filters", "IntegrateAttributes").Input(this->ScriptFilter).Make();
  }
  zylConnect(this->BlockExtractor, source); // which may be another dataset's by now
  return this->BlockExtractor && this->ScriptFilter && this->Integrator;
}

//--------------------------------------------------------------------------------------------------
void zylIntegrateFields::DropChain()
{
  for (auto* proxy : { &this->Integrator, &this->ScriptFilter, &this->BlockExtractor })
  {
    zylUnregister(*proxy);
    *proxy = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
zylIntegrateFields::IntegratedValues_ zylIntegrateFields::GetIntegratedValues(
  const std::vector<int>& blocks)
{
  IntegratedValues_ values;
  if (this->DataSet)
  {
    const auto unknown = zylFindUnknownBlock(this->DataSet, blocks);
    if (!unknown.empty())
    {
      vtkErrorMacro("No block at index " << unknown.front() << " to integrate over");
      return values;
    }
  }
  this->Blocks = blocks;
  if (!this->DataSet)
  {
    return values;
  }
  this->Update();
  // No such class exists, so nothing is combined, which is right: the first process has the sums.
  const auto fetched = zylCore::Fetch(this->Integrator, "vtkAppendDataSet");
  if (auto* data = vtkDataSet::SafeDownCast(fetched))
  {
    zylReadTuples(data, 0, values.PointValues, values.CellValues);
    const std::string missing = values.PointValues.empty()
      ? std::string()
      : zylDescribeMissing(this->DataSet, values.PointValues, this->ScriptFilter);
    if (!missing.empty())
    {
      vtkWarningMacro(<< missing);
    }
  }
  return values;
}

//--------------------------------------------------------------------------------------------------
zylIntegrateFields::IntegratedValues_ zylIntegrateFields::GetIntegratedValues(int block)
{
  return this->GetIntegratedValues(std::vector<int>{ block });
}
