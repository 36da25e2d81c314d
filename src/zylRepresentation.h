/**
 * @class zylRepresentation
 * @brief Base of everything a view shows of a dataset.
 *
 * Binds a dataset (shared) to a view (borrowed; set by zylView::AddRepresentation()) and owns the
 * chain of clips that the dataset passes before it is shown. Settings reach the server at Update().
 */
#ifndef zylRepresentation_h
#define zylRepresentation_h

#include "zylExport.h"

#include <vtkCollection.h>
#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkSMProxy;
class zylDataSet;
class zylMultiClip;
class zylPropertyCollection;
class zylView;

class ZYL_EXPORT zylRepresentation : public vtkObject
{
public:
  vtkTypeMacro(zylRepresentation, vtkObject);

  /// The dataset to show (shared; null: nothing is shown).
  virtual void SetDataSet(zylDataSet* dataSet);
  /// Whether `representation` is one of the view representations that this object made.
  virtual bool HasRepresentation(vtkSMProxy* representation);
  /// Drop what was made for display; the next Update() makes it again.
  virtual void FreeResources();
  /// Bring the server's side up to date with the settings.
  virtual void Update();
  ///@{
  /// Show or hide everything without changing any block's own settings.
  virtual void Hide() = 0;
  virtual void Show() = 0;
  virtual bool IsVisible() = 0;
  ///@}
  /// Bounds (xmin, xmax, ymin, ymax, zmin, zmax) of what is visible; false when there is nothing.
  virtual bool GetBounds(double bounds[6]) = 0;
  /// The view representation proxies in use: a new collection, possibly empty.
  virtual vtkSmartPointer<vtkCollection> GetPVRepresentations();

  /// The dataset (borrowed), or null.
  zylDataSet* GetDataSet();

  ///@{
  /// The view (borrowed), or null. A representation that leaves its view frees what it made in it.
  void SetView(zylView* view);
  zylView* GetView();
  ///@}

  ///@{
  /// The clips, applied one after the other. Properties of an invalid index are null.
  void SetNumberOfClips(int number);
  int GetNumberOfClips();
  zylPropertyCollection* GetClipProperties(int i);
  ///@}

protected:
  zylRepresentation();
  ~zylRepresentation() override;

  vtkSmartPointer<zylDataSet> DataSet;
  zylView* View = nullptr;
  vtkSmartPointer<zylMultiClip> MultiClip;
  bool LeavingView = false; ///< while SetView() calls FreeResources()

private:
  zylRepresentation(const zylRepresentation&) = delete;
  void operator=(const zylRepresentation&) = delete;
};

#endif
