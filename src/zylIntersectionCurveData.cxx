#include "zylIntersectionCurveData.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

vtkStandardNewMacro(zylIntersectionCurveData);

namespace {
//--------------------------------------------------------------------------------------------------
std::vector<double> ValuesOf(vtkDataArray* array)
{
  std::vector<double> values;
  const vtkIdType tuples = array ? array->GetNumberOfTuples() : 0;
  const int components = array ? array->GetNumberOfComponents() : 0;
  values.reserve(static_cast<std::size_t>(tuples * components));
  for (vtkIdType i = 0; i < tuples; ++i)
  {
    for (int c = 0; c < components; ++c)
    {
      values.push_back(array->GetComponent(i, c));
    }
  }
  return values;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylIntersectionCurveData::zylIntersectionCurveData() = default;

//--------------------------------------------------------------------------------------------------
zylIntersectionCurveData::~zylIntersectionCurveData() = default;

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveData::SetCurveData(vtkPolyData* curve)
{
  this->Curve = curve;
}

//--------------------------------------------------------------------------------------------------
void zylIntersectionCurveData::SetStartingPointId(int id, bool)
{
  this->StartingPointId = id;
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylIntersectionCurveData::GetPoints()
{
  vtkPoints* points = this->Curve ? this->Curve->GetPoints() : nullptr;
  return ValuesOf(points ? points->GetData() : nullptr);
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylIntersectionCurveData::GetPointData(const std::string& name)
{
  return ValuesOf(this->Curve ? this->Curve->GetPointData()->GetArray(name.c_str()) : nullptr);
}

//--------------------------------------------------------------------------------------------------
std::vector<double> zylIntersectionCurveData::GetCellData(const std::string& name)
{
  return ValuesOf(this->Curve ? this->Curve->GetCellData()->GetArray(name.c_str()) : nullptr);
}
