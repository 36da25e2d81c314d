// The installed package as a host's author meets it: install into an empty prefix, build the
// example host outside the tree with nothing but that prefix, run it, look at its picture.
#include <vtkDataArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPointData.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace {
namespace fs = std::filesystem;

fs::path Folder(const std::string& name)
{
  return fs::path(ZYL_TEST_FOLDER) / name;
}

/// Runs a command; its output goes to a log that a failure prints.
testing::AssertionResult Runs(const std::string& command)
{
  const std::string log = Folder("log").string();
  if (std::system((command + " >'" + log + "' 2>&1").c_str()) == 0)
  {
    return testing::AssertionSuccess();
  }
  std::ifstream stream(log);
  return testing::AssertionFailure() << command << '\n' << stream.rdbuf();
}

/// A tetrahedron with a corner towards the eye, in the old text format, which needs no writer.
void WriteTetrahedron(const fs::path& file)
{
  std::ofstream(file)
    << "# vtk DataFile Version 3.0\ntetrahedron\nASCII\nDATASET UNSTRUCTURED_GRID\n"
       "POINTS 4 float\n0 0 0 2 0 0 1 -1 1 1 1 2\n"
       "CELLS 1 5\n4 0 1 2 3\nCELL_TYPES 1\n10\n";
}

std::set<std::array<double, 3>> Colors(const fs::path& file)
{
  vtkNew<vtkPNGReader> reader;
  reader->SetFileName(file.c_str());
  reader->Update();
  std::set<std::array<double, 3>> colors;
  vtkDataArray* scalars = reader->GetOutput()->GetPointData()->GetScalars();
  for (vtkIdType i = 0; scalars && i < scalars->GetNumberOfTuples(); ++i)
  {
    colors.insert(
      { scalars->GetComponent(i, 0), scalars->GetComponent(i, 1), scalars->GetComponent(i, 2) });
  }
  return colors;
}

class zylPackage : public testing::Test
{
protected:
  static void SetUpTestSuite()
  {
    fs::remove_all(ZYL_TEST_FOLDER);
    fs::create_directories(ZYL_TEST_FOLDER);
    Installed = Runs(
      ZYL_CMAKE " --install '" ZYL_BUILD_TREE "' --prefix '" + Folder("prefix").string() + "'");
    WriteTetrahedron(Folder("tetrahedron.vtk"));
  }

  void SetUp() override { ASSERT_TRUE(Installed); }

  /// Builds a copy of the project in `source` with nothing but the prefix.
  static testing::AssertionResult Builds(const std::string& name, const fs::path& source)
  {
    const std::string copy = Folder(name + "-source").string();
    const std::string tree = Folder(name).string();
    fs::copy(source, copy, fs::copy_options::recursive);
    return Runs(ZYL_CMAKE " -G Ninja -S '" + copy + "' -B '" + tree + "' -DCMAKE_PREFIX_PATH='" +
      Folder("prefix").string() +
      "' -DCMAKE_CXX_FLAGS='" ZYL_HOST_FLAGS "' && " ZYL_CMAKE " --build '" + tree + "'");
  }

  static testing::AssertionResult Installed;
};
testing::AssertionResult zylPackage::Installed = testing::AssertionFailure();
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylPackage, ServesAHostThatNamesNothingButZyl)
{
  EXPECT_TRUE(fs::is_regular_file(Folder("prefix") / ZYL_PLUGIN_FOLDER / "VTKExtensions.so"));
  ASSERT_TRUE(Builds("host", ZYL_HOST_SOURCE));
  EXPECT_TRUE(
    Runs("'" + Folder("host/host").string() + "' '" + Folder("tetrahedron.vtk").string() + "'"));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylPackage, ServesTheExampleHosts)
{
  ASSERT_TRUE(Builds("examples", ZYL_EXAMPLES_SOURCE));
  const std::string picture = Folder("picture.png").string();
  ASSERT_TRUE(Runs("'" + Folder("examples/picture").string() + "' '" +
    Folder("tetrahedron.vtk").string() + "' '" + picture + "'"));
  const std::set<std::array<double, 3>> colors = Colors(picture);
  EXPECT_EQ(colors.count({ 204, 217, 230 }), 1u) << "the host's own background in " << picture;
  EXPECT_GE(colors.size(), 3u) << "at least two lit faces in " << picture;
}
