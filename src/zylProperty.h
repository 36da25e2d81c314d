/**
 * @class zylProperty
 * @brief One parameter: a typed array of values of a fixed length.
 *
 * The values are bools, ints, doubles or strings; the type and the number of elements are set once,
 * at creation, and then the values. A property does not know its name: the zylPropertyCollection
 * that holds it does.
 *
 *     vtkNew<zylProperty> color;
 *     color->SetPropertyType(zylProperty::Double);
 *     color->SetNumberOfElements(3);
 *     color->SetElement(0, 0.5);
 *
 * Every change of a value advances the modification time; setting a value that is there already
 * does not. A call of the wrong type is a mistake of the caller: it prints a line on the standard
 * output and changes nothing. Indices must be below GetNumberOfElements(); beyond, getters return
 * the default value and setters log a warning and change nothing.
 */
#ifndef zylProperty_h
#define zylProperty_h

#include "zylExport.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include <vtkObject.h>

struct zylChangeReport;
struct zylSharedSettings;
class zylPropertyCollection;

// Xlib's header defines a macro of this name, and hosts include it, knowingly or not.
#pragma push_macro("Bool")
#undef Bool

class ZYL_EXPORT zylProperty : public vtkObject
{
public:
  /// Type Int, no elements, included in the hash of its collection.
  static zylProperty* New();
  vtkTypeMacro(zylProperty, vtkObject);
  void PrintSelf(ostream& os, vtkIndent indent) override;

  enum PropertyType : std::uint32_t
  {
    Bool = 0,
    Int = 1,
    Double = 2,
    String = 3
  };

  ///@{
  /// A change of the type resets all elements to false, 0, 0.0 or "". A value that is no type is
  /// stored, but reported on the standard output, and the property is of no use until it has a type
  /// again. The name of the type is "Bool", "Int", "Double", "String" or "Unknown".
  void SetPropertyType(PropertyType type);
  PropertyType GetPropertyType() const { return this->Type; }
  const char* GetPropertyTypeAsString() const;
  ///@}

  ///@{
  /// A change of the count resets all elements, also those that remain.
  void SetNumberOfElements(unsigned int count);
  unsigned int GetNumberOfElements() const { return this->NumberOfElements; }
  ///@}

  ///@{
  /// Set element 0.
  void Set(bool value);
  void Set(int value);
  void Set(double value);
  void Set(const char* value);
  void Set(const std::string& value);
  ///@}

  ///@{
  /// Set one element. Doubles are compared exactly: 0.0 does not replace -0.0, and a NaN is always
  /// a change. A null string is taken as "".
  void SetElement(unsigned int index, bool value);
  void SetElement(unsigned int index, int value);
  void SetElement(unsigned int index, double value);
  void SetElement(unsigned int index, const char* value);
  void SetElement(unsigned int index, const std::string& value);
  ///@}

  ///@{
  /// Set the first `count` elements. What does not fit is left out, with an INFO message; the
  /// property never grows here. Null `values` do nothing.
  void SetElements(const bool* values, unsigned int count);
  void SetElements(const int* values, unsigned int count);
  void SetElements(const double* values, unsigned int count);
  void SetElements(const std::string* values, unsigned int count);
  ///@}

  ///@{
  /// Element 0.
  bool GetBool() const { return this->GetBoolElement(0); }
  int GetInt() const { return this->GetIntElement(0); }
  double GetDouble() const { return this->GetDoubleElement(0); }
  std::string GetString() const { return this->GetStringElement(0); }
  ///@}

  ///@{
  /// One element; false, 0, 0.0 or "" when the property is of another type.
  bool GetBoolElement(unsigned int index) const;
  int GetIntElement(unsigned int index) const;
  double GetDoubleElement(unsigned int index) const;
  std::string GetStringElement(unsigned int index) const;
  ///@}

  ///@{
  /// All elements, one after another; null when the property is of another type. Borrowed: valid
  /// until the type or the number of elements changes. Not to be read when there are no elements.
  const int* GetIntElements() const;
  const double* GetDoubleElements() const;
  const std::string* GetStringElements() const;
  ///@}

  /// Copy type, count, values and IncludeInHash. Counts as a change even if all are equal. Null
  /// does nothing.
  void DeepCopy(zylProperty* other);

  /// Hash of the values: 64-bit FNV-1a over the bytes of each element (least significant first;
  /// both zeros as +0.0), combined over the elements. 0 without elements. Equal on every platform,
  /// and computed afresh by every call, so that it is never stale.
  std::uint64_t GetHashValue() const;

  ///@{
  /// Whether the hash of a collection takes this property into account. Default: true.
  void SetIncludeInHash(bool include);
  bool GetIncludeInHash() const { return this->IncludeInHash; }
  ///@}

  /// Print the elements, each followed by a blank.
  void PrintProperty(std::ostream& os) const;

protected:
  zylProperty();
  ~zylProperty() override;

private:
  zylProperty(const zylProperty&) = delete;
  void operator=(const zylProperty&) = delete;

  // For collections that share properties: a copy that counts as changed at `time`; whether all
  // that DeepCopy() copies is the same, to the bit.
  friend class zylPropertyCollection;
  friend struct zylSharedSettings;
  void CopyAsOf(const zylProperty& other, const vtkTimeStamp& time);
  bool IsSame(const zylProperty& other) const;
  static std::uint64_t CombineHashes(std::uint64_t seed, std::uint64_t hash);

  // Nearly all properties have one to three elements. Hence one store for all types, inside the
  // object as long as it fits.
  static constexpr std::size_t InlineBytes = 32;

  template <class T>
  T* Values() const;
  template <class T>
  T GetElement(unsigned int index, PropertyType type, const char* kind) const;
  template <class T>
  const T* GetElements(PropertyType type, const char* kind) const;
  template <class T>
  void SetOneElement(unsigned int index, const T& value, PropertyType type, const char* kind);
  template <class T>
  void SetManyElements(const T* values, unsigned int count);
  template <class T>
  void AllocateValues();
  template <class T>
  void ReleaseValues();
  void Allocate();
  void Release();
  void Report();
  void Changed();

  friend class zylPropertyCollection;
  const zylChangeReport* Changes = nullptr; // that of the collection, which outlives this link

  PropertyType Type = Int;
  unsigned int NumberOfElements = 0;
  alignas(std::string) mutable unsigned char Store[InlineBytes];
  bool IncludeInHash = true;
};

#pragma pop_macro("Bool")

#endif
