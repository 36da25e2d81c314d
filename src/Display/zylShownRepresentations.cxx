#include "Display/zylShownRepresentations.h"

#include "zylDataSet.h"
#include "zylRepresentation.h"

#include <algorithm>
#include <map>
#include <vector>

#include <vtkBoundingBox.h>

namespace {
std::map<zylView*, zylShownRepresentations*> AllShown; // outlives the statics of hosts
} // namespace

//--------------------------------------------------------------------------------------------------
zylShownRepresentations::zylShownRepresentations(zylView* view)
  : View(view)
{
  AllShown[view] = this;
}

//--------------------------------------------------------------------------------------------------
zylShownRepresentations::~zylShownRepresentations()
{
  AllShown.erase(this->View);
}

//--------------------------------------------------------------------------------------------------
zylShownRepresentations* zylShownRepresentations::Of(zylView* view)
{
  const auto found = AllShown.find(view);
  return found == AllShown.end() ? nullptr : found->second;
}

//--------------------------------------------------------------------------------------------------
bool zylShownRepresentations::Has(zylRepresentation* representation) const
{
  return this->Representations.count(representation) > 0;
}

//--------------------------------------------------------------------------------------------------
void zylShownRepresentations::Add(zylRepresentation* representation)
{
  this->Representations.insert(representation);
}

//--------------------------------------------------------------------------------------------------
void zylShownRepresentations::Remove(zylRepresentation* representation)
{
  this->Representations.erase(representation);
}

//--------------------------------------------------------------------------------------------------
zylRepresentation* zylShownRepresentations::GetFirst() const
{
  return this->Representations.empty() ? nullptr : this->Representations.begin()->Get();
}

//--------------------------------------------------------------------------------------------------
zylRepresentation* zylShownRepresentations::FindOwner(vtkSMProxy* representation) const
{
  for (const auto& candidate : this->Representations)
  {
    if (candidate->HasRepresentation(representation))
    {
      return candidate;
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
zylRepresentation* zylShownRepresentations::FindForFile(const std::string& fileName) const
{
  for (const auto& candidate : this->Representations)
  {
    if (zylDataSet* dataSet = candidate->GetDataSet())
    {
      const std::vector<std::string> names = dataSet->GetFileNames();
      if (std::find(names.begin(), names.end(), fileName) != names.end())
      {
        return candidate;
      }
    }
  }
  return nullptr;
}

//--------------------------------------------------------------------------------------------------
bool zylShownRepresentations::GetBounds(double bounds[6]) const
{
  vtkBoundingBox box;
  for (const auto& representation : this->Representations)
  {
    double part[6];
    if (representation->IsVisible() && representation->GetBounds(part))
    {
      box.AddBounds(part);
    }
  }
  if (!box.IsValid())
  {
    return false;
  }
  box.GetBounds(bounds);
  return true;
}
