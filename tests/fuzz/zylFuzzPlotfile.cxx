#include "zylFuzz.h"

#include "zylAMReXPlotfile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <vtkAMReXGridReader.h>
#include <vtkNew.h>
#include <vtkObject.h>
#include <vtkOverlappingAMR.h>

namespace {
// A plotfile's directory in memory where there is such a place.
struct Directory
{
  Directory()
  {
    const bool shared = std::filesystem::is_directory("/dev/shm");
    std::string name = shared ? "/dev/shm/zylFuzzXXXXXX" : "/tmp/zylFuzzXXXXXX";
    this->Path = mkdtemp(&name[0]);
    std::filesystem::create_directory(this->Path + "/Level_0");
    vtkObject::GlobalWarningDisplayOff();
  }
  ~Directory()
  {
    std::error_code code;
    std::filesystem::remove_all(this->Path, code);
  }

  std::string Path;
};
} // namespace

void zylFuzzPlotfile(const std::uint8_t* data, std::size_t size)
{
  static const Directory directory;
  const char* const names[3] = { "/Header", "/Level_0/Cell_H", "/Level_0/Cell_D_00000" };
  const std::string separator = "--\n";
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::size_t begin = 0;
  for (int i = 0; i < 3; ++i)
  {
    const std::size_t end = i < 2 ? text.find(separator, begin) : std::string::npos;
    std::ofstream(directory.Path + names[i], std::ios::binary)
      << (begin == std::string::npos ? "" : text.substr(begin, end - begin));
    begin = end == std::string::npos ? end : end + separator.size();
  }
  if (!zylCheckAMReXPlotfile(directory.Path, 5).empty())
  {
    return;
  }
  vtkNew<vtkAMReXGridReader> reader;
  reader->SetFileName(directory.Path.c_str());
  reader->UpdateInformation();
  for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i)
  {
    reader->SetCellArrayStatus(reader->GetCellArrayName(i), 1);
  }
  reader->SetMaxLevel(5);
  reader->Update();
  if (!reader->GetOutput())
  {
    std::abort();
  }
}
