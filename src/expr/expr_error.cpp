#include "expr/expr_error.h"

#include <array>

#include "core/messages.h"
#include "core/strfmt.h"

namespace zv {

namespace {

// Texts of the codes 0 to -40, by the code's magnitude.
constexpr std::array<const char*, 41> kErrorTexts = {
    "No error",
    "Symbol undefined %s",
    "Variable redefined %s",
    "No memory",
    "Variable recursively defined",
    "Stack underflow or missing argument",
    "Variable of wrong type for indexing or array undefined",
    "Stack overflow or missing argument",
    "Expression incomplete",
    "Expression too complicated",
    "Ill-formed string",
    "Error in array definition",
    "Bad operator",
    "Duplicate argument: %s",
    "Comma or parenthesis expected in function definition",
    "Incomplete function definition",
    "Symbol expected for argument",
    "Function name expected",
    "Bad format invocation",
    "Only constants allowed",
    "Bad procedure declaration",
    "Illegal symbol for local variable name: %s",
    "No return in procedure: must be last statement before }",
    "Parenthesis missing around if",
    "Unrecognized statement: %s",
    "Semicolon missing",
    "Internal error",
    "Local variable '%s' redefined",
    "Local variable '%s' undefined",
    "Assignment missing",
    "Empty expression",
    "Error in array %s, element %d",
    "Missing parenthesis around while expression",
    "Name is a reserved word: %s",
    "Odd number of elements in associative array: %s",
    "User interrupt in %s",
    "Bad default value",
    "Variable in default value missing",
    "Recursive optValue reference",
    "Number too large",
    "Unable to format expression option.",
};

}  // namespace

ExpressionError& lastError() {
  static ExpressionError record;
  return record;
}

void setError(int code, std::string_view name) {
  ExpressionError& record = lastError();
  record.code = code;
  record.name.assign(clipName(name));
}

void setError(int code, std::string_view name, int element) {
  setError(code, name);
  lastError().element = element;
}

std::string expressionErrorText(int code, std::string_view name, int element) {
  if (code > 0 || code < -40) return strprintf("Unknown error %d", code);
  const char* text = kErrorTexts[static_cast<std::size_t>(-code)];
  std::string clipped(clipName(name));
  if (code == kExprArrayElement) return strprintf(text, clipped, element);
  if (std::string_view(text).find("%s") != std::string_view::npos) {
    return strprintf(text, clipped);
  }
  return text;
}

std::string expressionErrorText() {
  const ExpressionError& record = lastError();
  return expressionErrorText(record.code, record.name, record.element);
}

void reportExpressionError(std::string_view expression) {
  showError(strprintf("Expression error: %s (%s)", expressionErrorText(), std::string(expression)));
}

}  // namespace zv
