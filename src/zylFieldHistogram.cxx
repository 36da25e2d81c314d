#include "zylFieldHistogram.h"

#include "Analysis/zylFieldValues.h"
#include "Analysis/zylScriptError.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylScriptFilter.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>
#include <vtkTable.h>

vtkStandardNewMacro(zylFieldHistogram);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Int("BinCount", 1).To("BinCount"),
  zylPropertyRow::Double2("BinRanges", 0.0, 100.0).To("CustomBinRanges"),
  zylPropertyRow::String("VariableName", ""),
};
constexpr int MostBins = 10000000;
} // namespace

//--------------------------------------------------------------------------------------------------
zylFieldHistogram::zylFieldHistogram()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
zylFieldHistogram::~zylFieldHistogram()
{
  this->DropChain();
}

//--------------------------------------------------------------------------------------------------
void zylFieldHistogram::SetDataSet(zylDataSet* dataset)
{
  this->DataSet = dataset;
}

//--------------------------------------------------------------------------------------------------
zylDataSet* zylFieldHistogram::GetDataSet()
{
  return this->DataSet;
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylFieldHistogram::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylFieldHistogram::Update()
{
  this->Push();
}

//--------------------------------------------------------------------------------------------------
bool zylFieldHistogram::Push()
{
  vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update");
  if (!this->DataSet)
  {
    vtkErrorMacro("No dataset set in zylFieldHistogram");
    return false;
  }
  const std::string variable = this->Properties->GetString("VariableName");
  const std::string mistake = this->FindMistake();
  if (!mistake.empty())
  {
    vtkErrorMacro("No histogram of '" << variable << "': " << mistake);
    return false;
  }
  if (!this->BuildChain(variable))
  {
    vtkErrorMacro("No histogram: the dataset is empty or its session has ended");
    return false;
  }
  zylPush(this->Properties, Rows, this->Histogram);
  vtkSMPropertyHelper(this->Histogram, "UseCustomBinRanges").Set(1);
  vtkSMPropertyHelper(this->Histogram, "SelectInputArray")
    .SetInputArrayToProcess(vtkDataObject::POINT, variable.c_str());
  this->Histogram->UpdateVTKObjects();
  return true;
}

//--------------------------------------------------------------------------------------------------
std::string zylFieldHistogram::FindMistake()
{
  const int count = this->Properties->GetInt("BinCount");
  const double low = this->Properties->GetDouble("BinRanges", 0);
  const double high = this->Properties->GetDouble("BinRanges", 1);
  const std::string variable = this->Properties->GetString("VariableName");
  if (count < 1 || count > MostBins)
  {
    return "'BinCount' is " + std::to_string(count) + ", not 1 ... " + std::to_string(MostBins);
  }
  if (!std::isfinite(high - low) || high < low)
  {
    std::ostringstream text;
    text << "'BinRanges' is [" << low << ", " << high << "], which is no range";
    return text.str();
  }
  const auto arrays = this->DataSet->GetPointArrayNames(0);
  if (!variable.empty() && zylGetLiveOutput(this->DataSet) &&
    std::find(arrays.begin(), arrays.end(), variable) == arrays.end() &&
    !this->DataSet->IsDerivedPointVariable(variable))
  {
    return "the dataset has no such point variable";
  }
  if (this->DataSet->IsDerivedPointVariable(variable) &&
    this->DataSet->GetDerivedPointVariableScript({ variable }).empty())
  {
    return "its expression, or another one, is no expression";
  }
  return std::string();
}

//--------------------------------------------------------------------------------------------------
bool zylFieldHistogram::BuildChain(const std::string& variable)
{
  vtkSMSourceProxy* source = zylGetLiveOutput(this->DataSet);
  if (this->Histogram && (!source || this->Histogram->GetSession() != source->GetSession()))
  {
    this->DropChain();
  }
  if (!source)
  {
    return false;
  }
  auto* manager = source->GetSessionProxyManager();
  if (this->DataSet->IsDerivedPointVariable(variable))
  {
    if (!this->ScriptFilter)
    {
      this->ScriptFilter = zylScriptFilter(source).Make();
    }
    zylPushScript(this->DataSet->GetDerivedPointVariableScript({ variable }), this->ScriptFilter);
    zylConnect(this->ScriptFilter, source);
    source = this->ScriptFilter;
  }
  if (!this->Histogram)
  {
    this->Histogram = zylProxyBuilder(manager, "filters", "ExtractHistogram").Input(source).Make();
  }
  zylConnect(this->Histogram, source);
  return source && this->Histogram;
}

//--------------------------------------------------------------------------------------------------
void zylFieldHistogram::DropChain()
{
  for (auto* proxy : { &this->Histogram, &this->ScriptFilter })
  {
    zylUnregister(*proxy);
    *proxy = nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylFieldHistogram::GetBins()
{
  std::vector<int> bins;
  if (!this->Push() || this->Properties->GetString("VariableName").empty())
  {
    return bins;
  }
  zylUpdatePipeline(
    this->Histogram, zylTimeController::GetInstance()->GetActiveTime(), this->ExecutedTime);
  const auto fetched = zylCore::Fetch(this->Histogram, "");
  auto* table = vtkTable::SafeDownCast(fetched);
  vtkDataArray* counts = table ? table->GetRowData()->GetArray("bin_values") : nullptr;
  for (vtkIdType i = 0; counts && i < counts->GetNumberOfTuples(); ++i)
  {
    bins.push_back(static_cast<int>(counts->GetComponent(i, 0)));
  }
  if (std::all_of(bins.begin(), bins.end(), [](int count) { return count == 0; }))
  {
    // Values beyond the range are counted too, so there are none.
    const std::string variable = this->Properties->GetString("VariableName");
    const std::string error = this->DataSet->IsDerivedPointVariable(variable)
      ? zylGetScriptError(this->ScriptFilter)
      : std::string();
    vtkWarningMacro(
      "No point has the variable '" << variable << "'" << (error.empty() ? "" : ": " + error));
  }
  return bins;
}
