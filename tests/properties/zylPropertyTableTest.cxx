#include <ParaView/zylPropertyTable.h>
#include <gtest/gtest.h>
#include <vtkNew.h>
#include <zylPropertyCollection.h>

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Bool("Shown", true).To("Visibility"),
  zylPropertyRow::Int("Count", -3),
  zylPropertyRow::Ints("Blocks").NotInHash(),
  zylPropertyRow::Double("Transparency", 0.25).To("Opacity").Mapped(1.0, -1.0),
  zylPropertyRow::Double2("Range", 0.0, 1.5),
  zylPropertyRow::Double3("Color", 1.0, 0.7019607843137254, 0.5),
  zylPropertyRow::String("Name", "Cool to Warm"),
};
static_assert(Rows[3].Offset == 1.0 && Rows[3].Scale == -1.0 && Rows[3].Defaults[0] == 0.25);
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyTable, Declare)
{
  vtkNew<zylPropertyCollection> collection;
  zylDeclare(collection, Rows);
  EXPECT_EQ(collection->GetPropertyNames().size(), 7u);
  EXPECT_TRUE(collection->GetBool("Shown"));
  EXPECT_EQ(collection->GetInt("Count"), -3);
  EXPECT_EQ(collection->GetProperty("Blocks")->GetPropertyType(), zylProperty::Int);
  EXPECT_EQ(collection->GetProperty("Blocks")->GetNumberOfElements(), 0u);
  EXPECT_FALSE(collection->GetProperty("Blocks")->GetIncludeInHash());
  EXPECT_TRUE(collection->GetProperty("Color")->GetIncludeInHash());
  EXPECT_EQ(collection->GetDouble("Range", 1), 1.5);
  EXPECT_EQ(collection->GetDouble("Color", 1), 0.7019607843137254);
  EXPECT_EQ(collection->GetString("Name"), "Cool to Warm");

  zylPush(collection, Rows, nullptr); // no proxy, no harm
}
