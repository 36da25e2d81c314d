// The fuzzers' corpus as a test: nothing in it breaks a promise.
#include "zylFuzz.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {
int Feed(const std::string& folder, void (*function)(const std::uint8_t*, std::size_t))
{
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(ZYL_FUZZ_CORPUS "/" + folder))
  {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files)
  {
    SCOPED_TRACE(file);
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    const std::string bytes = text.str();
    function(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  return static_cast<int>(files.size());
}
} // namespace

TEST(FuzzCorpus, Index)
{
  EXPECT_GT(Feed("index", &zylFuzzIndex), 10);
}

TEST(FuzzCorpus, Parts)
{
  EXPECT_GT(Feed("parts", &zylFuzzParts), 5);
}

TEST(FuzzCorpus, Plotfile)
{
  EXPECT_GT(Feed("plotfile", &zylFuzzPlotfile), 5);
}

TEST(FuzzCorpus, Settings)
{
  EXPECT_GT(Feed("settings", &zylFuzzSettings), 10);
}
