#include "zylAMReXWriter.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <locale>
#include <sstream>
#include <system_error>

namespace {
std::ostringstream Text()
{
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << std::setprecision(17);
  return out;
}

std::string BoxText(const zylAMReXBox& box, int dimension)
{
  std::ostringstream out = Text();
  const std::array<int, 3> type = { { 0, 0, 0 } };
  out << "(";
  for (const auto* corner : { &box.Low, &box.High, &type })
  {
    out << (corner == &box.Low ? "(" : " (");
    for (int d = 0; d < dimension; ++d)
    {
      out << (d > 0 ? "," : "") << (*corner)[d];
    }
    out << ")";
  }
  out << ")";
  return out.str();
}

// The writer of one plotfile; stops at the first file that cannot be written.
class Writer
{
public:
  Writer(const std::string& path, const zylAMReXPlotfile& plot)
    : Path(path)
    , Plot(plot)
  {
  }

  bool Write()
  {
    for (std::size_t level = 0; level < this->Plot.Levels.size() && this->Error.empty(); ++level)
    {
      this->WriteLevel(static_cast<int>(level));
    }
    this->WriteText(this->Path + "/Header", this->Header());
    return this->Error.empty();
  }

  const std::string& GetError() const { return this->Error; }

private:
  int CellsAlong(int level, int axis) const
  {
    int cells = this->Plot.DomainCells[axis];
    for (int l = 0; l < level; ++l)
    {
      cells *= this->Plot.Refinement;
    }
    return cells;
  }

  double CellSize(int level, int axis) const
  {
    return (this->Plot.DomainHigh[axis] - this->Plot.DomainLow[axis]) /
      this->CellsAlong(level, axis);
  }

  std::string LevelName(int level) const { return "Level_" + std::to_string(level); }

  void WriteText(const std::string& name, const std::string& text)
  {
    std::ofstream file(name, std::ios::binary);
    if (!(file << text) || !file.flush())
    {
      this->Error = "'" + name + "' cannot be written.";
    }
  }

  std::string Header() const
  {
    const int levels = static_cast<int>(this->Plot.Levels.size());
    const int dimension = this->Plot.Dimension;
    std::ostringstream out = Text();
    out << "HyperCLaw-V1.1\n" << this->Plot.Variables.size() << "\n";
    for (const std::string& name : this->Plot.Variables)
    {
      out << name << "\n";
    }
    out << dimension << "\n" << this->Plot.Time << "\n" << levels - 1 << "\n";
    for (const auto* corner : { &this->Plot.DomainLow, &this->Plot.DomainHigh })
    {
      for (int d = 0; d < dimension; ++d)
      {
        out << (*corner)[d] << " ";
      }
      out << "\n";
    }
    for (int level = 1; level < levels; ++level)
    {
      out << this->Plot.Refinement << " ";
    }
    out << "\n";
    this->AddGeometryTo(out);
    for (int level = 0; level < levels; ++level)
    {
      this->AddLevelTo(out, level);
    }
    return out.str();
  }

  void AddGeometryTo(std::ostringstream& out) const
  {
    const int levels = static_cast<int>(this->Plot.Levels.size());
    const int dimension = this->Plot.Dimension;
    for (int level = 0; level < levels; ++level)
    {
      zylAMReXBox domain = { { { 0, 0, 0 } }, { { 0, 0, 0 } } };
      for (int d = 0; d < dimension; ++d)
      {
        domain.High[d] = this->CellsAlong(level, d) - 1;
      }
      out << BoxText(domain, dimension) << " ";
    }
    out << "\n";
    for (int level = 0; level < levels; ++level)
    {
      out << "0 ";
    }
    out << "\n";
    for (int level = 0; level < levels; ++level)
    {
      for (int d = 0; d < dimension; ++d)
      {
        out << this->CellSize(level, d) << " ";
      }
      out << "\n";
    }
    out << "0\n0\n";
  }

  void AddLevelTo(std::ostringstream& out, int level) const
  {
    const auto& boxes = this->Plot.Levels[level];
    out << level << " " << boxes.size() << " " << this->Plot.Time << "\n0\n";
    for (const zylAMReXBox& box : boxes)
    {
      for (int d = 0; d < this->Plot.Dimension; ++d)
      {
        out << this->Plot.DomainLow[d] + box.Low[d] * this->CellSize(level, d) << " "
            << this->Plot.DomainLow[d] + (box.High[d] + 1) * this->CellSize(level, d) << "\n";
      }
    }
    out << this->LevelName(level) << "/Cell\n";
  }

  // The boxes of the next level that cover some of `box`, in its cells.
  std::vector<zylAMReXBox> CoversOf(int level, const zylAMReXBox& box) const
  {
    std::vector<zylAMReXBox> covers;
    if (level + 1 < static_cast<int>(this->Plot.Levels.size()))
    {
      for (zylAMReXBox fine : this->Plot.Levels[level + 1])
      {
        bool meets = true;
        for (int d = 0; d < this->Plot.Dimension; ++d)
        {
          fine.Low[d] /= this->Plot.Refinement;
          fine.High[d] /= this->Plot.Refinement;
          meets = meets && fine.Low[d] <= box.High[d] && fine.High[d] >= box.Low[d];
        }
        if (meets)
        {
          covers.push_back(fine);
        }
      }
    }
    return covers;
  }

  bool IsIn(const std::vector<zylAMReXBox>& boxes, const std::array<int, 3>& index) const
  {
    return std::any_of(boxes.begin(), boxes.end(), [&](const zylAMReXBox& box) {
      for (int d = 0; d < this->Plot.Dimension; ++d)
      {
        if (index[d] < box.Low[d] || index[d] > box.High[d])
        {
          return false;
        }
      }
      return true;
    });
  }

  // All values of a box, one variable after another.
  std::vector<double> BoxValues(int level, const zylAMReXBox& box) const
  {
    const std::vector<zylAMReXBox> covers = this->CoversOf(level, box);
    std::size_t size = 1;
    for (int d = 0; d < this->Plot.Dimension; ++d)
    {
      size *= static_cast<std::size_t>(box.High[d] - box.Low[d] + 1);
    }
    const std::size_t variables = this->Plot.Variables.size();
    std::vector<double> values(size * variables);
    std::vector<double> one(variables, 0.0);
    std::size_t at = 0;
    zylAMReXCell cell;
    cell.Level = level;
    for (cell.Index[2] = box.Low[2]; cell.Index[2] <= box.High[2]; ++cell.Index[2])
    {
      for (cell.Index[1] = box.Low[1]; cell.Index[1] <= box.High[1]; ++cell.Index[1])
      {
        for (cell.Index[0] = box.Low[0]; cell.Index[0] <= box.High[0]; ++cell.Index[0], ++at)
        {
          for (int d = 0; d < this->Plot.Dimension; ++d)
          {
            cell.Center[d] =
              this->Plot.DomainLow[d] + (cell.Index[d] + 0.5) * this->CellSize(level, d);
          }
          cell.Covered = this->IsIn(covers, cell.Index);
          this->Plot.Values(cell, one.data());
          for (std::size_t v = 0; v < variables; ++v)
          {
            values[v * size + at] = one[v];
          }
        }
      }
    }
    return values;
  }

  void WriteLevel(int level)
  {
    const std::string directory = this->Path + "/" + this->LevelName(level);
    std::error_code code;
    std::filesystem::create_directories(directory, code);
    const auto& boxes = this->Plot.Levels[level];
    const std::size_t variables = this->Plot.Variables.size();
    std::ostringstream places = Text();
    std::ostringstream extremes[2] = { Text(), Text() };
    std::ofstream file;
    std::string name;
    for (std::size_t b = 0; b < boxes.size() && this->Error.empty(); ++b)
    {
      if (b % this->Plot.BoxesPerFile == 0)
      {
        char number[32];
        std::snprintf(number, sizeof(number), "%05zu", b / this->Plot.BoxesPerFile);
        name = std::string("Cell_D_") + number;
        file.close();
        file.open(directory + "/" + name, std::ios::binary);
      }
      places << "FabOnDisk: " << name << " " << static_cast<long long>(file.tellp()) << "\n";
      const std::vector<double> values = this->BoxValues(level, boxes[b]);
      file << "FAB ((8, (64 11 52 0 1 12 0 1023)),(8, (8 7 6 5 4 3 2 1)))"
           << BoxText(boxes[b], this->Plot.Dimension) << " " << variables << "\n";
      file.write(reinterpret_cast<const char*>(values.data()),
        static_cast<std::streamsize>(values.size() * sizeof(double)));
      const std::size_t size = values.size() / variables;
      for (std::size_t v = 0; v < variables; ++v)
      {
        const auto range =
          std::minmax_element(values.begin() + v * size, values.begin() + (v + 1) * size);
        extremes[0] << *range.first << ",";
        extremes[1] << *range.second << ",";
      }
      extremes[0] << "\n";
      extremes[1] << "\n";
      if (!file.flush())
      {
        this->Error = "'" + directory + "/" + name + "' cannot be written.";
      }
    }
    std::ostringstream out = Text();
    out << "1\n0\n" << variables << "\n0\n(" << boxes.size() << " 0\n";
    for (const zylAMReXBox& box : boxes)
    {
      out << BoxText(box, this->Plot.Dimension) << "\n";
    }
    out << ")\n" << boxes.size() << "\n" << places.str() << "\n";
    for (const auto& extreme : extremes)
    {
      out << boxes.size() << "," << variables << "\n" << extreme.str() << "\n";
    }
    this->WriteText(directory + "/Cell_H", out.str());
  }

  std::string Path;
  const zylAMReXPlotfile& Plot;
  std::string Error;
};
} // namespace

//--------------------------------------------------------------------------------------------------
bool zylWriteAMReX(const std::string& path, const zylAMReXPlotfile& plot, std::string& error)
{
  if (plot.Variables.empty() || plot.Levels.empty() || !plot.Values)
  {
    error = "A plotfile needs variables, levels and values.";
    return false;
  }
  Writer writer(path, plot);
  const bool written = writer.Write();
  error = writer.GetError();
  return written;
}

//--------------------------------------------------------------------------------------------------
std::vector<zylAMReXBox> zylAMReXBoxes(
  const std::array<int, 3>& cells, int size, const std::function<bool(const zylAMReXBox&)>& keep)
{
  std::vector<zylAMReXBox> boxes;
  for (int k = 0; k < cells[2]; k += size)
  {
    for (int j = 0; j < cells[1]; j += size)
    {
      for (int i = 0; i < cells[0]; i += size)
      {
        const zylAMReXBox box = { { { i, j, k } },
          { { std::min(i + size, cells[0]) - 1, std::min(j + size, cells[1]) - 1,
            std::min(k + size, cells[2]) - 1 } } };
        if (!keep || keep(box))
        {
          boxes.push_back(box);
        }
      }
    }
  }
  return boxes;
}
