#include "zylPropertyCollection.h"

#include "Settings/zylChangeList.h"
#include "Settings/zylSharedSettings.h"

#include <algorithm>
#include <ostream>
#include <sstream>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylPropertyCollection);

//--------------------------------------------------------------------------------------------------
zylPropertyCollection::zylPropertyCollection()
  : Shared(zylSharedSettings::Empty())
{
}

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
  os << indent << "Properties: " << this->GetPropertyNames().size() << '\n';
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
  const auto property = vtkSmartPointer<zylProperty>::New();
  property->SetPropertyType(type);
  property->SetNumberOfElements(count);
  this->Changed();
  return this->Own(name, property);
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
  return this->Look(name) != nullptr;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::GetProperty(const std::string& name) const
{
  zylProperty* owned = this->FindOwned(name);
  const zylProperty* shared = owned ? nullptr : this->Shared->Find(name);
  if (!shared)
  {
    return owned;
  }
  const auto property = vtkSmartPointer<zylProperty>::New();
  property->CopyAsOf(*shared, this->SharedTime);
  return this->Own(name, property);
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylPropertyCollection::GetPropertyNames() const
{
  std::vector<std::string> names;
  this->ForEach([&names](const auto& entry) { names.push_back(*entry.Name); });
  return names;
}

//--------------------------------------------------------------------------------------------------
bool zylPropertyCollection::GetBool(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->LookExisting(name);
  return property ? property->GetBoolElement(index) : false;
}

//--------------------------------------------------------------------------------------------------
int zylPropertyCollection::GetInt(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->LookExisting(name);
  return property ? property->GetIntElement(index) : 0;
}

//--------------------------------------------------------------------------------------------------
double zylPropertyCollection::GetDouble(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->LookExisting(name);
  return property ? property->GetDoubleElement(index) : 0.0;
}

//--------------------------------------------------------------------------------------------------
std::string zylPropertyCollection::GetString(const std::string& name, unsigned int index)
{
  const zylProperty* property = this->LookExisting(name);
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
  const zylProperty* property = this->LookExisting(name);
  if (property && property->GetBoolElement(index) != value)
  {
    vtkLogF(TRACE, "Property '%s' [%d] set to %d", name.c_str(), static_cast<int>(index), value);
    this->GetProperty(name)->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, int value)
{
  const zylProperty* property = this->LookExisting(name);
  if (property && property->GetIntElement(index) != value)
  {
    // Kept: not logged, unlike the other types. See zylPropertyCollection.TraceOfSetters.
    this->GetProperty(name)->SetElement(index, value);
    this->Modified();
  }
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::Set(const std::string& name, unsigned int index, double value)
{
  const zylProperty* property = this->LookExisting(name);
  if (property && property->GetDoubleElement(index) != value)
  {
    vtkLogF(TRACE, "Property '%s' [%d] set to %f", name.c_str(), static_cast<int>(index), value);
    this->GetProperty(name)->SetElement(index, value);
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
  const zylProperty* property = this->LookExisting(name);
  if (property && property->GetStringElement(index) != value)
  {
    vtkLogF(
      TRACE, "Property '%s' [%d] set to %s", name.c_str(), static_cast<int>(index), value.c_str());
    this->GetProperty(name)->SetElement(index, value);
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
  other->Share();
  this->Shared = other->Shared;
  this->SharedTime.Modified();
  for (const Owned& theirs : other->Properties)
  {
    if (!this->Shared->Holds(theirs))
    {
      this->Properties.push_back(
        { theirs.Name, vtkSmartPointer<zylProperty>::New(), theirs.Place });
      this->Properties.back().Property->DeepCopy(theirs.Property);
      this->Link(this->Properties.back().Property);
    }
  }
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
std::uint64_t zylPropertyCollection::GetHashValue() const
{
  if (this->Properties.empty())
  {
    return this->Shared->Hash;
  }
  std::uint64_t seed = 0;
  this->ForEach([&seed](const auto& entry) {
    if (entry.IsHashed())
    {
      seed = zylProperty::CombineHashes(seed, entry.GetHash());
    }
  });
  return seed;
}

//--------------------------------------------------------------------------------------------------
void zylPropertyCollection::ReportChangesTo(const std::shared_ptr<zylChangeList>& list, int id)
{
  this->Changes.reset(list ? new zylChangeReport{ list, id } : nullptr);
  for (const Owned& own : this->Properties)
  {
    this->Link(own.Property);
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
  for (const Owned& own : this->Properties)
  {
    own.Property->Changes = nullptr; // a caller may keep it
  }
  this->Properties.clear();
  this->Shared = zylSharedSettings::Empty();
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
  this->ForEach([this, &os](const auto& entry) {
    os << this->GetClassName() << " has property " << *entry.Name << ": ";
    entry.Property->PrintProperty(os);
    os << std::endl;
  });
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
  return this->LookExisting(name) != nullptr;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::FindOwned(const std::string& name) const
{
  const auto owned = zylSharedSettings::LowerBound(this->Properties, name);
  return owned != this->Properties.end() && *owned->Name == name ? owned->Property : nullptr;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::Own(const std::string& name, zylProperty* property) const
{
  const auto owned = zylSharedSettings::LowerBound(this->Properties, name);
  if (owned != this->Properties.end() && *owned->Name == name)
  {
    owned->Property->Changes = nullptr; // a caller may keep it
    owned->Property = property;
  }
  else
  {
    this->Properties.insert(
      owned, { zylSharedSettings::InternName(name), property, this->Shared->PlaceOf(name) });
  }
  this->Link(property);
  return property;
}

//--------------------------------------------------------------------------------------------------
const zylProperty* zylPropertyCollection::Look(const std::string& name) const
{
  const zylProperty* owned = this->FindOwned(name);
  return owned ? owned : this->Shared->Find(name);
}

//--------------------------------------------------------------------------------------------------
const zylProperty* zylPropertyCollection::LookExisting(const std::string& name) const
{
  const zylProperty* property = this->Look(name);
  if (!property)
  {
    vtkLogF(WARNING, "No property named '%s' exists in '%s' %s", name.c_str(), this->GetClassName(),
      this->Name.c_str());
  }
  return property;
}

//--------------------------------------------------------------------------------------------------
zylProperty* zylPropertyCollection::GetExisting(const std::string& name) const
{
  return this->PropertyExists(name) ? this->GetProperty(name) : nullptr;
}

//--------------------------------------------------------------------------------------------------
template <class Action>
void zylPropertyCollection::ForEach(Action action) const
{
  const auto& shared = this->Shared->Entries;
  std::size_t place = 0;
  for (const Owned& own : this->Properties)
  {
    for (; place < own.Place; ++place)
    {
      action(shared[place]);
    }
    place += this->Shared->GetHiddenBy(own) ? 1 : 0;
    action(own);
  }
  for (; place < shared.size(); ++place)
  {
    action(shared[place]);
  }
}

//--------------------------------------------------------------------------------------------------
// Let the next copies share the present values. Not for a few changes: a copy owns these.
void zylPropertyCollection::Share()
{
  const auto changes = std::count_if(this->Properties.begin(), this->Properties.end(),
    [this](const Owned& own) { return !this->Shared->Holds(own); });
  if (4 * static_cast<std::size_t>(changes) <= this->Shared->Entries.size())
  {
    return;
  }
  const auto table = std::make_shared<zylSharedSettings>();
  this->ForEach([&table](const auto& entry) {
    if (entry.Property->GetPropertyType() > zylProperty::String)
    {
      return; // every use of it is reported
    }
    const auto property = vtkSmartPointer<zylProperty>::New();
    property->DeepCopy(entry.Property);
    table->Entries.push_back(
      { entry.Name, property, property->GetIncludeInHash(), property->GetHashValue() });
    if (property->GetIncludeInHash())
    {
      table->Hash = zylProperty::CombineHashes(table->Hash, property->GetHashValue());
    }
  });
  this->Shared = table;
  for (Owned& own : this->Properties)
  {
    own.Place = table->PlaceOf(*own.Name);
  }
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
