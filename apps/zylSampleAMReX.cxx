#include "zylSampleAMReX.h"

#include "zylAMReXWriter.h"
#include "zylSampleField.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

namespace {
namespace fs = std::filesystem;

constexpr int BoxSize = 8; // cells each way
constexpr int Levels = 3;
constexpr std::array<double, 3> Low{ -4.0, -4.0, 0.0 };
constexpr std::array<double, 3> High{ 12.0, 4.0, zylSampleField::Height };
constexpr std::array<int, 3> CoarseCells{ 32, 16, 8 };
// What levels 1 and 2 refine: xmin, xmax, ymin, ymax, over the whole height.
constexpr double Refined[2][4] = { { -2.0, 8.0, -2.0, 2.0 }, { -1.0, 3.0, -1.0, 1.0 } };

//--------------------------------------------------------------------------------------------------
int PartOf(double x, double y)
{
  enum
  {
    Upstream,
    Left,
    Right,
    Collar,
    NearWake,
    MiddleWake,
    FarWake,
    Chimney
  };
  const double r = std::hypot(x, y);
  if (r < 1.5)
  {
    return r < zylSampleField::Radius ? Chimney : Collar;
  }
  if (x < -1.5)
  {
    return Upstream;
  }
  if (std::abs(y) > 1.5)
  {
    return y > 0.0 ? Left : Right;
  }
  return x < 4.0 ? NearWake : x < 8.0 ? MiddleWake : FarWake;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylAMReXBox> BoxesOf(int level)
{
  std::array<int, 3> cells;
  for (int i = 0; i < 3; ++i)
  {
    cells[i] = CoarseCells[i] << level;
  }
  return zylAMReXBoxes(cells, BoxSize, [level, cells](const zylAMReXBox& box) {
    const auto at = [&](int axis) {
      const double middle = 0.5 * (box.Low[axis] + box.High[axis] + 1);
      return Low[axis] + (High[axis] - Low[axis]) * middle / cells[axis];
    };
    const double* r = level > 0 ? Refined[level - 1] : nullptr;
    return r == nullptr || (at(0) > r[0] && at(0) < r[1] && at(1) > r[2] && at(1) < r[3]);
  });
}

//--------------------------------------------------------------------------------------------------
bool WritePlotfile(const fs::path& path, double time, std::string& error)
{
  const zylSampleField field(time);
  zylAMReXPlotfile plot;
  plot.Variables = { "pressure", "temperature", "x_velocity", "y_velocity", "z_velocity", "part_id",
    "level_mask" };
  plot.Time = time;
  plot.DomainLow = Low;
  plot.DomainHigh = High;
  plot.DomainCells = CoarseCells;
  for (int level = 0; level < Levels; ++level)
  {
    plot.Levels.push_back(BoxesOf(level));
  }
  plot.Values = [&field](const zylAMReXCell& cell, double* values) {
    const auto v = field.Evaluate(cell.Center);
    values[0] = v.Pressure;
    values[1] = v.Temperature;
    std::copy(v.Velocity.begin(), v.Velocity.end(), values + 2);
    values[5] = PartOf(cell.Center[0], cell.Center[1]);
    values[6] = cell.Covered ? 0.0 : 1.0;
  };
  return zylWriteAMReX(path.string(), plot, error);
}

//--------------------------------------------------------------------------------------------------
bool WriteIndex(const fs::path& file, const std::vector<double>& times)
{
  std::ofstream out(file);
  out << "{\n  \"version\": 1,\n  \"timesteps\": [";
  for (std::size_t i = 0; i < times.size(); ++i)
  {
    out << (i == 0 ? "\n" : ",\n") << "    { \"time\": " << times[i]
        << ",\n      \"surface\": { \"fileType\": \"VTM\", \"fileName\": \"chimney-amr/surface_"
        << i << ".vtm\" },\n      \"volume\": { \"fileType\": \"AMReXGrid\", \"fileName\": "
        << "\"chimney-amr/plt0000" << i << "\" } }";
  }
  out << "\n  ]\n}\n";
  return static_cast<bool>(out.flush());
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSampleResult zylWriteSampleAMReX(
  const std::string& directory, int steps, const std::function<void(int)>& progress)
{
  const zylSampleFolder folder(directory, "chimney-amr", "chimney-amr.json");
  std::string error = folder.Begin();
  std::vector<double> times;
  for (int step = 0; error.empty() && step < std::clamp(steps, 1, 10); ++step)
  {
    times.push_back(zylSampleField::Period * step / std::clamp(steps, 1, 10));
    const std::string number = std::to_string(step);
    WritePlotfile(folder.GetFresh("plt0000" + number), times.back(), error);
    if (error.empty() &&
      !zylWriteSampleWalls(folder.GetFresh("surface_" + number + ".vtm"), times.back()))
    {
      error = "cannot write to '" + directory + "'";
    }
    if (progress)
    {
      progress(step + 1);
    }
  }
  const auto index = [&](const std::string& file) { return WriteIndex(file, times); };
  return folder.Finish(error, index);
}
