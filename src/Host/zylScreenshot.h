/// @file zylScreenshot.h
/// One picture of a server-manager view, as an image or as a file. The view is ready to render.
///
///     zylScreenshot screenshot(view, "picture.png");
///     const bool written = screenshot && screenshot.Write();
///
/// Private to the library.
#ifndef zylScreenshot_h
#define zylScreenshot_h

#include "zylExport.h"

#include <string>

#include <vtkSmartPointer.h>

class vtkImageData;
class vtkSMSaveScreenshotProxy;
class vtkSMViewProxy;

class ZYL_PRIVATE zylScreenshot
{
public:
  /// For Capture(), or with the name of a file for Write(); its extension names the format. A
  /// session that knows no screenshots is reported.
  explicit zylScreenshot(vtkSMViewProxy* view, const char* fileName = "");
  ~zylScreenshot();
  zylScreenshot(const zylScreenshot&) = delete;
  zylScreenshot& operator=(const zylScreenshot&) = delete;

  explicit operator bool() const { return this->Proxy != nullptr; }

  /// Null on failure.
  vtkSmartPointer<vtkImageData> Capture();

  /// Whether the file was written; reported when not.
  bool Write();

  /// Whether the file can be opened for writing, reported when not; one that does not exist is not
  /// left behind.
  static bool IsWritable(const char* fileName);

private:
  std::string FileName;
  vtkSmartPointer<vtkSMSaveScreenshotProxy> Proxy;
};

#endif
