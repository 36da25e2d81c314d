/// @file zylProcessingChain.h
/// The stages between a source and what is shown of it.
///
///     source -> ForceTime -> [ExtractTimeSteps] -> [GroupDataSets | conversion] -> [Threshold] ->
///     [RedistributeDataSet]
///            -> [CellDataToPointData] -> PassThrough
///
/// The data that leave the chain are those of one time step, whatever time is asked of it: while
/// the animation stands between two steps, ExtractTimeSteps holds the one that is shown.
///
/// Behind the third stage the data are a multiblock dataset whose leaves are datasets or null: a
/// dataset is grouped; what is neither a dataset nor a multiblock dataset of them is converted by
/// vtkZYLConvertToMultiBlock, or by ParaView's own filters on a server without the library's
/// plugin.
///
///     chain.Connect(reader, settings, { shown, active, frozen });
///     chain.Execute();
///
/// Private to the library.
#ifndef zylProcessingChain_h
#define zylProcessingChain_h

#include "Plugins/VTKExtensions/Core/vtkZYLBlockInformation.h"
#include "zylExport.h"

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkSMSourceProxy;
class zylPropertyCollection;

/// The value nearest to `time`, the first of equally near ones; 0 without values.
ZYL_PRIVATE double zylSnapToStep(double time, const std::vector<double>& values);

class ZYL_PRIVATE zylProcessingChain
{
public:
  struct Times
  {
    double Shown;  ///< the time step to show
    double Active; ///< the animation's time, at which consumers ask
    double Frozen; ///< the time step to show while time is frozen
  };

  /// Connect the stages as `settings` say (the table in zylDataSet.h) behind `source`, which is
  /// executed to learn its type. False when a stage could not be made.
  bool Connect(vtkSMSourceProxy* source, zylPropertyCollection* settings, const Times& times);

  /// Execute what was connected.
  void Execute();

  /// Whether `source` has time steps of its own, as far as this process knows.
  static bool HasTimeSteps(vtkSMSourceProxy* source);

  /// The end of the chain (borrowed); null before Connect().
  vtkSMSourceProxy* GetOutput() const { return this->PassThroughProxy; }

  /// What the source gave, as GetBlockTypes() describes it, by flat index; in the output a block
  /// has the flat index + GetLevelsAdded().
  const std::vector<vtkZYLBlockInformation::Node>& GetSourceBlocks() const
  {
    return this->SourceBlocks;
  }
  unsigned int GetLevelsAdded() const { return this->LevelsAdded; }

  /// Why the source's data could not be made drawable; empty when they could.
  const std::string& GetProblem() const { return this->Problem; }

  /// The source's blocks as a multiblock dataset, before any stage takes cells away (borrowed);
  /// null before Connect().
  vtkSMSourceProxy* GetBlockSource() const { return this->BlockSource; }

  /// Drop all stages.
  void Clear();

private:
  vtkSMSourceProxy* HoldStep(vtkSMSourceProxy* data, vtkSMSourceProxy* source, double step);
  vtkSMSourceProxy* MakeMultiBlock(vtkSMSourceProxy* data);
  vtkSMSourceProxy* ConvertWithoutPlugin(vtkSMSourceProxy* data, int type);
  vtkSMSourceProxy* Extract(vtkSMSourceProxy* data, const std::vector<int>& blocks);
  vtkSMSourceProxy* Stage(
    vtkSmartPointer<vtkSMSourceProxy>& stage, const char* name, vtkSMSourceProxy* input);

  vtkSmartPointer<vtkSMSourceProxy> ForceTimeProxy;
  vtkSmartPointer<vtkSMSourceProxy> HoldProxy;
  vtkSmartPointer<vtkSMSourceProxy> ConversionProxy; // its kind can change with the data
  vtkSmartPointer<vtkSMSourceProxy> GroupDataSetsProxy;
  vtkSmartPointer<vtkSMSourceProxy> ExtractProxy;
  vtkSmartPointer<vtkSMSourceProxy> ThresholdProxy;
  vtkSmartPointer<vtkSMSourceProxy> RedistributeProxy;
  vtkSmartPointer<vtkSMSourceProxy> CellDataToPointDataProxy;
  vtkSmartPointer<vtkSMSourceProxy> PassThroughProxy;
  vtkSmartPointer<vtkSMSourceProxy> BlockSource; // one of the stages
  unsigned int LevelsAdded = 0;
  double RequestTime = 0.0;
  std::string Problem;
  std::vector<vtkZYLBlockInformation::Node> SourceBlocks;
};

#endif
