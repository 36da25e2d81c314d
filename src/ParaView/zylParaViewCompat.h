/// @file zylParaViewCompat.h
/// The one place that knows in what ParaView 5.9, 5.11 and 5.13 differ. Functions are named by
/// intent and do the same on both. Private to the library.
#ifndef zylParaViewCompat_h
#define zylParaViewCompat_h

#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <cstddef>
#include <vector>

class vtkSMProxy;
class vtkSMRenderViewProxy;
class vtkSMSession;
class vtkSMSourceProxy;

namespace zylParaView {

/// Start ParaView as a client process, without starting MPI. The strings of `argv` must live as
/// long as the process. False when the arguments asked for help or the version (ParaView is then
/// finalised already and no session may be made).
ZYL_PRIVATE bool StartClient(int argc, char** argv);

/// Choose the toolkit's threaded SMP backend when the default is sequential and neither the host
/// nor the environment (VTK_SMP_BACKEND_IN_USE) has chosen one. Without effect where it is fixed.
ZYL_PRIVATE void ChooseThreadedBackend();

/// Run the filters in threads, unless `source` (null allowed) delivers small blocks: the toolkit
/// starts and ends its threads in every loop over every block, which takes small blocks longer than
/// their work. Only where ChooseThreadedBackend() has chosen; a server decides for itself. A host
/// that wants none at all says so in the environment.
ZYL_PRIVATE void AdaptThreads(vtkSMSourceProxy* source);

/// The data type of output port 0 of `source`: of the composite data if it is composite. -1 when
/// nothing is known.
ZYL_PRIVATE int GetOutputDataType(vtkSMSourceProxy* source);

/// Whether a data object of this type (VTK_TABLE, ...) is a dataset: points and cells.
ZYL_PRIVATE bool IsDataSetType(int type);

/// All blocks of the output of `source`, in flat order, with names, arrays, ranges, bounds and
/// sizes: one round trip. On a server without the library's plugin ParaView's own information is
/// used, which 5.11 has to ask for block by block. Empty when the source has no output or cannot be
/// used any more.
ZYL_PRIVATE std::vector<vtkZYLBlockInformation::Node> GetBlocks(vtkSMSourceProxy* source);

/// What kind of data the output of `source` is, in one round trip that looks at no values: the
/// nodes in flat order with type and sizes, without point and cell arrays. On a server without the
/// library's plugin the root stands alone when all leaves are datasets, and for AMR data.
ZYL_PRIVATE std::vector<vtkZYLBlockInformation::Node> GetBlockTypes(vtkSMSourceProxy* source);

/// Whether the server of the session (this process in a built-in one) has the library's plugin.
ZYL_PRIVATE bool HasServerPlugin(vtkSMSession* session);

/// Definitions (XML) of proxies that this version lacks or warns of. Null where there are none.
ZYL_PRIVATE const char* GetMissingDefinitions();

/// The name of the definition in `group` by which to make the proxy that is known as `name`: `name`
/// itself unless this version's must not meet ordinary data. Valid as long as `name`.
ZYL_PRIVATE const char* GetDefinition(vtkSMSession* session, const char* group, const char* name);

/// Whether lines can be traced from points of traced lines. The tracers of ParaView 5.9 wait for
/// each other for ever when there are several processes.
ZYL_PRIVATE bool CanTraceFromTraces(vtkSMSession* session);

/// Keep the values between `lower` and `upper` (both included) in a "Threshold" filter proxy.
ZYL_PRIVATE void SetThresholdRange(vtkSMProxy* threshold, double lower, double upper);

/// Let a "ResampleWithDataset" proxy sample arrays that not all blocks have, or not. 5.9 cannot.
ZYL_PRIVATE void SamplePartialArrays(vtkSMProxy* sampler, bool partial);

/// Which leaf blocks of a dataset are to be drawn.
struct BlockVisibility
{
  struct Leaf ///< a block without children, or whose children are pieces
  {
    unsigned int Id; ///< flat index
    bool Visible;
  };
  struct Inner
  {
    unsigned int Id;
    std::size_t FirstLeaf; ///< positions in Leaves of what lies below: [FirstLeaf, EndLeaf)
    std::size_t EndLeaf;
  };
  std::vector<Leaf> Leaves;      ///< all leaves in flat order
  std::vector<Inner> InnerNodes; ///< all inner nodes in flat order
};

/// Draw exactly these leaves. The value goes out with the proxy's next update.
ZYL_PRIVATE void SetBlockVisibility(vtkSMProxy* representation, const BlockVisibility& blocks);

/// Reset the camera to the visible data, or to `bounds` (xmin, xmax, ymin, ...) when not null.
ZYL_PRIVATE void ResetCamera(vtkSMRenderViewProxy* view, const double* bounds);

/// Have a new view draw nothing of its own accord: the camera widget of 5.13 clears the depths
/// below it, shown or not.
ZYL_PRIVATE void RemoveCameraWidget(vtkSMRenderViewProxy* view);

/// Let the view's background be what the host sets, not what a colour palette says.
ZYL_PRIVATE void UseOwnBackground(vtkSMRenderViewProxy* view);

} // namespace zylParaView

#endif
