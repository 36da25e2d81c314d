#include "zylViewHit.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewScene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <zylBoundaryRepresentation.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylSelection.h>
#include <zylView.h>

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkPointData.h>

namespace {
constexpr double Reach = 4.0; // pixels from lines and points

std::string Number(double value)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", value);
  return text;
}

// What marks cells for the toolkit is no result.
bool IsResult(vtkDataArray* array)
{
  return array && array->GetName() && std::string(array->GetName()).compare(0, 3, "vtk") != 0;
}

//--------------------------------------------------------------------------------------------------
// Where a line meets a cell: the place, and the weights of its points there. Beside the cell it is
// the middle: what is drawn wider than it is.
std::vector<double> Meet(
  vtkCell* cell, double from[3], double to[3], double reach, std::array<double, 3>& point)
{
  double along = 0.0, parametric[3];
  int part = 0;
  if (cell->IntersectWithLine(from, to, reach, along, point.data(), parametric, part) == 0)
  {
    part = cell->GetParametricCenter(parametric);
  }
  std::vector<double> weights(std::max<vtkIdType>(cell->GetNumberOfPoints(), 1));
  cell->EvaluateLocation(part, parametric, point.data(), weights.data());
  return weights;
}

//--------------------------------------------------------------------------------------------------
// Numbers that count things are those of the nearest point.
double Interpolate(
  vtkDataArray* array, vtkCell* cell, const std::vector<double>& weights, int component)
{
  const auto value = [&](
                       vtkIdType i) { return array->GetComponent(cell->GetPointId(i), component); };
  const vtkIdType count = cell->GetNumberOfPoints();
  if (array->GetDataType() != VTK_FLOAT && array->GetDataType() != VTK_DOUBLE)
  {
    return value(std::max_element(weights.begin(), weights.end()) - weights.begin());
  }
  double sum = 0.0;
  for (vtkIdType i = 0; i < count; ++i)
  {
    sum += weights[i] * value(i);
  }
  return sum;
}

//--------------------------------------------------------------------------------------------------
void ReadValues(vtkDataSet* data, const std::vector<double>& weights, zylViewHit& hit)
{
  vtkCell* cell = data->GetCell(0);
  for (vtkFieldData* arrays : { static_cast<vtkFieldData*>(data->GetPointData()),
         static_cast<vtkFieldData*>(data->GetCellData()) })
  {
    for (int i = 0; i < arrays->GetNumberOfArrays(); ++i)
    {
      vtkDataArray* array = arrays->GetArray(i);
      if (!IsResult(array))
      {
        continue;
      }
      zylViewHit::Value value{ array->GetName(), {} };
      for (int c = 0; c < array->GetNumberOfComponents(); ++c)
      {
        value.Components.push_back(arrays == data->GetCellData()
            ? array->GetComponent(0, c)
            : Interpolate(array, cell, weights, c));
      }
      hit.Values.push_back(value);
    }
  }
}

//--------------------------------------------------------------------------------------------------
std::string NameOf(const zylViewBlocks& blocks, unsigned int index)
{
  for (const zylViewBlock& block : blocks.GetBlocks())
  {
    if (block.Id == index && !block.Name.empty())
    {
      return block.Name + ", block " + std::to_string(index);
    }
  }
  return "block " + std::to_string(index);
}

//--------------------------------------------------------------------------------------------------
// Whose representation that is.
bool FindOwner(const zylViewCaseList& cases, const zylRepresentation* shown, zylViewHit& hit)
{
  for (const auto& one : cases)
  {
    hit.Case = one.get();
    if (one->GetBoundary() == shown)
    {
      return true;
    }
    for (const auto& entry : one->GetDerived().GetEntries())
    {
      if (entry.Representation == shown)
      {
        hit.Derived = entry.Representation;
        hit.Name = entry.Kind + " " + std::to_string(entry.Number);
        return true;
      }
    }
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylViewHit::Describe(std::size_t mostLines) const
{
  std::string text = this->Name;
  text += this->Cell < 0 ? "" : ", cell " + std::to_string(this->Cell);
  text += "\nat " + Number(this->Point[0]) + ", " + Number(this->Point[1]) + ", " +
    Number(this->Point[2]);
  for (std::size_t i = 0; i < this->Values.size(); ++i)
  {
    if (i + 2 >= mostLines)
    {
      return text + "\n... and " + std::to_string(this->Values.size() - i) + " more";
    }
    const Value& value = this->Values[i];
    double sum = 0.0;
    text += "\n" + value.Name + ":";
    for (const double component : value.Components)
    {
      text += " " + Number(component);
      sum += component * component;
    }
    text += value.Components.size() == 3 ? "  (" + Number(std::sqrt(sum)) + ")" : "";
  }
  return text;
}

//--------------------------------------------------------------------------------------------------
std::optional<zylViewHit> zylFindHit(zylViewScene& scene, double x, double y)
{
  zylView* view = scene.GetView();
  int size[2];
  view->GetWindowSize(size);
  const int column = static_cast<int>(x), row = size[1] - 1 - static_cast<int>(y);
  const auto selection = view->SelectCells(column, row, column, row);
  const auto shown = selection->GetRepresentations(view);
  zylViewHit hit;
  if (shown.empty() || !FindOwner(scene.GetCases(), shown.front(), hit))
  {
    return {};
  }
  const auto cells = selection->GetCells(shown.front());
  const auto blocks = selection->GetBlocks(shown.front());
  hit.Cell = cells.empty() ? -1 : cells.back();
  if (hit.Derived == nullptr && !blocks.empty())
  {
    hit.Block = static_cast<unsigned int>(blocks.front());
    hit.Name = NameOf(hit.Case->GetBlocks(), *hit.Block);
  }
  const auto fetched = selection->FetchCells(shown.front());
  if (!fetched.empty() && fetched.front()->GetNumberOfCells() > 0)
  {
    zylViewCamera& camera = scene.GetCamera();
    vtkCell* cell = fetched.front()->GetCell(0);
    double from[3], to[3], middle[3];
    fetched.front()->GetCenter(middle);
    camera.GetRay(column + 0.5, size[1] - row - 0.5, from, to);
    const auto weights = Meet(cell, from, to, Reach / camera.GetPixelsPerUnit(middle), hit.Point);
    ReadValues(fetched.front(), weights, hit);
  }
  return hit;
}
