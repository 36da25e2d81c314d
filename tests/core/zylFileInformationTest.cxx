#include "zylFileInformation.h"

#include "zylCore.h"
#include "zylTestData.h"
#include "zylTestLog.h"
#include "zylTestServer.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include <gtest/gtest.h>

#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkPVFileInformation.h>

namespace fs = std::filesystem;

namespace {
using Files = std::vector<vtkSmartPointer<zylFile>>;

void WriteFile(const fs::path& name, std::size_t size)
{
  std::ofstream(name) << std::string(size, 'x');
}

std::map<std::string, zylFile*> ByName(const Files& files)
{
  std::map<std::string, zylFile*> map;
  for (const auto& file : files)
  {
    map[file->GetFileName()] = file;
  }
  return map;
}

class zylFileInformationTest : public testing::Test
{
protected:
  void SetUp() override
  {
    this->Directory = zylTestData::MakeFolder();
    fs::create_directory(this->Directory / "folder");
    WriteFile(this->Directory / "alone.vtu", 7);
    WriteFile(this->Directory / "Strömung über π.vtu", 3);
    for (int i = 1; i <= 3; ++i)
    {
      WriteFile(this->Directory / ("step_" + std::to_string(i) + ".vtu"), 1);
    }
    fs::create_symlink(this->Directory / "alone.vtu", this->Directory / "link.vtp");
    fs::create_directory_symlink(this->Directory / "folder", this->Directory / "away");
  }

  // What any session must see in the directory.
  void ExpectListing(zylFileInformation* information)
  {
    const Files files = information->GetFilesInDirectory(this->Directory.c_str());
    const auto byName = ByName(files);
    const std::map<std::string, int> expected = {
      { "alone.vtu", vtkPVFileInformation::SINGLE_FILE },
      { "Strömung über π.vtu", vtkPVFileInformation::SINGLE_FILE },
      { "link.vtp", vtkPVFileInformation::SINGLE_FILE },
      { "folder", vtkPVFileInformation::DIRECTORY },
      { "away", vtkPVFileInformation::DIRECTORY },
    };
    EXPECT_EQ(files.size(), expected.size() + 1); // and the group
    for (const auto& entry : expected)
    {
      SCOPED_TRACE(entry.first);
      const auto found = byName.find(entry.first);
      ASSERT_NE(found, byName.end());
      EXPECT_EQ(found->second->GetFileType(), entry.second);
      EXPECT_EQ(fs::path(found->second->GetFullPath()), this->Directory / entry.first);
      EXPECT_TRUE(found->second->GetGroup().empty());
    }
    EXPECT_EQ(byName.at("alone.vtu")->GetSize(), 7);
    const auto group = std::find_if(files.begin(), files.end(),
      [](zylFile* file) { return file->GetFileType() == vtkPVFileInformation::FILE_GROUP; });
    ASSERT_NE(group, files.end());
    const std::vector<std::string> steps = { this->Directory / "step_1.vtu",
      this->Directory / "step_2.vtu", this->Directory / "step_3.vtu" };
    EXPECT_EQ((*group)->GetGroup(), steps);
  }

  fs::path Directory;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylFileInformationTest, ListsThisMachine)
{
  vtkNew<zylFileInformation> information;
  zylTestLog log(vtkLogger::VERBOSITY_ERROR);
  zylCore* core = zylCore::GetInstance();
  ASSERT_NE(core->GetSession(), nullptr);
  this->ExpectListing(information);
  EXPECT_EQ(log.Count(vtkLogger::VERBOSITY_ERROR, ""), 0) << log.Dump();

  for (const char* path : { "/no/such/folder", "alone.vtu", "" })
  {
    SCOPED_TRACE(path);
    const std::string full = *path ? (this->Directory / path).string() : "";
    EXPECT_TRUE(information->GetFilesInDirectory(full.c_str()).empty());
  }
  EXPECT_TRUE(information->GetFilesInDirectory(nullptr).empty());
  this->ExpectListing(information); // nothing of the others is left
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylFileInformationTest, ListsManyFiles)
{
  zylCore::GetInstance();
  constexpr int count = 10000;
  const fs::path many = this->Directory / "many";
  fs::create_directory(many);
  for (int i = 0; i < count; ++i)
  {
    // Names that no group can be made of.
    WriteFile(many /
        (std::string(1, static_cast<char>('a' + i % 26)) + std::to_string(i) + "." +
          std::to_string(i) + "x"),
      0);
  }
  vtkNew<zylFileInformation> information;
  std::size_t entries = 0;
  for (const auto& file : information->GetFilesInDirectory(many.c_str()))
  {
    entries += std::max<std::size_t>(file->GetGroup().size(), 1);
  }
  EXPECT_EQ(entries, static_cast<std::size_t>(count));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylFileInformationTest, ListsTheServersMachine)
{
  if (!zylTestServer::IsAvailable(1))
  {
    GTEST_SKIP() << "no server here";
  }
  vtkNew<zylFileInformation> information;
  zylCore* core = zylCore::GetInstance();
  this->ExpectListing(information);
  auto server = std::make_unique<zylTestServer>(1, "");
  core->Connect(server->GetUrl().c_str(), 60);
  ASSERT_NE(core->GetSession(), nullptr);
  this->ExpectListing(information);
  this->ExpectListing(information);
  server->Kill();
  EXPECT_TRUE(information->GetFilesInDirectory(this->Directory.c_str()).empty());
  core->Disconnect();
  zylTestLog log(vtkLogger::VERBOSITY_ERROR);
  EXPECT_TRUE(information->GetFilesInDirectory(this->Directory.c_str()).empty());
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "No active session"));
}
