#include "Host/zylHostWindowFactory.h"

#include "Host/zylHostRenderWindow.h"

#include <cstring>

#include <vtkCollection.h>
#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>
#include <vtkPVView.h>
#include <vtkVersion.h>

namespace {
constexpr const char* WindowClass = "vtkRenderWindow";

class WindowFactory : public vtkObjectFactory
{
public:
  static WindowFactory* New();
  vtkTypeMacro(WindowFactory, vtkObjectFactory);
  const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
  const char* GetDescription() override { return "render windows in the host's context"; }

protected:
  WindowFactory()
  {
    this->RegisterOverride(WindowClass, "zylHostRenderWindow", "draws in the host's context", 1,
      []() -> vtkObject* { return zylHostRenderWindow::New(); });
  }
};
vtkStandardNewMacro(WindowFactory);
} // namespace

//--------------------------------------------------------------------------------------------------
zylHostRenderWindowScope::zylHostRenderWindowScope()
  : Factory(vtkSmartPointer<WindowFactory>::New())
  , Generic(vtkPVView::GetUseGenericOpenGLRenderWindow())
{
  vtkPVView::SetUseGenericOpenGLRenderWindow(false);
  vtkObjectFactoryCollection* factories = vtkObjectFactory::GetRegisteredFactories();
  vtkCollectionSimpleIterator iterator;
  factories->InitTraversal(iterator);
  while (auto* factory = static_cast<vtkObjectFactory*>(factories->GetNextItemAsObject(iterator)))
  {
    for (int i = 0; i < factory->GetNumberOfOverrides(); ++i)
    {
      if (std::strcmp(factory->GetClassOverrideName(i), WindowClass) == 0 &&
        factory->GetEnableFlag(i))
      {
        const std::string subclass = factory->GetClassOverrideWithName(i);
        factory->SetEnableFlag(0, WindowClass, subclass.c_str());
        this->Disabled.emplace_back(factory, subclass);
      }
    }
  }
  vtkObjectFactory::RegisterFactory(this->Factory);
}

//--------------------------------------------------------------------------------------------------
zylHostRenderWindowScope::~zylHostRenderWindowScope()
{
  vtkObjectFactory::UnRegisterFactory(this->Factory);
  for (const auto& item : this->Disabled)
  {
    item.first->SetEnableFlag(1, WindowClass, item.second.c_str());
  }
  vtkPVView::SetUseGenericOpenGLRenderWindow(this->Generic);
}
