/// @file zylErrorCapture.h
/// Collects the toolkit's error messages of this process while it lives. They are shown as before;
/// where the host has switched messages off they are collected all the same and stay unseen.
/// Private to the library.
#ifndef zylErrorCapture_h
#define zylErrorCapture_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkObject;
class vtkOutputWindow;

class ZYL_PRIVATE zylErrorCapture
{
public:
  zylErrorCapture();
  ~zylErrorCapture();
  zylErrorCapture(const zylErrorCapture&) = delete;
  zylErrorCapture& operator=(const zylErrorCapture&) = delete;

  /// One entry a message, without file, line and object address.
  const std::vector<std::string>& GetMessages() const { return this->Messages; }

private:
  static void Collect(vtkObject*, unsigned long, void* self, void* text);

  vtkSmartPointer<vtkOutputWindow> Previous;
  vtkSmartPointer<vtkOutputWindow> Window;
  unsigned long Tag = 0;
  int Display = 1;
  std::vector<std::string> Messages;
};

#endif
