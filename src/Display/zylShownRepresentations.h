/**
 * @class zylShownRepresentations
 * @brief The representations that a view shows, and what is asked of all of them.
 *
 * Iterated in the order of their addresses. A selection finds those of a view by Of(), without
 * knowing views. Private to the library.
 */
#ifndef zylShownRepresentations_h
#define zylShownRepresentations_h

#include "zylExport.h"

#include <set>
#include <string>

#include <vtkSmartPointer.h>

class vtkSMProxy;
class zylRepresentation;
class zylView;

class ZYL_PRIVATE zylShownRepresentations
{
public:
  explicit zylShownRepresentations(zylView* view); ///< borrowed; none other may have one
  ~zylShownRepresentations();
  zylShownRepresentations(const zylShownRepresentations&) = delete;
  zylShownRepresentations& operator=(const zylShownRepresentations&) = delete;

  /// Those of a view that lives; null for others and for null.
  static zylShownRepresentations* Of(zylView* view);

  bool Has(zylRepresentation* representation) const; ///< false for null
  void Add(zylRepresentation* representation);       ///< shared
  void Remove(zylRepresentation* representation);

  /// The first one, or null.
  zylRepresentation* GetFirst() const;

  /// The one that made this server-manager representation, or null.
  zylRepresentation* FindOwner(vtkSMProxy* representation) const;

  /// The first one whose dataset was loaded from a file of exactly this name, or null.
  zylRepresentation* FindForFile(const std::string& fileName) const;

  /// Unite the bounds of what is visible (xmin, xmax, ymin, ...); false, and `bounds` untouched,
  /// when nothing is.
  bool GetBounds(double bounds[6]) const;

private:
  zylView* View;
  std::set<vtkSmartPointer<zylRepresentation>> Representations;
};

#endif
