// The same derived surfaces from a built-in session and from servers over which the data is spread.
#include "zylClipRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylIntersectionCurveRepresentation.h"
#include "zylIsosurfaceRepresentation.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylVolumeData.h"

namespace {
using Answers = std::map<std::string, double>;

//--------------------------------------------------------------------------------------------------
void Ask(zylDerivedSurfaceRepresentation* surface, zylDataSet* data, const std::string& name,
  Answers& answers)
{
  const int all[] = { 0 };
  surface->GetProperties()->MakeInt("Blocks", all, 1);
  surface->SetDataSet(data);
  surface->Update();
  const auto integrals = surface->GetIntegratedValues();
  for (const char* measure : { "Area", "Length" })
  {
    if (integrals.CellValues.count(measure))
    {
      answers[name + " " + measure] = integrals.CellValues.at(measure).at(0);
    }
  }
  for (const char* variable : { "x", "squared" })
  {
    answers[name + " " + variable] =
      integrals.PointValues.count(variable) ? integrals.PointValues.at(variable).at(0) : NAN;
  }
  const auto fetched = surface->GetDerivedSurface();
  answers[name + " cells"] = fetched ? static_cast<double>(fetched->GetNumberOfCells()) : NAN;
}

//--------------------------------------------------------------------------------------------------
// The surfaces of two blocks that touch, in a file.
const std::string& Surfaces()
{
  static const std::string file =
    zylTestData::Write(zylVolumeData::MakeSurfaces(4), zylTestData::MakeFolder() + "/surfaces.vtm");
  return file;
}

//--------------------------------------------------------------------------------------------------
Answers AskAll(const std::string& file, bool distribute)
{
  Answers answers;
  vtkNew<zylDataSet> data;
  EXPECT_TRUE(data->LoadFromFile({ file }));
  data->GetProperties()->Set("DistributeDataSet", distribute);
  data->DefineDerivedPointVariable("squared", "r**2");
  data->Update();
  vtkNew<zylIntersectionCurveRepresentation> curves;
  curves->GetProperties()->Set("Center", 2, 0.1);
  if (file == Surfaces())
  {
    Ask(curves, data, "curves", answers);
    return answers;
  }

  vtkNew<zylIsosurfaceRepresentation> sphere;
  sphere->GetProperties()->Set("Variable", "squared");
  sphere->GetProperties()->Set("Isovalue", 0.49);
  Ask(sphere, data, "isosurface", answers);
  vtkNew<zylCutPlaneRepresentation> cut;
  const double normal[] = { 1.0, 0.3, 0.2 };
  cut->GetProperties()->Set("Normal", normal, 3);
  cut->GetProperties()->Set("Center", 0, 0.07);
  Ask(cut, data, "cut", answers);
  vtkNew<zylCutPlaneRepresentation> crinkle;
  crinkle->GetProperties()->Set("Normal", normal, 3);
  crinkle->GetProperties()->Set("Center", 0, 0.07);
  crinkle->GetProperties()->Set("CrinkleCut", true);
  vtkNew<zylClipRepresentation> clip;
  clip->GetProperties()->Set("ClipMode", 1);
  if (!distribute)
  {
    // Where parts of a block meet there are faces that the whole block does not have.
    Ask(crinkle, data, "crinkle", answers);
    Ask(clip, data, "clip", answers);
  }
  return answers;
}
} // namespace

//--------------------------------------------------------------------------------------------------
struct Case
{
  std::string File;
  bool Distribute;
  Answers Expected;
};

class zylDerivedRemote : public testing::TestWithParam<int>
{
protected:
  // The built-in session ends with the first connection.
  static void SetUpTestSuite()
  {
    const std::string folder = zylTestData::MakeFolder();
    for (const char* kind : { "tetrahedra", "mixed" })
    {
      const std::string file =
        zylTestData::Write(zylVolumeData::MakeBlocks(kind, 10), folder + "/" + kind + ".vtm");
      for (const bool distribute : { false, true })
      {
        Cases.push_back({ file, distribute, AskAll(file, distribute) });
      }
    }
    Cases.push_back({ Surfaces(), false, AskAll(Surfaces(), false) });
  }

  static std::vector<Case> Cases;
};

std::vector<Case> zylDerivedRemote::Cases;

TEST_P(zylDerivedRemote, AnswersAsBuiltIn)
{
  if (!zylTestServer::IsAvailable(GetParam()))
  {
    GTEST_SKIP() << "no server here";
  }
  zylTestServer server(GetParam(), ZYL_PLUGIN_DIRECTORY);
  zylCore::GetInstance()->Connect(server.GetUrl().c_str(), 60);
  ASSERT_NE(zylCore::GetInstance()->GetSession(), nullptr);
  for (const Case& one : Cases)
  {
    const Answers answers = AskAll(one.File, one.Distribute);
    // Parts that are put together anew number their points anew, and the contour filter works with
    // float fractions of an edge from its lower point on.
    const double tolerance = one.Distribute ? 1e-7 : 1e-10;
    for (const auto& [name, value] : one.Expected)
    {
      ASSERT_EQ(answers.count(name), 1u) << name;
      EXPECT_NEAR(answers.at(name), value, tolerance * std::max(1.0, std::abs(value)))
        << name << ", " << one.File << (one.Distribute ? ", distributed" : "");
    }
  }
  zylCore::GetInstance()->Disconnect();
}

INSTANTIATE_TEST_SUITE_P(Ranks, zylDerivedRemote, testing::Values(1, 2, 3));
