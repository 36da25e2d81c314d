/// @file zylOddState.h
/// Random OpenGL state of a host, over all that it can set.
///
///     zylOddState odd(seed);
///     odd.Apply();           // something else each time, the same for the same seed
#ifndef zylOddState_h
#define zylOddState_h

#include <random>
#include <vector>

class zylOddState
{
public:
  /// Makes the objects to bind, in the current context.
  explicit zylOddState(unsigned int seed);
  ~zylOddState(); ///< leaves them to the context
  zylOddState(const zylOddState&) = delete;
  zylOddState& operator=(const zylOddState&) = delete;

  /// Set everything but the framebuffer bindings.
  void Apply();

private:
  unsigned int Any(unsigned int count) { return this->Random() % count; }
  bool Coin() { return this->Any(2) != 0; }
  float Part() { return static_cast<float>(this->Any(1001)) / 1000.0f; }
  unsigned int Bits() { return static_cast<unsigned int>(this->Random()); }
  unsigned int AnyOf(const std::vector<unsigned int>& values)
  {
    return values[this->Any(static_cast<unsigned int>(values.size()))];
  }
  void Bindings();
  void Capabilities();
  void Fragments();
  void Raster();

  std::mt19937 Random;
  int Version;
  std::vector<unsigned int> Buffers, VertexArrays, Textures, Samplers, Programs, Renderbuffers;
};

#endif
