#include "zylOddState.h"

#include "zylTestHost.h"

#include <vtk_glew.h>

namespace {
constexpr GLenum TextureTargets[] = { GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D,
  GL_TEXTURE_CUBE_MAP, GL_TEXTURE_1D_ARRAY, GL_TEXTURE_2D_ARRAY, GL_TEXTURE_RECTANGLE,
  GL_TEXTURE_BUFFER, GL_TEXTURE_2D_MULTISAMPLE };
constexpr unsigned int TargetCount = sizeof(TextureTargets) / sizeof(TextureTargets[0]);
constexpr unsigned int Units = 12;

GLuint MakeProgram()
{
  return zylMakeProgram("#version 130\nvoid main() { gl_Position = vec4(0.0); }",
    "#version 130\nout vec4 o; void main() { o = vec4(1.0); }");
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylOddState::zylOddState(unsigned int seed)
  : Random(seed)
  , Buffers(6)
  , VertexArrays(3)
  , Textures(3 * TargetCount)
  , Samplers(2)
  , Renderbuffers(2)
{
  GLint version[2] = { 0, 0 };
  glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
  glGetIntegerv(GL_MINOR_VERSION, &version[1]);
  this->Version = 10 * version[0] + version[1];
  glGenBuffers(6, this->Buffers.data());
  glGenVertexArrays(3, this->VertexArrays.data());
  glGenTextures(static_cast<GLsizei>(this->Textures.size()), this->Textures.data());
  glGenSamplers(2, this->Samplers.data());
  glGenRenderbuffers(2, this->Renderbuffers.data());
  for (GLuint i = 0; i < 3; ++i)
  {
    glBindVertexArray(this->VertexArrays[i]);
    glBindBuffer(GL_ARRAY_BUFFER, this->Buffers[i]);
    glVertexAttribPointer(2 * i, 2, GL_FLOAT, GL_FALSE, 8 * i, nullptr);
    glEnableVertexAttribArray(2 * i);
  }
  this->Programs = { 0, MakeProgram(), MakeProgram() };
  for (auto* names : { &this->Buffers, &this->VertexArrays, &this->Samplers, &this->Renderbuffers })
  {
    names->push_back(0);
  }
}

//--------------------------------------------------------------------------------------------------
zylOddState::~zylOddState() = default;

//--------------------------------------------------------------------------------------------------
void zylOddState::Apply()
{
  this->Bindings();
  this->Capabilities();
  this->Fragments();
  this->Raster();
}

//--------------------------------------------------------------------------------------------------
void zylOddState::Bindings()
{
  for (unsigned int unit = 0; unit < Units; ++unit)
  {
    glActiveTexture(GL_TEXTURE0 + unit);
    for (unsigned int i = 0; i < TargetCount; ++i)
    {
      const unsigned int choice = this->Any(4);
      glBindTexture(TextureTargets[i], choice == 3 ? 0 : this->Textures[3 * i + choice]);
    }
    glBindSampler(unit, this->AnyOf(this->Samplers));
  }
  glActiveTexture(GL_TEXTURE0 + this->Any(Units));
  glBindVertexArray(this->AnyOf(this->VertexArrays));
  for (const GLenum target :
    { GL_ELEMENT_ARRAY_BUFFER, GL_ARRAY_BUFFER, GL_PIXEL_PACK_BUFFER, GL_PIXEL_UNPACK_BUFFER,
      GL_UNIFORM_BUFFER, GL_TEXTURE_BUFFER, GL_COPY_READ_BUFFER, GL_COPY_WRITE_BUFFER })
  {
    glBindBuffer(target, this->AnyOf(this->Buffers));
  }
  if (this->Version >= 43)
  {
    glBindBuffer(GL_SHADER_STORAGE_BUFFER, this->AnyOf(this->Buffers));
    glBindBuffer(GL_DRAW_INDIRECT_BUFFER, this->AnyOf(this->Buffers));
    glBindBuffer(GL_DISPATCH_INDIRECT_BUFFER, this->AnyOf(this->Buffers));
  }
  glBindBufferBase(GL_UNIFORM_BUFFER, this->Any(4), this->AnyOf(this->Buffers));
  glBindRenderbuffer(GL_RENDERBUFFER, this->AnyOf(this->Renderbuffers));
  glUseProgram(this->AnyOf(this->Programs));
}

//--------------------------------------------------------------------------------------------------
void zylOddState::Capabilities()
{
  std::vector<GLenum> names = { GL_BLEND, GL_COLOR_LOGIC_OP, GL_CULL_FACE, GL_DEPTH_CLAMP,
    GL_DEPTH_TEST, GL_DITHER, GL_FRAMEBUFFER_SRGB, GL_LINE_SMOOTH, GL_MULTISAMPLE,
    GL_POLYGON_OFFSET_FILL, GL_POLYGON_OFFSET_LINE, GL_POLYGON_OFFSET_POINT, GL_POLYGON_SMOOTH,
    GL_PRIMITIVE_RESTART, GL_PROGRAM_POINT_SIZE, GL_RASTERIZER_DISCARD, GL_SAMPLE_ALPHA_TO_COVERAGE,
    GL_SAMPLE_ALPHA_TO_ONE, GL_SAMPLE_COVERAGE, GL_SAMPLE_MASK, GL_SCISSOR_TEST, GL_STENCIL_TEST,
    GL_TEXTURE_CUBE_MAP_SEAMLESS };
  for (GLenum i = 0; i < 6; ++i)
  {
    names.push_back(GL_CLIP_DISTANCE0 + i);
  }
  if (this->Version >= 40)
  {
    names.push_back(GL_SAMPLE_SHADING);
    glMinSampleShading(this->Part());
    glPatchParameteri(GL_PATCH_VERTICES, 1 + this->Any(8));
  }
  if (this->Version >= 43)
  {
    names.push_back(GL_PRIMITIVE_RESTART_FIXED_INDEX);
  }
  for (const GLenum name : names)
  {
    this->Coin() ? glEnable(name) : glDisable(name);
  }
}

//--------------------------------------------------------------------------------------------------
void zylOddState::Fragments()
{
  const std::vector<GLenum> factors = { GL_ZERO, GL_ONE, GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR,
    GL_DST_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_DST_ALPHA, GL_CONSTANT_COLOR, GL_SRC_ALPHA_SATURATE };
  const std::vector<GLenum> equations = { GL_FUNC_ADD, GL_FUNC_SUBTRACT, GL_FUNC_REVERSE_SUBTRACT,
    GL_MIN, GL_MAX };
  const std::vector<GLenum> functions = { GL_NEVER, GL_LESS, GL_EQUAL, GL_LEQUAL, GL_GREATER,
    GL_NOTEQUAL, GL_GEQUAL, GL_ALWAYS };
  const std::vector<GLenum> operations = { GL_KEEP, GL_ZERO, GL_REPLACE, GL_INCR, GL_DECR,
    GL_INVERT, GL_INCR_WRAP };
  glBlendFuncSeparate(
    this->AnyOf(factors), this->AnyOf(factors), this->AnyOf(factors), this->AnyOf(factors));
  glBlendEquationSeparate(this->AnyOf(equations), this->AnyOf(equations));
  for (GLuint i = 0; i < 8; ++i)
  {
    this->Coin() ? glEnablei(GL_BLEND, i) : glDisablei(GL_BLEND, i);
    glColorMaski(i, this->Coin(), this->Coin(), this->Coin(), this->Coin());
    if (this->Version >= 40 && this->Coin())
    {
      glBlendFuncSeparatei(
        i, this->AnyOf(factors), this->AnyOf(factors), this->AnyOf(factors), this->AnyOf(factors));
      glBlendEquationSeparatei(i, this->AnyOf(equations), this->AnyOf(equations));
    }
  }
  glBlendColor(this->Part(), this->Part(), this->Part(), this->Part());
  glClearColor(this->Part(), this->Part(), this->Part(), this->Part());
  glClearDepth(this->Part());
  glClearStencil(static_cast<GLint>(this->Any(256)));
  glDepthFunc(this->AnyOf(functions));
  glDepthMask(this->Coin());
  for (const GLenum face : { GL_FRONT, GL_BACK })
  {
    glStencilFuncSeparate(
      face, this->AnyOf(functions), static_cast<GLint>(this->Any(256)), this->Bits());
    glStencilMaskSeparate(face, this->Bits());
    glStencilOpSeparate(
      face, this->AnyOf(operations), this->AnyOf(operations), this->AnyOf(operations));
  }
  glLogicOp(GL_CLEAR + this->Any(16));
  glSampleCoverage(this->Part(), this->Coin());
  glSampleMaski(0, this->Bits());
}

//--------------------------------------------------------------------------------------------------
void zylOddState::Raster()
{
  const GLuint viewports = this->Version >= 41 ? 16 : 1;
  glViewport(this->Any(50), this->Any(50), this->Any(300), this->Any(300));
  glScissor(this->Any(50), this->Any(50), this->Any(300), this->Any(300));
  glDepthRange(this->Part(), this->Part());
  for (GLuint i = 0; viewports > 1 && i < viewports; ++i)
  {
    if (this->Coin())
    {
      glViewportIndexedf(i, this->Part(), this->Part(), 10 * this->Part(), 10 * this->Part());
      glScissorIndexed(i, this->Any(9), this->Any(9), this->Any(99), this->Any(99));
      glDepthRangeIndexed(i, this->Part(), this->Part());
      this->Coin() ? glEnablei(GL_SCISSOR_TEST, i) : glDisablei(GL_SCISSOR_TEST, i);
    }
  }
  if (this->Version >= 45)
  {
    glClipControl(this->Coin() ? GL_LOWER_LEFT : GL_UPPER_LEFT,
      this->Coin() ? GL_NEGATIVE_ONE_TO_ONE : GL_ZERO_TO_ONE);
  }
  glCullFace(this->AnyOf({ GL_FRONT, GL_BACK, GL_FRONT_AND_BACK }));
  glFrontFace(this->Coin() ? GL_CW : GL_CCW);
  glPolygonMode(GL_FRONT_AND_BACK, this->AnyOf({ GL_POINT, GL_LINE, GL_FILL }));
  glPolygonOffset(this->Part(), this->Part());
  glLineWidth(1.0f + this->Part());
  glPointSize(1.0f + this->Part());
  glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, this->Part());
  glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, this->Coin() ? GL_LOWER_LEFT : GL_UPPER_LEFT);
  glPrimitiveRestartIndex(this->Bits());
  glProvokingVertex(this->Coin() ? GL_FIRST_VERTEX_CONVENTION : GL_LAST_VERTEX_CONVENTION);
  for (const GLenum name : { GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS,
         GL_PACK_IMAGE_HEIGHT, GL_PACK_SKIP_IMAGES, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS,
         GL_UNPACK_SKIP_PIXELS, GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_SKIP_IMAGES })
  {
    glPixelStorei(name, static_cast<GLint>(this->Any(10)));
  }
  for (const GLenum name :
    { GL_PACK_SWAP_BYTES, GL_PACK_LSB_FIRST, GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST })
  {
    glPixelStorei(name, this->Coin());
  }
  glPixelStorei(GL_PACK_ALIGNMENT, 1 << this->Any(4));
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1 << this->Any(4));
}
