/**
 * @class zylPointProbe
 * @brief The values of all variables of a dataset at a list of points.
 *
 *     vtkNew<zylPointProbe> probe;
 *     probe->SetDataSet(dataset);
 *     const double points[] = { 0, 0, 0, 1, 0, 0 };
 *     probe->GetProperties()->GetProperty("ProbePoints")->SetNumberOfElements(6);
 *     probe->GetProperties()->Set("ProbePoints", points, 6);
 *     probe->Update();
 *     const auto value = probe->GetProbedValues(1);
 *     if (value.Valid)
 *     {
 *       const double pressure = value.PointValues.at("pressure")[0];
 *     }
 *
 * Point arrays are interpolated within the cell that holds the point, cell arrays are taken from
 * it; both are point values of the result, derived variables among them. Arrays that some of the
 * blocks lack are left out. Expressions of derived variables are evaluated at the points, on the
 * values found there: what needs neighbors, such as gradient(), has no meaning in them. Moving the
 * points is cheap: what finds cells is kept as long as the data stay.
 *
 * Settings (GetProperties()):
 *
 * | name          | type, default | meaning                                                   |
 * |---------------|---------------|-----------------------------------------------------------|
 * | "Blocks"      | ints, 0       | flat indices of the blocks to probe; 0 is the whole data  |
 * | "ProbePoints" | doubles, none | x, y, z of each point                                     |
 */
#ifndef zylPointProbe_h
#define zylPointProbe_h

#include "zylExport.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkDataSet;
class vtkSMSourceProxy;
class zylDataSet;
class zylMultiBlockTree;
class zylPropertyCollection;

class ZYL_EXPORT zylPointProbe : public vtkObject
{
public:
  /// One value per component, by array name; an array without a name is "(unnamed array)".
  struct ProbeValue_
  {
    std::array<double, 3> Point = { { 0.0, 0.0, 0.0 } };
    bool Valid = false; ///< whether the point lies in the data; if not the values mean nothing
    std::map<std::string, std::vector<double>> PointValues;
    std::map<std::string, std::vector<double>> CellValues;
  };

  static zylPointProbe* New();
  vtkTypeMacro(zylPointProbe, vtkObject);

  /// The dataset (shared); null for none.
  virtual void SetDataSet(zylDataSet* dataset);
  zylDataSet* GetDataSet();

  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();

  /// Send the settings and probe at the animation time; executes only what changed. Does nothing
  /// without a dataset. An error when the dataset holds nothing, a block does not exist or the
  /// coordinates are no multiple of three: there are no values then.
  void Update();

  /// The values at the index-th point. An empty record, with an error, when there are none: before
  /// the first Update(), after one that failed, for an index beyond the points.
  ProbeValue_ GetProbedValues(unsigned int index);

protected:
  zylPointProbe();
  ~zylPointProbe() override;

private:
  zylPointProbe(const zylPointProbe&) = delete;
  void operator=(const zylPointProbe&) = delete;

  std::string FindMistake();
  std::vector<int> GetBlocksToProbe();
  bool BuildChain();
  void DropChain();
  void Execute();

  vtkSmartPointer<zylDataSet> DataSet;
  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<vtkSMSourceProxy> LineSource;
  vtkSmartPointer<vtkSMSourceProxy> BlockExtractor;
  vtkSmartPointer<vtkSMSourceProxy> Resampler;
  vtkSmartPointer<vtkSMSourceProxy> ScriptFilter;
  vtkSmartPointer<vtkDataSet> Fetched;     // of the last execution
  std::string Mistake;                     // of the last update
  vtkSmartPointer<zylMultiBlockTree> Tree; // which was looked at
  vtkMTimeType TreeTime = 0;
  std::set<int> WithoutCells; // its blocks that have points only
  double ExecutedTime = 0.0;
};

#endif
