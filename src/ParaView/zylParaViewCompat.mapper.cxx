#include "ParaView/zylParaViewCompat.mapper.h"

#if ZYL_PARAVIEW_513
#include <vtkOpenGLCompositePolyDataMapperDelegator.h>
#else
#include <algorithm>
#include <vector>
#endif

namespace zylParaView {

#if ZYL_PARAVIEW_513

namespace {
// Hands the calls of the mapper on to a batch.
class Delegator : public vtkOpenGLCompositePolyDataMapperDelegator
{
public:
  explicit Delegator(BatchMapper* batch)
  {
    this->InitializeObjectBase();
    this->GLDelegate = batch;
    this->Delegate.TakeReference(batch);
  }
};
} // namespace

//--------------------------------------------------------------------------------------------------
vtkCompositePolyDataMapperDelegator* BlockMapper::CreateADelegator()
{
  return new Delegator(this->CreateBatch());
}

//--------------------------------------------------------------------------------------------------
void BatchMapper::RenderPiece(vtkRenderer* renderer, vtkActor* actor)
{
  this->Superclass::RenderPiece(renderer, actor); // in this very order
}

#else

//--------------------------------------------------------------------------------------------------
vtkCompositeMapperHelper2* BlockMapper::CreateHelper()
{
  return this->CreateBatch();
}

//--------------------------------------------------------------------------------------------------
// The toolkit goes through its blocks in the order of their addresses, which decides what is seen
// of surfaces at the same depth. While it fills buffers and draws, the first address stands for the
// first block, and so on; it takes note of new and former blocks at other times.
void BatchMapper::RenderPiece(vtkRenderer* renderer, vtkActor* actor)
{
  std::vector<vtkCompositeMapperHelperData*> blocks;
  blocks.reserve(this->Data.size());
  for (const auto& item : this->Data)
  {
    blocks.push_back(item.second);
  }
  const auto assign = [this](const std::vector<vtkCompositeMapperHelperData*>& values) {
    auto next = values.begin();
    for (auto& item : this->Data)
    {
      item.second = *next++;
    }
  };
  const std::vector<vtkCompositeMapperHelperData*> byAddress = blocks;
  std::sort(blocks.begin(), blocks.end(),
    [](const auto* a, const auto* b) { return a->FlatIndex < b->FlatIndex; });
  assign(blocks);
  this->Superclass::RenderPiece(renderer, actor);
  assign(byAddress);
}

#endif

} // namespace zylParaView
