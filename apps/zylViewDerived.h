/// @file zylViewDerived.h
/// The derived surfaces and lines of the command line: one representation for each, set up like any
/// other object of the library: properties first, then Update().
#ifndef zylViewDerived_h
#define zylViewDerived_h

#include "zylViewBlocks.h"
#include "zylViewDerivedForms.h"
#include "zylViewDerivedKinds.h"
#include "zylViewForms.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class zylDataSet;
class zylDerivedSurfaceRepresentation;
class zylPropertyCollection;
class zylView;
struct zylViewOptions;

class zylViewDerivedSurfaces
{
public:
  struct Entry
  {
    zylViewDerived Wish;
    std::string Kind; ///< "Cut"
    int Number;       ///< among those of its kind, from 1
    vtkSmartPointer<zylDerivedSurfaceRepresentation> Representation;
  };

  /// All borrowed; they must outlive this object.
  zylViewDerivedSurfaces(
    const zylViewOptions& options, const zylViewBlocks& blocks, zylDataSet* dataset);

  /// Make and set up all of them; those of a saved scene have their settings from it. Nothing is
  /// drawn or sent before they are updated. Throws zylViewError for arrays, blocks and settings
  /// that do not exist.
  void Make();

  /// One more, in a view that shows the others. Throws as Make().
  void Add(const zylViewDerived& wish, zylView* view);
  /// Take one of them out of the view that shows it; the others keep their numbers.
  void Remove(const zylDerivedSurfaceRepresentation* derived, zylView* view);

  /// Show them, and color them by the range of what they turn out to hold where nobody else knows.
  void AddTo(zylView* view);
  void RemoveFrom(zylView* view);
  void ShowLegend(); ///< of the first that is colored: one is enough
  void Update();     ///< without a view as well

  const std::vector<Entry>& GetEntries() const { return this->Entries; }

private:
  const Entry& AddEntry(const zylViewDerived& wish);
  void SetUp(const Entry& entry);
  void SetShape(const Entry& entry);
  void SetSeeds(const Entry& entry);
  void SetDisplay(const Entry& entry);
  void SetSizes(const Entry& entry);
  void ApplySettings(const Entry& entry);
  bool IsFor(const zylViewSetting& setting, const Entry& entry) const;
  bool IsSet(const Entry& entry, const std::string& name) const;
  void ColorByOwnRange(const Entry& entry);
  zylPropertyCollection* FindCollection(const Entry& entry, const zylViewSetting& setting) const;
  std::vector<int> ChooseBlocks(const Entry& entry) const;

  const zylViewOptions& Options;
  const zylViewBlocks& Blocks;
  zylDataSet* DataSet;
  double Size = 1.0; ///< of the data: the diagonal of their bounds
  std::vector<Entry> Entries;
};

#endif
