/// @file zylViewTimes.h
/// Times taken, for --stats. Times of one name add up to their mean.
#ifndef zylViewTimes_h
#define zylViewTimes_h

#include <chrono>
#include <string>
#include <utility>
#include <vector>

class zylViewTimes
{
public:
  /// Takes the time until it is destroyed.
  class Watch
  {
  public:
    Watch(zylViewTimes& times, const char* name)
      : Times(times)
      , Name(name)
    {
    }
    ~Watch()
    {
      const auto taken = Clock::now() - this->Start;
      this->Times.Add(this->Name, std::chrono::duration<double>(taken).count());
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

  private:
    using Clock = std::chrono::steady_clock;
    zylViewTimes& Times;
    const char* Name;
    const Clock::time_point Start = Clock::now();
  };

  void Add(const std::string& name, double seconds);
  void Print() const;

private:
  std::vector<std::pair<std::string, std::vector<double>>> Times;
};

#endif
