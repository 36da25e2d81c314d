/**
 * @class zylFeatureLinePipeline
 * @brief Draws feature edges of a group of blocks as lines.
 *
 * The settings are those of zylLinePipeline.
 */
#ifndef zylFeatureLinePipeline_h
#define zylFeatureLinePipeline_h

#include "zylLinePipeline.h"

class ZYL_EXPORT zylFeatureLinePipeline : public zylLinePipeline
{
public:
  static zylFeatureLinePipeline* New();
  vtkTypeMacro(zylFeatureLinePipeline, zylLinePipeline);

protected:
  zylFeatureLinePipeline() = default;
  ~zylFeatureLinePipeline() override = default;

  const char* GetRepresentationType() override;

private:
  zylFeatureLinePipeline(const zylFeatureLinePipeline&) = delete;
  void operator=(const zylFeatureLinePipeline&) = delete;
};

#endif
