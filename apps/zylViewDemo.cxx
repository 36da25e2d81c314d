#include "zylViewDemo.h"

#include "zylViewBlocks.h"
#include "zylViewOptions.h"

#include <algorithm>
#include <cmath>

#include <zylDataSet.h>

namespace {
constexpr int ManyPoints = 3000; // per block, above which arrows hide everything

void SetUnlessChosen(std::string& option, const std::string& value)
{
  if (option.empty())
  {
    option = value;
  }
}

// Put settings before the user's own, which so have the last word.
void SetBlocks(zylViewOptions& options, const std::vector<std::string>& texts)
{
  std::vector<zylViewBlockSetting> settings;
  std::transform(texts.begin(), texts.end(), std::back_inserter(settings), &zylParseBlockSetting);
  options.BlockSettings.insert(options.BlockSettings.begin(), settings.begin(), settings.end());
}

//--------------------------------------------------------------------------------------------------
void FillForSample(zylViewOptions& options)
{
  SetUnlessChosen(options.Array, "Velocity_Magnitude");
  SetUnlessChosen(options.ContourArray, "Pressure");
  SetUnlessChosen(options.GlyphArray, "Velocity");
  options.GlyphScale = 0.5;
  if (options.Clips.empty())
  {
    options.Clips.push_back(zylParseClip("plane:4,-4,1.2,0,-0.6,0.8"));
  }
  SetBlocks(options,
    { "root:Visibility=false", "root:Contour.Visibility=false", "root:VectorGlyph.Visibility=false",
      "Extracts:Visibility=true", "Walls:Visibility=true", "Left side:Visibility=true",
      "Outlet:Visibility=true", "Mid-plane:Contour.Visibility=true",
      "Rake:VectorGlyph.Visibility=true", "Floor:MeshLine.Visibility=true", "Floor:ColorMode=0",
      "Floor:Color=0.85,0.85,0.82", "Chimney:ColorMode=0", "Chimney:Color=0.70,0.30,0.20" });
}

//--------------------------------------------------------------------------------------------------
// The first point array, vectors last; else the first cell array.
std::string ChooseArray(const zylViewBlocks& blocks)
{
  std::string vector, any;
  for (const std::string& name : blocks.GetArrayNames())
  {
    const zylViewArray array = blocks.GetArray(name, blocks.GetLeaves());
    if (array.PointData && array.Components == 1 && array.Range[0] < array.Range[1])
    {
      return name;
    }
    vector = vector.empty() && array.PointData ? name : vector;
    any = any.empty() ? name : any;
  }
  return vector.empty() ? any : vector;
}

std::string ChooseVector(const zylViewBlocks& blocks)
{
  for (const std::string& name : blocks.GetArrayNames())
  {
    const zylViewArray array = blocks.GetArray(name, blocks.GetLeaves());
    if (array.PointData && array.Components == 3)
    {
      return name;
    }
  }
  return "";
}

//--------------------------------------------------------------------------------------------------
void FillForData(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  const auto leaves = blocks.GetLeaves();
  double b[6];
  const bool bounded = dataset->GetBounds(b);
  const double size = bounded ? std::hypot(b[1] - b[0], b[3] - b[2], b[5] - b[4]) : 1.0;
  SetUnlessChosen(options.Array, ChooseArray(blocks));
  const zylViewArray color = blocks.GetArray(options.Array, leaves);
  if (color.PointData && color.Components == 1)
  {
    SetUnlessChosen(options.ContourArray, options.Array);
  }
  const std::string vector = ChooseVector(blocks);
  const bool few = dataset->GetNumberOfPoints() < ManyPoints * static_cast<int>(leaves.size());
  std::vector<std::string> settings;
  if (options.GlyphArray.empty() && !vector.empty() && few)
  {
    options.GlyphArray = vector;
    options.GlyphScale = size / 40.0;
    settings.emplace_back("root:VectorGlyph.Visibility=false");
    settings.push_back(std::to_string(leaves.back()) + ":VectorGlyph.Visibility=true");
  }
  settings.push_back(std::to_string(leaves.front()) + ":MeshLine.Visibility=true");
  if (leaves.size() > 1)
  {
    settings.push_back(std::to_string(leaves[1]) + ":ColorMode=0");
    settings.push_back(std::to_string(leaves[1]) + ":Color=0.95,0.70,0.25");
  }
  const bool flat = !bounded || b[5] - b[4] <= 1e-3 * size;
  if (options.Clips.empty() && !flat)
  {
    zylViewClip clip; // away with the corner that faces the eye
    clip.Values = { (b[0] + b[1]) / 2, (b[2] + b[3]) / 2, (b[4] + b[5]) / 2, 0.0, -1.0, 0.0 };
    options.Clips.push_back(clip);
  }
  SetBlocks(options, settings);
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylFillDemoOptions(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  options.Legend = true;
  if (options.Sample)
  {
    FillForSample(options);
  }
  else
  {
    FillForData(blocks, dataset, options);
  }
}
