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

/// A tetrahedron in the old text format, which needs no writer.
void WriteTetrahedron(const fs::path& file)
{
  std::ofstream(file)
    << "# vtk DataFile Version 3.0\ntetrahedron\nASCII\nDATASET UNSTRUCTURED_GRID\n"
       "POINTS 4 float\n0 0 0 1 0 0 0 1 0 0 0 1\n"
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
} // namespace

//------------------------------------------------------------------------------
TEST(zylPackage, AHostBuildsAgainstItAndDraws)
{
  fs::remove_all(ZYL_TEST_FOLDER);
  fs::create_directories(ZYL_TEST_FOLDER);
  const std::string prefix = Folder("prefix").string();
  const std::string build = Folder("build").string();
  ASSERT_TRUE(Runs(ZYL_CMAKE " --install '" ZYL_BUILD_TREE "' --prefix '" + prefix + "'"));
  EXPECT_TRUE(fs::is_directory(prefix + "/" ZYL_PLUGIN_FOLDER));

  fs::copy(ZYL_HOST_SOURCE, Folder("source"), fs::copy_options::recursive);
  ASSERT_TRUE(Runs(ZYL_CMAKE " -G Ninja -S '" + Folder("source").string() + "' -B '" + build +
    "' -DCMAKE_PREFIX_PATH='" + prefix + "' -DCMAKE_CXX_FLAGS='" ZYL_HOST_FLAGS "'"));
  ASSERT_TRUE(Runs(ZYL_CMAKE " --build '" + build + "'"));

  WriteTetrahedron(Folder("tetrahedron.vtk"));
  const std::string picture = Folder("picture.png").string();
  ASSERT_TRUE(
    Runs("'" + build + "/host' '" + Folder("tetrahedron.vtk").string() + "' '" + picture + "'"));
  const std::set<std::array<double, 3>> colors = Colors(picture);
  EXPECT_EQ(colors.count({ 51, 77, 102 }), 1u) << "the host's own background in " << picture;
  EXPECT_GE(colors.size(), 3u) << "two or three lit faces in " << picture;
}
