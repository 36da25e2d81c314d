// Splitting an AMReX plotfile into one unstructured grid per part.
//
//     zylBenchAMR PLOTFILE [PART_ID_ARRAY [LEVEL_MASK_ARRAY]]
//
// Stages: "read" (the toolkit's AMReX reader) and "parts" (the filter alone), each with wall time,
// user and system CPU in seconds and the peak resident size of the process so far. The SMP backend
// and the number of threads come from the environment (VTK_SMP_BACKEND_IN_USE,
// VTK_SMP_MAX_THREADS).
#include <chrono>
#include <cstdio>
#include <string>

#include <sys/resource.h>

#include <vtkAMRExtractLabeledBlocks.h>
#include <vtkAMReXGridReader.h>
#include <vtkCellData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkSMPTools.h>
#include <vtkUnstructuredGrid.h>

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
} // namespace

int main(int argc, char** argv)
{
  if (argc < 2)
  {
    std::fprintf(stderr, "usage: %s PLOTFILE [PART_ID_ARRAY [LEVEL_MASK_ARRAY]]\n", argv[0]);
    return 2;
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
  vtkIdType cells = 0;
  vtkIdType points = 0;
  int arrays = 0;
  vtkMultiBlockDataSet* output = parts->GetOutput();
  for (unsigned int p = 0; p < output->GetNumberOfBlocks(); ++p)
  {
    auto* grid = vtkUnstructuredGrid::SafeDownCast(output->GetBlock(p));
    cells += grid->GetNumberOfCells();
    points += grid->GetNumberOfPoints();
    arrays = grid->GetCellData()->GetNumberOfArrays();
  }
  std::printf("{\"stage\": \"result\", \"cells\": %lld, \"points\": %lld, \"arrays\": %d, "
              "\"parts\": %u, \"threads\": %d}\n",
    static_cast<long long>(cells), static_cast<long long>(points), arrays,
    output->GetNumberOfBlocks(), vtkSMPTools::GetEstimatedNumberOfThreads());
  return 0;
}
