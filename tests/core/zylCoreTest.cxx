#include "zylCore.h"
#include "ParaView/zylFileTypes.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylTestLog.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <vtkAlgorithm.h>
#include <vtkLogger.h>
#include <vtkOutputWindow.h>
#include <vtkPolyData.h>
#include <vtkPythonInterpreter.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>

namespace {
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
  for (unsigned int i = 0; i < 3; ++i)
  {
    EXPECT_EQ(
      vtkSMPropertyHelper(palette, "SelectionColor").GetAsDouble(i), zylCore::SelectionColor[i]);
  }
  vtkSMProxy* general = manager->GetProxy("settings", "GeneralSettings");
  EXPECT_EQ(vtkSMPropertyHelper(general, "AutoConvertProperties").GetAsInt(), 1);
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
  EXPECT_TRUE(std::any_of(types.begin(), types.end(),
    [](const std::string& type) { return type.find("*.vtm") != std::string::npos; }));
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
  EXPECT_NE(objects.find("SphereSource(" + address.str() + ")\n"), std::string::npos) << objects;
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
  const std::string name =
    (std::filesystem::temp_directory_path() / ("zylcore" + std::to_string(getpid()))).string();
  zylCore::SetLogFile(nullptr, true);
  EXPECT_EQ(zylCore::LogFile, "");
  zylCore::SetLogFile(name.c_str(), true);
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "a trace line");
  vtkGenericWarningMacro("a toolkit line");
  vtkLogger::EndLogToFile(name.c_str());
  const auto read = [](const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
  };
  EXPECT_NE(read(name).find("a trace line"), std::string::npos);
  EXPECT_NE(read(name + ".vtk.txt").find("a toolkit line"), std::string::npos);
  vtkOutputWindow::SetInstance(nullptr);
  std::filesystem::remove(name);
  std::filesystem::remove(name + ".vtk.txt");
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
  EXPECT_FALSE(zylCore::LoadRemotePlugin("nope.so"));
  EXPECT_TRUE(zylCore::GetSupportedFileTypes().empty());
  EXPECT_EQ(zylProxyBuilder(nullptr, "sources", "SphereSource").Make(), nullptr);
  zylTestLog log;
  core->Connect("cs://127.0.0.1:1", 1);
  EXPECT_TRUE(log.Has(vtkLogger::VERBOSITY_ERROR, "Could not connect to 'cs://127.0.0.1:1'"))
    << log.Dump();
  EXPECT_EQ(core->GetSession(), nullptr);
}
