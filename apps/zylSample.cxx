// zylsample: writes the built-in sample data.
#include "zylSampleAMReX.h"
#include "zylSampleFlow.h"

#include <CLI/CLI.hpp>

#include <cstdio>

int main(int argc, char** argv)
{
  std::string directory;
  int steps = 8;
  bool amrex = false;
  CLI::App app{ "Writes a sample result: a multi-block flow past a hot chimney.", "zylsample" };
  app.add_option("DIR", directory, "Folder to write to; an older sample there is replaced")
    ->required();
  app.add_option("--steps", steps, "Number of time steps")
    ->check(CLI::Range(1, 1000))
    ->capture_default_str();
  app.add_flag(
    "--amrex", amrex, "Write it as AMReX plotfiles with a JSON index (at most 10 steps)");
  const auto version = [] {
    std::puts("zylsample " ZYL_APP_VERSION);
    throw CLI::Success();
  };
  app.add_flag_callback("--version", version, "Print the version and exit");
  app.footer("Exit codes: 0 written, 1 cannot write, 2 bad arguments.");
  try
  {
    app.parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return app.exit(error) == 0 ? 0 : 2;
  }
  const auto write = amrex ? &zylWriteSampleAMReX : &zylWriteSampleFlow;
  const auto result = write(directory, steps, [steps](int done) {
    std::printf("\rtime step %d of %d", done, steps);
    std::fflush(stdout);
  });
  std::printf("\n");
  if (!result.Error.empty())
  {
    std::fprintf(stderr, "zylsample: %s\n", result.Error.c_str());
    return 1;
  }
  std::printf("%s\n", result.File.c_str());
  return 0;
}
