#include "ParaView/zylErrorCapture.h"

#include <vtkCallbackCommand.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>

namespace {
// Raises its events and shows nothing.
class QuietWindow : public vtkOutputWindow
{
public:
  static QuietWindow* New();
  vtkTypeMacro(QuietWindow, vtkOutputWindow);
  void DisplayText(const char*) override {}
};
vtkStandardNewMacro(QuietWindow);
} // namespace

//--------------------------------------------------------------------------------------------------
zylErrorCapture::zylErrorCapture()
  : Previous(vtkOutputWindow::GetInstance())
  , Window(this->Previous)
  , Display(vtkObject::GetGlobalWarningDisplay())
{
  if (!this->Display)
  {
    this->Window = vtkSmartPointer<QuietWindow>::New();
    vtkOutputWindow::SetInstance(this->Window);
    vtkObject::SetGlobalWarningDisplay(1);
  }
  vtkNew<vtkCallbackCommand> command;
  command->SetCallback(&zylErrorCapture::Collect);
  command->SetClientData(this);
  this->Tag = this->Window->AddObserver(vtkCommand::ErrorEvent, command);
}

//--------------------------------------------------------------------------------------------------
zylErrorCapture::~zylErrorCapture()
{
  this->Window->RemoveObserver(this->Tag);
  if (!this->Display)
  {
    vtkOutputWindow::SetInstance(this->Previous);
    vtkObject::SetGlobalWarningDisplay(0);
  }
}

//--------------------------------------------------------------------------------------------------
void zylErrorCapture::Collect(vtkObject*, unsigned long, void* self, void* text)
{
  std::string message = text ? static_cast<const char*>(text) : "";
  // "ERROR: In file, line n\nclass (address): message\n\n"
  const std::size_t object = message.find("): ");
  if (message.compare(0, 6, "ERROR:") == 0 && object != std::string::npos)
  {
    message.erase(0, object + 3);
  }
  message.erase(message.find_last_not_of(" \n\r\t") + 1);
  static_cast<zylErrorCapture*>(self)->Messages.push_back(message);
}
