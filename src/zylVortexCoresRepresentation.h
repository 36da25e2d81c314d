// clang-format off
/**
 * @class zylVortexCoresRepresentation
 * @brief The lines about which a flow swirls.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation:
 *
 * | name                   | type   | default | meaning                                               |
 * |------------------------|--------|---------|-------------------------------------------------------|
 * | "VectorVariable"       | string | ""      | a point array or derived variable of 3 components     |
 * | "UseHigherOrderMethod" | bool   | false   | find cores that bend, which takes second derivatives  |
 *
 * A vector variable that is not fit is written to the standard error stream by Update(). Blocks
 * without the variable have no cores. The surface has some points that are on no line, which count
 * for GetBounds(); "MergePoints" leaves them out.
 */
// clang-format on
#ifndef zylVortexCoresRepresentation_h
#define zylVortexCoresRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylVortexCoresRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylVortexCoresRepresentation* New();
  vtkTypeMacro(zylVortexCoresRepresentation, zylDerivedSurfaceRepresentation);

  void UpdateLocalPipeline() override;

protected:
  zylVortexCoresRepresentation();
  ~zylVortexCoresRepresentation() override = default;

  void CreateSurfacePipeline() override;
  void GetVolumeDerivedPointVariables(std::set<std::string>& names) override;
  std::string GetVolumeDerivedVariableScript() override;

private:
  zylVortexCoresRepresentation(const zylVortexCoresRepresentation&) = delete;
  void operator=(const zylVortexCoresRepresentation&) = delete;

  double VolumeTime = 0.0; // at which the derived variables were executed
};

#endif
