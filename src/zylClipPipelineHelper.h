/**
 * @class zylClipPipelineHelper
 * @brief One clip stage: cuts away what lies outside a range of a variable or a shape.
 *
 * Settings (GetProperties()); angles in degrees, lengths in world units:
 *
 * | name                                           | type, default                                |
 * |------------------------------------------------|----------------------------------------------|
 * | "ClipMode"                                     | int, 0: nothing; 1: scalar range; 2: plane;  |
 * |                                                | 3: box; 4: cylinder; 5: sphere               |
 * | "Invert"                                       | bool, true: keep the inside, or what lies on |
 * |                                                | the side the normal points away from         |
 * | "ScalarVariable"                               | string, "": a point array                    |
 * | "ScalarLowerThreshold", "ScalarUpperThreshold" | double, 0 and 1; "Invert" has no effect      |
 * | "PlaneCenter", "PlaneNormal"                   | 3 doubles, origin and x axis                 |
 * | "BoxPosition", "BoxRotation", "BoxLength"      | 3 doubles, zeros, zeros and ones             |
 * | "CylinderCenter", "CylinderAxis"               | 3 doubles, origin and x axis                 |
 * | "CylinderRadius"                               | double, 1                                    |
 * | "SphereCenter", "SphereRadius"                 | 3 doubles, origin; double, 1                 |
 *
 * A plane normal or cylinder axis of length zero, which gives no direction, is logged as a warning
 * and the last good one is kept.
 *
 * Owns its proxies: one or two clips, made when first needed, and the output, whose identity stays.
 */
#ifndef zylClipPipelineHelper_h
#define zylClipPipelineHelper_h

#include "zylExport.h"

#include <vtkObject.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

class vtkSMSourceProxy;
class zylPropertyCollection;

class ZYL_EXPORT zylClipPipelineHelper : public vtkObject
{
public:
  static zylClipPipelineHelper* New();
  vtkTypeMacro(zylClipPipelineHelper, vtkObject);

  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();

  /// What to clip (borrowed; it must outlive its use here). Stores it and nothing else.
  void SetInput(vtkSMSourceProxy* input);

  /// The output proxy (borrowed), made by the first call. Null, with an error, without an input.
  vtkSMSourceProxy* GetOutput();

  /// Push the settings. An error without an input. The output must have been asked for before.
  void Update();

  /// Box settings of the box with the corner points[0..2] and its three neighbors points[3..5],
  /// points[6..8] and points[9..11]: position, rotation and length along the first, third and
  /// second of these edges.
  static void ComputeBoxParameters(
    const double points[12], double position[3], double rotation[3], double length[3]);

protected:
  zylClipPipelineHelper();
  ~zylClipPipelineHelper() override;

private:
  zylClipPipelineHelper(const zylClipPipelineHelper&) = delete;
  void operator=(const zylClipPipelineHelper&) = delete;

  void UpdateClips(int mode);
  void UpdateScalarRange();

  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkWeakPointer<vtkSMSourceProxy> Input;
  vtkSmartPointer<vtkSMSourceProxy> FirstClip;
  vtkSmartPointer<vtkSMSourceProxy> SecondClip;
  vtkSmartPointer<vtkSMSourceProxy> Output;
};

#endif
