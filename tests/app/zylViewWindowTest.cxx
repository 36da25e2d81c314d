// The viewer's window under real keys and a real mouse.
#include "zylViewWindow.h"
#include "zylTestData.h"

#include <regex>
#include <set>

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

std::vector<int> GetSelected(const Json::Value& scene)
{
  std::vector<int> blocks;
  for (const Json::Value& block : scene["datasets"][0]["selected"])
  {
    blocks.push_back(block.asInt());
  }
  return blocks;
}

constexpr const char* Drag = "mousemove 300 200 mousedown 1 mousemove 340 230 sleep 0.1 "
                             "mousemove 420 290 mouseup 1 mousemove 597 3";
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
TEST_F(zylViewWindowTest, LongWorkCanBeCanceled)
{
  const std::string file =
    zylTestData::Write(zylTestData::MakeRow(1500, 1), zylTestData::MakeFolder() + "/many.vtm");
  zylViewWindow window("--no-legend " + file);
  const Picture before = window.Look();
  window.Do("key F5 key --delay 20 --repeat 100 c"); // one of them falls into the work
  EXPECT_LT(Difference(before, window.Look()), 0.001);
  const std::string text = window.Quit().Text;
  EXPECT_NE(text.find("not read again: canceled"), std::string::npos) << text;
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
  // Blocks that are new look like those that were there.
  zylTestData::Write(zylTestData::MakeRow(5), this->Row);
  window.Do("key F5 key r");
  EXPECT_GT(Difference(last, window.Look()), 0.05);
  const Json::Value scene = window.Save();
  for (const char* kind : { "Surface", "MeshLine" })
  {
    const Json::Value& looks = scene["datasets"][0]["blocks"][kind];
    ASSERT_EQ(looks.size(), 1u) << kind;
    EXPECT_EQ(looks[0]["blocks"].size(), 5u) << kind;
  }
  EXPECT_EQ(window.Quit().Text, "zylview-1.png\nzylview-1.json\nzylview-1.json\n");
}

//--------------------------------------------------------------------------------------------------
// The arrays of the row are functions of the place, so that each line can be checked by another.
TEST_F(zylViewWindowTest, TellsTheNumbersUnderThePointer)
{
  zylViewWindow window("--stats --no-legend --cut 0.5,0.5,0.5,1,0,0.2 --opacity 1 --block "
                       "1:Visibility=false " +
    this->Row);
  const Picture plain = window.Look();
  const char* places[] = { "130 220", "300 190", "400 180" };
  for (const char* place : places)
  {
    window.Do(std::string("mousemove ") + place);
    const Picture hovered = window.Look();
    EXPECT_GT(Difference(plain, hovered), 0.03) << place;
    window.Do("key i");
  }
  window.Do("mousemove 597 3");
  EXPECT_LT(Difference(plain, window.Look()), 0.0001);
  window.Do("key i"); // there is nothing
  window.Do("mousemove 300 190 mousedown 2 sleep 1");
  EXPECT_LT(Difference(plain, window.Look()), 0.0001); // a pressed button means something else
  window.Do("mouseup 2 key shift+i mousemove 310 190 sleep 1");
  EXPECT_LT(Difference(plain, window.Look()), 0.0001); // it is switched off
  const std::string text = window.Quit().Text;
  const std::regex numbers("\n?(Cut 1|block_[23], block [23]), cell \\d+\nat (\\S+), (\\S+), (\\S+)"
                           "\npressure: (\\S+)\nvelocity: (\\S+) (\\S+) (\\S+)  \\(\\S+\\)");
  std::set<std::string> names;
  for (std::sregex_iterator i(text.begin(), text.end(), numbers), end; i != end; ++i)
  {
    const auto number = [&i](int part) { return std::stod((*i)[part]); };
    names.insert((*i)[1]);
    EXPECT_NEAR(number(5), number(2), 1e-5) << i->str();
    EXPECT_NEAR(number(6), number(3), 1e-5) << i->str();
    EXPECT_NEAR(number(7), 1.0 - number(2), 1e-5) << i->str();
    EXPECT_NEAR(number(8), number(4), 1e-5) << i->str();
  }
  EXPECT_EQ(names, (std::set<std::string>{ "Cut 1", "block_2, block 2", "block_3, block 3" }))
    << text;
  // Not one frame of the scene was drawn for all that, but the first and what was needed to open.
  EXPECT_EQ(text.find("mean of"), std::string::npos) << text;
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewWindowTest, ClicksSelectAndSetTheCenter)
{
  zylViewWindow window("--no-legend --view 1 " + this->Row);
  const Picture plain = window.Look();
  const struct
  {
    const char* Does;
    std::vector<int> Selected;
  } rows[] = {
    { "mousemove 300 200 click 1", { 2 } },
    { "mousemove 200 200 keydown ctrl click 1 keyup ctrl", { 1, 2 } },
    { "mousemove 300 200 sleep 1 keydown ctrl click 1 keyup ctrl", { 1 } },
    { "mousemove 400 200 click 1", { 3 } },
    { "mousemove 590 390 click 1", {} },
    { "mousemove 250 100 keydown ctrl mousedown 1 mousemove 300 150 sleep 0.1 mousemove 430 330 "
      "mouseup 1 keyup ctrl",
      { 2, 3 } },
    { "mousemove 150 100 keydown ctrl mousedown 1 mousemove 200 150 sleep 0.1 mousemove 210 330 "
      "keydown shift mouseup 1 keyup shift keyup ctrl",
      { 1, 2, 3 } },
    { "mousemove 250 100 keydown ctrl mousedown 1 mousemove 200 50 sleep 0.1 mousemove 1 1 "
      "mouseup 1 keyup ctrl",
      {} },
  };
  for (const auto& row : rows)
  {
    window.Do(std::string(row.Does) + " mousemove 597 3");
    EXPECT_EQ(GetSelected(window.Save()), row.Selected) << row.Does;
    EXPECT_EQ(Difference(plain, window.Look()) > 0.001, !row.Selected.empty()) << row.Does;
  }
  // The point that was picked stays where it is seen.
  window.Do("mousemove 400 200 click 1 sleep 0.1 click 1 mousemove 400 200");
  const Json::Value center = window.Save()["camera"]["center"];
  ASSERT_EQ(center.size(), 3u);
  EXPECT_GT(center[0].asDouble(), 2.0);
  EXPECT_NEAR(center[2].asDouble(), 1.0, 1e-6); // on the surface
  window.Do("key i mousemove 300 200 mousedown 1 mousemove 320 220 sleep 0.1 mousemove 340 230 "
            "mouseup 1 mousemove 400 200");
  const Picture turned = window.Look();
  EXPECT_GT(Difference(plain, turned), 0.05);
  window.Do("key i key r");
  EXPECT_FALSE(window.Save()["camera"].isMember("center"));
  const std::string text = window.Quit().Text;
  const std::regex place("block_3, block 3, cell \\d+\nat (\\S+), (\\S+), (\\S+)");
  std::vector<std::smatch> matches;
  for (std::sregex_iterator i(text.begin(), text.end(), place), end; i != end; ++i)
  {
    matches.push_back(*i);
  }
  ASSERT_EQ(matches.size(), 2u) << text;
  for (int i = 0; i < 3; ++i)
  {
    EXPECT_NEAR(std::stod(matches[0][1 + i]), center[i].asDouble(), 0.01);
    EXPECT_NEAR(std::stod(matches[1][1 + i]), center[i].asDouble(), 0.02);
  }
}
