#include "Data/zylProcessingChain.h"

#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <vtkCompositeDataSet.h>
#include <vtkDataObjectTypes.h>
#include <vtkSMOutputPort.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

namespace {
bool IsComposite(vtkSMSourceProxy* source)
{
  const char* name = source->GetOutputPort(0u)->GetDataClassName();
  const auto object =
    vtkSmartPointer<vtkDataObject>::Take(name ? vtkDataObjectTypes::NewDataObject(name) : nullptr);
  return vtkCompositeDataSet::SafeDownCast(object) != nullptr;
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::Stage(
  vtkSmartPointer<vtkSMSourceProxy>& stage, const char* name, vtkSMSourceProxy* input)
{
  if (!zylIsAlive(stage)) // none yet, or of a session that has ended
  {
    stage = zylProxyBuilder(input->GetSessionProxyManager(), "filters", name)
              .Input(input)
              .MakeInitialized();
  }
  zylConnect(stage, input);
  return stage;
}

//--------------------------------------------------------------------------------------------------
bool zylProcessingChain::Connect(
  vtkSMSourceProxy* source, zylPropertyCollection* settings, double time, double frozenTime)
{
  vtkSMSourceProxy* current = this->Stage(this->ForceTimeProxy, "ForceTime", source);
  if (!current)
  {
    return false;
  }
  vtkSMPropertyHelper(current, "IgnorePipelineTime").Set(settings->GetBool("FreezeTime") ? 1 : 0);
  vtkSMPropertyHelper(current, "ForcedTime").Set(frozenTime);
  current->UpdateVTKObjects();

  current->UpdatePipeline(time); // the type of its output is known only then
  if (!IsComposite(current))
  {
    current = this->Stage(this->GroupDataSetsProxy, "GroupDataSets", current);
  }
  if (current && settings->GetBool("ThresholdDataSet"))
  {
    current = this->Stage(this->ThresholdProxy, "Threshold", current);
    if (current)
    {
      vtkSMPropertyHelper(current, "SelectInputScalars")
        .SetInputArrayToProcess(0, settings->GetString("ThresholdVariable").c_str());
      zylParaView::SetThresholdRange(current, settings->GetDouble("ThresholdRange", 0),
        settings->GetDouble("ThresholdRange", 1));
      current->UpdateVTKObjects();
    }
  }
  if (current && settings->GetBool("DistributeDataSet"))
  {
    current = this->Stage(this->RedistributeProxy, "RedistributeDataSet", current);
  }
  if (current && settings->GetBool("InterpolateCellDataToPointData"))
  {
    current = this->Stage(this->CellDataToPointDataProxy, "CellDataToPointData", current);
    if (current)
    {
      vtkSMPropertyHelper(current, "PassCellData").Set(1);
      current->UpdateVTKObjects();
    }
  }
  return current && this->Stage(this->PassThroughProxy, "PassThrough", current);
}

//--------------------------------------------------------------------------------------------------
void zylProcessingChain::Clear()
{
  this->PassThroughProxy = nullptr;
  this->CellDataToPointDataProxy = nullptr;
  this->RedistributeProxy = nullptr;
  this->ThresholdProxy = nullptr;
  this->GroupDataSetsProxy = nullptr;
  this->ForceTimeProxy = nullptr;
}
