/// @file zylParaViewCompat.version.h
/// Which of the ParaViews that differ this is. For the sources of zylParaViewCompat only.
#ifndef zylParaViewCompat_version_h
#define zylParaViewCompat_version_h

#if __has_include(<vtkPVPythonOptions.h>)
#define ZYL_PARAVIEW_59 1
#else
#define ZYL_PARAVIEW_59 0
#endif

#if __has_include(<vtkOpenGLBatchedPolyDataMapper.h>)
#define ZYL_PARAVIEW_513 1
#else
#define ZYL_PARAVIEW_513 0
#endif

#endif
