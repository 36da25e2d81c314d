/// @file zylScriptFilter.h
/// The stage that adds derived variables. Private to the library.
#ifndef zylScriptFilter_h
#define zylScriptFilter_h

#include "ParaView/zylProxyBuilder.h"
#include "zylExport.h"

#include <string>

/// A "ProgrammableFilter", ready to be made. It hands its input's arrays on, and without a script
/// nothing else.
ZYL_PRIVATE zylProxyBuilder zylScriptFilter(vtkSMSourceProxy* input);

/// Let the stage run `script`, in which the signs -, + and ~ work on arrays of several blocks in
/// every version of the toolkit. Where it runs, "zylStages" in Python's __main__ has the global
/// identifier of the stage's proxy by the "__this__" of the stage. Null is fine.
ZYL_PRIVATE void zylPushScript(const std::string& script, vtkSMSourceProxy* stage);

#endif
