#include "Host/zylToolkitOverride.h"

#include <vtkCollection.h>
#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>
#include <vtkVersion.h>

namespace {
class OverrideFactory : public vtkObjectFactory
{
public:
  static OverrideFactory* New();
  vtkTypeMacro(OverrideFactory, vtkObjectFactory);
  const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
  const char* GetDescription() override { return "classes for views in a host's context"; }
  void Add(const char* name, vtkObject* (*create)())
  {
    this->RegisterOverride(name, "zyl", this->GetDescription(), 1, create);
  }
};
vtkStandardNewMacro(OverrideFactory);
} // namespace

//--------------------------------------------------------------------------------------------------
zylToolkitOverride::zylToolkitOverride(const char* name, vtkObject* (*create)())
  : Name(name)
{
  vtkObjectFactoryCollection* factories = vtkObjectFactory::GetRegisteredFactories();
  vtkCollectionSimpleIterator iterator;
  factories->InitTraversal(iterator);
  while (auto* factory = static_cast<vtkObjectFactory*>(factories->GetNextItemAsObject(iterator)))
  {
    for (int i = 0; i < factory->GetNumberOfOverrides(); ++i)
    {
      if (this->Name == factory->GetClassOverrideName(i) && factory->GetEnableFlag(i))
      {
        const std::string subclass = factory->GetClassOverrideWithName(i);
        factory->SetEnableFlag(0, name, subclass.c_str());
        this->Disabled.emplace_back(factory, subclass);
      }
    }
  }
  const auto factory = vtkSmartPointer<OverrideFactory>::New();
  factory->Add(name, create);
  this->Factory = factory;
  vtkObjectFactory::RegisterFactory(factory);
}

//--------------------------------------------------------------------------------------------------
zylToolkitOverride::~zylToolkitOverride()
{
  vtkObjectFactory::UnRegisterFactory(this->Factory);
  for (const auto& item : this->Disabled)
  {
    item.first->SetEnableFlag(1, this->Name.c_str(), item.second.c_str());
  }
}
