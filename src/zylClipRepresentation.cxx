#include "zylClipRepresentation.h"

#include "Analysis/zylFieldValues.h"
#include "ParaView/zylImplicitFunction.h"
#include "ParaView/zylParaViewCompat.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"

#include <iostream>
#include <iterator>

#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylClipRepresentation);

namespace {
constexpr zylPropertyRow ClipRows[] = {
  zylPropertyRow::Int("ClipMode", 0),
  zylPropertyRow::Bool("Invert", true).To("Invert"),
};
constexpr zylPropertyRow ScalarRows[] = {
  zylPropertyRow::String("ScalarVariable", ""),
  zylPropertyRow::Double("ScalarThreshold", 0.0).To("Value"),
};
constexpr zylPropertyRow PlaneRows[] = {
  zylPropertyRow::Double3("PlaneCenter", 0.0, 0.0, 0.0).To("Origin"),
  zylPropertyRow::Double3("PlaneNormal", 1.0, 0.0, 0.0).To("Normal"),
};
constexpr zylPropertyRow SphereRows[] = {
  zylPropertyRow::Double3("SphereCenter", 0.0, 0.0, 0.0).To("Center"),
  zylPropertyRow::Double("SphereRadius", 1.0).To("Radius"),
};

enum ClipMode
{
  Scalar,
  Plane,
  Sphere
};
} // namespace

//--------------------------------------------------------------------------------------------------
zylClipRepresentation::zylClipRepresentation()
{
  zylDeclare(this->Properties, ClipRows);
  zylDeclare(this->Properties, ScalarRows);
  zylDeclare(this->Properties, PlaneRows);
  zylDeclare(this->Properties, SphereRows);
}

//--------------------------------------------------------------------------------------------------
zylClipRepresentation::~zylClipRepresentation()
{
  this->zylClipRepresentation::FreeResources();
}

//--------------------------------------------------------------------------------------------------
void zylClipRepresentation::CreateSurfacePipeline()
{
  vtkSmartPointer<vtkSMSourceProxy> cells;
  if (zylParaView::HasServerPlugin(this->BlockExtractor->GetSession()))
  {
    cells = this->MakeFilter("UniformCells", this->BlockExtractor);
  }
  this->Clip = this->MakeFilter("Clip", cells ? cells : this->BlockExtractor);
  this->SetFirstSurfaceFilter(cells ? cells : this->Clip);
  this->SetLastSurfaceFilter(this->MakeFilter("SurfaceGeometryFilter", this->Clip));
}

//--------------------------------------------------------------------------------------------------
void zylClipRepresentation::FreeResources()
{
  this->Superclass::FreeResources();
  zylUnregister(this->Clip);
  this->Clip = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylClipRepresentation::UpdateLocalPipeline()
{
  if (!this->HasFilters("UpdateLocalPipeline()"))
  {
    return;
  }
  vtkSMSourceProxy* clip = this->Clip;
  zylPush(this->Properties, ClipRows, clip);
  const int mode = this->Properties->GetInt("ClipMode");
  const std::string variable = this->Properties->GetString("ScalarVariable");
  switch (mode)
  {
    case Scalar:
      zylUseFunction(clip, "ClipFunction", "Scalar");
      vtkSMPropertyHelper(clip, "SelectInputScalars")
        .SetInputArrayToProcess(0, this->CheckScalar(variable) ? variable.c_str() : "");
      zylPush(this->Properties, ScalarRows, clip);
      break;
    case Plane:
      zylPushFunction(this->Properties, PlaneRows, std::size(PlaneRows), "PlaneNormal",
        zylUseFunction(clip, "ClipFunction", "Plane"));
      break;
    case Sphere:
      zylPushFunction(this->Properties, SphereRows, std::size(SphereRows), nullptr,
        zylUseFunction(clip, "ClipFunction", "Sphere"));
      break;
    default:
      std::cerr << "Unknown clip mode " << mode << std::endl;
      return;
  }
  clip->UpdateVTKObjects();
  this->LastSurfaceFilter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
zylArrayInformation* zylClipRepresentation::GetScalarInformation()
{
  return zylFindPointArray(this->DataSet, this->Properties->GetString("ScalarVariable"));
}

//--------------------------------------------------------------------------------------------------
void zylClipRepresentation::GetVolumeDerivedPointVariables(std::set<std::string>& names)
{
  this->Superclass::GetVolumeDerivedPointVariables(names);
  if (this->DataSet && this->Properties->GetInt("ClipMode") == Scalar)
  {
    this->AddDerivedVariable(this->Properties->GetString("ScalarVariable"), names);
  }
}
