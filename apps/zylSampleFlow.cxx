#include "zylSampleFlow.h"

#include "zylSampleField.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkCompositeDataSet.h>
#include <vtkFloatArray.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLMultiBlockDataWriter.h>

namespace {
namespace fs = std::filesystem;
using Point = zylSampleField::Point;
/// A map from the unit square to space, and the number of cells each way.
using Map = std::function<Point(double, double)>;
struct Sheet
{
  int Cells[2];
  Map At;
};
enum class Mesh
{
  Structured,
  Hexahedra,
  Wedges,
  Tetrahedra
};

constexpr int Layers = 6; // cells over the height
constexpr double Height = zylSampleField::Height;
constexpr double West = -4.0, East = 12.0, South = -4.0, North = 4.0;
constexpr double Collar = 1.5;                 // half side of the square around the body
constexpr double MidWake = 5.0, FarWake = 8.5; // where the meshes of the wake change

//--------------------------------------------------------------------------------------------------
double Mix(double a, double b, double t)
{
  return a + (b - a) * t;
}

Sheet Rectangle(double x0, double x1, int nx, double y0, double y1, int ny)
{
  return { { nx, ny }, [=](double u, double v) {
            return Point{ Mix(x0, x1, u), Mix(y0, y1, v), 0 };
          } };
}

// A quarter of the ring between the body and the square collar, `turn` quarters from +x.
Sheet Quarter(int turn)
{
  return { { 14, 10 }, [turn](double u, double v) {
            const double angle = (turn + u - 0.5) * std::acos(0.0);
            const double c = std::cos(angle), s = std::sin(angle);
            const double outer = Collar / std::max(std::abs(c), std::abs(s));
            const double r = Mix(zylSampleField::Radius, outer, v * (0.35 + 0.65 * v));
            return Point{ r * c, r * s, 0 };
          } };
}

// The same sheet at height z.
Sheet Lifted(const Sheet& sheet, double z)
{
  return { { sheet.Cells[0], sheet.Cells[1] }, [sheet, z](double u, double v) {
            Point p = sheet.At(u, v);
            p[2] = z;
            return p;
          } };
}

// An upright wall: u runs along the line, v up.
Sheet Wall(double x0, double y0, double x1, double y1, int cells)
{
  return { { cells, Layers }, [=](double u, double v) {
            return Point{ Mix(x0, x1, u), Mix(y0, y1, u), Height * v };
          } };
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPoints> LayeredPoints(const Sheet& sheet)
{
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (int k = 0; k <= Layers; ++k)
  {
    for (int j = 0; j <= sheet.Cells[1]; ++j)
    {
      for (int i = 0; i <= sheet.Cells[0]; ++i)
      {
        const Point p = sheet.At(double(i) / sheet.Cells[0], double(j) / sheet.Cells[1]);
        points->InsertNextPoint(p[0], p[1], Height * k / Layers);
      }
    }
  }
  return points;
}

//--------------------------------------------------------------------------------------------------
void InsertCells(vtkUnstructuredGrid* grid, Mesh mesh, const vtkIdType* c)
{
  // c: corners of a hexahedron in the toolkit's order; the diagonals match those of neighbors.
  static constexpr int wedges[2][6] = { { 0, 1, 2, 4, 5, 6 }, { 0, 2, 3, 4, 6, 7 } };
  static constexpr int tetrahedra[6][4] = { { 0, 1, 2, 6 }, { 0, 2, 3, 6 }, { 0, 3, 7, 6 },
    { 0, 7, 4, 6 }, { 0, 4, 5, 6 }, { 0, 5, 1, 6 } };
  if (mesh == Mesh::Hexahedra)
  {
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, c);
  }
  else if (mesh == Mesh::Wedges)
  {
    for (const auto& w : wedges)
    {
      // the toolkit's wedge has its first triangle's normal pointing outwards
      const vtkIdType ids[6] = { c[w[0]], c[w[2]], c[w[1]], c[w[3]], c[w[5]], c[w[4]] };
      grid->InsertNextCell(VTK_WEDGE, 6, ids);
    }
  }
  else
  {
    for (const auto& t : tetrahedra)
    {
      const vtkIdType ids[4] = { c[t[0]], c[t[1]], c[t[2]], c[t[3]] };
      grid->InsertNextCell(VTK_TETRA, 4, ids);
    }
  }
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPointSet> Volume(const Sheet& sheet, Mesh mesh)
{
  const int nx = sheet.Cells[0] + 1, ny = sheet.Cells[1] + 1;
  if (mesh == Mesh::Structured)
  {
    auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
    grid->SetDimensions(nx, ny, Layers + 1);
    grid->SetPoints(LayeredPoints(sheet));
    return grid;
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(LayeredPoints(sheet));
  grid->Allocate(6 * (nx - 1) * (ny - 1) * Layers);
  for (int k = 0; k < Layers; ++k)
  {
    for (int j = 0; j + 1 < ny; ++j)
    {
      for (int i = 0; i + 1 < nx; ++i)
      {
        const vtkIdType a = i + nx * (j + vtkIdType(ny) * k), up = vtkIdType(nx) * ny;
        const vtkIdType c[8] = { a, a + 1, a + 1 + nx, a + nx, a + up, a + 1 + up, a + 1 + nx + up,
          a + nx + up };
        InsertCells(grid, mesh, c);
      }
    }
  }
  return grid;
}

//--------------------------------------------------------------------------------------------------
// Sheets side by side in one surface of quadrilaterals, or of triangles.
vtkSmartPointer<vtkPointSet> Surface(const std::vector<Sheet>& sheets, bool triangles = false)
{
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  surface->SetPoints(points);
  surface->AllocateEstimate(1000, 4);
  for (const Sheet& sheet : sheets)
  {
    const vtkIdType first = points->GetNumberOfPoints();
    const int nx = sheet.Cells[0], ny = sheet.Cells[1];
    for (vtkIdType n = 0; n < (nx + 1) * (ny + 1); ++n)
    {
      const Point p = sheet.At(double(n % (nx + 1)) / nx, double(n / (nx + 1)) / ny);
      points->InsertNextPoint(p.data());
    }
    for (vtkIdType n = 0; n < nx * ny; ++n)
    {
      const vtkIdType a = first + n % nx + (n / nx) * (nx + 1);
      const vtkIdType c[6] = { a, a + 1, a + nx + 2, a + nx + 1, a, a + nx + 2 };
      if (triangles)
      {
        surface->InsertNextCell(VTK_TRIANGLE, 3, c);
        const vtkIdType other[3] = { c[0], c[2], c[3] };
        surface->InsertNextCell(VTK_TRIANGLE, 3, other);
      }
      else
      {
        surface->InsertNextCell(VTK_QUAD, 4, c);
      }
    }
  }
  return surface;
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPointSet> VortexCores(const zylSampleField& field)
{
  std::vector<Sheet> tubes;
  for (int n = 0; n < field.GetNumberOfVortices(); ++n)
  {
    const auto tube = [&field, n](double u, double v) {
      double radius, strength;
      const Point c = field.GetCore(n, Height * v, radius, strength);
      const double angle = 4.0 * std::acos(0.0) * u;
      const double r = 0.75 * radius * std::abs(strength);
      return Point{ c[0] + r * std::cos(angle), c[1] + r * std::sin(angle), c[2] };
    };
    double radius, low, high;
    const Point bottom = field.GetCore(n, 0.0, radius, low);
    const Point top = field.GetCore(n, Height, radius, high);
    if (low != 0.0 && high != 0.0 && std::max(bottom[0], top[0]) + radius < East)
    {
      tubes.push_back({ { 20, 24 }, tube });
    }
  }
  return Surface(tubes);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkPointSet> Rake()
{
  auto rake = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  rake->SetPoints(points);
  rake->AllocateEstimate(200, 1);
  for (int i = 0; i < 23; ++i)
  {
    for (int j = 0; j < 11; ++j)
    {
      const double x = -3.0 + 0.6 * i, y = -2.5 + 0.5 * j;
      if (std::hypot(x, y) > 1.2 * zylSampleField::Radius)
      {
        const vtkIdType id = points->InsertNextPoint(x, y, 0.5 * Height + 0.05);
        rake->InsertNextCell(VTK_VERTEX, 1, &id);
      }
    }
  }
  return rake;
}

//--------------------------------------------------------------------------------------------------
// Twelve bits of mantissa: four digits, and files of half the size.
float Rounded(double value)
{
  float f = static_cast<float>(value);
  std::uint32_t bits;
  std::memcpy(&bits, &f, sizeof bits);
  bits = (bits + 0x400u) & ~0x7ffu;
  std::memcpy(&f, &bits, sizeof bits);
  return f;
}

vtkSmartPointer<vtkFloatArray> Array(const char* name, int components, vtkIdType tuples)
{
  auto array = vtkSmartPointer<vtkFloatArray>::New();
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(tuples);
  return array;
}

//--------------------------------------------------------------------------------------------------
void AddPointArrays(vtkPointSet* mesh, const zylSampleField& field)
{
  const vtkIdType count = mesh->GetNumberOfPoints();
  auto pressure = Array("Pressure", 1, count), velocity = Array("Velocity", 3, count);
  auto temperature = Array("Temperature", 1, count), vorticity = Array("Vorticity", 1, count);
  for (vtkIdType i = 0; i < count; ++i)
  {
    Point p;
    mesh->GetPoint(i, p.data());
    const auto v = field.Evaluate(p);
    pressure->SetValue(i, Rounded(v.Pressure));
    temperature->SetValue(i, Rounded(v.Temperature));
    vorticity->SetValue(i, Rounded(v.Vorticity));
    for (int c = 0; c < 3; ++c)
    {
      velocity->SetTypedComponent(i, c, Rounded(v.Velocity[c]));
    }
  }
  for (auto& array : { pressure, velocity, temperature, vorticity })
  {
    mesh->GetPointData()->AddArray(array);
  }
}

//--------------------------------------------------------------------------------------------------
// Shortest over longest edge of each cell, in (0, 1].
void AddQuality(vtkPointSet* mesh)
{
  auto quality = Array("Quality", 1, mesh->GetNumberOfCells());
  for (vtkIdType i = 0; i < mesh->GetNumberOfCells(); ++i)
  {
    vtkCell* cell = mesh->GetCell(i);
    const int corners = static_cast<int>(cell->GetNumberOfPoints());
    double shortest = 1e30, longest = 0.0;
    for (int e = 0; e < (cell->GetCellDimension() == 3 ? cell->GetNumberOfEdges() : corners); ++e)
    {
      double a[3], b[3];
      const bool solid = cell->GetCellDimension() == 3;
      vtkPoints* ends = solid ? cell->GetEdge(e)->GetPoints() : cell->GetPoints();
      ends->GetPoint(solid ? 0 : e, a);
      ends->GetPoint(solid ? 1 : (e + 1) % corners, b);
      const double length = std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
      shortest = std::min(shortest, length);
      longest = std::max(longest, length);
    }
    quality->SetValue(i, longest > 0.0 ? Rounded(shortest / longest) : 1.0f);
  }
  mesh->GetCellData()->AddArray(quality);
}

//--------------------------------------------------------------------------------------------------
void AddWallShear(vtkPointSet* mesh, const zylSampleField& field, bool floor)
{
  auto shear = Array("WallShear", 1, mesh->GetNumberOfCells());
  for (vtkIdType i = 0; i < mesh->GetNumberOfCells(); ++i)
  {
    double bounds[6];
    mesh->GetCellBounds(i, bounds);
    Point p{ (bounds[0] + bounds[1]) / 2, (bounds[2] + bounds[3]) / 2,
      (bounds[4] + bounds[5]) / 2 };
    const double r = std::hypot(p[0], p[1]);
    const Point normal = floor ? Point{ 0, 0, 1 } : Point{ p[0] / r, p[1] / r, 0 };
    shear->SetValue(i, Rounded(field.WallShear(p, normal)));
  }
  mesh->GetCellData()->AddArray(shear);
}

//--------------------------------------------------------------------------------------------------
vtkDataObject* Append(vtkMultiBlockDataSet* group, const char* name, vtkDataObject* block)
{
  const unsigned int i = group->GetNumberOfBlocks();
  group->SetBlock(i, block);
  group->GetMetaData(i)->Set(vtkCompositeDataSet::NAME(), name);
  return block;
}

vtkMultiBlockDataSet* AppendGroup(vtkMultiBlockDataSet* parent, const char* name)
{
  vtkNew<vtkMultiBlockDataSet> group;
  return vtkMultiBlockDataSet::SafeDownCast(Append(parent, name, group));
}

//--------------------------------------------------------------------------------------------------
/// Adds finished blocks, with their arrays, for one time.
class Builder
{
public:
  explicit Builder(double time)
    : Field(time)
  {
  }

  vtkSmartPointer<vtkMultiBlockDataSet> Build()
  {
    auto root = vtkSmartPointer<vtkMultiBlockDataSet>::New();
    this->AddVolumes(AppendGroup(root, "Volume"));
    this->AddBoundaries(AppendGroup(root, "Boundaries"));
    vtkMultiBlockDataSet* extracts = AppendGroup(root, "Extracts");
    this->Add(extracts, "Mid-plane", this->MidPlane());
    this->Add(extracts, "Vortex cores", VortexCores(this->Field));
    this->Add(extracts, "Rake", Rake());
    return root;
  }

  void AddWalls(vtkMultiBlockDataSet* walls)
  {
    const Map skin = [](double u, double v) {
      const double angle = 4.0 * std::acos(0.0) * u, r = zylSampleField::Radius;
      return Point{ r * std::cos(angle), r * std::sin(angle), Height * v };
    };
    auto chimney = this->Add(walls, "Chimney", Surface({ { { 56, 2 * Layers }, skin } }));
    AddWallShear(chimney, this->Field, false);
    auto floor = this->Add(walls, "Floor", this->Horizontal(0.0));
    AddWallShear(floor, this->Field, true);
  }

private:
  vtkPointSet* Add(vtkMultiBlockDataSet* group, const char* name, vtkSmartPointer<vtkPointSet> mesh)
  {
    AddPointArrays(mesh, this->Field);
    AddQuality(mesh);
    Append(group, name, mesh);
    return mesh;
  }

  void AddVolumes(vtkMultiBlockDataSet* volume)
  {
    vtkMultiBlockDataSet* body = AppendGroup(volume, "Around the body");
    static constexpr const char* names[4] = { "Lee", "Left flank", "Front", "Right flank" };
    for (int turn = 0; turn < 4; ++turn)
    {
      this->Add(body, names[turn], Volume(Quarter(turn), Mesh::Structured));
    }
    this->Add(
      volume, "Upstream", Volume(Rectangle(West, -Collar, 10, South, North, 28), Mesh::Structured));
    this->Add(volume, "Left stream",
      Volume(Rectangle(-Collar, East, 36, Collar, North, 9), Mesh::Structured));
    this->Add(volume, "Right stream",
      Volume(Rectangle(-Collar, East, 36, South, -Collar, 9), Mesh::Structured));
    vtkMultiBlockDataSet* wake = AppendGroup(volume, "Wake");
    this->Add(wake, "Near wake",
      Volume(Rectangle(Collar, MidWake, 18, -Collar, Collar, 16), Mesh::Hexahedra));
    this->Add(wake, "Middle wake",
      Volume(Rectangle(MidWake, FarWake, 15, -Collar, Collar, 14), Mesh::Wedges));
    this->Add(wake, "Far wake",
      Volume(Rectangle(FarWake, East, 12, -Collar, Collar, 12), Mesh::Tetrahedra));
  }

  void AddBoundaries(vtkMultiBlockDataSet* boundaries)
  {
    this->Add(boundaries, "Inlet", Surface({ Wall(West, North, West, South, 28) }));
    this->Add(boundaries, "Outlet", Surface({ Wall(East, South, East, North, 28) }));
    this->AddWalls(AppendGroup(boundaries, "Walls"));
    vtkMultiBlockDataSet* symmetry = AppendGroup(boundaries, "Symmetry");
    this->Add(symmetry, "Top", this->Horizontal(Height));
    this->Add(symmetry, "Left side", Surface({ Wall(East, North, West, North, 46) }));
    this->Add(symmetry, "Right side", Surface({ Wall(West, South, East, South, 46) }));
  }

  // The whole floor plan at height z.
  vtkSmartPointer<vtkPointSet> Horizontal(double z) const
  {
    std::vector<Sheet> sheets{ Rectangle(West, -Collar, 10, South, North, 28),
      Rectangle(-Collar, East, 36, Collar, North, 9),
      Rectangle(-Collar, East, 36, South, -Collar, 9),
      Rectangle(Collar, East, 36, -Collar, Collar, 12) };
    for (int turn = 0; turn < 4; ++turn)
    {
      sheets.push_back(Quarter(turn));
    }
    for (Sheet& sheet : sheets)
    {
      sheet = Lifted(sheet, z);
    }
    return Surface(sheets);
  }

  // The cutting plane at mid-height: fine near the body and in the wake.
  vtkSmartPointer<vtkPointSet> MidPlane() const
  {
    std::vector<Sheet> sheets{ Rectangle(West, -Collar, 20, South, North, 48),
      Rectangle(-Collar, East, 84, Collar, North, 14),
      Rectangle(-Collar, East, 84, South, -Collar, 14),
      Rectangle(Collar, East, 90, -Collar, Collar, 30) };
    for (int turn = 0; turn < 4; ++turn)
    {
      Sheet quarter = Quarter(turn);
      quarter.Cells[0] = 24;
      quarter.Cells[1] = 18;
      sheets.push_back(quarter);
    }
    for (Sheet& sheet : sheets)
    {
      sheet = Lifted(sheet, 0.5 * Height);
    }
    return Surface(sheets, true);
  }

  zylSampleField Field;
};

//--------------------------------------------------------------------------------------------------
// Inline zlib-compressed binary, which every version of the toolkit's readers opens.
bool WriteStep(const fs::path& file, vtkMultiBlockDataSet* data)
{
  vtkNew<vtkXMLMultiBlockDataWriter> writer;
  writer->SetFileName(file.c_str());
  writer->SetInputDataObject(data);
  writer->SetDataModeToBinary();
  writer->SetCompressorTypeToZLib();
  writer->SetHeaderTypeToUInt32();
  return writer->Write() != 0 && writer->GetErrorCode() == 0;
}

//--------------------------------------------------------------------------------------------------
bool WriteIndex(const fs::path& file, const std::vector<std::pair<double, std::string>>& steps)
{
  std::ofstream out(file);
  out << "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n  <Collection>\n";
  for (const auto& step : steps)
  {
    out << "    <DataSet timestep=\"" << step.first << "\" file=\"" << step.second << "\"/>\n";
  }
  out << "  </Collection>\n</VTKFile>\n";
  return static_cast<bool>(out.flush());
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSampleResult zylWriteSampleFlow(
  const std::string& directory, int steps, const std::function<void(int)>& progress)
{
  const zylSampleFolder folder(directory, "chimney", "chimney.pvd");
  std::string error = folder.Begin();
  std::vector<std::pair<double, std::string>> index;
  for (int step = 0; error.empty() && step < std::max(steps, 1); ++step)
  {
    const double time = zylSampleField::Period * step / std::max(steps, 1);
    const std::string name = "step_" + std::to_string(step) + ".vtm";
    if (!WriteStep(folder.GetFresh(name), Builder(time).Build()))
    {
      error = "cannot write '" + folder.GetFresh(name) + "'";
    }
    index.emplace_back(time, "chimney/" + name);
    if (progress)
    {
      progress(step + 1);
    }
  }
  return folder.Finish(error, [&](const std::string& file) { return WriteIndex(file, index); });
}

//--------------------------------------------------------------------------------------------------
bool zylWriteSampleWalls(const std::string& file, double time)
{
  vtkNew<vtkMultiBlockDataSet> walls;
  Builder(time).AddWalls(walls);
  return WriteStep(file, walls);
}

//--------------------------------------------------------------------------------------------------
zylSampleFolder::zylSampleFolder(
  const std::string& directory, const std::string& data, const std::string& index)
  : Directory(directory)
  , Data((fs::path(directory) / data).string())
  , Index((fs::path(directory) / index).string())
{
}

//--------------------------------------------------------------------------------------------------
std::string zylSampleFolder::Begin() const
{
  std::error_code error;
  fs::create_directories(this->Directory, error);
  if (!error)
  {
    fs::remove_all(this->Data + ".new", error);
    fs::create_directory(this->Data + ".new", error);
  }
  return error ? "cannot write to '" + this->Directory + "': " + error.message() : "";
}

//--------------------------------------------------------------------------------------------------
std::string zylSampleFolder::GetFresh(const std::string& name) const
{
  return (fs::path(this->Data + ".new") / name).string();
}

//--------------------------------------------------------------------------------------------------
zylSampleResult zylSampleFolder::Finish(
  std::string error, const std::function<bool(const std::string&)>& writeIndex) const
{
  std::error_code failed;
  if (error.empty() && !writeIndex(this->Index + ".new"))
  {
    error = "cannot write '" + this->Index + "'";
  }
  if (error.empty())
  {
    fs::remove_all(this->Data, failed);
    fs::rename(this->Data + ".new", this->Data, failed);
    if (!failed)
    {
      fs::rename(this->Index + ".new", this->Index, failed);
    }
    error = failed ? "cannot write '" + this->Index + "': " + failed.message() : "";
  }
  if (!error.empty())
  {
    fs::remove_all(this->Data + ".new", failed);
    fs::remove(this->Index + ".new", failed);
    return { "", error };
  }
  return { this->Index, "" };
}
