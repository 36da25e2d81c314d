/**
 * @class zylPropertyCollection
 * @brief A set of properties by name: how every configurable object shows its settings.
 *
 *     collection->MakeDouble("Transparency", 0.0);
 *     collection->Set("Transparency", 0.5);
 *     owner->Update(); // owners read their settings when they update
 *
 * Names are ordered byte by byte; this is the order of GetPropertyNames(), of printing and of the
 * hash. Owners notice changes by the hash of the contents (GetHashValue()) and by the modification
 * times of the properties; a change of a property does not advance the time of its collection, but
 * setting a single element through the collection does.
 *
 * The collection owns one reference to each property; the pointers it hands out are borrowed and
 * valid as long as it holds the property. A name that does not exist is logged as a warning by the
 * getters and setters, which then return false, 0, 0.0, "" or null, or do nothing.
 */
#ifndef zylPropertyCollection_h
#define zylPropertyCollection_h

#include "zylExport.h"
#include "zylProperty.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>
#include <vtkTimeStamp.h>

class zylChangeList;
struct zylChangeReport;
struct zylSharedSettings;

class ZYL_EXPORT zylPropertyCollection : public vtkObject
{
public:
  /// Empty and without a name.
  static zylPropertyCollection* New();
  vtkTypeMacro(zylPropertyCollection, vtkObject);
  void PrintSelf(ostream& os, vtkIndent indent) override;

  ///@{
  /// A name for messages. Setting it is no modification.
  void SetName(const std::string& name) { this->Name = name; }
  const std::string& GetName() const { return this->Name; }
  ///@}

  /// Remove all properties.
  void Clear();

  /// Make a property of `count` default values, in place of any property that has the name.
  zylProperty* MakeProperty(
    const std::string& name, zylProperty::PropertyType type, unsigned int count);

  ///@{
  /// Make a property without elements.
  zylProperty* MakeBool(const std::string& name);
  zylProperty* MakeInt(const std::string& name);
  zylProperty* MakeDouble(const std::string& name);
  zylProperty* MakeString(const std::string& name);
  ///@}

  ///@{
  /// Make a property of one element.
  zylProperty* MakeBool(const std::string& name, bool value);
  zylProperty* MakeInt(const std::string& name, int value);
  zylProperty* MakeDouble(const std::string& name, double value);
  zylProperty* MakeString(const std::string& name, const std::string& value);
  ///@}

  ///@{
  /// Make a property of `count` elements with these values.
  zylProperty* MakeBool(const std::string& name, const bool* values, unsigned int count);
  zylProperty* MakeInt(const std::string& name, const int* values, unsigned int count);
  zylProperty* MakeDouble(const std::string& name, const double* values, unsigned int count);
  zylProperty* MakeString(const std::string& name, const std::string* values, unsigned int count);
  ///@}

  ///@{
  /// Whether there is a property of that name; the property, or null. Never logged.
  bool Has(const std::string& name) const;
  zylProperty* GetProperty(const std::string& name) const;
  ///@}

  /// All names, in ascending order.
  std::vector<std::string> GetPropertyNames() const;

  ///@{
  /// One element of a property.
  bool GetBool(const std::string& name, unsigned int index = 0);
  int GetInt(const std::string& name, unsigned int index = 0);
  double GetDouble(const std::string& name, unsigned int index = 0);
  std::string GetString(const std::string& name, unsigned int index = 0);
  ///@}

  ///@{
  /// All elements of a property, borrowed until its type or count changes; null as in zylProperty.
  const int* GetIntElements(const std::string& name);
  const double* GetDoubleElements(const std::string& name);
  const std::string* GetStringElements(const std::string& name);
  ///@}

  ///@{
  /// Set element 0.
  void Set(const std::string& name, bool value);
  void Set(const std::string& name, int value);
  void Set(const std::string& name, double value);
  void Set(const std::string& name, const char* value);
  void Set(const std::string& name, const std::string& value);
  ///@}

  ///@{
  /// Set one element. A value that differs from the present one advances the collection's time,
  /// even if the property refuses it because it is of another type.
  void Set(const std::string& name, unsigned int index, bool value);
  void Set(const std::string& name, unsigned int index, int value);
  void Set(const std::string& name, unsigned int index, double value);
  void Set(const std::string& name, unsigned int index, const char* value);
  void Set(const std::string& name, unsigned int index, const std::string& value);
  ///@}

  ///@{
  /// Set the first `count` elements, see zylProperty::SetElements(). The collection's time stays.
  void Set(const std::string& name, const bool* values, unsigned int count);
  void Set(const std::string& name, const int* values, unsigned int count);
  void Set(const std::string& name, const double* values, unsigned int count);
  void Set(const std::string& name, const std::string* values, unsigned int count);
  ///@}

  /// Replace all properties by copies of those of `other`; the name of the collection stays. Null
  /// does nothing. Copies are cheap: collections share the values in which they do not differ.
  void DeepCopy(zylPropertyCollection* other);

  /// Hash of the values of all properties included in the hash, in the order of their names, which
  /// do not enter it. 0 when there are none. Computed afresh by every call.
  std::uint64_t GetHashValue() const;

  /// Put `id` on the list whenever a value changes, through the collection or a property of it, or
  /// a property comes, goes or joins or leaves the hash. Takes the place of an earlier list; null:
  /// none. For the library itself, which has the class of the list.
  void ReportChangesTo(const std::shared_ptr<zylChangeList>& list, int id);

  ///@{
  /// One line for each property.
  void PrintProperties(std::ostream& os) const;
  std::string PrintPropertiesToString() const;
  ///@}

protected:
  zylPropertyCollection();
  ~zylPropertyCollection() override;

  /// Has(), with a warning when there is none.
  bool PropertyExists(const std::string& name) const;

private:
  zylPropertyCollection(const zylPropertyCollection&) = delete;
  void operator=(const zylPropertyCollection&) = delete;

  // A dataset of thousands of blocks has hundreds of thousands of settings, and nearly all of them
  // have their defaults. So collections copied from one another share a table that never changes,
  // and each one owns only what was made, set or handed out in it: that hides a shared property of
  // the same name. Both are in the order of the names.
  struct Owned
  {
    const std::string* Name; ///< the one copy of this name in the process
    vtkSmartPointer<zylProperty> Property;
    std::size_t Place; ///< of the first shared property that is not before it

    bool IsHashed() const { return this->Property->GetIncludeInHash(); }
    std::uint64_t GetHash() const { return this->Property->GetHashValue(); }
  };
  zylProperty* FindOwned(const std::string& name) const;
  zylProperty* Own(const std::string& name, zylProperty* property) const;
  /// The property as it is, perhaps a shared one, which must not be changed; null if there is none.
  const zylProperty* Look(const std::string& name) const;
  ///@{
  /// With a warning when there is none.
  const zylProperty* LookExisting(const std::string& name) const;
  zylProperty* GetExisting(const std::string& name) const;
  ///@}
  template <class Action>
  void ForEach(Action action) const; ///< in the order of the names
  void Share();
  template <class T>
  zylProperty* MakeWithValues(
    const std::string& name, zylProperty::PropertyType type, const T* values, unsigned int count);
  template <class T>
  void SetValues(const std::string& name, const T* values, unsigned int count);

  void Link(zylProperty* property) const;
  void RemoveAll();
  void Changed();

  std::shared_ptr<const zylSharedSettings> Shared;
  vtkTimeStamp SharedTime; ///< when the shared properties became those of this collection
  mutable std::vector<Owned> Properties; ///< owned
  std::string Name;
  std::unique_ptr<zylChangeReport> Changes; // null when there is no list
};

#endif
