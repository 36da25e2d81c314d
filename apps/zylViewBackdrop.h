/// @file zylViewBackdrop.h
/// The host's own background: a vertical gradient over the whole framebuffer, drawn with plain core
/// profile OpenGL. Stands for whatever a host draws before it asks the library to draw.
#ifndef zylViewBackdrop_h
#define zylViewBackdrop_h

#include <array>

/// A program that draws one triangle, without vertex data, over the whole viewport; the shader of
/// its pixels is given and may take `in float height` from 0 at the bottom to 1. With a vertex
/// shader it draws what that says. Throws zylViewError.
unsigned int zylBuildProgram(const char* fragmentShader, const char* vertexShader = nullptr);

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
