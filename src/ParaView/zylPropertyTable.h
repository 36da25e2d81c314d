/// @file zylPropertyTable.h
/// Settings declared once: a constexpr table of rows says which properties a collection has, with
/// which defaults, and where each one goes on a server-manager proxy.
///
///     constexpr zylPropertyRow Rows[] = { // order = order of creation
///       zylPropertyRow::Int("NumberOfColors", 5),                               // pushed by code
///       zylPropertyRow::Double("Transparency", 0.0).To("Opacity").Mapped(1.0, -1.0), // 1 - value
///       zylPropertyRow::Double("PointRadius", 1.0).To("PointSize"),
///       zylPropertyRow::Ints("BlockVisibility").NotInHash(),
///     };
///     zylDeclare(collection, Rows);
///     zylPush(collection, Rows, proxy); // then proxy->UpdateVTKObjects()
///
/// Private to the library.
#ifndef zylPropertyTable_h
#define zylPropertyTable_h

#include "zylExport.h"
#include "zylProperty.h"

#include <cstddef>

class vtkSMProxy;
class zylPropertyCollection;

/// One setting. Plain data, made with the named constructors below.
struct zylPropertyRow
{
  const char* Name = "";
  zylProperty::PropertyType Type = zylProperty::Int;
  unsigned int Count = 1;
  double Defaults[3] = { 0.0, 0.0, 0.0 }; ///< for Bool, Int and Double
  const char* Text = "";                  ///< for String
  bool Hashed = true;
  const char* Target = nullptr; ///< proxy property, null when code pushes the setting
  double Offset = 0.0;          ///< pushed value = Offset + Scale * value (Double only)
  double Scale = 1.0;

  static constexpr zylPropertyRow Bool(const char* name, bool value)
  {
    return Numbers(name, zylProperty::Bool, 1, value ? 1.0 : 0.0);
  }
  static constexpr zylPropertyRow Int(const char* name, int value)
  {
    return Numbers(name, zylProperty::Int, 1, value);
  }
  static constexpr zylPropertyRow Int2(const char* name, int a, int b)
  {
    return Numbers(name, zylProperty::Int, 2, a, b);
  }
  /// No elements.
  static constexpr zylPropertyRow Ints(const char* name)
  {
    return Numbers(name, zylProperty::Int, 0, 0.0);
  }
  /// No elements.
  static constexpr zylPropertyRow Doubles(const char* name)
  {
    return Numbers(name, zylProperty::Double, 0, 0.0);
  }
  static constexpr zylPropertyRow Double(const char* name, double value)
  {
    return Numbers(name, zylProperty::Double, 1, value);
  }
  static constexpr zylPropertyRow Double2(const char* name, double a, double b)
  {
    return Numbers(name, zylProperty::Double, 2, a, b);
  }
  static constexpr zylPropertyRow Double3(const char* name, double a, double b, double c)
  {
    return Numbers(name, zylProperty::Double, 3, a, b, c);
  }
  static constexpr zylPropertyRow String(const char* name, const char* value)
  {
    zylPropertyRow row = Numbers(name, zylProperty::String, 1, 0.0);
    row.Text = value;
    return row;
  }

  /// The same row, pushed to this proxy property.
  constexpr zylPropertyRow To(const char* target) const
  {
    zylPropertyRow row = *this;
    row.Target = target;
    return row;
  }
  /// The same row, pushed as offset + scale * value.
  constexpr zylPropertyRow Mapped(double offset, double scale) const
  {
    zylPropertyRow row = *this;
    row.Offset = offset;
    row.Scale = scale;
    return row;
  }
  /// The same row, left out of the hash of the collection.
  constexpr zylPropertyRow NotInHash() const
  {
    zylPropertyRow row = *this;
    row.Hashed = false;
    return row;
  }

private:
  static constexpr zylPropertyRow Numbers(const char* name, zylProperty::PropertyType type,
    unsigned int count, double a, double b = 0.0, double c = 0.0)
  {
    zylPropertyRow row;
    row.Name = name;
    row.Type = type;
    row.Count = count;
    row.Defaults[0] = a;
    row.Defaults[1] = b;
    row.Defaults[2] = c;
    return row;
  }
};

/// Make the properties of `rows` in `collection`, in table order. One that is there already, of the
/// same type and number of elements, stays as it is: a missing setting means its default.
ZYL_PRIVATE void zylDeclare(
  zylPropertyCollection* collection, const zylPropertyRow* rows, std::size_t count);

/// Set every row with a target on `proxy` (client side; the caller calls UpdateVTKObjects(), which
/// sends only what changed). A target the proxy does not have is traced and skipped. Bools go as 0
/// and 1.
ZYL_PRIVATE void zylPush(zylPropertyCollection* collection, const zylPropertyRow* rows,
  std::size_t count, vtkSMProxy* proxy);

/// Set one proxy property from one collection property, element for element, by type.
ZYL_PRIVATE void zylPushProperty(zylProperty* property, vtkSMProxy* proxy, const char* target);

template <std::size_t N>
void zylDeclare(zylPropertyCollection* collection, const zylPropertyRow (&rows)[N])
{
  zylDeclare(collection, rows, N);
}

template <std::size_t N>
void zylPush(zylPropertyCollection* collection, const zylPropertyRow (&rows)[N], vtkSMProxy* proxy)
{
  zylPush(collection, rows, N, proxy);
}

#endif
