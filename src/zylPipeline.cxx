#include "zylPipeline.h"

#include "Display/zylBlockFlags.h"
#include "Display/zylColoring.h"
#include "Display/zylGlyphMapper.h"
#include "Display/zylVariable.h"
#include "ParaView/zylBlockExtractor.h"
#include "ParaView/zylBlockMapper.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylArrayInformation.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <vtkBoundingBox.h>
#include <vtkLogger.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSourceProxy.h>

namespace {
constexpr zylPropertyRow VisibilityRows[] = {
  zylPropertyRow::Bool("Visibility", false).NotInHash(),
  zylPropertyRow::Bool("ForceHidden", false).NotInHash(),
  zylPropertyRow::Ints("BlockVisibility").NotInHash(),
};

constexpr zylPropertyRow LightingRows[] = {
  zylPropertyRow::Double("Ambient", 0.0).To("Ambient"),
  zylPropertyRow::Double("Diffuse", 1.0).To("Diffuse"),
  zylPropertyRow::Double("Specular", 0.0).To("Specular"),
  zylPropertyRow::Double3("SpecularColor", 1.0, 1.0, 1.0).To("SpecularColor"),
  zylPropertyRow::Double("SpecularPower", 100.0).To("SpecularPower"),
};

//--------------------------------------------------------------------------------------------------
zylBlockFlags FlagsOf(zylPropertyCollection* settings)
{
  return zylBlockFlags(settings->GetProperty("BlockVisibility"));
}

//--------------------------------------------------------------------------------------------------
std::vector<vtkZYLBlockInformation::Node> AskForBlocks(vtkSMSourceProxy* source)
{
  zylUpdatePipeline(source, zylTimeController::GetInstance()->GetActiveTime());
  return zylParaView::GetBlocks(source);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylPipeline::zylPipeline()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
  , Coloring(std::make_unique<zylColoring>())
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
  if (zylIsAlive(this->Filter))
  {
    zylConnect(this->Filter, source);
  }
  this->ShownVariable.clear();
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylPipeline::GetDataSource()
{
  return this->DataSource;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetBlockTree(zylMultiBlockTree* tree)
{
  this->BlockTree = tree;
}

//--------------------------------------------------------------------------------------------------
vtkMTimeType zylPipeline::GetTreeMTime()
{
  return this->BlockTree ? this->BlockTree->GetMTime() : 0;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::FreeResources(zylView*)
{
  this->Coloring->Release(this->Representation);
  zylUnregister(this->Representation);
  this->Representation = nullptr;
  zylUnregister(this->Filter);
  this->Filter = nullptr;
  this->ShownVariable.clear();
  this->ShownBlocks.clear();
  this->ShownTreeTime = 0;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylPipeline::GetColorVariableInformation()
{
  std::vector<int> blocks = FlagsOf(this->Properties).GetBlocks();
  return this->GetColorVariableInformation(blocks.empty() ? std::vector<int>{ 0 } : blocks);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylArrayInformation> zylPipeline::GetColorVariableInformation(
  const std::vector<int>& blocks)
{
  const zylProperty* name = this->Properties->GetProperty("ColorVariableName");
  if (!name || blocks.empty() || !zylIsUsable(this->DataSource, "GetColorVariableInformation()"))
  {
    return nullptr;
  }
  return zylFindVariable(
    name->GetString(), zylVariableName::Component, AskForBlocks(this->DataSource), blocks)
    .Information;
}

//--------------------------------------------------------------------------------------------------
vtkSMPVRepresentationProxy* zylPipeline::GetRepresentation()
{
  return this->Representation;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::IsVisible()
{
  const zylProperty* visible = this->Properties->GetProperty("Visibility");
  const zylProperty* hidden = this->Properties->GetProperty("ForceHidden");
  return visible && visible->GetBool() && !(hidden && hidden->GetBool());
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::AnyBlocksVisible()
{
  return this->IsVisible() && FlagsOf(this->Properties).AnyVisible();
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
void zylPipeline::GatherBounds(bool visibleOnly, double bounds[6])
{
  vtkBoundingBox box;
  if ((!visibleOnly || this->AnyBlocksVisible()) && zylIsUsable(this->DataSource, "GetBounds()"))
  {
    const auto nodes = AskForBlocks(this->DataSource);
    const std::vector<bool> shown = FlagsOf(this->Properties).Resolve(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
      const auto& b = nodes[i].Bounds;
      if (zylIsLeaf(nodes, i) && b[0] <= b[1] && (!visibleOnly || shown[i]))
      {
        box.AddBounds(b);
      }
    }
  }
  box.GetBounds(bounds);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SplitVariableName(
  const std::string& full, std::string& name, std::string& component)
{
  const zylVariable variable = zylSplitVariable(full); // the results may be the argument itself
  name = variable.Array;
  component = variable.Suffix;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SplitVariableName(const std::string& full, std::string& name, int& component)
{
  const zylVariable variable = zylSplitVariable(full);
  name = variable.Array;
  component = variable.Component;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::InitializeProperties()
{
  zylDeclare(this->Properties, VisibilityRows);
  zylDeclare(this->Properties, LightingRows);
  zylColoring::DeclareMap(this->Properties);
  zylColoring::DeclareLegend(this->Properties);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::RestoreProperties()
{
  this->InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::Update(zylView* view)
{
  this->RestoreProperties();
  vtkSMSourceProxy* source = view ? this->PrepareSource() : nullptr;
  if (!this->EnsureRepresentation(view, source))
  {
    return;
  }
  zylPush(this->Properties, LightingRows, this->Representation);
  vtkSMPropertyHelper type(this->Representation, "Representation");
  if (std::string(this->GetRepresentationType()) != type.GetAsString())
  {
    type.Set(this->GetRepresentationType());
  }
  this->UpdateColors();
  this->UpdateVisibility();
  this->PushSettings();
  if (this->Coloring->IsByArray() && this->AnyBlocksVisible() &&
    this->Properties->GetBool("ColorLegendVisibility"))
  {
    this->SetupColorLegend(this->Representation, view->GetProxy());
  }
  this->Representation->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylPipeline::PrepareSource()
{
  return this->DataSource;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::EnsureFilter(const char* name)
{
  if (!this->Filter && this->AnyBlocksVisible() && zylIsUsable(this->DataSource, "Update()"))
  {
    this->Filter = zylProxyBuilder(this->DataSource->GetSessionProxyManager(), "filters", name)
                     .Input(this->DataSource)
                     .Make();
  }
  return this->DataSource && zylIsUsable(this->Filter, "Update()");
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylPipeline::ExtractVisibleBlocks()
{
  const std::vector<int> visible = FlagsOf(this->Properties).GetVisibleLeaves(this->BlockTree);
  if (!this->BlockTree && visible == std::vector<int>{ 0 })
  {
    return this->DataSource; // a single block, from which the stage cannot take any
  }
  if (!this->Filter && this->AnyBlocksVisible() && zylIsUsable(this->DataSource, "Update()"))
  {
    this->Filter = zylBlockExtractor(this->DataSource).Make();
  }
  if (!this->DataSource || !zylIsAlive(this->Filter))
  {
    return this->DataSource;
  }
  zylExtractBlocks(this->Filter, visible);
  return this->Filter;
}

//--------------------------------------------------------------------------------------------------
bool zylPipeline::EnsureRepresentation(zylView* view, vtkSMSourceProxy* source)
{
  if (!view || !zylIsUsable(source, "Update()") || !zylIsUsable(view->GetProxy(), "Update()"))
  {
    return false;
  }
  if (!this->Representation && this->AnyBlocksVisible())
  {
    const zylGlyphMapperScope glyphs;
    auto proxy =
      zylProxyBuilder(source->GetSessionProxyManager(), "representations", "GeometryRepresentation")
        .Input(source)
        .Set("UseSeparateColorMap", 1)
        .MakeRepresentation(view->GetProxy());
    this->Representation = vtkSMPVRepresentationProxy::SafeDownCast(proxy);
    zylBlockMapper::Use(proxy);
  }
  if (!zylIsAlive(this->Representation))
  {
    return false;
  }
  zylConnect(this->Representation, source);
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetSolidColor()
{
  zylProperty* color = this->Properties->GetProperty("Color");
  zylPushProperty(color, this->Representation, "AmbientColor");
  zylPushProperty(color, this->Representation, "DiffuseColor");
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateColors()
{
  this->HideColorLegendIfNeeded();
  this->SetSolidColor();
  if (this->Properties->GetInt("ColorMode") != 0)
  {
    this->SetColorVariableAndComponent();
  }
  else
  {
    this->Coloring->ColorSolid(this->Representation);
    this->ShownVariable.clear();
  }
  this->Coloring->UpdateMap(this->Properties);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetColorVariableAndComponent()
{
  const std::string name = this->Properties->GetString("ColorVariableName");
  std::vector<int> blocks = FlagsOf(this->Properties).GetBlocks();
  const vtkMTimeType treeTime = this->GetTreeMTime();
  if (this->BlockTree && this->Coloring->IsByArray() && name == this->ShownVariable &&
    blocks == this->ColoredBlocks && treeTime == this->ColoredTreeTime)
  {
    return;
  }
  const zylVariable variable = this->FindVariable(name, zylVariableName::Component);
  if (!variable.IsFound())
  {
    vtkLogF(WARNING, "point or cell data named '%s' could not be found", variable.Array.c_str());
    this->ShownVariable.clear();
    if (!this->KeepsLastVariable)
    {
      this->Coloring->ColorSolid(this->Representation);
    }
    return;
  }
  this->Coloring->ColorBy(this->Representation, variable);
  this->ShownVariable = name;
  this->ColoredBlocks = std::move(blocks);
  this->ColoredTreeTime = treeTime;
}

//--------------------------------------------------------------------------------------------------
zylVariable zylPipeline::FindVariable(const std::string& name, zylVariableName form)
{
  const std::vector<int> blocks = FlagsOf(this->Properties).GetBlocks();
  zylVariable variable = zylFindVariable(name, form, this->BlockTree, blocks);
  if (!variable.IsFound() && !name.empty() && zylIsAlive(this->DataSource))
  {
    variable = zylFindVariable(name, form, AskForBlocks(this->DataSource), blocks);
  }
  return variable;
}

//--------------------------------------------------------------------------------------------------
vtkMTimeType zylPipeline::GetColorMapMTime()
{
  return zylColoring::GetMapMTime(this->Properties);
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::HideColorLegendIfNeeded()
{
  if (!this->Properties->GetBool("ColorLegendVisibility") || !this->AnyBlocksVisible())
  {
    this->Coloring->HideLegend();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::SetupColorLegend(vtkSMProxy*, vtkSMProxy* view)
{
  if (!this->Coloring->ShowLegend(view, this->Properties))
  {
    vtkWarningMacro("Failed to locate/create ScalarBar representation.");
  }
}

//--------------------------------------------------------------------------------------------------
void zylPipeline::UpdateVisibility()
{
  vtkSMPropertyHelper(this->Representation, "Visibility").Set(this->AnyBlocksVisible() ? 1 : 0);
  const zylBlockFlags flags = FlagsOf(this->Properties);
  std::vector<int> pairs = flags.GetPairs();
  const vtkMTimeType treeTime = this->GetTreeMTime();
  if (pairs != this->ShownBlocks || treeTime != this->ShownTreeTime)
  {
    zylParaView::SetBlockVisibility(this->Representation, flags.Resolve(this->BlockTree));
    this->ShownBlocks = std::move(pairs);
    this->ShownTreeTime = treeTime;
  }
}
