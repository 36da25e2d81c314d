#include "zylViewMarks.h"

#include "zylViewCase.h"
#include "zylViewDerived.h"

#include <utility>
#include <vector>

#include <zylBoundaryRepresentation.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylPropertyCollection.h>

namespace {
constexpr int Outline = 2; // it hides nothing
constexpr double LineWidth = 2.0;

template <class T>
void ToggleIn(std::set<T>& set, const T& value)
{
  if (!set.insert(value).second)
  {
    set.erase(value);
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewMarks::Clear()
{
  this->Blocks.clear();
  this->Surfaces.clear();
}

//--------------------------------------------------------------------------------------------------
void zylViewMarks::Toggle(unsigned int block)
{
  ToggleIn(this->Blocks, block);
}

//--------------------------------------------------------------------------------------------------
void zylViewMarks::Toggle(Derived derived)
{
  ToggleIn(this->Surfaces, derived);
}

//--------------------------------------------------------------------------------------------------
void zylViewMarks::Forget(Derived derived)
{
  this->Surfaces.erase(derived);
  this->Outlines.erase(derived);
}

//--------------------------------------------------------------------------------------------------
bool zylViewMarks::TakeReveal()
{
  return std::exchange(this->Hidden, false);
}

//--------------------------------------------------------------------------------------------------
void zylViewMarks::Apply(zylViewCase& one)
{
  const std::vector<int> blocks(this->Blocks.begin(), this->Blocks.end());
  zylBoundaryRepresentation* boundary = one.GetBoundary();
  if (this->Outlined)
  {
    boundary->ClearHighlights();
  }
  this->Outlined = !blocks.empty();
  if (this->Outlined)
  {
    boundary->GetHighlightProperties()->Set("TubeRadius", LineWidth);
    boundary->Highlight(blocks, Outline);
  }
  for (const auto& entry : one.GetDerived().GetEntries())
  {
    zylDerivedSurfaceRepresentation* surface = entry.Representation;
    if (this->IsSelected(surface))
    {
      surface->GetHighlightProperties()->Set("TubeRadius", LineWidth);
      surface->Highlight(Outline);
      this->Outlines.insert(surface);
    }
    else if (this->Outlines.erase(surface) > 0)
    {
      surface->UnHighlight();
    }
  }
}
