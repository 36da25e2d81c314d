#include "zylProperty.h"

#include "Settings/zylChangeList.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylProperty);

namespace {
constexpr std::uint64_t HashBasis = 0xcbf29ce484222325;
constexpr std::uint64_t HashPrime = 0x100000001b3;

//--------------------------------------------------------------------------------------------------
template <int Bytes>
std::uint64_t HashBits(std::uint64_t bits)
{
  std::uint64_t hash = HashBasis;
  for (int i = 0; i < Bytes; ++i, bits >>= 8)
  {
    hash = (hash ^ (bits & 0xff)) * HashPrime;
  }
  return hash;
}

//--------------------------------------------------------------------------------------------------
std::uint64_t HashElement(bool value)
{
  return HashBits<1>(value);
}

//--------------------------------------------------------------------------------------------------
std::uint64_t HashElement(int value)
{
  return HashBits<4>(static_cast<std::uint32_t>(value));
}

//--------------------------------------------------------------------------------------------------
std::uint64_t HashElement(double value)
{
  std::uint64_t bits = 0;
  if (value != 0.0)
  {
    std::memcpy(&bits, &value, sizeof(bits));
  }
  return HashBits<8>(bits);
}

//--------------------------------------------------------------------------------------------------
std::uint64_t HashElement(const std::string& value)
{
  std::uint64_t hash = HashBasis;
  for (const char c : value)
  {
    hash = (hash ^ static_cast<unsigned char>(c)) * HashPrime;
  }
  return hash;
}

//--------------------------------------------------------------------------------------------------
template <class T>
void PrintElements(std::ostream& os, const T* values, unsigned int count)
{
  for (unsigned int i = 0; i < count; ++i)
  {
    os << values[i] << ' ';
  }
}

//--------------------------------------------------------------------------------------------------
void ReportMismatch(const char* action, const char* kind, const char* link, const char* type)
{
  std::cout << "Cannot " << action << ' ' << kind << link << type << " property." << std::endl;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylProperty::zylProperty() = default;

//--------------------------------------------------------------------------------------------------
zylProperty::~zylProperty()
{
  this->Release();
}

//--------------------------------------------------------------------------------------------------
void zylProperty::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "PropertyType: " << this->GetPropertyTypeAsString() << '\n';
  os << indent << "NumberOfElements: " << this->NumberOfElements << '\n';
  os << indent << "IncludeInHash: " << this->IncludeInHash << '\n';
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetPropertyType(PropertyType type)
{
  if (type == this->Type)
  {
    return;
  }
  this->Release();
  this->Type = type;
  this->Allocate();
  if (type > String)
  {
    std::cout << "Unknown property type " << static_cast<std::uint32_t>(type) << std::endl;
    this->Report();
    return;
  }
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
const char* zylProperty::GetPropertyTypeAsString() const
{
  constexpr const char* names[] = { "Bool", "Int", "Double", "String" };
  return this->Type <= String ? names[this->Type] : "Unknown";
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetNumberOfElements(unsigned int count)
{
  if (count == this->NumberOfElements)
  {
    return;
  }
  this->Release();
  this->NumberOfElements = count;
  this->Allocate();
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Set(bool value)
{
  this->SetElement(0, value);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Set(int value)
{
  this->SetElement(0, value);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Set(double value)
{
  this->SetElement(0, value);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Set(const char* value)
{
  this->SetElement(0, value);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Set(const std::string& value)
{
  this->SetElement(0, value);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElement(unsigned int index, bool value)
{
  this->SetOneElement(index, value, Bool, "bool");
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElement(unsigned int index, int value)
{
  this->SetOneElement(index, value, Int, "int");
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElement(unsigned int index, double value)
{
  this->SetOneElement(index, value, Double, "double");
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElement(unsigned int index, const char* value)
{
  this->SetElement(index, std::string(value ? value : ""));
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElement(unsigned int index, const std::string& value)
{
  this->SetOneElement(index, value, String, "string");
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElements(const bool* values, unsigned int count)
{
  this->SetManyElements(values, count);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElements(const int* values, unsigned int count)
{
  this->SetManyElements(values, count);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElements(const double* values, unsigned int count)
{
  this->SetManyElements(values, count);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetElements(const std::string* values, unsigned int count)
{
  this->SetManyElements(values, count);
}

//--------------------------------------------------------------------------------------------------
bool zylProperty::GetBoolElement(unsigned int index) const
{
  return this->GetElement<bool>(index, Bool, "bool");
}

//--------------------------------------------------------------------------------------------------
int zylProperty::GetIntElement(unsigned int index) const
{
  return this->GetElement<int>(index, Int, "int");
}

//--------------------------------------------------------------------------------------------------
double zylProperty::GetDoubleElement(unsigned int index) const
{
  return this->GetElement<double>(index, Double, "double");
}

//--------------------------------------------------------------------------------------------------
std::string zylProperty::GetStringElement(unsigned int index) const
{
  return this->GetElement<std::string>(index, String, "string");
}

//--------------------------------------------------------------------------------------------------
const int* zylProperty::GetIntElements() const
{
  return this->GetElements<int>(Int, "int");
}

//--------------------------------------------------------------------------------------------------
const double* zylProperty::GetDoubleElements() const
{
  return this->GetElements<double>(Double, "double");
}

//--------------------------------------------------------------------------------------------------
const std::string* zylProperty::GetStringElements() const
{
  return this->GetElements<std::string>(String, "string");
}

//--------------------------------------------------------------------------------------------------
void zylProperty::DeepCopy(zylProperty* other)
{
  if (!other)
  {
    return;
  }
  if (other != this)
  {
    this->CopyAsOf(*other, vtkTimeStamp());
  }
  this->Changed();
}

//--------------------------------------------------------------------------------------------------
void zylProperty::CopyAsOf(const zylProperty& other, const vtkTimeStamp& time)
{
  this->Release();
  this->Type = other.Type;
  this->NumberOfElements = other.NumberOfElements;
  this->IncludeInHash = other.IncludeInHash;
  this->MTime = time;
  this->Allocate();
  const unsigned int count = this->NumberOfElements;
  switch (this->Type)
  {
    case Bool:
      std::copy_n(other.Values<bool>(), count, this->Values<bool>());
      break;
    case Int:
      std::copy_n(other.Values<int>(), count, this->Values<int>());
      break;
    case Double:
      std::copy_n(other.Values<double>(), count, this->Values<double>());
      break;
    case String:
      std::copy_n(other.Values<std::string>(), count, this->Values<std::string>());
      break;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylProperty::IsSame(const zylProperty& other) const
{
  const unsigned int count = this->NumberOfElements;
  if (this->Type != other.Type || count != other.NumberOfElements ||
    this->IncludeInHash != other.IncludeInHash)
  {
    return false;
  }
  const auto sameBits = [count](const auto* mine, const auto* theirs) {
    return count == 0 || std::memcmp(mine, theirs, count * sizeof(*mine)) == 0;
  };
  switch (this->Type)
  {
    case Bool:
      return sameBits(this->Values<bool>(), other.Values<bool>());
    case Int:
      return sameBits(this->Values<int>(), other.Values<int>());
    case Double:
      return sameBits(this->Values<double>(), other.Values<double>());
    case String:
      return std::equal(this->Values<std::string>(), this->Values<std::string>() + count,
        other.Values<std::string>());
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
std::uint64_t zylProperty::CombineHashes(std::uint64_t seed, std::uint64_t hash)
{
  return seed ^ (hash + 0x9e3779b9 + (seed << 6) + (seed >> 2));
}

//--------------------------------------------------------------------------------------------------
std::uint64_t zylProperty::GetHashValue() const
{
  const auto hashOf = [this](const auto* values) {
    std::uint64_t seed = 0;
    for (unsigned int i = 0; i < this->NumberOfElements; ++i)
    {
      seed = CombineHashes(seed, HashElement(values[i]));
    }
    return seed;
  };
  switch (this->Type)
  {
    case Bool:
      return hashOf(this->Values<bool>());
    case Int:
      return hashOf(this->Values<int>());
    case Double:
      return hashOf(this->Values<double>());
    case String:
      return hashOf(this->Values<std::string>());
  }
  std::uint64_t seed = 0;
  for (unsigned int i = 0; i < this->NumberOfElements; ++i)
  {
    std::cout << "Unknown PropertyType " << static_cast<std::uint32_t>(this->Type) << std::endl;
    seed = CombineHashes(seed, 0);
  }
  return seed;
}

//--------------------------------------------------------------------------------------------------
void zylProperty::SetIncludeInHash(bool include)
{
  if (include != this->IncludeInHash)
  {
    this->IncludeInHash = include;
    this->Report();
  }
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Report()
{
  if (this->Changes)
  {
    this->Changes->Send();
  }
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Changed()
{
  this->Report();
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
void zylProperty::PrintProperty(std::ostream& os) const
{
  const unsigned int count = this->NumberOfElements;
  switch (this->Type)
  {
    case Bool:
      return PrintElements(os, this->Values<bool>(), count);
    case Int:
      return PrintElements(os, this->Values<int>(), count);
    case Double:
      return PrintElements(os, this->Values<double>(), count);
    case String:
      return PrintElements(os, this->Values<std::string>(), count);
  }
  // Kept: this spelling. See zylProperty.UnknownType.
  std::cout << "Uknown PropertyType " << static_cast<std::uint32_t>(this->Type) << std::endl;
}

//--------------------------------------------------------------------------------------------------
template <class T>
T* zylProperty::Values() const
{
  static_assert(sizeof(T) <= InlineBytes && alignof(T) <= alignof(std::string));
  if (this->NumberOfElements <= InlineBytes / sizeof(T))
  {
    return reinterpret_cast<T*>(this->Store);
  }
  T* heap = nullptr;
  std::memcpy(&heap, this->Store, sizeof(heap));
  return heap;
}

//--------------------------------------------------------------------------------------------------
template <class T>
T zylProperty::GetElement(unsigned int index, PropertyType type, const char* kind) const
{
  if (this->Type != type)
  {
    ReportMismatch("retrieve", kind, " element from ", this->GetPropertyTypeAsString());
    return T();
  }
  return index < this->NumberOfElements ? this->Values<T>()[index] : T();
}

//--------------------------------------------------------------------------------------------------
template <class T>
const T* zylProperty::GetElements(PropertyType type, const char* kind) const
{
  if (this->Type != type)
  {
    ReportMismatch("retrieve", kind, "* from ", this->GetPropertyTypeAsString());
    return nullptr;
  }
  return this->Values<T>();
}

//--------------------------------------------------------------------------------------------------
template <class T>
void zylProperty::SetOneElement(
  unsigned int index, const T& value, PropertyType type, const char* kind)
{
  if (this->Type != type)
  {
    ReportMismatch("set", kind, " element on ", this->GetPropertyTypeAsString());
    return;
  }
  if (index >= this->NumberOfElements)
  {
    vtkLogF(WARNING, "Cannot set element %u of a property with %u elements", index,
      this->NumberOfElements);
    return;
  }
  T& element = this->Values<T>()[index];
  if (element != value)
  {
    element = value;
    this->Changed();
  }
}

//--------------------------------------------------------------------------------------------------
template <class T>
void zylProperty::SetManyElements(const T* values, unsigned int count)
{
  if (count > this->NumberOfElements)
  {
    vtkLogF(INFO,
      "Cannot set %u elements in property with %u. Call zylProperty::SetNumberOfElements() "
      "first. Setting the first %u.",
      count, this->NumberOfElements, this->NumberOfElements);
    count = this->NumberOfElements;
  }
  for (unsigned int i = 0; values && i < count; ++i)
  {
    this->SetElement(i, values[i]);
  }
}

//--------------------------------------------------------------------------------------------------
template <class T>
void zylProperty::AllocateValues()
{
  if (this->NumberOfElements > InlineBytes / sizeof(T))
  {
    T* heap = new T[this->NumberOfElements]();
    std::memcpy(this->Store, &heap, sizeof(heap));
    return;
  }
  for (unsigned int i = 0; i < this->NumberOfElements; ++i)
  {
    new (this->Store + i * sizeof(T)) T();
  }
}

//--------------------------------------------------------------------------------------------------
template <class T>
void zylProperty::ReleaseValues()
{
  T* values = this->Values<T>();
  if (this->NumberOfElements > InlineBytes / sizeof(T))
  {
    delete[] values;
    return;
  }
  std::destroy_n(values, this->NumberOfElements);
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Allocate()
{
  switch (this->Type)
  {
    case Bool:
      return this->AllocateValues<bool>();
    case Int:
      return this->AllocateValues<int>();
    case Double:
      return this->AllocateValues<double>();
    case String:
      return this->AllocateValues<std::string>();
  }
}

//--------------------------------------------------------------------------------------------------
void zylProperty::Release()
{
  switch (this->Type)
  {
    case Bool:
      return this->ReleaseValues<bool>();
    case Int:
      return this->ReleaseValues<int>();
    case Double:
      return this->ReleaseValues<double>();
    case String:
      return this->ReleaseValues<std::string>();
  }
}
