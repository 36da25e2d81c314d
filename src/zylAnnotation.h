// clang-format off
/**
 * @class zylAnnotation
 * @brief A text in a view, computed from a dataset where its data are.
 *
 *     vtkNew<zylAnnotation> annotation;
 *     annotation->SetDataSet(dataset);
 *     annotation->GetProperties()->Set("Expression", "'t = %g, p < %g' % (time_value, max(pressure))");
 *     annotation->GetProperties()->Set("Visibility", true);
 *     view->AddRepresentation(annotation); // runs Update()
 *
 * The expression is Python's, as ParaView's Python annotation evaluates it: arrays of the chosen
 * association by their names, derived point variables, `time_value`, `time_steps`, `time_index` and
 * `time_range` where the data have times, NumPy's functions, and those of the programmable filter (over
 * all blocks and processes). What it comes to is shown, and "(error)" where it fails: Python's words
 * for why are printed where the data are. It is a program: show none that you do not trust.
 *
 * The text follows the time. It is drawn above the host's picture, belongs to no block and has no
 * bounds, so no camera is fitted to it. Settings reach the server at Update(), which does nothing
 * without a dataset:
 *
 * | name                     | type      | default | meaning                                          |
 * |--------------------------|-----------|---------|--------------------------------------------------|
 * | "Visibility"             | bool      | false   | whether to draw it; not in the hash              |
 * | "ForceHidden"            | bool      | false   | hide it whatever "Visibility" says; not in it    |
 * | "Expression"             | string    | ""      |                                                  |
 * | "ArrayAssociation"       | int       | 0       | whose arrays have names: 0: points; 1: cells;    |
 * |                          |           |         | 2: field data                                    |
 * | "PropMode"               | int       | 0       | 0: flat text at a place of the view; 1: a flag   |
 * |                          |           |         | on a pole; 2: flat text at a place of the scene  |
 * | "Position"               | 2 doubles | 0, 0    | 0: lower left corner, fractions of the view      |
 * | "FlagpoleBasePosition"   | 3 doubles | 0, 0, 0 | 1: where the pole stands                         |
 * | "FlagpoleTopPosition"    | 3 doubles | 0, 1, 0 | 1: where it ends                                 |
 * | "FlagpoleFlagSize"       | double    | 1       | 1: a pixel of the text, in 1/1000 of the height  |
 * |                          |           |         | of the view (in parallel projection, of half)    |
 * | "BillboardPosition"      | 3 doubles | 0, 0, 0 | 2: where it is                                   |
 * | "BillboardDisplayOffset" | 2 ints    | 0, 0    | 2: pixels from there to the right and up         |
 * | "FontName"               | string    | "Arial" | or "Courier", "Times"                            |
 * | "FontSize"               | int       | 12      | points                                           |
 * | "Bold", "Italic"         | bool      | false   |                                                  |
 * | "Shadow"                 | bool      | false   |                                                  |
 * | "Color"                  | 3 doubles | 1, 1, 1 | RGB in [0, 1]                                    |
 * | "Opacity"                | double    | 1       | 0: not to be seen                                |
 * | "Justification"          | int       | 0       | 0: left; 1: centered; 2: right                   |
 *
 * Another "PropMode" is logged as an error; the text stays where it is then.
 */
// clang-format on
#ifndef zylAnnotation_h
#define zylAnnotation_h

#include "zylExport.h"
#include "zylRepresentation.h"

class vtkSMSourceProxy;

class ZYL_EXPORT zylAnnotation : public zylRepresentation
{
public:
  static zylAnnotation* New();
  vtkTypeMacro(zylAnnotation, zylRepresentation);

  /// Null: nothing is shown any more.
  void SetDataSet(zylDataSet* dataSet) override;

  /// The settings (borrowed, never null).
  zylPropertyCollection* GetProperties();

  /// Push the settings. The first one makes what evaluates the text, the first one in a view what
  /// shows it.
  void Update() override;
  void FreeResources() override;

  ///@{
  /// Clear or set "ForceHidden"; takes effect at the next Update().
  void Show() override;
  void Hide() override;
  /// "Visibility", and not "ForceHidden".
  bool IsVisible() override;
  ///@}

  bool HasRepresentation(vtkSMProxy* representation) override;

  /// False: a text has no bounds in the scene. `bounds` is left as it is.
  bool GetBounds(double bounds[6]) override;

  /// The rectangle of the text of "PropMode" 0 as last drawn, in pixels of the view: left, bottom,
  /// right, top. Asks the server. Left as it is without a view or before the first update in it.
  void GetScreenBounds(int bounds[4]);

protected:
  zylAnnotation();
  ~zylAnnotation() override;

private:
  zylAnnotation(const zylAnnotation&) = delete;
  void operator=(const zylAnnotation&) = delete;

  void UpdateFilter();
  void UpdateRepresentation();

  vtkSmartPointer<zylPropertyCollection> Properties;
  vtkSmartPointer<vtkSMSourceProxy> Script; ///< adds derived variables, when the text needs any
  vtkSmartPointer<vtkSMSourceProxy> Filter; ///< evaluates the text
  vtkSmartPointer<vtkSMProxy> Representation;
};

#endif
