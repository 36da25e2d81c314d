#include "vtkZYLVolumeSurfaceReader.h"

#include "vtkAMRExtractLabeledBlocks.h"
#include "zylAMReXGridReader.h"
#include "zylAMReXPlotfile.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <utility>

#include <sys/stat.h>

#include <vtkCompositeDataSet.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkLogger.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkMultiProcessController.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkStreamingDemandDrivenPipeline.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtksys/SystemTools.hxx>

namespace {
constexpr int MaximumLevel = 5;

// False when it cannot be opened. Directories and devices are not read.
bool ReadWholeFile(const char* name, std::string& text)
{
  struct stat status;
  std::ifstream file;
  if (stat(name, &status) == 0 && S_ISREG(status.st_mode))
  {
    file.open(name, std::ios::binary);
  }
  if (!file.is_open())
  {
    return false;
  }
  text.resize(static_cast<std::size_t>(status.st_size));
  file.read(&text[0], static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return true;
}

// Whether `good` holds on all ranks: the readers below talk to each other.
bool OnAllRanks(bool good)
{
  vtkMultiProcessController* controller = vtkMultiProcessController::GetGlobalController();
  if (!controller || controller->GetNumberOfProcesses() < 2)
  {
    return good;
  }
  const int here = good ? 1 : 0;
  int everywhere = here;
  controller->AllReduce(&here, &everywhere, 1, vtkCommunicator::MIN_OP);
  return everywhere != 0;
}

// The parts of a plotfile, whose values come from the files when they are needed.
class PlotfileParts : public vtkAMRExtractLabeledBlocks
{
public:
  static PlotfileParts* New();
  vtkTypeMacro(PlotfileParts, vtkAMRExtractLabeledBlocks);

  zylAMReXGridReader* Reader = nullptr; // borrowed

protected:
  const zylDeferredValues* GetDeferredValues() override { return this->Reader; }
};
vtkStandardNewMacro(PlotfileParts);

void Trace(const char* what, const std::string& value)
{
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "%s%s", what, value.c_str());
}
} // namespace

vtkStandardNewMacro(vtkZYLVolumeSurfaceReader);

//--------------------------------------------------------------------------------------------------
vtkZYLVolumeSurfaceReader::vtkZYLVolumeSurfaceReader()
{
  this->SetNumberOfInputPorts(0);
}

//--------------------------------------------------------------------------------------------------
vtkZYLVolumeSurfaceReader::~vtkZYLVolumeSurfaceReader()
{
  this->SetFileName(nullptr);
  this->SetPartIdArrayName(nullptr);
  this->SetLevelMaskArrayName(nullptr);
}

//--------------------------------------------------------------------------------------------------
void vtkZYLVolumeSurfaceReader::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "FileName: " << (this->FileName ? this->FileName : "(none)") << "\n";
  os << indent << "PartIdArrayName: " << (this->PartIdArrayName ? this->PartIdArrayName : "(none)")
     << "\n";
  os << indent
     << "LevelMaskArrayName: " << (this->LevelMaskArrayName ? this->LevelMaskArrayName : "(none)")
     << "\n";
  os << indent << "TimeSteps: " << this->TimeSteps.size() << "\n";
}

//--------------------------------------------------------------------------------------------------
int vtkZYLVolumeSurfaceReader::RequestInformation(
  vtkInformation*, vtkInformationVector**, vtkInformationVector* outputVector)
{
  if (!this->FileName || !*this->FileName)
  {
    vtkErrorMacro("No FileName set.");
    return 0;
  }
  this->TimeSteps.clear();
  std::string text;
  if (!ReadWholeFile(this->FileName, text))
  {
    vtkErrorMacro("Could not open '" << this->FileName << "' for reading.");
    return 0;
  }
  std::vector<std::string> errors;
  const bool parsed = zylParseTimeStepIndex(text, this->TimeSteps, errors);
  for (const std::string& error : errors)
  {
    vtkErrorMacro(<< error);
  }
  if (!parsed)
  {
    return 0;
  }
  std::vector<double> times;
  double range[2] = { 0.0, 0.0 }; // kept: the range contains 0 whatever the times are
  for (const zylTimeStep& step : this->TimeSteps)
  {
    Trace("surfaceFileType: ", step.SurfaceFileType);
    Trace("surfaceFileName: ", step.SurfaceFileName);
    Trace("volumeFileType: ", step.VolumeFileType);
    Trace("volumeFileName: ", step.VolumeFileName);
    times.push_back(step.Time);
    range[0] = std::min(range[0], step.Time);
    range[1] = std::max(range[1], step.Time);
  }
  vtkInformation* info = outputVector->GetInformationObject(0);
  info->Set(
    vtkStreamingDemandDrivenPipeline::TIME_STEPS(), times.data(), static_cast<int>(times.size()));
  info->Set(vtkStreamingDemandDrivenPipeline::TIME_RANGE(), range, 2);
  info->Set(CAN_HANDLE_PIECE_REQUEST(), 1);
  return 1;
}

//--------------------------------------------------------------------------------------------------
int vtkZYLVolumeSurfaceReader::RequestData(
  vtkInformation*, vtkInformationVector**, vtkInformationVector* outputVector)
{
  vtkInformation* info = outputVector->GetInformationObject(0);
  vtkMultiBlockDataSet* output = vtkMultiBlockDataSet::GetData(outputVector, 0);
  std::size_t index = 0;
  if (info->Has(vtkStreamingDemandDrivenPipeline::UPDATE_TIME_STEP()))
  {
    index = zylNearestTimeStep(
      this->TimeSteps, info->Get(vtkStreamingDemandDrivenPipeline::UPDATE_TIME_STEP()));
  }
  vtkVLogF(vtkLogger::VERBOSITY_TRACE, "Timestep %zu requested", index);
  const zylTimeStep step = index < this->TimeSteps.size() ? this->TimeSteps[index] : zylTimeStep();
  if (!this->TimeSteps.empty())
  {
    output->GetInformation()->Set(vtkDataObject::DATA_TIME_STEP(), step.Time);
  }

  vtkNew<vtkMultiBlockDataSet> surfaces;
  vtkNew<vtkMultiBlockDataSet> volumes;
  if (step.SurfaceFileType == "VTM")
  {
    this->ReadSurface(this->GetDirectory() + step.SurfaceFileName, info, surfaces);
  }
  if (step.VolumeFileType == "AMReXGrid")
  {
    this->ReadVolume(this->GetDirectory() + step.VolumeFileName, volumes);
  }
  output->SetNumberOfBlocks(2);
  output->SetBlock(0, surfaces);
  output->GetMetaData(0u)->Set(vtkCompositeDataSet::NAME(), "Surfaces");
  output->SetBlock(1, volumes);
  output->GetMetaData(1u)->Set(vtkCompositeDataSet::NAME(), "Volumes");
  return 1;
}

//--------------------------------------------------------------------------------------------------
std::string vtkZYLVolumeSurfaceReader::GetDirectory() const
{
  std::string directory = vtksys::SystemTools::GetFilenamePath(this->FileName);
  if (directory.empty())
  {
    directory = "."; // a name without a directory is in the current one, not in the root
  }
  if (directory.back() != '/')
  {
    directory += '/';
  }
  return directory;
}

//--------------------------------------------------------------------------------------------------
void vtkZYLVolumeSurfaceReader::ReadSurface(
  const std::string& name, vtkInformation* request, vtkMultiBlockDataSet* block)
{
  using Pipeline = vtkStreamingDemandDrivenPipeline;
  vtkNew<vtkXMLMultiBlockDataReader> reader;
  reader->SetFileName(name.c_str());
  const int pieces = request->Has(Pipeline::UPDATE_NUMBER_OF_PIECES())
    ? request->Get(Pipeline::UPDATE_NUMBER_OF_PIECES())
    : 1;
  reader->UpdatePiece(
    pieces > 1 ? request->Get(Pipeline::UPDATE_PIECE_NUMBER()) : 0, std::max(pieces, 1), 0);
  if (auto* data = vtkMultiBlockDataSet::SafeDownCast(reader->GetOutputDataObject(0)))
  {
    block->ShallowCopy(data);
  }
}

//--------------------------------------------------------------------------------------------------
void vtkZYLVolumeSurfaceReader::ReadVolume(const std::string& name, vtkMultiBlockDataSet* block)
{
  Trace("", name);
  zylAMReXLayout layout;
  const std::string fault = zylCheckAMReXPlotfile(name, MaximumLevel, &layout);
  if (!fault.empty())
  {
    vtkErrorMacro("Could not read the volume '" << name << "'. " << fault);
  }
  if (!OnAllRanks(fault.empty()))
  {
    return;
  }
  vtkNew<zylAMReXGridReader> reader;
  reader->SetFileName(name.c_str());
  reader->SetLayout(std::move(layout));
  reader->DeferValues({ this->PartIdArrayName ? this->PartIdArrayName : "",
    this->LevelMaskArrayName ? this->LevelMaskArrayName : "" });
  reader->UpdateInformation();
  for (int i = 0; i < reader->GetNumberOfPointArrays(); ++i)
  {
    reader->SetPointArrayStatus(reader->GetPointArrayName(i), 1);
  }
  for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i)
  {
    reader->SetCellArrayStatus(reader->GetCellArrayName(i), 1);
  }
  reader->SetMaxLevel(MaximumLevel);

  vtkNew<PlotfileParts> parts;
  parts->Reader = reader;
  parts->SetInputConnection(reader->GetOutputPort(0));
  parts->SetPartIdArrayName(this->PartIdArrayName);
  parts->SetLevelMaskArrayName(this->LevelMaskArrayName);
  parts->Update();
  block->ShallowCopy(parts->GetOutput());
}
