#include "Data/zylReader.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPVTrivialProducer.h>
#include <vtkSMCoreUtilities.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxyManager.h>
#include <vtkSMReaderFactory.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkStringList.h>
#include <vtksys/SystemTools.hxx>

namespace {
// Readers of AMR data read the coarsest level or two unless they are told how many; with these they
// read all of them.
constexpr std::pair<const char*, int> AllLevels[] = { { "DefaultNumberOfLevels", 0 },
  { "Level", 100 } };

using Reader = zylReaderChoice::Reader;

std::vector<Reader> GetReaders(
  vtkSMReaderFactory* factory, vtkSMSession* session, const std::string& fileName)
{
  std::vector<Reader> readers;
  vtkStringList* list = factory->GetReaders(fileName.c_str(), session);
  for (int i = 0; i + 2 < list->GetNumberOfStrings(); i += 3) // group, name, description
  {
    readers.push_back({ list->GetString(i), list->GetString(i + 1) });
  }
  return readers;
}

std::string Extension(const std::string& fileName)
{
  return vtksys::SystemTools::GetFilenameLastExtension(fileName);
}

void KeepCommon(std::vector<Reader>& readers, const std::vector<Reader>& others)
{
  const auto missing = [&others](const Reader& reader) {
    return std::none_of(others.begin(), others.end(), [&reader](const Reader& other) {
      return other.Group == reader.Group && other.Name == reader.Name;
    });
  };
  readers.erase(std::remove_if(readers.begin(), readers.end(), missing), readers.end());
}

// The readers that ParaView borrows from VisIt claim a file by its name alone and may crash on one
// that is not theirs: none of them takes the place of a reader that refused the file.
bool IsBorrowed(const Reader& reader)
{
  return reader.Name.compare(0, 5, "VisIt") == 0;
}

zylReaderChoice Choose(vtkSMSession* session, const std::vector<std::string>& fileNames)
{
  vtkSMReaderFactory* factory =
    session ? vtkSMProxyManager::GetProxyManager()->GetReaderFactory() : nullptr;
  if (!factory)
  {
    return { {}, "Failed to create new dataset" };
  }
  if (factory->GetNumberOfRegisteredPrototypes() == 0)
  {
    factory->UpdateAvailableReaders();
  }
  const std::string& first = fileNames.front();
  if (!vtkSMReaderFactory::TestFileReadability(first.c_str(), session))
  {
    return { {}, "File not readable " + first };
  }
  std::vector<Reader> readers = GetReaders(factory, session, first);
  if (readers.empty())
  {
    return { {}, "File not readable. No reader found for " + first };
  }
  for (const std::string& fileName : fileNames)
  {
    if (Extension(fileName) != Extension(first)) // else a long series would be asked for in vain
    {
      KeepCommon(readers, GetReaders(factory, session, fileName));
    }
    if (readers.empty())
    {
      return { {}, "Files of different kinds are no dataset: " + first + " and " + fileName };
    }
  }
  readers.erase(std::remove_if(readers.begin() + 1, readers.end(), IsBorrowed), readers.end());
  return { readers, "" };
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylReaderChoice zylChooseReaders(vtkSMSession* session, const std::vector<std::string>& fileNames)
{
  const zylReaderChoice choice = Choose(session, fileNames);
  if (session && !zylIsAlive(session)) // then what was found out says nothing about the files
  {
    return { {}, "Failed to read " + fileNames.front() + ": the connection to the server is lost" };
  }
  return choice;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> zylMakeReader(vtkSMSessionProxyManager* manager,
  const std::string& group, const std::string& name, const std::vector<std::string>& fileNames,
  zylPropertyCollection* settings, std::string& error)
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
  for (const auto& [setting, all] : AllLevels)
  {
    builder.Then([setting = setting, all = all](vtkSMProxy* reader) {
      if (reader->GetProperty(setting))
      {
        vtkSMPropertyHelper(reader, setting).Set(all);
      }
    });
  }
  builder.Then([&fileNames](vtkSMProxy* proxy) {
    const char* property = vtkSMCoreUtilities::GetFileNameProperty(proxy);
    for (unsigned int i = 0; property && i < fileNames.size(); ++i)
    {
      vtkSMPropertyHelper(proxy, property).Set(i, fileNames[i].c_str());
    }
  });
  try
  {
    return builder.Make();
  }
  catch (const std::exception& exception)
  {
    error = exception.what();
    return nullptr;
  }
}

//--------------------------------------------------------------------------------------------------
bool zylSetData(vtkSMSourceProxy* source, vtkMultiBlockDataSet* data, double time)
{
  auto* producer =
    source ? vtkPVTrivialProducer::SafeDownCast(source->GetClientSideObject()) : nullptr;
  if (!producer || !data)
  {
    return false;
  }
  producer->SetOutput(data, time);
  source->UpdateVTKObjects();
  source->MarkModified(source);
  source->UpdatePipeline();
  return true;
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
