#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylClipPipelineHelper.h"
#include "zylMultiClip.h"
#include "zylPipelineFixture.h"
#include "zylTest.h"
#include "zylTimeController.h"

#include <vtkTransform.h>

namespace {
using Values = zylValues;

enum Mode
{
  None,
  Scalar,
  Plane,
  Box,
  Cylinder,
  Sphere
};

// Bounds of what comes out; empty when nothing does.
Values Bounds(vtkSMSourceProxy* source)
{
  zylUpdatePipeline(source, zylTimeController::GetInstance()->GetActiveTime());
  const auto blocks = zylParaView::GetBlocks(source);
  Values bounds;
  for (const auto& block : blocks)
  {
    const double* b = block.Bounds;
    if (block.NumberOfChildren > 0 || b[0] > b[1])
    {
      continue;
    }
    bounds = bounds.empty() ? Values(b, b + 6) : bounds;
    for (int i = 0; i < 6; i += 2)
    {
      bounds[i] = std::min(bounds[i], b[i]);
      bounds[i + 1] = std::max(bounds[i + 1], b[i + 1]);
    }
  }
  for (double& value : bounds)
  {
    value = std::round(value * 1000) / 1000;
  }
  return bounds;
}
} // namespace

// Three cubes along x, with "pressure" = x.
class zylClipTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    this->DataSet = zylLoad(
      zylTestData::Write(zylTestData::MakeRow(3, 6), zylTestData::MakeFolder() + "/row.vtm"));
    this->Clip->SetInput(this->DataSet->GetOutput());
    this->Settings = this->Clip->GetProperties();
  }

  Values BoundsOf(int mode)
  {
    this->Settings->Set("ClipMode", mode);
    vtkSMSourceProxy* output = this->Clip->GetOutput();
    this->Clip->Update();
    return Bounds(output);
  }

  vtkSMProxy* Shown() { return vtkSMPropertyHelper(this->Clip->GetOutput(), "Input").GetAsProxy(); }

  vtkSmartPointer<zylDataSet> DataSet;
  vtkNew<zylClipPipelineHelper> Clip;
  zylPropertyCollection* Settings = nullptr;
};

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, NoneMakesNoClip)
{
  EXPECT_EQ(this->BoundsOf(None), (Values{ 0, 3, 0, 1, 0, 1 }));
  EXPECT_EQ(this->Shown(), this->DataSet->GetOutput());
  this->BoundsOf(77); // unknown
  EXPECT_EQ(this->Shown(), this->DataSet->GetOutput());
  EXPECT_EQ(zylRegisteredProxies().find("implicit"), std::string::npos);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, EachModeKeepsItsPart)
{
  zylSet(this->Settings, "ScalarVariable", "pressure", "ScalarLowerThreshold", 0.5,
    "ScalarUpperThreshold", 2.25);
  for (const bool invert : { true, false })
  {
    this->Settings->Set("Invert", invert);
    EXPECT_EQ(this->BoundsOf(Scalar), (Values{ 0.5, 2.25, 0, 1, 0, 1 }));
  }
  zylSet(this->Settings, "PlaneCenter", Values{ 1.25, 0, 0 });
  EXPECT_EQ(this->BoundsOf(Plane), (Values{ 1.25, 3, 0, 1, 0, 1 }));
  this->Settings->Set("Invert", true);
  EXPECT_EQ(this->BoundsOf(Plane), (Values{ 0, 1.25, 0, 1, 0, 1 }));
  zylSet(this->Settings, "BoxPosition", Values{ 0.5, 0.25, -1 }, "BoxLength", Values{ 1, 0.5, 3 });
  EXPECT_EQ(this->BoundsOf(Box), (Values{ 0.5, 1.5, 0.25, 0.75, 0, 1 }));
  zylSet(this->Settings, "CylinderCenter", Values{ 1.5, 0.5, 0.5 }, "CylinderAxis",
    Values{ 0, 0, 1 }, "CylinderRadius", 0.3);
  const Values cylinder = this->BoundsOf(Cylinder);
  EXPECT_NEAR(cylinder[0], 1.2, 0.03);
  EXPECT_NEAR(cylinder[3], 0.8, 0.03);
  EXPECT_EQ(cylinder[5], 1.0);
  zylSet(this->Settings, "SphereCenter", Values{ 1.5, 0.5, 0.5 }, "SphereRadius", 0.4);
  const Values sphere = this->BoundsOf(Sphere);
  EXPECT_NEAR(sphere[1], 1.9, 0.03);
  EXPECT_NEAR(sphere[5], 0.9, 0.03);
  EXPECT_EQ(this->BoundsOf(None), (Values{ 0, 3, 0, 1, 0, 1 }));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, ExactStaysOn)
{
  this->BoundsOf(Plane);
  EXPECT_EQ(zylNumber(this->Shown(), "Exact"), 0.0);
  this->BoundsOf(Box);
  this->BoundsOf(Plane);
  EXPECT_EQ(zylNumber(this->Shown(), "Exact"), 1.0);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, DegenerateShapesDoNoHarm)
{
  zylSet(this->Settings, "PlaneCenter", Values{ 1, 0, 0 });
  const Values good = this->BoundsOf(Plane);
  zylTestLog log;
  zylSet(this->Settings, "PlaneNormal", Values{ 0, 0, 0 });
  EXPECT_EQ(this->BoundsOf(Plane), good);
  EXPECT_TRUE(log.HasWarning("'PlaneNormal' has no direction"));
  zylSet(this->Settings, "CylinderAxis", Values{ 0, 0, 0 });
  this->BoundsOf(Cylinder);
  zylSet(this->Settings, "BoxLength", Values{ 0, 0, 0 });
  this->BoundsOf(Box);
  this->Settings->Set("SphereRadius", -1.0);
  this->BoundsOf(Sphere);
  this->Settings->Set("ScalarVariable", "no such array");
  this->BoundsOf(Scalar);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  zylSet(this->Settings, "PlaneNormal", Values{ nan, nan, nan });
  EXPECT_EQ(this->BoundsOf(Plane), good);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, AnUpdateWithoutChangesSendsNothing)
{
  for (const int mode : { None, Scalar, Plane, Box, Cylinder, Sphere })
  {
    this->BoundsOf(mode);
    EXPECT_EQ(zylTraffic([this] { this->Clip->Update(); }), "") << mode;
  }
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, AChainOfClips)
{
  const std::string before = zylRegisteredProxies();
  {
    vtkNew<zylMultiClip> clips;
    zylTestLog log;
    EXPECT_EQ(clips->GetOutput(), nullptr);
    clips->Update();
    EXPECT_EQ(log.CountErrors("No Input"), 2);
    vtkNew<zylClipPipelineHelper> alone;
    EXPECT_EQ(alone->GetOutput(), nullptr);
    alone->Update();
    EXPECT_TRUE(log.HasError("Input must be set before Output is retrieved"));

    clips->SetInput(this->DataSet->GetOutput());
    vtkSMSourceProxy* output = clips->GetOutput();
    EXPECT_EQ(Bounds(output), (Values{ 0, 3, 0, 1, 0, 1 }));
    clips->SetNumberOfClips(2);
    EXPECT_EQ(clips->GetNumberOfClips(), 2);
    EXPECT_EQ(clips->GetProperties(-1), nullptr);
    EXPECT_EQ(clips->GetProperties(2), nullptr);
    zylSet(clips->GetProperties(0), "ClipMode", int(Plane), "PlaneCenter", Values{ 2.5, 0, 0 });
    zylSet(clips->GetProperties(1), "ClipMode", int(Plane), "PlaneCenter", Values{ 0.5, 0, 0 },
      "Invert", false);
    clips->Update();
    EXPECT_EQ(clips->GetOutput(), output);
    EXPECT_EQ(Bounds(output), (Values{ 0.5, 2.5, 0, 1, 0, 1 }));
    EXPECT_EQ(zylTraffic([&] { clips->Update(); }), "");
    clips->SetNumberOfClips(1);
    clips->Update();
    EXPECT_EQ(Bounds(output), (Values{ 0, 2.5, 0, 1, 0, 1 }));
    clips->SetNumberOfClips(-4);
    clips->Update();
    EXPECT_EQ(Bounds(output), (Values{ 0, 3, 0, 1, 0, 1 }));
  }
  EXPECT_EQ(zylRegisteredProxies(), before);
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylClipTest, ManyClips)
{
  vtkNew<zylMultiClip> clips;
  clips->SetInput(this->DataSet->GetOutput());
  clips->SetNumberOfClips(10000);
  EXPECT_EQ(clips->GetProperties(9999)->GetInt("ClipMode"), 0);
  clips->SetNumberOfClips(100);
  clips->Update();
  EXPECT_EQ(Bounds(clips->GetOutput()), (Values{ 0, 3, 0, 1, 0, 1 }));
  clips->SetNumberOfClips(0);
  clips->Update();
  clips->SetInput(nullptr);
  EXPECT_EQ(clips->GetOutput(), nullptr);
}

//--------------------------------------------------------------------------------------------------
TEST(zylClipBox, ParametersFromPoints)
{
  const double points[] = { 0, 0, 0, 2, 0, 0, 0, 0, -3, 0, 1, 0 };
  double position[3];
  double rotation[3];
  double length[3];
  zylClipPipelineHelper::ComputeBoxParameters(points, position, rotation, length);
  EXPECT_EQ(Values(position, position + 3), (Values{ 0, 0, 0 }));
  EXPECT_EQ(Values(length, length + 3), (Values{ 2, 1, 3 }));
  for (const double angle : rotation)
  {
    EXPECT_NEAR(angle, 0.0, 1e-9);
  }

  // Rotated by known angles in the toolkit's order, about y, x and z, and shifted.
  vtkNew<vtkTransform> transform;
  transform->Translate(5, 6, 7);
  transform->RotateZ(30);
  transform->RotateX(20);
  transform->RotateY(10);
  double moved[12];
  for (int i = 0; i < 4; ++i)
  {
    transform->TransformPoint(points + 3 * i, moved + 3 * i);
  }
  zylClipPipelineHelper::ComputeBoxParameters(moved, position, rotation, length);
  EXPECT_EQ(Values(position, position + 3), (Values{ 5, 6, 7 }));
  EXPECT_NEAR(rotation[0], 20, 1e-9);
  EXPECT_NEAR(rotation[1], 10, 1e-9);
  EXPECT_NEAR(rotation[2], 30, 1e-9);
  EXPECT_NEAR(length[2], 3, 1e-12);

  const double collapsed[12] = {};
  zylClipPipelineHelper::ComputeBoxParameters(collapsed, position, rotation, length);
  EXPECT_EQ(Values(length, length + 3), (Values{ 0, 0, 0 }));
}
