#include "ParaView/zylDerivedVariables.h"

#include <algorithm>
#include <cctype>

#include <vtkObject.h>
#include <vtkSetGet.h>

namespace {
bool IsWordCharacter(char character)
{
  const auto code = static_cast<unsigned char>(character);
  return std::isalnum(code) || character == '_' || code >= 0x80;
}

// An identifier for sure; others are for Python to judge.
bool IsPlainIdentifier(const std::string& name)
{
  return !name.empty() && !std::isdigit(static_cast<unsigned char>(name.front())) &&
    std::all_of(name.begin(), name.end(), IsWordCharacter);
}

// Whether `expression` holds `name`, which has a letter, as it is: not in a longer word, nor quoted
// as in PointData['p/rho'].
bool HoldsName(const std::string& expression, const std::string& name)
{
  const auto belongs = [](char letter) {
    return IsWordCharacter(letter) || letter == '\'' || letter == '"';
  };
  const auto isLetter = [](unsigned char letter) { return std::isalpha(letter) != 0; };
  if (std::none_of(name.begin(), name.end(), isLetter))
  {
    return false;
  }
  for (auto at = expression.find(name); at != std::string::npos; at = expression.find(name, at + 1))
  {
    const std::size_t end = at + name.size();
    if ((at == 0 || !belongs(expression[at - 1])) &&
      (end == expression.size() || !belongs(expression[end])))
    {
      return true;
    }
  }
  return false;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::vector<std::string> zylDerivedVariables::GetNames() const
{
  std::vector<std::string> names;
  for (const auto& variable : this->Expressions)
  {
    names.push_back(variable.first);
  }
  return names;
}

//--------------------------------------------------------------------------------------------------
std::string zylDerivedVariables::GetExpression(const std::string& name) const
{
  const auto found = this->Expressions.find(name);
  return found != this->Expressions.end() ? found->second : std::string();
}

//--------------------------------------------------------------------------------------------------
void zylDerivedVariables::Define(const std::string& name, const std::string& expression)
{
  this->Forget();
  this->Expressions[name] = expression;
}

//--------------------------------------------------------------------------------------------------
void zylDerivedVariables::Remove(const std::string& name)
{
  this->Forget();
  this->Expressions.erase(name);
}

//--------------------------------------------------------------------------------------------------
void zylDerivedVariables::Clear()
{
  this->Forget();
  this->Expressions.clear();
}

//--------------------------------------------------------------------------------------------------
std::string zylDerivedVariables::MakeScript(
  const std::vector<std::string>& arrays, const std::set<std::string>& toSave)
{
  if (toSave.empty())
  {
    return std::string();
  }
  if (arrays != this->Arrays)
  {
    this->Scripts.clear();
    this->Arrays = arrays;
  }
  const auto known = this->Scripts.find(toSave);
  if (known != this->Scripts.end())
  {
    return known->second;
  }
  const auto script = zylPython::CreateScript(arrays, this->Expressions, toSave);
  if (!script.Error.empty() && this->IsNew(script.Error))
  {
    vtkErrorWithObjectMacro(
      this->Owner, "The derived variables cannot be computed. " << script.Error);
  }
  if (!script.Circle.empty())
  {
    std::string circle = "Derived variables that need themselves cannot be computed: ";
    for (const std::string& name : script.Circle)
    {
      circle += "\"" + name + "\" needs ";
    }
    circle += "\"" + script.Circle.front() + "\"";
    if (this->IsNew(circle))
    {
      vtkWarningWithObjectMacro(this->Owner, << circle);
    }
  }
  this->CheckSpellings(arrays); // arrays may have come since the definition
  return this->Scripts[toSave] = script.Text;
}

//--------------------------------------------------------------------------------------------------
void zylDerivedVariables::CheckSpellings(const std::vector<std::string>& arrays)
{
  std::vector<std::string> names = arrays;
  for (const auto& variable : this->Expressions)
  {
    names.push_back(variable.first);
  }
  if (std::all_of(names.begin(), names.end(), IsPlainIdentifier))
  {
    return;
  }
  for (const auto& [name, word] : zylPython::SpellOtherNames(names))
  {
    for (const auto& variable : this->Expressions)
    {
      const std::string warning = "\"" + name + "\" is no Python identifier: the expression of \"" +
        variable.first + "\" must spell it " + word;
      if (HoldsName(variable.second, name) && this->IsNew(warning))
      {
        vtkWarningWithObjectMacro(this->Owner, << warning);
      }
    }
  }
}

//--------------------------------------------------------------------------------------------------
void zylDerivedVariables::Forget()
{
  this->Told.clear();
  this->Scripts.clear();
}

//--------------------------------------------------------------------------------------------------
bool zylDerivedVariables::IsNew(const std::string& message)
{
  return this->Told.insert(message).second;
}
