/// @file zylViewError.h
/// How the viewer fails: one line for the user and an exit code. Thrown inside the application only
/// and caught in main().
#ifndef zylViewError_h
#define zylViewError_h

#include <stdexcept>
#include <string>
#include <vector>

enum zylViewExit : int
{
  zylViewDone = 0,
  zylViewFailed = 1,       ///< rendering or writing failed
  zylViewBadArguments = 2, ///< the command line
  zylViewBadFile = 3,      ///< a file cannot be read
  zylViewUnknownName = 4,  ///< no such array, block, setting, color map or reader
  zylViewNoDisplay = 5,    ///< a window was asked for and there is no display
  zylViewNoServer = 6,     ///< the server does not answer
  zylViewNothing = 7       ///< there is nothing to draw
};

class zylViewError : public std::runtime_error
{
public:
  zylViewError(zylViewExit code, const std::string& message)
    : std::runtime_error(message)
    , Code(code)
  {
  }
  const zylViewExit Code;
};

/// "there is no <kind> '<name>'; nearest: a, b, c" with up to three of `known`, by edit distance.
zylViewError zylUnknownName(
  const std::string& kind, const std::string& name, const std::vector<std::string>& known);

#endif
