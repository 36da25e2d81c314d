#include "zylDataSet.h"

#include "Data/zylBlockTree.h"
#include "Data/zylCellTypes.h"
#include "Data/zylProcessingChain.h"
#include "Data/zylReader.h"
#include "Data/zylWatchedSource.h"
#include "ParaView/zylDerivedVariables.h"
#include "ParaView/zylErrorCapture.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylArrayInformation.h"
#include "zylCore.h"
#include "zylMultiBlockTree.h"
#include "zylProgress.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>

#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkObjectFactory.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylDataSet);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("DistributeDataSet", false),
  zylPropertyRow::Bool("FreezeTime", false),
  zylPropertyRow::Double("FrozenTime", 0.0),
  zylPropertyRow::Bool("ThresholdDataSet", false),
  zylPropertyRow::String("ThresholdVariable", ""),
  zylPropertyRow::Double2("ThresholdRange", 0.0, 1.0),
  zylPropertyRow::Bool("InterpolateCellDataToPointData", false),
  zylPropertyRow::String("PartIdArrayName", "part_id"),
  zylPropertyRow::String("LevelMaskArrayName", "level_mask"),
};

const zylReaderChoice NotMade = { {}, "Failed to create new dataset" };
const std::string CanceledText = "canceled";
const std::string NothingText = "Nothing can be drawn: ";
constexpr vtkTypeUInt32 PureClient = 0x10; // process roles of a session on a server
} // namespace

//--------------------------------------------------------------------------------------------------
zylDataSet::zylDataSet()
  : Core(zylCore::GetInstance())
  , Source(std::make_unique<zylWatchedSource>())
  , Chain(std::make_unique<zylProcessingChain>())
  , Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , Blocks(std::make_unique<zylBlocks>())
  , MultiBlockTree(vtkSmartPointer<zylMultiBlockTree>::New())
  , DerivedPointVariables(std::make_unique<zylDerivedVariables>(this))
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
  zylUnregister(this->Source->Get());
  this->Source->Set(nullptr);
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
  const zylProgress::Operation operation;
  return this->Load(fileNames,
    zylHasSession("LoadFromFile()") ? zylChooseReaders(this->Core->GetSession(), fileNames)
                                    : NotMade);
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::LoadFromFile(
  const std::vector<std::string>& fileNames, const std::string& group, const std::string& name)
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "LoadFromFile %s/%s", group.c_str(), name.c_str());
  const zylReaderChoice choice = { { { group, name } }, "" };
  return this->Load(fileNames, zylHasSession("LoadFromFile()") ? choice : NotMade);
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::Load(const std::vector<std::string>& fileNames, const zylReaderChoice& choice)
{
  const zylProgress::Operation operation;
  std::string error = choice.Error;
  std::vector<std::string> firstErrors;
  this->Canceled = false;
  for (std::size_t i = 0; i < choice.Readers.size() && !this->Canceled; ++i)
  {
    // Several readers may claim a kind of file; some find out that it is not theirs when they read.
    const auto& reader = choice.Readers[i];
    const std::string failure = this->ReadWith(fileNames, reader.Group, reader.Name, i == 0);
    if (failure.empty())
    {
      return true;
    }
    if (i == 0 || this->Canceled)
    {
      error = failure;
      firstErrors = this->ReadErrors;
    }
  }
  this->ReadErrors = firstErrors;
  vtkErrorMacro(<< error);
  return false;
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::ReadWith(const std::vector<std::string>& fileNames,
  const std::string& group, const std::string& name, bool mayBeEmpty)
{
  const auto fail = [&](const std::string& why) {
    return "Failed to read " + (fileNames.empty() ? name : fileNames.front()) + ": " + why;
  };
  this->Canceled = false;
  zylErrorCapture errors; // readers complain as soon as they are made
  std::string thrown;
  const auto reader = zylMakeReader(
    this->Core->GetSessionProxyManager(), group, name, fileNames, this->Properties, thrown);
  if (this->TakeCancelRequest() || !thrown.empty())
  {
    zylUnregister(reader);
    this->ReadErrors = { this->Canceled ? CanceledText : thrown };
    return fail(this->ReadErrors.front());
  }
  if (!reader)
  {
    return NotMade.Error;
  }
  if (!this->Adopt(reader, errors, mayBeEmpty))
  {
    return fail(this->ReadErrors.front());
  }
  zylTimeController::GetInstance()->UseDataTimeSteps();
  return "";
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::Adopt(vtkSMSourceProxy* source, const zylErrorCapture& capture, bool mayBeEmpty)
{
  const vtkSmartPointer<vtkSMSourceProxy> previous = this->Source->Get();
  this->Source->Set(source);
  this->LastUpdateTime = -1e299;
  this->Canceled = false;
  std::vector<std::string> errors;
  try
  {
    this->Update();
  }
  catch (const std::exception& exception) // thrown by libraries below the toolkit
  {
    errors.emplace_back(exception.what());
    *this->Blocks = zylBlocks();
  }
  errors.insert(errors.begin(), capture.GetMessages().begin(), capture.GetMessages().end());
  const bool lost = !zylIsAlive(source);
  if (lost)
  {
    errors.emplace_back("the connection to the server is lost");
  }
  this->SetReadErrors(errors);
  const bool nothing = this->Blocks->NumberOfPoints == 0 && this->Blocks->NumberOfCells == 0;
  if (nothing && !mayBeEmpty)
  {
    errors.emplace_back("there are no data");
  }
  const bool canceled = this->Canceled;
  errors = canceled && !lost ? std::vector<std::string>{ CanceledText } : errors;
  if (lost || canceled || (!errors.empty() && nothing && source != previous))
  {
    // Nothing came: what was there before is shown again.
    zylUnregister(source);
    this->Source->Set(previous);
    this->LastUpdateTime = -1e299;
    previous ? this->Update() : this->DropChain();
    this->Canceled = canceled;
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
bool zylDataSet::TakeCancelRequest()
{
  return this->Canceled = zylProgress::GetInstance()->TakeCancelRequest();
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::DropChain()
{
  this->Chain->Clear();
  *this->Blocks = zylFillBlockTree(this->MultiBlockTree, {});
  this->NothingToDraw.clear();
  this->LastPropertiesHash = 0;
  this->LastUpdateTime = -1e299;
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
  if (!zylHasSession("InitializeFromVTKDataSet()"))
  {
    return false;
  }
  vtkSmartPointer<vtkSMSourceProxy> source = this->Source->Get();
  if (!zylIsAlive(source) && data)
  {
    source =
      zylProxyBuilder(this->Core->GetSessionProxyManager(), "sources", "PVTrivialProducer").Make();
  }
  zylErrorCapture errors;
  if (!zylSetData(source, data, time))
  {
    vtkWarningMacro("Could not create vtkPVTrivialProducer");
    return false;
  }
  return this->Adopt(source, errors, true);
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::Update()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update");
  if (!this->Source->Get())
  {
    vtkWarningMacro("Update() called when no dataset proxy was set");
    return;
  }
  if (!zylIsUsable(this->Source->Get(), "Update()"))
  {
    return;
  }
  zylTimeController* controller = zylTimeController::GetInstance();
  const std::vector<double> steps = controller->GetTimestepValues();
  const double active = controller->GetActiveTime();
  const double time = zylSnapToStep(active, steps);
  const bool between = time != active && zylProcessingChain::HasTimeSteps(this->Source->Get());
  const vtkTypeUInt64 hash = this->Properties->GetHashValue();
  const bool changed =
    hash != this->LastPropertiesHash || time != this->LastUpdateTime || this->Source->HasChanged();
  if (!changed && between == this->BetweenSteps)
  {
    return; // nothing to ask or tell the server
  }
  zylErrorCapture errors;
  zylParaView::AdaptThreads(nullptr); // nothing is known of the data that the source brings
  const double frozen = zylSnapToStep(this->Properties->GetDouble("FrozenTime"), steps);
  const zylProgress::Operation operation;
  const bool connected =
    this->Chain->Connect(this->Source->Get(), this->Properties, { time, active, frozen });
  if (!this->TakeCancelRequest() && connected)
  {
    this->Chain->Execute();
    this->TakeCancelRequest();
  }
  if (this->Canceled)
  {
    vtkWarningMacro("Update() " << CanceledText); // the next one starts anew
  }
  else if (connected)
  {
    zylParaView::AdaptThreads(this->GetOutput());
    if (changed)
    {
      this->RebuildTree();
    }
    this->LastPropertiesHash = hash;
    this->LastUpdateTime = time;
    this->BetweenSteps = between;
    this->Source->MarkSeen();
  }
  else
  {
    vtkErrorMacro("A stage of the processing chain could not be created");
  }
  controller->UpdateTimeInformation();
  this->CheckDrawable(errors.GetMessages());
  this->SetReadErrors(
    this->Canceled ? std::vector<std::string>{ CanceledText } : errors.GetMessages());
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::CheckDrawable(const std::vector<std::string>& errors)
{
  std::string reason;
  if (errors.empty()) // which say more
  {
    reason = zylWhyNothingToDraw(this->Chain->GetSourceBlocks());
    reason = reason.empty() ? this->Chain->GetProblem() : reason;
  }
  if (reason != this->NothingToDraw && !reason.empty())
  {
    vtkWarningMacro(<< NothingText << reason);
  }
  this->NothingToDraw = reason;
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::SetReadErrors(const std::vector<std::string>& errors)
{
  this->ReadErrors = errors;
  if (!this->NothingToDraw.empty())
  {
    this->ReadErrors.push_back(NothingText + this->NothingToDraw);
  }
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::RebuildTree()
{
  auto nodes = zylParaView::GetBlocks(this->GetOutput());
  if (!zylIsAlive(this->GetOutput()))
  {
    return; // no answer: what is known stays
  }
  zylTakeKinds(nodes, this->Chain->GetSourceBlocks(), this->Chain->GetLevelsAdded());
  *this->Blocks = zylFillBlockTree(this->MultiBlockTree, nodes);
}

//--------------------------------------------------------------------------------------------------
void zylDataSet::UpdateCallback(vtkObject*, unsigned long, void*)
{
  // Everybody else may go on in the next session while a dataset of the last one is still held.
  if (zylIsAlive(this->Source->Get()))
  {
    this->Update();
  }
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylDataSet::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylDataSet::GetProxy()
{
  return this->Source->Get();
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylDataSet::GetOutput()
{
  return this->Chain->GetOutput();
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
  std::copy(this->Blocks->Bounds, this->Blocks->Bounds + 6, bounds);
  return bounds[1] - bounds[0] >= 0.0;
}

//--------------------------------------------------------------------------------------------------
vtkIdType zylDataSet::GetNumberOfPoints()
{
  return this->Blocks->NumberOfPoints;
}

//--------------------------------------------------------------------------------------------------
vtkIdType zylDataSet::GetNumberOfCells()
{
  return this->Blocks->NumberOfCells;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylDataSet::GetTimestepValues()
{
  return this->Source->GetDoubles("TimestepValues", "GetTimestepValues()");
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetFileNames()
{
  return zylGetFileNames(this->Source->Get());
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylDataSet::GetBlockCentroids()
{
  return this->Source->GetDoubles("BlockCentroids", "GetBlockCentroids()");
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDataGroupingString()
{
  return this->Source->GetText("DataGroupingString", "GetDataGroupingString()");
}

//--------------------------------------------------------------------------------------------------
const std::map<std::string, unsigned int>& zylDataSet::GetBlockMap() const
{
  return this->Blocks->ByName;
}

//--------------------------------------------------------------------------------------------------
const std::map<std::string, std::vector<unsigned int>>& zylDataSet::GetBlockNameToIDsMap() const
{
  return this->Blocks->LeavesByName;
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfBlocks()
{
  return static_cast<unsigned int>(this->Blocks->ByName.size());
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylDataSet::GetBlockIDs()
{
  return this->MultiBlockTree->GetBlockIDs();
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetParent(unsigned int blockIndex)
{
  return this->Blocks->GetParent(blockIndex);
}

//--------------------------------------------------------------------------------------------------
std::vector<unsigned int> zylDataSet::GetChildren(unsigned int blockIndex)
{
  return this->Blocks->GetChildren(blockIndex);
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetArray(
  ArrayList zylMultiBlockTree::*list, const char* kind, unsigned int arrayIndex, unsigned int block)
{
  if (!this->Blocks->Find(block))
  {
    vtkWarningMacro("No block at index " << block << " found.");
    return nullptr;
  }
  const ArrayList& arrays = this->Blocks->GetArrays(list, block);
  if (arrayIndex >= arrays.size())
  {
    vtkWarningMacro("Index " << arrayIndex << " is an invalid " << kind << " array index.");
    return nullptr;
  }
  return arrays[arrayIndex];
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfPointArrays(unsigned int block)
{
  return static_cast<unsigned int>(
    this->Blocks->GetArrays(&zylMultiBlockTree::PointArrays, block).size());
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetPointArrayNames(unsigned int block)
{
  return zylGetNames(this->Blocks->GetArrays(&zylMultiBlockTree::PointArrays, block));
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetPointArrayInformation(
  unsigned int arrayIndex, unsigned int block)
{
  return this->GetArray(&zylMultiBlockTree::PointArrays, "point", arrayIndex, block);
}

//--------------------------------------------------------------------------------------------------
unsigned int zylDataSet::GetNumberOfCellArrays(unsigned int block)
{
  return static_cast<unsigned int>(
    this->Blocks->GetArrays(&zylMultiBlockTree::CellArrays, block).size());
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDataSet::GetCellArrayNames(unsigned int block)
{
  return zylGetNames(this->Blocks->GetArrays(&zylMultiBlockTree::CellArrays, block));
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylDataSet::GetCellArrayInformation(
  unsigned int arrayIndex, unsigned int block)
{
  return this->GetArray(&zylMultiBlockTree::CellArrays, "cell", arrayIndex, block);
}

//--------------------------------------------------------------------------------------------------
int zylDataSet::GetCellType(unsigned int block)
{
  return zylGetCellType(this->Chain->GetBlockSource(), this->Blocks->GetBlockAndPieces(block));
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylDataSet::GetCellTypes()
{
  return zylGetCellTypes(this->Chain->GetBlockSource());
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
  this->DerivedPointVariables->CheckSpellings(this->GetPointArrayNames(0));
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
  return this->DerivedPointVariables->GetNames();
}

//--------------------------------------------------------------------------------------------------
bool zylDataSet::IsDerivedPointVariable(const std::string& name)
{
  return this->DerivedPointVariables->GetExpressions().count(name) > 0;
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDerivedPointVariableExpression(const std::string& name)
{
  return this->DerivedPointVariables->GetExpression(name);
}

//--------------------------------------------------------------------------------------------------
std::string zylDataSet::GetDerivedPointVariableScript(const std::set<std::string>& toSave)
{
  const std::string script =
    this->DerivedPointVariables->MakeScript(this->GetPointArrayNames(0), toSave);
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "Script:\n%s", script.c_str());
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
