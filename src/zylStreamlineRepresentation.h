// clang-format off
/**
 * @class zylStreamlineRepresentation
 * @brief Streamlines from seed points through the volume, as lines or ribbons, with glyphs on them.
 *
 * Adds these settings to those of zylDerivedSurfaceRepresentation:
 *
 * | name                         | type    | default           | meaning                              |
 * |------------------------------|---------|-------------------|--------------------------------------|
 * | "SeedPoints"                 | doubles | none              | x, y, z of each point                |
 * | "VectorVariable"             | string  | ""                | a point array or derived variable of |
 * |                              |         |                   | 3 components                         |
 * | "IntegrationDirection"       | int     | 2                 | 0: downstream; 1: upstream; 2: both  |
 * | "MaximumStreamlineLength"    | double  | 1e299 (no limit)  | length of a line, each way           |
 * | "UseCellLocator"             | bool    | false             | find cells with a locator: slower    |
 * |                              |         |                   | and more robust                      |
 * | "Threshold"                  | bool    | false             | keep the parts of the lines ...      |
 * | "ThresholdArray"             | string  | "IntegrationTime" | ... where this point array is ...    |
 * | "ThresholdValue"             | double  | 1e299 (no limit)  | ... at most so large                 |
 * | "Ribbon"                     | bool    | false             | ribbons across the vorticity instead |
 * |                              |         |                   | of lines                             |
 * | "RibbonWidth"                | double  | 0.1               | the full width                       |
 * | "GlyphType"                  | string  | "Sphere"          | "Sphere", "Arrow", "Cone", "Cube",   |
 * |                              |         |                   | "Cylinder" or "Line"                 |
 * | "GlyphScaleFactor"           | double  | 1                 | the size; glyphs are one unit large  |
 * | "GlyphOrientationArray"      | string  | "" (none)         | point array that glyphs point along  |
 * | "GlyphSpaceEvenly"           | bool    | false             | false: a glyph on every point of the |
 * |                              |         |                   | lines; true: ...                     |
 * | "GlyphSpacing"               | double  | 1                 | ... so far apart along the lines     |
 * | "SphereGlyphThetaResolution" | int     | 8                 |                                      |
 * | "SphereGlyphPhiResolution"   | int     | 8                 |                                      |
 * | "ConeGlyphResolution"        | int     | 6                 |                                      |
 * | "ArrowGlyphTipResolution"    | int     | 6                 |                                      |
 * | "ArrowGlyphShaftResolution"  | int     | 6                 |                                      |
 *
 * The lines have the point arrays of the data and those of the tracer: "IntegrationTime" (negative
 * upstream of the seed), "Vorticity", "Rotation", "AngularVelocity" and "Normals".
 *
 * GetSurfaceProperties() has the settings of the lines and, with "Glyph" before their names, those
 * of the glyphs: "GlyphVisibility", "GlyphColor", "GlyphColorVariableName" and so on. Hide() hides
 * the glyphs too.
 *
 * An irrotational flow has no direction across which a ribbon could lie: it has no ribbons. A
 * vector variable that is not fit for tracing is written to the standard error stream by Update().
 */
// clang-format on
#ifndef zylStreamlineRepresentation_h
#define zylStreamlineRepresentation_h

#include "zylDerivedSurfaceRepresentation.h"

class ZYL_EXPORT zylStreamlineRepresentation : public zylDerivedSurfaceRepresentation
{
public:
  static zylStreamlineRepresentation* New();
  vtkTypeMacro(zylStreamlineRepresentation, zylDerivedSurfaceRepresentation);

  /// The dataset's point array named by "ThresholdArray" (borrowed until the dataset's tree is
  /// rebuilt); null if the dataset has none, as for the arrays that the tracer makes.
  zylArrayInformation* GetThresholdArrayInformation();

  bool HasRepresentation(vtkSMProxy* representation) override;
  void FreeResources() override;
  void UpdateLocalPipeline() override;

protected:
  zylStreamlineRepresentation();
  ~zylStreamlineRepresentation() override;

  void CreateSurfacePipeline() override;
  void GetVolumeDerivedPointVariables(std::set<std::string>& names) override;

  /// Make the glyph filter, on the points of `input`.
  void CreateGlyphPipeline(vtkSMSourceProxy* input);
  /// Bring the glyphs, and their display in the view, up to date. They lie on `input`, or evenly
  /// spaced along the lines.
  void UpdateGlyphPipeline(vtkSMSourceProxy* input);

  ///@{
  /// Parts of CreateSurfacePipeline(): the seeds; the tracer in `input` and all that comes after.
  void CreateSeeds();
  void CreateTracedLines(vtkSMSourceProxy* input);
  ///@}

  vtkSmartPointer<vtkSMSourceProxy> SeedSource;
  vtkSmartPointer<vtkSMSourceProxy> Tracer;
  vtkSmartPointer<vtkSMSourceProxy> ThresholdClip;
  vtkSmartPointer<vtkSMSourceProxy> LineSurface;
  vtkSmartPointer<vtkSMSourceProxy> RibbonFilter;
  vtkSmartPointer<vtkSMSourceProxy> ArcLength;
  vtkSmartPointer<vtkSMSourceProxy> SpacingContour;
  vtkSmartPointer<vtkSMSourceProxy> GlyphFilter;
  vtkSmartPointer<vtkSMSourceProxy> Grouper;
  vtkSmartPointer<zylSurfacePipeline> GlyphPipeline;

private:
  zylStreamlineRepresentation(const zylStreamlineRepresentation&) = delete;
  void operator=(const zylStreamlineRepresentation&) = delete;

  void ReleaseFilters();
  void UpdateThreshold();
  void UpdateRibbon();
  void UpdateGlyphShape();
  void UpdateGlyphSettings();
  void SpaceGlyphs();

  vtkMTimeType SeedsTime = 0;               // of "SeedPoints", when they were last sent
  vtkSmartPointer<vtkSMSourceProxy> Joiner; // of the pieces that the threshold leaves
  double VolumeTime = 0.0;                  // at which these were executed
  double ArcLengthTime = 0.0;
  double GlyphTime = 0.0;
};

#endif
