#include "Host/zylHostWindowFactory.h"

#include "Host/zylHostRenderWindow.h"

#include <vtkPVView.h>

//--------------------------------------------------------------------------------------------------
zylHostRenderWindowScope::zylHostRenderWindowScope()
  : Override("vtkRenderWindow", []() -> vtkObject* { return zylHostRenderWindow::New(); })
  , Generic(vtkPVView::GetUseGenericOpenGLRenderWindow())
{
  vtkPVView::SetUseGenericOpenGLRenderWindow(false);
}

//--------------------------------------------------------------------------------------------------
zylHostRenderWindowScope::~zylHostRenderWindowScope()
{
  vtkPVView::SetUseGenericOpenGLRenderWindow(this->Generic);
}
