#include "zylProgress.h"

#include <vtkCommand.h>
#include <vtkObjectFactory.h>
#include <vtkPVProgressHandler.h>
#include <vtkSMSession.h>

vtkStandardNewMacro(zylProgress);

//--------------------------------------------------------------------------------------------------
zylProgress* zylProgress::GetInstance()
{
  // Never deleted: a session may report until the end of the process.
  static zylProgress* const instance = zylProgress::New();
  return instance;
}

//--------------------------------------------------------------------------------------------------
void zylProgress::Follow(vtkSMSession* session)
{
  if (this->Handler)
  {
    this->Handler->RemoveObserver(this->Observer);
  }
  this->Handler = session ? session->GetProgressHandler() : nullptr;
  if (this->Handler)
  {
    this->Observer =
      this->Handler->AddObserver(vtkCommand::ProgressEvent, this, &zylProgress::OnProgress);
  }
}

//--------------------------------------------------------------------------------------------------
void zylProgress::OnProgress(vtkObject*, unsigned long, void*)
{
  const char* text = this->Handler->GetLastProgressText();
  this->Text = text ? text : "";
  this->Fraction = this->Handler->GetLastProgress() / 100.0;
  double fraction = this->Fraction;
  this->InvokeEvent(vtkCommand::ProgressEvent, &fraction);
}

//--------------------------------------------------------------------------------------------------
void zylProgress::RequestCancel()
{
  this->Cancel = this->Operations > 0;
}

//--------------------------------------------------------------------------------------------------
zylProgress::Operation::Operation()
{
  ++zylProgress::GetInstance()->Operations;
}

//--------------------------------------------------------------------------------------------------
zylProgress::Operation::~Operation()
{
  zylProgress* progress = zylProgress::GetInstance();
  if (--progress->Operations == 0)
  {
    progress->Cancel = false;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylProgress::TakeCancelRequest()
{
  return this->Cancel.exchange(false);
}
