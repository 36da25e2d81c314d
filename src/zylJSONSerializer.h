/**
 * @class zylJSONSerializer
 * @brief Settings as JSON text, and back onto an object of the same kind.
 *
 *     const std::string text = zylJSONSerializer::Serialize(boundary);
 *     ...
 *     if (zylJSONSerializer::Deserialize(text, boundary))
 *       boundary->Update();
 *
 * Known are zylProperty, zylPropertyCollection, zylPipeline, zylDerivedSurfaceRepresentation,
 * zylBoundaryRepresentation and zylIntegrateFields. Contour settings of representations are not
 * part of the text.
 *
 * Numbers come back bit for bit. JSON has no NaN and no infinities: such elements are the strings
 * "NaN", "Infinity" and "-Infinity". Strings come back byte for byte; the text is UTF-8 if all of
 * them are.
 *
 * Layout, members sorted by name:
 *
 * - a property: "elements" (array) and "type" ("Bool", "Int", "Double" or "String")
 * - a collection: "collection", an array of objects with "name" and "property"
 * - a pipeline, a field integrator: "properties", a collection
 * - a derived surface: "properties" and, with a dataset, "surfacePropertiesCollection",
 *   "meshLinePropertiesCollection", "featureLinePropertiesCollection" and
 *   "vectorGlyphPropertiesCollection", a collection each
 * - a boundary representation: "properties" and, with a dataset, "surfacePropertiesCollections",
 *   "meshLinePropertiesCollections", "featureLinePropertiesCollections" and
 *   "vectorGlyphPropertiesCollections": arrays of objects with "blocks" (flat indices) and
 *   "collection" (their settings), one for each distinct setting
 */
#ifndef zylJSONSerializer_h
#define zylJSONSerializer_h

#include "zylExport.h"

#include <string>

#include <vtkObject.h>

class ZYL_EXPORT zylJSONSerializer : public vtkObject
{
public:
  static zylJSONSerializer* New();
  vtkTypeMacro(zylJSONSerializer, vtkObject);

  /// The settings of `object` (borrowed). "null" for null and for objects of other classes.
  static std::string Serialize(vtkObject* object);

  /// Give `object` (borrowed) the settings in `json`; its Update() is left to the caller. Each
  /// collection that is read is emptied first: afterwards it has what the text says, and what is
  /// missing there has its default for the owner. Blocks that the text does not name keep their
  /// settings. False, with what was read until then, when the text is no JSON, is of another kind
  /// of object, or holds something that is no property; an unknown type of a property is warned
  /// about.
  static bool Deserialize(const std::string& json, vtkObject* object);

protected:
  zylJSONSerializer() = default;
  ~zylJSONSerializer() override = default;

private:
  zylJSONSerializer(const zylJSONSerializer&) = delete;
  void operator=(const zylJSONSerializer&) = delete;
};

#endif
