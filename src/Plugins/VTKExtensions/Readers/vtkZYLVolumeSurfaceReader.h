/**
 * @class vtkZYLVolumeSurfaceReader
 * @brief Reads a JSON index of volume and surface files, one pair per time step.
 *
 * The index (see zylTimeStepIndex.h) lists for each time a surface, a "VTM" file, and a volume, an
 * "AMReXGrid" plotfile. The output is a multiblock with two blocks, "Surfaces" with the blocks of
 * the surface file and "Volumes" with one unstructured grid per part of the volume (see
 * vtkAMRExtractLabeledBlocks). A block whose file is absent, of another type or unusable is there
 * and empty. The step nearest to the requested time is read, of two equally near ones the first.
 *
 * Errors go through the error macro. Without a usable index RequestInformation fails; elements of
 * the index that cannot be used are reported and left out; a plotfile that cannot be read whole is
 * reported and left out. TIME_RANGE always contains 0.
 *
 * With several server ranks each rank has its share of the surface's blocks and of the volume's
 * boxes; the block structure is the same on all.
 */
#ifndef vtkZYLVolumeSurfaceReader_h
#define vtkZYLVolumeSurfaceReader_h

#include "vtkMultiBlockDataSetAlgorithm.h"
#include "zylExport.h"

#ifndef __VTK_WRAP__
#include "zylTimeStepIndex.h"

#include <string>
#include <vector>
#endif

class vtkMultiBlockDataSet;

class ZYL_PRIVATE vtkZYLVolumeSurfaceReader : public vtkMultiBlockDataSetAlgorithm
{
public:
  static vtkZYLVolumeSurfaceReader* New();
  vtkTypeMacro(vtkZYLVolumeSurfaceReader, vtkMultiBlockDataSetAlgorithm);
  void PrintSelf(ostream& os, vtkIndent indent) override;

  ///@{
  /// Path of the index. Null at first.
  vtkSetStringMacro(FileName);
  vtkGetStringMacro(FileName);
  ///@}

  ///@{
  /// Name of the volume's cell array with the part numbers. Null at first: no parts.
  vtkSetStringMacro(PartIdArrayName);
  vtkGetStringMacro(PartIdArrayName);
  ///@}

  ///@{
  /// Name of the volume's cell array that is 1 where no finer level covers the cell. Null at first:
  /// all levels are kept.
  vtkSetStringMacro(LevelMaskArrayName);
  vtkGetStringMacro(LevelMaskArrayName);
  ///@}

protected:
  vtkZYLVolumeSurfaceReader();
  ~vtkZYLVolumeSurfaceReader() override;

  int RequestInformation(vtkInformation* request, vtkInformationVector** inputVector,
    vtkInformationVector* outputVector) override;
  int RequestData(vtkInformation* request, vtkInformationVector** inputVector,
    vtkInformationVector* outputVector) override;

private:
  vtkZYLVolumeSurfaceReader(const vtkZYLVolumeSurfaceReader&) = delete;
  void operator=(const vtkZYLVolumeSurfaceReader&) = delete;

#ifndef __VTK_WRAP__
  std::string GetDirectory() const;
  void ReadSurface(const std::string& name, vtkInformation* request, vtkMultiBlockDataSet* block);
  void ReadVolume(const std::string& name, vtkMultiBlockDataSet* block);

  std::vector<zylTimeStep> TimeSteps;
#endif
  char* FileName = nullptr;
  char* PartIdArrayName = nullptr;
  char* LevelMaskArrayName = nullptr;
};

#endif
