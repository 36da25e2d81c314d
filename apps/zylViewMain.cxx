// zylview: shows simulation results, and shows how an application hosts the library.
#include "zylViewError.h"
#include "zylViewHost.h"
#include "zylViewMessages.h"
#include "zylViewOptions.h"
#include "zylViewScene.h"
#include "zylViewState.h"

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
// Measure and draw. What the library said explains why something failed.
std::string Show(zylViewScene& scene, zylViewHost* host, zylViewMessages& messages)
{
  messages.Clear();
  try
  {
    scene.Derive();
    scene.PrintNumbers();
    if (host == nullptr)
    {
      return "";
    }
    host->MakeCurrent();
    scene.Show(host->GetWidth(), host->GetHeight(), host->GetPixelRatio());
  }
  catch (const zylViewError& error)
  {
    const std::string reason = messages.GetFirstError();
    if (error.Code != zylViewFailed || reason.empty())
    {
      throw;
    }
    throw zylViewError(error.Code, error.what() + (": " + reason));
  }
  const std::string empty = scene.GetEmptyReason();
  if (!empty.empty())
  {
    zylSay("there is nothing to draw: " + empty);
  }
  host->Run(scene);
  return empty;
}

//--------------------------------------------------------------------------------------------------
int Run(zylViewOptions& options)
{
  zylViewMessages messages(options.Verbose);
  if (options.ListColorMaps || options.ListFileTypes)
  {
    PrintLines(options.ListColorMaps ? zylCore::GetAvailableColorMapNames()
                                     : zylCore::GetSupportedFileTypes());
    return zylViewDone;
  }
  std::unique_ptr<zylViewState> state;
  if (!options.State.empty())
  {
    state = std::make_unique<zylViewState>(options.State);
    state->GetWindow(options);
  }
  // The host comes first: it owns the context, and outlives what is drawn in it.
  std::unique_ptr<zylViewHost> host;
  const bool picture = !options.List && (!options.Measures() || !options.Output.empty());
  if (picture)
  {
    host = options.Output.empty() ? zylNewWindowHost(options) : zylNewOffscreenHost(options);
  }
  const auto alive = [&host](const std::string& work, double fraction) {
    return !host || host->KeepAlive(work, fraction);
  };
  zylViewScene scene(options, messages, state.get(), alive);
  scene.Load();
  if (options.List)
  {
    scene.PrintList();
    return zylViewDone;
  }
  const std::string empty = Show(scene, host.get(), messages);
  if (!options.SaveState.empty() && host != nullptr)
  {
    scene.SaveState(options.SaveState);
  }
  if (options.Stats)
  {
    scene.PrintTimes();
  }
  if (!options.Output.empty() && !options.PrintJson)
  {
    std::puts(options.Output.c_str());
  }
  if (!empty.empty())
  {
    return zylViewNothing; // which has been said, with the reason
  }
  if (messages.GetNumberOfErrors() > 0)
  {
    throw zylViewError(zylViewFailed, messages.GetFirstError());
  }
  return zylViewDone;
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
    return Run(options);
  }
  catch (const zylViewError& error)
  {
    zylSay(error.what());
    return error.Code;
  }
}
