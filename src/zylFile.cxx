#include "zylFile.h"

#include <utility>

#include <vtkObjectFactory.h>

vtkStandardNewMacro(zylFile);

//--------------------------------------------------------------------------------------------------
std::string zylFile::GetFileName()
{
  return this->FileName;
}

//--------------------------------------------------------------------------------------------------
void zylFile::SetFileName(std::string name)
{
  this->FileName = std::move(name);
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
std::string zylFile::GetFullPath()
{
  return this->FullPath;
}

//--------------------------------------------------------------------------------------------------
void zylFile::SetFullPath(std::string path)
{
  this->FullPath = std::move(path);
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
int zylFile::GetFileType()
{
  return this->FileType;
}

//--------------------------------------------------------------------------------------------------
void zylFile::SetFileType(int type)
{
  this->FileType = type;
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
long long zylFile::GetSize()
{
  return this->Size;
}

//--------------------------------------------------------------------------------------------------
void zylFile::SetSize(long long size)
{
  this->Size = size;
  this->Modified();
}

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylFile::GetGroup()
{
  return this->Group;
}

//--------------------------------------------------------------------------------------------------
void zylFile::SetGroup(std::vector<std::string> paths)
{
  this->Group = std::move(paths);
  this->Modified();
}
