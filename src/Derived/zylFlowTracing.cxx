#include "Derived/zylFlowTracing.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylArrayInformation.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <vector>

#include <vtkDataObject.h>
#include <vtkLogger.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

namespace {
constexpr const char* ArcLength = "arc_length"; // as the filter of that name calls it
constexpr double MaximumPointsPerLine = 10000.0;

//--------------------------------------------------------------------------------------------------
void SetDoubles(vtkSMProxy* proxy, const char* property, const std::vector<double>& values)
{
  vtkSMPropertyHelper target(proxy, property);
  if (target.GetDoubleArray() != values)
  {
    target.SetNumberOfElements(0);
    target.Set(values.data(), static_cast<unsigned int>(values.size()));
  }
  proxy->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* Find(
  const std::vector<vtkSmartPointer<zylArrayInformation>>& arrays, const std::string& name)
{
  const auto found = std::find_if(arrays.begin(), arrays.end(),
    [&name](zylArrayInformation* array) { return array->GetName() == name; });
  return found == arrays.end() ? nullptr : found->Get();
}

//--------------------------------------------------------------------------------------------------
bool HasThreeComponents(const std::string& name, int components)
{
  if (components != 3)
  {
    std::cerr << "Array '" << name << "' has " << components
              << " components, but should have 3 components." << std::endl;
  }
  return components == 3;
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylFlowTracing::MakeSeeds(vtkSMSessionProxyManager* manager)
{
  return zylProxyBuilder(manager, "sources", "PolyLineSource").Make();
}

//--------------------------------------------------------------------------------------------------
void zylFlowTracing::PushSeeds(
  zylPropertyCollection* settings, vtkSMSourceProxy* seeds, vtkMTimeType& sent)
{
  zylProperty* points = settings->GetProperty("SeedPoints");
  if (!seeds || points->GetMTime() <= sent)
  {
    return;
  }
  sent = points->GetMTime();
  const unsigned int count = points->GetNumberOfElements();
  if (count % 3 != 0)
  {
    vtkLogF(WARNING, "'SeedPoints' has %u values, which is no multiple of 3", count);
  }
  vtkSMPropertyHelper target(seeds, "Points");
  target.SetNumberOfElements(0);
  target.Set(points->GetDoubleElements(), count - count % 3);
  seeds->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylFlowTracing::PushTracer(zylPropertyCollection* settings, vtkSMSourceProxy* tracer)
{
  SelectPointArray(tracer, "SelectInputVectors", settings->GetString("VectorVariable"));
  zylPush(settings, Rows, tracer);
  tracer->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylFlowTracing::SelectPointArray(
  vtkSMProxy* proxy, const char* property, const std::string& name)
{
  vtkSMPropertyHelper(proxy, property)
    .SetInputArrayToProcess(vtkDataObject::FIELD_ASSOCIATION_POINTS, name.c_str());
}

//--------------------------------------------------------------------------------------------------
void zylFlowTracing::DropSeeds(vtkSMSourceProxy* seeds, vtkMTimeType& sent)
{
  vtkSMPropertyHelper(seeds, "Points").SetNumberOfElements(0);
  seeds->UpdateVTKObjects();
  sent = 0;
}

//--------------------------------------------------------------------------------------------------
bool zylFlowTracing::CheckVectors(zylDataSet* dataSet, vtkSMSourceProxy* volume, double& executed,
  const std::string& name, const char* user)
{
  if (name.empty() || !dataSet)
  {
    return true;
  }
  if (dataSet->IsDerivedPointVariable(name))
  {
    zylUpdatePipeline(volume, zylTimeController::GetInstance()->GetActiveTime(), executed);
    vtkPVArrayInformation* array =
      volume->GetDataInformation(0)->GetArrayInformation(name.c_str(), vtkDataObject::POINT);
    return !array || HasThreeComponents(name, array->GetNumberOfComponents());
  }
  zylMultiBlockTree* root = dataSet->GetMultiBlockTree();
  zylArrayInformation* points = Find(root->PointArrays, name);
  zylArrayInformation* cells = Find(root->CellArrays, name);
  if (!points && !cells)
  {
    std::cerr << "No point nor cell array named '" << name << "' is in the zylDataSet set on this "
              << user << std::endl;
  }
  if (cells)
  {
    HasThreeComponents(name, static_cast<int>(cells->GetNumberOfComponents()));
  }
  return !points || HasThreeComponents(name, static_cast<int>(points->GetNumberOfComponents()));
}

//--------------------------------------------------------------------------------------------------
std::string zylFlowTracing::SpaceEvenly(
  vtkSMSourceProxy* measured, vtkSMSourceProxy* contour, double spacing)
{
  std::vector<double> values;
  std::ostringstream mistake;
  vtkPVArrayInformation* arc =
    measured->GetDataInformation(0)->GetArrayInformation(ArcLength, vtkDataObject::POINT);
  const double longest = arc ? arc->GetComponentRange(0)[1] : 0.0;
  if (!(spacing > 0.0) || !std::isfinite(spacing))
  {
    mistake << "A 'GlyphSpacing' of " << spacing << " makes no glyphs";
  }
  else if (longest > 0.0)
  {
    // Up to 0.5 less than the quotient, where a value meets the end of the longest line.
    const double fitting = std::ceil(longest / spacing - 0.5);
    if (fitting > MaximumPointsPerLine)
    {
      mistake << "A 'GlyphSpacing' of " << spacing << " is too small for lines of length "
              << longest;
    }
    values.resize(static_cast<std::size_t>(std::clamp(fitting, 0.0, MaximumPointsPerLine)));
    for (std::size_t i = 0; i < values.size(); ++i)
    {
      values[i] = (static_cast<double>(i) + 0.5) * spacing;
    }
  }
  SelectPointArray(contour, "SelectInputScalars", ArcLength);
  SetDoubles(contour, "ContourValues", values);
  return mistake.str();
}
