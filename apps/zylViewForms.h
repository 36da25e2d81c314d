/// @file zylViewForms.h
/// The small languages of the command line: numbers, clips, settings. All parsers throw
/// zylViewError and check the form only.
#ifndef zylViewForms_h
#define zylViewForms_h

#include <string>
#include <utility>
#include <vector>

/// One clip. Values in the order in which the user writes them.
struct zylViewClip
{
  enum class Shape
  {
    Plane,    ///< origin, normal
    Box,      ///< xmin, xmax, ymin, ymax, zmin, zmax
    Cylinder, ///< center, axis, radius
    Sphere,   ///< center, radius
    Scalar    ///< lower, upper (clips of surfaces) or the threshold (of volumes); of Variable
  };
  Shape Kind = Shape::Plane;
  std::vector<double> Values;
  std::string Variable;
  bool Outside = false; ///< keep what a shape excludes; for a plane the side its normal points to
};

/// One setting of one block (or of all leaf blocks below it).
struct zylViewSetting
{
  std::string Owner; ///< flat index or name of a block
  std::string Kind;  ///< Surface, Contour, FeatureLine, MeshLine or VectorGlyph
  std::string Name;
  std::string Value; ///< elements separated by commas
};

///@{
/// Finite numbers; `context` is the option as the user wrote it, for the message.
double zylParseNumber(const std::string& text, const std::string& context);
std::vector<double> zylParseNumbers(const std::string& text, const std::string& context);
std::vector<double> zylParseNumbers(
  const std::string& text, std::size_t count, const std::string& context);
///@}

/// `number` if it is a whole one from `least` to `most`; `what` it counts is for the message.
int zylParseCount(
  double number, const std::string& context, int least, int most, const std::string& what);

/// "NAME:NUMBER"; the name may hold colons.
std::pair<std::string, double> zylParseNameAndNumber(
  const std::string& text, const std::string& option);

/// "NAME:N" with a count as above.
std::pair<std::string, int> zylParseNameAndCount(
  const std::string& text, const std::string& option, int least, int most, const std::string& what);

/// "ID|NAME:SETTING=VALUE"; SETTING without a kind is the surface's.
zylViewSetting zylParseBlockSetting(const std::string& text);

/// "plane:...", "box:..." and so on; "scalar:NAME,..." wants `limits` numbers.
zylViewClip zylParseClip(
  const std::string& text, const std::string& option = "--clip", std::size_t limits = 2);

#endif
