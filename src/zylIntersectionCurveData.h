/**
 * @class zylIntersectionCurveData
 * @brief The points and the data of an intersection curve, in this process.
 */
#ifndef zylIntersectionCurveData_h
#define zylIntersectionCurveData_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkPolyData;

class ZYL_EXPORT zylIntersectionCurveData : public vtkObject
{
public:
  static zylIntersectionCurveData* New();
  vtkTypeMacro(zylIntersectionCurveData, vtkObject);

  /// The curve (shared; null: none).
  void SetCurveData(vtkPolyData* curve);

  /// A point to start from. It is kept; no getter takes it into account, nor the flag.
  void SetStartingPointId(int id, bool flag);

  /// The coordinates of all points in the order of the data, three values a point. Empty without a
  /// curve.
  std::vector<double> GetPoints();

  ///@{
  /// All values of an array, all components of the first point or cell, then those of the next.
  /// Empty without a curve and for unknown names.
  std::vector<double> GetPointData(const std::string& name);
  std::vector<double> GetCellData(const std::string& name);
  ///@}

protected:
  zylIntersectionCurveData();
  ~zylIntersectionCurveData() override;

private:
  zylIntersectionCurveData(const zylIntersectionCurveData&) = delete;
  void operator=(const zylIntersectionCurveData&) = delete;

  vtkSmartPointer<vtkPolyData> Curve;
  int StartingPointId = 0;
};

#endif
