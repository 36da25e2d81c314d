/// @file zylViewSettings.h
/// Turns the command line's wishes into properties of a boundary representation. This is the
/// pattern for every host: change values in a property collection, then call the owner's Update().
#ifndef zylViewSettings_h
#define zylViewSettings_h

#include "zylViewBlocks.h"

#include <string>
#include <vector>

class zylBoundaryRepresentation;
class zylPropertyCollection;
struct zylViewSetting;
struct zylViewOptions;

/// The kinds of display that blocks have, and where their settings are.
struct zylBlockKind
{
  const char* Name;
  zylPropertyCollection* (zylBoundaryRepresentation::*Get)(int);
};
const std::vector<zylBlockKind>& zylGetBlockKinds();

class zylViewSettings
{
public:
  /// All borrowed; they must outlive this object.
  zylViewSettings(const zylViewOptions& options, const zylViewBlocks& blocks,
    zylBoundaryRepresentation* representation);

  /// Set everything. Nothing is drawn or sent before the representation's Update(). Throws
  /// zylViewError for arrays, blocks, settings and color maps that do not exist.
  void Apply();

  /// Show one legend of the surfaces, where one is wanted and something is colored.
  void ApplyLegend();

  /// A variable that an expression makes has its range only after an update: set it now. Returns
  /// whether another update is needed. Throws zylViewError when it could not be computed.
  bool ApplyDerivedRange();

private:
  void ShowSurfaces();
  void ApplyBlockSettings();
  void ApplyColors();
  void ApplyLines();
  void ApplyContours();
  void ApplyGlyphs();

  zylPropertyCollection* GetCollection(const std::string& kind, unsigned int block) const;
  std::vector<unsigned int> GetShownBlocks() const;
  std::vector<unsigned int> GetRangeBlocks() const;

  const zylViewOptions& Options;
  const zylViewBlocks& Blocks;
  zylBoundaryRepresentation* Representation;
};

#endif
