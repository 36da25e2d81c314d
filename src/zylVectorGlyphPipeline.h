/**
 * @class zylVectorGlyphPipeline
 * @brief Draws arrows along a three-component vector variable at the points of a group of blocks.
 *
 * Adds these settings to those of zylPipeline:
 *
 * | name                                        | type, default                                   |
 * |---------------------------------------------|-------------------------------------------------|
 * | "VectorVariable"                            | string, "": a point array of three components   |
 * | "GlyphSizeMode"                             | int, 0: all of one size; else by "ScaleVariable"
 * | | "ScaleFactor"                               | double, 1: length (times the scale variable) |
 * | "ScaleVariable"                             | string, "": its magnitude scales the arrows     |
 * | "ArrowShaftResolution", "ArrowTipResolution" | int, 8: number of facets |
 *
 * A vector variable that does not exist or has another number of components is logged as a warning
 * and leaves what is shown as it was; nothing is shown before there is a good one.
 */
#ifndef zylVectorGlyphPipeline_h
#define zylVectorGlyphPipeline_h

#include "zylPipeline.h"

#include <string>

class ZYL_EXPORT zylVectorGlyphPipeline : public zylPipeline
{
public:
  static zylVectorGlyphPipeline* New();
  vtkTypeMacro(zylVectorGlyphPipeline, zylPipeline);

  void Update(zylView* view) override;

protected:
  zylVectorGlyphPipeline();
  ~zylVectorGlyphPipeline() override = default;

  void InitializeProperties() override;

private:
  zylVectorGlyphPipeline(const zylVectorGlyphPipeline&) = delete;
  void operator=(const zylVectorGlyphPipeline&) = delete;

  bool CheckVectorVariable(const std::string& name);
  void UpdateGlyphs();
  void UpdateArrow();

  std::string GoodVariable; ///< known to have three components
};

#endif
