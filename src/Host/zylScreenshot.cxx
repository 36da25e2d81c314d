#include "Host/zylScreenshot.h"

#include <fstream>

#include <vtkImageData.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkSMParaViewPipelineController.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSaveScreenshotProxy.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMViewProxy.h>
#include <vtksys/SystemTools.hxx>

//--------------------------------------------------------------------------------------------------
zylScreenshot::zylScreenshot(vtkSMViewProxy* view, const char* fileName)
  : FileName(fileName)
{
  vtkSMSessionProxyManager* manager = view->GetSessionProxyManager();
  auto proxy = vtkSmartPointer<vtkSMProxy>::Take(manager->NewProxy("misc", "SaveScreenshot"));
  this->Proxy = vtkSMSaveScreenshotProxy::SafeDownCast(proxy);
  if (!this->Proxy)
  {
    vtkLogF(ERROR, "The session knows no screenshots");
    return;
  }
  vtkNew<vtkSMParaViewPipelineController> controller;
  controller->PreInitializeProxy(this->Proxy);
  vtkSMPropertyHelper(this->Proxy, "View").Set(view);
  vtkSMPropertyHelper(this->Proxy, "SaveAllViews").Set(0);
  if (!this->FileName.empty())
  {
    this->Proxy->UpdateDefaultsAndVisibilities(this->FileName.c_str());
  }
  controller->PostInitializeProxy(this->Proxy);
}

//--------------------------------------------------------------------------------------------------
zylScreenshot::~zylScreenshot() = default;

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkImageData> zylScreenshot::Capture()
{
  return this->Proxy->CaptureImage();
}

//--------------------------------------------------------------------------------------------------
bool zylScreenshot::Write()
{
  // ParaView does not see all failures.
  const bool written = this->Proxy->WriteImage(this->FileName.c_str()) &&
    vtksys::SystemTools::FileExists(this->FileName, true) &&
    vtksys::SystemTools::FileLength(this->FileName) > 0;
  if (!written)
  {
    vtkLogF(ERROR, "SaveScreenshot: '%s' could not be written", this->FileName.c_str());
  }
  return written;
}

//--------------------------------------------------------------------------------------------------
bool zylScreenshot::IsWritable(const char* fileName)
{
  if (!fileName || !*fileName)
  {
    vtkLogF(ERROR, "SaveScreenshot: no file name");
    return false;
  }
  const bool existed = vtksys::SystemTools::FileExists(fileName);
  const bool opened = std::ofstream(fileName, std::ios::app).is_open();
  if (opened && !existed)
  {
    vtksys::SystemTools::RemoveFile(fileName);
  }
  if (!opened)
  {
    vtkLogF(ERROR, "SaveScreenshot: '%s' cannot be written to", fileName);
  }
  return opened;
}
