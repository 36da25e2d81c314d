#include "zylViewCases.h"

#include "zylViewBlocks.h"
#include "zylViewCase.h"
#include "zylViewError.h"
#include "zylViewOptions.h"
#include "zylViewProperties.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <map>

namespace {
// Steps that are numbered behind the dot are of one kind.
std::string GetKind(const std::string& file)
{
  std::string kind = std::filesystem::path(file).extension().string();
  const bool number = kind.find_first_not_of(".0123456789") == std::string::npos;
  std::transform(kind.begin(), kind.end(), kind.begin(),
    [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return number ? std::filesystem::path(file).stem().string() : kind;
}

using Knows = std::function<bool(const zylViewBlocks&)>;

bool Has(const zylViewBlocks& blocks, const std::string& array)
{
  return array.empty() || blocks.IsDerived(array) ||
    blocks.GetArray(array, blocks.GetLeaves()).Found;
}

bool HasBlock(const zylViewBlocks& blocks, const std::string& owner)
{
  try
  {
    return !blocks.Find(owner).empty();
  }
  catch (const zylViewError&)
  {
    return false;
  }
}

// Whether another dataset gets a wish that this one cannot fulfil.
bool IsForOthers(const zylViewCaseList& cases, zylViewCase& own, const Knows& knows)
{
  const auto fulfils = [&](const auto& one) { return knows(one->GetBlocks()); };
  return !knows(own.GetBlocks()) && std::any_of(cases.begin(), cases.end(), fulfils);
}

template <class Wishes, class Getter>
void Share(const zylViewCaseList& cases, zylViewCase& own, Wishes& wishes, Getter knows)
{
  const auto foreign = [&](const auto& wish) {
    return IsForOthers(
      cases, own, [&](const zylViewBlocks& blocks) { return knows(blocks, wish); });
  };
  wishes.erase(std::remove_if(wishes.begin(), wishes.end(), foreign), wishes.end());
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<std::vector<std::string>> zylGroupFiles(const zylViewOptions& options)
{
  std::vector<std::vector<std::string>> groups;
  std::map<std::string, std::size_t> known;
  for (const std::string& file : options.Files)
  {
    const auto [place, isNew] =
      known.emplace(options.ReaderName.empty() ? GetKind(file) : "", groups.size());
    if (isNew)
    {
      groups.emplace_back();
    }
    groups[place->second].push_back(file);
  }
  return groups;
}

//--------------------------------------------------------------------------------------------------
void zylShareOptions(const zylViewCaseList& cases)
{
  for (const auto& own : cases)
  {
    zylViewOptions& options = own->GetOptions();
    for (std::string zylViewOptions::*name :
      { &zylViewOptions::Array, &zylViewOptions::ContourArray, &zylViewOptions::GlyphArray })
    {
      const std::string array = options.*name;
      if (IsForOthers(cases, *own, [&](const zylViewBlocks& blocks) { return Has(blocks, array); }))
      {
        (options.*name).clear();
      }
    }
    Share(cases, *own, options.BlockSettings,
      [](const auto& blocks, const auto& wish) { return HasBlock(blocks, wish.Owner); });
    Share(cases, *own, options.Clips,
      [](const auto& blocks, const auto& wish) { return Has(blocks, wish.Variable); });
    Share(cases, *own, options.Derived, [](const auto& blocks, const auto& wish) {
      return Has(blocks, wish.Variable) && Has(blocks, wish.Clip.Variable);
    });
    Share(cases, *own, options.Histograms,
      [](const auto& blocks, const auto& wish) { return Has(blocks, wish.first); });
  }
}

//--------------------------------------------------------------------------------------------------
bool zylSetColorRanges(const zylViewCaseList& cases, zylViewRange how)
{
  std::map<std::string, std::array<double, 2>> ranges;
  for (const auto& one : cases)
  {
    if (!one->GetVariable().empty())
    {
      auto& range = ranges.emplace(one->GetVariable(), std::array{ 1.0, -1.0 }).first->second;
      zylExtend(range, one->GetVariableRange());
      if (how != zylViewRange::Step)
      {
        zylExtend(range, one->GetColorRange());
      }
    }
  }
  bool changed = false;
  for (const auto& one : cases)
  {
    const auto range = ranges.find(one->GetVariable());
    const bool fixed = how == zylViewRange::Grow && one->GetOptions().Range;
    if (range != ranges.end() && range->second[0] <= range->second[1] && !fixed &&
      one->GetColorRange() != zylUsableRange(range->second))
    {
      one->SetColorRange(zylUsableRange(range->second));
      changed = true;
    }
  }
  return changed;
}

//--------------------------------------------------------------------------------------------------
void zylPlaceLegends(const zylViewCaseList& cases)
{
  constexpr int places[] = { 2, 1, 5, 4 }; // corners as the library counts them
  std::vector<std::string> seen;
  for (const auto& one : cases)
  {
    zylViewOptions& options = one->GetOptions();
    const std::string variable = one->GetVariable();
    const bool known = std::find(seen.begin(), seen.end(), variable) != seen.end();
    if (known || seen.size() == std::size(places))
    {
      options.Legend = false;
    }
    else if (!variable.empty() && options.Legend.value_or(false))
    {
      options.LegendPlace = places[seen.size()];
      seen.push_back(variable);
    }
  }
}
