#include "zylViewPaint.h"

#include "zylViewBackdrop.h"

#include <algorithm>
#include <cmath>

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkStdString.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>

namespace {
constexpr int FontSize = 16; // points, of a usual screen
constexpr int Dots = 72;     // an inch of it

int Pixel(double value)
{
  return static_cast<int>(std::lround(value));
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewPaint::zylViewPaint()
  : Program(zylBuildProgram(R"(#version 150
uniform sampler2D text;
uniform ivec2 corner;
uniform vec3 ink;
out vec4 color;
void main()
{
  color = vec4(ink, texelFetch(text, ivec2(gl_FragCoord.xy) - corner, 0).a);
})"))
  , LineProgram(zylBuildProgram(R"(#version 150
uniform vec3 ink;
out vec4 color;
void main()
{
  color = vec4(ink, 1.0);
})",
      R"(#version 150
uniform vec2 corners[4];
void main()
{
  gl_Position = vec4(corners[gl_VertexID], 0.0, 1.0);
})"))
{
  glGenVertexArrays(1, &this->VertexArray);
  glGenTextures(1, &this->Texture);
  glGenTextures(1, &this->Kept);
  glGenFramebuffers(1, &this->Framebuffer);
}

//--------------------------------------------------------------------------------------------------
zylViewPaint::~zylViewPaint()
{
  glDeleteFramebuffers(1, &this->Framebuffer);
  glDeleteTextures(1, &this->Kept);
  glDeleteTextures(1, &this->Texture);
  glDeleteVertexArrays(1, &this->VertexArray);
  glDeleteProgram(this->LineProgram);
  glDeleteProgram(this->Program);
}

//--------------------------------------------------------------------------------------------------
void zylViewPaint::SetSize(int width, int height, int pixelRatio)
{
  this->Width = width;
  this->Height = height;
  this->PixelRatio = pixelRatio;
}

//--------------------------------------------------------------------------------------------------
// Without any shader.
void zylViewPaint::Fill(double x, double y, double width, double height, const double* color) const
{
  glEnable(GL_SCISSOR_TEST);
  glScissor(Pixel(x), Pixel(y), std::max(Pixel(width), 0), std::max(Pixel(height), 1));
  glClearColor(
    static_cast<float>(color[0]), static_cast<float>(color[1]), static_cast<float>(color[2]), 1.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  glDisable(GL_SCISSOR_TEST);
}

//--------------------------------------------------------------------------------------------------
void zylViewPaint::Frame(double x, double y, double width, double height, const double* color) const
{
  const double line = this->PixelRatio;
  this->Fill(x, y, width, line, color);
  this->Fill(x, y + height - line, width, line, color);
  this->Fill(x, y, line, height, color);
  this->Fill(x + width - line, y, line, height, color);
}

//--------------------------------------------------------------------------------------------------
// A narrow rectangle: lines of the toolkit's kind of context are a pixel wide.
void zylViewPaint::Line(
  const double from[2], const double to[2], double width, const double* color) const
{
  const double along[2] = { to[0] - from[0], to[1] - from[1] };
  const double length = std::max(std::hypot(along[0], along[1]), 1.0);
  const double aside[2] = { -along[1] / length * width / 2.0, along[0] / length * width / 2.0 };
  float corners[8];
  for (int i = 0; i < 4; ++i)
  {
    const double* end = i < 2 ? from : to;
    const double side = i % 2 == 0 ? 1.0 : -1.0;
    corners[2 * i] = static_cast<float>(2.0 * (end[0] + side * aside[0]) / this->Width - 1.0);
    corners[2 * i + 1] = static_cast<float>(2.0 * (end[1] + side * aside[1]) / this->Height - 1.0);
  }
  glDisable(GL_DEPTH_TEST);
  glUseProgram(this->LineProgram);
  glUniform2fv(glGetUniformLocation(this->LineProgram, "corners"), 4, corners);
  glUniform3f(glGetUniformLocation(this->LineProgram, "ink"), static_cast<float>(color[0]),
    static_cast<float>(color[1]), static_cast<float>(color[2]));
  glBindVertexArray(this->VertexArray);
  glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
  glBindVertexArray(0);
  glUseProgram(0);
  glEnable(GL_DEPTH_TEST);
}

//--------------------------------------------------------------------------------------------------
void zylViewPaint::Measure(const std::string& text, int size[2]) const
{
  vtkNew<vtkTextProperty> property;
  property->SetFontSize(FontSize);
  int box[4] = { 0, -1, 0, -1 };
  vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
  if (renderer != nullptr)
  {
    renderer->GetBoundingBox(property, text, box, Dots * this->PixelRatio);
  }
  size[0] = box[1] - box[0] + 1;
  size[1] = box[3] - box[2] + 1;
}

//--------------------------------------------------------------------------------------------------
// The toolkit makes a picture of the text.
void zylViewPaint::Text(double x, double y, const std::string& text, const double* color) const
{
  vtkNew<vtkTextProperty> property;
  vtkNew<vtkImageData> image;
  int size[2] = { 0, 0 };
  property->SetFontSize(FontSize);
  vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
  if (renderer == nullptr ||
    !renderer->RenderString(property, text, image, size, Dots * this->PixelRatio) || size[0] < 1)
  {
    return;
  }
  glBindTexture(GL_TEXTURE_2D, this->Texture);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  int extent[3];
  image->GetDimensions(extent); // as large as the toolkit likes, with the text in the lower left
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, extent[0], extent[1], 0, GL_RGBA, GL_UNSIGNED_BYTE,
    image->GetScalarPointer());
  glViewport(Pixel(x), Pixel(y), size[0], size[1]);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glDisable(GL_DEPTH_TEST);
  glUseProgram(this->Program);
  glUniform2i(glGetUniformLocation(this->Program, "corner"), Pixel(x), Pixel(y));
  glUniform3f(glGetUniformLocation(this->Program, "ink"), static_cast<float>(color[0]),
    static_cast<float>(color[1]), static_cast<float>(color[2]));
  glBindVertexArray(this->VertexArray);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glBindVertexArray(0);
  glUseProgram(0);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glBindTexture(GL_TEXTURE_2D, 0);
  glViewport(0, 0, this->Width, this->Height);
}

//--------------------------------------------------------------------------------------------------
void zylViewPaint::Keep()
{
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, this->Framebuffer);
  if (this->KeptSize[0] != this->Width || this->KeptSize[1] != this->Height)
  {
    glBindTexture(GL_TEXTURE_2D, this->Kept);
    glTexImage2D(
      GL_TEXTURE_2D, 0, GL_RGBA8, this->Width, this->Height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(GL_TEXTURE_2D, 0);
    glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, this->Kept, 0);
    this->KeptSize[0] = this->Width;
    this->KeptSize[1] = this->Height;
  }
  glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
  glBlitFramebuffer(0, 0, this->Width, this->Height, 0, 0, this->Width, this->Height,
    GL_COLOR_BUFFER_BIT, GL_NEAREST);
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

//--------------------------------------------------------------------------------------------------
bool zylViewPaint::PutBack() const
{
  if (this->KeptSize[0] != this->Width || this->KeptSize[1] != this->Height)
  {
    return false;
  }
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->Framebuffer);
  glBlitFramebuffer(0, 0, this->Width, this->Height, 0, 0, this->Width, this->Height,
    GL_COLOR_BUFFER_BIT, GL_NEAREST);
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  return true;
}
