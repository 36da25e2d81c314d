/// @file zylParaViewCompat.mapper.h
/// The toolkit's vtkCompositeMapperHelper2, whose header has another name in each version. Private
/// to the library.
#ifndef zylParaViewCompat_mapper_h
#define zylParaViewCompat_mapper_h

#include <vtk_glew.h> // the older one names OpenGL's types without it

#if __has_include(<vtkCompositeMapperHelper2.h>)
#include <vtkCompositeMapperHelper2.h>
#else
#include <vtkCompositePolyDataMapper2Internal.h> // IWYU pragma: keep
#endif

#endif
