#include "Settings/zylPropertyJSON.h"

#include "zylProperty.h"
#include "zylPropertyCollection.h"

#include <cmath>
#include <exception>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include <vtkNew.h>

namespace {
constexpr char NotANumber[] = "NaN";
constexpr char Infinity[] = "Infinity";
constexpr char MinusInfinity[] = "-Infinity";

//--------------------------------------------------------------------------------------------------
bool IsUTF8(const std::string& text)
{
  const auto* byte = reinterpret_cast<const unsigned char*>(text.data());
  const auto* end = byte + text.size();
  while (byte != end)
  {
    const unsigned char lead = *byte++;
    const int more = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    if (more < 0 || lead > 0xF4 || end - byte < more)
    {
      return false;
    }
    const unsigned char second = more > 0 ? *byte : 0x80;
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second > 0x9F;
    if (overlong || surrogate || (lead == 0xF4 && second > 0x8F))
    {
      return false;
    }
    for (int i = 0; i < more; ++i)
    {
      if ((*byte++ & 0xC0) != 0x80)
      {
        return false;
      }
    }
  }
  return true;
}

// Strings that are not UTF-8 must not be escaped, since an escape names a character.
bool HoldsOtherThanUTF8(const Json::Value& value)
{
  if (value.isString())
  {
    return !IsUTF8(value.asString());
  }
  for (const Json::Value& element : value)
  {
    if (HoldsOtherThanUTF8(element))
    {
      return true;
    }
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
Json::Value WriteDouble(double value)
{
  if (std::isnan(value))
  {
    return NotANumber;
  }
  return std::isinf(value) ? Json::Value(value > 0.0 ? Infinity : MinusInfinity)
                           : Json::Value(value);
}

double ReadDouble(const Json::Value& json)
{
  using Limits = std::numeric_limits<double>;
  if (json.isString())
  {
    const std::string text = json.asString();
    const std::map<std::string, double> special = { { NotANumber, Limits::quiet_NaN() },
      { Infinity, Limits::infinity() }, { MinusInfinity, -Limits::infinity() } };
    return special.at(text);
  }
  return json.asDouble();
}

Json::Value WriteElement(const zylProperty* property, unsigned int i)
{
  switch (property->GetPropertyType())
  {
    case zylProperty::Bool:
      return property->GetBoolElement(i);
    case zylProperty::Int:
      return property->GetIntElement(i);
    case zylProperty::Double:
      return WriteDouble(property->GetDoubleElement(i));
    case zylProperty::String:
      return property->GetStringElement(i);
  }
  return Json::Value();
}

template <class ElementReader>
bool ReadElements(const Json::Value& elements, zylProperty* property,
  zylProperty::PropertyType type, ElementReader read)
{
  property->SetNumberOfElements(elements.size());
  property->SetPropertyType(type);
  for (Json::ArrayIndex i = 0; i < elements.size(); ++i)
  {
    property->SetElement(i, read(elements[i]));
  }
  return true;
}

} // namespace

//--------------------------------------------------------------------------------------------------
const Json::Value& zylMember(const Json::Value& json, const char* name)
{
  return json.isObject() ? json[name] : Json::Value::nullSingleton();
}

//--------------------------------------------------------------------------------------------------
Json::Value zylWriteJSON(const zylProperty* property)
{
  Json::Value json(Json::objectValue);
  json["type"] = property->GetPropertyTypeAsString();
  Json::Value& elements = json["elements"] = Json::Value(Json::arrayValue);
  if (property->GetPropertyType() > zylProperty::String)
  {
    std::cout << "Unknown property type " << property->GetPropertyType() << std::endl;
    return json;
  }
  for (unsigned int i = 0; i < property->GetNumberOfElements(); ++i)
  {
    elements.append(WriteElement(property, i));
  }
  return json;
}

//--------------------------------------------------------------------------------------------------
Json::Value zylWriteJSON(zylPropertyCollection* collection)
{
  // A collection keeps what is asked of it by name, and there are thousands: so ask a copy.
  vtkNew<zylPropertyCollection> copy;
  copy->DeepCopy(collection);
  Json::Value json(Json::objectValue);
  Json::Value& entries = json["collection"] = Json::Value(Json::arrayValue);
  for (const std::string& name : copy->GetPropertyNames())
  {
    Json::Value entry(Json::objectValue);
    entry["name"] = name;
    entry["property"] = zylWriteJSON(copy->GetProperty(name));
    entries.append(std::move(entry));
  }
  return json;
}

//--------------------------------------------------------------------------------------------------
bool zylReadJSON(const Json::Value& json, zylProperty* property)
{
  const Json::Value& elements = zylMember(json, "elements");
  const Json::Value& type = zylMember(json, "type");
  if (!elements.isArray() || !type.isString())
  {
    return false;
  }
  const std::string name = type.asString();
  if (name == "Bool")
  {
    return ReadElements(elements, property, zylProperty::Bool,
      [](const Json::Value& value) { return value.asBool(); });
  }
  if (name == "Int")
  {
    return ReadElements(
      elements, property, zylProperty::Int, [](const Json::Value& value) { return value.asInt(); });
  }
  if (name == "Double")
  {
    return ReadElements(elements, property, zylProperty::Double, &ReadDouble);
  }
  if (name == "String")
  {
    return ReadElements(elements, property, zylProperty::String,
      [](const Json::Value& value) { return value.asString(); });
  }
  vtkGenericWarningMacro("Unkown Json::Node type '" << name << "' when deserializing JSON.");
  return false;
}

//--------------------------------------------------------------------------------------------------
bool zylReadJSON(const Json::Value& json, zylPropertyCollection* collection)
{
  const Json::Value& entries = zylMember(json, "collection");
  if (!collection || !entries.isArray())
  {
    return false;
  }
  std::set<std::string> notHashed;
  for (const std::string& name : collection->GetPropertyNames())
  {
    if (!collection->GetProperty(name)->GetIncludeInHash())
    {
      notHashed.insert(name);
    }
  }
  collection->Clear();
  bool read = true;
  for (const Json::Value& entry : entries)
  {
    if (entry.isNull())
    {
      continue;
    }
    const Json::Value& name = zylMember(entry, "name");
    if (!name.isString())
    {
      read = false;
      continue;
    }
    zylProperty* property = collection->MakeBool(name.asString());
    property->SetIncludeInHash(notHashed.count(name.asString()) == 0);
    read = zylReadJSON(zylMember(entry, "property"), property) && read;
  }
  return read;
}

//--------------------------------------------------------------------------------------------------
std::string zylWriteText(const Json::Value& json)
{
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = HoldsOtherThanUTF8(json);
  return Json::writeString(builder, json);
}

//--------------------------------------------------------------------------------------------------
bool zylReadText(const std::string& text, const std::function<bool(const Json::Value&)>& action)
{
  try
  {
    const Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string errors;
    return reader->parse(text.data(), text.data() + text.size(), &root, &errors) && action(root);
  }
  catch (const std::exception&)
  {
    return false;
  }
}
