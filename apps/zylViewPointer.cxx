#include "zylViewPointer.h"

#include "zylViewBlocks.h"
#include "zylViewCamera.h"
#include "zylViewCase.h"
#include "zylViewDerived.h"
#include "zylViewHit.h"
#include "zylViewMarks.h"
#include "zylViewScene.h"

#include <algorithm>
#include <cstdio>

#include <zylBoundaryRepresentation.h>
#include <zylDataSet.h>
#include <zylDerivedSurfaceRepresentation.h>
#include <zylMultiBlockTree.h>
#include <zylSelection.h>
#include <zylView.h>

namespace {
constexpr std::size_t TipLines = 14;
} // namespace

//--------------------------------------------------------------------------------------------------
void zylViewPointer::Hover(double x, double y)
{
  this->Leave();
  const auto hit = zylFindHit(this->Scene, x, y);
  if (!hit)
  {
    return;
  }
  this->Text = hit->Describe(TipLines);
  if (hit->Derived != nullptr)
  {
    hit->Derived->GetBounds(this->Box.data());
  }
  else
  {
    zylMultiBlockTree* tree = hit->Case->GetDataSet()->GetMultiBlockTree();
    zylMultiBlockTree* node = hit->Block ? tree->FindChildWithBlockIndex(*hit->Block) : tree;
    (node != nullptr ? node : tree)->GetBounds(this->Box.data());
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::Leave()
{
  this->Text.clear();
  this->Box = { { 1.0, -1.0, 1.0, -1.0, 1.0, -1.0 } };
}

//--------------------------------------------------------------------------------------------------
std::vector<std::array<double, 4>> zylViewPointer::GetOutline() const
{
  std::vector<std::array<double, 4>> lines;
  const auto corner = [this](int which, double point[3]) {
    for (int i = 0; i < 3; ++i)
    {
      point[i] = this->Box[2 * i + (which >> i & 1)];
    }
  };
  for (int from = 0; this->Box[0] <= this->Box[1] && from < 8; ++from)
  {
    for (const int side : { 1, 2, 4 })
    {
      double start[3], end[3];
      std::array<double, 4> line{};
      corner(from, start);
      corner(from | side, end);
      if ((from & side) == 0 && this->Scene.GetCamera().Project(start, end, line.data()))
      {
        lines.push_back(line);
      }
    }
  }
  return lines;
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::Print(double x, double y)
{
  if (const auto hit = zylFindHit(this->Scene, x, y))
  {
    std::puts(hit->Describe(static_cast<std::size_t>(-1)).c_str());
    std::fflush(stdout);
  }
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::Click(double x, double y, bool toggle)
{
  const auto hit = zylFindHit(this->Scene, x, y);
  for (const auto& one : this->Scene.GetCases())
  {
    zylViewMarks& marks = one->GetMarks();
    if (!toggle)
    {
      marks.Clear();
    }
    if (hit && hit->Case == one.get())
    {
      if (hit->Block)
      {
        marks.Toggle(*hit->Block);
      }
      else if (hit->Derived != nullptr)
      {
        marks.Toggle(hit->Derived);
      }
      marks.Reveal();
    }
  }
  this->Apply();
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::SelectIn(const double corners[4], bool add)
{
  zylView* view = this->Scene.GetView();
  int size[2];
  view->GetWindowSize(size);
  const auto row = [&size](double y) { return size[1] - 1 - static_cast<int>(y); };
  const auto selection = view->SelectBlocks(
    static_cast<int>(corners[0]), row(corners[1]), static_cast<int>(corners[2]), row(corners[3]));
  const auto shown = selection->GetRepresentations(view);
  for (const auto& one : this->Scene.GetCases())
  {
    zylViewMarks& marks = one->GetMarks();
    if (!add)
    {
      marks.Clear();
    }
    for (const int block : selection->GetBlocks(one->GetBoundary()))
    {
      marks.Select(static_cast<unsigned int>(block));
    }
    for (const auto& entry : one->GetDerived().GetEntries())
    {
      if (std::find(shown.begin(), shown.end(), entry.Representation.Get()) != shown.end())
      {
        marks.Select(entry.Representation.Get());
      }
    }
    marks.Reveal();
  }
  this->Apply();
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::CenterAt(double x, double y)
{
  int size[2];
  this->Scene.GetView()->GetWindowSize(size);
  std::array<double, 3> point{};
  const bool hit = this->Scene.GetView()->PickPointOnSurface(
    static_cast<int>(x), size[1] - 1 - static_cast<int>(y), point.data());
  this->Scene.GetCamera().SetCenter(hit ? std::optional(point) : std::nullopt);
}

//--------------------------------------------------------------------------------------------------
void zylViewPointer::Apply()
{
  for (const auto& one : this->Scene.GetCases())
  {
    one->GetMarks().Apply(*one);
  }
  this->Scene.Update();
}
