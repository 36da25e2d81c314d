#include "zylViewNumbers.h"

#include "zylViewDerived.h"
#include "zylViewError.h"
#include "zylViewOptions.h"
#include "zylViewProperties.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylFieldHistogram.h>
#include <zylIntegrateFields.h>
#include <zylPointProbe.h>
#include <zylPropertyCollection.h>

#include <vtkNew.h>
#include <vtk_jsoncpp.h>

namespace {
using Values = std::map<std::string, std::vector<double>>;
constexpr int BarLength = 40;

//--------------------------------------------------------------------------------------------------
// Settings of a measuring object; "Blocks" are taken out and returned.
std::vector<int> ApplySettings(const zylViewOptions& options, const zylViewBlocks& blocks,
  const std::string& kind, zylPropertyCollection* properties)
{
  std::vector<int> chosen{ 0 }; // the whole data
  for (const zylViewSetting& setting : options.KindSettings)
  {
    if (setting.Owner != kind)
    {
      continue;
    }
    if (setting.Name == "Blocks")
    {
      chosen = blocks.FindIndices(setting.Value);
    }
    else
    {
      zylSetProperty(properties, setting, "--set " + setting.Owner + "." + setting.Name);
    }
  }
  return chosen;
}

//--------------------------------------------------------------------------------------------------
// JSON knows no infinity and no NaN.
Json::Value ToJson(double value)
{
  return std::isfinite(value) ? Json::Value(value) : Json::Value();
}

Json::Value ToJson(int value)
{
  return value;
}

template <class Range>
Json::Value ToJsonArray(const Range& values)
{
  Json::Value array(Json::arrayValue);
  for (const auto& value : values)
  {
    array.append(ToJson(value));
  }
  return array;
}

Json::Value ToJsonObject(const Values& values)
{
  Json::Value object(Json::objectValue);
  for (const auto& [name, components] : values)
  {
    object[name] = ToJsonArray(components);
  }
  return object;
}

//--------------------------------------------------------------------------------------------------
void PrintValues(const char* association, const Values& values)
{
  for (const auto& [name, components] : values)
  {
    std::printf("  %s %-24s", association, name.c_str());
    for (const double value : components)
    {
      std::printf(" %14.7g", value);
    }
    std::printf("\n");
  }
}

//--------------------------------------------------------------------------------------------------
class Report
{
public:
  Report(const zylViewOptions& options, const zylViewBlocks& blocks, zylDataSet* dataset)
    : Options(options)
    , Blocks(blocks)
    , DataSet(dataset)
  {
  }

  void Integrate(const zylViewDerivedSurfaces& derived)
  {
    vtkNew<zylIntegrateFields> integral;
    integral->SetDataSet(this->DataSet);
    const auto chosen =
      ApplySettings(this->Options, this->Blocks, "Integrate", integral->GetProperties());
    this->AddIntegral("the data", integral->GetIntegratedValues(chosen));
    for (const auto& entry : derived.GetEntries())
    {
      const std::string number = entry.Number > 1 ? std::to_string(entry.Number) : "";
      this->AddIntegral(entry.Kind + number, entry.Representation->GetIntegratedValues());
    }
  }

  void Count(const std::string& variable, int bins)
  {
    const auto array = this->Blocks.NeedArray(variable, this->Blocks.GetLeaves(), true);
    const auto range = this->Options.Range.value_or(zylUsableRange(array.Range));
    vtkNew<zylFieldHistogram> histogram;
    histogram->SetDataSet(this->DataSet);
    zylPropertyCollection* properties = histogram->GetProperties();
    properties->Set("VariableName", variable);
    properties->Set("BinCount", bins);
    properties->Set("BinRanges", range.data(), 2);
    ApplySettings(this->Options, this->Blocks, "Histogram", properties);
    const double low = properties->GetDouble("BinRanges", 0);
    const double high = properties->GetDouble("BinRanges", 1);
    this->AddHistogram(variable, low, high, histogram->GetBins());
  }

  void Probe()
  {
    vtkNew<zylPointProbe> probe;
    probe->SetDataSet(this->DataSet);
    zylSetAny(probe->GetProperties(), "ProbePoints", this->Options.ProbePoints);
    zylSetAny(probe->GetProperties(), "Blocks",
      ApplySettings(this->Options, this->Blocks, "Probe", probe->GetProperties()));
    probe->Update();
    for (unsigned int i = 0; 3 * i < this->Options.ProbePoints.size(); ++i)
    {
      this->AddProbe(&this->Options.ProbePoints[3 * i], probe->GetProbedValues(i));
    }
  }

  void Print() const
  {
    if (this->Options.PrintJson)
    {
      Json::StreamWriterBuilder format;
      format["indentation"] = "  ";
      format["precision"] = 17;
      std::puts(Json::writeString(format, this->Document).c_str());
    }
  }

private:
  void AddIntegral(const std::string& of, const zylIntegrateFields::IntegratedValues_& values)
  {
    if (this->Options.PrintJson)
    {
      Json::Value entry;
      entry["of"] = of;
      entry["point"] = ToJsonObject(values.PointValues);
      entry["cell"] = ToJsonObject(values.CellValues);
      this->Document["integrals"].append(entry);
      return;
    }
    std::printf("integrals over %s\n", of.c_str());
    PrintValues("point", values.PointValues);
    PrintValues("cell ", values.CellValues);
  }

  void AddHistogram(
    const std::string& variable, double low, double high, const std::vector<int>& bins)
  {
    if (this->Options.PrintJson)
    {
      Json::Value entry;
      entry["variable"] = variable;
      entry["range"] = ToJsonArray(std::vector<double>{ low, high });
      entry["bins"] = ToJsonArray(bins);
      this->Document["histograms"].append(entry);
      return;
    }
    std::printf("histogram of %s\n", variable.c_str());
    const int most = bins.empty() ? 0 : *std::max_element(bins.begin(), bins.end());
    const double width = (high - low) / std::max<std::size_t>(bins.size(), 1);
    for (std::size_t i = 0; i < bins.size(); ++i)
    {
      const int length = most > 0 ? static_cast<int>(double(BarLength) * bins[i] / most) : 0;
      std::printf("  %12.6g ... %12.6g %10d %s\n", low + width * static_cast<double>(i),
        low + width * static_cast<double>(i + 1), bins[i], std::string(length, '#').c_str());
    }
  }

  void AddProbe(const double* point, const zylPointProbe::ProbeValue_& value)
  {
    if (this->Options.PrintJson)
    {
      Json::Value entry;
      entry["point"] = ToJsonArray(std::vector<double>(point, point + 3));
      entry["valid"] = value.Valid;
      entry["values"] = value.Valid ? ToJsonObject(value.PointValues) : Json::Value();
      this->Document["probes"].append(entry);
      return;
    }
    std::printf("values at %g, %g, %g%s\n", point[0], point[1], point[2],
      value.Valid ? "" : ": outside of the data");
    if (value.Valid)
    {
      PrintValues("     ", value.PointValues);
    }
  }

  const zylViewOptions& Options;
  const zylViewBlocks& Blocks;
  zylDataSet* DataSet;
  Json::Value Document{ Json::objectValue };
};
} // namespace

//--------------------------------------------------------------------------------------------------
void zylPrintNumbers(const zylViewOptions& options, const zylViewBlocks& blocks,
  zylDataSet* dataset, const zylViewDerivedSurfaces& derived)
{
  Report report(options, blocks, dataset);
  if (options.Integrate)
  {
    report.Integrate(derived);
  }
  for (const auto& [variable, bins] : options.Histograms)
  {
    report.Count(variable, bins);
  }
  if (!options.ProbePoints.empty())
  {
    report.Probe();
  }
  report.Print();
}
