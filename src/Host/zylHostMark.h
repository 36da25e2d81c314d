/// @file zylHostMark.h
/// Knows a context again: its handle may come back for another one when it is gone. Private to the
/// library.
#ifndef zylHostMark_h
#define zylHostMark_h

#include "zylExport.h"

#include <array>

/// An object that only this one can have made in the current context, of OpenGL 3.2 or later.
class ZYL_PRIVATE zylHostMark
{
public:
  void Make();
  bool IsThere() const;
  void Delete();
  /// Leave it to its context.
  void Forget() { this->Buffer = 0; }

private:
  unsigned int Buffer = 0;
  std::array<unsigned long long, 2> Content{};
};

#endif
