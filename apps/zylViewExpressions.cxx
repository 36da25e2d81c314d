#include "zylViewExpressions.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>

namespace {
constexpr const char* Functions[] = { "abs", "add", "all", "arccos", "arccosh", "arcsin", "arcsinh",
  "arctan", "arctan2", "arctanh", "area", "aspect", "aspect_gamma", "ceil", "condition", "cos",
  "cosh", "cross", "curl", "det", "determinant", "diagonal", "divergence", "divide", "dot",
  "eigenvalue", "eigenvector", "exp", "expand_dims", "floor", "gradient", "hypot", "in1d", "inv",
  "inverse", "isnan", "jacobian", "laplacian", "ln", "log", "log10", "logical_not", "mag",
  "make_vector", "max", "max_angle", "mean", "min", "min_angle", "mod", "multiply", "negative",
  "nonzero", "norm", "power", "reciprocal", "remainder", "rint", "shear", "sin", "sinh", "skew",
  "sqrt", "square", "std", "strain", "subtract", "sum", "surface_normal", "tan", "tanh", "trace",
  "var", "vertex_normal", "volume", "vorticity", "where" };

// Words of the language that are no names; those that compare are not among them.
constexpr const char* Words[] = { "as", "assert", "async", "await", "break", "class", "continue",
  "def", "del", "elif", "else", "except", "finally", "for", "from", "global", "if", "import",
  "lambda", "nonlocal", "pass", "raise", "return", "try", "while", "with", "yield" };

constexpr const char* Operators = "+-*/%<>!&|^~,:()[] \t";

template <class List>
bool IsIn(const std::string& word, const List& list)
{
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

// Letters beyond ASCII may be part of names.
bool IsLetter(char c)
{
  return c == '_' || std::isalpha(static_cast<unsigned char>(c)) != 0 || (c & 0x80) != 0;
}

std::string TakeWord(const std::string& text, std::size_t& at)
{
  const std::size_t start = at;
  while (at < text.size() && (IsLetter(text[at]) || IsDigit(text[at])))
  {
    ++at;
  }
  return text.substr(start, at - start);
}

// "1", ".5", "2.", "1e-3". Whether it is one, and nothing like "1.real".
bool TakeNumber(const std::string& text, std::size_t& at)
{
  const auto digits = [&] {
    while (at < text.size() && IsDigit(text[at]))
    {
      ++at;
    }
  };
  digits();
  if (at < text.size() && text[at] == '.')
  {
    ++at;
    digits();
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E'))
  {
    ++at;
    at += at < text.size() && (text[at] == '-' || text[at] == '+');
    if (at == text.size() || !IsDigit(text[at]))
    {
      return false;
    }
    digits();
  }
  return at == text.size() || (!IsLetter(text[at]) && text[at] != '.');
}

// One character that is neither name nor number. `equals` are those before it without a space.
bool IsAllowed(const std::string& text, std::size_t at, int depth)
{
  const char c = text[at];
  const char before = at > 0 ? text[at - 1] : ' ';
  const char after = at + 1 < text.size() ? text[at + 1] : ' ';
  if (c == '=')
  {
    const bool compares = after == '=' || std::strchr("=<>!", before) != nullptr;
    const bool names = depth > 0 && std::strchr("+-*/%&|^:", before) == nullptr; // axis=0
    return compares || names;
  }
  return c != '\0' && std::strchr(Operators, c) != nullptr;
}
} // namespace

//--------------------------------------------------------------------------------------------------
std::string zylFindBeyondArithmetic(const std::string& expression)
{
  std::string last;      // the word that stands before, if one does
  bool callable = false; // whether a bracket that opens now would call something unnamed
  int depth = 0;
  for (std::size_t at = 0; at < expression.size();)
  {
    const char c = expression[at];
    if (IsLetter(c))
    {
      last = TakeWord(expression, at);
      callable = false;
      if (last.compare(0, 2, "__") == 0 || IsIn(last, Words))
      {
        return "'" + last + "'";
      }
      if (at < expression.size() && (expression[at] == '\'' || expression[at] == '"'))
      {
        return "a text";
      }
      continue;
    }
    if (IsDigit(c) ||
      (c == '.' && at + 1 < expression.size() && IsDigit(expression[at + 1]) && last.empty() &&
        !callable))
    {
      const std::size_t start = at;
      if (!TakeNumber(expression, at))
      {
        return "'" + expression.substr(start, at + 1 - start) + "'";
      }
      last.clear();
      callable = true;
      continue;
    }
    if (!IsAllowed(expression, at, depth))
    {
      return c == '\'' || c == '"' ? "a text"
        : c == '\n'                ? "a second line"
                                   : std::string("'") + c + "'";
    }
    if (c == '(')
    {
      const bool word =
        last == "and" || last == "or" || last == "not" || last == "in" || last == "is";
      if (callable || (!last.empty() && !word && !IsIn(last, Functions)))
      {
        return "a call of " + (last.empty() ? "something unnamed" : "'" + last + "'");
      }
    }
    depth += (c == '(' || c == '[') - (c == ')' || c == ']');
    if (c != ' ' && c != '\t')
    {
      last.clear();
      callable = c == ')' || c == ']';
    }
    ++at;
  }
  return "";
}
