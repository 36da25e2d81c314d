#include "zylViewLook.h"

#include "zylViewBlocks.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include <zylDataSet.h>
#include <zylMultiBlockTree.h>

#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>
#include <vtkSMSourceProxy.h>
#include <vtkType.h>

namespace {
constexpr double Plane = 1e-6; // thickness over width of what has no relief to light
constexpr double DarkGround = 0.45;

// Numbers of points and cells, what processes share, and how to paint: no results.
bool SaysNothing(const std::string& name, int components)
{
  std::string word;
  for (const char c : name)
  {
    word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  const auto begins = [&word](const char* start) { return word.rfind(start, 0) == 0; };
  const auto has = [&word](const char* part) { return word.find(part) != std::string::npos; };
  const auto ends = [&name](const std::string& end) {
    return name.size() >= end.size() &&
      name.compare(name.size() - end.size(), end.size(), end) == 0;
  };
  return word == "id" || word == "ids" || ends("Id") || ends("ID") || ends("Ids") || ends("IDs") ||
    ends("_id") || ends("_ids") || ends(" id") || ends(" ids") || begins("vtk") || has("ghost") ||
    has("tcoord") || has("texture") || (components > 1 && has("normal"));
}

bool Varies(const zylViewArray& array)
{
  const double size = std::max(std::abs(array.Range[0]), std::abs(array.Range[1]));
  return array.Range[1] - array.Range[0] > 1e-3 * size;
}

//--------------------------------------------------------------------------------------------------
// What is read as bytes of red, green and blue is a picture already.
struct Paint
{
  std::string Array;
  int Components = 0; // of bytes; 1 is gray
};

Paint FindPaint(const zylViewBlocks& blocks, zylDataSet* dataset)
{
  Paint paint;
  vtkPVDataInformation* all = dataset->GetOutput()->GetDataInformation();
  for (const std::string& name : blocks.GetArrayNames())
  {
    for (vtkPVDataSetAttributesInformation* data :
      { all->GetPointDataInformation(), all->GetCellDataInformation() })
    {
      vtkPVArrayInformation* array = data->GetArrayInformation(name.c_str());
      if (array != nullptr && array->GetDataType() == VTK_UNSIGNED_CHAR && paint.Array.empty() &&
        !SaysNothing(name, array->GetNumberOfComponents()))
      {
        paint = { name, array->GetNumberOfComponents() };
      }
    }
  }
  return paint;
}

bool IsImage(const zylViewBlocks& blocks, zylDataSet* dataset)
{
  double b[6];
  const auto leaves = blocks.GetLeaves();
  zylMultiBlockTree* leaf = dataset->GetMultiBlockTree()->FindChildWithBlockIndex(leaves.front());
  return leaves.size() == 1 && dataset->GetBounds(b) && zylGetFlatAxis(b, Plane) == 2 &&
    (leaf->GetKind() == "uniform grid" || leaf->GetKind() == "image data");
}

//--------------------------------------------------------------------------------------------------
// Before the user's own settings, which so have the last word.
void Prepend(zylViewOptions& options, const std::vector<std::string>& texts)
{
  std::vector<zylViewSetting> settings;
  std::transform(texts.begin(), texts.end(), std::back_inserter(settings), &zylParseBlockSetting);
  options.BlockSettings.insert(options.BlockSettings.begin(), settings.begin(), settings.end());
}

// Who gives a block a color wants to see it.
template <class Parse>
void KeepSolidColors(std::vector<zylViewSetting>& settings, Parse parse)
{
  std::vector<zylViewSetting> solid;
  for (const zylViewSetting& setting : settings)
  {
    if (setting.Name == "Color" && (setting.Kind == "Surface" || setting.Kind.empty()))
    {
      solid.push_back(parse(setting.Owner));
    }
  }
  settings.insert(settings.begin(), solid.begin(), solid.end());
}

//--------------------------------------------------------------------------------------------------
void FillColors(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  const std::string array = zylChooseArray(blocks);
  const bool image = IsImage(blocks, dataset);
  const Paint paint = image || array.empty() ? FindPaint(blocks, dataset) : Paint();
  KeepSolidColors(options.BlockSettings,
    [](const std::string& block) { return zylParseBlockSetting(block + ":ColorMode=0"); });
  KeepSolidColors(options.KindSettings,
    [](const std::string& kind) { return zylParseKindSetting(kind + ".Surface.ColorMode=0"); });
  options.Array = array;
  if (paint.Components == 3 || paint.Components == 4)
  {
    options.Array = paint.Array;
    options.DirectColors = true;
  }
  else if (image && paint.Components == 1 && options.ColorMap.empty())
  {
    options.Array = paint.Array;
    options.ColorMap = "Grayscale";
    options.Legend = options.Legend.value_or(false);
  }
}

// Lines and points as wide as fingers can point at; in colors that are nowhere as light as the
// ground.
void FillWidths(const zylViewBlocks& blocks, zylViewOptions& options)
{
  const auto volumes = blocks.GetBlocksOfDimension(3), surfaces = blocks.GetBlocksOfDimension(2),
             lines = blocks.GetBlocksOfDimension(1);
  const double* ink = zylGetInk(options, 0.5);
  const int samples = options.Output.empty() ? 1 : options.Samples;
  std::vector<std::string> settings;
  for (const unsigned int leaf : blocks.GetLeaves())
  {
    const auto in = [leaf](const std::vector<int>& list) {
      return std::find(list.begin(), list.end(), static_cast<int>(leaf)) != list.end();
    };
    if (in(volumes) || in(surfaces))
    {
      continue;
    }
    const std::string block = std::to_string(leaf) + ":";
    settings.push_back(block + "Color=" + std::to_string(ink[0]) + "," + std::to_string(ink[1]) +
      "," + std::to_string(ink[2]));
    settings.push_back(block + "Ambient=0.6");
    settings.push_back(block + "TubeRadius=" + std::to_string(2.5 * samples));
    settings.push_back(block + "PointRadius=" + std::to_string(5.0 * samples));
    if (!in(lines))
    {
      settings.push_back(block + "DisplayStyle=1"); // points, whether they are cells or not
    }
  }
  if (!settings.empty() && options.ColorMap.empty() && ink == zylInk && volumes.empty() &&
    surfaces.empty())
  {
    options.ColorMap = "Rainbow Uniform"; // nowhere as light as the ground
  }
  Prepend(options, settings);
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylChooseArray(const zylViewBlocks& blocks)
{
  std::string best;
  int least = 8;
  for (const std::string& name : blocks.GetArrayNames())
  {
    const zylViewArray array = blocks.GetArray(name, blocks.GetLeaves());
    if (SaysNothing(name, array.Components) || array.Range[0] > array.Range[1])
    {
      continue; // texts have no range
    }
    const int rank = (Varies(array) ? 0 : 4) + (array.PointData ? 0 : 2) + (array.Components > 1);
    if (rank < least)
    {
      best = name;
      least = rank;
    }
  }
  return best;
}

//--------------------------------------------------------------------------------------------------
void zylFillLook(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  double b[6];
  if (options.Array.empty())
  {
    FillColors(blocks, dataset, options);
  }
  FillWidths(blocks, options);
  if (dataset->GetBounds(b) && zylGetFlatAxis(b, Plane) >= 0 && options.Derived.empty())
  {
    Prepend(options, { "0:Ambient=1", "0:Diffuse=0" });
    options.Fit = true;
  }
  else
  {
    Prepend(options, { "0:Ambient=0.2", "0:Diffuse=0.9" }); // colors in the shade are read, too
  }
  options.Legend = options.Legend.value_or(!options.DirectColors);
}

//--------------------------------------------------------------------------------------------------
const double* zylGetInk(const zylViewOptions& options, double height)
{
  double brightness = 0.0;
  constexpr double weights[] = { 0.3, 0.6, 0.1 };
  for (int i = 0; i < 3; ++i)
  {
    brightness += weights[i] *
      (height * options.BackgroundTop[i] + (1.0 - height) * options.BackgroundBottom[i]);
  }
  return brightness < DarkGround ? zylPaper : zylInk;
}

//--------------------------------------------------------------------------------------------------
int zylGetFlatAxis(const double* b, double share)
{
  const double size = std::max({ b[1] - b[0], b[3] - b[2], b[5] - b[4] });
  int flat = -1;
  for (int axis = 2; axis >= 0 && size > 0.0; --axis)
  {
    // In a line two axes are thin: it has no side to look at.
    if (b[2 * axis + 1] - b[2 * axis] <= share * size)
    {
      flat = flat < 0 ? axis : 3;
    }
  }
  return flat == 3 ? -1 : flat;
}
