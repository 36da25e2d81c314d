#include "Host/zylHostGLState.h"

#include <algorithm>

#include <vtk_glew.h>

namespace {
struct Capability
{
  GLenum Name;
  int Since;                  // OpenGL version, 10 * major + minor
  bool Neutral;               // what the renderer expects
  bool Compatibility = false; // exists in compatibility contexts only
};

constexpr Capability CapabilityTable[] = {
  { GL_DEPTH_TEST, 10, true },
  { GL_MULTISAMPLE, 13, true },
  { GL_DITHER, 10, true },
  { GL_CULL_FACE, 10, false },
  { GL_STENCIL_TEST, 10, false },
  { GL_COLOR_LOGIC_OP, 11, false },
  { GL_DEPTH_CLAMP, 32, false },
  { GL_FRAMEBUFFER_SRGB, 30, false },
  { GL_LINE_SMOOTH, 10, false },
  { GL_POLYGON_SMOOTH, 10, false },
  { GL_POLYGON_OFFSET_FILL, 11, false },
  { GL_POLYGON_OFFSET_LINE, 11, false },
  { GL_POLYGON_OFFSET_POINT, 11, false },
  { GL_PRIMITIVE_RESTART, 31, false },
  { GL_PRIMITIVE_RESTART_FIXED_INDEX, 43, false },
  { GL_PROGRAM_POINT_SIZE, 32, false },
  { GL_RASTERIZER_DISCARD, 30, false },
  { GL_SAMPLE_ALPHA_TO_COVERAGE, 13, false },
  { GL_SAMPLE_ALPHA_TO_ONE, 13, false },
  { GL_SAMPLE_COVERAGE, 13, false },
  { GL_SAMPLE_MASK, 32, false },
  { GL_SAMPLE_SHADING, 40, false },
  { GL_TEXTURE_CUBE_MAP_SEAMLESS, 32, false },
  { GL_ALPHA_TEST, 10, false, true },
  { GL_LINE_STIPPLE, 10, false, true },
  { GL_POLYGON_STIPPLE, 10, false, true },
  { GL_POINT_SPRITE, 20, true, true },
};
constexpr std::size_t CapabilityCount = sizeof(CapabilityTable) / sizeof(CapabilityTable[0]);

struct BufferTarget
{
  GLenum Target;
  GLenum Binding;
  int Since;
};

constexpr BufferTarget BufferTable[] = {
  { GL_ARRAY_BUFFER, GL_ARRAY_BUFFER_BINDING, 15 },
  { GL_PIXEL_PACK_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING, 21 },
  { GL_PIXEL_UNPACK_BUFFER, GL_PIXEL_UNPACK_BUFFER_BINDING, 21 },
  { GL_TEXTURE_BUFFER, GL_TEXTURE_BUFFER, 31 },
  { GL_UNIFORM_BUFFER, GL_UNIFORM_BUFFER_BINDING, 31 },
  { GL_COPY_READ_BUFFER, GL_COPY_READ_BUFFER, 31 },
  { GL_COPY_WRITE_BUFFER, GL_COPY_WRITE_BUFFER, 31 },
};
constexpr std::size_t BufferCount = sizeof(BufferTable) / sizeof(BufferTable[0]);

constexpr BufferTarget TextureTable[] = {
  { GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D, 10 },
  { GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D, 10 },
  { GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D, 12 },
  { GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP, 13 },
  { GL_TEXTURE_1D_ARRAY, GL_TEXTURE_BINDING_1D_ARRAY, 30 },
  { GL_TEXTURE_2D_ARRAY, GL_TEXTURE_BINDING_2D_ARRAY, 30 },
  { GL_TEXTURE_RECTANGLE, GL_TEXTURE_BINDING_RECTANGLE, 31 },
  { GL_TEXTURE_BUFFER, GL_TEXTURE_BINDING_BUFFER, 31 },
  { GL_TEXTURE_2D_MULTISAMPLE, GL_TEXTURE_BINDING_2D_MULTISAMPLE, 32 },
  { GL_TEXTURE_2D_MULTISAMPLE_ARRAY, GL_TEXTURE_BINDING_2D_MULTISAMPLE_ARRAY, 32 },
  { GL_TEXTURE_CUBE_MAP_ARRAY, GL_TEXTURE_BINDING_CUBE_MAP_ARRAY, 40 },
};
constexpr std::size_t TextureTargetCount = sizeof(TextureTable) / sizeof(TextureTable[0]);

int GetInt(GLenum name)
{
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}

// All 32 bits, which the query for signed integers would clamp.
unsigned int GetUnsigned(GLenum name)
{
  if (!glGetInteger64v)
  {
    return static_cast<unsigned int>(GetInt(name));
  }
  GLint64 value = 0;
  glGetInteger64v(name, &value);
  return static_cast<unsigned int>(value);
}

float GetFloat(GLenum name)
{
  GLfloat value = 0.0f;
  glGetFloatv(name, &value);
  return value;
}

void Enable(GLenum name, bool on)
{
  on ? glEnable(name) : glDisable(name);
}

void Enable(GLenum name, unsigned int index, bool on)
{
  on ? glEnablei(name, index) : glDisablei(name, index);
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylHostGLState::Save()
{
  static_assert(
    CapabilityCount <= MaxCapabilities && BufferCount <= 7 && TextureTargetCount <= MaxTargets,
    "the stores hold one entry per table row");
  this->Errors = std::make_unique<zylHostErrors>();
  this->ReadContext();
  if (this->AtLeast(40) && GetInt(GL_TRANSFORM_FEEDBACK_ACTIVE) &&
    !GetInt(GL_TRANSFORM_FEEDBACK_PAUSED))
  {
    glPauseTransformFeedback();
    this->FeedbackPaused = true;
  }
  this->SaveBindings();
  this->SaveCapabilities();
  this->SaveDrawBuffers();
  this->SaveViewports();
  this->SaveFragmentTests();
  this->SaveRaster();
  this->Neutralize();
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveTextureUnit(unsigned int index)
{
  for (const TextureUnit& unit : this->TextureUnits)
  {
    if (unit.Index == index)
    {
      return;
    }
  }
  const int active = GetInt(GL_ACTIVE_TEXTURE);
  TextureUnit unit;
  unit.Index = index;
  unit.Sampler = 0;
  glActiveTexture(GL_TEXTURE0 + index);
  for (std::size_t i = 0; i < TextureTargetCount; ++i)
  {
    unit.Bindings[i] = this->AtLeast(TextureTable[i].Since) ? GetInt(TextureTable[i].Binding) : 0;
  }
  if (this->AtLeast(33))
  {
    unit.Sampler = GetInt(GL_SAMPLER_BINDING);
    glBindSampler(index, 0);
  }
  glActiveTexture(active);
  this->TextureUnits.push_back(unit);
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::Restore()
{
  this->RestoreRaster();
  this->RestoreFragmentTests();
  this->RestoreViewports();
  this->RestoreDrawBuffers();
  this->RestoreCapabilities();
  this->RestoreTextureUnits();
  this->RestoreBindings();
  if (this->FeedbackPaused)
  {
    glResumeTransformFeedback();
    this->FeedbackPaused = false;
  }
  this->Errors = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::ReadContext()
{
  this->Version = 10 * GetInt(GL_MAJOR_VERSION) + GetInt(GL_MINOR_VERSION);
  this->Compatibility = zylHostPixelState::IsCompatible();
  this->DrawBufferCount =
    std::min(static_cast<std::size_t>(GetInt(GL_MAX_DRAW_BUFFERS)), MaxDrawBuffers);
  this->ViewportCount = this->AtLeast(41)
    ? std::min(static_cast<std::size_t>(GetInt(GL_MAX_VIEWPORTS)), MaxViewports)
    : 1;
  this->ClipDistanceCount = std::min(GetInt(GL_MAX_CLIP_DISTANCES), 8);
  this->TextureUnits.clear();
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveBindings()
{
  this->DrawFramebuffer = GetInt(GL_DRAW_FRAMEBUFFER_BINDING);
  this->ReadFramebuffer = GetInt(GL_READ_FRAMEBUFFER_BINDING);
  this->Renderbuffer = GetInt(GL_RENDERBUFFER_BINDING);
  this->Program = GetInt(GL_CURRENT_PROGRAM);
  for (std::size_t i = 0; i < BufferCount; ++i)
  {
    this->Buffers[i] = this->AtLeast(BufferTable[i].Since) ? GetInt(BufferTable[i].Binding) : 0;
  }
  // The element buffer belongs to the vertex array. With none bound while rendering, the host's own
  // keeps its element buffer.
  this->VertexArray = GetInt(GL_VERTEX_ARRAY_BINDING);
  glBindVertexArray(0);
  this->DefaultElementBuffer = GetInt(GL_ELEMENT_ARRAY_BUFFER_BINDING);
  this->ActiveTexture = GetInt(GL_ACTIVE_TEXTURE);
  this->SaveTextureUnit(this->ActiveTexture - GL_TEXTURE0);
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveCapabilities()
{
  for (std::size_t i = 0; i < CapabilityCount; ++i)
  {
    const Capability& row = CapabilityTable[i];
    if (this->AtLeast(row.Since) && (this->Compatibility || !row.Compatibility))
    {
      this->Capabilities[i] = glIsEnabled(row.Name) == GL_TRUE;
    }
  }
  for (int i = 0; i < this->ClipDistanceCount; ++i)
  {
    this->ClipDistances[i] = glIsEnabled(GL_CLIP_DISTANCE0 + i) == GL_TRUE;
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveDrawBuffers()
{
  const GLenum functions[4] = { GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA,
    GL_BLEND_DST_ALPHA };
  const GLenum equations[2] = { GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA };
  for (GLuint i = 0; i < this->DrawBufferCount; ++i)
  {
    DrawBuffer& buffer = this->DrawBuffers[i];
    buffer.Blend = glIsEnabledi(GL_BLEND, i) == GL_TRUE;
    glGetBooleani_v(GL_COLOR_WRITEMASK, i, buffer.Mask.data());
    for (int k = 0; k < 4; ++k)
    {
      this->AtLeast(40) ? glGetIntegeri_v(functions[k], i, &buffer.Functions[k])
                        : glGetIntegerv(functions[k], &buffer.Functions[k]);
    }
    for (int k = 0; k < 2; ++k)
    {
      this->AtLeast(40) ? glGetIntegeri_v(equations[k], i, &buffer.Equations[k])
                        : glGetIntegerv(equations[k], &buffer.Equations[k]);
    }
  }
  glGetFloatv(GL_BLEND_COLOR, this->BlendColor.data());
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveViewports()
{
  if (!this->AtLeast(41))
  {
    Viewport& viewport = this->Viewports[0];
    glGetFloatv(GL_VIEWPORT, viewport.Box.data());
    glGetDoublev(GL_DEPTH_RANGE, viewport.Depth.data());
    glGetIntegerv(GL_SCISSOR_BOX, viewport.Scissor.data());
    viewport.ScissorTest = glIsEnabled(GL_SCISSOR_TEST) == GL_TRUE;
  }
  else
  {
    for (GLuint i = 0; i < this->ViewportCount; ++i)
    {
      Viewport& viewport = this->Viewports[i];
      glGetFloati_v(GL_VIEWPORT, i, viewport.Box.data());
      glGetDoublei_v(GL_DEPTH_RANGE, i, viewport.Depth.data());
      glGetIntegeri_v(GL_SCISSOR_BOX, i, viewport.Scissor.data());
      viewport.ScissorTest = glIsEnabledi(GL_SCISSOR_TEST, i) == GL_TRUE;
    }
  }
  if (this->AtLeast(45))
  {
    this->ClipControl = { GetInt(GL_CLIP_ORIGIN), GetInt(GL_CLIP_DEPTH_MODE) };
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveFragmentTests()
{
  this->Stencil[0] = { GetInt(GL_STENCIL_FUNC), GetInt(GL_STENCIL_REF),
    GetUnsigned(GL_STENCIL_VALUE_MASK), GetUnsigned(GL_STENCIL_WRITEMASK), GetInt(GL_STENCIL_FAIL),
    GetInt(GL_STENCIL_PASS_DEPTH_FAIL), GetInt(GL_STENCIL_PASS_DEPTH_PASS) };
  this->Stencil[1] = { GetInt(GL_STENCIL_BACK_FUNC), GetInt(GL_STENCIL_BACK_REF),
    GetUnsigned(GL_STENCIL_BACK_VALUE_MASK), GetUnsigned(GL_STENCIL_BACK_WRITEMASK),
    GetInt(GL_STENCIL_BACK_FAIL), GetInt(GL_STENCIL_BACK_PASS_DEPTH_FAIL),
    GetInt(GL_STENCIL_BACK_PASS_DEPTH_PASS) };
  glGetFloatv(GL_COLOR_CLEAR_VALUE, this->ClearColor.data());
  glGetDoublev(GL_DEPTH_CLEAR_VALUE, &this->ClearDepth);
  this->ClearStencil = GetInt(GL_STENCIL_CLEAR_VALUE);
  this->DepthFunction = GetInt(GL_DEPTH_FUNC);
  glGetBooleanv(GL_DEPTH_WRITEMASK, &this->DepthMask);
  this->LogicOperation = GetInt(GL_LOGIC_OP_MODE);
  this->SampleCoverage = GetFloat(GL_SAMPLE_COVERAGE_VALUE);
  glGetBooleanv(GL_SAMPLE_COVERAGE_INVERT, &this->SampleCoverageInvert);
  if (this->AtLeast(32))
  {
    GLint64 mask = 0;
    glGetInteger64i_v(GL_SAMPLE_MASK_VALUE, 0, &mask);
    this->SampleMask = static_cast<unsigned int>(mask);
  }
  if (this->AtLeast(40))
  {
    this->MinSampleShading = GetFloat(GL_MIN_SAMPLE_SHADING_VALUE);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::SaveRaster()
{
  this->CullFace = GetInt(GL_CULL_FACE_MODE);
  this->FrontFace = GetInt(GL_FRONT_FACE);
  glGetIntegerv(GL_POLYGON_MODE, this->PolygonMode.data());
  this->OffsetFactor = GetFloat(GL_POLYGON_OFFSET_FACTOR);
  this->OffsetUnits = GetFloat(GL_POLYGON_OFFSET_UNITS);
  this->OffsetClamp = this->AtLeast(46) ? GetFloat(GL_POLYGON_OFFSET_CLAMP) : 0.0f;
  this->LineWidth = GetFloat(GL_LINE_WIDTH);
  this->PointSize = GetFloat(GL_POINT_SIZE);
  this->PointFade = GetFloat(GL_POINT_FADE_THRESHOLD_SIZE);
  this->PointSpriteOrigin = GetInt(GL_POINT_SPRITE_COORD_ORIGIN);
  this->ProvokingVertex = this->AtLeast(32) ? GetInt(GL_PROVOKING_VERTEX) : 0;
  this->RestartIndex = this->AtLeast(31) ? GetUnsigned(GL_PRIMITIVE_RESTART_INDEX) : 0;
  this->Pixels.Save(this->Compatibility);
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::Neutralize()
{
  glUseProgram(0);
  for (std::size_t i = 0; i < BufferCount; ++i)
  {
    if (this->Buffers[i])
    {
      glBindBuffer(BufferTable[i].Target, 0);
    }
  }
  for (std::size_t i = 0; i < CapabilityCount; ++i)
  {
    const Capability& row = CapabilityTable[i];
    if (this->AtLeast(row.Since) && (this->Compatibility || !row.Compatibility) &&
      this->Capabilities[i] != row.Neutral)
    {
      Enable(row.Name, row.Neutral);
    }
  }
  for (int i = 0; i < this->ClipDistanceCount; ++i)
  {
    Enable(GL_CLIP_DISTANCE0 + i, false);
  }
  glEnable(GL_BLEND);
  glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  glBlendEquation(GL_FUNC_ADD);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glDisable(GL_SCISSOR_TEST);
  glDepthRange(0.0, 1.0);
  if (this->AtLeast(45))
  {
    glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
  }
  glStencilMask(~0u);
  glStencilFunc(GL_ALWAYS, 0, ~0u);
  glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
  glClearDepth(1.0);
  glClearStencil(0);
  glDepthFunc(GL_LEQUAL);
  glDepthMask(GL_TRUE);
  glLogicOp(GL_COPY);
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glPolygonOffset(0.0f, 0.0f);
  glLineWidth(1.0f);
  glPointSize(1.0f);
  glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, 1.0f);
  glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, GL_UPPER_LEFT);
  if (this->AtLeast(32))
  {
    glProvokingVertex(GL_LAST_VERTEX_CONVENTION);
  }
  this->Pixels.Neutralize();
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreBindings()
{
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, this->DrawFramebuffer);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, this->ReadFramebuffer);
  glBindRenderbuffer(GL_RENDERBUFFER, this->Renderbuffer);
  glUseProgram(this->Program);
  for (std::size_t i = 0; i < BufferCount; ++i)
  {
    if (this->AtLeast(BufferTable[i].Since))
    {
      glBindBuffer(BufferTable[i].Target, this->Buffers[i]);
    }
  }
  glBindVertexArray(0);
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, this->DefaultElementBuffer);
  glBindVertexArray(this->VertexArray);
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreCapabilities()
{
  for (std::size_t i = 0; i < CapabilityCount; ++i)
  {
    const Capability& row = CapabilityTable[i];
    if (this->AtLeast(row.Since) && (this->Compatibility || !row.Compatibility))
    {
      Enable(row.Name, this->Capabilities[i]);
    }
  }
  for (int i = 0; i < this->ClipDistanceCount; ++i)
  {
    Enable(GL_CLIP_DISTANCE0 + i, this->ClipDistances[i]);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreDrawBuffers()
{
  for (GLuint i = 0; i < this->DrawBufferCount; ++i)
  {
    const DrawBuffer& buffer = this->DrawBuffers[i];
    const auto& f = buffer.Functions;
    Enable(GL_BLEND, i, buffer.Blend);
    glColorMaski(i, buffer.Mask[0], buffer.Mask[1], buffer.Mask[2], buffer.Mask[3]);
    if (this->AtLeast(40))
    {
      glBlendFuncSeparatei(i, f[0], f[1], f[2], f[3]);
      glBlendEquationSeparatei(i, buffer.Equations[0], buffer.Equations[1]);
    }
    else if (i == 0)
    {
      glBlendFuncSeparate(f[0], f[1], f[2], f[3]);
      glBlendEquationSeparate(buffer.Equations[0], buffer.Equations[1]);
    }
  }
  glBlendColor(this->BlendColor[0], this->BlendColor[1], this->BlendColor[2], this->BlendColor[3]);
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreViewports()
{
  if (!this->AtLeast(41))
  {
    const Viewport& viewport = this->Viewports[0];
    glViewport(static_cast<GLint>(viewport.Box[0]), static_cast<GLint>(viewport.Box[1]),
      static_cast<GLsizei>(viewport.Box[2]), static_cast<GLsizei>(viewport.Box[3]));
    glDepthRange(viewport.Depth[0], viewport.Depth[1]);
    glScissor(viewport.Scissor[0], viewport.Scissor[1], viewport.Scissor[2], viewport.Scissor[3]);
    Enable(GL_SCISSOR_TEST, viewport.ScissorTest);
  }
  else
  {
    for (GLuint i = 0; i < this->ViewportCount; ++i)
    {
      const Viewport& viewport = this->Viewports[i];
      glViewportIndexedfv(i, viewport.Box.data());
      glDepthRangeIndexed(i, viewport.Depth[0], viewport.Depth[1]);
      glScissorIndexedv(i, viewport.Scissor.data());
      Enable(GL_SCISSOR_TEST, i, viewport.ScissorTest);
    }
  }
  if (this->AtLeast(45))
  {
    glClipControl(this->ClipControl[0], this->ClipControl[1]);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreFragmentTests()
{
  const GLenum faces[2] = { GL_FRONT, GL_BACK };
  for (int i = 0; i < 2; ++i)
  {
    const StencilFace& face = this->Stencil[i];
    glStencilFuncSeparate(faces[i], face.Function, face.Reference, face.ValueMask);
    glStencilMaskSeparate(faces[i], face.WriteMask);
    glStencilOpSeparate(faces[i], face.Fail, face.DepthFail, face.DepthPass);
  }
  glClearColor(this->ClearColor[0], this->ClearColor[1], this->ClearColor[2], this->ClearColor[3]);
  glClearDepth(this->ClearDepth);
  glClearStencil(this->ClearStencil);
  glDepthFunc(this->DepthFunction);
  glDepthMask(this->DepthMask);
  glLogicOp(this->LogicOperation);
  glSampleCoverage(this->SampleCoverage, this->SampleCoverageInvert);
  if (this->AtLeast(32))
  {
    glSampleMaski(0, this->SampleMask);
  }
  if (this->AtLeast(40))
  {
    glMinSampleShading(this->MinSampleShading);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreRaster()
{
  glCullFace(this->CullFace);
  glFrontFace(this->FrontFace);
  if (this->Compatibility)
  {
    glPolygonMode(GL_FRONT, this->PolygonMode[0]);
    glPolygonMode(GL_BACK, this->PolygonMode[1]);
  }
  else
  {
    glPolygonMode(GL_FRONT_AND_BACK, this->PolygonMode[0]);
  }
  if (this->AtLeast(46))
  {
    glPolygonOffsetClamp(this->OffsetFactor, this->OffsetUnits, this->OffsetClamp);
  }
  else
  {
    glPolygonOffset(this->OffsetFactor, this->OffsetUnits);
  }
  glLineWidth(this->LineWidth);
  glPointSize(this->PointSize);
  glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, this->PointFade);
  glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, this->PointSpriteOrigin);
  if (this->AtLeast(32))
  {
    glProvokingVertex(this->ProvokingVertex);
  }
  if (this->AtLeast(31))
  {
    glPrimitiveRestartIndex(this->RestartIndex);
  }
  this->Pixels.Restore();
}

//--------------------------------------------------------------------------------------------------
void zylHostGLState::RestoreTextureUnits()
{
  for (const TextureUnit& unit : this->TextureUnits)
  {
    glActiveTexture(GL_TEXTURE0 + unit.Index);
    for (std::size_t i = 0; i < TextureTargetCount; ++i)
    {
      if (this->AtLeast(TextureTable[i].Since))
      {
        glBindTexture(TextureTable[i].Target, unit.Bindings[i]);
      }
    }
    if (this->AtLeast(33))
    {
      glBindSampler(unit.Index, unit.Sampler);
    }
  }
  glActiveTexture(this->ActiveTexture);
}
