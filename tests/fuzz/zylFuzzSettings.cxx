#include "zylFuzz.h"

#include "Settings/zylPropertyJSON.h"
#include "zylProperty.h"
#include "zylPropertyCollection.h"

#include <cstdlib>
#include <string>

#include <vtkNew.h>
#include <vtkObject.h>

namespace {
bool Read(const std::string& text, zylPropertyCollection* collection)
{
  return zylReadText(
    text, [collection](const Json::Value& json) { return zylReadJSON(json, collection); });
}
} // namespace

void zylFuzzSettings(const std::uint8_t* data, std::size_t size)
{
  vtkObject::GlobalWarningDisplayOff();
  const std::string text(reinterpret_cast<const char*>(data), size);
  vtkNew<zylPropertyCollection> collection;
  collection->MakeDouble("Transparency", 0.5);
  collection->MakeBool("Visibility", true)->SetIncludeInHash(false);
  if (!Read(text, collection))
  {
    return;
  }
  // What was read is written, and read again as the same.
  const std::string written = zylWriteText(zylWriteJSON(collection.Get()));
  vtkNew<zylPropertyCollection> again;
  if (!Read(written, again) || again->GetPropertyNames() != collection->GetPropertyNames() ||
    zylWriteText(zylWriteJSON(again.Get())) != written)
  {
    std::abort();
  }
}
