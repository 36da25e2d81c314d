/// @file zylHostContext.h
/// The OpenGL context that is current in this thread, whoever made it: GLX or EGL. The platform
/// functions are looked up at run time, so the library runs where one of the two does not exist.
/// Private to the library.
#ifndef zylHostContext_h
#define zylHostContext_h

#include "zylExport.h"

/// A context and the drawables it is current with. Plain data; owns nothing.
struct ZYL_PRIVATE zylHostContext
{
  enum Platform
  {
    None,
    GLX,
    EGL
  };

  Platform Api = None;
  void* Display = nullptr;
  void* Context = nullptr;
  void* Draw = nullptr; ///< EGL surface, or GLX drawable id
  void* Read = nullptr;

  /// What is current now; Api is None when nothing is.
  static zylHostContext Current();

  /// Make this context current again. Only for a context that is known to be alive; does nothing
  /// for None.
  void MakeCurrent() const;

  /// The same for one that may be gone, with the drawables of `now`, which is current. False, and
  /// `now` stays current, where it is gone or that cannot be found out safely.
  bool TryMakeCurrent(const zylHostContext& now) const;

  /// Leave no context current. OpenGL calls are then without effect until MakeCurrent().
  void Release() const;

  explicit operator bool() const { return this->Api != None; }

  /// Whether both name the same context; its drawables may differ.
  bool SameContext(const zylHostContext& other) const
  {
    return this->Api == other.Api && this->Context == other.Context;
  }
};

/// Keeps the current context current across code that may take it away.
class ZYL_PRIVATE zylHostContextKeeper
{
public:
  zylHostContextKeeper();
  ~zylHostContextKeeper();
  zylHostContextKeeper(const zylHostContextKeeper&) = delete;
  zylHostContextKeeper& operator=(const zylHostContextKeeper&) = delete;

private:
  zylHostContext Saved;
};

#endif
