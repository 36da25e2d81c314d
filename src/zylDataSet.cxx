#include "zylDataSet.h"

#include "ParaView/zylDerivedVariables.h"
#include "ParaView/zylErrorCapture.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylArrayInformation.h"
#include "zylCore.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataObjectTypes.h>
#include <vtkDataSet.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkObjectFactory.h>
#include <vtkPVTrivialProducer.h>
#include <vtkSMCoreUtilities.h>
#include <vtkSMOutputPort.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyManager.h>
#include <vtkSMReaderFactory.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylDataSet);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("DistributeDataSet", false),
  zylPropertyRow::Bool("FreezeTime", false).To("IgnorePipelineTime"),
  zylPropertyRow::Double("FrozenTime", 0.0),
  zylPropertyRow::Bool("ThresholdDataSet", false),
  zylPropertyRow::String("ThresholdVariable", ""),
  zylPropertyRow::Double2("ThresholdRange", 0.0, 1.0),
  zylPropertyRow::Bool("InterpolateCellDataToPointData", false),
  zylPropertyRow::String("PartIdArrayName", "part_id"),
  zylPropertyRow::String("LevelMaskArrayName", "level_mask"),
};

constexpr unsigned int NoBlock = 0xFFFFFFFF;
constexpr vtkTypeUInt32 PureClient = 0x10; // process roles of a session on a server

// The value nearest to `time`, the first of equally near ones; 0 without values.
double Snap(double time, const std::vector<double>& values)
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

vtkSmartPointer<zylArrayInformation> MakeArray(const vtkZYLBlockInformation::Array& array)
{
  auto result = vtkSmartPointer<zylArrayInformation>::New();
  result->SetName(array.Name);
  result->SetNumberOfComponents(static_cast<unsigned int>(array.NumberOfComponents));
  for (unsigned int c = 0; 2 * c + 1 < array.Ranges.size(); ++c)
  {
    double range[2] = { array.Ranges[2 * c], array.Ranges[2 * c + 1] };
    result->SetComponentRange(c, range);
  }
  return result;
}

// Give `node` its index, name, arrays and children; the nodes stand in pre-order.
void BuildTree(zylMultiBlockTree* node, const std::vector<vtkZYLBlockInformation::Node>& nodes,
  unsigned int& counter)
{
  const auto& info = nodes[counter];
  node->SetBlockIndex(counter);
  node->SetBlockName(counter == 0 ? "root"
      : info.Name.empty()         ? "Block" + std::to_string(counter)
                                  : info.Name);
  node->SetIsPiece(info.IsPiece);
  node->PointArrays.clear();
  node->CellArrays.clear();
  for (const auto& array : info.PointArrays)
  {
    node->PointArrays.push_back(MakeArray(array));
  }
  for (const auto& array : info.CellArrays)
  {
    node->CellArrays.push_back(MakeArray(array));
  }
  ++counter;
  for (int i = 0; i < info.NumberOfChildren && counter < nodes.size(); ++i)
  {
    auto child = vtkSmartPointer<zylMultiBlockTree>::New();
    child->SetParent(node);
    node->AddChild(child);
    BuildTree(child, nodes, counter);
  }
}

bool IsComposite(vtkSMSourceProxy* source)
{
  const char* name = source->GetOutputPort(0u)->GetDataClassName();
  const auto object =
    vtkSmartPointer<vtkDataObject>::Take(name ? vtkDataObjectTypes::NewDataObject(name) : nullptr);
  return vtkCompositeDataSet::SafeDownCast(object) != nullptr;
}

std::vector<std::string> GetNames(const std::vector<vtkSmartPointer<zylArrayInformation>>& arrays)
{
  std::vector<std::string> names;
  for (const auto& array : arrays)
  {
    names.push_back(array->GetName());
  }
  return names;
}

int FirstCellType(vtkDataObject* object)
{
  auto* data = vtkDataSet::SafeDownCast(object);
  return data && data->GetNumberOfCells() > 0 ? data->GetCellType(0) : -1;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylDataSet::zylDataSet()
  : Core(zylCore::GetInstance())
  , Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , MultiBlockTree(vtkSmartPointer<zylMultiBlockTree>::New())
  , DerivedPointVariables(std::make_unique<zylDerivedVariables>())
{
  zylDeclare(this->Properties, Rows);
  this->TimeObserverTag = zylTimeController::GetInstance()->AddObserver(
    zylTimeController::TimeChangedEvent, this, &zylDataSet::UpdateCallback);
}

//--------------------------------------------------------------------------------------------------
zylDataSet::~zylDataSet()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "~zylDataSet");
  this->DropChain();
  zylUnregister(this->Proxy);
  this->Proxy = nullptr;
  zylTimeController::GetInstance()->RemoveObserver(this->TimeObserverTag);
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::LoadFromFile(const std::vector<std::string>& fileNames)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "LoadFromFile");
  if (fileNames.empty())
  {
    vtkErrorMacro("NewDataSet called with no file names");
    return false;
  }
  vtkSMSession* session = this->Core->GetSession();
  vtkSMReaderFactory* factory =
    session ? vtkSMProxyManager::GetProxyManager()->GetReaderFactory() : nullptr;
  if (!factory)
  {
    vtkErrorMacro("Failed to create new dataset");
    return false;
  }
  if (factory->GetNumberOfRegisteredPrototypes() == 0)
  {
    factory->UpdateAvailableReaders();
  }
  const std::string& first = fileNames.front();
  if (!vtkSMReaderFactory::TestFileReadability(first.c_str(), session))
  {
    vtkErrorMacro("File not readable " << first);
    return false;
  }
  if (!factory->CanReadFile(first.c_str(), session))
  {
    vtkErrorMacro("File not readable. No reader found for " << first);
    return false;
  }
  return this->LoadFromFile(fileNames, factory->GetReaderGroup(), factory->GetReaderName());
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::LoadFromFile(
  const std::vector<std::string>& fileNames, const std::string& group, const std::string& name)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "LoadFromFile %s/%s", group.c_str(), name.c_str());
  zylErrorCapture errors; // readers complain as soon as they are made
  zylProxyBuilder builder(this->Core->GetSessionProxyManager(), group.c_str(), name.c_str());
  for (const char* setting : { "PartIdArrayName", "LevelMaskArrayName" })
  {
    builder.Then([this, setting](vtkSMProxy* reader) {
      if (reader->GetProperty(setting))
      {
        const std::string value = this->Properties->GetString(setting);
        vtkVLogF(vtkLogger::VERBOSITY_TRACE, "setting %s to '%s'", setting, value.c_str());
        vtkSMPropertyHelper(reader, setting).Set(0, value.c_str());
      }
    });
  }
  vtkSmartPointer<vtkSMSourceProxy> reader =
    builder
      .Then([&fileNames](vtkSMProxy* proxy) {
        const char* property = vtkSMCoreUtilities::GetFileNameProperty(proxy);
        for (unsigned int i = 0; property && i < fileNames.size(); ++i)
        {
          vtkSMPropertyHelper(proxy, property).Set(i, fileNames[i].c_str());
        }
      })
      .Make();
  if (!reader)
  {
    vtkErrorMacro("Failed to create new dataset");
    return false;
  }
  if (!this->Adopt(reader, errors))
  {
    vtkErrorMacro("Failed to read " << (fileNames.empty() ? name : fileNames.front()) << ": "
                                    << this->ReadErrors.front());
    return false;
  }
  zylTimeController::GetInstance()->UseDataTimeSteps();
  return true;
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::Adopt(vtkSMSourceProxy* source, const zylErrorCapture& capture)
{
  const vtkSmartPointer<vtkSMSourceProxy> previous = this->Proxy;
  this->Proxy = source;
  this->LastUpdateTime = -1e299;
  this->Update();
  this->ReadErrors = capture.GetMessages();
  if (!this->ReadErrors.empty() && this->NumberOfPoints == 0 && this->NumberOfCells == 0)
  {
    // Nothing came: what was there before is shown again.
    const std::vector<std::string> errors = this->ReadErrors;
    zylUnregister(source);
    this->Proxy = previous;
    this->LastUpdateTime = -1e299;
    if (previous)
    {
      this->Update();
    }
    else
    {
      this->DropChain();
    }
    this->ReadErrors = errors;
    return false;
  }
  if (previous && previous != source)
  {
    zylUnregister(previous);
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::DropChain()
{
  this->PassThroughProxy = nullptr;
  this->CellDataToPointDataProxy = nullptr;
  this->RedistributeProxy = nullptr;
  this->ThresholdProxy = nullptr;
  this->GroupDataSetsProxy = nullptr;
  this->ForceTimeProxy = nullptr;
  this->MultiBlockTree = vtkSmartPointer<zylMultiBlockTree>::New();
  this->BlockMap.clear();
  this->BlockNameToIDsMap.clear();
  this->Index.clear();
  this->LastPropertiesHash = 0;
  this->LastUpdateTime = -1e299;
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::InitializeFromVTKDataSet(vtkMultiBlockDataSet* data)
{
  return this->InitializeFromVTKDataSet(data, 0.0);
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::InitializeFromVTKDataSet(vtkMultiBlockDataSet* data, double time)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "InitializeFromVTKDataSet with time");
  vtkSMSession* session = this->Core->GetSession();
  if (session && session->GetProcessRoles() == PureClient)
  {
    vtkLogF(ERROR, "Creating an zylDataSet from a VTK object not supported in client/server mode.");
    return false;
  }
  vtkSmartPointer<vtkSMSourceProxy> source = this->Proxy;
  if (!source)
  {
    source =
      zylProxyBuilder(this->Core->GetSessionProxyManager(), "sources", "PVTrivialProducer").Make();
  }
  auto* producer =
    source ? vtkPVTrivialProducer::SafeDownCast(source->GetClientSideObject()) : nullptr;
  if (!producer || !data)
  {
    vtkWarningMacro("Could not create vtkPVTrivialProducer");
    return false;
  }
  zylErrorCapture errors;
  producer->SetOutput(data, time);
  source->UpdateVTKObjects();
  source->MarkModified(source);
  source->UpdatePipeline();
  return this->Adopt(source, errors);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylDataSet::Stage(
  vtkSmartPointer<vtkSMSourceProxy>& stage, const char* name, vtkSMSourceProxy* input)
{
  if (!stage)
  {
    stage = zylProxyBuilder(this->Core->GetSessionProxyManager(), "filters", name)
              .Input(input)
              .MakeInitialized();
  }
  zylConnect(stage, input);
  return stage;
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update");
  if (!this->Proxy)
  {
    vtkWarningMacro("Update() called when no dataset proxy was set");
    return;
  }
  if (!this->Proxy->GetSession() || this->Proxy->GetSession() != this->Core->GetSession())
  {
    vtkErrorMacro("The session in which the dataset was loaded has ended");
    return;
  }
  zylTimeController* controller = zylTimeController::GetInstance();
  const std::vector<double> steps = controller->GetTimestepValues();
  const double time = Snap(controller->GetActiveTime(), steps);
  const vtkTypeUInt64 hash = this->Properties->GetHashValue();
  const vtkMTimeType sourceTime = this->Proxy->GetMTime();
  if (hash == this->LastPropertiesHash && time == this->LastUpdateTime &&
    sourceTime == this->LastSourceTime)
  {
    return; // nothing to ask or tell the server
  }
  zylErrorCapture errors;
  zylParaView::AdaptThreads(nullptr); // nothing is known of the data that the source brings
  if (this->ConnectChain(time, steps))
  {
    this->PassThroughProxy->UpdatePipeline(time);
    zylParaView::AdaptThreads(this->PassThroughProxy);
    this->RebuildTree();
    this->LastPropertiesHash = hash;
    this->LastUpdateTime = time;
    this->LastSourceTime = this->Proxy->GetMTime();
  }
  else
  {
    vtkErrorMacro("A stage of the processing chain could not be created");
  }
  controller->UpdateTimeInformation();
  this->ReadErrors = errors.GetMessages();
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::ConnectChain(double time, const std::vector<double>& steps)
{
  zylPropertyCollection* settings = this->Properties;
  vtkSMSourceProxy* current = this->Stage(this->ForceTimeProxy, "ForceTime", this->Proxy);
  if (!current)
  {
    return false;
  }
  zylPush(settings, Rows, current);
  vtkSMPropertyHelper(current, "ForcedTime").Set(Snap(settings->GetDouble("FrozenTime"), steps));
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
void zylDataSet::RebuildTree()
{
  const auto nodes = zylParaView::GetBlocks(this->PassThroughProxy);
  this->MultiBlockTree->ClearChildren();
  this->MultiBlockTree->SetParent(nullptr);
  this->NumberOfPoints = 0;
  this->NumberOfCells = 0;
  const double nothing[6] = { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 };
  std::copy(nothing, nothing + 6, this->Bounds);
  if (!nodes.empty())
  {
    unsigned int counter = 0;
    BuildTree(this->MultiBlockTree, nodes, counter);
    this->NumberOfPoints = nodes[0].NumberOfPoints;
    this->NumberOfCells = nodes[0].NumberOfCells;
    std::copy(nodes[0].Bounds, nodes[0].Bounds + 6, this->Bounds);
  }
  this->BuildNameMaps();
  this->MultiBlockTree->Modified();
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::BuildNameMaps()
{
  this->BlockMap.clear();
  this->BlockNameToIDsMap.clear();
  this->Index.clear();
  std::deque<zylMultiBlockTree*> queue = { this->MultiBlockTree };
  while (!queue.empty())
  {
    zylMultiBlockTree* node = queue.front();
    queue.pop_front();
    this->Index[node->GetBlockIndex()] = node;
    if (!node->GetIsPiece())
    {
      const std::string name = node->GetBlockName();
      this->BlockMap[name] = node->GetBlockIndex();
      if (node->IsLeaf())
      {
        this->BlockNameToIDsMap[name].push_back(node->GetBlockIndex());
      }
    }
    for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
    {
      queue.push_back(node->GetChild(i));
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::UpdateCallback(vtkObject*, unsigned long, void*)
{
  this->Update();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDataSet::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylDataSet::GetProxy()
{
  return this->Proxy;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylDataSet::GetOutput()
{
  return this->PassThroughProxy;
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylDataSet::GetMultiBlockTree()
{
  return this->MultiBlockTree;
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::GetBounds(double bounds[6])
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "GetBounds()");
  std::copy(this->Bounds, this->Bounds + 6, bounds);
  return bounds[1] - bounds[0] >= 0.0;
}

//--------------------------------------------------------------------------------------------------
vtkIdType zylDataSet::GetNumberOfPoints()
{
  return this->NumberOfPoints;
}

//--------------------------------------------------------------------------------------------------
vtkIdType zylDataSet::GetNumberOfCells()
{
  return this->NumberOfCells;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylDataSet::GetTimestepValues()
{
  if (!this->Proxy || !this->Proxy->GetProperty("TimestepValues"))
  {
    return {};
  }
  this->Proxy->UpdatePropertyInformation();
  return vtkSMPropertyHelper(this->Proxy, "TimestepValues").GetDoubleArray();
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetFileNames()
{
  std::vector<std::string> names;
  const char* property =
    this->Proxy ? vtkSMCoreUtilities::GetFileNameProperty(this->Proxy) : nullptr;
  if (property)
  {
    vtkSMPropertyHelper helper(this->Proxy, property);
    for (unsigned int i = 0; i < helper.GetNumberOfElements(); ++i)
    {
      const char* name = helper.GetAsString(i);
      names.emplace_back(name ? name : "");
    }
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylDataSet::GetBlockCentroids()
{
  if (!this->Proxy || !this->Proxy->GetProperty("BlockCentroids"))
  {
    return {};
  }
  this->Proxy->UpdatePropertyInformation();
  return vtkSMPropertyHelper(this->Proxy, "BlockCentroids").GetDoubleArray();
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDataGroupingString()
{
  if (!this->Proxy || !this->Proxy->GetProperty("DataGroupingString"))
  {
    return {};
  }
  this->Proxy->UpdatePropertyInformation();
  vtkSMPropertyHelper helper(this->Proxy, "DataGroupingString");
  const char* text = helper.GetNumberOfElements() > 0 ? helper.GetAsString(0) : nullptr;
  return text ? text : "";
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfBlocks()
{
  return static_cast<unsigned int>(this->BlockMap.size());
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylDataSet::GetBlockIDs()
{
  return this->MultiBlockTree->GetBlockIDs();
}

//--------------------------------------------------------------------------------------------------
zylMultiBlockTree* zylDataSet::FindBlock(unsigned int block)
{
  const auto found = this->Index.find(block);
  return found == this->Index.end() ? nullptr : found->second;
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetParent(unsigned int blockIndex)
{
  zylMultiBlockTree* node = this->FindBlock(blockIndex);
  return node && node->GetParent() ? node->GetParent()->GetBlockIndex() : NoBlock;
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylDataSet::GetChildren(unsigned int blockIndex)
{
  std::vector<unsigned int> children;
  zylMultiBlockTree* node = this->FindBlock(blockIndex);
  for (unsigned int i = 0; node && i < node->GetNumberOfChildren(); ++i)
  {
    children.push_back(node->GetChild(i)->GetBlockIndex());
  }
  return children;
}

//--------------------------------------------------------------------------------------------------
const zylDataSet::ArrayList& zylDataSet::GetArrays(
  ArrayList zylMultiBlockTree::*list, unsigned int block)
{
  static const ArrayList none;
  zylMultiBlockTree* node = this->FindBlock(block);
  return node ? node->*list : none;
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetArray(
  ArrayList zylMultiBlockTree::*list, const char* kind, unsigned int arrayIndex, unsigned int block)
{
  if (!this->FindBlock(block))
  {
    vtkWarningMacro("No block at index " << block << " found.");
    return nullptr;
  }
  const ArrayList& arrays = this->GetArrays(list, block);
  if (arrayIndex >= arrays.size())
  {
    vtkWarningMacro("Index " << arrayIndex << " is an invalid " << kind << " array index.");
    return nullptr;
  }
  return arrays[arrayIndex];
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfPointArrays()
{
  return this->GetNumberOfPointArrays(0);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfPointArrays(unsigned int block)
{
  return static_cast<unsigned int>(this->GetArrays(&zylMultiBlockTree::PointArrays, block).size());
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetPointArrayNames()
{
  return this->GetPointArrayNames(0);
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetPointArrayNames(unsigned int block)
{
  return GetNames(this->GetArrays(&zylMultiBlockTree::PointArrays, block));
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetPointArrayInformation(unsigned int arrayIndex)
{
  return this->GetPointArrayInformation(arrayIndex, 0);
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetPointArrayInformation(
  unsigned int arrayIndex, unsigned int block)
{
  return this->GetArray(&zylMultiBlockTree::PointArrays, "point", arrayIndex, block);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfCellArrays()
{
  return this->GetNumberOfCellArrays(0);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfCellArrays(unsigned int block)
{
  return static_cast<unsigned int>(this->GetArrays(&zylMultiBlockTree::CellArrays, block).size());
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetCellArrayNames()
{
  return this->GetCellArrayNames(0);
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetCellArrayNames(unsigned int block)
{
  return GetNames(this->GetArrays(&zylMultiBlockTree::CellArrays, block));
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetCellArrayInformation(unsigned int arrayIndex)
{
  return this->GetCellArrayInformation(arrayIndex, 0);
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetCellArrayInformation(
  unsigned int arrayIndex, unsigned int block)
{
  return this->GetArray(&zylMultiBlockTree::CellArrays, "cell", arrayIndex, block);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkDataObject> zylDataSet::FetchCells(const char* source, std::vector<int> ids)
{
  vtkSMSessionProxyManager* manager = this->Core->GetSessionProxyManager();
  if (!this->Proxy || !manager)
  {
    return nullptr;
  }
  auto selection = zylProxyBuilder(manager, "sources", source)
                     .Set("FieldType", 0)
                     .Set("IDs", ids)
                     .MakeUnregistered();
  auto extract = zylProxyBuilder(manager, "filters", "PVExtractSelection")
                   .Input(selection, "Selection")
                   .Input(this->Proxy)
                   .MakeUnregistered();
  return zylCore::Fetch(extract, "vtkMultiBlockDataGroupFilter");
}

//--------------------------------------------------------------------------------------------------
int zylDataSet::GetCellType(unsigned int block)
{
  const auto cells =
    this->FetchCells("CompositeDataIDSelectionSource", { static_cast<int>(block), 0, 0 });
  auto* composite = vtkCompositeDataSet::SafeDownCast(cells);
  if (!composite)
  {
    return -1;
  }
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    const int type = FirstCellType(iterator->GetCurrentDataObject());
    if (type >= 0)
    {
      return type;
    }
  }
  return -1;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylDataSet::GetCellTypes()
{
  std::vector<int> types;
  const auto cells = this->FetchCells("IDSelectionSource", { 0, 0 });
  auto* blocks = vtkMultiBlockDataSet::SafeDownCast(cells);
  if (!blocks)
  {
    return types;
  }
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(blocks->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    const unsigned int index = iterator->GetCurrentFlatIndex();
    types.resize(std::max<std::size_t>(types.size(), index + 1), -1);
    types[index] = FirstCellType(iterator->GetCurrentDataObject());
  }
  return types;
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::DefineDerivedPointVariable(const std::string& name, const std::string& expression)
{
  if (name.empty())
  {
    vtkErrorMacro("Name of derived variable cannot be empty");
    return;
  }
  if (expression.empty())
  {
    this->DerivedPointVariables->Remove(name);
    return;
  }
  this->DerivedPointVariables->Define(name, expression);
  std::vector<std::string> warnings;
  this->DerivedPointVariables->CheckSpellings(this->GetPointArrayNames(0), warnings);
  for (const std::string& warning : warnings)
  {
    vtkWarningMacro(<< warning);
  }
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::ClearDerivedPointVariables()
{
  this->DerivedPointVariables->Clear();
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetDerivedPointVariableNames()
{
  std::vector<std::string> names;
  for (const auto& variable : this->DerivedPointVariables->GetExpressions())
  {
    names.push_back(variable.first);
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::IsDerivedPointVariable(const std::string& name)
{
  return this->DerivedPointVariables->GetExpressions().count(name) > 0;
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDerivedPointVariableExpression(const std::string& name)
{
  const auto& expressions = this->DerivedPointVariables->GetExpressions();
  const auto found = expressions.find(name);
  return found != expressions.end() ? found->second : std::string();
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDerivedPointVariableScript(const std::set<std::string>& toSave)
{
  std::vector<std::string> errors;
  std::vector<std::string> warnings;
  const std::string script =
    this->DerivedPointVariables->MakeScript(this->GetPointArrayNames(0), toSave, errors, warnings);
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "Script:\n%s", script.c_str());
  for (const std::string& error : errors)
  {
    vtkErrorMacro(<< error);
  }
  for (const std::string& warning : warnings)
  {
    vtkWarningMacro(<< warning);
  }
  return script;
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::SetDistributeDataSet(bool distribute)
{
  vtkLogF(INFO,
    "This function has been deprecated. Use zylDataSet::GetProperties() and set the "
    "'DistributeDataSet' property");
  this->Properties->Set("DistributeDataSet", distribute);
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::GetDistributeDataSet()
{
  return this->Properties->GetBool("DistributeDataSet");
}
