/**
 * @class zylIntersectionCurveRepresentation
 * @brief The curves in which a plane meets surfaces.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation; "MergePoints" is true here:
 *
 * | name             | type, default                                                      |
 * |------------------|--------------------------------------------------------------------|
 * | "Center"         | 3 doubles, origin: a point of the plane                            |
 * | "Normal"         | 3 doubles, z axis; of any length but zero                          |
 * | "CurveToDisplay" | 2 ints, -1, -1: all curves; else one: the rank of the server that  |
 * |                  | has it and its number there, from 0                                |
 *
 * A normal of length zero is logged as a warning and the last good one is kept.
 */
#ifndef zylIntersectionCurveRepresentation_h
#define zylIntersectionCurveRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class zylIntersectionCurveData;

class ZYL_EXPORT zylIntersectionCurveRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylIntersectionCurveRepresentation* New();
  vtkTypeMacro(zylIntersectionCurveRepresentation, zylDerivedSurfaceRepresentation);

  /// Also fetches the curves to this process when they may have changed.
  void Update() override;
  void FreeResources() override;
  void UpdateLocalPipeline() override;

  /// The curve that "CurveToDisplay" chose, as of the last update: a new object that the caller
  /// owns (Delete() it); null when all curves are shown. `startingPointId` and `flag` are passed
  /// on.
  zylIntersectionCurveData* GetIntersectionCurve(int startingPointId, bool flag);

protected:
  zylIntersectionCurveRepresentation();
  ~zylIntersectionCurveRepresentation() override;

  void CreateSurfacePipeline() override;

private:
  zylIntersectionCurveRepresentation(const zylIntersectionCurveRepresentation&) = delete;
  void operator=(const zylIntersectionCurveRepresentation&) = delete;

  vtkSmartPointer<vtkSMSourceProxy> CutMerger;
  vtkSmartPointer<vtkSMSourceProxy> Stripper;
  vtkSmartPointer<vtkSMSourceProxy> SelectionSource;
  vtkSmartPointer<vtkSMSourceProxy> SelectionExtractor;
  vtkSmartPointer<vtkSMSourceProxy> SelectionSurface;
  vtkSmartPointer<vtkSMSourceProxy> Grouper;
  vtkSmartPointer<vtkPolyData> CurveData;
};

#endif
