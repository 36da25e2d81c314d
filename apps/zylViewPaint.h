/// @file zylViewPaint.h
/// What a host draws over its picture without the library: rectangles, lines of text; and the
/// picture itself, kept to be drawn again.
#ifndef zylViewPaint_h
#define zylViewPaint_h

#include <string>

class zylViewPaint
{
public:
  /// A context of OpenGL 3.2 or later must be current, here, in all calls and in the destructor.
  zylViewPaint();
  ~zylViewPaint();
  zylViewPaint(const zylViewPaint&) = delete;
  zylViewPaint& operator=(const zylViewPaint&) = delete;

  /// The bound framebuffer, and how many pixels of it make up one of a usual screen, each way.
  void SetSize(int width, int height, int pixelRatio);

  ///@{
  /// In pixels from the lower left corner, colors as RGB in [0, 1]: a rectangle, its border, a
  /// line, and text whose lower left corner is there.
  void Fill(double x, double y, double width, double height, const double* color) const;
  void Frame(double x, double y, double width, double height, const double* color) const;
  void Line(const double from[2], const double to[2], double width, const double* color) const;
  void Text(double x, double y, const std::string& text, const double* color) const;
  ///@}
  /// The size of a text.
  void Measure(const std::string& text, int size[2]) const;

  ///@{
  /// Copy the colors of the window's framebuffer, and put them there again. Whether there is
  /// a copy of this size.
  void Keep();
  bool PutBack() const;
  ///@}

private:
  int Width = 0, Height = 0, PixelRatio = 1;
  unsigned int Program = 0; ///< of text
  unsigned int LineProgram = 0;
  unsigned int VertexArray = 0;
  unsigned int Texture = 0; ///< of text
  unsigned int Framebuffer = 0;
  unsigned int Kept = 0; ///< texture
  int KeptSize[2] = { 0, 0 };
};

#endif
