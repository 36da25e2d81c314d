#include "zylFuzz.h"

#include "zylBlockParts.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace {
void Require(bool good)
{
  if (!good)
  {
    std::abort();
  }
}

void CheckPart(zylBlockSplitter& splitter, const zylBlockShape& shape, const zylBlockParts& parts,
  const zylBlockParts::Part& part, const std::vector<int>& labels)
{
  const int corners = shape.CornerCount();
  std::vector<int> points;
  std::vector<int> ids(static_cast<std::size_t>(part.CellCount) * corners);
  if (parts.Whole)
  {
    zylConnectWhole(shape, 0, ids.data());
  }
  else
  {
    splitter.Connect(shape, parts, part, 0, points, ids.data());
    Require(static_cast<int>(points.size()) == part.PointCount);
    Require(std::is_sorted(points.begin(), points.end()));
    for (int i = 0; i < part.CellCount; ++i)
    {
      Require(labels[parts.Cells[part.FirstCell + i]] == part.Id);
    }
  }
  const std::set<int> used(ids.begin(), ids.end());
  Require(static_cast<int>(used.size()) == part.PointCount);
  Require(*used.begin() == 0 && *used.rbegin() == part.PointCount - 1);
}
} // namespace

void zylFuzzParts(const std::uint8_t* data, std::size_t size)
{
  if (size < 3)
  {
    return;
  }
  const zylBlockShape shape(data[0] % 12, data[1] % 12, data[2] % 12);
  std::vector<int> labels(shape.NumberOfCells());
  for (std::size_t i = 0; i < labels.size(); ++i)
  {
    const std::uint8_t value = size > 3 ? data[3 + i % (size - 3)] : 0;
    labels[i] = value % 16 == 15 ? -1 : value * (value % 3 == 0 ? 251 : 1);
  }
  static zylBlockSplitter splitter; // its tables serve one block after another
  zylBlockParts parts;
  splitter.Split(shape, labels, parts);
  int cells = 0;
  int previous = -1;
  for (const auto& part : parts.Parts)
  {
    Require(part.CellCount > 0 && part.Id > previous);
    previous = part.Id;
    cells += part.CellCount;
    CheckPart(splitter, shape, parts, part, labels);
  }
  Require(cells ==
    static_cast<int>(std::count_if(labels.begin(), labels.end(), [](int l) { return l >= 0; })));
}
