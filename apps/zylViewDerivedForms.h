/// @file zylViewDerivedForms.h
/// How the command line speaks of derived surfaces, lines and numbers. The parsers throw
/// zylViewError and check the form only.
#ifndef zylViewDerivedForms_h
#define zylViewDerivedForms_h

#include "zylViewForms.h"

#include <string>
#include <utility>
#include <vector>

/// Where lines begin.
struct zylViewSeeds
{
  enum class Shape
  {
    Spread, ///< Count points spread over the data
    Line,   ///< from, to; Count points
    Sphere, ///< center, radius; Count points in it
    Points, ///< x, y, z, ...
    File    ///< a text file of lines "x y z" or "x,y,z"
  };
  Shape Kind = Shape::Spread;
  std::vector<double> Values;
  int Count = 0;
  std::string File;
};

/// One derived surface or set of lines; what is not said for a shape is empty.
struct zylViewDerived
{
  enum class Shape
  {
    ClipVolume,         ///< Clip
    Cut,                ///< Values: origin, normal
    Crinkle,            ///< a cut of whole cells
    Isosurface,         ///< Variable; Values: one value
    Curve,              ///< Values: origin, normal
    Streamlines,        ///< Variable, Seeds
    Ribbons,            ///< Variable, Seeds
    SurfaceStreamlines, ///< Variable, Seeds
    CurvedGlyphs,       ///< Variable, Seeds
    VortexCores         ///< Variable
  };
  Shape Kind = Shape::Cut;
  std::string Variable;
  std::vector<double> Values;
  zylViewClip Clip;
  zylViewSeeds Seeds;
};

/// "KIND.PROPERTY=VALUE" or "KIND.DISPLAY.PROPERTY=VALUE".
zylViewSetting zylParseKindSetting(const std::string& text);

/// "NAME=EXPRESSION".
std::pair<std::string, std::string> zylParseDefinition(const std::string& text);

/// "N", "line:...", "sphere:...", "points:..." or "file:...".
zylViewSeeds zylParseSeeds(const std::string& text, const std::string& context);

///@{
/// The options' names and what each wants, in the order in which help lists them.
struct zylViewDerivedForm
{
  zylViewDerived::Shape Shape;
  const char* Option; ///< "--cut"
  const char* Kind;   ///< "Cut", in settings
  const char* Form;   ///< "OX,OY,OZ,NX,NY,NZ"
  const char* Help;
};
const std::vector<zylViewDerivedForm>& zylGetDerivedForms();
const zylViewDerivedForm& zylGetDerivedForm(zylViewDerived::Shape shape);
///@}

/// Whether settings of this owner are those of an object that measures.
bool zylIsMeasure(const std::string& owner);

/// The text after a derived kind's option. "--isosurface NAME:A,B" makes two.
std::vector<zylViewDerived> zylParseDerived(zylViewDerived::Shape shape, const std::string& text);

#endif
