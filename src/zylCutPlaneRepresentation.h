/**
 * @class zylCutPlaneRepresentation
 * @brief The cut of a plane through a volume, flat or along the faces of the cells that it meets.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation:
 *
 * | name         | type, default                                                     |
 * |--------------|-------------------------------------------------------------------|
 * | "Center"     | 3 doubles, origin: a point of the plane                           |
 * | "Normal"     | 3 doubles, x axis; of any length but zero                         |
 * | "CrinkleCut" | bool, false: show the surface of the cells that the plane meets,  |
 * |              | whole, in place of the plane                                      |
 *
 * A normal of length zero is logged as a warning and the last good one is kept.
 */
#ifndef zylCutPlaneRepresentation_h
#define zylCutPlaneRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylCutPlaneRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylCutPlaneRepresentation* New();
  vtkTypeMacro(zylCutPlaneRepresentation, zylDerivedSurfaceRepresentation);

  void UpdateLocalPipeline() override;

protected:
  zylCutPlaneRepresentation();
  ~zylCutPlaneRepresentation() override = default;

  void CreateSurfacePipeline() override;

private:
  zylCutPlaneRepresentation(const zylCutPlaneRepresentation&) = delete;
  void operator=(const zylCutPlaneRepresentation&) = delete;

  bool RebuildFor = true; // the value of "CrinkleCut" that the present filters are not for
};

#endif
