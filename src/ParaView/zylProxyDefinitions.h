/// @file zylProxyDefinitions.h
/// Server-manager proxies that the library defines itself, from classes that every server has.
/// Loaded into the proxy manager when a session is configured. Private to the library.
#ifndef zylProxyDefinitions_h
#define zylProxyDefinitions_h

#include "zylExport.h"

/// One XML text, group "filters": "LinearCellUnstructuredGridContour", "LinearCellPlaneCutter",
/// "LinearCellCrinkleCutter", "SurfaceGeometryFilter", and "ExtractBlock", which selects blocks by
/// flat index whatever ParaView's own filter of that name does. Never null.
ZYL_PRIVATE const char* zylCoreProxyDefinitions();

#endif
