/**
 * @class zylContourPipeline
 * @brief Draws contour lines of a variable on the surfaces of a group of blocks.
 *
 * The contours are made by a filter that keeps the block structure, so blocks are shown and hidden
 * by the same flat indices. Adds these settings to those of zylPipeline:
 *
 * | name                               | type, default                                            |
 * |------------------------------------|----------------------------------------------------------|
 * | "ColorMapStyle", "NumberOfColors"  | int, 1 and 5, as in zylSurfacePipeline                   |
 * | "Transparency"                     | double, 0 (opaque) to 1                                  |
 * | "NumberOfContours"                 | int, 5                                                   |
 * | "ContourVariableName"              | string, "": a point array                                |
 * | "ContourRange"                     | 2 doubles, 0 and 1                                       |
 * | "RenderLinesAsTubes", "TubeRadius" | bool, false; double, 1 (pixels)                          |
 *
 * The contour values are evenly spaced over the range, both ends included. One contour lies in the
 * middle of the range; with less than one nothing is drawn.
 */
#ifndef zylContourPipeline_h
#define zylContourPipeline_h

#include "zylPipeline.h"

#include <string>
#include <vector>

class ZYL_EXPORT zylContourPipeline : public zylPipeline
{
public:
  static zylContourPipeline* New();
  vtkTypeMacro(zylContourPipeline, zylPipeline);

  void FreeResources(zylView* view) override;

protected:
  zylContourPipeline();
  ~zylContourPipeline() override = default;

  void InitializeProperties() override;
  vtkSMSourceProxy* PrepareSource() override;
  const char* GetRepresentationType() override;
  void PushSettings() override;

private:
  zylContourPipeline(const zylContourPipeline&) = delete;
  void operator=(const zylContourPipeline&) = delete;

  void UpdateContours();

  // What the filter was last executed for.
  std::vector<double> ShownValues;
  std::string ShownVariable;
  double ShownTime = 0.0;
  bool Executed = false;
};

#endif
