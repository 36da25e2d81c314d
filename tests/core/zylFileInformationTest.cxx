#include "zylFileInformation.h"

#include "zylTest.h"
#include "zylTestServer.h"

#include <filesystem>

#include <vtkPVFileInformation.h>

namespace fs = std::filesystem;

namespace {
void WriteFile(const fs::path& name, std::size_t size)
{
  std::ofstream(name) << std::string(size, 'x');
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

  // What any session must see in the directory: kinds, full paths, sizes and groups.
  void ExpectListing(zylFileInformation* information)
  {
    std::map<std::string, int> kinds;
    for (const auto& file : information->GetFilesInDirectory(this->Directory.c_str()))
    {
      SCOPED_TRACE(file->GetFileName());
      if (file->GetFileType() == vtkPVFileInformation::FILE_GROUP)
      {
        const std::vector<std::string> steps = { this->Directory / "step_1.vtu",
          this->Directory / "step_2.vtu", this->Directory / "step_3.vtu" };
        EXPECT_EQ(file->GetGroup(), steps);
        kinds["group"] = vtkPVFileInformation::FILE_GROUP;
        continue;
      }
      kinds[file->GetFileName()] = file->GetFileType();
      EXPECT_EQ(fs::path(file->GetFullPath()), this->Directory / file->GetFileName());
      EXPECT_TRUE(file->GetGroup().empty());
      EXPECT_TRUE(file->GetFileName() != std::string("alone.vtu") || file->GetSize() == 7);
    }
    EXPECT_EQ(kinds,
      (std::map<std::string, int>{ { "alone.vtu", vtkPVFileInformation::SINGLE_FILE },
        { "Strömung über π.vtu", vtkPVFileInformation::SINGLE_FILE },
        { "link.vtp", vtkPVFileInformation::SINGLE_FILE },
        { "folder", vtkPVFileInformation::DIRECTORY }, { "away", vtkPVFileInformation::DIRECTORY },
        { "group", vtkPVFileInformation::FILE_GROUP } }));
  }

  fs::path Directory;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylFileInformationTest, ListsThisMachine)
{
  vtkNew<zylFileInformation> information;
  zylTestLog log;
  zylCore* core = zylCore::GetInstance();
  ASSERT_NE(core->GetSession(), nullptr);
  this->ExpectListing(information);
  EXPECT_FALSE(log.HasError());

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
  zylTestLog log;
  EXPECT_TRUE(information->GetFilesInDirectory(this->Directory.c_str()).empty());
  EXPECT_TRUE(log.HasError("No active session"));
}
