/// @file zylViewBackdrop.h
/// The host's own background: a vertical gradient over the whole framebuffer, drawn with plain core
/// profile OpenGL. Stands for whatever a host draws before it asks the library to draw.
#ifndef zylViewBackdrop_h
#define zylViewBackdrop_h

#include <array>

class zylViewBackdrop
{
public:
  /// A context of OpenGL 3.2 or later must be current, here, in Paint() and in the destructor.
  zylViewBackdrop();
  ~zylViewBackdrop();
  zylViewBackdrop(const zylViewBackdrop&) = delete;
  zylViewBackdrop& operator=(const zylViewBackdrop&) = delete;

  /// Fill the bound framebuffer (width x height pixels) and reset its depth to the far plane.
  void Paint(int width, int height, const std::array<double, 3>& top,
    const std::array<double, 3>& bottom) const;

private:
  unsigned int Program = 0;
  unsigned int VertexArray = 0;
};

#endif
