/// @file zylViewProperties.h
/// Texts of the command line into property collections; what block and derived settings share.
#ifndef zylViewProperties_h
#define zylViewProperties_h

#include <array>
#include <string>
#include <vector>

class zylArrayInformation;
class zylPropertyCollection;
class zylRepresentation;
class zylViewBlocks;
struct zylViewClip;
struct zylViewOptions;
struct zylViewSetting;

/// Set a property from its text. Properties that are made without elements take any number of them.
/// Throws zylViewError; `option` is the one that the user wrote, for the message.
void zylSetProperty(
  zylPropertyCollection* properties, const zylViewSetting& setting, const std::string& option);

void zylSetTriple(zylPropertyCollection* properties, const char* name, const double* values);
void zylSetAny(
  zylPropertyCollection* properties, const char* name, const std::vector<double>& values);
void zylSetAny(zylPropertyCollection* properties, const char* name, const std::vector<int>& values);

/// A range to color by: what is unknown becomes 0..1, what is empty grows a little.
std::array<double, 2> zylUsableRange(std::array<double, 2> range);

/// The range of the component that `variable` names; inverted when there is no array.
std::array<double, 2> zylGetRange(zylArrayInformation* array, const std::string& variable);

/// Color by a point or cell array, or by a derived variable.
void zylColorBy(zylPropertyCollection* properties, const std::string& variable,
  const std::array<double, 2>& range, const std::string& colorMap);

/// A legend in colors that can be read on the background. `magnitude`: what colors is that of a
/// vector, which the legend shall say.
void zylShowLegend(
  zylPropertyCollection* properties, const zylViewOptions& options, bool magnitude);

/// The clips that the representation owns. Throws zylViewError for arrays that do not exist.
void zylSetClips(zylRepresentation* representation, const std::vector<zylViewClip>& clips,
  const zylViewBlocks& blocks);

/// Of lines, in pixels: a picture with more samples than pixels wants lines of as many samples.
double zylLineWidth(const zylViewOptions& options);

#endif
