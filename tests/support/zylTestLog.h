/// @file zylTestLog.h
/// Captures what the library reports while it lives: logger lines, toolkit errors and warnings, and
/// lines on the console streams.
///
///     zylTestLog log;
///     collection->GetDouble("Nope");
///     EXPECT_TRUE(log.HasWarning("No property named 'Nope'"));
#ifndef zylTestLog_h
#define zylTestLog_h

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

class zylTestLog
{
public:
  /// Starts capturing logger messages of `verbosity` and below (9 = trace).
  explicit zylTestLog(int verbosity = 9);
  ~zylTestLog();
  zylTestLog(const zylTestLog&) = delete;
  zylTestLog& operator=(const zylTestLog&) = delete;

  ///@{
  /// Whether an error, or a warning, contains `text`; a test that fails prints all messages.
  testing::AssertionResult HasError(const std::string& text = "") const;
  testing::AssertionResult HasWarning(const std::string& text = "") const;
  ///@}
  int CountErrors(const std::string& text = "") const;
  int CountWarnings(const std::string& text = "") const;

  /// Whether a message of exactly this verbosity contains `text`.
  bool Has(int verbosity, const std::string& text) const;
  /// How many messages of this verbosity contain `text`.
  int Count(int verbosity, const std::string& text) const;
  /// All messages, a line each ("verbosity: text"), for failure output.
  std::string Dump() const;

  void Add(int verbosity, std::string text);

private:
  std::vector<std::pair<int, std::string>> Messages;
  std::string Id;
};

/// What `action` writes to the process's standard output and error (file descriptors 1 and 2).
template <class Action>
std::string zylConsole(Action action);

std::string zylConsoleBegin(); // used by zylConsole
std::string zylConsoleEnd(const std::string&);

template <class Action>
std::string zylConsole(Action action)
{
  const std::string token = zylConsoleBegin();
  action();
  return zylConsoleEnd(token);
}

#endif
