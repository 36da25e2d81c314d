// What a dataset says and shows is a function of its source, its settings and the time, whatever
// happened before.
#include "ParaView/zylProxyBuilder.h"
#include "zylMultiBlockTree.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <iterator>
#include <random>

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkSMReaderReloadHelper.h>
#include <vtkSMSessionProxyManager.h>

namespace {
double Lowest(vtkDataObject* object, const char* array)
{
  auto* blocks = vtkCompositeDataSet::SafeDownCast(object);
  double lowest = 1e299;
  const auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(blocks->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    auto* block = vtkDataSet::SafeDownCast(iterator->GetCurrentDataObject());
    double range[2];
    block->GetPointData()->GetArray(array)->GetRange(range, 0);
    lowest = std::min(lowest, range[0]);
  }
  return lowest;
}

double LowestPressure(zylDataSet* data)
{
  return zylRange(data->GetPointArrayInformation(0))[0];
}

// Everything a dataset says about its data.
std::string Describe(zylDataSet* data)
{
  std::ostringstream text;
  for (const double bound : zylBounds(data))
  {
    text << bound << ' ';
  }
  text << data->GetNumberOfPoints() << ' ' << data->GetNumberOfCells() << '\n';
  for (const unsigned int id : data->GetBlockIDs())
  {
    zylMultiBlockTree* node = data->GetMultiBlockTree()->FindChildWithBlockIndex(id);
    text << id << ' ' << node->GetKind() << ' ' << node->GetNumberOfRows() << ' '
         << data->GetParent(id) << ' ' << data->GetCellType(id) << '\n';
  }
  for (const auto& name : data->GetBlockMap())
  {
    text << name.first << '=' << name.second << '\n';
  }
  return text.str() + zylConsole([&] { data->GetMultiBlockTree()->Print(""); });
}

class zylDataSetChanges : public ::testing::Test
{
protected:
  void SetUp() override
  {
    this->File = this->Folder + "/a.vtu";
    zylTestData::Write(zylTestData::MakeCube(0, 0, 0), this->File);
  }
  void TearDown() override { zylTimeController::GetInstance()->GoToTime(0.0); }

  vtkNew<zylDataSet> Data;
  std::string Folder = zylTestData::MakeFolder();
  std::string File;
};
} // namespace

TEST_F(zylDataSetChanges, OfTheReadersProperties)
{
  using Names = std::vector<std::string>;
  ASSERT_TRUE(this->Data->LoadFromFile({ this->File }));
  for (const bool on : { false, true })
  {
    vtkSMPropertyHelper(this->Data->GetProxy(), "PointArrayStatus").SetStatus("velocity", on);
    this->Data->GetProxy()->UpdateVTKObjects();
    this->Data->Update();
    EXPECT_EQ(this->Data->GetPointArrayNames(),
      on ? Names({ "pressure", "velocity" }) : Names({ "pressure" }));
  }
}

TEST_F(zylDataSetChanges, OfTheFile)
{
  ASSERT_TRUE(this->Data->LoadFromFile({ this->File }));
  for (const int cells : { 3, 1 })
  {
    zylTestData::Write(zylTestData::MakeCube(0, 0, cells, cells), this->File);
    vtkNew<vtkSMReaderReloadHelper> helper;
    ASSERT_TRUE(helper->ReloadFiles(this->Data->GetProxy()));
    this->Data->Update();
    EXPECT_EQ(this->Data->GetNumberOfCells(), cells * cells * cells);
    EXPECT_EQ(zylBounds(this->Data)[4], cells);
  }
}

TEST_F(zylDataSetChanges, OfDataOfThisProcess)
{
  auto row = zylTestData::MakeRow(2);
  ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(row));
  row->SetBlock(2, zylTestData::MakeCube(5, 0, 0));
  this->Data->Update();
  EXPECT_EQ(this->Data->GetNumberOfCells(), 24);
}

TEST_F(zylDataSetChanges, NoneIsNoWork)
{
  ASSERT_TRUE(this->Data->LoadFromFile({ this->File }));
  int executed = 0;
  vtkNew<vtkCallbackCommand> count;
  count->SetClientData(&executed);
  count->SetCallback(
    [](vtkObject*, unsigned long, void* counter, void*) { ++*static_cast<int*>(counter); });
  this->Data->GetOutput()->AddObserver(vtkCommand::UpdateDataEvent, count);
  this->Data->GetProxy()->AddObserver(vtkCommand::UpdateInformationEvent, count);
  const vtkMTimeType built = this->Data->GetMultiBlockTree()->GetMTime();
  for (int i = 0; i < 3; ++i)
  {
    this->Data->Update();
    this->Data->GetTimestepValues();
    this->Data->GetCellTypes();
  }
  EXPECT_EQ(executed, 0);
  EXPECT_EQ(this->Data->GetMultiBlockTree()->GetMTime(), built);
}

// Whoever looks at the dataset sees the same step, and looking does not change it.
TEST_F(zylDataSetChanges, OneTimeStepIsShown)
{
  const std::vector<double> steps = { 0.0, 0.25, 0.5, 2.0 };
  const std::string series = zylTestData::WriteSeries(this->Folder, steps.data(), 4);
  ASSERT_TRUE(this->Data->LoadFromFile({ series }));
  auto* controller = zylTimeController::GetInstance();
  auto consumer = zylProxyBuilder(
    zylCore::GetInstance()->GetSessionProxyManager(), "filters", "SurfaceGeometryFilter")
                    .Input(this->Data->GetOutput())
                    .MakeUnregistered();
  auto fetch = [](vtkSMSourceProxy* source) {
    return Lowest(zylCore::Fetch(source, nullptr), "pressure");
  };
  const double times[] = { 0.26, 0.49, 0.25, 0.5, 1.9, 0.1, -3.0, 7.0, 2.0, 0.3, 0.3000001 };
  for (const double time : times)
  {
    controller->GoToTime(time);
    const double active = controller->GetActiveTime(); // the scene ignores times out of its range
    const double step = *std::min_element(steps.begin(), steps.end(),
      [active](double a, double b) { return std::abs(a - active) < std::abs(b - active); });
    for (int again = 0; again < 2; ++again)
    {
      EXPECT_EQ(LowestPressure(this->Data), step) << time;
      EXPECT_EQ(fetch(this->Data->GetOutput()), step) << time;
      EXPECT_EQ(fetch(this->Data->GetProxy()), step) << time;
      EXPECT_EQ(fetch(consumer), step) << time; // whatever time it was executed at before
      zylUpdatePipeline(consumer, controller->GetActiveTime());
      EXPECT_EQ(fetch(consumer), step) << time;
      this->Data->GetCellType(1);
      this->Data->Update();
    }
  }
  controller->GoToTime(0.3);
  zylSet(this->Data->GetProperties(), "FreezeTime", true, "FrozenTime", 1.8);
  this->Data->Update();
  for (const double time : { 0.3, 0.25, 7.0 })
  {
    controller->GoToTime(time);
    zylUpdatePipeline(consumer, controller->GetActiveTime());
    EXPECT_EQ(fetch(consumer), 2.0) << time;
    EXPECT_EQ(LowestPressure(this->Data), 2.0) << time;
  }
}

TEST_F(zylDataSetChanges, TheRootStaysTheRoot)
{
  const vtkSmartPointer<zylMultiBlockTree> root = this->Data->GetMultiBlockTree();
  std::ofstream(this->Folder + "/bad.vtu") << "no data";
  EXPECT_FALSE(this->Data->LoadFromFile({ this->Folder + "/bad.vtu" }));
  EXPECT_EQ(this->Data->GetMultiBlockTree(), root.Get());
  EXPECT_EQ(Describe(this->Data), Describe(vtkNew<zylDataSet>()));
  ASSERT_TRUE(this->Data->LoadFromFile({ this->File }));
  EXPECT_EQ(this->Data->GetMultiBlockTree(), root.Get());
  EXPECT_EQ(root->GetNumberOfChildren(), 1u);
  // A node that somebody keeps outlives its parent.
  const vtkSmartPointer<zylMultiBlockTree> kept = root->GetChild(0);
  EXPECT_EQ(kept->GetBlockName(), "Block1");
  ASSERT_TRUE(this->Data->LoadFromFile({ this->File }));
  EXPECT_EQ(kept->GetParent(), nullptr);
}

TEST_F(zylDataSetChanges, FailuresLeaveNoProxies)
{
  std::ofstream(this->Folder + "/bad.vtu") << "no data";
  const std::string before = zylRegisteredProxies();
  for (int i = 0; i < 3; ++i)
  {
    vtkNew<zylDataSet> data;
    EXPECT_FALSE(data->InitializeFromVTKDataSet(nullptr));
    EXPECT_FALSE(data->LoadFromFile({ this->Folder + "/bad.vtu" }));
    EXPECT_FALSE(data->LoadFromFile({ this->Folder + "/none.vtu" }));
    EXPECT_FALSE(data->LoadFromFile({}, "filters", "NoSuchFilter"));
    EXPECT_EQ(zylRegisteredProxies(), before);
    EXPECT_TRUE(data->LoadFromFile({ this->File }));
    EXPECT_FALSE(data->InitializeFromVTKDataSet(zylTestData::MakeRow(2)));
  }
  EXPECT_EQ(zylRegisteredProxies(), before);
}

// Loads, failures, settings and times in any order end where a new dataset begins.
TEST_F(zylDataSetChanges, HistoryDoesNotMatter)
{
  const double steps[] = { 0.0, 1.0, 3.0 };
  std::ofstream(this->Folder + "/bad.vtm") << "no data";
  std::ofstream(this->Folder + "/points.csv") << "x,y,z,p\n0,0,0,1\n1,2,3,4\n";
  std::ofstream(this->Folder + "/force.csv") << "t,f\n0,1\n1,2\n";
  const std::vector<std::string> files = { this->File,
    zylTestData::Write(zylTestData::MakeTree(), this->Folder + "/tree.vtm"),
    zylTestData::WriteSeries(this->Folder, steps, 3), this->Folder + "/points.csv",
    this->Folder + "/force.csv", this->Folder + "/bad.vtm", this->Folder + "/none.vtm" };
  std::mt19937 random(7);
  const auto pick = [&random](int count) { return static_cast<int>(random() % count); };
  std::string loaded;
  for (int step = 0; step < 60; ++step)
  {
    auto* settings = this->Data->GetProperties();
    switch (pick(4))
    {
      case 0: {
        const std::string file = files[pick(7)];
        loaded = this->Data->LoadFromFile({ file }) ? file : loaded;
        break;
      }
      case 1:
        settings->Set("InterpolateCellDataToPointData", pick(2) == 0);
        break;
      case 2:
        settings->Set("ThresholdDataSet", pick(2) == 0);
        settings->Set("ThresholdVariable", pick(2) == 0 ? "pressure" : "p");
        settings->Set("ThresholdRange", 1, 0.5 + pick(4));
        break;
      default:
        zylTimeController::GetInstance()->GoToTime(pick(8) * 0.5);
    }
    if (loaded.empty())
    {
      continue;
    }
    this->Data->Update();
    vtkNew<zylDataSet> fresh;
    fresh->GetProperties()->DeepCopy(settings);
    ASSERT_TRUE(fresh->LoadFromFile({ loaded }));
    this->Data->Update();
    fresh->Update();
    ASSERT_EQ(Describe(this->Data), Describe(fresh)) << loaded << ", step " << step;
  }
}
