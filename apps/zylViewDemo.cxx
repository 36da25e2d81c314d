#include "zylViewDemo.h"

#include "zylViewBlocks.h"
#include "zylViewLook.h"
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
  std::vector<zylViewSetting> settings;
  std::transform(texts.begin(), texts.end(), std::back_inserter(settings), &zylParseBlockSetting);
  options.BlockSettings.insert(options.BlockSettings.begin(), settings.begin(), settings.end());
}

//--------------------------------------------------------------------------------------------------
// The channel opened by a slanting cut: the floor's mesh, the street of vortices on the plane at
// mid-height, the vortex cores that stand in it.
void FillForSample(zylViewOptions& options)
{
  SetUnlessChosen(options.Array, "Velocity_Magnitude");
  if (!options.Range && options.Array == "Velocity_Magnitude")
  {
    options.Range = { 4.0, 16.0 }; // around the wind, 10 m/s
  }
  if (!options.Time)
  {
    options.Time = 0.125;
  }
  if (options.View == 0 && !options.From)
  {
    options.From = { -0.45, -1.2, 0.85 };
    options.Zoom *= 1.38;
  }
  if (options.Clips.empty())
  {
    options.Clips.push_back(zylParseClip("plane:4,-4,0.6,0,-0.6,0.8"));
  }
  SetBlocks(options,
    { "root:Visibility=false", "root:Ambient=0.2", "root:Diffuse=0.95",
      "root:ColorLegendLocation=4", "Extracts:Visibility=true", "Walls:Visibility=true",
      "Inlet:Visibility=true", "Outlet:Visibility=true", "Left side:Visibility=true",
      "Right side:Visibility=true", "Floor:ColorMode=0", "Floor:Color=0.85,0.85,0.82",
      "Floor:MeshLine.Visibility=true", "Floor:MeshLine.Color=0.35,0.35,0.37",
      "Chimney:ColorMode=0", "Chimney:Color=0.82,0.36,0.23", "Vortex cores:ColorMode=0",
      "Vortex cores:Color=1,0.80,0.28", "Vortex cores:Transparency=0.25",
      "Mid-plane:Contour.Visibility=true", "Mid-plane:Contour.ContourVariableName=Pressure",
      "Mid-plane:Contour.ContourRange=-60,20", "Mid-plane:Contour.NumberOfContours=17",
      "Mid-plane:Contour.Color=0.15,0.15,0.2", "Rake:VectorGlyph.Visibility=true",
      "Rake:VectorGlyph.VectorVariable=Velocity", "Rake:VectorGlyph.ScaleFactor=0.5",
      "Rake:VectorGlyph.Color=0.08,0.08,0.1" });
}

//--------------------------------------------------------------------------------------------------
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
// What is drawn on top of surfaces, as settings without the "block:" or "kind." before them.
std::vector<std::string> ChooseOverlays(
  const zylViewBlocks& blocks, const zylViewOptions& options, double size, bool few)
{
  std::vector<std::string> overlays;
  const std::string vector = ChooseVector(blocks);
  if (options.GlyphArray.empty() && !vector.empty() && few)
  {
    overlays.push_back("VectorGlyph.Visibility=true");
    overlays.push_back("VectorGlyph.VectorVariable=" + vector);
    overlays.push_back("VectorGlyph.ScaleFactor=" + std::to_string(size / 40.0));
    overlays.emplace_back("VectorGlyph.Color=0.1,0.1,0.1");
  }
  if (few)
  {
    overlays.emplace_back("MeshLine.Visibility=true");
  }
  return overlays;
}

// The plane through the middle, away with the half that faces the eye.
zylViewClip Opening(const double* b)
{
  zylViewClip clip;
  clip.Values = { (b[0] + b[1]) / 2, (b[2] + b[3]) / 2, (b[4] + b[5]) / 2, 0.0, -1.0, 0.0 };
  return clip;
}

//--------------------------------------------------------------------------------------------------
// Volumes are bodies, closed where they are opened; surfaces beside them are clipped.
void FillForVolumes(const zylViewBlocks& blocks, const std::vector<int>& volumes,
  const double* bounds, const std::vector<std::string>& overlays, zylViewOptions& options)
{
  zylViewDerived body;
  body.Kind = zylViewDerived::Shape::ClipVolume;
  body.Clip = Opening(bounds);
  options.Derived.push_back(body);
  std::vector<zylViewSetting> own;
  for (const std::string& overlay : overlays)
  {
    own.push_back(zylParseKindSetting("ClipVolume." + overlay));
  }
  options.KindSettings.insert(options.KindSettings.begin(), own.begin(), own.end());
  std::vector<std::string> settings;
  for (const unsigned int leaf : blocks.GetLeaves())
  {
    const bool volume = std::find(volumes.begin(), volumes.end(), leaf) != volumes.end();
    settings.push_back(std::to_string(leaf) + ":Visibility=" + (volume ? "false" : "true"));
  }
  SetBlocks(options, settings);
  if (volumes.size() < blocks.GetLeaves().size())
  {
    options.Clips.push_back(body.Clip);
  }
}

//--------------------------------------------------------------------------------------------------
void FillForSurfaces(const zylViewBlocks& blocks, const double* bounds, bool flat,
  const std::vector<std::string>& overlays, zylViewOptions& options)
{
  const auto leaves = blocks.GetLeaves();
  const zylViewArray color = blocks.GetArray(options.Array, leaves);
  if (color.PointData && color.Components == 1)
  {
    SetUnlessChosen(options.ContourArray, options.Array);
  }
  std::vector<std::string> settings;
  for (const std::string& overlay : overlays)
  {
    const bool mesh = overlay.compare(0, 8, "MeshLine") == 0;
    settings.push_back(std::to_string(mesh ? leaves.front() : leaves.back()) + ":" + overlay);
  }
  if (leaves.size() > 1)
  {
    settings.push_back(std::to_string(leaves[1]) + ":ColorMode=0");
    settings.push_back(std::to_string(leaves[1]) + ":Color=0.95,0.70,0.25");
  }
  if (options.Clips.empty() && !flat)
  {
    options.Clips.push_back(Opening(bounds));
  }
  SetBlocks(options, settings);
}

//--------------------------------------------------------------------------------------------------
void FillForData(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  double b[6];
  const bool bounded = dataset->GetBounds(b);
  const double size = bounded ? std::hypot(b[1] - b[0], b[3] - b[2], b[5] - b[4]) : 1.0;
  const bool flat = !bounded || b[5] - b[4] <= 0.02 * size;
  const auto count = static_cast<int>(blocks.GetLeaves().size());
  const bool few = dataset->GetNumberOfPoints() < ManyPoints * count;
  SetUnlessChosen(options.Array, zylChooseArray(blocks));
  const auto overlays = ChooseOverlays(blocks, options, size, few);
  const auto volumes = blocks.GetBlocksOfDimension(3);
  if (volumes.empty() || flat || !options.Clips.empty() || !options.Derived.empty())
  {
    FillForSurfaces(blocks, b, flat, overlays, options);
  }
  else
  {
    FillForVolumes(blocks, volumes, b, overlays, options);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylFillDemoOptions(const zylViewBlocks& blocks, zylDataSet* dataset, zylViewOptions& options)
{
  options.Legend = options.Legend.value_or(true);
  if (options.Sample)
  {
    FillForSample(options);
  }
  else
  {
    FillForData(blocks, dataset, options);
  }
}
