#include "zylViewError.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace {
std::string Lower(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(),
    [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Insertions, deletions and replacements that turn a into b.
std::size_t EditDistance(const std::string& a, const std::string& b)
{
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t(0));
  for (std::size_t i = 0; i < a.size(); ++i)
  {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j)
    {
      const std::size_t above = row[j + 1];
      row[j + 1] = std::min({ row[j] + 1, above + 1, diagonal + (a[i] != b[j]) });
      diagonal = above;
    }
  }
  return row.back();
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewError zylUnknownName(
  const std::string& kind, const std::string& name, const std::vector<std::string>& known)
{
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const std::string& candidate : known)
  {
    ranked.emplace_back(EditDistance(Lower(name), Lower(candidate)), candidate);
  }
  std::sort(ranked.begin(), ranked.end());
  ranked.erase(std::unique(ranked.begin(), ranked.end()), ranked.end());

  std::string text = "there is no " + kind + " '" + name + "'";
  for (std::size_t i = 0; i < std::min<std::size_t>(ranked.size(), 3); ++i)
  {
    text += (i == 0 ? "; nearest: " : ", ") + ranked[i].second;
  }
  return { zylViewUnknownName, text };
}
