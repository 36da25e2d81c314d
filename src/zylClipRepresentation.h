/**
 * @class zylClipRepresentation
 * @brief The boundary surface of a volume clipped by a variable, a plane or a sphere.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation; lengths in world units:
 *
 * | name                           | type, default                                                |
 * |--------------------------------|--------------------------------------------------------------|
 * | "ClipMode"                     | int, 0: scalar; 1: plane; 2: sphere                          |
 * | "Invert"                       | bool, true: keep values below the threshold, the side that   |
 * |                                | the normal points away from, the inside                      |
 * | "ScalarVariable"               | string, "": a point array or derived variable                |
 * | "ScalarThreshold"              | double, 0                                                    |
 * | "PlaneCenter", "PlaneNormal"   | 3 doubles, origin and x axis                                 |
 * | "SphereCenter", "SphereRadius" | 3 doubles, origin; double, 1                                 |
 *
 * The modes are numbered differently from those of zylClipPipelineHelper. An unknown mode is
 * reported on the standard error stream and the clip stays as it was. A plane normal of length zero
 * is logged as a warning and the last good one is kept.
 */
#ifndef zylClipRepresentation_h
#define zylClipRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylClipRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylClipRepresentation* New();
  vtkTypeMacro(zylClipRepresentation, zylDerivedSurfaceRepresentation);

  /// The dataset's description of "ScalarVariable" (borrowed until the dataset's next update), or
  /// null.
  zylArrayInformation* GetScalarInformation();

  void FreeResources() override;
  void UpdateLocalPipeline() override;

protected:
  zylClipRepresentation();
  ~zylClipRepresentation() override;

  void CreateSurfacePipeline() override;
  void GetVolumeDerivedPointVariables(std::set<std::string>& names) override;

private:
  zylClipRepresentation(const zylClipRepresentation&) = delete;
  void operator=(const zylClipRepresentation&) = delete;

  vtkSmartPointer<vtkSMSourceProxy> Clip;
};

#endif
