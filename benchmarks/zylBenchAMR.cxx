// Splitting an AMReX plotfile into one unstructured grid per part.
//
//     zylBenchAMR PLOTFILE [PART_ID_ARRAY [LEVEL_MASK_ARRAY]]
//     zylBenchAMR INDEX.json
//
// Stages: "read" (the toolkit's AMReX reader) and "parts" (the filter alone), or "load" (the reader
// of the index, which does both, the checks of the files included), each with wall time, user and
// system CPU in seconds and the peak resident size of the process so far. The SMP backend
// and the number of threads come from the environment (VTK_SMP_BACKEND_IN_USE,
// VTK_SMP_MAX_THREADS).
#include <chrono>
#include <cstdio>
#include <string>

#include <sys/resource.h>

#include <vtkAMRExtractLabeledBlocks.h>
#include <vtkAMReXGridReader.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMPTools.h>
#include <vtkUnstructuredGrid.h>
#include <vtkZYLVolumeSurfaceReader.h>

namespace {
double Seconds(const timeval& time)
{
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

template <class Action>
void Stage(const char* name, Action action)
{
  rusage before, after;
  getrusage(RUSAGE_SELF, &before);
  const auto start = std::chrono::steady_clock::now();
  action();
  const double wall =
    std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  getrusage(RUSAGE_SELF, &after);
  std::printf(
    "{\"stage\": \"%s\", \"wall\": %.4f, \"user\": %.4f, \"sys\": %.4f, \"rss_mb\": %.1f}\n", name,
    wall, Seconds(after.ru_utime) - Seconds(before.ru_utime),
    Seconds(after.ru_stime) - Seconds(before.ru_stime),
    static_cast<double>(after.ru_maxrss) * 1024 / 1e6);
  std::fflush(stdout);
}

// What the parts hold, to see that both ways bring the same.
void PrintResult(vtkMultiBlockDataSet* output)
{
  vtkIdType cells = 0;
  vtkIdType points = 0;
  int arrays = 0;
  double sum = 0.0;
  for (unsigned int p = 0; output && p < output->GetNumberOfBlocks(); ++p)
  {
    auto* grid = vtkUnstructuredGrid::SafeDownCast(output->GetBlock(p));
    cells += grid->GetNumberOfCells();
    points += grid->GetNumberOfPoints();
    arrays = grid->GetCellData()->GetNumberOfArrays();
    for (int i = 0; i < arrays; ++i)
    {
      double range[2];
      grid->GetCellData()->GetArray(i)->GetRange(range);
      sum += range[0] + range[1];
    }
  }
  std::printf("{\"stage\": \"result\", \"cells\": %lld, \"points\": %lld, \"arrays\": %d, "
              "\"parts\": %u, \"ranges\": %.17g, \"threads\": %d}\n",
    static_cast<long long>(cells), static_cast<long long>(points), arrays,
    output ? output->GetNumberOfBlocks() : 0, sum, vtkSMPTools::GetEstimatedNumberOfThreads());
}

void Load(const char* index)
{
  vtkNew<vtkZYLVolumeSurfaceReader> reader;
  Stage("load", [&]() {
    reader->SetFileName(index);
    reader->SetPartIdArrayName("part_id");
    reader->SetLevelMaskArrayName("level_mask");
    reader->Update();
  });
  PrintResult(vtkMultiBlockDataSet::SafeDownCast(reader->GetOutput()->GetBlock(1)));
}
} // namespace

int main(int argc, char** argv)
{
  if (argc < 2)
  {
    std::fprintf(
      stderr, "usage: %s PLOTFILE [PART_ID_ARRAY [LEVEL_MASK_ARRAY]] | INDEX.json\n", argv[0]);
    return 2;
  }
  const std::string name = argv[1];
  if (name.size() > 5 && name.compare(name.size() - 5, 5, ".json") == 0)
  {
    Load(argv[1]);
    return 0;
  }
  vtkNew<vtkAMReXGridReader> reader;
  Stage("read", [&]() {
    reader->SetFileName(argv[1]);
    reader->UpdateInformation();
    for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i)
    {
      reader->SetCellArrayStatus(reader->GetCellArrayName(i), 1);
    }
    reader->SetMaxLevel(5);
    reader->Update();
  });
  vtkNew<vtkAMRExtractLabeledBlocks> parts;
  Stage("parts", [&]() {
    parts->SetInputConnection(reader->GetOutputPort(0));
    parts->SetPartIdArrayName(argc > 2 ? argv[2] : "part_id");
    parts->SetLevelMaskArrayName(argc > 3 ? argv[3] : "level_mask");
    parts->Update();
  });
  PrintResult(parts->GetOutput());
  return 0;
}
