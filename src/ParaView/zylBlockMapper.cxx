#include "ParaView/zylBlockMapper.h"

#include "ParaView/zylParaViewCompat.mapper.h"

#include <algorithm>
#include <vector>

#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkGeometryRepresentation.h>
#include <vtkObjectFactory.h>
#include <vtkPVLODActor.h>
#include <vtkSMProxy.h>
#include <vtkSelection.h>

namespace {
int Searches = 0;

// Fills and draws the buffers of blocks that have the same attributes.
class Helper : public vtkCompositeMapperHelper2
{
public:
  static Helper* New();
  vtkTypeMacro(Helper, vtkCompositeMapperHelper2);

protected:
  Helper() = default;
  ~Helper() override = default;

  // The toolkit goes through its blocks in the order of their addresses, which decides what is seen
  // of surfaces at the same depth. While it fills buffers and draws, the first address stands for
  // the first block, and so on; it takes note of new and former blocks at other times.
  void RenderPiece(vtkRenderer* renderer, vtkActor* actor) override
  {
    std::vector<vtkCompositeMapperHelperData*> blocks;
    blocks.reserve(this->Data.size());
    for (const auto& item : this->Data)
    {
      blocks.push_back(item.second);
    }
    const std::vector<vtkCompositeMapperHelperData*> byAddress = blocks;
    std::sort(blocks.begin(), blocks.end(),
      [](const auto* a, const auto* b) { return a->FlatIndex < b->FlatIndex; });
    this->Assign(blocks);
    this->Superclass::RenderPiece(renderer, actor);
    this->Assign(byAddress);
  }

  void BuildBufferObjects(vtkRenderer* renderer, vtkActor* actor) override
  {
    this->Phase = Building;
    this->Superclass::BuildBufferObjects(renderer, actor);
    this->Phase = Idle;
  }

  // Whichever block it is asked for, the answer is about all of them, and none of them changes
  // while the buffers are filled.
  int CanUseTextureMapForColoring(vtkDataObject* data) override
  {
    if (this->Phase != Answered)
    {
      this->Answer = this->Superclass::CanUseTextureMapForColoring(data);
      if (this->Phase == Building)
      {
        this->Phase = Answered;
        ++Searches;
      }
    }
    return this->Answer;
  }

private:
  Helper(const Helper&) = delete;
  void operator=(const Helper&) = delete;

  void Assign(const std::vector<vtkCompositeMapperHelperData*>& blocks)
  {
    auto next = blocks.begin();
    for (auto& item : this->Data)
    {
      item.second = *next++;
    }
  }

  enum
  {
    Idle,
    Building,
    Answered
  } Phase = Idle;
  int Answer = 0;
};

vtkStandardNewMacro(Helper);

// Reaches what a proxy is made of.
class PartAccess : public vtkSMProxy
{
public:
  static std::vector<vtkSMProxy*> GetParts(vtkSMProxy* proxy)
  {
    constexpr vtkSMProxy* (vtkSMProxy::*getPart)(unsigned int) = &PartAccess::GetSubProxy;
    const unsigned int count = proxy ? (proxy->*&PartAccess::GetNumberOfSubProxies)() : 0;
    std::vector<vtkSMProxy*> parts;
    for (unsigned int i = 0; i < count; ++i)
    {
      parts.push_back((proxy->*getPart)(i));
    }
    return parts;
  }
};
} // namespace

vtkStandardNewMacro(zylBlockMapper);

// The representation lets subclasses put mappers of their own in place of its own. This reaches
// them from outside, so that it works for whatever class the proxy has made.
class zylMapperAccess : public vtkGeometryRepresentation
{
public:
  static void Replace(vtkGeometryRepresentation* representation)
  {
    vtkMapper*& mapper = representation->*&zylMapperAccess::Mapper;
    vtkMapper*& lodMapper = representation->*&zylMapperAccess::LODMapper;
    zylBlockMapper::Replace(mapper);
    zylBlockMapper::Replace(lodMapper);
    vtkPVLODActor* actor = representation->*&zylMapperAccess::Actor;
    actor->SetMapper(mapper);
    actor->SetLODMapper(lodMapper);
  }
};

//--------------------------------------------------------------------------------------------------
std::vector<vtkGeometryRepresentation*> zylBlockMapper::FindDrawn(vtkSMProxy* representation)
{
  std::vector<vtkGeometryRepresentation*> drawn;
  for (vtkSMProxy* part : PartAccess::GetParts(representation))
  {
    auto* geometry = vtkGeometryRepresentation::SafeDownCast(part->GetClientSideObject());
    if (geometry)
    {
      drawn.push_back(geometry);
    }
  }
  return drawn;
}

//--------------------------------------------------------------------------------------------------
void zylBlockMapper::Use(vtkSMProxy* representation)
{
  for (vtkGeometryRepresentation* part : zylBlockMapper::FindDrawn(representation))
  {
    zylMapperAccess::Replace(part);
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockMapper::Replace(vtkMapper*& mapper)
{
  auto* old = vtkCompositePolyDataMapper2::SafeDownCast(mapper);
  if (old && !old->IsA("zylBlockMapper"))
  {
    zylBlockMapper* own = zylBlockMapper::New();
    own->TakeOver(old);
    mapper = own;
    old->Delete();
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockMapper::TakeOver(vtkCompositePolyDataMapper2* other)
{
  this->vtkMapper::ShallowCopy(other); // those of the classes between warn, or copy the input
  this->SetPointIdArrayName(other->GetPointIdArrayName());
  this->SetCellIdArrayName(other->GetCellIdArrayName());
  this->SetCompositeIdArrayName(other->GetCompositeIdArrayName());
  this->SetProcessIdArrayName(other->GetProcessIdArrayName());
  this->SetStatic(other->GetStatic());
  this->SetSelection(other->GetSelection());
  this->SetCompositeDataDisplayAttributes(other->GetCompositeDataDisplayAttributes());
  this->SetColorMissingArraysWithNanColor(other->GetColorMissingArraysWithNanColor());
}

//--------------------------------------------------------------------------------------------------
int zylBlockMapper::GetNumberOfSearches()
{
  return Searches;
}

//--------------------------------------------------------------------------------------------------
vtkCompositeMapperHelper2* zylBlockMapper::CreateHelper()
{
  return Helper::New();
}
