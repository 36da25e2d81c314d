/// @file zylPipelineFixture.h
/// Data for pipelines and questions about what they made.
#ifndef zylPipelineFixture_h
#define zylPipelineFixture_h

#include "zylView.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vtkSmartPointer.h>

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

///@{
/// Values of a proxy property.
double zylNumber(vtkSMProxy* proxy, const char* property, unsigned int index = 0);
std::vector<double> zylNumbers(vtkSMProxy* proxy, const char* property);
std::string zylText(vtkSMProxy* proxy, const char* property, unsigned int index = 0);
///@}

/// How many proxies are registered, by group, such as "sources 5\n". Empty groups are left out.
std::string zylRegisteredProxies();

/// What `action` asks of the server of the built-in session: the log of its interpreter.
std::string zylTrafficBegin();
std::string zylTrafficEnd();
template <class Action>
std::string zylTraffic(Action action)
{
  zylTrafficBegin();
  action();
  return zylTrafficEnd();
}

/// A row of three cubes, 1, 2 and 3, and a view.
class zylPipelineTest : public ::testing::Test
{
protected:
  void SetUp() override;

  /// Show the blocks of these flat indices.
  void Show(zylPipeline* pipeline, const std::vector<int>& visible = { 1, 2, 3 });

  /// The color legend of a pipeline (borrowed), or null.
  vtkSMProxy* ScalarBar(zylPipeline* pipeline);

  std::unique_ptr<zylSurfaces> Surfaces;
  vtkSmartPointer<zylView> View;
};

#endif
