#include "zylMessages.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylMessages);

namespace {
constexpr const char* CallbackId = "zylMessages";

//--------------------------------------------------------------------------------------------------
std::string Trimmed(const std::string& text)
{
  const auto first = text.find_first_not_of(" \n\r\t");
  return first == std::string::npos
    ? std::string()
    : text.substr(first, text.find_last_not_of(" \n\r\t") + 1 - first);
}

//--------------------------------------------------------------------------------------------------
// "path/zylView.cxx" is "zylView".
std::string BaseName(const std::string& file)
{
  const auto slash = file.find_last_of('/');
  const std::string name = slash == std::string::npos ? file : file.substr(slash + 1);
  return name.substr(0, name.find('.'));
}

//--------------------------------------------------------------------------------------------------
// The toolkit's macros begin with "vtkClass (0x55d0c8): ". The length of that, 0 for other texts.
std::size_t LengthOfObject(const std::string& text)
{
  const auto space = text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                            "0123456789_:<>");
  if (space == 0 || space == std::string::npos || text.compare(space, 2, " (") != 0)
  {
    return 0;
  }
  const auto close = text.find_first_not_of("0123456789abcdefABCDEFx", space + 2);
  return close != std::string::npos && close > space + 2 && text.compare(close, 3, "): ") == 0
    ? close + 3
    : 0;
}
} // namespace

//--------------------------------------------------------------------------------------------------
struct zylMessages::Internals
{
  const std::thread::id HostThread = std::this_thread::get_id();
  bool Announcing = false; // on the host's thread only

  std::mutex Mutex; // nothing is logged while it is held
  std::deque<Message> Messages;
  std::size_t Count = 0;
  std::size_t Announced = 0;
  std::size_t Capacity = 1000;
  std::string Piece; // of a line that is not complete

  void Add(Severity level, const std::string& source, const std::string& text)
  {
    if (text.empty())
    {
      return;
    }
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    this->Messages.push_back({ ++this->Count, level, source, text, now.count() });
    this->Shrink();
  }

  std::deque<Message>::const_iterator After(std::size_t number) const
  {
    const std::size_t gone = this->Count - this->Messages.size();
    const std::size_t skipped = std::max(number, gone) - gone;
    return this->Messages.cbegin() + std::min(skipped, this->Messages.size());
  }

  // The next one to announce, none behind `end`.
  bool TakeNext(std::size_t end, Message& message)
  {
    const std::lock_guard<std::mutex> lock(this->Mutex);
    const auto next = this->After(this->Announced);
    if (next == this->Messages.cend() || next->Number > end)
    {
      return false;
    }
    message = *next;
    this->Announced = message.Number;
    return true;
  }

  void Shrink()
  {
    while (this->Messages.size() > this->Capacity)
    {
      this->Messages.pop_front();
    }
  }

  // What a program in Python prints to its error stream comes in pieces of lines.
  void AddPiece(Severity level, const std::string& text)
  {
    this->Piece += text;
    for (auto end = this->Piece.find('\n'); end != std::string::npos; end = this->Piece.find('\n'))
    {
      this->Add(level, "", Trimmed(this->Piece.substr(0, end)));
      this->Piece.erase(0, end + 1);
    }
  }

  void Flush()
  {
    this->Add(Severity::Error, "", Trimmed(this->Piece));
    this->Piece.clear();
  }

  static void Collect(void* self, const vtkLogger::Message& message)
  {
    const Severity level =
      message.verbosity <= vtkLogger::VERBOSITY_ERROR ? Severity::Error : Severity::Warning;
    const std::string text = message.message;
    auto* kept = static_cast<zylMessages*>(self)->Kept.get();
    {
      const std::lock_guard<std::mutex> lock(kept->Mutex);
      const std::size_t object = LengthOfObject(text);
      const std::string file = BaseName(message.filename);
      if (object == 0 && file == "vtkOutputWindow")
      {
        kept->AddPiece(level, text);
      }
      else
      {
        kept->Flush();
        const std::string source = object > 0 ? text.substr(0, text.find(' ')) : file;
        kept->Add(level, source, Trimmed(text.substr(object)));
      }
    }
    static_cast<zylMessages*>(self)->Announce();
  }
};

//--------------------------------------------------------------------------------------------------
zylMessages::zylMessages()
  : Kept(std::make_unique<Internals>())
{
  vtkLogger::AddCallback(CallbackId, &Internals::Collect, this, vtkLogger::VERBOSITY_WARNING);
}

//--------------------------------------------------------------------------------------------------
zylMessages::~zylMessages()
{
  vtkLogger::RemoveCallback(CallbackId);
}

//--------------------------------------------------------------------------------------------------
zylMessages* zylMessages::GetInstance()
{
  // Never deleted: messages come until the end of the process.
  static zylMessages* const instance = zylMessages::New();
  return instance;
}

//--------------------------------------------------------------------------------------------------
void zylMessages::Announce()
{
  if (std::this_thread::get_id() != this->Kept->HostThread || this->Kept->Announcing)
  {
    return;
  }
  this->Kept->Announcing = true;
  Message next;
  for (const std::size_t end = this->GetCount(); this->Kept->TakeNext(end, next);)
  {
    this->InvokeEvent(MessageEvent, &next);
  }
  this->Kept->Announcing = false;
}

//--------------------------------------------------------------------------------------------------
std::size_t zylMessages::GetCount()
{
  const std::lock_guard<std::mutex> lock(this->Kept->Mutex);
  return this->Kept->Count;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylMessages::Message> zylMessages::GetMessages(std::size_t number)
{
  const std::lock_guard<std::mutex> lock(this->Kept->Mutex);
  return { this->Kept->After(number), this->Kept->Messages.cend() };
}

//--------------------------------------------------------------------------------------------------
std::string zylMessages::GetReason(std::size_t number)
{
  const auto messages = this->GetMessages(number);
  for (const Severity level : { Severity::Error, Severity::Warning })
  {
    const auto last = std::find_if(messages.rbegin(), messages.rend(),
      [level](const Message& message) { return message.Level == level; });
    if (last != messages.rend())
    {
      return last->Text;
    }
  }
  return "";
}

//--------------------------------------------------------------------------------------------------
void zylMessages::SetCapacity(std::size_t capacity)
{
  const std::lock_guard<std::mutex> lock(this->Kept->Mutex);
  this->Kept->Capacity = capacity;
  this->Kept->Shrink();
}

//--------------------------------------------------------------------------------------------------
std::size_t zylMessages::GetCapacity()
{
  const std::lock_guard<std::mutex> lock(this->Kept->Mutex);
  return this->Kept->Capacity;
}
