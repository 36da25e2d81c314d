/// @file zylProcessingChain.h
/// The stages between a source and what is shown of it.
///
///     source -> ForceTime -> [GroupDataSets] -> [Threshold] -> [RedistributeDataSet]
///            -> [CellDataToPointData] -> PassThrough
///
///     chain.Connect(reader, settings, time, frozenTime);
///     chain.GetOutput()->UpdatePipeline(time);
///
/// Private to the library.
#ifndef zylProcessingChain_h
#define zylProcessingChain_h

#include "zylExport.h"

#include <vtkSmartPointer.h>

class vtkSMSourceProxy;
class zylPropertyCollection;

class ZYL_PRIVATE zylProcessingChain
{
public:
  /// Connect the stages as `settings` say (the table in zylDataSet.h) behind `source`, which is
  /// executed at `time` to learn its type. While time is frozen, `frozenTime` is shown. False when
  /// a stage could not be made.
  bool Connect(
    vtkSMSourceProxy* source, zylPropertyCollection* settings, double time, double frozenTime);

  /// The end of the chain (borrowed); null before Connect().
  vtkSMSourceProxy* GetOutput() const { return this->PassThroughProxy; }

  /// Drop all stages.
  void Clear();

private:
  vtkSMSourceProxy* Stage(
    vtkSmartPointer<vtkSMSourceProxy>& stage, const char* name, vtkSMSourceProxy* input);

  vtkSmartPointer<vtkSMSourceProxy> ForceTimeProxy;
  vtkSmartPointer<vtkSMSourceProxy> GroupDataSetsProxy;
  vtkSmartPointer<vtkSMSourceProxy> ThresholdProxy;
  vtkSmartPointer<vtkSMSourceProxy> RedistributeProxy;
  vtkSmartPointer<vtkSMSourceProxy> CellDataToPointDataProxy;
  vtkSmartPointer<vtkSMSourceProxy> PassThroughProxy;
};

#endif
