// The plugin object, the command functions and the proxies, in a built-in session.
#include "VTKExtensionsPlugin.h"
#include "vtkZYLBlockInformation.h"

#include "ParaView/zylProxyBuilder.h"
#include "zylMultiBlockTree.h"
#include "zylPluginTestData.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <vtkAlgorithm.h>
#include <vtkAppendPolyData.h>
#include <vtkClientServerInterpreter.h>
#include <vtkClientServerInterpreterInitializer.h>
#include <vtkClientServerStream.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkPVArrayInformation.h>
#include <vtkPVDataInformation.h>
#include <vtkPVDataSetAttributesInformation.h>
#include <vtkPVPlugin.h>
#include <vtkPVServerManagerPluginInterface.h>
#include <vtkSMCoreUtilities.h>
#include <vtkSMProperty.h>
#include <vtkSMProxyListDomain.h>
#include <vtkSMSessionProxyManager.h>

namespace {
using testing::ElementsAre;

vtkSMSessionProxyManager* Manager()
{
  return zylCore::GetInstance()->GetSessionProxyManager();
}

zylProxyBuilder Builder(const char* group, const char* name)
{
  return zylProxyBuilder(Manager(), group, name);
}

vtkDataObject* Output(vtkSMProxy* proxy)
{
  vtkSMSourceProxy::SafeDownCast(proxy)->UpdatePipeline();
  return vtkAlgorithm::SafeDownCast(proxy->GetClientSideObject())->GetOutputDataObject(0);
}

std::vector<std::string> Missing(vtkSMProxy* proxy, std::initializer_list<const char*> names)
{
  std::vector<std::string> missing;
  for (const char* name : names)
  {
    if (!proxy->GetProperty(name))
    {
      missing.emplace_back(name);
    }
  }
  return missing;
}

// Calls a method of an object of `type` through its command function; the error text if it fails.
class Interpreter
{
public:
  explicit Interpreter(const char* type)
    : Type(type)
  {
    this->Object.TakeReference(this->Commands->NewInstance(type));
  }

  template <class... Arguments>
  std::string Call(const char* method, const Arguments&... arguments)
  {
    vtkClientServerStream message;
    message << vtkClientServerStream::Invoke << this->Object << method;
    using Expand = int[];
    (void)Expand{ 0, ((message << arguments), 0)... };
    message << vtkClientServerStream::End;
    vtkClientServerStream result;
    const int status =
      this->Commands->CallCommandFunction(this->Type, this->Object, method, message, result);
    if (status)
    {
      vtkObjectBase* made = nullptr;
      if (std::string(method) == "NewInstance" && result.GetArgument(0, 0, &made) && made)
      {
        made->Delete();
      }
      return "";
    }
    const char* text = nullptr;
    return result.GetArgument(0, 0, &text) && text ? text : "failed";
  }

private:
  vtkClientServerInterpreter* Commands =
    vtkClientServerInterpreterInitializer::GetGlobalInterpreter();
  const char* Type;
  vtkSmartPointer<vtkObjectBase> Object;
};
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(Plugin, Object)
{
  vtkPVPlugin* plugin = pv_plugin_instance_VTKExtensions();
  ASSERT_NE(plugin, nullptr);
  EXPECT_EQ(plugin, pv_plugin_instance_VTKExtensions());
  EXPECT_STREQ(plugin->GetPluginName(), "VTKExtensions");
  EXPECT_STREQ(plugin->GetPluginVersionString(), "1.0");
  EXPECT_TRUE(plugin->GetRequiredOnServer());
  EXPECT_STREQ(plugin->GetRequiredPlugins(), "");
  EXPECT_STREQ(plugin->GetDescription(), "ZYL custom VTK filters");
  auto* manager = dynamic_cast<vtkPVServerManagerPluginInterface*>(plugin);
  ASSERT_NE(manager, nullptr);
  std::vector<std::string> xmls;
  manager->GetXMLs(xmls);
  ASSERT_EQ(xmls.size(), 2u);
  EXPECT_NE(xmls[0].find("AMRPartThreshold"), std::string::npos);
  EXPECT_NE(xmls[1].find("ZYLVolumeSurfaceReader"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
TEST(Plugin, Definitions)
{
  vtkSMProxy* reader = Manager()->GetPrototypeProxy("sources", "ZYLVolumeSurfaceReader");
  ASSERT_NE(reader, nullptr);
  EXPECT_STREQ(reader->GetVTKClassName(), "vtkZYLVolumeSurfaceReader");
  EXPECT_EQ(zylText(reader, "PartIdArrayName"), "part_id");
  EXPECT_EQ(zylText(reader, "LevelMaskArrayName"), "level_mask");
  EXPECT_EQ(reader->GetProperty("FileName")->GetAnimateable(), 0);
  EXPECT_STREQ(vtkSMCoreUtilities::GetFileNameProperty(reader), "FileName");

  vtkSMProxy* filter = Manager()->GetPrototypeProxy("filters", "AMRPartThreshold");
  ASSERT_NE(filter, nullptr);
  EXPECT_STREQ(filter->GetVTKClassName(), "vtkAMRExtractLabeledBlocks");
  EXPECT_THAT(
    Missing(filter, { "Input", "PartIdArrayName", "PartLevelMaskArrayName" }), ElementsAre());
}

//--------------------------------------------------------------------------------------------------
TEST(Plugin, CommandFunctions)
{
  for (const char* type : { "vtkAMRExtractLabeledBlocks", "vtkZYLVolumeSurfaceReader" })
  {
    Interpreter object(type);
    EXPECT_EQ(object.Call("IsA", "vtkMultiBlockDataSetAlgorithm"), "");
    EXPECT_EQ(object.Call("IsTypeOf", "vtkAlgorithm"), "");
    EXPECT_EQ(object.Call("GetNumberOfGenerationsFromBase", "vtkObject"), "");
    EXPECT_EQ(object.Call("GetNumberOfGenerationsFromBaseType", "vtkObject"), "");
    EXPECT_EQ(object.Call("SetPartIdArrayName", "a"), "");
    EXPECT_EQ(object.Call("SetLevelMaskArrayName", "b"), "");
    for (const char* method : { "GetClassName", "NewInstance", "GetPartIdArrayName",
           "GetLevelMaskArrayName", "GetNumberOfOutputPorts" }) // the last one of a superclass
    {
      EXPECT_EQ(object.Call(method), "") << method;
    }
    EXPECT_EQ(object.Call("NoSuchMethod"),
      std::string("Object type: ") + type +
        ", could not find requested method: \"NoSuchMethod\"\n"
        "or the method was called with incorrect arguments.\n");
  }
  Interpreter reader("vtkZYLVolumeSurfaceReader");
  EXPECT_EQ(reader.Call("SetFileName", "x.json"), "");
  EXPECT_EQ(reader.Call("GetFileName"), "");
}

//--------------------------------------------------------------------------------------------------
TEST(Plugin, DataSetStepsThroughTheIndex)
{
  const std::filesystem::path directory = zylTestData::MakeFolder();
  for (int i = 0; i < 3; ++i)
  {
    zylWriteSmallPlotfile(directory / ("plt" + std::to_string(i)), 10.0 * i);
    zylWriteSurface(directory / ("s" + std::to_string(i) + ".vtm"), 1.0 + i);
  }
  std::string steps;
  for (int i = 0; i < 3; ++i)
  {
    const std::string n = std::to_string(i);
    steps += (i ? ",{" : "{") + ("\"time\":" + std::to_string(2 * i)) +
      R"(,"surface":{"fileType":"VTM","fileName":"s)" + n +
      R"(.vtm"},"volume":{"fileType":"AMReXGrid","fileName":"plt)" + n + "\"}}";
  }
  zylTestData::WriteFile(directory / "case.json", "{\"timesteps\":[" + steps + "]}");

  vtkNew<zylDataSet> data;
  ASSERT_TRUE(data->LoadFromFile({ directory / "case.json" }, "sources", "ZYLVolumeSurfaceReader"));
  EXPECT_EQ(data->GetTimestepValues(), (std::vector<double>{ 0, 2, 4 }));
  EXPECT_EQ(data->GetFileNames(), std::vector<std::string>{ directory / "case.json" });
  zylMultiBlockTree* tree = data->GetMultiBlockTree();
  ASSERT_EQ(tree->GetNumberOfChildren(), 2u);
  EXPECT_EQ(tree->GetChild(0)->GetBlockName(), "Surfaces");
  EXPECT_EQ(tree->GetChild(1)->GetBlockName(), "Volumes");
  EXPECT_EQ(tree->GetChild(1)->GetNumberOfChildren(), 2u);
  EXPECT_EQ(data->GetNumberOfCells(), zylSmallPlotfileCells + 1);

  for (int i : { 0, 2, 1 })
  {
    zylTimeController::GetInstance()->GoToTime(2.0 * i);
    data->Update();
    EXPECT_EQ(zylBounds(data)[1], 1.0 + i);
  }
  zylTimeController::GetInstance()->GoToTime(0.0);
}

//--------------------------------------------------------------------------------------------------
TEST(Plugin, AMRPartThreshold)
{
  const std::filesystem::path directory = zylTestData::MakeFolder();
  zylWriteSmallPlotfile(directory / "plt");
  auto reader =
    Builder("sources", "AMReXGridReader").Set("FileNames", (directory / "plt").c_str()).Make();
  ASSERT_NE(reader, nullptr);
  reader->UpdatePipelineInformation();
  vtkSMPropertyHelper status(reader, "CellArrayStatus");
  const char* const arrays[] = { "value", "part_id", "level_mask" };
  for (unsigned int i = 0; i < 3; ++i)
  {
    status.SetStatus(arrays[i], 1);
  }
  reader->UpdateVTKObjects();
  reader->UpdatePipeline();
  auto parts = Builder("filters", "AMRPartThreshold").Input(reader).Make();
  ASSERT_NE(parts, nullptr);
  EXPECT_EQ(zylText(parts, "PartIdArrayName"), "part_id");
  EXPECT_EQ(zylText(parts, "PartLevelMaskArrayName"), "level_mask");
  auto* output = vtkMultiBlockDataSet::SafeDownCast(Output(parts));
  ASSERT_NE(output, nullptr);
  EXPECT_EQ(output->GetNumberOfBlocks(), 2u);
  EXPECT_EQ(output->GetNumberOfCells(), zylSmallPlotfileCells);
  vtkSMPropertyHelper(parts, "PartLevelMaskArrayName").Set("None");
  parts->UpdateVTKObjects();
  output = vtkMultiBlockDataSet::SafeDownCast(Output(parts));
  EXPECT_EQ(output->GetNumberOfCells(), 1024); // both levels
  zylUnregister(parts);
  zylUnregister(reader);
}

//--------------------------------------------------------------------------------------------------
namespace {
// A composite dataset of tetrahedra, hexahedra and others with "RTData", from ParaView's sources;
// a filter of it and one of ParaView's that does the same.
class CoreProxies : public testing::Test
{
protected:
  using Source = vtkSmartPointer<vtkSMSourceProxy>;

  void TearDown() override
  {
    for (vtkSMProxy* proxy : { this->Ours.Get(), this->Theirs.Get(), this->Blocks.Get(),
           this->Tetrahedra.Get(), this->Wavelet.Get() })
    {
      zylUnregister(proxy);
    }
  }
  void Make(const char* ours, vtkSMSourceProxy* input, const char* theirs)
  {
    this->Blocks->UpdatePipeline();
    this->Ours = Builder("filters", ours).Input(input).Make();
    this->Theirs = Builder("filters", theirs).Input(this->Tetrahedra).Make();
    ASSERT_TRUE(this->Ours && this->Theirs);
  }

  Source Wavelet = Builder("sources", "RTAnalyticSource").Make();
  Source Tetrahedra = Builder("filters", "DataSetTriangleFilter").Input(this->Wavelet).Make();
  Source Blocks = Builder("filters", "GroupDataSets").Input(this->Tetrahedra).Make();
  Source Ours, Theirs;
};

struct Measures
{
  double Area = 0.0;
  vtkIdType Cells = 0;
  vtkIdType Points = 0;
  std::vector<double> Bounds;
};

Measures Measure(vtkSMProxy* proxy)
{
  Measures result;
  vtkNew<vtkAppendPolyData> append;
  vtkDataObject* output = Output(proxy);
  if (auto* blocks = vtkCompositeDataSet::SafeDownCast(output))
  {
    auto iterator = vtkSmartPointer<vtkCompositeDataIterator>::Take(blocks->NewIterator());
    for (iterator->InitTraversal(); !iterator->IsDoneWithTraversal(); iterator->GoToNextItem())
    {
      append->AddInputDataObject(iterator->GetCurrentDataObject());
    }
  }
  else
  {
    append->AddInputDataObject(output);
  }
  append->Update();
  vtkPolyData* surface = append->GetOutput();
  vtkNew<vtkIdList> ids;
  double a[3], b[3], c[3], cross[3];
  for (vtkIdType i = 0; i < surface->GetNumberOfCells(); ++i)
  {
    surface->GetCellPoints(i, ids);
    for (vtkIdType k = 2; k < ids->GetNumberOfIds(); ++k)
    {
      surface->GetPoint(ids->GetId(0), a);
      surface->GetPoint(ids->GetId(k - 1), b);
      surface->GetPoint(ids->GetId(k), c);
      vtkMath::Subtract(b, a, b);
      vtkMath::Subtract(c, a, c);
      vtkMath::Cross(b, c, cross);
      result.Area += 0.5 * vtkMath::Norm(cross);
    }
  }
  result.Cells = surface->GetNumberOfCells();
  result.Points = surface->GetNumberOfPoints();
  result.Bounds.assign(surface->GetBounds(), surface->GetBounds() + 6);
  return result;
}

void ExpectSame(const Measures& ours, const Measures& theirs, bool cells = true)
{
  EXPECT_GT(theirs.Cells, 0);
  EXPECT_TRUE(!cells || ours.Cells == theirs.Cells) << ours.Cells << ", not " << theirs.Cells;
  EXPECT_NEAR(ours.Area, theirs.Area, 1e-4 * theirs.Area);
  for (int i = 0; i < 6; ++i)
  {
    EXPECT_NEAR(ours.Bounds[i], theirs.Bounds[i], 1e-5);
  }
}

// The function `name` of the list that `proxy` offers for "CutFunction", made the one in use.
vtkSMProxy* Choose(vtkSMProxy* proxy, const char* name)
{
  vtkSMProperty* property = proxy->GetProperty("CutFunction");
  auto* list = property->FindDomain<vtkSMProxyListDomain>();
  for (unsigned int i = 0; list && i < list->GetNumberOfProxies(); ++i)
  {
    if (std::string(list->GetProxy(i)->GetXMLName()) == name)
    {
      vtkSMPropertyHelper(property).Set(list->GetProxy(i));
      return list->GetProxy(i);
    }
  }
  return nullptr;
}

void SetPlane(vtkSMProxy* proxy)
{
  vtkSMProxy* plane = Choose(proxy, "Plane");
  ASSERT_NE(plane, nullptr);
  const double origin[3] = { 0.31, 0.0, 0.0 };
  const double normal[3] = { 1.0, 0.3, 0.2 };
  vtkSMPropertyHelper(plane, "Origin").Set(origin, 3);
  vtkSMPropertyHelper(plane, "Normal").Set(normal, 3);
  plane->UpdateVTKObjects();
  proxy->UpdateVTKObjects();
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, ContourAgreesWithParaViews)
{
  this->Make("LinearCellUnstructuredGridContour", this->Blocks, "Contour");
  EXPECT_THAT(
    Missing(this->Ours,
      { "SelectInputScalars", "ComputeNormals", "MergePoints", "InterpolateAttributes",
        "UseScalarTree", "OutputPointsPrecision", "ForceSequentialProcessing", "ContourValues" }),
    ElementsAre());
  EXPECT_EQ(zylNumbers(this->Ours, { "OutputPointsPrecision", "ComputeNormals", "MergePoints" }),
    (zylValues{ 2, 1, 0 }));
  for (vtkSMProxy* proxy : { this->Ours.Get(), this->Theirs.Get() })
  {
    vtkSMPropertyHelper(proxy, "SelectInputScalars")
      .SetInputArrayToProcess(vtkDataObject::FIELD_ASSOCIATION_POINTS, "RTData");
    const double values[2] = { 130.0, 200.0 };
    vtkSMPropertyHelper(proxy, "ContourValues").Set(values, 2);
    proxy->UpdateVTKObjects();
  }
  ExpectSame(Measure(this->Ours), Measure(this->Theirs));
  for (const char* name : { "MergePoints", "InterpolateAttributes", "ForceSequentialProcessing" })
  {
    vtkSMPropertyHelper(this->Ours, name).Set(1);
  }
  this->Ours->UpdateVTKObjects();
  const Measures merged = Measure(this->Ours);
  ExpectSame(merged, Measure(this->Theirs));
  EXPECT_LT(merged.Points, merged.Cells); // triangles share their points
}

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, PlaneCutAgreesWithParaViews)
{
  this->Make("LinearCellPlaneCutter", this->Blocks, "Cut");
  EXPECT_EQ(
    zylNumbers(this->Ours, { "MergePoints", "InterpolateAttributes" }), (zylValues{ 1, 0 }));
  SetPlane(this->Ours);
  SetPlane(this->Theirs);
  ExpectSame(Measure(this->Ours), Measure(this->Theirs), false); // theirs has larger polygons
}

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, CrinkleCutTakesTheCellsThatAreCut)
{
  this->Make("LinearCellCrinkleCutter", this->Tetrahedra, "Cut");
  for (const char* name : { "Plane", "Box", "Sphere", "Cylinder" })
  {
    EXPECT_NE(Choose(this->Ours, name), nullptr) << name;
  }
  EXPECT_EQ(zylNumbers(this->Ours, { "CopyPointData", "CopyCellData", "RemoveUnusedPoints" }),
    (zylValues{ 1, 1, 0 }));
  SetPlane(this->Ours);
  SetPlane(this->Theirs);
  vtkSMPropertyHelper(this->Theirs, "PreserveInputCells", true).Set(1);
  this->Theirs->UpdateVTKObjects();
  auto* cells = vtkDataSet::SafeDownCast(Output(this->Ours));
  auto* expected = vtkDataSet::SafeDownCast(Output(this->Theirs));
  ASSERT_TRUE(cells && expected);
  EXPECT_GT(cells->GetNumberOfCells(), 0);
  EXPECT_EQ(cells->GetNumberOfCells(), expected->GetNumberOfCells());
  EXPECT_NE(cells->GetPointData()->GetArray("RTData"), nullptr);
}

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, SurfaceAgreesWithParaViews)
{
  this->Make("SurfaceGeometryFilter", this->Blocks, "DataSetSurfaceFilter");
  ExpectSame(Measure(this->Ours), Measure(this->Theirs));
  EXPECT_NEAR(Measure(this->Ours).Area, 6 * 20 * 20, 1e-3);
}

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, ExtractBlockKeepsFlatIndices)
{
  auto extract = Builder("filters", "ExtractBlock")
                   .Input(this->Blocks)
                   .Set("BlockIndices", std::vector<int>{ 1 })
                   .Set("PruneOutput", 0)
                   .Set("MaintainStructure", 1)
                   .Make();
  ASSERT_NE(extract, nullptr);
  EXPECT_STREQ(extract->GetVTKClassName(), "vtkExtractBlock");
  EXPECT_NE(Output(extract), nullptr);
  zylUnregister(extract);
}

//--------------------------------------------------------------------------------------------------
TEST_F(CoreProxies, BlockInformationLikeParaViews)
{
  this->Blocks->UpdatePipeline();
  vtkNew<vtkZYLBlockInformation> info;
  this->Blocks->GatherInformation(info);
  vtkPVDataInformation* expected = this->Blocks->GetDataInformation(0);
  const auto& root = info->GetNodes().at(0);
  EXPECT_EQ(root.NumberOfCells, expected->GetNumberOfCells());
  EXPECT_EQ(root.NumberOfPoints, expected->GetNumberOfPoints());
  EXPECT_EQ(root.PointArrays.size(),
    static_cast<std::size_t>(expected->GetPointDataInformation()->GetNumberOfArrays()));
  double range[2];
  expected->GetPointDataInformation()->GetArrayInformation("RTData")->GetComponentRange(0, range);
  EXPECT_EQ(root.PointArrays.at(0).Name, "RTData");
  EXPECT_EQ(root.PointArrays.at(0).Ranges, std::vector<double>(range, range + 2));
  double bounds[6];
  expected->GetBounds(bounds);
  EXPECT_TRUE(std::equal(bounds, bounds + 6, root.Bounds));
}
