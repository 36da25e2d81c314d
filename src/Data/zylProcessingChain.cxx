#include "Data/zylProcessingChain.h"

#include "Data/zylBlockTree.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <vtkPVSession.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

namespace {
using Nodes = std::vector<vtkZYLBlockInformation::Node>;

// The flat indices of all leaves that are datasets.
std::vector<int> DataSetLeaves(const Nodes& nodes)
{
  std::vector<int> leaves;
  for (std::size_t i = 0; i < nodes.size(); ++i)
  {
    if (nodes[i].NumberOfChildren == 0 && zylParaView::IsDataSetType(nodes[i].DataType))
    {
      leaves.push_back(static_cast<int>(i));
    }
  }
  return leaves;
}

// How many parts to redistribute the data of a session into; -1, the stage's default, is one for
// each process. The stage makes as many parts as the next power of two, and where two come to one
// process it loses cells: three processes get two parts.
int CountParts(vtkSMSession* session)
{
  const int processes = session->GetNumberOfProcesses(vtkPVSession::DATA_SERVER);
  int parts = 1;
  while (2 * parts <= processes)
  {
    parts *= 2;
  }
  return parts == processes ? -1 : parts;
}
} // namespace

//--------------------------------------------------------------------------------------------------
double zylSnapToStep(double time, const std::vector<double>& values)
{
  double nearest = 0.0;
  double distance = 1e299;
  for (const double value : values)
  {
    if (std::abs(value - time) < distance)
    {
      distance = std::abs(value - time);
      nearest = value;
    }
  }
  return nearest;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::Stage(
  vtkSmartPointer<vtkSMSourceProxy>& stage, const char* name, vtkSMSourceProxy* input)
{
  // None yet, or of a session that has ended, or of another kind.
  if (!zylIsAlive(stage) || std::string(name) != stage->GetXMLName())
  {
    stage = zylProxyBuilder(input->GetSessionProxyManager(), "filters", name)
              .Input(input)
              .MakeInitialized();
  }
  zylConnect(stage, input);
  return stage;
}

//--------------------------------------------------------------------------------------------------
bool zylProcessingChain::HasTimeSteps(vtkSMSourceProxy* source)
{
  vtkSMProperty* steps = source->GetProperty("TimestepValues");
  return steps && vtkSMPropertyHelper(steps).GetNumberOfElements() > 0;
}

//--------------------------------------------------------------------------------------------------
bool zylProcessingChain::Connect(
  vtkSMSourceProxy* source, zylPropertyCollection* settings, const Times& times)
{
  vtkSMSourceProxy* current = this->Stage(this->ForceTimeProxy, "ForceTime", source);
  if (!current)
  {
    return false;
  }
  const bool frozen = settings->GetBool("FreezeTime");
  vtkSMPropertyHelper(current, "IgnorePipelineTime").Set(frozen ? 1 : 0);
  vtkSMPropertyHelper(current, "ForcedTime").Set(times.Frozen);
  current->UpdateVTKObjects();
  this->RequestTime = times.Shown;
  if (!frozen && times.Active != times.Shown && HasTimeSteps(source))
  {
    // Asked at the time at which consumers will ask, nothing executes again for them.
    this->RequestTime = times.Active;
    current = this->HoldStep(current, source, times.Shown);
    if (!current)
    {
      return false;
    }
  }
  current->UpdatePipeline(this->RequestTime); // the type of its output is known only then
  this->SourceBlocks = zylParaView::GetBlockTypes(current);
  if (!zylIsAlive(current))
  {
    return false;
  }
  current = this->MakeMultiBlock(current);
  this->BlockSource = current;
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
    if (current)
    {
      vtkSMPropertyHelper(current, "NumberOfPartitions").Set(CountParts(current->GetSession()));
      current->UpdateVTKObjects();
    }
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
void zylProcessingChain::Execute()
{
  this->PassThroughProxy->UpdatePipeline(this->RequestTime);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::HoldStep(
  vtkSMSourceProxy* data, vtkSMSourceProxy* source, double step)
{
  vtkSMSourceProxy* hold = this->Stage(this->HoldProxy, "ExtractTimeSteps", data);
  if (hold)
  {
    source->UpdatePropertyInformation();
    const auto steps = vtkSMPropertyHelper(source, "TimestepValues").GetDoubleArray();
    const auto nearest = std::min_element(steps.begin(), steps.end(),
      [step](double a, double b) { return std::abs(a - step) < std::abs(b - step); });
    const int index = static_cast<int>(nearest - steps.begin());
    vtkSMPropertyHelper(hold, "TimeStepIndices").Set(&index, 1);
    hold->UpdateVTKObjects();
  }
  return hold;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::MakeMultiBlock(vtkSMSourceProxy* data)
{
  const Nodes& blocks = this->SourceBlocks;
  const int type = blocks.empty() ? -1 : blocks.front().DataType;
  const bool tree = type == VTK_MULTIBLOCK_DATA_SET || type == VTK_PARTITIONED_DATA_SET_COLLECTION;
  const bool amr = type == VTK_OVERLAPPING_AMR || type == VTK_NON_OVERLAPPING_AMR;
  this->LevelsAdded = tree || amr ? 0 : 1;
  this->Problem.clear();
  if (zylParaView::IsDataSetType(type))
  {
    return this->Stage(this->GroupDataSetsProxy, "GroupDataSets", data);
  }
  if (type == VTK_MULTIBLOCK_DATA_SET && std::all_of(blocks.begin(), blocks.end(), zylSuitsFilters))
  {
    return data;
  }
  return zylParaView::HasServerPlugin(data->GetSession())
    ? this->Stage(this->ConversionProxy, "ZYLConvertToMultiBlock", data)
    : this->ConvertWithoutPlugin(data, type);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::ConvertWithoutPlugin(vtkSMSourceProxy* data, int type)
{
  if (type == VTK_OVERLAPPING_AMR)
  {
    return this->Stage(this->ConversionProxy, "AMRToMultiBlock", data);
  }
  if (type == VTK_TABLE)
  {
    std::string coordinates[3];
    if (zylFindCoordinates(this->SourceBlocks.front(), coordinates))
    {
      vtkSMSourceProxy* points = this->Stage(this->ConversionProxy, "TableToPolyData", data);
      const char* const names[] = { "XColumn", "YColumn", "ZColumn" };
      for (int axis = 0; points && axis < 3; ++axis)
      {
        vtkSMPropertyHelper(points, names[axis]).Set(coordinates[axis].c_str());
        points->UpdateVTKObjects();
      }
      return points ? this->Stage(this->GroupDataSetsProxy, "GroupDataSets", points) : nullptr;
    }
  }
  else if (type == VTK_MULTIBLOCK_DATA_SET)
  {
    return this->Extract(data, DataSetLeaves(this->SourceBlocks));
  }
  else if (vtkSMSourceProxy* converted =
             this->Stage(this->ConversionProxy, "ConvertToMultiBlock", data))
  {
    return converted;
  }
  this->Problem = "the server lacks the plugin VTKExtensions";
  data = this->Stage(this->GroupDataSetsProxy, "GroupDataSets", data);
  return data ? this->Extract(data, {}) : nullptr;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylProcessingChain::Extract(
  vtkSMSourceProxy* data, const std::vector<int>& blocks)
{
  vtkSMSourceProxy* extract = this->Stage(this->ExtractProxy, "ExtractBlock", data);
  if (extract)
  {
    vtkSMPropertyHelper indices(extract, "BlockIndices");
    indices.SetNumberOfElements(static_cast<unsigned int>(blocks.size()));
    indices.Set(blocks.data(), static_cast<unsigned int>(blocks.size()));
    vtkSMPropertyHelper(extract, "PruneOutput").Set(0);
    extract->UpdateVTKObjects();
  }
  return extract;
}

//--------------------------------------------------------------------------------------------------
void zylProcessingChain::Clear()
{
  this->PassThroughProxy = nullptr;
  this->CellDataToPointDataProxy = nullptr;
  this->RedistributeProxy = nullptr;
  this->ThresholdProxy = nullptr;
  this->GroupDataSetsProxy = nullptr;
  this->ConversionProxy = nullptr;
  this->ExtractProxy = nullptr;
  this->HoldProxy = nullptr;
  this->ForceTimeProxy = nullptr;
  this->BlockSource = nullptr;
  this->SourceBlocks.clear();
}
