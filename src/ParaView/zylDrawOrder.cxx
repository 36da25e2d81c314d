#include "ParaView/zylDrawOrder.h"

#include "ParaView/zylBlockMapper.h"

#include <unordered_set>

#include <vtkGeometryRepresentation.h>
#include <vtkGlyph3DRepresentation.h>
#include <vtkPVLODActor.h>
#include <vtkPVRenderView.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>
#include <vtkSMProxy.h>
#include <vtkSmartPointer.h>

namespace {
// Reaches what glyphs are drawn with, which the representation keeps to its subclasses.
class GlyphAccess : public vtkGlyph3DRepresentation
{
public:
  static vtkProp* GetProp(vtkGlyph3DRepresentation* glyphs)
  {
    return glyphs->*&GlyphAccess::GlyphActor;
  }
};

//--------------------------------------------------------------------------------------------------
std::vector<vtkProp*> GetProps(vtkSMProxy* representation)
{
  std::vector<vtkProp*> props;
  for (vtkGeometryRepresentation* part : zylBlockMapper::FindDrawn(representation))
  {
    auto* glyphs = vtkGlyph3DRepresentation::SafeDownCast(part);
    props.push_back(glyphs ? GlyphAccess::GetProp(glyphs) : part->GetActor());
  }
  return props;
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylSetDrawOrder(vtkSMProxy* view, const std::vector<vtkSMProxy*>& representations)
{
  auto* client = vtkPVRenderView::SafeDownCast(view ? view->GetClientSideObject() : nullptr);
  vtkRenderer* renderer = client ? client->GetRenderer() : nullptr;
  if (!renderer)
  {
    return;
  }
  vtkPropCollection* props = renderer->GetViewProps();
  std::vector<vtkSmartPointer<vtkProp>> all;
  std::unordered_set<vtkProp*> known;
  vtkCollectionSimpleIterator at;
  props->InitTraversal(at);
  while (vtkProp* prop = props->GetNextProp(at))
  {
    all.emplace_back(prop);
    known.insert(prop);
  }
  std::vector<vtkProp*> wanted;
  for (vtkSMProxy* representation : representations)
  {
    for (vtkProp* prop : GetProps(representation))
    {
      if (known.count(prop) > 0)
      {
        wanted.push_back(prop);
      }
    }
  }
  const std::unordered_set<vtkProp*> own(wanted.begin(), wanted.end());
  if (own.size() != wanted.size())
  {
    return;
  }
  props->RemoveAllItems(); // not the renderer's way, which releases what the props have drawn with
  auto next = wanted.begin();
  for (const auto& prop : all)
  {
    props->AddItem(own.count(prop) > 0 ? *next++ : prop.Get());
  }
}
