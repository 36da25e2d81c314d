/// @file zylHostPixelState.h
/// How pixels are packed, and changed, on their way to textures and back: the host's settings, put
/// aside. Needs a current context of OpenGL 3.0 or later. Private to the library.
#ifndef zylHostPixelState_h
#define zylHostPixelState_h

#include "zylExport.h"

#include <array>
#include <cstddef>

class ZYL_PRIVATE zylHostPixelState
{
public:
  /// Read the settings; those of pixel transfer exist in compatibility contexts only.
  void Save(bool compatibility);
  /// Set the defaults of OpenGL.
  void Neutralize();
  void Restore();

  /// Whether the context has what later profiles dropped.
  static bool IsCompatible();

private:
  static constexpr std::size_t MaxStores = 16;
  static constexpr std::size_t MaxTransfers = 14;

  bool Compatibility = false;
  std::array<int, MaxStores> Stores;
  std::array<float, MaxTransfers> Transfers;
};

#endif
