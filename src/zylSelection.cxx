#include "zylSelection.h"

#include "Data/zylCellTypes.h"
#include "Display/zylShownRepresentations.h"
#include "ParaView/zylSelectionSource.h"
#include "ParaView/zylSession.h"
#include "zylCore.h"
#include "zylDataSet.h"
#include "zylMultiBlockTree.h"
#include "zylRepresentation.h"

#include <map>

#include <vtkCollection.h>
#include <vtkDataSet.h>
#include <vtkObjectFactory.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylSelection);

namespace {
vtkSMProxy* GetProxy(vtkCollection* collection, int i)
{
  return vtkSMProxy::SafeDownCast(collection->GetItemAsObject(i));
}

template <class T>
void Append(std::vector<T>& all, const std::vector<T>& part)
{
  all.insert(all.end(), part.begin(), part.end());
}

void CollectPieces(zylMultiBlockTree* node, std::map<int, int>& blocks)
{
  for (unsigned int i = 0; i < node->GetNumberOfChildren(); ++i)
  {
    zylMultiBlockTree* child = node->GetChild(i);
    if (child->GetIsPiece())
    {
      blocks[static_cast<int>(child->GetBlockIndex())] = static_cast<int>(node->GetBlockIndex());
    }
    CollectPieces(child, blocks);
  }
}

// Pieces are drawn and picked one by one, but are no blocks.
std::vector<int> ToBlocks(const std::vector<int>& nodes, zylDataSet* dataSet)
{
  std::map<int, int> pieces;
  if (zylMultiBlockTree* tree = dataSet ? dataSet->GetMultiBlockTree() : nullptr)
  {
    CollectPieces(tree, pieces);
  }
  std::vector<int> blocks;
  for (const int node : nodes)
  {
    const auto piece = pieces.find(node);
    const int block = piece == pieces.end() ? node : piece->second;
    if (piece == pieces.end() || blocks.empty() || blocks.back() != block)
    {
      blocks.push_back(block);
    }
  }
  return blocks;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSelection::zylSelection() = default;

//--------------------------------------------------------------------------------------------------
zylSelection::~zylSelection() = default;

//--------------------------------------------------------------------------------------------------
void zylSelection::SetPVSelectionSources(vtkCollection* sources)
{
  this->PVSelectionSources = sources;
}

//--------------------------------------------------------------------------------------------------
void zylSelection::SetPVSelectedRepresentations(vtkCollection* representations)
{
  this->PVSelectedRepresentations = representations;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylSelection::CreateSelectionForBlocks(
  zylRepresentation* rep, std::vector<int>& blocks)
{
  auto selection = vtkSmartPointer<zylSelection>::New();
  if (!rep)
  {
    return selection;
  }
  const vtkSmartPointer<vtkCollection> representations = rep->GetPVRepresentations();
  const auto sources = vtkSmartPointer<vtkCollection>::New();
  for (int i = 0; i < representations->GetNumberOfItems(); ++i)
  {
    vtkSmartPointer<vtkSMSourceProxy> source;
    if (zylIsUsable(GetProxy(representations, i), "CreateSelectionForBlocks()"))
    {
      source =
        zylSelectionSource::MakeForBlocks(zylCore::GetInstance()->GetSessionProxyManager(), blocks);
    }
    if (!source)
    {
      vtkGenericWarningMacro("Failed to create new selection source");
      return selection;
    }
    sources->AddItem(source);
  }
  selection->SetPVSelectedRepresentations(representations);
  selection->SetPVSelectionSources(sources);
  return selection;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylSelection> zylSelection::CreateSelectionForBlock(
  zylRepresentation* rep, int block)
{
  std::vector<int> blocks{ block };
  return zylSelection::CreateSelectionForBlocks(rep, blocks);
}

//--------------------------------------------------------------------------------------------------
void zylSelection::VisitDisplays(zylRepresentation* rep, const char* operation,
  const std::function<void(vtkSMProxy*, vtkSMProxy*)>& visit)
{
  if (!rep || !this->PVSelectionSources || !this->PVSelectedRepresentations)
  {
    return;
  }
  const zylShownRepresentations* shown = zylShownRepresentations::Of(rep->GetView());
  for (int i = 0; shown && i < this->PVSelectedRepresentations->GetNumberOfItems(); ++i)
  {
    vtkSMProxy* representation = GetProxy(this->PVSelectedRepresentations, i);
    const zylRepresentation* owner = shown->FindOwner(representation);
    if (!owner)
    {
      vtkErrorMacro("No ZYL representation found from selected ParaView representation");
      break;
    }
    if (owner != rep)
    {
      continue;
    }
    if (!zylIsUsable(representation, operation))
    {
      break;
    }
    visit(GetProxy(this->PVSelectionSources, i), representation);
  }
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylSelection::GetBlocks(zylRepresentation* rep)
{
  std::vector<int> nodes;
  this->VisitDisplays(
    rep, "GetBlocks()", [&nodes](vtkSMProxy* selection, vtkSMProxy* representation) {
      Append(nodes,
        zylSelectionSource::Read(
          zylSelectionSource::ConvertToBlocks(selection, representation), "Blocks"));
    });
  return nodes.empty() ? nodes : ToBlocks(nodes, rep->GetDataSet());
}

//--------------------------------------------------------------------------------------------------
std::vector<int> zylSelection::GetCells(zylRepresentation* rep)
{
  std::vector<int> cells;
  this->VisitDisplays(
    rep, "GetCells()", [&cells](vtkSMProxy* selection, vtkSMProxy* representation) {
      Append(cells,
        zylSelectionSource::Read(
          zylSelectionSource::ConvertToIndices(selection, representation), "IDs"));
    });
  return cells;
}

//--------------------------------------------------------------------------------------------------
std::vector<vtkSmartPointer<vtkDataSet>> zylSelection::FetchCells(zylRepresentation* rep)
{
  std::vector<vtkSmartPointer<vtkDataSet>> cells;
  this->VisitDisplays(
    rep, "FetchCells()", [&cells](vtkSMProxy* selection, vtkSMProxy* representation) {
      Append(cells,
        zylFetchCells(zylSelectionSource::GetInput(representation),
          zylSelectionSource::ConvertToIndices(selection, representation)));
    });
  return cells;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylRepresentation*> zylSelection::GetRepresentations(zylView* view)
{
  std::vector<zylRepresentation*> representations;
  const zylShownRepresentations* shown = zylShownRepresentations::Of(view);
  vtkCollection* selected = this->PVSelectedRepresentations;
  for (int i = 0; shown && selected && i < selected->GetNumberOfItems(); ++i)
  {
    if (zylRepresentation* owner = shown->FindOwner(GetProxy(selected, i)))
    {
      representations.push_back(owner);
    }
  }
  return representations;
}
