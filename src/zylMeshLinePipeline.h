/**
 * @class zylMeshLinePipeline
 * @brief Draws the mesh's edges of a group of blocks as lines.
 *
 * The settings are those of zylLinePipeline.
 */
#ifndef zylMeshLinePipeline_h
#define zylMeshLinePipeline_h

#include "zylLinePipeline.h"

class ZYL_EXPORT zylMeshLinePipeline : public zylLinePipeline
{
public:
  static zylMeshLinePipeline* New();
  vtkTypeMacro(zylMeshLinePipeline, zylLinePipeline);

protected:
  zylMeshLinePipeline() = default;
  ~zylMeshLinePipeline() override = default;

private:
  zylMeshLinePipeline(const zylMeshLinePipeline&) = delete;
  void operator=(const zylMeshLinePipeline&) = delete;
};

#endif
