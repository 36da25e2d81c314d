#include "Analysis/zylFieldValues.h"

#include "Analysis/zylScriptError.h"
#include "ParaView/zylSession.h"
#include "zylArrayInformation.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylProperty.h"

#include <algorithm>
#include <set>

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkFieldData.h>
#include <vtkPointData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

namespace {
//--------------------------------------------------------------------------------------------------
// The blocks and pieces of a tree are numbered from 0 without gaps.
int CountNodes(zylMultiBlockTree* node)
{
  int count = 1;
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    count += CountNodes(node->GetChild(i));
  }
  return count;
}

//--------------------------------------------------------------------------------------------------
void ReadTuple(vtkFieldData* data, vtkIdType tuple, zylFieldValues& values)
{
  for (int i = 0; data && i < data->GetNumberOfArrays(); ++i)
  {
    vtkDataArray* array = data->GetArray(i);
    if (!array || tuple < 0 || tuple >= array->GetNumberOfTuples())
    {
      continue;
    }
    const char* name = array->GetName();
    std::vector<double> components(static_cast<std::size_t>(array->GetNumberOfComponents()));
    array->GetTuple(tuple, components.data());
    values.emplace(name && *name ? name : "(unnamed array)", std::move(components));
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylReadTuples(
  vtkDataSet* data, vtkIdType tuple, zylFieldValues& pointValues, zylFieldValues& cellValues)
{
  if (data)
  {
    ReadTuple(data->GetPointData(), tuple, pointValues);
    ReadTuple(data->GetCellData(), tuple, cellValues);
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylGetDerivedVariablesScript(zylDataSet* dataset)
{
  const auto names = dataset->GetDerivedPointVariableNames();
  return dataset->GetDerivedPointVariableScript({ names.begin(), names.end() });
}

//--------------------------------------------------------------------------------------------------
std::string zylDescribeMissing(
  zylDataSet* dataset, const zylFieldValues& values, vtkSMSourceProxy* stage)
{
  std::set<std::string> missing;
  for (const std::string& name : dataset->GetDerivedPointVariableNames())
  {
    if (values.count(name) == 0)
    {
      missing.insert(name);
    }
  }
  if (missing.empty())
  {
    return std::string();
  }
  const std::string error = zylGetScriptError(stage);
  return zylDescribeMissing(
    missing, error.empty() ? "an expression needs arrays that some blocks lack" : error);
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylGetInts(const zylProperty* property)
{
  const int* values = property->GetIntElements();
  return std::vector<int>(values, values + property->GetNumberOfElements());
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylFindUnknownBlock(zylDataSet* dataset, const std::vector<int>& blocks)
{
  const int count = CountNodes(dataset->GetMultiBlockTree());
  const auto unknown = std::find_if(
    blocks.begin(), blocks.end(), [count](int block) { return block < 0 || block >= count; });
  return unknown == blocks.end() ? std::vector<int>() : std::vector<int>{ *unknown };
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylGetLiveOutput(zylDataSet* dataset)
{
  vtkSMSourceProxy* output = dataset ? dataset->GetOutput() : nullptr;
  return zylIsAlive(output) ? output : nullptr;
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylFindPointArray(zylDataSet* dataset, const std::string& name)
{
  const auto names = dataset ? dataset->GetPointArrayNames() : std::vector<std::string>();
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end()
    ? nullptr
    : dataset->GetPointArrayInformation(static_cast<unsigned int>(found - names.begin()));
}

//--------------------------------------------------------------------------------------------------
std::string zylDescribeScalar(zylDataSet* dataset, const std::string& name)
{
  if (name.empty() || dataset->IsDerivedPointVariable(name))
  {
    return std::string();
  }
  const zylArrayInformation* array = zylFindPointArray(dataset, name);
  if (!array)
  {
    return "No point array named '" + name + "' is in the dataset";
  }
  const unsigned int components = array->GetNumberOfComponents();
  return components == 1 ? std::string()
                         : "Array '" + name + "' has " + std::to_string(components) +
      " components, but should have 1 component.";
}
