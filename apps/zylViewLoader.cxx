#include "zylViewLoader.h"

#include "zylSampleFlow.h"
#include "zylViewError.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewTerminal.h"
#include "zylViewTimes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

#include <fnmatch.h>

#include <zylCore.h>
#include <zylDataSet.h>

#include <vtkPVProxyDefinitionIterator.h>
#include <vtkSMProxyDefinitionManager.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>

namespace fs = std::filesystem;

namespace {
constexpr int ConnectTimeout = 5; // seconds
constexpr int SampleSteps = 8;

// Only for files that are read here: a server has files of its own.
void CheckReadable(const std::string& file)
{
  std::error_code error;
  if (fs::is_directory(file, error))
  {
    return; // some formats are folders
  }
  std::FILE* stream = std::fopen(file.c_str(), "rb");
  if (stream == nullptr)
  {
    throw zylViewError(
      zylViewBadFile, "cannot read '" + file + "': " + std::generic_category().message(errno));
  }
  std::fclose(stream);
}

// An index of time steps is no file type of ParaView's: its reader is the library's own.
void ChooseReader(zylViewOptions& options)
{
  if (options.ReaderName.empty() && fs::path(options.Files.front()).extension() == ".json")
  {
    options.ReaderGroup = "sources";
    options.ReaderName = "ZYLVolumeSurfaceReader";
  }
}

void CheckReader(const zylViewOptions& options)
{
  vtkSMSessionProxyManager* manager = zylCore::GetInstance()->GetSessionProxyManager();
  const char* group = options.ReaderGroup.c_str();
  if (options.ReaderName.empty() ||
    manager->GetPrototypeProxy(group, options.ReaderName.c_str()) != nullptr)
  {
    return;
  }
  std::vector<std::string> known;
  auto proxies = vtkSmartPointer<vtkPVProxyDefinitionIterator>::Take(
    manager->GetProxyDefinitionManager()->NewSingleGroupIterator(group));
  for (proxies->InitTraversal(); !proxies->IsDoneWithTraversal(); proxies->GoToNextItem())
  {
    known.push_back(options.ReaderGroup + "/" + proxies->GetProxyName());
  }
  throw zylUnknownName("reader", options.ReaderGroup + "/" + options.ReaderName, known);
}

// Whether a file of this name is of a kind that --list-file-types lists, as "Description (*.a b*)".
bool IsListedKind(const std::string& file)
{
  const std::string name = fs::path(file).filename().string();
  for (const std::string& type : zylCore::GetSupportedFileTypes())
  {
    const auto begin = type.rfind('(');
    const auto end = type.rfind(')');
    if (begin == std::string::npos || end == std::string::npos || end < begin)
    {
      continue;
    }
    std::istringstream patterns(type.substr(begin + 1, end - begin - 1));
    for (std::string pattern; patterns >> pattern;)
    {
      if (fnmatch(pattern.c_str(), name.c_str(), 0) == 0)
      {
        return true;
      }
    }
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylViewLoader::zylViewLoader(zylViewOptions& options, zylViewMessages& messages,
  zylViewTimes& times, const zylViewProgress::Alive& alive)
  : Options(options)
  , Messages(messages)
  , Times(times)
  , Alive(alive)
{
}

//--------------------------------------------------------------------------------------------------
void zylViewLoader::NameSample()
{
  if (this->Options.Files.empty())
  {
    this->Options.Files.push_back(this->SampleFile());
    this->Options.Sample = true;
    this->Options.Demo |= this->Options.ShowsDemo();
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylDataSet> zylViewLoader::Load()
{
  if (this->Options.Connect.empty())
  {
    std::for_each(this->Options.Files.begin(), this->Options.Files.end(), &CheckReadable);
  }
  ChooseReader(this->Options);
  CheckReader(this->Options);
  return this->LoadFiles();
}

//--------------------------------------------------------------------------------------------------
void zylViewLoader::Connect()
{
  const std::string& url = this->Options.Connect;
  if (url.empty())
  {
    return;
  }
  zylViewProgress progress("connecting to " + url, this->Alive);
  this->Messages.Clear();
  zylCore* core = zylCore::GetInstance();
  const vtkSMSession* before = core->GetSession();
  core->Connect(url.c_str(), ConnectTimeout);
  if (!core->GetSession() || core->GetSession() == before) // which stays when nobody answers
  {
    throw zylViewError(zylViewNoServer, "no ParaView server answers at '" + url + "'");
  }
}

//--------------------------------------------------------------------------------------------------
// The sample lies in the user's cache, or in a folder of its own where there is none.
std::string zylViewLoader::SampleFile()
{
  const char* cache = std::getenv("XDG_CACHE_HOME");
  const char* home = std::getenv("HOME");
  const fs::path base = cache != nullptr && *cache != '\0' ? fs::path(cache)
    : home != nullptr && *home != '\0'                     ? fs::path(home) / ".cache"
                                                           : fs::temp_directory_path();
  const fs::path folder = base / "zyl" / ("sample-" ZYL_APP_VERSION);
  if (fs::exists(folder / "chimney.pvd"))
  {
    return (folder / "chimney.pvd").string();
  }
  zylViewProgress progress("writing the sample", this->Alive);
  const auto report = [&progress](int done) {
    progress.Set(double(done) / SampleSteps, "to the user's cache");
  };
  auto result = zylWriteSampleFlow(folder.string(), SampleSteps, report);
  if (!result.Error.empty())
  {
    const fs::path spare = fs::temp_directory_path() / "zyl-sample";
    result = zylWriteSampleFlow(spare.string(), SampleSteps, report);
  }
  if (!result.Error.empty())
  {
    throw zylViewError(zylViewFailed, result.Error);
  }
  return result.File;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylDataSet> zylViewLoader::LoadFiles()
{
  const auto& files = this->Options.Files;
  zylViewProgress progress("loading " + fs::path(files.front()).filename().string(), this->Alive);
  zylViewTimes::Watch watch(this->Times, "load");
  this->Messages.Clear();
  auto dataset = vtkSmartPointer<zylDataSet>::New();
  std::string heard;
  bool loaded = false;
  {
    // Readers' own libraries talk to the terminal as well; here all of it becomes one line.
    const zylViewTerminal terminal(this->Options.Verbose);
    loaded = this->Options.ReaderName.empty()
      ? dataset->LoadFromFile(files)
      : dataset->LoadFromFile(files, this->Options.ReaderGroup, this->Options.ReaderName);
    heard = terminal.GetText();
  }
  const std::string reason = this->Explain(dataset, heard);
  if (!loaded)
  {
    throw zylViewError(zylViewBadFile, "cannot read '" + files.front() + "'" + reason);
  }
  if (!dataset->GetReadErrors().empty() && dataset->GetNumberOfPoints() > 0)
  {
    zylSay("a part of '" + files.front() + "' could not be read" + reason);
  }
  return dataset;
}

//--------------------------------------------------------------------------------------------------
std::string zylViewLoader::Explain(zylDataSet* dataset, const std::string& heard) const
{
  const std::string& file = this->Options.Files.front();
  std::error_code error;
  const auto size = fs::file_size(file, error);
  if (!error && size == 0)
  {
    return ": the file is empty"; // and no format in which that is right
  }
  for (const std::string& message : dataset->GetReadErrors())
  {
    const std::string line = zylOneLine(message);
    if (!line.empty())
    {
      return ": " + line;
    }
  }
  const std::string first = this->Messages.GetFirstError();
  if (first.find("different kinds") != std::string::npos)
  {
    return ": " + first;
  }
  if (first.find("No reader found") != std::string::npos)
  {
    return IsListedKind(file) ? ": its content is not what its name promises"
                              : ": no reader for this kind of file";
  }
  const std::string line = zylOneLine(heard);
  return line.empty() ? ": its content is not what its name promises" : ": " + line;
}
