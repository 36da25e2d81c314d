/**
 * @class zylHostSelector
 * @brief Finds what of a view lies under a rectangle of pixels, or the surface point under one.
 *
 * Works inside a frame begun by zylHostView::BeginSelection(): draws the view with colors that
 * stand for blocks and cells and reads them back. The host's picture is not touched. Private to the
 * library.
 */
#ifndef zylHostSelector_h
#define zylHostSelector_h

#include "zylExport.h"

#include <vector>

class vtkCollection;
class zylHostView;

class ZYL_PRIVATE zylHostSelector
{
public:
  enum Kind
  {
    Cells,
    Points,
    Blocks ///< of which a cell is there
  };

  /// `host` is borrowed. What lies behind the host's depths in the framebuffer object `occluder`
  /// (as zylView::SetSourceFBO()) is not found; null: all is.
  zylHostSelector(zylHostView& host, const int* occluder);

  /// Fill the collections, in step, with representation proxies and source proxies of what is
  /// selected of each; only one with `multiple` off. Corners are pixels of the view, in any order;
  /// what is outside of it is ignored. Whether anything is there.
  bool Select(int kind, const int rectangle[4], bool multiple, vtkCollection* representations,
    vtkCollection* sources);

  /// The point of the surface under a pixel; false, and `point` untouched, when there is none.
  bool PickPoint(int x, int y, double point[3]);

private:
  bool Clamp(int rectangle[4]) const;
  std::vector<double> GetLook() const; // of what no proxy knows
  void GetRay(double x, double y, double near[3], double far[3]) const;

  zylHostView& Host;
  bool Occluded = false;
  int Framebuffer = 0;
};

#endif
