#include "zylPropertyCollection.h"

#include "Settings/zylChangeList.h"

#include <algorithm>
#include <mutex>
#include <ostream>
#include <set>
#include <sstream>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylPropertyCollection);

namespace {
//--------------------------------------------------------------------------------------------------
// The one copy of a property name. Never freed: collections may outlive other static objects.
const std::string* InternName(const std::string& name)
{
  static std::mutex mutex;
  static auto* const names = new std::set<std::string>;
  const std::lock_guard<std::mutex> lock(mutex);
  return &*names->insert(name).first;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylPropertyCollection::zylPropertyCollection() = default;

//--------------------------------------------------------------------------------------------------
zylPropertyCollection::~zylPropertyCollection()
{
  this->RemoveAll();
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "Name: " << this->Name << '\n';
  os << indent << "Properties: " << this->Properties.size() << '\n';
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Clear()
{
  this->RemoveAll();
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeProperty(
  const std::string& name, zylProperty::PropertyType type, unsigned int count)
{
  auto property = vtkSmartPointer<zylProperty>::New();
  property->SetPropertyType(type);
  property->SetNumberOfElements(count);
  const auto place = this->Properties.begin() + (this->Find(name) - this->Properties.cbegin());
  if (place != this->Properties.end() && *place->Name == name)
  {
    place->Property->Changes = nullptr;
    place->Property = property;
  }
  else
  {
    this->Properties.insert(place, { InternName(name), property });
  }
  this->Link(property);
  this->Changed();
  return property;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeBool(const std::string& name)
{
  return this->MakeProperty(name, zylProperty::Bool, 0);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeInt(const std::string& name)
{
  return this->MakeProperty(name, zylProperty::Int, 0);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeDouble(const std::string& name)
{
  return this->MakeProperty(name, zylProperty::Double, 0);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeString(const std::string& name)
{
  return this->MakeProperty(name, zylProperty::String, 0);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeBool(const std::string& name, bool value)
{
  return this->MakeBool(name, &value, 1);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeInt(const std::string& name, int value)
{
  return this->MakeInt(name, &value, 1);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeDouble(const std::string& name, double value)
{
  return this->MakeDouble(name, &value, 1);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeString(const std::string& name, const std::string& value)
{
  return this->MakeString(name, &value, 1);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeBool(
  const std::string& name, const bool* values, unsigned int count)
{
  return this->MakeWithValues(name, zylProperty::Bool, values, count);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeInt(
  const std::string& name, const int* values, unsigned int count)
{
  return this->MakeWithValues(name, zylProperty::Int, values, count);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeDouble(
  const std::string& name, const double* values, unsigned int count)
{
  return this->MakeWithValues(name, zylProperty::Double, values, count);
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::MakeString(
  const std::string& name, const std::string* values, unsigned int count)
{
  return this->MakeWithValues(name, zylProperty::String, values, count);
}

//--------------------------------------------------------------------------------------------------
bool zylPropertyCollection::Has(const std::string& name) const
{
  return this->GetProperty(name) != nullptr;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::GetProperty(const std::string& name) const
{
  const auto place = this->Find(name);
  return place != this->Properties.end() && *place->Name == name ? place->Property : nullptr;
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylPropertyCollection::GetPropertyNames() const
{
  std::vector<std::string> names;
  names.reserve(this->Properties.size());
  for (const Entry& entry : this->Properties)
  {
    names.push_back(*entry.Name);
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
bool zylPropertyCollection::GetBool(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetBoolElement(index) : false;
}

//--------------------------------------------------------------------------------------------------
int zylPropertyCollection::GetInt(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetIntElement(index) : 0;
}

//--------------------------------------------------------------------------------------------------
double zylPropertyCollection::GetDouble(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetDoubleElement(index) : 0.0;
}

//--------------------------------------------------------------------------------------------------
std::string zylPropertyCollection::GetString(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetStringElement(index) : std::string();
}

//--------------------------------------------------------------------------------------------------
const int* zylPropertyCollection::GetIntElements(const std::string& name)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetIntElements() : nullptr;
}

//--------------------------------------------------------------------------------------------------
const double* zylPropertyCollection::GetDoubleElements(const std::string& name)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetDoubleElements() : nullptr;
}

//--------------------------------------------------------------------------------------------------
const std::string* zylPropertyCollection::GetStringElements(const std::string& name)
{
  const zylProperty* property = this->GetExisting(name);
  return property ? property->GetStringElements() : nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, bool value)
{
  this->Set(name, 0u, value);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, int value)
{
  this->Set(name, 0u, value);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, double value)
{
  this->Set(name, 0u, value);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, const char* value)
{
  this->Set(name, 0u, value);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, const std::string& value)
{
  this->Set(name, 0u, value);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, bool value)
{
  zylProperty* property = this->GetExisting(name);
  if (property && property->GetBoolElement(index) != value)
  {
    vtkLogF(TRACE, "Property '%s' [%d] set to %d", name.c_str(), static_cast<int>(index), value);
    property->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, int value)
{
  zylProperty* property = this->GetExisting(name);
  if (property && property->GetIntElement(index) != value)
  {
    // Kept: not logged, unlike the other types. See zylPropertyCollection.TraceOfSetters.
    property->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, double value)
{
  zylProperty* property = this->GetExisting(name);
  if (property && property->GetDoubleElement(index) != value)
  {
    vtkLogF(TRACE, "Property '%s' [%d] set to %f", name.c_str(), static_cast<int>(index), value);
    property->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, const char* value)
{
  this->Set(name, index, std::string(value ? value : ""));
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(
  const std::string& name, unsigned int index, const std::string& value)
{
  zylProperty* property = this->GetExisting(name);
  if (property && property->GetStringElement(index) != value)
  {
    vtkLogF(
      TRACE, "Property '%s' [%d] set to %s", name.c_str(), static_cast<int>(index), value.c_str());
    property->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, const bool* values, unsigned int count)
{
  this->SetValues(name, values, count);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, const int* values, unsigned int count)
{
  this->SetValues(name, values, count);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, const double* values, unsigned int count)
{
  this->SetValues(name, values, count);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(
  const std::string& name, const std::string* values, unsigned int count)
{
  this->SetValues(name, values, count);
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::DeepCopy(zylPropertyCollection* other)
{
  if (!other || other == this)
  {
    return;
  }
  this->Clear();
  this->Properties.reserve(other->Properties.size());
  for (const Entry& entry : other->Properties)
  {
    this->Properties.push_back({ entry.Name, vtkSmartPointer<zylProperty>::New() });
    this->Properties.back().Property->DeepCopy(entry.Property);
    this->Link(this->Properties.back().Property);
  }
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
std::uint64_t zylPropertyCollection::GetHashValue() const
{
  std::uint64_t seed = 0;
  for (const Entry& entry : this->Properties)
  {
    if (entry.Property->GetIncludeInHash())
    {
      seed ^= entry.Property->GetHashValue() + 0x9e3779b9 + (seed << 6) + (seed >> 2);
    }
  }
  return seed;
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::ReportChangesTo(const std::shared_ptr<zylChangeList>& list, int id)
{
  this->Changes.reset(list ? new zylChangeReport{ list, id } : nullptr);
  for (const Entry& entry : this->Properties)
  {
    this->Link(entry.Property);
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Link(zylProperty* property) const
{
  property->Changes = this->Changes.get();
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::RemoveAll()
{
  for (const Entry& entry : this->Properties)
  {
    entry.Property->Changes = nullptr; // a caller may keep it
  }
  this->Properties.clear();
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Changed()
{
  if (this->Changes)
  {
    this->Changes->Send();
  }
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::PrintProperties(std::ostream& os) const
{
  for (const Entry& entry : this->Properties)
  {
    os << this->GetClassName() << " has property " << *entry.Name << ": ";
    entry.Property->PrintProperty(os);
    os << std::endl;
  }
}

//--------------------------------------------------------------------------------------------------
std::string zylPropertyCollection::PrintPropertiesToString() const
{
  std::ostringstream text;
  this->PrintProperties(text);
  return text.str();
}

//--------------------------------------------------------------------------------------------------
bool zylPropertyCollection::PropertyExists(const std::string& name) const
{
  return this->GetExisting(name) != nullptr;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylPropertyCollection::Entry>::const_iterator zylPropertyCollection::Find(
  const std::string& name) const
{
  return std::lower_bound(this->Properties.begin(), this->Properties.end(), name,
    [](const Entry& entry, const std::string& wanted) { return *entry.Name < wanted; });
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::GetExisting(const std::string& name) const
{
  zylProperty* property = this->GetProperty(name);
  if (!property)
  {
    vtkLogF(WARNING, "No property named '%s' exists in '%s' %s", name.c_str(), this->GetClassName(),
      this->Name.c_str());
  }
  return property;
}

//--------------------------------------------------------------------------------------------------
template <class T>
zylProperty* zylPropertyCollection::MakeWithValues(
  const std::string& name, zylProperty::PropertyType type, const T* values, unsigned int count)
{
  zylProperty* property = this->MakeProperty(name, type, count);
  property->SetElements(values, count);
  return property;
}

//--------------------------------------------------------------------------------------------------
template <class T>
void zylPropertyCollection::SetValues(const std::string& name, const T* values, unsigned int count)
{
  if (zylProperty* property = this->GetExisting(name))
  {
    property->SetElements(values, count);
  }
}
