// The viewer's window under real keys and a real mouse.
#include "zylViewWindow.h"
#include "zylTestData.h"

#include <vtkMultiBlockDataSet.h>

#include <gtest/gtest.h>

using namespace zylViewRun;

namespace {
class zylViewWindowTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    if (!zylViewWindow::IsPossible())
    {
      GTEST_SKIP() << "no display, or no xdotool";
    }
  }

  const std::string Row =
    zylTestData::Write(zylTestData::MakeRow(3), zylTestData::MakeFolder() + "/row.vtm");
};

constexpr const char* Drag = "mousemove 300 200 mousedown 1 mousemove 340 230 sleep 0.1 "
                             "mousemove 420 290 mouseup 1";
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, TurnsAndComesBack)
{
  zylViewWindow window(this->Row);
  const Picture opening = window.Look();
  window.Do(Drag);
  const Picture turned = window.Look();
  EXPECT_GT(Difference(opening, turned), 0.05);
  window.Do("key 0");
  EXPECT_LT(Difference(opening, window.Look()), 0.001);
  window.Do(std::string("key t ") + Drag);
  const Picture rolled = window.Look();
  EXPECT_GT(Difference(turned, rolled), 0.01);
  window.Do("key t");
  EXPECT_GT(Difference(rolled, window.Look()), 0.01); // upright again
  const Outcome& outcome = window.Quit();
  EXPECT_EQ(outcome.ExitCode, 0);
  EXPECT_EQ(outcome.Text, "");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, ShowsTheDemonstrationWithoutFiles)
{
  const Picture demo = zylViewWindow("").Look();
  const Picture plain = zylViewWindow("--plain").Look();
  EXPECT_GT(Difference(demo, plain), 0.2);
}
