#include "zylViewSeeds.h"

#include "zylViewDerivedForms.h"
#include "zylViewError.h"
#include "zylViewProperties.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include <zylClipRepresentation.h>
#include <zylDataSet.h>
#include <zylPointProbe.h>
#include <zylPropertyCollection.h>

#include <vtkNew.h>
#include <vtkPolyData.h>

namespace {
using Points = std::vector<double>;
constexpr int TriesPerSeed = 20;     // at most one point in twenty of a box lies in the data
constexpr int TriesAtOnce = 2000;    // points probed together
constexpr double Everything = 1e150; // radius of a sphere around any data

// Evenly spread numbers in [0, 1): the i-th of van der Corput's sequence.
double Spread(unsigned int i, unsigned int base)
{
  double value = 0.0, digit = 1.0 / base;
  for (; i > 0; i /= base, digit /= base)
  {
    value += digit * (i % base);
  }
  return value;
}

std::array<double, 3> SpreadInCube(unsigned int i)
{
  return { Spread(i + 1, 2), Spread(i + 1, 3), Spread(i + 1, 5) };
}

//--------------------------------------------------------------------------------------------------
Points OnLine(const zylViewSeeds& seeds)
{
  Points points;
  for (int i = 0; i < seeds.Count; ++i)
  {
    const double along = seeds.Count > 1 ? double(i) / (seeds.Count - 1) : 0.5;
    for (int c = 0; c < 3; ++c)
    {
      points.push_back(seeds.Values[c] + along * (seeds.Values[c + 3] - seeds.Values[c]));
    }
  }
  return points;
}

Points InSphere(const zylViewSeeds& seeds)
{
  Points points;
  for (unsigned int i = 0; points.size() < 3 * static_cast<std::size_t>(seeds.Count); ++i)
  {
    std::array<double, 3> p = SpreadInCube(i);
    std::transform(p.begin(), p.end(), p.begin(), [](double x) { return 2.0 * x - 1.0; });
    if (std::hypot(p[0], p[1], p[2]) <= 1.0)
    {
      for (int c = 0; c < 3; ++c)
      {
        points.push_back(seeds.Values[c] + seeds.Values[3] * p[c]);
      }
    }
  }
  return points;
}

Points FromFile(const std::string& file)
{
  Points points;
  std::ifstream stream(file);
  if (!stream)
  {
    throw zylViewError(zylViewBadFile, "cannot read the seeds in '" + file + "'");
  }
  for (std::string line; std::getline(stream, line);)
  {
    std::replace_if(
      line.begin(), line.end(), [](char c) { return c == ',' || c == ';' || c == '\t'; }, ' ');
    std::istringstream words(line);
    double x, y, z;
    if (words >> x >> y >> z) // titles and comments are no points
    {
      points.insert(points.end(), { x, y, z });
    }
  }
  if (points.empty())
  {
    throw zylViewError(zylViewBadFile, "there is no line of three numbers in '" + file + "'");
  }
  return points;
}

//--------------------------------------------------------------------------------------------------
Points InVolume(std::size_t count, zylDataSet* dataset, const std::vector<int>& blocks)
{
  Points inside;
  double b[6];
  if (!dataset->GetBounds(b))
  {
    return inside;
  }
  vtkNew<zylPointProbe> probe;
  probe->SetDataSet(dataset);
  zylSetAny(probe->GetProperties(), "Blocks", blocks);
  const auto tries =
    static_cast<unsigned int>(std::min<std::size_t>(TriesPerSeed * count, 1u << 24));
  for (unsigned int first = 0; first < tries && inside.size() < 3 * count; first += TriesAtOnce)
  {
    Points points;
    for (unsigned int i = first; i < first + TriesAtOnce; ++i)
    {
      const auto p = SpreadInCube(i);
      for (int c = 0; c < 3; ++c)
      {
        points.push_back(b[2 * c] + p[c] * (b[2 * c + 1] - b[2 * c]));
      }
    }
    zylSetAny(probe->GetProperties(), "ProbePoints", points);
    probe->Update();
    for (unsigned int i = 0; i < TriesAtOnce && inside.size() < 3 * count; ++i)
    {
      if (probe->GetProbedValues(i).Valid)
      {
        inside.insert(inside.end(), points.begin() + 3 * i, points.begin() + 3 * i + 3);
      }
    }
  }
  return inside;
}

//--------------------------------------------------------------------------------------------------
// Points of the surface, every so many.
Points OnSurface(std::size_t count, zylDataSet* dataset, const std::vector<int>& blocks)
{
  vtkNew<zylClipRepresentation> whole;
  whole->SetDataSet(dataset);
  zylSetAny(whole->GetProperties(), "Blocks", blocks);
  whole->GetProperties()->Set("ClipMode", 2);
  whole->GetProperties()->Set("SphereRadius", Everything);
  whole->Update();
  const auto surface = whole->GetDerivedSurface();
  const auto found = static_cast<std::size_t>(surface ? surface->GetNumberOfPoints() : 0);
  Points points;
  for (std::size_t i = 0; i < std::min(count, found); ++i)
  {
    double p[3];
    surface->GetPoint(
      static_cast<vtkIdType>((2 * i + 1) * found / (2 * std::min(count, found))), p);
    points.insert(points.end(), p, p + 3);
  }
  return points;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<double> zylGetSeedPoints(
  const zylViewSeeds& seeds, zylDataSet* dataset, const std::vector<int>& blocks, bool onSurface)
{
  const auto count = static_cast<std::size_t>(seeds.Count);
  switch (seeds.Kind)
  {
    case zylViewSeeds::Shape::Line:
      return OnLine(seeds);
    case zylViewSeeds::Shape::Sphere:
      return InSphere(seeds);
    case zylViewSeeds::Shape::Points:
      return seeds.Values;
    case zylViewSeeds::Shape::File:
      return FromFile(seeds.File);
    case zylViewSeeds::Shape::Spread:
      break;
  }
  const Points inside = onSurface ? Points() : InVolume(count, dataset, blocks);
  return inside.empty() ? OnSurface(count, dataset, blocks) : inside;
}
