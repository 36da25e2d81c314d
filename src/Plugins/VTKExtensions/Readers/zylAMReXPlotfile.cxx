#include "zylAMReXPlotfile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fstream>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace {
constexpr int MaximumNumberOfLevels = 64;
constexpr int MaximumRefinement = 1024;
constexpr std::int64_t MaximumIndex = std::int64_t(1) << 30;
constexpr std::uint64_t MaximumHeaderSize = std::uint64_t(1) << 30;
constexpr std::size_t MaximumFabHeaderSize = 4096;

struct Box
{
  std::array<std::int64_t, 3> Low = { { 0, 0, 0 } };
  std::array<std::int64_t, 3> High = { { 0, 0, 0 } };

  bool operator==(const Box& other) const { return Low == other.Low && High == other.High; }
};

struct Level
{
  Box Domain;
  std::int64_t NumberOfBoxes = 0;
  std::string Directory;
  std::string Prefix;
};

struct Header
{
  std::vector<std::string> Variables;
  int Dimension = 0;
  std::vector<Level> Levels;
};

// Leaves the checks at the first thing that is wrong; caught in zylCheckAMReXPlotfile.
struct Fault : std::runtime_error
{
  using std::runtime_error::runtime_error;
};

// Reads a header as the toolkit does: blanks separate, punctuation is one character.
class Scanner
{
public:
  Scanner(const std::string& text, std::string name)
    : Stream(text)
    , Name(std::move(name))
  {
    this->Stream.imbue(std::locale::classic());
  }

  [[noreturn]] void Fail(const std::string& what) const
  {
    throw Fault("'" + this->Name + "': " + what + ".");
  }

  std::string Word(const char* what)
  {
    std::string word;
    if (!(this->Stream >> word))
    {
      this->Fail(std::string("no ") + what);
    }
    return word;
  }

  std::int64_t Integer(const char* what, std::int64_t lowest, std::int64_t highest)
  {
    std::int64_t value = 0;
    if (!(this->Stream >> value) || value < lowest || value > highest)
    {
      this->Fail(std::string("no valid ") + what);
    }
    return value;
  }

  double Real(const char* what)
  {
    double value = 0.0;
    if (!(this->Stream >> value) || !std::isfinite(value))
    {
      this->Fail(std::string("no valid ") + what);
    }
    return value;
  }

  void Character(char expected, const char* what)
  {
    char found = 0;
    if (!(this->Stream >> found) || found != expected)
    {
      this->Fail(std::string("no valid ") + what);
    }
  }

  // "((0,0,0) (7,7,7) (0,0,0))": first and last cell and the centering, which must be `centering`.
  Box ReadBox(int dimension, std::int64_t centering)
  {
    Box box;
    std::array<std::int64_t, 3> type = { { 0, 0, 0 } };
    this->Character('(', "box");
    for (auto* corner : { &box.Low, &box.High, &type })
    {
      this->Character('(', "box");
      for (int d = 0; d < dimension; ++d)
      {
        (*corner)[d] = this->Integer("box", -MaximumIndex, MaximumIndex);
        this->Character(d + 1 < dimension ? ',' : ')', "box");
      }
    }
    this->Character(')', "box");
    for (int d = 0; d < dimension; ++d)
    {
      if (box.Low[d] > box.High[d] || (centering >= 0 && type[d] != centering))
      {
        this->Fail("no valid box");
      }
    }
    return box;
  }

  // A whole number if another one follows, else `otherwise`.
  std::int64_t IntegerOr(std::int64_t otherwise)
  {
    std::int64_t value = 0;
    return this->Stream >> value ? value : otherwise;
  }

  std::int64_t Position() { return static_cast<std::int64_t>(this->Stream.tellg()); }

private:
  std::istringstream Stream;
  std::string Name;
};

// Size of a regular file; throws when there is none.
std::uint64_t FileSize(const std::string& name)
{
  struct stat status;
  if (stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
  {
    throw Fault("'" + name + "' is not a file.");
  }
  return static_cast<std::uint64_t>(status.st_size);
}

std::string ReadText(const std::string& name)
{
  const std::uint64_t size = FileSize(name);
  if (size == 0 || size > MaximumHeaderSize)
  {
    throw Fault("'" + name + "' is " + (size == 0 ? "empty." : "too large for a header."));
  }
  std::string text(static_cast<std::size_t>(size), '\0');
  std::ifstream file(name, std::ios::binary);
  if (!file.read(&text[0], static_cast<std::streamsize>(size)))
  {
    throw Fault("'" + name + "' cannot be read.");
  }
  return text.substr(0, text.find('\0')); // where the toolkit's reader stops, too
}

bool Contains(const Box& outer, const Box& inner)
{
  for (int d = 0; d < 3; ++d)
  {
    if (inner.Low[d] < outer.Low[d] || inner.High[d] > outer.High[d])
    {
      return false;
    }
  }
  return true;
}

//--------------------------------------------------------------------------------------------------
void ReadLevels(Scanner& scanner, Header& header)
{
  for (Level& level : header.Levels)
  {
    scanner.Integer("level number", 0, MaximumNumberOfLevels);
    level.NumberOfBoxes = scanner.Integer("number of boxes", 0, MaximumIndex);
    scanner.Real("time of a level");
    scanner.Integer("step of a level", -MaximumIndex, MaximumIndex);
    for (std::int64_t i = 0; i < level.NumberOfBoxes * header.Dimension; ++i)
    {
      scanner.Real("extent of a box");
      scanner.Real("extent of a box");
    }
    const std::string path = scanner.Word("path of a level");
    const std::size_t slash = path.find('/');
    if (slash == std::string::npos)
    {
      scanner.Fail("no valid path of a level");
    }
    level.Directory = path.substr(0, slash);
    level.Prefix = path.substr(slash + 1);
  }
}

Header ReadHeader(Scanner& scanner)
{
  Header header;
  scanner.Word("version");
  header.Variables.resize(scanner.Integer("number of variables", 1, 100000));
  for (std::string& name : header.Variables)
  {
    name = scanner.Word("name of a variable");
  }
  header.Dimension = static_cast<int>(scanner.Integer("dimension (2 or 3)", 2, 3));
  scanner.Real("time");
  const int finest =
    static_cast<int>(scanner.Integer("number of the finest level", 0, MaximumNumberOfLevels - 1));
  for (int i = 0; i < 2 * header.Dimension; ++i)
  {
    scanner.Real("extent of the domain");
  }
  for (int i = 0; i < finest; ++i)
  {
    scanner.Integer("refinement ratio", 1, MaximumRefinement);
  }
  header.Levels.resize(finest + 1);
  for (Level& level : header.Levels)
  {
    level.Domain = scanner.ReadBox(header.Dimension, -1);
  }
  for (int i = 0; i <= finest; ++i)
  {
    scanner.Integer("step", -MaximumIndex, MaximumIndex);
  }
  for (int i = 0; i < (finest + 1) * header.Dimension; ++i)
  {
    if (scanner.Real("cell size") <= 0.0)
    {
      scanner.Fail("no valid cell size");
    }
  }
  scanner.Integer("coordinate system", 0, 100);
  scanner.Integer("zero", -MaximumIndex, MaximumIndex);
  ReadLevels(scanner, header);
  return header;
}

//--------------------------------------------------------------------------------------------------
// The data files of a level: opened once after another, most boxes being in a few files.
class DataFile
{
public:
  // The first bytes at `offset`.
  std::string Head(const std::string& name, std::uint64_t offset)
  {
    if (name != this->Name)
    {
      this->Size = FileSize(name);
      this->File.close();
      this->File.clear();
      this->File.open(name, std::ios::binary);
      this->Name = name;
    }
    if (offset >= this->Size)
    {
      throw Fault("'" + name + "' is truncated.");
    }
    std::string head(
      static_cast<std::size_t>(std::min<std::uint64_t>(MaximumFabHeaderSize, this->Size - offset)),
      '\0');
    this->File.seekg(static_cast<std::streamoff>(offset));
    if (!this->File.read(&head[0], static_cast<std::streamsize>(head.size())))
    {
      throw Fault("'" + name + "' cannot be read.");
    }
    return head;
  }

  std::uint64_t GetSize() const { return this->Size; }

private:
  std::ifstream File;
  std::string Name;
  std::uint64_t Size = 0;
};

bool IsLittleEndian()
{
  const std::uint16_t one = 1;
  unsigned char first = 0;
  std::memcpy(&first, &one, 1);
  return first == 1;
}

// "((8, (64 11 52 0 1 12 0 1023)),(8, (8 7 6 5 4 3 2 1)))": the size of a value and whether its
// bytes, listed from the most significant one, stand in the order of this machine.
void ReadRealDescriptor(Scanner& scanner, zylAMReXFab& fab)
{
  static const std::vector<std::int64_t> formats[2] = { { 32, 8, 23, 0, 1, 9, 0, 127 },
    { 64, 11, 52, 0, 1, 12, 0, 1023 } };
  const char* const what = "description of its numbers";
  std::vector<std::int64_t> lists[2];
  scanner.Character('(', what);
  for (int i = 0; i < 2; ++i)
  {
    scanner.Character('(', what);
    lists[i].resize(scanner.Integer(what, 1, 8));
    scanner.Character(',', what);
    scanner.Character('(', what);
    for (auto& value : lists[i])
    {
      value = scanner.Integer(what, 0, 1000000);
    }
    scanner.Character(')', what);
    scanner.Character(')', what);
    scanner.Character(i == 0 ? ',' : ')', what);
  }
  const std::int64_t bytes = lists[0] == formats[0] ? 4 : 8;
  const bool descending = std::is_sorted(lists[1].rbegin(), lists[1].rend());
  const bool ascending = std::is_sorted(lists[1].begin(), lists[1].end());
  fab.BytesOfValue = static_cast<int>(bytes);
  fab.IsNative = IsLittleEndian() ? descending : ascending;
  std::sort(lists[1].begin(), lists[1].end());
  bool ordered = static_cast<std::int64_t>(lists[1].size()) == bytes;
  for (std::size_t i = 0; i < lists[1].size(); ++i)
  {
    ordered = ordered && lists[1][i] == static_cast<std::int64_t>(i + 1);
  }
  if ((lists[0] != formats[0] && lists[0] != formats[1]) || !ordered)
  {
    scanner.Fail("its numbers are neither IEEE floats nor doubles");
  }
}

zylAMReXFab CheckFab(DataFile& data, const std::string& name, std::uint64_t offset, const Box& box,
  int dimension, int variables, std::int64_t centering)
{
  zylAMReXFab fab;
  const std::string head = data.Head(name, offset);
  Scanner scanner(head, name);
  for (char c : { 'F', 'A', 'B' })
  {
    scanner.Character(c, "data of a box");
  }
  ReadRealDescriptor(scanner, fab);
  if (!(scanner.ReadBox(dimension, centering) == box))
  {
    scanner.Fail("the data of a box are of another box");
  }
  const std::int64_t components = scanner.Integer("number of variables", variables, MaximumIndex);
  const std::int64_t begin = scanner.Position() + 1;
  double volume = static_cast<double>(components) * static_cast<double>(fab.BytesOfValue);
  fab.NumberOfCells = 1;
  for (int d = 0; d < dimension; ++d)
  {
    volume *= static_cast<double>(box.High[d] - box.Low[d] + 1);
    fab.NumberOfCells *= box.High[d] - box.Low[d] + 1;
  }
  if (begin < 1 ||
    static_cast<double>(offset) + static_cast<double>(begin) + volume >
      static_cast<double>(data.GetSize()))
  {
    throw Fault("'" + name + "' is truncated.");
  }
  fab.Offset = offset + static_cast<std::uint64_t>(begin);
  return fab;
}

// The index of a file in the list, which it is added to if it is new. Boxes follow each other in a
// file mostly.
std::uint32_t FileIndex(std::vector<std::string>& files, const std::string& name)
{
  const auto found = std::find(files.rbegin(), files.rend(), name);
  if (found == files.rend())
  {
    files.push_back(name);
    return static_cast<std::uint32_t>(files.size() - 1);
  }
  return static_cast<std::uint32_t>(files.rend() - found - 1);
}

// One level of one set of boxes: its header and, if `layout` is not null, the data files.
void CheckLevel(const std::string& path, const Level& level, const std::string& prefix,
  int dimension, int variables, std::int64_t centering, zylAMReXLayout* layout)
{
  const std::string directory = path + "/" + level.Directory + "/";
  const std::string name = directory + prefix + "_H";
  const std::string text = ReadText(name);
  Scanner scanner(text, name);
  scanner.Integer("version (1)", 1, 1); // others keep no description with the data
  scanner.Integer("layout", 0, 1);
  scanner.Integer("number of variables", variables, variables);
  scanner.Integer("number of ghost cells (0)", 0, 0);
  scanner.Character('(', "list of boxes");
  scanner.Integer("number of boxes", level.NumberOfBoxes, level.NumberOfBoxes);
  scanner.Integer("zero", -MaximumIndex, MaximumIndex);
  std::vector<Box> boxes;
  for (std::int64_t i = 0; i < level.NumberOfBoxes; ++i)
  {
    boxes.push_back(scanner.ReadBox(dimension, centering));
    if (centering == 0 && !Contains(level.Domain, boxes.back()))
    {
      scanner.Fail("a box lies outside of the domain of its level");
    }
  }
  scanner.Character(')', "list of boxes");
  scanner.Integer("number of data sets", level.NumberOfBoxes, level.NumberOfBoxes);
  DataFile data;
  for (const Box& box : boxes)
  {
    scanner.Word("data file");
    const std::string file = directory + scanner.Word("data file");
    const std::int64_t offset = scanner.Integer("offset", 0, std::int64_t(1) << 62);
    if (layout)
    {
      layout->Boxes.push_back(CheckFab(
        data, file, static_cast<std::uint64_t>(offset), box, dimension, variables, centering));
      layout->Boxes.back().File = FileIndex(layout->Files, file);
    }
  }
}

// Further sets of variables that may follow in the header, cell or point centered.
void CheckFurtherSets(const std::string& path, Scanner& scanner, const Header& header)
{
  const std::int64_t sets = scanner.IntegerOr(0);
  if (sets < 0 || sets > MaximumNumberOfLevels)
  {
    scanner.Fail("no valid number of further variables");
  }
  for (std::int64_t set = 0; set < sets; ++set)
  {
    const int variables = static_cast<int>(scanner.Integer("number of variables", 1, 100000));
    for (int i = 0; i < variables; ++i)
    {
      scanner.Word("name of a variable");
    }
    for (const Level& level : header.Levels)
    {
      const std::string name = scanner.Word("path of a level");
      const std::size_t slash = name.find('/');
      if (slash == std::string::npos || level.NumberOfBoxes == 0)
      {
        scanner.Fail("no valid path of a level");
      }
      zylAMReXLayout further;
      CheckLevel(path, level, name.substr(slash + 1), header.Dimension, variables, -1, &further);
    }
  }
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylCheckAMReXPlotfile(const std::string& path, int maximumLevel, zylAMReXLayout* layout)
{
  zylAMReXLayout found;
  try
  {
    const std::string name = path + "/Header";
    const std::string text = ReadText(name);
    Scanner scanner(text, name);
    const Header header = ReadHeader(scanner);
    for (std::size_t i = 0; i < header.Levels.size(); ++i)
    {
      CheckLevel(path, header.Levels[i], header.Levels[i].Prefix, header.Dimension,
        static_cast<int>(header.Variables.size()), 0,
        static_cast<int>(i) <= maximumLevel ? &found : nullptr);
    }
    CheckFurtherSets(path, scanner, header);
    found.Variables = header.Variables;
  }
  catch (const std::exception& error)
  {
    return error.what();
  }
  if (layout)
  {
    *layout = std::move(found);
  }
  return "";
}
