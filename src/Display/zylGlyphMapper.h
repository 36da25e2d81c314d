/**
 * @class zylGlyphMapper
 * @brief Draws glyphs of data that change.
 *
 * The toolkit's mapper keeps what it has made of every block that it has ever drawn, OpenGL objects
 * included, so that glyphs over time fill the memory. This one drops all of it when a block of the
 * last picture is no more part of the data. Private to the library.
 */
#ifndef zylGlyphMapper_h
#define zylGlyphMapper_h

#include "Host/zylToolkitOverride.h"
#include "zylExport.h"

#include <vector>

#include <vtkOpenGLGlyph3DMapper.h>

class vtkDataObject;

class ZYL_PRIVATE zylGlyphMapper : public vtkOpenGLGlyph3DMapper
{
public:
  static zylGlyphMapper* New();
  vtkTypeMacro(zylGlyphMapper, vtkOpenGLGlyph3DMapper);

  void Render(vtkRenderer* renderer, vtkActor* actor) override;

protected:
  zylGlyphMapper() = default;
  ~zylGlyphMapper() override = default;

private:
  zylGlyphMapper(const zylGlyphMapper&) = delete;
  void operator=(const zylGlyphMapper&) = delete;

  /// Take note of the blocks of the data. Whether all of the last time are still there.
  bool KeepsBlocks();

  std::vector<const vtkDataObject*> Blocks; // sorted addresses, not looked into
  vtkMTimeType BlocksTime = 0;
};

/// While it lives, a new vtkGlyph3DMapper is a zylGlyphMapper.
class ZYL_PRIVATE zylGlyphMapperScope
{
public:
  zylGlyphMapperScope();

private:
  zylToolkitOverride Override;
};

#endif
