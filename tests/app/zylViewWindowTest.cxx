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

// The picture beside the panel.
Picture Beside(const Picture& picture)
{
  Picture part;
  for (std::size_t i = 0; i < picture.Pixels.size(); i += 3)
  {
    if (i / 3 % picture.Width >= 340)
    {
      part.Pixels.insert(part.Pixels.end(), &picture.Pixels[i], &picture.Pixels[i] + 3);
    }
  }
  return part;
}

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

//--------------------------------------------------------------------------------------------------
// "pressure" of each step lies above that of the one before.
TEST_F(zylViewWindowTest, ColorsFollowTheTimeStepsSeen)
{
  const double times[] = { 0.0, 10.0, 20.0 };
  const std::string series = zylTestData::WriteSeries(zylTestData::MakeFolder(), times, 3);
  zylViewWindow window("--no-legend " + series);
  const Picture first = window.Look();
  window.Do("key Right");
  const Picture grown = window.Look();
  EXPECT_GT(Difference(first, grown), 0.1); // all of it is hot compared with the first
  window.Do("key v");
  EXPECT_LT(Difference(first, window.Look()), 0.001); // as varied as the first step was
  window.Do("key Right key Left");
  const Picture upper = window.Look();
  EXPECT_GT(Difference(first, upper), 0.1); // from the second to the third
  EXPECT_GT(Difference(grown, upper), 0.1);
  window.Do("key shift+v");
  const Picture all = window.Look();
  for (const Picture* other : { &first, &grown, &upper })
  {
    EXPECT_GT(Difference(*other, all), 0.1);
  }
  window.Do("key Right key Left key Left key Right");
  EXPECT_LT(Difference(all, window.Look()), 0.001); // nothing is left to grow
  EXPECT_EQ(window.Quit().Text, "");
  // Who gives a range keeps it.
  zylViewWindow fixed("--no-legend --range 0,2 " + series);
  EXPECT_LT(Difference(first, fixed.Look()), 0.001);
  fixed.Do("key Right key Left");
  EXPECT_LT(Difference(first, fixed.Look()), 0.001);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, ShowsProgressAndObeysWhileItLoads)
{
  const std::string file =
    zylTestData::Write(zylTestData::MakeRow(1500, 1), zylTestData::MakeFolder() + "/many.vtm");
  zylViewWindow window("--stats " + file, "^zylview - loading$");
  EXPECT_GT(window.Grab().Colors, 1000u); // the ground, a text and a bar
  const Outcome& outcome = window.Quit();
  EXPECT_EQ(outcome.ExitCode, 0);
  EXPECT_EQ(outcome.Text, ""); // not even the time of the load
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, KeysChangeWhatIsShown)
{
  zylViewWindow window(this->Row);
  EXPECT_NE(window.GetTitle().find("row.vtm"), std::string::npos) << window.GetTitle();
  Picture last = window.Look();
  const Picture first = last;
  const struct
  {
    const char *Key, *Back;
    double Change;
  } keys[] = { { "n", "shift+n", 0.05 }, { "m", "m key m key m key m", 0.05 }, { "l", "l", 0.005 },
    { "e", "e", 0.002 }, { "b", "b key b", 0.3 } };
  for (const auto& key : keys)
  {
    window.Do(std::string("key ") + key.Key);
    EXPECT_GT(Difference(last, window.Look()), key.Change) << key.Key;
    window.Do(std::string("key ") + key.Back);
    last = window.Look();
    EXPECT_LT(Difference(first, last), 0.002) << key.Back;
  }
  // The picture is what the window shows; the files are read again.
  window.Do("key p key s key e");
  last = window.Look();
  window.Do("key e");
  EXPECT_LT(Difference(window.Look(), ReadPicture(Folder() + "/zylview-1.png")), 0.01);
  zylTestData::Write(zylTestData::MakeRow(3, 20), this->Row);
  window.Do("key F5 key e");
  EXPECT_GT(Difference(last, window.Look()), 0.02); // a finer mesh
  EXPECT_EQ(window.Quit().Text, "zylview-1.png\nzylview-1.json\n");
}

//--------------------------------------------------------------------------------------------------
// Where the panel's widgets are follows from its font, which is built in.
TEST_F(zylViewWindowTest, PanelShowsSelectsAndSets)
{
#ifndef ZYL_HAS_PANEL
  GTEST_SKIP() << "built without";
#endif
  zylViewWindow window("--no-legend --from 0,-1,0.4 --zoom 0.5 " + this->Row);
  const Picture plain = window.Look();
  window.Do("key Tab");
  const Picture panel = window.Look();
  EXPECT_GT(Difference(plain, panel), 0.4);
  window.Do("mousemove 26 183 click 1"); // the root's check box
  const Picture hidden = window.Look();
  EXPECT_GT(Difference(Beside(panel), Beside(hidden)), 0.005);
  window.Do("mousemove 26 183 click 1");
  EXPECT_LT(Difference(Beside(panel), Beside(window.Look())), 0.001);
  // A click on a block outlines it and offers its settings; beside it there is nothing to select.
  window.Do("mousemove 345 200 click 1 mousemove 560 20");
  const Picture selected = window.Look();
  EXPECT_GT(Difference(Beside(panel), Beside(selected)), 0.0003);
  EXPECT_GT(Difference(panel, selected), Difference(Beside(panel), Beside(selected)));
  window.Do("mousemove 560 380 click 1 mousemove 560 20");
  const Picture none = window.Look();
  EXPECT_LT(Difference(Beside(panel), Beside(none)), 0.0001);
  EXPECT_GT(Difference(selected, none), 0.005); // no settings
  // What is typed into the search is no key of the window.
  window.Do("mousemove 80 152 click 1 type bnq");
  window.Do("mousemove 560 20");
  const Picture found = window.Look();
  EXPECT_GT(Difference(panel, found), 0.002);
  EXPECT_LT(Difference(Beside(panel), Beside(found)), 0.001);
  window.Do("mousemove 560 380 click 1 key Tab"); // out of the text, and away
  EXPECT_LT(Difference(plain, window.Look()), 0.002);
  EXPECT_EQ(window.Quit().Text, "");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, PanelAddsACut)
{
#ifndef ZYL_HAS_PANEL
  GTEST_SKIP() << "built without";
#endif
  zylViewWindow window("--size 700x600 --opacity 0.1 --no-legend --array velocity_X " + this->Row);
  window.Do("key Tab");
  const Picture before = window.Look();
  window.Do("mousemove 40 410 click 1"); // "add a cut"
  EXPECT_GT(Difference(Beside(before), Beside(window.Look())), 0.005);
  EXPECT_EQ(window.Quit().Text, "");
}
