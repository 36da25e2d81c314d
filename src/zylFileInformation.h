/**
 * @class zylFileInformation
 * @brief Lists directories of the machine that reads the data: this one, or the server's.
 *
 *     vtkNew<zylFileInformation> information;
 *     for (const auto& file : information->GetFilesInDirectory("/data/case"))
 *       if (!vtkPVFileInformation::IsDirectory(file->GetFileType()))
 *         names.push_back(file->GetFileName());
 */
#ifndef zylFileInformation_h
#define zylFileInformation_h

#include "zylExport.h"
#include "zylFile.h"

#include <vector>

#include <vtkObject.h>
#include <vtkSmartPointer.h>

class vtkPVFileInformation;
class vtkPVFileInformationHelper;
class vtkSMProxy;
class vtkSMSession;

class ZYL_EXPORT zylFileInformation : public vtkObject
{
public:
  static zylFileInformation* New();
  vtkTypeMacro(zylFileInformation, vtkObject);

  /// The entries of the directory `path` (UTF-8) in ParaView's order, files that differ only in a
  /// number grouped to one entry, as ParaView does; neither "." and ".." nor special places (home,
  /// desktop ...). Links are followed: they are listed as what they point to. Empty for a path that
  /// cannot be listed: it does not exist, is a file, or is null. An error is logged without a
  /// session; a listing replaces the one before.
  std::vector<vtkSmartPointer<zylFile>> GetFilesInDirectory(const char* path);

protected:
  zylFileInformation();
  ~zylFileInformation() override;

private:
  zylFileInformation(const zylFileInformation&) = delete;
  void operator=(const zylFileInformation&) = delete;

  void ListRemote(vtkSMSession* session, const char* path);
  void ListLocal(const char* path);

  vtkSmartPointer<vtkPVFileInformation> FileInformation;
  vtkSmartPointer<vtkPVFileInformationHelper> LocalHelper;
  vtkSmartPointer<vtkSMProxy> RemoteHelper;
};

#endif
