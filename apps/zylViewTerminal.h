/// @file zylViewTerminal.h
/// Listens to what goes to the standard streams while it lives: libraries below ParaView talk to
/// the terminal as well, and what they say is often the only reason that is given.
#ifndef zylViewTerminal_h
#define zylViewTerminal_h

#include <cstdio>
#include <string>

class zylViewTerminal
{
public:
  /// With `through` nothing is kept back, and nothing is heard.
  explicit zylViewTerminal(bool through);
  ~zylViewTerminal(); ///< what comes afterwards is printed again
  zylViewTerminal(const zylViewTerminal&) = delete;
  zylViewTerminal& operator=(const zylViewTerminal&) = delete;

  std::string GetText() const;

private:
  std::FILE* Heard = nullptr;
  int Terminals[2] = { -1, -1 }; ///< where the streams of output and errors really go
};

#endif
