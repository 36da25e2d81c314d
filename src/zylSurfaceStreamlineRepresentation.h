/**
 * @class zylSurfaceStreamlineRepresentation
 * @brief Streamlines on the boundary surface of the dataset, along the flow just off it.
 *
 * On a wall where the flow sticks there is nothing to follow: the vectors are those a little way
 * inside, and the lines lie on the surface. Adds this setting to those of
 * zylStreamlineRepresentation:
 *
 * | name            | type, default                                                               |
 * |-----------------|-----------------------------------------------------------------------------|
 * | "SurfaceOffset" | double, 0.001: how far inside, along the surface's normals                  |
 *
 * "Blocks" chooses the surfaces, be it volumes or boundary patches; the vectors are always those of
 * the whole dataset. A volume's surface has the faces by which it touches others: take the patches
 * where the data have them. Give an offset of 0 where the vectors are on surfaces only (wall shear
 * stress), and a negative one where patches or left-handed structured blocks face inside.
 *
 * A seed counts that lies on the surface or close by. Lines end at sharp edges, and where the
 * offset leaves the volume.
 */
#ifndef zylSurfaceStreamlineRepresentation_h
#define zylSurfaceStreamlineRepresentation_h

#include "zylStreamlineRepresentation.h"

class ZYL_EXPORT zylSurfaceStreamlineRepresentation : public zylStreamlineRepresentation
{
public:
  static zylSurfaceStreamlineRepresentation* New();
  vtkTypeMacro(zylSurfaceStreamlineRepresentation, zylStreamlineRepresentation);

  void FreeResources() override;
  void UpdateLocalPipeline() override;

protected:
  zylSurfaceStreamlineRepresentation();
  ~zylSurfaceStreamlineRepresentation() override;

  void CreateSurfacePipeline() override;

private:
  zylSurfaceStreamlineRepresentation(const zylSurfaceStreamlineRepresentation&) = delete;
  void operator=(const zylSurfaceStreamlineRepresentation&) = delete;

  void ReleaseSurface();

  vtkSmartPointer<vtkSMSourceProxy> Surface;
  vtkSmartPointer<vtkSMSourceProxy> SurfaceMerger;
  vtkSmartPointer<vtkSMSourceProxy> SurfaceNormals;
  vtkSmartPointer<vtkSMSourceProxy> OffsetSurface;
  vtkSmartPointer<vtkSMSourceProxy> Sampler;
  vtkSmartPointer<vtkSMSourceProxy> BareSurface;
  vtkSmartPointer<vtkSMSourceProxy> SampledSurface;
  vtkMTimeType ShapeTime = 0; // of the block tree whose arrays were looked at
};

#endif
