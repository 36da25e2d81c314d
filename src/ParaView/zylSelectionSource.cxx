#include "ParaView/zylSelectionSource.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <vtkCollection.h>
#include <vtkNew.h>
#include <vtkPVSelectionInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRepresentationProxy.h>
#include <vtkSMSelectionHelper.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>

namespace {
constexpr const char* BlockSources[] = { "BlockSelectionSource" };
constexpr const char* IndexSources[] = { "IDSelectionSource", "CompositeDataIDSelectionSource",
  "HierarchicalDataIDSelectionSource" };

bool Is(vtkSMProxy* selection, const char* name)
{
  return zylIsAlive(selection) && std::string(name) == selection->GetXMLName();
}

// ParaView's own helper asks for the information of all blocks first, and its versions know
// different conversions.
template <std::size_t N>
vtkSmartPointer<vtkSMSourceProxy> Convert(
  vtkSMProxy* selection, vtkSMProxy* representation, const char* const (&converted)[N], int content)
{
  unsigned int port = 0;
  vtkSMSourceProxy* data = zylSelectionSource::GetInput(representation, &port);
  auto* source = vtkSMSourceProxy::SafeDownCast(selection);
  if (!zylIsAlive(source) || !zylIsAlive(data))
  {
    return nullptr;
  }
  if (std::find(std::begin(converted), std::end(converted), std::string(source->GetXMLName())) !=
    std::end(converted))
  {
    return source;
  }
  source->UpdatePipeline();
  data->UpdatePipeline();
  const auto converter =
    zylProxyBuilder(data->GetSessionProxyManager(), "filters", "ConvertSelection")
      .Input(source)
      .Set("OutputType", content)
      .Set("AllowMissingArray", 1)
      .Then([data, port](
              vtkSMProxy* proxy) { vtkSMPropertyHelper(proxy, "DataInput").Set(data, port); })
      .MakeUnregistered();
  if (!converter)
  {
    return nullptr;
  }
  converter->UpdatePipeline();
  vtkNew<vtkPVSelectionInformation> information;
  converter->GatherInformation(information);
  const auto result =
    vtkSmartPointer<vtkSMProxy>::Take(vtkSMSelectionHelper::NewSelectionSourceFromSelection(
      source->GetSession(), information->GetSelection()));
  return vtkSMSourceProxy::SafeDownCast(result);
}

void SetSelection(vtkObject* representation, vtkSMSourceProxy* selection)
{
  vtkSMSourceProxy* data = zylSelectionSource::GetInput(vtkSMProxy::SafeDownCast(representation));
  if (zylIsAlive(data) && (!selection || zylIsAlive(selection)))
  {
    data->SetSelectionInput(0, selection, 0);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylSelectionSource::GetInput(vtkSMProxy* representation, unsigned int* port)
{
  if (!zylIsAlive(representation) || !representation->GetProperty("Input"))
  {
    return nullptr;
  }
  vtkSMPropertyHelper input(representation, "Input");
  if (input.GetNumberOfElements() == 0)
  {
    return nullptr;
  }
  if (port)
  {
    *port = input.GetOutputPort();
  }
  return vtkSMSourceProxy::SafeDownCast(input.GetAsProxy());
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylSelectionSource::MakeForBlocks(
  vtkSMSessionProxyManager* manager, const std::vector<int>& blocks)
{
  return zylProxyBuilder(manager, "sources", "BlockSelectionSource")
    .Then([&blocks](vtkSMProxy* proxy) {
      const auto count = static_cast<unsigned int>(blocks.size());
      vtkSMPropertyHelper property(proxy, "Blocks");
      property.SetNumberOfElements(count);
      property.Set(blocks.data(), count);
    })
    .MakeUnregistered();
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylSelectionSource::ConvertToBlocks(
  vtkSMProxy* selection, vtkSMProxy* representation)
{
  // Ids in data without blocks: ParaView cannot convert them, and says so loudly.
  return Is(selection, "IDSelectionSource")
    ? MakeForBlocks(selection->GetSessionProxyManager(), {})
    : Convert(selection, representation, BlockSources, vtkSelectionNode::BLOCKS);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylSelectionSource::ConvertToIndices(
  vtkSMProxy* selection, vtkSMProxy* representation)
{
  // Of blocks some ParaViews make none, and some all cells.
  return Is(selection, "BlockSelectionSource")
    ? nullptr
    : Convert(selection, representation, IndexSources, vtkSelectionNode::INDICES);
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylSelectionSource::Read(vtkSMProxy* selection, const char* property)
{
  if (!selection || !selection->GetProperty(property))
  {
    return {};
  }
  return vtkSMPropertyHelper(selection, property).GetIntArray();
}

//--------------------------------------------------------------------------------------------------
void zylSelectionSource::Show(
  vtkCollection* representations, vtkCollection* selections, vtkCollection* among)
{
  for (int i = 0; representations && selections && i < selections->GetNumberOfItems(); ++i)
  {
    vtkObject* representation = representations->GetItemAsObject(i);
    if (among && among->IsItemPresent(representation))
    {
      SetSelection(representation, vtkSMSourceProxy::SafeDownCast(selections->GetItemAsObject(i)));
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylSelectionSource::HideAll(vtkSMProxy* view)
{
  vtkSMPropertyHelper representations(view, "Representations");
  for (unsigned int i = 0; i < representations.GetNumberOfElements(); ++i)
  {
    SetSelection(vtkSMRepresentationProxy::SafeDownCast(representations.GetAsProxy(i)), nullptr);
  }
}
