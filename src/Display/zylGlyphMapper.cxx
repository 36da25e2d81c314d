#include "Display/zylGlyphMapper.h"

#include <algorithm>
#include <utility>

#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

vtkStandardNewMacro(zylGlyphMapper);

//--------------------------------------------------------------------------------------------------
void zylGlyphMapper::Render(vtkRenderer* renderer, vtkActor* actor)
{
  if (!this->KeepsBlocks())
  {
    this->ReleaseGraphicsResources(renderer->GetVTKWindow());
    // There is no way to empty the list; another's takes its place and goes with that one.
    const vtkNew<zylGlyphMapper> other;
    std::swap(this->GlyphValues, other->GlyphValues);
  }
  this->Superclass::Render(renderer, actor);
}

//--------------------------------------------------------------------------------------------------
bool zylGlyphMapper::KeepsBlocks()
{
  vtkDataObject* data = this->GetInputDataObject(0, 0);
  const vtkMTimeType time = data ? data->GetMTime() : 0;
  if (time == this->BlocksTime)
  {
    return true; // no two objects have the same
  }
  this->BlocksTime = time;
  std::vector<const vtkDataObject*> blocks;
  if (auto* composite = vtkCompositeDataSet::SafeDownCast(data))
  {
    vtkSmartPointer<vtkCompositeDataIterator> leaves;
    leaves.TakeReference(composite->NewIterator());
    for (leaves->InitTraversal(); !leaves->IsDoneWithTraversal(); leaves->GoToNextItem())
    {
      blocks.push_back(leaves->GetCurrentDataObject());
    }
  }
  else
  {
    blocks.push_back(data);
  }
  std::sort(blocks.begin(), blocks.end());
  const bool kept =
    std::includes(blocks.begin(), blocks.end(), this->Blocks.begin(), this->Blocks.end());
  this->Blocks = std::move(blocks);
  return kept;
}

//--------------------------------------------------------------------------------------------------
zylGlyphMapperScope::zylGlyphMapperScope()
  : Override("vtkGlyph3DMapper", []() -> vtkObject* { return zylGlyphMapper::New(); })
{
}
