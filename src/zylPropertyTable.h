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

  static constexpr zylPropertyRow Bool(const char* name, bool value);
  static constexpr zylPropertyRow Int(const char* name, int value);
  static constexpr zylPropertyRow Ints(const char* name); ///< no elements
  static constexpr zylPropertyRow Double(const char* name, double value);
  static constexpr zylPropertyRow Double2(const char* name, double a, double b);
  static constexpr zylPropertyRow Double3(const char* name, double a, double b, double c);
  static constexpr zylPropertyRow String(const char* name, const char* value);

  constexpr zylPropertyRow To(const char* target) const;
  constexpr zylPropertyRow Mapped(double offset, double scale) const;
  constexpr zylPropertyRow NotInHash() const;
};

/// Make the properties of `rows` in `collection`, in table order.
ZYL_PRIVATE void zylDeclare(
  zylPropertyCollection* collection, const zylPropertyRow* rows, std::size_t count);

/// Set every row with a target on `proxy` (client side; the caller calls UpdateVTKObjects(), which
/// sends only what changed). A target the proxy does not have is skipped. Bools go as 0 and 1.
ZYL_PRIVATE void zylPush(zylPropertyCollection* collection, const zylPropertyRow* rows,
  std::size_t count, vtkSMProxy* proxy);

/// Set one proxy property from one collection property, element for element, by type.
ZYL_PRIVATE void zylPushProperty(
  zylProperty* property, vtkSMProxy* proxy, const char* target);

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
