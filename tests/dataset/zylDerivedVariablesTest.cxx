#include "zylTest.h"

#include "ParaView/zylProxyBuilder.h"

#include <vtkLogger.h>

namespace {
using Names = std::set<std::string>;
using Texts = std::vector<std::string>;

// A dataset of `count` cubes, whose first has more point arrays: named `extra`, values 2.
vtkSmartPointer<zylDataSet> MakeData(const Texts& extra = {}, unsigned int count = 2)
{
  auto cubes = zylTestData::MakeRow(int(count));
  auto* first = vtkDataSet::SafeDownCast(cubes->GetBlock(0));
  for (const std::string& name : extra)
  {
    zylTestData::AddArray(first->GetPointData(), name.c_str(), 1, first->GetNumberOfPoints(), 2.0);
  }
  return zylLoad(cubes);
}

void Define(zylDataSet* data, const std::map<std::string, std::string>& variables)
{
  for (const auto& [name, expression] : variables)
  {
    data->DefineDerivedPointVariable(name, expression);
  }
}

// What the script for `names` makes of the dataset.
vtkSmartPointer<vtkMultiBlockDataSet> Compute(zylDataSet* data, const Names& names)
{
  const std::string script = data->GetDerivedPointVariableScript(names);
  auto filter = zylProxyBuilder(
    zylCore::GetInstance()->GetSessionProxyManager(), "filters", "ProgrammableFilter")
                  .Input(data->GetOutput())
                  .Set("CopyArrays", 1)
                  .Set("Script", script.c_str())
                  .MakeUnregistered();
  zylUpdatePipeline(filter, 0.0);
  return vtkMultiBlockDataSet::SafeDownCast(zylCore::Fetch(filter, nullptr));
}

vtkDataArray* ArrayOf(vtkMultiBlockDataSet* data, unsigned int block, const char* name)
{
  auto* leaf = data ? vtkDataSet::SafeDownCast(data->GetBlock(block)) : nullptr;
  return leaf ? leaf->GetPointData()->GetArray(name) : nullptr;
}
} // namespace

TEST(zylDerivedVariables, AreKeptAsGiven)
{
  vtkNew<zylDataSet> data;
  Define(data, { { "b", "a + 4" }, { "B", "1" }, { "a", "2*pressure" } });
  EXPECT_EQ(data->GetDerivedPointVariableNames(), Texts({ "B", "a", "b" }));
  EXPECT_TRUE(data->IsDerivedPointVariable("a"));
  EXPECT_FALSE(data->IsDerivedPointVariable("A"));
  EXPECT_EQ(data->GetDerivedPointVariableExpression("a"), "2*pressure");
  EXPECT_EQ(data->GetDerivedPointVariableExpression("A"), "");

  vtkMTimeType time = data->GetMTime();
  data->DefineDerivedPointVariable("a", " 3 ");
  EXPECT_EQ(data->GetDerivedPointVariableExpression("a"), " 3 ");
  EXPECT_GT(data->GetMTime(), time);
  time = data->GetMTime();
  data->DefineDerivedPointVariable("a", "");
  data->DefineDerivedPointVariable("nothing", "");
  EXPECT_FALSE(data->IsDerivedPointVariable("a"));
  EXPECT_EQ(data->GetMTime(), time);
  {
    zylTestLog log;
    data->DefineDerivedPointVariable("", "1");
    EXPECT_TRUE(log.HasError("Name of derived variable cannot be empty"));
    EXPECT_EQ(data->GetMTime(), time);
  }
  data->ClearDerivedPointVariables();
  EXPECT_TRUE(data->GetDerivedPointVariableNames().empty());
  EXPECT_GT(data->GetMTime(), time);
}

TEST(zylDerivedVariables, BecomeScripts)
{
  auto data = MakeData({ "p/rho", "Wall Distance" });
  Define(data,
    { { "a", "2*pressure" }, { "b", "a + 4" }, { "c", "a + b" }, { "pressure", "pressure / 1000" },
      { "mag", "a" }, { "Mach number", "p_rho + Wall_Distance" }, { "it's", "Mach_number" },
      { "free", "x + sin(1)" } });
  const std::string pressure = "pressure = inputs[0].PointData['pressure']\n"
                               "pressure = pressure / 1000\n";
  const struct
  {
    Names ToSave;
    std::string Script;
  } cases[] = {
    { {}, "" },
    { { "pressure" }, pressure + "output.PointData.append(pressure, 'pressure')" },
    { { "b" }, pressure + "a = 2*pressure\nb = a + 4\noutput.PointData.append(b, 'b')" },
    // needed on two levels: once, before its first user
    { { "a", "c" },
      pressure +
        "a = 2*pressure\nb = a + 4\nc = a + b\n"
        "output.PointData.append(a, 'a')\noutput.PointData.append(c, 'c')" },
    { { "free" }, "free = x + sin(1)\noutput.PointData.append(free, 'free')" },
    { { "it's" },
      "Wall_Distance = inputs[0].PointData['Wall Distance']\n"
      "p_rho = inputs[0].PointData['p/rho']\n"
      "Mach_number = p_rho + Wall_Distance\nit_s = Mach_number\n"
      "output.PointData.append(it_s, \"it's\")" },
  };
  for (const auto& test : cases)
  {
    EXPECT_EQ(data->GetDerivedPointVariableScript(test.ToSave), test.Script);
  }
  zylTestLog log;
  data->GetDerivedPointVariableScript({ "a" });
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_TRACE, "Script:\npressure = inputs"));
}

TEST(zylDerivedVariables, FollowNewDataAndSessionsOfPython)
{
  auto data = MakeData();
  data->DefineDerivedPointVariable("a", "2*temperature");
  EXPECT_EQ(data->GetDerivedPointVariableScript({ "a" }),
    "a = 2*temperature\noutput.PointData.append(a, 'a')");
  // The scripts of filters bring numpy's names into the module's namespace.
  EXPECT_NE(Compute(data, { "a" }), nullptr);
  data->InitializeFromVTKDataSet(zylTestData::MakeRow(1));
  data->DefineDerivedPointVariable("a", "2*pressure");
  EXPECT_EQ(data->GetDerivedPointVariableScript({ "a" }),
    "pressure = inputs[0].PointData['pressure']\na = 2*pressure\n"
    "output.PointData.append(a, 'a')");
}

TEST(zylDerivedVariables, AreComputedThreeDeep)
{
  auto data =
    MakeData({ "Wall Distance", "p/rho", "a'b\"c\\d", "inputs", "lambda", "Öl", "\xff\xfe" }, 3);
  Define(data,
    { { "one", "2 * pressure" }, { "two", "one + mag(velocity)" }, { "three", "two * one" },
      { "slope", "gradient(pressure)" },
      { "part", "Wall_Distance + p_rho + a_b_c_d + inputs_ + lambda_ + Öl" }, { "constant", "3" },
      { "turned", "cross(velocity, velocity)" }, { "divided", "pressure / (pressure - pressure)" },
      { "two words", "two" } });
  auto result =
    Compute(data, { "three", "slope", "part", "constant", "turned", "divided", "two words" });
  for (unsigned int block = 0; block < 3; ++block)
  {
    auto* pressure = ArrayOf(result, block, "pressure");
    auto* velocity = ArrayOf(result, block, "velocity");
    auto* three = ArrayOf(result, block, "three");
    auto* slope = ArrayOf(result, block, "slope");
    auto* constant = ArrayOf(result, block, "constant");
    auto* words = ArrayOf(result, block, "two words");
    ASSERT_TRUE(three && slope && constant && words && ArrayOf(result, block, "divided"));
    EXPECT_EQ(ArrayOf(result, block, "two"), nullptr);
    for (vtkIdType i = 0; i < three->GetNumberOfTuples(); ++i)
    {
      const double* v = velocity->GetTuple3(i);
      const double speed = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
      const double one = 2.0 * pressure->GetTuple1(i);
      ASSERT_DOUBLE_EQ(three->GetTuple1(i), (one + speed) * one);
      ASSERT_DOUBLE_EQ(words->GetTuple1(i), one + speed);
      ASSERT_NEAR(slope->GetComponent(i, 0), 1.0, 1e-12);
      ASSERT_NEAR(slope->GetComponent(i, 1), 0.0, 1e-12);
      ASSERT_EQ(constant->GetTuple1(i), 3.0);
    }
  }
  ASSERT_NE(ArrayOf(result, 0, "part"), nullptr);
  EXPECT_EQ(ArrayOf(result, 0, "part")->GetTuple1(0), 12.0);
  EXPECT_EQ(ArrayOf(result, 1, "part"), nullptr); // the arrays are on the first block only
}

TEST(zylDerivedVariables, SayWhatIsWrong)
{
  const struct
  {
    const char* Name;
    const char* Expression;
    const char* Message;
  } cases[] = {
    { "b", "2 *", "Derived variable \"b\": SyntaxError: invalid syntax" },
    { "Wall Distance", "2 $ 3", "Derived variable \"Wall Distance\": SyntaxError: invalid syntax" },
    { "b", "import os",
      "SyntaxError: invalid syntax (derived variables, line 1), in \"b = import os" },
    { "b", "\xff\xfe", "Derived variable \"b\": UnicodeDecodeError: 'utf-8' codec can't decode" },
    { "\xff\xfe", "1", "UnicodeDecodeError: 'utf-8' codec can't decode" },
    { "b", "b'\xc3\xa9'", "Derived variable \"b\": SyntaxError: bytes can only contain ASCII" },
  };
  for (const auto& test : cases)
  {
    auto data = MakeData();
    data->DefineDerivedPointVariable("good", "pressure");
    data->DefineDerivedPointVariable(test.Name, test.Expression);
    zylTestLog log;
    EXPECT_EQ(data->GetDerivedPointVariableScript({ test.Name }), "");
    EXPECT_EQ(data->GetDerivedPointVariableScript({ test.Name }), "");
    EXPECT_EQ(log.CountErrors("The derived variables cannot be computed."), 1) << log.Dump();
    EXPECT_TRUE(log.HasError(test.Message));
    data->DefineDerivedPointVariable(test.Name, "");
    EXPECT_NE(data->GetDerivedPointVariableScript({ "good" }), "");
  }
  auto data = MakeData();
  zylTestLog log;
  EXPECT_EQ(data->GetDerivedPointVariableScript({ "nosuch" }), "");
  EXPECT_TRUE(log.HasError("KeyError: 'nosuch'"));
}

TEST(zylDerivedVariables, SurviveHugeExpressions)
{
  const auto repeat = [](const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
    {
      all += text;
    }
    return all;
  };
  auto data = MakeData();
  for (const std::string& expression :
    { repeat("-", 9000) + "1", "1" + repeat("+1", 4900), repeat("(", 4900) + repeat(")", 4900),
      "1" + repeat("**1", 3000), repeat("f(", 500) + "1" + repeat(")", 500),
      repeat("not ", 100000) + "1", "1" + repeat("+1", 100000) })
  {
    data->DefineDerivedPointVariable("huge", expression);
    zylTestLog log;
    EXPECT_EQ(data->GetDerivedPointVariableScript({ "huge" }), "");
    EXPECT_TRUE(log.HasError("Derived variable \"huge\""));
  }
  data->DefineDerivedPointVariable("huge", "[" + repeat("1,", 4900) + "][0]");
  EXPECT_NE(data->GetDerivedPointVariableScript({ "huge" }), "");
}

TEST(zylDerivedVariables, TellHowToSpellNamesThatAreNoIdentifiers)
{
  const struct
  {
    const char* Expression;
    const char* Message; // null: none
  } cases[] = {
    { "2 * Wall Distance",
      "\"Wall Distance\" is no Python identifier: the expression of \"b\" must "
      "spell it Wall_Distance" },
    { "p/rho", "must spell it p_rho" },
    { "lap/rho + p/rhox", nullptr },
    { "inputs[0].PointData['p/rho']", nullptr },
    { "p_rho", nullptr },
  };
  for (const auto& test : cases)
  {
    auto data = MakeData({ "Wall Distance", "p/rho" });
    zylTestLog log;
    data->DefineDerivedPointVariable("b", test.Expression);
    data->GetDerivedPointVariableScript({ "b" });
    EXPECT_EQ(log.CountWarnings("is no Python identifier"), test.Message ? 1 : 0) << log.Dump();
    EXPECT_TRUE(!test.Message || log.HasWarning(test.Message)) << log.Dump();
  }
  auto data = MakeData({ "p/rho", "p rho", "p_rho" });
  data->DefineDerivedPointVariable("sum", "p_rho + p_rho_ + p_rho__");
  EXPECT_EQ(ArrayOf(Compute(data, { "sum" }), 0, "sum")->GetTuple1(0), 6.0);
}

TEST(zylDerivedVariables, WarnOfCircles)
{
  const struct
  {
    std::map<std::string, std::string> Definitions;
    const char* Circle; // null: none
  } cases[] = {
    { { { "a", "b + pressure" }, { "b", "c" }, { "c", "a + 1" } },
      "\"a\" needs \"b\" needs \"c\" needs \"a\"" },
    { { { "a", "b" }, { "b", "b(pressure)" } }, "\"b\" needs \"b\"" },
    { { { "a", "pressure" }, { "pressure", "2 * pressure" } }, nullptr },
  };
  for (const auto& test : cases)
  {
    auto data = MakeData();
    Define(data, test.Definitions);
    zylTestLog log;
    EXPECT_NE(data->GetDerivedPointVariableScript({ "a" }), "");
    EXPECT_EQ(log.CountWarnings("need themselves"), test.Circle ? 1 : 0);
    EXPECT_TRUE(!test.Circle || log.HasWarning(test.Circle)) << log.Dump();
    EXPECT_NE(Compute(data, { "a" }), nullptr); // the filter fails, the data are there
  }
}
