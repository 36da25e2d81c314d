#include "zylJSONSerializer.h"

#include "zylBoundaryRepresentation.h"
#include "zylCutPlaneRepresentation.h"
#include "zylDataSet.h"
#include "zylIntegrateFields.h"
#include "zylProperty.h"
#include "zylPropertyCollection.h"
#include "zylSurfacePipeline.h"
#include "zylTestData.h"
#include "zylTestLog.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>

namespace {
constexpr double Inf = std::numeric_limits<double>::infinity();

void Fill(zylPropertyCollection* collection)
{
  const double numbers[] = { 0.1, 1.0 / 3.0, -0.0, 5e-324, 1e308, Inf, -Inf,
    std::numeric_limits<double>::quiet_NaN() };
  const int integers[] = { std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max() };
  const bool flags[] = { true, false };
  const std::string texts[] = { "", "\"quoted\" \\ and\nlines\t", "Stroemung: Str\xC3\xB6mung",
    std::string("nul\0in it", 9), "NaN" };
  collection->MakeDouble("Numbers", numbers, 8);
  collection->MakeInt("Integers", integers, 3);
  collection->MakeBool("Flags", flags, 2);
  collection->MakeString("Texts", texts, 5);
  collection->MakeString("Nothing");
}

// Type, count and every element, doubles bit for bit.
void ExpectSame(zylPropertyCollection* a, zylPropertyCollection* b)
{
  ASSERT_EQ(a->GetPropertyNames(), b->GetPropertyNames());
  EXPECT_EQ(a->GetHashValue(), b->GetHashValue());
  for (const std::string& name : a->GetPropertyNames())
  {
    SCOPED_TRACE(name);
    const zylProperty* first = a->GetProperty(name);
    const zylProperty* second = b->GetProperty(name);
    EXPECT_EQ(first->GetPropertyType(), second->GetPropertyType());
    EXPECT_EQ(first->GetIncludeInHash(), second->GetIncludeInHash());
    ASSERT_EQ(first->GetNumberOfElements(), second->GetNumberOfElements());
    for (unsigned int i = 0; i < first->GetNumberOfElements(); ++i)
    {
      if (first->GetPropertyType() == zylProperty::Double)
      {
        const double x = first->GetDoubleElement(i);
        const double y = second->GetDoubleElement(i);
        EXPECT_TRUE((std::isnan(x) && std::isnan(y)) || std::memcmp(&x, &y, sizeof(x)) == 0) << x;
      }
      else if (first->GetPropertyType() == zylProperty::String)
      {
        EXPECT_EQ(first->GetStringElement(i), second->GetStringElement(i));
      }
    }
  }
}

// Reads into `other` what `object` is saved as.
template <class Object>
void Copy(Object& object, Object& other)
{
  ASSERT_TRUE(zylJSONSerializer::Deserialize(zylJSONSerializer::Serialize(object), other));
}

class zylJSONSerializerOfData : public testing::Test
{
protected:
  void Load(int blocks)
  {
    ASSERT_TRUE(this->Data->InitializeFromVTKDataSet(zylTestData::MakeRow(blocks, 1)));
    this->Data->Update();
    this->Boundary->SetDataSet(this->Data);
  }

  vtkNew<zylDataSet> Data;
  vtkNew<zylBoundaryRepresentation> Boundary;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylJSONSerializer, Layout)
{
  vtkNew<zylPropertyCollection> collection;
  collection->MakeBool("B", true);
  const double numbers[] = { 1.0, 0.5 };
  collection->MakeDouble("A", numbers, 2);
  EXPECT_EQ(zylJSONSerializer::Serialize(collection), R"({
  "collection" : 
  [
    {
      "name" : "A",
      "property" : 
      {
        "elements" : 
        [
          1.0,
          0.5
        ],
        "type" : "Double"
      }
    },
    {
      "name" : "B",
      "property" : 
      {
        "elements" : 
        [
          true
        ],
        "type" : "Bool"
      }
    }
  ]
})");
  EXPECT_EQ(zylJSONSerializer::Serialize(nullptr), "null");
  EXPECT_EQ(zylJSONSerializer::Serialize(vtkNew<zylDataSet>()), "null");
}

//--------------------------------------------------------------------------------------------------
TEST(zylJSONSerializer, NothingIsLost)
{
  vtkNew<zylPropertyCollection> written;
  Fill(written);
  vtkNew<zylPropertyCollection> read;
  read->MakeInt("Flags", 7)->SetIncludeInHash(false);
  read->MakeInt("Gone", 7);
  written->GetProperty("Flags")->SetIncludeInHash(false);
  ASSERT_TRUE(zylJSONSerializer::Deserialize(zylJSONSerializer::Serialize(written), read));
  ExpectSame(written, read);

  // Bytes that are no UTF-8, next to some that are.
  const std::string odd = "\xC3\xB6 \xFF\xED\xB2\x80 \xC0\x80";
  written->MakeString("Odd", odd);
  ASSERT_TRUE(zylJSONSerializer::Deserialize(zylJSONSerializer::Serialize(written), read));
  EXPECT_EQ(read->GetString("Odd"), odd);
  EXPECT_EQ(read->GetString("Texts", 2), written->GetString("Texts", 2));

  vtkNew<zylProperty> property;
  ASSERT_TRUE(zylJSONSerializer::Deserialize(
    zylJSONSerializer::Serialize(written->GetProperty("Integers")), property));
  EXPECT_EQ(property->GetHashValue(), written->GetProperty("Integers")->GetHashValue());
}

//--------------------------------------------------------------------------------------------------
TEST(zylJSONSerializer, RefusesWhatIsNoSetting)
{
  vtkNew<zylPropertyCollection> collection;
  Fill(collection);
  const std::string text = zylJSONSerializer::Serialize(collection);
  // Parts of it, texts of other objects, other JSON, too deep nesting: nothing changes.
  std::vector<std::string> bad = { zylJSONSerializer::Serialize(vtkNew<zylSurfacePipeline>()),
    "null", "[]", "3", "{}", R"({"collection": 3})", std::string(100000, '['),
    std::string(100000, '{') };
  for (std::size_t length = 0; length < text.size(); ++length)
  {
    bad.push_back(text.substr(0, length));
  }
  for (const std::string& other : bad)
  {
    vtkNew<zylPropertyCollection> target;
    target->MakeInt("Kept", 1);
    ASSERT_FALSE(zylJSONSerializer::Deserialize(other, target)) << other.substr(0, 40);
    ASSERT_TRUE(target->Has("Kept"));
  }
  EXPECT_FALSE(zylJSONSerializer::Deserialize(text, nullptr));
  EXPECT_FALSE(zylJSONSerializer::Deserialize(text, vtkNew<zylDataSet>()));
}

//--------------------------------------------------------------------------------------------------
TEST(zylJSONSerializer, KeepsWhatWasReadBeforeAFault)
{
  const std::string good = R"({"name": "A", "property": {"type": "Int", "elements": [4]}})";
  const std::string bad[] = {
    R"({"name": "B", "property": {"type": "Float", "elements": [1.0]}})",
    R"({"name": "B", "property": {"type": "Int", "elements": ["x"]}})",
    R"({"name": "B", "property": {"type": "Int"}})",
    R"({"name": "B"})",
    R"({"name": 7, "property": {"type": "Int", "elements": [4]}})",
    "17",
  };
  for (const std::string& fault : bad)
  {
    SCOPED_TRACE(fault);
    vtkNew<zylPropertyCollection> target;
    target->MakeInt("Old", 1);
    zylTestLog log;
    EXPECT_FALSE(
      zylJSONSerializer::Deserialize(R"({"collection": [)" + good + "," + fault + "]}", target));
    EXPECT_EQ(target->GetInt("A"), 4);
    EXPECT_FALSE(target->Has("Old"));
    if (fault.find("Float") != std::string::npos)
    {
      EXPECT_TRUE(log.HasWarning("Unkown Json::Node type 'Float' when deserializing JSON."));
      EXPECT_EQ(target->GetProperty("B")->GetPropertyType(), zylProperty::Bool);
      EXPECT_EQ(target->GetProperty("B")->GetNumberOfElements(), 0u);
    }
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylJSONSerializerOfData, BlocksComeBackAsTheyWere)
{
  this->Load(6);
  this->Boundary->GetSurfaceProperties(1)->Set("Visibility", true);
  this->Boundary->GetSurfaceProperties(2)->Set("Visibility", true);
  this->Boundary->GetSurfaceProperties(2)->Set("Transparency", 0.25);
  this->Boundary->GetMeshLineProperties(3)->Set("Visibility", true);
  this->Boundary->GetFeatureLineProperties(4)->Set("Ambient", 0.5);
  this->Boundary->GetVectorGlyphProperties(5)->Set("ColorVariableName", "velocity");
  this->Boundary->GetContourProperties(6)->Set("Visibility", true);
  const std::string text = zylJSONSerializer::Serialize(this->Boundary);
  EXPECT_EQ(text.find("contour"), std::string::npos);

  vtkNew<zylBoundaryRepresentation> other;
  other->SetDataSet(this->Data);
  other->GetSurfaceProperties(3)->Set("Visibility", true);
  ASSERT_TRUE(zylJSONSerializer::Deserialize(text, other));
  for (const int block : this->Data->GetBlockIDs())
  {
    SCOPED_TRACE(block);
    for (const auto kind : { &zylBoundaryRepresentation::GetSurfaceProperties,
           &zylBoundaryRepresentation::GetMeshLineProperties,
           &zylBoundaryRepresentation::GetFeatureLineProperties,
           &zylBoundaryRepresentation::GetVectorGlyphProperties })
    {
      ExpectSame((*this->Boundary.*kind)(block), (*other.*kind)(block));
    }
    EXPECT_EQ(other->GetSurfaceProperties(block)->GetBool("Visibility"), block == 1 || block == 2);
  }
  EXPECT_FALSE(other->GetContourProperties(6)->GetBool("Visibility"));
  other->Update();

  // Without a dataset only the representation's own settings are read and written.
  vtkNew<zylBoundaryRepresentation> empty;
  EXPECT_TRUE(zylJSONSerializer::Deserialize(text, empty));
  EXPECT_EQ(zylJSONSerializer::Serialize(empty).find("Collections"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
// One entry for each distinct setting, not for each block.
TEST_F(zylJSONSerializerOfData, ManyBlocksFewSettings)
{
  this->Load(4000);
  for (int block = 1; block <= 4000; ++block)
  {
    this->Boundary->GetSurfaceProperties(block)->Set("Transparency", 0.1 * (block % 3));
  }
  const std::string text = zylJSONSerializer::Serialize(this->Boundary);
  std::size_t entries = 0;
  for (auto at = text.find("\"blocks\""); at != std::string::npos;
       at = text.find("\"blocks\"", at + 1))
  {
    ++entries;
  }
  EXPECT_EQ(entries, 3u + 1u + 1u + 1u);
  vtkNew<zylBoundaryRepresentation> other;
  other->SetDataSet(this->Data);
  ASSERT_TRUE(zylJSONSerializer::Deserialize(text, other));
  for (const int block : { 1, 2, 3, 4000 })
  {
    EXPECT_DOUBLE_EQ(
      other->GetSurfaceProperties(block)->GetDouble("Transparency"), 0.1 * (block % 3));
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylJSONSerializerOfData, OtherObjects)
{
  this->Load(2);
  vtkNew<zylCutPlaneRepresentation> cut, otherCut;
  const double normal[] = { 0.0, 0.6, 0.8 };
  cut->GetProperties()->Set("Normal", normal, 3);
  EXPECT_EQ(
    zylJSONSerializer::Serialize(cut).find("surfacePropertiesCollection"), std::string::npos);
  cut->SetDataSet(this->Data);
  cut->GetSurfaceProperties()->Set("ColorMode", 1);
  cut->GetContourProperties()->Set("NumberOfContours", 3);
  otherCut->SetDataSet(this->Data);
  Copy(cut, otherCut);
  ExpectSame(cut->GetProperties(), otherCut->GetProperties());
  ExpectSame(cut->GetSurfaceProperties(), otherCut->GetSurfaceProperties());
  EXPECT_NE(otherCut->GetContourProperties()->GetInt("NumberOfContours"), 3);

  vtkNew<zylIntegrateFields> integrator, otherIntegrator;
  integrator->GetProperties()->Set("DivideCellDataByVolume", true);
  Copy(integrator, otherIntegrator);
  EXPECT_TRUE(otherIntegrator->GetProperties()->GetBool("DivideCellDataByVolume"));

  vtkNew<zylSurfacePipeline> pipeline, otherPipeline;
  pipeline->GetProperties()->Set("Specular", 0.75);
  Copy(pipeline, otherPipeline);
  ExpectSame(pipeline->GetProperties(), otherPipeline->GetProperties());
}
