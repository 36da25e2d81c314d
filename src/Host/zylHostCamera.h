/// @file zylHostCamera.h
/// Places the toolkit's camera as a host says it: by matrices, along an axis, against a normal.
/// Private to the library.
#ifndef zylHostCamera_h
#define zylHostCamera_h

#include "zylExport.h"

class vtkCamera;

namespace zylHostCamera {
/// Take the camera from 4 x 4 matrices, row by row: the model-view matrix is first x second (either
/// may be null), then the projection as OpenGL defines it, perspective or orthographic. False, and
/// nothing changed, when the matrices describe no camera.
ZYL_PRIVATE bool SetMatrices(
  vtkCamera* camera, const double* first, const double* second, const double* projection);

/// Look at `center` along an axis, from a distance of one: 1 is +z, 2 -z, 3 -y, 4 +y, 5 +x, any
/// other -x; `flip` looks from the other side.
ZYL_PRIVATE void LookAlongAxis(vtkCamera* camera, const double center[3], int direction, bool flip);

/// Look at `center` against `normal`, from center + normal. False, and nothing changed, when the
/// normal is no direction.
ZYL_PRIVATE bool LookAgainstNormal(
  vtkCamera* camera, const double center[3], const double normal[3]);
} // namespace zylHostCamera

#endif
