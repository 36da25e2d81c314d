/// @file zylViewMarks.h
/// What of a dataset the user has selected. It is outlined.
#ifndef zylViewMarks_h
#define zylViewMarks_h

#include <set>

class zylDerivedSurfaceRepresentation;
class zylViewCase;

class zylViewMarks
{
public:
  using Derived = const zylDerivedSurfaceRepresentation*; // borrowed, and only compared

  ///@{
  /// Leaf blocks, by flat index, and what is derived. Select: in addition to others.
  void Clear();
  void Select(unsigned int block) { this->Blocks.insert(block); }
  void Select(Derived derived) { this->Surfaces.insert(derived); }
  /// Unselect what is selected, and select what is not.
  void Toggle(unsigned int block);
  void Toggle(Derived derived);
  const std::set<unsigned int>& GetBlocks() const { return this->Blocks; }
  void Forget(Derived derived); ///< it goes
  bool IsSelected(Derived derived) const { return this->Surfaces.count(derived) > 0; }
  ///@}

  /// Have `one`, the dataset that these belong to, drawn so; takes effect with its update.
  void Apply(zylViewCase& one);

  ///@{
  /// Whether what was selected last shall be brought into sight in lists; true once.
  void Reveal() { this->Hidden = true; }
  bool TakeReveal();
  ///@}

private:
  std::set<unsigned int> Blocks;
  std::set<Derived> Surfaces;
  bool Hidden = false;
  bool Outlined = false;      ///< some block
  std::set<Derived> Outlines; ///< what else; others may be highlighted by their own settings
};

#endif
