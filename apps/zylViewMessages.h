/// @file zylViewMessages.h
/// What the library and ParaView report, so that the terminal shows one line per problem instead of
/// every message on its way up, and a window all of them.
#ifndef zylViewMessages_h
#define zylViewMessages_h

#include <string>
#include <vector>

#include <zylMessages.h>

/// What a message says, in one line without source place, object address and bytes that are no
/// text: the first of its lines that is more than an introduction ("Error in ...:"). Empty when
/// there is none.
std::string zylOneLine(const std::string& message);

/// Say something of the viewer's own on the terminal, as a line, and in the window.
void zylSay(const std::string& text);

class zylViewMessages
{
public:
  /// With `verbose` messages are printed as well.
  explicit zylViewMessages(bool verbose);

  /// Call again after the library has started: start-up sets the terminal's log level.
  void ApplyVerbosity() const;

  /// The first error since the last Clear(), as one line without source place and object address;
  /// empty when there was none.
  std::string GetFirstError() const;
  std::size_t GetNumberOfErrors() const;
  void Clear();

  enum class Level
  {
    Error,
    Warning,
    Note ///< of the viewer
  };
  struct Line
  {
    Level Kind;
    std::string Text;
    double Time; ///< seconds since 1970
  };
  /// The last ones, the oldest first; how many there were so far.
  static std::vector<Line> GetList();
  static std::size_t GetCount();

private:
  std::vector<zylMessages::Message> GetErrors() const;

  const bool Verbose;
  std::size_t Cleared = 0; ///< number of the last message then
};

#endif
