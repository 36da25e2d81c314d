#include "Data/zylCellTypes.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylCore.h"

#include <algorithm>

#include <vtkCellType.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkIdList.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

namespace {
int FirstCellType(vtkDataObject* object)
{
  auto* data = vtkDataSet::SafeDownCast(object);
  if (!data || data->GetNumberOfCells() == 0)
  {
    return -1;
  }
  const int type = data->GetCellType(0);
  if (type != VTK_EMPTY_CELL)
  {
    return type;
  }
  // Cells of a uniform grid that are covered by a finer one are empty, but still have their points.
  const vtkNew<vtkIdList> points;
  data->GetCellPoints(0, points);
  switch (points->GetNumberOfIds())
  {
    case 2:
      return VTK_LINE;
    case 4:
      return VTK_PIXEL;
    case 8:
      return VTK_VOXEL;
    default:
      return type;
  }
}

int NumberOfProcesses(vtkSMSourceProxy* source)
{
  return zylIsAlive(source) ? source->GetSession()->GetNumberOfProcesses(vtkPVSession::DATA_SERVER)
                            : 0;
}

vtkSmartPointer<vtkDataObject> Fetch(vtkSMSourceProxy* source, vtkSMProxy* selection)
{
  const auto extract =
    zylProxyBuilder(source->GetSessionProxyManager(), "filters", "PVExtractSelection")
      .Input(selection, "Selection")
      .Input(source)
      .MakeUnregistered();
  return selection && extract ? zylCore::Fetch(extract, "vtkMultiBlockDataGroupFilter") : nullptr;
}

vtkSmartPointer<vtkDataObject> FetchCells(
  vtkSMSourceProxy* source, const char* selector, const std::vector<int>& ids)
{
  if (!zylIsUsable(source, "GetCellType()"))
  {
    return nullptr;
  }
  const auto selection = zylProxyBuilder(source->GetSessionProxyManager(), "sources", selector)
                           .Set("FieldType", 0)
                           .Set("IDs", ids)
                           .MakeUnregistered();
  return Fetch(source, selection);
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<vtkSmartPointer<vtkDataSet>> zylFetchCells(
  vtkSMSourceProxy* source, vtkSMProxy* selection)
{
  std::vector<vtkSmartPointer<vtkDataSet>> parts;
  const auto add = [&parts](vtkDataObject* object) {
    auto* data = vtkDataSet::SafeDownCast(object);
    if (data && data->GetNumberOfPoints() > 0)
    {
      parts.emplace_back(data);
    }
  };
  if (!zylIsAlive(source) || !selection)
  {
    return parts;
  }
  const vtkSmartPointer<vtkDataObject> cells = Fetch(source, selection);
  add(cells);
  if (auto* composite = vtkCompositeDataSet::SafeDownCast(cells))
  {
    auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
    {
      add(iterator->GetCurrentDataObject());
    }
  }
  return parts;
}

//--------------------------------------------------------------------------------------------------
int zylGetCellType(vtkSMSourceProxy* source, const std::vector<unsigned int>& blocks)
{
  std::vector<int> firstCells; // flat index, process, cell
  for (const unsigned int block : blocks)
  {
    for (int process = 0; process < NumberOfProcesses(source); ++process)
    {
      firstCells.insert(firstCells.end(), { static_cast<int>(block), process, 0 });
    }
  }
  const auto cells = FetchCells(source, "CompositeDataIDSelectionSource", firstCells);
  auto* composite = vtkCompositeDataSet::SafeDownCast(cells);
  if (!composite)
  {
    return -1;
  }
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    const int type = FirstCellType(iterator->GetCurrentDataObject());
    if (type >= 0)
    {
      return type;
    }
  }
  return -1;
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylGetCellTypes(vtkSMSourceProxy* source)
{
  std::vector<int> types;
  std::vector<int> firstCells; // process, cell
  for (int process = 0; process < NumberOfProcesses(source); ++process)
  {
    firstCells.insert(firstCells.end(), { process, 0 });
  }
  const auto cells = FetchCells(source, "IDSelectionSource", firstCells);
  auto* blocks = vtkMultiBlockDataSet::SafeDownCast(cells);
  if (!blocks)
  {
    return types;
  }
  auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(blocks->NewIterator());
  for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
  {
    const unsigned int index = iterator->GetCurrentFlatIndex();
    types.resize(std::max<std::size_t>(types.size(), index + 1), -1);
    types[index] = FirstCellType(iterator->GetCurrentDataObject());
  }
  return types;
}
