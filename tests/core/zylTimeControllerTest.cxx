#include "zylTimeController.h"

#include "zylTest.h"

namespace {
struct EventCounter
{
  int Events = 0;
  double TimeSeen = -1.0;
  unsigned long Tag;

  EventCounter()
  {
    this->Tag = zylTimeController::GetInstance()->AddObserver(
      zylTimeController::TimeChangedEvent, this, &EventCounter::Count);
  }
  ~EventCounter() { zylTimeController::GetInstance()->RemoveObserver(this->Tag); }
  void Count(vtkObject*, unsigned long, void*)
  {
    ++this->Events;
    this->TimeSeen = zylTimeController::GetInstance()->GetActiveTime();
  }
};

double PressureMinimum(zylDataSet* data)
{
  return zylRange(data->GetPointArrayInformation(0))[0];
}
} // namespace

TEST(zylTimeController, MovesOverTheStepsOfTheData)
{
  EXPECT_EQ(static_cast<unsigned long>(zylTimeController::TimeChangedEvent), 3219ul);
  auto* time = zylTimeController::GetInstance();
  EXPECT_TRUE(time->GetTimestepValues().empty());
  time->GoToPreviousTimeStep(); // where there is none
  const double steps[] = { 1.0, 3.0, 4.5 };
  const auto data = zylLoad(zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 3));
  EXPECT_EQ(time->GetTimestepValues(), std::vector<double>(steps, steps + 3));
  EXPECT_EQ(data->GetTimestepValues(), std::vector<double>(steps, steps + 3));
  EXPECT_EQ(PressureMinimum(data), 1.0);

  EventCounter counter;
  time->GoToNextTimeStep();
  EXPECT_EQ(counter.Events, 1);
  EXPECT_EQ(counter.TimeSeen, 3.0);
  EXPECT_EQ(PressureMinimum(data), 3.0);
  time->GoToLastTimeStep();
  time->GoToNextTimeStep(); // stays, and says so all the same
  EXPECT_EQ(counter.Events, 3);
  EXPECT_EQ(time->GetActiveTime(), 4.5);
  time->GoToPreviousTimeStep();
  EXPECT_EQ(PressureMinimum(data), 3.0);

  time->GoToTime(1.0);
  EXPECT_EQ(counter.Events, 5);
  EXPECT_EQ(PressureMinimum(data), 1.0);
  time->GoToTime(1.0); // the active time already: silent
  EXPECT_EQ(counter.Events, 5);
  time->GoToLastTimeStep();
  time->GoToTime(1.0); // the property still holds 1.0
  EXPECT_EQ(time->GetActiveTime(), 1.0);
  EXPECT_EQ(PressureMinimum(data), 1.0);

  time->GoToTime(2.0); // not snapped here; equally near: the first one
  EXPECT_EQ(time->GetActiveTime(), 2.0);
  EXPECT_EQ(PressureMinimum(data), 1.0);
  time->GoToTime(2.1);
  EXPECT_EQ(PressureMinimum(data), 3.0);

  const int before = counter.Events;
  time->Update();
  EXPECT_EQ(time->GetActiveTime(), 2.1);
  EXPECT_EQ(counter.Events, before);

  zylSet(data->GetProperties(), "FreezeTime", true, "FrozenTime", 4.4);
  data->Update();
  EXPECT_EQ(PressureMinimum(data), 4.5);
  time->GoToFirstTimeStep();
  EXPECT_EQ(PressureMinimum(data), 4.5);
}
