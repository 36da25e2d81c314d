#include "zylPipeline.h"

#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylArrayInformation.h"
#include "zylCore.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

#include <vtkBoundingBox.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSMTransferFunctionManager.h>
#include <vtkSMTransferFunctionPresets.h>
#include <vtkSMTransferFunctionProxy.h>

namespace {
constexpr zylPropertyRow BaseRows[] = {
  zylPropertyRow::Bool("Visibility", false).NotInHash(),
  zylPropertyRow::Bool("ForceHidden", false).NotInHash(),
  zylPropertyRow::Ints("BlockVisibility").NotInHash(),
  zylPropertyRow::Int("ColorMode", 0),
  zylPropertyRow::Double3("Color", 1.0, 1.0, 1.0),
  zylPropertyRow::String("ColorVariableName", ""),
  zylPropertyRow::String("ColorMapName", "Cool to Warm"),
  zylPropertyRow::Double2("ColorMapRange", 0.0, 1.0),
  zylPropertyRow::Double("Ambient", 0.0).To("Ambient"),
  zylPropertyRow::Double("Diffuse", 1.0).To("Diffuse"),
  zylPropertyRow::Double("Specular", 0.0).To("Specular"),
  zylPropertyRow::Double3("SpecularColor", 1.0, 1.0, 1.0).To("SpecularColor"),
  zylPropertyRow::Double("SpecularPower", 100.0).To("SpecularPower"),
};

// The targets are properties of the scalar bar.
constexpr zylPropertyRow LegendRows[] = {
  zylPropertyRow::Bool("ColorLegendVisibility", false),
  zylPropertyRow::Int("ColorLegendLocation", 2).To("WindowLocation"),
  zylPropertyRow::Int("ColorLegendOrientation", 1).To("Orientation"),
  zylPropertyRow::String("ColorLegendTitle", ""),
  zylPropertyRow::String("ColorLegendComponentTitle", ""),
  zylPropertyRow::Double3("ColorLegendTitleColor", 0.0, 0.0, 0.0).To("TitleColor"),
  zylPropertyRow::Int("ColorLegendTitleFontSize", 16).To("TitleFontSize"),
  zylPropertyRow::Bool("ColorLegendTitleBold", false).To("TitleBold"),
  zylPropertyRow::Bool("ColorLegendTitleItalic", false).To("TitleItalic"),
  zylPropertyRow::Bool("ColorLegendTitleShadow", false).To("TitleShadow"),
  zylPropertyRow::Double3("ColorLegendLabelColor", 0.0, 0.0, 0.0).To("LabelColor"),
  zylPropertyRow::Int("ColorLegendLabelFontSize", 16).To("LabelFontSize"),
  zylPropertyRow::Bool("ColorLegendLabelBold", false).To("LabelBold"),
  zylPropertyRow::Bool("ColorLegendLabelItalic", false).To("LabelItalic"),
  zylPropertyRow::Bool("ColorLegendLabelShadow", false).To("LabelShadow"),
};

constexpr const char* ColorMapSettings[] = { "ColorVariableName", "ColorMapName", "ColorMapRange",
  "ColorMapStyle", "NumberOfColors" };

constexpr int SmoothTableSize = 256;

//--------------------------------------------------------------------------------------------------
// The session may have ended before the pipeline that made the proxies.
bool IsAlive(vtkSMProxy* proxy)
{
  return proxy && proxy->GetSession();
}

//--------------------------------------------------------------------------------------------------
// Transfer functions are registered with the proxy manager, which would keep them for ever.
void UnregisterFunction(vtkSMProxy* proxy)
{
  if (IsAlive(proxy))
  {
    proxy->GetSessionProxyManager()->UnRegisterProxy(proxy);
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMProxy> GetProxyOf(vtkSMProxy* proxy, const char* property)
{
  return proxy->GetProperty(property) ? vtkSMPropertyHelper(proxy, property).GetAsProxy() : nullptr;
}

//--------------------------------------------------------------------------------------------------
void SetIfDifferent(vtkSMProxy* proxy, const char* property, int value)
{
  vtkSMPropertyHelper helper(proxy, property);
  if (helper.GetNumberOfElements() != 1 || helper.GetAsInt() != value)
  {
    helper.Set(value);
  }
}

//--------------------------------------------------------------------------------------------------
const zylArrayInformation* FindNamed(
  const std::vector<vtkSmartPointer<zylArrayInformation>>& arrays, const std::string& name)
{
  for (const zylArrayInformation* array : arrays)
  {
    if (array->GetName() == name)
    {
      return array;
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
// Point arrays win over cell arrays, whatever the order of the blocks. An empty set means all.
struct TreeSearch
{
  const std::string& Name;
  const std::unordered_set<unsigned int>& Ids;
  const zylArrayInformation* OfPoints = nullptr;
  const zylArrayInformation* OfCells = nullptr;

  void Visit(const zylMultiBlockTree* node)
  {
    if (this->Ids.empty() || this->Ids.count(node->GetBlockIndex()))
    {
      this->OfPoints = FindNamed(node->PointArrays, this->Name);
      this->OfCells = this->OfCells ? this->OfCells : FindNamed(node->CellArrays, this->Name);
    }
    const unsigned int count = node->GetNumberOfChildren();
    for (unsigned int i = 0; i < count && !this->OfPoints; ++i)
    {
      this->Visit(node->GetChild(i));
    }
  }
};

//--------------------------------------------------------------------------------------------------
void CollectInnerNodes(const zylMultiBlockTree* node, std::unordered_set<int>& inner)
{
  const unsigned int count = node->GetNumberOfChildren();
  if (!node->IsLeaf())
  {
    inner.insert(static_cast<int>(node->GetBlockIndex()));
    for (unsigned int i = 0; i < count; ++i)
    {
      CollectInnerNodes(node->GetChild(i), inner);
    }
  }
}

//--------------------------------------------------------------------------------------------------
const vtkZYLBlockInformation::Array* FindNamed(
  const std::vector<vtkZYLBlockInformation::Array>& arrays, const std::string& name)
{
  const auto found = std::find_if(
    arrays.begin(), arrays.end(), [&name](const auto& array) { return array.Name == name; });
  return found == arrays.end() ? nullptr : &*found;
}

//--------------------------------------------------------------------------------------------------
// The root has the union of all blocks' arrays. Point arrays (association 0) win.
const vtkZYLBlockInformation::Array* FindInBlocks(
  const std::vector<vtkZYLBlockInformation::Node>& blocks, const std::string& name,
  int& association)
{
  if (blocks.empty())
  {
    return nullptr;
  }
  const vtkZYLBlockInformation::Array* ofPoints = FindNamed(blocks.front().PointArrays, name);
  association = ofPoints ? 0 : 1;
  return ofPoints ? ofPoints : FindNamed(blocks.front().CellArrays, name);
}

//--------------------------------------------------------------------------------------------------
// Append (id, 1) for every leaf that is flagged itself or below a flagged node.
void AppendLeaves(const zylMultiBlockTree* node, const std::unordered_set<int>& flagged,
  bool inside, std::vector<int>& pairs)
{
  const int id = static_cast<int>(node->GetBlockIndex());
  inside = inside || flagged.count(id) > 0;
  const unsigned int count = node->GetNumberOfChildren();
  if (node->IsLeaf())
  {
    if (inside)
    {
      pairs.insert(pairs.end(), { id, 1 });
    }
    return;
  }
  for (unsigned int i = 0; i < count; ++i)
  {
    AppendLeaves(node->GetChild(i), flagged, inside, pairs);
  }
}

//--------------------------------------------------------------------------------------------------
bool IsLeaf(const std::vector<vtkZYLBlockInformation::Node>& nodes, std::size_t i)
{
  return nodes[i].NumberOfChildren == 0 || nodes[i + 1].IsPiece;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylPipeline::zylPipeline()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
}

//--------------------------------------------------------------------------------------------------
zylPipeline::~zylPipeline()
{
  this->zylPipeline::FreeResources(nullptr);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylPipeline::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::PrintProperties(std::ostream& os)
{
  this->Properties->PrintProperties(os);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetDataSource(vtkSMSourceProxy* source)
{
  if (source == this->DataSource)
  {
    return;
  }
  this->DataSource = source;
  if (IsAlive(this->Filter))
  {
    zylConnect(this->Filter, source);
  }
  this->ShownArray.clear();
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylPipeline::GetDataSource()
{
  return this->DataSource;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetBlockTree(const zylMultiBlockTree* tree)
{
  this->BlockTree = tree;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::Update(zylView*)
{
  this->UpdateLighting();
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::FreeResources(zylView*)
{
  this->ReleaseLookupTable();
  zylUnregister(this->Representation);
  this->Representation = nullptr;
  zylUnregister(this->Filter);
  this->Filter = nullptr;
  this->ShownBlocks.clear();
  this->ShownTreeTime = 0;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylPipeline::GetColorVariableInformation()
{
  if (!IsAlive(this->DataSource) || !this->PropertyExists("ColorVariableName"))
  {
    return nullptr;
  }
  std::string name;
  int component = -1;
  SplitVariableName(this->Properties->GetString("ColorVariableName"), name, component);
  zylUpdatePipeline(this->DataSource, zylTimeController::GetInstance()->GetActiveTime());
  const auto blocks = zylParaView::GetBlocks(this->DataSource);
  int association = 0;
  const vtkZYLBlockInformation::Array* found = FindInBlocks(blocks, name, association);
  if (!found)
  {
    return nullptr;
  }
  auto array = vtkSmartPointer<zylArrayInformation>::New();
  array->SetName(found->Name);
  array->SetNumberOfComponents(static_cast<unsigned int>(found->NumberOfComponents));
  for (unsigned int c = 0; 2 * c + 1 < found->Ranges.size(); ++c)
  {
    double range[2] = { found->Ranges[2 * c], found->Ranges[2 * c + 1] };
    array->SetComponentRange(c, range);
  }
  return array;
}

//--------------------------------------------------------------------------------------------------
vtkSMPVRepresentationProxy* zylPipeline::GetRepresentation()
{
  return this->Representation;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::IsVisible()
{
  return this->Properties->GetBool("Visibility") && !this->Properties->GetBool("ForceHidden");
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::AnyBlocksVisible()
{
  const zylProperty* blocks = this->Properties->GetProperty("BlockVisibility");
  if (!blocks || !this->IsVisible())
  {
    return false;
  }
  const int* pairs = blocks->GetIntElements();
  for (unsigned int i = 1; pairs && i < blocks->GetNumberOfElements(); i += 2)
  {
    if (pairs[i] != 0)
    {
      return true;
    }
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::GetBounds(double bounds[6])
{
  this->GatherBounds(false, bounds);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::GetVisibleBounds(double bounds[6])
{
  this->GatherBounds(true, bounds);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SplitVariableName(
  const std::string& full, std::string& name, std::string& component)
{
  const std::string whole = full; // the results may be the argument itself
  const std::size_t mark = whole.rfind('_');
  const std::string suffix = mark == std::string::npos ? "" : whole.substr(mark + 1);
  const bool known = suffix == "X" || suffix == "Y" || suffix == "Z" || suffix == "Magnitude";
  name = known ? whole.substr(0, mark) : whole;
  component = known ? suffix : "";
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SplitVariableName(const std::string& full, std::string& name, int& component)
{
  std::string suffix;
  SplitVariableName(full, name, suffix);
  component = suffix.size() == 1 ? suffix[0] - 'X' : -1;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::InitializeProperties()
{
  zylDeclare(this->Properties, BaseRows);
  zylDeclare(this->Properties, LegendRows);
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::PropertyExists(const std::string& name)
{
  return this->Properties->Has(name);
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::EnsureFilter(const char* name)
{
  if (!this->Filter && IsAlive(this->DataSource) && this->AnyBlocksVisible())
  {
    this->Filter = zylProxyBuilder(this->DataSource->GetSessionProxyManager(), "filters", name)
                     .Input(this->DataSource)
                     .Make();
  }
  return this->DataSource && IsAlive(this->Filter);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylPipeline::ExtractVisibleBlocks()
{
  if (!this->EnsureFilter("ExtractBlock"))
  {
    return this->DataSource;
  }
  const std::vector<int> visible = this->GetVisibleLeaves();
  vtkSMPropertyHelper(this->Filter, "PruneOutput").Set(0);
  vtkSMPropertyHelper(this->Filter, "MaintainStructure").Set(1);
  vtkSMPropertyHelper indices(this->Filter, "BlockIndices");
  if (indices.GetIntArray() != visible)
  {
    indices.SetNumberOfElements(static_cast<unsigned int>(visible.size()));
    indices.Set(visible.data(), static_cast<unsigned int>(visible.size()));
  }
  this->Filter->UpdateVTKObjects();
  return this->Filter;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::EnsureRepresentation(zylView* view, vtkSMSourceProxy* source)
{
  if (!view || !IsAlive(source))
  {
    return false;
  }
  if (!this->Representation && this->AnyBlocksVisible())
  {
    auto proxy =
      zylProxyBuilder(source->GetSessionProxyManager(), "representations", "GeometryRepresentation")
        .Input(source)
        .Set("UseSeparateColorMap", 1)
        .MakeRepresentation(view->GetProxy());
    this->Representation = vtkSMPVRepresentationProxy::SafeDownCast(proxy);
    this->ColorMapTime = 0;
  }
  if (!IsAlive(this->Representation))
  {
    return false;
  }
  zylConnect(this->Representation, source);
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateLighting()
{
  if (IsAlive(this->Representation))
  {
    zylPush(this->Properties, BaseRows, this->Representation);
    this->Representation->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetRepresentationType(const char* type)
{
  vtkSMPropertyHelper helper(this->Representation, "Representation");
  if (std::string(type) != helper.GetAsString())
  {
    helper.Set(type);
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetSolidColor()
{
  zylProperty* color = this->Properties->GetProperty("Color");
  zylPushProperty(color, this->Representation, "AmbientColor");
  zylPushProperty(color, this->Representation, "DiffuseColor");
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateColoring()
{
  if (this->PropertyExists("ColorMode") && this->Properties->GetInt("ColorMode") != 0)
  {
    this->SetColorVariableAndComponent();
    return;
  }
  if (this->LookupTable || this->Representation->GetUsingScalarColoring())
  {
    vtkSMPropertyHelper(this->Representation, "ColorArrayName").SetInputArrayToProcess(0, "");
    this->ReleaseLookupTable();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetColorVariableAndComponent()
{
  const std::string full = this->Properties->GetString("ColorVariableName");
  ColorArray array{ "", -1, -1 };
  SplitVariableName(full, array.Name, array.Component);
  int components = 0;
  if (this->LookupTable && full == this->ShownArray)
  {
    const zylProperty* blocks = this->Properties->GetProperty("BlockVisibility");
    const bool sameBlocks = std::equal(this->ShownBlocks.begin(), this->ShownBlocks.end(),
      blocks->GetIntElements(), blocks->GetIntElements() + blocks->GetNumberOfElements());
    if (sameBlocks || !this->FindArrayInTree(array.Name, array.Association, components))
    {
      return;
    }
  }
  else if (!this->FindArray(array.Name, array.Association, components))
  {
    vtkLogF(WARNING, "point or cell data named '%s' could not be found", array.Name.c_str());
    return;
  }
  if (this->LookupTable && full == this->ShownArray && array.Association == this->ShownAssociation)
  {
    return;
  }
  this->SetScalarColoring(array);
  this->ShownArray = full;
  this->ShownAssociation = array.Association;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetScalarColoring(const ColorArray& array)
{
  // As ParaView's SetScalarColoring(), which would ask the server for all about the data.
  const std::string table =
    std::string("Separate_") + this->Representation->GetGlobalIDAsString() + "_" + array.Name;
  vtkNew<vtkSMTransferFunctionManager> manager;
  vtkSmartPointer<vtkSMProxy> lut = manager->GetColorTransferFunction(
    table.c_str(), this->Representation->GetSessionProxyManager());
  if (!lut)
  {
    return;
  }
  if (lut != this->LookupTable)
  {
    this->ReleaseLookupTable();
    this->LookupTable = lut;
  }
  vtkSMPropertyHelper(lut, "VectorMode").Set(array.Component < 0 ? "Magnitude" : "Component");
  vtkSMPropertyHelper(lut, "VectorComponent").Set(std::max(array.Component, 0));
  lut->UpdateVTKObjects();
  vtkSMPropertyHelper(this->Representation, "ColorArrayName")
    .SetInputArrayToProcess(array.Association, array.Name.c_str());
  vtkSMPropertyHelper(this->Representation, "LookupTable").Set(lut);
  this->Representation->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::ReleaseLookupTable()
{
  // Unregistering a proxy takes its consumers along, so cut the ties first.
  if (IsAlive(this->Representation))
  {
    vtkSMPropertyHelper(this->Representation, "LookupTable").RemoveAllValues();
    this->Representation->UpdateVTKObjects();
  }
  zylUnregister(this->ScalarBar);
  this->ScalarBar = nullptr;
  if (IsAlive(this->LookupTable))
  {
    UnregisterFunction(GetProxyOf(this->LookupTable, "ScalarOpacityFunction"));
    UnregisterFunction(GetProxyOf(this->LookupTable, "TransferFunction2D"));
    UnregisterFunction(this->LookupTable);
  }
  this->LookupTable = nullptr;
  this->ShownArray.clear();
  this->ShownAssociation = -1;
  this->ColorMapTime = 0;
  this->ColorMapHash = 0;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateColorMap()
{
  const vtkMTimeType time = this->GetColorMapMTime();
  if (!this->LookupTable || time <= this->ColorMapTime)
  {
    return;
  }
  // Copying a collection advances the times of all its properties.
  const std::uint64_t hash = this->GetColorMapHash();
  if (this->ColorMapTime != 0 && hash == this->ColorMapHash)
  {
    this->ColorMapTime = time;
    return;
  }
  const std::string preset = this->Properties->GetString("ColorMapName");
  vtkNew<vtkSMTransferFunctionPresets> presets;
  if (!presets->HasPreset(preset.c_str()) ||
    !vtkSMTransferFunctionProxy::ApplyPreset(this->LookupTable, preset.c_str()))
  {
    vtkLogF(WARNING, "No color map named '%s' exists", preset.c_str());
  }
  const double* range = this->Properties->GetDoubleElements("ColorMapRange");
  if (!range || !std::isfinite(range[0]) || !std::isfinite(range[1]) || range[1] < range[0] ||
    !vtkSMTransferFunctionProxy::RescaleTransferFunction(this->LookupTable, range[0], range[1]))
  {
    vtkLogF(WARNING, "The color map range [%g, %g] is not valid", range ? range[0] : 0.0,
      range ? range[1] : 0.0);
  }
  const bool banded =
    this->PropertyExists("ColorMapStyle") && this->Properties->GetInt("ColorMapStyle") == 0;
  const int colors = banded ? this->Properties->GetInt("NumberOfColors") : SmoothTableSize;
  vtkSMPropertyHelper(this->LookupTable, "Discretize").Set(banded ? 1 : 0);
  vtkSMPropertyHelper(this->LookupTable, "NumberOfTableValues").Set(std::max(colors, 1));
  this->LookupTable->UpdateVTKObjects();
  this->ColorMapTime = time;
  this->ColorMapHash = hash;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylPipeline::GetBlockPairs()
{
  const zylProperty* blocks = this->Properties->GetProperty("BlockVisibility");
  const int* elements = blocks->GetIntElements();
  std::vector<int> pairs(elements, elements + blocks->GetNumberOfElements());
  if (!this->InnerNodesMeanLeaves || !this->BlockTree)
  {
    return pairs;
  }
  std::unordered_set<int> flagged;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
  {
    if (pairs[i + 1] != 0)
    {
      flagged.insert(pairs[i]);
    }
  }
  pairs.clear();
  AppendLeaves(this->BlockTree, flagged, false, pairs);
  return pairs;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateVisibility()
{
  SetIfDifferent(this->Representation, "Visibility", this->AnyBlocksVisible() ? 1 : 0);
  const std::vector<int> wanted = this->GetBlockPairs();
  const vtkMTimeType treeTime =
    this->BlockTree ? const_cast<zylMultiBlockTree*>(this->BlockTree)->GetMTime() : 0;
  if (wanted != this->ShownBlocks || treeTime != this->ShownTreeTime)
  {
    zylParaView::SetBlockVisibility(
      this->Representation, wanted.data(), wanted.size(), this->BlockTree);
    this->ShownBlocks = wanted;
    this->ShownTreeTime = treeTime;
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::HideColorLegendIfNeeded(zylView*)
{
  const bool wanted = this->PropertyExists("ColorLegendVisibility") &&
    this->Properties->GetBool("ColorLegendVisibility") && this->AnyBlocksVisible();
  if (!wanted && IsAlive(this->ScalarBar))
  {
    SetIfDifferent(this->ScalarBar, "Visibility", 0);
    SetIfDifferent(this->ScalarBar, "Enabled", 0);
    this->ScalarBar->UpdateVTKObjects();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateColorLegend(zylView* view)
{
  if (this->LookupTable && this->Properties->GetInt("ColorMode") == 1 &&
    this->Properties->GetBool("ColorLegendVisibility") && this->AnyBlocksVisible() &&
    this->ShowScalarBar(view))
  {
    this->SetupColorLegend(this->Representation, view->GetProxy());
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetupColorLegend(vtkSMProxy* representation, vtkSMProxy* view)
{
  vtkNew<vtkSMTransferFunctionManager> manager;
  vtkSMProxy* bar =
    manager->GetScalarBarRepresentation(GetProxyOf(representation, "LookupTable"), view);
  if (!bar)
  {
    vtkWarningMacro("Failed to locate/create ScalarBar representation.");
    return;
  }
  const std::string title = this->Properties->GetString("ColorLegendTitle");
  std::string component = this->Properties->GetString("ColorLegendComponentTitle");
  if (title.empty())
  {
    std::string name;
    SplitVariableName(this->Properties->GetString("ColorVariableName"), name, component);
  }
  else
  {
    vtkSMPropertyHelper(bar, "Title").Set(title.c_str());
  }
  vtkSMPropertyHelper(bar, "ComponentTitle").Set(component.c_str());
  zylPush(this->Properties, LegendRows, bar);
  bar->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateColors(zylView* view)
{
  this->HideColorLegendIfNeeded(view);
  this->SetSolidColor();
  this->UpdateColoring();
  this->UpdateColorMap();
}

//--------------------------------------------------------------------------------------------------
vtkMTimeType zylPipeline::GetColorMapMTime()
{
  vtkMTimeType latest = 0;
  for (const char* name : ColorMapSettings)
  {
    zylProperty* property = this->Properties->GetProperty(name);
    latest = std::max(latest, property ? property->GetMTime() : 0);
  }
  return latest;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::FindArray(const std::string& name, int& association, int& components)
{
  if (this->FindArrayInTree(name, association, components))
  {
    return true;
  }
  if (name.empty() || !IsAlive(this->DataSource))
  {
    return false;
  }
  zylUpdatePipeline(this->DataSource, zylTimeController::GetInstance()->GetActiveTime());
  const auto blocks = zylParaView::GetBlocks(this->DataSource);
  const vtkZYLBlockInformation::Array* found = FindInBlocks(blocks, name, association);
  components = found ? found->NumberOfComponents : 0;
  return found != nullptr;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylPipeline::GetVisibleLeaves()
{
  std::unordered_set<int> inner;
  if (this->BlockTree)
  {
    CollectInnerNodes(this->BlockTree, inner);
  }
  std::vector<int> visible;
  const zylProperty* blocks = this->Properties->GetProperty("BlockVisibility");
  const int* pairs = blocks->GetIntElements();
  for (unsigned int i = 0; i + 1 < blocks->GetNumberOfElements(); i += 2)
  {
    if (pairs[i + 1] != 0 && inner.count(pairs[i]) == 0)
    {
      visible.push_back(pairs[i]);
    }
  }
  return visible;
}

//--------------------------------------------------------------------------------------------------
vtkSMProxy* zylPipeline::ShowScalarBar(zylView* view)
{
  if (!IsAlive(this->ScalarBar))
  {
    vtkNew<vtkSMTransferFunctionManager> manager;
    this->ScalarBar = manager->GetScalarBarRepresentation(this->LookupTable, view->GetProxy());
    if (!this->ScalarBar)
    {
      vtkWarningMacro("Failed to locate/create ScalarBar representation.");
      return nullptr;
    }
    std::string name;
    int component = -1;
    SplitVariableName(this->ShownArray, name, component);
    vtkSMPropertyHelper(this->ScalarBar, "Title").Set(name.c_str());
  }
  SetIfDifferent(this->ScalarBar, "Enabled", 1);
  SetIfDifferent(this->ScalarBar, "Visibility", 1);
  return this->ScalarBar;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::FindArrayInTree(const std::string& name, int& association, int& components)
{
  if (name.empty() || !this->BlockTree)
  {
    return false;
  }
  std::unordered_set<unsigned int> ids;
  const zylProperty* blocks = this->Properties->GetProperty("BlockVisibility");
  const int* pairs = blocks ? blocks->GetIntElements() : nullptr;
  for (unsigned int i = 0; pairs && i + 1 < blocks->GetNumberOfElements(); i += 2)
  {
    ids.insert(static_cast<unsigned int>(pairs[i]));
  }
  TreeSearch search{ name, ids };
  search.Visit(this->BlockTree);
  const zylArrayInformation* found = search.OfPoints ? search.OfPoints : search.OfCells;
  association = search.OfPoints ? 0 : 1;
  components = found ? static_cast<int>(found->GetNumberOfComponents()) : 0;
  return found != nullptr;
}

//--------------------------------------------------------------------------------------------------
std::uint64_t zylPipeline::GetColorMapHash()
{
  vtkNew<zylPropertyCollection> settings;
  for (const char* name : ColorMapSettings)
  {
    if (zylProperty* property = this->Properties->GetProperty(name))
    {
      settings->MakeInt(name)->DeepCopy(property);
    }
  }
  return settings->GetHashValue();
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::GatherBounds(bool visibleOnly, double bounds[6])
{
  vtkBoundingBox box;
  if (IsAlive(this->DataSource) && (!visibleOnly || this->AnyBlocksVisible()))
  {
    std::unordered_set<int> shown;
    const std::vector<int> pairs = this->GetBlockPairs();
    for (std::size_t i = 0; visibleOnly && i + 1 < pairs.size(); i += 2)
    {
      if (pairs[i + 1] != 0)
      {
        shown.insert(pairs[i]);
      }
    }
    zylUpdatePipeline(this->DataSource, zylTimeController::GetInstance()->GetActiveTime());
    const auto nodes = zylParaView::GetBlocks(this->DataSource);
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
      const auto& b = nodes[i].Bounds;
      if (IsLeaf(nodes, i) && b[0] <= b[1] && (!visibleOnly || shown.count(static_cast<int>(i))))
      {
        box.AddBounds(b);
      }
    }
  }
  box.GetBounds(bounds);
}
