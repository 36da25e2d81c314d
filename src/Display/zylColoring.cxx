#include "Display/zylColoring.h"

#include "Display/zylVariable.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <cmath>

#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSMProperty.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMTransferFunctionManager.h>
#include <vtkSMTransferFunctionPresets.h>
#include <vtkSMTransferFunctionProxy.h>

namespace {
constexpr char ParaViewsOwn[] = "Cool to Warm";

constexpr zylPropertyRow MapRows[] = {
  zylPropertyRow::Int("ColorMode", 0),
  zylPropertyRow::Double3("Color", 1.0, 1.0, 1.0),
  zylPropertyRow::String("ColorVariableName", ""),
  zylPropertyRow::String("ColorMapName", "Cool to Warm"),
  zylPropertyRow::Double2("ColorMapRange", 0.0, 1.0),
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

constexpr const char* MapSettings[] = { "ColorVariableName", "ColorMapName", "ColorMapRange",
  "ColorMapStyle", "NumberOfColors" };

constexpr int SmoothTableSize = 256;

// What color maps may bring along, and others leave as it is.
constexpr const char* MapProperties[] = { "RGBPoints", "ColorSpace", "HSVWrap", "NanColor",
  "NanOpacity", "UseBelowRangeColor", "BelowRangeColor", "UseAboveRangeColor", "AboveRangeColor",
  "IndexedLookup", "IndexedColors", "IndexedOpacities", "Annotations", "UseLogScale" };

//--------------------------------------------------------------------------------------------------
// Transfer functions are registered with the proxy manager, which would keep them for ever.
void UnregisterFunction(vtkSMProxy* proxy)
{
  if (zylIsAlive(proxy))
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
std::uint64_t GetMapHash(zylPropertyCollection* settings)
{
  vtkNew<zylPropertyCollection> map;
  for (const char* name : MapSettings)
  {
    if (zylProperty* property = settings->GetProperty(name))
    {
      map->MakeInt(name)->DeepCopy(property);
    }
  }
  return map->GetHashValue();
}

//--------------------------------------------------------------------------------------------------
// A diverging map goes from one color over white to another. Some presets list all their colors and
// call themselves diverging as well: then white would come between any two of different hue.
void KeepListedColors(vtkSMProxy* table)
{
  constexpr int diverging = 3;
  constexpr unsigned int numbers = 4; // of a control point
  vtkSMPropertyHelper space(table, "ColorSpace");
  if (space.GetAsInt() == diverging &&
    vtkSMPropertyHelper(table, "RGBPoints").GetNumberOfElements() > 3 * numbers)
  {
    space.Set(0); // RGB
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylColoring::DeclareMap(zylPropertyCollection* settings)
{
  zylDeclare(settings, MapRows);
}

//--------------------------------------------------------------------------------------------------
void zylColoring::DeclareLegend(zylPropertyCollection* settings)
{
  zylDeclare(settings, LegendRows);
}

//--------------------------------------------------------------------------------------------------
void zylColoring::ColorBy(vtkSMProxy* representation, const zylVariable& variable)
{
  if (this->IsByArray() && variable.Array == this->Array && variable.Suffix == this->Suffix &&
    variable.Association == this->Association)
  {
    return;
  }
  if (!this->EnsureLookupTable(representation))
  {
    return;
  }
  vtkSMPropertyHelper(this->LookupTable, "VectorMode")
    .Set(variable.Component < 0 ? "Magnitude" : "Component");
  vtkSMPropertyHelper(this->LookupTable, "VectorComponent").Set(std::max(variable.Component, 0));
  this->LookupTable->UpdateVTKObjects();
  vtkSMPropertyHelper(representation, "ColorArrayName")
    .SetInputArrayToProcess(variable.Association, variable.Array.c_str());
  vtkSMPropertyHelper(representation, "LookupTable").Set(this->LookupTable);
  representation->UpdateVTKObjects();
  this->Array = variable.Array;
  this->Suffix = variable.Suffix;
  this->Association = variable.Association;
}

//--------------------------------------------------------------------------------------------------
// One table serves all variables in turn: the server's side of a representation keeps every table
// that it was ever given.
bool zylColoring::EnsureLookupTable(vtkSMProxy* representation)
{
  if (!zylIsAlive(this->LookupTable))
  {
    // As ParaView's SetScalarColoring(), which would ask the server for all about the data.
    const std::string name = std::string("Separate_") + representation->GetGlobalIDAsString();
    vtkNew<vtkSMTransferFunctionManager> manager;
    this->Release(representation);
    this->LookupTable =
      manager->GetColorTransferFunction(name.c_str(), representation->GetSessionProxyManager());
  }
  return this->LookupTable != nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylColoring::ColorSolid(vtkSMProxy* representation)
{
  if (this->IsByArray())
  {
    vtkSMPropertyHelper(representation, "ColorArrayName").SetInputArrayToProcess(0, "");
    vtkSMPropertyHelper(representation, "LookupTable").RemoveAllValues();
    representation->UpdateVTKObjects();
    this->HideLegend();
    this->ForgetArray();
  }
}

//--------------------------------------------------------------------------------------------------
vtkMTimeType zylColoring::GetMapMTime(zylPropertyCollection* settings)
{
  vtkMTimeType latest = 0;
  for (const char* name : MapSettings)
  {
    zylProperty* property = settings->GetProperty(name);
    latest = std::max(latest, property ? property->GetMTime() : 0);
  }
  return latest;
}

//--------------------------------------------------------------------------------------------------
void zylColoring::UpdateMap(zylPropertyCollection* settings)
{
  const vtkMTimeType time = GetMapMTime(settings);
  if (!this->IsByArray() || time <= this->MapTime)
  {
    return;
  }
  // Copying a collection advances the times of all its properties.
  const std::uint64_t hash = GetMapHash(settings);
  if (this->MapTime != 0 && hash == this->MapHash)
  {
    this->MapTime = time;
    return;
  }
  for (const char* name : MapProperties)
  {
    if (vtkSMProperty* property = this->LookupTable->GetProperty(name))
    {
      property->ResetToXMLDefaults();
    }
  }
  const std::string preset = settings->GetString("ColorMapName");
  vtkNew<vtkSMTransferFunctionPresets> presets;
  if (!presets->HasPreset(preset.c_str()) ||
    !vtkSMTransferFunctionProxy::ApplyPreset(this->LookupTable, preset.c_str()))
  {
    vtkLogF(WARNING, "No color map named '%s' exists", preset.c_str());
    vtkSMTransferFunctionProxy::ApplyPreset(
      this->LookupTable, ParaViewsOwn); // not one of no colors
  }
  KeepListedColors(this->LookupTable);
  const double* range = settings->GetDoubleElements("ColorMapRange");
  if (!range || !std::isfinite(range[0]) || !std::isfinite(range[1]) || range[1] < range[0] ||
    !vtkSMTransferFunctionProxy::RescaleTransferFunction(this->LookupTable, range[0], range[1]))
  {
    vtkLogF(WARNING, "The color map range [%g, %g] is not valid", range ? range[0] : 0.0,
      range ? range[1] : 0.0);
  }
  const bool banded = settings->Has("ColorMapStyle") && settings->GetInt("ColorMapStyle") == 0;
  const int colors = banded ? settings->GetInt("NumberOfColors") : SmoothTableSize;
  vtkSMPropertyHelper(this->LookupTable, "Discretize").Set(banded ? 1 : 0);
  vtkSMPropertyHelper(this->LookupTable, "NumberOfTableValues").Set(std::max(colors, 1));
  this->LookupTable->UpdateVTKObjects();
  this->MapTime = time;
  this->MapHash = hash;
}

//--------------------------------------------------------------------------------------------------
bool zylColoring::ShowLegend(vtkSMProxy* view, zylPropertyCollection* settings)
{
  if (!zylIsAlive(this->ScalarBar))
  {
    vtkNew<vtkSMTransferFunctionManager> manager;
    this->ScalarBar = manager->GetScalarBarRepresentation(this->LookupTable, view);
  }
  if (!this->ScalarBar)
  {
    return false;
  }
  const std::string title = settings->GetString("ColorLegendTitle");
  const std::string component =
    title.empty() ? this->Suffix : settings->GetString("ColorLegendComponentTitle");
  vtkSMPropertyHelper(this->ScalarBar, "Title").Set((title.empty() ? this->Array : title).c_str());
  vtkSMPropertyHelper(this->ScalarBar, "ComponentTitle").Set(component.c_str());
  zylPush(settings, LegendRows, this->ScalarBar);
  vtkSMPropertyHelper(this->ScalarBar, "Enabled").Set(1);
  vtkSMPropertyHelper(this->ScalarBar, "Visibility").Set(1);
  this->ScalarBar->UpdateVTKObjects();
  return true;
}

//--------------------------------------------------------------------------------------------------
void zylColoring::HideLegend()
{
  if (zylIsAlive(this->ScalarBar))
  {
    vtkSMPropertyHelper(this->ScalarBar, "Visibility").Set(0);
    vtkSMPropertyHelper(this->ScalarBar, "Enabled").Set(0);
    zylPushShown(this->ScalarBar);
  }
}

//--------------------------------------------------------------------------------------------------
void zylColoring::Release(vtkSMProxy* representation)
{
  // Unregistering a proxy takes its consumers along, so cut the ties first.
  if (zylIsAlive(representation))
  {
    vtkSMPropertyHelper(representation, "LookupTable").RemoveAllValues();
    representation->UpdateVTKObjects();
  }
  zylUnregister(this->ScalarBar);
  this->ScalarBar = nullptr;
  if (zylIsAlive(this->LookupTable))
  {
    UnregisterFunction(GetProxyOf(this->LookupTable, "ScalarOpacityFunction"));
    UnregisterFunction(GetProxyOf(this->LookupTable, "TransferFunction2D"));
    UnregisterFunction(this->LookupTable);
  }
  this->LookupTable = nullptr;
  this->MapTime = 0;
  this->MapHash = 0;
  this->ForgetArray();
}

//--------------------------------------------------------------------------------------------------
void zylColoring::ForgetArray()
{
  this->Array.clear();
  this->Suffix.clear();
  this->Association = -1;
}
