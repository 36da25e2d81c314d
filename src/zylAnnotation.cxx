#include "zylAnnotation.h"

#include "ParaView/zylPropertyTable.h"
#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylScriptFilter.h"
#include "ParaView/zylSession.h"
#include "zylDataSet.h"
#include "zylPropertyCollection.h"
#include "zylView.h"

#include <cctype>
#include <set>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMRenderViewProxy.h>
#include <vtkSMSession.h>
#include <vtkSMSourceProxy.h>

vtkStandardNewMacro(zylAnnotation);

#define zylScope(name) vtkVLogScopeF(vtkLogger::VERBOSITY_TRACE, name)

namespace {
using Row = zylPropertyRow;

constexpr Row VisibilityRows[] = {
  Row::Bool("Visibility", false).NotInHash(),
  Row::Bool("ForceHidden", false).NotInHash(),
};
constexpr Row FilterRows[] = {
  Row::String("Expression", "").To("Expression"),
  Row::Int("ArrayAssociation", 0).To("ArrayAssociation"),
};
constexpr Row ModeRows[] = {
  Row::Int("PropMode", 0).To("TextPropMode"),
};
constexpr Row WidgetRows[] = {
  Row::Double2("Position", 0.0, 0.0).To("Position"),
};
constexpr Row FlagpoleRows[] = {
  Row::Double3("FlagpoleBasePosition", 0.0, 0.0, 0.0).To("BasePosition"),
  Row::Double3("FlagpoleTopPosition", 0.0, 1.0, 0.0).To("TopPosition"),
  Row::Double("FlagpoleFlagSize", 1.0).To("FlagSize"),
};
constexpr Row BillboardRows[] = {
  Row::Double3("BillboardPosition", 0.0, 0.0, 0.0).To("BillboardPosition"),
  Row::Int2("BillboardDisplayOffset", 0, 0).To("DisplayOffset"),
};
constexpr Row FontRows[] = {
  Row::String("FontName", "Arial").To("FontFamily"),
  Row::Int("FontSize", 12).To("FontSize"),
  Row::Bool("Bold", false).To("Bold"),
  Row::Bool("Italic", false).To("Italic"),
  Row::Bool("Shadow", false).To("Shadow"),
  Row::Double3("Color", 1.0, 1.0, 1.0).To("Color"),
  Row::Double("Opacity", 1.0).To("Opacity"),
  Row::Int("Justification", 0).To("Justification"),
};

//--------------------------------------------------------------------------------------------------
void Declare(zylPropertyCollection* settings)
{
  zylDeclare(settings, VisibilityRows);
  zylDeclare(settings, FilterRows);
  zylDeclare(settings, ModeRows);
  zylDeclare(settings, WidgetRows);
  zylDeclare(settings, FlagpoleRows);
  zylDeclare(settings, BillboardRows);
  zylDeclare(settings, FontRows);
}

//--------------------------------------------------------------------------------------------------
bool IsPartOfName(char c)
{
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || (c & 0x80);
}

// Whether an expression uses a name, and not as a part of a longer one.
bool Mentions(const std::string& expression, const std::string& name)
{
  for (auto at = expression.find(name); at != std::string::npos; at = expression.find(name, at + 1))
  {
    const auto end = at + name.size();
    if ((at == 0 || !IsPartOfName(expression[at - 1])) &&
      (end == expression.size() || !IsPartOfName(expression[end])))
    {
      return true;
    }
  }
  return false;
}

//--------------------------------------------------------------------------------------------------
std::set<std::string> FindDerivedVariables(zylDataSet* dataSet, const std::string& expression)
{
  std::set<std::string> names;
  for (const std::string& name : dataSet->GetDerivedPointVariableNames())
  {
    if (Mentions(expression, name))
    {
      names.insert(name);
    }
  }
  return names;
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylAnnotation::zylAnnotation()
  : Properties(vtkSmartPointer<zylPropertyCollection>::New())
{
  Declare(this->Properties);
}

//--------------------------------------------------------------------------------------------------
zylAnnotation::~zylAnnotation()
{
  this->zylAnnotation::FreeResources();
}

//--------------------------------------------------------------------------------------------------
zylPropertyCollection* zylAnnotation::GetProperties()
{
  return this->Properties;
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::SetDataSet(zylDataSet* dataSet)
{
  if (!dataSet)
  {
    this->FreeResources();
  }
  this->Superclass::SetDataSet(dataSet);
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::Update()
{
  zylScope("Update()");
  vtkSMSourceProxy* source = this->DataSet ? this->DataSet->GetProxy() : nullptr;
  if (!zylIsUsable(source, "Update()"))
  {
    return;
  }
  if (this->Filter && this->Filter->GetSession() != source->GetSession())
  {
    this->FreeResources();
  }
  Declare(this->Properties); // a setting that was removed means its default
  this->UpdateFilter();
  this->UpdateRepresentation();
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::UpdateFilter()
{
  vtkSMSourceProxy* input = this->DataSet->GetProxy();
  const auto derived =
    FindDerivedVariables(this->DataSet, this->Properties->GetString("Expression"));
  if (!derived.empty() && this->DataSet->GetOutput())
  {
    if (!this->Script)
    {
      this->Script = zylScriptFilter(this->DataSet->GetOutput()).Make();
    }
    zylConnect(this->Script, this->DataSet->GetOutput());
    zylPushScript(this->DataSet->GetDerivedPointVariableScript(derived), this->Script);
    input = this->Script;
  }
  if (!this->Filter)
  {
    this->Filter = zylProxyBuilder(input->GetSessionProxyManager(), "filters", "PythonAnnotation")
                     .Input(input)
                     .Make();
  }
  if (!this->Filter)
  {
    vtkErrorMacro("The session cannot evaluate texts: it has no proxy 'PythonAnnotation'");
    return;
  }
  zylConnect(this->Filter, input);
  zylPush(this->Properties, FilterRows, this->Filter);
  this->Filter->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::UpdateRepresentation()
{
  vtkSMProxy* view = this->View ? this->View->GetProxy() : nullptr;
  if (!this->Representation && this->Filter && zylIsAlive(view))
  {
    this->Representation =
      zylProxyBuilder(view->GetSessionProxyManager(), "representations", "TextSourceRepresentation")
        .Input(this->Filter)
        .Set("Visibility", 0)
        .MakeRepresentation(view);
  }
  if (!this->Representation)
  {
    return;
  }
  // By itself ahead of the mode: it hides what the mode before has shown.
  vtkSMPropertyHelper(this->Representation, "Visibility").Set(this->IsVisible() ? 1 : 0);
  this->Representation->UpdateVTKObjects();
  zylPush(this->Properties, FontRows, this->Representation);
  const int mode = this->Properties->GetInt("PropMode");
  if (mode < 0 || mode > 2)
  {
    vtkLogF(ERROR,
      "Unknown prop mode '%d' given. Valid values are '2DTextWidget', 'Flagpole', 'Billboard3D'",
      mode);
  }
  else
  {
    zylPush(this->Properties, ModeRows, this->Representation);
  }
  if (mode == 0)
  {
    vtkSMPropertyHelper(this->Representation, "WindowLocation").Set(0); // at "Position"
    zylPush(this->Properties, WidgetRows, this->Representation);
  }
  else if (mode == 1)
  {
    zylPush(this->Properties, FlagpoleRows, this->Representation);
  }
  else if (mode == 2)
  {
    zylPush(this->Properties, BillboardRows, this->Representation);
  }
  this->Representation->UpdateVTKObjects();
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::FreeResources()
{
  zylScope("FreeResources()");
  for (vtkSmartPointer<vtkSMSourceProxy>* stage : { &this->Filter, &this->Script })
  {
    zylUnregister(*stage);
    *stage = nullptr;
  }
  zylUnregister(this->Representation);
  this->Representation = nullptr;
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::Show()
{
  zylScope("Show()");
  this->Properties->Set("ForceHidden", false);
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::Hide()
{
  zylScope("Hide()");
  this->Properties->Set("ForceHidden", true);
}

//--------------------------------------------------------------------------------------------------
bool zylAnnotation::IsVisible()
{
  zylScope("IsVisible()");
  return this->Properties->GetBool("Visibility") && !this->Properties->GetBool("ForceHidden");
}

//--------------------------------------------------------------------------------------------------
bool zylAnnotation::GetBounds(double*)
{
  zylScope("GetBounds()");
  return false;
}

//--------------------------------------------------------------------------------------------------
bool zylAnnotation::HasRepresentation(vtkSMProxy* representation)
{
  zylScope("HasRepresentation()");
  return representation && representation == this->Representation;
}

//--------------------------------------------------------------------------------------------------
void zylAnnotation::GetScreenBounds(int bounds[4])
{
  zylScope("GetScreenBounds()");
  if (!this->View || !zylIsUsable(this->Representation, "GetScreenBounds()"))
  {
    return;
  }
  this->Representation->UpdatePropertyInformation();
  const vtkSMPropertyHelper position(this->Representation, "PositionInfo");
  const vtkSMPropertyHelper extent(this->Representation, "Position2Info");
  int size[2];
  this->View->GetWindowSize(size);
  for (unsigned int i = 0; i < 2; ++i)
  {
    const double low = position.GetAsDouble(i);
    bounds[i] = static_cast<int>(size[i] * low);
    bounds[i + 2] = static_cast<int>((low + extent.GetAsDouble(i)) * size[i]);
  }
}
