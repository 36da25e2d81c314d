#include "zylViewTimes.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

//--------------------------------------------------------------------------------------------------
void zylViewTimes::Add(const std::string& name, double seconds)
{
  const auto same = [&name](const auto& entry) { return entry.first == name; };
  auto entry = std::find_if(this->Times.begin(), this->Times.end(), same);
  if (entry == this->Times.end())
  {
    entry = this->Times.insert(entry, { name, {} });
  }
  entry->second.push_back(seconds);
}

//--------------------------------------------------------------------------------------------------
void zylViewTimes::Print() const
{
  for (const auto& [name, seconds] : this->Times)
  {
    const double sum = std::accumulate(seconds.begin(), seconds.end(), 0.0);
    std::printf("%-12s %8.1f ms", name.c_str(), 1000.0 * sum / seconds.size());
    std::printf(seconds.size() > 1 ? "  (mean of %zu)\n" : "\n", seconds.size());
  }
}
