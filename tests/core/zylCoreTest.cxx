#include "zylCore.h"
#include "ParaView/zylFileTypes.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylTest.h"

#include <dlfcn.h>

#include <vtkLogger.h>
#include <vtkOutputWindow.h>
#include <vtkPythonInterpreter.h>
#include <vtkSMSessionProxyManager.h>

namespace {
using testing::Contains;
using testing::HasSubstr;

vtkSmartPointer<vtkSMSourceProxy> MakeSphere()
{
  auto sphere =
    zylProxyBuilder(zylCore::GetInstance()->GetSessionProxyManager(), "sources", "SphereSource")
      .Make();
  sphere->UpdatePipeline();
  return sphere;
}
} // namespace

TEST(zylCore, StartsWithAConfiguredBuiltInSession)
{
  zylCore* core = zylCore::GetInstance();
  ASSERT_NE(core->GetSession(), nullptr);
  EXPECT_EQ(core, zylCore::GetInstance());
  EXPECT_STREQ(core->GetClassName(), "zylCore");
  auto* manager = core->GetSessionProxyManager();
  vtkSMProxy* palette = manager->GetProxy("settings", "ColorPalette");
  ASSERT_NE(palette, nullptr);
  EXPECT_EQ(zylNumbers(palette, "SelectionColor"),
    zylValues(zylCore::SelectionColor, zylCore::SelectionColor + 3));
  EXPECT_EQ(
    zylNumber(manager->GetProxy("settings", "GeneralSettings"), "AutoConvertProperties"), 1);
  EXPECT_TRUE(vtkPythonInterpreter::IsInitialized());
  EXPECT_STREQ(zylCore::GetZYLVersion(), "0.2.0");
}

TEST(zylCore, LeavesMPIToTheHost)
{
  zylCore::GetInstance();
  using Function = int (*)(int*);
  auto initialized = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "MPI_Initialized"));
  ASSERT_NE(initialized, nullptr);
  int flag = -1;
  initialized(&flag);
  EXPECT_EQ(flag, 0);
}

TEST(zylCore, SplitsTheReaderFactoryString)
{
  using List = std::vector<std::string>;
  EXPECT_EQ(zylSplitFileTypes("All (*.a *.b);;A (*.a);;B (*.b)"), List({ "A (*.a)" }));
  EXPECT_EQ(zylSplitFileTypes("All (*.a);;A (*.a)"), List());
  EXPECT_EQ(zylSplitFileTypes(""), List());
  EXPECT_EQ(zylSplitFileTypes("All (*)"), List());
}

TEST(zylCore, ListsFileTypesAndColorMaps)
{
  const auto types = zylCore::GetSupportedFileTypes();
  EXPECT_GT(types.size(), 50u);
  EXPECT_THAT(types, Contains(HasSubstr("*.vtm")));
  const auto maps = zylCore::GetAvailableColorMapNames();
  ASSERT_GT(maps.size(), 100u);
  EXPECT_EQ(maps[0], "Cool to Warm");
}

TEST(zylCore, FetchesToThisProcess)
{
  auto sphere = MakeSphere();
  const vtkSmartPointer<vtkDataObject> fetched = zylCore::Fetch(sphere, nullptr);
  auto* data = vtkPolyData::SafeDownCast(fetched);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->GetNumberOfPoints(), 50);
  EXPECT_EQ(zylCore::Fetch(nullptr, nullptr), nullptr);
  zylUnregister(sphere);
}

TEST(zylCore, FindsTheAssociationOfAnArray)
{
  auto sphere = MakeSphere();
  EXPECT_EQ(zylCore::GetArrayAssociation("Normals", sphere), 0);
  EXPECT_EQ(zylCore::GetArrayAssociation("nope", sphere), -1);
  EXPECT_EQ(zylCore::GetArrayAssociation("Normals", nullptr), -1);
  EXPECT_EQ(zylCore::GetArrayAssociation(nullptr, sphere), -1);
  zylUnregister(sphere);
}

TEST(zylCore, PrintsObjectsAndPipelines)
{
  EXPECT_EQ(zylConsole([] { EXPECT_FALSE(zylCore::PrintObjects()); }), "");
  auto sphere = MakeSphere();
  auto pass =
    zylProxyBuilder(zylCore::GetInstance()->GetSessionProxyManager(), "filters", "PassThrough")
      .Input(sphere)
      .Make();
  std::ostringstream address;
  address << static_cast<vtkSMProxy*>(sphere);
  const std::string objects = zylConsole([] { EXPECT_TRUE(zylCore::PrintObjects()); });
  EXPECT_THAT(objects, HasSubstr("SphereSource(" + address.str() + ")\n"));
  EXPECT_EQ(zylConsole([&] { zylCore::PrintPipeline(pass); }), "Pipeline:\n  SphereSource\n");
  EXPECT_EQ(zylConsole([&] { zylCore::PrintPipeline(sphere); }), "Pipeline:\n");
  EXPECT_EQ(zylConsole([] { zylCore::PrintPipeline(nullptr); }), "");
  zylUnregister(pass);
  zylUnregister(sphere);
}

TEST(zylCore, SetsTheEnvironment)
{
  EXPECT_EQ(zylConsole([] { zylCore::SetEnvironmentVariable("ZYL_TEST_VARIABLE", "a=b"); }),
    "ZYL_TEST_VARIABLE=a=b\n");
  EXPECT_STREQ(std::getenv("ZYL_TEST_VARIABLE"), "a=b");
}

TEST(zylCore, WritesLogFiles)
{
  const std::string name = zylTestData::MakeFolder() + "/log";
  zylCore::SetLogFile(nullptr, true);
  EXPECT_EQ(zylCore::LogFile, "");
  zylCore::SetLogFile(name.c_str(), true);
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "a trace line");
  vtkGenericWarningMacro("a toolkit line");
  vtkLogger::EndLogToFile(name.c_str());
  EXPECT_THAT(zylTestData::ReadFile(name), HasSubstr("a trace line"));
  EXPECT_THAT(zylTestData::ReadFile(name + ".vtk.txt"), HasSubstr("a toolkit line"));
  vtkOutputWindow::SetInstance(nullptr);
}

// Last: it ends the session.
TEST(zylCoreEnd, WorksWithoutASession)
{
  zylCore* core = zylCore::GetInstance();
  core->Disconnect();
  core->Disconnect();
  EXPECT_EQ(core->GetSession(), nullptr);
  EXPECT_EQ(core->GetSessionProxyManager(), nullptr);
  EXPECT_FALSE(zylCore::PrintObjects());
  EXPECT_EQ(zylProxyBuilder(nullptr, "sources", "SphereSource").Make(), nullptr);
  core->Connect("cs://127.0.0.1:1", 1);
  EXPECT_EQ(core->GetSession(), nullptr);
}
