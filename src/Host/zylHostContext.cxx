#include "Host/zylHostContext.h"

#include <dlfcn.h>

namespace {
// A platform function from a library the process has loaded already, however it was loaded (hosts
// often open the OpenGL libraries privately). Found ones are kept; a library may come later.
template <class Function>
class PlatformFunction
{
public:
  constexpr PlatformFunction(
    const char* name, const char* library, const char* otherLibrary = nullptr)
    : Name(name)
    , Libraries{ library, otherLibrary }
  {
  }

  Function Get()
  {
    if (!this->Address)
    {
      this->Address = dlsym(RTLD_DEFAULT, this->Name);
    }
    for (int i = 0; !this->Address && i < 2 && this->Libraries[i]; ++i)
    {
      if (void* handle = dlopen(this->Libraries[i], RTLD_LAZY | RTLD_NOLOAD))
      {
        this->Address = dlsym(handle, this->Name);
        dlclose(handle);
      }
    }
    return reinterpret_cast<Function>(this->Address);
  }

private:
  const char* Name;
  const char* Libraries[2];
  void* Address = nullptr;
};

constexpr const char* GlxLibrary = "libGLX.so.0";
constexpr const char* GlLibrary = "libGL.so.1";
constexpr const char* EglLibrary = "libEGL.so.1";

using GetPointer = void* (*)();
using GetXid = unsigned long (*)();

PlatformFunction<GetPointer> GlxContext("glXGetCurrentContext", GlxLibrary, GlLibrary);
PlatformFunction<GetPointer> GlxDisplay("glXGetCurrentDisplay", GlxLibrary, GlLibrary);
PlatformFunction<GetXid> GlxDrawable("glXGetCurrentDrawable", GlxLibrary, GlLibrary);
PlatformFunction<GetXid> GlxReadDrawable("glXGetCurrentReadDrawable", GlxLibrary, GlLibrary);
PlatformFunction<int (*)(void*, unsigned long, unsigned long, void*)> GlxMakeCurrent(
  "glXMakeContextCurrent", GlxLibrary, GlLibrary);

PlatformFunction<GetPointer> EglContext("eglGetCurrentContext", EglLibrary);
PlatformFunction<GetPointer> EglDisplay("eglGetCurrentDisplay", EglLibrary);
PlatformFunction<void* (*)(int)> EglSurface("eglGetCurrentSurface", EglLibrary);
PlatformFunction<unsigned int (*)(void*, void*, void*, void*)> EglMakeCurrent(
  "eglMakeCurrent", EglLibrary);

// Of Xlib: a context that is gone is an error there, which ends the process unless it is caught.
using ErrorHandler = int (*)(void*, void*);
PlatformFunction<ErrorHandler (*)(ErrorHandler)> SetErrorHandler("XSetErrorHandler", "libX11.so.6");
PlatformFunction<int (*)(void*, int)> Synchronize("XSync", "libX11.so.6");

int IgnoreError(void*, void*)
{
  return 0;
}

// The vendor-neutral library knows which contexts exist; others look into the memory of one that is
// gone.
bool KnowsContexts()
{
  void* library = dlopen(GlxLibrary, RTLD_LAZY | RTLD_NOLOAD);
  if (library)
  {
    dlclose(library);
  }
  return library != nullptr;
}

constexpr int EglDraw = 0x3059;
constexpr int EglRead = 0x305A;

void* AsPointer(unsigned long id)
{
  return reinterpret_cast<void*>(id);
}

unsigned long AsId(void* pointer)
{
  return reinterpret_cast<unsigned long>(pointer);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylHostContext zylHostContext::Current()
{
  zylHostContext result;
  if (GetPointer glx = GlxContext.Get())
  {
    result.Context = glx();
    if (result.Context)
    {
      result.Api = GLX;
      result.Display = GlxDisplay.Get()();
      result.Draw = AsPointer(GlxDrawable.Get()());
      result.Read = AsPointer(GlxReadDrawable.Get()());
      return result;
    }
  }
  if (GetPointer egl = EglContext.Get())
  {
    result.Context = egl();
    if (result.Context)
    {
      result.Api = EGL;
      result.Display = EglDisplay.Get()();
      result.Draw = EglSurface.Get()(EglDraw);
      result.Read = EglSurface.Get()(EglRead);
    }
  }
  return result;
}

//--------------------------------------------------------------------------------------------------
void zylHostContext::MakeCurrent() const
{
  if (this->Api == GLX)
  {
    GlxMakeCurrent.Get()(this->Display, AsId(this->Draw), AsId(this->Read), this->Context);
  }
  else if (this->Api == EGL)
  {
    EglMakeCurrent.Get()(this->Display, this->Draw, this->Read, this->Context);
  }
}

//--------------------------------------------------------------------------------------------------
bool zylHostContext::TryMakeCurrent(const zylHostContext& now) const
{
  if (this->Api != now.Api || this->Display != now.Display)
  {
    return false;
  }
  if (this->Api == EGL)
  {
    EglMakeCurrent.Get()(this->Display, now.Draw, now.Read, this->Context);
  }
  else if (this->Api == GLX && KnowsContexts() && SetErrorHandler.Get() && Synchronize.Get())
  {
    Synchronize.Get()(this->Display, 0);
    const ErrorHandler handler = SetErrorHandler.Get()(IgnoreError);
    GlxMakeCurrent.Get()(this->Display, AsId(now.Draw), AsId(now.Read), this->Context);
    Synchronize.Get()(this->Display, 0);
    SetErrorHandler.Get()(handler);
  }
  const zylHostContext current = zylHostContext::Current();
  if (this->SameContext(current))
  {
    return true;
  }
  if (!now.SameContext(current))
  {
    now.MakeCurrent();
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
void zylHostContext::Release() const
{
  if (this->Api == GLX)
  {
    GlxMakeCurrent.Get()(this->Display, 0, 0, nullptr);
  }
  else if (this->Api == EGL)
  {
    EglMakeCurrent.Get()(this->Display, nullptr, nullptr, nullptr);
  }
}

//--------------------------------------------------------------------------------------------------
zylHostContextKeeper::zylHostContextKeeper()
  : Saved(zylHostContext::Current())
{
}

//--------------------------------------------------------------------------------------------------
zylHostContextKeeper::~zylHostContextKeeper()
{
  const zylHostContext now = zylHostContext::Current();
  if (!this->Saved.SameContext(now) || this->Saved.Draw != now.Draw || this->Saved.Read != now.Read)
  {
    if (this->Saved.Api != now.Api)
    {
      now.Release(); // only one platform at a time may have a context current
    }
    this->Saved.MakeCurrent();
  }
}
