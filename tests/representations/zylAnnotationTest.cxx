// Texts in a view: what they say, where they are, and what they leave alone; built in and from a
// server.
#include "zylAnnotation.h"
#include "zylSessionScene.h"
#include "zylTest.h"
#include "zylTimeController.h"
#include "zylView.h"

#include <array>
#include <cstdlib>

#include <vtkTable.h>

namespace {
// Left, bottom, right, top.
using Rectangle = std::array<int, 4>;

vtkSMSourceProxy* FindFilter()
{
  return zylFindSource("PythonAnnotation");
}

class zylAnnotationText
  : public zylSessionTest
  , public testing::WithParamInterface<bool>
{
protected:
  void SetUp() override
  {
    zylSessionTest::SetUp();
    if (!this->Host || (GetParam() && !this->ConnectToServer()))
    {
      GTEST_SKIP() << "no host or no server here";
    }
    const double steps[] = { 1.0, 3.0 };
    this->Data = zylLoad(zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 2));
    this->View = zylMakeView();
    // The eye is at the origin and looks along -z; (0, 0, -2) is in the middle, 90 pixels a unit.
    const double t = 2.0 * 90 / 150;
    const double projection[16] = { t, 0, 0, 0, 0, t, 0, 0, 0, 0, -5.0 / 3, -8.0 / 3, 0, 0, -1, 0 };
    this->View->SetCameraMatrices(nullptr, nullptr, projection);
    this->Set("Visibility", true, "Expression", "'Text'");
    this->Annotation->SetDataSet(this->Data);
  }
  void TearDown() override
  {
    this->View = nullptr;
    this->Annotation->SetDataSet(nullptr);
    this->Data = nullptr;
    zylSessionTest::TearDown();
  }

  zylPropertyCollection* Settings() { return this->Annotation->GetProperties(); }
  template <class... Settings>
  void Set(const Settings&... settings)
  {
    zylSet(this->Settings(), settings...);
  }
  std::string GetText()
  {
    this->Annotation->Update();
    const auto data = zylCore::Fetch(FindFilter(), nullptr);
    auto* table = vtkTable::SafeDownCast(data);
    return table ? table->GetValue(0, 0).ToString() : "no table";
  }
  // What of the picture is red. The host has painted a blue wall: in front of the scene for a flat
  // text, which is above all, and behind it for the others.
  Rectangle DrawAndFind(const std::string& picture)
  {
    this->Annotation->Update();
    this->Host->Clear(0, 0, 1);
    this->Host->DrawQuad(
      { -1, -1, 1, 1 }, this->Settings()->GetInt("PropMode") == 0 ? 0.01f : 0.99f, { 0, 0, 1 });
    this->Unchanged(picture.c_str(), [this] { this->View->Render(); });
    if (const char* folder = std::getenv("ZYL_PICTURES"))
    {
      this->Host->WritePicture(std::string(folder) + "/annotation_" + picture + ".png");
    }
    Rectangle found = { 300, 300, -1, -1 };
    for (int y = 0; y < 300; ++y)
    {
      for (int x = 0; x < 300; ++x)
      {
        const auto pixel = this->Host->Pixel(x, y);
        if (pixel[0] > 128)
        {
          found = { std::min(found[0], x), std::min(found[1], y), std::max(found[2], x),
            std::max(found[3], y) };
        }
      }
    }
    return found;
  }

  vtkNew<zylAnnotation> Annotation;
  vtkSmartPointer<zylDataSet> Data;
  vtkSmartPointer<zylView> View;
};

bool IsEmpty(const Rectangle& found)
{
  return found[2] < 0;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_P(zylAnnotationText, SaysWhatTheDataAre)
{
  this->Data->DefineDerivedPointVariable("twice", "2 * pressure");
  this->Data->DefineDerivedPointVariable("more", "twice + 1");
  const struct
  {
    const char* Expression;
    int Association;
    const char* Texts[2]; // at the two steps
  } rows[] = {
    { "'p < %g' % max(pressure)", 0, { "p < 3", "p < 5" } },
    { "'%g, %g' % (max(more), min(twice))", 0, { "7, 2", "11, 6" } },
    { "'%g' % max(quality)", 1, { "7", "7" } },
    { "'step %d of %d, t = %g' % (time_index, len(time_steps), time_value)", 2,
      { "step 0 of 2, t = 1", "step 1 of 2, t = 3" } },
    { "'\xc3\xbc\\n' + \"'\"", 0, { "\xc3\xbc\n'", "\xc3\xbc\n'" } },
    { "max(morepressure)", 0, { "(error)", "(error)" } },
  };
  for (const auto& row : rows)
  {
    this->Set("Expression", row.Expression, "ArrayAssociation", row.Association);
    for (int step = 0; step < 2; ++step)
    {
      zylTimeController::GetInstance()->GoToTime(step == 0 ? 1.0 : 3.0);
      EXPECT_EQ(this->GetText(), row.Texts[step]) << row.Expression;
    }
  }
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylAnnotationText, IsWhereItIsPut)
{
  this->View->AddRepresentation(this->Annotation);
  this->Set("Color", zylValues{ 1, 0, 0 }, "FontSize", 20, "Position", zylValues{ 0.5, 0.25 });
  const Rectangle flat = this->DrawAndFind("widget");
  Rectangle bounds = { -1, -1, -1, -1 };
  this->Annotation->GetScreenBounds(bounds.data());
  EXPECT_NEAR(bounds[0], 150, 1);
  EXPECT_NEAR(bounds[1], 75, 1);
  ASSERT_FALSE(IsEmpty(flat));
  EXPECT_LE(bounds[0], flat[0]);
  EXPECT_LE(bounds[1], flat[1]);
  EXPECT_GE(bounds[2] + 1, flat[2]);
  EXPECT_GE(bounds[3] + 1, flat[3]);
  EXPECT_LT(flat[3] - flat[1], 40);
  double box[6] = { 1, 2, 3, 4, 5, 6 };
  EXPECT_FALSE(this->Annotation->GetBounds(box));
  EXPECT_FALSE(this->View->GetBounds(box));

  this->Set("PropMode", 2, "BillboardPosition", zylValues{ 0, 0, -2 });
  const Rectangle billboard = this->DrawAndFind("billboard");
  this->Set("BillboardDisplayOffset", zylValues{ -50, 30 });
  const Rectangle moved = this->DrawAndFind("billboard_moved");
  ASSERT_FALSE(IsEmpty(billboard) || IsEmpty(moved));
  EXPECT_NEAR(billboard[0], 150, 20);
  EXPECT_NEAR(billboard[1], 150, 20);
  EXPECT_NEAR(moved[0], billboard[0] - 50, 1);
  EXPECT_NEAR(moved[1], billboard[1] + 30, 1);

  this->Set("PropMode", 1, "FlagpoleBasePosition", zylValues{ 0, -1, -2 }, "FlagpoleTopPosition",
    zylValues{ 0, 0.5, -2 }, "FlagpoleFlagSize", 5.0);
  const Rectangle flag = this->DrawAndFind("flagpole");
  ASSERT_FALSE(IsEmpty(flag));
  EXPECT_NEAR(flag[1], 150 - 90, 2); // the foot
  EXPECT_GE(flag[3], 150 + 45 + 10); // the flag is above the top
  EXPECT_GT(flag[2] - flag[0], 30);

  // Where it was, with a word.
  this->Settings()->Set("PropMode", 3);
  zylTestLog log;
  EXPECT_EQ(this->DrawAndFind("unknown"), flag);
  EXPECT_TRUE(log.HasError(
    "Unknown prop mode '3' given. Valid values are '2DTextWidget', 'Flagpole', 'Billboard3D'"));
}

//--------------------------------------------------------------------------------------------------
// In every mode, whatever was shown before.
TEST_P(zylAnnotationText, HidesAndComesBack)
{
  this->Set("Color", zylValues{ 1, 0, 0 }, "BillboardPosition", zylValues{ 0, 0, -2 },
    "FlagpoleBasePosition", zylValues{ 0, -1, -2 }, "FlagpoleTopPosition", zylValues{ 0, 0.5, -2 },
    "Visibility", false);
  this->View->AddRepresentation(this->Annotation);
  for (const int mode : { 1, 2, 0, 1 })
  {
    this->Settings()->Set("PropMode", mode); // while another one is hidden in the same update
    EXPECT_TRUE(IsEmpty(this->DrawAndFind("hidden"))) << mode;
    this->Settings()->Set("Visibility", true);
    this->Annotation->Show();
    EXPECT_TRUE(this->Annotation->IsVisible());
    const Rectangle shown = this->DrawAndFind("shown");
    EXPECT_FALSE(IsEmpty(shown)) << mode;
    this->Annotation->FreeResources();
    EXPECT_EQ(this->DrawAndFind("again"), shown) << mode;
    this->Annotation->Hide();
    EXPECT_FALSE(this->Annotation->IsVisible());
  }
  this->Annotation->Show();
  this->View->RemoveRepresentation(this->Annotation);
  EXPECT_EQ(FindFilter(), nullptr);
  EXPECT_TRUE(IsEmpty(this->DrawAndFind("removed")));
}

INSTANTIATE_TEST_SUITE_P(Sessions, zylAnnotationText, testing::Bool(),
  [](const auto& info) { return info.param ? "Server" : "BuiltIn"; });
