#include "zylCoordinateColumns.h"

#include <algorithm>
#include <cctype>

namespace {
std::string PlainName(std::string name)
{
  name.erase(0, name.find_first_not_of(" \t\""));
  name.erase(std::min(name.find_first_of(" \t\"[("), name.size()));
  std::transform(name.begin(), name.end(), name.begin(),
    [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return name;
}
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylFindCoordinateColumns(const std::vector<std::string>& names, int columns[3])
{
  const char* const schemes[][3] = { { "x", "y", "z" }, { "points:0", "points:1", "points:2" },
    { "points_0", "points_1", "points_2" } };
  std::vector<std::string> plain(names.size());
  std::transform(names.begin(), names.end(), plain.begin(), PlainName);
  return std::any_of(std::begin(schemes), std::end(schemes), [&](const auto& scheme) {
    for (int axis = 0; axis < 3; ++axis)
    {
      const auto found = std::find(plain.begin(), plain.end(), scheme[axis]);
      if (found == plain.end())
      {
        return false;
      }
      columns[axis] = static_cast<int>(found - plain.begin());
    }
    return true;
  });
}
