/// @file zylHostGLState.h
/// Saves the OpenGL state that rendering here may change, gives the renderer a neutral state to
/// start from, and puts the host's state back. Needs a current context of OpenGL 3.0 or later whose
/// functions are loaded (zylHostRenderWindow sees to that).
///
///     zylHostGLState state;
///     state.Save();       // and neutralize
///     ...                 // render; SaveTextureUnit(n) before each texture unit that gets used
///     state.Restore();
///
/// Private to the library.
#ifndef zylHostGLState_h
#define zylHostGLState_h

#include "Host/zylHostErrors.h"
#include "Host/zylHostPixelState.h"
#include "zylExport.h"

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

class ZYL_PRIVATE zylHostGLState
{
public:
  /// Read the state, then set the neutral one: the defaults of OpenGL, with depth test (less or
  /// equal) and ordinary blending on. Framebuffer bindings and viewport stay as they are.
  void Save();

  /// Remember what is bound to a texture unit, once, and unbind its sampler.
  void SaveTextureUnit(unsigned int unit);

  /// Put back everything that was saved.
  void Restore();

private:
  static constexpr std::size_t MaxTargets = 11;
  static constexpr std::size_t MaxDrawBuffers = 8;
  static constexpr std::size_t MaxViewports = 16;
  static constexpr std::size_t MaxCapabilities = 40;

  struct TextureUnit
  {
    unsigned int Index;
    std::array<int, MaxTargets> Bindings;
    int Sampler;
  };
  struct DrawBuffer
  {
    bool Blend;
    std::array<unsigned char, 4> Mask;
    std::array<int, 4> Functions; // source and destination, RGB then alpha
    std::array<int, 2> Equations;
  };
  struct Viewport
  {
    std::array<float, 4> Box;
    std::array<double, 2> Depth;
    std::array<int, 4> Scissor;
    bool ScissorTest;
  };
  struct StencilFace
  {
    int Function, Reference;
    unsigned int ValueMask, WriteMask;
    int Fail, DepthFail, DepthPass;
  };

  void ReadContext();
  void SaveBindings();
  void SaveCapabilities();
  void SaveDrawBuffers();
  void SaveViewports();
  void SaveFragmentTests();
  void SaveRaster();
  void Neutralize();
  void RestoreBindings();
  void RestoreCapabilities();
  void RestoreDrawBuffers();
  void RestoreViewports();
  void RestoreFragmentTests();
  void RestoreRaster();
  void RestoreTextureUnits();
  bool AtLeast(int version) const { return this->Version >= version; }

  int Version = 0; // 10 * major + minor
  bool Compatibility = false;
  std::size_t DrawBufferCount = 1;
  std::size_t ViewportCount = 1;
  int ClipDistanceCount = 0;

  int DrawFramebuffer, ReadFramebuffer, Renderbuffer, Program;
  int VertexArray, DefaultElementBuffer;
  std::array<int, 7> Buffers;
  int ActiveTexture;
  std::vector<TextureUnit> TextureUnits;

  std::array<bool, MaxCapabilities> Capabilities;
  std::array<bool, 8> ClipDistances;
  std::array<DrawBuffer, MaxDrawBuffers> DrawBuffers;
  std::array<Viewport, MaxViewports> Viewports;
  std::array<int, 2> ClipControl;
  std::array<StencilFace, 2> Stencil; // front, back
  std::array<float, 4> BlendColor, ClearColor;
  double ClearDepth;
  int ClearStencil, DepthFunction, LogicOperation;
  unsigned char DepthMask, SampleCoverageInvert;
  float SampleCoverage;
  unsigned int SampleMask;

  unsigned int RestartIndex;
  int CullFace, FrontFace, ProvokingVertex, PointSpriteOrigin;
  std::array<int, 2> PolygonMode;
  float OffsetFactor, OffsetUnits, OffsetClamp, LineWidth, PointSize, PointFade, MinSampleShading;
  zylHostPixelState Pixels;
  bool FeedbackPaused = false;
  std::unique_ptr<zylHostErrors> Errors;
};

#endif
