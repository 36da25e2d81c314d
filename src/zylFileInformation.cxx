#include "zylFileInformation.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"

#include <vtkCollection.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkPVFileInformation.h>
#include <vtkPVFileInformationHelper.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMProxyManager.h>
#include <vtkSMSessionClient.h>

vtkStandardNewMacro(zylFileInformation);

namespace {
std::string Text(const char* text)
{
  return text ? text : "";
}

bool IsGroup(int type)
{
  return type == vtkPVFileInformation::FILE_GROUP || type == vtkPVFileInformation::DIRECTORY_GROUP;
}

template <class Action>
void ForEachContent(vtkPVFileInformation* information, Action action)
{
  vtkCollection* contents = information->GetContents();
  for (int i = 0; contents && i < contents->GetNumberOfItems(); ++i)
  {
    if (auto* content = vtkPVFileInformation::SafeDownCast(contents->GetItemAsObject(i)))
    {
      action(content);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylFileInformation::zylFileInformation() = default;

//--------------------------------------------------------------------------------------------------
zylFileInformation::~zylFileInformation() = default;

//--------------------------------------------------------------------------------------------------
std::vector<vtkSmartPointer<zylFile>> zylFileInformation::GetFilesInDirectory(const char* path)
{
  std::vector<vtkSmartPointer<zylFile>> files;
  vtkSMSession* session = vtkSMProxyManager::GetProxyManager()->GetActiveSession();
  if (!session)
  {
    vtkLogF(ERROR, "No active session");
    return files;
  }
  if (!zylHasSession("GetFilesInDirectory()"))
  {
    return files;
  }
  if (!path || !*path)
  {
    vtkLogF(ERROR, "GetFilesInDirectory: no path");
    return files;
  }
  if (!this->FileInformation)
  {
    this->FileInformation = vtkSmartPointer<vtkPVFileInformation>::New();
  }
  if (!vtkSMSessionClient::SafeDownCast(session))
  {
    this->ListLocal(path);
  }
  else
  {
    this->ListRemote(session, path);
  }
  ForEachContent(this->FileInformation, [&files](vtkPVFileInformation* entry) {
    auto file = vtkSmartPointer<zylFile>::New();
    file->SetFileName(Text(entry->GetName()));
    file->SetFullPath(Text(entry->GetFullPath()));
    file->SetFileType(entry->GetType());
    file->SetSize(entry->GetSize());
    if (IsGroup(entry->GetType()))
    {
      std::vector<std::string> group;
      ForEachContent(entry,
        [&group](vtkPVFileInformation* member) { group.push_back(Text(member->GetFullPath())); });
      file->SetGroup(std::move(group));
    }
    files.push_back(file);
  });
  return files;
}

//--------------------------------------------------------------------------------------------------
void zylFileInformation::ListRemote(vtkSMSession* session, const char* path)
{
  this->FileInformation->Initialize();
  if (!this->RemoteHelper || this->RemoteHelper->GetSession() != session)
  {
    this->RemoteHelper =
      zylProxyBuilder(vtkSMProxyManager::GetProxyManager()->GetSessionProxyManager(session), "misc",
        "FileInformationHelper")
        .MakeProxy();
  }
  if (!this->RemoteHelper)
  {
    vtkLogF(ERROR, "The session knows no file listings");
    return;
  }
  vtkSMPropertyHelper(this->RemoteHelper, "WorkingDirectory").Set(path);
  vtkSMPropertyHelper(this->RemoteHelper, "DirectoryListing").Set(1);
  vtkSMPropertyHelper(this->RemoteHelper, "Path").Set(path);
  vtkSMPropertyHelper(this->RemoteHelper, "SpecialDirectories").Set(0);
  vtkSMPropertyHelper(this->RemoteHelper, "ReadDetailedFileInformation").Set(1); // the sizes
  this->RemoteHelper->UpdateVTKObjects();
  this->RemoteHelper->GatherInformation(this->FileInformation);
}

//--------------------------------------------------------------------------------------------------
void zylFileInformation::ListLocal(const char* path)
{
  if (!this->LocalHelper)
  {
    this->LocalHelper = vtkSmartPointer<vtkPVFileInformationHelper>::New();
  }
  this->LocalHelper->SetDirectoryListing(1);
  this->LocalHelper->SetPath(path);
  this->LocalHelper->SetSpecialDirectories(0);
  this->LocalHelper->SetWorkingDirectory(path);
  this->LocalHelper->SetReadDetailedFileInformation(true); // the sizes
  this->FileInformation->CopyFromObject(this->LocalHelper);
}
