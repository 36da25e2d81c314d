// Registers the toolkit's implementation modules when the library is loaded, the same that
// ParaView's own programs register. Without it every host would have to do so in each of its
// executables.
#include <vtkAutoInit.h>

VTK_MODULE_INIT(vtkRenderingOpenGL2)
VTK_MODULE_INIT(vtkRenderingContextOpenGL2)
VTK_MODULE_INIT(vtkRenderingVolumeOpenGL2)
VTK_MODULE_INIT(vtkRenderingFreeType)
VTK_MODULE_INIT(vtkRenderingUI)
VTK_MODULE_INIT(vtkInteractionStyle)
VTK_MODULE_INIT(vtkFiltersParallel)
VTK_MODULE_INIT(vtkFiltersParallelDIY2)
VTK_MODULE_INIT(vtkRemotingViews)
