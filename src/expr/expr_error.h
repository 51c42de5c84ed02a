#pragma once
// The expression engine's last error: one process-wide record of a code (0 down to -40, or a
// positive code length after a successful compile), a name of at most 64 bytes and an array
// element number. Routines store into it and return a failure; the caller decides whether to show
// it with reportExpressionError.

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

/// The engine's error codes. Their texts are those of expressionErrorText.
enum ExprErrorCode : int {
  kExprOk = 0,
  kExprSymbolUndefined = -1,
  kExprRedefined = -2,
  kExprNoMemory = -3,
  kExprRecursive = -4,
  kExprStackUnderflow = -5,
  kExprBadIndexing = -6,
  kExprStackOverflow = -7,
  kExprIncomplete = -8,
  kExprTooComplicated = -9,
  kExprIllFormedString = -10,
  kExprArrayDefinition = -11,
  kExprBadOperator = -12,
  kExprDuplicateArgument = -13,
  kExprCommaOrParenExpected = -14,
  kExprIncompleteFunction = -15,
  kExprSymbolExpected = -16,
  kExprFunctionNameExpected = -17,
  kExprBadFormat = -18,
  kExprOnlyConstants = -19,
  kExprBadProcedure = -20,
  kExprIllegalLocalName = -21,
  kExprNoReturn = -22,
  kExprIfParenthesis = -23,
  kExprUnrecognizedStatement = -24,
  kExprSemicolonMissing = -25,
  kExprInternal = -26,
  kExprLocalRedefined = -27,
  kExprLocalUndefined = -28,
  kExprAssignmentMissing = -29,
  kExprEmpty = -30,
  kExprArrayElement = -31,
  kExprWhileParenthesis = -32,
  kExprReservedWord = -33,
  kExprOddAssociative = -34,
  kExprUserInterrupt = -35,
  kExprBadDefault = -36,
  kExprDefaultVariableMissing = -37,
  kExprRecursiveOptValue = -38,
  kExprNumberTooLarge = -39,
  kExprOptionFormat = -40,
};

/// The longest name the record (and a symbol) keeps.
inline constexpr std::size_t kMaxNameLength = 64;

struct ExpressionError {
  int code = 0;
  std::string name;  ///< at most 64 bytes
  int element = 0;   ///< the 1-based element of an array definition
};

/// The process-wide record.
ExpressionError& lastError();
/// Stores a code, leaving name and element as they are.
inline void setErrorCode(int code) {
  lastError().code = code;
}
/// Stores a code with the name it concerns (cut to 64 bytes).
void setError(int code, std::string_view name);
/// Stores a code with a name and an element number.
void setError(int code, std::string_view name, int element);
inline int lastErrorCode() {
  return lastError().code;
}

/// The text of a code, "%s" filled from `name` and "%d" of -31 from `element`; an unknown code
/// gives "Unknown error %d".
std::string expressionErrorText(int code, std::string_view name, int element);
/// The text of the record's current error.
std::string expressionErrorText();

/// Shows "Expression error: %s (%s)" with the current error's text and the expression.
void reportExpressionError(std::string_view expression);

/// Cuts a name to the 64 bytes that symbols and the record keep.
inline std::string_view clipName(std::string_view name) {
  return name.size() > kMaxNameLength ? name.substr(0, kMaxNameLength) : name;
}

}  // namespace zv
