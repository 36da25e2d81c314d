#include <initializer_list>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <zylProperty.h>
#include <zylTestLog.h>

namespace {
constexpr auto Bool = zylProperty::Bool;
constexpr auto Int = zylProperty::Int;
constexpr auto Double = zylProperty::Double;
constexpr auto String = zylProperty::String;

//--------------------------------------------------------------------------------------------------
template <class T>
vtkSmartPointer<zylProperty> Make(zylProperty::PropertyType type, std::initializer_list<T> values)
{
  auto property = vtkSmartPointer<zylProperty>::New();
  property->SetPropertyType(type);
  property->SetNumberOfElements(static_cast<unsigned int>(values.size()));
  unsigned int i = 0;
  for (const T& value : values)
  {
    property->SetElement(i++, value);
  }
  return property;
}

//--------------------------------------------------------------------------------------------------
std::string Printed(zylProperty* property)
{
  std::ostringstream text;
  property->PrintProperty(text);
  return text.str();
}

//--------------------------------------------------------------------------------------------------
// Whether the action advances the modification time.
template <class Action>
bool Modifies(vtkObject* object, Action action)
{
  const auto before = object->GetMTime();
  action();
  return object->GetMTime() > before;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, ChangingTypeOrCountResetsTheValues)
{
  auto property = Make(Int, { 1, 2 });
  EXPECT_TRUE(Modifies(property, [&] { property->SetNumberOfElements(3); }));
  EXPECT_EQ(Printed(property), "0 0 0 ");
  EXPECT_FALSE(Modifies(property, [&] { property->SetNumberOfElements(3); }));

  property->SetElement(1, 7);
  EXPECT_FALSE(Modifies(property, [&] { property->SetPropertyType(Int); }));
  EXPECT_EQ(Printed(property), "0 7 0 ");
  for (const auto type : { String, Bool, Double, Int })
  {
    EXPECT_TRUE(Modifies(property, [&] { property->SetPropertyType(type); }));
    EXPECT_EQ(Printed(property), type == String ? "   " : "0 0 0 ");
  }
}

//--------------------------------------------------------------------------------------------------
// Counts on both sides of what fits into the object itself.
TEST(zylProperty, HoldsAnyNumberOfElements)
{
  for (const unsigned int count : { 1u, 2u, 4u, 5u, 8u, 9u, 32u, 33u, 1000u })
  {
    for (const auto type : { Bool, Int, Double, String })
    {
      auto property = vtkSmartPointer<zylProperty>::New();
      property->SetPropertyType(type);
      property->SetNumberOfElements(count);
      std::string expected;
      for (unsigned int i = 0; i < count; ++i)
      {
        const std::string text =
          "a string that is long enough to be on the heap " + std::to_string(i);
        switch (type)
        {
          case Bool:
            property->SetElement(i, i % 3 == 0);
            expected += i % 3 == 0 ? "1 " : "0 ";
            break;
          case Int:
            property->SetElement(i, static_cast<int>(i) - 5);
            expected += std::to_string(static_cast<int>(i) - 5) + " ";
            break;
          case Double:
            property->SetElement(i, i + 0.5);
            expected += std::to_string(i) + ".5 ";
            break;
          case String:
            property->SetElement(i, text);
            expected += text + " ";
            break;
        }
      }
      EXPECT_EQ(Printed(property), expected);
      vtkNew<zylProperty> copy;
      copy->SetPropertyType(String);
      copy->SetNumberOfElements(2);
      copy->DeepCopy(property);
      EXPECT_EQ(Printed(copy), expected);
      EXPECT_EQ(copy->GetHashValue(), property->GetHashValue());
      property->SetNumberOfElements(1);
      EXPECT_EQ(Printed(copy), expected);
    }
  }
}

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, OnlyAChangeModifies)
{
  const double nan = std::numeric_limits<double>::quiet_NaN();
  auto number = Make(Double, { 0.0, nan });
  EXPECT_FALSE(Modifies(number, [&] { number->SetElement(0, -0.0); }));
  EXPECT_TRUE(Modifies(number, [&] { number->Set(1e-300); }));
  EXPECT_FALSE(Modifies(number, [&] { number->Set(1e-300); }));
  EXPECT_TRUE(Modifies(number, [&] { number->SetElement(1, nan); }));

  auto text = Make<const char*>(String, { "a" });
  EXPECT_FALSE(Modifies(text, [&] { text->Set(std::string("a")); }));
  EXPECT_TRUE(Modifies(text, [&] { text->Set(std::string("a\0", 2)); }));
  EXPECT_EQ(text->GetString().size(), 2u);

  vtkNew<zylProperty> copy;
  copy->DeepCopy(text);
  EXPECT_TRUE(Modifies(copy, [&] { copy->DeepCopy(text); }));
  EXPECT_TRUE(Modifies(copy, [&] { copy->DeepCopy(copy); }));
  EXPECT_FALSE(Modifies(copy, [&] { copy->DeepCopy(nullptr); }));
  EXPECT_EQ(copy->GetString(), text->GetString());
}

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, SettingManyElementsNeverGrows)
{
  auto property = Make(Double, { 0.0, 0.0, 0.0 });
  const double values[] = { 1, 2, 3, 4, 5 };
  {
    zylTestLog log;
    property->SetElements(values, 5);
    EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_INFO,
      "Cannot set 5 elements in property with 3. Call zylProperty::SetNumberOfElements() first. "
      "Setting the first 3."))
      << log.Dump();
  }
  EXPECT_EQ(Printed(property), "1 2 3 ");
  zylTestLog log;
  const double other[] = { 8 };
  property->SetElements(other, 1);
  property->SetElements(static_cast<const double*>(nullptr), 2);
  EXPECT_EQ(Printed(property), "8 2 3 ");
  EXPECT_EQ(log.Dump(), "");
}

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, IndexOutOfRange)
{
  auto property = Make(String, { std::string("x") });
  zylTestLog log;
  EXPECT_EQ(property->GetStringElement(1), "");
  EXPECT_FALSE(Modifies(property, [&] { property->SetElement(4000000000u, "y"); }));
  EXPECT_TRUE(log.HasWarning("element 4000000000"));
}

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, WrongTypePrintsOneLine)
{
  auto d = Make(Double, { 1.0 });
  auto i = Make(Int, { 1 });
  const auto before = d->GetMTime();
  EXPECT_EQ(zylConsole([&] {
    EXPECT_FALSE(d->GetBool());
    EXPECT_EQ(d->GetInt(), 0);
    EXPECT_EQ(d->GetIntElements(), nullptr);
    EXPECT_EQ(i->GetDouble(), 0.0);
    EXPECT_EQ(i->GetDoubleElements(), nullptr);
    EXPECT_EQ(d->GetString(), "");
    EXPECT_EQ(d->GetStringElements(), nullptr);
    d->Set(true);
    d->Set(1);
    i->Set(1.0);
    d->Set("1");
  }),
    "Cannot retrieve bool element from Double property.\n"
    "Cannot retrieve int element from Double property.\n"
    "Cannot retrieve int* from Double property.\n"
    "Cannot retrieve double element from Int property.\n"
    "Cannot retrieve double* from Int property.\n"
    "Cannot retrieve string element from Double property.\n"
    "Cannot retrieve string* from Double property.\n"
    "Cannot set bool element on Double property.\n"
    "Cannot set int element on Double property.\n"
    "Cannot set double element on Int property.\n"
    "Cannot set string element on Double property.\n");
  EXPECT_EQ(d->GetMTime(), before);
}

//--------------------------------------------------------------------------------------------------
TEST(zylProperty, UnknownType)
{
  auto property = Make(Int, { 4, 5 });
  const auto before = property->GetMTime();
  EXPECT_EQ(zylConsole([&] {
    property->SetPropertyType(static_cast<zylProperty::PropertyType>(9));
    EXPECT_STREQ(property->GetPropertyTypeAsString(), "Unknown");
    property->GetHashValue();
    EXPECT_EQ(Printed(property), "");
    property->Set(1);
  }),
    "Unknown property type 9\n"
    "Unknown PropertyType 9\nUnknown PropertyType 9\n"
    "Uknown PropertyType 9\n"
    "Cannot set int element on Unknown property.\n");
  EXPECT_EQ(property->GetMTime(), before);
  property->SetPropertyType(Int);
  EXPECT_EQ(Printed(property), "0 0 ");
}

//--------------------------------------------------------------------------------------------------
// The numbers were computed by a program of another language.
TEST(zylProperty, Hash)
{
  EXPECT_EQ(vtkNew<zylProperty>()->GetHashValue(), 0u);
  EXPECT_EQ(Make(Bool, { false, true })->GetHashValue(), 0x1b4843a45faad3d3u);
  EXPECT_EQ(Make(Bool, { true })->GetHashValue(), 0xaf63bc4d24392fe5u);
  EXPECT_EQ(Make(Int, { 1 })->GetHashValue(), 0xad2aca77e5cfd11du);
  EXPECT_EQ(Make(Int, { 1, -2 })->GetHashValue(), 0x4b7a0d7f71b68d1du);
  EXPECT_EQ(Make(Double, { -0.0, 0.25, -1e300 })->GetHashValue(), 0x367e4a0a0cd0bcf9u);
  EXPECT_EQ(
    Make<const char*>(String, { "", "foobar", "\xc3\xbc" })->GetHashValue(), 0xa3e940b36e9376c2u);
  EXPECT_EQ(Make<const char*>(String, { "" })->GetHashValue(), 0xcbf29ce484222325u + 0x9e3779b9u);
  EXPECT_EQ(Make(Double, { 0.0 })->GetHashValue(), Make(Double, { -0.0 })->GetHashValue());
}
