/**
 * @class zylFieldHistogram
 * @brief How often the values of a point variable fall into each of a row of equal bins.
 *
 *     vtkNew<zylFieldHistogram> histogram;
 *     histogram->SetDataSet(dataset);
 *     histogram->GetProperties()->Set("VariableName", "pressure");
 *     histogram->GetProperties()->Set("BinCount", 20);
 *     const std::vector<int> bins = histogram->GetBins(); // 20 numbers of points
 *
 * Counted are the points of all blocks at the animation time that have the variable, a vector by
 * its first component. The variable may be a derived one. The range is always the one that is set,
 * never that of the data: what lies below it is counted in the first bin, what lies above it in the
 * last (values that are no numbers, or 2^31 bins away, in the first).
 *
 * Settings (GetProperties()):
 *
 * | name           | type, default     | meaning                                             |
 * |----------------|-------------------|-----------------------------------------------------|
 * | "BinCount"     | int, 1            | number of bins, 1 ... 10 000 000                    |
 * | "BinRanges"    | 2 doubles, 0, 100 | lower end of the first and upper end of the last bin |
 * | "VariableName" | string, ""        | the point variable; none: no bins                   |
 */
#ifndef zylFieldHistogram_h
#define zylFieldHistogram_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkSMSourceProxy;
class zylDataSet;
class zylPropertyCollection;

class ZYL_EXPORT zylFieldHistogram : public vtkObject
{
public:
  static zylFieldHistogram* New();
  vtkTypeMacro(zylFieldHistogram, vtkObject);

  ///@{
  /// The dataset (shared); null for none.
  void SetDataSet(zylDataSet* dataset);
  zylDataSet* GetDataSet();
  ///@}

  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();

  /// Send the settings. An error without a dataset, with one that holds nothing, and when a setting
  /// makes no sense; nothing is sent then.
  void Update();

  /// The number of points in each bin, in ascending order of the values; runs Update(). Empty
  /// without a variable and after an error.
  std::vector<int> GetBins();

protected:
  zylFieldHistogram();
  ~zylFieldHistogram() override;

private:
  zylFieldHistogram(const zylFieldHistogram&) = delete;
  void operator=(const zylFieldHistogram&) = delete;

  bool Push();
  std::string FindMistake();
  bool BuildChain(const std::string& variable);
  void DropChain();

  vtkSmartPointer<zylDataSet> DataSet;
  vtkSmartPointer<vtkSMSourceProxy> ScriptFilter; // of a derived variable, once there was one
  vtkSmartPointer<vtkSMSourceProxy> Histogram;
  vtkSmartPointer<zylPropertyCollection> Properties;
  double ExecutedTime = 0.0;
};

#endif
