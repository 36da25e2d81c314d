/*
 * Keeps VTK's XML files readable with an expat that defers its events.
 *
 * From 2.6 on (and where a distribution carries the change back) expat delivers a token only when
 * enough further input has come. VTK's reader counts on getting the start of the appended data
 * before it passes the bytes behind it; with deferral those bytes reach the parser as text, and
 * every file with appended data beyond a few hundred bytes ends in "not well-formed (invalid
 * token)".
 *
 * This library puts itself in front of XML_ParserCreate, calls the real one, and switches the
 * deferral off for parsers that VTK's XML library creates and for no others. Programs that link
 * zyl get it by linking; for a server, name it in LD_PRELOAD.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stddef.h>
#include <string.h>

typedef void* Parser; /* expat's XML_Parser, opaque here: expat itself is only met at run time */
typedef Parser (*CreateFunction)(const char* encoding);
typedef unsigned char (*DeferralFunction)(Parser parser, unsigned char enabled);

/* A function of expat itself: the next one in the search order, or, where this library was loaded
 * for the whole process and expat only for a part of it, the one in the library by that name. */
static void* FindInExpat(const char* name)
{
  void* function = dlsym(RTLD_NEXT, name);
  if (!function)
  {
    void* expat = dlopen("libexpat.so.1", RTLD_LAZY | RTLD_NOLOAD);
    function = expat ? dlsym(expat, name) : NULL;
  }
  return function;
}

/* Whether the code at `address` belongs to VTK's XML library, whichever version and suffix. */
static int IsVTKXML(void* address)
{
  Dl_info info;
  return dladdr(address, &info) && info.dli_fname && strstr(info.dli_fname, "libvtkIOXMLParser");
}

__attribute__((visibility("default"))) Parser XML_ParserCreate(const char* encoding)
{
  CreateFunction create = (CreateFunction)FindInExpat("XML_ParserCreate");
  Parser parser = create ? create(encoding) : NULL;
  if (parser && IsVTKXML(__builtin_return_address(0)))
  {
    DeferralFunction setDeferral = (DeferralFunction)FindInExpat("XML_SetReparseDeferralEnabled");
    if (setDeferral)
    {
      setDeferral(parser, 0);
    }
  }
  return parser;
}
