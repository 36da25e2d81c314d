#include "ParaView/zylParaViewCompat.h"

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
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMStringVectorProperty.h>
#include <vtkSmartPointer.h>

#if __has_include(<vtkPVPythonOptions.h>)
#define ZYL_PARAVIEW_59 1
#include <vtkPVCompositeDataInformation.h>
#include <vtkPVPythonOptions.h>
#else
#define ZYL_PARAVIEW_59 0
#include <vtkDataAssembly.h>
#endif
#if __has_include(<vtkOpenGLBatchedPolyDataMapper.h>)
#define ZYL_PARAVIEW_513 1
#include <vtkPVRenderView.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#else
#define ZYL_PARAVIEW_513 0
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

using zylParaView::BlockVisibility;

#if ZYL_PARAVIEW_59

// Blocks without a pair take over what the node above them has, so the root hides all others.
std::vector<int> VisibilityPairs(const BlockVisibility& blocks)
{
  std::vector<int> pairs = { 0, 0 };
  for (const auto& leaf : blocks.Leaves)
  {
    if (leaf.Visible)
    {
      pairs.insert(pairs.end(), { static_cast<int>(leaf.Id), 1 });
    }
  }
  return pairs;
}

#else

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

std::string Text(unsigned int id)
{
  return std::to_string(id);
}

std::vector<std::string> RangeSelectors(
  const std::vector<std::pair<unsigned int, unsigned int>>& ranges)
{
  std::vector<std::string> selectors;
  for (const auto& range : ranges)
  {
    selectors.push_back(range.first == range.second
        ? "//*[@cid=" + Text(range.first) + "]"
        : "//*[@cid>=" + Text(range.first) + " and @cid<=" + Text(range.second) + "]");
  }
  return selectors;
}

// Each selector costs a walk over all nodes, so every one names many leaves; the range in front
// spares most nodes the search in the list.
std::vector<std::string> ListSelectors(const std::vector<BlockVisibility::Leaf>& leaves)
{
  constexpr std::size_t perSelector = 128;
  std::vector<unsigned int> ids;
  for (const auto& leaf : leaves)
  {
    if (leaf.Visible)
    {
      ids.push_back(leaf.Id);
    }
  }
  std::vector<std::string> selectors;
  for (std::size_t begin = 0; begin < ids.size(); begin += perSelector)
  {
    const std::size_t end = std::min(ids.size(), begin + perSelector);
    std::string list;
    for (std::size_t i = begin; i < end; ++i)
    {
      list += " " + Text(ids[i]);
    }
    selectors.push_back("//*[@cid>=" + Text(ids[begin]) + " and @cid<=" + Text(ids[end - 1]) +
      "][contains('" + list + " ',concat(' ',@cid,' '))]");
  }
  return selectors;
}

// Selectors of the hierarchy that together name exactly the visible leaves. A selector takes whole
// subtrees, and a range of ids also catches the inner nodes in between: a run of visible leaves is
// split at every inner node whose subtree reaches beyond the run.
std::vector<std::string> VisibilitySelectors(const BlockVisibility& blocks)
{
  const auto& leaves = blocks.Leaves;
  const auto visible = [](const BlockVisibility::Leaf& leaf) { return leaf.Visible; };
  if (std::all_of(leaves.begin(), leaves.end(), visible))
  {
    return { "/" };
  }
  std::vector<std::pair<unsigned int, unsigned int>> ranges;
  const auto add = [&ranges](
                     unsigned int first, unsigned int last) { ranges.emplace_back(first, last); };
  std::size_t inner = 0;
  for (std::size_t begin = 0; begin < leaves.size();)
  {
    if (!leaves[begin].Visible)
    {
      ++begin;
      continue;
    }
    std::size_t end = begin;
    while (end < leaves.size() && leaves[end].Visible)
    {
      ++end;
    }
    unsigned int first = leaves[begin].Id;
    std::size_t from = begin;
    while (inner < blocks.InnerNodes.size() && blocks.InnerNodes[inner].Id < first)
    {
      ++inner;
    }
    for (; inner < blocks.InnerNodes.size() && blocks.InnerNodes[inner].Id < leaves[end - 1].Id;
         ++inner)
    {
      const auto& node = blocks.InnerNodes[inner];
      if (node.EndLeaf > end && node.FirstLeaf > from)
      {
        add(first, leaves[node.FirstLeaf - 1].Id);
        from = node.FirstLeaf;
        first = leaves[from].Id;
      }
    }
    add(first, leaves[end - 1].Id);
    begin = end;
  }
  return ranges.size() <= 8 ? RangeSelectors(ranges) : ListSelectors(leaves);
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

//--------------------------------------------------------------------------------------------------
void SetBlockVisibility(vtkSMProxy* representation, const BlockVisibility& blocks)
{
#if ZYL_PARAVIEW_59
  const std::vector<int> values = VisibilityPairs(blocks);
  vtkSMPropertyHelper helper(representation, "BlockVisibility");
  helper.SetNumberOfElements(static_cast<unsigned int>(values.size()));
  helper.Set(values.data(), static_cast<unsigned int>(values.size()));
#else
  const std::vector<std::string> selectors = VisibilitySelectors(blocks);
  auto* property =
    vtkSMStringVectorProperty::SafeDownCast(representation->GetProperty("BlockSelectors"));
  property->SetElements(selectors); // element by element would be quadratic
  if (vtkSMProperty* assembly = representation->GetProperty("Assembly"))
  {
    vtkSMPropertyHelper(assembly).Set("Hierarchy"); // whose paths they are
  }
#endif
}

//--------------------------------------------------------------------------------------------------
void ResetCamera(vtkSMRenderViewProxy* view, const double* bounds)
{
#if ZYL_PARAVIEW_59
  if (bounds)
  {
    view->ResetCamera(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
  }
  else
  {
    view->ResetCamera();
  }
#else
  if (bounds)
  {
    view->ResetCamera(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5], false);
  }
  else
  {
    view->ResetCamera(false);
  }
#endif
}

//--------------------------------------------------------------------------------------------------
void RemoveCameraWidget(vtkSMRenderViewProxy* view)
{
#if ZYL_PARAVIEW_513
  auto* client = vtkPVRenderView::SafeDownCast(view->GetClientSideObject());
  vtkRendererCollection* renderers = client ? client->GetRenderWindow()->GetRenderers() : nullptr;
  vtkCollectionSimpleIterator at;
  if (renderers)
  {
    renderers->InitTraversal(at);
    while (vtkRenderer* renderer = renderers->GetNextRenderer(at))
    {
      if (renderer != client->GetRenderer(vtkPVRenderView::DEFAULT_RENDERER) &&
        renderer != client->GetRenderer(vtkPVRenderView::NON_COMPOSITED_RENDERER) &&
        renderer->VisibleActorCount() == 0) // the orientation axes have some
      {
        renderer->DrawOff();
      }
    }
  }
#else
  static_cast<void>(view);
#endif
}

//--------------------------------------------------------------------------------------------------
void UseOwnBackground(vtkSMRenderViewProxy* view)
{
  if (view->GetProperty("UseColorPaletteForBackground"))
  {
    vtkSMPropertyHelper(view, "UseColorPaletteForBackground").Set(0);
  }
}

} // namespace zylParaView
