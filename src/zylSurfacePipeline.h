/**
 * @class zylSurfacePipeline
 * @brief Draws a group of blocks as a surface, as points or as point Gaussians.
 *
 * Adds these settings to those of zylPipeline:
 *
 * | name                                     | type, default                                      |
 * |------------------------------------------|----------------------------------------------------|
 * | "ColorMapStyle"                          | int, 1: smooth; 0: bands                           |
 * | "NumberOfColors"                         | int, 5: number of bands                            |
 * | "Transparency"                           | double, 0 (opaque) to 1                            |
 * | "DisplayStyle"                           | int, 0: surface; 1: points; 2: point Gaussians     |
 * | "RenderPointsAsSpheres", "PointRadius"   | bool, false; double, 1 (pixels)                    |
 * | "RenderLinesAsTubes", "TubeRadius"       | bool, false; double, 1 (pixels)                    |
 * | "PointGaussianRadius", "PointGaussianType" | double, 1 (world units); int, 1 (shader preset)  |
 */
#ifndef zylSurfacePipeline_h
#define zylSurfacePipeline_h

#include "zylPipeline.h"

class ZYL_EXPORT zylSurfacePipeline : public zylPipeline
{
public:
  static zylSurfacePipeline* New();
  vtkTypeMacro(zylSurfacePipeline, zylPipeline);

protected:
  zylSurfacePipeline();
  ~zylSurfacePipeline() override = default;

  void InitializeProperties() override;
  vtkSMSourceProxy* PrepareSource() override;
  const char* GetRepresentationType() override;
  void PushSettings() override;

private:
  zylSurfacePipeline(const zylSurfacePipeline&) = delete;
  void operator=(const zylSurfacePipeline&) = delete;
};

#endif
