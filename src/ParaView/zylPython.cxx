#include <vtkPython.h> // must come first

#include "ParaView/zylPython.h"

#include "zylDerivedVariablesModule.h" // made from zylDerivedVariables.py

#include <algorithm>

#include <vtkPythonInterpreter.h>
#include <vtkSmartPyObject.h>

namespace {
using zylPython::Expressions;

// The parser of older interpreters overruns its stack on 100 000 nested operators.
constexpr std::size_t LongestExpression = 10000;

// The dictionary of __main__ (borrowed).
PyObject* Main()
{
  PyObject* main = PyImport_AddModule("__main__");
  return main ? PyModule_GetDict(main) : nullptr;
}

// A new reference, null with a Python error when `text` is not UTF-8.
PyObject* FromString(const std::string& text)
{
  return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "strict");
}

std::string ToString(PyObject* object)
{
  Py_ssize_t size = 0;
  const char* text = object ? PyUnicode_AsUTF8AndSize(object, &size) : nullptr;
  return text ? std::string(text, static_cast<std::size_t>(size)) : std::string();
}

template <typename Container>
PyObject* FromStrings(const Container& texts)
{
  vtkSmartPyObject list(PyList_New(0));
  for (const std::string& text : texts)
  {
    vtkSmartPyObject item(FromString(text));
    if (!item || PyList_Append(list, item) != 0)
    {
      return nullptr;
    }
  }
  return list.ReleaseReference();
}

// Arrays whose name is not UTF-8 are left out: no expression can name them.
PyObject* FromArrayNames(const std::vector<std::string>& names)
{
  std::vector<std::string> nameable;
  for (const std::string& name : names)
  {
    vtkSmartPyObject item(FromString(name));
    if (item)
    {
      nameable.push_back(name);
    }
    PyErr_Clear();
  }
  return FromStrings(nameable);
}

// Python's error becomes a sentence, as in: SyntaxError: invalid syntax (b, line 1)
std::string FetchError()
{
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* trace = nullptr;
  PyErr_Fetch(&type, &value, &trace);
  PyErr_NormalizeException(&type, &value, &trace);
  const vtkSmartPyObject owned[] = { vtkSmartPyObject(type), vtkSmartPyObject(value),
    vtkSmartPyObject(trace) };
  if (!value)
  {
    return "no Python error was given";
  }
  vtkSmartPyObject variable(PyObject_GetAttrString(value, "variable"));
  const std::string name = variable ? ToString(variable) : std::string();
  vtkSmartPyObject line(PyObject_GetAttrString(value, "text")); // a syntax error's
  std::string source = line && PyUnicode_Check(line) ? ToString(line) : std::string();
  source.erase(std::find(source.begin(), source.end(), '\n'), source.end());
  vtkSmartPyObject text(PyObject_Str(value));
  std::string error = name.empty() ? "" : "Derived variable \"" + name + "\": ";
  error += Py_TYPE(value)->tp_name;
  error += ": " + (text ? ToString(text) : std::string());
  error += source.empty() ? "" : ", in \"" + source.substr(0, 200) + "\"";
  PyErr_Clear();
  return error;
}

// The derived definitions as a dict, each name and expression checked by itself.
PyObject* FromExpressions(const Expressions& expressions)
{
  vtkSmartPyObject dict(PyDict_New());
  for (const auto& [name, expression] : expressions)
  {
    vtkSmartPyObject key(FromString(name));
    vtkSmartPyObject value(key ? FromString(expression) : nullptr);
    if (!value)
    {
      if (key && PyErr_Occurred())
      {
        PyObject *type, *error, *trace;
        PyErr_Fetch(&type, &error, &trace);
        PyErr_NormalizeException(&type, &error, &trace);
        PyObject_SetAttrString(error, "variable", key);
        PyErr_Restore(type, error, trace);
      }
      return nullptr;
    }
    PyDict_SetItem(dict, key, value);
  }
  return dict.ReleaseReference();
}

// Call the module's function; a new reference, or null with a Python error.
template <typename... Args>
PyObject* Call(const char* function, Args... arguments)
{
  PyObject* main = Main();
  PyObject* callable = main ? PyDict_GetItemString(main, function) : nullptr;
  if (!callable)
  {
    PyErr_Format(PyExc_NameError, "name '%s' is not defined", function);
    return nullptr;
  }
  return PyObject_CallFunctionObjArgs(callable, arguments..., nullptr);
}

using Graph = std::map<std::string, std::vector<std::string>>;

Graph ToGraph(PyObject* dict)
{
  Graph graph;
  PyObject* key = nullptr;
  PyObject* list = nullptr;
  for (Py_ssize_t at = 0; dict && PyDict_Next(dict, &at, &key, &list);)
  {
    std::vector<std::string>& names = graph[ToString(key)];
    for (Py_ssize_t i = 0; i < PyList_Size(list); ++i)
    {
      names.push_back(ToString(PyList_GetItem(list, i)));
    }
  }
  return graph;
}

// The variables on a way from `name` back to itself, or nothing. `path` leads to `name`.
std::vector<std::string> FindCircle(const Graph& graph, const std::string& name,
  std::vector<std::string>& path, std::set<std::string>& done)
{
  const auto start = std::find(path.begin(), path.end(), name);
  if (start != path.end())
  {
    return std::vector<std::string>(start, path.end());
  }
  const auto node = graph.find(name);
  if (node == graph.end() || !done.insert(name).second)
  {
    return {};
  }
  path.push_back(name);
  for (const std::string& dependency : node->second)
  {
    auto circle = FindCircle(graph, dependency, path, done);
    if (!circle.empty())
    {
      return circle;
    }
  }
  path.pop_back();
  return {};
}
} // namespace

//--------------------------------------------------------------------------------------------------
void zylPython::RunDerivedVariableModule()
{
  vtkPythonInterpreter::Initialize(1);
  vtkPythonScopeGilEnsurer gil;
  if (PyObject* main = Main())
  {
    Py_XDECREF(PyRun_String(zylDerivedVariablesModule, Py_file_input, main, main));
  }
  if (PyErr_Occurred())
  {
    PyErr_Print();
  }
}

//--------------------------------------------------------------------------------------------------
zylPython::Script zylPython::CreateScript(const std::vector<std::string>& arrays,
  const Expressions& expressions, const std::set<std::string>& toSave)
{
  vtkPythonInterpreter::Initialize(1);
  vtkPythonScopeGilEnsurer gil;
  Script script;
  for (const auto& [name, expression] : expressions)
  {
    if (expression.size() > LongestExpression)
    {
      script.Error = "Derived variable \"" + name + "\": the expression has " +
        std::to_string(expression.size()) + " characters, more than " +
        std::to_string(LongestExpression);
      return script;
    }
  }
  const vtkSmartPyObject existing(FromArrayNames(arrays));
  const vtkSmartPyObject derived(existing ? FromExpressions(expressions) : nullptr);
  const vtkSmartPyObject names(derived ? FromStrings(toSave) : nullptr);
  const vtkSmartPyObject text(names
      ? Call("createScript", existing.GetPointer(), derived.GetPointer(), names.GetPointer())
      : nullptr);
  script.Text = ToString(text);
  // A statement is no expression, and says so only as part of the script.
  const vtkSmartPyObject code(
    text ? Py_CompileString(script.Text.c_str(), "derived variables", Py_file_input) : nullptr);
  if (!code)
  {
    script.Text.clear();
    script.Error = FetchError();
    return script;
  }
  const vtkSmartPyObject dict(Call("createGraph", existing.GetPointer(), derived.GetPointer()));
  Graph graph = ToGraph(dict);
  for (const std::string& name : arrays)
  {
    // An array that a variable of the same name replaces is there before it.
    auto& own = graph[name];
    own.erase(std::remove(own.begin(), own.end(), name), own.end());
  }
  std::vector<std::string> path;
  std::set<std::string> done;
  for (auto name = toSave.begin(); name != toSave.end() && script.Circle.empty(); ++name)
  {
    script.Circle = FindCircle(graph, *name, path, done);
  }
  PyErr_Clear();
  return script;
}

//--------------------------------------------------------------------------------------------------
std::map<std::string, std::string> zylPython::SpellOtherNames(const std::vector<std::string>& names)
{
  vtkPythonInterpreter::Initialize(1);
  vtkPythonScopeGilEnsurer gil;
  std::map<std::string, std::string> spelled;
  const vtkSmartPyObject list(FromArrayNames(names));
  PyObject* main = Main();
  PyObject* visitor = main ? PyDict_GetItemString(main, "NameVisitor") : nullptr;
  const vtkSmartPyObject dict(
    visitor && list ? PyObject_CallMethod(visitor, "spell", "O", list.GetPointer()) : nullptr);
  PyObject* name = nullptr;
  PyObject* word = nullptr;
  for (Py_ssize_t at = 0; dict && PyDict_Next(dict, &at, &name, &word);)
  {
    if (ToString(name) != ToString(word))
    {
      spelled[ToString(name)] = ToString(word);
    }
  }
  PyErr_Clear();
  return spelled;
}
