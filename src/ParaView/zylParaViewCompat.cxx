#include "ParaView/zylParaViewCompat.h"

#include "ParaView/zylParaViewCompat.version.h"
#include "ParaView/zylSession.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <dlfcn.h>

#include <vtkAlgorithm.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataObjectTypes.h>
#include <vtkDataSet.h>
#include <vtkInitializationHelper.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>
#include <vtkProcessModule.h>
#include <vtkSMPTools.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMProxyManager.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSmartPointer.h>

#if ZYL_PARAVIEW_59
#include <vtkPVCompositeDataInformation.h>
#include <vtkPVPythonOptions.h>
#else
#include <vtkDataAssembly.h>
#endif

namespace {

// Whether the host has started MPI. Asked without linking MPI: ParaView brings it if it uses it.
bool HostStartedMPI()
{
  using Function = int (*)(int*);
  auto initialized = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "MPI_Initialized"));
  int flag = 0;
  return initialized && initialized(&flag) == 0 && flag;
}

using BlockNode = vtkZYLBlockInformation::Node;

std::vector<vtkZYLBlockInformation::Array> DescribeArrays(vtkPVDataSetAttributesInformation* info)
{
  std::vector<vtkZYLBlockInformation::Array> arrays;
  for (int i = 0; info && i < info->GetNumberOfArrays(); ++i)
  {
    vtkPVArrayInformation* array = info->GetArrayInformation(i);
    vtkZYLBlockInformation::Array result;
    result.Name = array->GetName();
    result.NumberOfComponents = array->GetNumberOfComponents();
    double range[2];
    for (int c = 0; c < result.NumberOfComponents; ++c)
    {
      array->GetComponentRange(c, range);
      result.Ranges.insert(result.Ranges.end(), range, range + 2);
    }
    if (result.NumberOfComponents >= 2)
    {
      array->GetComponentFiniteRange(-1, range);
      result.Ranges.insert(result.Ranges.end(), range, range + 2);
    }
    arrays.push_back(result);
  }
  return arrays;
}

int TypeOf(vtkPVDataInformation* info)
{
  return info->GetCompositeDataSetType() > 0 ? info->GetCompositeDataSetType()
                                             : info->GetDataSetType();
}

void Describe(vtkPVDataInformation* info, BlockNode& node)
{
  node.HasData = true;
  node.DataType = TypeOf(info);
  node.NumberOfRows = info->GetNumberOfRows();
  node.RowArrays = DescribeArrays(info->GetRowDataInformation());
  node.NumberOfPoints = info->GetNumberOfPoints();
  node.NumberOfCells = info->GetNumberOfCells();
  info->GetBounds(node.Bounds);
  node.PointArrays = DescribeArrays(info->GetPointDataInformation());
  node.CellArrays = DescribeArrays(info->GetCellDataInformation());
}

#if ZYL_PARAVIEW_59

void Walk(vtkPVDataInformation* info, int parent, bool isPiece, std::vector<BlockNode>& nodes)
{
  const int self = static_cast<int>(nodes.size());
  nodes.emplace_back();
  nodes[self].Parent = parent;
  nodes[self].IsPiece = isPiece;
  if (!info)
  {
    return;
  }
  Describe(info, nodes[self]);
  if (parent >= 0 && info->GetCompositeDataSetName())
  {
    nodes[self].Name = info->GetCompositeDataSetName();
  }
  vtkPVCompositeDataInformation* composite = info->GetCompositeDataInformation();
  const unsigned int children = composite ? composite->GetNumberOfChildren() : 0;
  nodes[self].NumberOfChildren = static_cast<int>(children);
  for (unsigned int i = 0; i < children; ++i)
  {
    Walk(composite->GetDataInformation(i), self, composite->GetDataIsMultiPiece() != 0, nodes);
  }
}

std::vector<BlockNode> AskParaView(vtkSMSourceProxy* source)
{
  std::vector<BlockNode> nodes;
  Walk(source->GetDataInformation(0), -1, false, nodes);
  return nodes;
}

std::vector<BlockNode> AskParaViewForTypes(vtkSMSourceProxy* source)
{
  return AskParaView(source);
}

#else

void Walk(vtkSMSourceProxy* source, vtkDataAssembly* hierarchy, int id, int parent,
  std::vector<BlockNode>& nodes)
{
  const int self = static_cast<int>(nodes.size());
  nodes.emplace_back();
  nodes[self].Parent = parent;
  if (parent >= 0)
  {
    nodes[self].Name = hierarchy->GetAttributeOrDefault(id, "label", "");
  }
  if (vtkPVDataInformation* info =
        source->GetSubsetDataInformation(0u, static_cast<unsigned int>(self)))
  {
    Describe(info, nodes[self]);
  }
  const int pieces = hierarchy->GetAttributeOrDefault(id, "vtk_num_pieces", 0);
  const std::vector<int> children = hierarchy->GetChildNodes(id, false);
  nodes[self].NumberOfChildren = static_cast<int>(children.size()) + pieces;
  for (int i = 0; i < pieces; ++i)
  {
    nodes.emplace_back();
    nodes.back().Parent = self;
    nodes.back().IsPiece = true;
  }
  for (const int child : children)
  {
    Walk(source, hierarchy, child, self, nodes);
  }
}

std::vector<BlockNode> AskParaView(vtkSMSourceProxy* source)
{
  std::vector<BlockNode> nodes;
  vtkPVDataInformation* info = source->GetDataInformation(0);
  if (vtkDataAssembly* hierarchy = info->GetHierarchy())
  {
    Walk(source, hierarchy, vtkDataAssembly::GetRootNode(), -1, nodes);
  }
  if (nodes.empty())
  {
    nodes.emplace_back();
  }
  Describe(info, nodes[0]); // the root carries what all blocks have together
  return nodes;
}

std::vector<BlockNode> AskParaViewForTypes(vtkSMSourceProxy* source)
{
  vtkPVDataInformation* info = source->GetDataInformation(0);
  const std::vector<int>& types = info->GetUniqueBlockTypes();
  if (TypeOf(info) == VTK_MULTIBLOCK_DATA_SET &&
    !std::all_of(types.begin(), types.end(), zylParaView::IsDataSetType))
  {
    return AskParaView(source); // block by block
  }
  std::vector<BlockNode> nodes(1);
  Describe(info, nodes[0]);
  return nodes;
}

#endif

#if !ZYL_PARAVIEW_59

constexpr char Threaded[] = "STDThread";
constexpr char Alone[] = "Sequential";
bool BackendChosen = false; // by this library

// Cells of a block, on average, below which it is small. Starting threads took 1.6 ms a block with
// two of them, and it takes more with more.
constexpr double SmallBlock = 50000;

bool HasSmallBlocks(vtkSMSourceProxy* source)
{
  auto* filter = vtkAlgorithm::SafeDownCast(source->GetClientSideObject());
  auto* data = vtkCompositeDataSet::SafeDownCast(filter ? filter->GetOutputDataObject(0) : nullptr);
  if (!data)
  {
    return false;
  }
  double blocks = 0;
  const auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(data->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    ++blocks;
  }
  return static_cast<double>(data->GetNumberOfCells()) < SmallBlock * blocks;
}

#endif
} // namespace

namespace zylParaView {

//--------------------------------------------------------------------------------------------------
bool StartClient(int argc, char** argv)
{
  static char noMPI[] = "--no-mpi";
  static std::vector<char*> arguments;
  arguments.assign(argv, argv + argc);
  if (!HostStartedMPI())
  {
    arguments.push_back(noMPI);
  }
  const int number = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
#if ZYL_PARAVIEW_59
  static vtkNew<vtkPVPythonOptions> options;
  vtkInitializationHelper::Initialize(
    number, arguments.data(), vtkProcessModule::PROCESS_CLIENT, options);
  if (options->GetHelpSelected() || options->GetTellVersion() || options->GetPrintMonitors())
  {
    vtkInitializationHelper::Finalize();
    return false;
  }
  return true;
#else
  // On false ParaView has taken itself down again.
  return vtkInitializationHelper::Initialize(
    number, arguments.data(), vtkProcessModule::PROCESS_CLIENT);
#endif
}

//--------------------------------------------------------------------------------------------------
void ChooseThreadedBackend()
{
#if !ZYL_PARAVIEW_59
  const char* current = vtkSMPTools::GetBackend();
  if (std::getenv("VTK_SMP_BACKEND_IN_USE") || !current || std::string(current) != Alone)
  {
    return;
  }
  BackendChosen = vtkSMPTools::SetBackend(Threaded);
  // Said once: otherwise every question for the number reads it from the system's files.
  vtkSMPTools::Initialize();
  vtkSMPTools::Initialize(vtkSMPTools::GetEstimatedNumberOfThreads());
#endif
}

//--------------------------------------------------------------------------------------------------
void AdaptThreads(vtkSMSourceProxy* source)
{
#if ZYL_PARAVIEW_59
  (void)source;
#else
  const char* current = vtkSMPTools::GetBackend();
  // A sequential backend need not be the host's choice: vtkCellDataToPointData leaves it behind.
  if (BackendChosen && current &&
    (std::string(current) == Threaded || std::string(current) == Alone))
  {
    vtkSMPTools::SetBackend(zylIsAlive(source) && HasSmallBlocks(source) ? Alone : Threaded);
  }
#endif
}

//--------------------------------------------------------------------------------------------------
int GetOutputDataType(vtkSMSourceProxy* source)
{
  vtkPVDataInformation* data = zylIsAlive(source) ? source->GetDataInformation(0) : nullptr;
  return data ? TypeOf(data) : -1;
}

//--------------------------------------------------------------------------------------------------
bool IsDataSetType(int type)
{
  static std::unordered_map<int, bool> known;
  const auto found = known.emplace(type, false);
  if (found.second)
  {
    const auto object =
      vtkSmartPointer<vtkDataObject>::Take(vtkDataObjectTypes::NewDataObject(type));
    found.first->second = vtkDataSet::SafeDownCast(object) != nullptr;
  }
  return found.first->second;
}

//--------------------------------------------------------------------------------------------------
std::vector<vtkZYLBlockInformation::Node> GetBlocks(vtkSMSourceProxy* source)
{
  if (!zylIsAlive(source))
  {
    return {};
  }
  if (HasServerPlugin(source->GetSession()))
  {
    vtkNew<vtkZYLBlockInformation> info;
    source->GatherInformation(info);
    return info->GetNodes();
  }
  return AskParaView(source);
}

//--------------------------------------------------------------------------------------------------
std::vector<vtkZYLBlockInformation::Node> GetBlockTypes(vtkSMSourceProxy* source)
{
  if (!zylIsAlive(source))
  {
    return {};
  }
  if (HasServerPlugin(source->GetSession()))
  {
    vtkNew<vtkZYLBlockInformation> info;
    info->SetDescribeArrays(false);
    source->GatherInformation(info);
    return info->GetNodes();
  }
  return AskParaViewForTypes(source);
}

//--------------------------------------------------------------------------------------------------
bool HasServerPlugin(vtkSMSession* session)
{
  // The loader's answer concerns this process only, so look whether the server knows a definition.
  return session &&
    (session->GetProcessRoles() & vtkPVSession::DATA_SERVER ||
      vtkSMProxyManager::GetProxyManager()->GetSessionProxyManager(session)->GetPrototypeProxy(
        "sources", "ZYLVolumeSurfaceReader") != nullptr);
}

//--------------------------------------------------------------------------------------------------
const char* GetMissingDefinitions()
{
#if ZYL_PARAVIEW_513
  return R"(<ServerManagerConfiguration>
  <ProxyGroup name="filters">
    <SourceProxy name="AppendArcLength" class="vtkAppendArcLength"
                 base_proxygroup="filters" base_proxyname="PolylineLength"/>
    <SourceProxy name="PolyDataNormals" class="vtkPPolyDataNormals"
                 base_proxygroup="filters" base_proxyname="SurfaceNormals"/>
    <!-- Of a class of the plugin: to be made only on servers that have it. -->
    <SourceProxy name="ZYLClip" class="vtkZYLClip"
                 base_proxygroup="filters" base_proxyname="Clip"/>
  </ProxyGroup>
</ServerManagerConfiguration>)";
#else
  return nullptr;
#endif
}

//--------------------------------------------------------------------------------------------------
const char* GetDefinition(vtkSMSession* session, const char* group, const char* name)
{
#if ZYL_PARAVIEW_513
  // A block without the array to clip by ends the process.
  if (std::strcmp(group, "filters") == 0 && std::strcmp(name, "Clip") == 0 &&
    HasServerPlugin(session))
  {
    return "ZYLClip";
  }
#else
  static_cast<void>(session);
  static_cast<void>(group);
#endif
  return name;
}

//--------------------------------------------------------------------------------------------------
bool CanTraceFromTraces(vtkSMSession* session)
{
#if ZYL_PARAVIEW_59
  return session->GetNumberOfProcesses(vtkPVSession::DATA_SERVER) <= 1;
#else
  (void)session;
  return true;
#endif
}

//--------------------------------------------------------------------------------------------------
void SetThresholdRange(vtkSMProxy* threshold, double lower, double upper)
{
#if ZYL_PARAVIEW_59
  const double range[2] = { lower, upper };
  vtkSMPropertyHelper(threshold, "ThresholdBetween").Set(range, 2);
#else
  vtkSMPropertyHelper(threshold, "LowerThreshold").Set(lower);
  vtkSMPropertyHelper(threshold, "UpperThreshold").Set(upper);
  vtkSMPropertyHelper(threshold, "ThresholdMethod").Set(0);
#endif
}

//--------------------------------------------------------------------------------------------------
void SamplePartialArrays(vtkSMProxy* sampler, bool partial)
{
  if (sampler->GetProperty("PassPartialArrays"))
  {
    vtkSMPropertyHelper(sampler, "PassPartialArrays").Set(partial ? 1 : 0);
    sampler->UpdateVTKObjects();
  }
}

} // namespace zylParaView
