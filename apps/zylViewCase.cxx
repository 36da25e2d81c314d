#include "zylViewCase.h"

#include "zylViewBlocks.h"
#include "zylViewDemo.h"
#include "zylViewDerived.h"
#include "zylViewLook.h"
#include "zylViewMessages.h"
#include "zylViewProperties.h"
#include "zylViewSettings.h"

#include <algorithm>
#include <cstdint>
#include <map>

#include <zylArrayInformation.h>
#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylMessages.h>
#include <zylPropertyCollection.h>
#include <zylView.h>

#include <vtkCollection.h>
#include <vtkNew.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMReaderReloadHelper.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
zylViewCase::zylViewCase(zylViewOptions options, vtkSmartPointer<zylDataSet> dataset)
  : Options(std::move(options))
  , DataSet(std::move(dataset))
{
}

//--------------------------------------------------------------------------------------------------
zylViewCase::~zylViewCase() = default;

//--------------------------------------------------------------------------------------------------
zylDataSet* zylViewCase::GetDataSet()
{
  return this->DataSet;
}

//--------------------------------------------------------------------------------------------------
zylBoundaryRepresentation* zylViewCase::GetBoundary()
{
  return this->Boundary;
}

//--------------------------------------------------------------------------------------------------
zylViewDerivedSurfaces& zylViewCase::GetDerived()
{
  return *this->Derived;
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::Define()
{
  for (const auto& [name, expression] : this->Options.Definitions)
  {
    this->DataSet->DefineDerivedPointVariable(name, expression);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::ReadBlocks()
{
  if (this->Blocks)
  {
    *this->Blocks = zylViewBlocks(this->DataSet); // others hold on to it
    return;
  }
  this->Blocks = std::make_unique<zylViewBlocks>(this->DataSet);
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::ChooseLook()
{
  if (this->Options.Demo)
  {
    zylFillDemoOptions(*this->Blocks, this->DataSet, this->Options);
  }
  else if (!this->Options.Plain)
  {
    zylFillLook(*this->Blocks, this->DataSet, this->Options);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::Derive()
{
  this->Derived =
    std::make_unique<zylViewDerivedSurfaces>(this->Options, *this->Blocks, this->DataSet);
  this->Derived->Make();
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::MakeBoundary()
{
  this->Boundary = vtkSmartPointer<zylBoundaryRepresentation>::New();
  this->Boundary->SetDataSet(this->DataSet);
  if (!this->Options.Restored)
  {
    zylViewSettings(this->Options, *this->Blocks, this->Boundary).Apply();
  }
  const auto leaves = this->Blocks->GetLeaves();
  this->Known.insert(leaves.begin(), leaves.end());
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::AddTo(zylView* view)
{
  view->AddRepresentation(this->Boundary); // updates it
  if (this->Options.Restored)
  {
    this->Derived->AddTo(view);
    return;
  }
  if (zylViewSettings(this->Options, *this->Blocks, this->Boundary).ApplyDerivedRange())
  {
    this->Boundary->Update();
  }
  this->Derived->AddTo(view);
  if (!this->GetVariable().empty())
  {
    this->ColorRange = this->Options.Range.value_or(zylUsableRange(this->GetVariableRange()));
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::RemoveFrom(zylView* view)
{
  if (this->Derived)
  {
    this->Derived->RemoveFrom(view);
  }
  view->RemoveRepresentation(this->Boundary);
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::Update()
{
  this->Boundary->Update();
  this->Derived->Update();
}

//--------------------------------------------------------------------------------------------------
bool zylViewCase::ShowNewBlocks()
{
  const int typical = this->FindTypicalBlock();
  bool changed = false;
  for (const unsigned int leaf : this->Blocks->GetLeaves())
  {
    const auto block = static_cast<int>(leaf);
    zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(block);
    if (!this->Known.insert(leaf).second || surface == nullptr)
    {
      continue;
    }
    changed = true;
    surface->Set("Visibility", true);
    for (const zylBlockKind& kind : zylGetBlockKinds())
    {
      (this->Boundary->*kind.Get)(block)->DeepCopy((this->Boundary->*kind.Get)(typical));
    }
    const std::string variable = surface->GetString("ColorVariableName");
    if (!this->Blocks->GetArray(variable, leaf).Found && !this->Blocks->IsDerived(variable))
    {
      surface->Set("ColorMode", 0);
    }
  }
  if (changed && typical < 0) // the first of all
  {
    this->ColorBy(this->GetVariable());
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
int zylViewCase::FindTypicalBlock() const
{
  std::map<std::pair<bool, std::uint64_t>, std::pair<std::size_t, int>>
    looks; // how many, the first
  int typical = -1;
  std::size_t most = 0;
  for (const unsigned int leaf : this->Blocks->GetLeaves())
  {
    const auto block = static_cast<int>(leaf);
    zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(block);
    if (this->Known.count(leaf) > 0 && surface != nullptr)
    {
      auto& [count, first] =
        looks
          .emplace(std::pair(surface->GetBool("Visibility"), surface->GetHashValue()),
            std::pair(std::size_t(0), block))
          .first->second;
      typical = ++count > most ? first : typical;
      most = std::max(most, count);
    }
  }
  return typical;
}

//--------------------------------------------------------------------------------------------------
std::string zylViewCase::GetEmptyReason() const
{
  if (!this->Boundary->IsVisible() && this->Options.Derived.empty())
  {
    return ""; // the user wants nothing
  }
  const auto& errors = this->DataSet->GetReadErrors();
  if (this->DataSet->GetNumberOfPoints() == 0)
  {
    const std::string reason = errors.empty() ? "the data have no points" : errors.front();
    const auto colon = reason.find("drawn: "); // "Nothing can be drawn: ..."
    return zylOneLine(colon == std::string::npos ? reason : reason.substr(colon + 7));
  }
  return !this->Options.Derived.empty() ? "what is derived is empty"
    : !this->Options.Clips.empty()      ? "the clips cut everything away"
                                        : "the blocks hold nothing that has a surface";
}

//--------------------------------------------------------------------------------------------------
std::array<double, 2> zylViewCase::GetVariableRange() const
{
  std::array<double, 2> range{ 1.0, -1.0 };
  if (this->Blocks->IsDerived(this->GetVariable()))
  {
    for (const unsigned int block : this->Blocks->GetLeaves())
    {
      const auto information =
        this->Boundary->GetSurfaceColorVariableInformation(static_cast<int>(block));
      zylExtend(range, zylGetRange(information, this->GetVariable()));
    }
    for (const auto& entry : this->Derived->GetEntries())
    {
      zylExtend(range,
        zylGetRange(
          entry.Representation->GetSurfaceColorVariableInformation(), this->GetVariable()));
    }
    return range;
  }
  for (const unsigned int block : this->Blocks->GetLeaves())
  {
    // What is derived may come from any block.
    if (!this->Options.Derived.empty() ||
      this->Boundary->GetSurfaceProperties(static_cast<int>(block))->GetBool("Visibility"))
    {
      zylExtend(range, this->Blocks->GetArray(this->GetVariable(), block).Range);
    }
  }
  return range;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPropertyCollection*> zylViewCase::GetSurfaces() const
{
  std::vector<zylPropertyCollection*> all;
  for (const unsigned int block : this->Blocks->GetLeaves())
  {
    all.push_back(this->Boundary->GetSurfaceProperties(static_cast<int>(block)));
  }
  for (const auto& entry : this->Derived->GetEntries())
  {
    all.push_back(entry.Representation->GetSurfaceProperties());
  }
  return all;
}

//--------------------------------------------------------------------------------------------------
// Those with a variable or range of their own keep it.
std::vector<zylPropertyCollection*> zylViewCase::GetColored() const
{
  auto all = this->GetSurfaces();
  const auto other = [this](zylPropertyCollection* display) {
    return display->GetInt("ColorMode") != 1 ||
      display->GetString("ColorVariableName") != this->GetVariable() ||
      display->GetDouble("ColorMapRange", 0) != this->ColorRange[0] ||
      display->GetDouble("ColorMapRange", 1) != this->ColorRange[1];
  };
  all.erase(std::remove_if(all.begin(), all.end(), other), all.end());
  return all;
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::SetColorRange(const std::array<double, 2>& range)
{
  for (zylPropertyCollection* display : this->GetColored())
  {
    display->Set("ColorMapRange", range.data(), 2);
  }
  this->ColorRange = range;
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::ColorBy(const std::string& variable)
{
  const auto leaves = this->Blocks->GetLeaves();
  const auto array = this->Blocks->GetArray(variable, leaves);
  const bool derived = this->Blocks->IsDerived(variable);
  this->ShowLegend(false);
  this->Options.Array = array.Found || derived ? variable : "";
  this->Options.DirectColors = false;
  this->ColorRange = zylUsableRange(array.Range);
  const auto displays = this->GetSurfaces();
  for (std::size_t i = 0; i < displays.size(); ++i)
  {
    const bool has = derived ||
      (i < leaves.size() ? this->Blocks->GetArray(variable, leaves[i]).Found : array.Found);
    displays[i]->Set("ColorMode", 0);
    displays[i]->Set("ColorLegendTitle", "");
    displays[i]->Set("ColorLegendComponentTitle", "");
    if (has)
    {
      zylColorBy(displays[i], variable, this->ColorRange, "");
    }
  }
  if (derived) // its range is known once it is there
  {
    this->Update();
    this->SetColorRange(zylUsableRange(this->GetVariableRange()));
  }
  this->ShowLegend(!this->Options.Array.empty());
}

//--------------------------------------------------------------------------------------------------
std::string zylViewCase::DefineVariable(const std::string& name, const std::string& expression)
{
  const std::string before = this->DataSet->GetDerivedPointVariableExpression(name);
  const std::string shown = this->GetVariable();
  const auto mark = zylMessages::GetInstance()->GetCount();
  this->DataSet->DefineDerivedPointVariable(name, expression);
  bool good = !this->DataSet->GetDerivedPointVariableScript({ name }).empty();
  if (good)
  {
    this->ColorBy(name);
    this->Update();
    const auto range = this->GetVariableRange();
    good = range[0] <= range[1];
  }
  if (good)
  {
    return "";
  }
  const std::string reason = zylOneLine(zylMessages::GetInstance()->GetReason(mark));
  this->DataSet->DefineDerivedPointVariable(name, before);
  this->ColorBy(shown);
  return "the variable '" + name + "' cannot be computed" + (reason.empty() ? "" : ": " + reason);
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::RemoveVariable(const std::string& name)
{
  const bool shown = this->Blocks->IsDerived(this->GetVariable());
  this->DataSet->DefineDerivedPointVariable(name, "");
  if (shown && !this->Blocks->IsDerived(this->GetVariable()))
  {
    this->ColorBy("");
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::ShowLegend(bool shown)
{
  this->Options.Legend = shown;
  for (zylPropertyCollection* display : this->GetSurfaces())
  {
    display->Set("ColorLegendVisibility", false);
  }
  if (shown)
  {
    zylViewSettings(this->Options, *this->Blocks, this->Boundary).ApplyLegend();
    this->Derived->ShowLegend();
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::Reload()
{
  vtkNew<vtkSMReaderReloadHelper> helper;
  helper->ReloadFiles(this->DataSet->GetProxy());
  this->DataSet->Update();
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::VisitLegends(
  const std::function<void(zylRepresentation*, zylPropertyCollection*)>& visit) const
{
  zylPropertyCollection* shown = nullptr;
  for (const unsigned int block : this->Blocks->GetLeaves())
  {
    zylPropertyCollection* surface = this->Boundary->GetSurfaceProperties(static_cast<int>(block));
    shown = shown == nullptr && surface->GetBool("ColorLegendVisibility") ? surface : shown;
  }
  visit(this->Boundary, shown);
  for (const auto& entry : this->Derived->GetEntries())
  {
    visit(entry.Representation, entry.Representation->GetSurfaceProperties());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewCase::ApplyDirectColors() const
{
  const auto proxies = this->Boundary->GetPVRepresentations();
  for (int i = 0; i < proxies->GetNumberOfItems(); ++i)
  {
    auto proxy = vtkSMProxy::SafeDownCast(proxies->GetItemAsObject(i));
    vtkSMPropertyHelper(proxy, "MapScalars", true).Set(this->Options.DirectColors ? 0 : 1);
    proxy->UpdateVTKObjects();
  }
}
