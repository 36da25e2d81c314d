#include "zylBlockValues.h"

#include "zylBlockParts.h"

#include <cstring>

#include <vtkAbstractArray.h>
#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>
#include <vtkImageData.h>
#include <vtkMatrix3x3.h>
#include <vtkSmartPointer.h>

namespace {
bool IsGhostArray(const char* name)
{
  return std::strcmp(name, vtkDataSetAttributes::GhostArrayName()) == 0;
}

template <std::size_t Bytes>
void Gather(const char* from, char* to, const int* ids, int count)
{
  for (int i = 0; i < count; ++i)
  {
    std::memcpy(to + i * Bytes, from + ids[i] * Bytes, Bytes);
  }
}

// Without `from`, zeros.
void CopyTuples(const char* from, char* to, std::size_t bytes, const int* ids, int count)
{
  if (!from)
  {
    std::memset(to, 0, bytes * count);
    return;
  }
  if (!ids)
  {
    std::memcpy(to, from, bytes * count);
    return;
  }
  switch (bytes)
  {
    case 1:
      return Gather<1>(from, to, ids, count);
    case 4:
      return Gather<4>(from, to, ids, count);
    case 8:
      return Gather<8>(from, to, ids, count);
    case 24:
      return Gather<24>(from, to, ids, count);
    default:
      for (int i = 0; i < count; ++i)
      {
        std::memcpy(to + i * bytes, from + ids[i] * bytes, bytes);
      }
  }
}

// Through the arrays' own methods; without `source`, zeros where there are numbers.
void CopyOddTuple(vtkAbstractArray* target, vtkIdType to, vtkAbstractArray* source, vtkIdType from)
{
  if (source && source->GetDataType() == target->GetDataType())
  {
    target->SetTuple(to, from, source);
    return;
  }
  auto* numbers = vtkDataArray::SafeDownCast(target);
  auto* values = vtkDataArray::SafeDownCast(source);
  for (int c = 0; numbers && c < numbers->GetNumberOfComponents(); ++c)
  {
    numbers->SetComponent(to, c, values ? values->GetComponent(from, c) : 0.0);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<zylColumn> zylListColumns(vtkDataSetAttributes* attributes)
{
  std::vector<zylColumn> columns;
  for (int i = 0; i < attributes->GetNumberOfArrays(); ++i)
  {
    vtkAbstractArray* array = attributes->GetAbstractArray(i);
    if (!array->GetName() || IsGhostArray(array->GetName()))
    {
      continue;
    }
    zylColumn column;
    column.Model = array;
    const bool plain = array->IsNumeric() && array->GetDataType() != VTK_BIT;
    column.TupleBytes = plain
      ? static_cast<std::size_t>(array->GetDataTypeSize()) * array->GetNumberOfComponents()
      : 0;
    columns.push_back(column);
  }
  return columns;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylColumnSource> zylFindSources(
  const std::vector<zylColumn>& columns, vtkDataSetAttributes* attributes, vtkIdType tuples)
{
  std::vector<zylColumnSource> sources(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i)
  {
    const zylColumn& column = columns[i];
    vtkAbstractArray* array = attributes->GetAbstractArray(column.Model->GetName());
    if (!array || array->GetNumberOfComponents() != column.Model->GetNumberOfComponents() ||
      array->GetNumberOfTuples() < tuples ||
      (array->GetDataType() != column.Model->GetDataType() &&
        !(array->IsNumeric() && column.Model->IsNumeric())))
    {
      continue;
    }
    sources[i].Array = array;
    if (column.TupleBytes > 0 && array->HasStandardMemoryLayout() &&
      array->GetDataType() == column.Model->GetDataType() && tuples > 0)
    {
      sources[i].Values = static_cast<const char*>(array->GetVoidPointer(0));
      sources[i].Deferred = !sources[i].Values;
    }
  }
  return sources;
}

//--------------------------------------------------------------------------------------------------
std::vector<char*> zylAllocateColumns(const std::vector<zylColumn>& columns, vtkIdType tuples,
  vtkDataSetAttributes* model, vtkDataSetAttributes* output)
{
  std::vector<char*> values;
  for (const zylColumn& column : columns)
  {
    auto array = vtkSmartPointer<vtkAbstractArray>::Take(
      vtkAbstractArray::CreateArray(column.Model->GetDataType()));
    array->SetName(column.Model->GetName());
    array->SetNumberOfComponents(column.Model->GetNumberOfComponents());
    array->CopyComponentNames(column.Model);
    array->SetNumberOfTuples(tuples);
    values.push_back(
      column.TupleBytes > 0 && tuples > 0 ? static_cast<char*>(array->GetVoidPointer(0)) : nullptr);
    output->AddArray(array);
  }
  for (int type = 0; model && type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type)
  {
    vtkAbstractArray* active = model->GetAbstractAttribute(type);
    if (active && active->GetName() && !IsGhostArray(active->GetName()))
    {
      output->SetActiveAttribute(active->GetName(), type);
    }
  }
  return values;
}

//--------------------------------------------------------------------------------------------------
void zylCopyColumns(const std::vector<zylColumn>& columns,
  const std::vector<zylColumnSource>& sources, const std::vector<char*>& values, vtkIdType first,
  const int* ids, int count)
{
  for (std::size_t i = 0; i < columns.size(); ++i)
  {
    const bool plainSource = sources[i].Values || sources[i].Deferred || !sources[i].Array;
    if (values[i] && plainSource)
    {
      const std::size_t bytes = columns[i].TupleBytes;
      CopyTuples(sources[i].Values, values[i] + first * bytes, bytes, ids, count);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylCopyOddColumns(const std::vector<zylColumn>& columns,
  const std::vector<zylColumnSource>& sources, vtkDataSetAttributes* output, vtkIdType first,
  const int* ids, int count)
{
  for (std::size_t i = 0; i < columns.size(); ++i)
  {
    const bool missingPlain = !sources[i].Array && columns[i].TupleBytes > 0;
    if (sources[i].Values || sources[i].Deferred || missingPlain)
    {
      continue;
    }
    vtkAbstractArray* target = output->GetAbstractArray(columns[i].Model->GetName());
    for (int k = 0; k < count; ++k)
    {
      CopyOddTuple(target, first + k, sources[i].Array, ids ? ids[k] : k);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylFillCoordinates(
  vtkImageData* image, const zylBlockShape& shape, const int* ids, int count, double* to)
{
  if (!image->GetDirectionMatrix()->IsIdentity())
  {
    for (int i = 0; i < count; ++i)
    {
      image->GetPoint(ids ? ids[i] : i, to + 3 * static_cast<std::size_t>(i));
    }
    return;
  }
  const int* extent = image->GetExtent();
  const double* origin = image->GetOrigin();
  const double* spacing = image->GetSpacing();
  std::vector<double> axis[3];
  for (int a = 0; a < 3; ++a)
  {
    for (int i = 0; i < shape.PointsAlong(a); ++i)
    {
      axis[a].push_back(origin[a] + (extent[2 * a] + i) * spacing[a]);
    }
  }
  const int nx = shape.PointsAlong(0);
  const int ny = shape.PointsAlong(1);
  int rowBegin = 0, rowEnd = 0, j = 0, k = 0;
  for (int i = 0; i < count; ++i)
  {
    const int id = ids ? ids[i] : i;
    if (id >= rowEnd)
    {
      const int row = id / nx;
      rowBegin = row * nx;
      rowEnd = rowBegin + nx;
      j = row % ny;
      k = row / ny;
    }
    *to++ = axis[0][id - rowBegin];
    *to++ = axis[1][j];
    *to++ = axis[2][k];
  }
}
