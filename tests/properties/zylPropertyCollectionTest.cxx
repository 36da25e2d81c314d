#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vtkNew.h>
#include <zylPropertyCollection.h>
#include <zylTestLog.h>

#include "Settings/zylChangeList.h"

namespace {
using Names = std::vector<std::string>;

//--------------------------------------------------------------------------------------------------
// A collection as it would be without sharing: made anew, property by property.
using Model = std::map<std::string, vtkSmartPointer<zylProperty>>;

vtkSmartPointer<zylPropertyCollection> MakeAnew(const Model& model)
{
  auto collection = vtkSmartPointer<zylPropertyCollection>::New();
  for (const auto& [name, property] : model)
  {
    collection->MakeInt(name)->DeepCopy(property);
  }
  return collection;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, NamesAreOrderedByBytes)
{
  vtkNew<zylPropertyCollection> collection;
  for (const char* name : { "b", "a", "B", "\xc3\xa4", "" })
  {
    collection->MakeInt(name, 1);
  }
  EXPECT_EQ(collection->GetPropertyNames(), (Names{ "", "B", "a", "b", "\xc3\xa4" }));
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, MakingReplaces)
{
  vtkNew<zylPropertyCollection> collection;
  vtkSmartPointer<zylProperty> first = collection->MakeDouble("X");
  EXPECT_EQ(first->GetNumberOfElements(), 0u);
  const bool values[] = { true, false };
  const auto before = collection->GetMTime();
  zylProperty* second = collection->MakeBool("X", values, 2);
  EXPECT_GT(collection->GetMTime(), before);
  EXPECT_EQ(collection->GetProperty("X"), second);
  EXPECT_EQ(first->GetReferenceCount(), 1);
  EXPECT_EQ(collection->GetPropertyNames(), Names{ "X" });
  EXPECT_TRUE(collection->GetBool("X"));
  EXPECT_FALSE(collection->GetBool("X", 1));
  collection->Clear();
  EXPECT_FALSE(collection->Has("X"));
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, MissingNamesWarn)
{
  vtkNew<zylPropertyCollection> collection;
  const int one = 1;
  zylTestLog log;
  EXPECT_FALSE(collection->Has("Nope"));
  EXPECT_EQ(collection->GetProperty("Nope"), nullptr);
  EXPECT_EQ(log.Dump(), "");

  EXPECT_EQ(collection->GetDouble("Nope"), 0.0);
  EXPECT_EQ(collection->GetString("Nope", 3), "");
  EXPECT_EQ(collection->GetStringElements("Nope"), nullptr);
  collection->Set("Nope", 1);
  collection->Set("Nope", &one, 1);
  EXPECT_EQ(log.CountWarnings("No property named 'Nope' exists in 'zylPropertyCollection' "), 5);
  collection->SetName("view");
  collection->GetBool("Nope");
  EXPECT_TRUE(log.HasWarning("No property named 'Nope' exists in 'zylPropertyCollection' view"));
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, TraceOfSetters)
{
  vtkNew<zylPropertyCollection> collection;
  collection->MakeBool("B", false);
  collection->MakeInt("I", 0);
  collection->MakeDouble("D", std::vector<double>(3).data(), 3);
  collection->MakeString("S", "");
  zylTestLog log;
  for (int repeat = 0; repeat < 2; ++repeat)
  {
    collection->Set("B", true);
    collection->Set("I", 5);
    collection->Set("D", 2, 0.5);
    collection->Set("S", "text");
  }
  EXPECT_EQ(log.Dump(),
    "9: Property 'B' [0] set to 1\n"
    "9: Property 'D' [2] set to 0.500000\n"
    "9: Property 'S' [0] set to text\n");
  EXPECT_EQ(collection->GetInt("I"), 5);
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, WhoseTimeAdvances)
{
  vtkNew<zylPropertyCollection> collection;
  zylProperty* property = collection->MakeDouble("D", 0.0);
  auto collectionTime = collection->GetMTime();
  auto propertyTime = property->GetMTime();
  const auto advanced = [&](bool ofCollection, bool ofProperty) {
    EXPECT_EQ(collection->GetMTime() > collectionTime, ofCollection);
    EXPECT_EQ(property->GetMTime() > propertyTime, ofProperty);
    collectionTime = collection->GetMTime();
    propertyTime = property->GetMTime();
  };
  collection->Set("D", 0.0);
  advanced(false, false);
  collection->Set("D", 1.0);
  advanced(true, true);
  const double two = 2.0;
  collection->Set("D", &two, 1);
  advanced(false, true);
  property->Set(3.0);
  advanced(false, true);
  collection->SetName("name");
  advanced(false, false);
  zylConsole([&] { collection->Set("D", 1); });
  advanced(true, false);
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, WrongTypeThroughTheCollection)
{
  vtkNew<zylPropertyCollection> collection;
  collection->MakeBool("B", false);
  EXPECT_EQ(zylConsole([&] { collection->Set("B", 1); }),
    "Cannot retrieve int element from Bool property.\nCannot set int element on Bool property.\n");
  // The default of the wrong kind counts as equal, so nothing is set.
  EXPECT_EQ(zylConsole([&] { collection->Set("B", 0); }),
    "Cannot retrieve int element from Bool property.\n");
  EXPECT_FALSE(collection->GetBool("B"));
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, Hash)
{
  vtkNew<zylPropertyCollection> collection;
  EXPECT_EQ(collection->GetHashValue(), 0u);
  const int ints[] = { 1, -2 };
  const bool bools[] = { false, true };
  collection->MakeBool("Z", bools, 2);
  collection->MakeInt("A", ints, 2);
  // Computed by a program of another language.
  EXPECT_EQ(collection->GetHashValue(), 0x47d02a88f2b18217u);
  collection->MakeDouble("M", 1.0)->SetIncludeInHash(false);
  EXPECT_EQ(collection->GetHashValue(), 0x47d02a88f2b18217u);
  collection->GetProperty("M")->SetIncludeInHash(true);
  EXPECT_NE(collection->GetHashValue(), 0x47d02a88f2b18217u);

  vtkNew<zylPropertyCollection> renamed;
  renamed->MakeInt("B", ints, 2);
  renamed->MakeBool("C", bools, 2);
  EXPECT_EQ(renamed->GetHashValue(), 0x47d02a88f2b18217u);
  renamed->GetProperty("B")->SetElement(1, 2); // behind the collection's back
  EXPECT_NE(renamed->GetHashValue(), 0x47d02a88f2b18217u);
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, ACopyKeepsItsName)
{
  vtkNew<zylPropertyCollection> source, target;
  source->SetName("source");
  source->MakeInt("New", 3);
  target->SetName("target");
  target->MakeInt("Old", 1);
  target->DeepCopy(source);
  EXPECT_EQ(target->GetName(), "target");
  const auto before = target->GetMTime();
  target->DeepCopy(nullptr);
  EXPECT_EQ(target->GetMTime(), before);
  EXPECT_EQ(target->GetPropertyNames(), Names{ "New" });
  target->DeepCopy(vtkNew<zylPropertyCollection>());
  EXPECT_GT(target->GetMTime(), before);
  EXPECT_TRUE(target->GetPropertyNames().empty());
}

//--------------------------------------------------------------------------------------------------
TEST(zylPropertyCollection, Printing)
{
  vtkNew<zylPropertyCollection> collection;
  const double range[] = { 0, 1 };
  collection->MakeDouble("ColorMapRange", range, 2);
  collection->MakeDouble("Big", 1234567.0);
  collection->MakeBool("On", true);
  EXPECT_EQ(collection->PrintPropertiesToString(),
    "zylPropertyCollection has property Big: 1.23457e+06 \n"
    "zylPropertyCollection has property ColorMapRange: 0 1 \n"
    "zylPropertyCollection has property On: 1 \n");
}

//--------------------------------------------------------------------------------------------------
// Whatever can change the hash is reported, however it is done, and nothing else is.
TEST(zylPropertyCollection, ReportsItsChanges)
{
  const double values[] = { 1.0, 2.0 };
  vtkNew<zylPropertyCollection> collection, other;
  other->MakeInt("I", 7);
  collection->MakeDouble("D", values, 2);
  collection->MakeString("S", "text");
  const auto list = std::make_shared<zylChangeList>();
  collection->ReportChangesTo(list, 42);
  EXPECT_TRUE(list->Take().empty());
  const auto property = [&](const char* name) { return collection->GetProperty(name); };

  const struct
  {
    const char* What;
    bool IsReported;
    std::function<void()> Do;
  } cases[] = {
    { "an equal value", false, [&] { collection->Set("D", 1, 2.0); } },
    { "a value of another type", false, [&] { collection->Set("S", 3); } },
    { "a missing property", false, [&] { collection->Set("None", 3); } },
    { "a touched property", false, [&] { property("D")->Modified(); } },
    { "one element", true, [&] { collection->Set("D", 1, 3.0); } },
    { "an array", true, [&] { collection->Set("D", values, 2); } },
    { "an equal array", false, [&] { collection->Set("D", values, 2); } },
    { "through the property", true, [&] { property("S")->Set("more"); } },
    { "the count", true, [&] { property("D")->SetNumberOfElements(3); } },
    { "the type", true, [&] { property("D")->SetPropertyType(zylProperty::Int); } },
    { "no type", true, [&] { property("D")->SetPropertyType(zylProperty::PropertyType(9)); } },
    { "a copied property", true, [&] { property("D")->DeepCopy(other->GetProperty("I")); } },
    { "out of the hash", true, [&] { property("D")->SetIncludeInHash(false); } },
    { "out of it already", false, [&] { property("D")->SetIncludeInHash(false); } },
    { "a new property", true, [&] { collection->MakeBool("B", true); } },
    { "a property replaced", true, [&] { collection->MakeBool("B", false); } },
    { "through the new one", true, [&] { property("B")->Set(true); } },
    { "a copy of another", true, [&] { collection->DeepCopy(other); } },
    { "through a copied one", true, [&] { property("I")->Set(8); } },
    { "all removed", true, [&] { collection->Clear(); } },
  };
  for (const auto& row : cases)
  {
    zylConsole(row.Do);
    EXPECT_EQ(list->Take(), row.IsReported ? std::vector<int>{ 42 } : std::vector<int>{})
      << row.What;
  }

  // A property that a caller keeps belongs to nothing once it was removed, replaced or left over.
  vtkSmartPointer<zylProperty> kept[4];
  kept[0] = collection->MakeInt("I", 1);
  collection->MakeInt("I", 2);
  kept[1] = property("I");
  collection->Clear();
  {
    vtkNew<zylPropertyCollection> shortLived;
    shortLived->ReportChangesTo(list, 43);
    kept[2] = shortLived->MakeInt("I", 1);
  }
  kept[3] = collection->MakeInt("I", 1);
  collection->ReportChangesTo(nullptr, 0);
  list->Take();
  for (zylProperty* one : kept)
  {
    one->Set(9);
  }
  EXPECT_TRUE(list->Take().empty());
}

//--------------------------------------------------------------------------------------------------
// Whatever is done to some collections that are copied to one another, each one is as if it had all
// its properties for itself, and the properties that it handed out stay its own.
TEST(zylPropertyCollection, CopiesShareNothingThatCanBeSeen)
{
  std::mt19937 random(7);
  const auto choose = [&random](int below) {
    return std::uniform_int_distribution<int>(0, below - 1)(random);
  };
  constexpr int count = 6;
  vtkNew<zylPropertyCollection> collections[count];
  Model models[count];
  std::map<std::string, zylProperty*> handedOut[count];
  const auto nameOf = [](int i) { return "Setting" + std::to_string(i); };
  for (int step = 0; step < 6000; ++step)
  {
    const int i = choose(count);
    const std::string name = nameOf(choose(24));
    const bool known = models[i].count(name) > 0;
    zylProperty* expected = known ? models[i][name].Get() : nullptr;
    const int value = choose(3);
    switch (choose(known ? 8 : 9))
    {
      case 0: // copy
      {
        const int other = choose(count);
        if (other == i)
        {
          break;
        }
        const auto before = collections[i]->GetMTime();
        collections[i]->DeepCopy(collections[other]);
        models[i].clear();
        for (const auto& [key, property] : models[other])
        {
          models[i][key] = vtkSmartPointer<zylProperty>::New();
          models[i][key]->DeepCopy(property);
        }
        handedOut[i].clear();
        if (known && models[i].count(name))
        {
          const auto time = collections[i]->GetProperty(name)->GetMTime();
          ASSERT_GT(time, before); // the copy changed it, asking for it did not
          ASSERT_LT(time, collections[i]->GetMTime());
        }
        break;
      }
      case 1: // set through the collection
        zylConsole([&] { collections[i]->Set(name, value); });
        zylConsole([&] { expected ? expected->Set(value) : void(); });
        break;
      case 2:
        zylConsole([&] { collections[i]->Set(name, 0.5 * value); });
        zylConsole([&] { expected ? expected->Set(0.5 * value) : void(); });
        break;
      case 3: // hand out, and set behind the collection's back
        ASSERT_EQ(collections[i]->GetProperty(name) != nullptr, known);
        if (known)
        {
          handedOut[i][name] = collections[i]->GetProperty(name);
          zylConsole([&] { handedOut[i][name]->Set(value); });
          zylConsole([&] { expected->Set(value); });
        }
        break;
      case 4:
        if (known)
        {
          handedOut[i][name] = collections[i]->GetProperty(name);
          handedOut[i][name]->SetIncludeInHash(value != 0);
          expected->SetIncludeInHash(value != 0);
        }
        break;
      case 5:
        if (known && expected->GetPropertyType() == zylProperty::Double)
        {
          const double* elements = collections[i]->GetDoubleElements(name);
          const double minus[] = { value == 0 ? -0.0 : 0.25 };
          collections[i]->Set(name, minus, 1);
          expected->SetElements(minus, 1);
          ASSERT_EQ(elements, collections[i]->GetDoubleElements(name));
          ASSERT_EQ(std::signbit(elements[0]), std::signbit(expected->GetDouble()));
        }
        break;
      case 6:
        if (choose(200) == 0)
        {
          collections[i]->Clear();
          models[i].clear();
          handedOut[i].clear();
        }
        break;
      default: // make
        handedOut[i].erase(name);
        models[i][name] = vtkSmartPointer<zylProperty>::New();
        models[i][name]->SetPropertyType(value == 0 ? zylProperty::Int : zylProperty::Double);
        models[i][name]->SetNumberOfElements(1 + static_cast<unsigned int>(choose(6)));
        collections[i]->MakeInt(name)->DeepCopy(models[i][name]);
        break;
    }
    const auto anew = MakeAnew(models[i]);
    ASSERT_EQ(collections[i]->GetPropertyNames(), anew->GetPropertyNames()) << step;
    ASSERT_EQ(collections[i]->PrintPropertiesToString(), anew->PrintPropertiesToString()) << step;
    ASSERT_EQ(collections[i]->GetHashValue(), anew->GetHashValue()) << step;
    for (const auto& [key, property] : handedOut[i])
    {
      ASSERT_EQ(collections[i]->GetProperty(key), property) << step;
    }
  }
}
