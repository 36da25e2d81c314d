/**
 * @class zylProgress
 * @brief What ParaView is doing and how far it has come, and a way to ask it to stop.
 *
 * Reading, filtering and rendering report their progress, in this process and on a server (there of
 * its first process, about once a second). Observers of vtkCommand::ProgressEvent are called on the
 * host's thread within the call that works, with the fraction as call data (`double*`), so that a
 * host can draw its own progress and keep its window alive. They must not call the library, but for
 * this class:
 *
 *     auto* progress = zylProgress::GetInstance();
 *     progress->AddObserver(vtkCommand::ProgressEvent, command);
 *     ... in the command:
 *     bar->Set(progress->GetText(), progress->GetFraction());
 *     if (bar->WasCanceled())
 *     {
 *       progress->RequestCancel();
 *     }
 *
 * A request to cancel is honored by zylDataSet::LoadFromFile() and Update() between stages: once
 * the reader is made, once the data are read, once they are processed. ParaView cannot stop a
 * stage that runs. What was loaded before stays as it was, and the reason is logged ("canceled").
 */
#ifndef zylProgress_h
#define zylProgress_h

#include "zylExport.h"

#include <atomic>
#include <string>

#include <vtkObject.h>
#include <vtkWeakPointer.h>

class vtkPVProgressHandler;
class vtkSMSession;

class ZYL_EXPORT zylProgress : public vtkObject
{
public:
  vtkTypeMacro(zylProgress, vtkObject);

  /// The one of this process (borrowed, never null).
  static zylProgress* GetInstance();

  ///@{
  /// What was reported last: the name of the reader or filter, and which part of its work is done,
  /// in [0, 1]. "" and 0 before anything was.
  const std::string& GetText() const { return this->Text; }
  double GetFraction() const { return this->Fraction; }
  ///@}

  ///@{
  /// Ask the operation that is running to stop. It takes the request back, also when it ends
  /// without having honored it; without one that can be canceled nothing happens. May be called
  /// from any thread.
  void RequestCancel();
  bool IsCancelRequested() const { return this->Cancel; }
  ///@}

  /// For the library itself: report what this session does (borrowed), from now on instead of
  /// another one.
  void Follow(vtkSMSession* session);

  /// For the library itself: an operation that can be canceled, as long as this lives. Within
  /// another one it is a part of that.
  struct ZYL_EXPORT Operation
  {
    Operation();
    ~Operation();
    Operation(const Operation&) = delete;
    void operator=(const Operation&) = delete;
  };
  /// For the library itself: whether to stop; true once, so that what puts things back as they were
  /// is not stopped.
  bool TakeCancelRequest();

protected:
  zylProgress() = default;
  ~zylProgress() override = default;

private:
  zylProgress(const zylProgress&) = delete;
  void operator=(const zylProgress&) = delete;

  static zylProgress* New();
  void OnProgress(vtkObject* caller, unsigned long event, void* data);

  std::string Text;
  double Fraction = 0.0;
  vtkWeakPointer<vtkPVProgressHandler> Handler;
  unsigned long Observer = 0;
  std::atomic<int> Operations{ 0 };
  std::atomic<bool> Cancel{ false };
};

#endif
