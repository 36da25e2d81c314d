/// @file zylColoring.h
/// What a view representation is colored by: an array through a lookup table of its own, with the
/// table's legend. Private to the library.
#ifndef zylColoring_h
#define zylColoring_h

#include "zylExport.h"

#include <cstdint>
#include <string>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkSMProxy;
class zylPropertyCollection;
struct zylVariable;

class ZYL_PRIVATE zylColoring
{
public:
  ///@{
  /// Declare the settings that this class reads.
  static void DeclareMap(zylPropertyCollection* settings);
  static void DeclareLegend(zylPropertyCollection* settings);
  ///@}

  /// Color `representation` by an array. What is so already is not sent again.
  void ColorBy(vtkSMProxy* representation, const zylVariable& variable);
  /// Color it in its solid color, without a legend.
  void ColorSolid(vtkSMProxy* representation);
  /// Whether it is colored by an array.
  bool IsByArray() const { return !this->Array.empty(); }

  /// The latest modification time of the settings of the color map.
  static vtkMTimeType GetMapMTime(zylPropertyCollection* settings);
  /// Bring the lookup table, if there is one, in step with the settings of the color map.
  void UpdateMap(zylPropertyCollection* settings);

  ///@{
  /// Show the legend in `view` with its settings (false when there is none to be had); hide it.
  bool ShowLegend(vtkSMProxy* view, zylPropertyCollection* settings);
  void HideLegend();
  ///@}

  /// Release all that was made for `representation` (null when that is gone).
  void Release(vtkSMProxy* representation);

private:
  bool EnsureLookupTable(vtkSMProxy* representation);
  void ForgetArray();

  vtkSmartPointer<vtkSMProxy> LookupTable;
  vtkSmartPointer<vtkSMProxy> ScalarBar;

  // What the server has: to tell changes from repetitions.
  std::string Array;
  std::string Suffix;
  int Association = -1;
  vtkMTimeType MapTime = 0;
  std::uint64_t MapHash = 0;
};

#endif
