/// @file zylBlockMapper.h
/// Draws the surfaces of many blocks in their order, at a cost that grows with their number.
/// Private to the library.
///
/// The toolkit's mapper of composite data puts its blocks into the vertex buffers one after
/// another, and for each of them looks through all blocks for a reason not to color by texture.
/// This mapper looks once for all. The toolkit's order is that of addresses in memory, so that the
/// same data give other pictures where surfaces meet; this one's is that of the flat indices.
///
/// The toolkit asks no factory for its mapper: this one takes the place of one that was made.
#ifndef zylBlockMapper_h
#define zylBlockMapper_h

#include "ParaView/zylParaViewCompat.mapper.h"
#include "zylExport.h"

#include <vector>

class vtkGeometryRepresentation;
class vtkSMProxy;

class ZYL_PRIVATE zylBlockMapper : public zylParaView::BlockMapper
{
public:
  static zylBlockMapper* New();
  vtkTypeMacro(zylBlockMapper, BlockMapper);

  /// The parts of a "GeometryRepresentation" proxy (borrowed) that this process draws, one for each
  /// kind of display, as surface or feature edges; none of other proxies.
  static std::vector<vtkGeometryRepresentation*> FindDrawn(vtkSMProxy* representation);

  /// Let a new "GeometryRepresentation" proxy, which has drawn nothing yet, draw with such mappers
  /// what this process draws of it. Other proxies stay as they are.
  static void Use(vtkSMProxy* representation);

  /// How often the mappers of this process have looked through their blocks while filling buffers.
  static int GetNumberOfSearches();

protected:
  zylBlockMapper() = default;
  ~zylBlockMapper() override = default;

  zylParaView::BatchMapper* CreateBatch() override;

private:
  zylBlockMapper(const zylBlockMapper&) = delete;
  void operator=(const zylBlockMapper&) = delete;

  void TakeOver(zylToolkitBlockMapper* other);
  static void Replace(vtkMapper*& mapper);
  friend class zylMapperAccess;
};

#endif
