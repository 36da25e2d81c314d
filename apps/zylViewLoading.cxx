#include "zylViewLoading.h"

#include "zylViewLook.h"
#include "zylViewOptions.h"

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
constexpr double BarWidth = 0.5, BarHeight = 0.012;

// Fills a rectangle without any shader; pixels from the lower left corner.
void Fill(double x, double y, double width, double height, const double* color)
{
  const auto pixel = [](double value) { return static_cast<int>(std::lround(value)); };
  glEnable(GL_SCISSOR_TEST);
  glScissor(pixel(x), pixel(y), pixel(width), std::max(pixel(height), 1));
  glClearColor(
    static_cast<float>(color[0]), static_cast<float>(color[1]), static_cast<float>(color[2]), 1.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  glDisable(GL_SCISSOR_TEST);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewLoading::zylViewLoading(const zylViewOptions& options)
  : Options(options)
{
  this->Program = zylBuildProgram(R"(#version 150
uniform sampler2D text;
uniform ivec2 corner;
uniform vec3 ink;
out vec4 color;
void main()
{
  color = vec4(ink, texelFetch(text, ivec2(gl_FragCoord.xy) - corner, 0).a);
})");
  glGenVertexArrays(1, &this->VertexArray);
  glGenTextures(1, &this->Texture);
}

//--------------------------------------------------------------------------------------------------
zylViewLoading::~zylViewLoading()
{
  glDeleteTextures(1, &this->Texture);
  glDeleteVertexArrays(1, &this->VertexArray);
  glDeleteProgram(this->Program);
}

//--------------------------------------------------------------------------------------------------
void zylViewLoading::Paint(
  int width, int height, int pixelRatio, const std::string& work, double fraction) const
{
  this->Backdrop.Paint(width, height, this->Options.BackgroundTop, this->Options.BackgroundBottom);
  this->PaintText(width, height, pixelRatio, work);
  this->PaintBar(width, height, fraction);
}

//--------------------------------------------------------------------------------------------------
void zylViewLoading::PaintBar(int width, int height, double fraction) const
{
  const double* ink = zylGetInk(this->Options, 0.5);
  double track[3];
  for (int i = 0; i < 3; ++i)
  {
    const double ground =
      (this->Options.BackgroundTop[i] + this->Options.BackgroundBottom[i]) / 2.0;
    track[i] = 0.75 * ground + 0.25 * ink[i];
  }
  const double x = width * (1.0 - BarWidth) / 2.0, y = height / 2.0;
  Fill(x, y, width * BarWidth, height * BarHeight, track);
  if (fraction > 0.0)
  {
    Fill(x, y, width * BarWidth * std::min(fraction, 1.0), height * BarHeight, ink);
  }
}

//--------------------------------------------------------------------------------------------------
// The toolkit makes a picture of the text, which is drawn above the bar.
void zylViewLoading::PaintText(int width, int height, int pixelRatio, const std::string& text) const
{
  vtkNew<vtkTextProperty> property;
  vtkNew<vtkImageData> image;
  int size[2] = { 0, 0 };
  property->SetFontSize(FontSize);
  vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
  if (renderer == nullptr ||
    !renderer->RenderString(property, text, image, size, 72 * pixelRatio) || size[0] < 1)
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
  const double* ink = zylGetInk(this->Options, 0.5);
  const int x = (width - size[0]) / 2, y = height / 2 + height / 20;
  glViewport(x, y, size[0], size[1]);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glDisable(GL_DEPTH_TEST);
  glUseProgram(this->Program);
  glUniform2i(glGetUniformLocation(this->Program, "corner"), x, y);
  glUniform3f(glGetUniformLocation(this->Program, "ink"), ink[0], ink[1], ink[2]);
  glBindVertexArray(this->VertexArray);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glBindVertexArray(0);
  glUseProgram(0);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glBindTexture(GL_TEXTURE_2D, 0);
  glViewport(0, 0, width, height);
}
