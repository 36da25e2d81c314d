#include "zylViewCommands.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"

#include <algorithm>
#include <iterator>

#include <zylBoundaryRepresentation.h>
#include <zylPropertyCollection.h>

namespace {
constexpr const char* ColorMaps[] = { "Cool to Warm", "Viridis (matplotlib)", "Turbo", "Jet",
  "Grayscale" };
} // namespace

//--------------------------------------------------------------------------------------------------
void zylColorByNextArray(const zylViewCaseList& cases, int direction)
{
  std::vector<std::string> names;
  for (const auto& one : cases)
  {
    for (const std::string& name : one->GetBlocks().GetArrayNames())
    {
      const auto array = one->GetBlocks().GetArray(name, one->GetBlocks().GetLeaves());
      if (array.Range[0] <= array.Range[1] &&
        std::find(names.begin(), names.end(), name) == names.end())
      {
        names.push_back(name);
      }
    }
  }
  names.emplace_back(""); // solid
  const std::string now = cases.front()->GetVariable();
  const auto place = std::find(names.begin(), names.end(), now) - names.begin();
  const auto count = static_cast<std::ptrdiff_t>(names.size());
  const std::string next = place == count // colored by a component
    ? names.front()
    : names[(place + direction + count) % count];
  for (const auto& one : cases)
  {
    one->ColorBy(next);
  }
  zylPlaceLegends(cases);
  zylSetColorRanges(cases, zylViewRange::Step);
}

//--------------------------------------------------------------------------------------------------
void zylUseNextColorMap(const zylViewCaseList& cases)
{
  const auto displays = cases.front()->GetColored();
  const std::string now = displays.empty() ? "" : displays.front()->GetString("ColorMapName");
  const auto place = std::find(std::begin(ColorMaps), std::end(ColorMaps), now);
  const auto next = place == std::end(ColorMaps) || place + 1 == std::end(ColorMaps)
    ? std::begin(ColorMaps)
    : place + 1;
  for (const auto& one : cases)
  {
    for (zylPropertyCollection* display : one->GetColored())
    {
      display->Set("ColorMapName", *next);
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylToggleLegend(const zylViewCaseList& cases)
{
  bool shown = false;
  for (const auto& one : cases)
  {
    for (zylPropertyCollection* display : one->GetColored())
    {
      shown |= display->GetBool("ColorLegendVisibility");
    }
  }
  for (const auto& one : cases)
  {
    one->ShowLegend(!shown);
  }
}

//--------------------------------------------------------------------------------------------------
// Of the blocks whose surfaces are shown.
void zylToggleMesh(const zylViewCaseList& cases)
{
  bool shown = false;
  const auto visit = [&cases](const auto& action) {
    for (const auto& one : cases)
    {
      for (const unsigned int leaf : one->GetBlocks().GetLeaves())
      {
        const auto block = static_cast<int>(leaf);
        action(one->GetBoundary()->GetSurfaceProperties(block)->GetBool("Visibility"),
          one->GetBoundary()->GetMeshLineProperties(block));
      }
    }
  };
  visit([&shown](bool, zylPropertyCollection* mesh) { shown |= mesh->GetBool("Visibility"); });
  visit([&shown](bool surface, zylPropertyCollection* mesh) {
    mesh->Set("Visibility", surface && !shown);
  });
}
