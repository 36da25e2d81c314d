#include "zylPointProbe.h"

#include "Analysis/zylFieldValues.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylScriptFilter.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>

#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylPointProbe);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Int("Blocks", 0),
  zylPropertyRow::Doubles("ProbePoints").To("Points"),
};
constexpr char NoData[] = "the dataset is empty or its session has ended";
constexpr char ValidMask[] = "vtkValidPointMask";

// Blocks of points alone: the toolkit looks at the first cell of whatever has points.
std::set<int> FindBlocksWithoutCells(vtkSMSourceProxy* source)
{
  std::set<int> found;
  const auto nodes = zylParaView::GetBlocks(source);
  for (std::size_t i = 0; i < nodes.size(); ++i)
  {
    if (nodes[i].NumberOfChildren == 0 && nodes[i].NumberOfPoints > 0 &&
      nodes[i].NumberOfCells == 0)
    {
      found.insert(static_cast<int>(i));
    }
  }
  return found;
}

// The leaves of `blocks` and below but for `left`.
void AddLeaves(zylMultiBlockTree* node, bool wanted, const std::vector<int>& blocks,
  const std::set<int>& left, std::vector<int>& leaves)
{
  const int index = static_cast<int>(node->GetBlockIndex());
  wanted = wanted || std::find(blocks.begin(), blocks.end(), index) != blocks.end();
  if (wanted && node->GetNumberOfChildren() == 0 && left.count(index) == 0)
  {
    leaves.push_back(index);
  }
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    AddLeaves(node->GetChild(i), wanted, blocks, left, leaves);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylPointProbe::zylPointProbe()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
zylPointProbe::~zylPointProbe()
{
  this->DropChain();
}

//--------------------------------------------------------------------------------------------------
void zylPointProbe::SetDataSet(zylDataSet* dataset)
{
  this->DataSet = dataset;
}

//--------------------------------------------------------------------------------------------------
zylDataSet* zylPointProbe::GetDataSet()
{
  return this->DataSet;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylPointProbe::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylPointProbe::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update");
  if (!this->DataSet)
  {
    return;
  }
  this->Mistake = this->FindMistake();
  if (this->Mistake.empty() && !this->BuildChain())
  {
    this->Mistake = NoData;
  }
  if (!this->Mistake.empty())
  {
    vtkErrorMacro("No point can be probed: " << this->Mistake);
    return;
  }
  zylExtractBlocks(this->BlockExtractor, this->GetBlocksToProbe());
  zylPushScript(zylGetDerivedVariablesScript(this->DataSet), this->ScriptFilter);
  zylPush(this->Properties, Rows, this->LineSource);
  this->LineSource->UpdateVTKObjects();
  this->Resampler->UpdateVTKObjects();
  this->Execute();
}

//--------------------------------------------------------------------------------------------------
void zylPointProbe::Execute()
{
  const double time = zylTimeController::GetInstance()->GetActiveTime();
  if (zylUpdatePipeline(this->ScriptFilter, time, this->ExecutedTime))
  {
    this->Fetched = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylPointProbe::FindMistake()
{
  const unsigned int count = this->Properties->GetProperty("ProbePoints")->GetNumberOfElements();
  if (count % 3 != 0)
  {
    return "'ProbePoints' has " + std::to_string(count) + " coordinates, no multiple of three";
  }
  const auto unknown =
    zylFindUnknownBlock(this->DataSet, zylGetInts(this->Properties->GetProperty("Blocks")));
  return unknown.empty() ? std::string() : "no block at index " + std::to_string(unknown.front());
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylPointProbe::GetBlocksToProbe()
{
  zylMultiBlockTree* tree = this->DataSet->GetMultiBlockTree();
  if (this->TreeTime != tree->GetMTime() || this->Tree != tree)
  {
    this->TreeTime = tree->GetMTime();
    this->Tree = tree;
    this->WithoutCells = FindBlocksWithoutCells(this->DataSet->GetOutput());
  }
  const std::vector<int> blocks = zylGetInts(this->Properties->GetProperty("Blocks"));
  if (this->WithoutCells.empty())
  {
    return blocks;
  }
  std::vector<int> leaves;
  AddLeaves(tree, false, blocks, this->WithoutCells, leaves);
  return leaves;
}

//--------------------------------------------------------------------------------------------------
bool zylPointProbe::BuildChain()
{
  vtkSMSourceProxy* source = zylGetLiveOutput(this->DataSet);
  if (this->LineSource && (!source || this->LineSource->GetSession() != source->GetSession()))
  {
    this->DropChain();
  }
  if (!source)
  {
    return false;
  }
  if (!this->LineSource)
  {
    auto* manager = source->GetSessionProxyManager();
    this->LineSource = zylProxyBuilder(manager, "sources", "PolyLineSource").Make();
    this->BlockExtractor = zylProxyBuilder(manager, "filters", "ExtractBlock").Input(source).Make();
    this->Resampler = zylProxyBuilder(manager, "filters", "ResampleWithDataset")
                        .Input(this->BlockExtractor, "SourceDataArrays")
                        .Input(this->LineSource, "DestinationMesh")
                        .Make();
    this->ScriptFilter = zylScriptFilter(this->Resampler).Make();
  }
  zylConnect(this->BlockExtractor, source); // which may be another dataset's by now
  return this->LineSource && this->BlockExtractor && this->Resampler && this->ScriptFilter;
}

//--------------------------------------------------------------------------------------------------
void zylPointProbe::DropChain()
{
  for (auto* proxy :
    { &this->ScriptFilter, &this->Resampler, &this->BlockExtractor, &this->LineSource })
  {
    zylUnregister(*proxy);
    *proxy = nullptr;
  }
  this->Fetched = nullptr;
}

//--------------------------------------------------------------------------------------------------
zylPointProbe::ProbeValue_ zylPointProbe::GetProbedValues(unsigned int index)
{
  ProbeValue_ value;
  if (!this->ScriptFilter)
  {
    vtkErrorMacro("Not ready to probe points. Make sure to set a dataset on the zylPointProbe and "
                  "call Update()");
    return value;
  }
  vtkSMSourceProxy* source = zylGetLiveOutput(this->DataSet);
  if (!this->Mistake.empty() || !source || source->GetSession() != this->ScriptFilter->GetSession())
  {
    vtkErrorMacro("No point can be probed: " << (this->Mistake.empty() ? NoData : this->Mistake));
    return value;
  }
  this->Execute(); // time or the data may have moved on
  const bool fetchNow = !this->Fetched;
  if (fetchNow)
  {
    this->Fetched = vtkDataSet::SafeDownCast(zylCore::Fetch(this->ScriptFilter, nullptr));
  }
  const vtkIdType count = this->Fetched ? this->Fetched->GetNumberOfPoints() : 0;
  if (vtkIdType(index) >= count)
  {
    vtkErrorMacro("No probe point at index " << index << ", there are " << count);
    return value;
  }
  this->Fetched->GetPoint(index, value.Point.data());
  zylReadTuples(this->Fetched, index, value.PointValues, value.CellValues);
  const std::string missing = fetchNow
    ? zylDescribeMissing(this->DataSet, value.PointValues, this->ScriptFilter)
    : std::string();
  if (!missing.empty())
  {
    vtkWarningMacro(<< missing);
  }
  const auto mask = value.PointValues.find(ValidMask);
  if (mask != value.PointValues.end())
  {
    value.Valid = mask->second[0] > 0.0;
    value.PointValues.erase(mask);
  }
  return value;
}
