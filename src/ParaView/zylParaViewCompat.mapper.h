/// @file zylParaViewCompat.mapper.h
/// The toolkit's mapper of composite data and the mappers that draw its blocks, a batch of them
/// each: other classes in each version, made in other ways. Private to the library.
#ifndef zylParaViewCompat_mapper_h
#define zylParaViewCompat_mapper_h

#include "zylExport.h"

#include <vtk_glew.h> // the older ones name OpenGL's types without it

#if __has_include(<vtkOpenGLBatchedPolyDataMapper.h>)

#include <vtkCompositePolyDataMapper.h>
#include <vtkOpenGLBatchedPolyDataMapper.h>
#include <vtkOpenGLCompositePolyDataMapperDelegator.h>

using zylToolkitBlockMapper = vtkCompositePolyDataMapper;
using zylToolkitBatchMapper = vtkOpenGLBatchedPolyDataMapper;

#else

#include <vtkCompositePolyDataMapper2.h>
#if __has_include(<vtkCompositeMapperHelper2.h>)
#include <vtkCompositeMapperHelper2.h>
#else
#include <vtkCompositePolyDataMapper2Internal.h> // IWYU pragma: keep
#endif

using zylToolkitBlockMapper = vtkCompositePolyDataMapper2;
using zylToolkitBatchMapper = vtkCompositeMapperHelper2;

#endif

namespace zylParaView {

/// The toolkit's mapper of composite data, drawing each batch of blocks with what CreateBatch()
/// makes (owned by the caller).
class ZYL_PRIVATE BlockMapper : public zylToolkitBlockMapper
{
public:
  vtkAbstractTypeMacro(BlockMapper, zylToolkitBlockMapper);

protected:
  virtual zylToolkitBatchMapper* CreateBatch() = 0;

#if __has_include(<vtkOpenGLBatchedPolyDataMapper.h>)
  vtkCompositePolyDataMapperDelegator* CreateADelegator() override
  {
    return new Delegator(this->CreateBatch());
  }

private:
  class Delegator : public vtkOpenGLCompositePolyDataMapperDelegator
  {
  public:
    explicit Delegator(zylToolkitBatchMapper* batch)
    {
      this->GLDelegate = batch;
      this->Delegate.TakeReference(batch);
      this->InitializeObjectBase();
    }
  };
#else
  vtkCompositeMapperHelper2* CreateHelper() override { return this->CreateBatch(); }
#endif
};

} // namespace zylParaView

#endif
