// clang-format off
/**
 * @class zylVectorGlyphPipeline
 * @brief Draws arrows along a three-component vector variable at the points of a group of blocks.
 *
 * Adds these settings to those of zylPipeline:
 *
 * | name                  | type   | default | meaning                                              |
 * |-----------------------|--------|---------|------------------------------------------------------|
 * | "VectorVariable"      | string | ""      | a point array of three components                    |
 * | "GlyphSizeMode"       | int    | 0       | 0: all of one size; else by "ScaleVariable"          |
 * | "ScaleFactor"         | double | 1       | length of an arrow (times the scale variable)        |
 * | "ScaleVariable"       | string | ""      | a point array whose magnitude scales the arrows      |
 * | "ArrowShaftResolution"| int    | 8       | number of facets                                     |
 * | "ArrowTipResolution"  | int    | 8       | number of facets                                     |
 *
 * A vector variable that does not exist, belongs to the cells or has another number of components is
 * logged as a warning and leaves what is shown as it was (but see SetKeepsLastVariable()); nothing is
 * shown before there is a good one.
 */
// clang-format on
#ifndef zylVectorGlyphPipeline_h
#define zylVectorGlyphPipeline_h

#include "zylPipeline.h"

class ZYL_EXPORT zylVectorGlyphPipeline : public zylPipeline
{
public:
  static zylVectorGlyphPipeline* New();
  vtkTypeMacro(zylVectorGlyphPipeline, zylPipeline);

protected:
  zylVectorGlyphPipeline();
  ~zylVectorGlyphPipeline() override = default;

  void InitializeProperties() override;
  vtkSMSourceProxy* PrepareSource() override;
  const char* GetRepresentationType() override;
  void UpdateColors() override;
  void PushSettings() override;

private:
  zylVectorGlyphPipeline(const zylVectorGlyphPipeline&) = delete;
  void operator=(const zylVectorGlyphPipeline&) = delete;

  bool CheckVectorVariable();
  void UpdateArrow();

  bool HasVector = false; ///< there is something to show, and a vector to show it along
};

#endif
