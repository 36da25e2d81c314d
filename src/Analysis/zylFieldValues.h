/// @file zylFieldValues.h
/// What everything that computes numbers from a dataset shares: its blocks, its derived variables,
/// the values it fetched. Private to the library.
#ifndef zylFieldValues_h
#define zylFieldValues_h

#include "zylExport.h"

#include <map>
#include <string>
#include <vector>

#include <vtkType.h>

class vtkDataSet;
class vtkSMSourceProxy;
class zylArrayInformation;
class zylDataSet;
class zylProperty;

using zylFieldValues = std::map<std::string, std::vector<double>>; ///< components by array name

/// Put all components of `tuple` of every point and cell array into the values, under the array's
/// name, or "(unnamed array)". A name that is there stays as it is; arrays of other than numbers
/// and arrays without the tuple are left out. Null `data` does nothing.
ZYL_PRIVATE void zylReadTuples(
  vtkDataSet* data, vtkIdType tuple, zylFieldValues& pointValues, zylFieldValues& cellValues);

/// The script that adds all derived variables of the dataset.
ZYL_PRIVATE std::string zylGetDerivedVariablesScript(zylDataSet* dataset);

/// What to tell of the derived variables of the dataset that `values`, where they belong, lack: why
/// the script of `stage` did not make them. Empty when all are there.
ZYL_PRIVATE std::string zylDescribeMissing(
  zylDataSet* dataset, const zylFieldValues& values, vtkSMSourceProxy* stage);

/// The integers of a property.
ZYL_PRIVATE std::vector<int> zylGetInts(const zylProperty* property);

/// The first of `blocks` that is no flat index of the dataset's tree, or nothing.
ZYL_PRIVATE std::vector<int> zylFindUnknownBlock(
  zylDataSet* dataset, const std::vector<int>& blocks);

/// The description of a point array of the dataset (borrowed until its next update), or null.
ZYL_PRIVATE zylArrayInformation* zylFindPointArray(zylDataSet* dataset, const std::string& name);

/// What is wrong with a variable as a scalar: neither a point array of one component nor a derived
/// variable. Empty for nothing, and for an empty name.
ZYL_PRIVATE std::string zylDescribeScalar(zylDataSet* dataset, const std::string& name);

/// The end of the dataset's chain (borrowed); null without a dataset, when nothing is loaded or its
/// session has ended.
ZYL_PRIVATE vtkSMSourceProxy* zylGetLiveOutput(zylDataSet* dataset);

#endif
