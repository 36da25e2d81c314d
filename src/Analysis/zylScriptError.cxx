#include "Analysis/zylScriptError.h"

#include "ParaView/zylProxyBuilder.h"
#include "ParaView/zylSession.h"
#include "zylCore.h"

#include <cstdlib>
#include <sstream>

#include <vtkDataObject.h>
#include <vtkDataSetAttributes.h>
#include <vtkPVDataInformation.h>
#include <vtkSMPropertyHelper.h>
#include <vtkSMSourceProxy.h>
#include <vtkStringArray.h>
#include <vtkTable.h>
#include <vtkType.h>

namespace {
// A table of two rows: what was raised, and the line of the script, from 0. Python keeps the last
// error that nobody caught; it is let go of, and with it the data that its frames hold.
const char* const Ask = R"(
import sys
from vtkmodules.vtkCommonCore import vtkStringArray
told = ["", ""]
trace = getattr(sys, "last_traceback", None)
while trace:
    stage = getattr(trace.tb_frame.f_locals.get("self"), "__this__", None)
    if stage is not None and globals().get("zylStages", {}).get(stage) == asked:
        told = [sys.last_type.__name__ + ": " + str(sys.last_value), str(trace.tb_lineno - 2)]
        sys.last_traceback = None
        break
    trace = trace.tb_next
column = vtkStringArray()
column.SetName("told")
for text in told:
    column.InsertNextValue(text[:500])
self.GetOutputDataObject(0).AddColumn(column))";
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylGetScriptError(vtkSMSourceProxy* stage)
{
  if (!zylIsAlive(stage))
  {
    return std::string();
  }
  const std::string script = std::string("asked = ") + stage->GetGlobalIDAsString() + Ask;
  const auto source =
    zylProxyBuilder(stage->GetSessionProxyManager(), "sources", "ProgrammableSource")
      .Set("OutputDataSetType", VTK_TABLE)
      .Set("Script", script.c_str())
      .MakeUnregistered();
  zylUpdatePipeline(source, 0.0);
  const auto fetched = zylCore::Fetch(source, nullptr);
  auto* table = vtkTable::SafeDownCast(fetched);
  auto* told =
    table ? vtkStringArray::SafeDownCast(table->GetRowData()->GetAbstractArray("told")) : nullptr;
  std::string error = told && told->GetNumberOfValues() == 2 ? told->GetValue(0) : std::string();
  if (!error.empty())
  {
    std::istringstream lines(vtkSMPropertyHelper(stage, "Script").GetAsString());
    std::string line;
    for (int i = std::atoi(told->GetValue(1).c_str()); i >= 0 && std::getline(lines, line); --i)
    {
    }
    error += ", in \"" + line + "\"";
  }
  return error;
}

//--------------------------------------------------------------------------------------------------
std::string zylDescribeMissing(const std::set<std::string>& names, const std::string& reason)
{
  std::string list;
  for (const std::string& name : names)
  {
    list += (list.empty() ? "'" : ", '") + name + "'";
  }
  return "No values of the derived variables " + list + ": " + reason;
}

//--------------------------------------------------------------------------------------------------
std::string zylDescribeFailure(
  const std::set<std::string>& names, vtkSMSourceProxy* stage, vtkSMSourceProxy* output)
{
  std::set<std::string> missing;
  for (const std::string& name : names)
  {
    if (zylIsAlive(output) &&
      !output->GetDataInformation(0)->GetArrayInformation(name.c_str(), vtkDataObject::POINT))
    {
      missing.insert(name);
    }
  }
  const std::string error = missing.empty() ? std::string() : zylGetScriptError(stage);
  return error.empty() ? error : zylDescribeMissing(missing, error);
}
