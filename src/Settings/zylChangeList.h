/// @file zylChangeList.h
/// Which of many collections of settings have changed, so that following them costs what changed
/// and not what there is. Private to the library.
#ifndef zylChangeList_h
#define zylChangeList_h

#include <memory>
#include <set>
#include <vector>

/// The collections that have changed since the list was last taken, by the numbers they were given.
class zylChangeList
{
public:
  void Add(int id) { this->Ids.insert(id); }

  /// The numbers, ascending; the list is empty afterwards.
  std::vector<int> Take()
  {
    std::vector<int> ids(this->Ids.begin(), this->Ids.end());
    this->Ids.clear();
    return ids;
  }

private:
  std::set<int> Ids;
};

/// Where a collection and its properties report their changes.
struct zylChangeReport
{
  std::shared_ptr<zylChangeList> List; ///< lives as long as somebody reports to it
  int Id;

  void Send() const { this->List->Add(this->Id); }
};

#endif
