/// @file zylSharedSettings.h
/// Settings that many collections have in common, held once. Private to the library.
#ifndef zylSharedSettings_h
#define zylSharedSettings_h

#include "zylProperty.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

/// Properties by name, ascending, that no collection changes: one that is set belongs to its
/// collection from then on and hides the shared one.
struct zylSharedSettings
{
  struct Entry
  {
    const std::string* Name;
    vtkSmartPointer<zylProperty> Property;
    bool Hashed;
    std::uint64_t Hash; ///< of the property

    bool IsHashed() const { return this->Hashed; }
    std::uint64_t GetHash() const { return this->Hash; }
  };
  std::vector<Entry> Entries;
  std::uint64_t Hash = 0; ///< of a collection that has these properties and no others

  // Never freed: collections may outlive other static objects.
  static const std::shared_ptr<const zylSharedSettings>& Empty()
  {
    static const auto* const empty =
      new std::shared_ptr<const zylSharedSettings>(std::make_shared<zylSharedSettings>());
    return *empty;
  }

  /// The one copy of a property's name.
  static const std::string* InternName(const std::string& name)
  {
    static std::mutex mutex;
    static auto* const names = new std::set<std::string>; // never freed, as above
    const std::lock_guard<std::mutex> lock(mutex);
    return &*names->insert(name).first;
  }

  /// Where `name` is, or would be, in a list that is sorted by name.
  template <class List>
  static auto LowerBound(List& entries, const std::string& name)
  {
    return std::lower_bound(entries.begin(), entries.end(), name,
      [](const auto& entry, const std::string& wanted) { return *entry.Name < wanted; });
  }

  std::size_t PlaceOf(const std::string& name) const
  {
    return LowerBound(this->Entries, name) - this->Entries.begin();
  }

  /// Null when it is not among these.
  const zylProperty* Find(const std::string& name) const
  {
    const auto entry = LowerBound(this->Entries, name);
    return entry != this->Entries.end() && *entry->Name == name ? entry->Property : nullptr;
  }

  /// The shared property that an owned one hides, or null.
  template <class Owned>
  const zylProperty* GetHiddenBy(const Owned& own) const
  {
    const bool hides =
      own.Place < this->Entries.size() && this->Entries[own.Place].Name == own.Name;
    return hides ? this->Entries[own.Place].Property.Get() : nullptr;
  }

  /// Whether an owned property is like the one that it hides.
  template <class Owned>
  bool Holds(const Owned& own) const
  {
    const zylProperty* hidden = this->GetHiddenBy(own);
    return hidden && hidden->IsSame(*own.Property);
  }
};

#endif
