/**
 * @class zylFile
 * @brief One entry of a directory listing: see zylFileInformation.
 */
#ifndef zylFile_h
#define zylFile_h

#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkObject.h>

class ZYL_EXPORT zylFile : public vtkObject
{
public:
  static zylFile* New();
  vtkTypeMacro(zylFile, vtkObject);

  ///@{
  /// Name without directory. That of a group is made of what its files have in common
  /// ("step..vtu").
  virtual std::string GetFileName();
  virtual void SetFileName(std::string name);
  ///@}

  ///@{
  /// Name with directory, on the machine that was listed.
  virtual std::string GetFullPath();
  virtual void SetFullPath(std::string path);
  ///@}

  ///@{
  /// A value of vtkPVFileInformation::FileTypes: SINGLE_FILE, DIRECTORY, their links, FILE_GROUP
  /// ...
  virtual int GetFileType();
  virtual void SetFileType(int type);
  ///@}

  ///@{
  /// In bytes.
  virtual long long GetSize();
  virtual void SetSize(long long size);
  ///@}

  ///@{
  /// The full paths of the files of a group in order, as zylDataSet::LoadFromFile() wants them;
  /// empty for anything but a group.
  virtual std::vector<std::string> GetGroup();
  virtual void SetGroup(std::vector<std::string> paths);
  ///@}

protected:
  zylFile() = default;
  ~zylFile() override = default;

private:
  zylFile(const zylFile&) = delete;
  void operator=(const zylFile&) = delete;

  std::string FileName;
  std::string FullPath;
  int FileType = 0; // vtkPVFileInformation::INVALID
  long long Size = 0;
  std::vector<std::string> Group;
};

#endif
