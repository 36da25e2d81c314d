#include "zylFieldHistogram.h"
#include "zylIntegrateFields.h"
#include "zylPointProbe.h"

#include "zylSolids.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <numeric>

#include <vtkDataSetAttributes.h>
#include <vtkTable.h>

namespace {
using testing::HasSubstr;
using Bins = std::vector<int>;

vtkSmartPointer<vtkMultiBlockDataSet> Blocks(std::initializer_list<vtkDataObject*> leaves)
{
  auto blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  blocks->SetNumberOfBlocks(unsigned(leaves.size()));
  unsigned int i = 0;
  for (vtkDataObject* leaf : leaves)
  {
    blocks->SetBlock(i++, leaf);
  }
  return blocks;
}

zylIntegrateFields::IntegratedValues_ Integrate(zylDataSet* data, const Bins& blocks)
{
  vtkNew<zylIntegrateFields> integral;
  integral->SetDataSet(data);
  return integral->GetIntegratedValues(blocks);
}

double Of(
  const std::map<std::string, zylValues>& values, const char* name, std::size_t component = 0)
{
  const auto found = values.find(name);
  return found != values.end() && component < found->second.size()
    ? found->second[component]
    : std::numeric_limits<double>::quiet_NaN();
}

void SetPoints(zylPointProbe* probe, const zylValues& coordinates)
{
  zylSet(probe->GetProperties(), "ProbePoints", coordinates);
}

void SetBins(zylFieldHistogram* histogram, const char* name, int count, double low, double high)
{
  zylSet(histogram->GetProperties(), "VariableName", name, "BinCount", count, "BinRanges",
    zylValues{ low, high });
}

// One of each kind.
struct Analysis
{
  explicit Analysis(zylDataSet* data) { this->Use(data); }
  void Use(zylDataSet* data)
  {
    this->Integral->SetDataSet(data);
    this->Histogram->SetDataSet(data);
    this->Probe->SetDataSet(data);
    this->Probe->Update();
  }
  double Integrate(const char* name)
  {
    return Of(this->Integral->GetIntegratedValues(0).PointValues, name);
  }
  double Probed(unsigned int point, const char* name)
  {
    return Of(this->Probe->GetProbedValues(point).PointValues, name);
  }
  int Count()
  {
    const Bins bins = this->Histogram->GetBins();
    return std::accumulate(bins.begin(), bins.end(), 0);
  }

  vtkNew<zylIntegrateFields> Integral;
  vtkNew<zylFieldHistogram> Histogram;
  vtkNew<zylPointProbe> Probe;
};
} // namespace

TEST(zylIntegrateFields, KnowsBoxes)
{
  const int n = 4;
  auto data = zylLoad(zylSolids::MakeBoxes(2, n));
  const auto first = Integrate(data, { 1 });
  EXPECT_NEAR(Of(first.CellValues, "Volume"), 1.0, 1e-12);
  EXPECT_NEAR(Of(first.CellValues, "two"), 2.0, 1e-12);
  EXPECT_NEAR(Of(first.PointValues, "one"), 1.0, 1e-12);
  EXPECT_NEAR(Of(first.PointValues, "x"), 0.5, 1e-12);
  // of the linear interpolant of x * x
  EXPECT_NEAR(Of(first.PointValues, "xx"), 1.0 / 3.0 + 1.0 / (6.0 * n * n), 1e-12);
  EXPECT_NEAR(Of(first.PointValues, "position", 2), 0.5, 1e-12);

  const auto both = Integrate(data, { 0 });
  EXPECT_NEAR(Of(both.CellValues, "Volume"), 2.0, 1e-12);
  EXPECT_NEAR(Of(both.PointValues, "x"), 2.0, 1e-12);
  EXPECT_NEAR(Of(Integrate(data, { 2, 1 }).PointValues, "x"), 2.0, 1e-12);
  EXPECT_TRUE(Integrate(data, {}).PointValues.empty());

  vtkNew<zylIntegrateFields> mean;
  mean->SetDataSet(data);
  mean->GetProperties()->Set("DivideCellDataByVolume", true);
  EXPECT_NEAR(Of(mean->GetIntegratedValues(0).CellValues, "two"), 2.0, 1e-12);
  mean->GetProperties()->Set("DivideCellDataByVolume", false);
  EXPECT_NEAR(Of(mean->GetIntegratedValues(0).CellValues, "two"), 4.0, 1e-12);
}

TEST(zylIntegrateFields, ConvergesOnTheBall)
{
  const double volume = 4.0 / 3.0 * M_PI;
  const double moment = 4.0 / 15.0 * M_PI;
  double errors[3][2];
  for (int i = 0; i < 3; ++i)
  {
    auto data = zylLoad(Blocks({ zylSolids::MakeBall(8 << i) }));
    const auto values = Integrate(data, { 0 });
    errors[i][0] = std::abs(Of(values.PointValues, "one") - volume);
    errors[i][1] = std::abs(Of(values.PointValues, "xx") - moment);
    EXPECT_NEAR(Of(values.CellValues, "Volume"), Of(values.PointValues, "one"), 1e-12);
    EXPECT_NEAR(Of(values.PointValues, "x"), 0.0, 1e-12);
  }
  for (int i = 0; i < 2; ++i)
  {
    EXPECT_GT(errors[i][0] / errors[i + 1][0], 3.5); // second order
    EXPECT_GT(errors[i][1] / errors[i + 1][1], 3.5);
  }
}

TEST(zylIntegrateFields, MeasuresWhatTheCellsAre)
{
  auto data = zylLoad(
    Blocks({ zylSolids::MakeBox(2), zylSolids::MakeRectangle(), zylSolids::MakeLine(), nullptr }));
  const auto line = Integrate(data, { 3 });
  EXPECT_NEAR(Of(line.CellValues, "Length"), 5.0, 1e-12);
  EXPECT_NEAR(Of(line.PointValues, "position", 2), 12.5, 1e-12);
  const auto area = Integrate(data, { 2, 3 });
  EXPECT_NEAR(Of(area.CellValues, "Area"), 2.0, 1e-12);
  EXPECT_NEAR(Of(area.PointValues, "x"), 2.0, 1e-12);
  EXPECT_EQ(area.CellValues.count("Length"), 0u);
  const auto all = Integrate(data, { 0 });
  EXPECT_NEAR(Of(all.CellValues, "Volume"), 1.0, 1e-12);
  EXPECT_EQ(all.CellValues.count("Area"), 0u);
  EXPECT_TRUE(Integrate(data, { 4 }).CellValues.empty()); // the null block
}

TEST(zylIntegrateFields, RefusesWhatDoesNotExist)
{
  zylTestLog log;
  vtkNew<zylIntegrateFields> integral;
  EXPECT_TRUE(integral->GetIntegratedValues(0).PointValues.empty());
  EXPECT_FALSE(log.HasError());
  integral->Update();
  EXPECT_TRUE(log.HasError("No dataset set in zylIntegrateFields"));
  vtkNew<zylDataSet> empty;
  integral->SetDataSet(empty);
  EXPECT_TRUE(integral->GetIntegratedValues(0).PointValues.empty());
  EXPECT_TRUE(log.HasError("the dataset is empty"));
  integral->SetDataSet(zylLoad(zylSolids::MakeBoxes(1, 1)));
  for (const int block : { 2, -1, 1000000 })
  {
    EXPECT_TRUE(integral->GetIntegratedValues({ 1, block }).PointValues.empty());
    EXPECT_TRUE(log.HasError("No block at index " + std::to_string(block)));
  }
  EXPECT_NEAR(Of(integral->GetIntegratedValues(1).PointValues, "one"), 1.0, 1e-12);
}

TEST(zylFieldAnalysis, TakesDerivedVariablesThreeDeep)
{
  auto data = zylLoad(zylSolids::MakeBoxes(2, 2));
  data->DefineDerivedPointVariable("double", "2 * x");
  data->DefineDerivedPointVariable("shifted", "double + one");
  data->DefineDerivedPointVariable("three", "shifted - -position[:,0] * 0");
  Analysis analysis(data);
  EXPECT_NEAR(Of(Integrate(data, { 1 }).PointValues, "three"), 2.0, 1e-12);
  SetBins(analysis.Histogram, "three", 4, 1.0, 5.0);
  const Bins derived = analysis.Histogram->GetBins();
  EXPECT_EQ(derived, Bins({ 9, 9, 18, 18 })); // x = 0, 0.5, 1 and 1, 1.5 and 2
  SetBins(analysis.Histogram, "x", 4, 0.0, 2.0);
  EXPECT_EQ(derived, analysis.Histogram->GetBins());
  // The probed values go through the expression.
  SetPoints(analysis.Probe, { 0.3, 0.4, 0.5, 1.25, 0.5, 0.5 });
  analysis.Probe->Update();
  EXPECT_NEAR(analysis.Probed(0, "three"), 1.6, 1e-6);
  EXPECT_NEAR(analysis.Probed(1, "three"), 3.5, 1e-6);
  // A new definition reaches all three.
  data->DefineDerivedPointVariable("double", "4 * x");
  EXPECT_NEAR(Of(Integrate(data, { 1 }).PointValues, "three"), 3.0, 1e-12);
  analysis.Probe->Update();
  EXPECT_NEAR(analysis.Probed(0, "three"), 2.2, 1e-6);
  SetBins(analysis.Histogram, "three", 1, 1.0, 5.0);
  EXPECT_EQ(analysis.Histogram->GetBins(), Bins({ 54 }));
}

TEST(zylFieldAnalysis, TellsOfExpressionsThatFail)
{
  const struct
  {
    const char *Expression, *Integral, *Histogram;
  } cases[] = {
    { "x + nosuch", "'bad': NameError: name 'nosuch' is not defined, in \"bad = x + nosuch\"",
      "No point has the variable 'bad': NameError" },
    { "x / 0 if 1 / 0 else 1", "'bad': ZeroDivisionError: division by zero, in",
      "No point has the variable 'bad': ZeroDivisionError" },
    { "2 *", "SyntaxError", "No histogram of 'bad': its expression" },
  };
  for (const auto& test : cases)
  {
    auto data = zylLoad(zylSolids::MakeBoxes(2, 2));
    data->DefineDerivedPointVariable("bad", test.Expression);
    zylTestLog log;
    Analysis analysis(data);
    SetBins(analysis.Histogram, "bad", 3, 0.0, 1.0);
    SetPoints(analysis.Probe, { 0.5, 0.5, 0.5 });
    EXPECT_NEAR(analysis.Integrate("x"), 2.0, 1e-12); // nothing else is lost
    EXPECT_THAT(log.Dump(), HasSubstr(test.Integral));
    EXPECT_EQ(analysis.Count(), 0);
    EXPECT_THAT(log.Dump(), HasSubstr(test.Histogram));
    analysis.Probe->Update();
    EXPECT_NEAR(analysis.Probed(0, "x"), 0.5, 1e-12);
    analysis.Probed(0, "x");
    EXPECT_EQ(log.CountWarnings("No values of the derived variables 'bad'"), 2) << log.Dump();
  }
}

TEST(zylFieldHistogram, CountsThePoints)
{
  auto data = zylLoad(zylSolids::MakeBoxes(2, 2));
  vtkNew<zylFieldHistogram> histogram;
  histogram->SetDataSet(data);
  EXPECT_EQ(histogram->GetProperties()->GetDouble("BinRanges", 1), 100.0);
  EXPECT_TRUE(histogram->GetBins().empty()); // no variable
  histogram->GetProperties()->Set("VariableName", "x");
  EXPECT_EQ(histogram->GetBins(), Bins({ 54 }));
  const struct
  {
    const char* Variable;
    int Count;
    double Low, High;
    Bins Expected;
  } cases[] = {
    { "x", 2, 0.0, 2.0, { 18, 36 } },       // 1 is in the second bin, 2 too
    { "x", 2, 0.25, 0.75, { 9, 45 } },      // beyond the range: in the outer bins
    { "position", 2, 0.0, 2.0, { 18, 36 } } // its first component
  };
  for (const auto& test : cases)
  {
    SetBins(histogram, test.Variable, test.Count, test.Low, test.High);
    EXPECT_EQ(histogram->GetBins(), test.Expected) << test.Variable << test.Low;
  }
  SetBins(histogram, "one", 3, 1.0, 1.0);
  const Bins bins = histogram->GetBins();
  EXPECT_EQ(bins.size(), 3u);
  EXPECT_EQ(std::accumulate(bins.begin(), bins.end(), 0), 54);
}

TEST(zylFieldHistogram, SaysWhatIsWrong)
{
  zylTestLog log;
  vtkNew<zylFieldHistogram> histogram;
  EXPECT_TRUE(histogram->GetBins().empty());
  EXPECT_TRUE(log.HasError("No dataset set in zylFieldHistogram"));
  vtkNew<zylDataSet> empty;
  histogram->SetDataSet(empty);
  SetBins(histogram, "x", 1, 0.0, 1.0);
  EXPECT_TRUE(histogram->GetBins().empty());
  EXPECT_TRUE(log.HasError("the dataset is empty"));
  histogram->SetDataSet(zylLoad(zylSolids::MakeBoxes(1, 1)));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  const struct
  {
    const char* Variable;
    int Count;
    double Low, High;
    const char* Message;
  } cases[] = {
    { "nosuch", 1, 0.0, 1.0, "No histogram of 'nosuch': the dataset has no such point variable" },
    { "two", 1, 0.0, 1.0, "no such point variable" }, // a cell array
    { "x", 0, 0.0, 1.0, "'BinCount' is 0" },
    { "x", -5, 0.0, 1.0, "'BinCount' is -5" },
    { "x", 2000000000, 0.0, 1.0, "'BinCount' is 2000000000" },
    { "x", 1, 1.0, 0.0, "which is no range" },
    { "x", 1, nan, 1.0, "which is no range" },
    { "x", 1, 0.0, infinite, "which is no range" },
    { "x", 1, -1e308, 1e308, "which is no range" },
  };
  for (const auto& test : cases)
  {
    SetBins(histogram, test.Variable, test.Count, test.Low, test.High);
    EXPECT_TRUE(histogram->GetBins().empty());
    EXPECT_TRUE(log.HasError(test.Message));
  }
  SetBins(histogram, "x", 1, 0.0, 1.0);
  EXPECT_EQ(histogram->GetBins(), Bins({ 8 }));
}

TEST(zylPointProbe, Samples)
{
  auto data = zylLoad(zylSolids::MakeBoxes(2, 4));
  vtkNew<zylPointProbe> probe;
  probe->SetDataSet(data);
  const zylValues points = { 0.3, 0.4, 0.5, 1.7, 0.1, 0.9, 5.0, 0.0, 0.0, 0.0, 0.0, 0.0 };
  SetPoints(probe, points);
  probe->Update();
  for (unsigned int i = 0; i < 4; ++i)
  {
    const auto value = probe->GetProbedValues(i);
    for (unsigned int c = 0; c < 3; ++c)
    {
      EXPECT_DOUBLE_EQ(value.Point[c], points[3 * i + c]);
    }
    EXPECT_EQ(value.Valid, i != 2);
    EXPECT_EQ(value.PointValues.count("vtkValidPointMask"), 0u);
    EXPECT_EQ(value.PointValues.count("x"), 1u);
    if (value.Valid)
    {
      EXPECT_NEAR(Of(value.PointValues, "x"), points[3 * i], 1e-12);
      EXPECT_NEAR(Of(value.PointValues, "position", 2), points[3 * i + 2], 1e-12);
      EXPECT_EQ(Of(value.PointValues, "two"), 2.0);
    }
  }
  probe->GetProperties()->Set("Blocks", 2);
  probe->Update();
  EXPECT_FALSE(probe->GetProbedValues(0).Valid);
  EXPECT_TRUE(probe->GetProbedValues(1).Valid);
  SetPoints(probe, { 1.5, 0.5, 0.5 });
  probe->Update();
  EXPECT_TRUE(probe->GetProbedValues(0).Valid);
  EXPECT_NEAR(Of(probe->GetProbedValues(0).PointValues, "x"), 1.5, 1e-12);
}

TEST(zylPointProbe, SaysWhatIsWrong)
{
  zylTestLog log;
  vtkNew<zylPointProbe> probe;
  probe->Update();
  EXPECT_FALSE(log.HasError());
  EXPECT_TRUE(probe->GetProbedValues(0).PointValues.empty());
  EXPECT_TRUE(log.HasError(
    "Not ready to probe points. Make sure to set a dataset on the zylPointProbe and call "
    "Update()"));
  vtkNew<zylDataSet> empty;
  probe->SetDataSet(empty);
  probe->Update();
  EXPECT_TRUE(log.HasError("the dataset is empty"));
  probe->SetDataSet(zylLoad(zylSolids::MakeBoxes(1, 1)));

  probe->Update(); // no points
  EXPECT_TRUE(probe->GetProbedValues(0).PointValues.empty());
  EXPECT_TRUE(log.HasError("No probe point at index 0, there are 0"));
  SetPoints(probe, { 0.5, 0.5, 0.5, 1.0 });
  probe->Update();
  EXPECT_TRUE(log.HasError("'ProbePoints' has 4 coordinates"));
  EXPECT_TRUE(probe->GetProbedValues(0).PointValues.empty());
  SetPoints(probe, { 0.5, 0.5, 0.5 });
  probe->GetProperties()->Set("Blocks", 7);
  probe->Update();
  EXPECT_TRUE(log.HasError("no block at index 7"));
  EXPECT_FALSE(probe->GetProbedValues(0).Valid);
  probe->GetProperties()->Set("Blocks", 0);
  probe->Update();
  EXPECT_TRUE(probe->GetProbedValues(0).Valid);
  EXPECT_FALSE(probe->GetProbedValues(1).Valid);
  EXPECT_TRUE(log.HasError("No probe point at index 1, there are 1"));

  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  SetPoints(probe, { nan, 0.5, 0.5, 0.5, infinite, 0.5, 1e300, -1e300, 0.0, 0.5, 0.5, 0.5 });
  probe->Update();
  for (unsigned int i = 0; i < 4; ++i)
  {
    EXPECT_EQ(probe->GetProbedValues(i).Valid, i == 3);
  }
}

TEST(zylFieldAnalysis, AsksTheServerForNothingTwice)
{
  auto data = zylLoad(zylSolids::MakeBoxes(2, 2));
  data->DefineDerivedPointVariable("double", "2 * x");
  Analysis analysis(data);
  SetBins(analysis.Histogram, "double", 3, 0.0, 4.0);
  SetPoints(analysis.Probe, { 0.5, 0.5, 0.5, 1.5, 0.5, 0.5 });
  const auto ask = [&] {
    analysis.Integral->Update();
    analysis.Histogram->Update();
    analysis.Probe->Update();
    analysis.Probe->GetProbedValues(0);
    analysis.Probe->GetProbedValues(1);
  };
  analysis.Integrate("double");
  EXPECT_NE(zylTraffic(ask), "");
  EXPECT_EQ(zylTraffic(ask), "");
  SetPoints(analysis.Probe, { 0.5, 0.5, 0.25 });
  EXPECT_NE(zylTraffic(ask), "");
}

TEST(zylFieldAnalysis, FollowsTheTime)
{
  const double times[] = { 0.0, 1.0, 2.0 };
  const auto data = zylLoad(zylTestData::WriteSeries(zylTestData::MakeFolder(), times, 3));
  Analysis analysis(data);
  SetBins(analysis.Histogram, "pressure", 4, 0.0, 4.0);
  SetPoints(analysis.Probe, { 0.5, 0.5, 0.5 });
  analysis.Probe->Update();
  for (const double time : { 2.0, 0.0, 1.0, 0.0 })
  {
    zylTimeController::GetInstance()->GoToTime(time);
    EXPECT_NEAR(analysis.Integrate("pressure"), 2.0 + 2.0 * time, 1e-12);
    EXPECT_EQ(analysis.Histogram->GetBins()[std::size_t(time)], 18) << time;
    EXPECT_NEAR(analysis.Probed(0, "pressure"), 0.5 + time, 1e-12);
  }
}

TEST(zylFieldAnalysis, FollowsTheDataset)
{
  const auto data = zylLoad(zylSolids::MakeBoxes(1, 2));
  const auto other = zylLoad(zylSolids::MakeBoxes(3, 2));
  Analysis analysis(data);
  SetBins(analysis.Histogram, "x", 1, 0.0, 1.0);
  SetPoints(analysis.Probe, { 1.5, 0.5, 0.5 });
  const struct
  {
    const char* What;
    std::function<void()> Change;
    double Volume;
    Bins Counted;
    bool Probed; ///< without Update() of the probe
  } steps[] = {
    { "one box", [&] { analysis.Use(data); }, 1.0, { 27 }, false },
    { "another dataset", [&] { analysis.Use(other); }, 3.0, { 81 }, true },
    { "reloaded", [&] { other->InitializeFromVTKDataSet(zylSolids::MakeBoxes(2, 1)); }, 2.0, { 16 },
      true },
    { "emptied", [&] { other->InitializeFromVTKDataSet(Blocks({})); }, NAN, {}, false },
    { "and back", [&] { analysis.Use(data); }, 1.0, { 27 }, false },
  };
  for (const auto& step : steps)
  {
    SCOPED_TRACE(step.What);
    step.Change();
    EXPECT_THAT(analysis.Integrate("one"), testing::NanSensitiveDoubleNear(step.Volume, 1e-12));
    EXPECT_EQ(analysis.Histogram->GetBins(), step.Counted);
    EXPECT_EQ(analysis.Probe->GetProbedValues(0).Valid, step.Probed);
  }
}

TEST(zylFieldAnalysis, CopesWithOddBlocks)
{
  vtkNew<vtkTable> table; // of no coordinates
  zylTestData::AddArray(table->GetRowData(), "residual", 1, 1, 1.0);
  vtkNew<vtkPolyData> nothing;
  vtkNew<vtkPolyData> points; // without cells
  points->ShallowCopy(zylSolids::MakeRectangle());
  points->SetPolys(nullptr);
  auto partial = zylSolids::MakeBox(2, 1.0);
  partial->GetPointData()->RemoveArray("xx");
  for (const auto& blocks : { Blocks({ zylSolids::MakeBox(2), nullptr, nothing, partial }),
         Blocks({ zylSolids::MakeBox(2), points, partial }), Blocks({ points }),
         Blocks({ zylSolids::MakeBox(2), table, partial }), Blocks({ table }) })
  {
    const bool solid = blocks->GetNumberOfBlocks() > 1;
    auto data = zylLoad(blocks);
    data->DefineDerivedPointVariable("double", "2 * x");
    Analysis analysis(data);
    SetBins(analysis.Histogram, "double", 1, 0.0, 5.0);
    SetPoints(analysis.Probe, { 1.5, 0.5, 0.5 });
    analysis.Probe->Update();
    const auto integral = Integrate(data, { 0 });
    const auto probed = analysis.Probe->GetProbedValues(0);
    const int count = analysis.Count();
    EXPECT_EQ(probed.Valid, solid);
    if (solid)
    {
      EXPECT_NEAR(Of(integral.CellValues, "Volume"), 2.0, 1e-12);
      EXPECT_NEAR(Of(integral.PointValues, "double"), 4.0, 1e-12);
      EXPECT_NEAR(Of(integral.PointValues, "x"), 2.0, 1e-12);
      EXPECT_EQ(integral.PointValues.count("xx"), 0u);
      EXPECT_GE(count, 54);
      EXPECT_NEAR(Of(probed.PointValues, "x"), 1.5, 1e-12);
      EXPECT_NEAR(Of(probed.PointValues, "double"), 3.0, 1e-12);
      EXPECT_EQ(probed.PointValues.count("xx"), 0u);
    }
  }
}

TEST(zylFieldAnalysis, KeysArraysWithoutAName)
{
  auto box = zylSolids::MakeBox(1);
  for (const double value : { 7.0, 9.0 })
  {
    zylTestData::AddArray(box->GetPointData(), nullptr, 1, box->GetNumberOfPoints(), value);
  }
  auto data = zylLoad(Blocks({ box }));
  const auto integral = Integrate(data, { 0 });
  for (const auto& [name, values] : integral.PointValues)
  {
    EXPECT_FALSE(name.empty());
  }
  EXPECT_NEAR(Of(integral.PointValues, "one"), 1.0, 1e-12);
}
