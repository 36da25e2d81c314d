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
struct zylViewClip;
struct zylViewOptions;

class zylViewSettings
{
public:
  /// All borrowed; they must outlive this object.
  zylViewSettings(const zylViewOptions& options, const zylViewBlocks& blocks,
    zylBoundaryRepresentation* representation);

  /// Set everything. Nothing is drawn or sent before the representation's Update(). Throws
  /// zylViewError for arrays, blocks, settings and color maps that do not exist.
  void Apply();

private:
  void ShowSurfaces();
  void ApplyBlockSettings();
  void ApplyColors();
  void ApplyLines();
  void ApplyContours();
  void ApplyGlyphs();
  void ApplyLegend();
  void ApplyClips();

  zylPropertyCollection* GetCollection(const std::string& kind, unsigned int block) const;
  std::vector<unsigned int> GetShownBlocks() const;
  double GetLineWidth() const; ///< pixels

  const zylViewOptions& Options;
  const zylViewBlocks& Blocks;
  zylBoundaryRepresentation* Representation;
};

#endif
