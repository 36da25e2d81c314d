#include "zylJSONSerializer.h"

#include "Settings/zylPropertyJSON.h"
#include "zylBoundaryRepresentation.h"
#include "zylDataSet.h"
#include "zylDerivedSurfaceRepresentation.h"
#include "zylIntegrateFields.h"
#include "zylPipeline.h"
#include "zylProperty.h"
#include "zylPropertyCollection.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

#include <vtkNew.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylJSONSerializer);

namespace {
// The collections of a representation that are saved, by the key of a derived surface; those of the
// blocks of a boundary representation have an "s" behind it.
struct DerivedKind
{
  const char* Key;
  zylPropertyCollection* (zylDerivedSurfaceRepresentation::*Get)();
};
constexpr DerivedKind DerivedKinds[] = {
  { "surfacePropertiesCollection", &zylDerivedSurfaceRepresentation::GetSurfaceProperties },
  { "meshLinePropertiesCollection", &zylDerivedSurfaceRepresentation::GetMeshLineProperties },
  { "featureLinePropertiesCollection", &zylDerivedSurfaceRepresentation::GetFeatureLineProperties },
  { "vectorGlyphPropertiesCollection", &zylDerivedSurfaceRepresentation::GetVectorGlyphProperties },
};

struct BlockKind
{
  const char* Key;
  zylPropertyCollection* (zylBoundaryRepresentation::*Get)(int);
};
constexpr BlockKind BlockKinds[] = {
  { "surfacePropertiesCollections", &zylBoundaryRepresentation::GetSurfaceProperties },
  { "meshLinePropertiesCollections", &zylBoundaryRepresentation::GetMeshLineProperties },
  { "featureLinePropertiesCollections", &zylBoundaryRepresentation::GetFeatureLineProperties },
  { "vectorGlyphPropertiesCollections", &zylBoundaryRepresentation::GetVectorGlyphProperties },
};

Json::Value Write(zylDerivedSurfaceRepresentation* representation)
{
  Json::Value json(Json::objectValue);
  json["properties"] = zylWriteJSON(representation->GetProperties());
  for (const DerivedKind& kind : DerivedKinds)
  {
    if (representation->GetDataSet())
    {
      json[kind.Key] = zylWriteJSON((representation->*kind.Get)());
    }
  }
  return json;
}

//--------------------------------------------------------------------------------------------------
// All blocks, in the order of their names; blocks that share a name with another one at the end.
std::vector<unsigned int> GetBlocks(zylDataSet* dataset)
{
  std::vector<unsigned int> blocks;
  std::set<unsigned int> known;
  const auto add = [&](unsigned int block) {
    if (known.insert(block).second)
    {
      blocks.push_back(block);
    }
  };
  for (const auto& block : dataset->GetBlockMap())
  {
    add(block.second);
  }
  for (const unsigned int block : dataset->GetBlockIDs())
  {
    add(block);
  }
  return blocks;
}

// What is not in the hash.
std::vector<int> GetVisibility(zylPropertyCollection* collection)
{
  std::vector<int> values;
  for (const char* name : { "Visibility", "ForceHidden" })
  {
    values.push_back(collection->Has(name) && collection->GetBool(name) ? 1 : 0);
  }
  return values;
}

Json::Value Write(zylBoundaryRepresentation* representation)
{
  Json::Value json(Json::objectValue);
  json["properties"] = zylWriteJSON(representation->GetProperties());
  if (!representation->GetDataSet())
  {
    return json;
  }
  const std::vector<unsigned int> blocks = GetBlocks(representation->GetDataSet());
  for (const BlockKind& kind : BlockKinds)
  {
    // Blocks of one hash may still differ in being shown: else a hidden block would come back.
    std::map<std::pair<std::uint64_t, std::vector<int>>, std::vector<unsigned int>> groups;
    for (const unsigned int block : blocks)
    {
      if (zylPropertyCollection* settings = (representation->*kind.Get)(static_cast<int>(block)))
      {
        groups[{ settings->GetHashValue(), GetVisibility(settings) }].push_back(block);
      }
    }
    Json::Value& entries = json[kind.Key] = Json::Value(Json::arrayValue);
    for (const auto& group : groups)
    {
      Json::Value entry =
        zylWriteJSON((representation->*kind.Get)(static_cast<int>(group.second.front())));
      for (const unsigned int block : group.second)
      {
        entry["blocks"].append(block);
      }
      entries.append(std::move(entry));
    }
  }
  return json;
}

Json::Value WriteObject(vtkObject* object)
{
  if (auto* property = zylProperty::SafeDownCast(object))
  {
    return zylWriteJSON(property);
  }
  if (auto* collection = zylPropertyCollection::SafeDownCast(object))
  {
    return zylWriteJSON(collection);
  }
  Json::Value json;
  if (auto* pipeline = zylPipeline::SafeDownCast(object))
  {
    json["properties"] = zylWriteJSON(pipeline->GetProperties());
  }
  else if (auto* derived = zylDerivedSurfaceRepresentation::SafeDownCast(object))
  {
    json = Write(derived);
  }
  else if (auto* boundary = zylBoundaryRepresentation::SafeDownCast(object))
  {
    json = Write(boundary);
  }
  else if (auto* integrator = zylIntegrateFields::SafeDownCast(object))
  {
    json["properties"] = zylWriteJSON(integrator->GetProperties());
  }
  return json;
}

bool Read(const Json::Value& json, zylDerivedSurfaceRepresentation* representation)
{
  bool read = zylReadJSON(zylMember(json, "properties"), representation->GetProperties());
  for (const DerivedKind& kind : DerivedKinds)
  {
    const Json::Value& collection = zylMember(json, kind.Key);
    if (!collection.isNull())
    {
      read = zylReadJSON(collection, (representation->*kind.Get)()) && read;
    }
  }
  return read;
}

bool Read(const Json::Value& json, zylBoundaryRepresentation* representation)
{
  bool read = zylReadJSON(zylMember(json, "properties"), representation->GetProperties());
  for (const BlockKind& kind : BlockKinds)
  {
    const Json::Value& groups = zylMember(json, kind.Key);
    if (!representation->GetDataSet() || groups.isNull())
    {
      continue;
    }
    read = groups.isArray() && read;
    for (Json::ArrayIndex i = 0; groups.isArray() && i < groups.size(); ++i)
    {
      const Json::Value& blocks = zylMember(groups[i], "blocks");
      // Read once, whatever the number of blocks.
      vtkNew<zylPropertyCollection> settings;
      bool first = true;
      for (Json::ArrayIndex k = 0; blocks.isArray() && k < blocks.size(); ++k)
      {
        zylPropertyCollection* target = (representation->*kind.Get)(blocks[k].asInt());
        if (!target)
        {
          read = false;
          continue;
        }
        if (first)
        {
          settings->DeepCopy(target);
          read = zylReadJSON(groups[i], settings) && read;
          first = false;
        }
        target->DeepCopy(settings);
      }
    }
  }
  return read;
}

bool ReadObject(const Json::Value& json, vtkObject* object)
{
  if (auto* property = zylProperty::SafeDownCast(object))
  {
    return zylReadJSON(json, property);
  }
  if (auto* collection = zylPropertyCollection::SafeDownCast(object))
  {
    return zylReadJSON(json, collection);
  }
  if (auto* pipeline = zylPipeline::SafeDownCast(object))
  {
    return zylReadJSON(zylMember(json, "properties"), pipeline->GetProperties());
  }
  if (auto* derived = zylDerivedSurfaceRepresentation::SafeDownCast(object))
  {
    return Read(json, derived);
  }
  if (auto* boundary = zylBoundaryRepresentation::SafeDownCast(object))
  {
    return Read(json, boundary);
  }
  if (auto* integrator = zylIntegrateFields::SafeDownCast(object))
  {
    return zylReadJSON(zylMember(json, "properties"), integrator->GetProperties());
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylJSONSerializer::Serialize(vtkObject* object)
{
  return zylWriteText(WriteObject(object));
}

//--------------------------------------------------------------------------------------------------
bool zylJSONSerializer::Deserialize(const std::string& json, vtkObject* object)
{
  return zylReadText(json, [object](const Json::Value& root) { return ReadObject(root, object); });
}
