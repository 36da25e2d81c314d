/**
 * @class zylHighlightPipeline
 * @brief Draws highlighted blocks over the normal display, always in a solid color.
 *
 * A pass-through filter of its own keeps it independent of other displays of the same source. Its
 * settings replace those of zylPipeline:
 *
 * | name                                   | type, default                                        |
 * |----------------------------------------|------------------------------------------------------|
 * | "Visibility", "ForceHidden"            | bool, false; not in the hash                         |
 * | "Color"                                | 3 doubles (RGB), orange                              |
 * | "BlockVisibility"                      | ints, none; pairs of flat index, flag; not in hash   |
 * | "Style"                                | int, 3: 0 feature edges, 1 surface, 2 outline,       |
 * |                                        | 3 wireframe, else surface with edges                 |
 * | "Transparency"                         | double, 0 (opaque) to 1                              |
 * | "RenderPointsAsSpheres", "PointRadius" | bool, false; double, 1 (pixels)                      |
 * | "RenderLinesAsTubes", "TubeRadius"     | bool, false; double, 1 (pixels)                      |
 */
#ifndef zylHighlightPipeline_h
#define zylHighlightPipeline_h

#include "zylPipeline.h"

class ZYL_EXPORT zylHighlightPipeline : public zylPipeline
{
public:
  static zylHighlightPipeline* New();
  vtkTypeMacro(zylHighlightPipeline, zylPipeline);

protected:
  zylHighlightPipeline();
  ~zylHighlightPipeline() override = default;

  void InitializeProperties() override;
  vtkSMSourceProxy* PrepareSource() override;
  const char* GetRepresentationType() override;
  void UpdateColors() override;
  void PushSettings() override;

private:
  zylHighlightPipeline(const zylHighlightPipeline&) = delete;
  void operator=(const zylHighlightPipeline&) = delete;
};

#endif
