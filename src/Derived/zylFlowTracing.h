/// @file zylFlowTracing.h
/// What the representations that follow a flow share: seeds, tracers, glyphs along the lines.
///
/// Private to the library.
#ifndef zylFlowTracing_h
#define zylFlowTracing_h

#include "ParaView/zylPropertyTable.h"
#include "zylExport.h"

#include <string>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkSMProxy;
class vtkSMSessionProxyManager;
class vtkSMSourceProxy;
class zylDataSet;
class zylPropertyCollection;

namespace zylFlowTracing {

/// The settings of seeds and tracer, in order of creation.
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Doubles("SeedPoints"),
  zylPropertyRow::String("VectorVariable", ""),
  zylPropertyRow::Int("IntegrationDirection", 2).To("IntegrationDirection"),
  zylPropertyRow::Double("MaximumStreamlineLength", 1e299).To("MaximumPropagation"),
  zylPropertyRow::Bool("UseCellLocator", false).To("InterpolatorType"),
};

/// A registered source of seed points in the session of `manager` (null: null).
ZYL_PRIVATE vtkSmartPointer<vtkSMSourceProxy> MakeSeeds(vtkSMSessionProxyManager* manager);

/// Send "SeedPoints" (x, y, z, x, ...) of `settings` to `seeds` if they were modified after `sent`,
/// which becomes the time of modification. Values beyond whole points are left out, with a warning.
ZYL_PRIVATE void PushSeeds(
  zylPropertyCollection* settings, vtkSMSourceProxy* seeds, vtkMTimeType& sent);

/// Set the tracer's vector array and the settings that have a target on it, and push them.
ZYL_PRIVATE void PushTracer(zylPropertyCollection* settings, vtkSMSourceProxy* tracer);

/// Choose a point array for an array property of `proxy`, which is not pushed.
ZYL_PRIVATE void SelectPointArray(vtkSMProxy* proxy, const char* property, const std::string& name);

/// Take all seeds away and have them sent again by the next PushSeeds().
ZYL_PRIVATE void DropSeeds(vtkSMSourceProxy* seeds, vtkMTimeType& sent);

/// Whether the point array `name` has three components, or is not there: a tracer reads other
/// arrays beyond their end. What is wrong with the array is written to the standard error stream:
/// no such point or cell array in `dataSet`, or not three components. `user` is the class that
/// reads it. A derived variable is looked up in `volume`, which computes it and is executed for
/// that unless it has been (see zylUpdatePipeline() for `executed`). An empty name is fine.
ZYL_PRIVATE bool CheckVectors(zylDataSet* dataSet, vtkSMSourceProxy* volume, double& executed,
  const std::string& name, const char* user);

/// Give `contour`, which cuts the lines of `measured` by their "arc_length", the values that lie
/// `spacing` apart. The first is half the spacing from a line's start, so that lines that run both
/// ways from a seed have one even row of points. `measured` must have been executed; its arc length
/// is asked of the server. A spacing that is not positive makes no points; beyond 10000 points a
/// line there are no more. What is wrong with the spacing is returned, else "".
ZYL_PRIVATE std::string SpaceEvenly(
  vtkSMSourceProxy* measured, vtkSMSourceProxy* contour, double spacing);

///@{
/// Values of the glyph filter's "OrientationArray", "ScaleArray" and "GlyphMode".
constexpr const char* NoOrientation = "No orientation array";
constexpr const char* NoScale = "No scale array";
constexpr int AllPoints = 0;
///@}

} // namespace zylFlowTracing

#endif
