/// @file zylHostErrors.h
/// The host's pending OpenGL errors: OpenGL keeps them until they are asked for, and asking clears
/// them. Private to the library.
#ifndef zylHostErrors_h
#define zylHostErrors_h

#include "zylExport.h"

#include <vector>

/// Takes the pending errors and, at the end, drops what came meanwhile and has them pending again.
/// Needs a current context of OpenGL 3.2 whose functions are loaded, at both ends.
class ZYL_PRIVATE zylHostErrors
{
public:
  zylHostErrors();
  ~zylHostErrors();
  zylHostErrors(const zylHostErrors&) = delete;
  zylHostErrors& operator=(const zylHostErrors&) = delete;

  /// Drop all pending errors.
  static void Clear();

  /// Have nothing pending at the end: needed where the functions turn out not to exist.
  void Forget() { this->Pending.clear(); }

private:
  std::vector<unsigned int> Pending;
};

#endif
