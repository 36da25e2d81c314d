/// @file zylParaViewCompat.mapper.h
/// The toolkit's mapper of composite data, and the mappers by which it draws its blocks in batches:
/// other classes in each version, made in other ways. Private to the library.
#ifndef zylParaViewCompat_mapper_h
#define zylParaViewCompat_mapper_h

#include "ParaView/zylParaViewCompat.version.h"
#include "zylExport.h"

#include <vtk_glew.h> // the older ones name OpenGL's types without it

#if ZYL_PARAVIEW_513

#include <vtkCompositePolyDataMapper.h>
#include <vtkOpenGLBatchedPolyDataMapper.h>

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

/// Draws blocks that have the same attributes, in the order of their flat indices.
class ZYL_PRIVATE BatchMapper : public zylToolkitBatchMapper
{
public:
  vtkTypeMacro(BatchMapper, zylToolkitBatchMapper);

protected:
  BatchMapper() = default;
  ~BatchMapper() override = default;

  void RenderPiece(vtkRenderer* renderer, vtkActor* actor) override;

private:
  BatchMapper(const BatchMapper&) = delete;
  void operator=(const BatchMapper&) = delete;
};

/// The toolkit's mapper of composite data, drawing with what CreateBatch() makes.
class ZYL_PRIVATE BlockMapper : public zylToolkitBlockMapper
{
public:
  vtkTypeMacro(BlockMapper, zylToolkitBlockMapper);

protected:
  BlockMapper() = default;
  ~BlockMapper() override = default;

  /// A new one, owned by the caller.
  virtual BatchMapper* CreateBatch() = 0;

#if ZYL_PARAVIEW_513
  vtkCompositePolyDataMapperDelegator* CreateADelegator() override;
#else
  vtkCompositeMapperHelper2* CreateHelper() override;
#endif

private:
  BlockMapper(const BlockMapper&) = delete;
  void operator=(const BlockMapper&) = delete;
};

} // namespace zylParaView

#endif
