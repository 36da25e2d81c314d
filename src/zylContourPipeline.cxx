#include "zylContourPipeline.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "zylPropertyCollection.h"
#include "zylTimeController.h"

#include <algorithm>
#include <string>
#include <vector>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPVRepresentationProxy.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylContourPipeline);

namespace {
constexpr zylPropertyRow Rows[] = {
  zylPropertyRow::Int("ColorMapStyle", 1),
  zylPropertyRow::Int("NumberOfColors", 5),
  zylPropertyRow::Double("Transparency", 0.0).To("Opacity").Mapped(1.0, -1.0),
  zylPropertyRow::Int("NumberOfContours", 5),
  zylPropertyRow::String("ContourVariableName", ""),
  zylPropertyRow::Double2("ContourRange", 0.0, 1.0),
  zylPropertyRow::Bool("RenderLinesAsTubes", false).To("RenderLinesAsTubes"),
  zylPropertyRow::Double("TubeRadius", 1.0).To("LineWidth"),
};

// Beyond this nothing can be told apart, and a mistyped number would exhaust the memory.
constexpr int MostContours = 10000;

//--------------------------------------------------------------------------------------------------
std::vector<double> ContourValues(int count, double first, double last)
{
  if (count == 1)
  {
    return { 0.5 * (first + last) };
  }
  std::vector<double> values;
  for (int i = 0; i < count; ++i)
  {
    values.push_back(first + i * (last - first) / (count - 1));
  }
  return values;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylContourPipeline::zylContourPipeline()
{
  this->zylContourPipeline::InitializeProperties();
}

//--------------------------------------------------------------------------------------------------
void zylContourPipeline::InitializeProperties()
{
  this->Superclass::InitializeProperties();
  zylDeclare(this->Properties, Rows);
}

//--------------------------------------------------------------------------------------------------
vtkSMSourceProxy* zylContourPipeline::PrepareSource()
{
  if (!this->EnsureFilter("Contour"))
  {
    return nullptr;
  }
  this->UpdateContours();
  return this->Filter;
}

//--------------------------------------------------------------------------------------------------
const char* zylContourPipeline::GetRepresentationType()
{
  return "Surface";
}

//--------------------------------------------------------------------------------------------------
void zylContourPipeline::PushSettings()
{
  zylPush(this->Properties, Rows, this->Representation);
}

//--------------------------------------------------------------------------------------------------
void zylContourPipeline::FreeResources(zylView* view)
{
  this->Superclass::FreeResources(view);
  this->Executed = false;
}

//--------------------------------------------------------------------------------------------------
void zylContourPipeline::UpdateContours()
{
  const std::string variable = this->Properties->GetString("ContourVariableName");
  const int count = variable.empty() ? 0 : this->Properties->GetInt("NumberOfContours");
  const std::vector<double> values = ContourValues(std::min(count, MostContours),
    this->Properties->GetDouble("ContourRange", 0), this->Properties->GetDouble("ContourRange", 1));
  const double time = zylTimeController::GetInstance()->GetActiveTime();
  if (this->Executed && values == this->ShownValues && variable == this->ShownVariable &&
    time == this->ShownTime)
  {
    return;
  }
  if (!this->Executed)
  {
    vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, "Update::InputUpdate");
    zylUpdatePipeline(this->DataSource, zylTimeController::GetInstance()->GetActiveTime());
  }
  vtkSMPropertyHelper contours(this->Filter, "ContourValues");
  contours.SetNumberOfElements(static_cast<unsigned int>(values.size()));
  contours.Set(values.data(), static_cast<unsigned int>(values.size()));
  vtkSMPropertyHelper(this->Filter, "SelectInputScalars")
    .SetInputArrayToProcess(0, variable.c_str());
  vtkSMPropertyHelper(this->Filter, "ComputeScalars").Set(1);
  this->Filter->UpdateVTKObjects();
  zylUpdatePipeline(this->Filter, zylTimeController::GetInstance()->GetActiveTime());
  this->Executed = true;
  this->ShownValues = values;
  this->ShownVariable = variable;
  this->ShownTime = time;
}
