/// @file zylParaViewCompat.h
/// The one place that knows in what ParaView 5.9 and 5.11 differ. Functions are named by intent and
/// do the same on both. Private to the library.
#ifndef zylParaViewCompat_h
#define zylParaViewCompat_h

#include "zylExport.h"

#include <cstddef>

class vtkRenderer;
class vtkSMProxy;
class vtkSMRenderViewProxy;
class zylMultiBlockTree;

namespace zylParaView {

/// Start ParaView as a client process, without starting MPI. The strings of `argv` must live as long
/// as the process. False when the arguments asked for help or the version (ParaView is then
/// finalised already and no session may be made).
ZYL_PRIVATE bool StartClient(int argc, char** argv);

/// Choose the toolkit's threaded SMP backend when the default is sequential and neither the host nor
/// the environment (VTK_SMP_BACKEND_IN_USE) has chosen one. Without effect where it is fixed.
ZYL_PRIVATE void ChooseThreadedBackend();

/// Keep the values between `lower` and `upper` (both included) in a "Threshold" filter proxy.
ZYL_PRIVATE void SetThresholdRange(vtkSMProxy* threshold, double lower, double upper);

/// Show exactly the leaf blocks whose flag is set: `pairs` holds `count` ints, (flat block id, flag)
/// after one another; a block without a pair follows its nearest ancestor with one; a block without
/// any is shown. `tree` is the block tree of the data the representation shows (borrowed; null: the
/// ids are taken as leaves).
ZYL_PRIVATE void SetBlockVisibility(
  vtkSMProxy* representation, const int* pairs, std::size_t count, const zylMultiBlockTree* tree);

/// Reset the camera to the visible data, or to `bounds` (xmin, xmax, ymin, ...) when not null.
ZYL_PRIVATE void ResetCamera(vtkSMRenderViewProxy* view, const double* bounds);

/// Let the view's background be what the host sets, not what a colour palette says.
ZYL_PRIVATE void UseOwnBackground(vtkSMRenderViewProxy* view);

} // namespace zylParaView

#endif
