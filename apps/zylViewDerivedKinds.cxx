#include "zylViewDerivedKinds.h"

#include <zylClipRepresentation.h>
#include <zylCurvedGlyphRepresentation.h>
#include <zylCutPlaneRepresentation.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylIntersectionCurveRepresentation.h>
#include <zylIsosurfaceRepresentation.h>
#include <zylStreamlineRepresentation.h>
#include <zylSurfaceStreamlineRepresentation.h>
#include <zylVortexCoresRepresentation.h>

namespace {
using Representation = zylDerivedSurfaceRepresentation;
using Shape = zylViewDerived::Shape;

template <class T>
vtkSmartPointer<Representation> New()
{
  return vtkSmartPointer<T>::New();
}

} // namespace

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<Representation> zylNewDerived(zylViewDerived::Shape shape)
{
  switch (shape)
  {
    case Shape::ClipVolume:
      return New<zylClipRepresentation>();
    case Shape::Cut:
    case Shape::Crinkle:
      return New<zylCutPlaneRepresentation>();
    case Shape::Isosurface:
      return New<zylIsosurfaceRepresentation>();
    case Shape::Curve:
      return New<zylIntersectionCurveRepresentation>();
    case Shape::Streamlines:
    case Shape::Ribbons:
      return New<zylStreamlineRepresentation>();
    case Shape::SurfaceStreamlines:
      return New<zylSurfaceStreamlineRepresentation>();
    case Shape::CurvedGlyphs:
      return New<zylCurvedGlyphRepresentation>();
    case Shape::VortexCores:
      return New<zylVortexCoresRepresentation>();
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
const std::vector<zylDerivedDisplay>& zylGetDerivedDisplays()
{
  static const std::vector<zylDerivedDisplay> displays{ { "Surface",
                                                          &Representation::GetSurfaceProperties },
    { "Contour", &Representation::GetContourProperties },
    { "FeatureLine", &Representation::GetFeatureLineProperties },
    { "MeshLine", &Representation::GetMeshLineProperties },
    { "VectorGlyph", &Representation::GetVectorGlyphProperties },
    { "Highlight", &Representation::GetHighlightProperties } };
  return displays;
}
