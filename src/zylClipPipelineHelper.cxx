#include "zylClipPipelineHelper.h"

#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylPropertyCollection.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include <vtkLogger.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSession.h>
#include <vtkSMSessionProxyManager.h>
#include <vtkSMSourceProxy.h>
#include <vtkTransform.h>

vtkStandardNewMacro(zylClipPipelineHelper);

namespace {
// One table for what the clips share and one for each implicit function, pushed to that function.
constexpr zylPropertyRow ClipRows[] = {
  zylPropertyRow::Int("ClipMode", 0),
  zylPropertyRow::Bool("Invert", true),
};
constexpr zylPropertyRow ScalarRows[] = {
  zylPropertyRow::String("ScalarVariable", ""),
  zylPropertyRow::Double("ScalarLowerThreshold", 0.0),
  zylPropertyRow::Double("ScalarUpperThreshold", 1.0),
};
constexpr zylPropertyRow PlaneRows[] = {
  zylPropertyRow::Double3("PlaneCenter", 0.0, 0.0, 0.0).To("Origin"),
  zylPropertyRow::Double3("PlaneNormal", 1.0, 0.0, 0.0).To("Normal"),
};
constexpr zylPropertyRow BoxRows[] = {
  zylPropertyRow::Double3("BoxPosition", 0.0, 0.0, 0.0).To("Position"),
  zylPropertyRow::Double3("BoxRotation", 0.0, 0.0, 0.0).To("Rotation"),
  zylPropertyRow::Double3("BoxLength", 1.0, 1.0, 1.0).To("Length"),
};
constexpr zylPropertyRow CylinderRows[] = {
  zylPropertyRow::Double3("CylinderCenter", 0.0, 0.0, 0.0).To("Center"),
  zylPropertyRow::Double3("CylinderAxis", 1.0, 0.0, 0.0).To("Axis"),
  zylPropertyRow::Double("CylinderRadius", 1.0).To("Radius"),
};
constexpr zylPropertyRow SphereRows[] = {
  zylPropertyRow::Double3("SphereCenter", 0.0, 0.0, 0.0).To("Center"),
  zylPropertyRow::Double("SphereRadius", 1.0).To("Radius"),
};

enum ClipMode
{
  None,
  ScalarRange,
  Plane,
  Box,
  Cylinder,
  Sphere
};

struct Mode
{
  const char* Function; ///< XML name of the implicit function
  const zylPropertyRow* Rows;
  std::size_t Count;
  const char* Direction; ///< setting that must not be of length zero, or null
};
constexpr Mode Modes[] = {
  { "", nullptr, 0, nullptr },
  { "Scalar", ScalarRows, std::size(ScalarRows), nullptr },
  { "Plane", PlaneRows, std::size(PlaneRows), "PlaneNormal" },
  { "Box", BoxRows, std::size(BoxRows), nullptr },
  { "Cylinder", CylinderRows, std::size(CylinderRows), "CylinderAxis" },
  { "Sphere", SphereRows, std::size(SphereRows), nullptr },
};

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<vtkSMSourceProxy> MakeFilter(const char* name, vtkSMSourceProxy* input)
{
  return input
    ? zylProxyBuilder(input->GetSessionProxyManager(), "filters", name).Input(input).Make()
    : nullptr;
}

//--------------------------------------------------------------------------------------------------
void SetScalars(vtkSMProxy* clip, const std::string& name)
{
  vtkSMPropertyHelper(clip, "SelectInputScalars").SetInputArrayToProcess(0, name.c_str());
}

//--------------------------------------------------------------------------------------------------
// Vector from one of the points (x, y, z, x, y, z, ...) to another; returns its length.
double Edge(const double* points, int from, int to, double edge[3])
{
  vtkMath::Subtract(points + 3 * to, points + 3 * from, edge);
  return vtkMath::Norm(edge);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylClipPipelineHelper::zylClipPipelineHelper()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
  zylDeclare(this->Properties, ClipRows);
  for (const Mode& mode : Modes)
  {
    zylDeclare(this->Properties, mode.Rows, mode.Count);
  }
}

//--------------------------------------------------------------------------------------------------
zylClipPipelineHelper::~zylClipPipelineHelper()
{
  zylUnregister(this->Output);
  zylUnregister(this->SecondClip);
  zylUnregister(this->FirstClip);
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylClipPipelineHelper::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylClipPipelineHelper::SetInput(vtkSMSourceProxy* input)
{
  this->Input = input;
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylClipPipelineHelper::GetOutput()
{
  if (!this->Input)
  {
    vtkLogF(ERROR, "Input must be set before Output is retrieved");
    return nullptr;
  }
  if (!zylIsUsable(this->Input, "GetOutput()"))
  {
    return nullptr;
  }
  if (!zylIsAlive(this->Output)) // none yet, or of a session that has ended
  {
    this->Output = MakeFilter("PassThrough", this->Input);
  }
  return this->Output;
}

//--------------------------------------------------------------------------------------------------
void zylClipPipelineHelper::Update()
{
  if (!this->Input)
  {
    vtkLogF(ERROR, "No Input");
    return;
  }
  if (!zylIsUsable(this->Input, "Update()"))
  {
    return;
  }
  const int wanted = this->Properties->GetInt("ClipMode");
  const int mode = wanted > None && wanted <= Sphere ? wanted : None;
  if (mode != None)
  {
    this->UpdateClips(mode);
  }
  vtkSMSourceProxy* const shown[] = { this->Input, this->SecondClip, this->FirstClip };
  zylConnect(this->Output, shown[std::min(mode, 2)]);
}

//--------------------------------------------------------------------------------------------------
void zylClipPipelineHelper::UpdateClips(int mode)
{
  if (!zylIsAlive(this->FirstClip))
  {
    this->FirstClip = MakeFilter("Clip", this->Input);
    this->SecondClip = nullptr; // of the same session
  }
  vtkSMProxy* function = zylUseFunction(this->FirstClip, "ClipFunction", Modes[mode].Function);
  if (!function)
  {
    return;
  }
  if (mode == ScalarRange)
  {
    this->UpdateScalarRange();
  }
  else
  {
    const Mode& shape = Modes[mode];
    zylPushFunction(this->Properties, shape.Rows, shape.Count, shape.Direction, function);
  }
  if (mode == Box)
  {
    // Kept: never reset. See zylClipPipelineHelper.ExactStaysOn.
    vtkSMPropertyHelper(this->FirstClip, "Exact").Set(1);
  }
  function->UpdateVTKObjects();
  if (mode != ScalarRange)
  {
    SetScalars(this->FirstClip, "");
    if (this->SecondClip)
    {
      SetScalars(this->SecondClip, "");
    }
    vtkSMPropertyHelper(this->FirstClip, "Invert").Set(this->Properties->GetBool("Invert") ? 1 : 0);
  }
  zylConnect(this->FirstClip, this->Input);
}

//--------------------------------------------------------------------------------------------------
void zylClipPipelineHelper::UpdateScalarRange()
{
  const std::string variable = this->Properties->GetString("ScalarVariable");
  SetScalars(this->FirstClip, variable);
  vtkSMPropertyHelper(this->FirstClip, "Value")
    .Set(this->Properties->GetDouble("ScalarUpperThreshold"));
  vtkSMPropertyHelper(this->FirstClip, "Invert").Set(1);
  if (!zylIsAlive(this->SecondClip))
  {
    this->SecondClip = MakeFilter("Clip", this->FirstClip);
  }
  vtkSMProxy* function =
    zylUseFunction(this->SecondClip, "ClipFunction", Modes[ScalarRange].Function);
  if (!function)
  {
    return;
  }
  function->UpdateVTKObjects();
  SetScalars(this->SecondClip, variable);
  vtkSMPropertyHelper(this->SecondClip, "Value")
    .Set(this->Properties->GetDouble("ScalarLowerThreshold"));
  vtkSMPropertyHelper(this->SecondClip, "Invert").Set(0);
  this->SecondClip->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylClipPipelineHelper::ComputeBoxParameters(
  const double points[12], double position[3], double rotation[3], double length[3])
{
  double axes[3][3];
  length[0] = Edge(points, 0, 1, axes[0]);
  length[1] = Edge(points, 0, 3, axes[1]);
  // Kept: the third axis points from its neighbor to the corner, unlike the others.
  length[2] = Edge(points, 2, 0, axes[2]);
  vtkNew<vtkMatrix4x4> matrix;
  for (int column = 0; column < 3; ++column)
  {
    vtkMath::Normalize(axes[column]);
    for (int row = 0; row < 3; ++row)
    {
      matrix->SetElement(row, column, axes[column][row]);
    }
    position[column] = points[column];
  }
  vtkNew<vtkTransform> transform;
  transform->Concatenate(matrix);
  transform->GetOrientation(rotation);
}
