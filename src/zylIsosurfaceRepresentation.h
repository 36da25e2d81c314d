/**
 * @class zylIsosurfaceRepresentation
 * @brief The surface in a volume on which a variable has a given value.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation:
 *
 * | name       | type, default                                                   |
 * |------------|-----------------------------------------------------------------|
 * | "Variable" | string, "": a scalar point array or derived variable            |
 * | "Isovalue" | double, 0                                                       |
 */
#ifndef zylIsosurfaceRepresentation_h
#define zylIsosurfaceRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylIsosurfaceRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylIsosurfaceRepresentation* New();
  vtkTypeMacro(zylIsosurfaceRepresentation, zylDerivedSurfaceRepresentation);

  /// The dataset's description of "Variable" (borrowed until the dataset's next update), or null.
  zylArrayInformation* GetVariableInformation();

  void UpdateLocalPipeline() override;

protected:
  zylIsosurfaceRepresentation();
  ~zylIsosurfaceRepresentation() override = default;

  void CreateSurfacePipeline() override;
  void GetVolumeDerivedPointVariables(std::set<std::string>& names) override;

private:
  zylIsosurfaceRepresentation(const zylIsosurfaceRepresentation&) = delete;
  void operator=(const zylIsosurfaceRepresentation&) = delete;

  vtkMTimeType IsovalueTime = 0; // of the setting, when it was last sent
};

#endif
