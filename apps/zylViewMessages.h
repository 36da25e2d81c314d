/// @file zylViewMessages.h
/// Collects what the library and ParaView report, so that the terminal shows one line per problem
/// instead of every message on its way up.
#ifndef zylViewMessages_h
#define zylViewMessages_h

#include <string>
#include <vector>

/// What a message says, in one line without source place, object address and bytes that are no
/// text: the first of its lines that is more than an introduction ("Error in ...:"). Empty when
/// there is none.
std::string zylOneLine(const std::string& message);

class zylViewMessages
{
public:
  /// From now on messages are collected. With `verbose` they are printed as well.
  explicit zylViewMessages(bool verbose);
  ~zylViewMessages();
  zylViewMessages(const zylViewMessages&) = delete;
  zylViewMessages& operator=(const zylViewMessages&) = delete;

  /// Call again after the library has started: start-up sets the terminal's log level.
  void ApplyVerbosity() const;

  /// The first error since the last Clear(), as one line without source place and object address;
  /// empty when there was none.
  std::string GetFirstError() const { return this->Errors.empty() ? "" : this->Errors.front(); }
  std::string GetFirstWarning() const
  {
    return this->Warnings.empty() ? "" : this->Warnings.front();
  }
  std::size_t GetNumberOfErrors() const { return this->Errors.size(); }
  void Clear();

  /// For the log's callback.
  void Add(int verbosity, const std::string& text);

private:
  bool Verbose;
  std::vector<std::string> Errors;
  std::vector<std::string> Warnings;
};

#endif
