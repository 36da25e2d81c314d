/// @file zylTest.h
/// What nearly every test of the library needs: the usual headers, and short words for the usual
/// things.
///
///     auto data = zylLoad(zylTestData::MakeRow(3));
///     zylSet(settings, "Visibility", true, "Color", zylValues{ 1, 0, 0 });
///     EXPECT_EQ(zylRange(data->GetPointArrayInformation(0)), (zylValues{ 0, 3 }));
#ifndef zylTest_h
#define zylTest_h

#include "zylArrayInformation.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylTestData.h"
#include "zylTestLog.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock-matchers.h>
#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMSourceProxy.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

using zylValues = std::vector<double>;

///@{
/// Settings by pairs of a name and a value. Of several values each becomes an element, of the
/// property's type and as many as there are.
void zylSetElements(zylPropertyCollection* settings, const char* name, const zylValues& values);
inline void zylSet(zylPropertyCollection*)
{
}
template <class Value, class... Rest>
void zylSet(
  zylPropertyCollection* settings, const char* name, const Value& value, const Rest&... rest)
{
  if constexpr (std::is_same_v<Value, zylValues>)
  {
    zylSetElements(settings, name, value);
  }
  else
  {
    settings->Set(name, value);
  }
  zylSet(settings, rest...);
}
///@}

///@{
/// A dataset of these data, or of what a file holds.
vtkSmartPointer<zylDataSet> zylLoad(vtkMultiBlockDataSet* data);
vtkSmartPointer<zylDataSet> zylLoad(const std::string& file);
///@}

/// The lowest and the highest value of a component; nothing of no array.
zylValues zylRange(zylArrayInformation* array, unsigned int component = 0);

/// What `GetBounds()` gives; nothing where it says that there are none.
template <class Object>
zylValues zylBounds(Object&& object)
{
  double bounds[6];
  return object->GetBounds(bounds) ? zylValues(bounds, bounds + 6) : zylValues();
}

///@{
/// Values of proxy properties.
double zylNumber(vtkSMProxy* proxy, const char* property, unsigned int index = 0);
std::string zylText(vtkSMProxy* proxy, const char* property, unsigned int index = 0);
/// All elements of one.
zylValues zylNumbers(vtkSMProxy* proxy, const char* property);
/// The first element of each.
zylValues zylNumbers(vtkSMProxy* proxy, std::initializer_list<const char*> properties);
///@}

/// The registered source or filter of that XML name (borrowed), null if there is none. Of several
/// the last.
vtkSMSourceProxy* zylFindSource(const std::string& name);

/// The number of polygons that the surface stage makes of a dataset.
vtkIdType zylCountSurfaceCells(zylDataSet* data);

/// How many proxies are registered, by group, such as "sources 5\n". Empty groups are left out.
std::string zylRegisteredProxies();

/// What `action` asks of the server of the built-in session: the log of its interpreter.
std::string zylTrafficBegin();
std::string zylTrafficEnd();
template <class Action>
std::string zylTraffic(Action action)
{
  zylTrafficBegin();
  action();
  return zylTrafficEnd();
}

#endif
