/**
 * @class zylIntegrateFields
 * @brief Integrals of all point and cell arrays over blocks of a dataset.
 *
 *     vtkNew<zylIntegrateFields> integral;
 *     integral->SetDataSet(dataset);
 *     const auto values = integral->GetIntegratedValues(0); // 0: all blocks
 *     const double volume = values.CellValues.at("Volume")[0];
 *
 * Integrated are the cells of the highest dimension among the blocks, at the animation time,
 * derived variables included. Their measure is the cell value "Volume", "Area" or "Length". Arrays
 * that some of the blocks lack are left out.
 *
 * Settings (GetProperties()):
 *
 * | name                     | type, default | meaning                                        |
 * |--------------------------|---------------|------------------------------------------------|
 * | "DivideCellDataByVolume" | bool, false   | cell values are divided by the measure (means) |
 */
#ifndef zylIntegrateFields_h
#define zylIntegrateFields_h

#include "zylExport.h"

#include <map>
#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkSMSourceProxy;
class zylDataSet;
class zylPropertyCollection;

class ZYL_EXPORT zylIntegrateFields : public vtkObject
{
public:
  /// One value per component, by array name; an array without a name is "(unnamed array)".
  struct IntegratedValues_
  {
    std::map<std::string, std::vector<double>> PointValues;
    std::map<std::string, std::vector<double>> CellValues;
  };

  static zylIntegrateFields* New();
  vtkTypeMacro(zylIntegrateFields, vtkObject);

  ///@{
  /// The dataset (shared); null for none.
  void SetDataSet(zylDataSet* dataset);
  zylDataSet* GetDataSet();
  ///@}

  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();

  /// Integrate over the blocks that were last asked for, none at first. Executes only what changed.
  /// An error without a dataset, or with one that holds nothing.
  void Update();

  ///@{
  /// The integrals over blocks, given by flat index; a block is there with all below it. Empty
  /// without a dataset, for an empty list, and, with an error, when a block does not exist.
  IntegratedValues_ GetIntegratedValues(const std::vector<int>& blocks);
  IntegratedValues_ GetIntegratedValues(int block);
  ///@}

protected:
  zylIntegrateFields();
  ~zylIntegrateFields() override;

private:
  zylIntegrateFields(const zylIntegrateFields&) = delete;
  void operator=(const zylIntegrateFields&) = delete;

  bool BuildChain();
  void DropChain();

  vtkSmartPointer<zylDataSet> DataSet;
  vtkSmartPointer<vtkSMSourceProxy> BlockExtractor;
  vtkSmartPointer<vtkSMSourceProxy> ScriptFilter;
  vtkSmartPointer<vtkSMSourceProxy> Integrator;
  vtkSmartPointer<zylPropertyCollection> Properties;
  std::vector<int> Blocks;
  double ExecutedTime = 0.0;
};

#endif
