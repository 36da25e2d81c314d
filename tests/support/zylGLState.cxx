#include "zylGLState.h"

#include <algorithm>
#include <map>
#include <sstream>

#include <vtk_glew.h>

namespace {
struct Name
{
  GLenum Value;
  const char* Text;
};
#define N(name)                                                                                    \
  {                                                                                                \
    name, #name                                                                                    \
  }

const Name Capabilities[] = { N(GL_BLEND), N(GL_COLOR_LOGIC_OP), N(GL_CULL_FACE),
  N(GL_DEBUG_OUTPUT), N(GL_DEBUG_OUTPUT_SYNCHRONOUS), N(GL_DEPTH_CLAMP), N(GL_DEPTH_TEST),
  N(GL_DITHER), N(GL_FRAMEBUFFER_SRGB), N(GL_LINE_SMOOTH), N(GL_MULTISAMPLE),
  N(GL_POLYGON_OFFSET_FILL), N(GL_POLYGON_OFFSET_LINE), N(GL_POLYGON_OFFSET_POINT),
  N(GL_POLYGON_SMOOTH), N(GL_PRIMITIVE_RESTART), N(GL_PRIMITIVE_RESTART_FIXED_INDEX),
  N(GL_PROGRAM_POINT_SIZE), N(GL_RASTERIZER_DISCARD), N(GL_SAMPLE_ALPHA_TO_COVERAGE),
  N(GL_SAMPLE_ALPHA_TO_ONE), N(GL_SAMPLE_COVERAGE), N(GL_SAMPLE_MASK), N(GL_SAMPLE_SHADING),
  N(GL_SCISSOR_TEST), N(GL_STENCIL_TEST), N(GL_TEXTURE_CUBE_MAP_SEAMLESS), N(GL_CLIP_DISTANCE0),
  N(GL_CLIP_DISTANCE1), N(GL_CLIP_DISTANCE2), N(GL_CLIP_DISTANCE3), N(GL_CLIP_DISTANCE4),
  N(GL_CLIP_DISTANCE5) };

// Values of one to four numbers; doubles hold them all.
const Name Numbers[] = { N(GL_ACTIVE_TEXTURE), N(GL_ARRAY_BUFFER_BINDING), N(GL_BLEND_COLOR),
  N(GL_BLEND_DST_ALPHA), N(GL_BLEND_DST_RGB), N(GL_BLEND_EQUATION_ALPHA), N(GL_BLEND_EQUATION_RGB),
  N(GL_BLEND_SRC_ALPHA), N(GL_BLEND_SRC_RGB), N(GL_CLIP_DEPTH_MODE), N(GL_CLIP_ORIGIN),
  N(GL_COLOR_CLEAR_VALUE), N(GL_COLOR_WRITEMASK), N(GL_COPY_READ_BUFFER), N(GL_COPY_WRITE_BUFFER),
  N(GL_CULL_FACE_MODE), N(GL_CURRENT_PROGRAM), N(GL_DEPTH_CLEAR_VALUE), N(GL_DEPTH_FUNC),
  N(GL_DEPTH_RANGE), N(GL_DEPTH_WRITEMASK), N(GL_DISPATCH_INDIRECT_BUFFER_BINDING),
  N(GL_DRAW_FRAMEBUFFER_BINDING), N(GL_DRAW_INDIRECT_BUFFER_BINDING),
  N(GL_ELEMENT_ARRAY_BUFFER_BINDING), N(GL_FRONT_FACE), N(GL_LINE_WIDTH), N(GL_LOGIC_OP_MODE),
  N(GL_MIN_SAMPLE_SHADING_VALUE), N(GL_PACK_ALIGNMENT), N(GL_PACK_IMAGE_HEIGHT),
  N(GL_PACK_LSB_FIRST), N(GL_PACK_ROW_LENGTH), N(GL_PACK_SKIP_IMAGES), N(GL_PACK_SKIP_PIXELS),
  N(GL_PACK_SKIP_ROWS), N(GL_PACK_SWAP_BYTES), N(GL_PATCH_VERTICES),
  N(GL_PIXEL_PACK_BUFFER_BINDING), N(GL_PIXEL_UNPACK_BUFFER_BINDING),
  N(GL_POINT_FADE_THRESHOLD_SIZE), N(GL_POINT_SIZE), N(GL_POINT_SPRITE_COORD_ORIGIN),
  N(GL_POLYGON_MODE), N(GL_POLYGON_OFFSET_CLAMP), N(GL_POLYGON_OFFSET_FACTOR),
  N(GL_POLYGON_OFFSET_UNITS), N(GL_PRIMITIVE_RESTART_INDEX), N(GL_PROGRAM_PIPELINE_BINDING),
  N(GL_PROVOKING_VERTEX), N(GL_READ_FRAMEBUFFER_BINDING), N(GL_RENDERBUFFER_BINDING),
  N(GL_SAMPLE_COVERAGE_INVERT), N(GL_SAMPLE_COVERAGE_VALUE), N(GL_SCISSOR_BOX),
  N(GL_SHADER_STORAGE_BUFFER_BINDING), N(GL_STENCIL_BACK_FAIL), N(GL_STENCIL_BACK_FUNC),
  N(GL_STENCIL_BACK_PASS_DEPTH_FAIL), N(GL_STENCIL_BACK_PASS_DEPTH_PASS), N(GL_STENCIL_BACK_REF),
  N(GL_STENCIL_BACK_VALUE_MASK), N(GL_STENCIL_BACK_WRITEMASK), N(GL_STENCIL_CLEAR_VALUE),
  N(GL_STENCIL_FAIL), N(GL_STENCIL_FUNC), N(GL_STENCIL_PASS_DEPTH_FAIL),
  N(GL_STENCIL_PASS_DEPTH_PASS), N(GL_STENCIL_REF), N(GL_STENCIL_VALUE_MASK),
  N(GL_STENCIL_WRITEMASK), N(GL_TEXTURE_BUFFER), N(GL_TRANSFORM_FEEDBACK_BINDING),
  N(GL_TRANSFORM_FEEDBACK_BUFFER_BINDING), N(GL_UNIFORM_BUFFER_BINDING), N(GL_UNPACK_ALIGNMENT),
  N(GL_UNPACK_IMAGE_HEIGHT), N(GL_UNPACK_LSB_FIRST), N(GL_UNPACK_ROW_LENGTH),
  N(GL_UNPACK_SKIP_IMAGES), N(GL_UNPACK_SKIP_PIXELS), N(GL_UNPACK_SKIP_ROWS),
  N(GL_UNPACK_SWAP_BYTES), N(GL_VERTEX_ARRAY_BINDING), N(GL_VIEWPORT), N(GL_READ_BUFFER),
  N(GL_DRAW_BUFFER0), N(GL_DRAW_BUFFER1), N(GL_DRAW_BUFFER2), N(GL_DRAW_BUFFER3) };

const Name TextureBindings[] = { N(GL_TEXTURE_BINDING_1D), N(GL_TEXTURE_BINDING_1D_ARRAY),
  N(GL_TEXTURE_BINDING_2D), N(GL_TEXTURE_BINDING_2D_ARRAY), N(GL_TEXTURE_BINDING_2D_MULTISAMPLE),
  N(GL_TEXTURE_BINDING_2D_MULTISAMPLE_ARRAY), N(GL_TEXTURE_BINDING_3D),
  N(GL_TEXTURE_BINDING_BUFFER), N(GL_TEXTURE_BINDING_CUBE_MAP),
  N(GL_TEXTURE_BINDING_CUBE_MAP_ARRAY), N(GL_TEXTURE_BINDING_RECTANGLE), N(GL_SAMPLER_BINDING) };

const Name DrawBufferNumbers[] = { N(GL_BLEND_SRC_RGB), N(GL_BLEND_SRC_ALPHA), N(GL_BLEND_DST_RGB),
  N(GL_BLEND_DST_ALPHA), N(GL_BLEND_EQUATION_RGB), N(GL_BLEND_EQUATION_ALPHA),
  N(GL_COLOR_WRITEMASK) };

const Name ViewportNumbers[] = { N(GL_VIEWPORT), N(GL_DEPTH_RANGE), N(GL_SCISSOR_BOX) };

const Name BufferPoints[] = { N(GL_UNIFORM_BUFFER_BINDING), N(GL_SHADER_STORAGE_BUFFER_BINDING),
  N(GL_TRANSFORM_FEEDBACK_BUFFER_BINDING) };

const Name VertexAttributes[] = { N(GL_VERTEX_ATTRIB_ARRAY_ENABLED), N(GL_VERTEX_ATTRIB_ARRAY_SIZE),
  N(GL_VERTEX_ATTRIB_ARRAY_STRIDE), N(GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING) };
#undef N

class Reader
{
public:
  std::vector<std::pair<std::string, std::string>> Values;

  // Only what the context knows is kept: a query that raises an error is not part of its state.
  template <class T>
  void Add(const std::string& name, const T& read)
  {
    double values[4] = { 0, 0, 0, 0 };
    read(values);
    if (glGetError() == GL_NO_ERROR)
    {
      std::ostringstream text;
      text.precision(17);
      text << values[0] << ' ' << values[1] << ' ' << values[2] << ' ' << values[3];
      this->Values.emplace_back(name, text.str());
    }
  }
};

std::string At(const char* name, int index)
{
  return std::string(name) + "[" + std::to_string(index) + "]";
}

int Limit(GLenum name, int most)
{
  GLint value = 0;
  glGetIntegerv(name, &value);
  while (glGetError() != GL_NO_ERROR)
  {
  }
  return std::min(value, most);
}

void ReadTextureUnits(Reader& reader)
{
  GLint active = 0;
  glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
  const int count = Limit(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, 256);
  for (int unit = 0; unit < count; ++unit)
  {
    glActiveTexture(GL_TEXTURE0 + unit);
    for (const Name& name : TextureBindings)
    {
      reader.Add(At(name.Text, unit), [&](double* v) { glGetDoublev(name.Value, v); });
    }
  }
  glActiveTexture(active);
}

void ReadIndexed(Reader& reader)
{
  const int buffers = Limit(GL_MAX_DRAW_BUFFERS, 8);
  for (int i = 0; i < buffers; ++i)
  {
    reader.Add(At("GL_BLEND", i), [&](double* v) { v[0] = glIsEnabledi(GL_BLEND, i); });
    for (const Name& name : DrawBufferNumbers)
    {
      reader.Add(At(name.Text, i), [&](double* v) {
        GLint values[4] = { 0, 0, 0, 0 };
        glGetIntegeri_v(name.Value, i, values);
        std::copy_n(values, 4, v);
      });
    }
  }
  const int viewports = Limit(GL_MAX_VIEWPORTS, 16);
  for (int i = 0; i < viewports; ++i)
  {
    reader.Add(
      At("GL_SCISSOR_TEST", i), [&](double* v) { v[0] = glIsEnabledi(GL_SCISSOR_TEST, i); });
    for (const Name& name : ViewportNumbers)
    {
      reader.Add(At(name.Text, i), [&](double* v) { glGetDoublei_v(name.Value, i, v); });
    }
  }
  for (const Name& name : BufferPoints)
  {
    for (int i = 0; i < 4; ++i)
    {
      reader.Add(At(name.Text, i), [&](double* v) {
        GLint value = 0;
        glGetIntegeri_v(name.Value, i, &value);
        v[0] = value;
      });
    }
  }
  reader.Add("GL_SAMPLE_MASK_VALUE", [&](double* v) {
    GLint value = 0;
    glGetIntegeri_v(GL_SAMPLE_MASK_VALUE, 0, &value);
    v[0] = value;
  });
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylGLState zylGLState::Read()
{
  Reader reader;
  while (glGetError() != GL_NO_ERROR)
  {
  }
  for (const Name& name : Capabilities)
  {
    reader.Add(name.Text, [&](double* v) { v[0] = glIsEnabled(name.Value); });
  }
  for (const Name& name : Numbers)
  {
    reader.Add(name.Text, [&](double* v) { glGetDoublev(name.Value, v); });
  }
  ReadTextureUnits(reader);
  ReadIndexed(reader);
  for (int i = 0; i < 8; ++i)
  {
    for (const Name& name : VertexAttributes)
    {
      reader.Add(At(name.Text, i), [&](double* v) { glGetVertexAttribdv(i, name.Value, v); });
    }
  }
  zylGLState state;
  state.Values = std::move(reader.Values);
  return state;
}

//--------------------------------------------------------------------------------------------------
std::string zylGLState::Difference(const zylGLState& other) const
{
  std::map<std::string, std::string> before(other.Values.begin(), other.Values.end());
  std::ostringstream text;
  for (const auto& value : this->Values)
  {
    const auto found = before.find(value.first);
    const std::string old = found == before.end() ? "(none)" : found->second;
    if (old != value.second)
    {
      text << value.first << ": " << old << " -> " << value.second << '\n';
    }
    if (found != before.end())
    {
      before.erase(found);
    }
  }
  for (const auto& value : before)
  {
    text << value.first << ": " << value.second << " -> (none)\n";
  }
  return text.str();
}
