/// @file zylPropertyJSON.h
/// Properties and collections as JSON values; see zylJSONSerializer for the layout. Private to the
/// library.
#ifndef zylPropertyJSON_h
#define zylPropertyJSON_h

#include "zylExport.h"

#include <functional>
#include <string>

#include <vtk_jsoncpp.h>

class zylProperty;
class zylPropertyCollection;

///@{
/// A property of an unknown type is reported on the standard output and has no elements.
ZYL_PRIVATE Json::Value zylWriteJSON(const zylProperty* property);
ZYL_PRIVATE Json::Value zylWriteJSON(zylPropertyCollection* collection);
///@}

///@{
/// Give the object what `json` says. False, with what was read until then, when it is of another
/// kind; jsoncpp throws where an element is of another type. A collection (null: false) is emptied
/// first; a property that it had under the same name passes on whether it is in the hash.
ZYL_PRIVATE bool zylReadJSON(const Json::Value& json, zylProperty* property);
ZYL_PRIVATE bool zylReadJSON(const Json::Value& json, zylPropertyCollection* collection);
///@}

/// The member of that name; null when there is none or `json` has no members at all.
ZYL_PRIVATE const Json::Value& zylMember(const Json::Value& json, const char* name);

/// The text of `json`. Strings that are not UTF-8 stand in it byte for byte.
ZYL_PRIVATE std::string zylWriteText(const Json::Value& json);

/// Whether `text` is JSON and `action` accepts it. Nothing is thrown, also when the nesting is too
/// deep or `action` meets values of another type than it expects.
ZYL_PRIVATE bool zylReadText(
  const std::string& text, const std::function<bool(const Json::Value&)>& action);

#endif
