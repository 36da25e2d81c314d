/**
 * @class zylMessages
 * @brief The last warnings and errors of this process, kept for a host that shows them itself.
 *
 * Everything that the library, ParaView and the toolkit log as a warning or an error is kept, from
 * the first call of zylCore::GetInstance() or of this class on, besides going where it goes anyway:
 *
 *     zylMessages* messages = zylMessages::GetInstance();
 *     const auto mark = messages->GetCount();
 *     if (!dataset->LoadFromFile(files))
 *     {
 *       ShowToTheUser(messages->GetReason(mark)); // "Failed to read a.vtu: ..."
 *     }
 *
 * Observers of MessageEvent are told of each one, with a `const zylMessages::Message*` as call
 * data. They are called on the thread that made this object (the host's), within the call that
 * logs, and must not call the library; what they log themselves, and what other threads
 * log, is kept at once and announced with the next one of the host's thread.
 *
 * vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF) silences the console and keeps the
 * messages. zylCore::SuppressWarnings() has the toolkit write none at all. Errors on a server are
 * printed there; here they are seen by what fails for them.
 */
#ifndef zylMessages_h
#define zylMessages_h

#include "zylExport.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <vtkObject.h>

class ZYL_EXPORT zylMessages : public vtkObject
{
public:
  vtkTypeMacro(zylMessages, vtkObject);

  /// The one of this process (borrowed, never null), made on the first call.
  static zylMessages* GetInstance();

  enum Events
  {
    MessageEvent = 3220
  };

  enum class Severity
  {
    Error,
    Warning
  };

  struct Message
  {
    std::size_t Number; ///< 1 for the first of the process, and so on
    Severity Level;
    std::string Source; ///< the class that complains, or the source file that does; may be empty
    std::string Text;   ///< as it was logged, without source and place; may have several lines
    double Time;        ///< seconds since 1970
  };

  /// The number of messages so far, which is the number of the last one; those that are no longer
  /// kept count.
  std::size_t GetCount();

  /// Those after message `number` that are still kept, in order.
  std::vector<Message> GetMessages(std::size_t number = 0);

  /// Why something failed that was begun when `number` was the count, in one text: the last error
  /// since, which is the one of the outermost operation, or else the last warning; "" for none.
  std::string GetReason(std::size_t number);

  ///@{
  /// How many are kept; the oldest go first. Default: 1000.
  void SetCapacity(std::size_t capacity);
  std::size_t GetCapacity();
  ///@}

protected:
  zylMessages();
  ~zylMessages() override;

private:
  zylMessages(const zylMessages&) = delete;
  void operator=(const zylMessages&) = delete;

  static zylMessages* New();
  void Announce();

  struct Internals;
  std::unique_ptr<Internals> Kept;
};

#endif
