// zylview: shows simulation results, and shows how an application hosts the library.
#include "zylViewBlocks.h"
#include "zylViewError.h"
#include "zylViewHost.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewScene.h"

#include <cstdio>

#include <zylCore.h>

namespace {
void PrintLines(const std::vector<std::string>& lines)
{
  for (const std::string& line : lines)
  {
    std::puts(line.c_str());
  }
}

//--------------------------------------------------------------------------------------------------
void Run(zylViewOptions& options)
{
  zylViewMessages messages(options.Verbose);
  if (options.ListColorMaps || options.ListFileTypes)
  {
    PrintLines(options.ListColorMaps ? zylCore::GetAvailableColorMapNames()
                                     : zylCore::GetSupportedFileTypes());
    return;
  }
  // The host comes first: it owns the context, and outlives what is drawn in it.
  std::unique_ptr<zylViewHost> host;
  if (!options.List)
  {
    host = options.Output.empty() ? zylNewWindowHost(options) : zylNewOffscreenHost(options);
  }
  zylViewScene scene(options, messages);
  scene.Load();
  if (options.List)
  {
    zylPrintDataSet(scene.GetDataSet());
    return;
  }
  host->MakeCurrent();
  scene.Show(host->GetWidth(), host->GetHeight(), host->GetPixelRatio());
  host->Run(scene);
  if (options.Stats)
  {
    scene.PrintTimes();
  }
  if (!options.Output.empty())
  {
    std::puts(options.Output.c_str());
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
int main(int argc, char** argv)
{
  zylViewOptions options;
  int exitCode = zylViewDone;
  if (!zylParseViewOptions(argc, argv, options, exitCode))
  {
    return exitCode;
  }
  try
  {
    Run(options);
    return zylViewDone;
  }
  catch (const zylViewError& error)
  {
    std::fprintf(stderr, "zylview: %s\n", error.what());
    return error.Code;
  }
}
