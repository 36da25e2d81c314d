// clang-format off
/**
 * @class zylCurvedGlyphRepresentation
 * @brief Curved arrows: heads at even distances along streamlines, bodies that follow the flow.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation; all sizes are lengths in the
 * units of the data:
 *
 * | name                      | type    | default          | meaning                                  |
 * |---------------------------|---------|------------------|------------------------------------------|
 * | "SeedPoints"              | doubles | none             | x, y, z of each point                    |
 * | "VectorVariable"          | string  | ""               | a point array or derived variable of 3   |
 * |                           |         |                  | components                               |
 * | "IntegrationDirection"    | int     | 2                | arrows 0: downstream of the seeds;       |
 * |                           |         |                  | 1: upstream; 2: both                     |
 * | "MaximumStreamlineLength" | double  | 1e299 (no limit) | how far from the seeds, each way         |
 * | "UseCellLocator"          | bool    | false            | find cells with a locator: slower and    |
 * |                           |         |                  | more robust                              |
 * | "GlyphSpacing"            | double  | 1                | from arrow to arrow, along the flow      |
 * | "GlyphTessellation"       | int     | 16 (at least 3)  | sides of head and body                   |
 * | "GlyphConeRadius"         | double  | 1                | of the head                              |
 * | "GlyphConeHeight"         | double  | 1                | of the head                              |
 * | "GlyphBodyRadius"         | double  | 0.5              | of the body ...                          |
 * | "GlyphBodyLength"         | double  | 0.5              | ... which runs upstream from the foot of |
 * |                           |         |                  | the head                                 |
 *
 * A body ends where the flow enters the data. A vector variable that is not fit for tracing is
 * written to the standard error stream by Update(). ParaView 5.9 on several processes makes no such
 * arrows: an error says so.
 */
// clang-format on
#ifndef zylCurvedGlyphRepresentation_h
#define zylCurvedGlyphRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylCurvedGlyphRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylCurvedGlyphRepresentation* New();
  vtkTypeMacro(zylCurvedGlyphRepresentation, zylDerivedSurfaceRepresentation);

  void FreeResources() override;
  void UpdateLocalPipeline() override;

protected:
  zylCurvedGlyphRepresentation();
  ~zylCurvedGlyphRepresentation() override;

  void CreateSurfacePipeline() override;
  void GetVolumeDerivedPointVariables(std::set<std::string>& names) override;

private:
  zylCurvedGlyphRepresentation(const zylCurvedGlyphRepresentation&) = delete;
  void operator=(const zylCurvedGlyphRepresentation&) = delete;

  void ReleaseFilters();
  void UpdateHeads();
  void UpdateBodies();

  vtkSmartPointer<vtkSMSourceProxy> SeedSource;
  vtkSmartPointer<vtkSMSourceProxy> Tracer;
  vtkSmartPointer<vtkSMSourceProxy> SpacingContour;
  vtkSmartPointer<vtkSMSourceProxy> Heads;
  vtkSmartPointer<vtkSMSourceProxy> BodyTracer;
  vtkSmartPointer<vtkSMSourceProxy> BodyClip;
  vtkSmartPointer<vtkSMSourceProxy> LineSurface;
  vtkSmartPointer<vtkSMSourceProxy> Stripper;
  vtkSmartPointer<vtkSMSourceProxy> Tubes;
  vtkSmartPointer<vtkSMSourceProxy> Appender;
  vtkSmartPointer<vtkSMSourceProxy> Grouper;
  vtkSmartPointer<vtkSMSourceProxy> SharedLines; ///< null on a server without the plugin
  vtkSmartPointer<vtkSMSourceProxy> ArcLength;
  vtkMTimeType SeedsTime = 0; // of "SeedPoints", when they were last sent
  double VolumeTime = 0.0;    // at which these were executed
  double ArcLengthTime = 0.0;
};

#endif
