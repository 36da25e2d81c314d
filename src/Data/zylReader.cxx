#include "Data/zylReader.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylPropertyCollection.h"

#include <vtkLogger.h>
#include <vtkSMCoreUtilities.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyManager.h>
#include <vtkSMReaderFactory.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

//--------------------------------------------------------------------------------------------------
zylReaderChoice zylChooseReader(vtkSMSession* session, const std::string& fileName)
{
  vtkSMReaderFactory* factory =
    session ? vtkSMProxyManager::GetProxyManager()->GetReaderFactory() : nullptr;
  if (!factory)
  {
    return { "", "", "Failed to create new dataset" };
  }
  if (factory->GetNumberOfRegisteredPrototypes() == 0)
  {
    factory->UpdateAvailableReaders();
  }
  if (!vtkSMReaderFactory::TestFileReadability(fileName.c_str(), session))
  {
    return { "", "", "File not readable " + fileName };
  }
  if (!factory->CanReadFile(fileName.c_str(), session))
  {
    return { "", "", "File not readable. No reader found for " + fileName };
  }
  return { factory->GetReaderGroup(), factory->GetReaderName(), "" };
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylMakeReader(vtkSMSessionProxyManager* manager,
  const std::string& group, const std::string& name, const std::vector<std::string>& fileNames,
  zylPropertyCollection* settings)
{
  zylProxyBuilder builder(manager, group.c_str(), name.c_str());
  for (const char* setting : { "PartIdArrayName", "LevelMaskArrayName" })
  {
    builder.Then([settings, setting](vtkSMProxy* reader) {
      if (reader->GetProperty(setting))
      {
        const std::string value = settings->GetString(setting);
        vtkVLogF(vtkLogger::VERBOSITY_TRACE, "setting %s to '%s'", setting, value.c_str());
        vtkSMPropertyHelper(reader, setting).Set(0, value.c_str());
      }
    });
  }
  return builder
    .Then([&fileNames](vtkSMProxy* proxy) {
      const char* property = vtkSMCoreUtilities::GetFileNameProperty(proxy);
      for (unsigned int i = 0; property && i < fileNames.size(); ++i)
      {
        vtkSMPropertyHelper(proxy, property).Set(i, fileNames[i].c_str());
      }
    })
    .Make();
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylGetFileNames(vtkSMSourceProxy* reader)
{
  std::vector<std::string> names;
  const char* property = reader ? vtkSMCoreUtilities::GetFileNameProperty(reader) : nullptr;
  if (property)
  {
    vtkSMPropertyHelper helper(reader, property);
    for (unsigned int i = 0; i < helper.GetNumberOfElements(); ++i)
    {
      const char* name = helper.GetAsString(i);
      names.emplace_back(name ? name : "");
    }
  }
  return names;
}
