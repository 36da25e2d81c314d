#include "vtkZYLVolumeSurfaceReader.h"

#include "zylAMReXPlotfile.h"
#include "zylAMReXWriter.h"
#include "zylPluginTestData.h"
#include "zylTestLog.h"
#include "zylTimeStepIndex.h"

#include <filesystem>

#include <unistd.h>

#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkExecutive.h>
#include <vtkInformation.h>
#include <vtkInformationDoubleVectorKey.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkStreamingDemandDrivenPipeline.h>
#include <vtkUnstructuredGrid.h>

namespace {
using Pipeline = vtkStreamingDemandDrivenPipeline;

std::string Step(const std::string& time, const std::string& rest)
{
  return "{ \"time\": " + time + (rest.empty() ? "" : ", " + rest) + " }";
}

std::string Index(const std::string& steps)
{
  return "{ \"version\": 1, \"timesteps\": [ " + steps + " ] }";
}

std::string Surface(const std::string& name, const std::string& type = "VTM")
{
  return R"("surface": { "fileType": ")" + type + R"(", "fileName": ")" + name + "\" }";
}

std::string Volume(const std::string& name, const std::string& type = "AMReXGrid")
{
  return R"("volume": { "fileType": ")" + type + R"(", "fileName": ")" + name + "\" }";
}

// A reader of an index in a directory of its own.
class VolumeSurfaceReader : public testing::Test
{
protected:
  void SetUp() override
  {
    this->Reader->SetPartIdArrayName("part_id");
    this->Reader->SetLevelMaskArrayName("level_mask");
  }

  bool Open(const std::string& text)
  {
    const std::string name = this->Directory / "case.json";
    zylTestData::WriteFile(name, text);
    this->Reader->SetFileName(nullptr); // read again whatever was there
    this->Reader->SetFileName(name.c_str());
    return this->Reader->GetExecutive()->UpdateInformation() != 0;
  }

  std::vector<double> Times(vtkInformationDoubleVectorKey* key)
  {
    vtkInformation* information = this->Reader->GetOutputInformation(0);
    const double* times = information->Get(key);
    return std::vector<double>(times, times + information->Length(key));
  }
  std::vector<double> Steps() { return this->Times(Pipeline::TIME_STEPS()); }
  std::vector<double> Range() { return this->Times(Pipeline::TIME_RANGE()); }

  vtkMultiBlockDataSet* Block(unsigned int i)
  {
    return vtkMultiBlockDataSet::SafeDownCast(this->Reader->GetOutput()->GetBlock(i));
  }

  vtkUnstructuredGrid* Part(unsigned int i)
  {
    return vtkUnstructuredGrid::SafeDownCast(this->Block(1)->GetBlock(i));
  }

  // At a time both blocks are there, by name, with these numbers of blocks.
  void ExpectBlocks(double time, unsigned int surfaces, unsigned int volumes)
  {
    this->Reader->UpdateTimeStep(time);
    vtkMultiBlockDataSet* output = this->Reader->GetOutput();
    ASSERT_EQ(output->GetNumberOfBlocks(), 2u);
    EXPECT_STREQ(output->GetMetaData(0u)->Get(vtkCompositeDataSet::NAME()), "Surfaces");
    EXPECT_STREQ(output->GetMetaData(1u)->Get(vtkCompositeDataSet::NAME()), "Volumes");
    ASSERT_TRUE(this->Block(0) && this->Block(1));
    EXPECT_EQ(this->Block(0)->GetNumberOfBlocks(), surfaces);
    EXPECT_EQ(this->Block(1)->GetNumberOfBlocks(), volumes);
  }

  const std::filesystem::path Directory = zylTestData::MakeFolder();
  vtkNew<vtkZYLVolumeSurfaceReader> Reader;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, ReadsTheFilesOfTheNearestTime)
{
  for (int i = 0; i < 3; ++i)
  {
    zylWriteSmallPlotfile(this->Directory / ("plt" + std::to_string(i)), 10.0 * i);
    zylWriteSurface(this->Directory / ("surface" + std::to_string(i) + ".vtm"), 1.0 + i);
  }
  std::string steps;
  const char* const times[3] = { "0.5", "1.0", "4" };
  for (int i = 0; i < 3; ++i)
  {
    const std::string n = std::to_string(i);
    steps += (i > 0 ? "," : "") +
      Step(times[i], Surface("surface" + n + ".vtm") + ", " + Volume("plt" + n));
  }
  ASSERT_TRUE(this->Open(Index(steps)));
  EXPECT_EQ(this->Steps(), (std::vector<double>{ 0.5, 1.0, 4.0 }));
  EXPECT_EQ(this->Range(), (std::vector<double>{ 0.0, 4.0 }));

  const std::pair<double, int> requests[] = { { 0.75, 0 }, { 0.76, 1 }, { -3, 0 }, { 99, 2 } };
  for (const auto& request : requests)
  {
    this->ExpectBlocks(request.first, 1, 2);
    EXPECT_STREQ(this->Block(0)->GetMetaData(0u)->Get(vtkCompositeDataSet::NAME()), "ball");
    EXPECT_EQ(
      vtkPolyData::SafeDownCast(this->Block(0)->GetBlock(0))->GetBounds()[1], 1.0 + request.second);
    vtkIdType cells = 0;
    for (unsigned int p = 0; p < 2; ++p)
    {
      vtkUnstructuredGrid* part = this->Part(p);
      cells += part->GetNumberOfCells();
      EXPECT_EQ(part->GetCellData()->GetArray("part_id")->GetRange()[1], p);
      EXPECT_EQ(part->GetCellData()->GetArray("value")->GetRange()[0], 10.0 * request.second);
      EXPECT_EQ(part->GetBounds()[p], p); // part 0 from x = 0, part 1 to x = 1
    }
    EXPECT_EQ(cells, zylSmallPlotfileCells);
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, TimeRangeContainsZero)
{
  ASSERT_TRUE(this->Open(Index(Step("-2", "") + "," + Step("-7.5", "") + "," + Step("-2", ""))));
  EXPECT_EQ(this->Steps(), (std::vector<double>{ -2, -7.5, -2 })); // neither sorted nor unique
  EXPECT_EQ(this->Range(), (std::vector<double>{ -7.5, 0.0 }));
  this->ExpectBlocks(-2, 0, 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, ElementsWithoutNamesAreLeftOut)
{
  const std::string steps = Step("1.5", R"("surface": { "fileType": "VTM" })") + "," +
    Step("2", R"("surface": { "fileName": "a" })") + "," +
    Step("3", R"("volume": { "fileType": "AMReXGrid", "fileName": null })") + "," +
    Step("4", R"("volume": {})") + "," + Step("5", R"("volume": null)");
  zylTestLog log;
  ASSERT_TRUE(this->Open(Index(steps)));
  EXPECT_EQ(this->Steps(), (std::vector<double>{ 5 }));
  // The first one speaks of the volume although the surface lacks its name: kept.
  EXPECT_TRUE(log.HasError("No 'fileName' node found in 'volume' node for time 1.5"));
  EXPECT_TRUE(log.HasError("No 'fileType' node found in 'surface' node for time 2"));
  EXPECT_TRUE(log.HasError("No 'fileName' node found in 'volume' node for time 3"));
  EXPECT_TRUE(log.HasError("No 'fileType' node found in 'volume' node for time 4"));
  EXPECT_EQ(log.CountErrors("vtkZYLVolumeSurfaceReader (0x"), 4) << log.Dump();
  EXPECT_FALSE(log.HasError("'surface' node for time 1.5"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, TracesWhatItReads)
{
  zylTestLog log(vtkLogger::VERBOSITY_TRACE);
  ASSERT_TRUE(this->Open(Index(Step("1", Surface("s.vtm", "vtm") + "," + Volume("v", "amrex")))));
  for (const char* text : { "surfaceFileType: vtm", "surfaceFileName: s.vtm",
         "volumeFileType: amrex", "volumeFileName: v" })
  {
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_TRACE, text)) << text;
  }
  this->ExpectBlocks(1, 0, 0);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_TRACE, "Timestep 0 requested"));
  EXPECT_FALSE(log.HasError()); // types are compared exactly, others ignored
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, UnusableIndexes)
{
  zylTestLog log;
  this->Reader->SetFileName(nullptr);
  EXPECT_FALSE(this->Reader->GetExecutive()->UpdateInformation());
  EXPECT_TRUE(log.HasError("No FileName set."));
  for (const char* entry : { "missing.json", "." })
  {
    const std::string name = this->Directory / entry;
    this->Reader->SetFileName(name.c_str());
    EXPECT_FALSE(this->Reader->GetExecutive()->UpdateInformation());
    EXPECT_TRUE(log.HasError("Could not open '" + name + "' for reading."));
  }
  const std::string good = Index(Step("1", Surface("a") + "," + Volume("b")));
  std::vector<std::string> texts = { "", " ", "no json", "null", "[]", "3", "\"timesteps\"", "{}",
    R"({"timesteps": null})", R"({"timesteps": {}})", R"({"timesteps": "x"})", "\xff\xfe\0{",
    std::string(100000, '['), "{\"timesteps\":" + std::string(5000, '[') };
  for (std::size_t size = 1; size < good.size() - 1; size += 3)
  {
    texts.push_back(good.substr(0, size));
  }
  int failures = 0;
  for (const std::string& text : texts)
  {
    EXPECT_FALSE(this->Open(text)) << text.substr(0, 80);
    EXPECT_EQ(log.CountErrors("No 'timesteps' array found in file."), ++failures);
  }
}

//--------------------------------------------------------------------------------------------------
TEST(TimeStepIndex, WrongTypesAndValues)
{
  const std::vector<std::string> bad = { "1", "null", "[]", "\"x\"", Step("\"x\"", ""),
    Step("[1]", ""), Step("{}", ""), Step("1", "\"surface\": 3"), Step("1", "\"volume\": []"),
    Step("1", R"("volume": { "fileType": 1, "fileName": "a" })"),
    Step("1", R"("volume": { "fileType": "AMReXGrid", "fileName": ["a"] })"),
    Step("1", R"("surface": { "fileType": {}, "fileName": "a" })") };
  std::vector<zylTimeStep> steps;
  std::vector<std::string> errors;
  for (const std::string& element : bad)
  {
    EXPECT_TRUE(zylParseTimeStepIndex(Index(element + "," + Step("7", "")), steps, errors));
    EXPECT_EQ(errors.size(), 1u) << element;
    ASSERT_EQ(steps.size(), 1u) << element;
    EXPECT_EQ(steps[0].Time, 7.0);
  }
  // Huge numbers are either refused by the parser or left out; duplicate keys: the last one counts.
  if (zylParseTimeStepIndex(Index(Step("1e999", "")), steps, errors))
  {
    EXPECT_TRUE(steps.empty());
  }
  EXPECT_FALSE(zylParseTimeStepIndex(Index(Step("NaN", "")), steps, errors));
  EXPECT_TRUE(zylParseTimeStepIndex(Index("{\"time\":1,\"time\":1e300}"), steps, errors));
  EXPECT_EQ(steps.at(0).Time, 1e300);
  EXPECT_TRUE(zylParseTimeStepIndex(Index("{}"), steps, errors)); // no time: 0
  EXPECT_EQ(steps.at(0).Time, 0.0);
}

//--------------------------------------------------------------------------------------------------
TEST(TimeStepIndex, AMillionElements)
{
  std::string text;
  for (int i = 0; i < 1000000; ++i)
  {
    text += (i > 0 ? ",{\"time\":" : "{\"time\":") + std::to_string(i) +
      (i % 2 ? ",\"volume\":{}}" : "}");
  }
  std::vector<zylTimeStep> steps;
  std::vector<std::string> errors;
  EXPECT_TRUE(zylParseTimeStepIndex(Index(text), steps, errors));
  EXPECT_EQ(steps.size(), 500000u);
  ASSERT_EQ(errors.size(), 101u);
  EXPECT_EQ(errors.back(), "499900 more elements of 'timesteps' cannot be used.");
  EXPECT_EQ(zylNearestTimeStep(steps, 999.1), 500u); // 1000 is nearer than 998
  EXPECT_EQ(zylNearestTimeStep({}, 1.0), 0u);
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, FileNamesAreRelativeToTheIndex)
{
  std::filesystem::create_directories(this->Directory / "run/data");
  zylWriteSmallPlotfile(this->Directory / "run/data/plt");
  zylWriteSurface(this->Directory / "s.vtm", 1.0);
  const std::string text = Index(Step("0", Surface("../s.vtm") + "," + Volume("data/plt/")) + "," +
    Step("1", Surface(this->Directory / "s.vtm") + "," + Volume(this->Directory / "run/data/plt")) +
    "," + Step("2", Surface("data") + "," + Volume("data")) + "," +
    Step("3", Surface("") + "," + Volume("")));
  zylTestData::WriteFile(this->Directory / "run/case.json", text);
  this->Reader->SetFileName((this->Directory / "run/case.json").c_str());
  this->ExpectBlocks(0, 1, 2);
  for (double time : { 1.0, 2.0, 3.0 }) // absolute names are joined as well; directories; no names
  {
    zylTestLog log;
    this->ExpectBlocks(time, 0, 0);
    EXPECT_TRUE(log.HasError("Could not read the volume"));
  }

  // An index named without a directory is in the current one.
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(this->Directory / "run");
  this->Reader->SetFileName("case.json");
  this->ExpectBlocks(0, 1, 2);
  std::filesystem::current_path(previous);
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, NoTimeSteps)
{
  EXPECT_TRUE(this->Open(Index("")));
  this->Reader->Update();
  this->ExpectBlocks(0, 0, 0);
  EXPECT_EQ(this->Range(), (std::vector<double>{ 0.0, 0.0 }));
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, VolumesWithoutPartsOrMask)
{
  zylWriteSmallPlotfile(this->Directory / "plt");
  ASSERT_TRUE(this->Open(Index(Step("0", Volume("plt")))));
  this->Reader->SetPartIdArrayName("nothing");
  zylTestLog log;
  this->ExpectBlocks(0, 0, 1);
  EXPECT_TRUE(log.HasError("PartIdArrayName not set. The filter will not produce anything"));
  this->Reader->SetPartIdArrayName("part_id");
  this->Reader->SetLevelMaskArrayName(nullptr);
  this->ExpectBlocks(0, 0, 2);
  EXPECT_EQ(this->Part(0)->GetNumberOfCells() + this->Part(1)->GetNumberOfCells(), 1024); // all
}

//--------------------------------------------------------------------------------------------------
TEST_F(VolumeSurfaceReader, FlatPlotfile)
{
  zylAMReXPlotfile plot;
  plot.Dimension = 2;
  plot.Variables = { "part_id" };
  plot.DomainCells = { { 4, 4, 1 } };
  plot.Levels = { zylAMReXBoxes({ { 4, 4, 1 } }, 2) };
  plot.Values = [](const zylAMReXCell& cell, double* values) { values[0] = cell.Index[0] / 2; };
  std::string error;
  ASSERT_TRUE(zylWriteAMReX(this->Directory / "plt", plot, error)) << error;
  EXPECT_EQ(zylCheckAMReXPlotfile(this->Directory / "plt", 5), "");
  ASSERT_TRUE(this->Open(Index(Step("0", Volume("plt")))));
  this->ExpectBlocks(0, 0, 2);
  EXPECT_EQ(this->Part(1)->GetNumberOfCells(), 8);
  EXPECT_EQ(this->Part(1)->GetCellType(0), VTK_PIXEL);
}

//--------------------------------------------------------------------------------------------------
// Each file of a plotfile cut at many places, and missing: a message and an empty block, no crash.
TEST_F(VolumeSurfaceReader, TruncatedPlotfiles)
{
  zylWriteSmallPlotfile(this->Directory / "plt");
  ASSERT_TRUE(this->Open(Index(Step("0", Volume("plt")))));
  for (const char* file : { "Header", "Level_0/Cell_H", "Level_1/Cell_H", "Level_1/Cell_D_00000" })
  {
    const std::string name = this->Directory / (std::string("plt/") + file);
    const std::string whole = zylTestData::ReadFile(name);
    const bool header = std::string(file).find("_D_") == std::string::npos;
    const std::size_t step = header ? 7 : 1500;
    for (std::size_t size = 0; size < whole.size(); size += step)
    {
      zylTestData::WriteFile(name, whole.substr(0, size));
      const std::string fault = zylCheckAMReXPlotfile(this->Directory / "plt", 5);
      if (!header)
      {
        EXPECT_NE(fault, "") << file << " " << size;
      }
      if (fault.empty() || size % 5 == 0)
      {
        zylTestLog log;
        this->Reader->Modified();
        this->ExpectBlocks(0, 0, fault.empty() ? 2 : 0);
        EXPECT_EQ(log.HasError("Could not read the volume"), !fault.empty()) << fault;
      }
    }
    std::filesystem::remove(name);
    EXPECT_NE(zylCheckAMReXPlotfile(this->Directory / "plt", 5), "");
    zylTestData::WriteFile(name, whole);
  }
  EXPECT_EQ(zylCheckAMReXPlotfile(this->Directory / "plt", 5), "");
}

//--------------------------------------------------------------------------------------------------
// One value of a header changed.
TEST_F(VolumeSurfaceReader, PlotfilesThatDoNotAgreeWithThemselves)
{
  struct Case
  {
    const char* File;
    const char* From;
    const char* To;
  };
  const Case cases[] = {
    { "Header", "\n3\nvalue", "\n300000000\nvalue" },     // variables
    { "Header", "level_mask\n3\n", "level_mask\n1\n" },   // dimension
    { "Header", "\n1\n0 0 0", "\n-1\n0 0 0" },            // no levels
    { "Header", "\n1\n0 0 0", "\n2000000000\n0 0 0" },    // levels
    { "Header", "0 2 0\n", "0 2000000000 0\n" },          // boxes
    { "Header", "0.125 0.125", "-0.125 0.125" },          // cell size
    { "Level_0/Cell_H", "1\n0\n3\n0\n", "2\n0\n3\n0\n" }, // version
    { "Level_0/Cell_H", "1\n0\n3\n0\n", "1\n0\n4\n0\n" }, // variables
    { "Level_0/Cell_H", "(2 0\n", "(3 0\n" },             // boxes
    { "Level_0/Cell_H", "(7,7,3)", "(700000000,7,3)" },   // a box outside
    { "Level_0/Cell_H", "(7,7,3)", "(-1,7,3)" },          // an inverted box
    { "Level_0/Cell_H", "Cell_D_00000 0", "Cell_D_00000 999999999" },
    { "Level_0/Cell_H", "Cell_D_00000 0", "Cell_D_00000 12" },
    { "Level_0/Cell_H", "Cell_D_00000 0", "../Header 0" },
    { "Level_0/Cell_D_00000", "(7,7,3)", "(7,3,3)" },     // other box in the data
    { "Level_0/Cell_D_00000", "(64 11 52", "(64 15 48" }, // no IEEE number
    { "Level_0/Cell_D_00000", "(8 7 6 5 4 3 2 1)", "(9 7 6 5 4 3 2 1)" },
  };
  zylWriteSmallPlotfile(this->Directory / "plt");
  ASSERT_TRUE(this->Open(Index(Step("0", Volume("plt")))));
  for (const Case& one : cases)
  {
    const std::string name = this->Directory / (std::string("plt/") + one.File);
    const std::string whole = zylTestData::ReadFile(name);
    std::string changed = whole;
    const std::size_t at = changed.find(one.From);
    ASSERT_NE(at, std::string::npos) << one.From;
    changed.replace(at, std::string(one.From).size(), one.To);
    zylTestData::WriteFile(name, changed);
    zylTestLog log;
    this->Reader->Modified();
    this->ExpectBlocks(0, 0, 0);
    EXPECT_TRUE(log.HasError("Could not read the volume")) << one.File << ": " << one.To;
    zylTestData::WriteFile(name, whole);
  }
  this->Reader->Modified();
  this->ExpectBlocks(0, 0, 2);
}
