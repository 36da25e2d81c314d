#include "Host/zylHostPixelState.h"

#include <vtk_glew.h>

namespace {
struct PixelStoreValue
{
  GLenum Name;
  int Neutral;
};

constexpr PixelStoreValue PixelStoreTable[] = {
  { GL_PACK_SWAP_BYTES, 0 },
  { GL_PACK_LSB_FIRST, 0 },
  { GL_PACK_ROW_LENGTH, 0 },
  { GL_PACK_IMAGE_HEIGHT, 0 },
  { GL_PACK_SKIP_ROWS, 0 },
  { GL_PACK_SKIP_PIXELS, 0 },
  { GL_PACK_SKIP_IMAGES, 0 },
  { GL_PACK_ALIGNMENT, 4 },
  { GL_UNPACK_SWAP_BYTES, 0 },
  { GL_UNPACK_LSB_FIRST, 0 },
  { GL_UNPACK_ROW_LENGTH, 0 },
  { GL_UNPACK_IMAGE_HEIGHT, 0 },
  { GL_UNPACK_SKIP_ROWS, 0 },
  { GL_UNPACK_SKIP_PIXELS, 0 },
  { GL_UNPACK_SKIP_IMAGES, 0 },
  { GL_UNPACK_ALIGNMENT, 4 },
};

// Of compatibility contexts: what happens to pixels on their way to textures and back.
constexpr struct
{
  GLenum Name;
  float Neutral;
} PixelTransferTable[] = {
  { GL_MAP_COLOR, 0.0f },
  { GL_MAP_STENCIL, 0.0f },
  { GL_INDEX_SHIFT, 0.0f },
  { GL_INDEX_OFFSET, 0.0f },
  { GL_RED_SCALE, 1.0f },
  { GL_GREEN_SCALE, 1.0f },
  { GL_BLUE_SCALE, 1.0f },
  { GL_ALPHA_SCALE, 1.0f },
  { GL_DEPTH_SCALE, 1.0f },
  { GL_RED_BIAS, 0.0f },
  { GL_GREEN_BIAS, 0.0f },
  { GL_BLUE_BIAS, 0.0f },
  { GL_ALPHA_BIAS, 0.0f },
  { GL_DEPTH_BIAS, 0.0f },
};

static_assert(sizeof(PixelStoreTable) / sizeof(PixelStoreTable[0]) == 16 &&
    sizeof(PixelTransferTable) / sizeof(PixelTransferTable[0]) == 14,
  "the stores hold one entry per table row");
} // namespace

//--------------------------------------------------------------------------------------------------
void zylHostPixelState::Save(bool compatibility)
{
  this->Compatibility = compatibility;
  for (std::size_t i = 0; i < MaxStores; ++i)
  {
    glGetIntegerv(PixelStoreTable[i].Name, &this->Stores[i]);
  }
  for (std::size_t i = 0; compatibility && i < MaxTransfers; ++i)
  {
    glGetFloatv(PixelTransferTable[i].Name, &this->Transfers[i]);
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostPixelState::Neutralize()
{
  for (const auto& row : PixelStoreTable)
  {
    glPixelStorei(row.Name, row.Neutral);
  }
  if (this->Compatibility)
  {
    for (const auto& row : PixelTransferTable)
    {
      glPixelTransferf(row.Name, row.Neutral);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylHostPixelState::Restore()
{
  for (std::size_t i = 0; i < MaxStores; ++i)
  {
    glPixelStorei(PixelStoreTable[i].Name, this->Stores[i]);
  }
  for (std::size_t i = 0; this->Compatibility && i < MaxTransfers; ++i)
  {
    glPixelTransferf(PixelTransferTable[i].Name, this->Transfers[i]);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostPixelState::IsCompatible()
{
  GLint major = 0;
  GLint minor = 0;
  GLint profile = 0;
  glGetIntegerv(GL_MAJOR_VERSION, &major);
  glGetIntegerv(GL_MINOR_VERSION, &minor);
  if (10 * major + minor >= 32)
  {
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    return (profile & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT) != 0;
  }
  return true;
}
