/// @file zylExport.h
/// Symbol visibility of the library. Everything is hidden unless marked.
#ifndef zylExport_h
#define zylExport_h

#define ZYL_EXPORT __attribute__((visibility("default")))

/// For private helpers that the library's own tests call directly; hidden in a build without tests.
#ifdef ZYL_EXPORT_PRIVATE
#define ZYL_PRIVATE __attribute__((visibility("default")))
#else
#define ZYL_PRIVATE
#endif

#endif
