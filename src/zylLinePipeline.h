/**
 * @class zylLinePipeline
 * @brief Draws a group of blocks as lines: base of the feature-line and mesh-line pipelines.
 *
 * Adds "RenderAsTubes" (bool, false) and "TubeRadius" (double, 1 pixel) to the settings of
 * zylPipeline. By itself it draws a wireframe.
 */
#ifndef zylLinePipeline_h
#define zylLinePipeline_h

#include "zylPipeline.h"

class ZYL_EXPORT zylLinePipeline : public zylPipeline
{
public:
  static zylLinePipeline* New();
  vtkTypeMacro(zylLinePipeline, zylPipeline);

protected:
  zylLinePipeline();
  ~zylLinePipeline() override = default;

  void InitializeProperties() override;
  const char* GetRepresentationType() override;
  void PushSettings() override;

private:
  zylLinePipeline(const zylLinePipeline&) = delete;
  void operator=(const zylLinePipeline&) = delete;
};

#endif
