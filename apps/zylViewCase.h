/// @file zylViewCase.h
/// One dataset of the scene and all that is shown of it: its blocks and what is derived from them.
#ifndef zylViewCase_h
#define zylViewCase_h

#include "zylViewMarks.h"
#include "zylViewOptions.h"

#include <array>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class zylBoundaryRepresentation;
class zylDataSet;
class zylPropertyCollection;
class zylRepresentation;
class zylView;
class zylViewBlocks;
class zylViewDerivedSurfaces;

class zylViewCase
{
public:
  /// `dataset` is shared; `options` are what the command line wants of this dataset.
  zylViewCase(zylViewOptions options, vtkSmartPointer<zylDataSet> dataset);
  ~zylViewCase();
  zylViewCase(const zylViewCase&) = delete;
  zylViewCase& operator=(const zylViewCase&) = delete;

  ///@{
  /// Borrowed.
  zylViewOptions& GetOptions() { return this->Options; }
  const zylViewBlocks& GetBlocks() const { return *this->Blocks; }
  zylDataSet* GetDataSet();
  zylBoundaryRepresentation* GetBoundary(); ///< null before AddTo()
  zylViewDerivedSurfaces& GetDerived();
  zylViewMarks& GetMarks() { return this->Marks; }
  ///@}

  /// Make the variables that the user defines. Whether the library took them.
  void Define();
  /// Define one more, or another one of that name, and color by it. Empty, or why it is not done;
  /// then there is the one that was there before, or none.
  std::string DefineVariable(const std::string& name, const std::string& expression);
  /// What was colored by it is solid.
  void RemoveVariable(const std::string& name);
  /// Look at the blocks, again when they may have changed.
  void ReadBlocks();
  /// Fill in what the user left open.
  void ChooseLook();
  /// Set up what is derived. Throws zylViewError.
  void Derive();

  /// Make the blocks' displays, set up as the user wishes; those of a saved scene have defaults.
  /// Nothing is drawn or sent before they are added. Throws zylViewError.
  void MakeBoundary();
  ///@{
  /// Show everything in `view` (borrowed) or take it out of it. Throws zylViewError.
  void AddTo(zylView* view);
  void RemoveFrom(zylView* view);
  ///@}
  /// Bring what is shown in step with settings and time.
  void Update();
  /// Have blocks that have come since, with a time step or a file that was read again, look like
  /// most of the others; takes effect with the next update, and needs one before. Whether there are
  /// any.
  bool ShowNewBlocks();
  /// Those of a saved scene; all others are new.
  void SetKnownBlocks(const std::set<unsigned int>& blocks) { this->Known = blocks; }

  /// Why nothing is seen although something should be, given that nothing is; else empty.
  std::string GetEmptyReason() const;

  ///@{
  /// What the surfaces are colored by: its name (empty: nothing), the range of its values at the
  /// time shown in what is shown (inverted when nobody knows it), and the range of the colors.
  const std::string& GetVariable() const { return this->Options.Array; }
  std::array<double, 2> GetVariableRange() const;
  const std::array<double, 2>& GetColorRange() const { return this->ColorRange; }
  /// Takes effect with Update().
  void SetColorRange(const std::array<double, 2>& range);
  /// The range that the displays have been given.
  void TakeColorRange(const std::array<double, 2>& range) { this->ColorRange = range; }
  /// Color by another array, or a variable that is defined, where it exists; solid where it does
  /// not, and for "".
  void ColorBy(const std::string& variable);
  /// The displays that are colored as the scene is (borrowed).
  std::vector<zylPropertyCollection*> GetColored() const;
  void ShowLegend(bool shown);
  ///@}

  /// Read the files again.
  void Reload();

  /// Calls visit(representation, settings of the display that has its legend or null) for each.
  void VisitLegends(
    const std::function<void(zylRepresentation*, zylPropertyCollection*)>& visit) const;

  /// Show colors that are in the data as they are. Call after every update.
  void ApplyDirectColors() const;

private:
  int FindTypicalBlock() const; ///< of those that are known; -1: there is none
  /// Of the surfaces of all blocks and of all that is derived.
  std::vector<zylPropertyCollection*> GetSurfaces() const;

  zylViewOptions Options;
  std::array<double, 2> ColorRange{ 1.0, -1.0 };
  vtkSmartPointer<zylDataSet> DataSet;
  std::unique_ptr<zylViewBlocks> Blocks;
  vtkSmartPointer<zylBoundaryRepresentation> Boundary;
  std::unique_ptr<zylViewDerivedSurfaces> Derived;
  zylViewMarks Marks;
  std::set<unsigned int> Known; ///< leaf blocks that have got their look
};

#endif
