#include "ParaView/zylBlockMapper.h"

#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkGeometryRepresentation.h>
#include <vtkObjectFactory.h>
#include <vtkPVLODActor.h>
#include <vtkSMProxy.h>
#include <vtkSelection.h>

namespace {
int Searches = 0;

// Fills and draws the buffers of blocks that have the same attributes.
class Batch : public zylParaView::BatchMapper
{
public:
  static Batch* New();
  vtkTypeMacro(Batch, BatchMapper);

protected:
  Batch() = default;
  ~Batch() override = default;

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
  Batch(const Batch&) = delete;
  void operator=(const Batch&) = delete;

  enum
  {
    Idle,
    Building,
    Answered
  } Phase = Idle;
  int Answer = 0;
};

vtkStandardNewMacro(Batch);

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
  auto* old = zylToolkitBlockMapper::SafeDownCast(mapper);
  if (old && !old->IsA("zylBlockMapper"))
  {
    zylBlockMapper* own = zylBlockMapper::New();
    own->TakeOver(old);
    mapper = own;
    old->Delete();
  }
}

//--------------------------------------------------------------------------------------------------
void zylBlockMapper::TakeOver(zylToolkitBlockMapper* other)
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
zylParaView::BatchMapper* zylBlockMapper::CreateBatch()
{
  return Batch::New();
}
