// The same numbers from a built-in session and from servers whose data are distributed.
#include "zylFieldHistogram.h"
#include "zylIntegrateFields.h"
#include "zylPointProbe.h"

#include "zylSolids.h"
#include "zylTest.h"
#include "zylTestServer.h"

namespace {
struct Answers
{
  zylIntegrateFields::IntegratedValues_ All, One;
  std::vector<int> Bins;
  std::vector<zylPointProbe::ProbeValue_> Probed;
  vtkIdType Points = 0;
  vtkIdType PointsHere = 0; // on the first rank
};

// Of the first rank's part of the data.
vtkIdType CountPointsHere(zylDataSet* data)
{
  const auto fetched = zylCore::Fetch(data->GetOutput(), nullptr);
  auto* blocks = vtkMultiBlockDataSet::SafeDownCast(fetched);
  return blocks ? blocks->GetNumberOfPoints() : 0;
}

Answers Ask(const std::string& file)
{
  Answers answers;
  const auto data = zylLoad(file);
  answers.Points = data->GetNumberOfPoints();
  answers.PointsHere = CountPointsHere(data);
  data->DefineDerivedPointVariable("double", "2 * x");
  data->DefineDerivedPointVariable("shifted", "double + one");
  data->DefineDerivedPointVariable("three words", "-shifted * -position[:,0]");

  vtkNew<zylIntegrateFields> integral;
  integral->SetDataSet(data);
  answers.All = integral->GetIntegratedValues(0);
  const auto& names = data->GetBlockNameToIDsMap();
  answers.One = integral->GetIntegratedValues(int(names.begin()->second.front()));

  vtkNew<zylFieldHistogram> histogram;
  histogram->SetDataSet(data);
  zylSet(histogram->GetProperties(), "VariableName", "shifted", "BinCount", 7, "BinRanges",
    zylValues{ 0.0, 15.0 });
  answers.Bins = histogram->GetBins();

  vtkNew<zylPointProbe> probe;
  probe->SetDataSet(data);
  zylSet(probe->GetProperties(), "ProbePoints",
    zylValues{ 0.1, 0.2, 0.3, 1.6, 0.5, 0.4, 4.7, 0.9, 0.8, 9.0, 0.0, 0.0, 2.5, 0.5, 0.5 });
  probe->Update();
  for (unsigned int i = 0; i < 5; ++i)
  {
    answers.Probed.push_back(probe->GetProbedValues(i));
  }

  // What fails there is said here.
  data->DefineDerivedPointVariable("bad", "x + nosuch");
  zylTestLog log;
  integral->GetIntegratedValues(0);
  EXPECT_TRUE(log.HasWarning(": NameError: name 'nosuch' is not defined, in \"bad = x + nosuch\""))
    << log.Dump();
  return answers;
}

using Values = std::map<std::string, std::vector<double>>;

void ExpectNear(const Values& values, const Values& expected)
{
  for (const auto& [name, components] : expected)
  {
    ASSERT_EQ(values.count(name), 1u) << name;
    for (std::size_t c = 0; c < components.size(); ++c)
    {
      EXPECT_NEAR(values.at(name)[c], components[c], 1e-10) << name;
    }
  }
  EXPECT_EQ(values.size(), expected.size());
}

class zylRemoteAnalysis : public testing::TestWithParam<int>
{
protected:
  static void SetUpTestSuite()
  {
    File = zylTestData::Write(zylSolids::MakeBoxes(5, 4), zylTestData::MakeFolder() + "/boxes.vtm");
    Expected = Ask(File); // while the session is the built-in one
  }

  static std::string File;
  static Answers Expected;
};
std::string zylRemoteAnalysis::File;
Answers zylRemoteAnalysis::Expected;
} // namespace

TEST_P(zylRemoteAnalysis, GivesTheNumbersOfABuiltInSession)
{
  const auto server = zylTestServer::Connect(GetParam(), ZYL_PLUGIN_DIRECTORY);
  if (!server)
  {
    GTEST_SKIP() << "no server here";
  }
  const Answers& expected = Expected;
  EXPECT_NEAR(expected.All.CellValues.at("Volume")[0], 5.0, 1e-12);
  EXPECT_EQ(expected.Points, 5 * 125);
  EXPECT_TRUE(expected.Probed[2].Valid);
  EXPECT_FALSE(expected.Probed[3].Valid);

  const Answers answers = Ask(File);
  zylCore::GetInstance()->Disconnect();

  EXPECT_EQ(answers.Points, expected.Points);
  EXPECT_EQ(answers.PointsHere<answers.Points, GetParam()> 1); // distributed
  ExpectNear(answers.All.PointValues, expected.All.PointValues);
  ExpectNear(answers.All.CellValues, expected.All.CellValues);
  EXPECT_EQ(answers.Bins, expected.Bins);
  for (std::size_t i = 0; i < expected.Probed.size(); ++i)
  {
    EXPECT_EQ(answers.Probed[i].Valid, expected.Probed[i].Valid) << i;
    if (expected.Probed[i].Valid)
    {
      ExpectNear(answers.Probed[i].PointValues, expected.Probed[i].PointValues);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Ranks, zylRemoteAnalysis, testing::Values(1, 2, 3));
