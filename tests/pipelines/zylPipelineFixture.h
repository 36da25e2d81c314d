/// @file zylPipelineFixture.h
/// Data for pipelines and questions about what they made.
#ifndef zylPipelineFixture_h
#define zylPipelineFixture_h

#include "zylTest.h"
#include "zylView.h"

class vtkMultiBlockDataSet;
class vtkSMProxy;
class vtkSMSourceProxy;
class zylDataSet;
class zylPipeline;

/// The surfaces of a dataset's blocks, as representations feed them to their pipelines.
struct zylSurfaces
{
  explicit zylSurfaces(vtkMultiBlockDataSet* data);
  ~zylSurfaces();

  vtkSmartPointer<zylDataSet> DataSet;
  vtkSmartPointer<vtkSMSourceProxy> Source;
};

/// Give `pipeline` the surfaces and make the blocks of these flat indices visible.
void zylShow(zylPipeline* pipeline, const zylSurfaces& surfaces, const std::vector<int>& visible);

/// Replace "BlockVisibility".
void zylSetBlocks(zylPipeline* pipeline, const std::vector<int>& pairs);

/// A row of three cubes, 1, 2 and 3, and a view.
class zylPipelineTest : public ::testing::Test
{
protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();
  void SetUp() override;

  /// Show the blocks of these flat indices.
  void Show(zylPipeline* pipeline, const std::vector<int>& visible = { 1, 2, 3 });

  /// The color legend of a pipeline (borrowed), or null.
  vtkSMProxy* ScalarBar(zylPipeline* pipeline);

  static std::unique_ptr<zylSurfaces> Surfaces; // of all tests
  vtkSmartPointer<zylView> View;
};

#endif
