/// @file zylViewLoading.h
/// What a window shows before there is anything to see: what is being done, and how far it is.
#ifndef zylViewLoading_h
#define zylViewLoading_h

#include "zylViewBackdrop.h"
#include "zylViewPaint.h"

#include <string>

struct zylViewOptions;

class zylViewLoading
{
public:
  /// `options` (borrowed) have the colors. A context of OpenGL 3.2 or later must be current, here,
  /// in Paint() and in the destructor.
  explicit zylViewLoading(const zylViewOptions& options)
    : Options(options)
  {
  }

  /// Fill the bound framebuffer of that size in pixels; `fraction` below 0 is unknown.
  void Paint(int width, int height, int pixelRatio, const std::string& work, double fraction);

private:
  const zylViewOptions& Options;
  zylViewBackdrop Backdrop;
  zylViewPaint Brush;
};

#endif
