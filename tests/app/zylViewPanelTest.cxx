// The viewer's panel under real keys and a real mouse. Where its widgets are follows from its font,
// which is built in.
#include "zylTestData.h"
#include "zylViewWindow.h"

#include <filesystem>
#include <functional>
#include <set>

#include <vtkMultiBlockDataSet.h>

#include <gtest/gtest.h>

using namespace zylViewRun;

namespace {
class zylViewPanelTest : public ::testing::Test
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

// The panel looks where the mouse is a frame after the click: it goes only then.
Picture Click(zylViewWindow& window, int x, int y)
{
  window.Do("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1");
  window.Look();
  window.Do("mousemove 690 690");
  return window.Look();
}

constexpr const char* Enter = "keydown Return sleep 0.5 keyup Return"; // as long as people take

// Press there and pull to the right; the panel follows frame by frame.
std::string Drag(int x, int y)
{
  const std::string row = " " + std::to_string(y) + " sleep 1 ";
  return "mousemove " + std::to_string(x) + row + "mousedown 1 sleep 1 mousemove " +
    std::to_string(x + 10) + row + "mousemove " + std::to_string(x + 60) + row + "mouseup 1 " +
    "mousemove 690 690";
}

double GetElement(const Json::Value& settings, const char* name, int element)
{
  for (const Json::Value& property : settings["collection"])
  {
    if (property["name"] == name)
    {
      return property["property"]["elements"][element].asDouble();
    }
  }
  ADD_FAILURE() << "no " << name;
  return 0.0;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewPanelTest, ShowsSelectsAndSearches)
{
  zylViewWindow window("--no-legend --from 0,-1,0.4 --zoom 0.5 " + this->Row);
  const Picture plain = window.Look();
  window.Do("key Tab");
  const Picture panel = window.Look();
  EXPECT_GT(Difference(plain, panel), 0.4);
  const Picture hidden = Click(window, 26, 202); // the root's check box
  EXPECT_GT(Difference(Beside(panel), Beside(hidden)), 0.005);
  EXPECT_LT(Difference(Beside(panel), Beside(Click(window, 26, 202))), 0.001);
  // A click on a block outlines it and offers its settings; beside it there is nothing to select.
  window.Do("mousemove 345 200 click 1 mousemove 560 20");
  const Picture selected = window.Look();
  EXPECT_GT(Difference(Beside(panel), Beside(selected)), 0.0003);
  EXPECT_GT(Difference(panel, selected), Difference(Beside(panel), Beside(selected)));
  window.Do("mousemove 560 380 click 1 mousemove 560 20");
  const Picture none = window.Look();
  EXPECT_LT(Difference(Beside(panel), Beside(none)), 0.0001);
  EXPECT_GT(Difference(selected, none), 0.005); // no settings
  // The tree selects as the picture does.
  Click(window, 80, 248); // block_2
  EXPECT_EQ(window.Save()["datasets"][0]["selected"][0], 2);
  window.Do("mousemove 560 380 click 1 mousemove 560 20");
  // What is typed into the search is no key of the window.
  window.Do("mousemove 80 171 click 1");
  window.Look();
  window.Do("type bnq");
  window.Do("mousemove 560 20");
  const Picture found = window.Look();
  EXPECT_GT(Difference(panel, found), 0.002);
  EXPECT_LT(Difference(Beside(panel), Beside(found)), 0.001);
  window.Do("mousemove 560 380 click 1"); // out of the text
  window.Look();
  window.Do("key Tab"); // and away
  EXPECT_LT(Difference(plain, window.Look()), 0.002);
  EXPECT_EQ(window.Quit().ExitCode, 0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewPanelTest, MakesDragsAndRemoves)
{
  zylViewWindow window("--size 700x700 --opacity 0.3 --no-legend " + this->Row);
  const auto save = [&window] { return window.Save()["datasets"][0]; };
  window.Do("key Tab mousemove 690 690");
  const Picture before = window.Look();
  const Picture cut = Click(window, 44, 449); // "add a cut"
  EXPECT_GT(Difference(Beside(before), Beside(cut)), 0.005);
  const Json::Value made = save()["derived"];
  ASSERT_EQ(made.size(), 1u);
  EXPECT_EQ(made[0]["kind"], "Cut");
  Click(window, 60, 469);   // opens its settings
  window.Do(Drag(50, 535)); // x of its center
  const Json::Value moved = save()["derived"][0];
  EXPECT_GT(
    GetElement(moved["settings"], "Center", 0), GetElement(made[0]["settings"], "Center", 0) + 0.1);
  EXPECT_EQ(GetElement(moved["settings"], "Center", 1), 0.5);
  EXPECT_GT(Difference(Beside(cut), Beside(window.Look())), 0.005);
  EXPECT_LT(Difference(Beside(before), Beside(Click(window, 53, 489))), 0.001); // "remove"
  EXPECT_EQ(save()["derived"].size(), 0u);
  // A clip, alike.
  Click(window, 45, 412);
  EXPECT_GT(Difference(Beside(before), Beside(Click(window, 80, 429))), 0.05); // "add a plane"
  EXPECT_EQ(save()["clips"].size(), 1u);
  Click(window, 60, 429);
  EXPECT_LT(Difference(Beside(before), Beside(Click(window, 95, 449))), 0.001); // "remove"
  EXPECT_EQ(save()["clips"].size(), 0u);
  EXPECT_EQ(window.Quit().Text.find("WARN"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewPanelTest, DefinesVariablesAndSaysWhatIsWrong)
{
  zylViewWindow window("--size 700x700 --no-legend " + this->Row);
  const auto save = [&window] { return window.Save()["datasets"][0]; };
  window.Do("key Tab mousemove 690 690");
  const Picture before = window.Look();
  Click(window, 65, 429); // "Variables"
  const auto define = [&window](int y, const std::string& name, const std::string& expression) {
    const auto type = [&window](int line, const std::string& text) {
      Click(window, 80, line);
      window.Do("keydown ctrl keydown a sleep 0.5 keyup a keyup ctrl");
      window.Look();
      window.Do("type --delay 100 '" + text + "'");
      window.Look();
    };
    type(y, name);
    type(y + 23, expression);
    window.Do(Enter);
    return window.Look();
  };
  const Picture speed = define(449, "speed", "mag(velocity)");
  EXPECT_GT(Difference(Beside(before), Beside(speed)), 0.05);
  Json::Value saved = save();
  EXPECT_EQ(saved["expressions"]["speed"], "mag(velocity)");
  EXPECT_EQ(saved["colors"]["array"], "speed");
  window.Do(Drag(132, 125)); // the upper end of the colors
  EXPECT_GT(save()["colors"]["range"][1].asDouble(), saved["colors"]["range"][1].asDouble() + 0.1);
  EXPECT_GT(Difference(Beside(speed), Beside(window.Look())), 0.05);
  Click(window, 53, 446); // "remove"
  saved = save();
  EXPECT_FALSE(saved.isMember("expressions"));
  EXPECT_EQ(saved["colors"]["array"], "");
  define(449 - 69, "bad", "pressure+"); // there are no colors any more
  EXPECT_FALSE(save().isMember("expressions"));
  const std::string text = window.Quit().Text;
  EXPECT_NE(text.find("the variable 'bad' cannot be computed"), std::string::npos) << text;
  EXPECT_NE(text.find("SyntaxError"), std::string::npos) << text;
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewPanelTest, SavesAndOpensScenes)
{
  const std::string scene = Folder() + "/scene.json", picture = Folder() + "/picture.png";
  zylViewWindow window("--size 700x700 --no-legend " + this->Row);
  window.Do("key Tab mousemove 690 690");
  const Picture before = window.Look();
  const auto choose = [&window](int item, const std::pair<int, int>& then) {
    Click(window, 29, 29);
    Click(window, 60, item);
    return Click(window, then.first, then.second);
  };
  choose(87, { 184, 278 }); // "Save the scene ...", "save"
  EXPECT_TRUE(std::filesystem::exists(scene));
  window.Do("mousemove 600 350 click 1 mousemove 690 690 key m key b key n");
  EXPECT_GT(Difference(Beside(before), Beside(window.Look())), 0.2);
  // The list of messages has come, with the name of the file.
  choose(70, { 60, 425 });
  window.Do("type --delay 100 scene.json");
  window.Look();
  window.Do(Enter);
  EXPECT_LT(Difference(Beside(before), Beside(window.Look())), 0.001);
  EXPECT_EQ(window.Save()["datasets"][0]["selected"].size(), 0u);
  choose(104, { 184, 425 }); // "Save a picture ..."
  EXPECT_LT(Difference(Beside(before), Beside(ReadPicture(picture))), 0.01);
  const Outcome outcome = window.Quit();
  EXPECT_EQ(outcome.ExitCode, 0);
  EXPECT_NE(outcome.Text.find("scene.json: reads " + this->Row), std::string::npos) << outcome.Text;
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylViewPanelTest, MovesInTime)
{
  const double times[] = { 0.0, 10.0, 20.0 };
  zylViewWindow window(
    "--no-legend " + zylTestData::WriteSeries(zylTestData::MakeFolder(), times, 3));
  window.Do("key Tab");
  window.Look();
  const std::pair<int, int> buttons[] = { { 70, 2 }, { 95, 3 }, { 70, 1 }, { 48, 3 }, { 19, 1 } };
  for (const auto& [x, step] : buttons)
  {
    Click(window, x, 56);
    EXPECT_NE(window.GetTitle().find("step " + std::to_string(step) + " of 3"), std::string::npos)
      << x << window.GetTitle();
  }
  window.Do("mousemove 131 56 click 1"); // "play"
  std::set<std::string> titles;
  for (int i = 0; i < 200 && titles.size() < 3; ++i)
  {
    titles.insert(window.GetTitle());
  }
  EXPECT_EQ(titles.size(), 3u);
  window.Do("click 1"); // "pause"
  window.Look();
  const std::string title = window.GetTitle();
  window.Look();
  EXPECT_EQ(window.GetTitle(), title);
}
