#include "vtkZYLContourFilter.h"

#include "zylAnyCells.h"

#include <vtkContourFilter.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

vtkStandardNewMacro(vtkZYLContourFilter);

namespace {
// The fast filter interpolates all arrays but the scalars, whose one value it knows.
void AddScalars(vtkPolyData* surface, vtkDataArray* scalars, double value)
{
  if (surface && scalars && scalars->GetName() && surface->GetNumberOfPoints() > 0 &&
    !surface->GetPointData()->HasArray(scalars->GetName()))
  {
    const auto values = vtkSmartPointer<vtkDataArray>::Take(scalars->NewInstance());
    values->SetName(scalars->GetName());
    values->SetNumberOfTuples(surface->GetNumberOfPoints());
    values->Fill(value);
    surface->GetPointData()->AddArray(values);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
int vtkZYLContourFilter::RequestData(
  vtkInformation* request, vtkInformationVector** input, vtkInformationVector* output)
{
  const auto scalarsOf = [this](vtkDataSet* block) {
    int association = vtkDataObject::FIELD_ASSOCIATION_POINTS;
    return this->GetInputArrayToProcess(0, block, association);
  };
  const auto isFast = [&scalarsOf](vtkDataSet* block) {
    vtkDataArray* scalars = scalarsOf(block);
    const int type = scalars ? scalars->GetDataType() : VTK_DOUBLE;
    const bool known =
      type == VTK_DOUBLE || type == VTK_FLOAT || type == VTK_INT || type == VTK_UNSIGNED_INT;
    return known && (!scalars || scalars->GetNumberOfComponents() == 1) &&
      zylAnyCells::IsLinear(block);
  };
  const auto fast = [this, request, output](vtkInformationVector** in) {
    return this->Superclass::RequestData(request, in, output);
  };
  const auto general = [this, &scalarsOf](vtkDataSet* block) -> vtkSmartPointer<vtkDataObject> {
    vtkDataArray* scalars = scalarsOf(block);
    if (!scalars || block->GetNumberOfCells() == 0)
    {
      return nullptr;
    }
    if (scalars->GetNumberOfComponents() != 1)
    {
      vtkWarningMacro("'" << scalars->GetName() << "' has " << scalars->GetNumberOfComponents()
                          << " components, but should have 1 component.");
      return nullptr;
    }
    vtkNew<vtkContourFilter> contour;
    contour->SetInputData(block);
    contour->SetInputArrayToProcess(
      0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_POINTS, scalars->GetName());
    const int values = static_cast<int>(this->GetNumberOfContours());
    contour->SetNumberOfContours(values);
    for (int i = 0; i < values; ++i)
    {
      contour->SetValue(i, this->GetValue(i));
    }
    contour->SetComputeNormals(this->GetComputeNormals());
    contour->ComputeScalarsOn();
    contour->GenerateTrianglesOn();
    contour->Update();
    return contour->GetOutput();
  };
  const int status = zylAnyCells::RequestData(input, output, isFast, fast, general);
  zylAnyCells::DropBrokenCells(output);
  if (this->GetInterpolateAttributes() && this->GetNumberOfContours() == 1)
  {
    vtkDataObject* from = vtkDataObject::GetData(input[0]);
    vtkDataObject* to = vtkDataObject::GetData(output);
    const auto add = [&](vtkDataObject* block, vtkDataObject* surface) {
      auto* data = vtkDataSet::SafeDownCast(block);
      AddScalars(
        vtkPolyData::SafeDownCast(surface), data ? scalarsOf(data) : nullptr, this->GetValue(0));
    };
    auto* surfaces = vtkCompositeDataSet::SafeDownCast(to);
    if (auto* blocks = vtkCompositeDataSet::SafeDownCast(from); blocks && surfaces)
    {
      zylAnyCells::ForEachBlock(blocks, [&](vtkDataSet* block, vtkCompositeDataIterator* place) {
        add(block, surfaces->GetDataSet(place));
      });
    }
    else
    {
      add(from, to);
    }
  }
  return status;
}
